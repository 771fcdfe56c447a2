#include "cli/CliImportCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "importsync/json/JsonDocumentImporter.h"

#include <QFile>
#include <QFileInfo>

QString CliImportCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli import-json IN.json -o FILE [--force]\n\n"
        "Builds the document FILE from the JSON that export-json writes (IN.json may be '-'\n"
        "for standard input). The whole text is checked first: an unknown entity or key, a\n"
        "value of the wrong type, a reference to no object or a malformed number is reported\n"
        "with its JSON path, and then no file is written. FILE must not exist unless --force\n"
        "is given; it appears only when complete.\n");
}

int CliImportCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed = CliArguments::parse(arguments, {QStringLiteral("-o"), QStringLiteral("--output")},
                                      {QStringLiteral("--force")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 1)
        return usageError(err, QStringLiteral("expected one JSON file"));
    QString target = parsed->value(QStringLiteral("-o"));
    if (target.isEmpty())
        target = parsed->value(QStringLiteral("--output"));
    if (target.isEmpty())
        return usageError(err, QStringLiteral("the document to write is given with -o FILE"));
    const QString input = parsed->positional().first();

    QFile file;
    const bool opened = input == QLatin1String("-")
                            ? file.open(stdin, QIODevice::ReadOnly)
                            : (file.setFileName(input), file.open(QIODevice::ReadOnly));
    if (!opened)
        return fail(err, input, file.errorString(), CliExit::FileUnusable);
    JsonDocumentImporter importer;
    if (auto read = importer.read(file.readAll()); !read)
        return fail(err, input, read.error().message, CliExit::FileUnusable);
    if (QFileInfo::exists(target) && !parsed->has(QStringLiteral("--force")))
        return fail(err, target, QStringLiteral("already exists; give --force to replace it"),
                    CliExit::FileUnusable);

    auto document = CliDocument::createInMemory();
    if (!document)
        return fail(err, target, document.error().message, CliExit::FileUnusable);
    // The build computes the cached totals again from the items, as the desktop would on
    // opening: listings and exports of the new document agree with it.
    if (auto built = importer.build((*document)->context()); !built)
        return fail(err, input, built.error().message, CliExit::FileUnusable);
    if (auto saved = (*document)->saveAs(target); !saved)
        return fail(err, target, saved.error().message, CliExit::FileUnusable);
    out << "Imported " << importer.objectCount() << " objects into "
        << QFileInfo(target).absoluteFilePath() << Qt::endl;
    return CliExit::Ok;
}
