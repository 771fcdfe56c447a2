#pragma once

#include "cli/CliCommand.h"

// `export-json FILE [-o OUT.json]`: the whole document as JSON, on standard output or in a file.
class CliExportCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("export-json"); }
    QString summary() const override { return QStringLiteral("Write a document as JSON"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
