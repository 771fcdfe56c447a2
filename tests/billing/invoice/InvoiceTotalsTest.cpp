#include "InvoiceFixture.h"

#include "foundation/money/TADecimalNumberBehavior.h"

#include <QRandomGenerator>

namespace {

struct Totals {
    const char *S, *I, *D, *T, *total, *taxes;
};

void expectTotals(const TAInvoice *invoice, const Totals &want) {
    EXPECT_EQ(invoice->subTotal(), Decimal::fromString(QString::fromLatin1(want.S)));
    EXPECT_EQ(invoice->itemTaxes(), Decimal::fromString(QString::fromLatin1(want.I)));
    EXPECT_EQ(invoice->totalDiscount(), Decimal::fromString(QString::fromLatin1(want.D)));
    EXPECT_EQ(invoice->totalTax2(), Decimal::fromString(QString::fromLatin1(want.T)));
    EXPECT_EQ(invoice->total(), Decimal::fromString(QString::fromLatin1(want.total)));
    EXPECT_EQ(invoice->totalTaxes(), Decimal::fromString(QString::fromLatin1(want.taxes)));
}

} // namespace

using InvoiceTotalsTest = InvoiceFixture;

// Three at 33.33 with 7% tax, 10% discount, 20% second tax, taxes not combined.
TEST_F(InvoiceTotalsTest, WorkedExampleInBothCalculationTypes) {
    TAInvoice *invoice = invoiceIn(usd);
    material(invoice, "3", "33.33", "0.07");
    invoice->setTaxes(dec("0.2"));
    invoice->setDiscount(dec("0.1"));
    expectTotals(invoice, {"99.99", "7", "10.7", "17.86", "114.15", "24.86"});

    invoice->setCalculationType(1);
    expectTotals(invoice, {"99.99", "7", "12.7", "20", "114.29", "27"});

    // Combined: the second tax is charged on the taxed sum.
    setTaxes(true, true);
    invoice->updateCachedValues();
    // base = B(106.99 * 1.2) = 128.39, D = 12.84, T = B(106.99 * 0.2) = 21.40
    expectTotals(invoice, {"99.99", "7", "12.84", "21.4", "115.55", "28.4"});

    // Taxes off: nothing but the discount on the subtotal, once recalculated.
    setTaxes(false, true);
    EXPECT_EQ(invoice->total(), dec("115.55"));
    invoice->updateCachedValues();
    expectTotals(invoice, {"99.99", "0", "10", "0", "89.99", "0"});
}

TEST_F(InvoiceTotalsTest, FullDiscountWithCombinedTaxesLeavesNothing) {
    setTaxes(true, true);
    TAInvoice *invoice = invoiceIn(usd);
    material(invoice, "2", "50", "0.1");
    invoice->setTaxes(dec("0.2"));
    invoice->setDiscount(dec("1"));
    expectTotals(invoice, {"100", "10", "110", "0", "0", "10"});

    invoice->setDiscount(Decimal::notANumber());
    EXPECT_FALSE(invoice->isNullForKey(QStringLiteral("discount")));
    EXPECT_EQ(invoice->discount(), Decimal(0));
    EXPECT_EQ(invoice->total(), dec("132"));
}

// Every addition rounds, half away from zero, to the currency's own scale; an item tax is
// rounded before it is added.
TEST_F(InvoiceTotalsTest, EachStepRoundsToTheCurrencyScale) {
    const struct {
        TACurrency *in;
        const char *price, *subTotal, *itemTaxes;
    } cases[] = {
        // Two items at half a unit: 0.5 -> 1, then 1.5 -> 2 (a single rounding would give 1).
        {jpy, "0.5", "2", "0"},
        {usd, "0.005", "0.02", "0"},
        {kwd, "0.0005", "0.002", "0"},
        // Item totals 0.1 at 5%: each tax 0.005 -> 0.01, so 0.02 and not B(0.01).
        {usd, "0.1", "0.2", "0.02"},
    };
    for (const auto &c : cases) {
        TAInvoice *invoice = invoiceIn(c.in);
        material(invoice, "1", c.price, "0.05");
        material(invoice, "1", c.price, "0.05");
        EXPECT_EQ(invoice->subTotal(), dec(c.subTotal)) << c.in->code().toStdString() << c.price;
        if (QByteArray(c.price) == "0.1") {
            EXPECT_EQ(invoice->itemTaxes(), dec(c.itemTaxes));
        }
    }
    // A negative tie rounds away from zero too.
    TAInvoice *credit = invoiceIn(jpy);
    material(credit, "-1", "0.5");
    EXPECT_EQ(credit->subTotal(), Decimal(-1));
}

