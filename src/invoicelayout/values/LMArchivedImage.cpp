#include "invoicelayout/values/LMArchivedImage.h"

#include <QBuffer>
#include <QCborMap>
#include <QCborValue>

QByteArray LMArchivedImage::archive(const QImage &image) {
    if (image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return {};
    QCborMap map;
    map.insert(QStringLiteral("v"), version);
    map.insert(QStringLiteral("png"), png);
    return QCborValue(map).toCbor();
}

QImage LMArchivedImage::unarchive(const QByteArray &data) {
    if (data.isEmpty())
        return {};
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError || !value.isMap())
        return {};
    const QCborMap map = value.toMap();
    if (map.value(QStringLiteral("v")).toInteger(-1) != version)
        return {};
    const QCborValue png = map.value(QStringLiteral("png"));
    if (!png.isByteArray())
        return {};
    QImage image;
    if (!image.loadFromData(png.toByteArray(), "PNG"))
        return {};
    return image;
}
