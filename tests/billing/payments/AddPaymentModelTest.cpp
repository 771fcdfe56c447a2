#include "PaymentsFixture.h"

#include "billing/payments/TAAddPaymentModel.h"
#include "foundation/dates/ScopedFixedClock.h"
#include "foundation/money/OTConvert.h"
#include "store/entities/TAHistory.h"

namespace {
Decimal amountOf(const TAAddPaymentModel &model) {
    return OTConvert::decimalNumberFromString(model.amountText());
}
QList<int> historyTypes(TAInvoice *invoice) {
    QList<int> types;
    for (TAHistory *record : invoice->history())
        types.append(record->type());
    std::sort(types.begin(), types.end());
    return types;
}
} // namespace

TEST_F(PaymentsFixture, AForeignPaymentAtTheOfferedCeiledAmountSettlesTheInvoice) {
    TAInvoice *bill = invoice(client(eur), "100");
    setRate(usd, eur, "0.8");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    EXPECT_EQ(model.selectedCurrency(), eur);
    EXPECT_EQ(amountOf(model), dec("100"));
    EXPECT_FALSE(model.conversionShown());
    EXPECT_EQ(model.windowHeight(), TAAddPaymentModel::kHeight);
    EXPECT_EQ(model.convertText(), QStringLiteral("1"));

    model.currencyChanged(usd);
    EXPECT_EQ(amountOf(model), dec("125"));
    EXPECT_TRUE(model.conversionShown());
    EXPECT_TRUE(model.conversionEditable());
    EXPECT_EQ(model.windowHeight(), TAAddPaymentModel::kHeightWithConversion);
    EXPECT_EQ(model.convertFromLabel(), QStringLiteral("1 USD ="));
    EXPECT_EQ(model.convertToLabel(), QStringLiteral("EUR"));
    EXPECT_EQ(OTConvert::decimalNumberFromString(model.convertText()), dec("0.8"));

    ASSERT_TRUE(model.doneClick());
    ASSERT_EQ(bill->payments().size(), 1);
    TAPayment *payment = bill->payments().first();
    EXPECT_EQ(payment->currencyCode(), QStringLiteral("USD"));
    EXPECT_EQ(payment->rate(), dec("0.8"));
    EXPECT_EQ(bill->paid(), dec("100"));
    EXPECT_EQ(bill->status(), 3);
    EXPECT_EQ(historyTypes(bill), (QList<int>{3, 4}));
    // One undo takes back the payment, its records and the status.
    context->undoManager()->undo();
    EXPECT_TRUE(bill->payments().isEmpty());
    EXPECT_EQ(bill->status(), 2);
}

TEST_F(PaymentsFixture, TheInverseIsRoundedAtTheInvoiceScaleFirstSoALowRateFallsShort) {
    TAInvoice *bill = invoice(client(eur), "100");
    setRate(usd, eur, "0.3");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    model.currencyChanged(usd);
    EXPECT_EQ(amountOf(model), dec("333"));
    ASSERT_TRUE(model.doneClick());
    EXPECT_EQ(bill->paid(), dec("99.9"));
    EXPECT_EQ(bill->status(), 2);
    EXPECT_EQ(historyTypes(bill), (QList<int>{3}));
}

TEST_F(PaymentsFixture, TypedRatesAndAmountsAndSwitchingBack) {
    TAInvoice *bill = invoice(client(eur), "100");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    model.currencyChanged(usd);
    // A typed rate inverts at the selected currency's scale.
    model.convertChanged(QStringLiteral("0.5"));
    EXPECT_EQ(amountOf(model), dec("200"));
    model.convertChanged(QStringLiteral("abc"));
    EXPECT_EQ(amountOf(model), dec("200"));
    model.convertChanged(QStringLiteral("0"));
    EXPECT_EQ(amountOf(model), dec("200"));
    // Back to the invoice's currency: the row goes, and focus leaves the rate field.
    model.setFocusedField(TAAddPaymentModel::Field::Rate);
    model.currencyChanged(eur);
    EXPECT_FALSE(model.conversionShown());
    EXPECT_EQ(model.focusedField(), TAAddPaymentModel::Field::Amount);
    EXPECT_EQ(amountOf(model), dec("100"));
    // Once the user typed an amount, nothing recomputes it.
    model.amountChanged(QStringLiteral("42"));
    model.currencyChanged(usd);
    model.convertChanged(QStringLiteral("0.25"));
    EXPECT_EQ(model.amountText(), QStringLiteral("42"));
    EXPECT_TRUE(model.amountEdited());
    // Showing again clears the flag.
    model.showForView(bill);
    EXPECT_FALSE(model.amountEdited());
}

