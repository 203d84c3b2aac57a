// Display text per cell under the formats a grid repaint meets most: the fast
// paths, a custom currency section, a date and a fraction. Formats are parsed
// on every call, so this is the cost a repaint pays per visible cell.
#include <benchmark/benchmark.h>

#include "Tabrino.NumberFormat.h"

namespace {

void FormatWith(benchmark::State& State, const char* Format, double Value) {
  for (auto _ : State) benchmark::DoNotOptimize(Tabrino::FormatNumber(Value, Format));
}

BENCHMARK_CAPTURE(FormatWith, General, "General", 1234.5678);
BENCHMARK_CAPTURE(FormatWith, Grouped, "#,##0.00", -1234567.891);
BENCHMARK_CAPTURE(FormatWith, Currency, "$#,##0.00_);[Red]($#,##0.00)", -1234.5);
BENCHMARK_CAPTURE(FormatWith, Accounting, R"(_($* #,##0.00_);_($* (#,##0.00);_($* "-"??_);_(@_))", 1234.5);
BENCHMARK_CAPTURE(FormatWith, Date, "d-mmm-yy h:mm AM/PM", 45351.75);
BENCHMARK_CAPTURE(FormatWith, Fraction, "# ?\?/??", 3.14159265);

}  // namespace

BENCHMARK_MAIN();
