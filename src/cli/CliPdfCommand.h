#pragma once

#include "cli/CliCommand.h"
#include "foundation/Result.h"

class CliDocument;
class TAInvoice;

// `pdf FILE --invoice NUMBER -o OUT.pdf` or `pdf FILE --all DIR`: invoices as PDF files, drawn
// through their templates as they would print.
class CliPdfCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("pdf"); }
    QString summary() const override { return QStringLiteral("Write invoices as PDF files"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;

    // The invoice with that number; null when there is none.
    static TAInvoice *findInvoice(CliDocument &document, const QString &number);
    // Gives the invoice the named template for this output only (the file is not saved), or the
    // document's first when it has none; the usage message when no template has that name.
    static Result<void> chooseTemplate(CliDocument &document, TAInvoice *invoice,
                                       const QString &name);
    // The file name of an invoice in a folder: its number made safe, else its position.
    static QString fileNameFor(TAInvoice *invoice, int position);

private:
    int writeAll(CliDocument &document, const QString &folder, const QString &templateName,
                 QTextStream &out, QTextStream &err);
};
