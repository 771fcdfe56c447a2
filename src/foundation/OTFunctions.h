#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

// Shared helpers: the emptiness test, unique names and temporary files.
class OTFunctions {
public:
    // The one emptiness test: null, an invalid or null variant, or a text of length 0.
    static bool isEmptyString(const QVariant &object);
    static bool isEmptyString(const QString &text) { return text.isEmpty(); }

    static QString generateUniqueID();
    static QString generateTemporaryFilePath();
    static QUrl generateTemporaryFileURL();
    // Removes each file or folder, ignoring failures.
    static void deleteFilesAtPaths(const QStringList &paths);
    static void deleteFilesAtURLs(const QList<QUrl> &urls);
    static void moveToTrashFilesAtPaths(const QStringList &paths);

private:
    OTFunctions() = delete;
};
