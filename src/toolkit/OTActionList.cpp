#include "toolkit/OTActionList.h"

OTAction OTActionList::addTarget(QObject *target, OTAction::Selector selector) {
    const OTAction action(target, std::move(selector));
    addAction(action);
    return action;
}

void OTActionList::removeTarget(const QObject *target) {
    m_actions.removeIf([target](const OTAction &action) { return action.target() == target; });
}

void OTActionList::inform(QObject *sender) const {
    for (qsizetype i = 0; i < m_actions.size(); ++i) {
        const OTAction action = m_actions.at(i); // a copy: the call may clear the list
        action.inform(sender);
    }
}
