#include "shell/password/TAPasswordProtectedView.h"

#include "document/TADocument.h"
#include "foundation/Check.h"
#include "store/entities/TAPreferences.h"

#include <QApplication>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

TAPasswordProtectedView::TAPasswordProtectedView(QWidget *parent)
    : QWidget(parent)
    , m_field(new QLineEdit(this))
    , m_unlockButton(new QPushButton(tr("Unlock"), this)) {
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Window);

    auto *message = new QLabel(tr("Enter the Password:"));
    message->setBuddy(m_field);
    m_field->setEchoMode(QLineEdit::Password);
    m_field->setAccessibleName(tr("Password"));
    m_field->setMinimumWidth(fontMetrics().averageCharWidth() * 28);
    m_unlockButton->setAutoDefault(false);

    // The message, field and button keep their natural size in the middle of the cover.
    auto *form = new QWidget(this);
    auto *row = new QHBoxLayout;
    row->addWidget(m_field);
    row->addWidget(m_unlockButton);
    auto *formColumn = new QVBoxLayout(form);
    formColumn->setContentsMargins(0, 0, 0, 0);
    formColumn->addWidget(message, 0, Qt::AlignHCenter);
    formColumn->addLayout(row);
    (new QVBoxLayout(this))->addWidget(form, 0, Qt::AlignCenter);

    connect(m_field, &QLineEdit::returnPressed, this, &TAPasswordProtectedView::passwordEnter);
    connect(m_unlockButton, &QPushButton::clicked, this, &TAPasswordProtectedView::passwordEnter);
    QWidget::setVisible(false);
    // The cover's size is its parent's; without one the window forgot to place it.
    BF_CHECK(parent, return);
    parent->installEventFilter(this);
    setGeometry(parent->rect());
}

void TAPasswordProtectedView::setCoveredWidgets(const QList<QWidget *> &widgets) {
    m_covered.clear();
    for (QWidget *widget : widgets)
        m_covered.append(widget);
    if (!isHidden())
        showCovered(false);
}

bool TAPasswordProtectedView::eventFilter(QObject *watched, QEvent *event) {
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void TAPasswordProtectedView::setVisible(bool visible) {
    stopFade();
    // Only a cover that was up gives back what it hid; a window that hid a widget for its own
    // reasons keeps it hidden when it takes down a cover that was never shown.
    if (visible || !isHidden())
        showCovered(!visible);
    QWidget::setVisible(visible);
    if (!visible)
        return;
    if (const QWidget *area = parentWidget())
        setGeometry(area->rect());
    raise();
    m_field->clear();
    m_field->setFocus(Qt::OtherFocusReason);
}

void TAPasswordProtectedView::showCovered(bool shown) {
    for (const QPointer<QWidget> &widget : std::as_const(m_covered))
        if (widget)
            widget->setVisible(shown);
}

void TAPasswordProtectedView::stopFade() {
    if (!m_fade)
        return;
    m_fade->stop();
    delete m_fade;
    setGraphicsEffect(nullptr); // deletes the effect
}

void TAPasswordProtectedView::fadeOut() {
    if (isHidden() || m_fade)
        return;
    // The data come back behind the cover, which then turns transparent over them.
    showCovered(true);
    m_field->clearFocus();
    auto *effect = new QGraphicsOpacityEffect(this);
    setGraphicsEffect(effect);
    m_fade = new QPropertyAnimation(effect, "opacity", this);
    m_fade->setDuration(kFadeMs);
    m_fade->setStartValue(1.0);
    m_fade->setEndValue(0.0);
    m_fade->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_fade, &QPropertyAnimation::finished, this, [this] {
        m_fade->deleteLater();
        setGraphicsEffect(nullptr);
        QWidget::setVisible(false);
    });
    m_fade->start();
}

void TAPasswordProtectedView::passwordEnter() {
    const QString stored =
        m_document && m_document->preferences() ? m_document->preferences()->password() : QString();
    if (stored.isEmpty()) {
        fadeOut();
        return;
    }
    if (m_field->text() != stored) {
        shakeWindow();
        QApplication::beep();
        return;
    }
    m_document->unlockWithoutReload();
    emit unlocked();
    fadeOut();
}

bool TAPasswordProtectedView::isShaking() const {
    return m_shake && m_shake->state() == QAbstractAnimation::Running;
}

void TAPasswordProtectedView::shakeWindow() {
    if (isShaking())
        return;
    QWidget *target = window();
    const QPoint origin = target->pos();
    const int swing = std::max(1, qRound(target->width() * 0.01));
    // Two shakes, each out to the left and over to the right, then back where it was.
    const QList<int> offsets = {-swing, swing, -swing, swing};
    m_shake = new QPropertyAnimation(target, "pos", this);
    m_shake->setDuration(kShakeMs);
    m_shake->setStartValue(origin);
    for (int step = 0; step < offsets.size(); ++step)
        m_shake->setKeyValueAt((step + 1.0) / (offsets.size() + 1),
                               origin + QPoint(offsets.at(step), 0));
    m_shake->setEndValue(origin);
    m_shake->start(QAbstractAnimation::DeleteWhenStopped);
}
