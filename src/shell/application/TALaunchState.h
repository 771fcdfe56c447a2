#pragma once

#include <QSettings>

#include <memory>

class TARecentDocuments;

// What the program shows when it starts or is brought back with no window: the welcome
// window, the last document, or nothing. It remembers at each quit whether documents were
// open, since a user who quit with documents open expects them and not the welcome window.
class TALaunchState {
public:
    enum class ReopenAction { Nothing, OpenLastRecent, ShowWelcome };

    // On the user's settings file.
    TALaunchState();
    // On given settings (a temporary file in tests); it does not own them.
    explicit TALaunchState(QSettings *settings);

    // True when the user wants the welcome window and no documents were open at the last quit.
    bool showWelcomeIfNeeded() const;
    // At quit: remembers whether documents were open, written to disk at once because the
    // process is about to end.
    void updateWelcomeWindowStatus(int openDocumentCount);

    // The program was brought back (its launcher clicked again): a visible window is enough;
    // otherwise the last document, or the welcome window when there is none. Never a new
    // document.
    static ReopenAction reopenAction(bool hasVisibleWindows, const TARecentDocuments &recent);

private:
    std::unique_ptr<QSettings> m_owned;
    QSettings *m_settings;
};
