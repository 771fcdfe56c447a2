// billfold-cli: the headless companion of Billfold. It links the logic libraries only.
#include "cli/CliRunner.h"
#include "invoicelayout/LMBuiltInTemplates.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Billfold"));
    // New documents start with the built-in invoice designs, as in the desktop program.
    LMBuiltInTemplates::install();
    QTextStream out(stdout);
    QTextStream err(stderr);
    CliRunner runner;
    return runner.run(app.arguments().mid(1), out, err);
}
