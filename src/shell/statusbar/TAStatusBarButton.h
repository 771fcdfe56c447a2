#pragma once

#include "toolkit/OTActionList.h"

#include <QToolButton>

// One button of the bottom bar. The bar makes every button once; the section that is shown
// takes a button over by clearing its click actions and adding its own.
class TAStatusBarButton : public QToolButton {
    Q_OBJECT
public:
    TAStatusBarButton(const QString &title, const QIcon &icon, bool hasDisabledLook,
                      QWidget *parent = nullptr);

    OTActionList &clickActions() { return m_clickActions; }
    const OTActionList &clickActions() const { return m_clickActions; }

    // Without the disabled look a button refuses to be disabled: the section that owns it
    // answers a click that does not apply itself.
    bool hasDisabledLook() const { return m_hasDisabledLook; }

protected:
    void changeEvent(QEvent *event) override;

private:
    OTActionList m_clickActions;
    bool m_hasDisabledLook;
};
