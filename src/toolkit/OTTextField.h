#pragma once

#include "toolkit/OTActionList.h"

#include <QLineEdit>
#include <QVariant>

// A line edit that reports through action lists and can be limited to a set of characters.
// Text, placeholder text and alignment are QLineEdit's own.
//
// The lists are informed with the field as sender:
// - becomeActiveActions when the field takes the focus;
// - beginEditingActions at the first change of the text after that, or after the last end of
//   editing; textChangedActions at every change the person makes (setText() tells nobody);
// - enterPressedActions on Enter, which then also ends editing (endEditingActions); the key
//   goes on to the window, so a dialog's default button still answers it;
// - escPressedActions on Escape, which goes on to the window as well;
// - when the focus goes elsewhere, endEditingActions and then resignResponderActions. A menu
//   or another window taking the focus for a while is not the end: the field is still the
//   one the person returns to;
// - abortEditingActions when abortEditing() throws away an edit in progress.
class OTTextField : public QLineEdit {
    Q_OBJECT
public:
    explicit OTTextField(QWidget *parent = nullptr);

    // Sets for availableCharacters. The repeated zero is part of each set and harmless.
    static QString intCharacters() { return QStringLiteral("01234567890"); }
    static QString numberCharacters() { return QStringLiteral("01234567890"); }
    static QString floatCharacters() { return QStringLiteral("01234567890,."); }
    static QString floatPercentage() { return QStringLiteral("01234567890-,.%"); }
    static QString hourCharacters() { return QStringLiteral("01234567890,.:"); }

    // When not empty, a typed, pasted, dropped or composed replacement that holds any other
    // character is refused whole, not filtered; deleting (an empty replacement) always passes.
    // Text set by the program is not checked.
    QString availableCharacters() const { return m_availableCharacters; }
    void setAvailableCharacters(const QString &characters) { m_availableCharacters = characters; }
    bool acceptsReplacement(const QString &replacement) const;

    // Selects the whole text when the field takes the focus, by mouse as well as by Tab.
    bool selectAllOnEditing() const { return m_selectAllOnEditing; }
    void setSelectAllOnEditing(bool selectAll) { m_selectAllOnEditing = selectAll; }

    QVariant representedObject() const { return m_representedObject; }
    void setRepresentedObject(const QVariant &object) { m_representedObject = object; }

    // Puts back the text the field had when editing began and informs abortEditingActions.
    // False, and nothing done, when the field does not have the focus.
    bool abortEditing();

    OTActionList &abortEditingActions() { return m_abortEditingActions; }
    OTActionList &enterPressedActions() { return m_enterPressedActions; }
    OTActionList &escPressedActions() { return m_escPressedActions; }
    OTActionList &textChangedActions() { return m_textChangedActions; }
    OTActionList &becomeActiveActions() { return m_becomeActiveActions; }
    OTActionList &resignResponderActions() { return m_resignResponderActions; }
    OTActionList &beginEditingActions() { return m_beginEditingActions; }
    OTActionList &endEditingActions() { return m_endEditingActions; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool refusesKey(const QKeyEvent *event) const;
    // Returns false when an action destroyed the field.
    bool informEnterPressed();
    void textEditedByUser();
    void endEditing();

    QString m_availableCharacters;
    QVariant m_representedObject;
    QString m_textAtBeginning;
    bool m_selectAllOnEditing = false;
    bool m_active = false;
    bool m_editing = false;

    OTActionList m_abortEditingActions;
    OTActionList m_enterPressedActions;
    OTActionList m_escPressedActions;
    OTActionList m_textChangedActions;
    OTActionList m_becomeActiveActions;
    OTActionList m_resignResponderActions;
    OTActionList m_beginEditingActions;
    OTActionList m_endEditingActions;
};
