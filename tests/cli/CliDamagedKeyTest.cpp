#include "CliTestSupport.h"

#include "objectstore/SqliteConnection.h"

#include <QJsonDocument>
#include <QJsonObject>

class CliDamagedKeyTest : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(cli({"new", path("s.tadb"), "--sample", "--now", "2025-03-10T12:00:00Z"}).status,
                  0);
    }

    // A copy of the sample with the SQL applied, named `name`.
    void damagedCopy(const QString &name, const QString &sql) {
        QFile::remove(path(name));
        ASSERT_TRUE(QFile::copy(path("s.tadb"), path(name)));
        auto connection = SqliteConnection::open(path(name), SqliteConnection::Mode::ReadWrite);
        ASSERT_TRUE(connection.ok());
        ASSERT_TRUE((*connection)->exec(sql).ok()) << sql.toStdString();
    }
};

TEST_F(CliDamagedKeyTest, KeysNoTableCanHoldFailEveryCommandWithoutATrace) {
    const struct {
        const char *sql;
        const char *reason;
    } cases[] = {
        {"UPDATE E_Client SET pk = 0 WHERE pk = 3",
         "the table of Client holds a row numbered 0; objects are numbered from 1 to "
         "9007199254740991"},
        {"UPDATE E_Payment SET pk = -4 WHERE pk = 1",
         "the table of Payment holds a row numbered -4"},
        {"UPDATE E_Tax SET pk = 9007199254740992 WHERE pk = 2",
         "the table of Tax holds a row numbered 9007199254740992"},
        {"UPDATE E_Invoice SET r_client = 0 WHERE pk = 3",
         "Invoice 3 links its “client” to 0; objects are numbered from 1"},
        {"UPDATE E_Payment SET r_invoice = -1 WHERE pk = 2",
         "Payment 2 links its “invoice” to -1; objects are numbered from 1"},
        {"UPDATE E_Invoice SET r_project = 4 WHERE pk = 2",
         "Invoice 2 links its “project” to Project 4, beyond the last row of Project (3)"},
        {"UPDATE E_Material SET r_invoice = 1099511627776 WHERE pk = 5",
         "Material 5 links its “invoice” to Invoice 1099511627776, beyond the last row of "
         "Invoice"},
        {"UPDATE E_TimerInterval SET r_timer = 10000000000 WHERE pk = 16",
         "TimerInterval 16 links its “timer” to Timer 10000000000, beyond the last row of Timer "
         "(6)"},
        {"UPDATE E_Project SET r_client = 'three' WHERE pk = 1",
         "Project 1 links its “client” to a value that is no object number"},
        {"DROP TABLE E_Tax", "the table of Tax is missing"},
    };
    const QString file = path("case.tadb");
    const QStringList commands[] = {
        {"info", file},
        {"list", "invoices", file},
        {"list", "clients", file, "--format", "csv"},
        {"export-json", file},
        {"export-json", file, "-o", path("out.json")},
        {"pdf", file, "--invoice", "2001", "-o", path("out.pdf")},
        {"pdf", file, "--all", path("pdfs")},
        {"png", file, "--invoice", "2001", "-o", path("out.png")},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.sql);
        damagedCopy("case.tadb", QString::fromUtf8(c.sql));
        const QStringList before = files();
        for (const QStringList &arguments : commands) {
            const CliRun run = cli(arguments);
            EXPECT_EQ(run.status, 2) << arguments.join(' ').toStdString();
            EXPECT_TRUE(run.err.startsWith("billfold-cli: " + file +
                                           ": The document “case.tadb” "
                                           "is damaged"))
                << run.err.toStdString();
            EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.reason))) << run.err.toStdString();
            EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
            EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
            EXPECT_EQ(files(), before) << "no log, index or output beside the file";
        }
    }
}

// Large numbers that a file may hold are read like any other, and cost their objects only.
TEST_F(CliDamagedKeyTest, FarNumbersAreReadExportedAndImportedInOneStep) {
    damagedCopy("far.tadb", "UPDATE E_Client SET pk = 1099511627776 WHERE pk = 3;"
                            "UPDATE E_Invoice SET r_client = 1099511627776 WHERE r_client = 3;"
                            "UPDATE E_Project SET r_client = 1099511627776 WHERE r_client = 3");
    const CliRun clients = cli({"list", "clients", path("far.tadb"), "--format", "csv"});
    ASSERT_EQ(clients.status, 0) << clients.err.toStdString();
    EXPECT_TRUE(clients.out.contains("Client/1099511627776")) << clients.out.toStdString();
    ASSERT_EQ(cli({"export-json", path("far.tadb"), "-o", path("far.json")}).status, 0);
    QJsonObject root = QJsonDocument::fromJson(read("far.json")).object();
    QJsonObject objects = root.value("objects").toObject();
    ASSERT_TRUE(objects.contains("Client/1099511627776"));

    // A key far past the others is taken as it is, without counting up to it.
    const QJsonValue tax = objects.take("Tax/2");
    objects.insert("Tax/9007199254740991", tax);
    root.insert("objects", objects);
    write("far.json", QJsonDocument(root).toJson());
    const CliRun imported = cli({"import-json", path("far.json"), "-o", path("back.tadb")});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    const CliRun again = cli({"export-json", path("back.tadb")});
    ASSERT_EQ(again.status, 0) << again.err.toStdString();
    EXPECT_TRUE(again.out.contains("\"Tax/9007199254740991\""));
    EXPECT_TRUE(again.out.contains("\"client\": \"Client/1099511627776\""));

    objects.insert("Tax/9007199254740992", objects.take("Tax/9007199254740991"));
    root.insert("objects", objects);
    write("beyond.json", QJsonDocument(root).toJson());
    const CliRun refused = cli({"import-json", path("beyond.json"), "-o", path("no.tadb")});
    EXPECT_EQ(refused.status, 2);
    EXPECT_TRUE(refused.err.contains(
        "$.objects[\"Tax/9007199254740992\"]: the number of a key is at most 9007199254740991"))
        << refused.err.toStdString();
    EXPECT_FALSE(QFile::exists(path("no.tadb")));
}
