#include "shell/undo/TAConfirmWindow.h"

#include <QMainWindow>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// Records each time the window tells its owner, with the answer it read then.
class Owner : public QObject {
public:
    QList<int> answers;
    TAConfirmWindow *window = nullptr;
    void confirmWindowAction() { answers.append(window->confirmWindowCode()); }
};

class ConfirmWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        mainWindow.resize(500, 400);
        mainWindow.show();
        confirm.setMessage(QStringLiteral("Are you sure you want to delete this invoice?"));
        confirm.setButtonsTitles(
            {{"option1", "Restore"}, {"option2", "Delete"}, {"option3", "Cancel"}});
        owner.window = &confirm;
        confirm.clickActions().clearActions();
        confirm.clickActions().addTarget(&owner, &Owner::confirmWindowAction);
    }
    void showOver() {
        confirm.show(&mainWindow);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&confirm));
        EXPECT_EQ(confirm.confirmWindowCode(), 0) << "show clears the last answer";
    }

    QMainWindow mainWindow;
    TAConfirmWindow confirm;
    Owner owner;
};

TEST_F(ConfirmWindowTest, EachButtonAnswersItsNumberOnceAndCloses) {
    for (int code : {1, 2, 3}) {
        showOver();
        EXPECT_TRUE(confirm.isVisible());
        EXPECT_EQ(confirm.windowModality(), Qt::WindowModal);
        EXPECT_EQ(confirm.parentWidget(), &mainWindow);
        QTest::mouseClick(confirm.optionButton(code), Qt::LeftButton);
        EXPECT_EQ(confirm.confirmWindowCode(), code);
        EXPECT_FALSE(confirm.isVisible());
    }
    EXPECT_EQ(owner.answers, (QList<int>{1, 2, 3}));
}

TEST_F(ConfirmWindowTest, EscapeCancelsAndReturnTakesTheFirstOption) {
    showOver();
    QTest::keyClick(&confirm, Qt::Key_Escape);
    EXPECT_EQ(confirm.confirmWindowCode(), 3);
    EXPECT_FALSE(confirm.isVisible());

    showOver();
    QTest::keyClick(&confirm, Qt::Key_Return);
    EXPECT_EQ(confirm.confirmWindowCode(), 1) << "the first option is the default";

    // Closing the window from its frame is a cancel too.
    showOver();
    confirm.close();
    EXPECT_EQ(confirm.confirmWindowCode(), 3);
    EXPECT_EQ(owner.answers, (QList<int>{3, 1, 3}));

    // Without a third button Escape still cancels: the owner then does nothing.
    confirm.setButtonsTitles({{"option1", "Add"}, {"option2", "Skip"}});
    showOver();
    QTest::keyClick(&confirm, Qt::Key_Escape);
    EXPECT_EQ(confirm.confirmWindowCode(), 3);
}

TEST_F(ConfirmWindowTest, MissingOptionsHaveNoButtonAndOthersAnswerNothing) {
    confirm.setButtonsTitles({{"option1", "Add"}, {"option3", "Later"}});
    showOver();
    EXPECT_TRUE(confirm.optionButton(1)->isVisible());
    EXPECT_FALSE(confirm.optionButton(2)->isVisible());
    EXPECT_EQ(confirm.optionButton(3)->text(), QStringLiteral("Later"));
    EXPECT_EQ(confirm.optionButton(1)->text(), QStringLiteral("Add"));

    confirm.confirmButtonClicked(&mainWindow);
    EXPECT_EQ(confirm.confirmWindowCode(), 0) << "a sender that is none of the buttons";
    EXPECT_EQ(owner.answers, (QList<int>{0}));

    // A later title set brings a hidden option back.
    confirm.setButtonsTitles({{"option2", "Skip"}});
    showOver();
    EXPECT_FALSE(confirm.optionButton(1)->isVisible());
    EXPECT_TRUE(confirm.optionButton(2)->isVisible());
    QTest::mouseClick(confirm.optionButton(2), Qt::LeftButton);
    EXPECT_EQ(owner.answers, (QList<int>{0, 2}));
}

} // namespace
