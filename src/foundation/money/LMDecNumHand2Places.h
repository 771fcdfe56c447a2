#pragma once

#include "Decimal.h"

// Two fraction digits, half away from zero, no substitute answers: the layout code's fixed
// rounding for amounts that carry no currency.
class LMDecNumHand2Places : public DecimalBehavior {
public:
    Decimal::RoundingMode roundingMode() const override { return Decimal::RoundingMode::Plain; }
    short scale() const override { return 2; }
    std::optional<Decimal> exceptionDuringOperation(Decimal::CalculationError, const Decimal &,
                                                    const Decimal &) const override {
        return std::nullopt;
    }
};
