// Reference functions: addresses as text (ADDRESS), what a reference
// argument is and where it came from (AREAS, ISREF, SHEET, SHEETS), the
// formula behind it (FORMULATEXT, ISFORMULA), and TRIMRANGE.

#include <cstdint>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.ReferenceArgs.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

namespace {

enum TAbsolute : uint8_t { abBoth = 1, abRow = 2, abColumn = 3, abNone = 4 };

std::string A1Address(int32_t Row, int32_t Col, TAbsolute Absolute) {
  bool AbsRow = Absolute == abBoth || Absolute == abRow;
  bool AbsCol = Absolute == abBoth || Absolute == abColumn;
  return (AbsCol ? "$" : "") + ColToLetters(Col) + (AbsRow ? "$" : "") + std::to_string(Row);
}

// Relative parts carry the number itself as an offset: ADDRESS(2,3,4,FALSE) is "R[2]C[3]".
std::string R1C1Address(int32_t Row, int32_t Col, TAbsolute Absolute) {
  auto Part = [](char Letter, int32_t N, bool Abs) {
    return Letter + (Abs ? std::to_string(N) : "[" + std::to_string(N) + "]");
  };
  return Part('R', Row, Absolute == abBoth || Absolute == abRow) +
         Part('C', Col, Absolute == abBoth || Absolute == abColumn);
}

// ADDRESS(row, column, [abs_num=1], [a1=TRUE], [sheet_text]).
TCellValue Address(const TFunctionCall& Call) {
  double Row, Col, Absolute;
  if (!ArgInteger(Call[0], Row) || !ArgInteger(Call[1], Col) || !OptArgInteger(Call, 2, 1, Absolute))
    return Err(ceValue);
  if (Call.Count() > 2 && Call[2].First().IsEmpty()) Absolute = 1;
  if (!(Row >= 1 && Row <= MaxRow && Col >= 1 && Col <= MaxCol && Absolute >= 1 && Absolute <= 4)) return Err(ceValue);
  bool A1 = Call.Count() < 4 || ArgTruthy(Call[3]);
  auto Abs = static_cast<TAbsolute>(Absolute);
  std::string Cell = A1 ? A1Address(int32_t(Row), int32_t(Col), Abs) : R1C1Address(int32_t(Row), int32_t(Col), Abs);
  if (Call.Count() < 5 || Call[4].First().IsEmpty()) return Text(std::move(Cell));
  TCellValue Sheet = Call[4].First();
  if (Sheet.Kind == cvkError) return Sheet;
  return TextResult(SheetPrefix(Sheet.ToDisplayString()) + Cell);
}

// References here are single areas: unions do not exist in formulas.
TCellValue Areas(const TFunctionCall& Call) {
  return Call[0].HasOrigin ? Num(1) : Err(ceValue);
}

TCellValue IsRef(const TFunctionCall& Call) {
  return Bool(Call[0].HasOrigin);
}

// The stored formula of a reference's top left cell, empty when it holds
// none; IsReference tells whether the argument came from a reference at all.
std::string FormulaOf(const TFunctionCall& Call, bool& IsReference) {
  const TFormulaArg& Arg = Call[0];
  IsReference = Arg.HasOrigin;
  const TWorksheet* Sheet = OriginSheet(Arg, Call.Context);
  if (!Sheet) return {};
  const TStoredCell* Cell = Sheet->FindCell(Arg.OriginCol, Arg.OriginRow);
  if (!Cell || Cell->Kind() != cvkFormula) return {};
  return Cell->ToCell().Value.Formula;
}

TCellValue IsFormula(const TFunctionCall& Call) {
  bool IsReference;
  std::string Formula = FormulaOf(Call, IsReference);
  return IsReference ? Bool(!Formula.empty()) : Err(ceValue);
}

TCellValue FormulaText(const TFunctionCall& Call) {
  bool IsReference;
  std::string Formula = FormulaOf(Call, IsReference);
  if (!IsReference) return Err(ceValue);
  return Formula.empty() ? Err(ceNA) : TextResult(std::move(Formula));
}

int32_t SheetCount(const TFormulaContext& Context) {
  return Context.Workbook ? Context.Workbook->SheetCount() : 1;
}

// SHEET(): this sheet's number; SHEET(reference): its sheet's; SHEET("name"):
// the number of the sheet of that name. Anything else is #N/A.
TCellValue Sheet(const TFunctionCall& Call) {
  int32_t Index = Call.Context.SheetIndex;
  if (Call.Count() > 0) {
    const TFormulaArg& Arg = Call[0];
    TCellValue Value = Arg.First();
    if (Arg.HasOrigin) {
      if (Arg.OriginSheetIndex >= 0) Index = Arg.OriginSheetIndex;
    } else if (Value.Kind == cvkError) {
      return Value;
    } else if (Value.Kind == cvkText && Call.Context.Workbook) {
      const TWorksheet* Named = Call.Context.Workbook->FindSheet(Value.Text);
      if (!Named) return Err(ceNA);
      Index = Call.Context.Workbook->IndexOfSheet(Named);
    } else {
      return Err(ceNA);
    }
  }
  return Num(Index + 1);
}

// Every reference spans one sheet; without an argument, all sheets count.
TCellValue Sheets(const TFunctionCall& Call) {
  if (Call.Count() == 0) return Num(SheetCount(Call.Context));
  TCellValue Value = Call[0].First();
  if (Call[0].HasOrigin) return Num(1);
  return Value.Kind == cvkError ? Value : Err(ceNA);
}

enum TTrimEnds : uint8_t { teNone = 0, teLeading = 1, teTrailing = 2, teBoth = 3 };

bool IsBlankLine(const TFormulaArg& Range, int32_t Index, bool Row) {
  int32_t Length = Row ? Range.ColCount : Range.RowCount;
  for (int32_t K = 0; K < Length; ++K)
    if (!(Row ? Range.CellAt(Index, K) : Range.CellAt(K, Index)).IsEmpty()) return false;
  return true;
}

// Narrows [First, Last] past blank lines at the ends Ends names; keeps at
// least one line.
void TrimLines(const TFormulaArg& Range, bool Rows, TTrimEnds Ends, int32_t& First, int32_t& Last) {
  if (Ends & teLeading)
    while (First < Last && IsBlankLine(Range, First, Rows)) ++First;
  if (Ends & teTrailing)
    while (Last > First && IsBlankLine(Range, Last, Rows)) --Last;
}

// TRIMRANGE(range, [trim_rows=3], [trim_cols=3]): the range without its blank
// outer rows and columns, still a reference when it was one. A range with no
// value at all trims to its top left cell.
TFormulaArg TrimRange(const TFunctionCall& Call) {
  double TrimRows, TrimCols;
  if (!OptArgInteger(Call, 1, 3, TrimRows) || !OptArgInteger(Call, 2, 3, TrimCols) ||
      !(TrimRows >= 0 && TrimRows <= 3) || !(TrimCols >= 0 && TrimCols <= 3))
    return TFormulaArg::FromError(ceValue);
  TFormulaArg Range = AsRangeArg(Call[0]);
  if (Range.RowCount < 1 || Range.ColCount < 1) return Range;
  int32_t Top = 0, Bottom = Range.RowCount - 1, Left = 0, Right = Range.ColCount - 1;
  TrimLines(Range, true, static_cast<TTrimEnds>(TrimRows), Top, Bottom);
  TrimLines(Range, false, static_cast<TTrimEnds>(TrimCols), Left, Right);
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Bottom - Top + 1) * (Right - Left + 1));
  for (int32_t R = Top; R <= Bottom; ++R)
    for (int32_t C = Left; C <= Right; ++C) Cells.push_back(Range.CellAt(R, C));
  TFormulaArg Trimmed = TFormulaArg::FromRange(std::move(Cells), Bottom - Top + 1, Right - Left + 1);
  const TFormulaArg& Source = Call[0];
  if (Source.HasOrigin) {
    Trimmed.HasOrigin = true;
    Trimmed.OriginSheetIndex = Source.OriginSheetIndex;
    Trimmed.OriginCol = Source.OriginCol + Left;
    Trimmed.OriginRow = Source.OriginRow + Top;
  }
  return Trimmed;
}

}  // namespace

std::span<const TFunctionDef> AddressingFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ADDRESS", 2, 5, fnNone, Address},
      {"AREAS", 1, 1, fnNone, Areas},
      {"ISREF", 1, 1, fnNone, IsRef},
      {"ISFORMULA", 1, 1, fnNone, IsFormula},
      {"FORMULATEXT", 1, 1, fnNone, FormulaText},
      {"SHEET", 0, 1, fnNone, Sheet},
      {"SHEETS", 0, 1, fnNone, Sheets},
      {"TRIMRANGE", 1, 3, fnReturnsArray, nullptr, TrimRange},
  };
  return Table;
}

}  // namespace Tabrino
