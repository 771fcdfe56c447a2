#pragma once

#include "billing/money/Decimal.h"
#include "store/objectstore/Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>
#include <string_view>

// The exact text forms of values in the JSON files and listings: one writer, one reader per
// kind, so that what is written reads back to the same value and is written the same again.
class JsonText {
public:
    // A JSON string literal with its quotes; non-ASCII stays UTF-8.
    static void appendString(QByteArray &out, QStringView text);
    static QByteArray quoted(QStringView text);

    // "2024-05-01T09:30:00.250Z": UTC, milliseconds always written.
    static QString dateText(const QDateTime &date);
    // ISO 8601 with milliseconds optional and an offset ("Z" or "+02:00") required. The
    // readers take the UTF-8 text as it stands in the file.
    static std::optional<QDateTime> parseDate(std::string_view text);

    // The shortest text that reads back to the same double; "NaN", "Infinity", "-Infinity"
    // (as JSON strings) for values JSON numbers cannot hold.
    static QByteArray doubleLiteral(double value);
    static std::optional<double> parseSpecialDouble(std::string_view text);

    // "NaN", or an optional '-', digits, and optionally '.' and digits, with at most 38
    // significant digits: a value the file states is kept exactly or refused, never rounded.
    // The failure says why, without the JSON path.
    static Result<Decimal> parseDecimal(std::string_view text);
    // Standard base64 with its padding; nothing for anything else.
    static std::optional<QByteArray> parseBase64(std::string_view text);

    // Where the first byte stands that is not part of well-formed UTF-8; -1 when all are.
    static qsizetype invalidUtf8At(QByteArrayView text);

private:
    JsonText() = delete;
};
