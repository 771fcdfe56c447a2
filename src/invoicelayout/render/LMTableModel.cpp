#include "invoicelayout/render/LMTableModel.h"

#include "invoicelayout/render/LMTextPainter.h"
#include "layoutvalues/LMElementTypes.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"

bool LMTableModel::hasRow(const QString &colID) const {
    for (const Row &row : rows)
        if (row.colID == colID)
            return true;
    return false;
}

double LMTableModel::drawnWidth(qsizetype column, double x, double tableRight) const {
    const double width = columns.at(column).width;
    if (column == columns.size() - 1 && x + width < tableRight)
        return tableRight - x;
    return width;
}

LMTableModel LMTableModel::forElement(LMInvoiceElementClass *element, bool taxesEnabled) {
    LMTableModel model;
    if (!element)
        return model;
    model.style = element->style();
    qreal tallest = 0;
    for (LMInvoiceTemplateColumnClass *column : element->getColsArray()) {
        if (!column->visible())
            continue;
        if (!taxesEnabled && column->colID() == QLatin1String("_tax_"))
            continue;
        Column entry{column->colID(), column->name(), column->width(),
                     column->getColumnAttributes(), column->getBoldColumnAttributes()};
        tallest = qMax(tallest, LMTextPainter::lineHeight(entry.name, entry.boldAttributes));
        model.columns.append(entry);
    }
    model.headerHeight = int(tallest);
    if (element->type() == LMElementTypes::TotalAmounts) {
        for (LMInvoiceTemplateColumnClass *row : element->getRowsArray())
            if (row->visible())
                model.rows.append(Row{row->colID(), row->name()});
    }
    return model;
}
