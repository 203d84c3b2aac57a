// Dynamic arrays that filter, order, generate and group: FILTER, UNIQUE,
// SORT, SORTBY, SEQUENCE, RANDARRAY, GROUPBY and PIVOTBY. Their results spill
// from the formula's cell; in scalar context the top left value stands.
#include <absl/container/flat_hash_map.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "Tabrino.Formula.ArrayArgs.h"

namespace Tabrino {

namespace {

// A flag argument: true when given, numeric and not 0.
bool FlagArg(const TFunctionCall& C, size_t Index) {
  double Number;
  return Index < C.Count() && ArgNumber(C[Index], Number) && Number != 0;
}

// ---- FILTER, UNIQUE ---------------------------------------------------------------

TFormulaArg Filter(const TFunctionCall& C) {
  TGrid Array, Include;
  if (!ReadGrid(C[0], Array) || !ReadGrid(C[1], Include)) return ArrayError(ceValue);
  // A column beside the array, or the array's own shape; its first column decides.
  if (Include.Rows != Array.Rows || (Include.Cols != 1 && Include.Cols != Array.Cols)) return ArrayError(ceValue);
  std::vector<int32_t> Kept;
  for (int32_t Row = 0; Row < Array.Rows; ++Row)
    if (ValueIsTruthy(Include.At(Row, 0))) Kept.push_back(Row);
  if (Kept.empty()) return C.Count() > 2 ? TFormulaArg::FromScalar(C[2].First()) : ArrayError(ceNA);
  return PickLines(Array, Kept, false);
}

// A cell's part of a line key: kind and exact content, so that "a" and "A",
// or 1 and "1", make different lines.
void AppendCellKey(const TCellValue& Value, std::string& Key) {
  switch (Value.Kind) {
    case cvkEmpty: Key += "Emt"; break;
    case cvkText:
      Key += "T:";
      Key += Value.Text;
      break;
    case cvkNumber: {
      char Digits[32];
      const auto Result = std::to_chars(Digits, Digits + sizeof Digits, Value.Number);
      Key += "N:";
      Key.append(Digits, Result.ptr);
      break;
    }
    case cvkBoolean: Key += Value.BooleanValue ? "B:True" : "B:False"; break;
    case cvkError:
      Key += "E:";
      Key += std::to_string(int(Value.ErrorCode));
      break;
    default: Key += "X";
  }
}

TFormulaArg Unique(const TFunctionCall& C) {
  TGrid Array;
  if (!ReadGrid(C[0], Array)) return ArrayError(ceValue);
  const bool ByCol = FlagArg(C, 1), ExactlyOnce = FlagArg(C, 2);
  const int32_t Lines = ByCol ? Array.Cols : Array.Rows, Width = ByCol ? Array.Rows : Array.Cols;
  absl::flat_hash_map<std::string, int32_t> IndexOfKey;
  std::vector<int32_t> FirstLine, Occurrences;
  std::string Key;
  for (int32_t Line = 0; Line < Lines; ++Line) {
    Key.clear();
    for (int32_t K = 0; K < Width; ++K) {
      if (K > 0) Key += '\x01';
      AppendCellKey(ByCol ? Array.At(K, Line) : Array.At(Line, K), Key);
    }
    auto [It, Added] = IndexOfKey.try_emplace(Key, int32_t(FirstLine.size()));
    if (Added) {
      FirstLine.push_back(Line);
      Occurrences.push_back(0);
    }
    ++Occurrences[It->second];
  }
  std::vector<int32_t> Kept;
  for (size_t I = 0; I < FirstLine.size(); ++I)
    if (!ExactlyOnce || Occurrences[I] == 1) Kept.push_back(FirstLine[I]);
  if (Kept.empty()) return ArrayError(ceNA);
  return PickLines(Array, Kept, ByCol);
}

// ---- SORT, SORTBY ---------------------------------------------------------------------

// A value as the sort compares it, converted once.
struct TSortKey {
  bool Numeric;
  double Number;
  std::string Text;
};

TSortKey SortKeyOf(const TCellValue& Value) {
  TSortKey Key;
  Key.Numeric = AsNumber(Value, Key.Number);
  Key.Text = Value.ToDisplayString();
  return Key;
}

// By number when both sides convert, unordered counting as less; otherwise
// by display text, ignoring case.
int CompareSortKeys(const TSortKey& A, const TSortKey& B) {
  if (A.Numeric && B.Numeric) return A.Number > B.Number ? 1 : (A.Number == B.Number ? 0 : -1);
  return CompareTextNoCase(A.Text, B.Text);
}

// Beyond this many lines the quadratic sort would run for seconds.
constexpr size_t ExactSortLimit = 10000;

// The order of lines by their keys. The sort is a plain exchange sort over an
// index array, and where lines tie its loop decides their order, which the
// results show; so it is kept as it is. Past ExactSortLimit a stable sort
// stands in, which agrees with it whenever tied lines are alike.
std::vector<int32_t> SortedLines(const std::vector<TSortKey>& Keys, bool Descending) {
  std::vector<int32_t> Index(Keys.size());
  std::iota(Index.begin(), Index.end(), 0);
  auto Compare = [&](int32_t A, int32_t B) {
    const int Order = CompareSortKeys(Keys[A], Keys[B]);
    return Descending ? -Order : Order;
  };
  if (Keys.size() > ExactSortLimit) {
    std::stable_sort(Index.begin(), Index.end(), [&](int32_t A, int32_t B) { return Compare(A, B) < 0; });
    return Index;
  }
  for (size_t I = 0; I + 1 < Index.size(); ++I)
    for (size_t J = I + 1; J < Index.size(); ++J)
      if (Compare(Index[I], Index[J]) > 0) std::swap(Index[I], Index[J]);
  return Index;
}

TFormulaArg Sort(const TFunctionCall& C) {
  TGrid Array;
  double KeyIndex, Order;
  if (!ReadGrid(C[0], Array) || !CountArg(C, 1, 1, KeyIndex) || !CountArg(C, 2, 1, Order))
    return ArrayError(ceValue);
  const bool ByCol = FlagArg(C, 3);
  // Sorting rows goes by a column, sorting columns by a row.
  const int32_t Lines = ByCol ? Array.Cols : Array.Rows, KeyCount = ByCol ? Array.Rows : Array.Cols;
  if (!(KeyIndex >= 1 && KeyIndex <= KeyCount)) return ArrayError(ceValue);
  const int32_t K = int32_t(KeyIndex) - 1;
  std::vector<TSortKey> Keys;
  Keys.reserve(size_t(Lines));
  for (int32_t Line = 0; Line < Lines; ++Line) Keys.push_back(SortKeyOf(ByCol ? Array.At(K, Line) : Array.At(Line, K)));
  return PickLines(Array, SortedLines(Keys, Order < 0), ByCol);
}

// Sorts by the first column of its keys; further key and order pairs are ignored.
TFormulaArg SortBy(const TFunctionCall& C) {
  TGrid Array, By;
  double Order;
  if (!ReadGrid(C[0], Array) || !ReadGrid(C[1], By) || !CountArg(C, 2, 1, Order)) return ArrayError(ceValue);
  if (By.Rows != Array.Rows) return ArrayError(ceValue);
  std::vector<TSortKey> Keys;
  Keys.reserve(size_t(Array.Rows));
  for (int32_t Row = 0; Row < Array.Rows; ++Row) Keys.push_back(SortKeyOf(By.At(Row, 0)));
  return PickLines(Array, SortedLines(Keys, Order < 0), false);
}

// ---- SEQUENCE, RANDARRAY -------------------------------------------------------------------

constexpr double MaxSequenceCells = 1000000;

TFormulaArg Sequence(const TFunctionCall& C) {
  double Rows, Cols, Start, Step;
  if (!CountArg(C, 0, 1, Rows) || !CountArg(C, 1, 1, Cols) || !OptArgNumber(C, 2, 1, Start) ||
      !OptArgNumber(C, 3, 1, Step))
    return ArrayError(ceValue);
  if (!(Rows >= 1 && Cols >= 1 && Rows <= MaxRow && Cols <= MaxCol && Rows * Cols <= MaxSequenceCells))
    return ArrayError(ceNum);
  const size_t Count = size_t(Rows * Cols);
  std::vector<TCellValue> Cells;
  Cells.reserve(Count);
  // Repeated addition, not Start + I * Step: the sums are the values.
  double Value = Start;
  for (size_t I = 0; I < Count; ++I, Value += Step) Cells.push_back(Num(Value));
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), int32_t(Cols));
}

