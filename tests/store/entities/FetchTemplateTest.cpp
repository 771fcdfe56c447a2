#include "StoreFixture.h"

#include "objectstore/EntityDescription.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"

#include <QSet>

namespace {
QVariant object(ManagedObject *value) {
    return QVariant::fromValue(value);
}

QSet<QString> idsOf(const QList<ManagedObject *> &objects) {
    QSet<QString> ids;
    for (const ManagedObject *o : objects)
        ids.insert(o->stringForKey(TAKey::identification) + o->stringForKey(TAKey::name) +
                   o->stringForKey(TAKey::code));
    return ids;
}

QSet<QString> ids(std::initializer_list<const char *> names) {
    QSet<QString> set;
    for (const char *name : names)
        set.insert(QString::fromLatin1(name));
    return set;
}
} // namespace

class FetchTemplateTest : public StoreFixture {
protected:
    ManagedObject *named(const QString &entity, const QString &text) {
        for (ManagedObject *o : fetch(entity))
            if (idsOf({o}).contains(text))
                return o;
        ADD_FAILURE() << text.toStdString();
        return nullptr;
    }

    void addInvoice(const QString &entity, const char *id, bool archived, int status,
                    TAProject *project, TAClient *client) {
        auto *invoice = context()->insertNewObjectAs<TAInvoice>(entity);
        invoice->setIdentification(QString::fromLatin1(id));
        invoice->setArchived(archived);
        invoice->setStatus(status);
        invoice->setProject(project);
        invoice->setClient(client);
    }
};

TEST_F(FetchTemplateTest, InvoiceTemplatesSelectByArchiveStatusProjectAndClient) {
    auto *p1 = insert<TAProject>(TAEntity::Project);
    auto *p2 = insert<TAProject>(TAEntity::Project);
    auto *c1 = insert<TAClient>(TAEntity::Client);
    auto *c2 = insert<TAClient>(TAEntity::Client);
    p1->setName(QStringLiteral("p1"));
    p2->setName(QStringLiteral("p2"));
    c1->setAbUID(QStringLiteral("c1"));
    c2->setAbUID(QStringLiteral("c2"));
    addInvoice(TAEntity::Invoice, "i1", false, 1, p1, c1);
    addInvoice(TAEntity::Invoice, "i2", true, 2, p1, c2);
    addInvoice(TAEntity::Invoice, "i3", false, 2, p2, c1);
    addInvoice(TAEntity::Invoice, "i4", false, 2, p1, c1);
    addInvoice(TAEntity::RecurringInvoice, "r1", false, 2, p1, c1);
    saveAndReopen();

    ManagedObject *project1 = named(TAEntity::Project, QStringLiteral("p1"));
    ManagedObject *client1 = nullptr;
    ManagedObject *client2 = nullptr;
    for (ManagedObject *c : fetch(TAEntity::Client))
        (c->stringForKey(TAKey::abUID) == u"c1" ? client1 : client2) = c;
    ASSERT_TRUE(project1 && client1 && client2);

    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("allInvoices"))), ids({"i1", "i2", "i3", "i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("allRecurringInvoices"))), ids({"r1"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoices"), {{"param1", false}})),
              ids({"i1", "i3", "i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoices"), {{"param1", true}})),
              ids({"i2"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesByProject"),
                                  {{"param1", false}, {"param2", object(project1)}})),
              ids({"i1", "i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesByClient"),
                                  {{"param1", false}, {"param2", object(client1)}})),
              ids({"i1", "i3", "i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesWithStatus"),
                                  {{"param1", false}, {"param2", 2}})),
              ids({"i3", "i4"}));
    EXPECT_EQ(
        idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesWithStatusByProject"),
                            {{"param1", false}, {"param2", 2}, {"param3", object(project1)}})),
        ids({"i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesWithStatusByClient"),
                                  {{"param1", false}, {"param2", 2}, {"param3", object(client1)}})),
              ids({"i3", "i4"}));
    EXPECT_EQ(idsOf(fetchTemplate(QStringLiteral("isArchivedInvoicesWithStatusByClient"),
                                  {{"param1", true}, {"param2", 2}, {"param3", object(client2)}})),
              ids({"i2"}));
    // The client's own list holds the recurring invoice that the fetches leave out.
    EXPECT_EQ(idsOf(client1->objectsForKey(TAKey::invoices)), ids({"i1", "i3", "i4", "r1"}));
}

TEST_F(FetchTemplateTest, AllTemplatesReturnTheirOwnEntityOnly) {
    const QList<std::pair<const char *, QString>> all{
        {"allProjects", TAEntity::Project},
        {"allInvoices", TAEntity::Invoice},
        {"allRecurringInvoices", TAEntity::RecurringInvoice},
        {"allClients", TAEntity::Client},
        {"allPayments", TAEntity::Payment},
        {"allTimers", TAEntity::Timer},
        {"allMaterials", TAEntity::Material},
        {"allInventories", TAEntity::Inventory},
        {"allAccounts", TAEntity::Account},
        {"allCurrencies", TAEntity::Currency},
        {"allTaxes", TAEntity::Tax},
        {"allTemplates", TAEntity::InvoiceTemplate},
        {"allTimerIntervals", TAEntity::TimerInterval},
        {"allPreferences", TAEntity::Preferences}};
    for (const EntityDescription *entity : TADocModel::model().entities())
        if (!entity->isAbstract())
            context()->insertNewObject(entity->name());
    saveAndReopen();
    for (const auto &[name, entity] : all) {
        const auto found = fetchTemplate(QLatin1String(name));
        ASSERT_EQ(found.size(), 1) << name;
        EXPECT_EQ(found[0]->entity()->name(), entity) << name;
    }
}

TEST_F(FetchTemplateTest, CurrencyTemplatesFindTheDefaultAndTheOrderedPair) {
    auto *eur = insert<TACurrency>(TAEntity::Currency);
    auto *usd = insert<TACurrency>(TAEntity::Currency);
    auto *chf = insert<TACurrency>(TAEntity::Currency);
    eur->setCode(QStringLiteral("EUR"));
    usd->setCode(QStringLiteral("USD"));
    chf->setCode(QStringLiteral("CHF"));
    usd->setIsDefault(true);
    chf->setValueForKey(QVariant(), TAKey::isDefault);
    auto *eurToUsd = insert<TACurrencyRate>(TAEntity::CurrencyRate);
    auto *usdToEur = insert<TACurrencyRate>(TAEntity::CurrencyRate);
    eurToUsd->setCurrFrom(eur), eurToUsd->setCurrTo(usd);
    usdToEur->setCurrFrom(usd), usdToEur->setCurrTo(eur);
    eurToUsd->setOneFromInTo(Decimal::fromString(u"1.0842"));

    EXPECT_EQ(fetchTemplate(QStringLiteral("defaultCurrency")), QList<ManagedObject *>{usd});
    const auto pair = fetchTemplate(QStringLiteral("currencyRateSearch"),
                                    {{"param1", object(eur)}, {"param2", object(usd)}});
    ASSERT_EQ(pair.size(), 1);
    EXPECT_EQ(pair[0], eurToUsd);

    // A client without a currency falls back to the default one.
    auto *client = insert<TAClient>(TAEntity::Client);
    EXPECT_EQ(client->currencyRelationship(), usd);
    client->setCurrencyRelationship(chf);
    EXPECT_EQ(client->currencyRelationship(), chf);
    EXPECT_EQ(chf->clientsRelationships(), QList<TAClient *>{client});
}
