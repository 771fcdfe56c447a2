#include "shell/undo/TAUndoContentView.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

namespace {
// The message is read at a glance over a busy window: larger than body text, and one line.
constexpr qreal FontScale = 1.5;
// Opaque enough to hide the window behind, light enough to show that it is only a message.
constexpr qreal PanelOpacity = 0.95;
} // namespace

TAUndoContentView::TAUndoContentView(QWidget *parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

void TAUndoContentView::setString(const QString &string) {
    if (m_string == string)
        return;
    m_string = string;
    setAccessibleName(string);
    updateGeometry();
    update();
}

void TAUndoContentView::setOpacity(qreal opacity) {
    opacity = qBound(0.0, opacity, 1.0);
    if (qFuzzyCompare(m_opacity, opacity))
        return;
    m_opacity = opacity;
    update();
}

QFont TAUndoContentView::messageFont() const {
    QFont font = this->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * FontScale);
    else
        font.setPixelSize(qRound(font.pixelSize() * FontScale));
    font.setWeight(QFont::DemiBold);
    return font;
}

int TAUndoContentView::padding() const {
    return QFontMetrics(messageFont(), this).height();
}

// Measured on this widget, whose screen decides the resolution the text is drawn at.
QSize TAUndoContentView::sizeHint() const {
    const QFontMetrics metrics(messageFont(), this);
    const int pad = padding();
    // Rounded up from the exact advance: eliding compares the exact width, not the rounded one.
    const int text = qCeil(QFontMetricsF(messageFont(), this).horizontalAdvance(m_string));
    return {text + 2 * pad, metrics.height() + pad * 3 / 2};
}

void TAUndoContentView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_opacity);
    const QRectF panel = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = padding() / 2.0;

    QColor fill = palette().color(QPalette::ToolTipBase);
    fill.setAlphaF(PanelOpacity);
    // A faint edge keeps the panel apart from a window of the same colour.
    QColor edge = palette().color(QPalette::ToolTipText);
    edge.setAlphaF(0.25);
    painter.setPen(QPen(edge, 1.0));
    painter.setBrush(fill);
    painter.drawRoundedRect(panel, radius, radius);

    // The window may have been made narrower than the text to stay within the main window.
    const QFont font = messageFont();
    const QRect textRect = rect().adjusted(padding(), 0, -padding(), 0);
    const QString shown =
        QFontMetrics(font, this).elidedText(m_string, Qt::ElideRight, textRect.width());
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::ToolTipText));
    painter.drawText(textRect, Qt::AlignCenter | Qt::TextSingleLine, shown);
}

void TAUndoContentView::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}
