// Lookup and reference functions. Every search is a linear walk over the
// cells, so unsorted data works everywhere: an approximate VLOOKUP gives the
// largest value not above the key wherever it stands.

#include <cstdint>
#include <limits>

#include "Tabrino.Formula.ExactIndex.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

constexpr int64_t NotFound = -1;

// The first of Count cells, Stride apart, that Key matches: through the
// context's index when the table is searched repeatedly, else by a walk.
int64_t FindExact(const TFunctionCall& Call, const TFormulaArg& Table, int64_t Count, int64_t Stride,
                  const TLookupKey& Key) {
  if (Call.Context.ExactIndexes)
    if (const TExactMatchIndex* Index = Call.Context.ExactIndexes->For(Table, Count, Stride)) return Index->Find(Key);
  std::span<const TCellValue> Cells = ArgValues(Table);
  for (int64_t At = 0; At < Count && static_cast<size_t>(At * Stride) < Cells.size(); ++At)
    if (Key.Matches(Cells[At * Stride])) return At;
  return NotFound;
}

// Walks Count cells, Stride apart, for Key: the first exact hit ends the walk;
// otherwise, with Approx, the largest number not above the key wins, the last
// of equals. Exact searches go to FindExact. Both sides must be numeric for numbers to decide.
int64_t WalkFirstLine(const TFunctionCall& Call, const TFormulaArg& Table, int64_t Count, int64_t Stride,
                      const TLookupKey& Key, bool Approx) {
  if (!Approx) return FindExact(Call, Table, Count, Stride, Key);
  std::span<const TCellValue> Cells = ArgValues(Table);
  double Best = std::numeric_limits<double>::lowest();
  int64_t BestAt = NotFound;
  for (int64_t At = 0; At < Count && static_cast<size_t>(At * Stride) < Cells.size(); ++At) {
    const TCellValue& Cell = Cells[At * Stride];
    double X;
    if (Key.BothNumeric(Cell, X)) {
      if (X == Key.Number) return At;
      if (X <= Key.Number && X >= Best) {
        Best = X;
        BestAt = At;
      }
    } else if (DisplayEqualsNoCase(Cell, Key.Text)) {
      return At;
    }
  }
  return BestAt;
}

// VLOOKUP walks the first column and reads across; HLOOKUP walks the first
// row and reads down.
TCellValue TableLookup(const TFunctionCall& Call, bool Vertical) {
  const TFormulaArg& Table = Call[1];
  if (!Table.IsRange || Table.RowCount < 1 || Table.ColCount < 1) return Err(ceRef);
  double Offset;
  if (!ArgInteger(Call[2], Offset)) return Err(ceValue);
  int32_t Lines = Vertical ? Table.ColCount : Table.RowCount;
  if (!(Offset >= 1 && Offset <= Lines)) return Err(ceRef);
  bool Approx = Call.Count() < 4 || ArgTruthy(Call[3]);

  TLookupKey Key(Call[0].First());
  int64_t At = Vertical ? WalkFirstLine(Call, Table, Table.RowCount, Table.ColCount, Key, Approx)
                        : WalkFirstLine(Call, Table, Table.ColCount, 1, Key, Approx);
  if (At == NotFound) return Err(ceNA);
  int32_t Other = static_cast<int32_t>(Offset) - 1;
  int32_t Found = static_cast<int32_t>(At);
  return Vertical ? Table.CellAt(Found, Other) : Table.CellAt(Other, Found);
}

TCellValue VLookup(const TFunctionCall& Call) {
  return TableLookup(Call, true);
}
TCellValue HLookup(const TFunctionCall& Call) {
  return TableLookup(Call, false);
}

