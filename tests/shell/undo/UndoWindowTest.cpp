#include "shell/undo/TAUndoContentView.h"
#include "shell/undo/TAUndoWindow.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

class UndoWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        mainWindow = std::make_unique<QMainWindow>();
        mainWindow->setCentralWidget(editor);
        mainWindow->setGeometry(100, 100, 600, 400);
        mainWindow->show();
        mainWindow->activateWindow();
        editor->setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mainWindow.get()));
    }

    QLineEdit *editor = new QLineEdit;
    std::unique_ptr<QMainWindow> mainWindow;
};

TEST_F(UndoWindowTest, MessageFloatsOverTheMainWindowWithoutTakingFocusOrClicks) {
    TAUndoWindow::showAfterUndo(mainWindow.get(), QStringLiteral("Delete Invoices"));
    TAUndoWindow *message = TAUndoWindow::instance();
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->contentView()->string(), QStringLiteral("Undo Delete Invoices"));
    EXPECT_TRUE(message->isVisible());
    EXPECT_TRUE(message->isWindow());
    EXPECT_EQ(message->geometry().center(), mainWindow->frameGeometry().center());

    EXPECT_TRUE(message->windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(message->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(message->testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_TRUE(message->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(message->focusPolicy(), Qt::NoFocus);
    QTest::qWait(50);
    EXPECT_EQ(QApplication::activeWindow(), mainWindow.get());
    EXPECT_EQ(QApplication::focusWidget(), editor) << "typing goes on where it was";
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("ab"));
    EXPECT_EQ(editor->text(), QStringLiteral("ab"));

    // It fades in, stays, fades out and hides by itself.
    EXPECT_TRUE(QTest::qWaitFor([message] { return message->messageOpacity() >= 1.0; }, 2000));
    EXPECT_TRUE(QTest::qWaitFor([message] { return !message->isVisible(); }, 5000));
    EXPECT_FALSE(message->isAnimating());
}

TEST_F(UndoWindowTest, ANewMessageReplacesTheOneFadingAndPlaysItsWholeTimeAgain) {
    TAUndoWindow::displayString(QStringLiteral("Undo Create Invoice"), mainWindow.get(), 0);
    TAUndoWindow *message = TAUndoWindow::instance();
    ASSERT_NE(message, nullptr);
    // Into the fade out of the first message.
    ASSERT_TRUE(QTest::qWaitFor(
        [message] { return message->messageOpacity() < 0.9 && message->messageOpacity() > 0; },
        3000));
    TAUndoWindow::showAfterRedo(mainWindow.get(), QStringLiteral("Create Invoice"));
    EXPECT_EQ(TAUndoWindow::instance(), message) << "one message window per process";
    EXPECT_EQ(message->contentView()->string(), QStringLiteral("Redo Create Invoice"));
    EXPECT_TRUE(message->isVisible());
    EXPECT_TRUE(message->isAnimating());
    EXPECT_TRUE(QTest::qWaitFor([message] { return message->messageOpacity() >= 1.0; }, 2000))
        << "the second message comes back to full view";
    QTest::qWait(TAUndoWindow::DefaultLength / 2);
    EXPECT_TRUE(message->isVisible()) << "and gets its own time";

    // Without a name the message names only what was done; an empty text shows nothing new.
    TAUndoWindow::showAfterUndo(mainWindow.get(), QString());
    EXPECT_EQ(message->contentView()->string(), QStringLiteral("Undo"));
    TAUndoWindow::displayString(QString(), mainWindow.get());
    EXPECT_EQ(message->contentView()->string(), QStringLiteral("Undo"));

    // The message belongs to its main window and goes with it.
    mainWindow.reset();
    EXPECT_EQ(TAUndoWindow::instance(), nullptr);
}

} // namespace
