#include "shell/application/TARecentDocuments.h"

#include <QFileInfo>

namespace {
const QString kRecentDocuments = QStringLiteral("recentDocuments");
}

TARecentDocuments::TARecentDocuments()
    : m_owned(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                          QStringLiteral("Ostrel"), QStringLiteral("Billfold")))
    , m_settings(m_owned.get()) {}

TARecentDocuments::TARecentDocuments(QSettings *settings)
    : m_settings(settings) {}

void TARecentDocuments::note(const QString &path) {
    if (path.isEmpty())
        return;
    // The same file reached by a relative path or through "..", is one entry.
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList list = paths();
    list.removeAll(absolute);
    list.prepend(absolute);
    m_settings->setValue(kRecentDocuments, list.mid(0, kMaximumCount));
}

void TARecentDocuments::clear() {
    m_settings->remove(kRecentDocuments);
}

QStringList TARecentDocuments::paths() const {
    QStringList list = m_settings->value(kRecentDocuments).toStringList();
    list.removeAll(QString());
    return list.mid(0, kMaximumCount);
}

QString TARecentDocuments::first() const {
    const QStringList list = paths();
    return list.isEmpty() ? QString() : list.first();
}
