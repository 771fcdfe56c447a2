#pragma once

#include <QByteArray>
#include <QCborValue>
#include <QColor>
#include <QString>

#include <optional>

enum class LMTextAlignment { Left, Right, Center, Justified };

struct LMFontSpec {
    QString family;
    double size = 12;
    bool bold = false;
    bool italic = false;
    bool operator==(const LMFontSpec &) const = default;
};

struct LMParagraphStyle {
    LMTextAlignment alignment = LMTextAlignment::Left;
    double lineSpacing = 0; // extra points between lines
    bool operator==(const LMParagraphStyle &) const = default;
};

// A text attribute dictionary with its three keys: font, colour and paragraph style. A key
// that is absent stays absent, so that merging one dictionary over another lets the upper one
// win only where it has a key.
//
// Stored form: CBOR map {"v": 1, "font": {"family", "size", "bold", "italic"},
// "color": <archived colour map>, "paragraph": {"align": "left"|"right"|"center"|"justified",
// "lineSpacing"}}, each of the three optional. Damaged data reads as the empty dictionary; a
// damaged key reads as absent.
class LMTextAttributes {
public:
    static constexpr int version = 1;

    std::optional<LMFontSpec> font;
    std::optional<QColor> color;
    std::optional<LMParagraphStyle> paragraph;

    bool isEmpty() const { return !font && !color && !paragraph; }
    bool operator==(const LMTextAttributes &) const = default;

    static QString systemFontFamily();
    // The system font of size 12 and nothing else.
    static LMTextAttributes systemFontAttributes();
    static LMTextAttributes withAlignment(LMTextAlignment alignment);

    // Keys of `over` replace those here.
    LMTextAttributes mergedWith(const LMTextAttributes &over) const;
    // The font made bold; the system font of size 12 when there was none.
    LMTextAttributes withBoldFont() const;

    QCborValue toCbor() const;
    static LMTextAttributes fromCbor(const QCborValue &value);
    QByteArray archive() const;
    static LMTextAttributes unarchive(const QByteArray &data);

    static QString alignmentName(LMTextAlignment alignment);
    static std::optional<LMTextAlignment> alignmentFromName(const QString &name);
};
