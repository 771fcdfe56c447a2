#include "DataFixture.h"

#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"

#include <QLocale>
#include <QTimeZone>

namespace {
using LookupTest = DataFixture;

// One attribute of each object, in list order.
template <class T> QStringList values(const QList<T *> &objects, const QString &key = TAKey::name) {
    QStringList out;
    for (T *object : objects)
        out.append(object->valueForKey(key).toString());
    return out;
}

QDateTime day(int d) {
    return QDateTime(QDate(2024, 3, d), QTime(12, 0), QTimeZone::utc());
}

// Restores the default locale after a test changes it.
struct LocaleGuard {
    explicit LocaleGuard(const char *name) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
    }
    ~LocaleGuard() { QLocale::setDefault(QLocale::system()); }
};
} // namespace

TEST_F(LookupTest, ProjectsSortNaturallyAndFilterByStatusAndClient) {
    TAClient *client = db().createClient();
    const QStringList created{"Item 10", "item 2", "Item 1", "alpha"};
    for (int i = 0; i < created.size(); ++i) {
        TAProject *project = db().createProject();
        project->setName(created[i]);
        project->setStatus(i % 3 + 1); // 1, 2, 3, 1
        if (i < 2)
            project->setClient(client);
    }
    EXPECT_EQ(values(db().getProjectsSortedByName()),
              QStringList({"alpha", "Item 1", "item 2", "Item 10"}));
    EXPECT_EQ(db().getProjects().size(), 4);
    EXPECT_EQ(db().getActiveProjects().size(), 3); // drafts count as active
    EXPECT_EQ(values(db().getProjectsWithStatus(2)), QStringList({"item 2"}));
    EXPECT_EQ(values(db().getProjectsWithStatus(1, client)), QStringList({"Item 10"}));
    EXPECT_EQ(db().getProjectsWithClient(client).size(), 2);
    EXPECT_EQ(db().getProjectsWithClient(nullptr).size(), 2);
    // Each project was made with its created-record and a sidebar refresh.
    EXPECT_EQ(doc->hooks.refreshes, 4);
}

TEST_F(LookupTest, InvoiceRequestsNarrowByRelationAndFallBack) {
    TAProject *project = db().createProject();
    TAClient *client = db().createClient();
    TACurrency *currency = db().createCurrency();
    struct Row {
        const char *number;
        bool archived;
        int status;
        int due;
        bool onProject;
    };
    const Row rows[] = {{"3", false, 1, 5, true},
                        {"1", false, 2, 9, true},
                        {"2", false, 2, 9, false},
                        {"10", false, 2, 9, false},
                        {"4", true, 2, 1, true}};
    for (const Row &row : rows) {
        TAInvoice *invoice = db().createInvoice();
        invoice->setIdentification(QString::fromLatin1(row.number));
        invoice->setArchived(row.archived);
        invoice->setStatus(row.status);
        invoice->setDueDate(day(row.due));
        if (row.onProject)
            invoice->setProject(project);
        else
            invoice->setClient(client);
    }
    db().createRecurringInvoice()->setIdentification(QStringLiteral("R"));

    EXPECT_EQ(db().getInvoices().size(), 5); // no recurring invoice
    EXPECT_EQ(db().fetchEntity("Invoice", "allInvoices", true).size(), 6);
    EXPECT_EQ(db().getRecurringInvoices().size(), 1);
    EXPECT_EQ(values(db().getInvoicesSortedByDueDateInArchive(false), TAKey::identification),
              QStringList({"1", "10", "2", "3"}));
    EXPECT_EQ(
        values(db().getInvoicesSortedByDueDateInArchive(false, project), TAKey::identification),
        QStringList({"1", "3"}));
    EXPECT_EQ(
        values(db().getInvoicesSortedByDueDateInArchive(false, client), TAKey::identification),
        QStringList({"10", "2"}));
    EXPECT_EQ(db().getInvoicesInArchive(false, currency).size(), 4); // not a relation
    EXPECT_EQ(db().getInvoicesInArchive(false, nullptr).size(), 4);
    EXPECT_EQ(
        values(db().getInvoicesSortedByDueDateInArchive(true, 2, project), TAKey::identification),
        QStringList({"4"}));
    EXPECT_EQ(db().getInvoicesInArchive(false, 2, client).size(), 2);
    EXPECT_EQ(db().getInvoicesInArchive(false, 2, currency).size(), 3);
    EXPECT_EQ(db().getInvoicesSortedByDueDate().size(), 5);

    EXPECT_TRUE(db().fetchEntity("Invoice", "noSuchRequest").isEmpty());
    EXPECT_TRUE(db().fetchEntity("NoSuchEntity", "allInvoices").isEmpty());
    TADatabase detached;
    EXPECT_TRUE(detached.getInvoices().isEmpty());
    EXPECT_EQ(detached.createInvoice(), nullptr);
    EXPECT_EQ(detached.getDefaultCurrency(), nullptr);
}

