#include "shell/window/TAMainWindow.h"

#include "document/TADocument.h"
#include "shell/clients/TAClientsController.h"
#include "shell/inventory/TAInventoryController.h"
#include "shell/invoices/TAInvoicesController.h"
#include "shell/password/TAPasswordProtectedView.h"
#include "shell/projects/TAProjectsController.h"
#include "shell/recurring/TARecurringController.h"
#include "shell/reports/TAReportsController.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/sidebar/TAGroupsOutlineView.h"
#include "shell/statusbar/TAStatusBarController.h"
#include "shell/undo/TAUndoWindow.h"
#include "shell/window/TAWindowState.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

const QStringList &TAMainWindow::tabIdentifiers() {
    static const QStringList identifiers = {
        QStringLiteral("Invoices"), QStringLiteral("Recurring"), QStringLiteral("Inventory"),
        QStringLiteral("Projects"), QStringLiteral("Clients"),   QStringLiteral("Reports"),
        QStringLiteral("Empty")};
    return identifiers;
}

TAMainWindow::TAMainWindow(TADocument &document)
    : m_document(&document) {
    setAttribute(Qt::WA_DeleteOnClose, false); // the document decides when the window goes
    buildLayout();
    m_groupsController = new TAGroupsController(*this, *m_sidebar);
    connect(m_groupsController, &TAGroupsController::restorableStateChanged, this,
            [this] { saveWindowState(); });
    // The window lives as long as its document.
    connect(&document, &QObject::destroyed, this, [this] {
        hide();
        deleteLater();
    });
    connect(&document, &TADocument::documentEditedChanged, this, [this] { updateTitle(); });
    updateTitle();
}

TAMainWindow::~TAMainWindow() = default;

TAMainWindow *TAMainWindow::forDocument(const TADocument *document) {
    return document ? dynamic_cast<TAMainWindow *>(document->window()) : nullptr;
}

void TAMainWindow::buildLayout() {
    auto *central = new QWidget(this);
    auto *centralLayout = new QVBoxLayout(central);
    centralLayout->setContentsMargins(0, 0, 0, 0);
    m_splitter = new QSplitter(Qt::Horizontal, central);
    centralLayout->addWidget(m_splitter);
    m_splitter->setChildrenCollapsible(false);
    m_sidebar = new TAGroupsOutlineView(m_splitter);
    m_sidebar->setMinimumWidth(kSidebarMinimum);
    m_sidebar->setMaximumWidth(kSidebarMaximum);
    auto *content = new QWidget(m_splitter);
    m_contentLayout = new QVBoxLayout(content);
    m_contentLayout->setContentsMargins(0, 0, 0, 0);
    m_contentLayout->setSpacing(0);
    m_tabs = new QStackedWidget(content);
    m_contentLayout->addWidget(m_tabs, 1);
    m_statusBarController = new TAStatusBarController(this);
    m_contentLayout->addWidget(m_statusBarController->bar());
    m_splitter->addWidget(m_sidebar);
    m_splitter->addWidget(content);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({200, 800});
    setCentralWidget(central);
    // The lock covers sidebar, sections and bar alike; it lies over them, outside the layout.
    m_passwordView = new TAPasswordProtectedView(central);
    m_passwordView->setCoveredWidgets({m_sidebar, m_tabs, m_statusBarController->bar()});
    m_passwordView->hideWithoutAnimation();
    connect(m_passwordView, &TAPasswordProtectedView::unlocked, this, [this] {
        if (m_groupsController)
            m_groupsController->reload();
    });
    resize(1100, 700);
}

void TAMainWindow::updateTitle() {
    if (!m_document)
        return;
    const QString path = m_document->fileURL();
    // "[*]" is where Qt shows the unsaved-changes mark of the desktop.
    setWindowTitle((path.isEmpty() ? tr("Untitled") : QFileInfo(path).fileName()) +
                   QStringLiteral("[*]"));
    setWindowFilePath(path);
    setWindowModified(m_document->isDocumentEdited());
}

void TAMainWindow::showTab(const QString &identifier) {
    if (QWidget *page = m_pages.value(identifier))
        m_tabs->setCurrentWidget(page);
}

QString TAMainWindow::currentTabIdentifier() const {
    return m_pages.key(m_tabs->currentWidget());
}

