#include "objectstore/ObjectSet.h"

bool ObjectSet::contains(ManagedObject *object) const {
    if (!m_index.isEmpty())
        return m_index.contains(object);
    return m_items.contains(object);
}

bool ObjectSet::insert(ManagedObject *object) {
    if (contains(object))
        return false;
    m_items.append(object);
    if (!m_index.isEmpty())
        m_index.insert(object, m_items.size() - 1);
    else if (m_items.size() > kIndexThreshold)
        buildIndex();
    return true;
}

void ObjectSet::appendNew(ManagedObject *object) {
    m_items.append(object);
    if (!m_index.isEmpty())
        m_index.insert(object, m_items.size() - 1);
    else if (m_items.size() > kIndexThreshold)
        buildIndex();
}

bool ObjectSet::remove(ManagedObject *object) {
    qsizetype position = -1;
    if (!m_index.isEmpty()) {
        auto it = m_index.find(object);
        if (it == m_index.end())
            return false;
        position = it.value();
        m_index.erase(it);
    } else {
        position = m_items.indexOf(object);
        if (position < 0)
            return false;
    }
    ManagedObject *last = m_items.last();
    m_items[position] = last;
    m_items.removeLast();
    if (last != object && !m_index.isEmpty())
        m_index[last] = position;
    return true;
}

void ObjectSet::clear() {
    m_items.clear();
    m_index.clear();
}

void ObjectSet::buildIndex() {
    m_index.reserve(m_items.size() * 2);
    for (qsizetype i = 0; i < m_items.size(); ++i)
        m_index.insert(m_items[i], i);
}
