// Dependency graph and recalculation: many formulas over one long column (the
// case a per-cell edge list turns quadratic), single edits settled through
// NotifyCellChanged, and a full recalculation of a chain.
#include <benchmark/benchmark.h>

#include <string>

#include "Tabrino.Formula.DependencyGraph.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

constexpr int32_t ColumnRows = 100000;
constexpr int32_t RangeFormulas = 10000;
constexpr int32_t ChainLength = 10000;

// Ten thousand formulas each reading A1:A100000, registered and then asked
// who reads one cell of the column.
void BM_RegisterLongRanges(benchmark::State& State) {
  TFormulaDependencies Deps;
  Deps.AddRange(0, TCellRange::Make(1, 1, 1, ColumnRows));
  for (auto _ : State) {
    TFormulaDependencyGraph Graph;
    for (int32_t Row = 1; Row <= RangeFormulas; ++Row) Graph.SetDependencies({0, 2, Row}, Deps);
    std::vector<TSheetCellKey> Readers;
    Graph.GetDependents({0, 1, ColumnRows / 2}, Readers);
    benchmark::DoNotOptimize(Readers.size());
  }
  State.SetItemsProcessed(State.iterations() * RangeFormulas);
}
BENCHMARK(BM_RegisterLongRanges)->Unit(benchmark::kMillisecond);

// A1 a number, A2..An each "=previous+1".
void FillChain(TWorkbook& Book, int32_t Length = ChainLength) {
  TWorksheet& Sheet = *Book.ActiveSheet();
  Sheet.SetCell({1, 1}, TCell::WithValue(TCellValue::FromNumber(1)));
  for (int32_t Row = 2; Row <= Length; ++Row)
    Sheet.SetCell({1, Row}, TCell::WithValue(TCellValue::FromFormula("=A" + std::to_string(Row - 1) + "+1")));
}

// The incremental edits of the peer comparison: one value in W1's column A
// (its four dependent formulas settle) and the head of W4's chain of 100,000.
void FillW1(TWorkbook& Book, int32_t Rows) {
  TWorksheet& Sheet = *Book.ActiveSheet();
  auto Formula = [&](int32_t Col, int32_t Row, const std::string& Text) {
    Sheet.SetCell({Col, Row}, TCell::WithValue(TCellValue::FromFormula(Text)));
  };
  for (int32_t Row = 1; Row <= Rows; ++Row) {
    const std::string R = std::to_string(Row);
    Sheet.SetCell({1, Row}, TCell::WithValue(TCellValue::FromNumber(Row)));
    Formula(2, Row, "=A" + R + "*1.1");
    Formula(3, Row, "=IF(B" + R + ">50000,B" + R + "-A" + R + ",A" + R + "-B" + R + ")");
    Formula(4, Row, "=SUM(A" + R + ":C" + R + ")");
    Formula(5, Row, "=ROUND(D" + R + "/3,2)");
  }
}

// Recalculates Book once, then times one value written into (Col, Row) and
// settled through NotifyCellChanged.
void TimeEdits(benchmark::State& State, TWorkbook& Book, int32_t Col, int32_t Row) {
  TFormulaEvaluator Evaluator(Book);
  Evaluator.RecalculateAll();
  double Value = 1;
  for (auto _ : State) {
    Book.ActiveSheet()->SetCell({Col, Row}, TCell::WithValue(TCellValue::FromNumber(++Value)));
    Evaluator.NotifyCellChanged(0, Col, Row);
  }
}

void BM_EditW1ColumnA(benchmark::State& State) {
  TWorkbook Book;
  FillW1(Book, 100000);
  TimeEdits(State, Book, 1, 50000);
}
BENCHMARK(BM_EditW1ColumnA)->Unit(benchmark::kMicrosecond);

void BM_EditW4ChainHead(benchmark::State& State) {
  TWorkbook Book;
  FillChain(Book, 100000);
  TimeEdits(State, Book, 1, 1);
  State.SetItemsProcessed(State.iterations() * 100000);
}
BENCHMARK(BM_EditW4ChainHead)->Unit(benchmark::kMillisecond);

void BM_RecalculateAllChain(benchmark::State& State) {
  TWorkbook Book;
  FillChain(Book);
  TFormulaEvaluator Evaluator(Book);
  for (auto _ : State) Evaluator.RecalculateAll();
  State.SetItemsProcessed(State.iterations() * ChainLength);
}
BENCHMARK(BM_RecalculateAllChain)->Unit(benchmark::kMillisecond);

// The last cell of a chain of a million cells that have never been
// evaluated: every precedent is evaluated on first read, recursively, so this
// is the deepest evaluation a workbook can ask for.
void BM_EvaluateUncachedChainOfAMillion(benchmark::State& State) {
  constexpr int32_t Length = 1000000;
  for (auto _ : State) {
    State.PauseTiming();
    TWorkbook Book;
    FillChain(Book, Length);
    TFormulaEvaluator Evaluator(Book);
    State.ResumeTiming();
    TCellValue Last = Evaluator.EvaluateCell(0, 1, Length);
    if (Last.Number != Length) State.SkipWithError("wrong chain value");
  }
  State.SetItemsProcessed(State.iterations() * Length);
}
BENCHMARK(BM_EvaluateUncachedChainOfAMillion)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
BENCHMARK_MAIN();
