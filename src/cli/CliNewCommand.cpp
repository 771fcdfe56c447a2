#include "cli/CliNewCommand.h"

#include "billing/dates/OTClock.h"
#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "importsync/sample/SampleDocument.h"
#include "store/document/TADocument.h"

#include <QFileInfo>
#include <QTemporaryDir>

QString CliNewCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli new FILE [--sample]\n\n"
        "Creates FILE as a new Billfold document holding the default content:\n"
        "the document preferences and the default currency. With --sample it holds a small\n"
        "sample business instead. FILE must not exist.\n");
}

namespace {

// As the welcome window's sample command does it: the document takes a copy of the sample
// file's objects, then the dates move to today.
Result<void> copySample(CliDocument &document) {
    auto days = SampleDocument::daysTo(OTClock::now());
    if (!days)
        return days.error();
    QTemporaryDir folder;
    auto extracted = folder.isValid()
                         ? SampleDocument::extract(folder.path())
                         : Result<QString>(Error{ErrorCode::WriteFailed, folder.errorString()});
    if (!extracted)
        return extracted.error();
    if (!document.document().replaceContentsWithCopyOfURL(*extracted))
        return Error{ErrorCode::FileDamaged, QStringLiteral("The sample document could not "
                                                            "be read.")};
    SampleDocument::moveDates(document.context(), *days);
    return {};
}

} // namespace

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
        if (auto copied = copySample(**document); !copied)
            return fail(err, path, copied.error().message, CliExit::FileUnusable);
    } else {
        db.getPreferences();
        db.getDefaultCurrency();
        db.getTemplates();
    }
    if (auto saved = (*document)->saveAs(path); !saved)
        return fail(err, path, saved.error().message, CliExit::FileUnusable);
    out << "Created " << QFileInfo(path).absoluteFilePath() << Qt::endl;
    return CliExit::Ok;
}
