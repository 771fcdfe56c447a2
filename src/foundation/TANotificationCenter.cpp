#include "foundation/TANotificationCenter.h"

#include <vector>

TANotificationCenter &TANotificationCenter::defaultCenter() {
    static TANotificationCenter center;
    return center;
}

int TANotificationCenter::addObserver(const QString &name, Observer observer) {
    std::lock_guard lock(m_mutex);
    const int token = m_nextToken++;
    m_observers.emplace(token, Entry{name, std::move(observer)});
    return token;
}

void TANotificationCenter::removeObserver(int token) {
    std::lock_guard lock(m_mutex);
    m_observers.erase(token);
}

void TANotificationCenter::postNotificationName(const QString &name, ManagedObject *object) {
    // Observers run outside the lock, so that they may add or remove observers themselves.
    std::vector<Observer> receivers;
    {
        std::lock_guard lock(m_mutex);
        for (const auto &[token, entry] : m_observers)
            if (entry.name == name)
                receivers.push_back(entry.observer);
    }
    for (const Observer &observer : receivers)
        observer(name, object);
}
