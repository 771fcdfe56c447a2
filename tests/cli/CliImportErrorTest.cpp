#include "CliTestSupport.h"

#include "importsync/json/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

namespace {

using Edit = std::function<void(QJsonObject &objects)>;

QJsonObject member(QJsonObject &objects, const QString &key) {
    return objects.value(key).toObject();
}

void setMember(QJsonObject &objects, const QString &key, const QString &name,
               const QJsonValue &value) {
    QJsonObject object = member(objects, key);
    object.insert(name, value);
    objects.insert(key, object);
}

} // namespace

class CliImportErrorTest : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(cli({"new", path("s.tadb"), "--sample", "--now", "2025-03-10T12:00:00Z"}).status,
                  0);
        ASSERT_EQ(cli({"export-json", path("s.tadb"), "-o", path("good.json")}).status, 0);
        good = QJsonDocument::fromJson(read("good.json")).object();
    }

    // Imports the sample's JSON after one edit; answers the message.
    QString importEdited(const Edit &edit) {
        QJsonObject root = good;
        QJsonObject objects = root.value(QLatin1String("objects")).toObject();
        edit(objects);
        root.insert(QStringLiteral("objects"), objects);
        return importText(QJsonDocument(root).toJson());
    }

    QString importText(const QByteArray &text) {
        write("bad.json", text);
        const QStringList before = files();
        const CliRun run = cli({"import-json", path("bad.json"), "-o", path("out.tadb")});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(files(), before) << "nothing is written, not even a temporary file";
        EXPECT_TRUE(run.err.contains(path("bad.json"))) << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1) << "one line";
        return run.err;
    }

    QJsonObject good;
};

TEST_F(CliImportErrorTest, EachFaultIsNamedByItsPathAndNothingIsWritten) {
    const struct {
        const char *expected;
        Edit edit;
    } cases[] = {
        {"$.objects[\"Gizmo/1\"]: unknown entity",
         [](QJsonObject &o) { o.insert("Gizmo/1", QJsonObject()); }},
        {"$.objects[\"Invoice/01\"]: a key is",
         [](QJsonObject &o) { o.insert("Invoice/01", QJsonObject()); }},
        {"$.objects[\"Invoice/1\"].colour: unknown key",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "colour", "red"); }},
        {"$.objects[\"Invoice/1\"].items: a to-many link",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "items", QJsonValue()); }},
        {"$.objects[\"Invoice/1\"].status: expected an integer, found a string",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "status", "2"); }},
        {"$.objects[\"Invoice/1\"].status: expected an integer, found a number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "status", 2.5); }},
        {"$.objects[\"Invoice/1\"].discount: \"0,05\" is not a decimal number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", "0,05"); }},
        {"$.objects[\"Invoice/1\"].discount: expected a decimal number as a string",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", 0.05); }},
        {"$.objects[\"Invoice/1\"].discount: \"1234567890123456789012345678901234567.89\" has "
         "more than 38 significant digits",
         [](QJsonObject &o) {
             setMember(o, "Invoice/1", "discount", "1234567890123456789012345678901234567.89");
         }},
        {"$.objects[\"Invoice/1\"].discount: \"1e2\" is not a decimal number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", "1e2"); }},
        {"$.objects[\"Invoice/1\"].discount: \"+1\" is not a decimal number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", "+1"); }},
        {"$.objects[\"Invoice/1\"].discount: \".5\" is not a decimal number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", ".5"); }},
        {"$.objects[\"Invoice/1\"].discount: \"5.\" is not a decimal number",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "discount", "5."); }},
        {"$.objects[\"Client/1\"].photo: not valid base64",
         [](QJsonObject &o) { setMember(o, "Client/1", "photo", "QQ"); }},
        {"$.objects[\"Invoice/1\"].archived: expected true, false or null",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "archived", 0); }},
        {"$.objects[\"Invoice/1\"].date: expected an ISO 8601",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "date", "2025-03-10T12:00:00"); }},
        {"$.objects[\"Client/1\"].photo: not valid base64",
         [](QJsonObject &o) { setMember(o, "Client/1", "photo", "not*base64"); }},
        {"$.objects[\"Invoice/1\"].client: \"Client/99\" names no object",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "client", "Client/99"); }},
        {"$.objects[\"Invoice/1\"].client: \"Project/1\" is no Client",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "client", "Project/1"); }},
        {"$.objects[\"Preferences/1\"].lastProjectID.objectURI: \"Project/9\" names no object",
         [](QJsonObject &o) {
             setMember(o, "Preferences/1", "lastProjectID",
                       QJsonObject{{"objectURI", "Project/9"}});
         }},
        {"$.objects[\"Tax/1\"]: expected an object, found an array",
         [](QJsonObject &o) { o.insert("Tax/1", QJsonArray()); }},
        {"$.objects[\"Preferences/1\"].lastProjectID.objectURI: \"Client/1\" is no Project",
         [](QJsonObject &o) {
             setMember(o, "Preferences/1", "lastProjectID", QJsonObject{{"objectURI", "Client/1"}});
         }},
        {"$.objects[\"Invoice/1\"].date: \"9999-12-31T23:59:59-12:00\" lies outside the years "
         "0001 to 9999 in UTC",
         [](QJsonObject &o) { setMember(o, "Invoice/1", "date", "9999-12-31T23:59:59-12:00"); }},
        {"$.objects[\"Invoice/1\"]: its totals need more than 38 digits",
         [](QJsonObject &o) {
             for (const char *item : {"Material/2", "Timer/3"})
                 setMember(o, item, "price", QString(38, u'9'));
         }},
    };
    for (const auto &c : cases) {
        const QString message = importEdited(c.edit);
        EXPECT_TRUE(message.contains(QString::fromUtf8(c.expected)))
            << "expected: " << c.expected << "\n     got: " << message.toStdString();
    }
}

