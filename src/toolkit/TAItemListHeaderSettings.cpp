// Archived form, version 1: a CBOR map
//   { "v": 1, "columns": [ record, ... ] }   columns in display order
// where a record is a map with
//   "identifier" text, "name" text, "hidden" bool, "width" number, "minWidth" number,
//   "maxWidth" number (optional), "fixed" bool, "alignment" integer (0 left, 1 right,
//   2 centre), "rightInset" number (optional), "sortDescriptor" map { "key" text,
//   "ascending" bool } (absent when the column does not sort), "alwaysVisible" bool,
//   "sort" integer (1 ascending, -1 descending; only in the active sort column).
// Reading keeps only what a person can change (order, width, hidden, sort) and takes the rest
// from the running build; anything unreadable falls back to the build's value.
#include "toolkit/TAItemListHeaderSettings.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 kVersion = 1;

QString key(const char *text) {
    return QString::fromLatin1(text);
}

double clampedWidth(const TAItemListColumn &column, double width) {
    if (!std::isfinite(width))
        width = column.width;
    if (column.maxWidth)
        width = std::min(width, *column.maxWidth);
    return std::max(width, column.minWidth);
}

QCborMap recordToCbor(const TAItemListColumn &column) {
    QCborMap map;
    map.insert(key("identifier"), column.identifier);
    map.insert(key("name"), column.name);
    map.insert(key("hidden"), column.hidden);
    map.insert(key("width"), column.width);
    map.insert(key("minWidth"), column.minWidth);
    if (column.maxWidth)
        map.insert(key("maxWidth"), *column.maxWidth);
    map.insert(key("fixed"), column.fixed);
    map.insert(key("alignment"), static_cast<qint64>(column.alignment));
    if (column.rightInset)
        map.insert(key("rightInset"), *column.rightInset);
    if (!column.sortKey.isEmpty()) {
        QCborMap descriptor;
        descriptor.insert(key("key"), column.sortKey);
        descriptor.insert(key("ascending"), column.sortKeyAscending);
        map.insert(key("sortDescriptor"), descriptor);
    }
    map.insert(key("alwaysVisible"), column.alwaysVisible);
    if (column.sortAscending)
        map.insert(key("sort"), static_cast<qint64>(*column.sortAscending ? 1 : -1));
    return map;
}

// The person's changes of a stored record laid over the build's definition of that column.
TAItemListColumn mergedColumn(const QCborMap &stored, const TAItemListColumn &definition) {
    TAItemListColumn column = definition;
    column.sortAscending.reset();
    const QCborValue hidden = stored.value(key("hidden"));
    if (hidden.isBool())
        column.hidden = hidden.toBool() && !definition.alwaysVisible;
    const QCborValue width = stored.value(key("width"));
    if (width.isDouble() || width.isInteger())
        column.width = width.toDouble();
    column.width = clampedWidth(column, column.width);
    const qint64 sort = stored.value(key("sort")).toInteger(0);
    if (!column.sortKey.isEmpty() && (sort == 1 || sort == -1))
        column.sortAscending = sort == 1;
    return column;
}

// The stored records that still have a definition, in stored order, each identifier once.
QList<TAItemListColumn> storedColumns(const QCborArray &records,
                                      const QList<TAItemListColumn> &definitions) {
    QList<TAItemListColumn> columns;
    QSet<QString> seen;
    for (const QCborValue &value : records) {
        const QString identifier = value.toMap().value(key("identifier")).toString();
        if (identifier.isEmpty() || seen.contains(identifier))
            continue;
        const auto definition =
            std::find_if(definitions.begin(), definitions.end(),
                         [&](const TAItemListColumn &d) { return d.identifier == identifier; });
        if (definition == definitions.end())
            continue; // a column this build no longer has
        seen.insert(identifier);
        columns.append(mergedColumn(value.toMap(), *definition));
    }
    return columns;
}

// A column the stored settings lack goes to its defined place when the list reaches that far,
// else to the end, so older documents keep their widths and gain new columns.
void insertNewColumns(QList<TAItemListColumn> &columns,
                      const QList<TAItemListColumn> &definitions) {
    for (qsizetype i = 0; i < definitions.size(); ++i) {
        const QString &identifier = definitions[i].identifier;
        const bool present = std::any_of(columns.begin(), columns.end(),
                                         [&](const auto &c) { return c.identifier == identifier; });
        if (present)
            continue;
        TAItemListColumn column = definitions[i];
        column.sortAscending.reset();
        columns.insert(std::min(i, columns.size()), column);
    }
}

