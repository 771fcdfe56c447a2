#include "toolkit/OTImage.h"

#include <QPainter>

OTImage::OTImage(QWidget *parent)
    : OTView(parent) {}

OTImage::OTImage(const QIcon &image, QWidget *parent)
    : OTView(parent)
    , m_image(image) {}

void OTImage::setImage(const QIcon &image) {
    m_image = image;
    update();
}

void OTImage::setOverImage(const QIcon &image) {
    m_overImage = image;
    update();
}

void OTImage::setAlpha(qreal alpha) {
    m_alpha = qBound(0.0, alpha, 1.0);
    update();
}

void OTImage::setImageSize(const QSize &size) {
    m_imageSize = size;
    updateGeometry();
}

QSize OTImage::sizeHint() const {
    const QMargins margins = contentsMargins();
    return m_imageSize.grownBy(margins);
}

void OTImage::paintEvent(QPaintEvent *event) {
    OTView::paintEvent(event);
    const QIcon &shown = isHovered() && !m_overImage.isNull() ? m_overImage : m_image;
    if (shown.isNull() || m_alpha <= 0.0)
        return;
    QPainter painter(this);
    painter.setOpacity(m_alpha);
    shown.paint(&painter, contentsRect(), Qt::AlignCenter,
                isEnabled() ? QIcon::Normal : QIcon::Disabled);
}
