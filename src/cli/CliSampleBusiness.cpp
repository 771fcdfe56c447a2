#include "cli/CliSampleBusiness.h"

#include "billing/dates/OTClock.h"
#include "store/TADatabase.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"
#include "store/objectstore/ManagedObjectContext.h"

namespace {

Decimal dec(const char *text) {
    return Decimal::fromString(QString::fromLatin1(text));
}

struct Sample {
    TADatabase &db;
    QDateTime now = OTClock::now();
    TACurrency *dollar = nullptr;
    TACurrency *euro = nullptr;
    TATax *vat = nullptr;
    qint64 sortIndex = 0;

    QDateTime daysAgo(int days) const { return now.addDays(-days); }

    void currenciesAndTaxes() {
        TAPreferences *preferences = db.getPreferences();
        preferences->setTaxesEnabled(true);
        preferences->setInfoCompany(QStringLiteral("Northwind Atelier"));
        preferences->setInfoFirstName(QStringLiteral("Ada"));
        preferences->setInfoLastName(QStringLiteral("Brennan"));
        dollar = db.getDefaultCurrency();
        dollar->setCode(QStringLiteral("USD"));
        dollar->setTitle(QStringLiteral("US Dollar"));
        euro = db.getCurrencyWithCode(QStringLiteral("EUR"));
        if (!euro) {
            euro = db.createCurrency();
            euro->setCode(QStringLiteral("EUR"));
            euro->setTitle(QStringLiteral("Euro"));
        }
        TACurrencyRate *rate = db.getCurrencyRateFromCurrency(euro, dollar);
        rate->setOneFromInTo(dec("1.08"));
        rate->setInFromOneTo(dec("0.9259"));
        rate = db.getCurrencyRateFromCurrency(dollar, euro);
        rate->setOneFromInTo(dec("0.9259"));
        rate->setInFromOneTo(dec("1.08"));
        vat = db.createTax();
        vat->setName(QStringLiteral("VAT"));
        vat->setValue(dec("0.2"));
        TATax *reduced = db.createTax();
        reduced->setName(QStringLiteral("Reduced VAT"));
        reduced->setValue(dec("0.07"));
    }

    TAClient *client(const QString &fullName, const QString &company, bool isCompany,
                     TACurrency *currency) {
        TAClient *c = db.createClient();
        c->setFullNameValue(fullName);
        c->setCompanyValue(company);
        c->setIsCompanyValue(isCompany);
        c->setEmailValue(fullName.section(u' ', 0, 0).toLower() + QStringLiteral("@example.com"));
        c->setCurrencyRelationship(currency);
        return c;
    }

    TATimer *timer(TAProject *project, const QString &name, const char *rate, qint64 seconds) {
        TATimer *t = db.createTimer();
        t->setName(name);
        t->setPrice(dec(rate));
        t->setSeconds(seconds);
        t->setSortIndex(sortIndex++);
        t->setAdded(daysAgo(20));
        t->setProject(project);
        TATimerInterval *interval = db.createTimerInterval();
        interval->setStart(daysAgo(3));
        interval->setEnd(daysAgo(3).addSecs(seconds));
        interval->setTimerRelationship(t);
        return t;
    }

    TAMaterial *material(TAProject *project, const QString &name, const char *price,
                         const char *quantity) {
        TAMaterial *m = db.createMaterial();
        m->setName(name);
        m->setPrice(dec(price));
        m->setQuantity(dec(quantity));
        m->setTax(vat->value());
        m->setTaxName(vat->name());
        m->setSortIndex(sortIndex++);
        m->setAdded(daysAgo(15));
        m->setProject(project);
        return m;
    }

    TAInvoice *invoice(TAClient *client, TAProject *project, const QString &number, int issued,
                       int status) {
        TAInvoice *i = db.createInvoice();
        i->setIdentification(number);
        i->setClient(client);
        i->setProject(project);
        i->setDate(daysAgo(issued));
        i->setDueDate(daysAgo(issued).addMonths(1));
        i->setStatus(status);
        return i;
    }

    void business() {
        TAClient *harbor = client(QStringLiteral("Jonas Harbor"),
                                  QStringLiteral("Harbor & Finch Ltd"), true, nullptr);
        TAClient *marta = client(QStringLiteral("Marta Ilves"), QString(), false, euro);
        client(QStringLiteral("Soren Lindqvist"), QStringLiteral("Lindqvist Studio"), true,
               nullptr);

        TAProject *website = db.createProject();
        website->setName(QStringLiteral("Website relaunch"));
        website->setClient(harbor);
        website->setStatus(TACodes::ProjectActive);
        website->setDueDate(now.addDays(30));
        TATimer *design = timer(website, QStringLiteral("Design"), "85", 12 * 3600);
        TATimer *build = timer(website, QStringLiteral("Development"), "95", 20 * 3600 + 1800);
        TAMaterial *hosting = material(website, QStringLiteral("Hosting, one year"), "240", "1");
        timer(website, QStringLiteral("Support"), "60", 2 * 3600);

        TAProject *catalogue = db.createProject();
        catalogue->setName(QStringLiteral("Spring catalogue"));
        catalogue->setClient(marta);
        catalogue->setDueDate(now.addDays(-5));
        TATimer *layout = timer(catalogue, QStringLiteral("Layout"), "70", 9 * 3600);
        TAMaterial *prints = material(catalogue, QStringLiteral("Proof prints"), "3.50", "40");

        TAInvoice *first =
            invoice(harbor, website, QStringLiteral("2001"), 40, TACodes::InvoiceSent);
        for (TAItem *item : {static_cast<TAItem *>(design), static_cast<TAItem *>(build),
                             static_cast<TAItem *>(hosting)})
            item->setInvoice(first);
        TAPayment *partial = db.createPayment();
        partial->setAmount(dec("1000"));
        partial->setCurrencyCode(QStringLiteral("USD"));
        partial->setRate(dec("1"));
        partial->setDate(daysAgo(10));
        partial->setInvoiceRelationship(first);

        TAInvoice *second =
            invoice(marta, catalogue, QStringLiteral("2002"), 12, TACodes::InvoiceDraft);
        second->setDiscount(dec("0.05"));
        layout->setInvoice(second);
        prints->setInvoice(second);

        TARecurringInvoice *retainer = db.createRecurringInvoice();
        retainer->setIdentification(QStringLiteral("Monthly support"));
        retainer->setClient(harbor);
        retainer->setDate(daysAgo(2));
        retainer->setDueDate(daysAgo(2).addDays(14));
        retainer->setRepeatInterval(TACodes::RepeatMonthly);

        TAInventory *hour = db.createInventory();
        hour->setName(QStringLiteral("Consulting hour"));
        hour->setPrice(dec("90"));
        hour->setIsMaterial(false);
        hour->setTax(vat);
        TAInventory *licence = db.createInventory();
        licence->setName(QStringLiteral("Font licence"));
        licence->setSku(QStringLiteral("FL-01"));
        licence->setPrice(dec("49.99"));
    }
};

} // namespace

void CliSampleBusiness::fill(TADatabase &database) {
    database.disableUndoRegistration();
    database.getTemplates();
    Sample sample{database};
    sample.currenciesAndTaxes();
    sample.business();
    database.enableUndoRegistration();
}
