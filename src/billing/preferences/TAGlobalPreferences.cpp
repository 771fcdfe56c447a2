#include "billing/preferences/TAGlobalPreferences.h"

namespace {
const QString kShowWelcomeWindow = QStringLiteral("showWelcomeWindow");
const QString kIdleTime = QStringLiteral("idleTime");
constexpr qint64 kDefaultIdleTime = 300;
} // namespace

TAGlobalPreferences &TAGlobalPreferences::sharedInstance() {
    static TAGlobalPreferences instance;
    return instance;
}

TAGlobalPreferences::TAGlobalPreferences()
    : m_owned(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                          QStringLiteral("Ostrel"), QStringLiteral("Billfold")))
    , m_settings(m_owned.get()) {}

TAGlobalPreferences::TAGlobalPreferences(QSettings *settings)
    : m_settings(settings) {}

bool TAGlobalPreferences::showWelcomeWindow() const {
    return m_settings->value(kShowWelcomeWindow, true).toBool();
}

void TAGlobalPreferences::setShowWelcomeWindow(bool value) {
    m_settings->setValue(kShowWelcomeWindow, value);
}

qint64 TAGlobalPreferences::idleTime() const {
    bool ok = false;
    const qint64 seconds = m_settings->value(kIdleTime).toLongLong(&ok);
    return ok ? seconds : kDefaultIdleTime;
}

void TAGlobalPreferences::setIdleTime(qint64 seconds) {
    m_settings->setValue(kIdleTime, seconds);
}
