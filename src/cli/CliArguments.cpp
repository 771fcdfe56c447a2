#include "cli/CliArguments.h"

namespace {

Error usageError(const QString &message) {
    return Error{ErrorCode::Generic, message};
}

} // namespace

Result<CliArguments> CliArguments::parse(const QStringList &arguments,
                                         const QStringList &valueOptions,
                                         const QStringList &flags) {
    CliArguments parsed;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString argument = arguments[i];
        if (argument == QLatin1String("-") || !argument.startsWith(u'-')) {
            parsed.m_positional.append(argument);
            continue;
        }
        QString value;
        bool inlineValue = false;
        if (const qsizetype eq = argument.indexOf(u'=');
            argument.startsWith(QLatin1String("--")) && eq > 0) {
            value = argument.mid(eq + 1);
            argument.truncate(eq);
            inlineValue = true;
        }
        if (parsed.m_values.contains(argument))
            return usageError(QStringLiteral("option '%1' given twice").arg(argument));
        if (flags.contains(argument) && !inlineValue) {
            parsed.m_values.insert(argument, QString());
            continue;
        }
        if (!valueOptions.contains(argument))
            return usageError(QStringLiteral("unknown option '%1'").arg(argument));
        if (!inlineValue) {
            if (i + 1 >= arguments.size())
                return usageError(QStringLiteral("option '%1' needs a value").arg(argument));
            value = arguments[++i];
        }
        parsed.m_values.insert(argument, value);
    }
    return parsed;
}