// At most one column sorts; a damaged file could mark several, the first one wins.
void keepOneSort(QList<TAItemListColumn> &columns) {
    bool found = false;
    for (TAItemListColumn &column : columns) {
        if (found)
            column.sortAscending.reset();
        found = found || column.sortAscending.has_value();
    }
}

} // namespace

TAItemListHeaderSettings::TAItemListHeaderSettings(QList<TAItemListColumn> definitions)
    : m_columns(std::move(definitions)) {}

TAItemListHeaderSettings
TAItemListHeaderSettings::fromArchive(const QByteArray &blob,
                                      const QList<TAItemListColumn> &buildDefinitions) {
    const TAItemListHeaderSettings defaults(buildDefinitions);
    if (blob.isEmpty())
        return defaults;
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(blob, &error);
    if (error.error != QCborError::NoError || !value.isMap())
        return defaults;
    const QCborMap map = value.toMap();
    const QCborValue records = map.value(key("columns"));
    if (map.value(key("v")).toInteger(-1) != kVersion || !records.isArray())
        return defaults;

    TAItemListHeaderSettings settings;
    settings.m_columns = storedColumns(records.toArray(), buildDefinitions);
    insertNewColumns(settings.m_columns, buildDefinitions);
    keepOneSort(settings.m_columns);
    return settings;
}

QByteArray TAItemListHeaderSettings::archive() const {
    QCborArray records;
    for (const TAItemListColumn &column : m_columns)
        records.append(recordToCbor(column));
    QCborMap map;
    map.insert(key("v"), kVersion);
    map.insert(key("columns"), records);
    return map.toCborValue().toCbor();
}

qsizetype TAItemListHeaderSettings::indexOf(const QString &identifier) const {
    for (qsizetype i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].identifier == identifier)
            return i;
    }
    return -1;
}

bool TAItemListHeaderSettings::moveColumn(qsizetype from, qsizetype to) {
    const qsizetype count = m_columns.size();
    if (from < 0 || to < 0 || from >= count || to >= count)
        return false;
    // Every column between the two places shifts by one, so none of them may be fixed.
    const qsizetype low = std::min(from, to);
    const qsizetype high = std::max(from, to);
    for (qsizetype i = low; i <= high; ++i) {
        if (m_columns[i].fixed)
            return false;
    }
    m_columns.move(from, to);
    return true;
}

std::optional<double> TAItemListHeaderSettings::resizeColumn(const QString &identifier,
                                                             double width) {
    const qsizetype index = indexOf(identifier);
    if (index < 0)
        return std::nullopt;
    TAItemListColumn &column = m_columns[index];
    column.width = clampedWidth(column, width);
    return column.width;
}

bool TAItemListHeaderSettings::setHidden(const QString &identifier, bool hidden) {
    const qsizetype index = indexOf(identifier);
    if (index < 0 || (hidden && m_columns[index].alwaysVisible))
        return false;
    m_columns[index].hidden = hidden;
    return true;
}

QStringList TAItemListHeaderSettings::menuColumns() const {
    QStringList identifiers;
    for (const TAItemListColumn &column : m_columns) {
        if (!column.alwaysVisible)
            identifiers.append(column.identifier);
    }
    return identifiers;
}

bool TAItemListHeaderSettings::setSort(const QString &identifier, bool ascending) {
    const qsizetype index = indexOf(identifier);
    if (index < 0 || m_columns[index].sortKey.isEmpty())
        return false;
    clearSort();
    m_columns[index].sortAscending = ascending;
    return true;
}

void TAItemListHeaderSettings::clearSort() {
    for (TAItemListColumn &column : m_columns)
        column.sortAscending.reset();
}

std::optional<QString> TAItemListHeaderSettings::sortColumn() const {
    for (const TAItemListColumn &column : m_columns) {
        if (column.sortAscending)
            return column.identifier;
    }
    return std::nullopt;
}

std::optional<TAItemListHeaderSettings::SortOrder> TAItemListHeaderSettings::sortOrder() const {
    for (const TAItemListColumn &column : m_columns) {
        if (column.sortAscending)
            return SortOrder{column.sortKey, *column.sortAscending};
    }
    return std::nullopt;
}
