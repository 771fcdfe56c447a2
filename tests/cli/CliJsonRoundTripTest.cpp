#include "CliTestSupport.h"

#include "cli/CliDocument.h"
#include "document/TADocument.h"
#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/sample/SampleDocument.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectModel.h"
#include "store/TADocModel.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "support/FillingDevice.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

// A value of the attribute's type that exercises its text form: unicode and quotes in text,
// every byte in binaries, 38 digits in decimals, milliseconds in dates.
QVariant richValue(const AttributeDescription &attribute, int seed) {
    switch (attribute.type) {
    case AttributeType::String:
        return QStringLiteral("Zoë \"%1\" \\ tab\t line\n ✓ 𝄞 \x01").arg(seed);
    case AttributeType::Integer:
        return QVariant(qint64(-9007199254740993LL) + seed);
    case AttributeType::Boolean:
        return seed % 2 == 0;
    case AttributeType::Decimal:
        return Decimal::fromString(seed % 2 ? u"-1234567890123456789012345678.9012345678"
                                            : u"0.00000000000000000000000000000000000001")
            .toVariant();
    case AttributeType::Date:
        return QDateTime::fromMSecsSinceEpoch(1700000000123LL + seed * 1001, Qt::UTC);
    case AttributeType::Binary: {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes.append(char(i ^ seed));
        return bytes;
    }
    case AttributeType::Float:
        return 0.1 + seed / 3.0;
    }
    return {};
}

} // namespace

class CliJsonRoundTripTest : public CliTest {
protected:
    // Every entity twice, once with every attribute set and once with every attribute null,
    // with each to-one link of the full ones set, and a gap in every entity's keys.
    void buildEveryEntity(const QString &file) {
        auto document = CliDocument::createInMemory();
        ASSERT_TRUE(document.ok());
        ManagedObjectContext &ctx = (*document)->context();
        QHash<QString, QList<ManagedObject *>> made;
        int seed = 0;
        for (const EntityDescription *entity : ctx.model()->entities()) {
            if (entity->isAbstract())
                continue;
            ManagedObject *gap = ctx.insertNewObject(entity->name());
            ManagedObject *full = ctx.insertNewObject(entity->name());
            ManagedObject *empty = ctx.insertNewObject(entity->name());
            ctx.obtainPermanentIDs({gap, full, empty});
            ctx.deleteObject(gap);
            for (const AttributeDescription &attribute : entity->attributes()) {
                full->setPrimitiveValueForKey(richValue(attribute, ++seed), attribute.name);
                empty->setPrimitiveValueForKey(QVariant(), attribute.name);
            }
            made[entity->name()] = {full, empty};
        }
        for (const QList<ManagedObject *> &pair : std::as_const(made)) {
            ManagedObject *full = pair.first();
            for (const RelationshipDescription &link : full->entity()->relationships()) {
                if (link.toMany)
                    continue;
                const QString target = link.destination->isAbstract()
                                           ? link.destination->subentities().constLast()->name()
                                           : link.destinationEntityName;
                full->setObjectForKey(made[target].first(), link.name);
            }
            for (ManagedObject *o : pair)
                o->setPrimitiveValueForKey(QVariant(), TAKey::altHistory);
        }
        // A text that holds the URI of an object of the document follows that object.
        auto *preferences = dynamic_cast<TAPreferences *>(made[TAEntity::Preferences].first());
        preferences->setLastProjectID(made[TAEntity::Project].first()->uriText());
        // Import computes the cached totals again: the file's must agree with its items.
        (*document)->refreshCachedTotals();
        ASSERT_TRUE((*document)->saveAs(file).ok());
    }
};

