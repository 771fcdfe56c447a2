#pragma once

#include "Decimal.h"
#include "MoneyLocale.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringConverter>
#include <QVariant>

// Stateless conversions between numbers, text, dates and data.
//
// Property lists and archives are CBOR here: maps, arrays, text, byte strings, numbers and
// dates (tag 0). Decimals inside them travel as their canonical text.
class OTConvert {
public:
    // Date and time styles, numbered as the formatter styles of the data they came from.
    enum DateFormatterStyle {
        NoStyle = 0,
        ShortStyle = 1,
        MediumStyle = 2,
        LongStyle = 3,
        FullStyle = 4
    };

    // Whatever a person typed as an amount or quantity, in European or American notation.
    // Never fails: 0 for anything unusable. A leading minus is dropped: amounts typed here
    // are never negative.
    static Decimal decimalNumberFromString(const QString &text,
                                           const QLocale &locale = MoneyLocale::numeric());
    // Keeps only decimal digits and "," "." "-".
    static QString decimalStringFromString(const QString &text);
    static Decimal decimalNumberFromInt(int value) { return Decimal(value); }
    // The leading number of the text, as the platform's plain text-to-number reading does
    // (leading blanks skipped, the rest ignored); 0 when there is none.
    static double doubleFromString(const QString &text);
    static int intFromString(const QString &text);

    // "%d" of the number; the empty text for an invalid variant.
    static QString stringFromNumber(const QVariant &number);
    static QString stringFromInt(int value) { return QString::number(value); }
    static QString stringFromFloat(float value) { return stringFromFloat(value, 6); }
    static QString stringFromFloat(float value, int precision);
    static QString stringFromDouble(double value) { return stringFromDouble(value, 2); }
    static QString stringFromDouble(double value, int precision);

    // "2024-01-05 14:03:00 +0000", the standard description, in UTC. Empty for an invalid date.
    static QString stringFromDate(const QDateTime &date);
    static QString stringFromDate(const QDateTime &date, int dateStyle,
                                  const QLocale &locale = QLocale());
    static QString stringFromDateTimeStyle(const QDateTime &date, int timeStyle,
                                           const QLocale &locale = QLocale());
    static QString stringFromDate(const QDateTime &date, int dateStyle, int timeStyle,
                                  const QLocale &locale = QLocale());

    // A date held by the variant, or its text read in the fixed forms "yyyy-MM-dd HH:mm:ss"
    // followed by a GMT offset ("GMT+02:00"), a numeric offset ("+0200"), a zone abbreviation
    // or nothing (local time); then ISO 8601. Invalid for anything else.
    static QDateTime dateFromObject(const QVariant &object);
    static QString dateDescriptionFromObject(const QVariant &object);
    static QString dateDescriptionFromObject(const QVariant &object, int dateStyle,
                                             const QLocale &locale = QLocale());
    static QString dateDescriptionFromObject(const QVariant &object, int dateStyle, int timeStyle,
                                             const QLocale &locale = QLocale());

    // A null text when the bytes are not valid in the encoding.
    static QString stringFromData(const QByteArray &data, QStringConverter::Encoding usingEncoding);
    static QByteArray dataFromString(const QString &text, QStringConverter::Encoding usingEncoding);

    // Null for an invalid variant; an invalid variant for empty or damaged data.
    static QByteArray dataFromPropertyList(const QVariant &propertyList);
    static QVariant propertyListFromData(const QByteArray &data);
    static QByteArray archiveObjectToData(const QVariant &object);
    static QVariant unarchiveObjectFromData(const QByteArray &data);
    // The length of the array the data encodes; 0 when it encodes no array.
    static int noOfItemsInEncodedArrayData(const QByteArray &data);
};
