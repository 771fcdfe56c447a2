#pragma once

#include "foundation/Result.h"

#include <QHash>
#include <QString>
#include <QStringList>

// The arguments of one subcommand after its name: positionals, options that take a value
// ("-o OUT", "--format=csv") and plain flags. Anything else starting with '-' is a usage error.
class CliArguments {
public:
    static Result<CliArguments> parse(const QStringList &arguments, const QStringList &valueOptions,
                                      const QStringList &flags = {});

    const QStringList &positional() const { return m_positional; }
    bool has(const QString &option) const { return m_values.contains(option); }
    QString value(const QString &option) const { return m_values.value(option); }

private:
    QStringList m_positional;
    QHash<QString, QString> m_values; // flags map to the empty text
};
