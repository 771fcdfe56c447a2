#include "shell/application/TALaunchState.h"

#include "billing/preferences/TAGlobalPreferences.h"
#include "shell/application/TARecentDocuments.h"

namespace {
const QString kHasDocuments = QStringLiteral("hasDocuments");
}

TALaunchState::TALaunchState()
    : m_owned(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                          QStringLiteral("Ostrel"), QStringLiteral("Billfold")))
    , m_settings(m_owned.get()) {}

TALaunchState::TALaunchState(QSettings *settings)
    : m_settings(settings) {}

bool TALaunchState::showWelcomeIfNeeded() const {
    return TAGlobalPreferences(m_settings).showWelcomeWindow() &&
           !m_settings->value(kHasDocuments, false).toBool();
}

void TALaunchState::updateWelcomeWindowStatus(int openDocumentCount) {
    m_settings->setValue(kHasDocuments, openDocumentCount >= 1);
    m_settings->sync();
}

TALaunchState::ReopenAction TALaunchState::reopenAction(bool hasVisibleWindows,
                                                        const TARecentDocuments &recent) {
    if (hasVisibleWindows)
        return ReopenAction::Nothing;
    return recent.first().isEmpty() ? ReopenAction::ShowWelcome : ReopenAction::OpenLastRecent;
}
