#include "store/entities/TAItem.h"

#include "foundation/Check.h"
#include "foundation/dates/OTClock.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextDatabase.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInventory.h"
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

Decimal TAItem::amountForKey(const QString &key) const {
    const Decimal value = decimalForKey(key);
    return value.isNaN() ? Decimal() : value;
}

Decimal TAItem::discountInCash() const {
    if (isNullForKey(TAKey::discount))
        return Decimal();
    return amountForKey(TAKey::price) * amountForKey(TAKey::discount);
}

Decimal TAItem::priceWithDiscount() const {
    return amountForKey(TAKey::price) - discountInCash();
}

Decimal TAItem::total() const {
    return Decimal();
}

Decimal TAItem::totalQuantity() const {
    return Decimal();
}

int TAItem::compareTaxes(const TAItem *other) const {
    if (!other)
        return -1;
    if (isNullForKey(TAKey::tax) != other->isNullForKey(TAKey::tax) || tax() != other->tax())
        return -1;
    return taxName() == other->taxName() ? 0 : -1; // a null name reads as the empty one
}

TACurrency *TAItem::currency() const {
    ManagedObjectContext *context = managedObjectContext();
    TAInvoice *owner = invoice();
    if (owner && owner->managedObjectContext()) {
        TAClient *client = owner->client();
        if (client && client->managedObjectContext() && client->currencyRelationship())
            return client->currencyRelationship();
    } else if (TAProject *work = project(); work && work->managedObjectContext()) {
        // The project is billed in its client's currency, else the default one.
        TAClient *client = work->client();
        if (client && client->managedObjectContext())
            return client->currencyRelationship();
        return TAContextDatabase::getDefaultCurrencyInContext(work->managedObjectContext());
    }
    return context ? TAContextDatabase::getDefaultCurrencyInContext(context) : nullptr;
}

TAInventory *TAItem::copyAsInventory() const {
    TAInventory *entry = TAContextDatabase::createInventoryInContext(managedObjectContext());
    if (!entry)
        return nullptr;
    entry->setName(name());
    entry->setPrice(price());
    entry->setDiscount(discount());
    entry->setSku(sku());
    entry->setCustomTax(tax());
    entry->setIsMaterial(entity() && entity()->name() == TAEntity::Material);
    return entry;
}

TAItem *TAItem::copyAsTimer() {
    return nullptr;
}

TAItem *TAItem::copyAsMaterial() {
    return nullptr;
}

TAItem *TAItem::copyAsKind(const QString &entityName) const {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return nullptr;
    // Callers name an item entity of the model.
    auto *copy = context->insertNewObjectAs<TAItem>(entityName);
    BF_CHECK(copy, return nullptr);
    copy->copyAttributesFromObject(this);
    copy->setInvoice(invoice());
    copy->setProject(project());
    return copy;
}

void TAItem::awakeFromInsert() {
    TAObject::awakeFromInsert();
    setAdded(OTClock::now());
}

void TAItem::awakeFromSnapshotEvents(SnapshotEvent event) {
    TAObject::awakeFromSnapshotEvents(event);
    // Undo can bring back a state from before `added` was set; repair it quietly.
    if (!primitiveValueForKey(TAKey::added).isValid())
        setPrimitiveValueForKey(OTClock::now(), TAKey::added);
}

bool TAItem::changesTotal(const QString &key) const {
    return key == TAKey::price || key == TAKey::tax;
}

void TAItem::didChangeValueForKey(const QString &key) {
    TAObject::didChangeValueForKey(key);
    if (changesTotal(key))
        if (TAInvoice *owner = invoice())
            owner->requestCacheUpdate();
    if (key != TAKey::updateDate)
        setUpdateDate(OTClock::now());
    if (key == TAKey::invoice)
        if (TAInvoice *owner = invoice(); owner && owner->project())
            setProject(owner->project());
}

QVariant TAItem::computedValueForKey(const QString &key) const {
    if (key == QLatin1String("total"))
        return total().toVariant();
    if (key == QLatin1String("totalQuantity"))
        return totalQuantity().toVariant();
    if (key == QLatin1String("discountInCash"))
        return discountInCash().toVariant();
    if (key == QLatin1String("priceWithDiscount"))
        return priceWithDiscount().toVariant();
    if (key == QLatin1String("currency"))
        return QVariant::fromValue(static_cast<ManagedObject *>(currency()));
    return TAObject::computedValueForKey(key);
}