TEST_F(CliJsonRoundTripTest, EveryEntityValueAndLinkSurvivesExportImportExport) {
    buildEveryEntity(path("every.tadb"));
    ASSERT_EQ(cli({"export-json", path("every.tadb"), "-o", path("a.json")}).status, 0);
    const CliRun imported = cli({"import-json", path("a.json"), "-o", path("copy.tadb")});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    ASSERT_EQ(cli({"export-json", path("copy.tadb"), "-o", path("b.json")}).status, 0);
    const QByteArray first = read("a.json");
    EXPECT_EQ(first, read("b.json"));

    EXPECT_TRUE(first.contains("\"Zo\xc3\xab \\\"")) << "unicode stays UTF-8, quotes escaped";
    EXPECT_TRUE(first.contains("\"-1234567890123456789012345678.9012345678\""));
    EXPECT_TRUE(first.contains("\"0.00000000000000000000000000000000000001\""));
    EXPECT_TRUE(
        QString::fromUtf8(first).contains(QRegularExpression(R"(T\d\d:\d\d:\d\d\.(?!000)\d{3}Z")")))
        << "milliseconds are kept";
    EXPECT_TRUE(first.contains("\"lastProjectID\": {\"objectURI\": \"Project/2\"}"));
    EXPECT_FALSE(first.contains("\"Project/1\"")) << "the gap left by a deleted object stays";

    // The copy is a document of its own whose values are those of the text, not the insert
    // rules' choices, and whose URI texts point into it.
    auto copy = CliDocument::open(path("copy.tadb"), true);
    ASSERT_TRUE(copy.ok());
    auto *project = dynamic_cast<TAProject *>((*copy)->context().objectWithURI(
        QStringLiteral("x-billfold://%1/Project/p3").arg((*copy)->store().uuid())));
    ASSERT_NE(project, nullptr);
    EXPECT_FALSE(project->dueDate().isValid()) << "an empty due date is not reset to now";
    TAPreferences *preferences =
        TAContextDatabase::getPreferencesInContext((*copy)->database().context());
    ASSERT_NE(preferences, nullptr);
    EXPECT_NE((*copy)->context().objectWithURI(preferences->lastProjectID()), nullptr);
}

TEST_F(CliJsonRoundTripTest, SampleDocumentRoundTripsAndExportIsStable) {
    ASSERT_EQ(cli({"new", path("s.tadb"), "--sample", "--now", "2025-03-10T12:00:00Z"}).status, 0);
    ASSERT_EQ(cli({"export-json", path("s.tadb"), "-o", path("a.json")}).status, 0);
    const CliRun stdoutExport = cli({"export-json", path("s.tadb")});
    EXPECT_EQ(stdoutExport.out.toUtf8(), read("a.json"));
    ASSERT_EQ(cli({"import-json", path("a.json"), "-o", path("t.tadb")}).status, 0);
    ASSERT_EQ(cli({"export-json", path("t.tadb"), "-o", path("b.json")}).status, 0);
    EXPECT_EQ(read("a.json"), read("b.json"));
    EXPECT_TRUE(read("a.json").contains("\"dueDate\": \"2025-04-09T10:00:00.000Z\""))
        << "the project's due date follows the day of opening and survives the import";
    // The copy behaves as the original: the same totals, states and sums.
    for (const char *kind : {"invoices", "clients", "projects", "items", "payments"}) {
        const QStringList list{"list", kind, "--format", "json", "--now", "2025-03-20T00:00:00Z"};
        const CliRun original = cli(QStringList(list) << path("s.tadb"));
        EXPECT_EQ(original.status, 0);
        EXPECT_EQ(original.out, cli(QStringList(list) << path("t.tadb")).out) << kind;
    }
}

TEST_F(CliJsonRoundTripTest, AnExportThatCannotBeWrittenSaysSoAndLeavesNoFile) {
    ASSERT_EQ(cli({"new", path("s.tadb"), "--sample"}).status, 0);
    auto document = CliDocument::open(path("s.tadb"), true);
    ASSERT_TRUE(document.ok());
    JsonDocumentExporter exporter((*document)->context());
    auto whole = exporter.exportDocument();
    ASSERT_TRUE(whole.ok());
    FillingDevice roomy(whole->size());
    ASSERT_TRUE(exporter.exportDocument(roomy).ok());
    EXPECT_EQ(roomy.written, *whole) << "written to a device, the text is the same";
    FillingDevice full(whole->size() - 1);
    const auto refused = exporter.exportDocument(full);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, int(ErrorCode::WriteFailed));
    EXPECT_EQ(refused.error().message, QStringLiteral("No space left on device"));

    const CliRun run = cli({"export-json", path("s.tadb"), "-o", path("missing/a.json")});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.contains(path("missing/a.json"))) << run.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(path("missing/a.json")));
}

