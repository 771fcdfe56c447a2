#include "toolkit/OTButton.h"

#include <QStyleOptionFocusRect>
#include <QStyleOptionToolButton>
#include <QStylePainter>

OTButton::OTButton(QWidget *parent)
    : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::pressed, this, [this] { m_mouseDownActions.inform(this); });
    connect(this, &QAbstractButton::clicked, this, [this] { m_clickActions.inform(this); });
}

OTButton::OTButton(const QString &label, QWidget *parent)
    : OTButton(parent) {
    setText(label);
}

QIcon::Mode OTButton::imageMode() const {
    if (!isEnabled())
        return QIcon::Disabled;
    if (isDown())
        return QIcon::Selected;
    return underMouse() ? QIcon::Active : QIcon::Normal;
}

void OTButton::setButtonDown(bool down) {
    if (down)
        setCheckable(true);
    setChecked(down);
    updateCheckable();
}

void OTButton::setCanUnpress(bool can) {
    m_canUnpress = can;
    updateCheckable();
}

void OTButton::setCanPressDown(bool can) {
    m_canPressDown = can;
    updateCheckable();
}

void OTButton::setDrawsPanel(bool draws) {
    m_drawsPanel = draws;
    update();
}

QSize OTButton::sizeHint() const {
    const QSize image = icon().isNull() ? QSize() : iconSize();
    const QSize label =
        text().isEmpty() ? QSize() : fontMetrics().size(Qt::TextShowMnemonic, text());
    const int between = image.isEmpty() || label.isEmpty() ? 0 : spacing();
    return QSize(image.width() + between + label.width() + 2 * margin(),
                 qMax(image.height(), label.height()) + 2 * margin());
}

void OTButton::paintEvent(QPaintEvent *) {
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    option.initFrom(this);
    option.state |= QStyle::State_AutoRaise;
    if (isDown())
        option.state |= QStyle::State_Sunken;
    if (isChecked())
        option.state |= QStyle::State_On;
    const bool lit = isDown() || isChecked() || (underMouse() && isEnabled());
    if (m_drawsPanel && lit)
        painter.drawPrimitive(QStyle::PE_PanelButtonTool, option);

    QRect area = rect().marginsRemoved(QMargins(margin(), margin(), margin(), margin()));
    if (!icon().isNull()) {
        const bool alone = text().isEmpty();
        const QRect imageRect =
            alone ? area : QRect(area.topLeft(), QSize(iconSize().width(), area.height()));
        icon().paint(&painter, imageRect, Qt::AlignCenter, imageMode(), imageState());
        area.setLeft(imageRect.right() + 1 + spacing());
    }
    if (!text().isEmpty()) {
        const int align = (icon().isNull() ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter |
                          Qt::TextShowMnemonic;
        painter.drawItemText(area, align, palette(), isEnabled(), text(), QPalette::ButtonText);
    }
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

void OTButton::nextCheckState() {
    if (isChecked() ? m_canUnpress : m_canPressDown)
        setButtonDown(!isChecked());
}

void OTButton::addImage(const QString &file, QIcon::Mode mode, QIcon::State state) {
    QIcon images = icon();
    images.addFile(file, QSize(), mode, state);
    setIcon(images);
}

void OTButton::updateCheckable() {
    setCheckable(m_canPressDown || m_canUnpress || isChecked());
}

int OTButton::margin() const {
    return style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, this);
}

int OTButton::spacing() const {
    return 4; // between image and label, as the styles lay out a tool button
}
