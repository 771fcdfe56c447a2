#include "objectstore/PersistentStore.h"

#include "objectstore/DocumentFileWriter.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/SqliteConnection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QUrl>
#include <QUuid>

#include <sqlite3.h>

namespace {

const char kFormat[] = "billfold-store-1";

QString displayName(const QString &path) {
    return QFileInfo(path).fileName();
}

QString quoted(const QString &identifier) {
    return u'"' + identifier + u'"';
}

const char *sqlType(AttributeType type) {
    switch (type) {
    case AttributeType::String:
    case AttributeType::Decimal:
        return "TEXT";
    case AttributeType::Integer:
    case AttributeType::Boolean:
    case AttributeType::Date:
        return "INTEGER";
    case AttributeType::Binary:
        return "BLOB";
    case AttributeType::Float:
        return "REAL";
    }
    return "";
}

Error openError(const QString &path, int sqliteCode, const QString &detail) {
    const int primary = sqliteCode & 0xff;
    if (primary == SQLITE_NOTADB)
        return {ErrorCode::FileNotADocument,
                QStringLiteral("“%1” is not a Billfold document.").arg(displayName(path))};
    if (primary == SQLITE_CORRUPT)
        return {ErrorCode::FileDamaged,
                QStringLiteral("The document “%1” is damaged and cannot be opened (%2).")
                    .arg(displayName(path), detail)};
    if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
        return {ErrorCode::FileLocked,
                QStringLiteral("The document “%1” is in use by another program.")
                    .arg(displayName(path))};
    return {
        ErrorCode::FileNotReadable,
        QStringLiteral("The document “%1” cannot be read (%2).").arg(displayName(path), detail)};
}

Error missingTable(const QString &path, const EntityDescription *entity) {
    return {ErrorCode::FileDamaged,
            QStringLiteral("The document “%1” is damaged and cannot be opened (the table of %2 is "
                           "missing).")
                .arg(displayName(path), entity->name())};
}

// True when the file looks cut short: fewer bytes than the pages it claims, with no
// write-ahead log that could hold the rest.
bool looksTruncated(const QString &path, SqliteConnection &connection) {
    sqlite3_stmt *stmt = nullptr;
    qint64 pageCount = 0, pageSize = 0;
    if (sqlite3_prepare_v2(connection.handle(), "PRAGMA page_count", -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        pageCount = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    if (sqlite3_prepare_v2(connection.handle(), "PRAGMA page_size", -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        pageSize = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    const QFileInfo wal(path + QStringLiteral("-wal"));
    if (wal.exists() && wal.size() > 0)
        return false;
    return QFileInfo(path).size() < pageCount * pageSize;
}

Result<QHash<QString, QString>> readMeta(SqliteConnection &connection, const QString &path) {
    SqliteStatement *stmt = connection.statement(QStringLiteral("SELECT key, value FROM _meta"));
    if (!stmt) {
        const int code = connection.lastErrorCode();
        if ((code & 0xff) == SQLITE_ERROR) // no such table: some other program's database
            return Error{ErrorCode::FileNotADocument,
                         QStringLiteral("“%1” is not a Billfold document.").arg(displayName(path))};
        return openError(path, code, connection.lastError());
    }
    QHash<QString, QString> meta;
    int rc;
    while ((rc = stmt->step()) == SQLITE_ROW) {
        meta.insert(QString::fromUtf8(
                        reinterpret_cast<const char *>(sqlite3_column_text(stmt->handle(), 0))),
                    QString::fromUtf8(
                        reinterpret_cast<const char *>(sqlite3_column_text(stmt->handle(), 1))));
    }
    if (rc != SQLITE_DONE)
        return openError(path, rc, connection.lastError());
    stmt->reset();
    if (meta.value(QStringLiteral("format")) != QLatin1String(kFormat))
        return Error{ErrorCode::FileNotADocument,
                     QStringLiteral("“%1” is not a Billfold document.").arg(displayName(path))};
    return meta;
}

QString createTableSql(const EntityDescription *entity) {
    QStringList columns{QStringLiteral("pk INTEGER PRIMARY KEY")};
    for (const auto &a : entity->attributes())
        if (!a.transient)
            columns.append(quoted(PersistentStore::attributeColumn(a.name)) + u' ' +
                           QLatin1String(sqlType(a.type)));
    for (const auto &r : entity->relationships())
        if (!r.toMany)
            columns.append(
                quoted(PersistentStore::linkColumn(r.name)) + QStringLiteral(" INTEGER, ") +
                quoted(PersistentStore::linkEntityColumn(r.name)) + QStringLiteral(" INTEGER"));
    return QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)")
        .arg(quoted(PersistentStore::tableName(entity)), columns.join(QStringLiteral(", ")));
}

QSet<QString> existingColumns(SqliteConnection &connection, const QString &table) {
    QSet<QString> names;
    sqlite3_stmt *stmt = nullptr;
    const QByteArray sql = QStringLiteral("PRAGMA table_info(%1)").arg(quoted(table)).toUtf8();
    if (sqlite3_prepare_v2(connection.handle(), sql.constData(), -1, &stmt, nullptr) == SQLITE_OK)
        while (sqlite3_step(stmt) == SQLITE_ROW)
            names.insert(
                QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 1))));
    sqlite3_finalize(stmt);
    return names;
}

Result<void> setMeta(SqliteConnection &connection, const QString &key, const QString &value) {
    SqliteStatement *stmt = connection.statement(
        QStringLiteral("INSERT OR REPLACE INTO _meta(key, value) VALUES(?, ?)"));
    if (!stmt)
        return Error{ErrorCode::WriteFailed, connection.lastError()};
    const QByteArray k = key.toUtf8(), v = value.toUtf8();
    sqlite3_bind_text(stmt->handle(), 1, k.constData(), int(k.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(stmt->handle(), 2, v.constData(), int(v.size()), SQLITE_TRANSIENT);
    const int rc = stmt->step();
    stmt->reset();
    if (rc != SQLITE_DONE)
        return Error{ErrorCode::WriteFailed, connection.lastError()};
    return {};
}

QString immutableUri(const QString &path) {
    return QStringLiteral("file:%1?immutable=1")
        .arg(QString::fromUtf8(QUrl::toPercentEncoding(QFileInfo(path).absoluteFilePath(), "/")));
}

} // namespace

QString PersistentStore::tableName(const EntityDescription *entity) {
    return QStringLiteral("E_") + entity->name();
}
QString PersistentStore::attributeColumn(const QString &name) {
    return QStringLiteral("a_") + name;
}
QString PersistentStore::linkColumn(const QString &name) {
    return QStringLiteral("r_") + name;
}
QString PersistentStore::linkEntityColumn(const QString &name) {
    return QStringLiteral("r_") + name + QStringLiteral("_e");
}

namespace {

// A file whose mode allows no one to write is meant to stay as it is, even for a user whose
// rights would let the write through (root).
bool permitsWriting(const QFileInfo &info) {
    constexpr QFile::Permissions anyWrite =
        QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return info.isWritable() && (info.permissions() & anyWrite);
}

bool keptByModel(const EntityDescription &old, const ManagedObjectModel &model) {
    const EntityDescription *now = model.entity(old.name());
    if (!now)
        return false;
    for (const auto &a : old.attributes()) {
        const AttributeDescription *n = now->attribute(a.name);
        if (!n || n->type != a.type)
            return false;
    }
    for (const auto &r : old.relationships()) {
        const RelationshipDescription *n = now->relationship(r.name);
        if (!n || n->toMany != r.toMany || n->destinationEntityName != r.destinationEntityName)
            return false;
    }
    return true;
}

} // namespace

PersistentStore::~PersistentStore() = default;

Result<StoreMetadata> PersistentStore::metadataForFile(const QString &path) {
    const QFileInfo info(path);
    if (!info.exists())
        return Error{ErrorCode::FileMissing,
                     QStringLiteral("The file “%1” does not exist.").arg(path)};
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return Error{ErrorCode::FileNotReadable,
                     QStringLiteral("The file “%1” cannot be read.").arg(displayName(path))};
    const QByteArray header = file.read(16);
    file.close();
    if (header != QByteArray("SQLite format 3\0", 16))
        return Error{ErrorCode::FileNotADocument,
                     QStringLiteral("“%1” is not a Billfold document.").arg(displayName(path))};
    // Read as immutable: no lock, no log, no side file is made next to a file we may refuse.
    auto connection =
        SqliteConnection::open(immutableUri(path), SqliteConnection::Mode::ReadOnly, true);
    if (!connection)
        return openError(path, SQLITE_CANTOPEN, connection.error().message);
    auto meta = readMeta(**connection, path);
    if (!meta)
        return meta.error();
    // An upgrade rewrites the identity rows, and until a checkpoint they live in the log
    // beside the file: read through the log then, or a newer model would pass for an older.
    if (const QFileInfo log(path + QStringLiteral("-wal")); log.exists() && log.size() > 0) {
        auto live = SqliteConnection::open(path, SqliteConnection::Mode::ReadOnly);
        if (live)
            if (auto logged = readMeta(**live, path))
                meta = std::move(logged);
    }
    if (looksTruncated(path, **connection))
        return Error{
            ErrorCode::FileDamaged,
            QStringLiteral(
                "The document “%1” is damaged and cannot be opened (the file is incomplete).")
                .arg(displayName(path))};
    return StoreMetadata{meta->value(QStringLiteral("modelVersion")),
                         meta->value(QStringLiteral("modelHash")).toLatin1(),
                         meta->value(QStringLiteral("storeUUID"))};
}

Result<std::shared_ptr<PersistentStore>> PersistentStore::open(const QString &path,
                                                               const ManagedObjectModel &model,
                                                               const Options &options) {
    // Everything is checked through a read-only connection first, so that a foreign or
    // damaged file is never written to.
    auto metadata = metadataForFile(path);
    if (!metadata)
        return metadata.error();
    const bool current = metadata->modelHash == model.versionHash();
    const ManagedObjectModel *older = nullptr;
    for (const ManagedObjectModel *candidate : options.olderModels)
        if (candidate && candidate->versionHash() == metadata->modelHash)
            older = candidate;
    // The name and the fingerprint are written together: a file where they disagree was
    // changed by something else, and its tables may not be what either of them says.
    const ManagedObjectModel *named = current ? &model : older;
    if (named && metadata->modelVersion != named->versionName())
        return Error{ErrorCode::FileDamaged,
                     QStringLiteral("The document “%1” is damaged and cannot be opened (it names "
                                    "the data model “%2” but records the fingerprint of “%3”).")
                         .arg(displayName(path), metadata->modelVersion, named->versionName())};
    if (!current && !older)
        return Error{ErrorCode::FileNewerModel,
                     QStringLiteral("“%1” was made by a newer or unknown version of Billfold (data "
                                    "model “%2”) and cannot be opened.")
                         .arg(displayName(path), metadata->modelVersion)};

    const QFileInfo info(path);
    const bool writable = permitsWriting(info) && permitsWriting(QFileInfo(info.absolutePath()));
    std::shared_ptr<PersistentStore> store(new PersistentStore);
    store->m_model = &model;
    store->m_path = info.absoluteFilePath();
    store->m_readOnly = options.readOnly || !writable;
    store->m_uuid = metadata->storeUuid;
    store->m_originalVersion = metadata->modelVersion;
    if (store->m_readOnly && older)
        return Error{
            ErrorCode::FileReadOnly,
            QStringLiteral(
                "“%1” needs to be upgraded to this version of Billfold, but it is read-only.")
                .arg(displayName(path))};

    store->m_busyTimeoutMs = options.busyTimeoutMs;
    auto connection = store->openConnection();
    if (store->m_readOnly &&
        (!connection || !(*connection)->exec(QStringLiteral("SELECT 1 FROM _meta LIMIT 1")))) {
        // Another program holding the file locked is told apart from a file that only can't
        // be written: read around its lock, the document would show data that is going stale.
        if (connection && ((*connection)->lastErrorCode() & 0xff) == SQLITE_BUSY)
            return openError(path, SQLITE_BUSY, (*connection)->lastError());
        // Read-only permissions or the immutable flag: read the file as it stands.
        store->m_immutable = true;
        connection = store->openConnection();
    }
    if (!connection)
        return connection.error();
    if (!store->m_readOnly) {
        if (auto r = (*connection)->exec(QStringLiteral("PRAGMA journal_mode=WAL")); !r)
            return openError(path, (*connection)->lastErrorCode(), r.error().message);
        if (auto r = store->upgradeIfNeeded(**connection, *metadata, options); !r)
            return r.error();
    }
    if (auto r = store->readLayout(**connection); !r)
        return r.error();
    return store;
}

Result<std::shared_ptr<PersistentStore>> PersistentStore::create(const QString &path,
                                                                 const ManagedObjectModel &model) {
    if (QFileInfo::exists(path))
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("“%1” already exists; a new document is not written over it.")
                         .arg(displayName(path))};
    auto memory = createInMemory(model);
    if (!memory)
        return memory.error();
    if (auto r = (*memory)->saveAs(path); !r)
        return r.error();
    return memory;
}

Result<std::shared_ptr<PersistentStore>>
PersistentStore::createInMemory(const ManagedObjectModel &model) {
    std::shared_ptr<PersistentStore> store(new PersistentStore);
    store->m_model = &model;
    // Lower case, as URL hosts are: URIs pass through QUrl in copy dictionaries.
    store->m_uuid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    store->m_memoryName = QStringLiteral("billfold-") + store->m_uuid;
    store->m_originalVersion = model.versionName();
    auto connection = store->openConnection();
    if (!connection)
        return connection.error();
    if (auto r = store->initialise(**connection, true); !r)
        return r.error();
    if (auto r = store->readLayout(**connection); !r)
        return r.error();
    store->m_keepAlive = std::move(*connection);
    return store;
}

QString PersistentStore::connectionLocation(bool *uri) const {
    if (isInMemory()) {
        *uri = true;
        return QStringLiteral("file:%1?mode=memory&cache=shared").arg(m_memoryName);
    }
    *uri = m_immutable;
    return m_immutable ? immutableUri(m_path) : m_path;
}

Result<std::unique_ptr<SqliteConnection>> PersistentStore::openConnection() const {
    bool uri = false;
    QString location;
    {
        QMutexLocker lock(&m_mutex);
        location = connectionLocation(&uri);
    }
    const auto mode = isInMemory() ? SqliteConnection::Mode::Create
                      : m_readOnly ? SqliteConnection::Mode::ReadOnly
                                   : SqliteConnection::Mode::ReadWrite;
    auto connection = SqliteConnection::open(location, mode, uri);
    if (!connection)
        return openError(m_path, SQLITE_CANTOPEN, connection.error().message);
    // Without it the file stays usable with SQLite's default; only a power cut could cost more.
    if (!isInMemory() && !m_readOnly)
        if (auto synced = (*connection)->exec(QStringLiteral("PRAGMA synchronous=FULL")); !synced)
            qWarning("%s: writes are not flushed fully: %s", qUtf8Printable(m_path),
                     qUtf8Printable(synced.error().message));
    sqlite3_busy_timeout((*connection)->handle(), m_busyTimeoutMs);
    return connection;
}

Result<void> PersistentStore::initialise(SqliteConnection &connection, bool fresh) {
    if (auto r = connection.exec(QStringLiteral("BEGIN IMMEDIATE")); !r)
        return r;
    auto fail = [&](const QString &message) -> Result<void> {
        if (auto rolledBack = connection.exec(QStringLiteral("ROLLBACK")); !rolledBack)
            qWarning("Rollback after a failed set-up failed: %s",
                     qUtf8Printable(rolledBack.error().message));
        return Error{ErrorCode::WriteFailed, message};
    };
    if (fresh) {
        if (!connection.exec(
                QStringLiteral("CREATE TABLE _meta (key TEXT PRIMARY KEY, value TEXT)")) ||
            !connection.exec(QStringLiteral(
                "CREATE TABLE _entities (code INTEGER PRIMARY KEY, name TEXT UNIQUE NOT NULL)")))
            return fail(connection.lastError());
        for (auto r : {setMeta(connection, QStringLiteral("format"), QLatin1String(kFormat)),
                       setMeta(connection, QStringLiteral("storeUUID"), m_uuid)})
            if (!r)
                return fail(r.error().message);
    }
    // Tables, columns and entity codes that the model has and the file lacks.
    for (const EntityDescription *entity : m_model->entities()) {
        if (entity->isAbstract())
            continue;
        const QString table = tableName(entity);
        if (!connection.exec(createTableSql(entity)))
            return fail(connection.lastError());
        const QSet<QString> columns = existingColumns(connection, table);
        auto addColumn = [&](const QString &column, const char *type) -> bool {
            if (columns.contains(column))
                return true;
            return bool(
                connection.exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                                    .arg(quoted(table), quoted(column), QLatin1String(type))));
        };
        for (const auto &a : entity->attributes())
            if (!a.transient && !addColumn(attributeColumn(a.name), sqlType(a.type)))
                return fail(connection.lastError());
        for (const auto &r : entity->relationships())
            if (!r.toMany && (!addColumn(linkColumn(r.name), "INTEGER") ||
                              !addColumn(linkEntityColumn(r.name), "INTEGER")))
                return fail(connection.lastError());
        SqliteStatement *stmt =
            connection.statement(QStringLiteral("INSERT OR IGNORE INTO _entities(name) VALUES(?)"));
        if (!stmt)
            return fail(connection.lastError());
        const QByteArray name = entity->name().toUtf8();
        sqlite3_bind_text(stmt->handle(), 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
        if (stmt->step() != SQLITE_DONE)
            return fail(connection.lastError());
        stmt->reset();
    }
    for (auto r : {setMeta(connection, QStringLiteral("modelVersion"), m_model->versionName()),
                   setMeta(connection, QStringLiteral("modelHash"),
                           QString::fromLatin1(m_model->versionHash()))})
        if (!r)
            return fail(r.error().message);
    if (auto r = connection.exec(QStringLiteral("COMMIT")); !r)
        return fail(r.error().message);
    return {};
}

Result<void> PersistentStore::upgradeIfNeeded(SqliteConnection &connection,
                                              const StoreMetadata &metadata,
                                              const Options &options) {
    if (metadata.modelHash == m_model->versionHash())
        return {};
    const ManagedObjectModel *older = nullptr;
    for (const ManagedObjectModel *candidate : options.olderModels)
        if (candidate && candidate->versionHash() == metadata.modelHash)
            older = candidate;
    // Only additions are upgraded in place: every entity, attribute and link of the older
    // model must still exist with the same type, and a link with the same destination and
    // cardinality, or the rows would be read as something they are not.
    for (const EntityDescription *old : older->entities())
        if (!keptByModel(*old, *m_model))
            return Error{
                ErrorCode::FileNewerModel,
                QStringLiteral(
                    "“%1” uses an older data model (“%2”) that cannot be upgraded in place.")
                    .arg(displayName(m_path), metadata.modelVersion)};
    return initialise(connection, false);
}

Result<void> PersistentStore::readLayout(SqliteConnection &connection) {
    SqliteStatement *stmt =
        connection.statement(QStringLiteral("SELECT code, name FROM _entities"));
    if (!stmt)
        return openError(m_path, connection.lastErrorCode(), connection.lastError());
    QHash<const EntityDescription *, int> codes;
    QHash<int, const EntityDescription *> byCode;
    int rc;
    while ((rc = stmt->step()) == SQLITE_ROW) {
        const int code = sqlite3_column_int(stmt->handle(), 0);
        const QString name = QString::fromUtf8(
            reinterpret_cast<const char *>(sqlite3_column_text(stmt->handle(), 1)));
        if (const EntityDescription *entity = m_model->entity(name)) {
            codes.insert(entity, code);
            byCode.insert(code, entity);
        }
    }
    stmt->reset();
    if (rc != SQLITE_DONE)
        return openError(m_path, rc, connection.lastError());
    QHash<const EntityDescription *, qint64> next;
    for (const EntityDescription *entity : m_model->entities()) {
        if (entity->isAbstract())
            continue;
        if (!codes.contains(entity))
            return missingTable(m_path, entity);
        // Each table's first and last keys, found without a scan.
        SqliteStatement *range = connection.statement(
            QStringLiteral("SELECT (SELECT MIN(pk) FROM %1), (SELECT MAX(pk) FROM %1)")
                .arg(quoted(tableName(entity))));
        if (!range && (connection.lastErrorCode() & 0xff) == SQLITE_ERROR)
            return missingTable(m_path, entity);
        if (!range || range->step() != SQLITE_ROW)
            return openError(m_path, connection.lastErrorCode(), connection.lastError());
        const bool empty = sqlite3_column_type(range->handle(), 0) == SQLITE_NULL;
        const qint64 first = sqlite3_column_int64(range->handle(), 0);
        const qint64 last = sqlite3_column_int64(range->handle(), 1);
        range->reset();
        if (!empty && (!isObjectNumber(first) || !isObjectNumber(last)))
            return Error{ErrorCode::FileDamaged,
                         QStringLiteral("The document “%1” is damaged and cannot be opened (the "
                                        "table of %2 holds a row numbered %3; objects are "
                                        "numbered from 1 to %4).")
                             .arg(displayName(m_path), entity->name())
                             .arg(isObjectNumber(first) ? last : first)
                             .arg(kMaxObjectNumber)};
        next.insert(entity, empty ? 1 : last + 1);
    }
    QMutexLocker lock(&m_mutex);
    m_codes = codes;
    m_entitiesByCode = byCode;
    for (auto it = next.cbegin(); it != next.cend(); ++it)
        m_nextPk[it.key()] = std::max(m_nextPk.value(it.key(), 1), it.value());
    return {};
}

Result<std::unique_ptr<SqliteConnection>>
PersistentStore::copyOfSavedState(SqliteConnection *given) const {
    std::unique_ptr<SqliteConnection> opened;
    if (!given) {
        auto connection = openConnection();
        if (!connection)
            return connection.error();
        opened = std::move(*connection);
    }
    return DocumentFileWriter::scratchCopyOf(given ? *given : *opened);
}

Result<void> PersistentStore::saveAs(const QString &path, SqliteConnection *given) {
    auto copy = copyOfSavedState(given);
    if (!copy)
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("The document could not be saved as “%1” (%2).")
                         .arg(QFileInfo(path).fileName(), copy.error().message)};
    return moveTo(path, **copy);
}

