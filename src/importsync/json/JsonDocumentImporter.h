#pragma once

#include "store/objectstore/Result.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QVariant>

#include <vector>

class EntityDescription;
class ManagedObject;
class ManagedObjectContext;
struct AttributeDescription;

// Reads the JSON form that JsonDocumentExporter writes and builds the document it describes.
// read() checks everything first (entities, keys, types, numbers, references) and names the
// JSON path of the first fault; build() only runs on a text that passed. Objects keep their
// keys as primary keys, and every value is set after the entities' own insert and change
// rules have run, so the built document holds exactly the values of the text.
class JsonDocumentImporter {
public:
    Result<void> read(const QByteArray &json);
    // Builds into an empty context of a new store, with undo off.
    Result<void> build(ManagedObjectContext &context);

    qsizetype objectCount() const { return qsizetype(m_objects.size()); }

private:
    struct Link {
        int relationship;      // index into the entity's relationships()
        qsizetype target = -1; // index into m_objects; -1 for null
    };
    struct UriText {
        int attribute;
        qsizetype target;
    };
    struct Planned {
        const EntityDescription *entity = nullptr;
        qint64 number = 0;
        std::vector<QVariant> values; // per attribute; the model default where not given
        std::vector<Link> links;      // every to-one link of the entity
        std::vector<UriText> uriTexts;
        ManagedObject *object = nullptr;
    };

    Result<void> readHeader(const QJsonObject &root);
    Result<void> readKeys(const QJsonObject &objects);
    Result<void> readObject(Planned &planned, const QString &key, const QJsonValue &value);
    // Where a value stands in the text; the path is only spelled out for a fault.
    struct Place {
        const QString &key;
        const QString &member;
        const char *suffix = "";
        QString path() const;
    };
    Result<QVariant> readAttribute(const Place &place, int index, const QJsonValue &value,
                                   Planned &planned);
    Result<qsizetype> resolve(const Place &place, const QString &key) const;
    Result<void> insertObjects(ManagedObjectContext &context);
    void setLinks(bool &changed);
    void setAttributes();
    Result<void> verify() const;
    QString keyOf(const Planned &planned) const;

    std::vector<Planned> m_objects;
    QHash<QString, qsizetype> m_byKey;
};
