#include "layoutvalues/LMGeometry.h"

#include <QList>
#include <QRegularExpression>

namespace {

QString number(qreal value) {
    return QString::number(value, 'g', 12);
}

// All numbers of the text in order; any text that is not a number separates them.
QList<qreal> numbersIn(const QString &text) {
    static const QRegularExpression pattern(
        QStringLiteral("[-+]?(\\d+\\.?\\d*|\\.\\d+)([eE][-+]?\\d+)?"));
    QList<qreal> out;
    auto it = pattern.globalMatch(text);
    while (it.hasNext())
        out.append(it.next().captured(0).toDouble());
    return out;
}

} // namespace

QString LMGeometry::stringFromRect(const QRectF &rect) {
    return QStringLiteral("{{%1, %2}, {%3, %4}}")
        .arg(number(rect.x()), number(rect.y()), number(rect.width()), number(rect.height()));
}

QRectF LMGeometry::rectFromString(const QString &text) {
    const QList<qreal> values = numbersIn(text);
    if (values.size() != 4)
        return {};
    return {values[0], values[1], values[2], values[3]};
}

QString LMGeometry::stringFromSize(const QSizeF &size) {
    return QStringLiteral("{%1, %2}").arg(number(size.width()), number(size.height()));
}

QSizeF LMGeometry::sizeFromString(const QString &text) {
    const QList<qreal> values = numbersIn(text);
    if (values.size() != 2)
        return {0, 0};
    return {values[0], values[1]};
}

QRectF LMGeometry::getInsideRectNoBorderFromRect(const QRectF &r) {
    return {r.x() + 1, r.y() + 1, r.width() - 2, r.height() - 2};
}

QRectF LMGeometry::getInsideRectFromRect(const QRectF &r) {
    return {r.x() + 2, r.y() + 2, r.width() - 5, r.height() - 5};
}

QRectF LMGeometry::getTextRectFromRect(const QRectF &r) {
    return {r.x() + 6, r.y(), r.width() - 11, r.height() - 1};
}
