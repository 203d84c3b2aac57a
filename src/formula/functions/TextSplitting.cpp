// Cutting text at delimiters: TEXTBEFORE and TEXTAFTER take the part on one
// side of the n-th delimiter, TEXTSPLIT cuts into a grid, SPLIT picks one
// space-separated word. Positions are UTF-16 units, like the core text
// functions.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Wildcard.h"

namespace Tabrino {

namespace {

// A text and its delimiters as UTF-16, case-folded when the match ignores case.
struct TDelimitedText {
  std::u16string Source;  // as given, for the pieces
  std::u16string Search;  // what delimiters are looked for in
  std::vector<std::u16string> Delimiters;

  TDelimitedText(const std::string& Text, std::span<const TCellValue> DelimiterValues, bool IgnoreCase)
      : Source(Utf8ToUtf16(Text)), Search(IgnoreCase ? FoldCaseUtf16(Text) : Source) {
    for (const TCellValue& D : DelimiterValues) {
      std::string S = D.ToDisplayString();
      Delimiters.push_back(IgnoreCase ? FoldCaseUtf16(S) : Utf8ToUtf16(S));
    }
  }
  std::string Piece(size_t Begin, size_t End) const { return Utf16ToUtf8(Source.substr(Begin, End - Begin)); }
};

struct TSpan {
  size_t Begin = 0;
  size_t End = 0;
};

// The first delimiter at or after From that ends by Limit (the longest of
// those starting there).
bool FindForward(const TDelimitedText& T, size_t From, TSpan& Found, size_t Limit = std::u16string::npos) {
  std::u16string_view Search = std::u16string_view(T.Search).substr(0, Limit);
  bool Any = false;
  for (const std::u16string& D : T.Delimiters) {
    size_t At = Search.find(D, From);
    if (At == std::u16string_view::npos) continue;
    if (!Any || At < Found.Begin || (At == Found.Begin && At + D.size() > Found.End)) Found = {At, At + D.size()};
    Any = true;
  }
  return Any;
}

// The last delimiter that ends at or before Before.
bool FindBackward(const TDelimitedText& T, size_t Before, TSpan& Found) {
  bool Any = false;
  for (const std::u16string& D : T.Delimiters) {
    if (D.size() > Before) continue;
    size_t At = T.Search.rfind(D, Before - D.size());
    if (At == std::u16string::npos) continue;
    if (!Any || At > Found.Begin || (At == Found.Begin && At + D.size() > Found.End)) Found = {At, At + D.size()};
    Any = true;
  }
  return Any;
}

// The n-th delimiter from the start (n > 0) or from the end (n < 0). With
// MatchEnd, the end of the text (or its start, counting backwards) serves as
// one delimiter more.
bool FindInstance(const TDelimitedText& T, int64_t Instance, bool MatchEnd, TSpan& Found) {
  const size_t Length = T.Search.size();
  size_t Position = Instance > 0 ? 0 : Length;
  int64_t Count = Instance > 0 ? Instance : -Instance;
  for (int64_t K = 1; K <= Count; ++K) {
    bool Hit = Instance > 0 ? FindForward(T, Position, Found) : FindBackward(T, Position, Found);
    if (!Hit) {
      if (!MatchEnd || K != Count) return false;
      Found = Instance > 0 ? TSpan{Length, Length} : TSpan{0, 0};
      return true;
    }
    Position = Instance > 0 ? Found.End : Found.Begin;
  }
  return true;
}

// A 0/1 flag argument: absent is 0; anything but 0 or 1 fails.
bool FlagArg(const TFunctionCall& Call, size_t Index, bool& Flag) {
  double N;
  if (!OptArgInteger(Call, Index, 0, N) || !(N == 0 || N == 1)) return false;
  Flag = N == 1;
  return true;
}

template <bool Before>
TCellValue TextBeside(const TFunctionCall& Call, const TCellValue& TextValue) {
  if (TextValue.Kind == cvkError) return TextValue;
  double Instance;
  bool IgnoreCase, MatchEnd;
  if (!OptArgInteger(Call, 2, 1, Instance) || !FlagArg(Call, 3, IgnoreCase) || !FlagArg(Call, 4, MatchEnd))
    return Err(ceValue);
  TDelimitedText T(TextValue.ToDisplayString(), ArgValues(Call[1]), IgnoreCase);
  if (Instance == 0 || !(std::fabs(Instance) <= double(T.Source.size()) + 1)) return Err(ceValue);
  TSpan Found;
  if (!FindInstance(T, static_cast<int64_t>(Instance), MatchEnd, Found))
    return Call.Count() > 5 ? Call[5].First() : Err(ceNA);
  return Before ? Text(T.Piece(0, Found.Begin)) : Text(T.Piece(Found.End, T.Source.size()));
}

// TEXTBEFORE / TEXTAFTER(text, delimiter, [instance=1], [match_mode=0],
// [match_end=0], [if_not_found=#N/A]); an array of texts gives an array.
template <bool Before>
TFormulaArg TextBesideArray(const TFunctionCall& Call) {
  for (const TCellValue& D : ArgValues(Call[1]))
    if (D.Kind == cvkError) return TFormulaArg::FromScalar(D);
  const TFormulaArg& Texts = Call[0];
  if (!Texts.IsRange) return TFormulaArg::FromScalar(TextBeside<Before>(Call, Texts.First()));
  std::vector<TCellValue> Results;
  Results.reserve(Texts.Cells.size());
  for (const TCellValue& V : Texts.Cells) Results.push_back(TextBeside<Before>(Call, V));
  return TFormulaArg::FromRange(std::move(Results), Texts.RowCount, Texts.ColCount);
}

// The pieces between delimiters; with IgnoreEmpty, empty pieces are dropped.
std::vector<TSpan> Cut(const TDelimitedText& T, size_t Begin, size_t End, bool IgnoreEmpty) {
  std::vector<TSpan> Pieces;
  size_t From = Begin;
  TSpan Found;
  while (From <= End) {
    bool Hit = FindForward(T, From, Found, End);
    size_t PieceEnd = Hit ? Found.Begin : End;
    if (!(IgnoreEmpty && PieceEnd == From)) Pieces.push_back({From, PieceEnd});
    if (!Hit) break;
    From = Found.End;
  }
  return Pieces;
}

// Delimiters that are empty texts cut nothing.
std::vector<TCellValue> NonEmptyDelimiters(const TFunctionCall& Call, size_t Index) {
  std::vector<TCellValue> Delimiters;
  if (Index >= Call.Count()) return Delimiters;
  for (const TCellValue& D : ArgValues(Call[Index]))
    if (!D.ToDisplayString().empty()) Delimiters.push_back(D);
  return Delimiters;
}

// TEXTSPLIT(text, col_delimiter, [row_delimiter], [ignore_empty=FALSE],
// [match_mode=0], [pad_with=#N/A]): rows cut first, then each row into
// columns; short rows are padded.
TFormulaArg TextSplit(const TFunctionCall& Call) {
  TCellValue Source = Call[0].First();
  if (Source.Kind == cvkError) return TFormulaArg::FromScalar(Source);
  for (size_t I : {size_t(1), size_t(2)})
    if (I < Call.Count())
      for (const TCellValue& D : ArgValues(Call[I]))
        if (D.Kind == cvkError) return TFormulaArg::FromScalar(D);
  bool IgnoreEmpty = Call.Count() > 3 && ArgTruthy(Call[3]);
  bool IgnoreCase;
  if (!FlagArg(Call, 4, IgnoreCase)) return TFormulaArg::FromError(ceValue);
  std::vector<TCellValue> ColDelimiters = NonEmptyDelimiters(Call, 1), RowDelimiters = NonEmptyDelimiters(Call, 2);
  if (ColDelimiters.empty() && RowDelimiters.empty()) return TFormulaArg::FromError(ceValue);
  TCellValue Pad = Call.Count() > 5 && !Call[5].First().IsEmpty() ? Call[5].First() : Err(ceNA);

  std::string Whole = Source.ToDisplayString();
  TDelimitedText Rows(Whole, RowDelimiters, IgnoreCase), Cols(Whole, ColDelimiters, IgnoreCase);
  std::vector<std::vector<TSpan>> Grid;
  size_t Width = 1;
  for (const TSpan& Row : Cut(Rows, 0, Rows.Source.size(), IgnoreEmpty)) {
    Grid.push_back(Cut(Cols, Row.Begin, Row.End, IgnoreEmpty));
    if (Grid.back().empty())
      Grid.pop_back();
    else
      Width = std::max(Width, Grid.back().size());
  }
  // Nothing left once empty pieces are dropped: there is no empty array.
  if (Grid.empty()) return TFormulaArg::FromError(ceValue);
  if (Grid.size() * Width > MaxArrayCells) return TFormulaArg::FromError(ceValue);
  std::vector<TCellValue> Cells;
  Cells.reserve(Grid.size() * Width);
  for (const std::vector<TSpan>& Row : Grid)
    for (size_t C = 0; C < Width; ++C)
      Cells.push_back(C < Row.size() ? Text(Cols.Piece(Row[C].Begin, Row[C].End)) : Pad);
  return TFormulaArg::FromRange(std::move(Cells), static_cast<int32_t>(Grid.size()), static_cast<int32_t>(Width));
}

// SPLIT(text, index): the word at a zero-based place, words being what lies
// between single spaces.
TCellValue Split(const TFunctionCall& Call) {
  double Index;
  if (!ArgInteger(Call[1], Index) || Index < 0) return Err(ceValue);
  std::string Words = ArgText(Call[0]);
  size_t Begin = 0;
  for (double K = 0; K < Index; ++K) {
    size_t Space = Words.find(' ', Begin);
    if (Space == std::string::npos) return Err(ceValue);
    Begin = Space + 1;
  }
  size_t End = Words.find(' ', Begin);
  return Text(Words.substr(Begin, End == std::string::npos ? std::string::npos : End - Begin));
}

}  // namespace

std::span<const TFunctionDef> TextSplittingFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"TEXTBEFORE", 2, 6, fnReturnsArray, nullptr, TextBesideArray<true>},
      {"TEXTAFTER", 2, 6, fnReturnsArray, nullptr, TextBesideArray<false>},
      {"TEXTSPLIT", 2, 6, fnReturnsArray, nullptr, TextSplit},
      {"SPLIT", 2, 2, fnNone, Split},
  };
  return Table;
}

}  // namespace Tabrino
