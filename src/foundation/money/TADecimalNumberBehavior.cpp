#include "TADecimalNumberBehavior.h"

TADecimalNumberBehavior TADecimalNumberBehavior::behaviorWithCurrencyCode(const QString &code,
                                                                          const QLocale &locale) {
    TADecimalNumberBehavior behavior;
    behavior.setCurrencyCode(code, locale);
    return behavior;
}

void TADecimalNumberBehavior::setCurrencyCode(const QString &code, const QLocale &locale) {
    m_currencyCode = code;
    m_scale = static_cast<short>(MoneyLocale::fractionDigits(code, locale));
}

std::optional<Decimal>
TADecimalNumberBehavior::exceptionDuringOperation(Decimal::CalculationError error,
                                                  const Decimal &left, const Decimal &) const {
    if (error == Decimal::CalculationError::DivideByZero)
        return left;
    return std::nullopt;
}
