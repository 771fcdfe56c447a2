#include "shell/sidebar/TAGroupsController.h"

#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "foundation/Check.h"
#include "shell/clients/TAClientsController.h"
#include "shell/inventory/TAInventoryController.h"
#include "shell/invoices/TAInvoicesController.h"
#include "shell/projects/TAProjectsController.h"
#include "shell/recurring/TARecurringController.h"
#include "shell/sidebar/TAGroupsModel.h"
#include "shell/sidebar/TAGroupsOutlineView.h"
#include "shell/window/TAMainWindow.h"
#include "store/TAEntityQueries.h"
#include "store/TAGlobal.h"
#include "store/TAProjectQueries.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

#include <QApplication>
#include <QMenu>
#include <QStackedWidget>
#include <QUrl>

namespace {

const QString kInvoices = QStringLiteral("Invoices");
const QString kRecurring = QStringLiteral("Recurring");
const QString kInventory = QStringLiteral("Inventory");
const QString kClients = QStringLiteral("Clients");
const QString kProjects = QStringLiteral("Projects");
const QString kReports = QStringLiteral("Reports");
const QString kEmpty = QStringLiteral("Empty");

// The number a section row is stored as in the restorable state.
const QStringList kSectionNumbers = {kInvoices, kRecurring, kInventory,
                                     kClients,  kProjects,  kReports};

} // namespace

TAGroupsController::TAGroupsController(TAMainWindow &window, TAGroupsOutlineView &groups)
    : QObject(&window)
    , m_window(window)
    , m_groups(groups)
    , m_model(new TAGroupsModel(this)) {
    m_groups.setModel(m_model);
    connect(m_groups.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { outlineViewSelectionDidChange(); });
    connect(m_model, &TAGroupsModel::renameRequested, this, &TAGroupsController::projectRenamed);
    connect(&m_groups, &QTreeView::expanded, this,
            [this](const QModelIndex &index) { expansionChanged(index, true); });
    connect(&m_groups, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { expansionChanged(index, false); });
    m_groups.deleteActions().addTarget(this, &TAGroupsController::deleteAction);
    m_groups.setMenuForRow([this](const QModelIndex &index) { return menuForRow(index); });
}

TAGroupsController::~TAGroupsController() = default;

TADocument *TAGroupsController::document() const {
    return m_window.document();
}

// --- Rows -----------------------------------------------------------------------------------

void TAGroupsController::reload() {
    reloadGroups();
    m_window.removeActionMenu();
    if (TASectionController *current = currentController()) {
        current->reload();
        m_window.setActionMenu(current->actionMenu());
    }
    if (document() && document()->isLockedWithPassword()) {
        m_window.removeActionMenu();
        m_window.showPasswordView();
    } else {
        m_window.hidePasswordViewWithoutAnimation();
    }
}

void TAGroupsController::reloadGroups() {
    TADocument *doc = document();
    BF_CHECK(doc, return);
    const QModelIndex selected = m_groups.currentIndex();
    const bool hadSelection = m_groups.selectionModel()->isSelected(selected);
    const QString rememberedKey = hadSelection ? m_model->keyAt(selected) : QString();
    TAProject *rememberedProject = hadSelection ? m_model->projectAt(selected) : nullptr;

    ManagedObjectContext *context = doc->database().context();
    QList<TAProject *> projects;
    // Closed projects have no row.
    for (TAProject *project : TAProjectQueries::getProjectsSortedByNameInContext(context))
        if (project->status() != 3)
            projects.append(project);
    QStringList keys = {TAGroupsModel::kManage};
    TAPreferences *preferences = doc->preferences();
    const std::pair<const QString &, bool> shown[] = {
        {kInvoices, !preferences || preferences->showInvoices()},
        {kRecurring, !preferences || preferences->showRecurring()},
        {kInventory, !preferences || preferences->showInventory()},
        {kClients, !preferences || preferences->showClients()},
        {kProjects, !preferences || preferences->showProjects()},
        {kReports, !preferences || preferences->showReports()}};
    for (const auto &[key, show] : shown)
        if (show)
            keys.append(key);

    m_reloading = true;
    m_model->setRows(keys, projects);
    const QModelIndex projectsRow = m_model->indexOfKey(kProjects);
    if (projectsRow.isValid())
        m_groups.setExpanded(projectsRow, preferences && preferences->groupsExpandedProjects());
    m_reloading = false;
    restoreSelection(rememberedKey, rememberedProject, rememberedProject != nullptr);
}

