#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVariantMap>

#include <functional>

// Turns the text form of a built-in design into a template description dictionary, the same
// tree that getDescriptionDictionary writes and initWithDescriptionDictionary reads.
//
// The text is a JSON object:
//   "name", "creationDate" (ISO 8601), "size": [w, h],
//   "background": {"type": 0..3, "color", "color2", "angle", "image", "imageType"},
//   "styles": {styleName: {"family", "size", "bold", "italic", "color", "align", "lineSpacing"}},
//   "pages": [{"elements": [element, ...]}, ...]   (tags and stacking order follow the lists)
// and an element:
//   "type", "frame": [x, y, w, h], "hidden", "style" (table style 0..4), "color" (shapes),
//   "image" (picture file), "attributes" (a style name), "text": [[styleName, text], ...],
//   "columns" and "rows": [{"id", "name", "width", "align", "visible"}, ...].
// Colours are "#rrggbb" or "#rrggbbaa". Pictures are read by the loader given.
class LMTemplateDesignReader {
public:
    using ImageLoader = std::function<QByteArray(const QString &fileName)>;

    explicit LMTemplateDesignReader(ImageLoader imageLoader);

    // The dictionary of the design; an error saying where the text stops parsing otherwise.
    Result<QVariantMap> read(const QByteArray &json) const;

private:
    QVariantMap readTemplate(const QJsonObject &design) const;
    QVariantMap readElement(const QJsonObject &element, const QJsonObject &styles,
                            qsizetype orderNr) const;

    ImageLoader m_imageLoader;
};
