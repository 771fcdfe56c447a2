#pragma once

#include "cli/CliRunner.h"

#include <QString>
#include <QStringList>
#include <QTextStream>

// One billfold-cli command, run in the test's own process: its exit status and what it wrote.
struct CliRun {
    int status = -1;
    QString out;
    QString err;

    static CliRun of(const QStringList &arguments) {
        CliRun run;
        QTextStream out(&run.out);
        QTextStream err(&run.err);
        CliRunner runner;
        run.status = runner.run(arguments, out, err);
        out.flush();
        err.flush();
        return run;
    }
};
