#include "objectstore/DocumentFileWriter.h"

#include "objectstore/SqliteConnection.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

constexpr qsizetype kChunk = 1 << 20;
// Where the file header records the journal mode: 1 for a rollback journal, 2 for the
// write-ahead log. journal_mode=WAL writes the same two bytes.
constexpr qsizetype kWriteVersionOffset = 18;
constexpr qsizetype kHeaderSize = 100;

Error writeError(const QString &detail) {
    return Error{ErrorCode::WriteFailed, detail};
}

// The memory of a serialized database, freed with it.
struct Image {
    unsigned char *bytes = nullptr;
    sqlite3_int64 size = 0;
    bool owned = false;
    ~Image() {
        if (owned)
            sqlite3_free(bytes);
    }
};

// A scratch database is serialized in place; any other is copied out first.
bool serialize(sqlite3 *db, Image &image) {
    image.bytes = sqlite3_serialize(db, "main", &image.size, SQLITE_SERIALIZE_NOCOPY);
    if (image.bytes)
        return true;
    image.bytes = sqlite3_serialize(db, "main", &image.size, 0);
    image.owned = image.bytes != nullptr;
    return image.owned;
}

// Folds the log of the file about to be replaced into it, so that the log, once stale, can
// never be replayed into the new file. Only the log of a file that is no database is dropped:
// a checkpoint cut short leaves the log whole and in charge, so any other failure keeps both.
Result<void> foldLog(const QString &path) {
    const QFileInfo log(path + QStringLiteral("-wal"));
    if (!log.exists() || log.size() == 0)
        return {};
    // A log whose file is gone belongs to nothing, and would be replayed into the new file.
    if (!QFileInfo::exists(path)) {
        if (!QFile::remove(log.filePath()))
            return writeError(QStringLiteral("an old log beside it could not be removed"));
        return {};
    }
    auto connection = SqliteConnection::open(path, SqliteConnection::Mode::ReadWrite);
    if (!connection)
        return writeError(connection.error().message);
    sqlite3 *db = (*connection)->handle();
    sqlite3_stmt *stmt = nullptr;
    int rc = sqlite3_prepare_v2(db, "PRAGMA wal_checkpoint(TRUNCATE)", -1, &stmt, nullptr);
    const bool stepped = rc == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW;
    const int busy = stepped ? sqlite3_column_int(stmt, 0) : -1;
    rc = sqlite3_extended_errcode(db);
    const int systemError = sqlite3_system_errno(db);
    sqlite3_finalize(stmt);
    if (busy == 0)
        return {};
    const int primary = rc & 0xff;
    if (busy == 1 || primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
        return Error{
            ErrorCode::FileLocked,
            QStringLiteral("“%1” is in use by another program").arg(QFileInfo(path).fileName())};
    if (primary != SQLITE_NOTADB)
        return writeError(QStringLiteral("the file it replaces could not be prepared: %1")
                              .arg(systemError ? qt_error_string(systemError)
                                               : QString::fromUtf8(sqlite3_errstr(rc))));
    if (!QFile::remove(log.filePath()))
        return writeError(QStringLiteral("the log of the file it replaces could not be removed"));
    return {};
}

// The rename that published the file is only lasting once its folder is on the disk too.
void syncFolder(const QString &path) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    // The file itself is safe already; only a crash right now could lose the new name.
    if (::fsync(fd) != 0)
        qWarning("Could not flush the folder of %s: %s", qUtf8Printable(path),
                 std::strerror(errno));
    ::close(fd);
}

// Left by the replaced file: an emptied log and its index. A log that holds frames belongs to
// somebody who opened the new file already.
void removeStaleSideFiles(const QString &path) {
    const QFileInfo log(path + QStringLiteral("-wal"));
    if (log.exists() && log.size() > 0)
        return;
    QFile::remove(log.filePath());
    QFile::remove(path + QStringLiteral("-shm"));
}

} // namespace

Result<std::unique_ptr<SqliteConnection>>
DocumentFileWriter::scratchCopyOf(SqliteConnection &source) {
    Image image;
    // Read in one transaction of the source: the log's commits included, nothing half-done.
    image.bytes = sqlite3_serialize(source.handle(), "main", &image.size, 0);
    if (!image.bytes)
        return writeError(sqlite3_errcode(source.handle()) == SQLITE_OK
                              ? QStringLiteral("out of memory")
                              : source.lastError());
    image.owned = true;
    // A copy in memory keeps its journal in memory; a file's mark for the write-ahead log
    // would send it looking for a log file.
    if (image.size >= kHeaderSize)
        image.bytes[kWriteVersionOffset] = image.bytes[kWriteVersionOffset + 1] = 1;
    auto scratch =
        SqliteConnection::open(QStringLiteral(":memory:"), SqliteConnection::Mode::Create);
    if (!scratch)
        return scratch.error();
    image.owned = false; // the database frees it from now on, also when this call fails
    const int rc =
        sqlite3_deserialize((*scratch)->handle(), "main", image.bytes, image.size, image.size,
                            SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    if (rc != SQLITE_OK)
        return writeError(QString::fromUtf8(sqlite3_errstr(rc)));
    // The default ceiling (1 GiB) would turn a large document into a "full disk".
    sqlite3_int64 limit = sqlite3_int64(1) << 46;
    sqlite3_file_control((*scratch)->handle(), "main", SQLITE_FCNTL_SIZE_LIMIT, &limit);
    // Temporary tables and sorts stay in memory too: the disk may be the very thing that is
    // full.
    if (auto r = (*scratch)->exec(QStringLiteral("PRAGMA temp_store=MEMORY")); !r)
        return r.error();
    return scratch;
}

Result<void> DocumentFileWriter::write(SqliteConnection &connection, const QString &path) {
    Image image;
    if (!serialize(connection.handle(), image))
        return writeError(QStringLiteral("out of memory"));
    if (auto folded = foldLog(path); !folded)
        return folded;
    QSaveFile file(path);
    // Unbuffered: a buffered file reports a failed last write only as it commits, and then
    // not reliably.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return writeError(file.errorString());
    if (auto written = writeImage(
            QByteArrayView(reinterpret_cast<const char *>(image.bytes), qsizetype(image.size)),
            file);
        !written)
        return written; // the unnamed file goes with the QSaveFile
    if (!file.commit())
        return writeError(file.errorString());
    syncFolder(path);
    removeStaleSideFiles(path);
    return {};
}

Result<void> DocumentFileWriter::writeAll(QIODevice &device, QByteArrayView bytes) {
    // A write cut short (a file grown to its limit) reports nothing; the next one says why.
    while (!bytes.isEmpty()) {
        const qint64 written = device.write(bytes.data(), bytes.size());
        if (written <= 0)
            return writeError(device.errorString());
        bytes = bytes.sliced(written);
    }
    return {};
}

Result<void> DocumentFileWriter::writeImage(QByteArrayView image, QIODevice &device) {
    qsizetype at = 0;
    if (image.size() >= kHeaderSize) {
        char header[kHeaderSize];
        std::memcpy(header, image.data(), kHeaderSize);
        header[kWriteVersionOffset] = header[kWriteVersionOffset + 1] = 2;
        if (auto r = writeAll(device, QByteArrayView(header, kHeaderSize)); !r)
            return r;
        at = kHeaderSize;
    }
    while (at < image.size()) {
        const qsizetype size = std::min(kChunk, image.size() - at);
        if (auto r = writeAll(device, image.sliced(at, size)); !r)
            return r;
        at += size;
    }
    return {};
}
