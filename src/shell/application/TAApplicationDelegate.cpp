#include "shell/application/TAApplicationDelegate.h"

#include "billing/preferences/TAGlobalPreferences.h"
#include "document/TADocument.h"
#include "foundation/Check.h"
#include "foundation/dates/OTClock.h"
#include "importsync/sample/SampleDocument.h"
#include "layoutvalues/LMGeometry.h"
#include "shell/application/TAAboutBox.h"
#include "shell/application/TAMainMenu.h"
#include "shell/application/TAWelcomeWindow.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/window/TAMainWindow.h"
#include "shell/window/TASectionController.h"
#include "store/TAGlobal.h"
#include "store/entities/TAPreferences.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QSettings>
#include <QShortcut>
#include <QStandardPaths>
#include <QUrl>

namespace {

const QString kOpenDocumentsKey = QStringLiteral("openDocuments");
const QString kSupportPage = QStringLiteral("https://ostrel.com/billfold/support");

QString documentFilter() {
    return QCoreApplication::translate("TAApplicationDelegate", "Billfold documents (*.tadb)");
}

} // namespace

TAApplicationDelegate::TAApplicationDelegate(QObject *parent)
    : QObject(parent)
    , m_windows([this](TADocument &document) { return makeWindow(document); }) {
    connect(qApp, &QCoreApplication::aboutToQuit, this,
            &TAApplicationDelegate::applicationShouldTerminate);
}

TAApplicationDelegate::~TAApplicationDelegate() = default;

// --- Windows --------------------------------------------------------------------------------

TADocumentWindow *TAApplicationDelegate::makeWindow(TADocument &document) {
    auto *window = new TAMainWindow(document);
    new TAMainMenu(*window, *this);
    connect(window, &TAMainWindow::closeRequested, this,
            [this, window] { closeDocumentOfWindow(window); });
    connect(window, &TAMainWindow::activated, this, [window] {
        TADocumentController::sharedDocumentController().setCurrentDocument(window->document());
    });
    return window;
}

void TAApplicationDelegate::showDocumentWindow(TADocument &document) {
    TAMainWindow *window = TAMainWindow::forDocument(&document);
    BF_CHECK(window, return);
    if (!window->isVisible())
        window->restoreWindowState();
    window->show();
    window->raise();
    window->activateWindow();
    TADocumentController::sharedDocumentController().setCurrentDocument(&document);
}

void TAApplicationDelegate::closeDocumentOfWindow(TAMainWindow *window) {
    if (TADocument *document = window->document())
        TADocumentController::sharedDocumentController().closeDocument(document);
}

TADocument *TAApplicationDelegate::currentDocument() const {
    return TAGlobal::currentDocument();
}

TAMainWindow *TAApplicationDelegate::currentWindow() const {
    return TAMainWindow::forDocument(currentDocument());
}

void TAApplicationDelegate::presentError(const Error &error, const QString &title) {
    QMessageBox box(QMessageBox::Warning, title.isEmpty() ? tr("Error") : title, error.message,
                    QMessageBox::Ok, currentWindow());
    box.exec();
}

void TAApplicationDelegate::notAvailableYet(const QString &what) {
    QMessageBox::information(currentWindow(), tr("Not Available Yet"),
                             tr("%1 is not available yet in this version of Billfold.").arg(what));
}

// --- Launch and quit ------------------------------------------------------------------------

void TAApplicationDelegate::applicationDidFinishLaunching(const QStringList &files) {
    if (!files.isEmpty()) {
        openFiles(files);
        return;
    }
    const bool showWelcome = m_launch.showWelcomeIfNeeded();
    // The documents open at the last quit come back, as they would from the desktop's own
    // restoration of the session.
    restoreOpenDocuments();
    if (showWelcome)
        this->showWelcome();
    else if (TADocumentController::sharedDocumentController().documents().isEmpty())
        applicationShouldHandleReopen();
}

void TAApplicationDelegate::restoreOpenDocuments() {
    const QStringList paths =
        TAGlobalPreferences::sharedInstance().settings().value(kOpenDocumentsKey).toStringList();
    for (const QString &path : paths)
        if (QFileInfo::exists(path))
            (void)openDocumentAtPath(path); // a file that cannot be opened says so itself
}

