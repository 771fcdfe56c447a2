#pragma once

#include <QPointer>
#include <QWidget>

class QSequentialAnimationGroup;
class TAUndoContentView;

// The message that tells what an undo or redo just did: one per process, floating over the
// centre of the main window, fading in, staying a moment and fading out. It never takes focus
// or a click: whatever the user was doing goes on underneath. A new message while one shows
// replaces it and starts its time again.
class TAUndoWindow : public QWidget {
    Q_OBJECT
public:
    // How long a message stays fully shown, and its fades, in milliseconds.
    static constexpr int DefaultLength = 1000;
    static constexpr int FadeInLength = 250;
    static constexpr int FadeOutLength = 400;

    static void displayString(const QString &text, QWidget *over);
    static void displayString(const QString &text, QWidget *over, int length);
    // "Undo <name>" after an undo, with the name of the step that now stands first for redo;
    // "Redo <name>" after a redo. The main window calls these from its undo hooks.
    static void showAfterUndo(QWidget *mainWindow, const QString &redoActionName);
    static void showAfterRedo(QWidget *mainWindow, const QString &undoActionName);

    // The window, once a message has been shown; null before, and after its main window went.
    static TAUndoWindow *instance();

    TAUndoContentView *contentView() const { return m_content; }
    // The message's visibility as the fade stands, 0 to 1.
    qreal messageOpacity() const;
    bool isAnimating() const;

private:
    TAUndoWindow(QWidget *mainWindow, bool toolWindow);
    static bool isWayland();
    static TAUndoWindow *instanceOver(QWidget *mainWindow);
    void play(const QString &text, QWidget *over, int length);
    QRect frameOver(QWidget *over) const;
    void setMessageOpacity(qreal opacity);

    TAUndoContentView *m_content = nullptr;
    QSequentialAnimationGroup *m_sequence = nullptr;
    bool m_fadesContent = false;
};
