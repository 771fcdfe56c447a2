#include "CliTestSupport.h"

#include <QFileInfo>

#include <sqlite3.h>

namespace {

const QStringList kReaders[] = {{"info"}, {"list", "invoices"}, {"export-json"}};

} // namespace

class CliReaderSideFiles : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(
            cli({"--now", "2026-03-01T10:00:00Z", "new", path("doc.tadb"), "--sample"}).status, 0);
    }

    // The newest change stays in the log, and the log's index is gone, as after a program
    // that was stopped while it had the file open.
    void leaveLogWithoutIndex() {
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(path("doc.tadb").toUtf8().constData(), &db), SQLITE_OK);
        sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        ASSERT_EQ(sqlite3_exec(db, "UPDATE E_Currency SET a_title = 'Logged money'", nullptr,
                               nullptr, nullptr),
                  SQLITE_OK);
        sqlite3_close(db);
        ASSERT_TRUE(QFile::remove(path("doc.tadb-shm")));
        ASSERT_GT(QFileInfo(path("doc.tadb-wal")).size(), 0);
    }
};

// Reading follows a link to the file, and what SQLite makes beside the file while reading is
// gone again afterwards: the folder looks as it did.
TEST_F(CliReaderSideFiles, ReadingThroughALinkLeavesNothingBesideTheFile) {
    ASSERT_TRUE(QFile::link(path("doc.tadb"), path("link.tadb")));
    const QStringList before = files();
    for (const QStringList &reader : kReaders) {
        const CliRun run = cli(reader + QStringList{path("link.tadb")});
        EXPECT_EQ(run.status, 0) << reader.join(' ').toStdString() << run.err.toStdString();
        EXPECT_EQ(files(), before) << reader.join(' ').toStdString();
    }
}

// A log left beside the file is read, not folded into the file: the file and the log keep
// their bytes, and the index the reader needed goes again.
TEST_F(CliReaderSideFiles, ALogWithoutItsIndexIsReadAndLeftAsItWas) {
    leaveLogWithoutIndex();
    const QByteArray file = read("doc.tadb");
    const QByteArray log = read("doc.tadb-wal");
    const QStringList before = files();
    for (const QStringList &reader : kReaders) {
        const CliRun run = cli(reader + QStringList{path("doc.tadb")});
        EXPECT_EQ(run.status, 0) << reader.join(' ').toStdString() << run.err.toStdString();
        EXPECT_EQ(files(), before) << reader.join(' ').toStdString();
        EXPECT_EQ(read("doc.tadb"), file) << reader.join(' ').toStdString();
        EXPECT_EQ(read("doc.tadb-wal"), log) << reader.join(' ').toStdString();
    }
    EXPECT_TRUE(cli({"export-json", path("doc.tadb")}).out.contains("Logged money"));
}

// While another program has the file open, its log and index are its own: a reader leaves
// them in place.
TEST_F(CliReaderSideFiles, AnotherProgramsLogAndIndexStay) {
    sqlite3 *other = nullptr;
    ASSERT_EQ(sqlite3_open(path("doc.tadb").toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "SELECT count(*) FROM E_Currency", nullptr, nullptr, nullptr),
              SQLITE_OK);
    const QStringList before = files();
    ASSERT_TRUE(before.contains("doc.tadb-shm"));
    for (const QStringList &reader : kReaders)
        EXPECT_EQ(cli(reader + QStringList{path("doc.tadb")}).status, 0);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(sqlite3_exec(other, "SELECT count(*) FROM E_Currency", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(other);
}
