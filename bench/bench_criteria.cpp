// The conditional aggregates and lookups over a 100,000-row column: the
// inner loops that large models run a thousand times per recalculation.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {
namespace {

constexpr int32_t Rows = 100000;

// Numbers 0..999 repeating, with every tenth cell a word. Built once: the
// conditional sums pair a column with itself, as SUMIF(A:A,">0") does.
TFormulaArg MakeMixedColumn() {
  std::vector<TCellValue> Cells;
  Cells.reserve(Rows);
  for (int32_t I = 0; I < Rows; ++I)
    Cells.push_back(I % 10 == 0 ? TCellValue::FromText("item" + std::to_string(I % 7))
                                : TCellValue::FromNumber(I % 1000));
  return TFormulaArg::FromRange(std::move(Cells), Rows, 1);
}

const TFormulaArg& MixedColumn() {
  static const TFormulaArg Column = MakeMixedColumn();
  return Column;
}

void RunCall(benchmark::State& State, const char* Name, std::vector<TFormulaArg> Args) {
  TFormulaContext Context;
  for (auto _ : State) benchmark::DoNotOptimize(EvaluateFunction(Name, Args, Context));
  State.SetItemsProcessed(State.iterations() * Rows);
}

TFormulaArg Scalar(TCellValue V) {
  return TFormulaArg::FromScalar(std::move(V));
}

void BM_CountIfNumber(benchmark::State& S) {
  RunCall(S, "COUNTIF", {MixedColumn(), Scalar(TCellValue::FromText(">500"))});
}
void BM_CountIfText(benchmark::State& S) {
  RunCall(S, "COUNTIF", {MixedColumn(), Scalar(TCellValue::FromText("ITEM3"))});
}
void BM_SumIf(benchmark::State& S) {
  RunCall(S, "SUMIF", {MixedColumn(), Scalar(TCellValue::FromNumber(42)), MixedColumn()});
}
void BM_SumIfs(benchmark::State& S) {
  RunCall(S, "SUMIFS",
          {MixedColumn(), MixedColumn(), Scalar(TCellValue::FromText(">100")), MixedColumn(),
           Scalar(TCellValue::FromText("<>7"))});
}
void BM_VLookupMiss(benchmark::State& S) {
  RunCall(S, "VLOOKUP",
          {Scalar(TCellValue::FromNumber(5000)), MixedColumn(), Scalar(TCellValue::FromNumber(1)),
           Scalar(TCellValue::FromBoolean(false))});
}
void BM_SumProduct(benchmark::State& S) {
  RunCall(S, "SUMPRODUCT", {MixedColumn(), MixedColumn()});
}

BENCHMARK(BM_CountIfNumber);
BENCHMARK(BM_CountIfText);
BENCHMARK(BM_SumIf);
BENCHMARK(BM_SumIfs);
BENCHMARK(BM_VLookupMiss);
BENCHMARK(BM_SumProduct);

}  // namespace
}  // namespace Tabrino

BENCHMARK_MAIN();
