#include "toolkit/OTTextField.h"
#include "ActionLog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QInputMethodEvent>
#include <QMenu>
#include <QPushButton>
#include <QTest>

namespace {

// A field and a neighbour to hand the focus to, in an active window.
struct FieldWindow {
    FieldWindow() {
        field = new OTTextField(&window);
        neighbour = new OTTextField(&window);
        field->setGeometry(10, 10, 150, 28);
        neighbour->setGeometry(10, 50, 150, 28);
        window.resize(170, 90);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        // The window gives the first field the focus; the tests hand it over themselves.
        neighbour->setFocus();
    }
    void listenToAll() {
        log.listen(field->becomeActiveActions(), "becomeActive");
        log.listen(field->beginEditingActions(), "beginEditing");
        log.listen(field->textChangedActions(), "textChanged");
        log.listen(field->enterPressedActions(), "enterPressed");
        log.listen(field->escPressedActions(), "escPressed");
        log.listen(field->endEditingActions(), "endEditing");
        log.listen(field->resignResponderActions(), "resignResponder");
        log.listen(field->abortEditingActions(), "abortEditing");
    }
    QWidget window;
    OTTextField *field;
    OTTextField *neighbour;
    ActionLog log;
};

void paste(QWidget *field, const QString &clip) {
    QGuiApplication::clipboard()->setText(clip);
    QTest::keySequence(field, QKeySequence::Paste);
}

// Opens the field's context menu as a right click would and answers whether it offers Paste.
bool contextMenuOffersPaste(QWidget *field) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            field->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(field, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    EXPECT_NE(menu, nullptr);
    if (!menu)
        return false;
    bool offers = false;
    for (QAction *action : menu->actions()) {
        if (action->text().startsWith("&Paste"))
            offers = action->isEnabled();
    }
    menu->close();
    return offers;
}

void commitComposition(QWidget *field, const QString &text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(field, &event);
}

} // namespace

TEST(OTTextField, TypedKeysOutsideTheSetAreRefusedAndDeletingAlwaysPasses) {
    FieldWindow w;
    w.field->setAvailableCharacters(OTTextField::intCharacters());
    w.field->setFocus();
    QTest::keyClicks(w.field, "12a3 ");
    EXPECT_EQ(w.field->text(), "123");

    // A refused key over a selection leaves the selection and its text alone.
    w.field->setSelection(1, 2);
    QTest::keyClick(w.field, Qt::Key_X);
    EXPECT_EQ(w.field->text(), "123");
    EXPECT_EQ(w.field->selectedText(), "23");
    QTest::keyClick(w.field, Qt::Key_Backspace);
    EXPECT_EQ(w.field->text(), "1");
    QTest::keyClick(w.field, Qt::Key_Backspace);
    EXPECT_EQ(w.field->text(), "");

    w.field->setAvailableCharacters(OTTextField::floatPercentage());
    QTest::keyClicks(w.field, "-12,5%x");
    EXPECT_EQ(w.field->text(), "-12,5%");
    w.field->setAvailableCharacters(OTTextField::hourCharacters());
    w.field->clear();
    QTest::keyClicks(w.field, "1:30%");
    EXPECT_EQ(w.field->text(), "1:30");

    // Without a set the field takes anything; text from the program is never checked.
    w.field->setAvailableCharacters(QString());
    QTest::keyClicks(w.field, " h");
    EXPECT_EQ(w.field->text(), "1:30 h");
    w.field->setAvailableCharacters(OTTextField::intCharacters());
    w.field->setText("abc");
    EXPECT_EQ(w.field->text(), "abc");
}

TEST(OTTextField, APasteOrCompositionHoldingAnOutsideCharacterIsRefusedWholeAndUndoStillWorks) {
    FieldWindow w;
    w.field->setAvailableCharacters(OTTextField::intCharacters());
    w.field->setFocus();
    QTest::keyClicks(w.field, "7");
    paste(w.field, "12a");
    EXPECT_EQ(w.field->text(), "7");
    commitComposition(w.field, "12a");
    EXPECT_EQ(w.field->text(), "7");

    paste(w.field, "45");
    EXPECT_EQ(w.field->text(), "745");
    commitComposition(w.field, "6");
    EXPECT_EQ(w.field->text(), "7456");

    // A refused paste over a selection does not delete the selection either.
    w.field->selectAll();
    paste(w.field, "9 9");
    EXPECT_EQ(w.field->text(), "7456");

    QTest::keySequence(w.field, QKeySequence::Undo);
    EXPECT_EQ(w.field->text(), "745");
    QTest::keySequence(w.field, QKeySequence::Undo);
    EXPECT_EQ(w.field->text(), "7");
    QTest::keySequence(w.field, QKeySequence::Redo);
    EXPECT_EQ(w.field->text(), "745");
}

