#include "foundation/dates/ScopedFixedClock.h"

ScopedFixedClock::ScopedFixedClock(const QDateTime &now)
    : msecs_(std::make_shared<std::atomic<qint64>>(now.toMSecsSinceEpoch())) {
    // The source keeps its own reference, so a copy taken by a concurrent reader stays
    // valid even after this object is gone.
    auto msecs = msecs_;
    previous_ = OTClock::setSource(
        [msecs] { return QDateTime::fromMSecsSinceEpoch(msecs->load(), Qt::UTC); });
}

ScopedFixedClock::~ScopedFixedClock() {
    OTClock::setSource(std::move(previous_));
}

void ScopedFixedClock::set(const QDateTime &now) {
    msecs_->store(now.toMSecsSinceEpoch());
}

void ScopedFixedClock::advance(qint64 seconds) {
    msecs_->fetch_add(seconds * 1000);
}

QDateTime ScopedFixedClock::now() const {
    return QDateTime::fromMSecsSinceEpoch(msecs_->load(), Qt::UTC);
}
