#pragma once

#include "cli/CliCommand.h"

#include <QDateTime>

#include <memory>
#include <optional>
#include <vector>

// Picks the subcommand named by the first argument and runs it. Takes the option
// "--now ISO8601" from any command line and holds the clock at that instant while the command
// runs, so that overdue states and periods are repeatable.
class CliRunner {
public:
    CliRunner();
    ~CliRunner();

    int run(QStringList arguments, QTextStream &out, QTextStream &err);

    // An ISO 8601 date or date and time; a time without an offset is local time.
    static std::optional<QDateTime> parseInstant(const QString &text);

private:
    QString overview() const;
    static int finished(int status, QTextStream &out, QTextStream &err);

    std::vector<std::unique_ptr<CliCommand>> m_commands;
};
