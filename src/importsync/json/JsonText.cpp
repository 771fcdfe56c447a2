#include "importsync/json/JsonText.h"

#include <QRegularExpression>

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

QString JsonText::dateText(const QDateTime &date) {
    return date.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")) + u'Z';
}

std::optional<QDateTime> JsonText::parseDate(const QString &text) {
    static const QRegularExpression shape(
        QStringLiteral(R"(^\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}(\.\d{1,3})?(Z|[+-]\d{2}:\d{2})$)"));
    if (!shape.match(text).hasMatch())
        return std::nullopt;
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!date.isValid())
        return std::nullopt;
    return date.toUTC();
}

QByteArray JsonText::doubleLiteral(double value) {
    if (std::isnan(value))
        return QByteArrayLiteral("\"NaN\"");
    if (std::isinf(value))
        return value > 0 ? QByteArrayLiteral("\"Infinity\"") : QByteArrayLiteral("\"-Infinity\"");
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QByteArray(buffer, int(result.ptr - buffer));
}

std::optional<double> JsonText::parseSpecialDouble(const QString &text) {
    if (text == QLatin1String("NaN"))
        return std::numeric_limits<double>::quiet_NaN();
    if (text == QLatin1String("Infinity"))
        return std::numeric_limits<double>::infinity();
    if (text == QLatin1String("-Infinity"))
        return -std::numeric_limits<double>::infinity();
    return std::nullopt;
}

std::optional<Decimal> JsonText::parseDecimal(const QString &text) {
    if (text == QLatin1String("NaN"))
        return Decimal::notANumber();
    const Decimal value = Decimal::fromString(text);
    if (value.isNaN())
        return std::nullopt;
    return value;
}
