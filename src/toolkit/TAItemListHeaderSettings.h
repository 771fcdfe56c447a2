#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// One column of a list header: its definition in this build plus what the person changed
// (place, width, hidden, sort). Widths are in points.
struct TAItemListColumn {
    enum class Alignment { Left = 0, Right = 1, Centre = 2 };

    QString identifier;
    QString name;
    bool hidden = false;
    double width = 0;
    double minWidth = 0;
    std::optional<double> maxWidth;
    bool fixed = false;
    Alignment alignment = Alignment::Left;
    std::optional<double> rightInset;
    // The model key this column sorts by; empty when the column does not sort.
    QString sortKey;
    bool sortKeyAscending = true;
    bool alwaysVisible = false;
    // The saved direction when this is the active sort column; absent in all others.
    std::optional<bool> sortAscending;

    bool operator==(const TAItemListColumn &) const = default;
};

// The settings of a list header that a document remembers: column order, widths, hidden
// columns and sort. Stored settings are merged with the definitions of the running build, so
// titles, lower bounds and sort keys always follow the build.
class TAItemListHeaderSettings {
public:
    struct SortOrder {
        QString key;
        bool ascending = true;
        bool operator==(const SortOrder &) const = default;
    };

    TAItemListHeaderSettings() = default;
    explicit TAItemListHeaderSettings(QList<TAItemListColumn> definitions);

    // The stored settings merged with this build's definitions; damaged, foreign or empty
    // bytes give the definitions unchanged.
    static TAItemListHeaderSettings fromArchive(const QByteArray &blob,
                                                const QList<TAItemListColumn> &buildDefinitions);
    QByteArray archive() const;

    const QList<TAItemListColumn> &columns() const { return m_columns; }
    qsizetype indexOf(const QString &identifier) const;

    // Moves the column at `from` to `to`; refused when either end is out of range or the move
    // would shift a fixed column from its place.
    bool moveColumn(qsizetype from, qsizetype to);
    // Sets the width within the column's bounds; answers the width applied, nothing for an
    // unknown column.
    std::optional<double> resizeColumn(const QString &identifier, double width);
    // Refused for an unknown column and for hiding an always-visible one.
    bool setHidden(const QString &identifier, bool hidden);
    // The identifiers of the show-and-hide menu, in column order.
    QStringList menuColumns() const;

    // Makes the column the only sort column; refused when it has no sort key.
    bool setSort(const QString &identifier, bool ascending);
    void clearSort();
    std::optional<QString> sortColumn() const;
    // The key and direction the list sorts by, or nothing to keep the list's own order.
    std::optional<SortOrder> sortOrder() const;

private:
    QList<TAItemListColumn> m_columns;
};
