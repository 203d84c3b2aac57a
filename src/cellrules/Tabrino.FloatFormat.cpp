#include "Tabrino.FloatFormat.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Types.h"

namespace Tabrino {

namespace {

// A magnitude as decimal digits: Value = 0.Digits x 10^Exponent, with no
// trailing zeros; zero has no digits. Rounding on these digits rather than on
// the binary value is what makes 2.675 show as 2.68.
struct TDecimalDigits {
  std::string Digits;
  int Exponent = 0;

  bool IsZero() const { return Digits.empty(); }
  // The digit at Index, with the implied zeros on either side.
  char At(int Index) const {
    return Index >= 0 && Index < static_cast<int>(Digits.size()) ? Digits[static_cast<size_t>(Index)] : '0';
  }
};

// Doubles carry 15 reliable significant digits; more would show binary noise.
TDecimalDigits ToDecimalDigits(double AbsValue) {
  TDecimalDigits D;
  if (AbsValue == 0) return D;
  char Buf[40];
  std::snprintf(Buf, sizeof Buf, "%.14e", AbsValue);
  std::string_view S(Buf);
  size_t E = S.find('e');
  D.Digits += S[0];
  D.Digits.append(S.substr(2, E - 2));
  D.Exponent = std::atoi(Buf + E + 1) + 1;
  while (!D.Digits.empty() && D.Digits.back() == '0') D.Digits.pop_back();
  return D;
}

// Keeps the first Keep digits, rounding half away from zero.
void RoundToDigits(TDecimalDigits& D, int Keep) {
  if (Keep < 0) {
    D = {};
    return;
  }
  if (Keep >= static_cast<int>(D.Digits.size())) return;
  bool RoundUp = D.Digits[static_cast<size_t>(Keep)] >= '5';
  D.Digits.resize(static_cast<size_t>(Keep));
  if (RoundUp) {
    int I = Keep - 1;
    while (I >= 0 && D.Digits[static_cast<size_t>(I)] == '9') D.Digits[static_cast<size_t>(I--)] = '0';
    if (I >= 0) {
      ++D.Digits[static_cast<size_t>(I)];
    } else {
      D.Digits.insert(D.Digits.begin(), '1');
      ++D.Exponent;
    }
  }
  while (!D.Digits.empty() && D.Digits.back() == '0') D.Digits.pop_back();
  if (D.Digits.empty()) D = {};
}

bool IsPlaceholder(char C) {
  return C == '0' || C == '#' || C == '?';
}

bool IsExponentAt(std::string_view Section, size_t Pos) {
  return (Section[Pos] == 'E' || Section[Pos] == 'e') && Pos + 1 < Section.size() &&
         (Section[Pos + 1] == '+' || Section[Pos + 1] == '-');
}

enum TItemKind : uint8_t { ikLiteral, ikIntDigit, ikFracDigit, ikDecimalPoint, ikExponent };

struct TPatternItem {
  TItemKind Kind = ikLiteral;
  char Placeholder = 0;
  std::string Text;
};

// One section, read once into the shape the renderer walks.
struct TPattern {
  std::vector<TPatternItem> Items;
  std::string IntPlaceholders;
  std::string FracPlaceholders;
  int FirstIntZero = -1;
  int LastFracZero = -1;
  bool HasDecimalPoint = false;
  bool Grouping = false;
  int ScaleThousands = 0;
  bool Scientific = false;
  bool ExponentSignAlways = false;
  char ExponentLetter = 'E';
  int ExponentMinDigits = 1;
};

// Reads a quoted literal starting at the quote at Pos; a doubled quote inside
// stands for the quote itself. An unterminated literal runs to the end.
std::string ReadQuoted(std::string_view Section, size_t& Pos) {
  char Quote = Section[Pos++];
  std::string Text;
  while (Pos < Section.size()) {
    char C = Section[Pos++];
    if (C != Quote) {
      Text += C;
    } else if (Pos < Section.size() && Section[Pos] == Quote) {
      Text += Quote;
      ++Pos;
    } else {
      break;
    }
  }
  return Text;
}

void AddLiteral(TPattern& P, std::string_view Text) {
  if (Text.empty()) return;
  if (!P.Items.empty() && P.Items.back().Kind == ikLiteral) {
    P.Items.back().Text += Text;
  } else {
    P.Items.push_back({ikLiteral, 0, std::string(Text)});
  }
}

// A run of commas groups thousands when it stands between integer
// placeholders, and divides by 1000 per comma when it closes the placeholders
// (before the decimal point or with no placeholder after it); elsewhere it is
// dropped.
void ReadCommas(TPattern& P, std::string_view Section, size_t& Pos) {
  size_t Start = Pos;
  while (Pos < Section.size() && Section[Pos] == ',') ++Pos;
  int Count = static_cast<int>(Pos - Start);
  bool PlaceholderBefore = !P.IntPlaceholders.empty() || !P.FracPlaceholders.empty();
  if (!PlaceholderBefore) return;
  bool InIntPart = !P.HasDecimalPoint;
  if (InIntPart && Pos < Section.size() && IsPlaceholder(Section[Pos])) {
    P.Grouping = true;
    return;
  }
  bool BeforePoint = InIntPart && Pos < Section.size() && Section[Pos] == '.';
  bool PlaceholderAfter = false;
  size_t I = Pos;
  while (I < Section.size() && !PlaceholderAfter && !IsExponentAt(Section, I)) {
    char C = Section[I];
    if (C == '\'' || C == '"') {
      ReadQuoted(Section, I);
    } else {
      PlaceholderAfter = IsPlaceholder(C);
      ++I;
    }
  }
  if (BeforePoint || !PlaceholderAfter) P.ScaleThousands += Count;
}

void ReadExponent(TPattern& P, std::string_view Section, size_t& Pos) {
  P.Scientific = true;
  P.ExponentLetter = Section[Pos];
  P.ExponentSignAlways = Section[Pos + 1] == '+';
  Pos += 2;
  int Zeros = 0;
  while (Pos < Section.size() && (Section[Pos] == '0' || Section[Pos] == '#')) {
    if (Section[Pos++] == '0') ++Zeros;
  }
  P.ExponentMinDigits = Zeros > 0 ? Zeros : 1;
  P.Items.push_back({ikExponent, 0, {}});
}

TPattern ParsePattern(std::string_view Section) {
  TPattern P;
  size_t Pos = 0;
  while (Pos < Section.size()) {
    char C = Section[Pos];
    if (C == '\'' || C == '"') {
      AddLiteral(P, ReadQuoted(Section, Pos));
    } else if (P.Scientific) {
      // Everything after the exponent is plain text.
      AddLiteral(P, Section.substr(Pos++, 1));
    } else if (IsPlaceholder(C)) {
      if (P.HasDecimalPoint) {
        if (C == '0') P.LastFracZero = static_cast<int>(P.FracPlaceholders.size());
        P.FracPlaceholders += C;
        P.Items.push_back({ikFracDigit, C, {}});
      } else {
        if (C == '0' && P.FirstIntZero < 0) P.FirstIntZero = static_cast<int>(P.IntPlaceholders.size());
        P.IntPlaceholders += C;
        P.Items.push_back({ikIntDigit, C, {}});
      }
      ++Pos;
    } else if (C == ',') {
      ReadCommas(P, Section, Pos);
    } else if (C == '.') {
      // Only the first point is the decimal point; later ones are ignored.
      if (!P.HasDecimalPoint) P.Items.push_back({ikDecimalPoint, 0, {}});
      P.HasDecimalPoint = true;
      ++Pos;
    } else if (IsExponentAt(Section, Pos)) {
      ReadExponent(P, Section, Pos);
    } else {
      AddLiteral(P, Section.substr(Pos++, 1));
    }
  }
  return P;
}

// The digits a pattern shows for one magnitude.
struct TNumberParts {
  std::string IntDigits;   // no leading zeros; empty below 1
  std::string FracDigits;  // exactly one per fraction placeholder
  int Exponent = 0;
  bool IsZero = true;
};

TNumberParts PrepareNumber(const TPattern& P, double AbsValue) {
  TDecimalDigits D = ToDecimalDigits(AbsValue);
  if (!D.IsZero()) D.Exponent -= 3 * P.ScaleThousands;
  const int IntCount = static_cast<int>(P.IntPlaceholders.size());
  const int FracCount = static_cast<int>(P.FracPlaceholders.size());
  TNumberParts N;
  int FirstFrac = 0;
  if (P.Scientific) {
    RoundToDigits(D, std::max(1, IntCount + FracCount));
    if (!D.IsZero()) {
      N.Exponent = D.Exponent - IntCount;
      for (int I = 0; I < IntCount; ++I) N.IntDigits += D.At(I);
      FirstFrac = IntCount;
    }
  } else {
    RoundToDigits(D, D.Exponent + FracCount);
    for (int I = 0; I < D.Exponent; ++I) N.IntDigits += D.At(I);
    FirstFrac = D.Exponent;
  }
  for (int I = 0; I < FracCount; ++I) N.FracDigits += D.At(FirstFrac + I);
  N.IsZero = D.IsZero();
  return N;
}

class TRenderer {
 public:
  TRenderer(const TPattern& P, const TNumberParts& N, bool Negative)
      : FP(P), FN(N), FSignPending(Negative), FSettings(FormatSettings()) {}