TEST_F(LookupTest, TimersByUpdateDateAndScansByCodeAndTax) {
    for (int d = 1; d <= 4; ++d) {
        TATimer *timer = db().createTimer();
        timer->setName(QString::number(d));
        timer->setUpdateDate(day(d));
        if (d == 4)
            timer->setInvoice(db().createInvoice());
    }
    EXPECT_EQ(values(db().getAllTimersByUpdateDateWithLimit(2)), QStringList({"4", "3"}));
    EXPECT_EQ(values(db().getAllUninvoicedTimersByUpdateDateWithLimit(2)), QStringList({"3", "2"}));
    EXPECT_EQ(db().getAllTimersByUpdateDate().size(), 4);

    TACurrency *euro = db().createCurrency();
    euro->setCode(QStringLiteral("EUR"));
    EXPECT_EQ(db().getCurrencyWithCode("EUR"), euro);
    EXPECT_EQ(db().getCurrencyWithCode("eur"), nullptr);
    EXPECT_EQ(db().getCurrencyWithCode(QString()), nullptr);

    TATax *unnamed = db().createTax();
    unnamed->setValue(Decimal::fromString(u"0.20"));
    TATax *vat = db().createTax();
    vat->setName(QStringLiteral("VAT"));
    vat->setValue(Decimal::fromString(u"0.2"));
    EXPECT_EQ(db().getTaxWithName("VAT", Decimal::fromString(u"0.2")), vat);
    EXPECT_EQ(db().getTaxWithName("", Decimal::fromString(u"0.2")), unnamed);
    EXPECT_EQ(db().getTaxWithName(QString(), Decimal::fromString(u"0.2")), unnamed);
    EXPECT_EQ(db().getTaxWithName("VAT", Decimal::fromString(u"0.1")), nullptr);
    EXPECT_EQ(db().getTaxWithName("VAT", Decimal::notANumber()), nullptr);
}

TEST_F(LookupTest, DefaultCurrencyRepairsOnceAndLeavesTheStoreAlone) {
    TACurrency *first = db().createCurrency();
    TACurrency *second = db().createCurrency();
    first->setIsDefault(true);
    second->setIsDefault(true);
    ASSERT_TRUE(ctx()->save().ok());
    doc->undo()->removeAllActions();

    TACurrency *answer = db().getDefaultCurrency();
    ASSERT_TRUE(answer == first || answer == second);
    EXPECT_EQ(int(first->isDefault()) + int(second->isDefault()), 1);
    EXPECT_TRUE(answer->isDefault());
    EXPECT_FALSE(doc->undo()->canUndo()); // repaired outside undo
    ASSERT_TRUE(ctx()->save().ok());

    EXPECT_EQ(db().getDefaultCurrency(), answer);
    EXPECT_FALSE(ctx()->hasChanges());
}

TEST_F(LookupTest, NewDefaultCurrencyFormsTakeCodeAndTitleFromOppositeLocales) {
    LocaleGuard german("de_DE");
    TACurrency *made = db().getDefaultCurrency();
    EXPECT_EQ(made->code(), "EUR");
    EXPECT_EQ(made->title(), "Euro");
    EXPECT_TRUE(made->isDefault());

    auto other = openSecondDocument();
    TACurrency *classMade = TAContextDatabase::getDefaultCurrencyInContext(other->context.get());
    EXPECT_EQ(classMade->code(), "USD");
    EXPECT_EQ(classMade->title(), "US-Dollar");
    // The class form does not repair duplicates.
    TAContextDatabase::createCurrencyInContext(other->context.get())->setIsDefault(true);
    TAContextDatabase::getDefaultCurrencyInContext(other->context.get());
    int defaults = 0;
    for (TACurrency *c : other->database.getCurrencies())
        defaults += c->isDefault();
    EXPECT_EQ(defaults, 2);

    EXPECT_THROW(TAContextDatabase::getDefaultCurrencyInContext(nullptr),
                 TAContextDatabaseNoContext);
    EXPECT_THROW(TAContextDatabase::createHistoryInContext(nullptr), TAContextDatabaseNoContext);
    EXPECT_TRUE(TAContextDatabase::getProjectsInContext(nullptr).isEmpty());
    EXPECT_EQ(TAContextDatabase::createProjectInContext(nullptr), nullptr);
}

TEST_F(LookupTest, CurrencyRateRowsAreMadeOncePerOrderedPair) {
    TACurrency *euro = db().createCurrency();
    TACurrency *dollar = db().createCurrency();
    EXPECT_EQ(db().getCurrencyRateFromCurrency(euro, euro), nullptr);
    EXPECT_EQ(db().getCurrencyRateFromCurrency(euro, nullptr), nullptr);
    EXPECT_TRUE(db().fetchEntityCustom("CurrencyRate").isEmpty());

    TACurrencyRate *rate = db().getCurrencyRateFromCurrency(euro, dollar);
    ASSERT_NE(rate, nullptr);
    EXPECT_EQ(rate->currFrom(), euro);
    EXPECT_EQ(rate->oneFromInTo(), Decimal(1));
    EXPECT_EQ(db().getCurrencyRateFromCurrency(euro, dollar), rate);
    EXPECT_NE(db().getCurrencyRateFromCurrency(dollar, euro), rate);
    EXPECT_EQ(db().fetchEntityCustom("CurrencyRate").size(), 2);
}

TEST_F(LookupTest, LastProjectAndPreferencesAreFoundOrMade) {
    TAPreferences *preferences = db().getPreferences();
    ASSERT_NE(preferences, nullptr);
    EXPECT_EQ(db().getPreferences(), preferences);
    EXPECT_FALSE(doc->undo()->canUndo());
    EXPECT_EQ(doc->hooks.changeCounts, 1);
    EXPECT_EQ(db().getLastProject(), nullptr);

    TAProject *beta = db().createProject();
    beta->setName(QStringLiteral("Beta"));
    TAProject *alpha = db().createProject();
    alpha->setName(QStringLiteral("alpha"));
    EXPECT_EQ(db().getLastProject(), alpha);
    EXPECT_EQ(preferences->lastProjectID(), alpha->uriText());

    preferences->setLastProjectID(beta->uriText());
    EXPECT_EQ(db().getLastProject(), beta);
    preferences->setLastProjectID(QStringLiteral("x-billfold://gone/Project/p9"));
    EXPECT_EQ(db().getLastProject(), alpha);
    EXPECT_EQ(preferences->lastProjectID(), alpha->uriText());
}
