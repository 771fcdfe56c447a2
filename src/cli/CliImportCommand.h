#pragma once

#include "cli/CliCommand.h"

// `import-json IN.json -o FILE`: a new document built from the JSON form of one.
class CliImportCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("import-json"); }
    QString summary() const override { return QStringLiteral("Build a document from JSON"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
