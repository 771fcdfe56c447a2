#pragma once

#include <QDir>
#include <QObject>
#include <QPointer>

class QWidget;
class TAApplicationDelegate;
class TAMainWindow;

// Walks the program as a person would look at it, on a copy of the sample business, and
// writes a picture of each section, menu and dialog into a folder: how the window is checked
// at other scales and palettes, and on machines with no screen of their own.
class TAScreenshotTour : public QObject {
    Q_OBJECT
public:
    TAScreenshotTour(TAApplicationDelegate &delegate, const QString &folder);

    // Gives the program a dark palette of its own, for looking at it dark on any desktop.
    static void useDarkPalette();
    // Runs the tour and quits the program; the folder's files are the result.
    void start();

private:
    void shoot(QWidget *widget, const QString &name);
    void shootScreen(QWidget *over, const QString &name);
    void shootSections(TAMainWindow &window);
    void shootMenus(TAMainWindow &window);
    void shootDialogs(TAMainWindow &window);
    void shootUndoMessage(TAMainWindow &window);
    void shootPasswordView(TAMainWindow &window);
    static void settle(int milliseconds = 50);

    TAApplicationDelegate &m_delegate;
    QDir m_folder;
};
