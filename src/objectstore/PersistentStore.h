#pragma once

#include "foundation/Result.h"

#include <QHash>
#include <QList>
#include <QMutex>
#include <QString>

#include <memory>

class EntityDescription;
class ManagedObjectModel;
class SqliteConnection;

// What a document file says about itself.
struct StoreMetadata {
    QString modelVersion;
    QByteArray modelHash;
    QString storeUuid;
};

// One document file (an SQLite database in WAL mode), or an in-memory store for a document
// that has not been saved yet. Holds what contexts share: the model, the file's identity, the
// table layout and the allocation of primary keys. Contexts read and write through their own
// connections.
class PersistentStore {
public:
    struct Options {
        bool readOnly = false;
        // Earlier models whose files may be opened: a file of one of them is upgraded in place
        // when the change only adds entities or attributes.
        QList<const ManagedObjectModel *> olderModels;
        // How long opening and saving wait for another program that holds the file locked.
        int busyTimeoutMs = 5000;
    };

    // Objects are numbered from 1 to this, per entity: every number is exact as a double
    // (in JSON and in predicates). A file holding a row or link outside is damaged.
    static constexpr qint64 kMaxObjectNumber = (qint64(1) << 53) - 1;
    static bool isObjectNumber(qint64 number) { return number >= 1 && number <= kMaxObjectNumber; }

    static Result<std::shared_ptr<PersistentStore>>
    open(const QString &path, const ManagedObjectModel &model, const Options &options);
    static Result<std::shared_ptr<PersistentStore>> open(const QString &path,
                                                         const ManagedObjectModel &model) {
        return open(path, model, Options{});
    }
    // A new file with no objects. Refuses to overwrite an existing file.
    static Result<std::shared_ptr<PersistentStore>> create(const QString &path,
                                                           const ManagedObjectModel &model);
    // A store that lives in memory until saveAs gives it a file.
    static Result<std::shared_ptr<PersistentStore>> createInMemory(const ManagedObjectModel &model);
    // Reads the identity of a file without opening it as a store and without changing it.
    static Result<StoreMetadata> metadataForFile(const QString &path);

    ~PersistentStore();

    const ManagedObjectModel &model() const { return *m_model; }
    const QString &path() const { return m_path; } // empty in memory
    bool isInMemory() const { return m_path.isEmpty(); }
    bool isReadOnly() const { return m_readOnly; }
    const QString &uuid() const { return m_uuid; }
    // The version the file was written with, before any upgrade on open.
    const QString &originalModelVersion() const { return m_originalVersion; }

    // Copies the saved state to a new file, written whole before it takes the path (replacing
    // any file there), and moves the store there. Unsaved changes in contexts are not
    // included. The state is read through the connection given, when there is one, which
    // reaches the file even after it was moved or deleted under us.
    Result<void> saveAs(const QString &path, SqliteConnection *source = nullptr);
    // A private in-memory copy of the saved state, for a context to add its changes to.
    Result<std::unique_ptr<SqliteConnection>> copyOfSavedState(SqliteConnection *source) const;
    // Writes the database of `contents` to the path as saveAs does and moves the store there;
    // on failure the store stays where it was and the path as it was.
    Result<void> moveTo(const QString &path, SqliteConnection &contents);

    // For contexts.
    Result<std::unique_ptr<SqliteConnection>> openConnection() const;
    quint64 generation() const; // changes when the store moves to another file
    // How long a save waits for another writer (another process) before it gives up.
    void setBusyTimeout(int milliseconds);
    // The next number for a new object of the entity; 0 when none is left.
    qint64 allocatePrimaryKey(const EntityDescription *entity);
    // Numbers up to `number` are never handed out for the entity, however many that skips.
    Result<void> skipPrimaryKeysThrough(const EntityDescription *entity, qint64 number);
    int entityCode(const EntityDescription *entity) const;
    const EntityDescription *entityForCode(int code) const;
    static QString tableName(const EntityDescription *entity);
    static QString attributeColumn(const QString &name);
    static QString linkColumn(const QString &name);
    static QString linkEntityColumn(const QString &name);

private:
    PersistentStore() = default;
    Result<void> initialise(SqliteConnection &connection, bool fresh);
    Result<void> readLayout(SqliteConnection &connection);
    Result<void> upgradeIfNeeded(SqliteConnection &connection, const StoreMetadata &metadata,
                                 const Options &options);
    QString connectionLocation(bool *uri) const;

    const ManagedObjectModel *m_model = nullptr;
    QString m_path;
    QString m_memoryName;
    bool m_readOnly = false;
    bool m_immutable = false;
    QString m_uuid;
    QString m_originalVersion;
    QHash<const EntityDescription *, int> m_codes;
    QHash<int, const EntityDescription *> m_entitiesByCode;
    mutable QMutex m_mutex;
    QHash<const EntityDescription *, qint64> m_nextPk;
    quint64 m_generation = 1;
    int m_busyTimeoutMs = 5000;
    std::unique_ptr<SqliteConnection> m_keepAlive; // holds an in-memory database open
};
