// Text built-ins. They read the display text of each argument's first value
// (CONCAT and TEXTJOIN read every cell of a range) and count in UTF-16 units,
// so an emoji is two characters long as users of spreadsheets expect.
#include <cmath>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Characters.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.NumberFormat.h"

namespace Tabrino {

namespace {

// Builds a text result but refuses to grow past what the length cap could
// allow (no UTF-16 unit takes more than three UTF-8 bytes), so that joining a
// huge range fails at once instead of allocating gigabytes first.
class TTextBuilder {
 public:
  void Append(std::string_view Part) {
    if (FOverflow || FText.size() + Part.size() > MaxBytes) {
      FOverflow = true;
      return;
    }
    FText += Part;
  }
  bool Overflow() const { return FOverflow; }
  TCellValue Result() { return FOverflow ? Err(ceValue) : TextResult(std::move(FText)); }

 private:
  static constexpr size_t MaxBytes = 3 * MaxTextUnits;
  std::string FText;
  bool FOverflow = false;
};

// A count or position: truncated, Default when absent. A non-number or a
// negative value fails (#VALUE!); values past any possible text are clamped.
bool CountArg(const TFunctionCall& C, size_t Index, double Default, size_t& Count) {
  double N;
  if (!OptArgInteger(C, Index, Default, N) || !(N >= 0)) return false;
  constexpr double Beyond = 1E9;
  Count = static_cast<size_t>(N < Beyond ? N : Beyond);
  return true;
}

// A 1-based position argument, given back 0-based.
bool StartArg(const TFunctionCall& C, size_t Index, size_t& Start) {
  if (!CountArg(C, Index, 1, Start) || Start < 1) return false;
  --Start;
  return true;
}

TCellValue FnConcat(const TFunctionCall& C) {
  TTextBuilder Out;
  for (const TFormulaArg& Arg : C.Args) {
    for (const TCellValue& V : ArgValues(Arg)) {
      Out.Append(V.ToDisplayString());
      if (Out.Overflow()) return Err(ceValue);
    }
  }
  return Out.Result();
}

TCellValue FnConcatenate(const TFunctionCall& C) {
  TTextBuilder Out;
  for (const TFormulaArg& Arg : C.Args) Out.Append(ArgText(Arg));
  return Out.Result();
}

TCellValue FnTextJoin(const TFunctionCall& C) {
  std::string Delimiter = ArgText(C[0]);
  bool IgnoreEmpty = ArgTruthy(C[1]);
  TTextBuilder Out;
  bool First = true;
  for (const TFormulaArg& Arg : C.Args.subspan(2)) {
    for (const TCellValue& V : ArgValues(Arg)) {
      std::string Part = V.ToDisplayString();
      if (IgnoreEmpty && Part.empty()) continue;
      if (!First) Out.Append(Delimiter);
      Out.Append(Part);
      if (Out.Overflow()) return Err(ceValue);
      First = false;
    }
  }
  return Out.Result();
}

TCellValue FnLen(const TFunctionCall& C) {
  return Num(static_cast<double>(Utf16Length(ArgText(C[0]))));
}

TCellValue FnLeft(const TFunctionCall& C) {
  size_t Count;
  if (!CountArg(C, 1, 1, Count)) return Err(ceValue);
  return Text(Utf16Substr(ArgText(C[0]), 0, Count));
}

TCellValue FnRight(const TFunctionCall& C) {
  size_t Count;
  if (!CountArg(C, 1, 1, Count)) return Err(ceValue);
  std::string S = ArgText(C[0]);
  size_t Length = Utf16Length(S);
  return Count >= Length ? Text(std::move(S)) : Text(Utf16Substr(S, Length - Count));
}

TCellValue FnMid(const TFunctionCall& C) {
  size_t Start, Count;
  if (!StartArg(C, 1, Start) || !CountArg(C, 2, 0, Count)) return Err(ceValue);
  return Text(Utf16Substr(ArgText(C[0]), Start, Count));
}

template <std::string (*Map)(std::string_view)>
TCellValue MapCase(const TFunctionCall& C) {
  return Text(Map(ArgText(C[0])));
}

// Leading and trailing spaces go, inner runs of spaces shrink to one. Only
// the space character counts: tabs and non-breaking spaces stay.
TCellValue FnTrim(const TFunctionCall& C) {
  std::string S = ArgText(C[0]);
  std::string Out;
  Out.reserve(S.size());
  bool PendingSpace = false;
  for (char Ch : S) {
    if (Ch == ' ') {
      PendingSpace = !Out.empty();
      continue;
    }
    if (PendingSpace) Out += ' ';
    PendingSpace = false;
    Out += Ch;
  }
  return Text(std::move(Out));
}

TCellValue FnExact(const TFunctionCall& C) {
  return Bool(ArgText(C[0]) == ArgText(C[1]));
}

TCellValue FnRept(const TFunctionCall& C) {
  size_t Times;
  if (!CountArg(C, 1, 0, Times)) return Err(ceValue);
  std::string S = ArgText(C[0]);
  if (S.empty() || Times == 0) return Text("");
  if (Utf16Length(S) * Times > MaxTextUnits) return Err(ceValue);
  std::string Out;
  Out.reserve(S.size() * Times);
  for (size_t I = 0; I < Times; ++I) Out += S;
  return Text(std::move(Out));
}

std::u16string FoldCase(std::u16string Text) {
  for (char16_t& U : Text) {
    bool Surrogate = U >= 0xD800 && U <= 0xDFFF;
    if (!Surrogate) U = static_cast<char16_t>(LowerChar(U));
  }
  return Text;
}

// FIND and SEARCH: the 1-based UTF-16 place of the first occurrence at or
// after the start. An empty needle is found at the start itself; a start
// beyond the text's end, or no occurrence, is #VALUE!. No wildcards.
template <bool IgnoreCase>
TCellValue FindText(const TFunctionCall& C) {
  size_t Start;
  if (!StartArg(C, 2, Start)) return Err(ceValue);
  std::u16string Needle = Utf8ToUtf16(ArgText(C[0]));
  std::u16string Haystack = Utf8ToUtf16(ArgText(C[1]));
  if (Start > Haystack.size()) return Err(ceValue);
  if constexpr (IgnoreCase) {
    Needle = FoldCase(std::move(Needle));
    Haystack = FoldCase(std::move(Haystack));
  }
  size_t At = Haystack.find(Needle, Start);
  return At == std::u16string::npos ? Err(ceValue) : Num(static_cast<double>(At + 1));
}

// Every occurrence, or only the given one (1-based), of Old replaced by New.
TCellValue FnSubstitute(const TFunctionCall& C) {
  std::string S = ArgText(C[0]), Old = ArgText(C[1]), New = ArgText(C[2]);
  size_t Instance = 0;  // 0: every occurrence
  if (C.Count() > 3 && (!CountArg(C, 3, 0, Instance) || Instance < 1)) return Err(ceValue);
  if (Old.empty()) return Text(std::move(S));
  TTextBuilder Out;
  size_t Done = 0, Seen = 0;
  for (size_t At = S.find(Old); At != std::string::npos; At = S.find(Old, At + Old.size())) {
    ++Seen;
    if (Instance != 0 && Seen != Instance) continue;
    Out.Append(std::string_view(S).substr(Done, At - Done));
    Out.Append(New);
    Done = At + Old.size();
    if (Instance != 0 || Out.Overflow()) break;
  }
  Out.Append(std::string_view(S).substr(Done));
  return Out.Result();
}

// REPLACE(old, start, count, new): count UTF-16 units from start give way to new.
TCellValue FnReplace(const TFunctionCall& C) {
  size_t Start, Count;
  if (!StartArg(C, 1, Start) || !CountArg(C, 2, 0, Count)) return Err(ceValue);
  std::string S = ArgText(C[0]);
  size_t Begin = Utf8OffsetOfUtf16(S, Start);
  size_t End = Begin + Utf8OffsetOfUtf16(std::string_view(S).substr(Begin), Count);
  TTextBuilder Out;
  Out.Append(std::string_view(S).substr(0, Begin));
  Out.Append(ArgText(C[3]));
  Out.Append(std::string_view(S).substr(End));
  return Out.Result();
}

// A cell holding an overflowed number gives #NUM!, not the infinity.
TCellValue FnValue(const TFunctionCall& C) {
  double N;
  if (!ArgNumber(C[0], N)) return Err(ceValue);
  return std::isfinite(N) ? Num(N) : Err(ceNum);
}

// Numbers, and texts that read as numbers, are formatted; any other value
// shows as it would in a cell, so TEXT("abc","0") is "abc".
TCellValue FnText(const TFunctionCall& C) {
  TCellValue Value = C[0].First();
  std::string Format = ArgText(C[1]);
  double N;
  bool Numeric = Value.Kind != cvkBoolean && AsNumber(Value, N);
  return TextResult(Numeric ? FormatNumber(N, Format) : FormatCellValue(Value, Format));
}

TCellValue FnChar(const TFunctionCall& C) {
  double N;
  if (!ArgInteger(C[0], N)) return Err(ceValue);
  if (!(N >= 1 && N <= 255)) return Err(ceValue);
  std::string Out;
  AppendUtf8(Out, CodePageToChar(static_cast<uint8_t>(N)));
  return Text(std::move(Out));
}

TCellValue FnCode(const TFunctionCall& C) {
  std::string S = ArgText(C[0]);
  if (S.empty()) return Err(ceValue);
  size_t Pos = 0;
  return Num(CharToCodePage(DecodeUtf8(S, Pos)));
}

// The control characters 0 to 31 go; everything else stays.
TCellValue FnClean(const TFunctionCall& C) {
  std::string S = ArgText(C[0]);
  std::erase_if(S, [](char Ch) { return static_cast<unsigned char>(Ch) < 32; });
  return Text(std::move(S));
}

}  // namespace

std::span<const TFunctionDef> TextFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CONCAT", 1, -1, fnNone, FnConcat},
      {"CONCATENATE", 1, -1, fnNone, FnConcatenate},
      {"LEN", 1, 1, fnNone, FnLen},
      {"LEFT", 1, 2, fnNone, FnLeft},
      {"RIGHT", 1, 2, fnNone, FnRight},
      {"MID", 3, 3, fnNone, FnMid},
      {"UPPER", 1, 1, fnNone, MapCase<UpperText>},
      {"LOWER", 1, 1, fnNone, MapCase<LowerText>},
      {"PROPER", 1, 1, fnNone, MapCase<ProperText>},
      {"TRIM", 1, 1, fnNone, FnTrim},
      {"EXACT", 2, 2, fnNone, FnExact},
      {"REPT", 2, 2, fnNone, FnRept},
      {"FIND", 2, 3, fnNone, FindText<false>},
      {"SEARCH", 2, 3, fnNone, FindText<true>},
      {"SUBSTITUTE", 3, 4, fnNone, FnSubstitute},
      {"REPLACE", 4, 4, fnNone, FnReplace},
      {"VALUE", 1, 1, fnNone, FnValue},
      {"TEXT", 2, 2, fnNone, FnText},
      {"CHAR", 1, 1, fnNone, FnChar},
      {"CODE", 1, 1, fnNone, FnCode},
      {"CLEAN", 1, 1, fnNone, FnClean},
      {"TEXTJOIN", 3, -1, fnNone, FnTextJoin},
  };
  return Table;
}

}  // namespace Tabrino
