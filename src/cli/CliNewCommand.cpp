#include "cli/CliNewCommand.h"

#include "cli/CliDocument.h"

#include <QFileInfo>

QString CliNewCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli new FILE\n\n"
        "Creates FILE as a new Billfold document holding the default content:\n"
        "the document preferences and the default currency. FILE must not exist.\n");
}

int CliNewCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    if (arguments.size() != 1 || arguments[0].startsWith(u'-')) {
        err << usage();
        return CliExit::Usage;
    }
    const QString path = arguments[0];
    auto document = CliDocument::create(path);
    if (!document) {
        err << "billfold-cli: " << path << ": " << document.error().message << Qt::endl;
        return CliExit::FileUnusable;
    }
    TADatabase &db = (*document)->database();
    db.getPreferences();
    db.getDefaultCurrency();
    db.getTemplates();
    if (auto saved = (*document)->save(); !saved) {
        err << "billfold-cli: " << path << ": " << saved.error().message << Qt::endl;
        return CliExit::FileUnusable;
    }
    out << "Created " << QFileInfo(path).absoluteFilePath() << Qt::endl;
    return CliExit::Ok;
}
