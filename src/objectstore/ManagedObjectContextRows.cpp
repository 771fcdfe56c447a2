// Reading and writing rows: the part of ManagedObjectContext that talks to SQLite.
#include "objectstore/ManagedObjectContext.h"

#include "foundation/Check.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/ObjectGraph.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/SqliteConnection.h"

#include <QDateTime>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStringEncoder>
#include <QStringList>

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

QString quoted(const QString &identifier) {
    return u'"' + identifier + u'"';
}

// Column names of an entity's table after "pk", in the order rows are read and written.
QStringList columnsOf(const EntityDescription *entity) {
    QStringList columns;
    for (const auto &a : entity->attributes())
        if (!a.transient)
            columns.append(quoted(PersistentStore::attributeColumn(a.name)));
    for (const auto &r : entity->relationships())
        if (!r.toMany) {
            columns.append(quoted(PersistentStore::linkColumn(r.name)));
            columns.append(quoted(PersistentStore::linkEntityColumn(r.name)));
        }
    return columns;
}

QVariant readColumn(sqlite3_stmt *stmt, int column, AttributeType type) {
    if (sqlite3_column_type(stmt, column) == SQLITE_NULL)
        return {};
    switch (type) {
    case AttributeType::String: {
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(stmt, column));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(stmt, column)));
    }
    case AttributeType::Integer:
        return QVariant(qint64(sqlite3_column_int64(stmt, column)));
    case AttributeType::Boolean:
        return QVariant(sqlite3_column_int64(stmt, column) != 0);
    case AttributeType::Decimal: {
        // Stored decimals are short ASCII: widen on the stack rather than allocate a QString.
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(stmt, column));
        const int size = sqlite3_column_bytes(stmt, column);
        char16_t wide[96];
        if (size > int(std::size(wide)))
            return QVariant::fromValue(Decimal::fromString(QString::fromLatin1(text, size)));
        for (int i = 0; i < size; ++i)
            wide[i] = char16_t(static_cast<unsigned char>(text[i]));
        return QVariant::fromValue(Decimal::fromString(QStringView(wide, size)));
    }
    case AttributeType::Date:
        return QVariant(
            QDateTime::fromMSecsSinceEpoch(sqlite3_column_int64(stmt, column), Qt::UTC));
    case AttributeType::Binary: {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(stmt, column));
        return QVariant(QByteArray(bytes, sqlite3_column_bytes(stmt, column)));
    }
    case AttributeType::Float:
        // SQLite keeps no NaN: it is written as this text.
        if (sqlite3_column_type(stmt, column) == SQLITE_TEXT)
            return QVariant(std::numeric_limits<double>::quiet_NaN());
        return QVariant(sqlite3_column_double(stmt, column));
    }
    return {};
}

// "The document “name”", as messages about a file begin.
QString documentName(const QString &path) {
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? QStringLiteral("The document")
                          : QStringLiteral("The document “%1”").arg(name);
}

// Why a link's stored key cannot be followed; no key for a value that is no integer.
QString badLink(const EntityDescription *entity, qint64 number, const RelationshipDescription &link,
                std::optional<qint64> key, qint64 highest) {
    const QString where =
        QStringLiteral("%1 %2 links its “%3” to ").arg(entity->name()).arg(number).arg(link.name);
    if (!key)
        return where + QStringLiteral("a value that is no object number");
    if (!PersistentStore::isObjectNumber(*key))
        return where + QStringLiteral("%1; objects are numbered from 1 to %2")
                           .arg(*key)
                           .arg(PersistentStore::kMaxObjectNumber);
    if (highest == 0)
        return where + QStringLiteral("%1 %2, but there are no rows of %1")
                           .arg(link.destinationEntityName)
                           .arg(*key);
    return where + QStringLiteral("%1 %2, beyond the last row of %1 (%3)")
                       .arg(link.destinationEntityName)
                       .arg(*key)
                       .arg(highest);
}

