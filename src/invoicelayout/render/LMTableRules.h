#pragma once

#include <QColor>
#include <QList>
#include <QRectF>

// The lines of the five table styles, as filled one-point rectangles. The row box is the table's
// x and width at the row's y, one row step less 2 high.
class LMTableRules {
public:
    struct Rule {
        QRectF rect;
        QColor color;
        bool operator==(const Rule &) const = default;
    };

    static QList<Rule> headerRules(int style, const QRectF &rowBox);
    // `last`: the invoice's last item, or the totals table's last row.
    static QList<Rule> rowRules(int style, const QRectF &rowBox, bool last);

    static QColor lightGray() { return QColor::fromRgbF(2.0f / 3, 2.0f / 3, 2.0f / 3); }

private:
    LMTableRules() = delete;
};