  std::string Render() {
    PrepareFraction();
    size_t FracIndex = 0;
    for (const TPatternItem& Item : FP.Items) {
      switch (Item.Kind) {
        case ikLiteral: FOut += Item.Text; break;
        case ikIntDigit: EmitIntPlaceholder(Item.Placeholder); break;
        case ikDecimalPoint: EmitDecimalPoint(); break;
        case ikFracDigit: FOut += FFraction[FracIndex++]; break;
        case ikExponent: EmitExponent(); break;
      }
    }
    // A pattern without any placeholder still shows the sign, in front.
    if (FSignPending) FOut.insert(0, "-");
    return FOut;
  }

 private:
  const TPattern& FP;
  const TNumberParts& FN;
  bool FSignPending;
  const TFormatSettings& FSettings;
  std::string FOut;
  int FIntIndex = 0;
  std::vector<std::string> FFraction;
  bool FAnyFraction = false;

  // Trailing zeros past the last "0" placeholder are insignificant: "#" drops
  // them and "?" leaves a blank.
  void PrepareFraction() {
    const std::string& Placeholders = FP.FracPlaceholders;
    FFraction.assign(Placeholders.size(), {});
    bool Significant = false;
    for (int K = static_cast<int>(Placeholders.size()) - 1; K >= 0; --K) {
      char Digit = FN.FracDigits[static_cast<size_t>(K)];
      if (!Significant && (K <= FP.LastFracZero || Digit != '0')) Significant = true;
      std::string& Out = FFraction[static_cast<size_t>(K)];
      if (Significant) {
        Out = std::string(1, Digit);
      } else if (Placeholders[static_cast<size_t>(K)] == '?') {
        Out = " ";
      }
      if (!Out.empty()) FAnyFraction = true;
    }
  }

