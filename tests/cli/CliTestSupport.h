#pragma once

#include "support/CliRun.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Runs billfold-cli commands in a process of the test, in a scratch folder.
class CliTest : public ::testing::Test {
protected:
    QString path(const QString &name) const { return dir.filePath(name); }

    CliRun cli(const QStringList &arguments) const { return CliRun::of(arguments); }

    QByteArray read(const QString &name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const QString &name, const QByteArray &bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QStringList files() const {
        return QDir(dir.path())
            .entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir dir;
};
