#pragma once

#include <QByteArray>
#include <QImage>

// The stored form of a picture: CBOR map {"v": 1, "png": bytes}. Missing or damaged data, or
// bytes that do not decode as PNG, read as the null image.
class LMArchivedImage {
public:
    static constexpr int version = 1;

    static QByteArray archive(const QImage &image);
    static QImage unarchive(const QByteArray &data);

private:
    LMArchivedImage() = delete;
};
