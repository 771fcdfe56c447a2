#include "store/entities/TAPayment.h"

#include "store/TAContextDatabase.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

Decimal TAPayment::amount() const {
    return decimalForKey(TAKey::amount);
}

void TAPayment::setAmount(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::amount, value);
}

QString TAPayment::currencyCode() const {
    return stringForKey(TAKey::currencyCode);
}

void TAPayment::setCurrencyCode(const QString &value) {
    EntityValues::setString(this, TAKey::currencyCode, value);
}

Decimal TAPayment::rate() const {
    return decimalForKey(TAKey::rate);
}

void TAPayment::setRate(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::rate, value);
}

QDateTime TAPayment::date() const {
    return dateForKey(TAKey::date);
}

void TAPayment::setDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::date, value);
}

TAInvoice *TAPayment::invoiceRelationship() const {
    return objectForKeyAs<TAInvoice>(TAKey::invoice);
}

void TAPayment::setInvoiceRelationship(TAInvoice *value) {
    setObjectForKey(value, TAKey::invoice);
}

TACurrency *TAPayment::currency() const {
    ManagedObjectContext *context = managedObjectContext();
    return context ? TAContextDatabase::getCurrencyWithCode(currencyCode(), context) : nullptr;
}

QVariant TAPayment::computedValueForKey(const QString &key) const {
    if (key == QLatin1String("currency"))
        return QVariant::fromValue<ManagedObject *>(currency());
    return TAObject::computedValueForKey(key);
}
