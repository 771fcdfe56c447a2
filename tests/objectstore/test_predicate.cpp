#include "KeyValueTestObject.h"

#include "foundation/money/Decimal.h"
#include "objectstore/Predicate.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <deque>
#include <random>

namespace {

QDateTime utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
              int ms = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, ms), QTimeZone::utc());
}

QVariant obj(const KeyValueTestObject &object) {
    return KeyValueTestObject::asVariant(&object);
}

Predicate parsed(const QString &format, const QVariantList &arguments = {}) {
    Result<Predicate> result = Predicate::parse(format, arguments);
    EXPECT_TRUE(result.ok()) << format.toStdString() << ": "
                             << (result.ok() ? "" : result.error().message.toStdString());
    return result.ok() ? result.value() : Predicate::falsePredicate();
}

// A few clients, invoices and timers linked the way the application links them.
class PredicateWorld : public ::testing::Test {
protected:
    void SetUp() override {
        acme.set("name", "acme").set("displayName", "Acme Zürich GmbH");
        bolt.set("name", "bolt").set("displayName", "Bolt & Co");
        addInvoice("i1", 1, obj(acme), false, utc(2024, 1, 1), utc(2024, 1, 31), "INV-001")
            .set("purchaseOrder", "PO-77")
            .set("isOverdue", false);
        addInvoice("i2", 2, obj(acme), true, utc(2024, 1, 31, 23, 59, 59, 999), QVariant(),
                   "INV-002")
            .set("isOverdue", true);
        addInvoice("i3", 2, obj(bolt), false, utc(2024, 2, 1), utc(2024, 2, 15), "inv-003")
            .set("purchaseOrder", "Zurich-9")
            .set("isOverdue", false);
        addInvoice("i4", 3, KeyValueTestObject::nullObject(), false, utc(2023, 12, 31),
                   utc(2024, 1, 1), "INV-004")
            .set("isOverdue", false);
        addTimer("t1", obj(acme), QVariant());
        addTimer("t2", QVariant(), KeyValueTestObject::nullObject());
        addTimer("t3", QVariant(), obj(*invoices.front()));
    }

    KeyValueTestObject &addInvoice(const char *name, int status, const QVariant &client,
                                   bool archived, const QDateTime &date, const QVariant &dueDate,
                                   const char *identification) {
        KeyValueTestObject &invoice = storage.emplace_back();
        invoice.set("name", name).set("status", status).set("client", client);
        invoice.set("archived", archived).set("date", date).set("dueDate", dueDate);
        invoice.set("identification", identification);
        invoices.append(&invoice);
        return invoice;
    }

    void addTimer(const char *name, const QVariant &project, const QVariant &invoice) {
        KeyValueTestObject &timer = storage.emplace_back();
        timer.set("name", name).set("project", project).set("invoice", invoice);
        timers.append(&timer);
    }

    static QStringList names(const Predicate &predicate,
                             const QList<KeyValueTestObject *> &objects) {
        QStringList result;
        for (KeyValueTestObject *object : predicate.filtered(objects))
            result.append(object->valueForKey("name").toString());
        return result;
    }

    KeyValueTestObject acme, bolt;
    std::deque<KeyValueTestObject> storage;
    QList<KeyValueTestObject *> invoices, timers;
};

