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
};
