#include "TestModel.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ObjectID.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/PrimaryKeyIndex.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <map>

namespace {

constexpr qint64 kMax = PersistentStore::kMaxObjectNumber;

struct ObjectNumbers : ::testing::Test {
    std::unique_ptr<ManagedObjectModel> model = makeTestModel();
    QTemporaryDir dir;

    // Two owners (1, 2) and two widgets (1, 2), each widget owned by the owner of its number.
    QString writeDocument(const QString &name) {
        const QString file = dir.filePath(name);
        auto store = PersistentStore::create(file, *model);
        EXPECT_TRUE(store.ok());
        ManagedObjectContext ctx(*store);
        for (int i = 1; i <= 2; ++i) {
            ManagedObject *owner = ctx.insertNewObject(QStringLiteral("Owner"));
            owner->setValueForKey(QStringLiteral("owner %1").arg(i), QStringLiteral("name"));
            ManagedObject *widget = ctx.insertNewObject(QStringLiteral("Widget"));
            widget->setValueForKey(QStringLiteral("widget %1").arg(i), QStringLiteral("title"));
            widget->setObjectForKey(owner, QStringLiteral("owner"));
        }
        EXPECT_TRUE(ctx.save().ok());
        return file;
    }

    static void execute(const QString &file, const QString &sql) {
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(file).constData(), &db), SQLITE_OK);
        char *message = nullptr;
        const int rc = sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &message);
        EXPECT_EQ(rc, SQLITE_OK) << (message ? message : "") << " in " << sql.toStdString();
        sqlite3_free(message);
        sqlite3_close(db);
    }

    std::shared_ptr<PersistentStore> open(const QString &file) {
        auto store = PersistentStore::open(file, *model);
        EXPECT_TRUE(store.ok()) << (store.ok() ? "" : qPrintable(store.error().message));
        return store.ok() ? *store : nullptr;
    }
};

TEST(PrimaryKeyIndex, FarKeysGoToTheHashAndMoveIntoTheTableOnceItReachesThem) {
    std::vector<std::unique_ptr<int>> storage;
    std::map<qint64, ManagedObject *> expected;
    // Stand-ins: the index only keeps and hands back the pointers.
    const auto fake = [&] {
        storage.push_back(std::make_unique<int>());
        return reinterpret_cast<ManagedObject *>(storage.back().get());
    };
    PrimaryKeyIndex index;
    for (qint64 key : {kMax, qint64(1) << 40, qint64(5000), qint64(1)})
        index.insert(key, expected[key] = fake());
    // Dense keys in descending order: the early ones are far from the few objects present.
    for (qint64 key = 4000; key >= 2; --key)
        index.insert(key, expected[key] = fake());
    // Now within reach of the table, which takes the far keys below it along.
    index.insert(6000, expected[6000] = fake());
    index.insert(0, fake());
    index.insert(-7, fake());

    EXPECT_EQ(index.size(), qsizetype(expected.size()));
    for (const auto &[key, object] : expected)
        EXPECT_EQ(index.find(key), object) << key;
    for (qint64 absent : {qint64(0), qint64(-7), qint64(4001), qint64(4999), kMax - 1})
        EXPECT_EQ(index.find(absent), nullptr) << absent;

    ManagedObject *replacement = fake();
    index.insert(5000, replacement);
    EXPECT_EQ(index.find(5000), replacement);
    EXPECT_EQ(index.size(), qsizetype(expected.size()));
    qsizetype visited = 0;
    index.forEach([&](ManagedObject *) { ++visited; });
    EXPECT_EQ(visited, index.size());
    index.clear();
    EXPECT_EQ(index.find(1), nullptr);
    EXPECT_EQ(index.find(kMax), nullptr);
}

TEST_F(ObjectNumbers, RowsNumberedOutsideTheRangeAreDamageWhenOpened) {
    for (const qint64 number :
         {qint64(0), qint64(-3), kMax + 1, std::numeric_limits<qint64>::max()}) {
        const QString name = QStringLiteral("row%1.tadb").arg(number);
        const QString file = writeDocument(name);
        execute(file, QStringLiteral("UPDATE E_Owner SET pk = %1 WHERE pk = 2").arg(number));
        auto store = PersistentStore::open(file, *model);
        ASSERT_FALSE(store.ok()) << number;
        EXPECT_EQ(store.error().code, ErrorCode::FileDamaged);
        EXPECT_TRUE(store.error().message.contains(
            QStringLiteral("The document “%1” is damaged").arg(name)))
            << qPrintable(store.error().message);
        EXPECT_TRUE(store.error().message.contains(
            QStringLiteral("table of Owner holds a row numbered %1").arg(number)))
            << qPrintable(store.error().message);
    }
}

