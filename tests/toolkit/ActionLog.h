#pragma once

#include "toolkit/OTActionList.h"

#include <QObject>
#include <QStringList>

#include <string>
#include <utility>

// Listens to the lists of a control and writes down which one told it, in order, and who the
// sender was.
class ActionLog : public QObject {
public:
    void listen(OTActionList &list, const QString &name) {
        list.addTarget(this, [this, name](QObject *sender) {
            m_entries.append(name);
            m_senders.append(sender);
        });
    }
    // The entries so far, joined by spaces for readable failures, and a fresh start.
    std::string take() {
        m_senders.clear();
        return std::exchange(m_entries, {}).join(' ').toStdString();
    }
    const QList<QObject *> &senders() const { return m_senders; }

private:
    QStringList m_entries;
    QList<QObject *> m_senders;
};