TEST_F(CliJsonRoundTripTest, ReadingShowsTheFileWithoutTheRepairsOfOpening) {
    {
        auto document = CliDocument::createInMemory();
        ASSERT_TRUE(document.ok());
        ManagedObjectContext &ctx = (*document)->context();
        ctx.insertNewObject(TAEntity::Timer)->setValueForKey(QStringLiteral("Loose"), TAKey::name);
        ManagedObject *euro = ctx.insertNewObject(TAEntity::Currency);
        euro->setValueForKey(QStringLiteral("EUR"), TAKey::code);
        euro->setPrimitiveValueForKey(false, TAKey::isDefault);
        ASSERT_TRUE((*document)->saveAs(path("bare.tadb")).ok());
    }
    const CliRun info = cli({"info", path("bare.tadb")});
    ASSERT_EQ(info.status, 0) << info.err.toStdString();
    EXPECT_TRUE(info.out.contains("Default currency: (none)"));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Timer +1\n")));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Currency +1\n")));
    EXPECT_EQ(cli({"list", "currencies", path("bare.tadb"), "--format", "csv"})
                  .out.count(QStringLiteral("\r\n")),
              2);

    ASSERT_EQ(cli({"export-json", path("bare.tadb"), "-o", path("a.json")}).status, 0);
    const CliRun imported = cli({"import-json", path("a.json"), "-o", path("copy.tadb")});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    ASSERT_EQ(cli({"export-json", path("copy.tadb"), "-o", path("b.json")}).status, 0);
    EXPECT_EQ(read("a.json"), read("b.json"));
    EXPECT_TRUE(read("a.json").contains("\"Timer/1\""));
    EXPECT_FALSE(read("a.json").contains("\"Currency/2\""));
}

