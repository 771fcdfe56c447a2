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

    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;
};
