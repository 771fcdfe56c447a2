#pragma once

#include <QtGlobal>

class LMInvoiceTemplateClass;
class TAInvoice;

// How often the page with the items table repeats so that all items and the totals fit.
class LMTablePagination {
public:
    struct Result {
        int extraPages = 0;   // may be -1 for an invoice without items; callers clamp at 0
        qint64 mainPage = -1; // position of the table page, -1 when there is none
    };

    // The page height is that of the first output page. Only the table page's elements count:
    // the table grows down to the nearest element below it that is no shape and no totals
    // table, and the visible totals rows are reserved as rows of the items table.
    static Result getNumberOfExtraPagesForTemplate(LMInvoiceTemplateClass *invoiceTemplate,
                                                   TAInvoice *invoice, double pageHeight,
                                                   bool taxesEnabled);

    // The count from the measured numbers alone: rows area, row step, items, and the totals
    // rows to reserve (negative for no visible totals table).
    static int extraPagesFor(double availableHeight, int rowStep, qint64 items, qint64 totalsRows);

private:
    LMTablePagination() = delete;
};