  void EmitSign() {
    if (FSignPending) FOut += '-';
    FSignPending = false;
  }

  // Position counts integer digits from the right, 0 being the units.
  void EmitIntDigit(char Digit, size_t Position) {
    FOut += Digit;
    if (FP.Grouping && Position > 0 && Position % 3 == 0) FOut += FSettings.ThousandSeparator;
  }

  // Digits that have no placeholder of their own all go to the first one.
  void EmitOverflowDigits(size_t PlaceholderCount) {
    const std::string& Digits = FN.IntDigits;
    for (size_t J = 0; J + PlaceholderCount < Digits.size(); ++J) EmitIntDigit(Digits[J], Digits.size() - 1 - J);
  }

  void EmitIntPlaceholder(char Placeholder) {
    EmitSign();
    const size_t Count = FP.IntPlaceholders.size();
    if (FIntIndex == 0) EmitOverflowDigits(Count);
    const size_t Position = Count - 1 - static_cast<size_t>(FIntIndex);
    const std::string& Digits = FN.IntDigits;
    if (Position < Digits.size()) {
      EmitIntDigit(Digits[Digits.size() - 1 - Position], Position);
    } else if (FP.FirstIntZero >= 0 && FIntIndex >= FP.FirstIntZero) {
      EmitIntDigit('0', Position);
    } else if (Placeholder == '?') {
      FOut += ' ';
    }
    ++FIntIndex;
  }

