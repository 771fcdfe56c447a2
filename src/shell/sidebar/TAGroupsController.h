#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantMap>

class QMenu;
class QModelIndex;
class TAClient;
class TADocument;
class TAGroupsModel;
class TAGroupsOutlineView;
class TAMainWindow;
class TAProject;
class TASectionController;

// The sidebar and which section is shown: builds the rows from the document's preferences
// and open projects, switches sections as the selection moves, keeps the selection across
// reloads, and carries the sidebar's context menus and their commands.
class TAGroupsController : public QObject {
    Q_OBJECT
public:
    // Context menu tags.
    enum Tag { StatusTag = 12301, DraftTag = 123011, ActiveTag = 123012, ClosedTag = 123013 };

    TAGroupsController(TAMainWindow &window, TAGroupsOutlineView &groups);
    ~TAGroupsController() override;

    TAGroupsModel &model() { return *m_model; }

    void reload();
    void reloadGroups();
    // Redraws the rows only, so that an overdue mark can change.
    void refresh();

    void selectInvoices() { selectKey(QStringLiteral("Invoices")); }
    void selectRecurring() { selectKey(QStringLiteral("Recurring")); }
    void selectInventory() { selectKey(QStringLiteral("Inventory")); }
    void selectProjects() { selectKey(QStringLiteral("Projects")); }
    void selectClients() { selectKey(QStringLiteral("Clients")); }
    void selectReports() { selectKey(QStringLiteral("Reports")); }
    void selectProject(TAProject *project);
    void selectClient(TAClient *client);
    void selectEmpty();
    // Switch the section while the sidebar's selection stays; an open edit commits first.
    void selectInvoicesInBackground();
    void selectProjectsInBackground();
    void selectClientsInBackground();

    TAClient *selectedClient() const;
    TAProject *selectedProject() const;
    QList<TAClient *> selectedClients() const;

    TASectionController *currentController() const;
    void setCurrentController(TASectionController *controller);

    // Sidebar commands.
    void actionNewInvoice();
    void actionNewRecurring();
    void actionNewInventory();
    void actionNewProject();
    void actionNewClient();
    void actionRename();
    void actionRemove();
    void actionDuplicate();
    void actionStatusDraft() { setSelectedProjectStatus(1); }
    void actionStatusActive() { setSelectedProjectStatus(2); }
    void actionStatusClosed() { setSelectedProjectStatus(3); }
    void deleteAction();
    bool validateMenuItem(int tag) const;

    QMenu *sidebarMenu();
    QMenu *sidebarMenuWithActions();
    QMenu *menuForRow(const QModelIndex &index);

    // The window's restorable state of the sidebar: the selected row and section.
    QVariantMap restorableState() const;
    void restoreState(const QVariantMap &state);

signals:
    void restorableStateChanged();

private:
    TADocument *document() const;
    void selectKey(const QString &key);
    void select(const QModelIndex &index);
    void outlineViewSelectionDidChange();
    void switchToTab(const QString &tab, TASectionController *controller);
    void restoreSelection(const QString &key, TAProject *project, bool hadProject);
    void setSelectedProjectStatus(int status);
    void projectRenamed(TAProject *project, const QString &name);
    void expansionChanged(const QModelIndex &index, bool expanded);
    void commitOpenEdit();
    QMenu *buildSidebarMenu(QMenu *menu);

    TAMainWindow &m_window;
    TAGroupsOutlineView &m_groups;
    TAGroupsModel *m_model;
    QPointer<TASectionController> m_currentController;
    QMenu *m_sidebarMenu = nullptr;
    QMenu *m_sidebarMenuWithActions = nullptr;
    bool m_reloading = false;
};
