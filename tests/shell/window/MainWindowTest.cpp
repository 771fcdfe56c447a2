#include "billing/preferences/TAGlobalPreferences.h"
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "objectstore/ManagedObjectContext.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAMainMenu.h"
#include "shell/projects/TAProjectsController.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/sidebar/TAGroupsModel.h"
#include "shell/sidebar/TAGroupsOutlineView.h"
#include "shell/undo/TAUndoContentView.h"
#include "shell/undo/TAUndoMenuActions.h"
#include "shell/undo/TAUndoWindow.h"
#include "shell/window/TAMainWindow.h"
#include "store/TAEntityCreation.h"
#include "store/TAGlobal.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        QStandardPaths::setTestModeEnabled(true);
        TAGlobalPreferences::sharedInstance().settings().clear();
        auto made = TADocumentController::sharedDocumentController().openUntitledDocument();
        ASSERT_TRUE(made.ok());
        document = *made;
        window = TAMainWindow::forDocument(document);
        ASSERT_TRUE(window);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }
    void TearDown() override {
        TADocumentController::sharedDocumentController().closeDocument(document);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    TAGroupsController &groups() { return *window->groupsController(); }
    TAGroupsOutlineView &sidebar() { return *window->sidebar(); }
    TAPreferences &preferences() { return *document->preferences(); }
    ManagedObjectContext *context() { return document->managedObjectContext(); }

    QStringList rowTitles() {
        QStringList titles;
        const QAbstractItemModel *model = sidebar().model();
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex index = model->index(row, 0);
            titles.append(index.data().toString());
            for (int child = 0; child < model->rowCount(index); ++child)
                titles.append("  " + model->index(child, 0, index).data().toString());
        }
        return titles;
    }
    QString selectedTitle() {
        const QModelIndexList selected = sidebar().selectionModel()->selectedIndexes();
        return selected.isEmpty() ? QString() : selected.constFirst().data().toString();
    }
    void clickRow(const QString &title) {
        const QModelIndexList found =
            sidebar().model()->match(sidebar().model()->index(0, 0), Qt::DisplayRole, title, 1,
                                     Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(found.size(), 1) << title.toStdString();
        sidebar().scrollTo(found.constFirst());
        QTest::mouseClick(sidebar().viewport(), Qt::LeftButton, {},
                          sidebar().visualRect(found.constFirst()).center());
    }
    TAProject *makeProject(const QString &name) {
        TAProject *project = TAEntityCreation::createProjectInContext(context());
        project->setName(name);
        project->setStatus(2);
        return project;
    }

    TAApplicationDelegate delegate;
    QTemporaryDir dir;
    TADocument *document = nullptr;
    TAMainWindow *window = nullptr;
};

} // namespace

TEST_F(MainWindowTest, SidebarFollowsTheShowPreferencesAndFallsBackToTheFirstSection) {
    EXPECT_EQ(rowTitles(), QStringList({"MANAGE", "Invoices", "Recurring", "Inventory", "Clients",
                                        "Projects", "Reports"}));
    EXPECT_EQ(selectedTitle(), "Invoices");
    EXPECT_EQ(window->currentTabIdentifier(), "Invoices");
    // Views find their document through their window.
    EXPECT_EQ(TAGlobal::documentForView(window->sidebar()->viewport()), document);

    clickRow("Reports");
    EXPECT_EQ(window->currentTabIdentifier(), "Reports");
    EXPECT_EQ(groups().currentController(), window->sectionForKey("Reports"));
    // The heading is no section: clicking it changes nothing.
    clickRow("MANAGE");
    EXPECT_EQ(selectedTitle(), "Reports");

    preferences().setShowReports(false);
    document->reloadSidebar();
    EXPECT_FALSE(rowTitles().contains("Reports"));
    EXPECT_EQ(selectedTitle(), "Invoices");
    EXPECT_EQ(window->currentTabIdentifier(), "Invoices");

    for (auto set : {&TAPreferences::setShowInvoices, &TAPreferences::setShowRecurring,
                     &TAPreferences::setShowInventory, &TAPreferences::setShowClients,
                     &TAPreferences::setShowProjects})
        (preferences().*set)(false);
    document->reloadSidebar();
    EXPECT_EQ(rowTitles(), QStringList({"MANAGE"}));
    EXPECT_EQ(selectedTitle(), QString());
    EXPECT_EQ(window->currentTabIdentifier(), "Empty");
}

