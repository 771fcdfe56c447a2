#include "CliTestSupport.h"

#include "support/StrayFiles.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <sqlite3.h>
#include <sys/resource.h>

namespace {

// How the child's writes end: past `limit` bytes of a file, a write kills the process (as
// SIGKILL would, nothing of it runs after) or fails as on a full disk. A limit of -1 lets the
// child run until it is killed after `killAfterMs`.
struct Interruption {
    qint64 limit = -1;
    bool kill = true;
    int killAfterMs = -1;
    qint64 memory = -1; // bytes of address space, when limited
};

struct ChildRun {
    bool crashed = false;
    int status = -1;
    QString err;
};

ChildRun runCli(const QStringList &arguments, const Interruption &how) {
    QProcess process;
    process.setProgram(QStringLiteral(BILLFOLD_CLI));
    process.setArguments(arguments);
    process.setChildProcessModifier([how] {
        if (how.limit >= 0) {
            std::signal(SIGXFSZ, how.kill ? SIG_DFL : SIG_IGN);
            rlimit limit{};
            getrlimit(RLIMIT_FSIZE, &limit);
            limit.rlim_cur = rlim_t(how.limit);
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        if (how.memory >= 0) {
            rlimit limit{rlim_t(how.memory), rlim_t(how.memory)};
            setrlimit(RLIMIT_AS, &limit);
        }
    });
    process.start();
    process.waitForStarted();
    if (how.killAfterMs >= 0 && !process.waitForFinished(how.killAfterMs))
        process.kill();
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::CrashExit, process.exitCode(),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class CliInterruptedWrite : public CliTest {
protected:
    // The document as export-json gives it; empty when there is no document at the path.
    QString contents(const QString &name) const {
        if (!QFileInfo::exists(path(name)))
            return {};
        const CliRun run = cli({"export-json", path(name)});
        return run.status == 0 ? run.out : QStringLiteral("unreadable: ") + run.err;
    }

    // Files that are neither one of the documents named here (with their SQLite side files)
    // nor another input of the command.
    QStringList strays(const QStringList &known) const { return strayFiles(dir.path(), known); }

    // An existing document whose newest change is still in its write-ahead log.
    void makeOldDocument(const QString &name) {
        for (const char *suffix : {"", "-wal", "-shm"})
            QFile::remove(path(name) + QLatin1String(suffix));
        ASSERT_EQ(cli({"--now", "2026-03-01T10:00:00Z", "new", path(name)}).status, 0);
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(path(name).toUtf8().constData(), &db), SQLITE_OK);
        sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        ASSERT_EQ(sqlite3_exec(db,
                               "PRAGMA journal_mode=WAL; UPDATE E_Currency SET a_title = "
                               "'Logged money'",
                               nullptr, nullptr, nullptr),
                  SQLITE_OK);
        sqlite3_close(db);
        ASSERT_GT(QFileInfo(path(name) + "-wal").size(), 0);
    }

    // Runs the command interrupted at points spread over all it writes and over its run time;
    // after each, `target` must hold `before` or `after` and nothing else may be left behind.
    void interruptEverywhere(const QStringList &arguments, const QString &target,
                             const std::function<void()> &reset, const QString &before,
                             const QString &after, const QStringList &inputs) {
        reset();
        QElapsedTimer clock;
        clock.start();
        ASSERT_EQ(runCli(arguments, {}).status, 0);
        const qint64 took = std::max<qint64>(clock.elapsed(), 20);
        ASSERT_EQ(contents(target), after);
        const qint64 size = QFileInfo(path(target)).size();

        QList<Interruption> points;
        for (int i = 0; i <= 16; ++i)
            points.append({size * i / 16, true, -1});
        for (int i = 1; i <= 8; ++i)
            points.append({-1, true, int(took * i / 9)});
        int sawBefore = 0, sawAfter = 0;
        for (const Interruption &point : points) {
            SCOPED_TRACE(testing::Message() << "limit " << point.limit << ", kill after "
                                            << point.killAfterMs << " ms");
            reset();
            const ChildRun run = runCli(arguments, point);
            EXPECT_TRUE(run.crashed || run.status == 0) << run.status << run.err.toStdString();
            const QString found = contents(target);
            sawBefore += found == before;
            sawAfter += found == after;
            EXPECT_TRUE(found == before || found == after)
                << "the target holds something else: " << found.left(300).toStdString();
            EXPECT_EQ(strays(QStringList{target} + inputs), QStringList());
        }
        EXPECT_GT(sawAfter, 0);
        EXPECT_GT(sawBefore, 0);
    }

    // With the disk full at points over the write, the command fails with one line saying why,
    // and leaves the target as it was.
    void fillDiskEverywhere(const QStringList &arguments, const QString &target,
                            const std::function<void()> &reset, const QString &before,
                            const QStringList &inputs) {
        for (const qint64 limit : {0, 1000, 20000, 100000}) {
            SCOPED_TRACE(testing::Message() << "limit " << limit);
            reset();
            const ChildRun run = runCli(arguments, {limit, false, -1});
            EXPECT_EQ(run.status, 2) << run.err.toStdString();
            EXPECT_TRUE(run.err.contains(path(target))) << run.err.toStdString();
            EXPECT_TRUE(run.err.contains("File too large")) << run.err.toStdString();
            EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
            EXPECT_EQ(contents(target), before);
            EXPECT_EQ(strays(QStringList{target} + inputs), QStringList());
        }
    }
};

TEST_F(CliInterruptedWrite, ForcedImportLeavesTheOldDocumentOrTheCompleteNewOne) {
    ASSERT_EQ(cli({"--now", "2026-03-01T10:00:00Z", "new", path("sample.tadb"), "--sample"}).status,
              0);
    const QString json = contents("sample.tadb");
    write("in.json", json.toUtf8());
    QFile::remove(path("sample.tadb"));
    auto reset = [this] { makeOldDocument("doc.tadb"); };
    reset();
    const QString before = contents("doc.tadb");
    ASSERT_TRUE(before.contains("Logged money"));
    const QStringList import{"import-json", path("in.json"), "-o", path("doc.tadb"), "--force"};
    interruptEverywhere(import, "doc.tadb", reset, before, json, {"in.json"});
    fillDiskEverywhere(import, "doc.tadb", reset, before, {"in.json"});
}

TEST_F(CliInterruptedWrite, NewSampleAppearsWholeOrNotAtAll) {
    auto reset = [this] {
        for (const QString &name : files())
            QFile::remove(path(name));
    };
    const QStringList make{"--now", "2026-03-01T10:00:00Z", "new", path("made.tadb"), "--sample"};
    reset();
    ASSERT_EQ(runCli(make, {}).status, 0);
    const QString made = contents("made.tadb");
    ASSERT_FALSE(made.isEmpty());
    interruptEverywhere(make, "made.tadb", reset, QString(), made, {});
    fillDiskEverywhere(make, "made.tadb", reset, QString(), {});
}

// An export that runs out of room says what failed and leaves no part of its output.
TEST_F(CliInterruptedWrite, ExportOntoAFullDiskNamesTheCauseAndLeavesNoOutput) {
    ASSERT_EQ(cli({"--now", "2026-03-01T10:00:00Z", "new", path("doc.tadb"), "--sample"}).status,
              0);
    for (const qint64 limit : {0, 100, 5000}) {
        SCOPED_TRACE(testing::Message() << "limit " << limit);
        const ChildRun run =
            runCli({"export-json", path("doc.tadb"), "-o", path("out.json")}, {limit, false, -1});
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.err.startsWith("billfold-cli: " + path("out.json") + ": "))
            << run.err.toStdString();
        EXPECT_TRUE(run.err.contains("File too large")) << run.err.toStdString();
        EXPECT_EQ(strays({"doc.tadb"}), QStringList());
    }
}

// Out of memory at any point of a large import: the command ends with one line saying so and
// exit status 2, or succeeds; it never crashes, and leaves no file either way but a whole one.
TEST_F(CliInterruptedWrite, ImportRunningOutOfMemoryEndsWithAMessage) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the address sanitizer reserves more address space than any limit allows";
#else
    ASSERT_EQ(cli({"--now", "2026-03-01T10:00:00Z", "new", path("doc.tadb"), "--sample"}).status,
              0);
    QJsonObject root =
        QJsonDocument::fromJson(cli({"export-json", path("doc.tadb")}).out.toUtf8()).object();
    QJsonObject objects = root.value("objects").toObject();
    QJsonObject client = objects.value("Client/1").toObject();
    client.insert("notes", QString(1000, u'n'));
    for (int i = 0; i < 20000; ++i)
        objects.insert(QStringLiteral("Client/%1").arg(100000 + i), client);
    root.insert("objects", objects);
    write("big.json", QJsonDocument(root).toJson(QJsonDocument::Compact));
    QFile::remove(path("doc.tadb"));

    int outOfMemory = 0;
    for (const qint64 megabytes : {90, 120, 160, 220, 300, 400}) {
        SCOPED_TRACE(testing::Message() << megabytes << " MB");
        QFile::remove(path("new.tadb"));
        Interruption how;
        how.memory = megabytes << 20;
        const ChildRun run = runCli({"import-json", path("big.json"), "-o", path("new.tadb")}, how);
        ASSERT_FALSE(run.crashed) << run.err.toStdString();
        if (run.status == 0) {
            EXPECT_TRUE(QFileInfo::exists(path("new.tadb")));
        } else {
            ++outOfMemory;
            EXPECT_EQ(run.status, 2);
            EXPECT_TRUE(run.err.contains("out of memory")) << run.err.toStdString();
            EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
            EXPECT_FALSE(QFileInfo::exists(path("new.tadb")));
        }
        EXPECT_EQ(strays({"big.json", "new.tadb"}), QStringList());
    }
    EXPECT_GT(outOfMemory, 0);
#endif
}