// A 0 index means 1: there is no whole-row or whole-column result.
TCellValue Index(const TFunctionCall& Call) {
  double Row, Col = 1;
  if (!ArgInteger(Call[1], Row) || (Call.Count() > 2 && !ArgInteger(Call[2], Col))) return Err(ceValue);
  const TFormulaArg& Array = Call[0];
  if (!Array.IsRange) return Row < 2 && Col < 2 ? Array.First() : Err(ceRef);
  if (Row == 0) Row = 1;
  if (Col == 0) Col = 1;
  if (!(Row >= 1 && Row <= Array.RowCount && Col >= 1 && Col <= Array.ColCount)) return Err(ceRef);
  return Array.CellAt(static_cast<int32_t>(Row) - 1, static_cast<int32_t>(Col) - 1);
}

// Type 0 finds the first equal value; type 1 the largest number not above
// the key, any other type the smallest not below it, the last of equals in
// both. The ordered types never match text.
TCellValue Match(const TFunctionCall& Call) {
  double Type;
  if (Call.Count() < 3 || !ArgInteger(Call[2], Type)) Type = 1;
  std::span<const TCellValue> Values = ArgValues(Call[1]);
  TLookupKey Key(Call[0].First());

  int64_t FoundAt = NotFound;
  if (Type == 0) {
    FoundAt = FindExact(Call, Call[1], static_cast<int64_t>(Values.size()), 1, Key);
  } else if (Key.IsNumber) {
    bool NotAbove = Type == 1;
    double Best = 0;
    for (size_t I = 0; I < Values.size(); ++I) {
      double X;
      if (!AsNumber(Values[I], X)) continue;
      bool Candidate = NotAbove ? X <= Key.Number : X >= Key.Number;
      bool Closer = FoundAt == NotFound || (NotAbove ? X >= Best : X <= Best);
      if (Candidate && Closer) {
        Best = X;
        FoundAt = static_cast<int64_t>(I);
      }
    }
  }
  return FoundAt == NotFound ? Err(ceNA) : Num(static_cast<double>(FoundAt + 1));
}

// An exact walk from first to last; match and search modes are not read.
TCellValue XLookup(const TFunctionCall& Call) {
  TLookupKey Key(Call[0].First());
  std::span<const TCellValue> Keys = ArgValues(Call[1]);
  std::span<const TCellValue> Results = ArgValues(Call[2]);
  const int64_t At = FindExact(Call, Call[1], static_cast<int64_t>(Keys.size()), 1, Key);
  if (At != NotFound) return static_cast<size_t>(At) < Results.size() ? Results[At] : Err(ceRef);
  return Call.Count() > 3 ? Call[3].First() : Err(ceNA);
}

// The top left of a reference argument; with no argument the cell being
// evaluated; 1 for anything that came from no reference.
TCellValue Row(const TFunctionCall& Call) {
  if (Call.Count() == 0) return Num(Call.Context.EvalRow > 0 ? Call.Context.EvalRow : 1);
  return Num(Call[0].HasOrigin ? Call[0].OriginRow : 1);
}

TCellValue Column(const TFunctionCall& Call) {
  if (Call.Count() == 0) return Num(Call.Context.EvalCol > 0 ? Call.Context.EvalCol : 1);
  return Num(Call[0].HasOrigin ? Call[0].OriginCol : 1);
}

TCellValue Rows(const TFunctionCall& Call) {
  return Num(Call[0].IsRange ? Call[0].RowCount : 1);
}
TCellValue Columns(const TFunctionCall& Call) {
  return Num(Call[0].IsRange ? Call[0].ColCount : 1);
}

}  // namespace

std::span<const TFunctionDef> LookupFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"VLOOKUP", 3, 4, fnNone, VLookup}, {"HLOOKUP", 3, 4, fnNone, HLookup}, {"INDEX", 2, 3, fnNone, Index},
      {"MATCH", 2, 3, fnNone, Match},     {"ROW", 0, 1, fnNone, Row},         {"COLUMN", 0, 1, fnNone, Column},
      {"XLOOKUP", 3, 6, fnNone, XLookup}, {"ROWS", 1, 1, fnNone, Rows},       {"COLUMNS", 1, 1, fnNone, Columns},
  };
  return Table;
}

}  // namespace Tabrino
