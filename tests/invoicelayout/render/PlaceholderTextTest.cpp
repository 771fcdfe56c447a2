#include "RenderFixture.h"

#include "invoicelayout/render/LMPlaceholderText.h"

namespace {

class PlaceholderTextTest : public RenderFixture {
protected:
    void SetUp() override {
        RenderFixture::SetUp();
        invoice = TAContextDatabase::createInvoiceInContext(db.context());
        invoice->setIdentification(QStringLiteral("2042"));
        invoice->setDate(QDateTime(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC));
        client = TAContextDatabase::createClientInContext(db.context());
        client->setFullNameValue(QStringLiteral("Ada Brennan"));
        invoice->setClient(client);
    }
    QString replaced(const QString &text) {
        return LMPlaceholderText(invoice, prefs())
            .getInvoiceAttributedStringFrom(LMAttributedString(text, plain()))
            .string();
    }
    TAInvoice *invoice = nullptr;
    TAClient *client = nullptr;
};

TEST_F(PlaceholderTextTest, EachTagIsReplacedAtItsFirstOccurrenceOnly) {
    EXPECT_EQ(replaced(QStringLiteral("[FULL NAME] and [FULL NAME]")),
              QStringLiteral("Ada Brennan and [FULL NAME]"));
    // "[DATE]" is no part of "[DUE DATE]": the missing due date blanks only its own tag.
    const QString dates = replaced(QStringLiteral("due [DUE DATE] / on [DATE]"));
    EXPECT_TRUE(dates.startsWith(QStringLiteral("due  / on "))) << dates.toStdString();
    EXPECT_FALSE(dates.contains(u'[')) << dates.toStdString();
    EXPECT_GT(dates.size(), QStringLiteral("due  / on ").size());
    // Unknown tags and the old name tags pass through.
    EXPECT_EQ(replaced(QStringLiteral("[FIRST NAME] [NOPE]")),
              QStringLiteral("[FIRST NAME] [NOPE]"));
}

TEST_F(PlaceholderTextTest, EmptyValuesLeaveTheirLinesAndTheWebsiteIsAlwaysBlank) {
    EXPECT_EQ(replaced(QStringLiteral("[FULL NAME]\n[COMPANY]\n[INVOICE NUMBER]")),
              QStringLiteral("Ada Brennan\n\n2042"));
    EXPECT_EQ(replaced(QStringLiteral("web: [YOUR WEBSITE]")), QStringLiteral("web: "));
    invoice->setClient(nullptr);
    EXPECT_EQ(replaced(QStringLiteral("[FULL NAME]|[EMAIL]|[ADDRESS]")), QStringLiteral("||"));
}

TEST_F(PlaceholderTextTest, AValueIsSearchedByTheTagsAfterItOnly) {
    // The number comes after the address in the list and is filled inside it; the name comes
    // before, so the address keeps its "[FULL NAME]".
    client->setAddressValue(QStringLiteral("Dock [INVOICE NUMBER] for [FULL NAME]"));
    EXPECT_EQ(replaced(QStringLiteral("[ADDRESS]")), QStringLiteral("Dock 2042 for [FULL NAME]"));
}

TEST_F(PlaceholderTextTest, CustomFieldsGiveUpperCaseTagsOnly) {
    prefs()->addCustomWithColumn(QStringLiteral("vat"), QStringLiteral("DE123"));
    prefs()->addCustomWithColumn(QString(), QStringLiteral("orphan"));
    LMPlaceholderText text(invoice, prefs());
    EXPECT_EQ(text.tags().last(), QStringLiteral("[CUSTOM VAT]"));
    EXPECT_EQ(text.tags().size(), 19);
    EXPECT_EQ(replaced(QStringLiteral("[CUSTOM VAT] [CUSTOM vat] [CUSTOM ]")),
              QStringLiteral("DE123 [CUSTOM vat] [CUSTOM ]"));
    // The lookup alone is case-blind, as the stored fields are.
    EXPECT_EQ(text.getReplacementForPlaceholder(QStringLiteral("[CUSTOM vat]")),
              QStringLiteral("DE123"));
}

TEST_F(PlaceholderTextTest, TheValueTakesTheAttributesOfTheTagsFirstCharacter) {
    LMTextAttributes bold = plain();
    bold.font->bold = true;
    LMAttributedString text(QStringLiteral("["), bold);
    text.append(QStringLiteral("FULL NAME] rest"), plain());
    const LMAttributedString out =
        LMPlaceholderText(invoice, prefs()).getInvoiceAttributedStringFrom(text);
    ASSERT_EQ(out.runs().size(), 2);
    EXPECT_EQ(out.runs()[0].text, QStringLiteral("Ada Brennan"));
    EXPECT_TRUE(out.runs()[0].attributes.font->bold);
    EXPECT_EQ(out.runs()[1].text, QStringLiteral(" rest"));
}

TEST(PageNumberText, TheFirstOneAndTheLastTwoAreTheSlots) {
    const auto number = [](const QString &text, qint64 page, qint64 pages) {
        return LMPlaceholderText::getPageNumberAttributedStringFrom(LMAttributedString(text, {}),
                                                                    page, pages)
            .string();
    };
    EXPECT_EQ(number(QStringLiteral("Page 1 of 2"), 3, 7), QStringLiteral("Page 3 of 7"));
    EXPECT_EQ(number(QStringLiteral("1 of 2"), 12, 20), QStringLiteral("12 of 20"));
    EXPECT_EQ(number(QStringLiteral("21"), 3, 7), QStringLiteral("73"));
    EXPECT_EQ(number(QStringLiteral("Page 1"), 4, 9), QStringLiteral("Page 4"));
    EXPECT_EQ(number(QStringLiteral("Page"), 4, 9), QStringLiteral("Page"));
}

} // namespace
