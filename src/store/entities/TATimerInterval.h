#pragma once

#include "store/entities/TAObject.h"

class TATimer;

// One stretch of counted time of a timer; `end` is null while it runs.
class TATimerInterval : public TAObject {
public:
    QDateTime start() const;
    void setStart(const QDateTime &value);
    QDateTime end() const;
    void setEnd(const QDateTime &value);
    TATimer *timerRelationship() const;
    void setTimerRelationship(TATimer *value);

    // Whole seconds from `start` to `end`, or to now while it runs; 0 without a start.
    virtual qint64 time() const;
    // The timer's list price per hour over `time`, with no discount and no cut to minutes.
    virtual Decimal total() const;

protected:
    QVariant computedValueForKey(const QString &key) const override;
};
