#include "document/TACacheRecordInbox.h"

#include <QMutexLocker>

bool TACacheRecordInbox::put(QVariantMap record) {
    QMutexLocker lock(&m_mutex);
    m_records.push_back(std::move(record));
    return !std::exchange(m_drainPending, true);
}

bool TACacheRecordInbox::take(QVariantMap *record) {
    QMutexLocker lock(&m_mutex);
    if (m_records.empty()) {
        m_drainPending = false;
        return false;
    }
    *record = std::move(m_records.front());
    m_records.pop_front();
    return true;
}

void TACacheRecordInbox::clear() {
    QMutexLocker lock(&m_mutex);
    m_records.clear();
}

bool TACacheRecordInbox::hasPending() const {
    QMutexLocker lock(&m_mutex);
    return m_drainPending || !m_records.empty();
}
