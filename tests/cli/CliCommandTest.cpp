#include "CliTestSupport.h"

#include "cli/CliListFormatter.h"

#include <QRegularExpression>

TEST_F(CliTest, UsageSlipsExitOneAndUnusableFilesExitTwo) {
    const struct {
        QStringList arguments;
        int status;
        const char *message;
    } cases[] = {
        {{}, 1, "Usage: billfold-cli"},
        {{"frobnicate"}, 1, "unknown command 'frobnicate'"},
        {{"export-json"}, 1, "expected one document file"},
        {{"export-json", "a", "--colour"}, 1, "unknown option '--colour'"},
        {{"import-json", "in.json"}, 1, "-o FILE"},
        {{"list", "widgets", "x.tadb"}, 1, "unknown kind 'widgets'"},
        {{"list", "invoices", "x.tadb", "--format", "xml"}, 1, "unknown format 'xml'"},
        {{"list", "invoices", "x.tadb", "--where", "total >"}, 1, "--where"},
        {{"info", "x.tadb", "--now", "yesterday"}, 1, "'yesterday' is no ISO 8601"},
        {{"info", "--now"}, 1, "'--now' needs a value"},
    };
    for (const auto &c : cases) {
        const CliRun run = cli(c.arguments);
        EXPECT_EQ(run.status, c.status) << c.arguments.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.message))) << run.err.toStdString();
    }

    write("notes.txt", "just some text, no document");
    write("empty.tadb", "");
    for (const QString &name : {QStringLiteral("missing.tadb"), QStringLiteral("notes.txt"),
                                QStringLiteral("empty.tadb")}) {
        for (const QStringList &arguments :
             {QStringList{"info", path(name)}, QStringList{"export-json", path(name)},
              QStringList{"list", "clients", path(name)}}) {
            const CliRun run = cli(arguments);
            EXPECT_EQ(run.status, 2) << arguments.join(' ').toStdString();
            EXPECT_TRUE(run.err.startsWith("billfold-cli: " + path(name) + ": "))
                << run.err.toStdString();
            EXPECT_EQ(run.err.count(u'\n'), 1);
        }
    }
    EXPECT_EQ(cli({"new", path("notes.txt")}).status, 2);
    EXPECT_EQ(read("notes.txt"), QByteArray("just some text, no document"));
    EXPECT_EQ(cli({"list", "--help"}).status, 0);
}

TEST_F(CliTest, NewDocumentsAndInfoReportWhatTheyHold) {
    ASSERT_EQ(cli({"new", path("plain.tadb")}).status, 0);
    CliRun info = cli({"info", path("plain.tadb")});
    ASSERT_EQ(info.status, 0);
    EXPECT_TRUE(info.out.contains("Password locked:  no"));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Preferences +1\n")));
    ASSERT_EQ(cli({"new", path("sample.tadb"), "--sample"}).status, 0);
    info = cli({"info", path("sample.tadb")});
    EXPECT_TRUE(info.out.contains("Default currency: USD"));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Payment +3\n")));
    EXPECT_TRUE(info.out.contains(QRegularExpression("Currency +2\n")));
    EXPECT_TRUE(info.out.contains(QRegularExpression("InvoiceTemplate +5\n")));
}

TEST(CliListFormatterTest, CsvFieldsAreQuotedOnlyWhereNeeded) {
    EXPECT_EQ(CliListFormatter::csvField("plain"), "plain");
    EXPECT_EQ(CliListFormatter::csvField("a,b"), "\"a,b\"");
    EXPECT_EQ(CliListFormatter::csvField("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(CliListFormatter::csvField("two\nlines"), "\"two\nlines\"");
    EXPECT_EQ(CliListFormatter::csvField(" padded"), "\" padded\"");
    EXPECT_EQ(CliListFormatter::csvField(""), "");
}

class CliListTest : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(cli({"new", path("s.tadb"), "--sample", "--now", "2025-03-10T12:00:00Z"}).status,
                  0);
    }
    QStringList lines(const QStringList &arguments) {
        const CliRun run = cli(arguments);
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        return run.out.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }
};

TEST_F(CliListTest, FiltersSortsAndWritesExactValues) {
    QStringList csv = lines({"list", "items", path("s.tadb"), "--format", "csv", "--where",
                             "price > 50", "--sort", "-price"});
    ASSERT_EQ(csv.size(), 11);
    EXPECT_TRUE(csv[0].startsWith("key,type,name,sku,price,quantity,seconds"));
    EXPECT_TRUE(csv[1].contains(",Material,\"Support plan, monthly\",,450,1,"));
    EXPECT_TRUE(csv[2].contains(",Material,\"Hosting, one year\",,240,1,,,0.085,Sales Tax,"));
    EXPECT_TRUE(csv[5].contains(",Timer,Development,,95,,73800,"));
    EXPECT_TRUE(csv[10].contains(",Timer,Support,,60,,7200,"));

    // The sample's dates follow the day it is opened on: 2025-03-10 here.
    csv = lines({"list", "payments", path("s.tadb"), "--format", "csv", "--sort", "date"});
    ASSERT_EQ(csv.size(), 4);
    EXPECT_TRUE(csv[2].contains(",2025-02-08T10:00:00.000Z,1000,USD,1,2001,"));
    EXPECT_TRUE(csv[3].contains(",2025-02-13T10:00:00.000Z,944.47,USD,0.92166,2002,"));

    const CliRun json = cli({"list", "invoices", path("s.tadb"), "--format", "json", "--sort",
                             "identification", "--where", "status == 1"});
    ASSERT_EQ(json.status, 0);
    EXPECT_EQ(json.out.count("\"key\""), 1);
    EXPECT_TRUE(json.out.contains("\"identification\": \"2005\""));
    EXPECT_TRUE(json.out.contains("\"statusWord\": \"Draft\""));
    EXPECT_TRUE(json.out.contains("\"status\": 1"));

    const CliRun currencies =
        cli({"list", "currencies", path("s.tadb"), "--format", "json", "--sort", "code"});
    EXPECT_LT(currencies.out.indexOf("\"EUR\""), currencies.out.indexOf("\"USD\""));
    const CliRun table = cli({"list", "clients", path("s.tadb"), "--sort", "-fullName"});
    ASSERT_EQ(table.status, 0);
    EXPECT_LT(table.out.indexOf("Marta"), table.out.indexOf("Lena"));
    EXPECT_LT(table.out.indexOf("Lena"), table.out.indexOf("Jonas"));
}

