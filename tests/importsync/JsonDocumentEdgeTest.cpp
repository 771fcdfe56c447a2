// Values at the edges of what a document holds, through import and export: what import accepts
// is exported, read and exported again to the same bytes; what it refuses is named by its path.
#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/json/JsonDocumentImporter.h"
#include "importsync/json/JsonText.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "store/entities/TAKeys.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

QByteArray document(const QByteArray &objects) {
    return "{\"format\": \"billfold-json\", \"formatVersion\": 1, \"model\": \"" +
           TADocModel::kVersionName.toUtf8() + "\", \"objects\": {" + objects + "}}";
}

// A dollar invoice with one item, and a second client for text values.
QByteArray invoice(const QByteArray &price, const QByteArray &quantity = "1") {
    return R"("Currency/1": {"code": "USD", "isDefault": true},
              "Client/1": {"currency": "Currency/1", "fullName": "Edge"},
              "Invoice/1": {"client": "Client/1"},
              "Material/1": {"invoice": "Invoice/1", "price": ")" +
           price + R"(", "quantity": ")" + quantity + "\"}";
}

// Import into a new document, then export it.
Result<QByteArray> reexport(const QByteArray &json) {
    JsonDocumentImporter importer;
    if (auto read = importer.read(json); !read)
        return read.error();
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store)
        return store.error();
    ManagedObjectContext context(*store);
    if (auto built = importer.build(context); !built)
        return built.error();
    return JsonDocumentExporter(context).exportDocument();
}

// The export of what the text describes, after checking that it reads back to the same bytes.
QByteArray roundTrip(const QByteArray &json) {
    auto first = reexport(json);
    EXPECT_TRUE(first.ok()) << (first.ok() ? "" : first.error().message.toStdString());
    if (!first.ok())
        return {};
    auto second = reexport(*first);
    EXPECT_TRUE(second.ok()) << (second.ok() ? "" : second.error().message.toStdString());
    if (second.ok()) {
        EXPECT_EQ(*second, *first);
    }
    return *first;
}

QString refusal(const QByteArray &json) {
    auto result = reexport(json);
    EXPECT_FALSE(result.ok()) << json.left(300).constData();
    return result.ok() ? QString() : result.error().message;
}

} // namespace

TEST(JsonDocumentEdgeTest, AmountsOf38DigitsAndTheirTotalsRoundTripAndWiderSumsAreRefused) {
    const QByteArray nines(38, '9');
    const QByteArray finest = "-0." + QByteArray(127, '0') + "1";
    const QByteArray text = roundTrip(
        document(invoice(nines) + R"(, "Currency/2": {"code": "EUR", "rate": ")" + finest + "\"}"));
    EXPECT_TRUE(text.contains("\"price\": \"" + nines + '"'));
    EXPECT_TRUE(text.contains("\"total\": \"" + nines + '"')) << "the invoice's total";
    EXPECT_TRUE(text.contains("\"rate\": \"" + finest + '"'));

    // The largest total with its cents.
    const QByteArray cents = QByteArray(36, '9') + ".99";
    EXPECT_TRUE(roundTrip(document(invoice(cents))).contains("\"total\": \"" + cents + '"'));

    // Sums that would need a 39th digit are refused by the invoice that makes them, never
    // rounded: two items, and one item whose own total is too large.
    const QByteArray two =
        invoice(nines) +
        R"(, "Material/2": {"invoice": "Invoice/1", "price": "1", "quantity": "1"})";
    EXPECT_TRUE(refusal(document(two))
                    .startsWith(QStringLiteral(
                        "$.objects[\"Invoice/1\"]: its totals need more than 38 digits")));
    EXPECT_TRUE(refusal(document(invoice(nines, "1.5"))).startsWith("$.objects[\"Invoice/1\"]"));
    EXPECT_TRUE(refusal(document(invoice(cents + "5"))).contains("more than 38 significant"));
}