  void EmitDecimalPoint() {
    EmitSign();
    if (FP.IntPlaceholders.empty()) EmitOverflowDigits(0);
    if (FAnyFraction) FOut += FSettings.DecimalSeparator;
  }

  void EmitExponent() {
    FOut += FP.ExponentLetter;
    if (FN.Exponent < 0) {
      FOut += '-';
    } else if (FP.ExponentSignAlways) {
      FOut += '+';
    }
    std::string Digits = std::to_string(std::abs(FN.Exponent));
    if (static_cast<int>(Digits.size()) < FP.ExponentMinDigits) {
      Digits.insert(0, static_cast<size_t>(FP.ExponentMinDigits) - Digits.size(), '0');
    }
    FOut += Digits;
  }
};

std::string RenderSection(std::string_view Section, double AbsValue, bool Negative) {
  TPattern P = ParsePattern(Section);
  TNumberParts N = PrepareNumber(P, AbsValue);
  return TRenderer(P, N, Negative && !N.IsZero).Render();
}

bool RoundsToZero(std::string_view Section, double AbsValue) {
  return PrepareNumber(ParsePattern(Section), AbsValue).IsZero;
}

std::vector<std::string_view> SplitSections(std::string_view Format) {
  std::vector<std::string_view> Sections;
  size_t Start = 0;
  char Quote = 0;
  for (size_t I = 0; I < Format.size(); ++I) {
    char C = Format[I];
    if (Quote) {
      if (C == Quote) Quote = 0;
    } else if (C == '\'' || C == '"') {
      Quote = C;
    } else if (C == ';') {
      Sections.push_back(Format.substr(Start, I - Start));
      Start = I + 1;
    }
  }
  Sections.push_back(Format.substr(Start));
  return Sections;
}

}  // namespace

std::string FormatFloat(std::string_view Format, double Value) {
  if (!std::isfinite(Value)) return GeneralNumberText(Value);
  std::vector<std::string_view> Sections = SplitSections(Format);
  std::string_view Positive = Sections[0];
  std::string_view NegativeSection = Sections.size() > 1 ? Sections[1] : std::string_view();
  std::string_view ZeroSection = Sections.size() > 2 ? Sections[2] : std::string_view();
  if (Positive.empty()) return GeneralNumberText(Value);

  const bool Negative = Value < 0;
  const double AbsValue = std::fabs(Value);
  // An empty negative or zero section falls back to the positive one; only
  // then does the number carry its own minus sign.
  std::string_view Chosen = Negative && !NegativeSection.empty() ? NegativeSection : Positive;
  if (!ZeroSection.empty() && RoundsToZero(Chosen, AbsValue)) return RenderSection(ZeroSection, 0, false);
  return RenderSection(Chosen, AbsValue, Negative && NegativeSection.empty());
}

}  // namespace Tabrino
