#include "invoicelayout/render/LMBackgroundPainter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QtMath>

#include <cmath>

void LMBackgroundPainter::draw(QPainter *painter, const Background &background,
                               const QRectF &page) {
    switch (background.type) {
    case Color:
        painter->fillRect(page, background.color);
        break;
    case Gradient: {
        const QLineF axis = gradientLine(page, background.gradientAngle);
        QLinearGradient gradient(axis.p1(), axis.p2());
        gradient.setColorAt(0, background.color);
        gradient.setColorAt(1, background.color2);
        painter->fillRect(page, gradient);
        break;
    }
    case Image:
        if (!background.image.isNull()) {
            painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
            painter->drawImage(imageRect(background.image.size(), page, background.imageMode),
                               background.image);
        }
        break;
    default:
        break;
    }
}

QRectF LMBackgroundPainter::imageRect(const QSizeF &image, const QRectF &page, int mode) {
    const float wr = float(image.width()) / float(page.width());
    const float hr = float(image.height()) / float(page.height());
    QRectF target = page;
    switch (mode) {
    case Center:
        return QRectF(page.x() + std::floor((page.width() - image.width()) / 2),
                      page.y() + std::floor((page.height() - image.height()) / 2), image.width(),
                      image.height());
    case ScaleToFit:
    case ScaleToFitInside: {
        // Fit covers the page; fit inside leaves it whole within the page.
        const bool alongHeight = mode == ScaleToFit ? hr > wr : wr > hr;
        if (alongHeight) {
            target.setHeight(std::floor(page.height() * hr / wr));
            target.moveTop(page.y() - std::floor((target.height() - page.height()) / 2));
        } else {
            target.setWidth(std::floor(page.width() * wr / hr));
            target.moveLeft(page.x() - std::floor((target.width() - page.width()) / 2));
        }
        return target;
    }
    default:
        return page;
    }
}

QRectF LMBackgroundPainter::logoRect(const QSizeF &image, const QRectF &box) {
    const float wr = float(image.width()) / float(box.width());
    const float hr = float(image.height()) / float(box.height());
    QRectF target = box;
    if (wr > hr) {
        target.setHeight(std::floor(box.height() * hr / wr));
        target.moveTop(box.y() - std::floor((target.height() - box.height()) / 2));
    } else {
        target.setWidth(std::floor(box.width() * wr / hr));
        target.moveLeft(box.x() - std::floor((target.width() - box.width()) / 2));
    }
    return target;
}

QLineF LMBackgroundPainter::gradientLine(const QRectF &rect, qint64 angle) {
    // Pages run downwards here, so the angle is drawn mirrored: 360 - angle.
    const double drawn = qDegreesToRadians(double(360 - angle));
    const QPointF direction(std::cos(drawn), std::sin(drawn));
    const double half =
        (std::abs(rect.width() * direction.x()) + std::abs(rect.height() * direction.y())) / 2;
    const QPointF centre = rect.center();
    return QLineF(centre - direction * half, centre + direction * half);
}
