#include "FaultVfs.h"
#include "TestModel.h"

#include "objectstore/DocumentFileWriter.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "support/FillingDevice.h"
#include "support/StrayFiles.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString kOwner = QStringLiteral("Owner");

// A document of `owners` owners named "<prefix> <n>". With `keepLog`, the last change stays
// in the write-ahead log beside the file, as when a program was stopped before it closed.
void writeDocument(const QString &path, const ManagedObjectModel &model, int owners,
                   const QString &prefix, bool keepLog = false) {
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
    {
        auto store = PersistentStore::create(path, model);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext ctx(*store);
        for (int i = 0; i < owners; ++i)
            ctx.insertNewObject(kOwner)->setValueForKey(QStringLiteral("%1 %2").arg(prefix).arg(i),
                                                        QStringLiteral("name"));
        ASSERT_TRUE(ctx.save().ok());
    }
    if (!keepLog)
        return;
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    const QByteArray sql =
        QStringLiteral("UPDATE E_Owner SET a_name = '%1 logged' WHERE pk = 1").arg(prefix).toUtf8();
    ASSERT_EQ(sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
    ASSERT_GT(QFileInfo(path + QStringLiteral("-wal")).size(), 0);
}

// The owners' names as a fresh store reads them; empty when the file cannot be opened.
QStringList namesIn(const QString &path, const ManagedObjectModel &model) {
    auto store = PersistentStore::open(path, model);
    if (!store.ok())
        return {QStringLiteral("unreadable: ") + store.error().message};
    ManagedObjectContext ctx(*store);
    QStringList names;
    auto owners = ctx.executeFetchRequest(FetchRequest(kOwner));
    for (ManagedObject *owner : *owners)
        names.append(owner->stringForKey(QStringLiteral("name")));
    names.sort();
    return names;
}

QStringList names(const QString &prefix, int count, bool logged = false) {
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(QStringLiteral("%1 %2").arg(prefix).arg(i));
    if (logged)
        list[0] = prefix + QStringLiteral(" logged"); // pk 1 is the first owner made
    list.sort();
    return list;
}

void renameAll(ManagedObjectContext &ctx, const QString &prefix) {
    int i = 0;
    const auto fetched = *ctx.executeFetchRequest(FetchRequest(kOwner));
    std::vector<ManagedObject *> owners(fetched.begin(), fetched.end());
    std::sort(owners.begin(), owners.end(), [](ManagedObject *a, ManagedObject *b) {
        return a->objectID().number() < b->objectID().number();
    });
    for (ManagedObject *owner : owners)
        owner->setValueForKey(QStringLiteral("%1 %2").arg(prefix).arg(i++), QStringLiteral("name"));
}

// Writes go to a file only up to `bytes`; past that a write fails ("File too large"), or,
// with `kill`, ends the process as SIGKILL would: no code of it runs any more.
class FileSizeLimit {
public:
    FileSizeLimit(rlim_t bytes, bool kill) {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        m_handler = std::signal(SIGXFSZ, kill ? SIG_DFL : SIG_IGN);
        rlimit limit{bytes, m_saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_saved{};
    void (*m_handler)(int) = nullptr;
};

struct StoreWriteFault : ::testing::Test {
    QString path(const QString &name) const { return dir.filePath(name); }
    void copy(const QString &from, const QString &to) {
        QFile::remove(path(to));
        ASSERT_TRUE(QFile::copy(path(from), path(to)));
    }

    std::unique_ptr<ManagedObjectModel> model = makeTestModel();
    QTemporaryDir dir;
};

// A full disk or a failing one at any write of a save: the save says why, the file keeps its
// last saved state, the changes stay in the context, and the next save writes them.
TEST_F(StoreWriteFault, SaveFailingAtAnyWriteKeepsTheFileAndTheChanges) {
    writeDocument(path("base.tadb"), *model, 30, QStringLiteral("old"));
    FaultVfs vfs;
    int total = 0;
    {
        copy("base.tadb", "count.tadb");
        auto store = PersistentStore::open(path("count.tadb"), *model);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext ctx(*store);
        renameAll(ctx, QStringLiteral("new"));
        vfs.failAt(0, SQLITE_OK);
        ASSERT_TRUE(ctx.save().ok());
        total = vfs.writes();
    }
    ASSERT_GT(total, 1);
    for (const int code : {SQLITE_FULL, SQLITE_IOERR_WRITE}) {
        for (int n = 1; n <= total; ++n) {
            SCOPED_TRACE(testing::Message() << "code " << code << ", write " << n);
            copy("base.tadb", "doc.tadb");
            auto store = PersistentStore::open(path("doc.tadb"), *model);
            ASSERT_TRUE(store.ok());
            ManagedObjectContext ctx(*store);
            renameAll(ctx, QStringLiteral("new"));
            vfs.failAt(n, code);
            const auto failed = ctx.save();
            vfs.failAt(0, SQLITE_OK);
            ASSERT_FALSE(failed.ok());
            EXPECT_TRUE(failed.error().message.contains(QString::fromUtf8(sqlite3_errstr(code))))
                << qPrintable(failed.error().message);
            EXPECT_TRUE(ctx.hasChanges());
            EXPECT_EQ(namesIn(path("doc.tadb"), *model), names(QStringLiteral("old"), 30));
            ASSERT_TRUE(ctx.save().ok());
            EXPECT_EQ(namesIn(path("doc.tadb"), *model), names(QStringLiteral("new"), 30));
        }
    }
}

// Save-as over another document whose newest change still sits in its log, with the disk
// filling up at many points: the error names the cause, both files keep what they held, the
// store stays where it was, nothing else is left in the folder, and a later try succeeds.
TEST_F(StoreWriteFault, SaveAsFailingToWriteLeavesBothFilesAsTheyWere) {
    writeDocument(path("source.tadb"), *model, 40, QStringLiteral("source"));
    for (const rlim_t limit : {rlim_t(0), rlim_t(100), rlim_t(4096), rlim_t(12000)}) {
        SCOPED_TRACE(testing::Message() << "limit " << limit);
        writeDocument(path("target.tadb"), *model, 5, QStringLiteral("target"), true);
        auto store = PersistentStore::open(path("source.tadb"), *model);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext ctx(*store);
        renameAll(ctx, QStringLiteral("edited"));
        Result<void> failed;
        {
            FileSizeLimit full(limit, false);
            failed = ctx.saveAs(path("target.tadb"));
        }
        ASSERT_FALSE(failed.ok());
        EXPECT_TRUE(failed.error().message.contains(QStringLiteral("target.tadb")))
            << qPrintable(failed.error().message);
        EXPECT_TRUE(failed.error().message.contains(QStringLiteral("too large")))
            << qPrintable(failed.error().message);
        EXPECT_TRUE(ctx.hasChanges());
        EXPECT_EQ((*store)->path(), path("source.tadb"));
        EXPECT_EQ(namesIn(path("target.tadb"), *model), names(QStringLiteral("target"), 5, true));
        EXPECT_EQ(namesIn(path("source.tadb"), *model), names(QStringLiteral("source"), 40));
        EXPECT_EQ(strayFiles(dir.path(), {"source.tadb", "target.tadb"}), QStringList());

        ASSERT_TRUE(ctx.saveAs(path("target.tadb")).ok());
        EXPECT_EQ((*store)->path(), path("target.tadb"));
        EXPECT_EQ(namesIn(path("target.tadb"), *model), names(QStringLiteral("edited"), 40));
        EXPECT_EQ(namesIn(path("source.tadb"), *model), names(QStringLiteral("source"), 40));
        renameAll(ctx, QStringLiteral("after"));
        ASSERT_TRUE(ctx.save().ok()) << "the store lives on in its new file";
        EXPECT_EQ(namesIn(path("target.tadb"), *model), names(QStringLiteral("after"), 40));
    }
}

// A child saves the edited document over another one and dies at a write: at every write
// that goes through SQLite, and at points spread over the new file's bytes. The target is
// always the old document, its logged change included, or the complete new one, and no
// temporary file is left.
TEST_F(StoreWriteFault, KilledSaveAsLeavesTheOldOrTheNewDocument) {
    writeDocument(path("source.tadb"), *model, 60, QStringLiteral("source"));
    int sawOld = 0, sawNew = 0;
    auto interrupt = [&](const std::function<void()> &arm) {
        writeDocument(path("target.tadb"), *model, 5, QStringLiteral("target"), true);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            auto store = PersistentStore::open(path("source.tadb"), *model);
            if (!store.ok())
                _exit(3);
            ManagedObjectContext ctx(*store);
            renameAll(ctx, QStringLiteral("edited"));
            arm();
            _exit(ctx.saveAs(path("target.tadb")).ok() ? 0 : 4);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0)
            << "the child failed without being stopped: " << WEXITSTATUS(status);
        const QStringList found = namesIn(path("target.tadb"), *model);
        if (found == names(QStringLiteral("edited"), 60))
            ++sawNew;
        else if (found == names(QStringLiteral("target"), 5, true))
            ++sawOld;
        else
            ADD_FAILURE() << "the target holds neither document: " << qPrintable(found.join(", "));
        EXPECT_EQ(namesIn(path("source.tadb"), *model), names(QStringLiteral("source"), 60));
        EXPECT_EQ(strayFiles(dir.path(), {"source.tadb", "target.tadb"}), QStringList());
    };
    FaultVfs vfs;
    {
        writeDocument(path("target.tadb"), *model, 5, QStringLiteral("target"), true);
        auto store = PersistentStore::open(path("source.tadb"), *model);
        ManagedObjectContext ctx(*store);
        renameAll(ctx, QStringLiteral("edited"));
        vfs.failAt(0, SQLITE_OK);
        ASSERT_TRUE(ctx.saveAs(path("target.tadb")).ok());
    }
    const int writes = vfs.writes();
    for (int n = 1; n <= writes + 1; ++n) {
        SCOPED_TRACE(testing::Message() << "write " << n);
        interrupt([&vfs, n] { vfs.failAt(n, FaultVfs::kKill); });
    }
    vfs.failAt(0, SQLITE_OK);
    const qint64 size = QFileInfo(path("target.tadb")).size();
    for (qint64 limit = 0; limit <= size; limit += size / 12) {
        SCOPED_TRACE(testing::Message() << "limit " << limit);
        interrupt([limit] { new FileSizeLimit(rlim_t(limit), true); });
    }
    EXPECT_GT(sawOld, 0);
    EXPECT_GT(sawNew, 0);
}

TEST(DocumentFileWriter, ImageIsWrittenWholeInWriteAheadModeOrFailsWithTheDevicesReason) {
    QByteArray image(3 * (1 << 20) + 123, 'x');
    image.replace(0, 16, QByteArray("SQLite format 3\0", 16));
    image[18] = image[19] = 1;
    FillingDevice roomy(100, FillingDevice::Room::Writes);
    ASSERT_TRUE(DocumentFileWriter::writeImage(image, roomy).ok());
    ASSERT_EQ(roomy.written.size(), image.size());
    EXPECT_EQ(int(roomy.written[18]), 2);
    EXPECT_EQ(int(roomy.written[19]), 2);
    EXPECT_EQ(roomy.written.mid(20), image.mid(20));
    for (int room = 0; room < 5; ++room) {
        FillingDevice device(room, FillingDevice::Room::Writes);
        const auto written = DocumentFileWriter::writeImage(image, device);
        ASSERT_FALSE(written.ok()) << room;
        EXPECT_EQ(written.error().message, QStringLiteral("No space left on device"));
    }
}

} // namespace
