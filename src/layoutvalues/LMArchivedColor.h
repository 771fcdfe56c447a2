#pragma once

#include <QByteArray>
#include <QCborValue>
#include <QColor>

// The stored form of a colour: CBOR map {"v": 1, "rgba": [r, g, b, a]} with components from
// 0 to 1 in sRGB. Anything else (missing, damaged, another version, out-of-range or
// non-numeric components) reads as the fallback the caller names.
class LMArchivedColor {
public:
    static constexpr int version = 1;

    static QByteArray archive(const QColor &color);
    static QColor unarchive(const QByteArray &data, const QColor &fallback);

    // The same map inside other archived values.
    static QCborValue toCbor(const QColor &color);
    static QColor fromCbor(const QCborValue &value, const QColor &fallback);

private:
    LMArchivedColor() = delete;
};
