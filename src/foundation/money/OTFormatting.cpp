#include "OTFormatting.h"

#include "NumberFormatterCache.h"

QString OTFormatting::percentFormatter(const Decimal &number, const QLocale &locale) {
    return NumberFormatterCache::format(number, NumberFormatterCache::Style::Percent, locale);
}
