#pragma once

#include "objectstore/KeyPath.h"
#include "objectstore/KeyValueCoding.h"

#include <QList>
#include <QString>

#include <type_traits>
#include <vector>

// One sort key: a key path, a direction and how values compare. NULL sorts before every
// value when ascending; values of different kinds order by kind (numbers, text, dates, ...).
class SortDescriptor {
public:
    enum class Comparison {
        Default,           // numbers by value, text by code units, dates by instant
        CaseInsensitive,   // text ignoring case
        LocalizedStandard, // text as people sort it: case ignored, "Item 2" before "Item 10"
    };

    SortDescriptor() = default;
    SortDescriptor(QString keyPath, bool ascending = true,
                   Comparison comparison = Comparison::Default);

    const QString &key() const { return m_key; }
    bool ascending() const { return m_ascending; }
    Comparison comparison() const { return m_comparison; }
    SortDescriptor reversed() const;

    // Negative, zero or positive as a sorts before, with or after b.
    int compare(const KeyValueCoding &a, const KeyValueCoding &b) const;

    // Stable sort by the descriptors in order; later ones break ties of earlier ones.
    template <class T>
    static void sort(QList<T *> &objects, const QList<SortDescriptor> &descriptors);

    // The positions of the objects in sorted order. Each value is read once per object and
    // descriptor, so the comparisons run on prepared keys.
    static std::vector<qsizetype> sortedOrder(const std::vector<const KeyValueCoding *> &objects,
                                              const QList<SortDescriptor> &descriptors);

    bool operator==(const SortDescriptor &other) const {
        return m_key == other.m_key && m_ascending == other.m_ascending &&
               m_comparison == other.m_comparison;
    }

private:
    QString m_key;
    KeyPath m_keyPath;
    bool m_ascending = true;
    Comparison m_comparison = Comparison::Default;
};

template <class T>
void SortDescriptor::sort(QList<T *> &objects, const QList<SortDescriptor> &descriptors) {
    static_assert(std::is_base_of_v<KeyValueCoding, T>, "objects must offer key-value coding");
    if (objects.size() < 2 || descriptors.isEmpty())
        return;
    std::vector<const KeyValueCoding *> plain;
    plain.reserve(objects.size());
    for (T *object : objects)
        plain.push_back(object);
    const std::vector<qsizetype> order = sortedOrder(plain, descriptors);
    QList<T *> sorted;
    sorted.reserve(objects.size());
    for (qsizetype index : order)
        sorted.append(objects.at(index));
    objects = std::move(sorted);
}
