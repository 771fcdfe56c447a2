#pragma once

#include <QDir>
#include <QString>
#include <QStringList>

// The files of a folder that are neither one of the documents named nor one of their SQLite
// side files: what an interrupted write left behind.
inline QStringList strayFiles(const QString &folder, const QStringList &documents) {
    QStringList left;
    const QStringList names =
        QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        bool known = false;
        for (const QString &document : documents)
            for (const char *suffix : {"", "-wal", "-shm"})
                known = known || name == document + QLatin1String(suffix);
        if (!known)
            left.append(name);
    }
    return left;
}
