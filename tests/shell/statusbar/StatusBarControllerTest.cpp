#include "shell/statusbar/TAStatusBarController.h"
#include "shell/statusbar/TAStatusBarGrid.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

// A section as far as the bar is concerned: it remembers which control told it what.
struct Section : QObject {
    QList<QObject *> senders;
    void clicked(QObject *sender) { senders.append(sender); }
};

QList<QWidget *> views(std::initializer_list<QWidget *> list) {
    return QList<QWidget *>(list);
}

} // namespace

TEST(StatusBarController, GridsHoldTheGivenViewsInOrderAfterTheSearchField) {
    TAStatusBarController bar;
    bar.setSearchEnabled(true);
    bar.setLeftViews(views({bar.addButton(), bar.editButton()}),
                     views({bar.printButton(), bar.sendButton()}), views({bar.infoButton()}));
    EXPECT_EQ(bar.bar()->leftGrid()->views(),
              views({bar.searchButton(), bar.addButton(), bar.editButton()}));
    EXPECT_EQ(bar.bar()->centerGrid()->views(), views({bar.printButton(), bar.sendButton()}));
    EXPECT_EQ(bar.bar()->rightGrid()->views(), views({bar.infoButton()}));

    // The next section's buttons replace the left group; those it left out are hidden.
    bar.setLeftViews(views({bar.payButton()}));
    EXPECT_EQ(bar.bar()->leftGrid()->views(), views({bar.searchButton(), bar.payButton()}));
    EXPECT_TRUE(bar.addButton()->isHidden());
    EXPECT_TRUE(bar.editButton()->isHidden());
    EXPECT_FALSE(bar.payButton()->isHidden());

    // A view moved to another group leaves the first one and stays shown.
    bar.setRightViews(views({bar.printButton(), bar.infoButton()}));
    EXPECT_EQ(bar.bar()->centerGrid()->views(), views({bar.sendButton()}));
    EXPECT_EQ(bar.bar()->rightGrid()->views(), views({bar.printButton(), bar.infoButton()}));
    EXPECT_FALSE(bar.printButton()->isHidden());
    bar.setCenterViews({});
    EXPECT_TRUE(bar.bar()->centerGrid()->views().isEmpty());
    EXPECT_TRUE(bar.sendButton()->isHidden());
    EXPECT_EQ(bar.sendButton()->parentWidget(), bar.bar()); // kept for the next section

    // Search off takes the field out and forgets its target; on again puts it first once.
    QObject section;
    bar.searchButton()->setTarget(&section, {}, [](QObject *) {});
    bar.setSearchEnabled(false);
    EXPECT_EQ(bar.bar()->leftGrid()->views(), views({bar.payButton()}));
    EXPECT_TRUE(bar.searchButton()->isHidden());
    EXPECT_EQ(bar.searchButton()->target(), nullptr);
    bar.setSearchEnabled(true);
    bar.setSearchEnabled(true);
    EXPECT_EQ(bar.bar()->leftGrid()->views(), views({bar.searchButton(), bar.payButton()}));
    bar.setLeftViews(views({bar.searchButton(), bar.duplicateButton()}));
    EXPECT_EQ(bar.bar()->leftGrid()->views(), views({bar.searchButton(), bar.duplicateButton()}));
}

TEST(StatusBarController, PuttingButtonsInEnablesThemAndOnlyDisabledLookButtonsDisable) {
    TAStatusBarController bar;
    const QStringList titles = {
        "Add",     "Pay",    "Edit",     "Info",      "Add New",  "Copy",     "Style",
        "Text",    "Shapes", "Colors",   "Fonts",     "Print",    "Send",     "Template",
        "Invoice", "Client", "Projects", "Inventory", "Invoices", "Activity", "Preview"};
    const QList<int> withDisabledLook = {TAStatusBarController::Pay, TAStatusBarController::Print,
                                         TAStatusBarController::Send,
                                         TAStatusBarController::Preview};
    for (int which = 0; which < TAStatusBarController::ButtonCount; ++which) {
        TAStatusBarButton *button = bar.button(TAStatusBarController::Button(which));
        EXPECT_EQ(button->text(), titles.at(which));
        EXPECT_EQ(button->accessibleName(), titles.at(which));
        EXPECT_TRUE(button->isHidden()) << "no button stands anywhere before a section places it";
        button->setEnabled(false);
        EXPECT_EQ(button->isEnabled(), !withDisabledLook.contains(which))
            << titles.at(which).toStdString();
    }

    bar.setLeftViews(views({bar.payButton()}), views({bar.printButton()}), {});
    EXPECT_TRUE(bar.payButton()->isEnabled());
    EXPECT_TRUE(bar.printButton()->isEnabled());
    EXPECT_FALSE(bar.sendButton()->isEnabled()); // not placed, so left as it was

    // A button disabled with its window comes back with the window.
    bar.bar()->setEnabled(false);
    EXPECT_FALSE(bar.addButton()->isEnabled());
    bar.bar()->setEnabled(true);
    EXPECT_TRUE(bar.addButton()->isEnabled());
}

