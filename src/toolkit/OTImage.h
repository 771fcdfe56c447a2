#pragma once

#include "toolkit/OTView.h"

// An image fitted into the view with its aspect kept, drawn from a QIcon so that an SVG is
// sharp at any scale. The over image, when set, replaces it while the pointer is on the view.
// Images say nothing to assistive technology unless given an accessible name.
class OTImage : public OTView {
    Q_OBJECT
public:
    explicit OTImage(QWidget *parent = nullptr);
    explicit OTImage(const QIcon &image, QWidget *parent = nullptr);

    QIcon image() const { return m_image; }
    void setImage(const QIcon &image);
    QIcon overImage() const { return m_overImage; }
    void setOverImage(const QIcon &image);

    // Opacity from 0 (invisible) to 1 (opaque); values outside are clamped.
    qreal alpha() const { return m_alpha; }
    void setAlpha(qreal alpha);

    // The size the view asks for; the image is scaled to whatever size it gets.
    QSize imageSize() const { return m_imageSize; }
    void setImageSize(const QSize &size);

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Graphic; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_image;
    QIcon m_overImage;
    qreal m_alpha = 1.0;
    QSize m_imageSize{32, 32};
};
