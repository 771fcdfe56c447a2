#include "toolkit/OTView.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>

namespace {

// Gives assistive technology the role, name and press action a view declares, so labels and
// images are announced like Qt's own.
class OTViewAccessible : public QAccessibleWidget {
public:
    explicit OTViewAccessible(OTView *view)
        : QAccessibleWidget(view, view->accessibleRole()) {}

    QAccessible::Role role() const override { return view()->accessibleRole(); }
    QString text(QAccessible::Text type) const override {
        QString text = QAccessibleWidget::text(type);
        if (type == QAccessible::Name && text.isEmpty())
            text = view()->accessibleText();
        return text;
    }
    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (view()->isClickable() && view()->isEnabled())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString &actionName) override {
        if (actionName == pressAction() && view()->isClickable() && view()->isEnabled())
            view()->performClick();
        else
            QAccessibleWidget::doAction(actionName);
    }

private:
    OTView *view() const { return static_cast<OTView *>(widget()); }
};

QAccessibleInterface *viewAccessibleFactory(const QString &className, QObject *object) {
    // Answer for the object's own class only, before Qt's factories see its base classes.
    auto *view = qobject_cast<OTView *>(object);
    if (!view || className != QLatin1String(object->metaObject()->className()))
        return nullptr;
    return new OTViewAccessible(view);
}

} // namespace

OTView::OTView(QWidget *parent)
    : QWidget(parent) {
    static const bool factoryInstalled = [] {
        QAccessible::installFactory(viewAccessibleFactory);
        return true;
    }();
    Q_UNUSED(factoryInstalled);
}

void OTView::setBackgroundColor(const QColor &color) {
    m_backgroundColor = color;
    update();
}

void OTView::setBackgroundImage(const QIcon &image) {
    m_backgroundImage = image;
    update();
}

void OTView::performClick() {
    m_mouseClickedActions.inform(this);
}

void OTView::paintEvent(QPaintEvent *) {
    if (!m_backgroundColor.isValid() && m_backgroundImage.isNull())
        return;
    QPainter painter(this);
    if (m_backgroundColor.isValid())
        painter.fillRect(rect(), m_backgroundColor);
    if (!m_backgroundImage.isNull())
        m_backgroundImage.paint(&painter, rect());
}

void OTView::mousePressEvent(QMouseEvent *event) {
    // A view nothing listens to lets the press go on to the view beneath it.
    if (event->button() != Qt::LeftButton || !isClickable()) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressStarted = true;
    setPressed(true);
}

void OTView::mouseMoveEvent(QMouseEvent *event) {
    if (m_pressStarted)
        setPressed(rect().contains(event->position().toPoint()));
    QWidget::mouseMoveEvent(event);
}

void OTView::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton || !m_pressStarted) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_pressStarted = false;
    setPressed(false);
    if (rect().contains(event->position().toPoint()))
        performClick();
}

void OTView::enterEvent(QEnterEvent *event) {
    m_hovered = true;
    update();
    QWidget::enterEvent(event);
}

void OTView::leaveEvent(QEvent *event) {
    m_hovered = false;
    update();
    QWidget::leaveEvent(event);
}

void OTView::setPressed(bool pressed) {
    if (m_pressed == pressed)
        return;
    m_pressed = pressed;
    update();
}
