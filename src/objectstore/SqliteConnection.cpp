#include "objectstore/SqliteConnection.h"

#include <sqlite3.h>

namespace {

// SQLite quotes schema text from the file in its messages; in a damaged file that text may
// hold line breaks or other control characters, which would break a one-line message.
QString messageText(const char *utf8) {
    QString text = QString::fromUtf8(utf8);
    for (QChar &c : text)
        if (c.category() == QChar::Other_Control)
            c = u' ';
    return text;
}

} // namespace

SqliteStatement::~SqliteStatement() {
    sqlite3_finalize(m_statement);
}

void SqliteStatement::reset() {
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

int SqliteStatement::step() {
    return sqlite3_step(m_statement);
}

Result<std::unique_ptr<SqliteConnection>> SqliteConnection::open(const QString &location, Mode mode,
                                                                 bool uri) {
    int flags = SQLITE_OPEN_NOMUTEX; // a connection belongs to one thread
    switch (mode) {
    case Mode::ReadOnly:
        flags |= SQLITE_OPEN_READONLY;
        break;
    case Mode::ReadWrite:
        flags |= SQLITE_OPEN_READWRITE;
        break;
    case Mode::Create:
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        break;
    }
    if (uri)
        flags |= SQLITE_OPEN_URI;
    sqlite3 *db = nullptr;
    const int rc = sqlite3_open_v2(location.toUtf8().constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString message =
            db ? messageText(sqlite3_errmsg(db)) : messageText(sqlite3_errstr(rc));
        sqlite3_close(db);
        return Error{ErrorCode::FileNotReadable, message};
    }
    sqlite3_extended_result_codes(db, 1);
    // Another process (or context) may hold the write lock for a moment while it saves.
    sqlite3_busy_timeout(db, 5000);
    return std::unique_ptr<SqliteConnection>(new SqliteConnection(db, mode == Mode::ReadOnly));
}

SqliteConnection::~SqliteConnection() {
    m_statements.clear();
    sqlite3_close(m_db);
}

Result<void> SqliteConnection::exec(const QString &sql) {
    char *message = nullptr;
    const int rc = sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &message);
    if (rc != SQLITE_OK) {
        QString text = messageText(message ? message : sqlite3_errstr(rc));
        sqlite3_free(message);
        return Error{
            rc == SQLITE_NOTADB ? int(ErrorCode::FileNotADocument) : int(ErrorCode::Generic), text};
    }
    return {};
}

SqliteStatement *SqliteConnection::statement(const QString &sql) {
    auto it = m_statements.constFind(sql);
    if (it != m_statements.cend()) {
        it.value()->reset();
        return it.value().get();
    }
    sqlite3_stmt *stmt = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v3(m_db, utf8.constData(), int(utf8.size()), SQLITE_PREPARE_PERSISTENT,
                           &stmt, nullptr) != SQLITE_OK)
        return nullptr;
    auto shared = std::make_shared<SqliteStatement>(m_db, stmt);
    m_statements.insert(sql, shared);
    return shared.get();
}

Result<void> SqliteConnection::copyInto(SqliteConnection &destination) {
    sqlite3_backup *backup = sqlite3_backup_init(destination.m_db, "main", m_db, "main");
    if (!backup)
        return Error{ErrorCode::WriteFailed, destination.lastError()};
    const int rc = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (rc == SQLITE_DONE)
        return {};
    const int primary = rc & 0xff;
    return Error{primary == SQLITE_BUSY || primary == SQLITE_LOCKED ? int(ErrorCode::FileLocked)
                                                                    : int(ErrorCode::WriteFailed),
                 QString::fromUtf8(sqlite3_errstr(rc))};
}

QString SqliteConnection::lastError() const {
    return messageText(sqlite3_errmsg(m_db));
}

int SqliteConnection::lastErrorCode() const {
    return sqlite3_extended_errcode(m_db);
}
