#include "objectstore/UndoManager.h"

#include <QCoreApplication>
#include <QTimer>

struct UndoManager::Group {
    QString name;
    QList<std::function<void()>> actions;
};

UndoManager::UndoManager(QObject *parent)
    : QObject(parent) {}

UndoManager::~UndoManager() = default;

void UndoManager::beginUndoGrouping() {
    m_open.append(std::make_shared<Group>());
    emit didOpenUndoGroup();
}

void UndoManager::endUndoGrouping() {
    if (m_open.isEmpty())
        return;
    closeGroup();
}

void UndoManager::closeGroup() {
    std::shared_ptr<Group> group = m_open.takeLast();
    if (m_open.isEmpty())
        m_automaticGroupOpen = false;
    if (!m_open.isEmpty()) {
        // A nested group's actions become part of its parent, in order.
        m_open.last()->actions += group->actions;
        if (m_open.last()->name.isEmpty())
            m_open.last()->name = group->name;
    } else if (!group->actions.isEmpty()) {
        if (m_undoing) {
            m_redoStack.append(group);
        } else {
            m_undoStack.append(group);
            if (!m_redoing)
                m_redoStack.clear();
        }
        emit stacksChanged();
    }
    emit didCloseUndoGroup();
}

int UndoManager::groupingLevel() const {
    return int(m_open.size());
}

void UndoManager::registerUndo(std::function<void()> action) {
    if (m_disableCount > 0)
        return;
    if (m_open.isEmpty()) {
        beginUndoGrouping();
        m_automaticGroupOpen = true;
        // Changes made outside any explicit group form one step per turn of the event loop.
        if (!m_closeScheduled && QCoreApplication::instance()) {
            m_closeScheduled = true;
            QTimer::singleShot(0, this, [this] {
                m_closeScheduled = false;
                closeAutomaticGroup();
            });
        }
    }
    std::shared_ptr<Group> &group = m_open.last();
    group->actions.append(std::move(action));
    // The first change of a loose group is already undoable, before the group closes.
    if (m_automaticGroupOpen && m_open.size() == 1 && group->actions.size() == 1)
        emit stacksChanged();
}

void UndoManager::closeAutomaticGroup() {
    if (m_automaticGroupOpen && m_open.size() == 1)
        closeGroup();
}

void UndoManager::setActionName(const QString &name) {
    if (!m_open.isEmpty()) {
        m_open.first()->name = name;
    } else if (!m_undoStack.isEmpty() && m_undoStack.last()->name != name) {
        m_undoStack.last()->name = name;
        emit stacksChanged(); // the Undo menu item shows this name
    }
}

QString UndoManager::currentActionName() const {
    return m_open.isEmpty() ? QString() : m_open.first()->name;
}

QString UndoManager::undoActionName() const {
    return m_undoStack.isEmpty() ? QString() : m_undoStack.last()->name;
}

QString UndoManager::redoActionName() const {
    return m_redoStack.isEmpty() ? QString() : m_redoStack.last()->name;
}

bool UndoManager::canUndo() const {
    return !m_undoStack.isEmpty() ||
           (m_automaticGroupOpen && m_open.size() == 1 && !m_open.first()->actions.isEmpty());
}

bool UndoManager::canRedo() const {
    return !m_redoStack.isEmpty();
}

void UndoManager::undo() {
    closeAutomaticGroup();
    if (!m_open.isEmpty() || m_undoStack.isEmpty())
        return;
    std::shared_ptr<Group> group = m_undoStack.takeLast();
    emit willUndo();
    m_undoing = true;
    beginUndoGrouping();
    m_open.last()->name = group->name;
    for (auto it = group->actions.crbegin(); it != group->actions.crend(); ++it)
        (*it)();
    closeGroup();
    m_undoing = false;
    emit stacksChanged();
    emit didUndo();
}

void UndoManager::redo() {
    closeAutomaticGroup();
    if (!m_open.isEmpty() || m_redoStack.isEmpty())
        return;
    std::shared_ptr<Group> group = m_redoStack.takeLast();
    emit willRedo();
    m_redoing = true;
    beginUndoGrouping();
    m_open.last()->name = group->name;
    for (auto it = group->actions.crbegin(); it != group->actions.crend(); ++it)
        (*it)();
    closeGroup();
    m_redoing = false;
    emit stacksChanged();
    emit didRedo();
}

void UndoManager::disableUndoRegistration() {
    ++m_disableCount;
}

void UndoManager::enableUndoRegistration() {
    if (m_disableCount > 0)
        --m_disableCount;
}

void UndoManager::removeAllActions() {
    m_undoStack.clear();
    m_redoStack.clear();
    for (auto &group : m_open)
        group->actions.clear();
    emit stacksChanged();
}

int UndoManager::undoCount() const {
    return int(m_undoStack.size());
}

int UndoManager::redoCount() const {
    return int(m_redoStack.size());
}
