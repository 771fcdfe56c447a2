#include "invoicelayout/render/LMTablePagination.h"

#include "invoicelayout/render/LMTableModel.h"
#include "layoutvalues/LMElementTypes.h"
#include "layoutvalues/LMGeometry.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAInvoice.h"

#include <cmath>

namespace {

struct TablePage {
    LMInvoiceTemplatePageClass *page = nullptr;
    LMInvoiceElementClass *table = nullptr;
    LMInvoiceElementClass *totals = nullptr;
};

TablePage findTablePage(LMInvoiceTemplateClass *invoiceTemplate, qint64 *position) {
    const QList<LMInvoiceTemplatePageClass *> pages = invoiceTemplate->getSortedPages();
    for (qsizetype i = 0; i < pages.size(); ++i) {
        TablePage found{pages[i], nullptr, nullptr};
        for (LMInvoiceElementClass *element : pages[i]->getSortedElements()) {
            if (element->type() == LMElementTypes::InvoiceItems)
                found.table = element;
            else if (element->type() == LMElementTypes::TotalAmounts)
                found.totals = element;
        }
        if (found.table && !found.table->isHidden()) {
            *position = i;
            return found;
        }
    }
    return {};
}

double bottomLimit(const TablePage &found, const QRectF &table, double pageHeight) {
    double limit = pageHeight;
    for (LMInvoiceElementClass *element : found.page->getSortedElements()) {
        const int type = element->type();
        if (type == LMElementTypes::TotalAmounts || LMElementTypes::isShape(type) ||
            element->isHidden())
            continue;
        const double y = LMGeometry::rectFromString(element->frame()).y();
        if (y < limit && y > table.y() + table.height())
            limit = y;
    }
    return limit;
}

} // namespace

LMTablePagination::Result
LMTablePagination::getNumberOfExtraPagesForTemplate(LMInvoiceTemplateClass *invoiceTemplate,
                                                    TAInvoice *invoice, double pageHeight,
                                                    bool taxesEnabled) {
    Result result;
    if (!invoiceTemplate || !invoice)
        return result;
    const TablePage found = findTablePage(invoiceTemplate, &result.mainPage);
    if (!found.table)
        return result;
    const QRectF table = LMGeometry::getInsideRectNoBorderFromRect(
        LMGeometry::getInsideRectFromRect(LMGeometry::rectFromString(found.table->frame())));
    const double available = bottomLimit(found, table, pageHeight) - table.y();
    const int step = LMTableModel::forElement(found.table, taxesEnabled).rowStep();

    qint64 totalsRows = -1;
    if (found.totals && !found.totals->isHidden()) {
        const LMTableModel totals = LMTableModel::forElement(found.totals, taxesEnabled);
        totalsRows = totals.rows.size();
        // The tax row stays counted beside its expansion: one row more than printed.
        if (totals.hasRow(QStringLiteral("_total_table_tax_")))
            totalsRows += invoice->differentTaxes().size();
    }
    result.extraPages = extraPagesFor(available, step, invoice->numberOfItems(), totalsRows);
    return result;
}

int LMTablePagination::extraPagesFor(double availableHeight, int rowStep, qint64 items,
                                     qint64 totalsRows) {
    const qint64 rowsArea = qint64(availableHeight - rowStep);
    if (rowStep <= 0 || rowsArea < rowStep)
        return 0;
    const qint64 perPage = rowsArea / rowStep;
    const int pages = int(std::ceil(float(items) / float(perPage)));
    if (totalsRows < 0)
        return pages - 1;
    const int filledExactly = items == perPage ? 1 : 0;
    const qint64 spare = perPage - items % perPage;
    if (spare >= totalsRows)
        return pages - 1 + filledExactly;
    return pages;
}
