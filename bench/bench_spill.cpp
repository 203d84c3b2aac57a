// Dynamic arrays at scale: =SEQUENCE(1000,1000) spills a million values and
// =SUM(A1:ALL1000) reads them all back. Reported beside the time: the heap the
// workbook holds afterwards, per spilled value, and the resident set size of
// the process. Also MAP calling a lambda on 100,000 cells.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <random>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

constexpr int32_t Side = 1000;

double ResidentMegabytes() {
  long Pages = 0, Resident = 0;
  if (FILE* Statm = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(Statm, "%ld %ld", &Pages, &Resident) != 2) Resident = 0;
    std::fclose(Statm);
  }
  return double(Resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

double PeakResidentMegabytes() {
  struct rusage Usage {};
  getrusage(RUSAGE_SELF, &Usage);
  return double(Usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

size_t HeapInUse() {
  return mallinfo2().uordblks;
}

// The sum in ALM1 first, then the sequence in A1, each told to the evaluator
// as a host would: the spill wakes the sum.
void SpillAndSum(TWorkbook& Book, TFormulaEvaluator& Evaluator) {
  TWorksheet& Sheet = *Book.ActiveSheet();
  Sheet.SetCell({1001, 1}, TCell::WithValue(TCellValue::FromFormula("=SUM(A1:ALL1000)")));
  Evaluator.NotifyCellChanged(0, 1001, 1);
  Sheet.SetCell({1, 1}, TCell::WithValue(TCellValue::FromFormula("=SEQUENCE(1000,1000)")));
  Evaluator.NotifyCellChanged(0, 1, 1);
}

void BM_SequenceSpilledAndSummed(benchmark::State& State) {
  double Retained = 0, Resident = 0;
  for (auto _ : State) {
    const size_t HeapBefore = HeapInUse();
    auto Book = std::make_unique<TWorkbook>();
    auto Evaluator = std::make_unique<TFormulaEvaluator>(*Book);
    SpillAndSum(*Book, *Evaluator);
    const TCellValue Sum = Book->ActiveSheet()->GetEffectiveValue({1001, 1});
    if (Sum.Number != 500000500000.0) State.SkipWithError("wrong sum");
    // Freeing the workbook is not part of the work.
    State.PauseTiming();
    Retained = double(HeapInUse() - HeapBefore);
    Resident = ResidentMegabytes();
    Evaluator.reset();
    Book.reset();
    State.ResumeTiming();
  }
  State.counters["retained_bytes_per_value"] = Retained / (double(Side) * Side);
  State.counters["rss_mb"] = Resident;
  State.counters["peak_rss_mb"] = PeakResidentMegabytes();
  State.SetItemsProcessed(State.iterations() * int64_t(Side) * Side);
}
BENCHMARK(BM_SequenceSpilledAndSummed)->Unit(benchmark::kMillisecond)->Iterations(3);

// The anchor evaluated again with the same result: the block is laid out
// anew and its readers are woken.
void BM_RespillSameBlock(benchmark::State& State) {
  TWorkbook Book;
  TFormulaEvaluator Evaluator(Book);
  SpillAndSum(Book, Evaluator);
  for (auto _ : State) Evaluator.EvaluateFormulaCell(0, 1, 1);
  State.SetItemsProcessed(State.iterations() * int64_t(Side) * Side);
}
BENCHMARK(BM_RespillSameBlock)->Unit(benchmark::kMillisecond);

// Reading spilled cells one at a time, as the renderer does: constant time each.
void BM_ReadSpilledCell(benchmark::State& State) {
  TWorkbook Book;
  TFormulaEvaluator Evaluator(Book);
  SpillAndSum(Book, Evaluator);
  const TWorksheet& Sheet = *Book.ActiveSheet();
  std::mt19937 Random(7);
  std::uniform_int_distribution<int32_t> Pick(1, Side);
  for (auto _ : State) {
    const TCellValue Value = Sheet.GetEffectiveValue({Pick(Random), Pick(Random)});
    benchmark::DoNotOptimize(Value.Number);
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_ReadSpilledCell);

// A lambda called once per cell: =MAP(A1:A100000,LAMBDA(x,x*2)) over numbers,
// spilled beside them. The closure's body is copied once, not per call.
void BM_MapLambdaOverColumn(benchmark::State& State) {
  constexpr int32_t Rows = 100000;
  TWorkbook Book;
  TWorksheet& Sheet = *Book.ActiveSheet();
  for (int32_t Row = 1; Row <= Rows; ++Row) Sheet.SetCell({1, Row}, TCell::WithValue(TCellValue::FromNumber(Row)));
  Sheet.SetCell({2, 1}, TCell::WithValue(TCellValue::FromFormula("=MAP(A1:A100000,LAMBDA(x,x*2))")));
  TFormulaEvaluator Evaluator(Book);
  for (auto _ : State) Evaluator.EvaluateFormulaCell(0, 2, 1);
  if (Sheet.GetEffectiveValue({2, Rows}).Number != 2.0 * Rows) State.SkipWithError("wrong last value");
  State.SetItemsProcessed(State.iterations() * Rows);
}
BENCHMARK(BM_MapLambdaOverColumn)->Unit(benchmark::kMillisecond);

}  // namespace
BENCHMARK_MAIN();
