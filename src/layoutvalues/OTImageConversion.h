#pragma once

#include <QByteArray>
#include <QImage>

// Pictures to and from their PNG bytes; kept beside the picture values, the only ones that
// need the GUI library.
class OTImageConversion {
public:
    // Empty for the null image, or when it cannot be encoded.
    static QByteArray pngRepresentationFromImage(const QImage &image);
    // The null image for empty bytes or bytes that are no PNG.
    static QImage imageFromPNGRepresentation(const QByteArray &data);

private:
    OTImageConversion() = delete;
};
