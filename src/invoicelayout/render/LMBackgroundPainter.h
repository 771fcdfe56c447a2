#pragma once

#include <QColor>
#include <QImage>
#include <QLineF>
#include <QRectF>
#include <QSizeF>

class QPainter;

// The page background of a template and the placement arithmetic of pictures that keep their
// proportions. Sizes are compared as single-precision ratios and rounded down to whole points.
class LMBackgroundPainter {
public:
    enum Type { None = 0, Color = 1, Gradient = 2, Image = 3 };
    enum ImageMode { Center = 0, ScaleToFit = 1, ScaleToFitInside = 2, StretchToFit = 3 };

    struct Background {
        int type = None;
        int imageMode = Center;
        qint64 gradientAngle = 0;
        QColor color = Qt::white;
        QColor color2 = Qt::white;
        QImage image;
    };

    static void draw(QPainter *painter, const Background &background, const QRectF &page);

    // Where the picture of an image background goes for the page rectangle.
    static QRectF imageRect(const QSizeF &image, const QRectF &page, int mode);
    // A logo kept in proportion and centred in its box.
    static QRectF logoRect(const QSizeF &image, const QRectF &box);
    // The gradient's axis across the rectangle for an angle in degrees, counted as on paper
    // (90 runs upwards), so that the whole rectangle lies between the two ends.
    static QLineF gradientLine(const QRectF &rect, qint64 angle);

private:
    LMBackgroundPainter() = delete;
};
