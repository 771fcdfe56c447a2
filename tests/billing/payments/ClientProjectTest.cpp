#include "PaymentsFixture.h"

#include "foundation/dates/ScopedFixedClock.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATimer.h"

TEST_F(PaymentsFixture, ClientNamesFollowCompanyOrPersonWithFallbacks) {
    struct Case {
        bool company;
        const char *companyName;
        const char *fullName;
        const char *display;
        const char *secondary;
        const char *shortName;
    };
    const Case cases[] = {
        {true, "Acme", "John Smith", "Acme", "John Smith", "Acme"},
        {true, "", "John Smith", "John Smith", "", "John Smith"},
        {false, "Acme", "John Smith", "John Smith", "Acme", "J. Smith"},
        {false, "Acme", "", "Acme", "", "Acme"},
        {false, "", "Al Smith", "Al Smith", "", "Al Smith"},
        {false, "", "John Li", "John Li", "", "John Li"},
        {false, "", "", "", "", ""},
    };
    for (const Case &c : cases) {
        TAClient *client = TAContextDatabase::createClientInContext(db.context());
        client->setIsCompanyValue(c.company);
        client->setCompanyValue(QString::fromLatin1(c.companyName));
        client->setFullNameValue(QString::fromLatin1(c.fullName));
        EXPECT_EQ(client->displayName(), QString::fromLatin1(c.display)) << c.fullName;
        EXPECT_FALSE(client->displayName().isNull());
        EXPECT_EQ(client->secondaryName(), QString::fromLatin1(c.secondary)) << c.fullName;
        EXPECT_EQ(client->shortDisplayName(), QString::fromLatin1(c.shortName)) << c.fullName;
        EXPECT_EQ(client->valueForKeyPath(QStringLiteral("displayName")).toString(),
                  QString::fromLatin1(c.display));
    }
    // The data layer's sort by display name reaches the computed key.
    const QList<TAClient *> sorted =
        TAContextDatabase::getClientsSortedByDisplayNameInContext(db.context());
    ASSERT_EQ(sorted.size(), 7);
    EXPECT_EQ(sorted.last()->displayName(), QStringLiteral("John Smith"));
    EXPECT_LT(sorted.at(1)->compare(sorted.last()), 0);
}

TEST_F(PaymentsFixture, ClientSumsCountEachInvoiceOnceAndSkipDirectRecurringOnes) {
    TAClient *owner = client(eur);
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    project->setClient(owner);
    TAInvoice *direct = invoice(owner, "100");
    TAInvoice *both = invoice(owner, "10");
    both->setProject(project);
    pay(both, "4", eur, "1");
    TARecurringInvoice *pattern = TAContextDatabase::createRecurringInvoiceInContext(db.context());
    pattern->setClient(owner);
    pattern->setTotal(dec("1000"));
    TARecurringInvoice *onProject =
        TAContextDatabase::createRecurringInvoiceInContext(db.context());
    onProject->setProject(project);
    onProject->setTotal(dec("7"));

    EXPECT_EQ(owner->allInvoices().size(), 3);
    EXPECT_EQ(owner->invoiced(), dec("117"));
    EXPECT_EQ(owner->paid(), dec("4"));
    EXPECT_EQ(owner->unpaid(), dec("113"));
    EXPECT_EQ(owner->valueForKey(QStringLiteral("invoiced")).value<Decimal>(), dec("117"));
    EXPECT_TRUE(owner->isLinkedWithInvoice());

    const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);
    direct->setDate(day);
    both->setDate(day.addDays(40));
    onProject->setDate(day.addDays(-40));
    EXPECT_EQ(owner->invoicedFromDate(day.addDays(-1), day.addDays(1)), dec("100"));
    EXPECT_EQ(owner->invoicesFromDate(day, day.addDays(40)).size(), 2);

    TAClient *onlyRecurring = client(eur);
    TAContextDatabase::createRecurringInvoiceInContext(db.context())->setClient(onlyRecurring);
    EXPECT_FALSE(onlyRecurring->isLinkedWithInvoice());
}

TEST_F(PaymentsFixture, AnInvoiceWithNoTotalYetCountsAsNothingInTheClientsSums) {
    TAClient *owner = client(eur);
    const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);
    TAInvoice *empty = TAContextDatabase::createInvoiceInContext(
        db.context()); // no items: its cached total was never written
    empty->setClient(owner);
    empty->setDate(day);
    ASSERT_TRUE(empty->total().isNaN());
    invoice(owner, "10.00")->setDate(day);
    EXPECT_EQ(owner->invoiced(), dec("10"));
    EXPECT_EQ(owner->invoicedFromDate(day.addDays(-1), day.addDays(1)), dec("10"));
    EXPECT_EQ(owner->unpaid(), dec("10"));
    EXPECT_EQ(owner->balance(), dec("10"));
}

TEST_F(PaymentsFixture, ClientBalanceRoundsEachAdditionPlainlyBeforeTheFinalBankersStep) {
    // An invoice of a three-digit currency reaches this client through its project.
    TAClient *owner = client(eur);
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    project->setClient(owner);
    TAInvoice *foreign = invoice(client(bhd), "0.125", 1);
    foreign->setProject(project);
    EXPECT_EQ(foreign->balance(), dec("0.125"));
    EXPECT_EQ(owner->balance(), dec("0.13"));
    invoice(owner, "0.01", 1);
    EXPECT_EQ(owner->balance(), dec("0.14"));
    // With no currency of its own the client sums in the default one.
    TAClient *plain = TAContextDatabase::createClientInContext(db.context());
    invoice(plain, "2.5", 1);
    EXPECT_EQ(plain->currencyRelationship(), eur);
    EXPECT_EQ(plain->balance(), dec("2.5"));
}