TEST_F(ObjectNumbers, FarRowNumbersAreReadAndNewObjectsFollowThem) {
    const QString file = writeDocument(QStringLiteral("far.tadb"));
    const qint64 far = qint64(1) << 52;
    // Links follow the rows they name.
    execute(file, QStringLiteral("UPDATE E_Owner SET pk = %1 WHERE pk = 2;"
                                 "UPDATE E_Widget SET r_owner = %1 WHERE pk = 2;"
                                 "UPDATE E_Widget SET pk = %2 WHERE pk = 1;")
                      .arg(far)
                      .arg(kMax));
    auto store = open(file);
    ASSERT_TRUE(store);
    ManagedObjectContext ctx(store);
    auto widgets = ctx.executeFetchRequest(FetchRequest(QStringLiteral("Widget")));
    ASSERT_TRUE(widgets.ok()) << qPrintable(widgets.error().message);
    ASSERT_EQ(widgets->size(), 2);
    const ObjectID farOwner(model->entity(QStringLiteral("Owner")), store->uuid(), far, false);
    ManagedObject *owner = ctx.existingObjectWithID(farOwner);
    ASSERT_NE(owner, nullptr);
    EXPECT_EQ(owner->valueForKey(QStringLiteral("name")).toString(), QStringLiteral("owner 2"));
    EXPECT_EQ(owner->objectsForKey(QStringLiteral("things")).size(), 1);

    ManagedObject *next = ctx.insertNewObject(QStringLiteral("Owner"));
    ASSERT_TRUE(ctx.save().ok());
    EXPECT_EQ(next->objectID().number(), far + 1);
    // The widgets have used up their numbers: the save says so and writes nothing.
    ctx.insertNewObject(QStringLiteral("Widget"));
    auto refused = ctx.save();
    ASSERT_FALSE(refused.ok());
    EXPECT_TRUE(refused.error().message.contains(
        QStringLiteral("no numbers left for new objects of Widget")))
        << qPrintable(refused.error().message);
    ManagedObjectContext reread(store);
    EXPECT_EQ(reread.executeFetchRequest(FetchRequest(QStringLiteral("Widget")))->size(), 2);

    EXPECT_TRUE(ObjectID::parseUri(QStringLiteral("x-billfold://u/Owner/p%1").arg(kMax)));
    EXPECT_FALSE(ObjectID::parseUri(QStringLiteral("x-billfold://u/Owner/p%1").arg(kMax + 1)));
}

TEST_F(ObjectNumbers, LinksBeyondEveryRowAreDamageThatStaysUntilReset) {
    const struct {
        const char *value;
        const char *reason;
    } cases[] = {
        {"0", "Widget 1 links its “owner” to 0; objects are numbered from 1 to "
              "9007199254740991"},
        {"-1", "Widget 1 links its “owner” to -1; objects are numbered from 1"},
        {"1099511627776", "Widget 1 links its “owner” to Owner 1099511627776, beyond the last "
                          "row of Owner (2)"},
        {"9007199254740992", "to 9007199254740992; objects are numbered from 1"},
        {"3", "to Owner 3, beyond the last row of Owner (2)"},
        {"'two'", "to a value that is no object number"},
        {"1.5", "to a value that is no object number"},
        {"x'01'", "to a value that is no object number"},
    };
    int round = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.value);
        const QString file = writeDocument(QStringLiteral("link%1.tadb").arg(++round));
        execute(file, QStringLiteral("UPDATE E_Widget SET r_owner = %1 WHERE pk = 1").arg(c.value));
        auto store = open(file);
        ASSERT_TRUE(store);
        ManagedObjectContext ctx(store);
        // Owners first: the widgets' rows are read on demand, where no caller hears of it.
        auto owners = ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
        ASSERT_TRUE(owners.ok());
        EXPECT_EQ(owners->first()->objectsForKey(QStringLiteral("things")).size(), 0);
        ASSERT_TRUE(ctx.lastLoadError().has_value());
        EXPECT_EQ(ctx.lastLoadError()->code, ErrorCode::FileDamaged);
        EXPECT_TRUE(ctx.lastLoadError()->message.contains(QString::fromUtf8(c.reason)))
            << qPrintable(ctx.lastLoadError()->message);
        for (const char *entity : {"Owner", "Widget", "Note"}) {
            auto again = ctx.executeFetchRequest(FetchRequest(QLatin1String(entity)));
            ASSERT_FALSE(again.ok()) << entity;
            EXPECT_EQ(again.error().message, ctx.lastLoadError()->message);
        }
        EXPECT_FALSE(ctx.loadEntity(QStringLiteral("Note")).ok());
        ctx.reset();
        EXPECT_TRUE(ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner"))).ok());
        EXPECT_FALSE(ctx.executeFetchRequest(FetchRequest(QStringLiteral("Widget"))).ok());
    }
}

