#pragma once

#include "foundation/Result.h"

#include <QByteArrayView>
#include <QString>

#include <memory>

class QIODevice;
class SqliteConnection;

// Puts a whole database at a path in one step. The bytes go to an unnamed file beside the
// target, are flushed to the disk, and only then is the file given the target's name: until
// that moment a reader, a crash or a full disk finds the old file there, or none, never a
// part of the new one.
class DocumentFileWriter {
public:
    // A private copy in memory of the source's database, growing as far as memory allows, to
    // assemble a new file in.
    static Result<std::unique_ptr<SqliteConnection>> scratchCopyOf(SqliteConnection &source);

    // Writes the database of `connection` to `path`, replacing a file there. The replaced
    // file's write-ahead log is folded into it first, so that no log of it can be replayed into
    // its successor; a file another program is writing to is not replaced.
    static Result<void> write(SqliteConnection &connection, const QString &path);

    // The image as the file's bytes, marked for the write-ahead log as the store keeps its
    // files; in pieces, so that a failing device is caught where it fails.
    static Result<void> writeImage(QByteArrayView image, QIODevice &device);
    // All the bytes, or the device's reason why not.
    static Result<void> writeAll(QIODevice &device, QByteArrayView bytes);
};
