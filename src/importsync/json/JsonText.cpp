#include "importsync/json/JsonText.h"

#include <cstring>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

void JsonText::appendString(QByteArray &out, QStringView text) {
    static const char hex[] = "0123456789abcdef";
    out.append('"');
    // Most texts are plain ASCII with nothing to escape: copied without a UTF-8 buffer.
    const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.unicode() >= 0x20 && c.unicode() < 0x80 && c != u'"' && c != u'\\';
    });
    if (plain) {
        const qsizetype at = out.size();
        out.resize(at + text.size());
        char *to = out.data() + at;
        for (QChar c : text)
            *to++ = char(c.unicode());
        out.append('"');
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    for (const char c : utf8) {
        const auto u = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out.append("\\\"");
            break;
        case '\\':
            out.append("\\\\");
            break;
        case '\n':
            out.append("\\n");
            break;
        case '\r':
            out.append("\\r");
            break;
        case '\t':
            out.append("\\t");
            break;
        default:
            if (u < 0x20) {
                out.append("\\u00");
                out.append(hex[u >> 4]);
                out.append(hex[u & 0xf]);
            } else {
                out.append(c);
            }
        }
    }
    out.append('"');
}

QByteArray JsonText::quoted(QStringView text) {
    QByteArray out;
    appendString(out, text);
    return out;
}

QString JsonText::excerpt(std::string_view utf8) {
    // A code point takes at most four bytes: enough of them for the excerpt and one more.
    constexpr std::size_t kBytes = (kExcerptLength + 1) * 4;
    const QString head = QString::fromUtf8(utf8.data(), qsizetype(std::min(utf8.size(), kBytes)));
    qsizetype cut = 0;
    for (qsizetype points = 0; cut < head.size() && points < kExcerptLength; ++points)
        cut += head.at(cut).isHighSurrogate() && cut + 1 < head.size() ? 2 : 1;
    QString text = QString::fromUtf8(quoted(QStringView(head).first(cut)));
    if (cut < head.size())
        text.insert(text.size() - 1, QChar(0x2026)); // an ellipsis inside the quotes
    return text;
}