std::mt19937_64& RandomEngine() {
  static std::mt19937_64 Engine{std::random_device{}()};
  return Engine;
}

TFormulaArg RandArray(const TFunctionCall& C) {
  double Rows, Cols, Low, High;
  if (!CountArg(C, 0, 1, Rows) || !CountArg(C, 1, 1, Cols) || !OptArgNumber(C, 2, 0, Low) ||
      !OptArgNumber(C, 3, 1, High))
    return ArrayError(ceValue);
  if (!FitsArray(Rows, Cols) || !(Low <= High) || !std::isfinite(Low) || !std::isfinite(High))
    return ArrayError(ceValue);
  std::function<double()> Draw;
  if (FlagArg(C, 4)) {
    // Whole numbers in the span; beyond the exact integers of a double there are none to draw.
    constexpr double Limit = 9007199254740992.0;  // 2^53
    Low = std::ceil(Low);
    High = std::floor(High);
    if (!(Low <= High) || Low < -Limit || High > Limit) return ArrayError(ceValue);
    Draw = [Whole = std::uniform_int_distribution<int64_t>(int64_t(Low), int64_t(High))]() mutable {
      return double(Whole(RandomEngine()));
    };
  } else {
    // A span too wide for a double is crossed by blending the ends instead.
    Draw = [Low, High, Unit = std::uniform_real_distribution<double>(0, 1)]() mutable {
      const double U = Unit(RandomEngine()), Span = High - Low;
      return std::isfinite(Span) ? Low + Span * U : Low * (1 - U) + High * U;
    };
  }
  const size_t Count = size_t(Rows * Cols);
  std::vector<TCellValue> Cells;
  Cells.reserve(Count);
  for (size_t I = 0; I < Count; ++I) Cells.push_back(Num(Draw()));
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), int32_t(Cols));
}

