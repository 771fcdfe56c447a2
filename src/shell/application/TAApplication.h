#pragma once

#include <QApplication>

// The program's application object. It names the program for settings, the desktop and the
// session bus, keeps the process alive with no window open, and holds the two process-wide
// flags that decide whether documents show their undo window.
class TAApplication : public QApplication {
    Q_OBJECT
public:
    TAApplication(int &argc, char **argv);

    // The running application object, or none when the process made a plain QApplication.
    static TAApplication *instance();

    // A document is being reverted: undo messages would describe changes that are going away.
    bool isReverting() const { return m_reverting; }
    void setReverting(bool reverting);
    // There is no versions browser on this platform; the flag is kept so that the undo window
    // rule reads the same everywhere.
    bool isInVersions() const { return m_inVersions; }
    void setInVersions(bool inVersions);

    // Turn the undo window of every open document on or off.
    static void enableDocumentsUndoWindow();
    static void disableDocumentsUndoWindow();

    // "Version 1.2.3 (build)" for the about box.
    static QString aboutBoxVersion();
    // The build the version comes from, as the about box shows it in parentheses.
    static QString buildVersion();

    // Updates are the distribution's business: the menu command stays and does nothing.
    void checkForUpdates() {}
    // Closes the active window, whichever window that is.
    static void closeKeyWindow();

private:
    void updateDocumentsUndoWindow();

    bool m_reverting = false;
    bool m_inVersions = false;
};