TEST_F(ObjectNumbers, LinksInsideTheTablesReadAsTheyAreOrAsEmpty) {
    const QString file = writeDocument(QStringLiteral("inside.tadb"));
    // A deleted row, a row another program adds after the store was opened, and a link to
    // a row of a kind the link does not take.
    execute(file, QStringLiteral("DELETE FROM E_Owner WHERE pk = 1;"
                                 "UPDATE E_Widget SET r_owner = 1 WHERE pk = 1;"));
    auto store = open(file);
    ASSERT_TRUE(store);
    const int ownerCode = store->entityCode(model->entity(QStringLiteral("Owner")));
    const int noteCode = store->entityCode(model->entity(QStringLiteral("Note")));
    execute(file, QStringLiteral("INSERT INTO E_Owner (pk, a_name) VALUES (7, 'late');"
                                 "INSERT INTO E_Widget (pk, a_title, r_owner, r_owner_e, r_buddy, "
                                 "r_buddy_e) VALUES (3, 'late link', 7, %1, 2, %2)")
                      .arg(ownerCode)
                      .arg(noteCode));
    ManagedObjectContext ctx(store);
    // Read first: a link to no row reads as empty once its table has been read.
    ASSERT_TRUE(ctx.loadEntity(QStringLiteral("Owner")).ok());
    auto widgets = ctx.executeFetchRequest(FetchRequest(QStringLiteral("Widget")));
    ASSERT_TRUE(widgets.ok()) << qPrintable(widgets.error().message);
    QMap<QString, QString> owners;
    for (ManagedObject *widget : *widgets) {
        const ManagedObject *owner = widget->objectForKey(QStringLiteral("owner"));
        EXPECT_EQ(widget->objectForKey(QStringLiteral("buddy")), nullptr);
        owners[widget->valueForKey(QStringLiteral("title")).toString()] =
            owner ? owner->valueForKey(QStringLiteral("name")).toString() : QStringLiteral("-");
    }
    EXPECT_EQ(owners,
              (QMap<QString, QString>{{QStringLiteral("widget 1"), QStringLiteral("-")},
                                      {QStringLiteral("widget 2"), QStringLiteral("owner 2")},
                                      {QStringLiteral("late link"), QStringLiteral("late")}}));
    EXPECT_FALSE(ctx.lastLoadError().has_value());
}

TEST_F(ObjectNumbers, KeysCanBeSkippedInOneStepUpToTheLargestNumber) {
    auto store = PersistentStore::createInMemory(*model);
    ASSERT_TRUE(store.ok());
    const EntityDescription *owner = model->entity(QStringLiteral("Owner"));
    const EntityDescription *note = model->entity(QStringLiteral("Note"));
    ASSERT_TRUE((*store)->skipPrimaryKeysThrough(owner, qint64(1) << 40).ok());
    EXPECT_EQ((*store)->allocatePrimaryKey(owner), (qint64(1) << 40) + 1);
    ASSERT_TRUE((*store)->skipPrimaryKeysThrough(owner, 5).ok()) << "never moves back";
    EXPECT_EQ((*store)->allocatePrimaryKey(owner), (qint64(1) << 40) + 2);
    EXPECT_EQ((*store)->allocatePrimaryKey(note), 1) << "each entity counts on its own";

    ASSERT_TRUE((*store)->skipPrimaryKeysThrough(note, kMax - 1).ok());
    EXPECT_EQ((*store)->allocatePrimaryKey(note), kMax);
    EXPECT_EQ((*store)->allocatePrimaryKey(note), 0);
    auto beyond = (*store)->skipPrimaryKeysThrough(note, kMax + 1);
    ASSERT_FALSE(beyond.ok());
    EXPECT_TRUE(beyond.error().message.contains(QString::number(kMax)));
}

} // namespace
