#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

// Rectangles and sizes as stored in templates: "{{x, y}, {w, h}}" and "{w, h}", in points,
// origin top left. Unreadable text reads as the zero rectangle or size.
class LMGeometry {
public:
    static QString stringFromRect(const QRectF &rect);
    static QRectF rectFromString(const QString &text);
    static QString stringFromSize(const QSizeF &size);
    static QSizeF sizeFromString(const QString &text);

    // Shared by the canvas and the renderer so that both put things at the same place.
    static QRectF getInsideRectNoBorderFromRect(const QRectF &rect);
    static QRectF getInsideRectFromRect(const QRectF &rect);
    static QRectF getTextRectFromRect(const QRectF &rect);

private:
    LMGeometry() = delete;
};
