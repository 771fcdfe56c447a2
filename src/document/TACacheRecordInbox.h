#pragma once

#include <QMutex>
#include <QVariantMap>

#include <deque>

// Value records on their way from the cache worker to the main thread. The worker puts
// records in and asks for one queued drain whenever the inbox had none pending, instead of one
// cross-thread call per record; the main thread takes them out one at a time. An empty record
// marks the end of a run, so that the end arrives after the run's last record.
class TACacheRecordInbox {
public:
    // Worker side; true when the caller must post a drain to the main thread.
    bool put(QVariantMap record);
    // Main side; false when nothing is left, and the next put asks for a drain again.
    bool take(QVariantMap *record);
    void clear();
    // True while records wait, or a drain was asked for and has not yet found the inbox empty.
    bool hasPending() const;

private:
    mutable QMutex m_mutex;
    std::deque<QVariantMap> m_records;
    bool m_drainPending = false;
};
