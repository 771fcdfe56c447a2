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
    TAClient *client = TAContextDatabase::createClientInContext(db().context());
    const QStringList created{"Item 10", "item 2", "Item 1", "alpha"};
    for (int i = 0; i < created.size(); ++i) {
        TAProject *project = TAContextDatabase::createProjectInContext(db().context());
        project->setName(created[i]);
        project->setStatus(i % 3 + 1); // 1, 2, 3, 1
        if (i < 2)
            project->setClient(client);
    }
    EXPECT_EQ(values(TAContextDatabase::getProjectsSortedByNameInContext(db().context())),
              QStringList({"alpha", "Item 1", "item 2", "Item 10"}));
    EXPECT_EQ(TAContextDatabase::getProjectsInContext(db().context()).size(), 4);
    EXPECT_EQ(TAContextDatabase::getActiveProjectsInContext(db().context()).size(),
              3); // drafts count as active
    EXPECT_EQ(values(TAContextDatabase::getProjectsWithStatus(2, db().context())),
              QStringList({"item 2"}));
    EXPECT_EQ(values(TAContextDatabase::getProjectsWithStatus(1, client, db().context())),
              QStringList({"Item 10"}));
    EXPECT_EQ(TAContextDatabase::getProjectsWithClient(client, db().context()).size(), 2);
    EXPECT_EQ(TAContextDatabase::getProjectsWithClient(nullptr, db().context()).size(), 2);
    // Each project was made with its created-record and a sidebar refresh.
    EXPECT_EQ(doc->hooks.refreshes, 4);
}

TEST_F(LookupTest, InvoiceRequestsNarrowByRelationAndFallBack) {
    TAProject *project = TAContextDatabase::createProjectInContext(db().context());
    TAClient *client = TAContextDatabase::createClientInContext(db().context());
    TACurrency *currency = TAContextDatabase::createCurrencyInContext(db().context());
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
        TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db().context());
        invoice->setIdentification(QString::fromLatin1(row.number));
        invoice->setArchived(row.archived);
        invoice->setStatus(row.status);
        invoice->setDueDate(day(row.due));
        if (row.onProject)
            invoice->setProject(project);
        else
            invoice->setClient(client);
    }
    TAContextDatabase::createRecurringInvoiceInContext(db().context())
        ->setIdentification(QStringLiteral("R"));

    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(db().context()).size(),
              5); // no recurring invoice
    EXPECT_EQ(TAContextDatabase::fetchEntity("Invoice", "allInvoices", true, db().context()).size(),
              6);
    EXPECT_EQ(TAContextDatabase::getRecurringInvoicesInContext(db().context()).size(), 1);
    EXPECT_EQ(values(TAContextDatabase::getInvoicesSortedByDueDateInArchive(false, db().context()),
                     TAKey::identification),
              QStringList({"1", "10", "2", "3"}));
    EXPECT_EQ(values(TAContextDatabase::getInvoicesSortedByDueDateInArchive(false, project,
                                                                            db().context()),
                     TAKey::identification),
              QStringList({"1", "3"}));
    EXPECT_EQ(values(TAContextDatabase::getInvoicesSortedByDueDateInArchive(false, client,
                                                                            db().context()),
                     TAKey::identification),
              QStringList({"10", "2"}));
    EXPECT_EQ(TAContextDatabase::getInvoicesInArchive(false, currency, db().context()).size(),
              4); // not a relation
    EXPECT_EQ(TAContextDatabase::getInvoicesInArchive(false, nullptr, db().context()).size(), 4);
    EXPECT_EQ(values(TAContextDatabase::getInvoicesSortedByDueDateInArchive(true, 2, project,
                                                                            db().context()),
                     TAKey::identification),
              QStringList({"4"}));
    EXPECT_EQ(TAContextDatabase::getInvoicesInArchive(false, 2, client, db().context()).size(), 2);
    EXPECT_EQ(TAContextDatabase::getInvoicesInArchive(false, 2, currency, db().context()).size(),
              3);
    EXPECT_EQ(TAContextDatabase::getInvoicesSortedByDueDateInContext(db().context()).size(), 5);

    EXPECT_TRUE(
        TAContextDatabase::fetchEntity("Invoice", "noSuchRequest", db().context()).isEmpty());
    EXPECT_TRUE(
        TAContextDatabase::fetchEntity("NoSuchEntity", "allInvoices", db().context()).isEmpty());
    TADatabase detached;
    EXPECT_TRUE(TAContextDatabase::getInvoicesInContext(detached.context()).isEmpty());
    EXPECT_EQ(TAContextDatabase::createInvoiceInContext(detached.context()), nullptr);
    EXPECT_EQ(detached.getDefaultCurrency(), nullptr);
}

