#pragma once

#include <QHashFunctions>
#include <QString>

#include <optional>

class EntityDescription;

// The identity of a persistent object. Temporary until the object is saved or given a
// permanent identity; the permanent form is stable for the life of the file.
// URI text: "x-billfold://<store uuid>/<Entity>/p<n>" (permanent) or ".../t<n>" (temporary).
class ObjectID {
public:
    ObjectID() = default;
    ObjectID(const EntityDescription *entity, QString storeUuid, qint64 number, bool temporary);

    bool isValid() const { return m_entity != nullptr; }
    bool isTemporaryID() const { return m_temporary; }
    const EntityDescription *entity() const { return m_entity; }
    QString entityName() const;
    const QString &storeUuid() const { return m_storeUuid; }
    // The primary key (permanent) or the temporary number.
    qint64 number() const { return m_number; }

    QString uriText() const;

    // Parts of a URI text; the entity stays a name until a model resolves it.
    struct UriParts {
        QString storeUuid;
        QString entityName;
        qint64 number = 0;
        bool temporary = false;
    };
    static std::optional<UriParts> parseUri(const QString &text);

    bool operator==(const ObjectID &other) const;
    bool operator!=(const ObjectID &other) const { return !(*this == other); }

private:
    const EntityDescription *m_entity = nullptr;
    QString m_storeUuid;
    qint64 m_number = 0;
    bool m_temporary = true;
};

size_t qHash(const ObjectID &id, size_t seed = 0);
