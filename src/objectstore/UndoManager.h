#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

// Groups of undo actions with names. Groups nest; only top-level groups become steps of the
// undo and redo stacks. Actions registered while undoing land on the redo stack, and the
// other way round. Registration can be switched off and on again with a counter.
class UndoManager : public QObject {
    Q_OBJECT
public:
    explicit UndoManager(QObject *parent = nullptr);
    ~UndoManager() override;

    void beginUndoGrouping();
    void endUndoGrouping();
    int groupingLevel() const;

    // Registers an action in the open group. Outside any group, one is opened that closes at
    // the next closeAutomaticGroup() (the context calls it when it processes its changes)
    // or when the event loop next runs.
    void registerUndo(std::function<void()> action);

    // Names the top-level group being built (or the last one closed, when none is open).
    void setActionName(const QString &name);
    QString currentActionName() const; // the name of the group being built, if any
    QString undoActionName() const;
    QString redoActionName() const;

    bool canUndo() const;
    bool canRedo() const;
    void undo();
    void redo();
    bool isUndoing() const { return m_undoing; }
    bool isRedoing() const { return m_redoing; }

    void disableUndoRegistration();
    void enableUndoRegistration();
    bool isUndoRegistrationEnabled() const { return m_disableCount == 0; }

    void removeAllActions();
    void closeAutomaticGroup();

    int undoCount() const;
    int redoCount() const;

signals:
    void willUndo();
    void didUndo();
    void willRedo();
    void didRedo();
    void didOpenUndoGroup();
    void didCloseUndoGroup();
    // Whatever canUndo, canRedo or the action names answer may have changed: a step was
    // added, undone, redone or renamed, the stacks were cleared, or a loose change began.
    void stacksChanged();

private:
    struct Group;
    void closeGroup();

    QList<std::shared_ptr<Group>> m_undoStack;
    QList<std::shared_ptr<Group>> m_redoStack;
    QList<std::shared_ptr<Group>> m_open; // nested open groups, outermost first
    int m_disableCount = 0;
    bool m_undoing = false;
    bool m_redoing = false;
    bool m_automaticGroupOpen = false;
    bool m_closeScheduled = false;
};
