// Damaged documents through the reading commands: a sample document is changed at random,
// row by row through SQL (odd keys, links, entity codes, values of the wrong type, deleted
// rows and tables) and byte by byte (pages), and then info, list and export-json must either
// work or fail with one clear line, leave the file as it was and nothing beside it.
//
// BILLFOLD_FUZZ_SECONDS sets how long it runs (15 by default); BILLFOLD_FUZZ_SEED repeats
// the cases of an earlier run, whose seed is printed first.
#include "cli/CliListing.h"
#include "support/CliRun.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <cstdio>
#include <limits>
#include <random>

namespace {

struct Table {
    QString name;
    QStringList links;  // key columns
    QStringList kinds;  // entity code columns
    QStringList values; // attribute columns
};

QByteArray fileHash(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

class Mutator {
public:
    Mutator(quint64 seed, const QList<Table> &tables)
        : m_random(seed)
        , m_tables(tables) {}

    // Changes the document through SQL; answers what was done, for the failure report.
    QStringList mutateRows(const QString &path) {
        QStringList done;
        sqlite3 *db = nullptr;
        if (sqlite3_open(QFile::encodeName(path).constData(), &db) != SQLITE_OK) {
            sqlite3_close(db);
            return {QStringLiteral("(could not open)")};
        }
        const int count = 1 + below(4);
        for (int i = 0; i < count; ++i)
            done.append(mutateOnce(db));
        sqlite3_close(db); // the last connection folds the log into the file and removes it
        return done;
    }

    // Changes bytes of the file's pages, as a failing disk or a bad copy would.
    QStringList mutateBytes(const QString &path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadWrite))
            return {QStringLiteral("(could not open)")};
        QByteArray bytes = file.readAll();
        constexpr qsizetype kPage = 4096;
        const qsizetype pages = std::max<qsizetype>(1, bytes.size() / kPage);
        QStringList done;
        const int count = 1 + below(3);
        for (int i = 0; i < count; ++i) {
            // The first page, with the header and the schema, less often than the others.
            const qsizetype page = below(5) == 0 ? 0 : below(int(pages));
            const qsizetype start = page * kPage + (page == 0 ? 100 : 0);
            const qsizetype end = std::min(bytes.size(), (page + 1) * kPage);
            if (start >= end)
                continue;
            // Mostly a few bytes, which the file's checks miss more often than whole pages.
            switch (std::max(0, below(10) - 6)) {
            case 0: {
                const int flips = 1 + below(16);
                for (int f = 0; f < flips; ++f)
                    bytes[start + below(int(end - start))] = char(below(256));
                done.append(QStringLiteral("%1 bytes of page %2").arg(flips).arg(page + 1));
                break;
            }
            case 1:
                for (qsizetype at = start; at < end; ++at)
                    bytes[at] = char(below(256));
                done.append(QStringLiteral("page %1 random").arg(page + 1));
                break;
            case 2:
                std::fill(bytes.begin() + start, bytes.begin() + end, '\0');
                done.append(QStringLiteral("page %1 zeroed").arg(page + 1));
                break;
            default:
                bytes.truncate(std::max<qsizetype>(kPage, page * kPage));
                done.append(QStringLiteral("cut after page %1").arg(std::max<qsizetype>(1, page)));
                break;
            }
        }
        file.resize(0);
        file.seek(0);
        file.write(bytes);
        return done;
    }

    int below(int bound) { return int(m_random() % quint64(std::max(1, bound))); }
    template <class T> const T &pick(const QList<T> &list) { return list[below(int(list.size()))]; }

private:
    QString mutateOnce(sqlite3 *db) {
        const Table &table = pick(m_tables);
        const qint64 row = anyRow(db, table.name);
        QString column;
        QString sql;
        switch (below(10)) {
        case 0:
        case 1:
            column = QStringLiteral("pk");
            break;
        case 2:
        case 3:
            if (table.links.isEmpty())
                return QStringLiteral("(no link in %1)").arg(table.name);
            column = pick(table.links);
            break;
        case 4:
            if (table.kinds.isEmpty())
                return QStringLiteral("(no link in %1)").arg(table.name);
            column = pick(table.kinds);
            break;
        case 5:
        case 6:
            if (table.values.isEmpty())
                return QStringLiteral("(no value in %1)").arg(table.name);
            column = pick(table.values);
            break;
        case 7:
            sql = QStringLiteral("DELETE FROM \"%1\" WHERE pk = %2").arg(table.name).arg(row);
            break;
        case 8:
            sql = below(4) == 0
                      ? QStringLiteral("DROP TABLE \"%1\"").arg(table.name)
                      : QStringLiteral("DELETE FROM _entities WHERE code = %1").arg(1 + below(25));
            break;
        default:
            sql = QStringLiteral("UPDATE _entities SET code = %1 WHERE code = %2")
                      .arg(oddNumber())
                      .arg(1 + below(25));
            break;
        }
        if (sql.isEmpty())
            return setValue(db, table.name, column, row);
        sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
        return sql;
    }

