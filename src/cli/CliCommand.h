#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

// Exit statuses every subcommand keeps to: scripts tell a usage slip from a bad file.
namespace CliExit {
enum : int { Ok = 0, Usage = 1, FileUnusable = 2 };
}

// One subcommand of billfold-cli.
class CliCommand {
public:
    virtual ~CliCommand() = default;
    virtual QString name() const = 0;
    virtual QString summary() const = 0;
    virtual QString usage() const = 0;
    // Runs with the arguments after the subcommand's name; answers an exit status.
    virtual int run(const QStringList &arguments, QTextStream &out, QTextStream &err) = 0;

protected:
    // The one-line message of a failure: the file and the reason.
    static int fail(QTextStream &err, const QString &file, const QString &reason, int status) {
        err << "billfold-cli: " << file << ": " << reason << Qt::endl;
        return status;
    }
    int usageError(QTextStream &err, const QString &reason) const {
        err << "billfold-cli " << name() << ": " << reason << "\n\n" << usage();
        err.flush();
        return CliExit::Usage;
    }
};
