#include "foundation/dates/OTClock.h"

#include <memory>
#include <mutex>

namespace {

std::mutex sourceMutex;
std::shared_ptr<const OTClock::Source> currentSource;

QDateTime systemNow() {
    return QDateTime::currentDateTimeUtc();
}

} // namespace

QDateTime OTClock::now() {
    std::shared_ptr<const Source> source;
    {
        std::lock_guard lock(sourceMutex);
        source = currentSource;
    }
    // Called outside the lock: a source may itself be slow or read other clocks.
    return source ? (*source)().toUTC() : systemNow();
}

OTClock::Source OTClock::setSource(Source source) {
    auto next = source ? std::make_shared<const Source>(std::move(source)) : nullptr;
    std::lock_guard lock(sourceMutex);
    std::shared_ptr<const Source> previous = std::exchange(currentSource, std::move(next));
    return previous ? *previous : Source();
}