TASectionController *TAMainWindow::sectionForKey(const QString &key) const {
    const QHash<QString, TASectionController *> sections = {
        {QStringLiteral("Invoices"), m_invoices},   {QStringLiteral("Recurring"), m_recurring},
        {QStringLiteral("Inventory"), m_inventory}, {QStringLiteral("Projects"), m_projects},
        {QStringLiteral("Clients"), m_clients},     {QStringLiteral("Reports"), m_reports}};
    return sections.value(key);
}

void TAMainWindow::setActionMenu(QMenu *menu) {
    if (m_actionMenu == menu)
        return;
    m_actionMenu = menu;
    emit actionMenuChanged(menu);
}

void TAMainWindow::showPasswordView() {
    m_passwordView->setDocument(m_document);
    m_passwordView->show();
}

void TAMainWindow::hidePasswordViewWithoutAnimation() {
    m_passwordView->hideWithoutAnimation();
}

// --- Window steps of the document ----------------------------------------------------------

void TAMainWindow::makeSectionControllers(TADocument &document) {
    m_invoices = new TAInvoicesController(&document, this);
    m_recurring = new TARecurringController(&document, this);
    m_inventory = new TAInventoryController(&document, this);
    m_projects = new TAProjectsController(&document, this);
    m_clients = new TAClientsController(&document, this);
    m_reports = new TAReportsController(&document, this);
}

void TAMainWindow::fillTabs() {
    const TASectionController *sections[] = {m_invoices, m_recurring, m_inventory,
                                             m_projects, m_clients,   m_reports};
    const QStringList &identifiers = tabIdentifiers();
    for (int i = 0; i < 6; ++i) {
        QWidget *page = const_cast<TASectionController *>(sections[i])->view();
        m_tabs->addWidget(page);
        m_pages.insert(identifiers.at(i), page);
    }
    auto *empty = new QWidget;
    empty->setObjectName(QStringLiteral("Empty"));
    m_tabs->addWidget(empty);
    m_pages.insert(QStringLiteral("Empty"), empty);
}

void TAMainWindow::reloadSidebar(bool) {
    // The groups controller asks the lock itself, as every reload does.
    m_groupsController->reload();
    emit reloaded();
}

void TAMainWindow::undoManagerDidUndo(const QString &redoActionName) {
    TAUndoWindow::showAfterUndo(this, redoActionName);
}

void TAMainWindow::undoManagerDidRedo(const QString &undoActionName) {
    TAUndoWindow::showAfterRedo(this, undoActionName);
}

void TAMainWindow::cleanControllers() {
    for (TASectionController *section : {static_cast<TASectionController *>(m_invoices),
                                         static_cast<TASectionController *>(m_projects),
                                         static_cast<TASectionController *>(m_recurring)})
        if (section)
            section->clean();
}

// --- Window state and closing ---------------------------------------------------------------

void TAMainWindow::saveWindowState() const {
    if (m_document && !m_document->fileURL().isEmpty())
        TAWindowState(m_document->fileURL())
            .save(saveGeometry(), m_splitter->saveState(), m_groupsController->restorableState());
}

void TAMainWindow::restoreWindowState() {
    if (!m_document || m_document->fileURL().isEmpty())
        return;
    const TAWindowState state(m_document->fileURL());
    if (const QByteArray geometry = state.geometry(); !geometry.isEmpty())
        restoreGeometry(geometry);
    if (const QByteArray divider = state.splitter(); !divider.isEmpty())
        m_splitter->restoreState(divider);
    if (const QVariantMap groups = state.groups(); !groups.isEmpty())
        m_groupsController->restoreState(groups);
}

void TAMainWindow::closeEvent(QCloseEvent *event) {
    saveWindowState();
    event->accept();
    emit closeRequested();
}

void TAMainWindow::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        emit activated();
    // Leaving the window saves what changed, as autosave in place does.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && m_document &&
        m_document->isDocumentEdited() && !m_document->fileURL().isEmpty())
        if (auto saved = m_document->autosaveWithImplicitCancellability(); !saved)
            m_document->willPresentError(saved.error());
    QMainWindow::changeEvent(event);
}

void TAMainWindow::focusSearch() {
    m_statusBarController->searchButton()->focusSearch();
}
