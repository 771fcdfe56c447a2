#include "shell/application/TAMainMenu.h"

#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "objectstore/ManagedObjectContext.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAMenuValidation.h"
#include "shell/application/TARecentDocumentsMenu.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/undo/TAUndoMenuActions.h"
#include "shell/window/TAMainWindow.h"
#include "shell/window/TASectionController.h"

#include <QApplication>
#include <QMenuBar>

TAMainMenu::TAMainMenu(TAMainWindow &window, TAApplicationDelegate &delegate)
    : QObject(&window)
    , m_window(window)
    , m_delegate(delegate) {
    buildFileMenu();
    buildEditMenu();
    buildViewMenu();
    buildWindowMenu();
    buildHelpMenu();
    connect(&window, &TAMainWindow::actionMenuChanged, this, &TAMainMenu::placeActionMenu);
    placeActionMenu(window.actionMenu());
}

QMenuBar *TAMainMenu::menuBar() const {
    return m_window.menuBar();
}

QAction *TAMainMenu::add(QMenu *menu, const QString &title, int tag,
                         void (TAApplicationDelegate::*command)(), const QKeySequence &shortcut) {
    QAction *action = menu->addAction(title);
    action->setData(tag);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, tag, command] {
        // A shortcut runs without its menu being shown: the rule is asked here as well.
        if (isEnabled(tag))
            (m_delegate.*command)();
        else
            QApplication::beep();
    });
    return action;
}

void TAMainMenu::buildFileMenu() {
    QMenu *file = menuBar()->addMenu(tr("&File"));
    using D = TAApplicationDelegate;
    add(file, tr("&New"), 0, &D::newDocument, QKeySequence::New);
    add(file, tr("&Open…"), 0, &D::openDocument, QKeySequence::Open);
    auto *recent = new TARecentDocumentsMenu(m_delegate.recentDocuments(), file);
    recent->setTitle(tr("Open &Recent"));
    connect(recent, &TARecentDocumentsMenu::openRecent, &m_delegate,
            &TAApplicationDelegate::openRecent);
    file->addMenu(recent);
    file->addSeparator();
    add(file, tr("&Close"), 0, &D::actionClose, QKeySequence::Close);
    add(file, tr("&Save"), SaveTag, &D::saveAction, QKeySequence::Save);
    add(file, tr("Save &As…"), SaveAsTag, &D::saveAsAction, QKeySequence::SaveAs);
    add(file, tr("Re&vert to Saved"), RevertTag, &D::revertAction);
    file->addSeparator();
    QMenu *import = file->addMenu(tr("&Import"));
    add(import, tr("Data from Lumarin 3…"), ImportLumarin3Tag, &D::importLumarin3);
    add(import, tr("Clients from Address Book…"), ImportClientsTag, &D::importClients);
    add(file, tr("&Export…"), 0, &D::exportFile);
    file->addSeparator();
    add(file, tr("Page Set&up…"), PageSetupTag, &D::printClicked);
    add(file, tr("&Print…"), PrintTag, &D::printAction, QKeySequence::Print);
    file->addSeparator();
    QAction *quit = add(file, tr("&Quit"), 0, &D::quit, QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);
    connect(file, &QMenu::aboutToShow, this, &TAMainMenu::validate);
    connect(import, &QMenu::aboutToShow, this, &TAMainMenu::validate);
}

void TAMainMenu::buildEditMenu() {
    QMenu *edit = menuBar()->addMenu(tr("&Edit"));
    m_undo = new TAUndoMenuActions(this);
    m_undo->addToMenu(edit);
    // A revert gives the document a new context, and with it a new undo manager.
    auto bind = [this] {
        TADocument *document = m_window.document();
        ManagedObjectContext *context = document ? document->managedObjectContext() : nullptr;
        m_undo->setUndoManager(context ? context->undoManager() : nullptr);
    };
    bind();
    connect(&m_window, &TAMainWindow::reloaded, this, bind);
    edit->addSeparator();
    // The standard editing commands act on whatever field has the keyboard focus.
    const std::pair<const char *, QKeySequence::StandardKey> editing[] = {
        {QT_TR_NOOP("Cu&t"), QKeySequence::Cut},
        {QT_TR_NOOP("&Copy"), QKeySequence::Copy},
        {QT_TR_NOOP("&Paste"), QKeySequence::Paste},
        {QT_TR_NOOP("Select &All"), QKeySequence::SelectAll}};
    const char *methods[] = {"cut", "copy", "paste", "selectAll"};
    for (int i = 0; i < 4; ++i) {
        QAction *action = edit->addAction(tr(editing[i].first));
        action->setShortcut(editing[i].second);
        action->setShortcutContext(Qt::WidgetShortcut); // the focused field keeps its own keys
        const char *method = methods[i];
        connect(action, &QAction::triggered, this, [method] {
            if (QWidget *focus = QApplication::focusWidget())
                QMetaObject::invokeMethod(focus, method);
        });
    }
    edit->addSeparator();
    add(edit, tr("&Find"), 0, &TAApplicationDelegate::find, QKeySequence::Find);
    edit->addSeparator();
    QAction *preferences = add(edit, tr("Pr&eferences…"), PreferencesTag,
                               &TAApplicationDelegate::showPreferences, QKeySequence::Preferences);
    preferences->setMenuRole(QAction::PreferencesRole);
    connect(edit, &QMenu::aboutToShow, this, &TAMainMenu::validate);
}