TEST(StatusBarController, ClicksAndKeysInformTheSectionThatHoldsTheButton) {
    TAStatusBarController bar;
    bar.bar()->resize(600, bar.bar()->sizeHint().height());
    bar.setLeftViews(views({bar.addButton(), bar.editButton()}));
    bar.bar()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(bar.bar()));

    Section invoices, clients;
    bar.addButton()->clickActions().addTarget(&invoices, &Section::clicked);
    QTest::mouseClick(bar.addButton(), Qt::LeftButton);
    EXPECT_EQ(invoices.senders, QList<QObject *>{bar.addButton()});

    // Another section takes the button over.
    bar.addButton()->clickActions().clearActions();
    bar.addButton()->clickActions().addTarget(&clients, &Section::clicked);
    QTest::mouseClick(bar.addButton(), Qt::LeftButton);
    bar.addButton()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(bar.addButton(), Qt::Key_Space);
    EXPECT_EQ(invoices.senders.size(), 1);
    EXPECT_EQ(clients.senders, (QList<QObject *>{bar.addButton(), bar.addButton()}));

    // Edit stays down until clicked again, and only counts while it stands in the bar.
    EXPECT_FALSE(bar.isEditing());
    QTest::mouseClick(bar.editButton(), Qt::LeftButton);
    EXPECT_TRUE(bar.isEditing());
    bar.setLeftViews(views({bar.addButton()}));
    EXPECT_FALSE(bar.isEditing());
    bar.setLeftViews(views({bar.editButton()}));
    QTest::mouseClick(bar.editButton(), Qt::LeftButton);
    EXPECT_FALSE(bar.isEditing());
}

TEST(StatusBarController, CentreGroupKeepsToTheMiddleWithoutRunningIntoTheOthers) {
    TAStatusBarController bar;
    TAStatusBarView *view = bar.bar();
    bar.setSearchEnabled(true);
    bar.setLeftViews(views({bar.addButton(), bar.payButton(), bar.editButton()}),
                     views({bar.invoicesButton(), bar.activityButton()}),
                     views({bar.printButton(), bar.previewButton()}));
    view->resize(1200, view->sizeHint().height());
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
    const QRect left = view->leftGrid()->geometry(), center = view->centerGrid()->geometry(),
                right = view->rightGrid()->geometry();
    EXPECT_NEAR(center.center().x(), view->width() / 2, 1);
    EXPECT_LT(left.right(), center.left());
    EXPECT_LT(center.right(), right.left());
    EXPECT_GT(left.left(), 0);
    EXPECT_LT(right.right(), view->width() - 1);
    EXPECT_GE(left.top(), 0);
    EXPECT_LE(left.bottom(), view->height() - 1);

    // At its narrowest the bar still shows every group apart from the others.
    view->resize(view->minimumSizeHint().width(), view->height());
    QCoreApplication::processEvents();
    EXPECT_LT(view->leftGrid()->geometry().right(), view->centerGrid()->geometry().left());
    EXPECT_LT(view->centerGrid()->geometry().right(), view->rightGrid()->geometry().left());
    EXPECT_LT(view->rightGrid()->geometry().right(), view->width());

    // A group that grows while shown is laid out again without the window's help.
    const int widthBefore = view->sizeHint().width();
    bar.setRightViews(views({bar.printButton(), bar.previewButton(), bar.sendButton()}));
    QCoreApplication::processEvents();
    EXPECT_GT(view->sizeHint().width(), widthBefore);
    EXPECT_EQ(view->rightGrid()->geometry().width(), view->rightGrid()->sizeHint().width());
}
