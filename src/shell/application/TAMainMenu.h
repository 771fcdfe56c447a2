#pragma once

#include <QKeySequence>
#include <QObject>
#include <QPointer>

class QAction;
class QMenu;
class QMenuBar;
class TAApplicationDelegate;
class TAMainWindow;
class TAUndoMenuActions;

// The menu bar of a document window: File, Edit, View, the current section's menu, Window and
// Help. Commands go to the application delegate; each command's enabling follows its tag and
// is checked when its menu opens and again when it runs, since a shortcut needs no menu.
class TAMainMenu : public QObject {
    Q_OBJECT
public:
    enum Tag {
        SaveTag = 2103,
        SaveAsTag = 2104,
        RevertTag = 21055,
        PageSetupTag = 2105,
        ImportClientsTag = 2106,
        PreferencesTag = 2121,
        ImportLumarin3Tag = 19,
        PrintTag = 3131,
    };

    TAMainMenu(TAMainWindow &window, TAApplicationDelegate &delegate);

    QMenuBar *menuBar() const;
    QMenu *windowMenu() const { return m_windowMenu; }
    TAUndoMenuActions *undoActions() const { return m_undo; }
    // The action with that tag, for tests and the delegate; null when none.
    QAction *actionWithTag(int tag) const;
    // Enables every command by its rule, as now.
    void validate();

private:
    void buildFileMenu();
    void buildEditMenu();
    void buildViewMenu();
    void buildWindowMenu();
    void buildHelpMenu();
    QAction *add(QMenu *menu, const QString &title, int tag,
                 void (TAApplicationDelegate::*command)(), const QKeySequence &shortcut = {});
    void placeActionMenu(QMenu *menu);
    void rebuildWindowMenu();
    bool isEnabled(int tag) const;

    TAMainWindow &m_window;
    TAApplicationDelegate &m_delegate;
    TAUndoMenuActions *m_undo = nullptr;
    QMenu *m_viewMenu = nullptr;
    QMenu *m_windowMenu = nullptr;
    QPointer<QAction> m_actionMenuAction;
    QList<QAction *> m_windowListActions;
};