TEST_F(CliJsonRoundTripTest, TheSamplesChangeDatesMoveWithItsOtherDates) {
    auto anchor = SampleDocument::anchor();
    ASSERT_TRUE(anchor.ok());
    const auto objectsOf = [this](const QString &name, const QDate &day) {
        const QString now = day.toString(Qt::ISODate) + QStringLiteral("T12:00:00");
        EXPECT_EQ(cli({"new", path(name), "--sample", "--now", now}).status, 0);
        return QJsonDocument::fromJson(cli({"export-json", path(name)}).out.toUtf8())
            .object()
            .value(QLatin1String("objects"))
            .toObject();
    };
    const QJsonObject same = objectsOf("same.tadb", *anchor);
    const QJsonObject later = objectsOf("later.tadb", anchor->addDays(10));
    QFile source(QStringLiteral(BILLFOLD_SOURCE_DIR "/src/resources/sample/Sample.json"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray sample = source.readAll();
    int dated = 0;
    for (auto it = same.begin(); it != same.end(); ++it) {
        const QJsonObject item = it.value().toObject();
        if (!item.contains(QLatin1String("updateDate")))
            continue;
        ++dated;
        const QString changed = item.value(QLatin1String("updateDate")).toString();
        EXPECT_TRUE(sample.contains("\"updateDate\": \"" + changed.toUtf8() + '"'))
            << changed.toStdString();
        EXPECT_GE(changed, item.value(QLatin1String("added")).toString()) << it.key().toStdString();
        const QDateTime moved = QDateTime::fromString(
            later.value(it.key()).toObject().value("updateDate").toString(), Qt::ISODateWithMs);
        EXPECT_EQ(moved, QDateTime::fromString(changed, Qt::ISODateWithMs).addDays(10))
            << it.key().toStdString();
    }
    EXPECT_GT(dated, 5);
}

TEST_F(CliJsonRoundTripTest, CachedTotalsFollowTheItemsOnImportAndInListings) {
    ASSERT_EQ(cli({"new", path("s.tadb"), "--sample", "--now", "2025-03-10T12:00:00Z"}).status, 0);
    QJsonObject root =
        QJsonDocument::fromJson(cli({"export-json", path("s.tadb")}).out.toUtf8()).object();
    QJsonObject objects = root.value(QLatin1String("objects")).toObject();
    int changed = 0;
    for (auto it = objects.begin(); it != objects.end(); ++it) {
        QJsonObject item = it.value().toObject();
        if (item.value(QLatin1String("name")) == QLatin1String("Hosting, one year") &&
            item.value(QLatin1String("invoice")).isString()) {
            item.insert(QStringLiteral("price"), QStringLiteral("340"));
            it.value() = item;
            ++changed;
        }
    }
    ASSERT_EQ(changed, 1);
    root.insert(QStringLiteral("objects"), objects);
    write("edited.json", QJsonDocument(root).toJson());
    ASSERT_EQ(cli({"import-json", path("edited.json"), "-o", path("t.tadb")}).status, 0);
    const QStringList list{"list",
                           "invoices",
                           path("t.tadb"),
                           "--format",
                           "json",
                           "--where",
                           "identification == \"2001\""};
    EXPECT_TRUE(cli(list).out.contains("\"subTotal\": \"3307.5\"")) << cli(list).out.toStdString();

    // A file whose cached totals went stale is listed with the totals of its items.
    {
        auto store = PersistentStore::open(path("t.tadb"), TADocument::managedObjectModel());
        ASSERT_TRUE(store.ok());
        ManagedObjectContext context(*store);
        auto invoices = context.executeFetchRequest(FetchRequest(TAEntity::Invoice));
        ASSERT_TRUE(invoices.ok());
        for (ManagedObject *invoice : *invoices)
            invoice->setPrimitiveValueForKey(Decimal(1).toVariant(), TAKey::subTotal);
        ASSERT_TRUE(context.save().ok());
    }
    EXPECT_TRUE(cli(list).out.contains("\"subTotal\": \"3307.5\""));
}

// The edges of the ranges survive the file too: 38-digit amounts and their totals, the first
// and last instants, the infinities.
TEST_F(CliJsonRoundTripTest, ValuesAtTheEdgesOfTheirRangesSurviveTheDocumentFile) {
    const QByteArray nines(38, '9');
    const QByteArray finest = "0." + QByteArray(127, '0') + '1';
    write("edges.json", R"({"format": "billfold-json", "formatVersion": 1, "model": ")" +
                            TADocModel::kVersionName.toUtf8() + R"(", "objects": {
        "Currency/1": {"code": "USD", "isDefault": true, "rate": ")" +
                            finest + R"("},
        "Client/1": {"currency": "Currency/1"},
        "Invoice/1": {"client": "Client/1", "date": "0001-01-01T14:00:00+14:00",
                      "dueDate": "9999-12-31T09:59:59.999-14:00"},
        "Material/1": {"invoice": "Invoice/1", "price": "-)" +
                            nines + R"(", "quantity": "1"},
        "InvoiceTemplateColumn/1": {"width": "Infinity"},
        "InvoiceTemplateColumn/2": {"width": "-Infinity"}}})");
    const CliRun imported = cli({"import-json", path("edges.json"), "-o", path("a.tadb")});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    ASSERT_EQ(cli({"export-json", path("a.tadb"), "-o", path("a.json")}).status, 0);
    ASSERT_EQ(cli({"import-json", path("a.json"), "-o", path("b.tadb")}).status, 0);
    ASSERT_EQ(cli({"export-json", path("b.tadb"), "-o", path("b.json")}).status, 0);
    const QByteArray text = read("a.json");
    EXPECT_EQ(text, read("b.json"));
    for (const QByteArray &expected :
         {"\"total\": \"-" + nines + '"', "\"rate\": \"" + finest + '"',
          QByteArray("\"date\": \"0001-01-01T00:00:00.000Z\""),
          QByteArray("\"dueDate\": \"9999-12-31T23:59:59.999Z\""),
          QByteArray("\"width\": \"Infinity\""), QByteArray("\"width\": \"-Infinity\"")})
        EXPECT_TRUE(text.contains(expected)) << expected.constData();
}
