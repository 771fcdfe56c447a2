#include "layoutvalues/LMArchivedImage.h"

#include "layoutvalues/LMCborEnvelope.h"

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
    const std::optional<QCborMap> map =
        LMCborEnvelope::versionedMap(LMCborEnvelope::parse(data), version);
    if (!map)
        return {};
    const QCborValue png = map->value(QStringLiteral("png"));
    if (!png.isByteArray())
        return {};
    QImage image;
    if (!image.loadFromData(png.toByteArray(), "PNG"))
        return {};
    return image;
}
