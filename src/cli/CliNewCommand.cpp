#include "cli/CliNewCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "foundation/dates/OTClock.h"
#include "importsync/sample/SampleDocument.h"

#include <QFileInfo>

QString CliNewCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli new FILE [--sample]\n\n"
        "Creates FILE as a new Billfold document holding the default content:\n"
        "the document preferences and the default currency. With --sample it holds a small\n"
        "sample business instead. FILE must not exist.\n");
}

int CliNewCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed = CliArguments::parse(arguments, {}, {QStringLiteral("--sample")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 1)
        return usageError(err, QStringLiteral("expected one document file"));
    const QString path = parsed->positional().first();
    if (QFileInfo::exists(path))
        return fail(err, path,
                    QStringLiteral("already exists; a new document is not written over it"),
                    CliExit::FileUnusable);
    auto document = CliDocument::createInMemory();
    if (!document)
        return fail(err, path, document.error().message, CliExit::FileUnusable);
    TADatabase &db = (*document)->database();
    if (parsed->has(QStringLiteral("--sample"))) {
        if (auto copied = SampleDocument::copyInto((*document)->document(), OTClock::now());
            !copied)
            return fail(err, path, copied.error().message, CliExit::FileUnusable);
    } else {
        TAContextDatabase::getPreferencesInContext(db.context());
        db.getDefaultCurrency();
        TAContextDatabase::getTemplatesInContext(db.context());
    }
    if (auto saved = (*document)->saveAs(path); !saved)
        return fail(err, path, saved.error().message, CliExit::FileUnusable);
    out << "Created " << QFileInfo(path).absoluteFilePath() << Qt::endl;
    return CliExit::Ok;
}
