#pragma once

#include "cli/CliCommand.h"

// `png FILE --invoice NUMBER --page N -o OUT.png [--scale S]`: one page of an invoice as a
// picture.
class CliPngCommand : public CliCommand {
public:
    QString name() const override { return QStringLiteral("png"); }
    QString summary() const override { return QStringLiteral("Draw one invoice page as PNG"); }
    QString usage() const override;
    int run(const QStringList &arguments, QTextStream &out, QTextStream &err) override;
};
