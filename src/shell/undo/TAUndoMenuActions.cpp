#include "shell/undo/TAUndoMenuActions.h"

#include "objectstore/UndoManager.h"

#include <QIcon>
#include <QKeySequence>
#include <QMenu>

TAUndoMenuActions::TAUndoMenuActions(QObject *parent)
    : QObject(parent)
    , m_undo(new QAction(this))
    , m_redo(new QAction(this)) {
    m_undo->setObjectName(QStringLiteral("undoAction"));
    m_redo->setObjectName(QStringLiteral("redoAction"));
    m_undo->setIcon(QIcon::fromTheme(QStringLiteral("edit-undo")));
    m_redo->setIcon(QIcon::fromTheme(QStringLiteral("edit-redo")));
    m_undo->setShortcuts(QKeySequence::Undo);
    m_redo->setShortcuts(QKeySequence::Redo);
    connect(m_undo, &QAction::triggered, this, &TAUndoMenuActions::undo);
    connect(m_redo, &QAction::triggered, this, &TAUndoMenuActions::redo);
    refresh();
}

TAUndoMenuActions::~TAUndoMenuActions() = default;

void TAUndoMenuActions::addToMenu(QMenu *menu) const {
    menu->addAction(m_undo);
    menu->addAction(m_redo);
}

void TAUndoMenuActions::setUndoManager(UndoManager *manager) {
    for (const QMetaObject::Connection &connection : std::as_const(m_connections))
        disconnect(connection);
    m_connections.clear();
    m_manager = manager;
    if (manager) {
        m_connections = {
            connect(manager, &UndoManager::stacksChanged, this, &TAUndoMenuActions::refresh),
            // Reading the manager's state is safe here: a destroyed manager is already null.
            connect(manager, &QObject::destroyed, this, &TAUndoMenuActions::refresh),
        };
    }
    refresh();
}

void TAUndoMenuActions::refresh() {
    UndoManager *manager = m_manager.data();
    m_undo->setText(title(tr("&Undo %1"), tr("&Undo"), manager ? manager->undoActionName() : ""));
    m_redo->setText(title(tr("&Redo %1"), tr("&Redo"), manager ? manager->redoActionName() : ""));
    m_undo->setEnabled(manager && manager->canUndo());
    m_redo->setEnabled(manager && manager->canRedo());
}

// A name is shown as it is: an ampersand in it must not turn into a mnemonic.
QString TAUndoMenuActions::title(const QString &format, const QString &bare, const QString &name) {
    if (name.trimmed().isEmpty())
        return bare;
    return format.arg(QString(name).replace(u'&', QStringLiteral("&&")));
}

void TAUndoMenuActions::undo() {
    if (m_manager && m_manager->canUndo())
        m_manager->undo();
}

void TAUndoMenuActions::redo() {
    if (m_manager && m_manager->canRedo())
        m_manager->redo();
}
