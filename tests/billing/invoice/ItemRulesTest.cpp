#include "InvoiceFixture.h"

#include "billing/TAInvoiceCacheRequests.h"
#include "billing/invoice/TAInvoiceTotalsEditing.h"
#include "billing/items/TAItemRowEditing.h"
#include "objectstore/SortDescriptor.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimerInterval.h"

class ItemRulesTest : public InvoiceFixture {
protected:
    TATimer *timer(qint64 seconds, const char *price) {
        TATimer *t = TAContextDatabase::createTimerInContext(db.context());
        t->setSeconds(seconds);
        t->setPrice(dec(price));
        return t;
    }
    ScopedFixedClock clock{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};
};

TEST_F(ItemRulesTest, ItemArithmeticKeepsEveryDigit) {
    TAMaterial *m = material(nullptr, "3", "10.005");
    EXPECT_EQ(m->priceWithDiscount(), dec("10.005")); // a null discount is none
    m->setDiscount(dec("0.1"));
    EXPECT_EQ(m->discountInCash(), dec("1.0005"));
    EXPECT_EQ(m->total(), dec("27.0135"));
    m->setDiscount(dec("1"));
    EXPECT_EQ(m->total(), Decimal(0));
    m->setValueForKey(QVariant(), QStringLiteral("quantity"));
    EXPECT_EQ(m->total(), Decimal(0));
    EXPECT_EQ(TAContextDatabase::createMaterialInContext(db.context())->total(),
              Decimal(0)); // nothing set at all
}

// Only whole minutes are billed, and the odd seconds never round up.
TEST_F(ItemRulesTest, TimersBillWholeMinutes) {
    EXPECT_EQ(timer(59, "100")->total(), Decimal(0));
    EXPECT_EQ(timer(61, "60")->total(), Decimal(1));
    EXPECT_EQ(timer(3600, "100")->total(), Decimal(100));
    EXPECT_EQ(timer(3659, "100")->total(), Decimal(100));
    const Decimal third = timer(60, "100")->total(); // 1.666..., unrounded
    EXPECT_EQ(third.rounded(10, Decimal::RoundingMode::Plain), dec("1.6666666667"));
    TATimer *empty = TAContextDatabase::createTimerInContext(db.context());
    empty->setPrice(dec("100"));
    empty->setValueForKey(QVariant(), QStringLiteral("seconds"));
    EXPECT_EQ(empty->total(), Decimal(0));
}

TEST_F(ItemRulesTest, SetHoursKeepsOddSecondsButSetMinutesDropsThem) {
    TATimer *t = timer(3725, "0");
    EXPECT_EQ(t->hours(), 1);
    EXPECT_EQ(t->minutes(), 2);
    t->setMinutes(10);
    EXPECT_EQ(t->seconds(), 4200);
    t->setSeconds(3725);
    t->setHours(2);
    EXPECT_EQ(t->seconds(), 7325);
}

TEST_F(ItemRulesTest, TaxesCompareByRateAndName) {
    TAMaterial *a = material(nullptr, "1", "1", "0.07");
    TAMaterial *b = material(nullptr, "1", "1", "0.070");
    EXPECT_EQ(a->compareTaxes(b), 0);
    b->setTaxName(QStringLiteral("VAT"));
    EXPECT_EQ(a->compareTaxes(b), -1);
    a->setTaxName(QStringLiteral("VAT"));
    a->setTax(dec("0.08"));
    EXPECT_EQ(a->compareTaxes(b), -1);
    EXPECT_EQ(a->compareTaxes(nullptr), -1);

    TAInvoice *invoice = invoiceIn(usd);
    a->setInvoice(invoice);
    b->setInvoice(invoice);
    a->setSortIndex(2);
    b->setSortIndex(1);
    EXPECT_EQ(invoice->itemsSortedBySortIndex(), (QList<TAItem *>{b, a}));
    a->setName(QStringLiteral("b"));
    b->setName(QStringLiteral("a"));
    const QList<SortDescriptor> header{SortDescriptor(QStringLiteral("total"), false),
                                       SortDescriptor(QStringLiteral("name"), false)};
    EXPECT_EQ(invoice->sortedItemRelationships(header), (QList<TAItem *>{a, b}));
}

