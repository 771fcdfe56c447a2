#pragma once

#include <QString>
#include <QVariantMap>

class ManagedObject;
class TADatabase;
class TAInventory;
class TAItem;
class TAObject;

// The copy dictionary: an object outside the store, for duplication, pasteboards and moving
// objects between documents. Its form:
//   "entity"             the entity name (QString)
//   "URIRepresentation"  the source object's URI (QUrl)
//   each attribute of attributesToCopy: its value; a null attribute is an invalid QVariant
//                        (the key is present, so "null" and "missing" stay apart)
//   each relationship of relationshipsToCopy: a QVariantList of nested copy dictionaries
//   each relationship of relationshipsToLink: a QVariantList of link dictionaries
//                        {"id": URI text, "entity": entity name}; zero or one for a to-one
// Objects are rebuilt through a TADatabase, whose cache resolves links: links to objects of
// another document find nothing and are dropped.
class TACopyDictionary {
public:
    explicit TACopyDictionary(TADatabase &database)
        : m_database(database) {}

    static QVariantMap copyDictionaryForObject(TAObject *object);
    TAObject *objectFromCopyDictionary(const QVariantMap &dictionary);
    ManagedObject *objectFromCopyDictionaryByURIRepresentation(const QVariantMap &dictionary);
    TAInventory *createInvetoryFromItemCopyDictionary(const QVariantMap &dictionary);
    TAItem *createItemFromInventoryCopyDictionary(const QVariantMap &dictionary);

    static inline const QString kEntity = QStringLiteral("entity");
    static inline const QString kURIRepresentation = QStringLiteral("URIRepresentation");
    static inline const QString kId = QStringLiteral("id");

private:
    TAObject *createObjectOfEntity(const QString &entity);
    void copyDeepRelationships(TAObject *object, const QVariantMap &dictionary);
    void linkRelationships(TAObject *object, const QVariantMap &dictionary);

    TADatabase &m_database;
};