namespace {

constexpr qint64 kMsPerDay = 86'400'000;
// 0001-01-01T00:00:00.000Z and 9999-12-31T23:59:59.999Z.
constexpr qint64 kFirstInstant = -62'135'596'800'000;
constexpr qint64 kLastInstant = 253'402'300'799'999;

// Two to four decimal digits at `at`; -1 where one is not a digit.
int digits(std::string_view text, std::size_t at, int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) {
        const char c = text[at + i];
        if (c < '0' || c > '9')
            return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

bool at(std::string_view text, std::size_t index, char expected) {
    return index < text.size() && text[index] == expected;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

// Dates are written and read by the hundred thousand in a large document; Qt's general
// format and parse routines cost more than the rest of an object together, so the one
// fixed form is done directly. The calendar stays with QDate, asked once per date.
QString JsonText::dateText(const QDateTime &date) {
    const qint64 ms = date.toMSecsSinceEpoch();
    qint64 days = ms / kMsPerDay;
    qint64 rest = ms % kMsPerDay;
    if (rest < 0) {
        rest += kMsPerDay;
        --days;
    }
    int year = 0, month = 0, dayOfMonth = 0;
    QDate(1970, 1, 1).addDays(days).getDate(&year, &month, &dayOfMonth);
    if (year < 1 || year > 9999)
        return date.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")) + u'Z';
    char16_t text[24];
    const auto put = [&text](int at, int value, int width) {
        for (int i = width - 1; i >= 0; --i, value /= 10)
            text[at + i] = char16_t(u'0' + value % 10);
    };
    put(0, year, 4);
    text[4] = u'-';
    put(5, month, 2);
    text[7] = u'-';
    put(8, dayOfMonth, 2);
    text[10] = u'T';
    put(11, int(rest / 3'600'000), 2);
    text[13] = u':';
    put(14, int(rest / 60'000 % 60), 2);
    text[16] = u':';
    put(17, int(rest / 1000 % 60), 2);
    text[19] = u'.';
    put(20, int(rest % 1000), 3);
    text[23] = u'Z';
    return QString(reinterpret_cast<const QChar *>(text), 24);
}

bool JsonText::isDateInRange(const QDateTime &date) {
    const qint64 ms = date.toMSecsSinceEpoch();
    return date.isValid() && ms >= kFirstInstant && ms <= kLastInstant;
}

Result<QDateTime> JsonText::parseDate(std::string_view text) {
    const Error malformed{ErrorCode::FileDamaged,
                          QStringLiteral("expected an ISO 8601 date and time with an offset, "
                                         "found %1")
                              .arg(excerpt(text))};
    // yyyy-MM-ddTHH:mm:ss[.f{1,3}](Z|±HH:mm)
    if (text.size() < 20 || !at(text, 4, '-') || !at(text, 7, '-') || !at(text, 10, 'T') ||
        !at(text, 13, ':') || !at(text, 16, ':'))
        return malformed;
    const int year = digits(text, 0, 4), month = digits(text, 5, 2),
              dayOfMonth = digits(text, 8, 2);
    const int hour = digits(text, 11, 2), minute = digits(text, 14, 2),
              second = digits(text, 17, 2);
    const QDate day(year, month, dayOfMonth);
    if (year < 1 || !day.isValid() || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59)
        return malformed;
    std::size_t index = 19;
    int ms = 0;
    if (at(text, index, '.')) {
        int scale = 100;
        for (++index; index < text.size() && isDigit(text[index]) && scale > 0; ++index) {
            ms += (text[index] - '0') * scale;
            scale /= 10;
        }
        if (scale == 100)
            return malformed;
    }
    int offsetMinutes = 0;
    if (at(text, index, 'Z') && index + 1 == text.size()) {
        offsetMinutes = 0;
    } else if ((at(text, index, '+') || at(text, index, '-')) && index + 6 == text.size() &&
               at(text, index + 3, ':')) {
        const int hours = digits(text, index + 1, 2), minutes = digits(text, index + 4, 2);
        if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59)
            return malformed;
        offsetMinutes = (hours * 60 + minutes) * (at(text, index, '-') ? -1 : 1);
    } else {
        return malformed;
    }
    const qint64 ms0 = QDate(1970, 1, 1).daysTo(day) * kMsPerDay +
                       ((hour * 60 + minute - offsetMinutes) * 60 + second) * qint64(1000) + ms;
    // An offset can move the first and last days' times across the ends of the range.
    if (ms0 < kFirstInstant || ms0 > kLastInstant)
        return Error{
            ErrorCode::FileDamaged,
            QStringLiteral("%1 lies outside the years 0001 to 9999 in UTC").arg(excerpt(text))};
    return QDateTime::fromMSecsSinceEpoch(ms0, Qt::UTC);
}

QByteArray JsonText::doubleLiteral(double value) {
    if (std::isnan(value))
        return QByteArrayLiteral("\"NaN\"");
    if (std::isinf(value))
        return value > 0 ? QByteArrayLiteral("\"Infinity\"") : QByteArrayLiteral("\"-Infinity\"");
    // A document does not keep the sign of a zero (it compares equal and is stored as 0).
    if (value == 0)
        return QByteArrayLiteral("0");
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QByteArray(buffer, int(result.ptr - buffer));
}

std::optional<double> JsonText::parseSpecialDouble(std::string_view text) {
    if (text == "NaN")
        return std::numeric_limits<double>::quiet_NaN();
    if (text == "Infinity")
        return std::numeric_limits<double>::infinity();
    if (text == "-Infinity")
        return -std::numeric_limits<double>::infinity();
    return std::nullopt;
}

namespace {

// The finest digit a decimal holds is 10^-128.
constexpr std::size_t kMaxDecimalPlaces = 128;

// The digits of `text` from `at` on; answers where they end.
std::size_t skipDigits(std::string_view text, std::size_t from) {
    while (from < text.size() && isDigit(text[from]))
        ++from;
    return from;
}

// Digits from the first non-zero one to the last that counts: zeros ending a fraction add
// nothing to the value.
std::size_t significantDigits(std::string_view whole, std::string_view fraction) {
    while (!fraction.empty() && fraction.back() == '0')
        fraction.remove_suffix(1);
    std::size_t count = whole.size() + fraction.size();
    for (const char c : whole) {
        if (c != '0')
            return count;
        --count;
    }
    for (const char c : fraction) {
        if (c != '0')
            return count;
        --count;
    }
    return count;
}

} // namespace

Result<Decimal> JsonText::parseDecimal(std::string_view text) {
    if (text == "NaN")
        return Decimal::notANumber();
    const auto refused = [text](const char *reason) {
        return Error{ErrorCode::FileDamaged,
                     QStringLiteral("%1 %2").arg(excerpt(text), QLatin1String(reason))};
    };
    const std::size_t wholeFrom = text.starts_with('-') ? 1 : 0;
    const std::size_t wholeTo = skipDigits(text, wholeFrom);
    std::size_t end = wholeTo;
    std::string_view fraction;
    if (at(text, end, '.')) {
        end = skipDigits(text, wholeTo + 1);
        fraction = text.substr(wholeTo + 1, end - wholeTo - 1);
        if (fraction.empty())
            return refused("is not a decimal number");
    }
    if (wholeTo == wholeFrom || end != text.size())
        return refused("is not a decimal number");
    if (significantDigits(text.substr(wholeFrom, wholeTo - wholeFrom), fraction) >
        std::size_t(Decimal::kMaxDigits))
        return refused("has more than 38 significant digits, and decimals are kept exactly");
    while (!fraction.empty() && fraction.back() == '0')
        fraction.remove_suffix(1);
    if (fraction.size() > kMaxDecimalPlaces)
        return refused("has digits past the 128th decimal place, and decimals are kept exactly");
    // Decimal texts are short and ASCII: widened on the stack instead of through a QString.
    char16_t wide[96];
    if (text.size() <= std::size(wide))
        return Decimal::fromString(QStringView(wide, std::copy(text.begin(), text.end(), wide)));
    return Decimal::fromString(QString::fromLatin1(text.data(), qsizetype(text.size())));
}

std::optional<QByteArray> JsonText::parseBase64(std::string_view text) {
    // Padding makes every length a multiple of four; '=' only closes the text.
    if (text.size() % 4 != 0)
        return std::nullopt;
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    for (std::size_t i = 0; i + padding < text.size(); ++i) {
        const char c = text[i];
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || isDigit(c) || c == '+' ||
              c == '/'))
            return std::nullopt;
    }
    auto decoded =
        QByteArray::fromBase64Encoding(QByteArray::fromRawData(text.data(), qsizetype(text.size())),
                                       QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return *decoded;
}

namespace {

// The length of the UTF-8 sequence at `at`, 0 when it is malformed: no overlong forms, no
// surrogates, nothing above U+10FFFF.
int sequenceLength(const unsigned char *at, const unsigned char *end) {
    const unsigned char lead = at[0];
    int length = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (end - at < length || at[1] < low || at[1] > high)
        return 0;
    for (int i = 2; i < length; ++i)
        if (at[i] < 0x80 || at[i] > 0xBF)
            return 0;
    return length;
}

} // namespace

qsizetype JsonText::invalidUtf8At(QByteArrayView text) {
    const auto *begin = reinterpret_cast<const unsigned char *>(text.data());
    const unsigned char *end = begin + text.size();
    const unsigned char *at = begin;
    while (at < end) {
        // Most of a file is ASCII: eight bytes are passed over at once.
        quint64 word;
        if (end - at >= 8 && (std::memcpy(&word, at, 8), (word & 0x8080808080808080ull) == 0)) {
            at += 8;
        } else if (*at < 0x80) {
            ++at;
        } else if (const int length = sequenceLength(at, end)) {
            at += length;
        } else {
            return at - begin;
        }
    }
    return -1;
}

namespace {

// The UTF-16 unit of the \u escape at `at` (the backslash); -1 when there is none.
int escapedUnit(QByteArrayView text, qsizetype at) {
    if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u')
        return -1;
    int unit = 0;
    for (qsizetype i = at + 2; i < at + 6; ++i) {
        const char c = text[i];
        const int digit = isDigit(c)               ? c - '0'
                          : (c >= 'a' && c <= 'f') ? c - 'a' + 10
                          : (c >= 'A' && c <= 'F') ? c - 'A' + 10
                                                   : -1;
        if (digit < 0)
            return -1;
        unit = unit * 16 + digit;
    }
    return unit;
}

bool isHighSurrogate(int unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(int unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

qsizetype JsonText::loneSurrogateAt(QByteArrayView json, qsizetype from) {
    // Backslashes stand only inside strings, each starting an escape of its own: "\\udc00"
    // is an escaped backslash and plain text.
    for (qsizetype at = json.indexOf('\\', from); at >= 0; at = json.indexOf('\\', at)) {
        const int unit = escapedUnit(json, at);
        if (isHighSurrogate(unit) && isLowSurrogate(escapedUnit(json, at + 6)))
            at += 12;
        else if (isHighSurrogate(unit) || isLowSurrogate(unit))
            return at;
        else
            at += unit >= 0 ? 6 : 2;
    }
    return -1;
}
