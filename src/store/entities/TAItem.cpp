#include "store/entities/TAItem.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"

QString TAItem::name() const {
    return stringForKey(TAKey::name);
}

void TAItem::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QString TAItem::sku() const {
    return stringForKey(TAKey::sku);
}

void TAItem::setSku(const QString &value) {
    EntityValues::setString(this, TAKey::sku, value);
}

Decimal TAItem::price() const {
    return decimalForKey(TAKey::price);
}

void TAItem::setPrice(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::price, value);
}

Decimal TAItem::discount() const {
    return decimalForKey(TAKey::discount);
}

void TAItem::setDiscount(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::discount, value);
}

Decimal TAItem::tax() const {
    return decimalForKey(TAKey::tax);
}

void TAItem::setTax(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::tax, value);
}

QString TAItem::taxName() const {
    return stringForKey(TAKey::taxName);
}

void TAItem::setTaxName(const QString &value) {
    EntityValues::setString(this, TAKey::taxName, value);
}

qint64 TAItem::sortIndex() const {
    return integerForKey(TAKey::sortIndex);
}

void TAItem::setSortIndex(qint64 value) {
    EntityValues::setInteger(this, TAKey::sortIndex, value);
}

qint64 TAItem::invoiceSortIndex() const {
    return integerForKey(TAKey::invoiceSortIndex);
}

void TAItem::setInvoiceSortIndex(qint64 value) {
    EntityValues::setInteger(this, TAKey::invoiceSortIndex, value);
}

QDateTime TAItem::added() const {
    return dateForKey(TAKey::added);
}

void TAItem::setAdded(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::added, value);
}

QDateTime TAItem::updateDate() const {
    return dateForKey(TAKey::updateDate);
}

void TAItem::setUpdateDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::updateDate, value);
}

TAInvoice *TAItem::invoice() const {
    return objectForKeyAs<TAInvoice>(TAKey::invoice);
}

void TAItem::setInvoice(TAInvoice *value) {
    setObjectForKey(value, TAKey::invoice);
}

TAProject *TAItem::project() const {
    return objectForKeyAs<TAProject>(TAKey::project);
}

void TAItem::setProject(TAProject *value) {
    setObjectForKey(value, TAKey::project);
}
