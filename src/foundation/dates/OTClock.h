#pragma once

#include <QDateTime>

#include <functional>

// The one source of "now" for every rule that reads the current time, so that the
// rules can be run against a fixed moment.
class OTClock {
public:
    using Source = std::function<QDateTime()>;

    // The current instant, in UTC.
    static QDateTime now();

private:
    OTClock() = delete;
    // Only ScopedFixedClock replaces the source, so that it is always put back.
    friend class ScopedFixedClock;
    // Replaces the source and answers the previous one; an empty source restores the
    // system clock.
    static Source setSource(Source source);
};
