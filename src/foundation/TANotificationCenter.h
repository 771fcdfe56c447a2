#pragma once

#include <QString>

#include <functional>
#include <map>
#include <mutex>

class ManagedObject;

// Plain-string notifications with an object, delivered synchronously to the observers of that
// name in the order they were added. One process-wide centre; observers remove themselves by
// the token they got.
class TANotificationCenter {
public:
    using Observer = std::function<void(const QString &name, ManagedObject *object)>;

    static TANotificationCenter &defaultCenter();

    int addObserver(const QString &name, Observer observer);
    void removeObserver(int token);
    void postNotificationName(const QString &name, ManagedObject *object);

private:
    struct Entry {
        QString name;
        Observer observer;
    };
    std::mutex m_mutex;
    std::map<int, Entry> m_observers;
    int m_nextToken = 1;
};