// The texts of one row, kept until the row is written so that SQLite can bind them without a
// copy of its own. Never grows while a row is bound: a text that does not fit is bound as a copy.
class RowText {
public:
    RowText() { m_bytes.reserve(kCapacity); }
    void clear() { m_bytes.clear(); }
    // Room for `size` bytes, or null when the row has used it up.
    char *take(qsizetype size) {
        if (m_bytes.size() + size_t(size) > kCapacity)
            return nullptr;
        const size_t at = m_bytes.size();
        m_bytes.resize(at + size_t(size));
        return m_bytes.data() + at;
    }
    void giveBack(qsizetype unused) { m_bytes.resize(m_bytes.size() - size_t(unused)); }

private:
    static constexpr size_t kCapacity = 1 << 16;
    std::string m_bytes;
};

void bindText(sqlite3_stmt *stmt, int index, QStringView text, RowText &row) {
    if (char *room = row.take(text.size() * 3)) {
        QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
        const char *end = encoder.appendToBuffer(room, text);
        row.giveBack(text.size() * 3 - (end - room));
        sqlite3_bind_text(stmt, index, room, int(end - room), SQLITE_STATIC);
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(stmt, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

void bindValue(sqlite3_stmt *stmt, int index, const QVariant &value, AttributeType type,
               RowText &row) {
    if (!value.isValid() || value.isNull()) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    switch (type) {
    case AttributeType::String:
        if (ObjectGraph::typeOf(value) == QMetaType::fromType<QString>())
            bindText(stmt, index, *static_cast<const QString *>(value.constData()), row);
        else
            bindText(stmt, index, value.toString(), row);
        return;
    case AttributeType::Integer:
        sqlite3_bind_int64(stmt, index, value.toLongLong());
        return;
    case AttributeType::Boolean:
        sqlite3_bind_int64(stmt, index, value.toBool() ? 1 : 0);
        return;
    case AttributeType::Decimal:
        bindText(stmt, index, value.value<Decimal>().toString(), row);
        return;
    case AttributeType::Date:
        sqlite3_bind_int64(stmt, index, value.toDateTime().toMSecsSinceEpoch());
        return;
    case AttributeType::Binary: {
        const QByteArray bytes = value.toByteArray();
        sqlite3_bind_blob(stmt, index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
        return;
    }
    case AttributeType::Float:
        // A NaN bound as a number would be stored as NULL, and read back as no value.
        if (const double number = value.toDouble(); std::isnan(number))
            sqlite3_bind_text(stmt, index, "NaN", 3, SQLITE_STATIC);
        else
            sqlite3_bind_double(stmt, index, number);
        return;
    }
}

} // namespace

SqliteConnection *ManagedObjectContext::connection() {
    const quint64 generation = m_store->generation();
    if (!m_connection || generation != m_connectionGeneration) {
        m_connection.reset();
        auto opened = m_store->openConnection();
        if (!opened) {
            m_lastLoadError = opened.error();
            return nullptr;
        }
        m_connection = std::move(*opened);
        m_connectionGeneration = generation;
    }
    return m_connection.get();
}

void ManagedObjectContext::ensureEntityLoaded(const EntityDescription *entity) {
    if (!entity || entity->isAbstract() || m_loaded[entity->index()])
        return;
    m_loaded[entity->index()] = true;
    loadRows(entity, QString());
}

bool ManagedObjectContext::loadRowsWithNullLinks(const EntityDescription *entity,
                                                 const QStringList &keys) {
    // The rows must say what the objects say: nothing may wait unsaved.
    if (!entity || entity->isAbstract() || m_loaded[entity->index()] || !m_changed.empty())
        return false;
    // A link reads as empty when its column is, and also when it names a row that does not
    // exist or is of no kind the link takes: only the rows whose named row exists are left out.
    QStringList conditions;
    for (const QString &key : keys) {
        const PropertySlot *slot = entity->slot(key);
        if (!slot || slot->kind != PropertySlot::ToOne)
            continue;
        const RelationshipDescription &r = entity->relationships()[slot->declaration];
        // The model refuses to load with a link to an unknown entity.
        BF_CHECK(r.destination, return false);
        // Named with the table: inside the subquery, a bare name would mean the other table's
        // column of the same name.
        const QString table = quoted(PersistentStore::tableName(entity)) + u'.';
        const QString column = table + quoted(PersistentStore::linkColumn(r.name));
        const QString entityColumn = table + quoted(PersistentStore::linkEntityColumn(r.name));
        QStringList kinds;
        for (const EntityDescription *kind : m_store->model().entities())
            if (!kind->isAbstract() && kind->isKindOfEntity(r.destination))
                kinds.append(QStringLiteral("(%1 = %2 AND EXISTS (SELECT 1 FROM %3 WHERE pk = %4))")
                                 .arg(entityColumn)
                                 .arg(m_store->entityCode(kind))
                                 .arg(quoted(PersistentStore::tableName(kind)), column));
        if (!kinds.isEmpty())
            conditions.append(QStringLiteral("NOT (%1)").arg(kinds.join(QStringLiteral(" OR "))));
    }
    if (conditions.isEmpty())
        return false;
    loadRows(entity, conditions.join(QStringLiteral(" AND ")));
    return true;
}

void ManagedObjectContext::loadRows(const EntityDescription *entity, const QString &where) {
    SqliteConnection *db = connection();
    if (!db)
        return;
    QString sql = QStringLiteral("SELECT pk, %1 FROM %2")
                      .arg(columnsOf(entity).join(QStringLiteral(", ")),
                           quoted(PersistentStore::tableName(entity)));
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    SqliteStatement *stmt = db->statement(sql);
    if (!stmt) {
        noteReadFailure(entity, db->lastErrorCode(), db->lastError());
        return;
    }
    const auto &attributes = entity->attributes();
    const auto &relationships = entity->relationships();
    QList<ManagedObject *> loaded;
    // Rows rarely come in the order of the objects they link to: the other sides' sets are
    // filled after the loop, set by set, instead of jumping between them row by row.
    struct Member {
        ManagedObject *owner;
        int slot;
        ManagedObject *member;
    };
    std::vector<Member> members;
    int rc;
    while ((rc = stmt->step()) == SQLITE_ROW) {
        sqlite3_stmt *row = stmt->handle();
        const qint64 number = sqlite3_column_int64(row, 0);
        if (!PersistentStore::isObjectNumber(number)) {
            noteDamage(QStringLiteral("the table of %1 holds a row numbered %2; objects are "
                                      "numbered from 1 to %3")
                           .arg(entity->name())
                           .arg(number)
                           .arg(PersistentStore::kMaxObjectNumber));
            continue;
        }
        ManagedObject *object = registeredObject(entity, number, true);
        if (object->m_state != ManagedObject::State::Fault)
            continue;
        int column = 1;
        for (int i = 0; i < attributes.size(); ++i)
            if (!attributes[i].transient)
                object->m_values[i] = readColumn(row, column++, attributes[i].type);
        for (int slot = 0; slot < entity->toOneCount(); ++slot) {
            const RelationshipDescription &r =
                relationships[entity->relationshipForToOneSlot(slot)];
            const int type = sqlite3_column_type(row, column);
            const qint64 pk = sqlite3_column_int64(row, column);
            const EntityDescription *target =
                m_store->entityForCode(sqlite3_column_int(row, column + 1));
            column += 2;
            if (type == SQLITE_NULL)
                continue;
            // A number no table could hold is damage; one that names no row reads as empty.
            if (type != SQLITE_INTEGER || !PersistentStore::isObjectNumber(pk) ||
                pk > m_highestKey[r.destination->index()]) {
                if (!keyWithinTables(r, type == SQLITE_INTEGER ? pk : 0)) {
                    noteDamage(badLink(entity, number, r,
                                       type == SQLITE_INTEGER ? std::optional(pk) : std::nullopt,
                                       m_highestKey[r.destination->index()]));
                    continue;
                }
            }
            if (!target || !target->isKindOfEntity(r.destination))
                continue;
            ManagedObject *other = registeredObject(target, pk, true);
            // A table read before this one has no such row: the link reads as empty.
            if (other->m_state == ManagedObject::State::Fault && target != entity &&
                m_loaded[target->index()])
                other->m_state = ManagedObject::State::Missing;
            object->m_toOne[slot] = other;
            if (r.inverse && r.inverse->toMany)
                members.push_back({other, r.inverseSlot, object});
        }
        object->m_state = ManagedObject::State::Loaded;
        object->m_hasRow = true;
        addMember(object);
        loaded.append(object);
    }
    std::stable_sort(members.begin(), members.end(), [](const Member &a, const Member &b) {
        return a.owner != b.owner ? a.owner < b.owner : a.slot < b.slot;
    });
    for (auto run = members.begin(); run != members.end();) {
        auto end = run;
        while (end != members.end() && end->owner == run->owner && end->slot == run->slot)
            ++end;
        ObjectSet &set = run->owner->m_toMany[run->slot];
        set.reserve(set.size() + (end - run));
        for (; run != end; ++run)
            set.appendNew(run->member); // a fault is in no set yet
    }
    if (rc != SQLITE_DONE)
        noteReadFailure(entity, rc, db->lastError());
    stmt->reset();
    // Links to rows that do not exist (any more) read as empty; after part of the rows, the
    // others may still come.
    if (where.isEmpty())
        m_byPk[entity->index()].forEach([](ManagedObject *object) {
            if (object->m_state == ManagedObject::State::Fault)
                object->m_state = ManagedObject::State::Missing;
        });
    for (ManagedObject *object : loaded)
        object->awakeFromFetch();
}

bool ManagedObjectContext::keyWithinTables(const RelationshipDescription &link, qint64 key) {
    if (!PersistentStore::isObjectNumber(key))
        return false;
    qint64 &highest = m_highestKey[link.destination->index()];
    if (key <= highest)
        return true;
    // Asked of the file, not of the store: another program may have added rows since the
    // store was opened. Each table's last key is found without a scan.
    SqliteConnection *db = connection();
    if (!db)
        return false;
    for (const EntityDescription *kind : m_store->model().entities()) {
        if (kind->isAbstract() || !kind->isKindOfEntity(link.destination))
            continue;
        SqliteStatement *max = db->statement(
            QStringLiteral("SELECT MAX(pk) FROM %1").arg(quoted(PersistentStore::tableName(kind))));
        if (max && max->step() == SQLITE_ROW)
            highest = std::max<qint64>(highest, sqlite3_column_int64(max->handle(), 0));
        if (max)
            max->reset();
    }
    return key <= highest;
}

void ManagedObjectContext::noteDamage(const QString &reason) {
    const Error damage{ErrorCode::FileDamaged,
                       documentName(m_store->path()) +
                           QStringLiteral(" is damaged and cannot be read (") + reason +
                           QStringLiteral(").")};
    m_lastLoadError = damage;
    if (!m_damage)
        m_damage = damage;
}

void ManagedObjectContext::noteReadFailure(const EntityDescription *entity, int code,
                                           const QString &detail) {
    const int primary = code & 0xff;
    if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
        m_lastLoadError = Error{ErrorCode::FileLocked, documentName(m_store->path()) +
                                                           QStringLiteral(" is in use by another "
                                                                          "program.")};
    else if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR)
        noteDamage(
            QStringLiteral("the table of %1 cannot be read: %2").arg(entity->name(), detail));
    else
        m_lastLoadError = Error{ErrorCode::FileNotReadable,
                                documentName(m_store->path()) +
                                    QStringLiteral(" cannot be read (%1).").arg(detail)};
}

namespace {

// The three statements of one entity's table, prepared once per save: a large save writes
// many rows of few tables, and building and looking up the SQL text per row cost more than
// writing the row.
enum class RowWrite { Insert, Update, Delete };

struct RowStatements {
    SqliteStatement *insert = nullptr;
    SqliteStatement *update = nullptr;
    SqliteStatement *remove = nullptr;
};

SqliteStatement *rowStatement(SqliteConnection &db, const EntityDescription *entity,
                              RowStatements &cached, RowWrite kind) {
    SqliteStatement *&stmt = kind == RowWrite::Insert   ? cached.insert
                             : kind == RowWrite::Update ? cached.update
                                                        : cached.remove;
    if (stmt)
        return stmt;
    const QString table = quoted(PersistentStore::tableName(entity));
    const QStringList columns = columnsOf(entity);
    switch (kind) {
    case RowWrite::Delete:
        stmt = db.statement(QStringLiteral("DELETE FROM %1 WHERE pk = ?").arg(table));
        break;
    case RowWrite::Update: {
        QStringList assignments;
        for (const QString &c : columns)
            assignments.append(c + QStringLiteral(" = ?"));
        stmt = db.statement(QStringLiteral("UPDATE %1 SET %2 WHERE pk = ?%3")
                                .arg(table, assignments.join(QStringLiteral(", ")))
                                .arg(columns.size() + 1));
        break;
    }
    case RowWrite::Insert:
        stmt = db.statement(QStringLiteral("INSERT INTO %1 (%2, pk) VALUES (%3?%4)")
                                .arg(table, columns.join(QStringLiteral(", ")),
                                     QStringLiteral("?, ").repeated(columns.size()))
                                .arg(columns.size() + 1));
        break;
    }
    return stmt;
}

} // namespace

Result<void> ManagedObjectContext::writeChanges(SqliteConnection &db,
                                                const QList<ManagedObject *> &changed) {
    QHash<const EntityDescription *, RowStatements> statements;
    RowText rowText;
    // The statements stay cached: none may keep pointing at the row texts once they are gone.
    const auto unbind = qScopeGuard([&statements] {
        for (const RowStatements &cached : std::as_const(statements))
            for (SqliteStatement *stmt : {cached.insert, cached.update})
                if (stmt)
                    sqlite3_clear_bindings(stmt->handle());
    });
    const qsizetype count = changed.size();
    for (qsizetype at = 0; at < count; ++at) {
        // Rows are written in key order, not in the order the objects lie in memory.
        if (at + 4 < count) {
            changed[at + 4]->prefetchValues();
            changed[at + 4]->prefetchLinkTargets();
        }
        ManagedObject *object = changed[at];
        const EntityDescription *entity = object->m_entity;
        RowStatements &cached = statements[entity];
        SqliteStatement *stmt = nullptr;
        if (object->m_deleted) {
            if (!object->m_hasRow)
                continue;
            stmt = rowStatement(db, entity, cached, RowWrite::Delete);
            if (!stmt)
                return Error{ErrorCode::WriteFailed, db.lastError()};
            sqlite3_bind_int64(stmt->handle(), 1, object->m_id.number());
        } else {
            if (object->m_hasRow && !object->m_dirty)
                continue;
            // Keys are given out from 1 to the largest the store holds, and no further.
            if (object->m_id.isTemporaryID())
                return Error{ErrorCode::WriteFailed,
                             QStringLiteral("there are no numbers left for new objects of %1")
                                 .arg(entity->name())};
            stmt = rowStatement(db, entity, cached,
                                object->m_hasRow ? RowWrite::Update : RowWrite::Insert);
            if (!stmt)
                return Error{ErrorCode::WriteFailed, db.lastError()};
            sqlite3_stmt *s = stmt->handle();
            int index = 1;
            const auto &attributes = entity->attributes();
            rowText.clear(); // the previous row is written
            for (int i = 0; i < attributes.size(); ++i)
                if (!attributes[i].transient)
                    bindValue(s, index++, object->m_values[i], attributes[i].type, rowText);
            for (int slot = 0; slot < entity->toOneCount(); ++slot) {
                ManagedObject *target = ObjectGraph::visible(object->m_toOne[slot]);
                if (target && !target->m_id.isTemporaryID()) {
                    sqlite3_bind_int64(s, index, target->m_id.number());
                    sqlite3_bind_int(s, index + 1, m_store->entityCode(target->m_entity));
                } else {
                    sqlite3_bind_null(s, index);
                    sqlite3_bind_null(s, index + 1);
                }
                index += 2;
            }
            sqlite3_bind_int64(s, index, object->m_id.number());
        }
        const int rc = stmt->step();
        stmt->reset();
        if (rc != SQLITE_DONE)
            return Error{ErrorCode::WriteFailed, db.lastError()};
    }
    return {};
}
