#include "importsync/json/JsonKeyIndex.h"

#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectModel.h"

#include <algorithm>

JsonKeyIndex::JsonKeyIndex(const ManagedObjectModel &model) {
    const QList<const EntityDescription *> entities = model.entities();
    m_names.reserve(entities.size());
    for (const EntityDescription *entity : entities)
        m_names.push_back(entity->name().toUtf8());
    for (qsizetype i = 0; i < entities.size(); ++i)
        m_entities.insert(QByteArrayView(m_names[i]), entities[i]);
    m_numbers.resize(entities.size());
}

std::optional<JsonKeyIndex::Parts> JsonKeyIndex::split(std::string_view key) {
    const std::size_t slash = key.find('/');
    if (slash == std::string_view::npos || slash == 0)
        return std::nullopt;
    const std::string_view digits = key.substr(slash + 1);
    // 18 digits at most, so that every number fits in 64 bits.
    if (digits.empty() || digits.front() == '0' || digits.size() > 18)
        return std::nullopt;
    qint64 number = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            return std::nullopt;
        number = number * 10 + (c - '0');
    }
    return Parts{key.substr(0, slash), number};
}

const EntityDescription *JsonKeyIndex::entity(std::string_view name) const {
    return m_entities.value(QByteArrayView(name.data(), qsizetype(name.size())));
}

bool JsonKeyIndex::insert(const EntityDescription *entity, qint64 number, qsizetype at) {
    Numbers &numbers = m_numbers[entity->index()];
    if (find(numbers, number) >= 0)
        return false;
    // The table grows with the entity's objects, so scattered numbers cannot inflate it.
    const qint64 limit = 2 * (numbers.count + 1) + 1024;
    const auto size = qint64(numbers.dense.size());
    if (number >= size && number < limit)
        numbers.dense.resize(std::size_t(std::min(std::max(number + 1, 2 * size), limit)), -1);
    if (number < qint64(numbers.dense.size()))
        numbers.dense[std::size_t(number)] = at;
    else
        numbers.sparse.insert(number, at);
    ++numbers.count;
    return true;
}

JsonKeyIndex::Found JsonKeyIndex::find(std::string_view key) const {
    const auto parts = split(key);
    const EntityDescription *known = parts ? entity(parts->entityName) : nullptr;
    if (!known)
        return {};
    return {find(m_numbers[known->index()], parts->number), known};
}

qsizetype JsonKeyIndex::find(const Numbers &numbers, qint64 number) const {
    if (number < qint64(numbers.dense.size()) && numbers.dense[std::size_t(number)] >= 0)
        return numbers.dense[std::size_t(number)];
    return numbers.sparse.isEmpty() ? -1 : numbers.sparse.value(number, -1);
}