TEST(JsonDocumentEdgeTest, TheFirstAndLastInstantsRoundTripFromZones14HoursAway) {
    const auto interval = [](const char *start, const char *end) {
        return document(QByteArray(R"("TimerInterval/1": {"start": ")") + start + R"(", "end": ")" +
                        end + "\"}");
    };
    const QByteArray text =
        roundTrip(interval("0001-01-01T14:00:00+14:00", "9999-12-31T09:59:59.999-14:00"));
    EXPECT_TRUE(text.contains("\"start\": \"0001-01-01T00:00:00.000Z\""));
    EXPECT_TRUE(text.contains("\"end\": \"9999-12-31T23:59:59.999Z\""));
    EXPECT_TRUE(roundTrip(interval("0001-01-01T00:00:00-14:00", "9999-12-31T23:59:59.999+14:00"))
                    .contains("\"start\": \"0001-01-01T14:00:00.000Z\""));

    EXPECT_EQ(refusal(interval("0001-01-01T00:00:00+14:00", "2026-01-01T00:00:00Z")),
              "$.objects[\"TimerInterval/1\"].start: \"0001-01-01T00:00:00+14:00\" lies outside "
              "the years 0001 to 9999 in UTC");
    EXPECT_EQ(refusal(interval("2026-01-01T00:00:00Z", "9999-12-31T23:59:59-12:00")),
              "$.objects[\"TimerInterval/1\"].end: \"9999-12-31T23:59:59-12:00\" lies outside "
              "the years 0001 to 9999 in UTC");
    EXPECT_TRUE(refusal(interval("0001-01-01T13:59:59.999+14:00", "2026-01-01T00:00:00Z"))
                    .contains("outside the years"));
}

TEST(JsonDocumentEdgeTest, FloatsThatJsonNumbersCannotHoldRoundTripAsTheirNames) {
    QByteArray columns;
    const char *widths[] = {"\"NaN\"", "\"Infinity\"", "\"-Infinity\"",
                            "-0.0",    "5e-324",       "1.7976931348623157e308",
                            "0"};
    for (std::size_t i = 0; i < std::size(widths); ++i)
        columns += (i ? ", " : "") + QByteArray("\"InvoiceTemplateColumn/") +
                   QByteArray::number(qulonglong(i + 1)) + "\": {\"width\": " + widths[i] + '}';
    const QByteArray text = roundTrip(document(columns));
    for (const char *written :
         {"\"NaN\"", "\"Infinity\"", "\"-Infinity\"", "5e-324", "1.7976931348623157e+308"})
        EXPECT_TRUE(text.contains("\"width\": " + QByteArray(written))) << written;
    // A zero keeps no sign in a document.
    EXPECT_EQ(text.count("\"width\": 0\n"), 2);
    EXPECT_EQ(JsonText::doubleLiteral(-0.0), "0");
}

TEST(JsonDocumentEdgeTest, ALoneSurrogateOfEitherKindIsRefusedAtItsPath) {
    for (const char *value : {R"(\udc00)", R"(\ud800)", R"(a\udc00)", R"(\udbffz)", R"(xy\udfff)",
                              R"(\ud800b)", R"(\udc00\udc00)", R"(\ud800\ud800)", R"(\udc00\ud800)",
                              R"(\ud800\ud800\udc00)", R"(\ud83d\ude00\udc00)", R"(\\\udc00)"}) {
        const QByteArray json =
            document(R"("Client/1": {"notes": "ok", "fullName": ")" + QByteArray(value) + "\"}");
        const QByteArray escape = JsonText::loneSurrogateAt(json) >= 0
                                      ? json.mid(JsonText::loneSurrogateAt(json), 6)
                                      : QByteArray();
        EXPECT_EQ(refusal(json),
                  QStringLiteral("$.objects[\"Client/1\"].fullName: a lone surrogate %1 at "
                                 "offset %2 is no character")
                      .arg(QString::fromLatin1(escape))
                      .arg(json.indexOf(escape)))
            << value;
    }
    // In a member's name, and in the header.
    EXPECT_TRUE(refusal(document(R"("Client/1": {"full\udc00": "x"})"))
                    .startsWith(QStringLiteral("$.objects[\"Client/1\"][\"full\uFFFD\"]: a lone")));
    EXPECT_TRUE(
        refusal(
            R"({"format": "billfold-json", "formatVersion": 1, "model": "\ud800", "objects": {}})")
            .startsWith("$.model: a lone surrogate \\ud800"));
    // Pairs are characters, and an escaped backslash is none of it.
    const QByteArray text =
        roundTrip(document(R"("Client/1": {"fullName": "\ud834\udd1e \\udc00 \u00e9"})"));
    EXPECT_TRUE(text.contains("\"fullName\": \"\xf0\x9d\x84\x9e \\\\udc00 \xc3\xa9\""));
}