// ---- GROUPBY, PIVOTBY -------------------------------------------------------------------------

// Distinct texts in order of first occurrence.
class TKeyList {
 public:
  int32_t IndexOf(const std::string& Key) {
    auto [It, Added] = FIndex.try_emplace(Key, int32_t(FKeys.size()));
    if (Added) FKeys.push_back(Key);
    return It->second;
  }
  const std::vector<std::string>& Keys() const { return FKeys; }
  int32_t Size() const { return int32_t(FKeys.size()); }

 private:
  absl::flat_hash_map<std::string, int32_t> FIndex;
  std::vector<std::string> FKeys;
};

// A line's value in a grid's first column: the #REF! value past its end,
// as a range argument gives outside itself.
const TCellValue& FirstColumnAt(const TGrid& Grid, int32_t Row) {
  static const TCellValue Outside = TCellValue::FromError(ceRef);
  return Row < Grid.Rows ? Grid.At(Row, 0) : Outside;
}

// The number a value adds to a sum: what AsNumber makes of it, or nothing.
double Addend(const TCellValue& Value) {
  double Number;
  return AsNumber(Value, Number) ? Number : 0;
}

// The third argument names an aggregate, but the sum is the only one there is.
TFormulaArg GroupBy(const TFunctionCall& C) {
  TGrid Keys, Values;
  if (!ReadGrid(C[0], Keys) || !ReadGrid(C[1], Values)) return ArrayError(ceValue);
  TKeyList Groups;
  std::vector<double> Sums;
  for (int32_t Row = 0; Row < Keys.Rows; ++Row) {
    const int32_t Group = Groups.IndexOf(Keys.At(Row, 0).ToDisplayString());
    if (Group == int32_t(Sums.size())) Sums.push_back(0);
    Sums[Group] += Addend(FirstColumnAt(Values, Row));
  }
  std::vector<TCellValue> Cells;
  Cells.reserve(Sums.size() * 2);
  for (int32_t Group = 0; Group < Groups.Size(); ++Group) {
    Cells.push_back(Text(Groups.Keys()[Group]));
    Cells.push_back(Num(Sums[Group]));
  }
  return TFormulaArg::FromRange(std::move(Cells), Groups.Size(), 2);
}

