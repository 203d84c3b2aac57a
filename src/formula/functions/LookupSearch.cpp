// XMATCH with its match and search modes, and LOOKUP. A cell equals the key
// by the core lookup rule (numbers when both convert, else display texts
// ignoring case); beyond that, numbers order among numbers and texts among
// texts, ignoring case, and a number never orders against a text.

#include <cstdint>
#include <optional>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Wildcard.h"

namespace Tabrino {

namespace {

constexpr int64_t NotFound = -1;

enum TOrder : uint8_t { ordLess, ordEqual, ordGreater, ordUnordered };

TOrder FromSign(double Difference) {
  return Difference < 0 ? ordLess : Difference > 0 ? ordGreater : ordEqual;
}

// Where Cell stands against Key.
TOrder CompareToKey(const TCellValue& Cell, const TLookupKey& Key) {
  double X;
  if (Key.BothNumeric(Cell, X)) return FromSign(X - Key.Number);
  if (DisplayEqualsNoCase(Cell, Key.Text)) return ordEqual;
  if (Key.IsNumber || Cell.Kind == cvkError || AsNumber(Cell, X)) return ordUnordered;
  return FromSign(CompareTextNoCase(Cell.ToDisplayString(), Key.Text));
}

// A total order for sorted data: numbers, then texts, then errors.
int SortClass(const TCellValue& Cell) {
  double X;
  if (AsNumber(Cell, X)) return 0;
  return Cell.Kind == cvkError ? 2 : 1;
}
TOrder SortedCompare(const TCellValue& Cell, const TLookupKey& Key) {
  TOrder Order = CompareToKey(Cell, Key);
  if (Order != ordUnordered) return Order;
  int KeyClass = Key.IsNumber ? 0 : 1;
  return SortClass(Cell) < KeyClass ? ordLess : ordGreater;
}

// The nearest cell on one side of the key, kept while a walk goes on: a
// candidate replaces the best when it is closer to the key, or as close and
// LastOfEquals is set.
class TNearest {
 public:
  TNearest(TOrder Side, bool LastOfEquals) : FSide(Side), FLastOfEquals(LastOfEquals) {}
  void Offer(const TCellValue& Cell, int64_t At) {
    if (FBest) {
      TOrder Order = CompareToKey(Cell, *FBest);
      bool Closer = Order == (FSide == ordLess ? ordGreater : ordLess);
      if (!Closer && !(FLastOfEquals && Order == ordEqual)) return;
    }
    FBest.emplace(Cell);
    FAt = At;
  }
  int64_t At() const { return FAt; }

