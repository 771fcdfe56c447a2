#pragma once

#include "foundation/Result.h"

#include <QImage>
#include <QString>

class LMInvoiceTemplateClass;
class TAInvoice;

// An invoice leaves the program as a PDF file or as a picture of one page, both drawn by a
// render-only LMInvoiceView at the template's page size. A template can leave as a PDF file of
// its own, unfilled.
class LMInvoiceOutput {
public:
    // Writes all pages and answers how many; the document title is the invoice number. Text
    // stays text, with the fonts embedded. The error is short: callers put the path before it.
    static Result<int> writePdf(TAInvoice *invoice, const QString &path);
    // Page from 1, `scale` pixels per point; the null image for a page that does not exist.
    static QImage renderPage(TAInvoice *invoice, int page, double scale = 1);
    static int pageCount(TAInvoice *invoice);

    // The fixed "invoice.pdf" in the temporary folder, written for the invoice after giving it
    // the document's first template when it has none. The path comes back whatever the
    // writing did: a caller checks that the file is there.
    static QString generateTemporaryPdf(TAInvoice *invoice);
    static QString temporaryPdfPath(const QString &name);

    // The template itself, every page once, tags printed as tags, at its own page size; the
    // document title is the template's title.
    static Result<int> writeTemplatePdf(LMInvoiceTemplateClass *invoiceTemplate,
                                        const QString &path);
    // "<title>.pdf" in the temporary folder, "/" and ":" made "_"; empty without a template.
    static QString temporaryPdfPathForTemplate(LMInvoiceTemplateClass *invoiceTemplate);
    // Writes that file; the path comes back whatever the writing did.
    static QString generateTemporaryTemplatePdf(LMInvoiceTemplateClass *invoiceTemplate);
    // An invoice without a template gets the first of the document's templates.
    static void assignFirstTemplateIfNone(TAInvoice *invoice);

private:
    LMInvoiceOutput() = delete;
};