TEST(JsonDocumentEdgeTest, HeaderAndReferencesAreCheckedAsDocumented) {
    const QByteArray objects = R"("Project/1": {"name": "P"}, "Client/1": {"fullName": "C"})";
    for (const char *version : {"1.0", "1e0", "\"1\"", "2", "-1", "10e-1"})
        EXPECT_EQ(refusal(QByteArray(document(objects))
                              .replace("\"formatVersion\": 1",
                                       "\"formatVersion\": " + QByteArray(version))),
                  "$.formatVersion: expected 1")
            << version;
    const QByteArray current = "\"" + TADocModel::kVersionName.toUtf8() + "\"";
    for (const char *model :
         {"\"TADoc_1.2\"", "\"tadoc_1.3\"", "\"TADoc_1.3 \"", "\"TADoc_1.3\\u0000\""})
        EXPECT_TRUE(refusal(QByteArray(document(objects)).replace(current, model))
                        .startsWith("$.model: unknown data model"))
            << model;

    // The program's own URI text names a project; any other text may name any object.
    const auto preferences = [&objects](const char *lastProject, const char *notes) {
        return document(objects + R"(, "Preferences/1": {"lastProjectID": {"objectURI": ")" +
                        lastProject + R"("}}, "Client/2": {"notes": {"objectURI": ")" + notes +
                        "\"}}");
    };
    EXPECT_EQ(refusal(preferences("Client/1", "Project/1")),
              "$.objects[\"Preferences/1\"].lastProjectID.objectURI: \"Client/1\" is no Project");
    const QByteArray text = roundTrip(preferences("Project/1", "Client/1"));
    EXPECT_TRUE(text.contains("\"lastProjectID\": {\"objectURI\": \"Project/1\"}"));
    EXPECT_TRUE(text.contains("\"notes\": {\"objectURI\": \"Client/1\"}"));
}

TEST(JsonDocumentEdgeTest, MessagesQuoteOnlyTheStartOfAHugeValue) {
    const QByteArray huge(5 << 20, 'x');
    const QByteArray cases[] = {
        document(R"("Client/1": {"fullName": "a", ")" + huge + R"(": 1})"),
        document(invoice(huge)),
        document(R"("Invoice/1": {"client": ")" + huge + "\"}"),
        document(R"("TimerInterval/1": {"start": ")" + huge + "\"}"),
        QByteArray(document("")).replace("\"model\": \"", "\"model\": \"" + huge),
        QByteArray(document("")).replace("\"format\"", '"' + huge + "\": 1, \"format\""),
    };
    for (const QByteArray &json : cases) {
        const QString message = refusal(json);
        EXPECT_LT(message.size(), 240) << message.left(300).toStdString();
        EXPECT_TRUE(message.contains(QStringLiteral("xxx\u2026\""))) << message.toStdString();
        EXPECT_TRUE(message.startsWith(u'$')) << message.toStdString();
    }
}

TEST(JsonDocumentEdgeTest, ExportRefusesWhatImportWouldRefuse) {
    auto store = PersistentStore::createInMemory(TADocModel::model());
    ASSERT_TRUE(store.ok());
    ManagedObjectContext context(*store);
    ManagedObject *interval = context.insertNewObject(TAEntity::TimerInterval);
    ManagedObject *project = context.insertNewObject(TAEntity::Project);
    ManagedObject *client = context.insertNewObject(TAEntity::Client);
    ManagedObject *preferences = context.insertNewObject(TAEntity::Preferences);
    context.obtainPermanentIDs({interval, project, client, preferences});

    // The last program's URI naming a client is only text to the file.
    preferences->setPrimitiveValueForKey(client->uriText(), TAKey::lastProjectID);
    auto text = JsonDocumentExporter(context).exportDocument();
    ASSERT_TRUE(text.ok()) << text.error().message.toStdString();
    EXPECT_TRUE(text->contains("\"lastProjectID\": \"x-"));
    EXPECT_EQ(roundTrip(*text), roundTrip(roundTrip(*text)));

    const QDateTime beyond(QDate(9999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC);
    interval->setPrimitiveValueForKey(beyond, QStringLiteral("end"));
    ASSERT_TRUE(JsonDocumentExporter(context).exportDocument().ok());
    interval->setPrimitiveValueForKey(beyond.addMSecs(1), QStringLiteral("end"));
    auto refused = JsonDocumentExporter(context).exportDocument();
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().message,
              QStringLiteral("TimerInterval/%1.end: 10000-01-01T00:00:00.000Z lies outside the "
                             "years 0001 to 9999 in UTC")
                  .arg(interval->objectID().number()));
}

TEST(JsonDocumentEdgeTest, ExportStatesOnlyTheModelThatImportReads) {
    // Same name, another layout: a file of it would be read by the wrong rules.
    for (const QString &name : {TADocModel::kVersionName, QStringLiteral("TADoc_0.1")}) {
        ManagedObjectModel model(name);
        model.addEntity(QStringLiteral("Gadget"))
            .addAttribute(QStringLiteral("size"), AttributeType::Integer);
        ASSERT_TRUE(model.finish().ok());
        auto store = PersistentStore::createInMemory(model);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext context(*store);
        auto text = JsonDocumentExporter(context).exportDocument();
        ASSERT_FALSE(text.ok());
        EXPECT_TRUE(text.error().message.contains(
            QStringLiteral("read with the data model “%1”").arg(name)))
            << text.error().message.toStdString();
    }
}
