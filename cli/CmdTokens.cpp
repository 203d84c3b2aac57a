// tabrino tokens FORMULA: the token stream of a formula, one token a line,
// for checking how a text is read and where each token sits.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "FormulaText.h"
#include "Tabrino.Formula.Tokenizer.h"
#include "Tabrino.Types.h"
#include "Tabrino.Utf16.h"

namespace TabrinoCli {
namespace {

using Tabrino::TFormulaToken;

enum TTokenColumn { tcKind, tcText, tcSheet, tcPlace, tcSpan, tcCount };

// Where a reference points, the column of a table reference, the value of a number.
std::string PlaceOf(const TFormulaToken& Token) {
  using namespace Tabrino;
  switch (Token.Kind) {
    case ftCellRef:
    case ftSheetRef: return fmt::format("col {} row {}", Token.Col, Token.Row);
    case ftRangeRef: return fmt::format("col {} row {} : col {} row {}", Token.Col, Token.Row, Token.Col2, Token.Row2);
    case ftTableRef: return "column " + QuotedText(Token.ColumnName);
    case ftNumber:
    case ftBoolean: return "value " + GeneralNumberText(Token.Number);
    default: return "";
  }
}

std::array<std::string, tcCount> RowOf(const TFormulaToken& Token) {
  return {std::string(Tabrino::FormulaTokenKindName(Token.Kind)), QuotedText(Token.Text),
          Token.SheetName.empty() ? "" : QuotedText(Token.SheetName), PlaceOf(Token),
          fmt::format("{}+{}", Token.StartIndex, Token.Length)};
}

void PrintTokens(const std::string& Formula) {
  std::vector<std::array<std::string, tcCount>> Rows{{"KIND", "TEXT", "SHEET", "PLACE", "SPAN"}};
  for (const TFormulaToken& Token : Tabrino::TokenizeFormula(Formula)) Rows.push_back(RowOf(Token));
  std::array<size_t, tcCount> Widths{};
  for (const auto& Row : Rows)
    for (size_t I = 0; I < tcCount; ++I) Widths[I] = std::max(Widths[I], Tabrino::Utf16Length(Row[I]));
  for (const auto& Row : Rows) {
    std::string Line;
    for (size_t I = 0; I < tcCount; ++I) {
      Line += Row[I];
      if (I + 1 < tcCount) Line.append(Widths[I] - Tabrino::Utf16Length(Row[I]) + 2, ' ');
    }
    Line.erase(Line.find_last_not_of(' ') + 1);
    fmt::print("{}\n", Line);
  }
}

}  // namespace

void AddTokensCommand(CLI::App& App) {
  auto Formula = std::make_shared<std::string>();
  CLI::App* Command = App.add_subcommand("tokens", "Show the tokens of a formula with their spans (UTF-16 units)");
  Command
      ->add_option("formula", *Formula, "Formula text, with or without its \"=\" (put -- before one starting with -)")
      ->required();
  Command->callback([Formula] { PrintTokens(*Formula); });
}

}  // namespace TabrinoCli
