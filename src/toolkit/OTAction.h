#pragma once

#include <QPointer>

#include <functional>

// A target and what to do on it. The target is held without ownership: once it is destroyed
// the action does nothing, so a control never calls into a section that has gone.
class OTAction {
public:
    using Selector = std::function<void(QObject *sender)>;

    OTAction() = default;
    OTAction(QObject *target, Selector selector);

    template <class Target>
    static OTAction actionFromTarget(Target *target, void (Target::*selector)(QObject *)) {
        return OTAction(target,
                        [target, selector](QObject *sender) { (target->*selector)(sender); });
    }
    template <class Target>
    static OTAction actionFromTarget(Target *target, void (Target::*selector)()) {
        return OTAction(target, [target, selector](QObject *) { (target->*selector)(); });
    }

    QObject *target() const { return m_target.data(); }
    // Performs the selector with the sender when the target still lives; otherwise nothing.
    void inform(QObject *sender) const;

    // Two copies of one action are the same action; two actions made alike are not.
    bool operator==(const OTAction &other) const { return m_serial == other.m_serial; }

private:
    QPointer<QObject> m_target;
    Selector m_selector;
    quint64 m_serial = 0;
};
