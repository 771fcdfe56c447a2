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
    const bool sent = LMInvoiceMail::send(invoice, [&](const QString &p, const QStringList &a) {
        program = p;
        arguments = a;
        return true;
    });
    EXPECT_TRUE(sent);
    EXPECT_EQ(program, QStringLiteral("xdg-email"));
    ASSERT_EQ(arguments.size(), 5);
    EXPECT_EQ(arguments[1], QStringLiteral("Invoice 2042"));
    EXPECT_TRUE(arguments[3].endsWith(QStringLiteral("/invoice.pdf")));
    EXPECT_TRUE(QFileInfo::exists(arguments[3]));
    EXPECT_TRUE(arguments[4].endsWith(QStringLiteral("<ada@b.example>")));

    // A failing mail program is a failure; so is a viewer that cannot open the preview.
    EXPECT_FALSE(LMInvoiceMail::send(invoice, [](auto &, auto &) { return false; }));
    EXPECT_EQ(LMInvoiceMail::preview(invoice, [](const QString &) { return false; }),
              LMInvoiceMail::previewErrorAlert());
    EXPECT_EQ(LMInvoiceMail::previewErrorAlert().title, QStringLiteral("Preview error"));
    EXPECT_FALSE(LMInvoiceMail::preview(invoice, [](const QString &) { return true; }));
}

} // namespace
