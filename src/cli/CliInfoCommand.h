#pragma once

#include "cli/CliCommand.h"

// `info FILE`: what a document holds, without changing it.
class CliInfoCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("info"); }
    QString summary() const override { return QStringLiteral("Show what a document holds"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
