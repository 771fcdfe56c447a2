#include "shell/application/TALaunchState.h"

#include "billing/preferences/TAGlobalPreferences.h"
#include "shell/application/TARecentDocuments.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

// One run of the program: its own settings object on the file the runs share, dropped (and
// written out) at its quit.
class ProgramRun {
public:
    explicit ProgramRun(const QString &file)
        : m_settings(std::make_unique<QSettings>(file, QSettings::IniFormat))
        , m_launch(m_settings.get()) {}

    bool showsWelcome() const { return m_launch.showWelcomeIfNeeded(); }
    void quitWith(int openDocuments) { m_launch.updateWelcomeWindowStatus(openDocuments); }
    void setShowWelcomeWindow(bool show) {
        TAGlobalPreferences(m_settings.get()).setShowWelcomeWindow(show);
    }

private:
    std::unique_ptr<QSettings> m_settings;
    TALaunchState m_launch;
};

} // namespace

TEST(TALaunchState, WelcomeAfterAQuitWithoutDocumentsOnlyWhenThePreferenceIsOn) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Billfold.ini"));
    // A first start ever: nothing remembered, and the preference is on by default.
    EXPECT_TRUE(ProgramRun(file).showsWelcome());

    ProgramRun(file).quitWith(0);
    EXPECT_TRUE(ProgramRun(file).showsWelcome());

    // Documents open at the quit come back by themselves, so no welcome window.
    ProgramRun(file).quitWith(2);
    EXPECT_FALSE(ProgramRun(file).showsWelcome());
    ProgramRun(file).quitWith(1);
    EXPECT_FALSE(ProgramRun(file).showsWelcome());

    ProgramRun(file).quitWith(0);
    ProgramRun(file).setShowWelcomeWindow(false);
    EXPECT_FALSE(ProgramRun(file).showsWelcome());
}

TEST(TALaunchState, QuitWritesTheFileAtOnce) {
    // The process ends right after the quit; the answer must be on disk by then, not in a
    // settings cache.
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Billfold.ini"));
    QSettings settings(file, QSettings::IniFormat);
    TALaunchState launch(&settings);
    launch.updateWelcomeWindowStatus(3);
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_TRUE(written.readAll().contains("hasDocuments=true"));
}

TEST(TALaunchState, DefaultInstancesShareTheUserSettingsFileWithThePreferences) {
    // The welcome preference, the quit state and the recent list must land in one file, or
    // the next start would read a different one than this run wrote.
    static QTemporaryDir home;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, home.path());
    const QString file = home.filePath(QStringLiteral("Ostrel/Billfold.ini"));

    TAGlobalPreferences::sharedInstance().setShowWelcomeWindow(true);
    TALaunchState().updateWelcomeWindowStatus(0);
    TARecentDocuments().note(QStringLiteral("/books/2026.tadb"));

    QSettings written(file, QSettings::IniFormat);
    EXPECT_EQ(written.value(QStringLiteral("hasDocuments")), false);
    EXPECT_EQ(written.value(QStringLiteral("recentDocuments")).toStringList(),
              QStringList{QStringLiteral("/books/2026.tadb")});
    EXPECT_TRUE(TALaunchState().showWelcomeIfNeeded());
    TAGlobalPreferences::sharedInstance().setShowWelcomeWindow(false);
    EXPECT_FALSE(TALaunchState().showWelcomeIfNeeded());
}

TEST(TALaunchState, ReopenWithoutWindowOpensTheLastDocumentOrWelcomesNeverANewOne) {
    QTemporaryDir dir;
    QSettings settings(dir.filePath(QStringLiteral("Billfold.ini")), QSettings::IniFormat);
    TARecentDocuments recent(&settings);
    using Action = TALaunchState::ReopenAction;

    EXPECT_EQ(TALaunchState::reopenAction(false, recent), Action::ShowWelcome);
    EXPECT_EQ(TALaunchState::reopenAction(true, recent), Action::Nothing);
    recent.note(dir.filePath(QStringLiteral("gone.tadb")));
    EXPECT_EQ(TALaunchState::reopenAction(false, recent), Action::OpenLastRecent);
    EXPECT_EQ(TALaunchState::reopenAction(true, recent), Action::Nothing);
}
