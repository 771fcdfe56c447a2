#pragma once

#include "Decimal.h"
#include "MoneyLocale.h"

#include <QString>

// The rounding of every invoice sum: half away from zero, to the fraction digits of the
// invoice's currency. Dividing by zero answers the left operand; any other failure lets the
// operation's own result stand.
class TADecimalNumberBehavior : public DecimalBehavior {
public:
    TADecimalNumberBehavior() = default;

    static TADecimalNumberBehavior
    behaviorWithCurrencyCode(const QString &code, const QLocale &locale = MoneyLocale::monetary());

    QString currencyCode() const { return m_currencyCode; }
    // Stores the code and takes its minor unit as the scale; an unknown or empty code takes
    // that of the locale's own currency.
    void setCurrencyCode(const QString &code, const QLocale &locale = MoneyLocale::monetary());

    Decimal::RoundingMode roundingMode() const override { return Decimal::RoundingMode::Plain; }
    short scale() const override { return m_scale; }
    std::optional<Decimal> exceptionDuringOperation(Decimal::CalculationError error,
                                                    const Decimal &left,
                                                    const Decimal &right) const override;

private:
    QString m_currencyCode;
    short m_scale = Decimal::kNoScale;
};