Result<void> PersistentStore::moveTo(const QString &path, SqliteConnection &contents) {
    const QFileInfo target(path);
    if (auto written = DocumentFileWriter::write(contents, target.absoluteFilePath()); !written)
        return Error{written.error().code,
                     QStringLiteral("The document could not be saved as “%1” (%2).")
                         .arg(target.fileName(), written.error().message)};
    QMutexLocker lock(&m_mutex);
    m_path = target.absoluteFilePath();
    m_memoryName.clear();
    m_readOnly = false;
    m_immutable = false;
    ++m_generation;
    lock.unlock();
    m_keepAlive.reset();
    return {};
}

void PersistentStore::setBusyTimeout(int milliseconds) {
    QMutexLocker lock(&m_mutex);
    m_busyTimeoutMs = milliseconds;
}

quint64 PersistentStore::generation() const {
    QMutexLocker lock(&m_mutex);
    return m_generation;
}

qint64 PersistentStore::allocatePrimaryKey(const EntityDescription *entity) {
    QMutexLocker lock(&m_mutex);
    qint64 &next = m_nextPk[entity];
    if (next < 1)
        next = 1;
    if (next > kMaxObjectNumber)
        return 0;
    return next++;
}

Result<void> PersistentStore::skipPrimaryKeysThrough(const EntityDescription *entity,
                                                     qint64 number) {
    if (number > kMaxObjectNumber)
        return Error{ErrorCode::Generic,
                     QStringLiteral("Objects of %1 are numbered from 1 to %2; %3 is beyond.")
                         .arg(entity->name())
                         .arg(kMaxObjectNumber)
                         .arg(number)};
    QMutexLocker lock(&m_mutex);
    qint64 &next = m_nextPk[entity];
    next = std::max(next, number + 1);
    return {};
}

// The code tables are filled while the store is opened, before any context can see it, and
// never change after: no lock on this hot path of loading rows.
int PersistentStore::entityCode(const EntityDescription *entity) const {
    return m_codes.value(entity, 0);
}

const EntityDescription *PersistentStore::entityForCode(int code) const {
    return m_entitiesByCode.value(code, nullptr);
}
