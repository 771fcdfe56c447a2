#include "TestModel.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/Predicate.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

QByteArray fileHash(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
}

void writeDocument(const QString &path, const ManagedObjectModel &model, int owners) {
    auto store = PersistentStore::create(path, model);
    ASSERT_TRUE(store.ok());
    ManagedObjectContext ctx(*store);
    for (int i = 0; i < owners; ++i)
        ctx.insertNewObject(QStringLiteral("Owner"))
            ->setValueForKey(QStringLiteral("owner %1").arg(i), QStringLiteral("name"));
    ASSERT_TRUE(ctx.save().ok());
}

struct StoreFile : ::testing::Test {
    std::unique_ptr<ManagedObjectModel> model = makeTestModel();
    QTemporaryDir dir;
};

TEST_F(StoreFile, BadFilesAreRefusedWithAClearErrorAndNeverChanged) {
    const QString good = dir.filePath(QStringLiteral("good.tadb"));
    writeDocument(good, *model, 300);
    QFile source(good);
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray bytes = source.readAll();

    struct Case {
        QString name;
        QByteArray content;
        int code;
    };
    QByteArray random(4096 * 3, '\0');
    QRandomGenerator generator(42);
    for (char &c : random)
        c = char(generator.bounded(256));
    const QList<Case> cases{
        {QStringLiteral("truncated.tadb"), bytes.left(bytes.size() / 2), ErrorCode::FileDamaged},
        {QStringLiteral("random.tadb"), random, ErrorCode::FileNotADocument},
        {QStringLiteral("empty.tadb"), QByteArray(), ErrorCode::FileNotADocument},
        {QStringLiteral("header-only.tadb"), bytes.left(100), ErrorCode::FileDamaged},
    };
    for (const Case &c : cases) {
        const QString path = dir.filePath(c.name);
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(c.content);
        out.close();
        const QByteArray before = fileHash(path);
        auto opened = PersistentStore::open(path, *model);
        ASSERT_FALSE(opened.ok()) << qPrintable(c.name);
        EXPECT_TRUE(opened.error().message.contains(c.name)) << qPrintable(opened.error().message);
        EXPECT_NE(opened.error().code, 0);
        EXPECT_EQ(fileHash(path), before) << qPrintable(c.name);
        EXPECT_FALSE(QFile::exists(path + QStringLiteral("-wal"))) << qPrintable(c.name);
    }

    // Another program's SQLite database.
    const QString foreign = dir.filePath(QStringLiteral("foreign.sqlite"));
    sqlite3 *db = nullptr;
    sqlite3_open(foreign.toUtf8().constData(), &db);
    sqlite3_exec(db, "CREATE TABLE songs(title TEXT); INSERT INTO songs VALUES('x');", nullptr,
                 nullptr, nullptr);
    sqlite3_close(db);
    const QByteArray foreignBefore = fileHash(foreign);
    auto opened = PersistentStore::open(foreign, *model);
    ASSERT_FALSE(opened.ok());
    EXPECT_EQ(opened.error().code, ErrorCode::FileNotADocument);
    EXPECT_EQ(fileHash(foreign), foreignBefore);

    auto missing = PersistentStore::open(dir.filePath(QStringLiteral("missing.tadb")), *model);
    ASSERT_FALSE(missing.ok());
    EXPECT_EQ(missing.error().code, ErrorCode::FileMissing);
}