void TAApplicationDelegate::openFiles(const QStringList &files) {
    for (const QString &file : files)
        (void)openDocumentAtPath(file);
    if (files.isEmpty())
        applicationShouldHandleReopen();
}

void TAApplicationDelegate::applicationShouldHandleReopen() {
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && !window->isMinimized() && window->isWindow() &&
            qobject_cast<QMainWindow *>(window)) {
            window->raise();
            window->activateWindow();
            return;
        }
    switch (TALaunchState::reopenAction(false, m_recent)) {
    case TALaunchState::ReopenAction::OpenLastRecent:
        openLastRecent();
        if (!TADocumentController::sharedDocumentController().documents().isEmpty())
            break;
        [[fallthrough]]; // the last document could not be opened
    case TALaunchState::ReopenAction::ShowWelcome:
        showWelcome();
        break;
    case TALaunchState::ReopenAction::Nothing:
        break;
    }
}

void TAApplicationDelegate::applicationShouldTerminate() {
    TADocumentController &controller = TADocumentController::sharedDocumentController();
    const QList<TADocument *> documents = controller.documents();
    m_launch.updateWelcomeWindowStatus(int(documents.size()));
    QStringList open;
    for (TADocument *document : documents)
        if (!document->fileURL().isEmpty())
            open.append(document->fileURL());
    TAGlobalPreferences::sharedInstance().settings().setValue(kOpenDocumentsKey, open);
    for (TADocument *document : documents) {
        if (TAMainWindow *window = TAMainWindow::forDocument(document))
            window->saveWindowState();
        controller.closeDocument(document);
    }
}

// --- Documents ------------------------------------------------------------------------------

Result<TADocument *> TAApplicationDelegate::openDocumentAtPath(const QString &path) {
    auto opened = TADocumentController::sharedDocumentController().openDocumentWithContentsOfURL(
        QFileInfo(path).absoluteFilePath());
    if (!opened) {
        presentError(opened.error());
        return opened;
    }
    m_recent.note((*opened)->fileURL());
    showDocumentWindow(**opened);
    return opened;
}

void TAApplicationDelegate::newDocument() {
    TAGlobal::setMarkAsEdited(true);
    auto made = TADocumentController::sharedDocumentController().openUntitledDocument();
    if (!made) {
        presentError(made.error());
        return;
    }
    showDocumentWindow(**made);
}

void TAApplicationDelegate::openDocument() {
    const QStringList paths = QFileDialog::getOpenFileNames(
        currentWindow(), tr("Open Document"),
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), documentFilter());
    for (const QString &path : paths)
        (void)openDocumentAtPath(path);
}

void TAApplicationDelegate::openRecent(const QString &path) {
    (void)openDocumentAtPath(path);
}

void TAApplicationDelegate::openLastRecent() {
    const QString path = m_recent.first();
    if (!path.isEmpty())
        (void)openDocumentAtPath(path);
}

void TAApplicationDelegate::saveAction() {
    TADocument *document = currentDocument();
    if (!document)
        return;
    if (document->fileURL().isEmpty()) {
        saveAsAction();
        return;
    }
    if (auto saved = document->save(); !saved)
        presentError(saved.error());
}

