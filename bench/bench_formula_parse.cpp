// Tokenizing and parsing typical formulas: every evaluation that misses the
// tree cache pays for this, and dependency rebuilds parse every formula.
#include <benchmark/benchmark.h>

#include <string>

#include "Tabrino.Formula.Parser.h"
#include "Tabrino.Formula.Tokenizer.h"

namespace {

const char* const Formulas[] = {
    "=A1+B1",
    "=SUM(A1:A100)*2",
    "=IF(AND($B2>0,C2<>\"\"),VLOOKUP(B2,'Price list'!$A$1:$D$500,4,FALSE),\"n/a\")",
    "=_xlfn.XLOOKUP(A2,Sales[Region],Sales[Total],0)+{1,2;3,4}",
    "=\"Größe: \"&TEXT(Data.B7,\"0.00\")&\" 😀\"",
};

void BM_Tokenize(benchmark::State& State) {
  const std::string Formula = Formulas[State.range(0)];
  for (auto _ : State) benchmark::DoNotOptimize(Tabrino::TokenizeFormula(Formula));
  State.SetBytesProcessed(static_cast<int64_t>(State.iterations() * Formula.size()));
}
BENCHMARK(BM_Tokenize)->DenseRange(0, std::size(Formulas) - 1);

void BM_Parse(benchmark::State& State) {
  const std::string Formula = Formulas[State.range(0)];
  for (auto _ : State) benchmark::DoNotOptimize(Tabrino::TFormulaParser::Parse(Formula));
  State.SetBytesProcessed(static_cast<int64_t>(State.iterations() * Formula.size()));
}
BENCHMARK(BM_Parse)->DenseRange(0, std::size(Formulas) - 1);

void BM_ParseLongSum(benchmark::State& State) {
  std::string Formula = "=A1";
  for (int Row = 2; Row <= 1000; ++Row) Formula += "+A" + std::to_string(Row);
  for (auto _ : State) benchmark::DoNotOptimize(Tabrino::TFormulaParser::Parse(Formula));
  State.SetBytesProcessed(static_cast<int64_t>(State.iterations() * Formula.size()));
}
BENCHMARK(BM_ParseLongSum);

}  // namespace

BENCHMARK_MAIN();
