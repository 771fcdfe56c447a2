#include "toolkit/TAItemListHeaderSettings.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

TAItemListColumn column(const char *identifier, const char *name, double width, double minWidth,
                        const char *sortKey = "") {
    TAItemListColumn c;
    c.identifier = QString::fromLatin1(identifier);
    c.name = QString::fromLatin1(name);
    c.width = width;
    c.minWidth = minWidth;
    c.sortKey = QString::fromLatin1(sortKey);
    return c;
}

QList<TAItemListColumn> definitions() {
    TAItemListColumn index = column("sortIndex", " ", 30, 30, "sortIndex");
    index.maxWidth = 30;
    index.fixed = true;
    index.alwaysVisible = true;
    TAItemListColumn total = column("total", "Total", 110, 60, "total");
    total.fixed = true;
    total.alwaysVisible = true;
    return {index,
            column("sku", "SKU", 110, 60, "sku"),
            column("quantity", "Units/Hours", 126, 120, "totalQuantity"),
            column("description", "Description", 110, 60, "name"),
            column("timer", "Timer", 44, 44),
            total};
}

QStringList identifiers(const TAItemListHeaderSettings &settings) {
    QStringList result;
    for (const TAItemListColumn &c : settings.columns())
        result.append(c.identifier);
    return result;
}

} // namespace

TEST(ItemListHeaderSettings, StoredSettingsFollowTheRunningBuild) {
    TAItemListHeaderSettings stored(definitions());
    ASSERT_TRUE(stored.moveColumn(3, 1)); // description before sku
    ASSERT_EQ(stored.resizeColumn("sku", 200), 200.0);
    ASSERT_TRUE(stored.setHidden("quantity", true));
    ASSERT_TRUE(stored.setSort("sku", false));
    const QByteArray blob = stored.archive();

    // The same build reads back exactly what it wrote.
    EXPECT_EQ(TAItemListHeaderSettings::fromArchive(blob, definitions()).columns(),
              stored.columns());

    // A later build: renamed "sku", raised the lower bound of "quantity" above the stored
    // width, changed the sort key of "description", dropped "timer" and added "discount".
    QList<TAItemListColumn> later = definitions();
    later[1].name = "Item code";
    later[2].minWidth = 140;
    later[3].sortKey = "title";
    later.removeAt(4);
    later.insert(2, column("discount", "Discount", 60, 50, "discount"));

    const auto merged = TAItemListHeaderSettings::fromArchive(blob, later);
    EXPECT_EQ(identifiers(merged),
              QStringList({"sortIndex", "description", "discount", "sku", "quantity", "total"}));
    const auto &sku = merged.columns()[merged.indexOf("sku")];
    EXPECT_EQ(sku.name, "Item code");
    EXPECT_EQ(sku.width, 200.0);
    const auto &quantity = merged.columns()[merged.indexOf("quantity")];
    EXPECT_TRUE(quantity.hidden);
    EXPECT_EQ(quantity.minWidth, 140.0);
    EXPECT_EQ(quantity.width, 140.0);
    EXPECT_EQ(merged.columns()[merged.indexOf("description")].sortKey, "title");
    EXPECT_EQ(merged.sortColumn(), "sku");
    EXPECT_EQ(merged.sortOrder(), (TAItemListHeaderSettings::SortOrder{"sku", false}));

    // A new column whose defined place lies beyond the stored list goes to the end.
    QList<TAItemListColumn> wider = definitions();
    wider.append(column("tax", "Tax", 76, 60, "tax"));
    EXPECT_EQ(identifiers(TAItemListHeaderSettings::fromArchive(blob, wider)).last(), "tax");
}

