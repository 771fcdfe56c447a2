#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

class ManagedObject;
class QIODevice;
class ManagedObjectContext;
struct AttributeDescription;
class EntityDescription;

// The JSON form of a whole document (described in docs/json-interchange.md). Walks the model,
// so every entity, attribute and to-one link is written without a list of its own here; to-many
// links are the other side of to-one links and are left out. Objects are keyed "Entity/<primary
// key>", written by entity name and then key, their properties by name: the same document
// always gives the same bytes.
class JsonDocumentExporter {
public:
    static inline const QString kFormat = QStringLiteral("billfold-json");
    static constexpr int kFormatVersion = 1;

    explicit JsonDocumentExporter(ManagedObjectContext &context);

    Result<QByteArray> exportDocument();
    // Writes as it goes, a megabyte at a time: a decade of documents is a large text.
    Result<void> exportDocument(QIODevice &device);

    static QString keyOf(const ManagedObject *object);
    static void appendKey(QByteArray &out, const ManagedObject *object);
    // The entity whose objects a text attribute names by URI where the program stores one
    // there (Preferences.lastProjectID names a Project); null where any object may be named.
    static const EntityDescription *uriTargetOf(const EntityDescription *entity,
                                                const QString &attribute);

private:
    struct Property {
        QString name;
        const AttributeDescription *attribute = nullptr; // null: a to-one link
        QByteArray prefix;                               // ",\n      \"name\": "
    };
    struct EntityObjects {
        QString entity;
        QList<ManagedObject *> objects;
        QList<Property> properties; // by name
    };
    Result<void> checkModel() const;
    Result<void> collect();
    Result<void> writeObject(QByteArray &out, const ManagedObject *object,
                             const QList<Property> &properties) const;
    static QList<Property> propertiesOf(const EntityDescription *entity);
    Result<void> writeAttribute(QByteArray &out, const ManagedObject *object,
                                const AttributeDescription &attribute) const;
    // The key of an object of this document that a text names by its URI, if any; only one of
    // `target`'s kind when that is given.
    QString keyForUriText(const QString &text, const EntityDescription *target) const;

    ManagedObjectContext &m_context;
    QList<EntityObjects> m_objects;
    // Numbers of the objects per entity, made when a text first looks like an object URI.
    mutable QHash<QString, QSet<qint64>> m_numbers;
};
