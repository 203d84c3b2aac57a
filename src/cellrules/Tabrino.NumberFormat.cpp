#include "Tabrino.NumberFormat.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.FloatFormat.h"

namespace Tabrino {

namespace {

// Precedes each literal character in the marked text, so the float formatter
// can be handed literals in quotes.
constexpr char Mark = '\x01';
constexpr uint32_t Black = 0xFF000000;
constexpr uint32_t Red = 0xFFFF0000;
// Bounds the best-fraction search; six "?" in the denominator still fit.
constexpr int64_t MaxDenominator = 999999;

bool IsTrimmable(char C) {
  return C != Mark && static_cast<unsigned char>(C) <= ' ';
}

std::string_view Trim(std::string_view S) {
  while (!S.empty() && IsTrimmable(S.front())) S.remove_prefix(1);
  while (!S.empty() && IsTrimmable(S.back())) S.remove_suffix(1);
  return S;
}

std::string ToLowerAscii(std::string_view S) {
  std::string Out(S);
  for (char& C : Out) {
    if (C >= 'A' && C <= 'Z') C = static_cast<char>(C + 32);
  }
  return Out;
}

bool IsPlaceholder(char C) {
  return C == '0' || C == '#' || C == '?';
}

// Bytes of the UTF-8 character whose first byte is Lead, so a backslash or
// "_" never splits a character.
size_t Utf8Length(char Lead) {
  auto B = static_cast<unsigned char>(Lead);
  if (B >= 0xF0) return 4;
  if (B >= 0xE0) return 3;
  if (B >= 0xC0) return 2;
  return 1;
}

size_t CharLengthAt(std::string_view S, size_t Pos) {
  return std::min(Utf8Length(S[Pos]), S.size() - Pos);
}

// The "0" fast path: half to even, as the 64-bit integer it fits in.
std::string RoundedIntegerText(double Value) {
  if (!std::isfinite(Value)) return GeneralNumberText(Value);
  double Rounded = std::nearbyint(Value);
  if (std::fabs(Rounded) < 9.2e18) return std::to_string(static_cast<int64_t>(Rounded));
  return FormatFloat("0", Rounded);
}

// ---- Sections and bracket tags ----

std::vector<std::string_view> SplitSections(std::string_view Format) {
  std::vector<std::string_view> Sections;
  bool InQuote = false;
  size_t Start = 0;
  for (size_t I = 0; I < Format.size(); ++I) {
    if (Format[I] == '"') {
      InQuote = !InQuote;
    } else if (Format[I] == ';' && !InQuote) {
      Sections.push_back(Format.substr(Start, I - Start));
      Start = I + 1;
    }
  }
  Sections.push_back(Format.substr(Start));
  return Sections;
}

// A fourth, text section is never used for a number.
std::string_view ChooseSection(const std::vector<std::string_view>& Sections, double Value) {
  if (Sections.size() == 1) return Sections[0];
  if (Value < 0) return Sections[1];
  if (Value == 0 && Sections.size() >= 3) return Sections[2];
  return Sections[0];
}

std::string_view ChooseSectionOf(std::string_view Format, double Value) {
  return ChooseSection(SplitSections(Trim(Format)), Value);
}

struct TTaggedSection {
  std::string Text;
  bool HasColor = false;
  uint32_t Color = Black;
};

bool ColorOfTag(std::string_view Lower, uint32_t& Color) {
  static constexpr std::pair<std::string_view, uint32_t> Named[] = {
      {"red", Red},          {"blue", 0xFF0000FF},   {"green", 0xFF008000}, {"black", Black},
      {"white", 0xFFFFFFFF}, {"yellow", 0xFFFFFF00}, {"cyan", 0xFF00FFFF},  {"magenta", 0xFFFF00FF}};
  for (const auto& [Name, Value] : Named) {
    if (Lower == Name) {
      Color = Value;
      return true;
    }
  }
  // Indexed colours are not resolved: they all show as red.
  if (Lower.starts_with("color")) {
    Color = Red;
    return true;
  }
  return false;
}

bool IsElapsedTimeTag(std::string_view Lower) {
  return Lower == "h" || Lower == "hh" || Lower == "m" || Lower == "mm" || Lower == "s" || Lower == "ss";
}

// Colours are read and removed, "[$xxx-nnn]" becomes its currency text and
// every other tag (conditions included) is dropped. An elapsed-time tag stops
// the scan and stays in the text.
TTaggedSection ProcessTags(std::string_view Section) {
  TTaggedSection R{std::string(Section)};
  size_t Open = 0;
  while ((Open = R.Text.find('[', Open)) != std::string::npos) {
    size_t Close = R.Text.find(']', Open + 1);
    if (Close == std::string::npos) break;
    std::string_view Content = std::string_view(R.Text).substr(Open + 1, Close - Open - 1);
    std::string Lower = ToLowerAscii(Content);
    if (IsElapsedTimeTag(Lower)) break;
    std::string Replacement;
    if (ColorOfTag(Lower, R.Color)) {
      R.HasColor = true;
    } else if (Lower.starts_with("$")) {
      Replacement = std::string(Content.substr(1, Content.find('-') - 1));
      if (Replacement.empty()) Replacement = "$";
    }
    R.Text.replace(Open, Close - Open + 1, Replacement);
  }
  return R;
}

// ---- Literal pass ----

// Quoted runs, backslash escapes and "$" become marked literals; "_x" and "*x"
// each leave one blank.
std::string MarkLiterals(std::string_view Section) {
  std::string Out;
  bool InQuote = false;
  auto AppendMarked = [&Out](std::string_view Chars) {
    for (char C : Chars) {
      Out += Mark;
      Out += C;
    }
  };
  for (size_t I = 0; I < Section.size(); ++I) {
    char C = Section[I];
    if (C == '"') {
      InQuote = !InQuote;
    } else if (InQuote || C == '$') {
      AppendMarked(Section.substr(I, 1));
    } else if (C == '\\') {
      if (I + 1 < Section.size()) {
        size_t Length = CharLengthAt(Section, I + 1);
        AppendMarked(Section.substr(I + 1, Length));
        I += Length;
      }
    } else if ((C == '_' || C == '*') && I + 1 < Section.size()) {
      Out += ' ';
      I += CharLengthAt(Section, I + 1);
    } else {
      Out += C;
    }
  }
  return Out;
}

std::string WithoutMarks(std::string_view Marked) {
  std::string Out;
  for (char C : Marked) {
    if (C != Mark) Out += C;
  }
  return Out;
}

// Each run of marked characters becomes one single-quoted literal.
std::string ToFloatPattern(std::string_view Marked) {
  std::string Out;
  size_t I = 0;
  while (I < Marked.size()) {
    if (Marked[I] != Mark) {
      Out += Marked[I++];
      continue;
    }
    std::string Run;
    for (; I < Marked.size() && Marked[I] == Mark; I += 2) {
      if (I + 1 < Marked.size()) Run += Marked[I + 1];
    }
    if (Run.empty()) continue;
    Out += '\'';
    for (char C : Run) {
      Out += C;
      if (C == '\'') Out += '\'';
    }
    Out += '\'';
  }
  return Out;
}

// ---- Fractions ----

// The first "/" outside quotes with a placeholder on its left and a
// placeholder or a digit 1-9 on its right, blanks skipped on both sides.
bool FindFractionSlash(std::string_view Plain, size_t& Slash) {
  bool InQuote = false;
  for (size_t I = 0; I < Plain.size(); ++I) {
    if (Plain[I] == '"') InQuote = !InQuote;
    if (InQuote || Plain[I] != '/') continue;
    size_t L = I;
    while (L > 0 && Plain[L - 1] == ' ') --L;
    size_t R = I + 1;
    while (R < Plain.size() && Plain[R] == ' ') ++R;
    if (L == 0 || !IsPlaceholder(Plain[L - 1]) || R >= Plain.size()) continue;
    if (IsPlaceholder(Plain[R]) || (Plain[R] >= '1' && Plain[R] <= '9')) {
      Slash = I;
      return true;
    }
  }
  return false;
}

// Digits 1-9 in the denominator spell an explicit denominator; "0" only counts
// as a placeholder, so "100" reads as 1 and "16" as 16. Otherwise the number
// of placeholders sets how many digits the denominator may have.
int64_t LargestDenominator(std::string_view Right) {
  int64_t Explicit = 0;
  int Placeholders = 0;
  bool InQuote = false;
  for (char C : Right) {
    if (C == '"') InQuote = !InQuote;
    if (InQuote) continue;
    if (IsPlaceholder(C)) {
      ++Placeholders;
    } else if (C >= '1' && C <= '9') {
      Explicit = std::min(Explicit * 10 + (C - '0'), MaxDenominator);
    }
  }
  if (Explicit > 0) return Explicit;
  if (Placeholders < 2) return 9;
  int64_t Largest = 1;
  for (int I = 0; I < Placeholders && Largest <= MaxDenominator; ++I) Largest *= 10;
  return std::min(Largest - 1, MaxDenominator);
}

struct TFraction {
  int64_t Numerator = 0;
  int64_t Denominator = 1;
};

// The smallest denominator wins a tie, since only a strictly better error
// replaces the best so far.
TFraction BestFraction(double F, int64_t Largest) {
  TFraction Best;
  double BestError = 1E100;
  for (int64_t D = 1; D <= Largest; ++D) {
    auto N = static_cast<int64_t>(std::nearbyint(static_cast<double>(D) * F));
    if (N <= 0) continue;
    N = std::min(N, D);
    double Error = std::fabs(F - static_cast<double>(N) / static_cast<double>(D));
    if (Error < BestError) {
      BestError = Error;
      Best = {N, D};
    }
  }
  int64_t Divisor = std::gcd(Best.Numerator, Best.Denominator);
  if (Divisor > 1) Best = {Best.Numerator / Divisor, Best.Denominator / Divisor};
  return Best;
}

// Literal text around the fraction is not shown, and the denominator is not
// padded to its placeholders.
std::string FractionText(double Value, std::string_view Right) {
  double Whole = std::trunc(std::fabs(Value));
  double F = std::fabs(Value) - Whole;
  if (F >= 0.9999999999) {
    Whole += 1;
    F = 0;
  } else if (F < 1E-10) {
    F = 0;
  }
  TFraction Fraction = F == 0 ? TFraction{} : BestFraction(F, LargestDenominator(Right));
  if (Fraction.Numerator > 0 && Fraction.Numerator >= Fraction.Denominator) {
    Whole += static_cast<double>(Fraction.Numerator / Fraction.Denominator);
    Fraction.Numerator %= Fraction.Denominator;
  }
  std::string Text = FormatFloat("0", Whole);
  if (Fraction.Numerator > 0) {
    std::string Part = std::to_string(Fraction.Numerator) + "/" + std::to_string(Fraction.Denominator);
    Text = Whole < 1 ? Part : Text + " " + Part;
  }
  if (Value < 0 && Text != "0") Text.insert(0, "-");
  return Text;
}

// ---- Custom sections ----

std::string FormatCustomSection(std::string_view Section, double Value) {
  const std::string Tagged = ProcessTags(Section).Text;
  const bool Negative = Value < 0;
  double X = std::fabs(Value);
  std::string Marked = MarkLiterals(Tagged);
  const std::string Plain = WithoutMarks(Marked);
  const bool HasParen = Plain.find('(') != std::string::npos;

  std::string Suffix;
  if (!Plain.empty() && Plain.back() == '%') {
    Suffix = "%";
    Marked.pop_back();
    X *= 100;
  }
  const size_t TrailingBlanks = Marked.size() - (Marked.find_last_not_of(' ') + 1);
  Marked = std::string(Trim(Marked));
  if (Marked.empty()) Marked = "0";
  const std::string Blanks(TrailingBlanks, ' ');

  size_t Slash = 0;
  if (FindFractionSlash(Plain, Slash)) return FractionText(Value, std::string_view(Plain).substr(Slash + 1)) + Blanks;

  const std::string Pattern = ToFloatPattern(Marked);
  std::string Text = Pattern.find_first_of("#0?") != std::string::npos ? FormatFloat(Pattern, X) : Plain;
  Text += Suffix;
  // Every section gets the sign unless the format writes its own: "0;0"
  // shows -5 as "-5".
  if (Negative && !HasParen && Plain.find('-') == std::string::npos) Text.insert(0, "-");
  return Text + Blanks;
}

// ---- Dates ----

// Digit placeholders win over date letters, so "mmss.0" is not a date.
bool IsDateFormat(std::string_view Lower) {
  if (Lower == "general") return false;
  if (Lower.find_first_of("#0%") != std::string_view::npos) return false;
  return Lower.find_first_of("ydhsm") != std::string_view::npos || Lower.find("a/p") != std::string_view::npos;
}

void ReplaceAllNoCase(std::string& Text, std::string_view From, std::string_view To) {
  const std::string LowerFrom = ToLowerAscii(From);
  std::string Lower = ToLowerAscii(Text);
  std::string Out;
  size_t Pos = 0;
  for (size_t Hit; (Hit = Lower.find(LowerFrom, Pos)) != std::string::npos; Pos = Hit + From.size()) {
    Out.append(Text, Pos, Hit - Pos);
    Out += To;
  }
  Out.append(Text, Pos);
  Text = std::move(Out);
}

// Rewrites a spreadsheet date format for the date-time formatter: double
// quotes become single ones, backslash escapes lose their backslash, and the
// tokens are brought to the formatter's spelling. Single-letter months are
// not kept: "mmmmm" shows the month number.
std::string TranslateDateFormat(std::string_view Format) {
  std::string Out;
  bool InQuote = false;
  for (size_t I = 0; I < Format.size(); ++I) {
    char C = Format[I];
    if (C == '"') {
      InQuote = !InQuote;
      Out += '\'';
    } else if (InQuote) {
      Out += C;
      if (C == '\'') Out += '\'';
    } else if (C == '\\') {
      if (I + 1 < Format.size()) Out += Format[++I];
    } else {
      Out += C;
    }
  }
  static constexpr std::pair<std::string_view, std::string_view> Replacements[] = {
      {"yyyy", "yyyy"},   {"yy", "yy"},     {"mmmmm", "m"}, {"mmmm", "mmmm"}, {"mmm", "mmm"},
      {"AM/PM", "AM/PM"}, {"A/P", "AM/PM"}, {"ss", "ss"},   {"hh", "hh"},     {"mm-dd-yy", "mm/dd/yy"}};
  for (const auto& [From, To] : Replacements) ReplaceAllNoCase(Out, From, To);
  return Out;
}

std::string FormatAsDate(std::string_view Format, double Value) {
  try {
    return FormatDateTime(TranslateDateFormat(Format), Value);
  } catch (const EException&) {
    return GeneralNumberText(Value);
  }
}

}  // namespace

std::string BuiltInExcelNumberFormat(int32_t Id) {
  switch (Id) {
    case 1: return "0";
    case 2: return "0.00";
    case 3: return "#,##0";
    case 4: return "#,##0.00";
    case 5: return "$#,##0_);($#,##0)";
    case 6: return "$#,##0_);[Red]($#,##0)";
    case 7: return "$#,##0.00_);($#,##0.00)";
    case 8: return "$#,##0.00_);[Red]($#,##0.00)";
    case 9: return "0%";
    case 10: return "0.00%";
    case 11: return "0.00E+00";
    case 12: return "# ?/?";
    case 13: return "# ?\?/?\?";  // "\?" keeps "??/" from reading as a trigraph
    case 14: return "m/d/yyyy";
    case 15: return "d-mmm-yy";
    case 16: return "d-mmm";
    case 17: return "mmm-yy";
    case 18: return "h:mm AM/PM";
    case 19: return "h:mm:ss AM/PM";
    case 20: return "h:mm";
    case 21: return "h:mm:ss";
    case 22: return "m/d/yyyy h:mm";
    case 37: return "#,##0 ;(#,##0)";
    case 38: return "#,##0 ;[Red](#,##0)";
    case 39: return "#,##0.00;(#,##0.00)";
    case 40: return "#,##0.00;[Red](#,##0.00)";
    case 41: return R"(_(* #,##0_);_(* (#,##0);_(* "-"_);_(@_))";
    case 42: return R"(_($* #,##0_);_($* (#,##0);_($* "-"_);_(@_))";
    case 43: return R"(_(* #,##0.00_);_(* (#,##0.00);_(* "-"??_);_(@_))";
    case 44: return R"(_($* #,##0.00_);_($* (#,##0.00);_($* "-"??_);_(@_))";
    case 45: return "mm:ss";
    case 46: return "[h]:mm:ss";
    case 47: return "mmss.0";
    case 48: return "##0.0E+0";
    case 49: return "@";
    default: return "General";
  }
}

std::string FormatNumber(double Value, std::string_view Format) {
  const std::string_view F = Trim(Format);
  const std::string Lower = ToLowerAscii(F);
  // The texts that dominate real workbooks are answered before any parsing.
  if (Lower.empty() || Lower == "general") return GeneralNumberText(Value);
  if (F == "0") return RoundedIntegerText(Value);
  if (F == "0.00" || F == "#,##0.00" || F == "#,##0") return FormatFloat(F, Value);
  if (F == "0%") return RoundedIntegerText(Value * 100) + "%";
  if (F == "0.00%") return FormatFloat("0.00", Value * 100) + "%";
  if (F == "@" || Lower == "text") return GeneralNumberText(Value);
  if (IsDateFormat(Lower)) return FormatAsDate(F, Value);
  return FormatCustomSection(ChooseSection(SplitSections(F), Value), Value);
}

std::string FormatCellValue(const TCellValue& Value, std::string_view Format) {
  switch (Value.Kind) {
    case cvkText: return Value.Text;
    case cvkNumber: return FormatNumber(Value.Number, Format);
    case cvkBoolean: return Value.BooleanValue ? "TRUE" : "FALSE";
    case cvkError: return ErrorCodeToString(Value.ErrorCode);
    case cvkFormula: return Value.Formula;
    default: return {};
  }
}

bool NumberFormatColor(double Value, std::string_view Format, uint32_t& Color) {
  TTaggedSection Tagged = ProcessTags(ChooseSectionOf(Format, Value));
  Color = Tagged.Color;
  return Tagged.HasColor;
}

bool TryFormatNumberFillSplit(double Value, std::string_view Format, std::string& Left, std::string& Right) {
  const std::string Section = ProcessTags(ChooseSectionOf(Format, Value)).Text;
  bool InQuote = false;
  size_t Star = 0;
  for (; Star < Section.size(); ++Star) {
    if (Section[Star] == '"') InQuote = !InQuote;
    if (Section[Star] == '*' && !InQuote) break;
  }
  if (Star >= Section.size()) return false;
  Left = WithoutMarks(MarkLiterals(std::string_view(Section).substr(0, Star)));
  size_t AfterFill = Star + 1 < Section.size() ? Star + 1 + CharLengthAt(Section, Star + 1) : Section.size();
  Right = FormatCustomSection(std::string_view(Section).substr(AfterFill), Value);
  return true;
}

bool IsTextNumberFormat(std::string_view Format) {
  const std::string_view F = Trim(Format);
  return F == "@" || ToLowerAscii(F) == "text";
}

}  // namespace Tabrino
