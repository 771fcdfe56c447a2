#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QString>

// The file's contents and modification time in one value: a command that must leave a file
// alone changes neither, and a rewrite with the same bytes still changes the time.
inline QByteArray fingerprint(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256) +
           QFileInfo(path).lastModified().toString(Qt::ISODateWithMs).toUtf8();
}
