#include "foundation/OTFunctions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

bool OTFunctions::isEmptyString(const QVariant &object) {
    if (!object.isValid() || object.isNull())
        return true;
    return object.metaType() == QMetaType::fromType<QString>() && object.toString().isEmpty();
}

QString OTFunctions::generateUniqueID() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

QString OTFunctions::generateTemporaryFilePath() {
    return QDir(QDir::tempPath()).filePath(generateUniqueID());
}

QUrl OTFunctions::generateTemporaryFileURL() {
    return QUrl::fromLocalFile(generateTemporaryFilePath());
}

void OTFunctions::deleteFilesAtPaths(const QStringList &paths) {
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isDir() && !info.isSymLink())
            QDir(path).removeRecursively();
        else
            QFile::remove(path);
    }
}

void OTFunctions::deleteFilesAtURLs(const QList<QUrl> &urls) {
    QStringList paths;
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    deleteFilesAtPaths(paths);
}

void OTFunctions::moveToTrashFilesAtPaths(const QStringList &paths) {
    for (const QString &path : paths)
        QFile::moveToTrash(path);
}
