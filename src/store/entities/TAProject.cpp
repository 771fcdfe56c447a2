#include "store/entities/TAProject.h"

#include "foundation/dates/OTClock.h"
#include "foundation/dates/OTDate.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextDatabase.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TATimer.h"

#include <QHash>

#include <algorithm>

QString TAProject::name() const {
    return stringForKey(TAKey::name);
}

void TAProject::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QString TAProject::notes() const {
    return stringForKey(TAKey::notes);
}

void TAProject::setNotes(const QString &value) {
    EntityValues::setString(this, TAKey::notes, value);
}

QDateTime TAProject::dueDate() const {
    return dateForKey(TAKey::dueDate);
}

void TAProject::setDueDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::dueDate, value);
}

int TAProject::status() const {
    return int(integerForKey(TAKey::status));
}

void TAProject::setStatus(int value) {
    EntityValues::setInteger(this, TAKey::status, value);
}

TAClient *TAProject::client() const {
    return objectForKeyAs<TAClient>(TAKey::client);
}

void TAProject::setClient(TAClient *value) {
    setObjectForKey(value, TAKey::client);
}

QList<TAItem *> TAProject::items() const {
    return objectsForKeyAs<TAItem>(TAKey::items);
}

QList<TAInvoice *> TAProject::invoices() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

QList<TAHistory *> TAProject::history() const {
    return objectsForKeyAs<TAHistory>(TAKey::history);
}

int TAProject::projectStatus() const {
    return TACodes::foldedProjectStatus(integerForKey(TAKey::status));
}

void TAProject::setProjectStatus(int status) {
    setStatus(status);
}

void TAProject::awakeFromInsert() {
    TAObject::awakeFromInsert();
    setDueDate(OTClock::now());
    setStatus(TACodes::ProjectDraft);
}

QStringList TAProject::relationshipsToCopy() const {
    return {TAKey::items};
}

QStringList TAProject::relationshipsToLink() const {
    return {TAKey::client};
}

QString TAProject::stringValue() const {
    const QString value = name();
    return value.isNull() ? QStringLiteral("(No Name)") : value;
}

qint64 TAProject::projectTime() const {
    qint64 seconds = 0;
    for (TAItem *item : items())
        if (auto *timer = dynamic_cast<TATimer *>(item))
            seconds += timer->secondsIntegerValue();
    return seconds;
}

TACurrency *TAProject::currency() const {
    if (TAClient *owner = client())
        return owner->currencyRelationship();
    ManagedObjectContext *context = managedObjectContext();
    return context ? TAContextDatabase::getDefaultCurrencyInContext(context) : nullptr;
}

Decimal TAProject::projectPrice() const {
    TACurrency *own = currency();
    const TADecimalNumberBehavior behavior =
        TADecimalNumberBehavior::behaviorWithCurrencyCode(own ? own->code() : QString());
    Decimal sum;
    for (TAItem *item : items())
        if (item->managedObjectContext())
            sum = DecimalMath::add(sum, item->total(), behavior);
    return sum;
}

Decimal TAProject::projectPriceInCurrency(TACurrency *target) const {
    const Decimal price = projectPrice();
    TACurrency *own = currency();
    if (!target || target == own)
        return price;
    TACurrencyRate *rate =
        TAContextDatabase::getCurrencyRateFromCurrency(own, target, managedObjectContext());
    if (!rate)
        return price;
    return DecimalMath::multiply(price, rate->oneFromInTo(),
                                 TADecimalNumberBehavior::behaviorWithCurrencyCode(target->code()));
}

Decimal TAProject::projectPriceInDefault() const {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return projectPrice();
    return projectPriceInCurrency(TAContextDatabase::getDefaultCurrencyInContext(context));
}

bool TAProject::overdue() const {
    return OTDate::daysFromToday(dueDate()) < 0;
}

QList<TAItem *> TAProject::notInvoicedItems() const {
    QList<TAItem *> out;
    for (TAItem *item : items())
        if (!item->invoice())
            out.append(item);
    return out;
}

QList<TATimer *> TAProject::activeProjectTimers() const {
    QList<TATimer *> timers;
    for (TAItem *item : notInvoicedItems())
        if (auto *timer = dynamic_cast<TATimer *>(item))
            timers.append(timer);
    std::stable_sort(timers.begin(), timers.end(), [](const TATimer *a, const TATimer *b) {
        return a->updateDate() > b->updateDate();
    });
    return timers;
}

bool TAProject::hasActiveTimers() const {
    return !activeProjectTimers().isEmpty();
}

QVariant TAProject::computedValueForKey(const QString &key) const {
    using Reader = QVariant (*)(const TAProject *);
    static const QHash<QString, Reader> readers{
        {QStringLiteral("stringValue"),
         [](const TAProject *p) { return QVariant(p->stringValue()); }},
        {QStringLiteral("projectStatus"),
         [](const TAProject *p) { return QVariant(p->projectStatus()); }},
        {QStringLiteral("projectTime"),
         [](const TAProject *p) { return QVariant(p->projectTime()); }},
        {QStringLiteral("projectPrice"),
         [](const TAProject *p) { return p->projectPrice().toVariant(); }},
        {QStringLiteral("projectPriceInDefault"),
         [](const TAProject *p) { return p->projectPriceInDefault().toVariant(); }},
        {QStringLiteral("overdue"), [](const TAProject *p) { return QVariant(p->overdue()); }},
        {QStringLiteral("hasActiveTimers"),
         [](const TAProject *p) { return QVariant(p->hasActiveTimers()); }},
        {QStringLiteral("currency"),
         [](const TAProject *p) { return QVariant::fromValue<ManagedObject *>(p->currency()); }},
    };
    if (Reader reader = readers.value(key))
        return reader(this);
    return TAObject::computedValueForKey(key);
}
