#pragma once

#include "OTNumberText.h"

// Number and money text for views and printed pages. Shares every operation of OTNumberText
// with OTFunctions.
class OTFormatting : public OTNumberText {
public:
    // A fraction (0.175) as the locale's percent text ("17.5%"), at most two fraction digits.
    static QString percentFormatter(const Decimal &number,
                                    const QLocale &locale = MoneyLocale::numeric());
};