    qint64 anyRow(sqlite3 *db, const QString &table) {
        sqlite3_stmt *stmt = nullptr;
        const QByteArray sql = QStringLiteral("SELECT pk FROM \"%1\" ORDER BY pk LIMIT 1 OFFSET %2")
                                   .arg(table)
                                   .arg(below(8))
                                   .toUtf8();
        qint64 pk = 1;
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW)
            pk = sqlite3_column_int64(stmt, 0);
        sqlite3_finalize(stmt);
        return pk;
    }

    qint64 oddNumber() {
        static const qint64 numbers[] = {0,
                                         -1,
                                         -(qint64(1) << 40),
                                         1,
                                         2,
                                         7,
                                         26,
                                         999,
                                         qint64(1) << 31,
                                         qint64(1) << 40,
                                         10000000000,
                                         (qint64(1) << 53) - 1,
                                         qint64(1) << 53,
                                         std::numeric_limits<qint64>::max(),
                                         std::numeric_limits<qint64>::min()};
        return numbers[below(int(std::size(numbers)))];
    }

    QString setValue(sqlite3 *db, const QString &table, const QString &column, qint64 row) {
        sqlite3_stmt *stmt = nullptr;
        const QByteArray sql = QStringLiteral("UPDATE \"%1\" SET \"%2\" = ? WHERE pk = %3")
                                   .arg(table, column)
                                   .arg(row)
                                   .toUtf8();
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK) {
            sqlite3_finalize(stmt);
            return QStringLiteral("(no statement for %1.%2)").arg(table, column);
        }
        QString value;
        switch (below(9)) {
        case 0:
        case 1: {
            const qint64 number = oddNumber();
            sqlite3_bind_int64(stmt, 1, number);
            value = QString::number(number);
            break;
        }
        case 2:
            sqlite3_bind_null(stmt, 1);
            value = QStringLiteral("NULL");
            break;
        case 3: {
            static const double reals[] = {0.5, -1e308, 1e308, 2.5e-300,
                                           std::numeric_limits<double>::quiet_NaN()};
            const double real = reals[below(int(std::size(reals)))];
            sqlite3_bind_double(stmt, 1, real);
            value = QString::number(real);
            break;
        }
        case 4: {
            static const char *texts[] = {"",
                                          "abc",
                                          "NaN",
                                          "-0",
                                          "1e400",
                                          "12.345.6",
                                          "99999999999999999999999999999999999999999999999",
                                          "x-billfold://nowhere/Invoice/p0",
                                          "\xff\xfe\x80"};
            const char *text = texts[below(int(std::size(texts)))];
            sqlite3_bind_text(stmt, 1, text, -1, SQLITE_TRANSIENT);
            value = QStringLiteral("'%1'").arg(QString::fromUtf8(text));
            break;
        }
        case 5: {
            const QByteArray huge(1 << (10 + below(9)), "Wé\0x"[below(4)]);
            sqlite3_bind_text(stmt, 1, huge.constData(), int(huge.size()), SQLITE_TRANSIENT);
            value = QStringLiteral("a text of %1 bytes").arg(huge.size());
            break;
        }
        default: {
            QByteArray blob(below(64), '\0');
            for (char &c : blob)
                c = char(below(256));
            sqlite3_bind_blob(stmt, 1, blob.constData(), int(blob.size()), SQLITE_TRANSIENT);
            value = QStringLiteral("a blob of %1 bytes").arg(blob.size());
            break;
        }
        }
        sqlite3_step(stmt);
        sqlite3_finalize(stmt);
        return QStringLiteral("%1.%2 of row %3 = %4").arg(table, column).arg(row).arg(value);
    }

    std::mt19937_64 m_random;
    const QList<Table> &m_tables;
};

