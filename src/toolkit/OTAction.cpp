#include "toolkit/OTAction.h"

#include <atomic>

namespace {
std::atomic<quint64> nextSerial{1};
}

OTAction::OTAction(QObject *target, Selector selector)
    : m_target(target)
    , m_selector(std::move(selector))
    , m_serial(nextSerial++) {}

void OTAction::inform(QObject *sender) const {
    if (m_target && m_selector)
        m_selector(sender);
}
