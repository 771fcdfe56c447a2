// Decimal arithmetic and currency text throughput.
#include "foundation/money/OTNumberText.h"
#include "foundation/money/TADecimalNumberBehavior.h"

#include <benchmark/benchmark.h>

namespace {

const QLocale kLocale(QStringLiteral("en_US"));

void BM_DecimalAddAndRound(benchmark::State &state) {
    const auto usd = TADecimalNumberBehavior::behaviorWithCurrencyCode("USD", kLocale);
    const Decimal step = Decimal::fromString(u"0.125");
    Decimal total = Decimal::fromString(u"1234.56");
    for (auto _ : state) {
        total = DecimalMath::add(total, step, usd);
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DecimalAddAndRound)->Iterations(10'000'000)->Unit(benchmark::kMillisecond);

void BM_DecimalMultiplyAndRound(benchmark::State &state) {
    const auto usd = TADecimalNumberBehavior::behaviorWithCurrencyCode("USD", kLocale);
    const Decimal prices[] = {Decimal::fromString(u"19.99"), Decimal::fromString(u"0.075"),
                              Decimal::fromString(u"1234.5"), Decimal::fromString(u"3.3333")};
    const Decimal quantity = Decimal::fromString(u"1.5");
    size_t i = 0;
    for (auto _ : state) {
        Decimal product = DecimalMath::multiply(prices[i++ & 3], quantity, usd);
        benchmark::DoNotOptimize(product);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DecimalMultiplyAndRound)->Iterations(10'000'000)->Unit(benchmark::kMillisecond);

void BM_CurrencyText(benchmark::State &state) {
    const Decimal amounts[] = {Decimal::fromString(u"1234.5"), Decimal::fromString(u"-0.99"),
                               Decimal::fromString(u"1000000"), Decimal::fromString(u"42.125")};
    size_t i = 0;
    for (auto _ : state) {
        QString text =
            OTNumberText::currencyFormatter(amounts[i++ & 3], QStringLiteral("EUR"), kLocale);
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CurrencyText)->Iterations(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
