#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/UndoManager.h"
#include "shell/undo/TAUndoGroupNames.h"
#include "shell/undo/TAUndoMenuActions.h"
#include "store/TAContextDatabase.h"
#include "store/TADatabase.h"
#include "store/entities/TAClient.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// The title as the menu shows it: mnemonics gone, a doubled ampersand a single one.
std::string shown(const QAction *action) {
    return action->iconText().toStdString();
}

class UndoMenuActionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto opened = TADocumentController::sharedDocumentController().openUntitledDocument();
        ASSERT_TRUE(opened.ok()) << opened.error().message.toStdString();
        document = *opened;
        undo()->removeAllActions();
        client = TAContextDatabase::createClientInContext(db().context());
        client->setFullNameValue(QStringLiteral("first"));
        ctx()->processPendingChanges();
        undo()->removeAllActions();

        actions.addToMenu(window.menuBar()->addMenu(QStringLiteral("&Edit")));
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void TearDown() override {
        actions.setUndoManager(nullptr);
        auto &controller = TADocumentController::sharedDocumentController();
        for (TADocument *open : controller.documents())
            controller.closeDocument(open);
    }

    TADatabase &db() { return document->database(); }
    ManagedObjectContext *ctx() { return document->managedObjectContext(); }
    UndoManager *undo() { return ctx()->undoManager(); }
    void rename(const char *groupName, const char *value) {
        db().beginUndoGroupingWithName(TAUndoGroupNames::name(groupName));
        client->setFullNameValue(QString::fromLatin1(value));
        db().endUndoGrouping();
    }

    TADocument *document = nullptr;
    TAClient *client = nullptr;
    QMainWindow window;
    TAUndoMenuActions actions;
};

TEST_F(UndoMenuActionsTest, TitlesAndStatesFollowTheStacksAndShortcutsUndoAndRedo) {
    EXPECT_EQ(shown(actions.undoAction()), "Undo");
    EXPECT_FALSE(actions.undoAction()->isEnabled()) << "no document bound yet";
    actions.setUndoManager(undo());
    EXPECT_FALSE(actions.undoAction()->isEnabled());
    EXPECT_FALSE(actions.redoAction()->isEnabled());

    rename(TAUndoGroupNames::InvoiceInfoEdit, "second");
    EXPECT_EQ(shown(actions.undoAction()), "Undo Invoice Info Edit");
    EXPECT_TRUE(actions.undoAction()->isEnabled());
    EXPECT_EQ(shown(actions.redoAction()), "Redo");
    EXPECT_FALSE(actions.redoAction()->isEnabled());

    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(client->fullNameValue(), QStringLiteral("first")) << "the shortcut undoes";
    EXPECT_EQ(shown(actions.undoAction()), "Undo");
    EXPECT_FALSE(actions.undoAction()->isEnabled());
    EXPECT_EQ(shown(actions.redoAction()), "Redo Invoice Info Edit");
    EXPECT_TRUE(actions.redoAction()->isEnabled());

    actions.redoAction()->trigger();
    EXPECT_EQ(client->fullNameValue(), QStringLiteral("second"));
    EXPECT_EQ(shown(actions.undoAction()), "Undo Invoice Info Edit");
    EXPECT_FALSE(actions.redoAction()->isEnabled());

    // A loose change is undoable at once and takes the title over, nameless.
    client->setFullNameValue(QStringLiteral("typed"));
    EXPECT_TRUE(actions.undoAction()->isEnabled());
    ctx()->processPendingChanges();
    EXPECT_EQ(shown(actions.undoAction()), "Undo");
    // An ampersand in a name is shown, not turned into a mnemonic.
    undo()->setActionName(QStringLiteral("Terms & Notes"));
    EXPECT_EQ(shown(actions.undoAction()), "Undo Terms & Notes");
}

TEST_F(UndoMenuActionsTest, NestedGroupsShowTheOuterNameAndUnregisteredWritesNone) {
    actions.setUndoManager(undo());
    db().beginUndoGroupingWithName(TAUndoGroupNames::name(TAUndoGroupNames::DeleteInvoices));
    rename(TAUndoGroupNames::EditItem, "inner");
    db().endUndoGrouping();
    EXPECT_EQ(shown(actions.undoAction()), "Undo Delete Invoices");
    EXPECT_EQ(undo()->undoCount(), 1);

    db().disableUndoRegistration();
    rename(TAUndoGroupNames::SendInvoice, "quiet");
    client->setFullNameValue(QStringLiteral("quieter"));
    db().enableUndoRegistration();
    EXPECT_EQ(shown(actions.undoAction()), "Undo Delete Invoices");
    EXPECT_EQ(undo()->undoCount(), 1);

    actions.undoAction()->trigger();
    EXPECT_EQ(client->fullNameValue(), QStringLiteral("first"));
    EXPECT_EQ(shown(actions.redoAction()), "Redo Delete Invoices");
}

TEST_F(UndoMenuActionsTest, NoDocumentOrAClosedOneLeavesBothDisabled) {
    actions.setUndoManager(undo());
    rename(TAUndoGroupNames::EditItem, "second");
    ASSERT_TRUE(actions.undoAction()->isEnabled());
    actions.setUndoManager(nullptr);
    EXPECT_EQ(shown(actions.undoAction()), "Undo");
    EXPECT_FALSE(actions.undoAction()->isEnabled());
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(client->fullNameValue(), QStringLiteral("second")) << "unbound: nothing undone";

    actions.setUndoManager(undo());
    ASSERT_TRUE(actions.undoAction()->isEnabled());
    TADocumentController::sharedDocumentController().closeDocument(document);
    EXPECT_EQ(actions.undoManager(), nullptr);
    EXPECT_FALSE(actions.undoAction()->isEnabled());
    EXPECT_EQ(shown(actions.undoAction()), "Undo");
}

} // namespace
