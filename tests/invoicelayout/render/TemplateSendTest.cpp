#include "RenderFixture.h"

#include "invoicelayout/LMBuiltInTemplates.h"
#include "invoicelayout/render/LMInvoiceMail.h"
#include "invoicelayout/render/LMInvoiceOutput.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Points the temporary folder elsewhere for the length of a test.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const QString &path)
        : m_saved(qgetenv("TMPDIR")) {
        qputenv("TMPDIR", path.toLocal8Bit());
    }
    ~TemporaryFolder() {
        if (m_saved.isEmpty())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_saved);
    }

private:
    QByteArray m_saved;
};

class TemplateSendTest : public RenderFixture {
protected:
    LMInvoiceTemplateClass *builtIn(const QString &name) {
        if (TAContextDatabase::getTemplatesInContext(db.context()).isEmpty())
            LMBuiltInTemplates::seedBuiltInTemplates(context.get());
        for (LMInvoiceTemplateClass *invoiceTemplate :
             TAContextDatabase::getTemplatesInContext(db.context()))
            if (invoiceTemplate->name() == name)
                return invoiceTemplate;
        return nullptr;
    }

    struct Call {
        QString program;
        QStringList arguments;
        int count = 0;
    };
    LMInvoiceMail::Runner recorder(Call &call) {
        return [&call](const QString &program, const QStringList &arguments) -> Result<void> {
            call.program = program;
            call.arguments = arguments;
            ++call.count;
            return {};
        };
    }
};

TEST_F(TemplateSendTest, TheTemplatePrintsEveryPageOnceWithItsTagsAsWritten) {
    LMInvoiceTemplateClass *design = builtIn(QStringLiteral("Time"));
    ASSERT_NE(design, nullptr);
    ASSERT_EQ(design->pages().size(), 2);
    // An invoice on the same design must not leak its values into the template's drawing.
    TAInvoice *invoice = invoiceWithItems(40, design);
    TAClient *client = TAContextDatabase::createClientInContext(db.context());
    client->setFullNameValue(QStringLiteral("Ada Brennan"));
    invoice->setClient(client);
    ASSERT_GT(LMInvoiceOutput::pageCount(invoice), 2);

    const QString path = dir.filePath(QStringLiteral("time.pdf"));
    const Result<int> written = LMInvoiceOutput::writeTemplatePdf(design, path);
    ASSERT_TRUE(written) << written.error().message.toStdString();
    EXPECT_EQ(written.value(), 2) << "one sheet per page of the template, however many items";

    const QStringList text = pdfPages(path, 2);
    for (const char *tag : {"[INVOICE NUMBER]", "[DATE]", "[DUE DATE]", "[PURCHASE ORDER]",
                            "[YOUR COMPANY]", "[FULL NAME]", "Page 1 of 2"})
        EXPECT_TRUE(text[0].contains(QLatin1String(tag))) << tag;
    EXPECT_TRUE(text[1].contains(QStringLiteral("[COMMENTS]")));
    EXPECT_FALSE(text[0].contains(QStringLiteral("Ada Brennan")));
    EXPECT_FALSE(text[0].contains(QStringLiteral("INV-7")));
    // Tables: the items table's titles without rows, the totals table's labels without amounts.
    EXPECT_TRUE(text[0].contains(QStringLiteral("Description")));
    EXPECT_TRUE(text[0].contains(QStringLiteral("Subtotal")));
    EXPECT_FALSE(text[0].contains(QStringLiteral("Item 001")));
    EXPECT_FALSE(text[0].contains(QStringLiteral("$"))) << "no amounts";
    EXPECT_FALSE(LMInvoiceOutput::writeTemplatePdf(nullptr, path).ok());
}

TEST_F(TemplateSendTest, SendNamesTheFileByTheTitleAndMailsItWithoutRecipient) {
    TemporaryFolder temporary(dir.path());
    LMInvoiceTemplateClass *design = builtIn(QStringLiteral("Sky"));
    ASSERT_NE(design, nullptr);
    design->setName(QStringLiteral("Q3/Draft: Sky"));

    Call call;
    EXPECT_TRUE(LMInvoiceMail::sendTemplate(design, recorder(call)));
    const QString pdf = dir.filePath(QStringLiteral("Q3_Draft_ Sky.pdf"));
    EXPECT_EQ(call.program, QStringLiteral("xdg-email"));
    EXPECT_EQ(call.arguments,
              QStringList({QStringLiteral("--subject"), QStringLiteral("Q3_Draft_ Sky"),
                           QStringLiteral("--attach"), pdf}));
    ASSERT_TRUE(QFileInfo::exists(pdf));
    EXPECT_TRUE(pdfPages(pdf, 1).first().contains(QStringLiteral("[INVOICE NUMBER]")));

    design->setName(QString());
    EXPECT_EQ(LMInvoiceOutput::temporaryPdfPathForTemplate(design),
              dir.filePath(QStringLiteral("Untitled.pdf")));
    EXPECT_FALSE(LMInvoiceMail::sendTemplate(design, [](auto &, auto &) -> Result<void> {
        return Error{ErrorCode::Generic, QStringLiteral("no mail account")};
    })) << "a failing mail program is a failure";
}

TEST_F(TemplateSendTest, WithoutAFileNothingIsMailed) {
    TemporaryFolder temporary(dir.path());
    // A folder in the way of the file: the writing fails and the mail program is not started.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("Wave.pdf")));
    Call call;
    const Result<void> blocked =
        LMInvoiceMail::sendTemplate(builtIn(QStringLiteral("Wave")), recorder(call));
    ASSERT_FALSE(blocked);
    EXPECT_TRUE(blocked.error().message.contains(dir.filePath(QStringLiteral("Wave.pdf"))))
        << "the message names the file that could not be written";
    const Result<void> none = LMInvoiceMail::sendTemplate(nullptr, recorder(call));
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().message, QStringLiteral("Choose a template to mail."));
    EXPECT_EQ(call.count, 0);
}

} // namespace