TEST_F(StoreFile, UnknownModelIsRefusedAndAnOlderOneIsUpgradedInPlace) {
    auto older = makeTestModel(QStringLiteral("Test_1"), false);
    ASSERT_NE(older->versionHash(), model->versionHash());
    const QString path = dir.filePath(QStringLiteral("old.tadb"));
    writeDocument(path, *older, 3);

    // A newer program's file as seen by this one: unknown hash.
    const QByteArray before = fileHash(path);
    auto refused = PersistentStore::open(path, *model);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::FileNewerModel);
    EXPECT_TRUE(refused.error().message.contains(QStringLiteral("Test_1")));
    EXPECT_EQ(fileHash(path), before);

    PersistentStore::Options options;
    options.olderModels = {older.get()};
    auto upgraded = PersistentStore::open(path, *model, options);
    ASSERT_TRUE(upgraded.ok()) << qPrintable(upgraded.error().message);
    EXPECT_EQ((*upgraded)->originalModelVersion(), QStringLiteral("Test_1"));
    ManagedObjectContext ctx(*upgraded);
    EXPECT_EQ(ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")))->size(), 3);
    ctx.insertNewObject(QStringLiteral("Extra"))
        ->setValueForKey(QStringLiteral("new"), QStringLiteral("memo"));
    ASSERT_TRUE(ctx.save().ok());
    auto meta = PersistentStore::metadataForFile(path);
    ASSERT_TRUE(meta.ok());
    EXPECT_EQ(meta->modelVersion, QStringLiteral("Test_2"));
    EXPECT_EQ(meta->modelHash, model->versionHash());
}

// A file whose recorded model name and fingerprint disagree was changed by something else.
TEST_F(StoreFile, ModelNameThatDisagreesWithItsFingerprintIsDamage) {
    const QString path = dir.filePath(QStringLiteral("renamed.tadb"));
    writeDocument(path, *model, 1);
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "UPDATE _meta SET value = 'Other_9' WHERE key = 'modelVersion'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    const QByteArray before = fileHash(path);
    auto refused = PersistentStore::open(path, *model);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::FileDamaged);
    EXPECT_TRUE(refused.error().message.contains(QStringLiteral("Other_9")))
        << qPrintable(refused.error().message);
    EXPECT_EQ(fileHash(path), before);
}

TEST_F(StoreFile, OlderModelWhoseLinkChangedShapeIsNotUpgradedInPlace) {
    ManagedObjectModel older(QStringLiteral("Test_0"));
    older.addEntity(QStringLiteral("Owner"))
        .addAttribute(QStringLiteral("name"), AttributeType::String);
    // A note's "owner" was once another note; now it is an owner.
    older.addEntity(QStringLiteral("Note"))
        .addAttribute(QStringLiteral("text"), AttributeType::String)
        .addToOne(QStringLiteral("owner"), QStringLiteral("Note"));
    ASSERT_TRUE(older.finish().ok());
    const QString path = dir.filePath(QStringLiteral("reshaped.tadb"));
    writeDocument(path, older, 2);
    const QByteArray before = fileHash(path);
    PersistentStore::Options options;
    options.olderModels = {&older};
    auto refused = PersistentStore::open(path, *model, options);
    ASSERT_FALSE(refused.ok());
    EXPECT_TRUE(refused.error().message.contains(QStringLiteral("cannot be upgraded in place")));
    EXPECT_EQ(fileHash(path), before);
}

TEST_F(StoreFile, NewerModelRecordedOnlyInTheLogIsRefusedToo) {
    // What a newer program leaves when it upgraded the file and stopped before a checkpoint.
    const QString path = dir.filePath(QStringLiteral("newer.tadb"));
    writeDocument(path, *model, 1);
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    ASSERT_EQ(sqlite3_exec(db,
                           "PRAGMA wal_autocheckpoint=0;"
                           "UPDATE _meta SET value='Test_9' WHERE key='modelVersion';"
                           "UPDATE _meta SET value='0badc0de' WHERE key='modelHash';",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    ASSERT_GT(QFileInfo(path + QStringLiteral("-wal")).size(), 0);
    const QByteArray before = fileHash(path);
    const QByteArray logBefore = fileHash(path + QStringLiteral("-wal"));
    auto refused = PersistentStore::open(path, *model);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::FileNewerModel);
    EXPECT_TRUE(refused.error().message.contains(QStringLiteral("Test_9")));
    EXPECT_EQ(fileHash(path), before);
    EXPECT_EQ(fileHash(path + QStringLiteral("-wal")), logBefore);
}

// Also for root, whose rights would let a write through: the file's mode says no.
TEST_F(StoreFile, ReadOnlyFileOpensReadOnlyAndRefusesToSave) {
    const QString path = dir.filePath(QStringLiteral("ro.tadb"));
    writeDocument(path, *model, 2);
    ASSERT_EQ(chmod(path.toUtf8().constData(), 0444), 0);
    auto store = PersistentStore::open(path, *model);
    ASSERT_TRUE(store.ok()) << qPrintable(store.error().message);
    EXPECT_TRUE((*store)->isReadOnly());
    ManagedObjectContext ctx(*store);
    auto owners = *ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
    ASSERT_EQ(owners.size(), 2);
    owners[0]->setValueForKey(QStringLiteral("x"), QStringLiteral("name"));
    auto saved = ctx.save();
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::FileReadOnly);
}

