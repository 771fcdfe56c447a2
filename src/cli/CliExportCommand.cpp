#include "cli/CliExportCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "importsync/json/JsonDocumentExporter.h"

#include <QSaveFile>

QString CliExportCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli export-json FILE [-o OUT.json]\n\n"
        "Writes every object of the document FILE as JSON: to OUT.json when given (replaced\n"
        "in one step), else to standard output. The form is described in\n"
        "docs/json-interchange.md; import-json reads it back. The same document always gives\n"
        "the same bytes. FILE is opened read-only.\n");
}

int CliExportCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed =
        CliArguments::parse(arguments, {QStringLiteral("-o"), QStringLiteral("--output")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 1)
        return usageError(err, QStringLiteral("expected one document file"));
    const QString path = parsed->positional().first();
    QString output = parsed->value(QStringLiteral("-o"));
    if (output.isEmpty())
        output = parsed->value(QStringLiteral("--output"));

    auto opened = CliDocument::read(path);
    if (!opened)
        return fail(err, path, opened.error().message, CliExit::FileUnusable);
    JsonDocumentExporter exporter((*opened)->context());
    if (output.isEmpty() || output == QLatin1String("-")) {
        out.flush();
        if (!out.device()) { // a stream on a string
            auto json = exporter.exportDocument();
            if (!json)
                return fail(err, path, json.error().message, CliExit::FileUnusable);
            out << QString::fromUtf8(*json);
            return CliExit::Ok;
        }
        // The bytes as they are, without a text round trip.
        if (auto written = exporter.exportDocument(*out.device()); !written) {
            const bool unwritable = written.error().code == int(ErrorCode::WriteFailed);
            return fail(err, unwritable ? QStringLiteral("standard output") : path,
                        written.error().message, CliExit::FileUnusable);
        }
        return CliExit::Ok;
    }
    QSaveFile file(output);
    // Unbuffered, so that a full disk is reported by the write it stops, with its reason.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail(err, output, file.errorString(), CliExit::FileUnusable);
    if (auto written = exporter.exportDocument(file); !written) {
        file.cancelWriting();
        const bool unwritable = written.error().code == int(ErrorCode::WriteFailed);
        return fail(err, unwritable ? output : path, written.error().message,
                    CliExit::FileUnusable);
    }
    if (!file.commit())
        return fail(err, output, file.errorString(), CliExit::FileUnusable);
    return CliExit::Ok;
}
