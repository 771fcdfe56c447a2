#pragma once

#include "store/objectstore/Result.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QVariant>

class EntityDescription;
class ManagedObject;
class ManagedObjectContext;
struct AttributeDescription;

// Reads the JSON form that CliJsonExporter writes and builds the document it describes.
// read() checks everything first (entities, keys, types, numbers, references) and names the
// JSON path of the first fault; build() only runs on a text that passed. Objects keep their
// keys as primary keys, and every value is set after the entities' own insert and change
// rules have run, so the built document holds exactly the values of the text.
class CliJsonImporter {
public:
    Result<void> read(const QByteArray &json);
    // Builds into an empty context of a new store, with undo off.
    Result<void> build(ManagedObjectContext &context);

    qsizetype objectCount() const { return m_objects.size(); }

private:
    struct Reference {
        QString name;
        QString target; // key; empty for null
    };
    struct Planned {
        QString key;
        const EntityDescription *entity = nullptr;
        qint64 number = 0;
        QHash<QString, QVariant> attributes; // the ones the text gives
        QList<Reference> links;
        QList<Reference> uriTexts; // text attributes that hold an object's URI
        ManagedObject *object = nullptr;
    };

    Result<void> readHeader(const QJsonObject &root);
    Result<void> readObject(const QString &key, const QJsonValue &value);
    Result<QVariant> readAttribute(const QString &path, const AttributeDescription &attribute,
                                   const QJsonValue &value, Planned &planned);
    Result<void> checkReferences() const;
    Result<void> insertObjects(ManagedObjectContext &context);
    void setLinks(bool &changed);
    void setAttributes();
    Result<void> verify() const;

    QList<Planned> m_objects;
    QHash<QString, qsizetype> m_byKey;
};