TEST_F(PredicateWorld, QueriesBuiltInCodeSelectTheRightObjects) {
    const QVariant none;
    struct Case {
        QString format;
        QVariantList arguments;
        QStringList expected;
    };
    const QList<Case> invoiceCases = {
        {"client == %@", {obj(acme)}, {"i1", "i2"}},
        {"client == %@", {none}, {"i4"}},
        {"status == %@", {2}, {"i2", "i3"}},
        {"status == %@ && client == %@", {2, obj(acme)}, {"i2"}},
        {"status == %@ && client == %@", {3, KeyValueTestObject::nullObject()}, {"i4"}},
        {"status == %@ && client == %@", {2, none}, {}},
        {"SELF.date BETWEEN {%@, %@}", {utc(2024, 1, 1), utc(2024, 2, 1)}, {"i1", "i2", "i3"}},
        {"SELF.dueDate BETWEEN {%@, %@}", {utc(2024, 1, 1), utc(2024, 1, 31)}, {"i1", "i4"}},
        {"dueDate > %@", {utc(2024, 1, 1)}, {"i1", "i3"}},
        {"dueDate < %@", {utc(2024, 2, 1)}, {"i1", "i4"}},
        {"date BETWEEN {%@,%@} AND (status == %@ OR status == %@)",
         {utc(2023, 1, 1), utc(2024, 12, 31), 2, 3},
         {"i2", "i3", "i4"}},
        {"isOverdue == YES", {}, {"i2"}},
        {"isOverdue == NO", {}, {"i1", "i3", "i4"}},
        {"identification CONTAINS[cd] %@ OR client.displayName CONTAINS[cd] %@ OR "
         "purchaseOrder CONTAINS[cd] %@",
         {"zur", "zur", "zur"},
         {"i1", "i2", "i3"}},
        {"client.displayName CONTAINS[cd] %@", {"co"}, {"i3"}},
        {"identification CONTAINS[cd] %@", {"INV-00"}, {"i1", "i2", "i3", "i4"}},
        {"purchaseOrder CONTAINS[cd] %@", {"po"}, {"i1"}},
        {"title CONTAINS[cd] 'inv'", {}, {}},
    };
    for (const Case &c : invoiceCases)
        EXPECT_EQ(names(parsed(c.format, c.arguments), invoices), c.expected)
            << c.format.toStdString();

    const QList<Case> timerCases = {
        {"invoice == %@", {none}, {"t1", "t2"}},
        {"invoice = %@", {KeyValueTestObject::nullObject()}, {"t1", "t2"}},
        {"invoice != %@", {none}, {"t3"}},
        {"SELF.invoice == NULL", {}, {"t1", "t2"}},
        {"project == %@ && invoice == %@", {none, none}, {"t2"}},
        {"project == %@ && invoice == %@", {obj(acme), none}, {"t1"}},
    };
    for (const Case &c : timerCases)
        EXPECT_EQ(names(parsed(c.format, c.arguments), timers), c.expected)
            << c.format.toStdString();
}

TEST_F(PredicateWorld, NamedTemplatesTakeTheirVariablesLater) {
    const Predicate archived = parsed("archived == $param1");
    EXPECT_EQ(names(archived.withSubstitutionVariables({{"param1", true}}), invoices),
              QStringList{"i2"});
    EXPECT_EQ(names(archived.withSubstitutionVariables({{"param1", false}}), invoices),
              (QStringList{"i1", "i3", "i4"}));
    EXPECT_TRUE(names(archived, invoices).isEmpty()) << "an unfilled variable reads as NULL";

    const Predicate byClient = parsed("archived == $param1 AND status == $param2 AND "
                                      "client == $param3");
    EXPECT_EQ(names(byClient.withSubstitutionVariables(
                        {{"param1", false}, {"param2", 2}, {"param3", obj(bolt)}}),
                    invoices),
              QStringList{"i3"});
    EXPECT_EQ(parsed("archived == $param1 AND client == $param2")
                  .withSubstitutionVariables({{"param1", false}})
                  .predicateFormat(),
              "archived == FALSE AND client == $param2");

    KeyValueTestObject euro, dollar, rate;
    euro.set("isDefault", true);
    rate.set("currFrom", obj(euro)).set("currTo", obj(dollar));
    EXPECT_TRUE(parsed("isDefault == TRUE").evaluate(euro));
    EXPECT_FALSE(parsed("isDefault == TRUE").evaluate(dollar));
    const Predicate search = parsed("currFrom == $param1 AND currTo == $param2");
    EXPECT_TRUE(search.withSubstitutionVariables({{"param1", obj(euro)}, {"param2", obj(dollar)}})
                    .evaluate(rate));
    EXPECT_FALSE(search.withSubstitutionVariables({{"param1", obj(dollar)}, {"param2", obj(euro)}})
                     .evaluate(rate));
}

