#include "PaymentsFixture.h"

#include "store/TAContextDatabase.h"

TEST_F(PaymentsFixture, ConversionMultipliesByTheRowOfTheDirectionAndMakesRowsOnDemand) {
    const auto rows = [&] {
        return TAContextDatabase::fetchEntity(TAEntity::CurrencyRate, db.context()).size();
    };
    EXPECT_EQ(rows(), 0);
    // A fresh row carries the model's rate of 1.
    EXPECT_EQ(db.getDecimalNumber(dec("10.555"), usd, eur), dec("10.56"));
    EXPECT_EQ(rows(), 1);
    setRate(usd, eur, "0.8");
    EXPECT_EQ(db.getDecimalNumber(dec("10.555"), usd, eur), dec("8.44"));
    EXPECT_EQ(TAContextDatabase::getDecimalNumber(dec("10.555"), usd, eur, context.get()),
              dec("8.44"));
    // The other way is its own row, never a division by this one.
    EXPECT_EQ(db.getDecimalNumber(dec("8"), eur, usd), dec("8"));
    EXPECT_EQ(rows(), 2);
    setRate(eur, bhd, "0.41");
    EXPECT_EQ(db.getDecimalNumber(dec("1"), eur, bhd), dec("0.41"));
    EXPECT_EQ(db.getDecimalNumber(dec("0.0005"), eur, bhd), dec("0"));
}

TEST_F(PaymentsFixture, WithoutARowTheDocumentFormRoundsAndTheContextFormDoesNot) {
    EXPECT_EQ(db.getDecimalNumber(dec("1.005"), eur, eur), dec("1.01"));
    EXPECT_EQ(db.getDecimalNumber(dec("1.0005"), nullptr, bhd), dec("1.001"));
    EXPECT_EQ(TAContextDatabase::getDecimalNumber(dec("1.005"), eur, eur, context.get()),
              dec("1.005"));
    EXPECT_EQ(TAContextDatabase::getDecimalNumber(dec("1.005"), nullptr, eur, context.get()),
              dec("1.005"));
    EXPECT_TRUE(TAContextDatabase::fetchEntity(TAEntity::CurrencyRate, db.context()).isEmpty());
}

TEST_F(PaymentsFixture, DeletingACurrencyLeavesItsPaymentsCounting) {
    TAInvoice *bill = invoice(client(eur), "100");
    TAPayment *payment = pay(bill, "125", usd, "0.8");
    EXPECT_EQ(payment->currency(), usd);
    EXPECT_EQ(payment->valueForKey(QStringLiteral("currency")).value<ManagedObject *>(), usd);
    TAContextDatabase::deleteObject(usd, db.context());
    context->processPendingChanges();
    EXPECT_EQ(payment->currency(), nullptr);
    EXPECT_EQ(payment->currencyCode(), QStringLiteral("USD"));
    EXPECT_EQ(bill->paid(), dec("100"));
    EXPECT_TRUE(bill->isPaid());
}
