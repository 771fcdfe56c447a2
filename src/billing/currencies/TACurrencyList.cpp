#include "billing/currencies/TACurrencyList.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"

#include <QCoreApplication>

const QString TACurrencyList::kCurrenciesChangedNotification =
    QStringLiteral("CurrenciesChangedNotification");

TACurrencyList::TACurrencyList(TADatabase *database, Poster poster)
    : m_database(database)
    , m_poster(std::move(poster)) {}

void TACurrencyList::post() {
    if (m_poster)
        m_poster(kCurrenciesChangedNotification, m_database->document());
}

TACommandOutcome TACurrencyList::addCurrency(const QString &title, const QString &code) {
    if (title.isEmpty() || code.isEmpty())
        return TACommandOutcome::beep();
    if (TAContextDatabase::getCurrencyWithCode(code, m_database->context()))
        return TACommandOutcome::withMessage(QCoreApplication::translate(
            "TACurrencyList", "Currency with this code already exists"));
    m_database->disableUndoRegistration();
    TACurrency *currency = TAContextDatabase::createCurrencyInContext(m_database->context());
    if (currency) {
        currency->setCode(code);
        currency->setTitle(title);
    }
    m_database->enableUndoRegistration();
    post();
    return TACommandOutcome::done();
}

TACommandOutcome TACurrencyList::removeCurrency(TACurrency *currency) {
    if (!currency)
        return TACommandOutcome::beep();
    if (!currency->clientsRelationships().isEmpty())
        return TACommandOutcome::withMessage(QCoreApplication::translate(
            "TACurrencyList", "Cannot remove currency that is used by some transactions"));
    TAContextDatabase::deleteObject(currency, m_database->context());
    post();
    return TACommandOutcome::done();
}

TACommandOutcome TACurrencyList::changeDefaultCurrency(TACurrency *currency) {
    if (!currency)
        return TACommandOutcome::beep();
    TACurrency *old = m_database->getDefaultCurrency();
    if (old && old != currency)
        old->setIsDefault(false);
    currency->setIsDefault(true);
    currency->setAutomaticallyDownload(true);
    post();
    return TACommandOutcome::done();
}

void TACurrencyList::setAutomaticallyDownload(TACurrency *currency, bool value) {
    if (!currency)
        return;
    currency->setAutomaticallyDownload(value);
    post();
}

Decimal TACurrencyList::oneColumn(TACurrency *currency) {
    TACurrencyRate *rate = TAContextDatabase::getCurrencyRateFromCurrency(
        m_database->getDefaultCurrency(), currency, m_database->context());
    return rate ? rate->inFromOneTo() : Decimal(1);
}

Decimal TACurrencyList::inColumn(TACurrency *currency) {
    TACurrencyRate *rate = TAContextDatabase::getCurrencyRateFromCurrency(
        m_database->getDefaultCurrency(), currency, m_database->context());
    return rate ? rate->oneFromInTo() : Decimal(1);
}
