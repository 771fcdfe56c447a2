#include "store/entities/TARecurringInvoice.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"

int TARecurringInvoice::repeatInterval() const {
    return int(integerForKey(TAKey::repeatInterval));
}

void TARecurringInvoice::setRepeatInterval(int value) {
    EntityValues::setInteger(this, TAKey::repeatInterval, value);
}

int TARecurringInvoice::reminderType() const {
    return int(integerForKey(TAKey::reminderType));
}

void TARecurringInvoice::setReminderType(int value) {
    EntityValues::setInteger(this, TAKey::reminderType, value);
}

QString TARecurringInvoice::reminderValue() const {
    return stringForKey(TAKey::reminderValue);
}

void TARecurringInvoice::setReminderValue(const QString &value) {
    EntityValues::setString(this, TAKey::reminderValue, value);
}

bool TARecurringInvoice::createAutomatically() const {
    return boolForKey(TAKey::createAutomatically);
}

void TARecurringInvoice::setCreateAutomatically(bool value) {
    EntityValues::setBool(this, TAKey::createAutomatically, value);
}