// Sums by row key and column key: a header row of column keys, a first
// column of row keys, an empty corner, and 0 where a pair never occurs.
TFormulaArg PivotBy(const TFunctionCall& C) {
  TGrid RowKeys, ColKeys, Values;
  if (!ReadGrid(C[0], RowKeys) || !ReadGrid(C[1], ColKeys) || !ReadGrid(C[2], Values)) return ArrayError(ceValue);
  TKeyList RowList, ColList;
  std::vector<std::pair<int32_t, int32_t>> Pairs;
  Pairs.reserve(size_t(RowKeys.Rows));
  for (int32_t Row = 0; Row < RowKeys.Rows; ++Row)
    Pairs.emplace_back(RowList.IndexOf(RowKeys.At(Row, 0).ToDisplayString()),
                       ColList.IndexOf(FirstColumnAt(ColKeys, Row).ToDisplayString()));
  const int32_t Rows = RowList.Size() + 1, Cols = ColList.Size() + 1;
  if (!FitsArray(Rows, Cols)) return ArrayError(ceValue);
  std::vector<double> Sums(size_t(RowList.Size()) * size_t(ColList.Size()), 0);
  for (int32_t Row = 0; Row < RowKeys.Rows; ++Row)
    Sums[size_t(Pairs[Row].first) * ColList.Size() + Pairs[Row].second] += Addend(FirstColumnAt(Values, Row));
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Rows) * size_t(Cols));
  Cells.emplace_back();
  for (const std::string& Key : ColList.Keys()) Cells.push_back(Text(Key));
  for (int32_t R = 0; R < RowList.Size(); ++R) {
    Cells.push_back(Text(RowList.Keys()[R]));
    for (int32_t K = 0; K < ColList.Size(); ++K) Cells.push_back(Num(Sums[size_t(R) * ColList.Size() + K]));
  }
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

}  // namespace

// In array context these run with at least MinArgs arguments and ignore any
// beyond those they use, so no row states a maximum.
std::span<const TFunctionDef> ArrayFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"FILTER", 2, -1, fnReturnsArray, nullptr, Filter},
      {"UNIQUE", 1, -1, fnReturnsArray, nullptr, Unique},
      {"SORT", 1, -1, fnReturnsArray, nullptr, Sort},
      {"SORTBY", 2, -1, fnReturnsArray, nullptr, SortBy},
      {"SEQUENCE", 1, -1, fnReturnsArray, nullptr, Sequence},
      {"RANDARRAY", 0, -1, fnVolatile | fnReturnsArray, nullptr, RandArray},
      {"GROUPBY", 3, -1, fnReturnsArray, nullptr, GroupBy},
      {"PIVOTBY", 4, -1, fnReturnsArray, nullptr, PivotBy},
  };
  return Table;
}

}  // namespace Tabrino
