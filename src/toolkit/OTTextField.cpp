#include "toolkit/OTTextField.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace {

QString clipboardText(QClipboard::Mode mode) {
    return QGuiApplication::clipboard()->text(mode);
}

bool isEnterKey(const QKeyEvent *event) {
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

// The line edit's own menu names its Paste entry only from Qt 6.5 on; before, the entry is
// known by the shortcut written after its text.
bool isPasteAction(const QAction *action) {
    if (action->objectName() == QLatin1String("edit-paste"))
        return true;
    const QString shortcut = QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText);
    return !shortcut.isEmpty() && action->text().endsWith(u'\t' + shortcut);
}

} // namespace

OTTextField::OTTextField(QWidget *parent)
    : QLineEdit(parent) {
    connect(this, &QLineEdit::textEdited, this, &OTTextField::textEditedByUser);
}

bool OTTextField::acceptsReplacement(const QString &replacement) const {
    if (m_availableCharacters.isEmpty())
        return true;
    return std::all_of(replacement.cbegin(), replacement.cend(),
                       [this](QChar c) { return m_availableCharacters.contains(c); });
}

bool OTTextField::abortEditing() {
    if (!m_active)
        return false;
    if (m_editing)
        setText(m_textAtBeginning);
    m_editing = false;
    m_abortEditingActions.inform(this);
    return true;
}

void OTTextField::keyPressEvent(QKeyEvent *event) {
    if (refusesKey(event)) {
        event->accept();
        return;
    }
    if (isEnterKey(event) && !informEnterPressed())
        return;
    if (event->key() == Qt::Key_Escape && !event->isAutoRepeat()) {
        const QPointer<OTTextField> alive(this);
        m_escPressedActions.inform(this);
        if (!alive)
            return;
    }
    QLineEdit::keyPressEvent(event);
}

void OTTextField::inputMethodEvent(QInputMethodEvent *event) {
    if (acceptsReplacement(event->commitString())) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    // The composition still has to end, only without its text.
    QInputMethodEvent withoutCommit(event->preeditString(), event->attributes());
    QLineEdit::inputMethodEvent(&withoutCommit);
}

void OTTextField::mouseReleaseEvent(QMouseEvent *event) {
    // A middle click pastes the primary selection where the system has one.
    const bool pastesSelection =
        event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection();
    if (pastesSelection && !acceptsReplacement(clipboardText(QClipboard::Selection))) {
        event->accept();
        return;
    }
    QLineEdit::mouseReleaseEvent(event);
}

void OTTextField::dragMoveEvent(QDragMoveEvent *event) {
    if (!acceptsReplacement(event->mimeData()->text())) {
        event->ignore();
        return;
    }
    QLineEdit::dragMoveEvent(event);
}

void OTTextField::dropEvent(QDropEvent *event) {
    if (!acceptsReplacement(event->mimeData()->text())) {
        event->ignore();
        return;
    }
    QLineEdit::dropEvent(event);
}

void OTTextField::contextMenuEvent(QContextMenuEvent *event) {
    QMenu *menu = createStandardContextMenu();
    if (!menu)
        return;
    // Paste is offered only when the field would take what the clipboard holds.
    const bool pasteFits = acceptsReplacement(clipboardText(QClipboard::Clipboard));
    for (QAction *action : menu->actions()) {
        if (isPasteAction(action))
            action->setEnabled(action->isEnabled() && pasteFits);
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void OTTextField::focusInEvent(QFocusEvent *event) {
    QLineEdit::focusInEvent(event);
    if (m_active)
        return; // back from a menu or another window
    m_active = true;
    m_editing = false;
    m_textAtBeginning = text();
    // Later than the mouse press that gave the focus, which would place the cursor instead.
    if (m_selectAllOnEditing)
        QTimer::singleShot(0, this, &QLineEdit::selectAll);
    m_becomeActiveActions.inform(this);
}

void OTTextField::focusOutEvent(QFocusEvent *event) {
    QLineEdit::focusOutEvent(event);
    const bool onlyForAWhile = (event->reason() == Qt::PopupFocusReason ||
                                event->reason() == Qt::ActiveWindowFocusReason) &&
                               window()->focusWidget() == this;
    if (!m_active || onlyForAWhile)
        return;
    m_active = false;
    const QPointer<OTTextField> alive(this);
    endEditing();
    if (alive)
        m_resignResponderActions.inform(this);
}

bool OTTextField::refusesKey(const QKeyEvent *event) const {
    if (event->matches(QKeySequence::Paste))
        return !acceptsReplacement(clipboardText(QClipboard::Clipboard));
    // Typing: printable text without a shortcut modifier, as the line edit itself inserts.
    const QString typed = event->text();
    const bool typing = !typed.isEmpty() && typed.front().isPrint() &&
                        !(event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
    return typing && !acceptsReplacement(typed);
}

bool OTTextField::informEnterPressed() {
    const QPointer<OTTextField> alive(this);
    m_enterPressedActions.inform(this);
    if (alive)
        endEditing();
    return !alive.isNull();
}

void OTTextField::textEditedByUser() {
    const QPointer<OTTextField> alive(this);
    if (!m_editing) {
        m_editing = true;
        m_beginEditingActions.inform(this);
        if (!alive)
            return;
    }
    m_textChangedActions.inform(this);
}

void OTTextField::endEditing() {
    m_editing = false;
    m_textAtBeginning = text();
    m_endEditingActions.inform(this);
}