TEST_F(ItemRulesTest, RunningIntervalGrowsWithTheClock) {
    TATimer *t = timer(0, "36");
    t->setDiscount(dec("0.5")); // intervals bill the list price
    TATimerInterval *first = TAContextDatabase::createTimerIntervalInContext(db.context());
    first->setStart(clock.now().addSecs(-7200));
    first->setEnd(clock.now().addSecs(-7170));
    first->setTimerRelationship(t);
    TATimerInterval *running = TAContextDatabase::createTimerIntervalInContext(db.context());
    running->setStart(clock.now());
    running->setTimerRelationship(t);
    EXPECT_EQ(first->total(), dec("0.3")); // 30 s, not cut to minutes
    clock.advance(100);
    EXPECT_EQ(running->time(), 100);
    EXPECT_EQ(running->total(), Decimal(1));
    EXPECT_EQ(t->lastTimerInterval(), running);
    EXPECT_EQ(TAContextDatabase::createTimerIntervalInContext(db.context())->total(), Decimal(0));
}

TEST_F(ItemRulesTest, CurrencyFollowsInvoiceClientThenProjectThenDefault) {
    TAClient *kuwaiti = TAContextDatabase::createClientInContext(db.context());
    kuwaiti->setCurrencyRelationship(kwd);
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    project->setClient(kuwaiti);
    TAMaterial *m = material(nullptr, "1", "1");
    EXPECT_EQ(m->currency(), usd);
    m->setProject(project);
    EXPECT_EQ(m->currency(), kwd);
    TAInvoice *withoutClient = TAContextDatabase::createInvoiceInContext(db.context());
    m->setInvoice(withoutClient);
    EXPECT_EQ(m->currency(), usd); // an invoice without client wins over the project
    m->setInvoice(invoiceIn(jpy));
    EXPECT_EQ(m->currency(), jpy);
}

// Price changes reach the invoice's cached totals, and undo takes both back.
TEST_F(ItemRulesTest, ChangesRefreshTheInvoiceAndUndoRestoresIt) {
    TAInvoice *invoice = invoiceIn(usd);
    TAMaterial *m = material(invoice, "2", "10");
    TATimer *t = timer(3600, "30");
    t->setInvoice(invoice);
    context->processPendingChanges();
    context->undoManager()->removeAllActions();
    EXPECT_EQ(invoice->total(), dec("50"));

    db.beginUndoGroupingWithName(QStringLiteral("Edit"));
    m->setPrice(dec("12.5"));
    db.endUndoGrouping();
    EXPECT_EQ(invoice->total(), dec("55"));
    t->setSeconds(7200);
    EXPECT_EQ(invoice->total(), dec("85"));
    m->setQuantity(dec("4"));
    EXPECT_EQ(invoice->total(), dec("110"));
    m->setTax(dec("0.1"));
    EXPECT_EQ(invoice->total(), dec("115"));
    // A changed item discount waits for the editor's refresh.
    m->setDiscount(dec("0.5"));
    EXPECT_EQ(invoice->total(), dec("115"));

    context->processPendingChanges();
    while (context->undoManager()->canUndo())
        context->undoManager()->undo();
    EXPECT_EQ(m->price(), dec("10"));
    EXPECT_EQ(invoice->total(), dec("50"));
    EXPECT_EQ(invoice->subTotal(), dec("50"));
}

TEST_F(ItemRulesTest, ChangesStampTheItemAndCarryTheProject) {
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    TAInvoice *invoice = invoiceIn(usd);
    invoice->setProject(project);
    TAMaterial *m = material(nullptr, "1", "1");
    EXPECT_EQ(m->added(), clock.now());
    clock.advance(60);
    m->setName(QStringLiteral("Paint"));
    EXPECT_EQ(m->updateDate(), clock.now());
    m->setInvoice(invoice);
    EXPECT_EQ(m->project(), project);

    TAProject *other = TAContextDatabase::createProjectInContext(db.context());
    invoice->setProject(other);
    EXPECT_EQ(m->project(), other);
    invoice->setProject(nullptr); // no project to hand on: the item keeps its own
    EXPECT_EQ(m->project(), other);
}

