// tabrino convert IN OUT [--what selection|active|all] [--range A1:C9] [--no-bom]:
// reads IN and writes OUT, each in the format its extension names.
#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "Commands.h"
#include "Tabrino.Io.Csv.h"
#include "Tabrino.Io.h"
#include "Tabrino.Workbook.h"

namespace TabrinoCli {
namespace {

// Smaller files load too fast for a progress line to be worth drawing.
constexpr uint64_t ProgressThreshold = 4u << 20;

struct TConvertOptions {
  std::string Input;
  std::string Output;
  std::string What;
  std::string Range;
  bool NoBom = false;
};

Tabrino::TCsvExportOptions CsvOptionsOf(const TConvertOptions& Options) {
  using namespace Tabrino;
  TCsvExportOptions Csv;
  Csv.Utf8Bom = !Options.NoBom;
  // A range alone means that range of the active sheet.
  const std::string What = !Options.What.empty() ? Options.What : Options.Range.empty() ? "active" : "selection";
  Csv.What = What == "selection" ? pwSelection : What == "all" ? pwEntireWorkbook : pwActiveSheets;
  if (Csv.What == pwSelection) {
    if (Options.Range.empty()) throw UsageError("--what selection needs --range");
    Csv.Selection = TCellRange::FromA1(Options.Range);
    if (Csv.Selection.StartCol < 1 || Csv.Selection.StartRow < 1) throw UsageError("not a range: " + Options.Range);
  } else if (!Options.Range.empty()) {
    throw UsageError("--range goes with --what selection");
  }
  return Csv;
}

// A percentage redrawn in place, only where a person watches stderr.
Tabrino::TIoProgressProc TerminalProgress(const std::string& FileName) {
  if (!isatty(STDERR_FILENO)) return {};
  return [FileName, LastPercent = -1](uint64_t Done, uint64_t Total) mutable {
    if (Total < ProgressThreshold) return;
    const int Percent = static_cast<int>(Done * 100 / Total);
    if (Percent == LastPercent) return;
    LastPercent = Percent;
    fmt::print(stderr, "\rReading {}: {}%{}", FileName, Percent, Done >= Total ? "\n" : "");
  };
}

void Convert(const TConvertOptions& Options) {
  using namespace Tabrino;
  const bool CsvOutput = FileFormatFromExtension(Options.Output) == ffCsv;
  const bool CsvOptionsGiven = !Options.What.empty() || !Options.Range.empty() || Options.NoBom;
  if (!CsvOutput && CsvOptionsGiven) throw UsageError("--what, --range and --no-bom apply to CSV output only");
  const TCsvExportOptions Csv = CsvOptionsOf(Options);
  try {
    TWorkbook Book;
    LoadWorkbook(Book, Options.Input, ffAuto, TerminalProgress(Options.Input));
    if (CsvOutput) {
      TCsvIO::ExportWithOptions(Book, Options.Output, Csv, Book.FActiveSheetIndex);
    } else {
      SaveWorkbook(Book, Options.Output);
    }
  } catch (const EException& Error) {
    throw Failure(Error.what());
  } catch (const std::filesystem::filesystem_error& Error) {
    throw Failure(Error.what());
  }
}

}  // namespace

void AddConvertCommand(CLI::App& App) {
  auto Options = std::make_shared<TConvertOptions>();
  CLI::App* Command = App.add_subcommand("convert", "Read a workbook and write it in another format (by extension)");
  Command->add_option("in", Options->Input, "File to read")->required();
  Command->add_option("out", Options->Output, "File to write")->required();
  Command->add_option("--what", Options->What, "CSV: the selection (--range), the active sheet or all visible sheets")
      ->check(CLI::IsMember({"selection", "active", "all"}));
  Command->add_option("--range", Options->Range, "CSV: the range to write, e.g. A1:C9");
  Command->add_flag("--no-bom", Options->NoBom, "CSV: no UTF-8 byte order mark");
  Command->callback([Options] { Convert(*Options); });
}

}  // namespace TabrinoCli
