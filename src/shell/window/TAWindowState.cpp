#include "shell/window/TAWindowState.h"

#include "billing/preferences/TAGlobalPreferences.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSettings>

namespace {

QString canonical(const QString &path) {
    const QFileInfo info(path);
    const QString resolved = info.canonicalFilePath();
    return resolved.isEmpty() ? info.absoluteFilePath() : resolved;
}

} // namespace

// The path is hashed for the group name: settings keys cannot hold every character of a path.
TAWindowState::TAWindowState(const QString &documentPath)
    : m_group(QStringLiteral("DocumentWindows/") +
              QString::fromLatin1(QCryptographicHash::hash(canonical(documentPath).toUtf8(),
                                                           QCryptographicHash::Sha1)
                                      .toHex())) {}

QByteArray TAWindowState::geometry() const {
    return TAGlobalPreferences::sharedInstance()
        .settings()
        .value(m_group + QStringLiteral("/geometry"))
        .toByteArray();
}

QByteArray TAWindowState::splitter() const {
    return TAGlobalPreferences::sharedInstance()
        .settings()
        .value(m_group + QStringLiteral("/splitter"))
        .toByteArray();
}

QVariantMap TAWindowState::groups() const {
    return TAGlobalPreferences::sharedInstance()
        .settings()
        .value(m_group + QStringLiteral("/TAGroupsController"))
        .toMap();
}

void TAWindowState::save(const QByteArray &geometry, const QByteArray &splitter,
                         const QVariantMap &groups) const {
    QSettings &settings = TAGlobalPreferences::sharedInstance().settings();
    settings.setValue(m_group + QStringLiteral("/geometry"), geometry);
    settings.setValue(m_group + QStringLiteral("/splitter"), splitter);
    settings.setValue(m_group + QStringLiteral("/TAGroupsController"), groups);
}
