#include "objectstore/KeyValueCoding.h"

#include "foundation/Check.h"
#include "objectstore/KeyPath.h"

#include <QMutex>
#include <QtGlobal>

#include <array>
#include <atomic>

namespace {

// Unwrappers are registered once at start-up but read for every key path step on any
// thread, so reads take no lock: slots are filled before the count that publishes them.
constexpr int kMaxUnwrappers = 16;
std::array<std::atomic<KeyValueCoding::Unwrapper>, kMaxUnwrappers> unwrappers{};
std::atomic<int> unwrapperCount{0};
QMutex registrationMutex;

} // namespace

QVariant KeyValueCoding::valueForKeyPath(const QString &keyPath) const {
    return KeyPath(keyPath).valueOf(*this);
}

const KeyValueCoding *KeyValueCoding::fromVariant(const QVariant &value) {
    if (!value.isValid())
        return nullptr;
    const int count = unwrapperCount.load(std::memory_order_acquire);
    for (int i = 0; i < count; ++i) {
        if (const KeyValueCoding *object = unwrappers[i].load(std::memory_order_relaxed)(value))
            return object;
    }
    return nullptr;
}

void KeyValueCoding::registerUnwrapper(Unwrapper unwrapper) {
    BF_CHECK(unwrapper, return);
    QMutexLocker locker(&registrationMutex);
    const int count = unwrapperCount.load(std::memory_order_relaxed);
    for (int i = 0; i < count; ++i) {
        if (unwrappers[i].load(std::memory_order_relaxed) == unwrapper)
            return;
    }
    if (count == kMaxUnwrappers) {
        qWarning("KeyValueCoding: too many unwrappers registered; ignoring one");
        return;
    }
    unwrappers[count].store(unwrapper, std::memory_order_relaxed);
    unwrapperCount.store(count + 1, std::memory_order_release);
}
