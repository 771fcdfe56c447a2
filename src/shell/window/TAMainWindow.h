#pragma once

#include "document/TADocument.h"
#include "document/TADocumentWindow.h"

#include <QHash>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>

#include <memory>

class QSplitter;
class QStackedWidget;
class QVBoxLayout;
class TAClientsController;
class TAGroupsController;
class TAGroupsOutlineView;
class TAInventoryController;
class TAInvoicesController;
class TAProjectsController;
class TARecurringController;
class TAReportsController;
class TAPasswordProtectedView;
class TASectionController;
class TAStatusBarController;

// A document's window: the sidebar on the left; on the right the section stack, one page per
// tab identifier, above the status bar. It carries out the window steps of the document's
// opening, undo and closing, and goes when its document goes.
class TAMainWindow : public QMainWindow, public TADocumentWindow {
    Q_OBJECT
public:
    // Tab identifiers of the section stack.
    static const QStringList &tabIdentifiers();
    // The divider between sidebar and sections stays within these coordinates.
    static constexpr int kSidebarMinimum = 100;
    static constexpr int kSidebarMaximum = 400;

    explicit TAMainWindow(TADocument &document);
    ~TAMainWindow() override;

    static TAMainWindow *forDocument(const TADocument *document);
    TADocument *document() const { return m_document; }

    TAGroupsController *groupsController() const { return m_groupsController; }
    TAStatusBarController *statusBarController() const { return m_statusBarController; }
    TAPasswordProtectedView *passwordView() const { return m_passwordView; }
    TAGroupsOutlineView *sidebar() const { return m_sidebar; }
    QSplitter *splitter() const { return m_splitter; }
    QStackedWidget *tabs() const { return m_tabs; }

    void showTab(const QString &identifier);
    QString currentTabIdentifier() const;

    TAInvoicesController *invoicesController() const { return m_invoices; }
    TARecurringController *recurringController() const { return m_recurring; }
    TAInventoryController *inventoryController() const { return m_inventory; }
    TAProjectsController *projectsController() const { return m_projects; }
    TAClientsController *clientsController() const { return m_clients; }
    TAReportsController *reportsController() const { return m_reports; }
    // The section of a sidebar key ("Invoices", ...); null for any other text.
    TASectionController *sectionForKey(const QString &key) const;

    // The current section's menu, between the View and Window menus.
    void setActionMenu(QMenu *menu);
    QMenu *actionMenu() const { return m_actionMenu; }

    virtual void showPasswordView();
    virtual void hidePasswordViewWithoutAnimation();

    // The file's name and the unsaved-changes mark.
    void updateTitle();
    // Puts the keyboard in the status bar's search field (the Find command).
    void focusSearch();

    // Frame, divider and sidebar selection, kept per document file.
    void saveWindowState() const;
    void restoreWindowState();

    // TADocumentWindow
    const QObject *windowObject() const override { return this; }
    void makeSectionControllers(TADocument &document) override;
    void fillTabs() override;
    void reloadSidebar(bool lockedWithPassword) override;
    void undoManagerDidUndo(const QString &redoActionName) override;
    void undoManagerDidRedo(const QString &undoActionName) override;
    void removeActionMenu() override { setActionMenu(nullptr); }
    void cleanControllers() override;

signals:
    // The menu bar places the action menu; the window only says which it is.
    void actionMenuChanged(QMenu *menu);
    // The window was closed by the user; the document controller closes the document.
    void closeRequested();
    // The window became the active one: its document is now the current document.
    void activated();
    // The whole window was reloaded from the document (after opening, undo, revert).
    void reloaded();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildLayout();

    QPointer<TADocument> m_document;
    TAGroupsOutlineView *m_sidebar = nullptr;
    QSplitter *m_splitter = nullptr;
    QStackedWidget *m_tabs = nullptr;
    QVBoxLayout *m_contentLayout = nullptr;
    TAGroupsController *m_groupsController = nullptr;
    TAStatusBarController *m_statusBarController = nullptr;
    TAPasswordProtectedView *m_passwordView = nullptr;
    QHash<QString, QWidget *> m_pages;
    TAInvoicesController *m_invoices = nullptr;
    TARecurringController *m_recurring = nullptr;
    TAInventoryController *m_inventory = nullptr;
    TAProjectsController *m_projects = nullptr;
    TAClientsController *m_clients = nullptr;
    TAReportsController *m_reports = nullptr;
    QPointer<QMenu> m_actionMenu;
};
