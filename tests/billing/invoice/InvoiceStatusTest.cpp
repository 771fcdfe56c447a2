#include "InvoiceFixture.h"

#include "objectstore/Predicate.h"
#include "store/entities/TACurrencyRate.h"

namespace {
QDateTime local(int day, int hour, int minute = 0, int second = 0) {
    return QDateTime(QDate(2026, 1, day), QTime(hour, minute, second));
}
} // namespace

class InvoiceStatusTest : public InvoiceFixture {
protected:
    // An invoice of 100.00 in USD, due on 10 January at noon.
    TAInvoice *hundred(int status) {
        TAInvoice *invoice = invoiceIn(usd);
        material(invoice, "1", "100");
        invoice->setStatus(status);
        invoice->setDueDate(local(10, 12));
        return invoice;
    }
    TAPayment *pay(TAInvoice *to, const char *amount, const char *rate = "1") {
        TAPayment *p = TAContextDatabase::createPaymentInContext(db.context());
        p->setAmount(dec(amount));
        p->setRate(dec(rate));
        p->setInvoiceRelationship(to);
        return p;
    }
    ScopedFixedClock clock{local(11, 9)};
};

TEST_F(InvoiceStatusTest, StatusOutsideTheCodesReadsAsDraftAndUnpaid) {
    TAInvoice *invoice = hundred(7);
    EXPECT_EQ(invoice->statusValue(), 1);
    EXPECT_EQ(invoice->unpaid(), dec("100"));
    EXPECT_FALSE(invoice->isPaid());
    invoice->setValueForKey(QVariant(), QStringLiteral("status"));
    EXPECT_EQ(invoice->statusValue(), 1);
    EXPECT_EQ(invoice->left(), dec("100"));
    invoice->setStatusValue(5);
    EXPECT_TRUE(invoice->isNullForKey(QStringLiteral("status")));
    invoice->setStatusValue(2);
    EXPECT_EQ(invoice->status(), 2);
}

TEST_F(InvoiceStatusTest, MarkedPaidCountsAsPaidInFullButKeepsOverpayment) {
    TAInvoice *invoice = hundred(3);
    EXPECT_EQ(invoice->paid(), dec("100"));
    EXPECT_EQ(invoice->unpaid(), Decimal(0));
    EXPECT_EQ(invoice->overpaid(), Decimal(0));
    EXPECT_EQ(invoice->overdue(), Decimal(0));
    EXPECT_TRUE(invoice->isPaid());
    EXPECT_FALSE(invoice->isOverdue());

    pay(invoice, "80");
    pay(invoice, "30");
    EXPECT_EQ(invoice->paid(), dec("110"));
    EXPECT_EQ(invoice->overpaid(), dec("10"));
    EXPECT_EQ(invoice->balance(), dec("-10"));
    EXPECT_EQ(invoice->left(), Decimal(0));
}

TEST_F(InvoiceStatusTest, PartlyPaidAndPastDue) {
    TAInvoice *invoice = hundred(2);
    // 40 EUR at 1.25 is 50 USD; each payment is rounded to the invoice's currency.
    pay(invoice, "40", "1.25");
    pay(invoice, "0.004", "1"); // rounds to 0.00
    EXPECT_EQ(invoice->paid(), dec("50"));
    EXPECT_TRUE(invoice->isOverdue());
    EXPECT_EQ(invoice->overdue(), dec("50"));
    EXPECT_EQ(invoice->unpaid(), dec("50"));
    EXPECT_EQ(invoice->sortStatus(), 0);
    EXPECT_FALSE(invoice->isPaid());

    // An empty invoice is paid from the start.
    TAInvoice *empty = invoiceIn(usd);
    empty->setStatus(2);
    empty->setDueDate(local(1, 0));
    empty->updateCachedValues();
    EXPECT_TRUE(empty->isPaid());
    EXPECT_FALSE(empty->isOverdue());
    EXPECT_EQ(empty->sortStatus(), 2);
}

// Overdue from the calendar day after the due date, not from the due moment.
TEST_F(InvoiceStatusTest, OverdueStartsAtTheNextCalendarDay) {
    TAInvoice *invoice = hundred(2);
    clock.set(local(10, 11, 59));
    EXPECT_FALSE(invoice->isOverdue()); // not yet due
    clock.set(local(10, 21));
    EXPECT_FALSE(invoice->isOverdue()); // due today at noon, seen in the evening
    clock.set(local(10, 23, 59, 59));
    EXPECT_FALSE(invoice->isOverdue());
    clock.set(local(11, 0, 0, 1));
    EXPECT_TRUE(invoice->isOverdue());
    EXPECT_EQ(invoice->overdue(), dec("100"));

    invoice->setDueDate(local(10, 23, 59));
    clock.set(local(11, 0, 0, 30));
    EXPECT_TRUE(invoice->isOverdue());

    invoice->setDueDate(QDateTime());
    EXPECT_FALSE(invoice->isOverdue());
}

TEST_F(InvoiceStatusTest, ComputedValuesAreReachableByKey) {
    TAInvoice *late = hundred(2);
    TAInvoice *paid = hundred(3);
    EXPECT_EQ(late->valueForKey(QStringLiteral("isOverdue")).toBool(), true);
    EXPECT_EQ(Decimal::fromVariant(late->valueForKey(QStringLiteral("unpaid"))), dec("100"));
    EXPECT_EQ(paid->valueForKey(QStringLiteral("sortStatus")).toInt(), 3);

    auto overdue = Predicate::parse(QStringLiteral("isOverdue == YES"));
    ASSERT_TRUE(overdue.ok());
    EXPECT_TRUE(overdue->evaluate(*late));
    EXPECT_FALSE(overdue->evaluate(*paid));
    auto byCode = Predicate::parse(QStringLiteral("currency.code == 'USD'"));
    ASSERT_TRUE(byCode.ok());
    EXPECT_TRUE(byCode->evaluate(*late));
}

TEST_F(InvoiceStatusTest, TotalInAnotherCurrencyRoundsToTheTarget) {
    TAInvoice *invoice = invoiceIn(usd);
    material(invoice, "1", "10.55");
    EXPECT_EQ(invoice->totalInCurrency(usd), dec("10.55"));
    TAContextDatabase::getCurrencyRateFromCurrency(usd, jpy, db.context())
        ->setOneFromInTo(dec("150.05"));
    EXPECT_EQ(invoice->totalInCurrency(jpy), dec("1583")); // 1583.0275
    TAContextDatabase::getCurrencyRateFromCurrency(usd, kwd, db.context())
        ->setOneFromInTo(dec("0.30705"));
    EXPECT_EQ(invoice->totalInCurrency(kwd), dec("3.239")); // 3.2393775
    EXPECT_EQ(invoice->totalInDefaultCurrency(), dec("10.55"));
}
