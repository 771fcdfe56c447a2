// The launcher entry and the document type that the install puts into the desktop.
#include "toolkit/OTIcons.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace {

const QString desktopDir = QStringLiteral(BILLFOLD_SOURCE_DIR "/src/resources/desktop/");
const QString desktopFile = desktopDir + "com.ostrel.Billfold.desktop";
const QString mimeFile = desktopDir + "com.ostrel.Billfold.xml";
const QString documentType = QStringLiteral("application/x-billfold-document");

QMap<QString, QString> desktopEntry() {
    QFile file(desktopFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QMap<QString, QString> entry;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n')) {
        qsizetype equals = line.indexOf('=');
        if (equals > 0)
            entry.insert(line.left(equals), line.mid(equals + 1));
    }
    return entry;
}

struct MimeType {
    QString type;
    QString comment;
    QStringList globs;
    QStringList parents;
};

QList<MimeType> mimeTypes(QString *error) {
    QFile file(mimeFile);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return {};
    }
    QList<MimeType> types;
    QXmlStreamReader xml(&file);
    const QString ns = QStringLiteral("http://www.freedesktop.org/standards/shared-mime-info");
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.namespaceUri() != ns)
            continue;
        if (xml.name() == u"mime-type")
            types.append({xml.attributes().value("type").toString(), {}, {}, {}});
        else if (xml.name() == u"comment" && !types.isEmpty())
            types.last().comment = xml.readElementText();
        else if (xml.name() == u"glob" && !types.isEmpty())
            types.last().globs.append(xml.attributes().value("pattern").toString());
        else if (xml.name() == u"sub-class-of" && !types.isEmpty())
            types.last().parents.append(xml.attributes().value("type").toString());
    }
    if (xml.hasError())
        *error = xml.errorString();
    return types;
}

} // namespace

TEST(DesktopEntry, LaunchesTheProgramForItsDocumentsUnderTheApplicationId) {
    QMap<QString, QString> entry = desktopEntry();
    ASSERT_FALSE(entry.isEmpty()) << desktopFile.toStdString();
    EXPECT_EQ(entry.value("Type"), "Application");
    EXPECT_EQ(entry.value("Exec"), "billfold %F");
    EXPECT_EQ(entry.value("Icon"), OTIcons::applicationId());
    EXPECT_TRUE(entry.value("MimeType").split(';').contains(documentType));
    // Qt names the X11 window class after the application name, which the program sets to this.
    EXPECT_EQ(entry.value("StartupWMClass"), "Billfold");
    EXPECT_TRUE(entry.value("Categories").split(';').contains("Office"));
}

TEST(DesktopEntry, PassesTheDesktopFileValidator) {
    QString validator = QStandardPaths::findExecutable("desktop-file-validate");
    if (validator.isEmpty())
        GTEST_SKIP() << "desktop-file-validate is not installed (package desktop-file-utils)";
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(validator, {desktopFile});
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
}

TEST(DesktopEntry, DocumentTypeIsAnSqliteFileNamedTadb) {
    QString error;
    QList<MimeType> types = mimeTypes(&error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    ASSERT_EQ(types.size(), 1);
    EXPECT_EQ(types[0].type, documentType);
    EXPECT_EQ(types[0].comment, "Billfold document");
    EXPECT_EQ(types[0].globs, QStringList{"*.tadb"});
    EXPECT_EQ(types[0].parents, QStringList{"application/vnd.sqlite3"});

    // The desktop's own compiler of the database must accept the file as it stands.
    QString updater = QStandardPaths::findExecutable("update-mime-database");
    if (updater.isEmpty())
        return;
    QTemporaryDir dataDir;
    ASSERT_TRUE(dataDir.isValid());
    QString mimeDir = dataDir.filePath("mime");
    ASSERT_TRUE(QDir().mkpath(mimeDir + "/packages"));
    ASSERT_TRUE(QFile::copy(mimeFile, mimeDir + "/packages/com.ostrel.Billfold.xml"));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(updater, {mimeDir});
    ASSERT_TRUE(process.waitForFinished(30000));
    ASSERT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    QFile globs(mimeDir + "/globs2");
    ASSERT_TRUE(globs.open(QIODevice::ReadOnly));
    EXPECT_TRUE(globs.readAll().contains("application/x-billfold-document:*.tadb"));
}
