#include "CliTestSupport.h"

#include "cli/CliDocument.h"
#include "document/TADocModelVersions.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/SqliteConnection.h"
#include "support/FileFingerprint.h"
#include "support/FillingDevice.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {} // namespace

class CliBadFileTest : public CliTest {
protected:
    CliDocument::ScopedBusyTimeout shortWait{200};

    // Each reading command refuses the file with one line naming it, exit status 2.
    void expectRefused(const QString &name, const QString &reason) {
        for (const QStringList &arguments :
             {QStringList{"info", path(name)}, QStringList{"export-json", path(name)},
              QStringList{"list", "invoices", path(name)}}) {
            const CliRun run = cli(arguments);
            EXPECT_EQ(run.status, 2) << arguments.join(' ').toStdString();
            EXPECT_TRUE(run.err.startsWith("billfold-cli: " + path(name) + ": "))
                << run.err.toStdString();
            EXPECT_TRUE(run.err.contains(reason)) << run.err.toStdString();
            EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
            EXPECT_TRUE(run.out.isEmpty());
        }
    }

    void execute(const QString &name, const QString &sql) {
        auto connection = SqliteConnection::open(path(name), SqliteConnection::Mode::ReadWrite);
        ASSERT_TRUE(connection.ok());
        ASSERT_TRUE((*connection)->exec(sql).ok()) << sql.toStdString();
    }
};

TEST_F(CliBadFileTest, DamagedAndUnknownFilesAreRefusedWithTheirReason) {
    ASSERT_EQ(cli({"new", path("good.tadb"), "--sample"}).status, 0);
    const QByteArray good = read("good.tadb");
    ASSERT_GT(good.size(), 8192);
    write("cut.tadb", good.left(good.size() / 2));
    expectRefused("cut.tadb", "damaged");

    QByteArray noise = QByteArray("SQLite format 3\0", 16);
    for (int i = 0; noise.size() < 8192; ++i)
        noise.append(char((i * 7919) >> 3));
    write("noise.tadb", noise);
    write("random.tadb", noise.mid(16));
    for (const char *name : {"noise.tadb", "random.tadb"})
        expectRefused(name, "");

    ASSERT_TRUE(QFile::copy(path("good.tadb"), path("newer.tadb")));
    execute("newer.tadb", "UPDATE _meta SET value = 'TADoc_9.0' WHERE key = 'modelVersion';"
                          "UPDATE _meta SET value = 'ffff' WHERE key = 'modelHash'");
    expectRefused("newer.tadb", "newer or unknown version");
    EXPECT_TRUE(cli({"info", path("newer.tadb")}).err.contains("TADoc_9.0"));

    // SQLite quotes the damaged schema's own text; a line break there must not split the line.
    ASSERT_TRUE(QFile::copy(path("good.tadb"), path("schema.tadb")));
    execute("schema.tadb", "PRAGMA writable_schema = ON;"
                           "UPDATE sqlite_master SET name = 'E_Pay' || char(10) || 'ment', "
                           "sql = replace(sql, 'E_Payment', 'E_Payment (') "
                           "WHERE name = 'E_Payment'");
    expectRefused("schema.tadb", "damaged");
}

TEST_F(CliBadFileTest, AFileLockedByAnotherProgramIsInUseNotReadStale) {
    ASSERT_EQ(cli({"new", path("held.tadb")}).status, 0);
    {
        auto holder = SqliteConnection::open(path("held.tadb"), SqliteConnection::Mode::ReadWrite);
        ASSERT_TRUE(holder.ok());
        ASSERT_TRUE((*holder)->exec("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE;").ok());
        expectRefused("held.tadb", "is in use by another program");
    }
    EXPECT_EQ(cli({"info", path("held.tadb")}).status, 0) << "readable once it is let go";
}

TEST_F(CliBadFileTest, AnOlderModelIsReadFromAnUpgradedCopyAndLeftAlone) {
    const ManagedObjectModel *older = TADocModelVersions::modelNamed("TADoc_1.2");
    ASSERT_NE(older, nullptr);
    {
        auto store = PersistentStore::create(path("old.tadb"), *older);
        ASSERT_TRUE(store.ok());
        ManagedObjectContext context(*store);
        context.insertNewObject("Client")->setValueForKey("Ada Lovelace", "fullName");
        ASSERT_TRUE(context.save().ok());
    }
    const QByteArray before = fingerprint(path("old.tadb"));
    const CliRun info = cli({"info", path("old.tadb")});
    ASSERT_EQ(info.status, 0) << info.err.toStdString();
    EXPECT_TRUE(info.out.contains("Model version:    TADoc_1.2"));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Client +1\n")));
    const CliRun clients = cli({"list", "clients", path("old.tadb"), "--format", "csv"});
    ASSERT_EQ(clients.status, 0) << clients.err.toStdString();
    EXPECT_TRUE(clients.out.contains("Ada Lovelace"));
    ASSERT_EQ(cli({"export-json", path("old.tadb"), "-o", path("old.json")}).status, 0);
    EXPECT_EQ(cli({"import-json", path("old.json"), "-o", path("new.tadb")}).status, 0);
    EXPECT_EQ(fingerprint(path("old.tadb")), before);
    EXPECT_EQ(files(), QStringList({"new.tadb", "old.json", "old.tadb"}));
}

TEST_F(CliBadFileTest, ReadingLeavesNoFilesBesideTheDocument) {
    ASSERT_EQ(cli({"new", path("a.tadb"), "--sample"}).status, 0);
    const QByteArray before = fingerprint(path("a.tadb"));
    for (const QStringList &arguments :
         {QStringList{"info", path("a.tadb")}, QStringList{"export-json", path("a.tadb")},
          QStringList{"list", "invoices", path("a.tadb")}})
        ASSERT_EQ(cli(arguments).status, 0) << arguments.join(' ').toStdString();
    EXPECT_EQ(files(), QStringList{"a.tadb"});
    EXPECT_EQ(fingerprint(path("a.tadb")), before);
}

TEST_F(CliBadFileTest, OutputThatCannotBeWrittenFailsTheCommand) {
    ASSERT_EQ(cli({"new", path("a.tadb"), "--sample"}).status, 0);
    for (const QStringList &arguments :
         {QStringList{"info", path("a.tadb")}, QStringList{"list", "clients", path("a.tadb")},
          QStringList{"export-json", path("a.tadb")}}) {
        FillingDevice full(0); // standard output on a full disk
        QString errors;
        QTextStream out(&full);
        QTextStream err(&errors);
        CliRunner runner;
        EXPECT_EQ(runner.run(arguments, out, err), 2) << arguments.join(' ').toStdString();
        EXPECT_TRUE(errors.contains("standard output")) << errors.toStdString();
        EXPECT_TRUE(errors.contains("No space left on device")) << errors.toStdString();
    }
}
