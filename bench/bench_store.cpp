// Fills a sheet with a million numbers, reads them back, and reports the heap
// bytes each stored cell costs (from glibc's allocator statistics) and the
// time per SetCell and GetCell.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

constexpr int32_t Rows = 100000;
constexpr int32_t Cols = 10;

// Small blocks plus the large ones glibc serves by mmap (the hash table).
size_t HeapInUse() {
  struct mallinfo2 Info = mallinfo2();
  return Info.uordblks + Info.hblkhd;
}

void FillSheet(TWorksheet& Sheet) {
  TCell Cell;
  for (int32_t Row = 1; Row <= Rows; ++Row)
    for (int32_t Col = 1; Col <= Cols; ++Col) {
      Cell.Value = TCellValue::FromNumber(Row * 0.5 + Col);
      Sheet.SetCell({Col, Row}, Cell);
    }
}

// Items per iteration and the time each costs, for every benchmark here.
void ReportPerCell(benchmark::State& State, const char* Counter) {
  State.SetItemsProcessed(State.iterations() * Rows * Cols);
  State.counters[Counter] =
      benchmark::Counter(double(Rows) * Cols, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Sums every cell through Read(Sheet, Col, Row).
template <typename F>
void ReadAll(benchmark::State& State, F Read) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.ActiveSheet();
  FillSheet(Sheet);
  for (auto _ : State) {
    double Sum = 0;
    for (int32_t Row = 1; Row <= Rows; ++Row)
      for (int32_t Col = 1; Col <= Cols; ++Col) Sum += Read(Sheet, Col, Row);
    benchmark::DoNotOptimize(Sum);
  }
}

void BM_SetCell(benchmark::State& State) {
  double BytesPerCell = 0;
  for (auto _ : State) {
    TWorkbook Book;
    TWorksheet& Sheet = *Book.ActiveSheet();
    size_t Before = HeapInUse();
    FillSheet(Sheet);
    BytesPerCell = double(HeapInUse() - Before) / Sheet.CellCount();
    benchmark::DoNotOptimize(Sheet.CellCount());
  }
  ReportPerCell(State, "ns_per_set");
  State.counters["bytes_per_cell"] = BytesPerCell;
}
BENCHMARK(BM_SetCell)->Unit(benchmark::kMillisecond);

void BM_GetCell(benchmark::State& State) {
  ReadAll(State, [](const TWorksheet& Sheet, int32_t Col, int32_t Row) { return Sheet.GetCellAt(Col, Row).Value.Number; });
  ReportPerCell(State, "ns_per_get");
}
BENCHMARK(BM_GetCell)->Unit(benchmark::kMillisecond);

// The read path of the evaluator: no TCell copy.
void BM_FindCell(benchmark::State& State) {
  ReadAll(State, [](const TWorksheet& Sheet, int32_t Col, int32_t Row) { return Sheet.FindCell(Col, Row)->Number(); });
  ReportPerCell(State, "ns_per_find");
}
BENCHMARK(BM_FindCell)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
