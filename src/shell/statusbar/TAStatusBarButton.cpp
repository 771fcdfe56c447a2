#include "shell/statusbar/TAStatusBarButton.h"

#include <QEvent>

TAStatusBarButton::TAStatusBarButton(const QString &title, const QIcon &icon, bool hasDisabledLook,
                                     QWidget *parent)
    : QToolButton(parent)
    , m_hasDisabledLook(hasDisabledLook) {
    setText(title);
    setAccessibleName(title);
    setIcon(icon);
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setToolButtonStyle(icon.isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonTextBesideIcon);
    connect(this, &QToolButton::clicked, this, [this] { m_clickActions.inform(this); });
}

void TAStatusBarButton::changeEvent(QEvent *event) {
    // Only an explicit setEnabled(false) is undone; a button disabled with its window (a modal
    // dialog is up) stays disabled until the window is enabled again.
    if (event->type() == QEvent::EnabledChange && !m_hasDisabledLook &&
        testAttribute(Qt::WA_ForceDisabled))
        setEnabled(true);
    QToolButton::changeEvent(event);
}
