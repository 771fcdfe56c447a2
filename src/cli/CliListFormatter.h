#pragma once

#include "cli/CliListing.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

// Rows of a listing as text: a table formatted for the user's locale, CSV with the exact
// machine forms (RFC 4180 quoting), or a JSON array with amounts as exact decimal strings.
class CliListFormatter {
public:
    struct Row {
        QList<QVariant> values;
        QString currencyCode;
    };

    static QString table(const CliListing &listing, const QList<Row> &rows);
    static QString csv(const CliListing &listing, const QList<Row> &rows);
    static QByteArray json(const CliListing &listing, const QList<Row> &rows);

    static QString csvField(const QString &text);
    // The exact text of a value in CSV; empty for null.
    static QString plainText(const CliColumn &column, const QVariant &value);
    static QString localText(const CliColumn &column, const QVariant &value,
                             const QString &currencyCode);

private:
    CliListFormatter() = delete;
};
