#include "toolkit/OTSvgIconEngine.h"

#include "foundation/Check.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

OTSvgIconEngine::OTSvgIconEngine(const QString &resourcePath, Style style)
    : m_path(resourcePath)
    , m_style(style) {
    QFile file(resourcePath);
    BF_CHECK(file.open(QIODevice::ReadOnly), return);
    m_svg = file.readAll();
}

QColor OTSvgIconEngine::tintColor(const QPalette &palette, QIcon::Mode mode) {
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
        break;
    }
    return palette.color(QPalette::Active, QPalette::WindowText);
}

QImage OTSvgIconEngine::render(const QSize &pixelSize, QIcon::Mode mode) const {
    QImage image(pixelSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(m_svg);
    BF_CHECK(renderer.isValid(), return image);
    QPainter painter(&image);
    // Keep the drawing square and centred when asked for a wider or taller box.
    QSize side = renderer.defaultSize().scaled(pixelSize, Qt::KeepAspectRatio);
    QRectF target(QPointF((pixelSize.width() - side.width()) / 2.0,
                          (pixelSize.height() - side.height()) / 2.0),
                  side);
    renderer.render(&painter, target);
    if (m_style == Style::Symbolic) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tintColor(QGuiApplication::palette(), mode));
    } else if (mode == QIcon::Disabled) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(image.rect(), QColor(0, 0, 0, 110));
    }
    return image;
}

QPixmap OTSvgIconEngine::cachedPixmap(const QSize &pixelSize, QIcon::Mode mode) const {
    if (pixelSize.isEmpty() || m_svg.isEmpty())
        return QPixmap();
    // The tint is part of the key, so a palette change draws afresh instead of reusing.
    QRgb tint =
        m_style == Style::Symbolic ? tintColor(QGuiApplication::palette(), mode).rgba() : 0u;
    QString cacheKey = QStringLiteral("OTSvgIconEngine:%1:%2x%3:%4:%5")
                           .arg(m_path)
                           .arg(pixelSize.width())
                           .arg(pixelSize.height())
                           .arg(int(mode))
                           .arg(tint);
    QPixmap pixmap;
    if (!QPixmapCache::find(cacheKey, &pixmap)) {
        pixmap = QPixmap::fromImage(render(pixelSize, mode));
        QPixmapCache::insert(cacheKey, pixmap);
    }
    return pixmap;
}

// QIcon asks for device pixels already multiplied by the screen's scale and sets the ratio
// on the answer itself.
QPixmap OTSvgIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) {
    return cachedPixmap(size, mode);
}

void OTSvgIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) {
    qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap pixmap = cachedPixmap(rect.size() * scale, mode);
    pixmap.setDevicePixelRatio(scale);
    painter->drawPixmap(rect, pixmap);
}

QIconEngine *OTSvgIconEngine::clone() const {
    return new OTSvgIconEngine(*this);
}

QString OTSvgIconEngine::key() const {
    return QStringLiteral("OTSvgIconEngine");
}

bool OTSvgIconEngine::isNull() {
    return m_svg.isEmpty();
}
