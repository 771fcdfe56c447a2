#include "cli/CliListCommand.h"

#include "cli/CliArguments.h"
#include "cli/CliDocument.h"
#include "cli/CliListFormatter.h"
#include "cli/CliListing.h"
#include "cli/CliListingKeys.h"
#include "objectstore/Predicate.h"
#include "objectstore/SortDescriptor.h"
#include "store/entities/TACurrency.h"

#include <algorithm>

QString CliListCommand::usage() const {
    return QStringLiteral(
               "Usage: billfold-cli list KIND FILE [--format table|csv|json] [--where PREDICATE]\n"
               "                         [--sort [-]KEY]\n\n"
               "KIND is one of: %1.\n"
               "Lists the objects of that kind with their stored fields and the computed ones\n"
               "(status words, totals, what is paid and left, client sums, project time).\n"
               "  --format   table (default; amounts and dates in your locale), csv (exact\n"
               "             values, quoted as RFC 4180), json (amounts as decimal strings)\n"
               "  --where    keep the objects that match, e.g. \"status == 2 AND total > 100\"\n"
               "  --sort     a column name or key path; a leading '-' sorts descending\n\n"
               "--where takes stored keys, the listing's column names and key paths through\n"
               "links (client.fullName); columns the listing works out itself (key,\n"
               "statusWord, repeatWord, type) cannot be compared or sorted by. An unknown key\n"
               "is an error. Comparisons: == != < <= > >= BETWEEN {a, b} IN {a, b},\n"
               "CONTAINS BEGINSWITH ENDSWITH LIKE MATCHES for texts, with [c] to ignore case\n"
               "and [d] accents (name CONTAINS[cd] \"cafe\"). Combine with AND, OR, NOT and\n"
               "parentheses. Values: numbers (12.5), texts in quotes, YES/NO, NULL, and dates\n"
               "as DATE(\"2025-03-10T00:00:00Z\") (ISO 8601; a date is never compared with a\n"
               "text).\n")
        .arg(CliListing::kinds().join(QStringLiteral(", ")));
}

int CliListCommand::run(const QStringList &arguments, QTextStream &out, QTextStream &err) {
    auto parsed =
        CliArguments::parse(arguments, {QStringLiteral("--format"), QStringLiteral("--where"),
                                        QStringLiteral("--sort")});
    if (!parsed)
        return usageError(err, parsed.error().message);
    if (parsed->positional().size() != 2)
        return usageError(err, QStringLiteral("expected a kind and a document file"));
    const auto listing = CliListing::forKind(parsed->positional()[0]);
    if (!listing)
        return usageError(err, QStringLiteral("unknown kind '%1'").arg(parsed->positional()[0]));
    const QString format = parsed->has(QStringLiteral("--format"))
                               ? parsed->value(QStringLiteral("--format"))
                               : QStringLiteral("table");
    if (format != QLatin1String("table") && format != QLatin1String("csv") &&
        format != QLatin1String("json"))
        return usageError(err, QStringLiteral("unknown format '%1'").arg(format));
    const CliListingKeys keys(*listing);
    std::optional<Predicate> where;
    if (parsed->has(QStringLiteral("--where"))) {
        auto text = keys.where(parsed->value(QStringLiteral("--where")));
        if (!text)
            return usageError(err, QStringLiteral("--where: %1").arg(text.error().message));
        auto predicate = Predicate::parse(*text);
        if (!predicate)
            return usageError(err, QStringLiteral("--where: %1").arg(predicate.error().message));
        where = *predicate;
    }
    QList<SortDescriptor> sort;
    if (QString key = parsed->value(QStringLiteral("--sort")); !key.isEmpty()) {
        const bool descending = key.startsWith(u'-');
        if (descending)
            key.remove(0, 1);
        auto path = keys.sortKeyPath(key);
        if (!path)
            return usageError(err, QStringLiteral("--sort: %1").arg(path.error().message));
        sort.append(SortDescriptor(*path, !descending));
    }

    const QString path = parsed->positional()[1];
    auto opened = CliDocument::read(path);
    if (!opened)
        return fail(err, path, opened.error().message, CliExit::FileUnusable);
    CliDocument &document = **opened;
    // The desktop computes the cached totals again as a document opens; so does the listing.
    document.refreshCachedTotals();
    FetchRequest request(listing->entity);
    request.includesSubentities = listing->includesSubentities;
    auto fetched = document.context().executeFetchRequest(request);
    if (!fetched)
        return fail(err, path, fetched.error().message, CliExit::FileUnusable);
    QList<ManagedObject *> objects = *fetched;
    std::sort(objects.begin(), objects.end(), [](ManagedObject *a, ManagedObject *b) {
        const auto &x = a->objectID();
        const auto &y = b->objectID();
        return x.entityName() != y.entityName() ? x.entityName() < y.entityName()
                                                : x.number() < y.number();
    });
    if (where)
        objects = where->filtered(objects);
    SortDescriptor::sort(objects, sort);

    const auto defaults = TAContextDatabase::fetchEntity(QStringLiteral("Currency"),
                                                         QStringLiteral("defaultCurrency"),
                                                         document.database().context());
    const auto *currency =
        defaults.isEmpty() ? nullptr : dynamic_cast<TACurrency *>(defaults.first());
    const QString defaultCode = currency ? currency->code() : QString();
    QList<CliListFormatter::Row> rows;
    for (const ManagedObject *object : std::as_const(objects)) {
        CliListFormatter::Row row;
        row.currencyCode = listing->currencyCode(*object, defaultCode);
        for (const CliColumn &column : listing->columns)
            row.values.append(listing->value(column, *object));
        rows.append(row);
    }
    if (format == QLatin1String("json")) {
        out << QString::fromUtf8(CliListFormatter::json(*listing, rows));
    } else {
        out << (format == QLatin1String("csv") ? CliListFormatter::csv(*listing, rows)
                                               : CliListFormatter::table(*listing, rows));
    }
    return CliExit::Ok;
}
