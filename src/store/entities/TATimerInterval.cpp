#include "store/entities/TATimerInterval.h"

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
