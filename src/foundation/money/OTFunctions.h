#pragma once

#include "OTNumberText.h"

#include <QList>
#include <QStringList>
#include <QUrl>
#include <QVariant>

// Shared helpers: the number and money text of OTNumberText (the same operations as
// OTFormatting), currency rounding, the emptiness test, unique names and temporary files.
class OTFunctions : public OTNumberText {
public:
    using OTNumberText::currencyFormatter;
    // The locale's currency layout and minor unit without any symbol, and without the trailing
    // no-break space some layouts leave behind.
    static QString currencyFormatter(const Decimal &number,
                                     const QLocale &locale = MoneyLocale::monetary());

    // Rounds to the currency's minor unit with ties to even. Used for a client's balance only;
    // every invoice sum rounds ties away from zero (TADecimalNumberBehavior).
    static Decimal decimalNumber(const Decimal &number, const QString &roundedByCurrency,
                                 const QLocale &locale = MoneyLocale::monetary());
    // Rounds up to what a payment in the currency must be. It works on the displayed text, so
    // only the first three fraction digits count.
    static Decimal decimalNumberCeiledByCurrency(const Decimal &number,
                                                 const QString &ceiledByCurrency,
                                                 const QLocale &locale = MoneyLocale::numeric());

    // The one emptiness test: null, an invalid or null variant, or a text of length 0.
    static bool isEmptyString(const QVariant &object);
    static bool isEmptyString(const QString &text) { return text.isEmpty(); }

    static QString generateUniqueID();
    static QString generateTemporaryFilePath();
    static QUrl generateTemporaryFileURL();
    // Removes each file or folder, ignoring failures.
    static void deleteFilesAtPaths(const QStringList &paths);
    static void deleteFilesAtURLs(const QList<QUrl> &urls);
    static void moveToTrashFilesAtPaths(const QStringList &paths);

    // Escapes the backslash, then the double quote, then the single quote, for use inside a
    // quoted predicate string.
    static QString formattedPredicateString(const QString &text);
};