TEST(ItemListHeaderSettings, DamagedBytesReadAsTheDefinitions) {
    const QList<TAItemListColumn> defaults = definitions();
    for (const QByteArray &bad : {QByteArray(), QByteArray("not cbor"), QByteArray("\xa0", 1),
                                  QByteArray::fromHex("a1617602")}) // map with another version
        EXPECT_EQ(TAItemListHeaderSettings::fromArchive(bad, defaults).columns(), defaults);

    TAItemListHeaderSettings stored(defaults);
    stored.setSort("quantity", true);
    stored.resizeColumn("sku", 300);
    const QByteArray blob = stored.archive();
    for (qsizetype length = 0; length < blob.size(); ++length) {
        const auto read = TAItemListHeaderSettings::fromArchive(blob.left(length), defaults);
        EXPECT_EQ(read.columns().size(), defaults.size()) << "truncated to " << length;
    }

    // Whatever the damage, every column of the build is there once, within its bounds.
    QRandomGenerator random(20261123);
    for (int round = 0; round < 4000; ++round) {
        QByteArray damaged = blob;
        for (int flips = random.bounded(1, 6); flips > 0; --flips)
            damaged[random.bounded(damaged.size())] = char(random.bounded(256));
        const auto read = TAItemListHeaderSettings::fromArchive(damaged, defaults);
        ASSERT_EQ(read.columns().size(), defaults.size()) << damaged.toHex().constData();
        int sorts = 0;
        for (const TAItemListColumn &c : read.columns()) {
            ASSERT_GE(read.indexOf(c.identifier), 0);
            ASSERT_GE(c.width, c.minWidth) << c.identifier.toStdString();
            ASSERT_TRUE(!c.maxWidth || c.width <= *c.maxWidth);
            ASSERT_FALSE(c.alwaysVisible && c.hidden);
            sorts += c.sortAscending ? 1 : 0;
        }
        ASSERT_LE(sorts, 1);
    }
}

TEST(ItemListHeaderSettings, EditsKeepTheColumnRules) {
    TAItemListHeaderSettings settings(definitions());

    // Widths stay within the bounds, also when read from a file written with smaller ones.
    EXPECT_EQ(settings.resizeColumn("quantity", 10), 120.0);
    EXPECT_EQ(settings.resizeColumn("sortIndex", 90), 30.0);
    EXPECT_EQ(settings.resizeColumn("missing", 90), std::nullopt);
    QList<TAItemListColumn> narrow = definitions();
    narrow[1].minWidth = 10;
    TAItemListHeaderSettings older(narrow);
    older.resizeColumn("sku", 20);
    EXPECT_EQ(
        TAItemListHeaderSettings::fromArchive(older.archive(), definitions()).columns()[1].width,
        60.0);

    // Fixed columns hold their place at the edges.
    EXPECT_FALSE(settings.moveColumn(0, 2));
    EXPECT_FALSE(settings.moveColumn(2, 0));
    EXPECT_FALSE(settings.moveColumn(1, 5));
    EXPECT_FALSE(settings.moveColumn(1, 6));
    EXPECT_TRUE(settings.moveColumn(1, 4));
    EXPECT_EQ(identifiers(settings),
              QStringList({"sortIndex", "quantity", "description", "timer", "sku", "total"}));

    // Always-visible columns are neither offered in the menu nor hidden, even by a file.
    EXPECT_EQ(settings.menuColumns(), QStringList({"quantity", "description", "timer", "sku"}));
    EXPECT_FALSE(settings.setHidden("total", true));
    EXPECT_TRUE(settings.setHidden("total", false));
    QList<TAItemListColumn> optionalTotal = definitions();
    optionalTotal.last().alwaysVisible = false;
    TAItemListHeaderSettings hiddenTotal(optionalTotal);
    ASSERT_TRUE(hiddenTotal.setHidden("total", true));
    EXPECT_FALSE(TAItemListHeaderSettings::fromArchive(hiddenTotal.archive(), definitions())
                     .columns()
                     .last()
                     .hidden);

    // One sort column at a time, only one that sorts.
    EXPECT_FALSE(settings.setSort("timer", true));
    EXPECT_TRUE(settings.setSort("sku", true));
    EXPECT_TRUE(settings.setSort("quantity", false));
    EXPECT_EQ(settings.sortOrder(), (TAItemListHeaderSettings::SortOrder{"totalQuantity", false}));
    const auto restored = TAItemListHeaderSettings::fromArchive(settings.archive(), definitions());
    EXPECT_EQ(restored.sortColumn(), "quantity");
    EXPECT_EQ(restored.sortOrder(), settings.sortOrder());
    settings.clearSort();
    EXPECT_EQ(settings.sortOrder(), std::nullopt);
}
