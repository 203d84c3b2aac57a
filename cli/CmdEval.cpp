// tabrino eval FORMULA [--set CELL=TEXT ...] [--name NAME=FORMULA ...] [--at CELL] [--json]
// A result that spills prints as its block, one line per row.
#include <nlohmann/json.hpp>

#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.NumberParse.h"
#include "Tabrino.Workbook.h"

namespace TabrinoCli {

namespace {

struct TEvalOptions {
  std::string Formula;
  std::vector<std::string> Sets;
  std::vector<std::string> Names;
  std::string At;
  bool Json = false;
};

// "Data!B2" or "B2": the sheet (created when missing) and the address.
Tabrino::TWorksheet& SheetOfCellText(Tabrino::TWorkbook& Book, const std::string& Text, Tabrino::TCellAddress& Address) {
  size_t Bang = Text.rfind('!');
  std::string SheetName = Bang == std::string::npos ? "" : Text.substr(0, Bang);
  std::string Cell = Bang == std::string::npos ? Text : Text.substr(Bang + 1);
  if (SheetName.size() >= 2 && SheetName.front() == '\'' && SheetName.back() == '\'')
    SheetName = SheetName.substr(1, SheetName.size() - 2);
  Address = Tabrino::TCellAddress::FromA1(Cell);
  if (!Address.IsValid()) throw UsageError("not a cell address: " + Text);
  if (SheetName.empty()) return *Book.ActiveSheet();
  Tabrino::TWorksheet* Sheet = Book.FindSheet(SheetName);
  return Sheet ? *Sheet : *Book.AddSheet(SheetName);
}

// A text starting with "=" is a formula, one that reads as a number a number,
// anything else text.
Tabrino::TCellValue ValueOfInput(const std::string& Text) {
  if (!Text.empty() && Text.front() == '=') return Tabrino::TCellValue::FromFormula(Text);
  double Number;
  if (Tabrino::TryTextToFloat(Text, Number)) return Tabrino::TCellValue::FromNumber(Number);
  return Tabrino::TCellValue::FromText(Text);
}

std::pair<std::string, std::string> SplitAssignment(const std::string& Text, const char* Option) {
  size_t Eq = Text.find('=');
  if (Eq == std::string::npos || Eq == 0) throw UsageError(std::string(Option) + " expects NAME=VALUE, got: " + Text);
  return {Text.substr(0, Eq), Text.substr(Eq + 1)};
}

nlohmann::json ValueAsJson(const Tabrino::TCellValue& V) {
  using namespace Tabrino;
  switch (V.Kind) {
    case cvkNumber: return {{"kind", "number"}, {"value", V.Number}};
    case cvkText: return {{"kind", "text"}, {"value", V.Text}};
    case cvkBoolean: return {{"kind", "boolean"}, {"value", V.BooleanValue}};
    case cvkError: return {{"kind", "error"}, {"value", ErrorCodeToString(V.ErrorCode)}};
    default: return {{"kind", "empty"}, {"value", nullptr}};
  }
}

// A spilled result: one line per row of tab-separated display texts, or as
// JSON an array of rows of values.
void PrintSpill(const Tabrino::TWorkbook& Book, const Tabrino::TWorksheet& Sheet, const Tabrino::TSpillRange& Spill,
                bool Json) {
  nlohmann::json Rows = nlohmann::json::array();
  for (int32_t Row = Spill.AnchorRow; Row <= Spill.EndRow; ++Row) {
    nlohmann::json Values = nlohmann::json::array();
    std::string Line;
    for (int32_t Col = Spill.AnchorCol; Col <= Spill.EndCol; ++Col) {
      if (Json) {
        Values.push_back(ValueAsJson(Sheet.GetEffectiveValue({Col, Row})));
      } else {
        if (Col > Spill.AnchorCol) Line += '\t';
        Line += Sheet.GetDisplayText({Col, Row}, &Book.FStyleSheet);
      }
    }
    if (Json) Rows.push_back(std::move(Values));
    else std::cout << Line << "\n";
  }
  if (Json) std::cout << Rows.dump() << "\n";
}

void RunEval(const TEvalOptions& Options) {
  using namespace Tabrino;
  TWorkbook Book;
  for (const std::string& Set : Options.Sets) {
    auto [CellText, ValueText] = SplitAssignment(Set, "--set");
    TCellAddress Address;
    TWorksheet& Sheet = SheetOfCellText(Book, CellText, Address);
    Sheet.SetCell(Address, TCell::WithValue(ValueOfInput(ValueText)));
  }
  for (const std::string& Name : Options.Names) {
    auto [Key, Formula] = SplitAssignment(Name, "--name");
    Book.SetNamedFormula(Key, Formula);
  }
  TWorksheet* Target = Book.ActiveSheet();
  TCellAddress Address{Target->FUsedMaxCol + 1, 1};
  if (!Options.At.empty()) Target = &SheetOfCellText(Book, Options.At, Address);

  TFormulaEvaluator Evaluator(Book);
  Target->SetCell(Address, TCell::WithValue(TCellValue::FromFormula(Options.Formula)));
  TCellValue Result = Evaluator.EvaluateCell(Book.IndexOfSheet(Target), Address.Col, Address.Row);
  if (const TSpillRange* Spill = Target->FSpills.FindSpill(Address.Col, Address.Row)) {
    PrintSpill(Book, *Target, *Spill, Options.Json);
  } else if (Options.Json) {
    std::cout << ValueAsJson(Result).dump() << "\n";
  } else {
    std::cout << Result.ToDisplayString() << "\n";
  }
}

}  // namespace

void AddEvalCommand(CLI::App& App) {
  auto Options = std::make_shared<TEvalOptions>();
  CLI::App* Cmd = App.add_subcommand("eval", "Evaluate one formula over cells given on the command line");
  Cmd->add_option("formula", Options->Formula, "The formula, e.g. '=SUM(A1:A3)'")->required();
  Cmd->add_option("--set", Options->Sets, "CELL=TEXT: a cell value (\"=...\" is a formula; CELL may be Sheet!A1)");
  Cmd->add_option("--name", Options->Names, "NAME=FORMULA: a defined name");
  Cmd->add_option("--at", Options->At, "The cell the formula goes into (default: right of the used range)");
  Cmd->add_flag("--json", Options->Json, "Print the result's kind and value as JSON");
  Cmd->callback([Options] { RunEval(*Options); });
}

}  // namespace TabrinoCli
