#pragma once

#include "foundation/Result.h"
#include "objectstore/FetchRequest.h"
#include "objectstore/ManagedObject.h"
#include "objectstore/PrimaryKeyIndex.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

#include <memory>
#include <vector>

class ManagedObjectModel;
class PersistentStore;
class SqliteConnection;
class UndoManager;

// What changed since the last processPendingChanges.
struct ObjectsDidChange {
    QList<ManagedObject *> inserted;
    QList<ManagedObject *> updated;
    QList<ManagedObject *> deleted;
};

// A scratch pad of objects over one store. It loads rows on demand, one entity table at a
// time, tracks every change, saves the changes in one transaction, and records undo. A context
// belongs to the thread that made it; several contexts may sit on one store file.
class ManagedObjectContext : public QObject {
    Q_OBJECT
public:
    explicit ManagedObjectContext(std::shared_ptr<PersistentStore> store,
                                  QObject *parent = nullptr);
    ~ManagedObjectContext() override;

    PersistentStore *persistentStore() const { return m_store.get(); }
    std::shared_ptr<PersistentStore> sharedStore() const { return m_store; }
    const ManagedObjectModel *model() const;
    // Contexts here have no parents; the answer is kept for code that walks up the chain.
    ManagedObjectContext *parentContext() const { return nullptr; }

    // Null turns undo off for this context (background contexts).
    UndoManager *undoManager() const { return m_undo; }
    void setUndoManager(UndoManager *undoManager);

    ManagedObject *insertNewObject(const QString &entityName);
    template <class T> T *insertNewObjectAs(const QString &entityName) {
        return dynamic_cast<T *>(insertNewObject(entityName));
    }
    // Deletes the object and applies the delete rules of its links at once.
    void deleteObject(ManagedObject *object);

    // The object with that identity, loading its entity's rows if needed; null when the
    // identity belongs to another store or names no living object.
    ManagedObject *existingObjectWithID(const ObjectID &id);
    ManagedObject *objectWithURI(const QString &uriText);
    std::optional<ObjectID> managedObjectIDForURIRepresentation(const QString &uriText) const;

    Result<QList<ManagedObject *>> executeFetchRequest(const FetchRequest &request);
    // A named template of the model with its $variables filled in.
    Result<FetchRequest> fetchRequestFromTemplate(const QString &name,
                                                  const QVariantMap &variables) const;

    void processPendingChanges();
    // With this on, changes are also announced once the event loop next runs, the way a
    // user's edit reaches observers after the event that made it. Off by default: a context
    // of a worker thread or of a test announces when it is told to.
    void setProcessesPendingChangesAutomatically(bool automatic) { m_autoProcess = automatic; }
    bool hasChanges() const;
    QList<ManagedObject *> insertedObjects() const;
    QList<ManagedObject *> updatedObjects() const;
    QList<ManagedObject *> deletedObjects() const;

    // Writes every change since the last save in one transaction.
    Result<void> save();
    // Writes the saved state and the unsaved changes to a new file, which appears at the path
    // only when complete, and moves the store there. The old file keeps its saved state.
    Result<void> saveAs(const QString &path);
    // Back to the state of the last save; clears undo.
    void rollback();
    // Forgets every object (pointers become invalid) and clears undo.
    void reset();
    void obtainPermanentIDs(const QList<ManagedObject *> &objects);

    // Loads every row of the entity (and its subentities); the rest stays on disk until used.
    Result<void> loadEntity(const QString &entityName, bool includeSubentities = true);
    // The last error met while loading rows on demand, where no caller could be told. Damage
    // found in the file stays here, and fails every later fetch, until reset().
    const std::optional<Error> &lastLoadError() const { return m_lastLoadError; }

signals:
    void objectsDidChange(const ObjectsDidChange &changes);
    void didSave();

private:
    friend class ManagedObject;
    friend class ObjectGraph;

