#include "layoutvalues/LMTextAttributes.h"

#include "layoutvalues/LMCborEnvelope.h"

#include "layoutvalues/LMArchivedColor.h"

#include <QCborMap>

namespace {

const QString kVersion = QStringLiteral("v");
const QString kFont = QStringLiteral("font");
const QString kColor = QStringLiteral("color");
const QString kParagraph = QStringLiteral("paragraph");

bool isNumber(const QCborValue &value) {
    return value.isDouble() || value.isInteger();
}

std::optional<LMFontSpec> fontFromCbor(const QCborValue &value) {
    if (!value.isMap())
        return std::nullopt;
    const QCborMap map = value.toMap();
    const QCborValue family = map.value(QStringLiteral("family"));
    const QCborValue size = map.value(QStringLiteral("size"));
    if (!family.isString() || !isNumber(size) || !(size.toDouble() > 0 && size.toDouble() < 1000))
        return std::nullopt;
    LMFontSpec font;
    font.family = family.toString();
    font.size = size.toDouble();
    font.bold = map.value(QStringLiteral("bold")).toBool(false);
    font.italic = map.value(QStringLiteral("italic")).toBool(false);
    return font;
}

std::optional<LMParagraphStyle> paragraphFromCbor(const QCborValue &value) {
    if (!value.isMap())
        return std::nullopt;
    const QCborMap map = value.toMap();
    const auto alignment =
        LMTextAttributes::alignmentFromName(map.value(QStringLiteral("align")).toString());
    if (!alignment)
        return std::nullopt;
    LMParagraphStyle style;
    style.alignment = *alignment;
    const QCborValue spacing = map.value(QStringLiteral("lineSpacing"));
    if (isNumber(spacing) && spacing.toDouble() >= 0 && spacing.toDouble() < 1000)
        style.lineSpacing = spacing.toDouble();
    return style;
}

} // namespace

QString LMTextAttributes::systemFontFamily() {
    return QStringLiteral("Sans Serif");
}

LMTextAttributes LMTextAttributes::systemFontAttributes() {
    LMTextAttributes attributes;
    attributes.font = LMFontSpec{systemFontFamily(), 12, false, false};
    return attributes;
}

LMTextAttributes LMTextAttributes::withAlignment(LMTextAlignment alignment) {
    LMTextAttributes attributes;
    attributes.paragraph = LMParagraphStyle{alignment, 0};
    return attributes;
}

LMTextAttributes LMTextAttributes::mergedWith(const LMTextAttributes &over) const {
    LMTextAttributes out = *this;
    if (over.font)
        out.font = over.font;
    if (over.color)
        out.color = over.color;
    if (over.paragraph)
        out.paragraph = over.paragraph;
    return out;
}

LMTextAttributes LMTextAttributes::withBoldFont() const {
    LMTextAttributes out = *this;
    if (!out.font)
        out.font = LMFontSpec{systemFontFamily(), 12, false, false};
    out.font->bold = true;
    return out;
}

QString LMTextAttributes::alignmentName(LMTextAlignment alignment) {
    switch (alignment) {
    case LMTextAlignment::Right:
        return QStringLiteral("right");
    case LMTextAlignment::Center:
        return QStringLiteral("center");
    case LMTextAlignment::Justified:
        return QStringLiteral("justified");
    case LMTextAlignment::Left:
        break;
    }
    return QStringLiteral("left");
}

std::optional<LMTextAlignment> LMTextAttributes::alignmentFromName(const QString &name) {
    for (LMTextAlignment a : {LMTextAlignment::Left, LMTextAlignment::Right,
                              LMTextAlignment::Center, LMTextAlignment::Justified})
        if (alignmentName(a) == name)
            return a;
    return std::nullopt;
}

QCborValue LMTextAttributes::toCbor() const {
    QCborMap map;
    map.insert(kVersion, version);
    if (font) {
        QCborMap f;
        f.insert(QStringLiteral("family"), font->family);
        f.insert(QStringLiteral("size"), font->size);
        f.insert(QStringLiteral("bold"), font->bold);
        f.insert(QStringLiteral("italic"), font->italic);
        map.insert(kFont, f);
    }
    if (color)
        map.insert(kColor, LMArchivedColor::toCbor(*color));
    if (paragraph) {
        QCborMap p;
        p.insert(QStringLiteral("align"), alignmentName(paragraph->alignment));
        p.insert(QStringLiteral("lineSpacing"), paragraph->lineSpacing);
        map.insert(kParagraph, p);
    }
    return map;
}

LMTextAttributes LMTextAttributes::fromCbor(const QCborValue &value) {
    LMTextAttributes out;
    const std::optional<QCborMap> found = LMCborEnvelope::versionedMap(value, version);
    if (!found)
        return out;
    const QCborMap &map = *found;
    out.font = fontFromCbor(map.value(kFont));
    if (map.contains(kColor)) {
        const QColor invalid;
        const QColor color = LMArchivedColor::fromCbor(map.value(kColor), invalid);
        if (color.isValid())
            out.color = color;
    }
    out.paragraph = paragraphFromCbor(map.value(kParagraph));
    return out;
}

QByteArray LMTextAttributes::archive() const {
    return toCbor().toCbor();
}

LMTextAttributes LMTextAttributes::unarchive(const QByteArray &data) {
    return fromCbor(LMCborEnvelope::parse(data));
}
