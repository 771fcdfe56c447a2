// The desktop program: one running instance per user, which opens the files it is given
// (and those a later start hands over), or shows what the last quit and the preferences ask.
#include "shell/application/TAApplication.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAScreenshotTour.h"
#include "shell/application/TASingleInstance.h"
#include "shell/window/TAMainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>
#include <QWindow>

#include <cstdio>

int main(int argc, char **argv) {
    TAApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Invoicing and time billing."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("files"),
                                 QCoreApplication::translate("main", "Documents to open."),
                                 QStringLiteral("[FILE.tadb...]"));
    const QCommandLineOption sample(
        QStringLiteral("sample"),
        QCoreApplication::translate("main", "Open a new copy of the sample business."));
    parser.addOption(sample);
    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QCoreApplication::translate("main", "Write pictures of every section, menu and dialog of "
                                            "the sample business into FOLDER, then quit."),
        QStringLiteral("FOLDER"));
    parser.addOption(screenshots);
    const QCommandLineOption dark(QStringLiteral("dark"),
                                  QCoreApplication::translate("main", "Use a dark palette."));
    parser.addOption(dark);
    const QCommandLineOption quitAfterStart(
        QStringLiteral("quit-after-start"),
        QCoreApplication::translate("main", "Quit as soon as the window is shown and painted "
                                            "(for timing the start)."));
    parser.addOption(quitAfterStart);
    parser.process(app);
    const QStringList files = parser.positionalArguments();
    if (parser.isSet(dark))
        TAScreenshotTour::useDarkPalette();

    if (parser.isSet(screenshots)) {
        // A tour runs on its own, beside any running program, and touches no user file.
        TAApplicationDelegate delegate;
        TAScreenshotTour tour(delegate, parser.value(screenshots));
        QTimer::singleShot(0, &tour, &TAScreenshotTour::start);
        return app.exec();
    }

    TASingleInstance instance;
    auto role = instance.start(files);
    if (role && *role == TASingleInstance::Role::HandedOver)
        return 0;
    // Without a way to hear later starts this one still runs; they will simply open their own.

    TAApplicationDelegate delegate;
    QObject::connect(&instance, &TASingleInstance::openRequested, &delegate,
                     &TAApplicationDelegate::openFiles);
    QObject::connect(&instance, &TASingleInstance::activateRequested, &delegate,
                     &TAApplicationDelegate::applicationShouldHandleReopen);
    QTimer::singleShot(0, &delegate, [&] {
        if (parser.isSet(sample))
            delegate.welcomeOpenSample();
        else
            delegate.applicationDidFinishLaunching(files);
        if (parser.isSet(quitAfterStart)) {
            // The window counts as started once the screen shows it and it has painted.
            if (QWidget *window = QApplication::activeWindow() ? QApplication::activeWindow()
                                                               : delegate.currentWindow()) {
                QElapsedTimer waited;
                waited.start();
                while (window->windowHandle() && !window->windowHandle()->isExposed() &&
                       waited.elapsed() < 10000)
                    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
                window->repaint();
            }
            // The clock time of the paint, for whoever started the program to subtract from.
            std::printf("painted at %lld ms\n", QDateTime::currentMSecsSinceEpoch());
            std::fflush(stdout);
            QCoreApplication::quit();
        }
    });
    return app.exec();
}
