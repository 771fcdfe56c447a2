#include "objectstore/PrimaryKeyIndex.h"

#include <algorithm>

void PrimaryKeyIndex::insert(qint64 pk, ManagedObject *object) {
    if (pk <= 0)
        return;
    const auto key = quint64(pk);
    if (!find(pk))
        ++m_count;
    const quint64 limit = 2 * quint64(m_count) + kSlack;
    if (key >= m_dense.size() && key < limit)
        grow(std::size_t(std::min(std::max(key + 1, quint64(m_dense.size()) * 3 / 2), limit)));
    if (key < m_dense.size())
        m_dense[std::size_t(key)] = object;
    else
        m_sparse.insert(pk, object);
}

void PrimaryKeyIndex::grow(std::size_t size) {
    m_dense.resize(size, nullptr);
    for (auto it = m_sparse.begin(); it != m_sparse.end();) {
        if (quint64(it.key()) < size) {
            m_dense[std::size_t(it.key())] = it.value();
            it = m_sparse.erase(it);
        } else {
            ++it;
        }
    }
}

void PrimaryKeyIndex::clear() {
    m_dense.clear();
    m_sparse.clear();
    m_count = 0;
}
