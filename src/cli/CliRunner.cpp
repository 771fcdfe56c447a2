#include "cli/CliRunner.h"

#include "cli/CliExportCommand.h"
#include "cli/CliImportCommand.h"
#include "cli/CliInfoCommand.h"
#include "cli/CliListCommand.h"
#include "cli/CliNewCommand.h"
#include "cli/CliPdfCommand.h"
#include "cli/CliPngCommand.h"
#include "foundation/dates/ScopedFixedClock.h"

#include <QIODevice>

CliRunner::CliRunner() {
    m_commands.push_back(std::make_unique<CliNewCommand>());
    m_commands.push_back(std::make_unique<CliInfoCommand>());
    m_commands.push_back(std::make_unique<CliExportCommand>());
    m_commands.push_back(std::make_unique<CliImportCommand>());
    m_commands.push_back(std::make_unique<CliListCommand>());
    m_commands.push_back(std::make_unique<CliPdfCommand>());
    m_commands.push_back(std::make_unique<CliPngCommand>());
}

CliRunner::~CliRunner() = default;

QString CliRunner::overview() const {
    QString text = QStringLiteral("Usage: billfold-cli COMMAND [ARGUMENTS] [--now ISO8601]\n\n"
                                  "Commands:\n");
    for (const auto &command : m_commands)
        text += QStringLiteral("  %1%2\n").arg(command->name(), -13).arg(command->summary());
    text += QStringLiteral(
        "\nRun 'billfold-cli COMMAND --help' for a command's arguments.\n"
        "--now fixes the clock for the command (overdue states, periods, new objects).\n"
        "Exit status: 0 success, 1 usage error, 2 a file that cannot be used.\n");
    return text;
}

std::optional<QDateTime> CliRunner::parseInstant(const QString &text) {
    QDateTime instant = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!instant.isValid()) {
        const QDate day = QDate::fromString(text, Qt::ISODate);
        if (day.isValid())
            instant = day.startOfDay();
    }
    if (!instant.isValid())
        return std::nullopt;
    return instant;
}

// A full disk or a closed pipe must not pass for output written.
int CliRunner::finished(int status, QTextStream &out, QTextStream &err) {
    out.flush();
    if (status == CliExit::Ok && out.status() == QTextStream::WriteFailed) {
        const QString reason = out.device() ? out.device()->errorString() : QString();
        err << "billfold-cli: standard output: "
            << (reason.isEmpty() ? QStringLiteral("cannot be written") : reason) << Qt::endl;
        status = CliExit::FileUnusable;
    }
    err.flush();
    return status;
}

int CliRunner::run(QStringList arguments, QTextStream &out, QTextStream &err) {
    std::optional<QDateTime> now;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString value;
        if (arguments[i] == QLatin1String("--now") && i + 1 < arguments.size()) {
            value = arguments.takeAt(i + 1);
        } else if (arguments[i].startsWith(QLatin1String("--now="))) {
            value = arguments[i].mid(6);
        } else if (arguments[i] == QLatin1String("--now")) {
            err << "billfold-cli: option '--now' needs a value\n";
            return CliExit::Usage;
        } else {
            continue;
        }
        arguments.removeAt(i);
        now = parseInstant(value);
        if (!now) {
            err << "billfold-cli: '" << value << "' is no ISO 8601 date and time\n";
            return CliExit::Usage;
        }
        break;
    }
    if (arguments.isEmpty()) {
        err << overview();
        return CliExit::Usage;
    }
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        out << overview();
        return finished(CliExit::Ok, out, err);
    }
    for (const auto &command : m_commands) {
        if (command->name() != name)
            continue;
        if (arguments.contains(QLatin1String("--help")) ||
            arguments.contains(QLatin1String("-h"))) {
            out << command->usage();
            return finished(CliExit::Ok, out, err);
        }
        std::optional<ScopedFixedClock> clock;
        if (now)
            clock.emplace(*now);
        return finished(command->run(arguments, out, err), out, err);
    }
    err << "billfold-cli: unknown command '" << name << "'\n\n" << overview();
    return CliExit::Usage;
}
