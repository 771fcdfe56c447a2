// TAApplication must be the process's application object, so this test has its own main.
#include "shell/application/TAApplication.h"

#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "invoicelayout/LMBuiltInTemplates.h"
#include "shell/application/TAAboutBox.h"
#include "store/TAApplicationHooks.h"

#include <QSettings>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

TADocumentController &controller() {
    return TADocumentController::sharedDocumentController();
}

} // namespace

TEST(TAApplication, NamesMatchTheDesktopFileAndTheSettingsFile) {
    auto *app = TAApplication::instance();
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(app->desktopFileName(), QStringLiteral("com.ostrel.Billfold"));
    EXPECT_FALSE(app->quitOnLastWindowClosed());
    // The preferences, the recent list and the quit state all read this file.
    EXPECT_TRUE(QSettings(QSettings::IniFormat, QSettings::UserScope,
                          QCoreApplication::organizationName(), QCoreApplication::applicationName())
                    .fileName()
                    .endsWith(QStringLiteral("/Ostrel/Billfold.ini")));

    const QString version = TAApplication::aboutBoxVersion();
    EXPECT_TRUE(version.startsWith(QStringLiteral("Version ") + app->applicationVersion() +
                                   QStringLiteral(" (")))
        << version.toStdString();
    EXPECT_TRUE(version.endsWith(TAApplication::buildVersion() + QLatin1Char(')')));
    EXPECT_FALSE(app->applicationVersion().isEmpty());
    EXPECT_FALSE(TAApplication::buildVersion().isEmpty());
    TAAboutBox about;
    EXPECT_TRUE(about.informativeText().contains(version));
}

TEST(TAApplication, UndoWindowIsOnOnlyWhileNeitherRevertingNorInVersions) {
    TAApplicationHooks::ScopedTemplateSeeder seeder{&LMBuiltInTemplates::seedBuiltInTemplates};
    auto first = controller().openUntitledDocument();
    auto second = controller().openUntitledDocument();
    ASSERT_TRUE(first.ok() && second.ok());
    auto undoWindows = [&] {
        return QList<bool>{(*first)->undoWindowEnabled(), (*second)->undoWindowEnabled()};
    };
    ASSERT_EQ(undoWindows(), (QList<bool>{true, true}));

    auto *app = TAApplication::instance();
    app->setReverting(true);
    EXPECT_EQ(undoWindows(), (QList<bool>{false, false}));
    app->setInVersions(true);
    // Either flag alone keeps it off.
    app->setReverting(false);
    EXPECT_EQ(undoWindows(), (QList<bool>{false, false}));
    app->setInVersions(false);
    EXPECT_EQ(undoWindows(), (QList<bool>{true, true}));

    controller().closeDocument(*first);
    controller().closeDocument(*second);
    // With no document left the flags have nothing to act on.
    app->setReverting(true);
    app->setReverting(false);
}

TEST(TAApplication, CloseKeyWindowClosesTheActiveWindowOnly) {
    QWidget back;
    QWidget front;
    back.show();
    front.show();
    front.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&front));
    TAApplication::closeKeyWindow();
    EXPECT_FALSE(front.isVisible());
    EXPECT_TRUE(back.isVisible());
}

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    TAApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
