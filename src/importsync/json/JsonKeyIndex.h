#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>

#include <optional>
#include <string_view>
#include <vector>

class EntityDescription;
class ManagedObjectModel;

// The objects of a JSON document by their keys, "Entity/number". A document's numbers are
// mostly dense within an entity, so they index a table; only far outliers go to a hash.
class JsonKeyIndex {
public:
    struct Parts {
        std::string_view entityName;
        qint64 number = 0;
    };

    struct Found {
        qsizetype at = -1; // the position given on insert; -1 when there is no such object
        const EntityDescription *entity = nullptr;
    };

    explicit JsonKeyIndex(const ManagedObjectModel &model);

    // The parts of a key in its one form: a number from 1 without leading zeros.
    static std::optional<Parts> split(std::string_view key);
    // Null for a name the model does not know.
    const EntityDescription *entity(std::string_view name) const;
    // False when the entity has an object of that number already.
    bool insert(const EntityDescription *entity, qint64 number, qsizetype at);
    Found find(std::string_view key) const;

private:
    struct Numbers {
        std::vector<qsizetype> dense; // by number; -1 where there is no object
        QHash<qint64, qsizetype> sparse;
        qsizetype count = 0;
    };
    qsizetype find(const Numbers &numbers, qint64 number) const;

    std::vector<QByteArray> m_names; // UTF-8, viewed by m_entities
    QHash<QByteArrayView, const EntityDescription *> m_entities;
    std::vector<Numbers> m_numbers; // by entity index
};
