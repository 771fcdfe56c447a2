#include "layoutvalues/OTImageConversion.h"

#include <QBuffer>

QByteArray OTImageConversion::pngRepresentationFromImage(const QImage &image) {
    if (image.isNull())
        return {};
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return {};
    return data;
}

QImage OTImageConversion::imageFromPNGRepresentation(const QByteArray &data) {
    if (data.isEmpty())
        return {};
    return QImage::fromData(data, "PNG");
}
