#include "store/entities/TATimer.h"

#include "foundation/dates/OTDate.h"
#include "foundation/money/DecimalConstants.h"
#include "store/TAApplicationHooks.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TATimerInterval.h"

qint64 TATimer::seconds() const {
    return integerForKey(TAKey::seconds);
}

void TATimer::setSeconds(qint64 value) {
    EntityValues::setInteger(this, TAKey::seconds, value);
}

bool TATimer::active() const {
    return boolForKey(TAKey::active);
}

void TATimer::setActive(bool value) {
    EntityValues::setBool(this, TAKey::active, value);
}

qint64 TATimer::timerViewSortIndex() const {
    return integerForKey(TAKey::timerViewSortIndex);
}

void TATimer::setTimerViewSortIndex(qint64 value) {
    EntityValues::setInteger(this, TAKey::timerViewSortIndex, value);
}

QList<TATimerInterval *> TATimer::timerIntervals() const {
    return objectsForKeyAs<TATimerInterval>(TAKey::timerIntervals);
}

QStringList TATimer::relationshipsToCopy() const {
    return {TAKey::timerIntervals};
}

QStringList TATimer::relationshipsToLink() const {
    return {TAKey::invoice, TAKey::project};
}

qint64 TATimer::secondsIntegerValue() const {
    return seconds();
}

void TATimer::setSecondsIntegerValue(qint64 value) {
    setSeconds(value);
}

Decimal TATimer::total() const {
    if (isNullForKey(TAKey::seconds))
        return Decimal();
    const qint64 wholeMinutes = seconds() / 60 * 60;
    return priceWithDiscount() * Decimal(static_cast<long long>(wholeMinutes)) /
           DecimalConstants::hour();
}

Decimal TATimer::totalQuantity() const {
    return Decimal(static_cast<long long>(seconds()));
}

qint64 TATimer::hours() const {
    return OTDate::parseHoursFromSeconds(seconds());
}

void TATimer::setHours(qint64 hours) {
    setSeconds(hours * 3600 + seconds() % 3600);
}

qint64 TATimer::minutes() const {
    return OTDate::parseMinutesFromSeconds(seconds());
}

void TATimer::setMinutes(qint64 minutes) {
    setSeconds(minutes * 60 + seconds() / 3600 * 3600);
}

TATimerInterval *TATimer::lastTimerInterval() const {
    TATimerInterval *last = nullptr;
    for (TATimerInterval *interval : timerIntervals())
        if (!last || interval->start() >= last->start())
            last = interval;
    return last;
}

TAItem *TATimer::copyAsMaterial() {
    return copyAsKind(TAEntity::Material);
}

TAItem *TATimer::copyAsTimer() {
    return dynamic_cast<TAItem *>(duplicate());
}

bool TATimer::changesTotal(const QString &key) const {
    return TAItem::changesTotal(key) || key == TAKey::seconds;
}

void TATimer::didChangeValueForKey(const QString &key) {
    TAItem::didChangeValueForKey(key);
    // A billed timer must not go on counting; taking the invoice away does not restart it.
    if (key == TAKey::invoice && invoice())
        TAApplicationHooks::instance().removeTimer(this);
}

QVariant TATimer::computedValueForKey(const QString &key) const {
    if (key == QLatin1String("secondsIntegerValue"))
        return secondsIntegerValue();
    if (key == QLatin1String("hours"))
        return hours();
    if (key == QLatin1String("minutes"))
        return minutes();
    if (key == QLatin1String("lastTimerInterval"))
        return QVariant::fromValue(static_cast<ManagedObject *>(lastTimerInterval()));
    return TAItem::computedValueForKey(key);
}