// A billed timer leaves the pool; taking the invoice away does not bring it back.
TEST_F(ItemRulesTest, BilledTimerLeavesThePool) {
    TATimer *t = timer(10, "1");
    t->setActive(true);
    t->setInvoice(invoiceIn(usd));
    EXPECT_EQ(pool.removed, QList<ManagedObject *>{t});
    t->setInvoice(nullptr);
    EXPECT_EQ(pool.removed.size(), 1);
}

TEST_F(ItemRulesTest, UndoRepairsAMissingAddedDate) {
    TAMaterial *m = material(nullptr, "1", "1");
    context->processPendingChanges();
    db.beginUndoGroupingWithName(QStringLiteral("Clear"));
    m->setAdded(QDateTime());
    db.endUndoGrouping();
    context->undoManager()->undo();
    clock.advance(30);
    context->undoManager()->redo();
    EXPECT_EQ(m->added(), clock.now());
}

TEST_F(ItemRulesTest, CatalogueEntriesAndCopiesBetweenKinds) {
    TATax *vat = TAContextDatabase::createTaxInContext(db.context());
    vat->setName(QStringLiteral("VAT"));
    vat->setValue(dec("0.2"));
    TAInventory *entry = TAContextDatabase::createInventoryInContext(db.context());
    entry->setName(QStringLiteral("Hour"));
    entry->setPrice(dec("80"));
    entry->setDiscount(dec("0.25"));
    entry->setCustomTax(dec("0.05"));
    entry->setIsMaterial(false);
    EXPECT_EQ(entry->priceWithDiscount(), dec("60"));
    EXPECT_EQ(entry->taxValue(), dec("0.05"));
    auto *made = dynamic_cast<TATimer *>(entry->createItem());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->seconds(), 0);
    EXPECT_EQ(made->tax(), dec("0.05"));
    EXPECT_EQ(made->taxName(), QStringLiteral(""));
    EXPECT_FALSE(made->isNullForKey(QStringLiteral("taxName")));

    entry->setTax(vat);
    entry->setIsMaterial(true);
    auto *piece = dynamic_cast<TAMaterial *>(entry->createItem());
    ASSERT_NE(piece, nullptr);
    EXPECT_EQ(piece->quantity(), Decimal(1));
    EXPECT_EQ(piece->tax(), dec("0.2"));
    EXPECT_EQ(piece->taxName(), QStringLiteral("VAT"));

    TAInventory *back = piece->copyAsInventory();
    EXPECT_TRUE(back->isMaterial());
    EXPECT_EQ(back->customTax(), dec("0.2"));
    EXPECT_EQ(back->tax(), nullptr);

    TAInvoice *invoice = invoiceIn(usd);
    piece->setQuantity(dec("7"));
    piece->setInvoice(invoice);
    auto *asTimer = dynamic_cast<TATimer *>(piece->copyAsTimer());
    ASSERT_NE(asTimer, nullptr);
    EXPECT_EQ(asTimer->invoice(), invoice);
    EXPECT_EQ(asTimer->price(), dec("80"));
    EXPECT_FALSE(asTimer->copyAsInventory()->isMaterial());
}

