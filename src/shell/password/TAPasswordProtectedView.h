#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

class QLineEdit;
class QPropertyAnimation;
class QPushButton;
class TADocument;

// What a document locked by its password shows instead of its data: an opaque cover over its
// parent with a field for the password. The lock only hides the window's contents; the data
// in the file are not encrypted.
class TAPasswordProtectedView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kFadeMs = 400;
    static constexpr int kShakeMs = 400;

    // Covers the whole of the parent and follows its size.
    explicit TAPasswordProtectedView(QWidget *parent);

    void setDocument(TADocument *document) { m_document = document; }
    // Widgets hidden while the cover is up, so that neither Tab nor a screen reader reaches
    // the data behind it.
    void setCoveredWidgets(const QList<QWidget *> &widgets);

    // Showing puts the cover up with an empty field that has the keyboard focus; hiding takes
    // it down at once. fadeOut() takes it down slowly.
    void setVisible(bool visible) override;
    void hideWithoutAnimation() { setVisible(false); }
    void fadeOut();

    // The field's action: the right password unlocks the document and takes the cover down, a
    // wrong one shakes the window and beeps.
    void passwordEnter();
    bool isShaking() const;
    QLineEdit *passwordField() const { return m_field; }

signals:
    // The document is unlocked: the window reloads what the cover hid.
    void unlocked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showCovered(bool shown);
    void stopFade();
    void shakeWindow();

    QPointer<TADocument> m_document;
    QList<QPointer<QWidget>> m_covered;
    QLineEdit *m_field;
    QPushButton *m_unlockButton;
    QPointer<QPropertyAnimation> m_fade;
    QPointer<QPropertyAnimation> m_shake;
};
