#pragma once

#include "cli/CliCommand.h"

// `new FILE [--sample]`: a new document with the content every new document starts with, or
// with the sample business.
class CliNewCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("new"); }
    QString summary() const override { return QStringLiteral("Create a new document"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