TEST_F(CliImportErrorTest, AKeyGivenTwiceIsAFaultWhereverItStands) {
    const QByteArray text = read("good.json");
    ASSERT_TRUE(text.contains("\n    \"Tax/1\": {"));
    ASSERT_TRUE(text.contains("\n    \"Invoice/1\": {"));
    const struct {
        QByteArray from, to;
        const char *expected;
    } cases[] = {
        {"\"objects\": {", "\"objects\": {\"Tax/1\": {},", "$.objects[\"Tax/1\"]: duplicate key"},
        {"\"Invoice/1\": {", "\"Invoice/1\": {\"status\": 2,",
         "$.objects[\"Invoice/1\"].status: duplicate key"},
        {"\"format\":", "\"model\": \"x\", \"format\":", "$.model: duplicate key"},
    };
    for (const auto &c : cases) {
        const QString message = importText(QByteArray(text).replace(c.from, c.to));
        EXPECT_TRUE(message.contains(QString::fromUtf8(c.expected)))
            << "expected: " << c.expected << "\n     got: " << message.toStdString();
    }
    // Text that is not UTF-8 is no JSON, even inside a string.
    EXPECT_TRUE(importText(QByteArray(text).replace("\"format\"", "\"form\xc3\x28t\""))
                    .contains("not valid JSON at offset"));
}

TEST_F(CliImportErrorTest, BrokenTextAndWrongHeaderAreRefused) {
    const struct {
        QByteArray text;
        const char *expected;
    } cases[] = {
        {"{\"format\": ", "not valid JSON at offset"},
        {"[]", "$: expected an object, found an array"},
        {"{\"format\": \"other\"}", "$.format: expected \"billfold-json\""},
        {"{\"format\": \"billfold-json\", \"formatVersion\": 2}", "$.formatVersion: expected 1"},
        {"{\"format\": \"billfold-json\", \"formatVersion\": 1.0}", "$.formatVersion: expected 1"},
        {"{\"format\": \"billfold-json\", \"formatVersion\": 1e0}", "$.formatVersion: expected 1"},
        {"{\"format\": \"billfold-json\", \"formatVersion\": 1, \"model\": \"TADoc_0.9\", "
         "\"objects\": {}}",
         "$.model: unknown data model \"TADoc_0.9\""},
        {"{\"format\": \"billfold-json\", \"formatVersion\": 1, \"model\": \"x\", \"objects\": {},"
         " \"extra\": 1}",
         "$.extra: unknown key"},
    };
    for (const auto &c : cases) {
        write("bad.json", c.text);
        const CliRun run = cli({"import-json", path("bad.json"), "-o", path("out.tadb")});
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.expected))) << run.err.toStdString();
        EXPECT_FALSE(QFile::exists(path("out.tadb")));
    }
}

TEST_F(CliImportErrorTest, AnExistingTargetIsKeptUnlessForced) {
    write("out.tadb", "precious");
    CliRun run = cli({"import-json", path("good.json"), "-o", path("out.tadb")});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.contains("already exists"));
    EXPECT_EQ(read("out.tadb"), QByteArray("precious"));
    run = cli({"import-json", path("good.json"), "-o", path("out.tadb"), "--force"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(cli({"info", path("out.tadb")}).status, 0);
}

TEST_F(CliImportErrorTest, OffsetsAndShortFractionsAreReadAsTheSameInstant) {
    QJsonObject root = good;
    QJsonObject objects = root.value(QLatin1String("objects")).toObject();
    setMember(objects, "Invoice/1", "date", "2025-03-10T14:00:00.5+02:00");
    setMember(objects, "Invoice/1", "dueDate", "2025-03-31T23:30:00-01:00");
    setMember(objects, "Invoice/1", "discount", "-0.0500");
    root.insert(QStringLiteral("objects"), objects);
    write("edited.json", QJsonDocument(root).toJson(QJsonDocument::Compact));
    const CliRun run = cli({"import-json", path("edited.json"), "-o", path("out.tadb")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QJsonObject invoice =
        QJsonDocument::fromJson(cli({"export-json", path("out.tadb")}).out.toUtf8())
            .object()
            .value(QLatin1String("objects"))
            .toObject()
            .value(QLatin1String("Invoice/1"))
            .toObject();
    EXPECT_EQ(invoice.value(QLatin1String("date")).toString(), "2025-03-10T12:00:00.500Z");
    EXPECT_EQ(invoice.value(QLatin1String("dueDate")).toString(), "2025-04-01T00:30:00.000Z");
    EXPECT_EQ(invoice.value(QLatin1String("discount")).toString(), "-0.05");
}

TEST_F(CliImportErrorTest, AHugeKeyOrValueIsQuotedByItsStartOnAShortLine) {
    const QString huge(1 << 20, u'7');
    const Edit edits[] = {
        [&](QJsonObject &o) { setMember(o, "Invoice/1", "discount", huge); },
        [&](QJsonObject &o) { setMember(o, "Invoice/1", "client", huge); },
        [&](QJsonObject &o) { setMember(o, "Invoice/1", huge, 1); },
    };
    for (const Edit &edit : edits) {
        const QString message = importEdited(edit);
        EXPECT_LT(message.size(), 300) << message.left(400).toStdString();
        EXPECT_TRUE(message.contains(QStringLiteral("$.objects[\"Invoice/1\"]")));
        EXPECT_TRUE(message.contains(QString(JsonText::kExcerptLength, u'7') + QChar(0x2026)))
            << message.toStdString();
    }
}