TEST_F(ItemRulesTest, RowEditorsStoreFractionsAndRoundInvoicePrices) {
    TAInvoice *invoice = invoiceIn(jpy);
    TAMaterial *m = material(invoice, "1", "1");
    TAItemRowInput row{"S1", "Paint", "150", "1234.5", "7.5", "3", nullptr};
    TAItemRowEditing::saveItemRow(m, row, TAItemRowEditing::Row::Invoice);
    EXPECT_EQ(m->discount(), Decimal(1));
    EXPECT_EQ(m->price(), dec("1235"));
    EXPECT_EQ(m->tax(), dec("0.075"));
    EXPECT_TRUE(m->isNullForKey(QStringLiteral("taxName")));
    EXPECT_EQ(m->quantity(), Decimal(3));

    TAMaterial *onProject = material(nullptr, "1", "1");
    row.discount = QStringLiteral("10");
    row.tax = QStringLiteral("abc");
    TAItemRowEditing::saveItemRow(onProject, row, TAItemRowEditing::Row::Project);
    EXPECT_EQ(onProject->price(), dec("1234.5"));
    EXPECT_EQ(onProject->discount(), dec("0.1"));
    EXPECT_EQ(onProject->tax(), Decimal(0));

    // A project row's kind change: one quantity unit is one minute.
    auto *asTimer = dynamic_cast<TATimer *>(TAItemRowEditing::changeProjectItemKind(onProject));
    ASSERT_NE(asTimer, nullptr);
    EXPECT_EQ(asTimer->seconds(), 180);
    EXPECT_EQ(asTimer->name(), QStringLiteral("Paint"));
    EXPECT_TRUE(onProject->isDeleted() || !onProject->managedObjectContext());
    EXPECT_EQ(context->undoManager()->undoActionName(), QStringLiteral("Update Project Item"));
    asTimer->setSeconds(179);
    auto *back = dynamic_cast<TAMaterial *>(TAItemRowEditing::changeProjectItemKind(asTimer));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->quantity(), Decimal(2));
}

TEST_F(ItemRulesTest, TotalsPanelTurnsAnAmountIntoAFraction) {
    TAInvoice *invoice = invoiceIn(usd);
    material(invoice, "1", "100", "0.1");
    TAInvoiceTotalsInput panel{"20", nullptr, "22", true};
    invoice->setCalculationType(1);
    // Tax first, separate: base = 110 + 20 = 130.
    EXPECT_TRUE(TAInvoiceTotalsEditing::dataChanged(invoice, panel));
    EXPECT_EQ(invoice->taxes(), dec("0.2"));
    EXPECT_EQ(invoice->discount(), dec("22") / dec("130"));
    EXPECT_EQ(invoice->totalDiscount(), dec("22"));
    EXPECT_EQ(context->undoManager()->undoActionName(), QStringLiteral("Invoice edit"));
    EXPECT_FALSE(TAInvoiceTotalsEditing::dataChanged(invoice, panel));

    panel.discountIsAmount = false;
    panel.discount = QStringLiteral("250");
    EXPECT_TRUE(TAInvoiceTotalsEditing::dataChanged(invoice, panel));
    EXPECT_EQ(invoice->discount(), Decimal(1));
    EXPECT_EQ(invoice->total(), Decimal(0));

    TAInvoiceTotalsEditing::toggleCalculationType(invoice);
    EXPECT_EQ(invoice->calculationType(), 0);
    invoice->setCalculationType(5);
    TAInvoiceTotalsEditing::toggleCalculationType(invoice);
    EXPECT_EQ(invoice->calculationType(), 0);
}

namespace {
struct RecordingQueue : TAInvoiceCacheQueue {
    bool locked = false;
    QList<ObjectID> queued;
    bool isLockedOrInReadOnlyMode() const override { return locked; }
    void invoiceForCacheUpdate(const ObjectID &id) override { queued.append(id); }
};
} // namespace

// With a queue the request hands over a permanent identity; a locked document computes at once.
TEST_F(ItemRulesTest, CacheRequestsGoToTheQueueUnlessLocked) {
    RecordingQueue queue;
    TAInvoiceCacheRequests::ScopedQueue routed(context.get(), &queue);
    TAInvoice *invoice = invoiceIn(usd);
    TAMaterial *m = material(invoice, "1", "10");
    ASSERT_FALSE(queue.queued.isEmpty());
    EXPECT_FALSE(queue.queued.last().isTemporaryID());
    EXPECT_EQ(queue.queued.last(), invoice->objectID());
    EXPECT_TRUE(invoice->isNullForKey(QStringLiteral("total")));

    queue.locked = true;
    m->setPrice(dec("12"));
    EXPECT_EQ(invoice->total(), dec("12"));
}