TEST(OTTextField, ListsAreToldInTheOrderOfEditing) {
    FieldWindow w;
    w.listenToAll();
    QTest::mouseClick(w.field, Qt::LeftButton);
    EXPECT_EQ(w.log.take(), "becomeActive");
    QTest::keyClicks(w.field, "56");
    EXPECT_EQ(w.log.take(), "beginEditing textChanged textChanged");

    QTest::keyClick(w.field, Qt::Key_Return);
    EXPECT_EQ(w.log.take(), "enterPressed endEditing");
    QTest::keyClick(w.field, Qt::Key_7);
    QTest::keyClick(w.field, Qt::Key_Escape);
    EXPECT_EQ(w.log.senders(), QList<QObject *>({w.field, w.field, w.field}));
    EXPECT_EQ(w.log.take(), "beginEditing textChanged escPressed");

    // Changes by the program are not the person's editing.
    w.field->setText("set");
    EXPECT_EQ(w.log.take(), "");

    QTest::keyClick(w.field, Qt::Key_Tab);
    EXPECT_TRUE(w.neighbour->hasFocus());
    EXPECT_EQ(w.log.senders(), QList<QObject *>({w.field, w.field}));
    EXPECT_EQ(w.log.take(), "endEditing resignResponder");

    // Focus coming back by Tab starts afresh.
    QTest::keyClick(w.neighbour, Qt::Key_Backtab);
    EXPECT_EQ(w.log.take(), "becomeActive");
}

TEST(OTTextField, EnterStillReachesTheDialogsDefaultButton) {
    QDialog dialog;
    auto *field = new OTTextField(&dialog);
    auto *ok = new QPushButton("OK", &dialog);
    ok->setDefault(true);
    QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
    field->move(0, 40);
    ActionLog log;
    log.listen(field->enterPressedActions(), "enterPressed");
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Enter);
    EXPECT_EQ(log.take(), "enterPressed");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST(OTTextField, SelectAllOnEditingSelectsOnAClickIntoTheField) {
    FieldWindow w;
    w.field->setText("hello");
    w.neighbour->setText("world");
    w.field->setSelectAllOnEditing(true);
    QTest::mouseClick(w.field, Qt::LeftButton, {}, QPoint(5, 14));
    QCoreApplication::processEvents();
    EXPECT_EQ(w.field->selectedText(), "hello");

    QTest::mouseClick(w.neighbour, Qt::LeftButton, {}, QPoint(5, 14));
    QCoreApplication::processEvents();
    EXPECT_TRUE(w.neighbour->hasFocus());
    EXPECT_EQ(w.neighbour->selectedText(), "");
}

TEST(OTTextField, AbortEditingPutsBackTheTextOfTheBeginning) {
    FieldWindow w;
    w.listenToAll();
    w.field->setText("12");
    EXPECT_FALSE(w.field->abortEditing());
    EXPECT_EQ(w.log.take(), "");

    w.field->setFocus();
    w.field->end(false);
    QTest::keyClicks(w.field, "9");
    w.log.take();
    EXPECT_TRUE(w.field->abortEditing());
    EXPECT_EQ(w.field->text(), "12");
    EXPECT_EQ(w.log.take(), "abortEditing");

    // After Enter the entered text is what an abort goes back to.
    QTest::keyClicks(w.field, "3");
    QTest::keyClick(w.field, Qt::Key_Return);
    QTest::keyClicks(w.field, "4");
    EXPECT_TRUE(w.field->abortEditing());
    EXPECT_EQ(w.field->text(), "123");
}

TEST(OTTextField, TheContextMenuOffersPasteOnlyWhenTheFieldWouldTakeItAndDoesNotEndEditing) {
    FieldWindow w;
    w.field->setAvailableCharacters(OTTextField::intCharacters());
    w.field->setFocus();
    w.listenToAll();
    QGuiApplication::clipboard()->setText("12a");
    EXPECT_FALSE(contextMenuOffersPaste(w.field));
    QGuiApplication::clipboard()->setText("12");
    EXPECT_TRUE(contextMenuOffersPaste(w.field));
    // The menu took the focus only for a while.
    QCoreApplication::processEvents();
    EXPECT_EQ(w.log.take(), "");
}
