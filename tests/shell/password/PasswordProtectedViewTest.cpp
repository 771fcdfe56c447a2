#include "shell/password/TAPasswordProtectedView.h"

#include "document/TADocument.h"
#include "store/entities/TAPreferences.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

// A window with a sidebar and a section, the cover over both, and a document locked by the
// password "Secret" unless a test says otherwise.
struct LockedWindow {
    QWidget window;
    QWidget *area = new QWidget(&window);
    QListWidget *sidebar = new QListWidget(area);
    QLabel *section = new QLabel(QStringLiteral("Invoice 2026-001"), area);
    TAPasswordProtectedView *cover = new TAPasswordProtectedView(area);
    TADocument document;

    explicit LockedWindow(const QString &password = QStringLiteral("Secret")) {
        EXPECT_TRUE(document.initUntitled().ok());
        document.preferences()->setPassword(password);
        auto *row = new QHBoxLayout(area);
        row->addWidget(sidebar);
        row->addWidget(section);
        (new QHBoxLayout(&window))->addWidget(area);
        cover->setDocument(&document);
        cover->setCoveredWidgets({sidebar, section});
        window.resize(640, 400);
        window.move(100, 100);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void enter(const QString &text) {
        QTest::keyClicks(cover->passwordField(), text);
        QTest::keyClick(cover->passwordField(), Qt::Key_Return);
    }
};

} // namespace

TEST(PasswordProtectedView, AWrongPasswordShakesTheWindowAndChangesNothing) {
    LockedWindow locked;
    QSignalSpy unlocked(locked.cover, &TAPasswordProtectedView::unlocked);
    locked.cover->passwordField()->setText(QStringLiteral("left over"));
    locked.cover->show();
    EXPECT_TRUE(locked.cover->passwordField()->text().isEmpty());
    EXPECT_TRUE(locked.cover->passwordField()->hasFocus());
    EXPECT_EQ(locked.cover->geometry(), locked.area->rect());
    EXPECT_TRUE(locked.sidebar->isHidden());
    EXPECT_TRUE(locked.section->isHidden());

    const QPoint origin = locked.window.pos();
    locked.enter(QStringLiteral("secret")); // the case counts
    EXPECT_TRUE(locked.cover->isShaking());
    EXPECT_TRUE(locked.cover->isVisible());
    EXPECT_TRUE(locked.document.isLockedWithPassword());
    EXPECT_EQ(locked.cover->passwordField()->text(), QStringLiteral("secret"));
    int farthest = 0;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            farthest = std::max(farthest, std::abs(locked.window.pos().x() - origin.x()));
            return !locked.cover->isShaking();
        },
        2000));
    EXPECT_EQ(farthest, 6) << "one hundredth of the window's width either way";
    EXPECT_EQ(locked.window.pos(), origin);

    // An empty field against a stored password is just as wrong.
    locked.cover->passwordField()->clear();
    QTest::keyClick(locked.cover->passwordField(), Qt::Key_Return);
    EXPECT_TRUE(locked.document.isLockedWithPassword());
    EXPECT_TRUE(locked.cover->isVisible());
    EXPECT_TRUE(locked.sidebar->isHidden());
    EXPECT_EQ(unlocked.count(), 0);

    // The cover follows the area it covers.
    locked.window.resize(900, 500);
    QCoreApplication::processEvents();
    EXPECT_EQ(locked.cover->geometry(), locked.area->rect());
}

TEST(PasswordProtectedView, TheRightPasswordUnlocksAndTheCoverFadesAway) {
    LockedWindow locked;
    QSignalSpy unlocked(locked.cover, &TAPasswordProtectedView::unlocked);
    locked.cover->show();
    QTest::keyClicks(locked.cover->passwordField(), QStringLiteral("Secre"));
    QTest::mouseClick(locked.cover->findChild<QPushButton *>(), Qt::LeftButton);
    EXPECT_TRUE(locked.document.isLockedWithPassword());

    locked.cover->passwordField()->clear();
    locked.enter(QStringLiteral("Secret"));
    EXPECT_FALSE(locked.document.isLockedWithPassword());
    EXPECT_EQ(unlocked.count(), 1);
    EXPECT_FALSE(locked.sidebar->isHidden()) << "the data come back under the fading cover";
    ASSERT_TRUE(QTest::qWaitFor([&] { return locked.cover->isHidden(); }, 2000));
    EXPECT_EQ(locked.cover->graphicsEffect(), nullptr);

    // Put up again, as a reload of a locked document does, it is opaque at once.
    locked.cover->show();
    EXPECT_TRUE(locked.cover->isVisible());
    EXPECT_TRUE(locked.cover->passwordField()->text().isEmpty());
    EXPECT_TRUE(locked.section->isHidden());
    locked.cover->hideWithoutAnimation();
    EXPECT_TRUE(locked.cover->isHidden());
    EXPECT_FALSE(locked.section->isHidden());
}

TEST(PasswordProtectedView, WithoutAStoredPasswordEnterOnlyTakesTheCoverDown) {
    LockedWindow open{QString()};
    QSignalSpy unlocked(open.cover, &TAPasswordProtectedView::unlocked);
    EXPECT_FALSE(open.document.isLockedWithPassword());
    // A cover that was never up leaves alone what the window hid itself.
    open.section->hide();
    open.cover->hideWithoutAnimation();
    EXPECT_TRUE(open.section->isHidden());

    open.cover->show();
    QTest::keyClick(open.cover->passwordField(), Qt::Key_Return);
    EXPECT_FALSE(open.cover->isShaking());
    ASSERT_TRUE(QTest::qWaitFor([&] { return open.cover->isHidden(); }, 2000));
    EXPECT_EQ(unlocked.count(), 0);
}
