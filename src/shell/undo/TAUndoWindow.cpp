#include "shell/undo/TAUndoWindow.h"

#include "shell/undo/TAUndoContentView.h"

#include <QApplication>
#include <QGuiApplication>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QVBoxLayout>

namespace {

// Moving or resizing a message that is already up glides rather than jumps.
constexpr int FrameChangeLength = 250;
// The message keeps this far inside the main window's edges when its text is long.
constexpr int EdgeMargin = 24;

QPointer<TAUndoWindow> &sharedWindow() {
    static QPointer<TAUndoWindow> window;
    return window;
}

QString afterMessage(const QString &verb, const QString &name) {
    return name.trimmed().isEmpty() ? verb : TAUndoWindow::tr("%1 %2").arg(verb, name);
}

} // namespace

// A tool tip window is never managed or activated by an X11 window manager. Wayland places
// only windows that have a parent, and a tool window stays above its parent there.
TAUndoWindow::TAUndoWindow(QWidget *mainWindow, bool toolWindow)
    : QWidget(mainWindow, (toolWindow ? Qt::Tool : Qt::ToolTip) | Qt::FramelessWindowHint |
                              Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                              Qt::NoDropShadowWindowHint)
    , m_content(new TAUndoContentView(this))
    , m_sequence(new QSequentialAnimationGroup(this))
    // Only X11 changes a whole window's opacity; elsewhere the panel fades inside the window.
    , m_fadesContent(QGuiApplication::platformName() != QLatin1String("xcb")) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11DoNotAcceptFocus);
    setFocusPolicy(Qt::NoFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_content);
    connect(m_sequence, &QAbstractAnimation::finished, this, &QWidget::hide);
}

bool TAUndoWindow::isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

TAUndoWindow *TAUndoWindow::instance() {
    return sharedWindow().data();
}

// The window belongs to the main window it shows over, so it goes when that window goes.
TAUndoWindow *TAUndoWindow::instanceOver(QWidget *mainWindow) {
    QPointer<TAUndoWindow> &shared = sharedWindow();
    if (shared && shared->parentWidget() != mainWindow) {
        shared->m_sequence->stop();
        shared->setParent(mainWindow, shared->windowFlags());
    }
    if (!shared) {
        shared = new TAUndoWindow(mainWindow, isWayland());
        if (!mainWindow)
            connect(qApp, &QCoreApplication::aboutToQuit, shared.data(), &QObject::deleteLater);
    }
    return shared.data();
}

void TAUndoWindow::displayString(const QString &text, QWidget *over) {
    displayString(text, over, DefaultLength);
}

// Showing the message is a courtesy: without a window system or a text there is nothing to do.
void TAUndoWindow::displayString(const QString &text, QWidget *over, int length) {
    if (text.isEmpty() || !qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    QWidget *mainWindow = over ? over->window() : nullptr;
    instanceOver(mainWindow)->play(text, mainWindow, qMax(0, length));
}

void TAUndoWindow::showAfterUndo(QWidget *mainWindow, const QString &redoActionName) {
    displayString(afterMessage(tr("Undo"), redoActionName), mainWindow);
}

void TAUndoWindow::showAfterRedo(QWidget *mainWindow, const QString &undoActionName) {
    displayString(afterMessage(tr("Redo"), undoActionName), mainWindow);
}

qreal TAUndoWindow::messageOpacity() const {
    return m_fadesContent ? m_content->opacity() : windowOpacity();
}

void TAUndoWindow::setMessageOpacity(qreal opacity) {
    if (m_fadesContent)
        m_content->setOpacity(opacity);
    else
        setWindowOpacity(opacity);
}

bool TAUndoWindow::isAnimating() const {
    return m_sequence->state() == QAbstractAnimation::Running;
}

// A fade in starts from wherever the last message's fade stood, so a new message over an
// old one brightens instead of flickering out and in again.
void TAUndoWindow::play(const QString &text, QWidget *over, int length) {
    const bool alreadyShown = isVisible() && messageOpacity() > 0;
    m_sequence->stop();
    m_sequence->clear();
    m_content->setString(text);
    const QRect frame = frameOver(over);

    QObject *faded = m_fadesContent ? static_cast<QObject *>(m_content) : this;
    const QByteArray property = m_fadesContent ? "opacity" : "windowOpacity";
    auto *appear = new QParallelAnimationGroup;
    auto *fadeIn = new QPropertyAnimation(faded, property);
    fadeIn->setDuration(FadeInLength);
    fadeIn->setEndValue(1.0);
    appear->addAnimation(fadeIn);
    if (alreadyShown) {
        auto *move = new QPropertyAnimation(this, "geometry");
        move->setDuration(FrameChangeLength);
        move->setEndValue(frame);
        appear->addAnimation(move);
    } else {
        setMessageOpacity(0.0);
        setGeometry(frame);
    }
    auto *fadeOut = new QPropertyAnimation(faded, property);
    fadeOut->setDuration(FadeOutLength);
    fadeOut->setStartValue(1.0);
    fadeOut->setEndValue(0.0);
    fadeOut->setEasingCurve(QEasingCurve::InQuad);

    m_sequence->addAnimation(appear);
    m_sequence->addPause(length);
    m_sequence->addAnimation(fadeOut);
    show();
    raise();
    m_sequence->start();
}

// Centred on the main window (or the screen without one), and no wider than either.
QRect TAUndoWindow::frameOver(QWidget *over) const {
    QScreen *screen = over ? over->screen() : QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect();
    const QRect area = over ? over->frameGeometry() : available;
    // A window not shown yet gets its style's font only when polished: measure with that font.
    const_cast<TAUndoWindow *>(this)->ensurePolished();
    m_content->ensurePolished();
    QSize size = m_content->sizeHint();
    const int widest = area.intersected(available.isValid() ? available : area).width();
    if (widest > 2 * EdgeMargin)
        size.setWidth(qMin(size.width(), widest - 2 * EdgeMargin));
    QRect frame(QPoint(), size);
    frame.moveCenter(area.center());
    return frame;
}