void TAMainMenu::buildViewMenu() {
    m_viewMenu = menuBar()->addMenu(tr("&View"));
    // One command per section, so the sections are a keystroke away.
    const std::pair<const char *, void (TAGroupsController::*)()> sections[] = {
        {QT_TR_NOOP("&Invoices"), &TAGroupsController::selectInvoices},
        {QT_TR_NOOP("&Recurring"), &TAGroupsController::selectRecurring},
        {QT_TR_NOOP("I&nventory"), &TAGroupsController::selectInventory},
        {QT_TR_NOOP("&Clients"), &TAGroupsController::selectClients},
        {QT_TR_NOOP("&Projects"), &TAGroupsController::selectProjects},
        {QT_TR_NOOP("R&eports"), &TAGroupsController::selectReports}};
    int number = 1;
    for (const auto &[title, select] : sections) {
        QAction *action = m_viewMenu->addAction(tr(title));
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_0 + number++)));
        connect(action, &QAction::triggered, this, [this, select] {
            if (TAGroupsController *groups = m_window.groupsController())
                (groups->*select)();
        });
    }
}

void TAMainMenu::buildWindowMenu() {
    m_windowMenu = menuBar()->addMenu(tr("&Window"));
    connect(m_windowMenu, &QMenu::aboutToShow, this, &TAMainMenu::rebuildWindowMenu);
    rebuildWindowMenu();
}

void TAMainMenu::rebuildWindowMenu() {
    m_windowMenu->clear();
    QAction *minimize = m_windowMenu->addAction(tr("&Minimize"));
    minimize->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
    connect(minimize, &QAction::triggered, &m_window, &QWidget::showMinimized);
    m_windowMenu->addSeparator();
    add(m_windowMenu, tr("&Welcome to Billfold"), 0, &TAApplicationDelegate::showWelcome);
    m_windowMenu->addSeparator();
    for (TADocument *document : TADocumentController::sharedDocumentController().documents()) {
        TAMainWindow *window = TAMainWindow::forDocument(document);
        if (!window)
            continue;
        QAction *action =
            m_windowMenu->addAction(window->windowTitle().remove(QStringLiteral("[*]")));
        action->setCheckable(true);
        action->setChecked(window == &m_window);
        QPointer<TAMainWindow> target(window);
        connect(action, &QAction::triggered, this, [target] {
            if (target) {
                target->showNormal();
                target->raise();
                target->activateWindow();
            }
        });
    }
}

void TAMainMenu::buildHelpMenu() {
    QMenu *help = menuBar()->addMenu(tr("&Help"));
    add(help, tr("Send &Feedback…"), 0, &TAApplicationDelegate::sendFeedback);
    add(help, tr("Check for &Updates…"), 0, &TAApplicationDelegate::checkForUpdates);
    help->addSeparator();
    QAction *about = add(help, tr("&About Billfold"), 0, &TAApplicationDelegate::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

void TAMainMenu::placeActionMenu(QMenu *menu) {
    if (m_actionMenuAction)
        menuBar()->removeAction(m_actionMenuAction);
    m_actionMenuAction = nullptr;
    if (menu) {
        menuBar()->insertMenu(m_windowMenu->menuAction(), menu);
        m_actionMenuAction = menu->menuAction();
    }
}

QAction *TAMainMenu::actionWithTag(int tag) const {
    for (QAction *action : m_window.findChildren<QAction *>())
        if (action->data().toInt() == tag && tag != 0)
            return action;
    return nullptr;
}

bool TAMainMenu::isEnabled(int tag) const {
    TAMenuValidation::State state;
    state.modalWindow = QApplication::activeModalWidget() != nullptr;
    TADocument *document = m_window.document();
    state.hasDocument = document != nullptr;
    state.lockedWithPassword = document && document->isLockedWithPassword();
    state.importSourceExists = false; // no importer of other programs' files yet
    const TAGroupsController *groups = m_window.groupsController();
    const TASectionController *section = groups ? groups->currentController() : nullptr;
    state.sectionCanPrint = section && section->canPrint();
    return TAMenuValidation::validateMenuItem(tag, state);
}

void TAMainMenu::validate() {
    for (QAction *action : m_window.findChildren<QAction *>()) {
        const QVariant tag = action->data();
        if (tag.typeId() == QMetaType::Int)
            action->setEnabled(isEnabled(tag.toInt()));
    }
}