void TAApplicationDelegate::saveAsAction() {
    TADocument *document = currentDocument();
    TAMainWindow *window = currentWindow();
    if (!document || !window)
        return;
    // The frame as it is when the command is given travels with the new file; it is no
    // change a person would undo.
    if (TAPreferences *preferences = document->preferences()) {
        document->database().disableUndoRegistration();
        preferences->setWindowFrame(LMGeometry::stringFromRect(window->frameGeometry()));
        document->database().enableUndoRegistration();
    }
    QFileDialog dialog(window, tr("Save As"), QFileInfo(document->fileURL()).absolutePath(),
                       documentFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("tadb"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString path = dialog.selectedFiles().constFirst();
    if (auto allowed = document->panel(this, path); !allowed) {
        presentError(allowed.error());
        return;
    }
    if (auto saved = document->saveAs(path); !saved) {
        presentError(saved.error());
        return;
    }
    m_recent.note(document->fileURL());
    window->updateTitle();
    window->saveWindowState();
}

void TAApplicationDelegate::revertAction() {
    TADocument *document = currentDocument();
    if (!document || document->fileURL().isEmpty())
        return;
    const auto answer = QMessageBox::question(
        currentWindow(), tr("Revert to Saved"),
        tr("Revert “%1” to its last saved state? The changes made since then will be lost.")
            .arg(QFileInfo(document->fileURL()).fileName()),
        QMessageBox::Cancel | QMessageBox::Discard, QMessageBox::Cancel);
    if (answer != QMessageBox::Discard)
        return;
    if (auto reverted = document->revertToContentsOfURL(); !reverted)
        presentError(reverted.error());
}

void TAApplicationDelegate::actionClose() {
    if (QWidget *window = QApplication::activeWindow())
        window->close();
}

void TAApplicationDelegate::showPreferences() {
    notAvailableYet(tr("The preferences window"));
}

void TAApplicationDelegate::printClicked() {
    notAvailableYet(tr("Page setup of invoice templates"));
}

void TAApplicationDelegate::printAction() {
    TAMainWindow *window = currentWindow();
    TASectionController *section = window && window->groupsController()
                                       ? window->groupsController()->currentController()
                                       : nullptr;
    if (section && section->canPrint())
        section->actionPrint();
}

void TAApplicationDelegate::find() {
    if (TAMainWindow *window = currentWindow())
        window->focusSearch();
}

void TAApplicationDelegate::importLumarin3() {
    notAvailableYet(tr("Importing from Lumarin 3"));
}

void TAApplicationDelegate::importClients() {
    notAvailableYet(tr("Importing clients from an address book"));
}

void TAApplicationDelegate::sendFeedback() {
    QDesktopServices::openUrl(QUrl(kSupportPage));
}

void TAApplicationDelegate::showWelcome() {
    if (!m_welcome) {
        m_welcome = new TAWelcomeWindow(TAGlobalPreferences::sharedInstance());
        m_welcome->setAttribute(Qt::WA_DeleteOnClose, false);
        connect(m_welcome, &TAWelcomeWindow::welcomeNew, this, &TAApplicationDelegate::newDocument);
        connect(m_welcome, &TAWelcomeWindow::welcomeOpenSample, this,
                &TAApplicationDelegate::welcomeOpenSample);
        connect(m_welcome, &TAWelcomeWindow::welcomeOpenExisting, this,
                &TAApplicationDelegate::openDocument);
        connect(m_welcome, &TAWelcomeWindow::welcomeImportLumarin3, this, [this] {
            newDocument();
            importLumarin3();
        });
        // The program stays when its last window closes; with no document window and so no
        // menu bar, the welcome window is where the standard Quit keys are heard.
        auto *quitKeys = new QShortcut(QKeySequence::Quit, m_welcome);
        connect(quitKeys, &QShortcut::activated, this, &TAApplicationDelegate::quit);
    }
    m_welcome->showWelcome();
}

void TAApplicationDelegate::showAbout() {
    TAAboutBox about(currentWindow());
    about.exec();
}

void TAApplicationDelegate::quit() {
    QCoreApplication::quit();
}

void TAApplicationDelegate::welcomeOpenSample() {
    // The sample is copied into a new untitled document, so the shipped file is never written.
    auto made = TADocumentController::sharedDocumentController().openUntitledDocument();
    if (!made) {
        presentError(made.error());
        showWelcome();
        return;
    }
    TADocument *document = *made;
    if (auto copied = SampleDocument::copyInto(*document, OTClock::now()); !copied) {
        TADocumentController::sharedDocumentController().closeDocument(document);
        presentError(copied.error());
        showWelcome();
        return;
    }
    if (TAMainWindow *window = TAMainWindow::forDocument(document))
        window->groupsController()->reload();
    showDocumentWindow(*document);
}