TEST_F(StoreFile, ExplicitReadOnlyOptionAndSecondContextOnAnotherThreadSeeSavedState) {
    const QString path = dir.filePath(QStringLiteral("shared.tadb"));
    writeDocument(path, *model, 5);
    auto store = PersistentStore::open(path, *model);
    ASSERT_TRUE(store.ok());
    ManagedObjectContext main(*store);
    auto owners = *main.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
    owners[0]->setValueForKey(qint64(77), QStringLiteral("count"));
    ASSERT_TRUE(main.save().ok());

    qint64 seen = 0;
    qsizetype count = 0;
    QThread *worker = QThread::create([&] {
        ManagedObjectContext background(*store);
        background.setUndoManager(nullptr);
        auto found = background.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
        count = found->size();
        for (ManagedObject *o : *found)
            seen += o->integerForKey(QStringLiteral("count"));
    });
    worker->start();
    worker->wait();
    delete worker;
    EXPECT_EQ(count, 5);
    EXPECT_EQ(seen, 77);

    PersistentStore::Options readOnly;
    readOnly.readOnly = true;
    auto ro = PersistentStore::open(path, *model, readOnly);
    ASSERT_TRUE(ro.ok());
    EXPECT_TRUE((*ro)->isReadOnly());
}

// A fetch that wants links empty reads only the rows that can match while the table is unread;
// it must find what a full read finds, dangling and foreign links included, and leave the
// context able to read the rest without doubles.
TEST_F(StoreFile, FetchWantingEmptyLinksAgreesWithAFullRead) {
    const QString path = dir.filePath(QStringLiteral("links.tadb"));
    {
        auto store = PersistentStore::create(path, *model);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext ctx(*store);
        // Saved and deleted again: a number inside the table that names no row.
        ManagedObject *gone = ctx.insertNewObject(QStringLiteral("Owner"));
        ASSERT_TRUE(ctx.save().ok());
        const qint64 goneNumber = gone->objectID().number();
        ctx.deleteObject(gone);
        ManagedObject *owner = ctx.insertNewObject(QStringLiteral("Owner"));
        ManagedObject *special = ctx.insertNewObject(QStringLiteral("SpecialOwner"));
        ManagedObject *note = ctx.insertNewObject(QStringLiteral("Note"));
        const auto thing = [&](const char *entity, const char *title, ManagedObject *o,
                               ManagedObject *buddy) {
            ManagedObject *t = ctx.insertNewObject(QLatin1String(entity));
            t->setValueForKey(QLatin1String(title), QStringLiteral("title"));
            t->setObjectForKey(o, QStringLiteral("owner"));
            t->setObjectForKey(buddy, QStringLiteral("buddy"));
            return t;
        };
        thing("Widget", "free", nullptr, nullptr);
        thing("Widget", "owned", owner, nullptr);
        thing("Widget", "owned by special", special, nullptr);
        thing("Widget", "buddy only", nullptr, owner);
        ManagedObject *dangling = thing("Widget", "dangling", nullptr, nullptr);
        ManagedObject *foreign = thing("Widget", "foreign", nullptr, nullptr);
        thing("Gadget", "free gadget", nullptr, nullptr);
        ASSERT_TRUE(ctx.save().ok());
        // Links a damaged or foreign-edited file may hold: to no row, and to a row of a
        // kind the link does not take.
        const EntityDescription *widget = model->entity(QStringLiteral("Widget"));
        const QString owned = PersistentStore::linkColumn(QStringLiteral("owner"));
        const QString ownedKind = PersistentStore::linkEntityColumn(QStringLiteral("owner"));
        const QString sql =
            QStringLiteral("UPDATE \"%1\" SET \"%2\" = %4, \"%3\" = %5 WHERE pk = %6;"
                           "UPDATE \"%1\" SET \"%2\" = %7, \"%3\" = %8 WHERE pk = %9;")
                .arg(PersistentStore::tableName(widget), owned, ownedKind)
                .arg(goneNumber)
                .arg((*store)->entityCode(model->entity(QStringLiteral("Owner"))))
                .arg(dangling->objectID().number())
                .arg(note->objectID().number())
                .arg((*store)->entityCode(note->entity()))
                .arg(foreign->objectID().number());
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    auto store = PersistentStore::open(path, *model);
    ASSERT_TRUE(store.ok());
    FetchRequest unassigned(QStringLiteral("Thing"));
    unassigned.predicate = std::make_shared<const Predicate>(
        *Predicate::parse(QStringLiteral("owner == %@ AND buddy == %@"), {QVariant(), QVariant()}));
    const auto titles = [](const QList<ManagedObject *> &objects) {
        QStringList list;
        for (ManagedObject *o : objects)
            list.append(o->valueForKey(QStringLiteral("title")).toString());
        list.sort();
        return list;
    };
    // A link to no row reads as a link until its table is read, and as empty after.
    const QStringList expected{QStringLiteral("foreign"), QStringLiteral("free"),
                               QStringLiteral("free gadget")};

    ManagedObjectContext fullRead(*store);
    ASSERT_TRUE(fullRead.loadEntity(QStringLiteral("Thing")).ok());
    EXPECT_EQ(titles(*fullRead.executeFetchRequest(unassigned)), expected);

    ManagedObjectContext partRead(*store);
    EXPECT_EQ(titles(*partRead.executeFetchRequest(unassigned)), expected);
    EXPECT_EQ(titles(*partRead.executeFetchRequest(unassigned)), expected);
    EXPECT_EQ(partRead.executeFetchRequest(FetchRequest(QStringLiteral("Thing")))->size(), 7);
    auto owners = *partRead.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
    qsizetype linked = 0;
    for (ManagedObject *o : owners)
        linked += o->objectsForKey(QStringLiteral("things")).size();
    EXPECT_EQ(linked, 2);

    // Owners read first, and unsaved changes that make the whole table be read.
    ManagedObjectContext edited(*store);
    auto named = *edited.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
    named.first()->setValueForKey(QStringLiteral("renamed"), QStringLiteral("name"));
    EXPECT_EQ(titles(*edited.executeFetchRequest(unassigned)),
              QStringList{QStringLiteral("dangling")} + expected);
}

TEST_F(StoreFile, AFailedSaveKeepsTheChangesAndTheFileAndCanBeRetried) {
    const QString path = dir.filePath(QStringLiteral("busy.tadb"));
    writeDocument(path, *model, 1);
    auto store = PersistentStore::open(path, *model);
    ASSERT_TRUE(store.ok());
    (*store)->setBusyTimeout(50);
    ManagedObjectContext ctx(*store);
    ManagedObject *owner = ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")))->value(0);
    owner->setValueForKey(QStringLiteral("edited"), QStringLiteral("name"));
    ctx.insertNewObject(QStringLiteral("Note"));

    sqlite3 *other = nullptr; // another program holding the write lock
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    auto failed = ctx.save();
    ASSERT_FALSE(failed.ok());
    EXPECT_EQ(failed.error().code, ErrorCode::FileLocked);
    EXPECT_TRUE(ctx.hasChanges()) << "nothing is lost when a save fails";
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);

    {
        auto reader = PersistentStore::open(path, *model);
        ManagedObjectContext peek(*reader);
        EXPECT_EQ(peek.executeFetchRequest(FetchRequest(QStringLiteral("Owner")))
                      ->value(0)
                      ->stringForKey(QStringLiteral("name")),
                  QStringLiteral("owner 0"))
            << "the file keeps its last saved state";
    }
    ASSERT_TRUE(ctx.save().ok());
    EXPECT_FALSE(ctx.hasChanges());
    auto reopened = PersistentStore::open(path, *model);
    ManagedObjectContext again(*reopened);
    EXPECT_EQ(again.executeFetchRequest(FetchRequest(QStringLiteral("Note")))->size(), 1);
}