void TAGroupsController::restoreSelection(const QString &key, TAProject *project, bool hadProject) {
    const int rows = m_model->rowCount();
    const QModelIndex again = hadProject
                                  ? m_model->indexOfProject(project)
                                  : (key.isEmpty() ? QModelIndex() : m_model->indexOfKey(key));
    if (again.isValid()) {
        select(again);
        return;
    }
    if (hadProject || !key.isEmpty()) {
        if (rows < 2)
            selectEmpty();
        else if (hadProject && currentController() == m_window.projectsController() &&
                 m_model->indexOfKey(kProjects).isValid())
            select(m_model->indexOfKey(kProjects));
        else
            select(m_model->index(1, 0));
        return;
    }
    // Nothing was selected.
    if (rows >= 2)
        select(m_model->index(1, 0));
    else
        selectEmpty();
}

void TAGroupsController::refresh() {
    m_groups.viewport()->update();
}

// --- Selection ------------------------------------------------------------------------------

void TAGroupsController::selectKey(const QString &key) {
    const QModelIndex index = m_model->indexOfKey(key);
    if (index.isValid())
        select(index);
}

void TAGroupsController::select(const QModelIndex &index) {
    if (m_groups.currentIndex() == index && m_groups.selectionModel()->isSelected(index)) {
        outlineViewSelectionDidChange(); // the same row again still switches and reloads
        return;
    }
    m_groups.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void TAGroupsController::selectProject(TAProject *project) {
    const QModelIndex index = m_model->indexOfProject(project);
    if (!index.isValid())
        return;
    m_groups.setExpanded(index.parent(), true);
    select(index);
}

void TAGroupsController::selectClient(TAClient *) {
    // No client has a row of its own in the sidebar yet: nothing to select.
}

void TAGroupsController::selectEmpty() {
    m_groups.selectionModel()->clearSelection();
    m_groups.selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    switchToTab(kEmpty, m_window.invoicesController());
}

void TAGroupsController::commitOpenEdit() {
    QWidget *focus = QApplication::focusWidget();
    if (focus && m_window.tabs()->isAncestorOf(focus))
        m_window.setFocus(Qt::OtherFocusReason);
}

void TAGroupsController::selectInvoicesInBackground() {
    commitOpenEdit();
    switchToTab(kInvoices, m_window.invoicesController());
}

void TAGroupsController::selectProjectsInBackground() {
    commitOpenEdit();
    switchToTab(kProjects, m_window.projectsController());
}

void TAGroupsController::selectClientsInBackground() {
    commitOpenEdit();
    switchToTab(kClients, m_window.clientsController());
}

TAClient *TAGroupsController::selectedClient() const {
    return nullptr; // no row holds a client
}

TAProject *TAGroupsController::selectedProject() const {
    const QModelIndex index = m_groups.currentIndex();
    return m_groups.selectionModel()->isSelected(index) ? m_model->projectAt(index) : nullptr;
}

QList<TAClient *> TAGroupsController::selectedClients() const {
    const QModelIndex index = m_groups.currentIndex();
    if (!m_groups.selectionModel()->isSelected(index) || m_model->keyAt(index) != kClients ||
        !document())
        return {};
    return TAEntityQueries::getClientsSortedByDisplayNameInContext(
        document()->database().context());
}

void TAGroupsController::outlineViewSelectionDidChange() {
    const QModelIndex index = m_groups.currentIndex();
    const bool selected = m_groups.selectionModel()->isSelected(index);
    const QString key = selected ? m_model->keyAt(index) : QString();
    if (selected && m_model->projectAt(index)) {
        switchToTab(kProjects, m_window.projectsController());
    } else if (key == kInvoices) {
        m_window.invoicesController()->setProject(nullptr);
        m_window.invoicesController()->setClient(nullptr);
        switchToTab(kInvoices, m_window.invoicesController());
    } else if (key == kProjects) {
        m_window.projectsController()->setProject(nullptr);
        m_window.projectsController()->setClient(nullptr);
        switchToTab(kProjects, m_window.projectsController());
    } else if (key == kRecurring || key == kInventory || key == kClients || key == kReports) {
        switchToTab(key, m_window.sectionForKey(key));
    } else {
        switchToTab(kEmpty, m_window.invoicesController());
    }
}

void TAGroupsController::switchToTab(const QString &tab, TASectionController *controller) {
    // One repaint for the switch, so the old page is never seen with the new sidebar.
    m_window.setUpdatesEnabled(false);
    m_window.showTab(tab);
    setCurrentController(controller);
    m_window.setUpdatesEnabled(true);
}

TASectionController *TAGroupsController::currentController() const {
    if (m_currentController)
        return m_currentController;
    // Before any switch, the selected row tells; "Projects" as a plain row tells nothing.
    const QModelIndex index = m_groups.currentIndex();
    if (m_model->projectAt(index))
        return m_window.projectsController();
    const QString key = m_model->keyAt(index);
    if (key == kProjects)
        return nullptr;
    TASectionController *section = m_window.sectionForKey(key);
    return section ? section : m_window.invoicesController();
}

void TAGroupsController::setCurrentController(TASectionController *controller) {
    BF_CHECK(controller, return);
    if (controller == m_window.projectsController())
        controller->setProject(selectedProject());
    if (controller != m_currentController) {
        if (m_currentController) {
            m_currentController->m_active = false;
            m_currentController->switchOut();
        }
        m_currentController = controller;
        controller->m_active = true;
        controller->switchIn();
    } else {
        controller->reload();
    }
    m_window.setActionMenu(controller->actionMenu());
    emit restorableStateChanged();
}

// --- Commands -------------------------------------------------------------------------------

void TAGroupsController::actionNewInvoice() {
    selectInvoices();
    m_window.invoicesController()->actionNewInvoice();
}

void TAGroupsController::actionNewRecurring() {
    selectRecurring();
    m_window.recurringController()->actionNewInvoice();
}

void TAGroupsController::actionNewInventory() {
    selectInventory();
    m_window.inventoryController()->actionNewInventory();
}

void TAGroupsController::actionNewProject() {
    selectProjects();
    m_window.projectsController()->actionNewProject();
}

void TAGroupsController::actionNewClient() {
    selectClients();
    m_window.clientsController()->actionNewClient();
}

void TAGroupsController::actionRename() {
    if (!selectedProject()) {
        QApplication::beep();
        return;
    }
    m_groups.edit(m_groups.currentIndex());
}

void TAGroupsController::projectRenamed(TAProject *project, const QString &name) {
    if (!project->managedObjectContext() || project->name() == name)
        return;
    project->setName(name);
    if (m_window.projectsController()->isActive())
        m_window.projectsController()->reload();
}

void TAGroupsController::actionRemove() {
    if (selectedClient())
        m_window.clientsController()->actionRemove();
    else if (selectedProject())
        m_window.projectsController()->actionRemove();
    reloadGroups();
    refresh();
}

void TAGroupsController::actionDuplicate() {
    if (selectedClient())
        m_window.clientsController()->actionDuplicate();
    else if (selectedProject())
        m_window.projectsController()->actionDuplicate();
}

void TAGroupsController::deleteAction() {
    if (selectedProject())
        actionRemove();
    else
        QApplication::beep();
}

void TAGroupsController::setSelectedProjectStatus(int status) {
    TAProject *project = selectedProject();
    if (!project) {
        QApplication::beep();
        return;
    }
    project->setStatus(status);
    // The row stays until the next rebuild of the sidebar, closed or not.
    if (m_window.projectsController()->isActive())
        m_window.projectsController()->reload();
}

bool TAGroupsController::validateMenuItem(int tag) const {
    if (TADocumentController::isInVersions())
        return false;
    const int statuses[] = {DraftTag, ActiveTag, ClosedTag};
    for (int status = 1; status <= 3; ++status)
        if (tag == statuses[status - 1]) {
            const TAProject *project = selectedProject();
            return project && project->status() != status;
        }
    return true;
}

void TAGroupsController::expansionChanged(const QModelIndex &index, bool expanded) {
    if (m_reloading || m_model->keyAt(index) != kProjects || !document())
        return;
    TAPreferences *preferences = document()->preferences();
    if (!preferences || preferences->groupsExpandedProjects() == expanded)
        return;
    // Folding the sidebar is no undo step.
    document()->database().disableUndoRegistration();
    preferences->setGroupsExpandedProjects(expanded);
    document()->database().enableUndoRegistration();
}

// --- Menus ----------------------------------------------------------------------------------

QMenu *TAGroupsController::buildSidebarMenu(QMenu *menu) {
    menu->addAction(tr("New Invoice"), this, &TAGroupsController::actionNewInvoice);
    menu->addAction(tr("New Recurring Invoice"), this, &TAGroupsController::actionNewRecurring);
    menu->addAction(tr("New Inventory"), this, &TAGroupsController::actionNewInventory);
    menu->addAction(tr("New Project"), this, &TAGroupsController::actionNewProject);
    menu->addAction(tr("New Client"), this, &TAGroupsController::actionNewClient);
    return menu;
}

QMenu *TAGroupsController::sidebarMenu() {
    if (!m_sidebarMenu)
        m_sidebarMenu = buildSidebarMenu(new QMenu(&m_groups));
    return m_sidebarMenu;
}

QMenu *TAGroupsController::sidebarMenuWithActions() {
    if (m_sidebarMenuWithActions)
        return m_sidebarMenuWithActions;
    QMenu *menu = buildSidebarMenu(new QMenu(&m_groups));
    menu->addSeparator();
    QMenu *status = menu->addMenu(tr("Status"));
    status->menuAction()->setData(int(StatusTag));
    const std::pair<const char *, void (TAGroupsController::*)()> statuses[] = {
        {QT_TR_NOOP("Draft"), &TAGroupsController::actionStatusDraft},
        {QT_TR_NOOP("Active"), &TAGroupsController::actionStatusActive},
        {QT_TR_NOOP("Closed"), &TAGroupsController::actionStatusClosed}};
    const int tags[] = {DraftTag, ActiveTag, ClosedTag};
    for (int i = 0; i < 3; ++i)
        status->addAction(tr(statuses[i].first), this, statuses[i].second)->setData(tags[i]);
    menu->addSeparator();
    menu->addAction(tr("Rename"), this, &TAGroupsController::actionRename);
    menu->addAction(tr("Remove"), this, &TAGroupsController::actionRemove);
    menu->addAction(tr("Duplicate"), this, &TAGroupsController::actionDuplicate);
    // Enabling follows the row the menu opens on.
    auto validate = [this](QMenu *shown) {
        for (QAction *action : shown->actions())
            action->setEnabled(validateMenuItem(action->data().toInt()));
    };
    connect(menu, &QMenu::aboutToShow, this, [menu, validate] { validate(menu); });
    connect(status, &QMenu::aboutToShow, this, [status, validate] { validate(status); });
    m_sidebarMenuWithActions = menu;
    return menu;
}

QMenu *TAGroupsController::menuForRow(const QModelIndex &index) {
    return m_model->projectAt(index) ? sidebarMenuWithActions() : sidebarMenu();
}

// --- Restorable state -----------------------------------------------------------------------

QVariantMap TAGroupsController::restorableState() const {
    QVariantMap state;
    const QModelIndex index = m_groups.currentIndex();
    TAProject *project = selectedProject();
    if (project && currentController() == m_window.projectsController()) {
        state.insert(QStringLiteral("selectedGroupObject"),
                     TAGlobal::encodeObject(project).toString());
    } else {
        const qsizetype number = kSectionNumbers.indexOf(m_model->keyAt(index));
        state.insert(QStringLiteral("selectedGroupObject"), int(std::max<qsizetype>(number, 0)));
    }
    if (index.isValid())
        state.insert(QStringLiteral("selectedRow"), index.row());
    return state;
}

void TAGroupsController::restoreState(const QVariantMap &state) {
    const QVariant object = state.value(QStringLiteral("selectedGroupObject"));
    if (object.typeId() == QMetaType::QString) {
        ManagedObject *decoded =
            TAGlobal::decodeObjectForDocument(document(), QVariant(QUrl(object.toString())));
        if (auto *project = dynamic_cast<TAProject *>(decoded))
            selectProject(project);
    } else if (object.isValid()) {
        const int number = object.toInt();
        if (number >= 0 && number < kSectionNumbers.size())
            selectKey(kSectionNumbers.at(number));
    }
}
