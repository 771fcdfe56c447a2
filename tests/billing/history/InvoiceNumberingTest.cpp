#include "HistoryFixture.h"

#include "billing/preferences/TAInvoiceNumbering.h"
#include "objectstore/UndoManager.h"

namespace {
QString next(const char *number) {
    return TAPreferences::increasedInvoiceNumber(QString::fromLatin1(number));
}
} // namespace

TEST(InvoiceNumberTest, AdvancesTheTrailingDigitsKeepingWidthWhileItFits) {
    EXPECT_EQ(next("INV-0099"), QStringLiteral("INV-0100"));
    EXPECT_EQ(next("INV-9"), QStringLiteral("INV-10"));
    EXPECT_EQ(next("2012-007"), QStringLiteral("2012-008"));
    EXPECT_EQ(next("2026/009"), QStringLiteral("2026/010"));
    EXPECT_EQ(next("2026/999"), QStringLiteral("2026/1000"));
    EXPECT_EQ(next("1A2B3"), QStringLiteral("1A2B4"));
    // All digits: the leading zeros go.
    EXPECT_EQ(next("0099"), QStringLiteral("100"));
    EXPECT_EQ(next("0007"), QStringLiteral("8"));
    EXPECT_EQ(next("99"), QStringLiteral("100"));
    // No trailing digits: a 1 is appended.
    EXPECT_EQ(next("ABC"), QStringLiteral("ABC1"));
    EXPECT_EQ(next("12A"), QStringLiteral("12A1"));
    EXPECT_EQ(next("A-"), QStringLiteral("A-1"));
    EXPECT_EQ(next(""), QString());
}

TEST(InvoiceNumberTest, DigitRunsBeyondSixtyFourBitsSaturate) {
    // The read stops at the largest signed value; one more prints unsigned.
    EXPECT_EQ(next("9223372036854775806"), QStringLiteral("9223372036854775807"));
    EXPECT_EQ(next("9999999999999999999"), QStringLiteral("9223372036854775808"));
    EXPECT_EQ(next("99999999999999999999999"), QStringLiteral("9223372036854775808"));
    // With a prefix the width is kept: the value lands at the end of the digit run.
    EXPECT_EQ(next("INV-0000009999999999999999999"),
              QStringLiteral("INV-0000009223372036854775808"));
    EXPECT_EQ(next("INV-9999999999999999999"), QStringLiteral("INV-9223372036854775808"));
}

TEST_F(HistoryFixture, TheSequenceMovesOnlyWhenAnInvoiceTakesTheNextNumber) {
    TAPreferences *prefs = preferences();
    prefs->increaseNextInvoiceNumber(); // empty: nothing to advance
    EXPECT_EQ(prefs->nextInvoiceNumber(), QString());

    EXPECT_FALSE(TAInvoiceNumbering::numberEdited(prefs, QString()));
    EXPECT_TRUE(TAInvoiceNumbering::numberEdited(prefs, QStringLiteral("INV-0041")));
    EXPECT_EQ(prefs->nextInvoiceNumber(), QStringLiteral("INV-0042"));

    // Another number for one invoice leaves the sequence alone.
    EXPECT_FALSE(TAInvoiceNumbering::numberEdited(prefs, QStringLiteral("SPECIAL-1")));
    EXPECT_EQ(prefs->nextInvoiceNumber(), QStringLiteral("INV-0042"));

    context->undoManager()->removeAllActions();
    EXPECT_TRUE(TAInvoiceNumbering::numberEdited(prefs, QStringLiteral("INV-0042")));
    EXPECT_EQ(prefs->nextInvoiceNumber(), QStringLiteral("INV-0043"));
    // Numbering is not something the user undoes.
    EXPECT_FALSE(context->undoManager()->canUndo());
}
