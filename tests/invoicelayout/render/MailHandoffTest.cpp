#include "RenderFixture.h"

#include "invoicelayout/render/LMInvoiceMail.h"

#include <QFileInfo>

namespace {

class MailHandoffTest : public RenderFixture {};

TEST_F(MailHandoffTest, TheRecipientNeedsBothNameAndAddress) {
    const QStringList base = {QStringLiteral("--subject"), QStringLiteral("Invoice 17"),
                              QStringLiteral("--attach"), QStringLiteral("/tmp/invoice.pdf")};
    EXPECT_EQ(LMInvoiceMail::mailArguments(QStringLiteral("Invoice 17"),
                                           QStringLiteral("/tmp/invoice.pdf"), QString(),
                                           QString()),
              base);
    EXPECT_EQ(LMInvoiceMail::mailArguments(QStringLiteral("Invoice 17"),
                                           QStringLiteral("/tmp/invoice.pdf"),
                                           QStringLiteral("Ada"), QString()),
              base);
    EXPECT_EQ(LMInvoiceMail::mailArguments(QStringLiteral("Invoice 17"),
                                           QStringLiteral("/tmp/invoice.pdf"), QString(),
                                           QStringLiteral("a@b.example")),
              base);
    QStringList withRecipient = base;
    withRecipient.append(QStringLiteral("\"Ada Brennan\" <ada@b.example>"));
    EXPECT_EQ(LMInvoiceMail::mailArguments(
                  QStringLiteral("Invoice 17"), QStringLiteral("/tmp/invoice.pdf"),
                  QStringLiteral("Ada Brennan"), QStringLiteral("ada@b.example")),
              withRecipient);
}

TEST_F(MailHandoffTest, QuotesAndCommasInANameStayInsideTheDisplayName) {
    const QStringList arguments = LMInvoiceMail::mailArguments(
        QStringLiteral("Invoice \"Q\""), QStringLiteral("/tmp/a b.pdf"),
        QStringLiteral("Finch, \"Jo\" \\ Co"), QStringLiteral("jo@f.example"));
    ASSERT_EQ(arguments.size(), 5);
    EXPECT_EQ(arguments[1], QStringLiteral("Invoice \"Q\"")) << "no shell, no escaping";
    EXPECT_EQ(arguments[3], QStringLiteral("/tmp/a b.pdf"));
    EXPECT_EQ(arguments[4], QStringLiteral("\"Finch, \\\"Jo\\\" \\\\ Co\" <jo@f.example>"));
}

TEST_F(MailHandoffTest, SendWritesTheTemporaryPdfAndNamesTheClient) {
    EXPECT_EQ(LMInvoiceMail::subjectForNumber(QString()), QStringLiteral("Invoice"));
    TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
    invoice->setIdentification(QStringLiteral("2042"));
    TAClient *client = TAContextDatabase::createClientInContext(db.context());
    client->setFullNameValue(QStringLiteral("Ada Brennan"));
    client->setEmailValue(QStringLiteral("ada@b.example"));
    invoice->setClient(client);

    QString program;
    QStringList arguments;
    const Result<void> sent =
        LMInvoiceMail::send(invoice, [&](const QString &p, const QStringList &a) -> Result<void> {
            program = p;
            arguments = a;
            return {};
        });
    EXPECT_TRUE(sent);
    EXPECT_EQ(program, QStringLiteral("xdg-email"));
    ASSERT_EQ(arguments.size(), 5);
    EXPECT_EQ(arguments[1], QStringLiteral("Invoice 2042"));
    EXPECT_TRUE(arguments[3].endsWith(QStringLiteral("/invoice.pdf")));
    EXPECT_TRUE(QFileInfo::exists(arguments[3]));
    EXPECT_TRUE(arguments[4].endsWith(QStringLiteral("<ada@b.example>")));

    // A failing mail program is a failure that keeps its reason; so is a viewer that cannot
    // open the preview.
    const Result<void> failed = LMInvoiceMail::send(invoice, [](auto &, auto &) -> Result<void> {
        return Error{ErrorCode::Generic, QStringLiteral("no mail account")};
    });
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().message, QStringLiteral("no mail account"));
    QString previewed;
    EXPECT_EQ(
        LMInvoiceMail::preview(invoice,
                               [&](const QString &path) -> Result<void> {
                                   previewed = path;
                                   return Error{ErrorCode::Generic, QStringLiteral("no viewer")};
                               }),
        LMInvoiceMail::previewErrorAlert());
    EXPECT_TRUE(QFileInfo::exists(previewed));
    EXPECT_EQ(LMInvoiceMail::previewErrorAlert().title, QStringLiteral("Preview error"));
    EXPECT_FALSE(
        LMInvoiceMail::preview(invoice, [](const QString &) -> Result<void> { return {}; }));
}

TEST_F(MailHandoffTest, RunningTheMailProgramTellsWhyItFailed) {
    EXPECT_TRUE(LMInvoiceMail::runProcess(QStringLiteral("sh"),
                                          {QStringLiteral("-c"), QStringLiteral("exit 0")}));

    const Result<void> missing =
        LMInvoiceMail::runProcess(QStringLiteral("/nonexistent/mailer"), {});
    ASSERT_FALSE(missing);
    EXPECT_TRUE(
        missing.error().message.startsWith(QStringLiteral("Could not start /nonexistent/mailer: ")))
        << missing.error().message.toStdString();

    const Result<void> refused = LMInvoiceMail::runProcess(
        QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("exit 3")});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().message,
              QStringLiteral("sh failed with exit status 3; the message was not handed over."));

    const Result<void> killed = LMInvoiceMail::runProcess(
        QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("kill -9 $$")});
    ASSERT_FALSE(killed);
    EXPECT_TRUE(killed.error().message.contains(QStringLiteral("stopped before it finished")));
}

} // namespace
