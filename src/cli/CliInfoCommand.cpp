#include "cli/CliInfoCommand.h"

#include "cli/CliDocument.h"
#include "objectstore/ManagedObjectModel.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAPreferences.h"

#include <QFileInfo>

QString CliInfoCommand::usage() const {
    return QStringLiteral(
        "Usage: billfold-cli info FILE\n\n"
        "Prints the data model version, the default currency, whether the document\n"
        "is locked with a password, and how many objects of each kind it holds.\n"
        "The file is opened read-only; a file of an older version is read as it would be\n"
        "upgraded, and left as it is.\n");
}

int CliInfoCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    if (arguments.size() != 1 || arguments[0].startsWith(u'-')) {
        err << usage();
        return CliExit::Usage;
    }
    const QString path = arguments[0];
    auto opened = CliDocument::read(path);
    if (!opened) {
        err << "billfold-cli: " << path << ": " << opened.error().message << Qt::endl;
        return CliExit::FileUnusable;
    }
    CliDocument &document = **opened;
    ManagedObjectContext &ctx = document.context();

    QList<std::pair<QString, qsizetype>> counts;
    for (const EntityDescription *entity : ctx.model()->entities()) {
        if (entity->isAbstract())
            continue;
        FetchRequest request(entity->name());
        request.includesSubentities = false;
        auto objects = ctx.executeFetchRequest(request);
        if (!objects) {
            err << "billfold-cli: " << path << ": " << objects.error().message << Qt::endl;
            return CliExit::FileUnusable;
        }
        counts.append({entity->name(), objects->size()});
    }
    const auto defaults = TAContextDatabase::fetchEntity(QStringLiteral("Currency"),
                                                         QStringLiteral("defaultCurrency"),
                                                         document.database().context());
    const auto *currency =
        defaults.isEmpty() ? nullptr : dynamic_cast<TACurrency *>(defaults.first());
    const auto preferences = TAContextDatabase::fetchEntity(QStringLiteral("Preferences"),
                                                            QStringLiteral("allPreferences"),
                                                            document.database().context());
    const auto *prefs =
        preferences.isEmpty() ? nullptr : dynamic_cast<TAPreferences *>(preferences.first());

    out << "File:             " << QFileInfo(path).absoluteFilePath() << '\n';
    out << "Model version:    " << document.fileModelVersion() << '\n';
    out << "Default currency: " << (currency ? currency->code() : QStringLiteral("(none)")) << '\n';
    out << "Password locked:  " << (prefs && !prefs->password().isEmpty() ? "yes" : "no") << '\n';
    out << "Objects:\n";
    for (const auto &[name, count] : counts)
        out << "  " << qSetFieldWidth(24) << Qt::left << name << qSetFieldWidth(0) << count << '\n';
    out.flush();
    return CliExit::Ok;
}