 private:
  TOrder FSide;
  bool FLastOfEquals;
  std::optional<TLookupKey> FBest;
  int64_t FAt = NotFound;
};

enum TMatchMode : int8_t { mmSmaller = -1, mmExact = 0, mmLarger = 1, mmWildcard = 2 };

// First to last (or last to first): an equal cell ends the walk; otherwise
// the nearest smaller or larger one, the first met of equals.
int64_t LinearSearch(std::span<const TCellValue> Cells, const TCellValue& Value, TMatchMode Mode, bool Reverse) {
  TLookupKey Key(Value);
  std::optional<TWildcardPattern> Pattern;
  if (Mode == mmWildcard && Value.Kind == cvkText) Pattern.emplace(Value.Text);
  TNearest Nearest(Mode == mmSmaller ? ordLess : ordGreater, false);
  const int64_t Count = static_cast<int64_t>(Cells.size());
  for (int64_t K = 0; K < Count; ++K) {
    int64_t At = Reverse ? Count - 1 - K : K;
    const TCellValue& Cell = Cells[At];
    if (Pattern && Cell.Kind == cvkText) {
      if (Pattern->Matches(Cell.Text)) return At;
      continue;
    }
    TOrder Order = CompareToKey(Cell, Key);
    if (Order == ordEqual) return At;
    if ((Mode == mmSmaller && Order == ordLess) || (Mode == mmLarger && Order == ordGreater)) Nearest.Offer(Cell, At);
  }
  return Nearest.At();
}

// Binary search over data sorted ascending (or descending).
int64_t BinarySearch(std::span<const TCellValue> Cells, const TCellValue& Value, TMatchMode Mode, bool Descending) {
  TLookupKey Key(Value);
  const int64_t Count = static_cast<int64_t>(Cells.size());
  // Lo becomes the first cell that does not sort before the key.
  int64_t Lo = 0, Hi = Count;
  const TOrder Before = Descending ? ordGreater : ordLess;
  while (Lo < Hi) {
    int64_t Mid = Lo + (Hi - Lo) / 2;
    if (SortedCompare(Cells[Mid], Key) == Before)
      Lo = Mid + 1;
    else
      Hi = Mid;
  }
  if (Lo < Count && CompareToKey(Cells[Lo], Key) == ordEqual) return Lo;
  if (Mode == mmExact) return NotFound;
  bool WantSmaller = Mode == mmSmaller;
  int64_t At = WantSmaller != Descending ? Lo - 1 : Lo;
  if (At < 0 || At >= Count) return NotFound;
  return CompareToKey(Cells[At], Key) == (WantSmaller ? ordLess : ordGreater) ? At : NotFound;
}

struct TXMatchModes {
  TMatchMode Match = mmExact;
  int Search = 1;
};

// Modes outside the documented sets, and wildcards with binary search, are #VALUE!.
bool ReadXMatchModes(const TFunctionCall& Call, TXMatchModes& Modes) {
  double Match, Search;
  if (!OptArgInteger(Call, 2, 0, Match) || !OptArgInteger(Call, 3, 1, Search)) return false;
  if (!(Match >= -1 && Match <= 2)) return false;
  if (Search != 1 && Search != -1 && Search != 2 && Search != -2) return false;
  Modes.Match = static_cast<TMatchMode>(Match);
  Modes.Search = static_cast<int>(Search);
  return !(Modes.Match == mmWildcard && (Modes.Search == 2 || Modes.Search == -2));
}

TCellValue XMatchOne(const TCellValue& Value, std::span<const TCellValue> Cells, const TXMatchModes& Modes) {
  if (Value.Kind == cvkError) return Value;
  int64_t At = Modes.Search == 2 || Modes.Search == -2 ? BinarySearch(Cells, Value, Modes.Match, Modes.Search < 0)
                                                       : LinearSearch(Cells, Value, Modes.Match, Modes.Search < 0);
  return At == NotFound ? Err(ceNA) : Num(static_cast<double>(At + 1));
}

// XMATCH(value, array, [match_mode], [search_mode]): the array is one row or
// one column. An array of values gives an array of places.
TFormulaArg XMatch(const TFunctionCall& Call) {
  TXMatchModes Modes;
  if (!ReadXMatchModes(Call, Modes)) return TFormulaArg::FromError(ceValue);
  const TFormulaArg& Array = Call[1];
  if (Array.IsRange && Array.RowCount > 1 && Array.ColCount > 1) return TFormulaArg::FromError(ceValue);
  std::span<const TCellValue> Cells = ArgValues(Array);
  const TFormulaArg& Values = Call[0];
  if (!Values.IsRange) return TFormulaArg::FromScalar(XMatchOne(Values.First(), Cells, Modes));
  std::vector<TCellValue> Places;
  Places.reserve(Values.Cells.size());
  for (const TCellValue& Value : Values.Cells) Places.push_back(XMatchOne(Value, Cells, Modes));
  return TFormulaArg::FromRange(std::move(Places), Values.RowCount, Values.ColCount);
}

// LOOKUP(value, lookup_vector, [result_vector]) and LOOKUP(value, array).
// Like the core's approximate lookups it walks every cell, so unsorted data
// gives the largest value not above the key, the last of equals; that is
// also what the idiom LOOKUP(2, 1/(criteria), results) relies on.
TCellValue Lookup(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkError) return Value;
  TFormulaArg Table = AsRangeArg(Call[1]);
  if (Table.RowCount < 1 || Table.ColCount < 1) return Err(ceNA);
  // The array form searches along the longer side and reads the last line.
  bool AlongRow = Call.Count() < 3 ? Table.ColCount > Table.RowCount : Table.RowCount == 1;
  int32_t Count = AlongRow ? Table.ColCount : Table.RowCount;
  TLookupKey Key(Value);
  TNearest Nearest(ordLess, true);
  for (int32_t I = 0; I < Count; ++I) {
    TCellValue Cell = AlongRow ? Table.CellAt(0, I) : Table.CellAt(I, 0);
    TOrder Order = CompareToKey(Cell, Key);
    if (Order == ordEqual || Order == ordLess) Nearest.Offer(Cell, I);
  }
  int64_t At = Nearest.At();
  if (At == NotFound) return Err(ceNA);
  int32_t Found = static_cast<int32_t>(At);
  if (Call.Count() < 3)
    return AlongRow ? Table.CellAt(Table.RowCount - 1, Found) : Table.CellAt(Found, Table.ColCount - 1);
  std::span<const TCellValue> Results = ArgValues(Call[2]);
  return static_cast<size_t>(Found) < Results.size() ? Results[Found] : Err(ceRef);
}

}  // namespace

std::span<const TFunctionDef> LookupSearchFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"XMATCH", 2, 4, fnReturnsArray, nullptr, XMatch},
      {"LOOKUP", 2, 3, fnNone, Lookup},
  };
  return Table;
}

}  // namespace Tabrino
