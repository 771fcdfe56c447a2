#pragma once

#include "objectstore/UndoManager.h"

#include <QAction>
#include <QObject>
#include <QPointer>

class QMenu;

// The Edit menu's Undo and Redo, bound to the undo manager of the document in front. Their
// titles name the step they would undo or redo, and they are disabled when there is none or
// no document at all. The main window adds them to its menu (and so gets their shortcuts)
// and rebinds them whenever another document comes to the front.
class TAUndoMenuActions : public QObject {
    Q_OBJECT
public:
    explicit TAUndoMenuActions(QObject *parent = nullptr);
    ~TAUndoMenuActions() override;

    QAction *undoAction() const { return m_undo; }
    QAction *redoAction() const { return m_redo; }
    void addToMenu(QMenu *menu) const;

    // Null when no document is open. Held weakly: a manager that goes leaves both disabled.
    UndoManager *undoManager() const { return m_manager.data(); }
    void setUndoManager(UndoManager *manager);

    // Brings titles and enabled states in line with the manager. Its signals call this.
    void refresh();

private:
    void undo();
    void redo();
    static QString title(const QString &format, const QString &bare, const QString &name);

    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QPointer<UndoManager> m_manager;
    QList<QMetaObject::Connection> m_connections;
};
