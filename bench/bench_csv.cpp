// CSV throughput both ways on 100,000 rows by 10 columns of mixed numbers and
// texts (one million cells), reported as MB/s of CSV text.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Tabrino.Io.Csv.h"
#include "Tabrino.Workbook.h"

namespace {

namespace fs = std::filesystem;
using namespace Tabrino;

constexpr int Rows = 100000;
constexpr int Cols = 10;

// The sample file, written once and removed when the process ends.
class TSampleCsv {
 public:
  TSampleCsv() : FPath(fs::temp_directory_path() / fmt::format("tabrino_bench_csv_{}.csv", getpid())) {
    std::ofstream Out(FPath, std::ios::binary);
    std::string Line;
    for (int Row = 1; Row <= Rows; ++Row) {
      Line.clear();
      for (int Col = 1; Col <= Cols; ++Col) {
        if (Col > 1) Line += ',';
        switch (Col % 4) {
          case 0: fmt::format_to(std::back_inserter(Line), "{}", Row * Col); break;
          case 1: fmt::format_to(std::back_inserter(Line), "{}.{:03}", Row % 977, (Row * Col) % 1000); break;
          case 2: fmt::format_to(std::back_inserter(Line), "item {} of {}", Col, Row); break;
          default: fmt::format_to(std::back_inserter(Line), "\"{}, \"\"quoted\"\"\"", Row); break;
        }
      }
      Line += "\r\n";
      Out << Line;
    }
  }
  ~TSampleCsv() {
    std::error_code Ignored;
    fs::remove(FPath, Ignored);
  }
  const fs::path& Path() const { return FPath; }
  int64_t Size() const { return static_cast<int64_t>(fs::file_size(FPath)); }

 private:
  fs::path FPath;
};

const TSampleCsv& Sample() {
  static const TSampleCsv Instance;
  return Instance;
}

void BM_CsvImport(benchmark::State& State) {
  const TSampleCsv& Csv = Sample();
  for (auto _ : State) {
    TWorkbook Book;
    TCsvIO::LoadFromFile(Book, Csv.Path().string());
    benchmark::DoNotOptimize(Book.GetSheet(0)->CellCount());
  }
  State.SetBytesProcessed(State.iterations() * Csv.Size());
}
BENCHMARK(BM_CsvImport)->Unit(benchmark::kMillisecond);

void BM_CsvExport(benchmark::State& State) {
  TWorkbook Book;
  TCsvIO::LoadFromFile(Book, Sample().Path().string());
  const fs::path Out = fs::temp_directory_path() / fmt::format("tabrino_bench_csv_out_{}.csv", getpid());
  for (auto _ : State) TCsvIO::SaveToFile(Book, Out.string(), 0);
  State.SetBytesProcessed(State.iterations() * static_cast<int64_t>(fs::file_size(Out)));
  fs::remove(Out);
}
BENCHMARK(BM_CsvExport)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
