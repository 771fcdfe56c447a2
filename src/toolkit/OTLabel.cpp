#include "toolkit/OTLabel.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

OTLabel::OTLabel(QWidget *parent)
    : OTView(parent) {
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

OTLabel::OTLabel(const QString &text, QWidget *parent)
    : OTLabel(parent) {
    setText(text);
}

void OTLabel::setText(const QString &text) {
    if (m_text == text)
        return;
    m_text = text;
    updateGeometry();
    update();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

QPalette::ColorRole OTLabel::colorRole() const {
    return m_role.value_or(isLink() ? QPalette::Link : QPalette::WindowText);
}

void OTLabel::setColorRole(QPalette::ColorRole role) {
    m_role = role;
    update();
}

void OTLabel::setOverColorRole(QPalette::ColorRole role) {
    m_overRole = role;
    update();
}

void OTLabel::setPressedColorRole(QPalette::ColorRole role) {
    m_pressedRole = role;
    update();
}

void OTLabel::setHorizontalAlignment(Qt::Alignment alignment) {
    m_alignment = alignment & Qt::AlignHorizontal_Mask;
    update();
}

void OTLabel::setWithUnderline(bool underline) {
    m_withUnderline = underline;
    update();
}

void OTLabel::setCanBecomeKeyView(bool can) {
    setFocusPolicy(can ? Qt::StrongFocus : Qt::NoFocus);
}

QSize OTLabel::sizeHint() const {
    const QFontMetrics metrics(textFont());
    const QMargins margins = contentsMargins();
    return QSize(metrics.horizontalAdvance(m_text) + margins.left() + margins.right() + 2,
                 metrics.height() + margins.top() + margins.bottom());
}

QSize OTLabel::minimumSizeHint() const {
    // Narrower than its text the label elides, so only the height is a minimum.
    return QSize(0, sizeHint().height());
}

QAccessible::Role OTLabel::accessibleRole() const {
    return isLink() ? QAccessible::Link : QAccessible::StaticText;
}

bool OTLabel::isClickable() const {
    return isLink() || OTView::isClickable();
}

void OTLabel::performClick() {
    m_clickActions.inform(this);
    OTView::performClick();
}

void OTLabel::paintEvent(QPaintEvent *event) {
    OTView::paintEvent(event);
    QPainter painter(this);
    painter.setFont(textFont());
    painter.setPen(palette().color(currentRole()));
    const QRect area = contentsRect();
    const QString shown =
        painter.fontMetrics().elidedText(m_text, Qt::ElideRight, area.width() + 1);
    const int flags = int(m_alignment | Qt::AlignVCenter) | Qt::TextSingleLine;
    QRect drawn;
    painter.drawText(area, flags, shown, &drawn);
    if (hasFocus()) {
        // Around the text, not the whole width a layout may have stretched the label to.
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = drawn.adjusted(-2, 0, 2, 0) & rect();
        option.backgroundColor = palette().color(backgroundRole());
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void OTLabel::enterEvent(QEnterEvent *event) {
    // Whether the label is a link can change with every section switch, so the pointer is
    // chosen as it arrives.
    if (isLink() && (!testAttribute(Qt::WA_SetCursor) || m_cursorIsOurs)) {
        setCursor(m_overCursor);
        m_cursorIsOurs = true;
    } else if (!isLink() && m_cursorIsOurs) {
        unsetCursor();
        m_cursorIsOurs = false;
    }
    OTView::enterEvent(event);
}

void OTLabel::keyPressEvent(QKeyEvent *event) {
    const bool activates = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                           event->key() == Qt::Key_Enter;
    if (activates && isLink() && !event->isAutoRepeat()) {
        performClick();
        return;
    }
    OTView::keyPressEvent(event);
}

QFont OTLabel::textFont() const {
    QFont textFont = font();
    textFont.setUnderline(m_withUnderline);
    return textFont;
}

QPalette::ColorRole OTLabel::currentRole() const {
    if (isPressed())
        return pressedColorRole();
    return isHovered() ? overColorRole() : colorRole();
}
