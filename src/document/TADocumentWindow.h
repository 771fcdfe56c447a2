#pragma once

#include <QObject>
#include <QString>

class TADocument;

// The window side of a document: sections, tabs, sidebar, menus. The shell installs one when
// it builds the window; a document opened with none (from the command line, in a test) runs
// the same steps and these simply do nothing.
class TADocumentWindow {
public:
    virtual ~TADocumentWindow() = default;

    // The window as an object: how a document is found from its window or one of its views.
    virtual const QObject *windowObject() const { return nullptr; }

    // Opening.
    virtual void makeSectionControllers(TADocument &document) { (void)document; }
    virtual void fillTabs() {}
    virtual void showStatusMenu() {}
    virtual void observeCalendarStore(bool observe) { (void)observe; }
    // Shows the password view when the document is locked, and hides it otherwise.
    virtual void reloadSidebar(bool lockedWithPassword) { (void)lockedWithPassword; }

    // Undo window.
    virtual void undoManagerWillUndoOrRedo() {}
    virtual void undoManagerDidUndo(const QString &redoActionName) { (void)redoActionName; }
    virtual void undoManagerDidRedo(const QString &undoActionName) { (void)undoActionName; }

    // Cache updater: redraw the invoice and recurring lists.
    virtual void cacheReload() {}

    // Closing and reverting.
    virtual void removeActionMenu() {}
    virtual void hideStatusMenu() {}
    virtual void detachPreferencesWindow() {}
    virtual void detachTemplateList() {}
    virtual void cleanControllers() {}
};
