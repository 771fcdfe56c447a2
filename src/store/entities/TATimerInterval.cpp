#include "store/entities/TATimerInterval.h"

#include "foundation/dates/OTClock.h"
#include "foundation/dates/OTDate.h"
#include "foundation/money/DecimalConstants.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TATimer.h"

QDateTime TATimerInterval::start() const {
    return dateForKey(TAKey::start);
}

void TATimerInterval::setStart(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::start, value);
}

QDateTime TATimerInterval::end() const {
    return dateForKey(TAKey::end);
}

void TATimerInterval::setEnd(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::end, value);
}

TATimer *TATimerInterval::timerRelationship() const {
    return objectForKeyAs<TATimer>(TAKey::timer);
}

void TATimerInterval::setTimerRelationship(TATimer *value) {
    setObjectForKey(value, TAKey::timer);
}

qint64 TATimerInterval::time() const {
    const QDateTime from = start();
    if (!from.isValid())
        return 0;
    const QDateTime to = end();
    return OTDate::secondsFromDate(from, to.isValid() ? to : OTClock::now());
}

Decimal TATimerInterval::total() const {
    const TATimer *timer = timerRelationship();
    if (!timer)
        return Decimal();
    const Decimal price = timer->price();
    if (price.isNaN())
        return Decimal();
    return price * Decimal(static_cast<long long>(time())) / DecimalConstants::hour();
}

QVariant TATimerInterval::computedValueForKey(const QString &key) const {
    if (key == QLatin1String("time"))
        return time();
    if (key == QLatin1String("total"))
        return total().toVariant();
    return TAObject::computedValueForKey(key);
}
