#include "store/entities/TATimer.h"

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