TEST_F(InvoiceTotalsTest, DeletedItemsAndNullValuesAreSkipped) {
    TAInvoice *invoice = invoiceIn(usd);
    material(invoice, "1", "10");
    TAMaterial *gone = material(invoice, "1", "5");
    TAMaterial *empty = TAContextDatabase::createMaterialInContext(
        db.context()); // no price, quantity, tax or discount
    empty->setInvoice(invoice);
    EXPECT_EQ(invoice->total(), dec("15"));
    context->deleteObject(gone);
    invoice->updateCachedValues();
    EXPECT_EQ(invoice->subTotal(), dec("10"));
    EXPECT_EQ(invoice->total(), dec("10"));
}

TEST_F(InvoiceTotalsTest, DifferentTaxesGroupByRateAndName) {
    TAInvoice *invoice = invoiceIn(usd);
    TAMaterial *a = material(invoice, "1", "10.05", "0.07"); // 0.7035 -> 0.70
    a->setTaxName(QStringLiteral("VAT"));
    TAMaterial *b = material(invoice, "1", "10.05", "0.070");
    b->setTaxName(QStringLiteral("VAT"));
    TAMaterial *c = material(invoice, "1", "100", "0.07");
    c->setTaxName(QStringLiteral("Sales"));
    TAMaterial *d = material(invoice, "1", "20", "0.2"); // null name groups with the empty one
    TAMaterial *e = material(invoice, "1", "30", "0.2");
    e->setTaxName(QStringLiteral(""));
    material(invoice, "1", "5", "0"); // a rate of 0 gets a line too
    (void)d;

    const QList<QVariantMap> lines = invoice->differentTaxes();
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(Decimal::fromVariant(lines[0].value("tax")), dec("0.2"));
    EXPECT_EQ(Decimal::fromVariant(lines[0].value("amount")), dec("10"));
    EXPECT_EQ(lines[0].value("taxName").toString(), QString());
    QMap<QString, Decimal> byName;
    for (const QVariantMap &line : lines.mid(1, 2))
        byName.insert(line.value("taxName").toString(), Decimal::fromVariant(line.value("amount")));
    EXPECT_EQ(byName.value("VAT"), dec("1.4"));
    EXPECT_EQ(byName.value("Sales"), dec("7"));
    EXPECT_EQ(Decimal::fromVariant(lines[3].value("tax")), Decimal(0));

    setTaxes(false, false);
    EXPECT_TRUE(invoice->differentTaxes().isEmpty());
}

// For random invoices the total is the sum of its parts, and a second refresh changes nothing.
TEST_F(InvoiceTotalsTest, RandomInvoicesAddUpAndRecomputeToTheSameValues) {
    QRandomGenerator random(20241122);
    TACurrency *currencies[] = {jpy, usd, kwd};
    for (int round = 0; round < 60; ++round) {
        setTaxes(random.bounded(2) == 1, random.bounded(2) == 1);
        TAInvoice *invoice = invoiceIn(currencies[random.bounded(3)]);
        const int count = random.bounded(1, 6);
        for (int i = 0; i < count; ++i) {
            TAItem *item = nullptr;
            if (random.bounded(2) == 1) {
                TAMaterial *m = material(invoice, "1", "0");
                m->setQuantity(Decimal::fromParts(random.bounded(1, 500), -random.bounded(0, 3)));
                item = m;
            } else {
                TATimer *t = TAContextDatabase::createTimerInContext(db.context());
                t->setSeconds(random.bounded(0, 40000));
                t->setInvoice(invoice);
                item = t;
            }
            item->setPrice(Decimal::fromParts(random.bounded(0, 100000), -random.bounded(0, 4)));
            item->setTax(Decimal::fromParts(random.bounded(0, 30), -2));
            item->setDiscount(Decimal::fromParts(random.bounded(0, 50), -2));
            // A timer bills whole minutes only.
            if (auto *t = dynamic_cast<TATimer *>(item)) {
                const Decimal billed(t->seconds() / 60 * 60);
                EXPECT_EQ(t->total(), t->priceWithDiscount() * billed / Decimal(3600)) << round;
            }
        }
        invoice->setCalculationType(random.bounded(2));
        invoice->setTaxes(Decimal::fromParts(random.bounded(0, 25), -2));
        invoice->setDiscount(Decimal::fromParts(random.bounded(0, 101), -2));
        invoice->updateCachedValues();

        const Decimal parts = invoice->subTotal() + invoice->itemTaxes() -
                              invoice->totalDiscount() + invoice->totalTax2();
        EXPECT_EQ(invoice->total(), DecimalMath::round(parts, invoice->behavior()))
            << "round " << round;
        EXPECT_EQ(invoice->totalTaxes(), invoice->itemTaxes() + invoice->totalTax2());
        const Decimal before[] = {invoice->subTotal(), invoice->totalDiscount(), invoice->total()};
        invoice->updateCachedValues();
        EXPECT_EQ(invoice->subTotal(), before[0]);
        EXPECT_EQ(invoice->totalDiscount(), before[1]);
        EXPECT_EQ(invoice->total(), before[2]);
    }
}

