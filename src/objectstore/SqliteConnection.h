#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

// One prepared statement, reset on each use.
class SqliteStatement {
public:
    SqliteStatement(sqlite3 *db, sqlite3_stmt *statement)
        : m_db(db)
        , m_statement(statement) {}
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    sqlite3_stmt *handle() const { return m_statement; }
    void reset();
    // SQLITE_ROW, SQLITE_DONE or an error code.
    int step();

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_statement;
};

// An SQLite connection with a cache of prepared statements and errors turned into values.
class SqliteConnection {
public:
    enum class Mode { ReadOnly, ReadWrite, Create };

    // `location` is a file path, or an SQLite URI when `uri` is set.
    static Result<std::unique_ptr<SqliteConnection>> open(const QString &location, Mode mode,
                                                          bool uri = false);
    ~SqliteConnection();

    sqlite3 *handle() const { return m_db; }
    Result<void> exec(const QString &sql);
    // A cached statement for this text; null on error (see lastError()).
    SqliteStatement *statement(const QString &sql);
    // Copies this whole database into `destination`, under the locks any reader takes.
    Result<void> copyInto(SqliteConnection &destination);
    QString lastError() const;
    int lastErrorCode() const;
    bool isReadOnly() const { return m_readOnly; }

private:
    SqliteConnection(sqlite3 *db, bool readOnly)
        : m_db(db)
        , m_readOnly(readOnly) {}
    sqlite3 *m_db;
    bool m_readOnly;
    QHash<QString, std::shared_ptr<SqliteStatement>> m_statements;
};