TEST(Predicate, TextModifiersFoldCaseAndDiacritics) {
    const QString zurich = QStringLiteral("Zürich");
    const QString decomposed = QStringLiteral("Zu\u0308rich");
    auto test = [](const QString &format, const QVariant &self, const QVariant &argument) {
        return parsed(format, {argument}).evaluateValue(self);
    };
    EXPECT_TRUE(test("SELF CONTAINS[cd] %@", zurich, "zur"));
    EXPECT_TRUE(test("SELF CONTAINS[cd] %@", decomposed, "ZÜR"));
    EXPECT_TRUE(test("SELF CONTAINS[c] %@", zurich, "zür"));
    EXPECT_FALSE(test("SELF CONTAINS[c] %@", zurich, "zur"));
    EXPECT_TRUE(test("SELF CONTAINS[d] %@", zurich, "Zur"));
    EXPECT_FALSE(test("SELF CONTAINS[d] %@", zurich, "zur"));
    EXPECT_FALSE(test("SELF CONTAINS %@", zurich, "zür"));
    EXPECT_TRUE(test("SELF BEGINSWITH[cd] %@", zurich, "ZU"));
    EXPECT_TRUE(test("SELF ENDSWITH[c] %@", zurich, "RICH"));
    EXPECT_FALSE(test("SELF ENDSWITH %@", zurich, "RICH"));
    EXPECT_TRUE(test("SELF ==[cd] %@", zurich, "zurich"));
    EXPECT_TRUE(test("SELF LIKE[cd] %@", zurich, "z?r*h"));
    EXPECT_FALSE(test("SELF LIKE %@", zurich, "z*"));
    EXPECT_TRUE(test("SELF <[c] %@", "apple", "BANANA"));
    EXPECT_FALSE(test("SELF < %@", "apple", "BANANA"));
    EXPECT_TRUE(test("SELF IN[c] %@", "ZÜR", zurich));

    // The time field's partial-entry pattern: minutes start with 0 to 5.
    const QString pattern =
        "([0-9]*|[0-9]*:{0,1}|[0-9]*:{0,1}[0-9]{1}|[0-9]*:{0,1}[0-5]{1}[0-9]{1})";
    for (const char *good : {"", "12", "12:", "12:5", "120:59", ":3"})
        EXPECT_TRUE(test("SELF MATCHES %@", QString(good), pattern)) << good;
    for (const char *bad : {"12:60", "1:2:3", "ab", "12:5 "})
        EXPECT_FALSE(test("SELF MATCHES %@", QString(bad), pattern)) << bad;
}