TEST_F(LookupTest, TimersByUpdateDateAndScansByCodeAndTax) {
    for (int d = 1; d <= 4; ++d) {
        TATimer *timer = TAContextDatabase::createTimerInContext(db().context());
        timer->setName(QString::number(d));
        timer->setUpdateDate(day(d));
        if (d == 4)
            timer->setInvoice(TAContextDatabase::createInvoiceInContext(db().context()));
    }
    EXPECT_EQ(values(TAContextDatabase::getAllTimersByUpdateDateWithLimit(2, db().context())),
              QStringList({"4", "3"}));
    EXPECT_EQ(
        values(TAContextDatabase::getAllUninvoicedTimersByUpdateDateWithLimit(2, db().context())),
        QStringList({"3", "2"}));
    EXPECT_EQ(TAContextDatabase::getAllTimersByUpdateDateInContext(db().context()).size(), 4);

    TACurrency *euro = TAContextDatabase::createCurrencyInContext(db().context());
    euro->setCode(QStringLiteral("EUR"));
    EXPECT_EQ(TAContextDatabase::getCurrencyWithCode("EUR", db().context()), euro);
    EXPECT_EQ(TAContextDatabase::getCurrencyWithCode("eur", db().context()), nullptr);
    EXPECT_EQ(TAContextDatabase::getCurrencyWithCode(QString(), db().context()), nullptr);

    TATax *unnamed = TAContextDatabase::createTaxInContext(db().context());
    unnamed->setValue(Decimal::fromString(u"0.20"));
    TATax *vat = TAContextDatabase::createTaxInContext(db().context());
    vat->setName(QStringLiteral("VAT"));
    vat->setValue(Decimal::fromString(u"0.2"));
    EXPECT_EQ(TAContextDatabase::getTaxWithName("VAT", Decimal::fromString(u"0.2"), db().context()),
              vat);
    EXPECT_EQ(TAContextDatabase::getTaxWithName("", Decimal::fromString(u"0.2"), db().context()),
              unnamed);
    EXPECT_EQ(
        TAContextDatabase::getTaxWithName(QString(), Decimal::fromString(u"0.2"), db().context()),
        unnamed);
    EXPECT_EQ(TAContextDatabase::getTaxWithName("VAT", Decimal::fromString(u"0.1"), db().context()),
              nullptr);
    EXPECT_EQ(TAContextDatabase::getTaxWithName("VAT", Decimal::notANumber(), db().context()),
              nullptr);
}

TEST_F(LookupTest, DefaultCurrencyRepairsOnceAndLeavesTheStoreAlone) {
    TACurrency *first = TAContextDatabase::createCurrencyInContext(db().context());
    TACurrency *second = TAContextDatabase::createCurrencyInContext(db().context());
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
    for (TACurrency *c : TAContextDatabase::getCurrenciesInContext(other->database.context()))
        defaults += c->isDefault();
    EXPECT_EQ(defaults, 2);

    EXPECT_EQ(TAContextDatabase::getDefaultCurrencyInContext(nullptr), nullptr);
    EXPECT_EQ(TAContextDatabase::createHistoryInContext(nullptr), nullptr);
    EXPECT_EQ(TAContextDatabase::createHistoryWithCurrentDateInContext(nullptr), nullptr);
    EXPECT_TRUE(TAContextDatabase::getProjectsInContext(nullptr).isEmpty());
    EXPECT_EQ(TAContextDatabase::createProjectInContext(nullptr), nullptr);
}

TEST_F(LookupTest, CurrencyRateRowsAreMadeOncePerOrderedPair) {
    TACurrency *euro = TAContextDatabase::createCurrencyInContext(db().context());
    TACurrency *dollar = TAContextDatabase::createCurrencyInContext(db().context());
    EXPECT_EQ(TAContextDatabase::getCurrencyRateFromCurrency(euro, euro, db().context()), nullptr);
    EXPECT_EQ(TAContextDatabase::getCurrencyRateFromCurrency(euro, nullptr, db().context()),
              nullptr);
    EXPECT_TRUE(TAContextDatabase::fetchEntity("CurrencyRate", db().context()).isEmpty());

    TACurrencyRate *rate =
        TAContextDatabase::getCurrencyRateFromCurrency(euro, dollar, db().context());
    ASSERT_NE(rate, nullptr);
    EXPECT_EQ(rate->currFrom(), euro);
    EXPECT_EQ(rate->oneFromInTo(), Decimal(1));
    EXPECT_EQ(TAContextDatabase::getCurrencyRateFromCurrency(euro, dollar, db().context()), rate);
    EXPECT_NE(TAContextDatabase::getCurrencyRateFromCurrency(dollar, euro, db().context()), rate);
    EXPECT_EQ(TAContextDatabase::fetchEntity("CurrencyRate", db().context()).size(), 2);
}

TEST_F(LookupTest, LastProjectAndPreferencesAreFoundOrMade) {
    TAPreferences *preferences = TAContextDatabase::getPreferencesInContext(db().context());
    ASSERT_NE(preferences, nullptr);
    EXPECT_EQ(TAContextDatabase::getPreferencesInContext(db().context()), preferences);
    EXPECT_FALSE(doc->undo()->canUndo());
    EXPECT_EQ(doc->hooks.changeCounts, 1);
    EXPECT_EQ(TAContextDatabase::getLastProjectInContext(db().context()), nullptr);

    TAProject *beta = TAContextDatabase::createProjectInContext(db().context());
    beta->setName(QStringLiteral("Beta"));
    TAProject *alpha = TAContextDatabase::createProjectInContext(db().context());
    alpha->setName(QStringLiteral("alpha"));
    EXPECT_EQ(TAContextDatabase::getLastProjectInContext(db().context()), alpha);
    EXPECT_EQ(preferences->lastProjectID(), alpha->uriText());

    preferences->setLastProjectID(beta->uriText());
    EXPECT_EQ(TAContextDatabase::getLastProjectInContext(db().context()), beta);
    preferences->setLastProjectID(QStringLiteral("x-billfold://gone/Project/p9"));
    EXPECT_EQ(TAContextDatabase::getLastProjectInContext(db().context()), alpha);
    EXPECT_EQ(preferences->lastProjectID(), alpha->uriText());
}
