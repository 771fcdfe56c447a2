#include "cli/CliListFormatter.h"

#include "foundation/money/OTNumberText.h"
#include "importsync/json/JsonText.h"
#include "objectstore/ManagedObject.h"

#include <QLocale>

#include <algorithm>

namespace {

using K = CliColumn::Kind;

bool isNull(const QVariant &value) {
    if (!value.isValid() || value.isNull())
        return true;
    if (value.metaType() == QMetaType::fromType<ManagedObject *>())
        return value.value<ManagedObject *>() == nullptr;
    return false;
}

bool isNumeric(K kind) {
    return kind == K::Integer || kind == K::Decimal || kind == K::Money;
}

} // namespace

QString CliListFormatter::plainText(const CliColumn &column, const QVariant &value) {
    if (isNull(value))
        return {};
    switch (column.kind) {
    case K::Text:
        return value.toString();
    case K::Integer:
        return QString::number(value.toLongLong());
    case K::Boolean:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case K::Decimal:
    case K::Money: {
        const Decimal number = Decimal::fromVariant(value);
        return number.isNaN() ? QString() : number.toString();
    }
    case K::Date:
        return JsonText::dateText(value.toDateTime());
    }
    return {};
}

QString CliListFormatter::localText(const CliColumn &column, const QVariant &value,
                                    const QString &currencyCode) {
    if (isNull(value))
        return {};
    switch (column.kind) {
    case K::Integer:
        return QLocale().toString(value.toLongLong());
    case K::Boolean:
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    case K::Decimal:
    case K::Money: {
        const Decimal number = Decimal::fromVariant(value);
        if (number.isNaN())
            return {};
        return column.kind == K::Money ? OTNumberText::currencyFormatter(number, currencyCode)
                                       : OTNumberText::decimalFormatter(number);
    }
    case K::Date:
        return QLocale().toString(value.toDateTime().toLocalTime(), QLocale::ShortFormat);
    case K::Text:
        break;
    }
    return value.toString().replace(u'\n', u' ');
}

QString CliListFormatter::table(const CliListing &listing, const QList<Row> &rows) {
    const qsizetype count = listing.columns.size();
    QList<QStringList> cells;
    QList<qsizetype> widths(count, 0);
    QStringList header;
    for (qsizetype c = 0; c < count; ++c) {
        header.append(listing.columns[c].name);
        widths[c] = header.last().size();
    }
    for (const Row &row : rows) {
        QStringList line;
        for (qsizetype c = 0; c < count; ++c) {
            line.append(localText(listing.columns[c], row.values[c], row.currencyCode));
            widths[c] = std::max(widths[c], line.last().size());
        }
        cells.append(line);
    }
    auto render = [&](const QStringList &line) {
        QString text;
        for (qsizetype c = 0; c < count; ++c) {
            if (c > 0)
                text += QStringLiteral("  ");
            const bool right = isNumeric(listing.columns[c].kind);
            text += right ? line[c].rightJustified(widths[c]) : line[c].leftJustified(widths[c]);
        }
        while (text.endsWith(u' '))
            text.chop(1);
        return text + u'\n';
    };
    QString out = render(header);
    for (const QStringList &line : cells)
        out += render(line);
    return out;
}

QString CliListFormatter::csvField(const QString &text) {
    static const QString special = QStringLiteral(",\"\r\n");
    const bool quote =
        std::any_of(text.begin(), text.end(), [](QChar c) { return special.contains(c); }) ||
        text.startsWith(u' ') || text.endsWith(u' ');
    if (!quote)
        return text;
    QString escaped = text;
    escaped.replace(u'"', QStringLiteral("\"\""));
    return u'"' + escaped + u'"';
}

QString CliListFormatter::csv(const CliListing &listing, const QList<Row> &rows) {
    QStringList header;
    for (const CliColumn &column : listing.columns)
        header.append(csvField(column.name));
    QString out = header.join(u',') + QStringLiteral("\r\n");
    for (const Row &row : rows) {
        QStringList line;
        for (qsizetype c = 0; c < listing.columns.size(); ++c)
            line.append(csvField(plainText(listing.columns[c], row.values[c])));
        out += line.join(u',') + QStringLiteral("\r\n");
    }
    return out;
}

QByteArray CliListFormatter::json(const CliListing &listing, const QList<Row> &rows) {
    QByteArray out("[");
    for (qsizetype r = 0; r < rows.size(); ++r) {
        out.append(r ? ",\n  {" : "\n  {");
        for (qsizetype c = 0; c < listing.columns.size(); ++c) {
            const CliColumn &column = listing.columns[c];
            const QVariant &value = rows[r].values[c];
            if (c)
                out.append(", ");
            JsonText::appendString(out, column.name);
            out.append(": ");
            if (isNull(value) || (plainText(column, value).isEmpty() && column.kind != K::Text))
                out.append("null");
            else if (column.kind == K::Integer || column.kind == K::Boolean)
                out.append(plainText(column, value).toUtf8());
            else
                JsonText::appendString(out, plainText(column, value));
        }
        out.append('}');
    }
    out.append(rows.isEmpty() ? "]\n" : "\n]\n");
    return out;
}
