#pragma once

#include "cli/CliCommand.h"

// `list KIND FILE`: the objects of one kind with their stored and computed fields.
class CliListCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("list"); }
    QString summary() const override { return QStringLiteral("List objects of one kind"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
