#pragma once

#include "toolkit/OTAction.h"

#include <QList>

#include <type_traits>

// The listeners of one event of a control, in the order they were added. Any number of
// parties may listen; a section takes a control over by clearing the list and adding itself.
class OTActionList {
public:
    OTActionList() = default;
    template <class Target, class Selector>
    requires std::is_member_function_pointer_v<Selector>
    static OTActionList listFromTarget(Target *target, Selector selector) {
        OTActionList list;
        list.addTarget(target, selector);
        return list;
    }

    template <class Target, class Selector>
    requires std::is_member_function_pointer_v<Selector> OTAction addTarget(Target *target,
                                                                            Selector selector) {
        const OTAction action = OTAction::actionFromTarget(target, selector);
        addAction(action);
        return action;
    }
    // A callable run for as long as the target lives.
    OTAction addTarget(QObject *target, OTAction::Selector selector);
    void addAction(const OTAction &action) { m_actions.append(action); }
    void removeAction(const OTAction &action) { m_actions.removeAll(action); }
    void removeTarget(const QObject *target);
    void clearActions() { m_actions.clear(); }
    void copyActionsTo(OTActionList &other) const { other.m_actions.append(m_actions); }

    // Tells every action, in order of adding. An action may change the list while it runs:
    // the walk goes by index and reads each action afresh.
    void inform(QObject *sender) const;

    const QList<OTAction> &actions() const { return m_actions; }
    qsizetype count() const { return m_actions.size(); }
    bool isEmpty() const { return m_actions.isEmpty(); }

private:
    QList<OTAction> m_actions;
};