TEST_F(CliListTest, InvoiceAmountsAndStatesMatchHandComputedValues) {
    // 2001: 12 h at 85 + 20.5 h at 95 + 240 with 8.5% sales tax, 1000 paid, due 20 February.
    // 2002 (euros): 9 h at 70 + 40 at 3.50, all with 19% VAT, 5% off the taxed sum (45.815 up
    // to 45.82), paid with 944.47 US dollars at 0.92166 (870.4823 to 870.48).
    // 2005: a draft, 3 h at 120 + 2 at 85 with sales tax, due 30 March.
    const CliRun json = cli({"list", "invoices", path("s.tadb"), "--format", "json", "--sort",
                             "identification", "--now", "2025-03-10T12:00:00Z"});
    ASSERT_EQ(json.status, 0);
    const QStringList rows = json.out.split(QStringLiteral("\n  {"));
    ASSERT_EQ(rows.size(), 6);
    for (const char *field : {"\"subTotal\": \"3207.5\"", "\"totalTaxes\": \"20.4\"",
                              "\"total\": \"3227.9\"", "\"paid\": \"1000\"", "\"left\": \"2227.9\"",
                              "\"isOverdue\": true", "\"isPaid\": false", "\"currency\": \"USD\""})
        EXPECT_TRUE(rows[1].contains(QLatin1String(field))) << field;
    for (const char *field :
         {"\"subTotal\": \"770\"", "\"totalTaxes\": \"146.3\"", "\"totalDiscount\": \"45.82\"",
          "\"total\": \"870.48\"", "\"paid\": \"870.48\"", "\"left\": \"0\"",
          "\"isOverdue\": false", "\"isPaid\": true", "\"statusWord\": \"Paid\"",
          "\"currency\": \"EUR\""})
        EXPECT_TRUE(rows[2].contains(QLatin1String(field))) << field;
    for (const char *field : {"\"total\": \"575.05\"", "\"isOverdue\": false"})
        EXPECT_TRUE(rows[5].contains(QLatin1String(field))) << field;

    // Six weeks later 2003 and the draft are overdue as well; the clock decides, not the
    // machine.
    const CliRun later = cli({"list", "invoices", path("s.tadb"), "--format", "csv", "--where",
                              "isOverdue == YES", "--now", "2025-04-20T12:00:00Z"});
    EXPECT_EQ(later.out.count(QStringLiteral("\r\n")), 4);
}

TEST_F(CliListTest, UnknownOrUnusableKeysAreNamedNotAnsweredWithAnEmptyList) {
    const struct {
        QStringList options;
        const char *named;
    } refused[] = {
        {{"--where", "nosuchkey == 3"}, "nosuchkey"},
        {{"--where", "client.nosuchkey == 3"}, "nosuchkey"},
        {{"--where", "statusWord == \"Draft\""}, "statusWord"},
        {{"--where", "date > \"2025-01-01\""}, "DATE("},
        {{"--where", "dueDate < 20250101"}, "'dueDate' is a date"},
        {{"--sort", "nosuchkey"}, "nosuchkey"},
        {{"--sort", "-statusWord"}, "statusWord"},
    };
    for (const auto &c : refused) {
        const CliRun run = cli(QStringList{"list", "invoices", path("s.tadb")} + c.options);
        EXPECT_EQ(run.status, 1) << c.options.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(QLatin1String(c.named))) << run.err.toStdString();
    }
    // Dates compare with DATE(...), column names stand for what the column shows, and links
    // are followed.
    EXPECT_EQ(lines({"list", "invoices", path("s.tadb"), "--format", "csv", "--where",
                     "date >= DATE(\"2025-02-01T00:00:00Z\") AND client CONTAINS[cd] \"HARB\""})
                  .size(),
              2);
    const QStringList byClient =
        lines({"list", "invoices", path("s.tadb"), "--format", "csv", "--sort", "-client"});
    ASSERT_GT(byClient.size(), 2);
    EXPECT_TRUE(byClient[1].contains("Marta")) << byClient[1].toStdString();
}

TEST_F(CliListTest, AMissingInvoiceIsAUsageSlip) {
    for (const char *command : {"pdf", "png"}) {
        const CliRun run = cli({command, path("s.tadb"), "--invoice", "9999", "-o", path("x.out")});
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_TRUE(run.err.contains("no invoice numbered '9999'")) << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1);
    }
}
