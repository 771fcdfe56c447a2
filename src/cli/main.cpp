// billfold-cli: the headless companion of Billfold. It links the logic libraries only.
#include "cli/CliRunner.h"
#include "invoicelayout/LMBuiltInTemplates.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace {
// Commands that draw invoice pages need fonts, so a GUI application; with no platform named
// it draws offscreen and needs no display.
bool drawsPages(int argc, char *argv[]) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--now") == 0) {
            ++i;
            continue;
        }
        if (argv[i][0] == '-')
            continue;
        return std::strcmp(argv[i], "pdf") == 0 || std::strcmp(argv[i], "png") == 0;
    }
    return false;
}

// Qt's own notes (the painter's on a file it cannot open, the platform's on its settings) would
// stand before the one line each failure is reported with; only severe messages get through.
QtMessageHandler g_qtHandler = nullptr;

void severeOnly(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    if ((type == QtCriticalMsg || type == QtFatalMsg) && g_qtHandler)
        g_qtHandler(type, context, message);
}

int run(int argc, char *argv[]) {
    g_qtHandler = qInstallMessageHandler(severeOnly);
    std::unique_ptr<QCoreApplication> app;
    if (drawsPages(argc, argv)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Billfold"));
    // New documents start with the built-in invoice designs, as in the desktop program.
    LMBuiltInTemplates::install();
    QTextStream out(stdout);
    QTextStream err(stderr);
    CliRunner runner;
    return runner.run(QCoreApplication::arguments().mid(1), out, err);
}
} // namespace

// Files are only ever put in place whole, so running out of memory anywhere leaves nothing
// to undo: say so and stop.
int main(int argc, char *argv[]) {
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc &) {
        std::fputs("billfold-cli: out of memory; nothing was written\n", stderr);
        return 2;
    }
}
