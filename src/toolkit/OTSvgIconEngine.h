#pragma once

#include <QByteArray>
#include <QIconEngine>
#include <QPalette>

// Draws one compiled-in SVG at any size, sharp at every scale factor. A symbolic icon is a
// single-colour shape: it is painted in the palette's text colour at the moment it is drawn, so
// it follows a dark theme and greys out when disabled. A coloured icon is drawn as it is.
class OTSvgIconEngine : public QIconEngine {
public:
    enum class Style { Symbolic, FullColor };

    OTSvgIconEngine(const QString &resourcePath, Style style);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override;

    // The colour a symbolic icon takes in the given mode: text colours, so that the shape has
    // the contrast the theme chose for text on the same background.
    static QColor tintColor(const QPalette &palette, QIcon::Mode mode);

private:
    QImage render(const QSize &pixelSize, QIcon::Mode mode) const;
    QPixmap cachedPixmap(const QSize &pixelSize, QIcon::Mode mode) const;

    QString m_path;
    Style m_style;
    QByteArray m_svg;
};