QList<Table> tablesOf(const QString &path) {
    QList<Table> tables;
    sqlite3 *db = nullptr;
    // Not read-only: only a connection that may write takes the log away as it closes.
    sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_stmt *names = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT name FROM sqlite_master WHERE type = 'table' AND name LIKE 'E\\_%' "
                       "ESCAPE '\\' ORDER BY name",
                       -1, &names, nullptr);
    while (sqlite3_step(names) == SQLITE_ROW) {
        Table table;
        table.name =
            QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(names, 0)));
        sqlite3_stmt *columns = nullptr;
        const QByteArray sql = QStringLiteral("PRAGMA table_info(\"%1\")").arg(table.name).toUtf8();
        sqlite3_prepare_v2(db, sql.constData(), -1, &columns, nullptr);
        while (sqlite3_step(columns) == SQLITE_ROW) {
            const QString column =
                QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(columns, 1)));
            if (column.startsWith(QLatin1String("a_")))
                table.values.append(column);
            else if (column.startsWith(QLatin1String("r_")) && column.endsWith(QLatin1String("_e")))
                table.kinds.append(column);
            else if (column.startsWith(QLatin1String("r_")))
                table.links.append(column);
        }
        sqlite3_finalize(columns);
        tables.append(table);
    }
    sqlite3_finalize(names);
    sqlite3_close(db);
    return tables;
}

quint64 chosenSeed() {
    bool ok = false;
    const quint64 given = qEnvironmentVariable("BILLFOLD_FUZZ_SEED").toULongLong(&ok);
    return ok ? given : std::random_device{}();
}

int chosenSeconds() {
    bool ok = false;
    const int given = qEnvironmentVariableIntValue("BILLFOLD_FUZZ_SECONDS", &ok);
    return ok && given > 0 ? given : 15;
}

} // namespace

TEST(CliDocumentFuzz, DamagedDocumentsWorkOrFailWithOneClearLine) {
    const quint64 seed = chosenSeed();
    const int seconds = chosenSeconds();
    std::printf("fuzz seed %llu for %d s (BILLFOLD_FUZZ_SEED=%llu repeats the cases)\n",
                static_cast<unsigned long long>(seed), seconds,
                static_cast<unsigned long long>(seed));
    std::fflush(stdout);

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString sample = dir.filePath(QStringLiteral("sample.tadb"));
    const QString file = dir.filePath(QStringLiteral("case.tadb"));
    const QString now = QStringLiteral("2025-03-10T12:00:00Z");
    ASSERT_EQ(CliRun::of({"new", sample, "--sample", "--now", now}).status, 0);
    const QList<Table> tables = tablesOf(sample);
    ASSERT_GT(tables.size(), 10);
    const QStringList kinds = CliListing::kinds();
    const auto files = [&dir] {
        return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).join(u' ').toStdString();
    };
    const std::string expectedFiles = "case.tadb sample.tadb";

    const QRegularExpression clearReason(
        QStringLiteral("^(The document “case\\.tadb” |“case\\.tadb” |[A-Z][A-Za-z]+/[0-9]+\\.)"));
    QElapsedTimer clock;
    clock.start();
    int cases = 0, refused = 0;
    for (quint64 round = 0; clock.elapsed() < seconds * 1000; ++round) {
        // Each case has a generator of its own, so that one case can be told apart.
        Mutator mutator(seed + round, tables);
        QFile::remove(file);
        ASSERT_TRUE(QFile::copy(sample, file));
        QStringList done;
        const int how = mutator.below(4);
        if (how != 3)
            done += mutator.mutateRows(file);
        if (how >= 2)
            done += mutator.mutateBytes(file);
        ASSERT_EQ(files(), expectedFiles) << "the mutation left a log";
        const QByteArray before = fileHash(file);
        SCOPED_TRACE(QStringLiteral("case %1 of seed %2: %3")
                         .arg(round)
                         .arg(seed)
                         .arg(done.join(QStringLiteral("; ")))
                         .toStdString());
        const QStringList commands[] = {
            {"info", file},
            {"list", mutator.pick(kinds), file, "--format", mutator.below(2) ? "csv" : "json"},
            {"export-json", file},
        };
        for (const QStringList &arguments : commands) {
            const CliRun run = CliRun::of(arguments + QStringList{"--now", now});
            SCOPED_TRACE(arguments.join(u' ').toStdString());
            ASSERT_TRUE(run.status == 0 || run.status == 2) << run.err.toStdString();
            if (run.status == 2) {
                ++refused;
                // One line naming the file, then the document or the object of it at fault:
                // no bare message of the database underneath.
                const QString prefix = QStringLiteral("billfold-cli: %1: ").arg(file);
                EXPECT_TRUE(run.err.startsWith(prefix)) << run.err.toStdString();
                EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
                EXPECT_TRUE(run.err.mid(prefix.size()).contains(clearReason))
                    << run.err.toStdString();
                EXPECT_TRUE(run.out.isEmpty()) << "no half-read document is reported";
            } else {
                EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
                EXPECT_FALSE(run.out.isEmpty());
            }
            EXPECT_EQ(fileHash(file), before) << "reading changed the file";
            ASSERT_EQ(files(), expectedFiles) << "files were left beside the document";
        }
        ++cases;
    }
    std::printf("%d damaged documents, %d refusals\n", cases, refused);
    EXPECT_GT(cases, 0);
}
