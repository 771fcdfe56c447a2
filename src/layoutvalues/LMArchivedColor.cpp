#include "layoutvalues/LMArchivedColor.h"

#include "layoutvalues/LMCborEnvelope.h"

#include <QCborArray>
#include <QCborMap>

QCborValue LMArchivedColor::toCbor(const QColor &color) {
    const QColor rgb = color.toRgb();
    QCborMap map;
    map.insert(QStringLiteral("v"), version);
    map.insert(QStringLiteral("rgba"),
               QCborArray{rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF()});
    return map;
}

QColor LMArchivedColor::fromCbor(const QCborValue &value, const QColor &fallback) {
    const std::optional<QCborMap> map = LMCborEnvelope::versionedMap(value, version);
    if (!map)
        return fallback;
    const QCborArray parts = map->value(QStringLiteral("rgba")).toArray();
    if (parts.size() != 4)
        return fallback;
    float c[4];
    for (int i = 0; i < 4; ++i) {
        const QCborValue part = parts.at(i);
        if (!part.isDouble() && !part.isInteger())
            return fallback;
        const double v = part.toDouble();
        if (!(v >= 0.0 && v <= 1.0))
            return fallback;
        c[i] = float(v);
    }
    return QColor::fromRgbF(c[0], c[1], c[2], c[3]);
}

QByteArray LMArchivedColor::archive(const QColor &color) {
    return toCbor(color).toCbor();
}

QColor LMArchivedColor::unarchive(const QByteArray &data, const QColor &fallback) {
    return fromCbor(LMCborEnvelope::parse(data), fallback);
}
