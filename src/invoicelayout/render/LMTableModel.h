#pragma once

#include "layoutvalues/LMTextAttributes.h"

#include <QList>
#include <QString>

class LMInvoiceElementClass;

// What drawing and pagination need of a table element, read once: its visible columns with
// their attributes, the visible rows of a totals element, the style and the row height.
struct LMTableModel {
    struct Column {
        QString colID;
        QString name;
        double width = 0;
        LMTextAttributes attributes;
        LMTextAttributes boldAttributes;
    };
    struct Row {
        QString colID;
        QString name;
    };

    QList<Column> columns;
    QList<Row> rows; // totals elements only
    int style = 0;
    int headerHeight = 0; // H: the tallest column title as one bold line, truncated

    int rowStep() const { return headerHeight + 4; }
    bool hasRow(const QString &colID) const;
    // The width a column is drawn with: its own, the last one widened to reach the right edge.
    double drawnWidth(qsizetype column, double x, double tableRight) const;

    // Columns come through the element's repair step; the tax column is left out when taxes
    // are off.
    static LMTableModel forElement(LMInvoiceElementClass *element, bool taxesEnabled);
};
