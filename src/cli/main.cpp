// billfold-cli: the headless companion of Billfold. It links the logic libraries only.
#include "cli/CliCommand.h"
#include "cli/CliInfoCommand.h"
#include "cli/CliNewCommand.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

QString overview(const std::vector<std::unique_ptr<CliCommand>> &commands) {
    QString text = QStringLiteral("Usage: billfold-cli COMMAND [ARGUMENTS]\n\nCommands:\n");
    for (const auto &command : commands)
        text += QStringLiteral("  %1%2\n").arg(command->name(), -10).arg(command->summary());
    text +=
        QStringLiteral("\nRun 'billfold-cli COMMAND --help' for a command's arguments.\n"
                       "Exit status: 0 success, 1 usage error, 2 a file that cannot be used.\n");
    return text;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Billfold"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    std::vector<std::unique_ptr<CliCommand>> commands;
    commands.push_back(std::make_unique<CliNewCommand>());
    commands.push_back(std::make_unique<CliInfoCommand>());

    QStringList arguments = app.arguments().mid(1);
    if (arguments.isEmpty()) {
        err << overview(commands);
        return CliExit::Usage;
    }
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        out << overview(commands);
        return CliExit::Ok;
    }
    for (const auto &command : commands) {
        if (command->name() != name)
            continue;
        if (arguments.contains(QLatin1String("--help")) ||
            arguments.contains(QLatin1String("-h"))) {
            out << command->usage();
            return CliExit::Ok;
        }
        return command->run(arguments, out, err);
    }
    err << "billfold-cli: unknown command '" << name << "'\n\n" << overview(commands);
    return CliExit::Usage;
}
