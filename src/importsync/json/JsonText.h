#pragma once

#include "foundation/Result.h"
#include "foundation/money/Decimal.h"

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

    // A quoted value for a message: JSON-escaped, cut after kExcerptLength characters with an
    // ellipsis, so that a huge key or value still gives a line a person can read.
    static constexpr qsizetype kExcerptLength = 60;
    static QString excerpt(std::string_view utf8);

    // "2024-05-01T09:30:00.250Z": UTC, milliseconds always written.
    static QString dateText(const QDateTime &date);
    // Documents hold the instants of the years 0001 to 9999 in UTC, the ones dateText writes
    // in its four-digit form.
    static bool isDateInRange(const QDateTime &date);
    // ISO 8601 with milliseconds optional and an offset ("Z" or "+02:00") required, naming an
    // instant in range. The readers take the UTF-8 text as it stands in the file; a failure
    // says why, without the JSON path.
    static Result<QDateTime> parseDate(std::string_view text);

    // The shortest text that reads back to the same double ("0" for either zero); "NaN",
    // "Infinity", "-Infinity" (as JSON strings) for values JSON numbers cannot hold.
    static QByteArray doubleLiteral(double value);
    static std::optional<double> parseSpecialDouble(std::string_view text);

    // "NaN", or an optional '-', digits, and optionally '.' and digits, with at most 38
    // significant digits and none past the 128th decimal place: a value the file states is
    // kept exactly or refused, never rounded. The failure says why, without the JSON path.
    static Result<Decimal> parseDecimal(std::string_view text);
    // Standard base64 with its padding; nothing for anything else.
    static std::optional<QByteArray> parseBase64(std::string_view text);

    // Where the first byte stands that is not part of well-formed UTF-8; -1 when all are.
    static qsizetype invalidUtf8At(QByteArrayView text);
    // Where the first \u escape of a JSON text from `from` on stands that is a surrogate
    // without its partner (a high one not followed by a low one, or a low one alone); -1 when
    // there is none. `from` must not stand inside an escape.
    static qsizetype loneSurrogateAt(QByteArrayView json, qsizetype from = 0);

private:
    JsonText() = delete;
};
