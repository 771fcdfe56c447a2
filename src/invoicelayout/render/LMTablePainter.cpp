#include "invoicelayout/render/LMTablePainter.h"

#include "foundation/money/OTNumberText.h"
#include "invoicelayout/render/LMItemValues.h"
#include "invoicelayout/render/LMTableRules.h"
#include "invoicelayout/render/LMTextPainter.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"

#include <QPainter>

namespace {

const QString taxRow = QStringLiteral("_total_table_tax_");

void drawRules(QPainter *painter, const QList<LMTableRules::Rule> &rules) {
    for (const LMTableRules::Rule &rule : rules)
        painter->fillRect(rule.rect, rule.color);
}

QRectF rowBox(const QRectF &table, double y, const LMTableModel &model) {
    return QRectF(table.x(), y, table.width(), model.headerHeight + 2);
}

Decimal invoiceValue(TAInvoice *invoice, const QString &colID) {
    if (colID == QLatin1String("_total_table_subtotal_"))
        return invoice->subTotal();
    if (colID == QLatin1String("_total_table_total_"))
        return invoice->total();
    if (colID == QLatin1String("_total_table_tax2_"))
        return invoice->totalTax2();
    if (colID == QLatin1String("_total_table_discount_"))
        return invoice->totalDiscount();
    if (colID == QLatin1String("_total_table_paid_"))
        return invoice->paid();
    if (colID == QLatin1String("_total_table_left_"))
        return invoice->left();
    return Decimal::notANumber();
}

} // namespace

void LMTablePainter::drawCells(QPainter *painter, const LMTableModel &table, const QRectF &rect,
                               double y, const QStringList &texts, bool bold) {
    double x = rect.x();
    for (qsizetype c = 0; c < table.columns.size(); ++c) {
        const LMTableModel::Column &column = table.columns[c];
        const double width = table.drawnWidth(c, x, rect.right());
        const LMTextAttributes &attributes = bold ? column.boldAttributes : column.attributes;
        const QRectF box(x + 2, y, width - 4, table.headerHeight);
        const QString text =
            LMTextPainter::truncateToWidth(texts.value(c), box.width(), attributes);
        LMTextPainter::drawLine(painter, text, attributes, box);
        x += width;
    }
}

void LMTablePainter::drawHeaderInRect(QPainter *painter, const QRectF &rect,
                                      const LMTableModel &table) {
    QStringList titles;
    for (const LMTableModel::Column &column : table.columns)
        titles.append(column.name);
    drawCells(painter, table, rect, rect.y(), titles, true);
    drawRules(painter, LMTableRules::headerRules(table.style, rowBox(rect, rect.y(), table)));
}

void LMTablePainter::drawMainTableInRect(QPainter *painter, const QRectF &rect,
                                         const LMTableModel &table, const QList<TAItem *> &items,
                                         bool taxesEnabled, Progress &progress) {
    const int step = table.rowStep();
    double used = 0;
    if (progress.drawnItems < items.size()) {
        if (painter)
            drawHeaderInRect(painter, rect, table);
        used = step;
        while (progress.drawnItems < items.size()) {
            const double y = rect.y() + used;
            TAItem *item = items[progress.drawnItems];
            if (painter) {
                QStringList texts;
                for (const LMTableModel::Column &column : table.columns)
                    texts.append(LMItemValues::getValueForItem(item, column.colID, taxesEnabled));
                drawCells(painter, table, rect, y, texts, false);
                const bool last = progress.drawnItems == items.size() - 1;
                drawRules(painter,
                          LMTableRules::rowRules(table.style, rowBox(rect, y, table), last));
            }
            ++progress.drawnItems;
            used += step;
            if (used + step > rect.height())
                break;
        }
    }
    progress.tableFrame = QRectF(rect.x(), rect.y(), rect.width(), used);
}

QList<QStringList> LMTablePainter::totalsCells(const LMTableModel &table, TAInvoice *invoice) {
    QList<QStringList> cells;
    if (!invoice) {
        for (const LMTableModel::Row &row : table.rows)
            cells.append(QStringList{row.name});
        return cells;
    }
    const TACurrency *currency = invoice->currency();
    const QString code = currency ? currency->code() : QString();
    const QList<QVariantMap> taxes = invoice->differentTaxes();
    qsizetype taxIndex = 0;
    for (const LMTableModel::Row &row : table.rows) {
        const qsizetype repeats = row.colID == taxRow ? taxes.size() : 1;
        for (qsizetype r = 0; r < repeats; ++r) {
            QStringList texts;
            const bool isTax = row.colID == taxRow && taxIndex < taxes.size();
            for (qsizetype c = 0; c < table.columns.size(); ++c) {
                if (isTax) {
                    const QVariantMap &tax = taxes[taxIndex];
                    const QString name = tax.value(QStringLiteral("taxName")).toString();
                    texts.append(
                        c == 0
                            ? (name.isEmpty() ? QObject::tr("Tax") : name)
                            : OTNumberText::currencyFormatter(
                                  Decimal::fromVariant(tax.value(QStringLiteral("amount"))), code));
                } else if (c == 0) {
                    texts.append(row.name);
                } else {
                    const Decimal value = invoiceValue(invoice, row.colID);
                    texts.append(value.isNaN() ? QString()
                                               : OTNumberText::currencyFormatter(value, code));
                }
            }
            if (isTax)
                ++taxIndex;
            cells.append(texts);
        }
    }
    return cells;
}

void LMTablePainter::drawTotalsTableInRect(QPainter *painter, const QRectF &rect,
                                           const LMTableModel &table, TAInvoice *invoice) {
    const QList<QStringList> cells = totalsCells(table, invoice);
    double used = 0;
    for (qsizetype r = 0; r < cells.size(); ++r) {
        const double y = rect.y() + used;
        drawCells(painter, table, rect, y, cells[r], false);
        drawRules(painter, LMTableRules::rowRules(table.style, rowBox(rect, y, table),
                                                  r == cells.size() - 1));
        used += table.rowStep();
    }
}
