#pragma once

#include "store/entities/TAInvoice.h"

// A pattern from which invoices are generated at each repeat step.
class TARecurringInvoice : public TAInvoice {
public:
    int repeatInterval() const;
    void setRepeatInterval(int value);
    int reminderType() const;
    void setReminderType(int value);
    QString reminderValue() const;
    void setReminderValue(const QString &value);
    bool createAutomatically() const;
    void setCreateAutomatically(bool value);
};