TEST_F(PaymentsFixture, AnOverdueInvoiceOffersWhatIsLeftAndBadAmountsAreRefused) {
    const QDateTime now = QDateTime(QDate(2024, 3, 10), QTime(12, 0), Qt::UTC);
    ScopedFixedClock clock(now);
    TAInvoice *bill = invoice(client(eur), "100");
    bill->setDueDate(now.addDays(-2));
    pay(bill, "40", eur, "1");
    ASSERT_TRUE(bill->isOverdue());
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    EXPECT_EQ(model.date(), now);
    EXPECT_EQ(amountOf(model), dec("60"));
    for (const char *bad : {"0", "letters", ""}) {
        model.amountChanged(QString::fromLatin1(bad));
        model.setFocusedField(TAAddPaymentModel::Field::None);
        EXPECT_FALSE(model.doneClick()) << bad;
        EXPECT_EQ(model.focusedField(), TAAddPaymentModel::Field::Amount);
    }
    EXPECT_EQ(bill->payments().size(), 1);
    model.amountChanged(QStringLiteral("60"));
    const int refreshes = document.refreshes;
    ASSERT_TRUE(model.doneClick());
    EXPECT_EQ(bill->payments().size(), 2);
    EXPECT_TRUE(model.overdueChanged());
    EXPECT_EQ(document.refreshes, refreshes + 1);
}

TEST_F(PaymentsFixture, BackInTheInvoicesCurrencyThePaymentIsSavedAtRateOne) {
    TAInvoice *bill = invoice(client(eur), "100");
    setRate(usd, eur, "0.8");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    model.currencyChanged(usd);
    ASSERT_EQ(OTConvert::decimalNumberFromString(model.convertText()), dec("0.8"));
    model.currencyChanged(eur);
    EXPECT_FALSE(model.conversionShown());
    EXPECT_EQ(model.convertText(), QStringLiteral("1"));
    EXPECT_EQ(model.convertFromLabel(), QStringLiteral("1 EUR ="));
    ASSERT_TRUE(model.doneClick());
    ASSERT_EQ(bill->payments().size(), 1);
    EXPECT_EQ(bill->payments().first()->currencyCode(), QStringLiteral("EUR"));
    EXPECT_EQ(bill->payments().first()->rate(), dec("1"));
    EXPECT_EQ(bill->paid(), dec("100"));
    EXPECT_EQ(bill->status(), 3);
    EXPECT_EQ(historyTypes(bill), (QList<int>{3, 4}));
}

// 100.50 EUR in yen at 0.0061: 1 / 0.0061 is 163.93 at the euro's scale, 100.50 times that is
// 16474.965, 16474.97 at that scale, ceiled to whole yen 16475. The rate field shows at most
// three fraction digits, "0.006", and the payment is saved at what the field reads: it then
// counts 16475 x 0.006 = 98.85 EUR, and the invoice stays open.
TEST_F(PaymentsFixture, TheOfferedAmountIsCeiledToTheForeignScale) {
    TACurrency *jpy = currency("JPY", "Japanese Yen");
    TAInvoice *bill = invoice(client(eur), "100.50");
    setRate(jpy, eur, "0.0061");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    model.currencyChanged(jpy);
    EXPECT_EQ(amountOf(model), dec("16475"));
    EXPECT_EQ(OTConvert::decimalNumberFromString(model.convertText()), dec("0.006"));
    ASSERT_TRUE(model.doneClick());
    EXPECT_EQ(bill->payments().first()->rate(), dec("0.006"));
    EXPECT_EQ(bill->paid(), dec("98.85"));
    EXPECT_EQ(bill->status(), 2);
    EXPECT_EQ(historyTypes(bill), (QList<int>{3}));
}

// A rate that does not read as a number, or a stored rate of 0, is not refused: the payment
// is saved at rate 0 and counts for nothing.
TEST_F(PaymentsFixture, ARateOfZeroOrOfLettersIsSavedAndCountsForNothing) {
    TAInvoice *bill = invoice(client(eur), "100");
    setRate(usd, eur, "0.8");
    TAAddPaymentModel model(&db);
    model.showForView(bill);
    model.currencyChanged(usd);
    model.convertChanged(QStringLiteral("abc"));
    EXPECT_EQ(amountOf(model), dec("125"));
    ASSERT_TRUE(model.doneClick());
    ASSERT_EQ(bill->payments().size(), 1);
    EXPECT_EQ(bill->payments().first()->amount(), dec("125"));
    EXPECT_EQ(bill->payments().first()->rate(), Decimal(0));
    EXPECT_EQ(bill->paid(), Decimal(0));
    EXPECT_EQ(bill->status(), 2);
    EXPECT_EQ(historyTypes(bill), (QList<int>{3}));

    // A stored row of 0: dividing by it answers the 1 it divides, so the sum due is offered
    // as it stands.
    setRate(bhd, eur, "0");
    model.showForView(bill);
    model.currencyChanged(bhd);
    EXPECT_EQ(OTConvert::decimalNumberFromString(model.convertText()), Decimal(0));
    EXPECT_EQ(amountOf(model), dec("100"));
    ASSERT_TRUE(model.doneClick());
    EXPECT_EQ(bill->payments().size(), 2);
    EXPECT_EQ(bill->paid(), Decimal(0));
    EXPECT_EQ(bill->status(), 2);
}
