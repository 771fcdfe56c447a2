#pragma once

#include "foundation/dates/OTClock.h"

#include <QDateTime>

#include <atomic>
#include <memory>

// Holds OTClock at a fixed instant for its lifetime and restores the previous source
// afterwards. The instant can be moved while the clock is held.
class ScopedFixedClock {
public:
    explicit ScopedFixedClock(const QDateTime &now);
    ~ScopedFixedClock();

    ScopedFixedClock(const ScopedFixedClock &) = delete;
    ScopedFixedClock &operator=(const ScopedFixedClock &) = delete;

    void set(const QDateTime &now);
    void advance(qint64 seconds);
    QDateTime now() const;

private:
    std::shared_ptr<std::atomic<qint64>> msecs_;
    OTClock::Source previous_;
};
