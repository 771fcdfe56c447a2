#include "invoicelayout/render/LMItemValues.h"

#include "foundation/dates/OTDate.h"
#include "foundation/money/OTNumberText.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TATimer.h"

namespace {
constexpr int taxColumn = 3;

// An unset value prints as an empty cell.
QString percent(const Decimal &fraction) {
    return fraction.isNaN() ? QString() : OTNumberText::percentFormatter(fraction);
}

QString money(TAItem *item, const Decimal &amount) {
    if (amount.isNaN())
        return {};
    const TACurrency *currency = item->currency();
    return OTNumberText::currencyFormatter(amount, currency ? currency->code() : QString());
}
} // namespace

QString LMItemValues::getValueForItem(TAItem *item, const QString &identifier, bool taxesEnabled) {
    const qsizetype index =
        LMInvoiceElementClass::columnIdentifiers(taxesEnabled).indexOf(identifier);
    if (index < 0)
        return {};
    return getValueForItem(item, int(index), taxesEnabled);
}

QString LMItemValues::getValueForItem(TAItem *item, int column, bool taxesEnabled) {
    if (!taxesEnabled && column >= taxColumn)
        ++column;
    return valueInFullNumbering(item, column);
}

QString LMItemValues::valueInFullNumbering(TAItem *item, int column) {
    if (!item)
        return {};
    switch (column) {
    case 0:
        return item->sku();
    case 1:
        return item->name();
    case 2:
        if (const auto *material = dynamic_cast<const TAMaterial *>(item))
            return material->quantity().isNaN()
                       ? QString()
                       : OTNumberText::decimalFormatter(material->quantity());
        if (const auto *timer = dynamic_cast<const TATimer *>(item))
            return OTDate::secondsToHMString(timer->secondsIntegerValue());
        return OTDate::secondsToHMString(0);
    case taxColumn:
        return percent(item->tax());
    case 4:
        return percent(item->discount());
    case 5:
        return money(item, item->discountInCash());
    case 6:
        return money(item, item->price());
    case 7:
        return money(item, item->priceWithDiscount());
    case 8:
        return money(item, item->total());
    default:
        return {};
    }
}