    void ensureEntityLoaded(const EntityDescription *entity);
    // Reads the rows the SQL condition selects (all for an empty one) into objects.
    void loadRows(const EntityDescription *entity, const QString &where);
    // Reads only the rows whose links `keys` are empty, while the entity is not loaded and
    // nothing waits unsaved; false when that cannot be done and the entity must be loaded.
    bool loadRowsWithNullLinks(const EntityDescription *entity, const QStringList &keys);
    // Whether some table the link may lead to holds a row numbered `key` or above.
    bool keyWithinTables(const RelationshipDescription &link, qint64 key);
    void noteDamage(const QString &reason);
    // A table that could not be read to its end: damage, or a file in use or unreadable.
    void noteReadFailure(const EntityDescription *entity, int code, const QString &detail);
    void ensureToManyLoaded(const RelationshipDescription &relationship);
    ManagedObject *registeredObject(const EntityDescription *entity, qint64 pk, bool create);
    void addMember(ManagedObject *object);
    void removeMember(ManagedObject *object);

    // Change primitives: each records undo, marks changes and calls hooks.
    void changeAttribute(ManagedObject *object, int slot, const QVariant &value);
    void changeToOne(ManagedObject *object, int slot, ManagedObject *target);
    void linkPrimitive(ManagedObject *object, int slot, ManagedObject *target);
    // linkPrimitive with the rows to write marked: no undo and no hooks.
    void changeToOnePrimitive(ManagedObject *object, int slot, ManagedObject *target);
    void markChanged(ManagedObject *object);
    void listChanged(ManagedObject *object);
    void clearChangedList();
    void takeSnapshot(ManagedObject *object);
    void undoInsert(ManagedObject *object);
    void redoInsert(ManagedObject *object);
    void undelete(ManagedObject *object);
    void registerUndo(std::function<void()> action);
    enum : quint8 { PendingInserted = 1, PendingUpdated = 2, PendingDeleted = 4 };
    void notePending(ManagedObject *object, quint8 bit);
    void notePendingRemoval(ManagedObject *object);
    void clearPending();
    void noteTouchedByUndo(ManagedObject *object);
    void forgetObjects();

    Result<void> writeChanges(SqliteConnection &connection, const QList<ManagedObject *> &changed);
    // The objects a save writes; prepareForWriting gives them permanent keys and puts them in
    // the order they are written.
    QList<ManagedObject *> changesToWrite();
    void prepareForWriting(QList<ManagedObject *> &changed);
    Result<void> writeTransaction(SqliteConnection &connection,
                                  const QList<ManagedObject *> &changed);
    void markSaved();
    SqliteConnection *connection();

    std::shared_ptr<PersistentStore> m_store;
    std::unique_ptr<SqliteConnection> m_connection;
    quint64 m_connectionGeneration = 0;
    UndoManager *m_undo = nullptr;
    std::unique_ptr<UndoManager> m_ownUndo;

    std::vector<std::unique_ptr<ManagedObject>> m_objects; // every object ever made here
    std::vector<PrimaryKeyIndex> m_byPk;                   // per entity index
    // Per entity index, the highest key its tables were seen to hold; 0 until asked.
    std::vector<qint64> m_highestKey;
    QHash<qint64, ManagedObject *> m_byTemporary;
    std::vector<QList<ManagedObject *>> m_members; // live objects per entity index
    std::vector<bool> m_loaded;                    // per entity index
    // Since the last save, each object once (ManagedObject::m_listedChanged), in the order of
    // first change: a set keyed by pointer cost more than the change itself in large imports.
    std::vector<ManagedObject *> m_changed;
    ObjectsDidChange m_pending;
    QSet<ManagedObject *> m_touchedByUndo;
    qint64 m_nextTemporary = 1;
    bool m_loading = false;
    bool m_autoProcess = false;
    bool m_processScheduled = false;
    std::optional<Error> m_lastLoadError;
    std::optional<Error> m_damage; // the first damage the rows showed
};
