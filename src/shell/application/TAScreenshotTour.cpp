#include "shell/application/TAScreenshotTour.h"

#include "document/TADocument.h"
#include "objectstore/ManagedObjectContext.h"
#include "shell/application/TAAboutBox.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAMainMenu.h"
#include "shell/application/TAWelcomeWindow.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/sidebar/TAGroupsModel.h"
#include "shell/sidebar/TAGroupsOutlineView.h"
#include "shell/undo/TAConfirmWindow.h"
#include "shell/undo/TAUndoMenuActions.h"
#include "shell/window/TAMainWindow.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyleFactory>
#include <QTimer>

#include <cstdio>

TAScreenshotTour::TAScreenshotTour(TAApplicationDelegate &delegate, const QString &folder)
    : m_delegate(delegate)
    , m_folder(folder) {
    m_folder.mkpath(QStringLiteral("."));
}

void TAScreenshotTour::useDarkPalette() {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette dark;
    const QColor window(45, 45, 48), base(30, 30, 32), text(230, 230, 230), mid(90, 90, 96);
    dark.setColor(QPalette::Window, window);
    dark.setColor(QPalette::WindowText, text);
    dark.setColor(QPalette::Base, base);
    dark.setColor(QPalette::AlternateBase, window);
    dark.setColor(QPalette::ToolTipBase, base);
    dark.setColor(QPalette::ToolTipText, text);
    dark.setColor(QPalette::Text, text);
    dark.setColor(QPalette::Button, window);
    dark.setColor(QPalette::ButtonText, text);
    dark.setColor(QPalette::Mid, mid);
    dark.setColor(QPalette::Dark, base);
    dark.setColor(QPalette::Light, QColor(70, 70, 74));
    dark.setColor(QPalette::Highlight, QColor(53, 132, 228));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(120, 170, 255));
    dark.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    QApplication::setPalette(dark);
}

void TAScreenshotTour::settle(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    do
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    while (timer.elapsed() < milliseconds);
}

void TAScreenshotTour::shoot(QWidget *widget, const QString &name) {
    settle();
    const QString path = m_folder.filePath(name + QStringLiteral(".png"));
    if (!widget->grab().save(path))
        std::fprintf(stderr, "billfold: could not write %s\n", qPrintable(path));
}

// The screen as it is, for what lies over the window (menus, the undo message).
void TAScreenshotTour::shootScreen(QWidget *over, const QString &name) {
    settle(150);
    QScreen *screen = over->screen();
    const QRect area = over->frameGeometry().adjusted(-20, -20, 20, 20);
    const QPixmap picture = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    const QString path = m_folder.filePath(name + QStringLiteral(".png"));
    if (picture.isNull() || !picture.save(path))
        shoot(over, name); // platforms that cannot grab the screen get the window alone
}

void TAScreenshotTour::start() {
    m_delegate.showWelcome();
    if (QWidget *welcome = m_delegate.welcomeWindow())
        shoot(welcome, QStringLiteral("dialog-welcome"));
    m_delegate.welcomeOpenSample();
    TAMainWindow *window = m_delegate.currentWindow();
    if (!window) {
        std::fprintf(stderr, "billfold: the sample business could not be opened\n");
        QApplication::exit(1);
        return;
    }
    if (QWidget *welcome = m_delegate.welcomeWindow())
        welcome->hide();
    window->resize(1100, 700);
    settle(200);
    shootSections(*window);
    shootMenus(*window);
    shootDialogs(*window);
    shootUndoMessage(*window);
    shootPasswordView(*window);
    std::printf("Screenshots are in %s\n", qPrintable(m_folder.absolutePath()));
    QApplication::quit();
}

void TAScreenshotTour::shootSections(TAMainWindow &window) {
    TAGroupsController &groups = *window.groupsController();
    const std::pair<const char *, void (TAGroupsController::*)()> sections[] = {
        {"invoices", &TAGroupsController::selectInvoices},
        {"recurring", &TAGroupsController::selectRecurring},
        {"inventory", &TAGroupsController::selectInventory},
        {"clients", &TAGroupsController::selectClients},
        {"projects", &TAGroupsController::selectProjects},
        {"reports", &TAGroupsController::selectReports}};
    for (const auto &[name, select] : sections) {
        (groups.*select)();
        shoot(&window, QStringLiteral("section-") + QLatin1String(name));
    }
    const QList<TAProject *> projects = groups.model().projects();
    if (!projects.isEmpty()) {
        window.sidebar()->expand(groups.model().indexOfKey(QStringLiteral("Projects")));
        groups.selectProject(projects.constFirst());
        shoot(&window, QStringLiteral("section-project"));
    }
    groups.selectInvoices();
}

void TAScreenshotTour::shootMenus(TAMainWindow &window) {
    int number = 1;
    for (QAction *action : window.menuBar()->actions()) {
        QMenu *menu = action->menu();
        if (!menu)
            continue;
        window.menuBar()->setActiveAction(action);
        settle(100);
        const QString title = action->text().remove(u'&').toLower();
        shoot(menu, QStringLiteral("menu-%1-%2").arg(number++).arg(title));
        menu->hide();
    }
    window.menuBar()->setActiveAction(nullptr);
    TAGroupsController &groups = *window.groupsController();
    if (!groups.model().projects().isEmpty()) {
        groups.selectProject(groups.model().projects().constFirst());
        QMenu *menu = groups.sidebarMenuWithActions();
        menu->popup(window.mapToGlobal(QPoint(120, 160)));
        shoot(menu, QStringLiteral("menu-sidebar-project"));
        menu->hide();
    }
}

void TAScreenshotTour::shootDialogs(TAMainWindow &window) {
    TAAboutBox about(&window);
    about.show();
    shoot(&about, QStringLiteral("dialog-about"));
    about.hide();
    // The question sections ask before an action with several outcomes.
    TAConfirmWindow confirm;
    confirm.setMessage(tr("Delete the selected invoices? Invoices of a project can go back to "
                          "their project instead."));
    confirm.setButtonsTitles({{QStringLiteral("option1"), tr("Delete")},
                              {QStringLiteral("option2"), tr("Back to Project")},
                              {QStringLiteral("option3"), tr("Cancel")}});
    confirm.show(&window);
    shoot(&confirm, QStringLiteral("dialog-confirm"));
    confirm.hide();
}

void TAScreenshotTour::shootUndoMessage(TAMainWindow &window) {
    TAGroupsController &groups = *window.groupsController();
    TADocument *document = window.document();
    if (groups.model().projects().isEmpty() || !document)
        return;
    TAProject *project = groups.model().projects().constFirst();
    const QString name = project->name();
    document->database().beginUndoGroupingWithName(tr("Rename Project"));
    project->setName(name + tr(" (renamed)"));
    document->database().endUndoGrouping();
    document->managedObjectContext()->processPendingChanges();
    if (auto *menu = window.findChild<TAMainMenu *>())
        menu->undoActions()->undoAction()->trigger();
    settle(300);
    shootScreen(&window, QStringLiteral("dialog-undo-message"));
    settle(1500); // the message fades before the next picture
}

void TAScreenshotTour::shootPasswordView(TAMainWindow &window) {
    TADocument *document = window.document();
    TAPreferences *preferences = document ? document->preferences() : nullptr;
    if (!preferences)
        return;
    document->database().disableUndoRegistration();
    preferences->setPassword(QStringLiteral("sample"));
    document->database().enableUndoRegistration();
    document->reloadSidebar();
    shoot(&window, QStringLiteral("dialog-password"));
}
