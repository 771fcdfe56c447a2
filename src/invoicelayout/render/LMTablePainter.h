#pragma once

#include "invoicelayout/render/LMTableModel.h"

#include <QList>
#include <QRectF>

class QPainter;
class TAInvoice;
class TAItem;

// Draws the items table and the totals table. Rows never wrap: a cell's text is cut to the cell.
// Without a painter nothing is drawn but the item count and the used height still advance, so
// that a later page can be drawn on its own.
class LMTablePainter {
public:
    struct Progress {
        int drawnItems = 0;
        QRectF tableFrame; // the last items table drawn, with the height it used
    };

    // Header and as many of the items not yet drawn as fit in the rectangle; the first row is
    // always drawn.
    static void drawMainTableInRect(QPainter *painter, const QRectF &rect,
                                    const LMTableModel &table, const QList<TAItem *> &items,
                                    bool taxesEnabled, Progress &progress);
    // The column titles and the rules under them, at the top of the rectangle.
    static void drawHeaderInRect(QPainter *painter, const QRectF &rect, const LMTableModel &table);
    // Every visible row, the tax row once per tax of the invoice; no fit test.
    static void drawTotalsTableInRect(QPainter *painter, const QRectF &rect,
                                      const LMTableModel &table, TAInvoice *invoice);

    // The totals rows as printed: label and amount text, taxes expanded. Without an invoice,
    // as a template shows them: each row's title alone, the tax row once.
    static QList<QStringList> totalsCells(const LMTableModel &table, TAInvoice *invoice);

private:
    LMTablePainter() = delete;
    static void drawCells(QPainter *painter, const LMTableModel &table, const QRectF &rect,
                          double y, const QStringList &texts, bool bold);
};