TEST_F(MainWindowTest, ClosedProjectLeavesAtTheNextReloadAndProjectsTakesTheSelection) {
    makeProject("Alpha");
    TAProject *beta = makeProject("Beta");
    preferences().setGroupsExpandedProjects(true);
    document->reloadSidebar();
    ASSERT_TRUE(rowTitles().contains("  Beta"));
    clickRow("Beta");
    EXPECT_EQ(window->currentTabIdentifier(), "Projects");
    EXPECT_EQ(window->projectsController()->project(), beta);

    // The status commands offer only the statuses the project does not have.
    QMenu *menu = groups().menuForRow(sidebar().currentIndex());
    menu->popup(window->mapToGlobal(QPoint(20, 20)));
    QMenu *status = nullptr;
    for (QAction *action : menu->actions())
        if (action->menu())
            status = action->menu();
    ASSERT_TRUE(status);
    status->popup(window->mapToGlobal(QPoint(40, 40)));
    QStringList enabled;
    for (QAction *action : status->actions())
        if (action->isEnabled())
            enabled.append(action->text());
    EXPECT_EQ(enabled, QStringList({"Draft", "Closed"}));
    // Closing keeps the row until the sidebar is built again.
    QTest::mouseClick(status, Qt::LeftButton, {},
                      status->actionGeometry(status->actions().at(2)).center());
    menu->hide();
    EXPECT_EQ(beta->status(), 3);
    EXPECT_TRUE(rowTitles().contains("  Beta"));

    document->reloadSidebar();
    EXPECT_FALSE(rowTitles().contains("  Beta"));
    EXPECT_TRUE(rowTitles().contains("  Alpha"));
    EXPECT_EQ(selectedTitle(), "Projects");
    EXPECT_EQ(window->currentTabIdentifier(), "Projects");
    EXPECT_EQ(window->projectsController()->project(), nullptr);
}

TEST_F(MainWindowTest, RestoringIgnoresADeletedProjectAndKeepsTheSelection) {
    TAProject *gamma = makeProject("Gamma");
    preferences().setGroupsExpandedProjects(true);
    document->reloadSidebar();
    ASSERT_TRUE(document->saveAs(dir.filePath("Restore.tadb")).ok()); // lasting object ids
    clickRow("Gamma");
    const QVariantMap state = groups().restorableState();
    EXPECT_EQ(state.value("selectedGroupObject").typeId(), QMetaType::QString);

    clickRow("Clients");
    groups().restoreState(state);
    EXPECT_EQ(selectedTitle(), "Gamma");

    context()->deleteObject(gamma);
    context()->processPendingChanges();
    document->reloadSidebar();
    clickRow("Clients");
    groups().restoreState(state);
    EXPECT_EQ(selectedTitle(), "Clients");
    EXPECT_EQ(window->currentTabIdentifier(), "Clients");

    groups().restoreState({{"selectedGroupObject", 5}});
    EXPECT_EQ(selectedTitle(), "Reports");
}

