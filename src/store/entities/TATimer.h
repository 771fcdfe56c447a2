#pragma once

#include "store/entities/TAItem.h"

#include <QStringList>

class TATimerInterval;

// An item billed by time: the tracked seconds and the intervals in which they were counted.
class TATimer : public TAItem {
public:
    qint64 seconds() const;
    void setSeconds(qint64 value);
    bool active() const;
    void setActive(bool value);
    qint64 timerViewSortIndex() const;
    void setTimerViewSortIndex(qint64 value);
    QList<TATimerInterval *> timerIntervals() const;

    qint64 secondsIntegerValue() const;
    void setSecondsIntegerValue(qint64 value);
    // `priceWithDiscount` per hour over the whole minutes counted; odd seconds are not billed.
    Decimal total() const override;
    Decimal totalQuantity() const override;
    qint64 hours() const;
    // Keeps the minutes and seconds below the hour.
    void setHours(qint64 hours);
    qint64 minutes() const;
    // Keeps the whole hours and drops the odd seconds.
    void setMinutes(qint64 minutes);
    // The interval that started last; null without intervals.
    TATimerInterval *lastTimerInterval() const;
    TAItem *copyAsMaterial() override;
    TAItem *copyAsTimer() override;

    void didChangeValueForKey(const QString &key) override;

    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;

protected:
    bool changesTotal(const QString &key) const override;
    QVariant computedValueForKey(const QString &key) const override;
};
