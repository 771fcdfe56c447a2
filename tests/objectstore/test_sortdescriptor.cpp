#include "KeyValueTestObject.h"

#include "foundation/money/Decimal.h"
#include "objectstore/SortDescriptor.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <deque>
#include <random>

namespace {

class Sorting : public ::testing::Test {
protected:
    KeyValueTestObject &add(const QVariant &name, const QVariant &rank = QVariant()) {
        KeyValueTestObject &object = storage.emplace_back();
        object.set("name", name).set("rank", rank).set("id", int(storage.size()));
        objects.append(&object);
        return object;
    }

    QVariantList sortedValues(const QList<SortDescriptor> &descriptors, const char *key) {
        QList<KeyValueTestObject *> sorted = objects;
        SortDescriptor::sort(sorted, descriptors);
        QVariantList values;
        for (KeyValueTestObject *object : sorted)
            values.append(object->valueForKey(key));
        return values;
    }

    std::deque<KeyValueTestObject> storage;
    QList<KeyValueTestObject *> objects;
};

TEST_F(Sorting, TextComparisonsDifferInCaseAndNumbers) {
    for (const char *name : {"item 2", "Item 10", "Item 1", "apple", "Banana"})
        add(name);
    using C = SortDescriptor::Comparison;
    EXPECT_EQ(sortedValues({SortDescriptor("name")}, "name"),
              (QVariantList{"Banana", "Item 1", "Item 10", "apple", "item 2"}));
    EXPECT_EQ(sortedValues({SortDescriptor("name", true, C::CaseInsensitive)}, "name"),
              (QVariantList{"apple", "Banana", "Item 1", "Item 10", "item 2"}));
    EXPECT_EQ(sortedValues({SortDescriptor("name", true, C::LocalizedStandard)}, "name"),
              (QVariantList{"apple", "Banana", "Item 1", "item 2", "Item 10"}));
    EXPECT_EQ(sortedValues({SortDescriptor("name", false, C::LocalizedStandard)}, "name"),
              (QVariantList{"Item 10", "item 2", "Item 1", "Banana", "apple"}));

    // compare() agrees with the prepared keys that sort() uses.
    const SortDescriptor natural("name", true, C::LocalizedStandard);
    EXPECT_LT(natural.compare(*objects[0], *objects[1]), 0); // item 2 < Item 10
    EXPECT_GT(natural.reversed().compare(*objects[0], *objects[1]), 0);
    EXPECT_EQ(SortDescriptor("name", true, C::CaseInsensitive).compare(*objects[2], *objects[2]),
              0);
}

TEST_F(Sorting, NullsComeFirstAndNumbersCompareByValueAcrossTypes) {
    add("a", 2.5);
    add("b", QVariant());
    add("c", QVariant::fromValue(Decimal::fromString(u"2.25")));
    add("d", 10);
    add("e", true);
    add("f", "text ranks after numbers");
    add("g", KeyValueTestObject::nullObject());
    EXPECT_EQ(sortedValues({SortDescriptor("rank")}, "name"),
              (QVariantList{"b", "g", "e", "c", "a", "d", "f"}));
    EXPECT_EQ(sortedValues({SortDescriptor("rank", false)}, "name"),
              (QVariantList{"f", "d", "a", "c", "e", "b", "g"}));

    // Dates by instant, and a key path through a link; a null link reads as NULL.
    storage.clear();
    objects.clear();
    KeyValueTestObject late, early;
    late.set("date", QDateTime(QDate(2024, 1, 2), QTime(0, 0), QTimeZone::utc()));
    early.set("date", QDateTime(QDate(2024, 1, 2), QTime(0, 30), QTimeZone(3600)));
    add("late").set("invoice", KeyValueTestObject::asVariant(&late));
    add("none");
    add("early").set("invoice", KeyValueTestObject::asVariant(&early));
    EXPECT_EQ(sortedValues({SortDescriptor("invoice.date")}, "name"),
              (QVariantList{"none", "early", "late"}));
}

TEST_F(Sorting, LaterDescriptorsBreakTiesAndEqualKeysKeepTheirOrder) {
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i)
        add(QStringLiteral("n%1").arg(random() % 5), int(random() % 3));
    QList<KeyValueTestObject *> sorted = objects;
    SortDescriptor::sort(sorted, {SortDescriptor("rank", false), SortDescriptor("name")});
    for (qsizetype i = 1; i < sorted.size(); ++i) {
        const KeyValueTestObject &a = *sorted[i - 1], &b = *sorted[i];
        const int rankA = a.valueForKey("rank").toInt(), rankB = b.valueForKey("rank").toInt();
        ASSERT_GE(rankA, rankB);
        if (rankA != rankB)
            continue;
        const QString nameA = a.valueForKey("name").toString();
        const QString nameB = b.valueForKey("name").toString();
        ASSERT_LE(nameA, nameB);
        if (nameA == nameB) {
            ASSERT_LT(a.valueForKey("id").toInt(), b.valueForKey("id").toInt()) << "stable";
        }
    }
}

TEST_F(Sorting, TwentyThousandNamesSortInNaturalOrder) {
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i)
        add(QStringLiteral("Client %1 Müller").arg(random() % 100000));
    QList<KeyValueTestObject *> sorted = objects;
    const SortDescriptor natural("name", true, SortDescriptor::Comparison::LocalizedStandard);
    SortDescriptor::sort(sorted, {natural});
    for (qsizetype i = 1; i < sorted.size(); i += 97)
        ASSERT_LE(natural.compare(*sorted[i - 1], *sorted[i]), 0);
}

} // namespace
