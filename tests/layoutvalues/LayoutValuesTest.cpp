#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMArchivedImage.h"
#include "layoutvalues/LMAttributedString.h"
#include "layoutvalues/LMGeometry.h"
#include "layoutvalues/LMTextAttributes.h"
#include "layoutvalues/OTImageConversion.h"

#include <QCborArray>
#include <QCborMap>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

LMTextAttributes boldRed() {
    LMTextAttributes a;
    a.font = LMFontSpec{QStringLiteral("Serif"), 14, true, false};
    a.color = QColor(200, 0, 0);
    a.paragraph = LMParagraphStyle{LMTextAlignment::Center, 3};
    return a;
}

// Every prefix and a batch of random byte flips of a good archive.
QList<QByteArray> damagedForms(const QByteArray &good) {
    QList<QByteArray> out;
    for (qsizetype n = 0; n < good.size(); ++n)
        out.append(good.left(n));
    QRandomGenerator random(7);
    for (int i = 0; i < 300; ++i) {
        QByteArray bad = good;
        bad[random.bounded(int(bad.size()))] = char(random.bounded(256));
        out.append(bad);
    }
    out.append(QByteArray("not cbor at all"));
    return out;
}

} // namespace

TEST(LayoutValues, ArchivedValuesRoundTripAndReadDamageAsDefaults) {
    const QColor fallback(1, 2, 3);
    const QColor colour = QColor::fromRgbF(0.25f, 0.5f, 0.75f, 0.5f);
    EXPECT_EQ(LMArchivedColor::unarchive(LMArchivedColor::archive(colour), fallback), colour);
    for (const QByteArray &bad : damagedForms(LMArchivedColor::archive(colour))) {
        const QColor read = LMArchivedColor::unarchive(bad, fallback);
        EXPECT_TRUE(read.isValid());
    }
    // A well-formed map of another version or with components out of range is not a colour.
    QCborMap future{{QStringLiteral("v"), 2}, {QStringLiteral("rgba"), QCborArray{0, 0, 0, 1}}};
    EXPECT_EQ(LMArchivedColor::unarchive(QCborValue(future).toCbor(), fallback), fallback);
    QCborMap wild{{QStringLiteral("v"), 1}, {QStringLiteral("rgba"), QCborArray{0, 7, 0, 1}}};
    EXPECT_EQ(LMArchivedColor::unarchive(QCborValue(wild).toCbor(), fallback), fallback);

    LMAttributedString text(QStringLiteral("Invoice "), boldRed());
    text.append(QStringLiteral("[INVOICE NUMBER]"), LMTextAttributes::systemFontAttributes());
    EXPECT_EQ(LMAttributedString::unarchive(text.archive()), text);
    for (const QByteArray &bad : damagedForms(text.archive()))
        (void)LMAttributedString::unarchive(bad).string(); // never crashes
    EXPECT_TRUE(LMAttributedString::unarchive(QByteArray("\xa1\x61v\x09", 4)).isEmpty());

    EXPECT_EQ(LMTextAttributes::unarchive(boldRed().archive()), boldRed());
    for (const QByteArray &bad : damagedForms(boldRed().archive()))
        (void)LMTextAttributes::unarchive(bad).mergedWith(boldRed());
    EXPECT_TRUE(LMTextAttributes::unarchive(QByteArray("\xff\x00", 2)).isEmpty());

    QImage image(4, 3, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    const QByteArray archivedImage = LMArchivedImage::archive(image);
    EXPECT_EQ(LMArchivedImage::unarchive(archivedImage).size(), QSize(4, 3));
    for (const QByteArray &bad : damagedForms(archivedImage.left(60)))
        EXPECT_TRUE(LMArchivedImage::unarchive(bad).isNull());
}

TEST(LayoutValues, MergingKeepsTheLowerKeysTheUpperLacks) {
    const LMTextAttributes column = LMTextAttributes::withAlignment(LMTextAlignment::Right);
    LMTextAttributes element = LMTextAttributes::systemFontAttributes();
    element.color = Qt::darkGreen;
    const LMTextAttributes merged = column.mergedWith(element);
    EXPECT_EQ(merged.paragraph->alignment, LMTextAlignment::Right);
    EXPECT_EQ(merged.color, QColor(Qt::darkGreen));
    EXPECT_FALSE(merged.font->bold);
    EXPECT_TRUE(merged.withBoldFont().font->bold);
    // A bold variant with no font at all starts from the system font of size 12.
    EXPECT_EQ(column.withBoldFont().font->size, 12);
    // An element with its own paragraph style overrides the column's.
    element.paragraph = LMParagraphStyle{LMTextAlignment::Center, 0};
    EXPECT_EQ(column.mergedWith(element).paragraph->alignment, LMTextAlignment::Center);
}

TEST(LayoutValues, ReplacingKeepsTheRunsAround) {
    LMAttributedString text(QStringLiteral("Due: "), LMTextAttributes::systemFontAttributes());
    text.append(QStringLiteral("[DUE DATE] end"), boldRed());
    text.replaceCharacters(5, 10, QStringLiteral("2026-01-31"), text.attributesAtIndex(5));
    EXPECT_EQ(text.string(), QStringLiteral("Due: 2026-01-31 end"));
    EXPECT_EQ(text.attributesAtIndex(6), boldRed());
    EXPECT_EQ(text.attributesAtIndex(0), LMTextAttributes::systemFontAttributes());
    text.replaceCharacters(0, 5, QString(), {});
    EXPECT_EQ(text.runs().size(), 1);
    text.replaceCharacters(100, 3, QStringLiteral("!"), boldRed()); // clamped to the end
    EXPECT_EQ(text.string(), QStringLiteral("2026-01-31 end!"));
}

TEST(LayoutValues, RectangleAndSizeText) {
    const QRectF rect(40, 332.5, 515, 250);
    EXPECT_EQ(LMGeometry::stringFromRect(rect), QStringLiteral("{{40, 332.5}, {515, 250}}"));
    EXPECT_EQ(LMGeometry::rectFromString(LMGeometry::stringFromRect(rect)), rect);
    EXPECT_EQ(LMGeometry::sizeFromString(QStringLiteral("{612, 792}")), QSizeF(612, 792));
    EXPECT_EQ(LMGeometry::rectFromString(QStringLiteral("{{1, 2}, {3}}")), QRectF());
    EXPECT_EQ(LMGeometry::rectFromString(QStringLiteral("{{-4, 2}, {3, 1e2}}")),
              QRectF(-4, 2, 3, 100));
}

TEST(OTImageConversion, PngRoundTrip) {
    QImage image(4, 3, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setPixel(1, 2, qRgba(10, 200, 30, 255));
    const QByteArray png = OTImageConversion::pngRepresentationFromImage(image);
    ASSERT_TRUE(png.startsWith("\x89PNG"));
    const QImage back = OTImageConversion::imageFromPNGRepresentation(png);
    EXPECT_EQ(back.size(), image.size());
    EXPECT_EQ(back.pixel(1, 2), image.pixel(1, 2));
    EXPECT_TRUE(OTImageConversion::pngRepresentationFromImage(QImage()).isNull());
    EXPECT_TRUE(OTImageConversion::imageFromPNGRepresentation(QByteArray("nope")).isNull());
}
