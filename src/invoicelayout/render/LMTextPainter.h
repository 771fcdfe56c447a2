#pragma once

#include "layoutvalues/LMAttributedString.h"
#include "layoutvalues/LMTextAttributes.h"

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

// Text of invoice pages, measured and laid out in points whatever the output device: fonts are
// resolved at 72 dots per inch and every line goes through QTextLayout, so a picture, a PDF file
// and paper get the same line breaks and the same table heights.
class LMTextPainter {
public:
    // The font of the attributes; the system font of size 12 where they name none.
    static QFont fontFor(const LMTextAttributes &attributes);
    // The colour of the attributes; black where they name none.
    static QColor colorFor(const LMTextAttributes &attributes);

    // Height and width of the text set as one line.
    static qreal lineHeight(const QString &text, const LMTextAttributes &attributes);
    static qreal lineWidth(const QString &text, const LMTextAttributes &attributes);

    // The text cut to fit the width, ending in an ellipsis when anything was cut. Table cells
    // already keep 2 points clear on each side.
    static QString truncateToWidth(const QString &text, qreal width,
                                   const LMTextAttributes &attributes);

    // One line at the top of the box, aligned by the attributes' paragraph style.
    static void drawLine(QPainter *painter, const QString &text, const LMTextAttributes &attributes,
                         const QRectF &box);
    // Paragraphs wrapped at word boundaries, each aligned by the style of its first character;
    // lines below the box are dropped and the box clips what stands out of it.
    static void drawAttributedString(QPainter *painter, const LMAttributedString &text,
                                     const QRectF &box);

private:
    LMTextPainter() = delete;
};