// A child process saves in a loop, each save writing one generation number into every
// object; it is killed at random moments. The file must always open, with every object of
// one generation: the state before or after the interrupted save, never a mixture.
TEST_F(StoreFile, KillDuringSaveLeavesTheLastSavedStateReadable) {
    const QString path = dir.filePath(QStringLiteral("crash.tadb"));
    writeDocument(path, *model, 0);
    QRandomGenerator generator(7);
    qint64 lastGeneration = -1;
    for (int round = 0; round < 6; ++round) {
        // The child says when its first save is done, so the first round is known to kill a
        // saving child whatever the build's speed; a guessed delay could end before that.
        int firstSave[2];
        ASSERT_EQ(pipe(firstSave), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(firstSave[0]);
            auto store = PersistentStore::open(path, *model);
            if (!store.ok())
                _exit(3);
            ManagedObjectContext ctx(*store);
            ctx.setUndoManager(nullptr);
            auto owners = *ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
            while (owners.size() < 200)
                owners.append(ctx.insertNewObject(QStringLiteral("Owner")));
            qint64 generation = owners[0]->integerForKey(QStringLiteral("count"));
            for (;;) {
                ++generation;
                for (ManagedObject *o : owners)
                    o->setValueForKey(generation, QStringLiteral("count"));
                if (!ctx.save().ok())
                    _exit(4);
                if (firstSave[1] >= 0) {
                    if (::write(firstSave[1], "s", 1) != 1)
                        _exit(5);
                    ::close(std::exchange(firstSave[1], -1));
                }
            }
        }
        ::close(firstSave[1]);
        // The read end stays open until the child is gone: its byte must not meet a closed
        // pipe. A read that ends without the byte means the child died; its status says why.
        char byte = 0;
        const bool waited = round > 0 || ::read(firstSave[0], &byte, 1) == 1;
        // Later rounds may be killed before their first save, and any save may be cut short.
        usleep(20000 + generator.bounded(80000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ::close(firstSave[0]);
        ASSERT_TRUE(waited && WIFSIGNALED(status))
            << "the saving child stopped on its own: " << WEXITSTATUS(status);

        auto store = PersistentStore::open(path, *model);
        ASSERT_TRUE(store.ok()) << qPrintable(store.error().message);
        ManagedObjectContext ctx(*store);
        auto owners = *ctx.executeFetchRequest(FetchRequest(QStringLiteral("Owner")));
        if (owners.isEmpty())
            continue; // killed before the first save
        ASSERT_EQ(owners.size(), 200);
        const qint64 generation = owners[0]->integerForKey(QStringLiteral("count"));
        for (ManagedObject *o : owners)
            ASSERT_EQ(o->integerForKey(QStringLiteral("count")), generation);
        EXPECT_GE(generation, lastGeneration);
        lastGeneration = generation;
    }
    EXPECT_GT(lastGeneration, 0);
}

} // namespace
