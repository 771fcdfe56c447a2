#include "shell/application/TAWelcomeWindow.h"

#include "billing/preferences/TAGlobalPreferences.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class WelcomeWindow : public ::testing::Test {
protected:
    void SetUp() override {
        const auto commands = {&TAWelcomeWindow::welcomeNew, &TAWelcomeWindow::welcomeOpenSample,
                               &TAWelcomeWindow::welcomeOpenExisting,
                               &TAWelcomeWindow::welcomeImportLumarin3,
                               &TAWelcomeWindow::welcomeClose};
        const QStringList names{"new", "sample", "existing", "import", "close"};
        int index = 0;
        // Each command records its name and whether the window was still up when it came.
        for (auto signal : commands) {
            const QString name = names[index++];
            QObject::connect(&window, signal, &window, [this, name] {
                received << name + (window.isVisible() ? QStringLiteral(":shown")
                                                       : QStringLiteral(":hidden"));
            });
        }
        window.showWelcome();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    QAbstractButton *button(const QString &text) const {
        for (auto *candidate : window.findChildren<QAbstractButton *>())
            if (candidate->text() == text)
                return candidate;
        ADD_FAILURE() << "no button " << text.toStdString();
        return nullptr;
    }
    QWidget *focused() const { return QApplication::focusWidget(); }
    void press(Qt::Key key) { QTest::keyClick(focused(), key); }

    QTemporaryDir dir;
    QSettings settings{dir.filePath(QStringLiteral("Billfold.ini")), QSettings::IniFormat};
    TAGlobalPreferences preferences{&settings};
    TAWelcomeWindow window{preferences};
    QStringList received;
};

const QString kNew = QStringLiteral("Create a New Document");
const QString kSample = QStringLiteral("Open the Sample Business");
const QString kExisting = QStringLiteral("Open an Existing Document…");
const QString kImport = QStringLiteral("Import from Lumarin 3…");

} // namespace

TEST_F(WelcomeWindow, CommandsThatShowSomethingElseHideTheWindowFirst) {
    QTest::mouseClick(button(kNew), Qt::LeftButton);
    QTest::mouseClick(button(kSample), Qt::LeftButton);
    EXPECT_EQ(received, (QStringList{"new:shown", "sample:shown"}));

    QTest::mouseClick(button(kExisting), Qt::LeftButton);
    EXPECT_EQ(received.last(), QStringLiteral("existing:hidden"));

    window.showWelcome();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::mouseClick(button(QStringLiteral("Close")), Qt::LeftButton);
    EXPECT_EQ(received.last(), QStringLiteral("close:hidden"));
    EXPECT_FALSE(window.isVisible());
}

TEST_F(WelcomeWindow, ImportIsVisiblyUnavailable) {
    QAbstractButton *import = button(kImport);
    ASSERT_NE(import, nullptr);
    EXPECT_FALSE(import->isEnabled());
    EXPECT_TRUE(import->toolTip().contains(QStringLiteral("not available yet")));
    QTest::mouseClick(import, Qt::LeftButton);
    EXPECT_TRUE(received.isEmpty());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(WelcomeWindow, KeyboardRunsTopToBottomEnterActsAndEscapeCloses) {
    ASSERT_EQ(focused(), button(kNew));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), button(kSample));
    press(Qt::Key_Return);
    EXPECT_EQ(received, QStringList{"sample:shown"});
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), button(kExisting));
    // The unavailable import is passed over.
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), window.findChild<QCheckBox *>());
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), button(QStringLiteral("Close")));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), button(kNew));

    press(Qt::Key_Escape);
    EXPECT_EQ(received.last(), QStringLiteral("close:hidden"));
    EXPECT_FALSE(window.isVisible());

    window.showWelcome();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Enter);
    EXPECT_EQ(received.last(), QStringLiteral("existing:hidden"));
}

TEST_F(WelcomeWindow, TheBoxSaysDontShowThePreferenceSaysShow) {
    auto *box = window.findChild<QCheckBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(preferences.showWelcomeWindow());
    EXPECT_FALSE(box->isChecked());
    QTest::mouseClick(box, Qt::LeftButton);
    EXPECT_FALSE(preferences.showWelcomeWindow());
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Space);
    EXPECT_TRUE(preferences.showWelcomeWindow());

    // Changed elsewhere (the preferences window) while hidden: shown again, the box follows
    // without writing anything back.
    window.hide();
    preferences.setShowWelcomeWindow(false);
    window.showWelcome();
    EXPECT_TRUE(box->isChecked());
    EXPECT_FALSE(preferences.showWelcomeWindow());
    EXPECT_TRUE(received.isEmpty());
}