TEST(Predicate, EscapedTextReadsBackInsideEitherQuote) {
    EXPECT_EQ(Predicate::formattedPredicateString(R"(a\b"c'd)"), R"(a\\b\"c\'d)");
    for (const QString &text : {QStringLiteral(R"(a\b"c'd)"), QStringLiteral(R"(\")"),
                                QStringLiteral("O'Brien \\ Sons")}) {
        const QString escaped = Predicate::formattedPredicateString(text);
        for (const QString &quote : {QStringLiteral("\""), QStringLiteral("'")}) {
            Result<Predicate> predicate = Predicate::parse("SELF == " + quote + escaped + quote);
            ASSERT_TRUE(predicate) << text.toStdString();
            EXPECT_TRUE(predicate->evaluateValue(text)) << text.toStdString();
        }
    }
}

TEST(Predicate, ValuesCompareByKindNeverAcrossKinds) {
    KeyValueTestObject a, b, twin;
    a.set("int", 2)
        .set("double", 2.0)
        .set("decimal", QVariant::fromValue(Decimal::fromString(u"10.00")));
    a.set("flag", true).set("text", "5").set("date", utc(2024, 3, 1)).set("link", obj(b));
    twin.set("int", 2);
    auto test = [&a](const QString &format, const QVariantList &arguments = {}) {
        return parsed(format, arguments).evaluate(a);
    };
    EXPECT_TRUE(test("int == double"));
    EXPECT_TRUE(test("double < %@", {2.0000000000000004}));
    EXPECT_TRUE(test("int == 2.0"));
    EXPECT_TRUE(test("decimal == 10"));
    EXPECT_TRUE(test("decimal > 9.99"));
    EXPECT_TRUE(test("decimal BETWEEN {9.995, 10.0}"));
    EXPECT_TRUE(test("double < %@", {QVariant::fromValue(Decimal::fromString(u"2.0000001"))}));
    EXPECT_TRUE(test("flag == 1"));
    EXPECT_TRUE(test("-3 < int"));
    EXPECT_FALSE(test("text == 5"));
    EXPECT_TRUE(test("text != 5"));
    EXPECT_FALSE(test("text < 6"));
    EXPECT_FALSE(test("date > 5"));
    EXPECT_TRUE(test("date > %@", {utc(2024, 2, 29, 23, 59, 59, 999)}));
    EXPECT_TRUE(test("date == %@", {QDateTime(QDate(2024, 3, 1), QTime(1, 0), QTimeZone(3600))}))
        << "dates compare as instants";

    EXPECT_TRUE(test("missing == NULL"));
    EXPECT_TRUE(test("missing == nil"));
    EXPECT_FALSE(test("missing < 1"));
    EXPECT_FALSE(test("missing >= NULL"));
    EXPECT_FALSE(test("missing CONTAINS 'x'"));
    EXPECT_FALSE(test("missing BETWEEN {0, 1}"));
    EXPECT_TRUE(test("link.missing == NULL"));
    EXPECT_TRUE(test("link.nothing.deeper == NULL"));

    EXPECT_TRUE(test("link == %@", {obj(b)}));
    EXPECT_FALSE(test("link == %@", {obj(twin)})) << "objects compare by identity";
    EXPECT_TRUE(test("SELF == %@", {obj(a)}));
    EXPECT_FALSE(test("link < %@", {obj(b)}));
    EXPECT_TRUE(test("int IN {1, 2, 3}"));
    EXPECT_TRUE(test("int IN %@", {QVariant(QVariantList{"2", 2})}));
    EXPECT_FALSE(test("int IN {}"));
    EXPECT_TRUE(test("%K == 2", {"int"}));
}

TEST(Predicate, AndBindsTighterThanOrAndNotTighterThanBoth) {
    // All eight combinations of a, b, c against the expected truth of each text.
    struct Case {
        const char *format;
        bool (*expected)(bool, bool, bool);
    };
    const Case cases[] = {
        {"a == 1 OR b == 1 AND c == 1", [](bool a, bool b, bool c) { return a || (b && c); }},
        {"a == 1 AND b == 1 OR c == 1", [](bool a, bool b, bool c) { return (a && b) || c; }},
        {"(a == 1 OR b == 1) AND c == 1", [](bool a, bool b, bool c) { return (a || b) && c; }},
        {"NOT a == 1 AND b == 1", [](bool a, bool b, bool) { return !a && b; }},
        {"not (a == 1 and b == 1) or c == 1",
         [](bool a, bool b, bool c) { return !(a && b) || c; }},
        {"!a == 1 || b == 1 && !c == 1", [](bool a, bool b, bool c) { return !a || (b && !c); }},
        {"NOT NOT a == 1", [](bool a, bool, bool) { return a; }},
    };
    for (const Case &c : cases) {
        const Predicate predicate = parsed(c.format);
        const Predicate reparsed = parsed(predicate.predicateFormat());
        for (int bits = 0; bits < 8; ++bits) {
            const bool a = bits & 1, b = bits & 2, cc = bits & 4;
            KeyValueTestObject object;
            object.set("a", int(a)).set("b", int(b)).set("c", int(cc));
            EXPECT_EQ(predicate.evaluate(object), c.expected(a, b, cc)) << c.format << bits;
            EXPECT_EQ(reparsed.evaluate(object), c.expected(a, b, cc))
                << predicate.predicateFormat().toStdString();
        }
    }
}

TEST(Predicate, MalformedTextIsAnErrorWithItsPosition) {
    const char *const broken[] = {
        "",
        "status ==",
        "== 1",
        "status == %@", // no argument given
        "status 1",
        "status == 1 AND",
        "(status == 1",
        "status == 1)",
        "name == 'unterminated",
        "title CONTAINS[cd] 'O'Brien'", // an apostrophe in unescaped filter text
        "name CONTAINS[x] 'a'",
        "a..b == 1",
        "date BETWEEN {1, 2",
        "a == 1 & b == 2",
        "a == 12abc",
        "a == %q",
        "%K == 1",
        "AND == 1",
        "a == DATE('yesterday')",
    };
    for (const char *text : broken) {
        const Result<Predicate> result = Predicate::parse(text);
        ASSERT_FALSE(result.ok()) << text;
        EXPECT_EQ(result.error().code, ErrorCode::InvalidPredicate);
        EXPECT_TRUE(result.error().message.contains("at position")) << text;
    }
    EXPECT_TRUE(Predicate::parse(QString(5000, '(') + "a == 1" + QString(5000, ')')).ok() == false)
        << "deep nesting is refused rather than overflowing the stack";
}

// Mutated predicate texts must parse or fail cleanly; whatever parses must print a text that
// parses back to the same print and evaluates the same.
TEST(Predicate, MutatedTextsNeverCrashAndPrintedFormsRoundTrip) {
    const QStringList seeds = {
        "status == %@ && client == %@",
        "SELF.date BETWEEN {%@, %@}",
        "SELF.invoice == NULL",
        "date BETWEEN {%@,%@} AND (status == %@ OR status == %@)",
        "identification CONTAINS[cd] %@ OR client.displayName CONTAINS[cd] %@",
        "archived == $param1 AND status == $param2",
        "isOverdue == YES",
        "NOT a != 'x\\'y'",
        "a IN {1, 2.5, \"z\"} || b LIKE[c] 'a*'",
        "a =< -0.5 AND b => 1e3",
    };
    const QString alphabet = QStringLiteral("()[]{}%@$,.'\"=!<>&|-+ 0123456789acdeKNORTSLF\\ü");
    const QVariantList arguments = {2,
                                    "zür",
                                    utc(2024, 1, 1),
                                    QVariant(),
                                    true,
                                    0.25,
                                    QVariant::fromValue(Decimal::fromString(u"1.5"))};
    KeyValueTestObject object;
    object.set("status", 2).set("a", "x'y").set("b", 1000).set("isOverdue", true);
    object.set("identification", "Zürich").set("date", utc(2024, 1, 1));
    std::mt19937 random(20240131);
    int parsedCount = 0;
    for (int round = 0; round < 20000; ++round) {
        QString text = seeds.at(random() % seeds.size());
        const int edits = 1 + random() % 4;
        for (int e = 0; e < edits && !text.isEmpty(); ++e) {
            const int at = random() % text.size();
            const QChar c = alphabet.at(random() % alphabet.size());
            switch (random() % 3) {
            case 0:
                text.insert(at, c);
                break;
            case 1:
                text.remove(at, 1);
                break;
            default:
                text[at] = c;
                break;
            }
        }
        const Result<Predicate> result = Predicate::parse(text, arguments);
        if (!result.ok())
            continue;
        ++parsedCount;
        const QString printed = result.value().predicateFormat();
        const Result<Predicate> again = Predicate::parse(printed);
        ASSERT_TRUE(again.ok()) << text.toStdString() << " printed as " << printed.toStdString();
        EXPECT_EQ(again.value().predicateFormat(), printed);
        EXPECT_EQ(again.value().evaluate(object), result.value().evaluate(object))
            << printed.toStdString();
    }
    EXPECT_GT(parsedCount, 1000) << "the mutations should leave many texts valid";
}

// Many objects with folded texts: the folding cache must give the same answers as the slow
// path for every object, whatever was folded before. (Speed is measured in bench_store.)
TEST(Predicate, SearchOverManyObjectsFindsExactlyTheMatches) {
    std::vector<KeyValueTestObject> objects(20000);
    for (size_t i = 0; i < objects.size(); ++i) {
        objects[i].set("name", QStringLiteral("Client %1 Straße").arg(i));
        objects[i].set("notes", i % 7 ? "Zürich" : "Genève");
    }
    const Predicate predicate = parsed("notes CONTAINS[cd] %@", {"genève"});
    const Predicate either =
        parsed("name CONTAINS[cd] %@ OR notes CONTAINS[cd] %@", {"strasse", "GENEVE"});
    int matches = 0;
    int eitherMatches = 0;
    for (const KeyValueTestObject &object : objects) {
        matches += predicate.evaluate(object);
        eitherMatches += either.evaluate(object);
    }
    EXPECT_EQ(matches, (20000 + 6) / 7);
    EXPECT_EQ(eitherMatches, (20000 + 6) / 7) << "ß does not fold to ss";
}

} // namespace
