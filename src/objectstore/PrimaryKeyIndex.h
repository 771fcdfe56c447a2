#pragma once

#include <QHash>

#include <vector>

class ManagedObject;

// The objects of one entity by primary key. Keys are handed out densely from 1, so they index
// a table; a key far beyond the objects present (a file edited by hand, an imported number)
// goes to a hash instead, so that memory follows the objects and not the largest key.
class PrimaryKeyIndex {
public:
    ManagedObject *find(qint64 pk) const {
        if (quint64(pk) < m_dense.size())
            return m_dense[std::size_t(pk)];
        return m_sparse.isEmpty() ? nullptr : m_sparse.value(pk, nullptr);
    }
    // Keys from 1; the object replaces any other of that key.
    void insert(qint64 pk, ManagedObject *object);
    void clear();
    qsizetype size() const { return m_count; }

    template <class F> void forEach(F &&visit) const {
        for (ManagedObject *object : m_dense)
            if (object)
                visit(object);
        for (ManagedObject *object : m_sparse)
            visit(object);
    }

private:
    // Far keys that the larger table now reaches move into it.
    void grow(std::size_t size);

    // Unused slots a table may hold beyond twice the objects, so that a few deleted or
    // skipped keys do not send the keys after them to the hash.
    static constexpr quint64 kSlack = 1024;
    std::vector<ManagedObject *> m_dense;
    QHash<qint64, ManagedObject *> m_sparse;
    qsizetype m_count = 0;
};
