#include "store/TADocModel.h"

#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

#include <QtGlobal>

namespace {
using A = AttributeType;
namespace E = TAEntity;
namespace K = TAKey;

template <class T> EntityDescription::Factory factory() {
    return [] { return new T; };
}

EntityDescription &attributes(EntityDescription &entity, AttributeType type,
                              std::initializer_list<QString> names) {
    for (const QString &name : names)
        entity.addAttribute(name, type);
    return entity;
}

// Back sides of the history records' "related" links, one per target entity.
void addRelatedHistories(EntityDescription &entity, const QString &inverse) {
    entity.addToMany(K::relatedHistories, E::History, inverse);
}

void addRoot(ManagedObjectModel &m) {
    m.addEntity(E::TAObject, {}, true)
        .addAttribute(K::properties, A::Binary)
        .addToOne(K::altHistory, E::History);
}

void addInvoices(ManagedObjectModel &m) {
    auto &invoice = m.addEntity(E::Invoice, E::TAObject).setFactory(factory<TAInvoice>());
    attributes(invoice, A::String,
               {K::identification, K::purchaseOrder, K::notes, K::taxName, K::eventUID});
    attributes(invoice, A::Date, {K::date, K::dueDate});
    attributes(invoice, A::Decimal,
               {K::taxes, K::subTotal, K::itemTaxes, K::totalDiscount, K::totalTax2, K::total,
                K::totalTaxes});
    invoice.addAttribute(K::status, A::Integer, 1)
        .addAttribute(K::archived, A::Boolean, false)
        .addAttribute(K::discount, A::Decimal, Decimal(0).toVariant())
        .addAttribute(K::calculationType, A::Integer, 0)
        .addToOne(K::client, E::Client, K::invoices)
        .addToOne(K::project, E::Project, K::invoices)
        .addToOne(K::account, E::Account, K::invoices)
        .addToOne(K::template_, E::InvoiceTemplate, K::invoices)
        .addToMany(K::items, E::Item, K::invoice)
        .addToMany(K::payments, E::Payment, K::invoice, DeleteRule::Cascade)
        .addToMany(K::history, E::History, K::invoice, DeleteRule::Cascade);
    addRelatedHistories(invoice, K::relatedInvoice);

    m.addEntity(E::RecurringInvoice, E::Invoice)
        .setFactory(factory<TARecurringInvoice>())
        .addAttribute(K::repeatInterval, A::Integer, 5)
        .addAttribute(K::reminderType, A::Integer, 0)
        .addAttribute(K::reminderValue, A::String, QString(""))
        .addAttribute(K::createAutomatically, A::Boolean, false);
}

void addProjectsAndItems(ManagedObjectModel &m) {
    auto &project = m.addEntity(E::Project, E::TAObject).setFactory(factory<TAProject>());
    attributes(project, A::String, {K::name, K::notes});
    project.addAttribute(K::dueDate, A::Date)
        .addAttribute(K::status, A::Integer, 1)
        .addToOne(K::client, E::Client, K::projects)
        .addToMany(K::items, E::Item, K::project)
        .addToMany(K::invoices, E::Invoice, K::project)
        .addToMany(K::history, E::History, K::project, DeleteRule::Cascade);
    addRelatedHistories(project, K::relatedProject);

    auto &item = m.addEntity(E::Item, E::TAObject, true);
    attributes(item, A::String, {K::name, K::sku, K::taxName});
    attributes(item, A::Decimal, {K::price, K::discount, K::tax});
    attributes(item, A::Integer, {K::sortIndex, K::invoiceSortIndex});
    attributes(item, A::Date, {K::added, K::updateDate});
    item.addToOne(K::invoice, E::Invoice, K::items).addToOne(K::project, E::Project, K::items);

    m.addEntity(E::Timer, E::Item)
        .setFactory(factory<TATimer>())
        .addAttribute(K::seconds, A::Integer, 0)
        .addAttribute(K::active, A::Boolean, false)
        .addAttribute(K::timerViewSortIndex, A::Integer)
        .addToMany(K::timerIntervals, E::TimerInterval, K::timer, DeleteRule::Cascade);
    m.addEntity(E::Material, E::Item)
        .setFactory(factory<TAMaterial>())
        .addAttribute(K::quantity, A::Decimal);
    m.addEntity(E::TimerInterval, E::TAObject)
        .setFactory(factory<TATimerInterval>())
        .addAttribute(K::start, A::Date)
        .addAttribute(K::end, A::Date)
        .addToOne(K::timer, E::Timer, K::timerIntervals);
    auto &inventory = m.addEntity(E::Inventory, E::TAObject).setFactory(factory<TAInventory>());
    attributes(inventory, A::String, {K::name, K::sku});
    attributes(inventory, A::Decimal, {K::price, K::discount, K::customTax});
    inventory.addAttribute(K::isMaterial, A::Boolean, true)
        .addAttribute(K::sortIndex, A::Integer)
        .addToOne(K::tax, E::Tax, K::inventories);
}

void addClientsAndMoney(ManagedObjectModel &m) {
    auto &client = m.addEntity(E::Client, E::TAObject).setFactory(factory<TAClient>());
    attributes(
        client, A::String,
        {K::fullName, K::company, K::email, K::phone, K::address, K::taxID, K::notes, K::abUID});
    client.addAttribute(K::isCompany, A::Boolean)
        .addAttribute(K::photo, A::Binary)
        .addToOne(K::currency, E::Currency, K::clients)
        .addToMany(K::invoices, E::Invoice, K::client)
        .addToMany(K::projects, E::Project, K::client);
    addRelatedHistories(client, K::relatedClient);

    auto &payment = m.addEntity(E::Payment, E::TAObject).setFactory(factory<TAPayment>());
    attributes(payment, A::Decimal, {K::amount, K::rate});
    payment.addAttribute(K::currencyCode, A::String)
        .addAttribute(K::date, A::Date)
        .addToOne(K::invoice, E::Invoice, K::payments);
    addRelatedHistories(payment, K::relatedPayment);

    m.addEntity(E::Account, E::TAObject)
        .setFactory(factory<TAAccount>())
        .addToMany(K::invoices, E::Invoice, K::account);

    auto &currency = m.addEntity(E::Currency, E::TAObject).setFactory(factory<TACurrency>());
    attributes(currency, A::String, {K::code, K::title});
    currency.addAttribute(K::rate, A::Decimal)
        .addAttribute(K::isDefault, A::Boolean, false)
        .addAttribute(K::automaticallyDownload, A::Boolean)
        .addToMany(K::clients, E::Client, K::currency)
        .addToMany(K::ratesFrom, E::CurrencyRate, K::currFrom, DeleteRule::Cascade)
        .addToMany(K::ratesTo, E::CurrencyRate, K::currTo, DeleteRule::Cascade);

    // Conversions multiply by the rate with no test, so a new row must hold a number.
    m.addEntity(E::CurrencyRate, E::TAObject)
        .setFactory(factory<TACurrencyRate>())
        .addAttribute(K::oneFromInTo, A::Decimal, Decimal(1).toVariant())
        .addAttribute(K::inFromOneTo, A::Decimal, Decimal(1).toVariant())
        .addToOne(K::currFrom, E::Currency, K::ratesFrom)
        .addToOne(K::currTo, E::Currency, K::ratesTo);

    m.addEntity(E::Tax, E::TAObject)
        .setFactory(factory<TATax>())
        .addAttribute(K::name, A::String)
        .addAttribute(K::value, A::Decimal)
        .addToMany(K::inventories, E::Inventory, K::tax);

    m.addEntity(E::History, E::TAObject)
        .setFactory(factory<TAHistory>())
        .addAttribute(K::date, A::Date)
        .addAttribute(K::type, A::Integer)
        .addAttribute(K::intValue, A::Integer)
        .addAttribute(K::dateValue, A::Date)
        .addToOne(K::project, E::Project, K::history)
        .addToOne(K::invoice, E::Invoice, K::history)
        .addToOne(K::relatedInvoice, E::Invoice, K::relatedHistories)
        .addToOne(K::relatedPayment, E::Payment, K::relatedHistories)
        .addToOne(K::relatedProject, E::Project, K::relatedHistories)
        .addToOne(K::relatedClient, E::Client, K::relatedHistories);
}

void addPreferences(ManagedObjectModel &m) {
    auto &prefs = m.addEntity(E::Preferences, E::TAObject).setFactory(factory<TAPreferences>());
    attributes(prefs, A::Boolean,
               {K::showInvoices,
                K::showRecurring,
                K::showInventory,
                K::showProjects,
                K::showClients,
                K::showReports,
                K::newClientAsCompany,
                K::taxesEnabled,
                K::taxesCombined,
                K::infoIsCompany,
                K::iCalSyncEnabled,
                K::backupMobileMeEnabled,
                K::groupsExpandedProjects,
                K::tableViewInInvoices,
                K::tableViewInRecurring,
                K::tableViewInProjects,
                K::invoicesGridShowArchived,
                K::invoicesTableShowArchived,
                K::projectsShowInvoiced,
                K::projectsGridShowArchived,
                K::projectsTableShowArchived,
                K::timersShowInvoiced});
    attributes(prefs, A::String,
               {K::nextInvoiceNumber, K::infoFirstName, K::infoLastName, K::infoCompany,
                K::infoCompanyID, K::infoTaxID, K::infoPhone, K::infoEmail, K::infoAddressStreet,
                K::infoAddressPostalCode, K::infoAddressCity, K::infoAddressCountry, K::infoCustoms,
                K::iCalUID, K::backupFolderLocation, K::password, K::lastProjectID,
                K::windowFrame});
    attributes(prefs, A::Binary,
               {K::infoPhoto, K::invoicesTableColumns, K::recurringTableColumns,
                K::projectsTableColumns, K::inventoryTableSettings, K::projectsTableSettings,
                K::recurringTableSettings, K::invoicesTableSettings});
}

void addTemplates(ManagedObjectModel &m) {
    auto &tmpl = m.addEntity(E::InvoiceTemplate).setFactory(factory<LMInvoiceTemplateClass>());
    attributes(tmpl, A::String, {K::name, K::size, K::positions});
    attributes(tmpl, A::Binary,
               {K::previewImageData, K::backgroundColor, K::backgroundColor2, K::backgroundImage});
    tmpl.addAttribute(K::creationDate, A::Date)
        .addAttribute(K::backgroundType, A::Integer, 0)
        .addAttribute(K::backgroundImageType, A::Integer, 0)
        .addAttribute(K::backgroundGradientAngle, A::Integer, 0)
        .addToMany(K::pages, E::InvoiceTemplatePage, K::template_, DeleteRule::Cascade)
        .addToMany(K::invoices, E::Invoice, K::template_);

    m.addEntity(E::InvoiceTemplatePage)
        .setFactory(factory<LMInvoiceTemplatePageClass>())
        .addAttribute(K::tag, A::Integer, 0)
        .addAttribute(K::previewImageData, A::Binary)
        .addToOne(K::template_, E::InvoiceTemplate, K::pages)
        .addToMany(K::elements, E::InvoiceElement, K::page, DeleteRule::Cascade);

    auto &element = m.addEntity(E::InvoiceElement).setFactory(factory<LMInvoiceElementClass>());
    attributes(element, A::Binary, {K::text, K::textAttributes, K::color, K::image});
    element.addAttribute(K::type, A::Integer, 0)
        .addAttribute(K::frame, A::String)
        .addAttribute(K::orderNr, A::Integer, 0)
        .addAttribute(K::isHidden, A::Boolean)
        .addAttribute(K::style, A::Integer, 0)
        .addToOne(K::page, E::InvoiceTemplatePage, K::elements)
        .addToMany(K::columns, E::InvoiceTemplateColumn, K::element, DeleteRule::Cascade)
        .addToMany(K::rows, E::InvoiceTemplateColumn, K::rowElement, DeleteRule::Cascade);

    m.addEntity(E::InvoiceTemplateColumn)
        .setFactory(factory<LMInvoiceTemplateColumnClass>())
        .addAttribute(K::nr, A::Integer, 0)
        .addAttribute(K::name, A::String)
        .addAttribute(K::colID, A::String)
        .addAttribute(K::visible, A::Boolean, true)
        .addAttribute(K::width, A::Float, 0.0)
        .addAttribute(K::textAttributes, A::Binary)
        .addToOne(K::element, E::InvoiceElement, K::columns)
        .addToOne(K::rowElement, E::InvoiceElement, K::rows);
}

void addFetchTemplates(ManagedObjectModel &m) {
    const std::pair<const char *, QString> all[]{{"allProjects", E::Project},
                                                 {"allInvoices", E::Invoice},
                                                 {"allRecurringInvoices", E::RecurringInvoice},
                                                 {"allClients", E::Client},
                                                 {"allPayments", E::Payment},
                                                 {"allTimers", E::Timer},
                                                 {"allMaterials", E::Material},
                                                 {"allInventories", E::Inventory},
                                                 {"allAccounts", E::Account},
                                                 {"allCurrencies", E::Currency},
                                                 {"allTaxes", E::Tax},
                                                 {"allTemplates", E::InvoiceTemplate},
                                                 {"allTimerIntervals", E::TimerInterval},
                                                 {"allPreferences", E::Preferences}};
    for (const auto &[name, entity] : all)
        m.addFetchRequestTemplate(QLatin1String(name), {entity, {}});

    const std::pair<const char *, const char *> invoices[]{
        {"isArchivedInvoices", "archived == $param1"},
        {"isArchivedInvoicesByProject", "archived == $param1 AND project == $param2"},
        {"isArchivedInvoicesByClient", "archived == $param1 AND client == $param2"},
        {"isArchivedInvoicesWithStatus", "archived == $param1 AND status == $param2"},
        {"isArchivedInvoicesWithStatusByProject",
         "archived == $param1 AND status == $param2 AND project == $param3"},
        {"isArchivedInvoicesWithStatusByClient",
         "archived == $param1 AND status == $param2 AND client == $param3"}};
    for (const auto &[name, predicate] : invoices)
        m.addFetchRequestTemplate(QLatin1String(name), {E::Invoice, QLatin1String(predicate)});

    m.addFetchRequestTemplate(QStringLiteral("defaultCurrency"),
                              {E::Currency, QStringLiteral("isDefault == TRUE")});
    m.addFetchRequestTemplate(
        QStringLiteral("currencyRateSearch"),
        {E::CurrencyRate, QStringLiteral("currFrom == $param1 AND currTo == $param2")});
}

ManagedObjectModel *buildModel() {
    auto *m = new ManagedObjectModel(TADocModel::kVersionName);
    addRoot(*m);
    addInvoices(*m);
    addProjectsAndItems(*m);
    addClientsAndMoney(*m);
    addPreferences(*m);
    addTemplates(*m);
    addFetchTemplates(*m);
    const Result<void> finished = m->finish();
    if (!finished)
        qFatal("The document model is inconsistent: %s", qPrintable(finished.error().message));
    return m;
}
} // namespace

const ManagedObjectModel &TADocModel::model() {
    // Never freed: objects of every context point into it until the process ends.
    static const ManagedObjectModel *const instance = buildModel();
    return *instance;
}