// A batch refresh reads the document's settings once, but each invoice still rounds to its
// own client's currency, and to the document's when the client has none or there is no client.
TEST_F(InvoiceTotalsTest, BatchRefreshKeepsEachInvoicesCurrency) {
    TAInvoice *yen = invoiceIn(jpy);
    TAInvoice *dinar = invoiceIn(kwd);
    TAInvoice *plainClient = invoiceIn(nullptr);
    TAInvoice *noClient = TAContextDatabase::createInvoiceInContext(db.context());
    const QList<TAInvoice *> invoices{yen, dinar, plainClient, noClient};
    for (TAInvoice *invoice : invoices)
        material(invoice, "1", "1.2345", "0.1");
    const TAInvoice::TotalsSettings settings = TAInvoice::totalsSettingsInContext(context.get());
    EXPECT_EQ(settings.defaultCurrency, usd);
    for (TAInvoice *invoice : invoices)
        invoice->updateCachedValuesWithSettings(settings);
    EXPECT_EQ(yen->subTotal(), dec("1"));
    EXPECT_EQ(dinar->subTotal(), dec("1.235"));
    EXPECT_EQ(dinar->itemTaxes(), dec("0.123"));
    EXPECT_EQ(plainClient->subTotal(), dec("1.23"));
    EXPECT_EQ(noClient->total(), dec("1.35"));
    for (TAInvoice *invoice : invoices) {
        const Decimal batch = invoice->total();
        invoice->updateCachedValues();
        EXPECT_EQ(invoice->total(), batch);
    }
}

// Amounts at the 38-digit limit: a sum that would need a 39th digit is no total at all, never a
// rounded one, and an item whose own total overflows does not count as nothing.
TEST_F(InvoiceTotalsTest, TotalsBeyond38DigitsOverflowInsteadOfRounding) {
    const TAInvoice::TotalsSettings settings = TAInvoice::totalsSettingsInContext(context.get());
    const QByteArray nines(38, '9');
    TAInvoice *doubled = invoiceIn(jpy);
    material(doubled, "1", nines.constData());
    material(doubled, "1", nines.constData());
    const auto overflowed = doubled->refreshCachedValues(settings);
    ASSERT_FALSE(overflowed.ok());
    EXPECT_TRUE(overflowed.error().message.contains(QStringLiteral("38 digits")));
    for (const char *key :
         {"subTotal", "itemTaxes", "totalDiscount", "totalTax2", "total", "totalTaxes"})
        EXPECT_TRUE(doubled->isNullForKey(QString::fromLatin1(key))) << key;

    // Too large on its own: twice the largest price.
    TAInvoice *oneItem = invoiceIn(usd);
    material(oneItem, "2", nines.constData());
    oneItem->updateCachedValues();
    EXPECT_TRUE(oneItem->total().isNaN());

    // 36 whole digits keep their cents: the largest total a dollar invoice holds.
    TAInvoice *largest = invoiceIn(usd);
    material(largest, "1", "499999999999999999999999999999999999.99");
    material(largest, "1", "500000000000000000000000000000000000");
    ASSERT_TRUE(largest->refreshCachedValues(settings).ok());
    EXPECT_EQ(largest->total(), dec("999999999999999999999999999999999999.99"));
    // A 37th whole digit leaves no room for the cents.
    material(largest, "1", "1000000000000000000000000000000000000");
    EXPECT_FALSE(largest->refreshCachedValues(settings).ok());
    EXPECT_TRUE(largest->subTotal().isNaN());
}
