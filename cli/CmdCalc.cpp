// tabrino calc FILE [--formulas] [--sheet NAME] [--range A1:D20] [--raw] [-o OUT] [--timing]:
// loads a workbook, recalculates every formula and prints a range as CSV or
// saves the result.
#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "Commands.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Io.Csv.h"
#include "Tabrino.Io.h"
#include "Tabrino.Workbook.h"

namespace TabrinoCli {
namespace {

struct TCalcOptions {
  std::string Input;
  bool Formulas = false;
  std::string Sheet;
  std::string Range;
  bool Raw = false;
  std::string Output;
  bool Timing = false;
};

class TStopwatch {
 public:
  // Milliseconds since the last lap.
  double Lap() {
    const auto Now = std::chrono::steady_clock::now();
    const double Ms = std::chrono::duration<double, std::milli>(Now - FStart).count();
    FStart = Now;
    return Ms;
  }

 private:
  std::chrono::steady_clock::time_point FStart = std::chrono::steady_clock::now();
};

// CSV carries formulas as plain text: with --formulas each field is read as
// if typed into its cell, so that "=..." is a formula and an empty field
// leaves the cell blank (and free for a spilling formula).
void Load(Tabrino::TWorkbook& Book, const TCalcOptions& Options) {
  using namespace Tabrino;
  if (!Options.Formulas) {
    LoadWorkbook(Book, Options.Input);
    return;
  }
  if (FileFormatFromExtension(Options.Input) != ffCsv) throw UsageError("--formulas applies to CSV input only");
  TCsvIO::LoadFromFile(Book, Options.Input, {}, TCsvImportOptions{.AsTyped = true});
}

const Tabrino::TWorksheet& ChosenSheet(const Tabrino::TWorkbook& Book, const std::string& Name) {
  if (Name.empty()) return *Book.ActiveSheet();
  const Tabrino::TWorksheet* Sheet = Book.FindSheet(Name);
  if (!Sheet) throw UsageError("no sheet named " + Name);
  return *Sheet;
}

Tabrino::TCellRange ChosenRange(const Tabrino::TWorksheet& Sheet, const std::string& Text) {
  using namespace Tabrino;
  if (Text.empty()) return TCellRange::Make(1, 1, std::max(1, Sheet.FUsedMaxCol), std::max(1, Sheet.FUsedMaxRow));
  const TCellRange Range = TCellRange::FromA1(Text).Normalize();
  if (Range.StartCol < 1 || Range.StartRow < 1) throw UsageError("not a range: " + Text);
  return Range;
}

void PrintRange(const Tabrino::TWorkbook& Book, const Tabrino::TWorksheet& Sheet, const Tabrino::TCellRange& Range,
                bool Raw) {
  using namespace Tabrino;
  std::string Out;
  for (int32_t Row = Range.StartRow; Row <= Range.EndRow; ++Row) {
    for (int32_t Col = Range.StartCol; Col <= Range.EndCol; ++Col) {
      const TCellAddress Address{Col, Row};
      const std::string Text =
          Raw ? Sheet.GetEffectiveValue(Address).ToDisplayString() : Sheet.GetDisplayText(Address, &Book.FStyleSheet);
      if (Col > Range.StartCol) Out += ',';
      Out += TCsvIO::EscapeCsvField(Text, U',');
    }
    Out += '\n';
  }
  std::fwrite(Out.data(), 1, Out.size(), stdout);
}

void Calc(const TCalcOptions& Options) {
  using namespace Tabrino;
  if (!Options.Output.empty() && (Options.Raw || !Options.Range.empty()))
    throw UsageError("--raw and --range apply to printed output only");
  try {
    TStopwatch Watch;
    TWorkbook Book;
    Load(Book, Options);
    const TWorksheet& Sheet = ChosenSheet(Book, Options.Sheet);
    const double LoadMs = Watch.Lap();

    TFormulaEvaluator Evaluator(Book);
    Evaluator.RecalculateAll();
    const double RecalcMs = Watch.Lap();
    // Chosen after recalculation: the used range now takes in spilled arrays.
    const TCellRange Range = ChosenRange(Sheet, Options.Range);

    if (Options.Output.empty()) {
      PrintRange(Book, Sheet, Range, Options.Raw);
    } else {
      Book.SetActiveSheetIndex(Book.IndexOfSheet(&Sheet));
      SaveWorkbook(Book, Options.Output);
    }
    const double OutputMs = Watch.Lap();
    if (Options.Timing)
      fmt::print(stderr, "load: {:.1f} ms\nrecalculation: {:.1f} ms\noutput: {:.1f} ms\n", LoadMs, RecalcMs, OutputMs);
  } catch (const EException& Error) {
    throw Failure(Error.what());
  } catch (const std::filesystem::filesystem_error& Error) {
    throw Failure(Error.what());
  }
}

}  // namespace

void AddCalcCommand(CLI::App& App) {
  auto Options = std::make_shared<TCalcOptions>();
  CLI::App* Command = App.add_subcommand("calc", "Recalculate a workbook and print a range as CSV, or save it");
  Command->add_option("file", Options->Input, "Workbook to read")->required();
  Command->add_flag("--formulas", Options->Formulas,
                    "Read CSV fields as typed: \"=...\" becomes a formula, an empty field a blank cell");
  Command->add_option("--sheet", Options->Sheet, "Sheet to print (default: the active one)");
  Command->add_option("--range", Options->Range, "Range to print, e.g. A1:D20 (default: the used range)");
  Command->add_flag("--raw", Options->Raw, "Print plain values instead of formatted display texts");
  Command->add_option("-o,--output", Options->Output, "Save the recalculated workbook here (format by extension)");
  Command->add_flag("--timing", Options->Timing, "Report load, recalculation and output times on stderr");
  Command->callback([Options] { Calc(*Options); });
}

}  // namespace TabrinoCli