TEST_F(MainWindowTest, SidebarRenameIsOneUndoStepWithTheWholeWindowReloaded) {
    makeProject("Alpha");
    preferences().setGroupsExpandedProjects(true);
    context()->processPendingChanges();
    context()->undoManager()->removeAllActions();
    document->reloadSidebar();
    clickRow("Alpha");
    sidebar().setFocus();
    QTest::keyClick(&sidebar(), Qt::Key_F2);
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    ASSERT_TRUE(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "Omega");
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents(); // the view commits the edit on its next turn
    context()->processPendingChanges();
    EXPECT_TRUE(rowTitles().contains("  Omega"));

    auto *menu = window->findChild<TAMainMenu *>();
    ASSERT_TRUE(menu);
    QAction *undo = menu->undoActions()->undoAction();
    QAction *redo = menu->undoActions()->redoAction();
    // A rename has no group name of its own: the commands read plainly.
    EXPECT_TRUE(undo->isEnabled());
    EXPECT_EQ(undo->text().remove(u'&'), "Undo");
    EXPECT_FALSE(redo->isEnabled());

    undo->trigger();
    EXPECT_TRUE(rowTitles().contains("  Alpha"));
    EXPECT_EQ(selectedTitle(), "Alpha"); // the reload keeps the row
    ASSERT_TRUE(TAUndoWindow::instance());
    EXPECT_EQ(TAUndoWindow::instance()->contentView()->string().trimmed(), "Undo");
    EXPECT_TRUE(redo->isEnabled());
    EXPECT_FALSE(undo->isEnabled());

    redo->trigger();
    EXPECT_TRUE(rowTitles().contains("  Omega"));
    EXPECT_EQ(TAUndoWindow::instance()->contentView()->string().trimmed(), "Redo");

    // Folding the projects row is no step of its own.
    const int steps = context()->undoManager()->undoCount();
    sidebar().collapse(groups().model().indexOfKey("Projects"));
    context()->processPendingChanges();
    EXPECT_FALSE(preferences().groupsExpandedProjects());
    EXPECT_EQ(context()->undoManager()->undoCount(), steps);
}

TEST_F(MainWindowTest, MenuCommandsFollowTheirTagsTheLockAndModalWindows) {
    auto *menu = window->findChild<TAMainMenu *>();
    ASSERT_TRUE(menu);
    menu->validate();
    for (int tag : {2103, 2104, 21055, 2105, 2106, 2121})
        EXPECT_TRUE(menu->actionWithTag(tag)->isEnabled()) << tag;
    EXPECT_FALSE(menu->actionWithTag(19)->isEnabled()); // nothing to import from

    preferences().setPassword("secret");
    document->reloadSidebar();
    menu->validate();
    EXPECT_TRUE(menu->actionWithTag(2121)->isEnabled());
    EXPECT_TRUE(menu->actionWithTag(2103)->isEnabled());
    EXPECT_FALSE(menu->actionWithTag(2105)->isEnabled());
    EXPECT_FALSE(menu->actionWithTag(2106)->isEnabled());

    QMessageBox modal(QMessageBox::Information, "Busy", "A question", QMessageBox::Ok, window);
    modal.setWindowModality(Qt::ApplicationModal);
    modal.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&modal));
    menu->validate();
    for (int tag : {2103, 2104, 21055, 2105, 2106, 2121, 3131})
        EXPECT_FALSE(menu->actionWithTag(tag)->isEnabled()) << tag;
    modal.close();
}

TEST_F(MainWindowTest, SectionsAreReachedWithTheKeyboardAlone) {
    makeProject("Alpha");
    document->reloadSidebar();
    QApplication::setActiveWindow(window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    sidebar().setFocus();
    QTest::keyClick(&sidebar(), Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), "Recurring");
    EXPECT_EQ(window->currentTabIdentifier(), "Recurring");
    // The heading is skipped going up: the first section stays selected.
    QTest::keyClick(&sidebar(), Qt::Key_Up);
    QTest::keyClick(&sidebar(), Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), "Invoices");

    QTest::keyClick(window, Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(window->currentTabIdentifier(), "Clients");
    QTest::keyClick(window, Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(window->currentTabIdentifier(), "Reports");

    // Right opens "Projects" and Down walks into its projects.
    QTest::keyClick(window, Qt::Key_5, Qt::ControlModifier);
    EXPECT_EQ(selectedTitle(), "Projects");
    QTest::keyClick(&sidebar(), Qt::Key_Right);
    QTest::keyClick(&sidebar(), Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), "Alpha");
    EXPECT_EQ(window->projectsController()->project(), groups().selectedProject());
}
