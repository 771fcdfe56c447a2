#pragma once

#include "document/TADocumentController.h"
#include "foundation/Result.h"
#include "shell/application/TALaunchState.h"
#include "shell/application/TARecentDocuments.h"
#include "shell/application/TAWelcomeWindow.h"

#include <QObject>
#include <QPointer>

#include <memory>

class TADocument;
class TAMainWindow;

// The program's commands that are not tied to one section, and its life: what it shows at
// start, how documents get their windows, the welcome window, the recent list, and what it
// remembers at quit. Every command acts on the current document and does nothing without one,
// unless it says otherwise.
class TAApplicationDelegate : public QObject {
    Q_OBJECT
public:
    explicit TAApplicationDelegate(QObject *parent = nullptr);
    ~TAApplicationDelegate() override;

    // Opens the files given at start; with none, what the last quit and the preferences ask:
    // the documents that were open, the welcome window, or the last document.
    void applicationDidFinishLaunching(const QStringList &files);
    // A later start handed over its files, or asked to be brought back.
    void openFiles(const QStringList &files);
    void applicationShouldHandleReopen();
    // Remembers what is open, then closes every document.
    void applicationShouldTerminate();

    Result<TADocument *> openDocumentAtPath(const QString &path);
    TAWelcomeWindow *welcomeWindow() const { return m_welcome; }
    TARecentDocuments &recentDocuments() { return m_recent; }
    TADocument *currentDocument() const;
    TAMainWindow *currentWindow() const;

    // Menu commands.
    void newDocument();
    void openDocument();
    void openRecent(const QString &path);
    void openLastRecent();
    void saveAction();
    void saveAsAction();
    void revertAction();
    void actionClose();
    void showPreferences();
    void printClicked();
    void printAction();
    void find();
    void importLumarin3();
    void importClients();
    void exportFile() {}
    void sendFeedback();
    void checkForUpdates() {}
    void showWelcome();
    void showAbout();
    void quit();

    // Welcome window commands.
    void welcomeOpenSample();

private:
    TADocumentWindow *makeWindow(TADocument &document);
    void showDocumentWindow(TADocument &document);
    void closeDocumentOfWindow(TAMainWindow *window);
    void presentError(const Error &error, const QString &title = QString());
    void notAvailableYet(const QString &what);
    void restoreOpenDocuments();

    TARecentDocuments m_recent;
    TALaunchState m_launch;
    QPointer<TAWelcomeWindow> m_welcome;
    TADocumentController::ScopedWindowFactory m_windows;
};