TEST_F(PaymentsFixture, ProjectTimeCountsAllTimersAndItsListsOnlyUnbilledOnes) {
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    project->setClient(client(eur));
    TATimer *billed = TAContextDatabase::createTimerInContext(db.context());
    billed->setPrice(dec("100"));
    billed->setSeconds(1800);
    billed->setProject(project);
    billed->setInvoice(invoice(project->client(), "50"));
    TATimer *open = TAContextDatabase::createTimerInContext(db.context());
    open->setPrice(dec("10"));
    open->setSeconds(3600);
    open->setProject(project);

    EXPECT_EQ(project->projectTime(), 5400);
    EXPECT_EQ(project->notInvoicedItems(), (QList<TAItem *>{open}));
    EXPECT_EQ(project->activeProjectTimers(), (QList<TATimer *>{open}));
    EXPECT_TRUE(project->hasActiveTimers());
    EXPECT_EQ(project->projectPrice(), dec("60"));
    setRate(eur, usd, "1.105");
    EXPECT_EQ(project->projectPriceInCurrency(usd), dec("66.3"));
    EXPECT_EQ(project->projectPriceInCurrency(eur), dec("60"));
    EXPECT_EQ(project->projectPriceInDefault(), dec("60"));
    EXPECT_EQ(project->client()->uninvoiced(), dec("10"));
    EXPECT_EQ(project->stringValue(), QStringLiteral("(No Name)"));
}

// The period forms sum the invoices dated in the period, and the projects due in it.
TEST_F(PaymentsFixture, ClientPeriodSumsTakeInvoicesByDateAndProjectsByDueDate) {
    const QDateTime now(QDate(2024, 6, 20), QTime(12, 0), Qt::UTC);
    ScopedFixedClock clock(now);
    const QDateTime from(QDate(2024, 6, 1), QTime(0, 0), Qt::UTC);
    const QDateTime to(QDate(2024, 6, 30), QTime(0, 0), Qt::UTC);
    TAClient *owner = client(eur);

    TAProject *dueInJune = TAContextDatabase::createProjectInContext(db.context());
    dueInJune->setClient(owner);
    dueInJune->setDueDate(from.addDays(3));
    TAProject *dueInJuly = TAContextDatabase::createProjectInContext(db.context());
    dueInJuly->setClient(owner);
    dueInJuly->setDueDate(to.addDays(3));
    const auto projectMaterial = [this](TAProject *on, const char *price) {
        TAMaterial *m = TAContextDatabase::createMaterialInContext(db.context());
        m->setQuantity(dec("1"));
        m->setPrice(dec(price));
        m->setProject(on);
        return m;
    };
    projectMaterial(dueInJune, "30");
    projectMaterial(dueInJuly, "50");
    projectMaterial(dueInJune, "1000")->setInvoice(invoice(client(eur), "0"));
    EXPECT_EQ(owner->uninvoiced(), dec("80"));
    EXPECT_EQ(owner->uninvoicedFromDate(from, to), dec("30"));

    TAInvoice *late = invoice(owner, "100"); // 40 paid, overdue since the 10th
    late->setDate(from.addDays(1));
    late->setDueDate(from.addDays(9));
    pay(late, "40", eur, "1");
    TAInvoice *markedPaid = invoice(owner, "50", 3); // paid by hand, no payments
    markedPaid->setDate(from.addDays(2));
    TAInvoice *earlier = invoice(owner, "70");
    earlier->setDate(from.addDays(-10));
    earlier->setDueDate(from.addDays(-5));
    ASSERT_TRUE(late->isOverdue());

    EXPECT_EQ(owner->invoicedFromDate(from, to), dec("150"));
    EXPECT_EQ(owner->paidFromDate(from, to), dec("90"));
    EXPECT_EQ(owner->unpaidFromDate(from, to), dec("60"));
    EXPECT_EQ(owner->overdueFromDate(from, to), dec("60"));
    EXPECT_EQ(owner->balanceFromDate(from, to), dec("60"));
    EXPECT_EQ(owner->unpaid(), dec("130"));
    EXPECT_EQ(owner->overdue(), dec("130"));
    EXPECT_EQ(owner->balance(), dec("130"));
    EXPECT_EQ(owner->paidFromDate(to.addDays(1), to.addDays(30)), Decimal(0));
}

// Each addition rounds half away from zero to the client's scale: two three-digit halves
// give 0.26, not the 0.25 of their exact sum.
TEST_F(PaymentsFixture, ClientPeriodBalanceRoundsEachAddition) {
    const QDateTime day(QDate(2024, 6, 5), QTime(9, 0), Qt::UTC);
    TAClient *owner = client(eur);
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    project->setClient(owner);
    for (int i = 0; i < 2; ++i) {
        TAInvoice *foreign = invoice(client(bhd), "0.125", 1);
        foreign->setProject(project);
        foreign->setDate(day);
    }
    EXPECT_EQ(owner->balanceFromDate(day.addDays(-1), day.addDays(1)), dec("0.26"));
    EXPECT_EQ(owner->balance(), dec("0.26"));
}
