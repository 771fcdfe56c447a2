#pragma once

#include <QHash>
#include <QList>

class ManagedObject;

// The members of a to-many relationship: unordered by contract, but iteration follows
// insertion order (removal moves the last member into the gap), so runs are repeatable.
// Small sets search linearly; large ones keep an index.
class ObjectSet {
public:
    bool contains(ManagedObject *object) const;
    bool insert(ManagedObject *object); // false when already a member
    bool remove(ManagedObject *object); // false when not a member
    // Adds an object known not to be a member (a row being loaded), skipping the search.
    void appendNew(ManagedObject *object);
    void clear();
    void reserve(qsizetype size) { m_items.reserve(size); }
    qsizetype size() const { return m_items.size(); }
    bool isEmpty() const { return m_items.isEmpty(); }
    const QList<ManagedObject *> &values() const { return m_items; }
    QList<ManagedObject *>::const_iterator begin() const { return m_items.cbegin(); }
    QList<ManagedObject *>::const_iterator end() const { return m_items.cend(); }

private:
    static constexpr qsizetype kIndexThreshold = 24;
    void buildIndex();
    QList<ManagedObject *> m_items;
    QHash<ManagedObject *, qsizetype> m_index; // used once the set is large
};
