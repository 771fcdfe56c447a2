#pragma once

#include <QSettings>

#include <memory>

// The settings that belong to the user rather than to a document. Values are read afresh at
// each use, so a change made elsewhere shows at once.
class TAGlobalPreferences {
public:
    // The process-wide instance, on the user's settings file.
    static TAGlobalPreferences &sharedInstance();
    // An instance on given settings (a temporary file in tests); it does not own them.
    explicit TAGlobalPreferences(QSettings *settings);

    bool showWelcomeWindow() const;
    void setShowWelcomeWindow(bool value);
    // Seconds without input before the user counts as idle.
    qint64 idleTime() const;
    void setIdleTime(qint64 seconds);

    // The user's settings file itself, for the program's other per-user state (recent
    // documents, window frames), so that everything lands in one file.
    QSettings &settings() const { return *m_settings; }

private:
    TAGlobalPreferences();

    std::unique_ptr<QSettings> m_owned;
    QSettings *m_settings;
};
