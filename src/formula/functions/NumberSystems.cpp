// Numbers written in other systems: Roman numerals both ways, and whole
// numbers in a radix from 2 to 36 both ways.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

// Roman symbols from the largest down.
constexpr char RomanLetters[] = {'M', 'D', 'C', 'L', 'X', 'V', 'I'};
constexpr int RomanValues[] = {1000, 500, 100, 50, 10, 5, 1};
constexpr int RomanSymbolCount = 7;

int RomanValueOf(char Letter) {
  for (int I = 0; I < RomanSymbolCount; ++I)
    if (RomanLetters[I] == Letter) return RomanValues[I];
  return 0;
}

// One step of a numeral: a symbol alone, or a smaller one before a larger
// one that it is taken from.
struct TRomanStep {
  int Value;
  std::string Text;
};

// The steps that Form (0 classic to 4 simplified) may write, largest first.
// Classic form takes C from M and D, X from C and L, I from X and V. Each
// further form lets the next smaller symbol be taken as well, so that 499 is
// CDXCIX, LDVLIV, XDIX, VDIV and ID in forms 0 to 4.
std::vector<TRomanStep> RomanSteps(int Form) {
  std::vector<TRomanStep> Steps;
  for (int Larger = 0; Larger < RomanSymbolCount; ++Larger) {
    Steps.push_back({RomanValues[Larger], std::string(1, RomanLetters[Larger])});
    if (Larger == RomanSymbolCount - 1) break;
    int Classic = Larger / 2 * 2 + 2;
    int Last = std::min(RomanSymbolCount - 1, Classic + Form);
    for (int Smaller = Classic; Smaller <= Last; ++Smaller) {
      Steps.push_back({RomanValues[Larger] - RomanValues[Smaller], {RomanLetters[Smaller], RomanLetters[Larger]}});
    }
  }
  std::sort(Steps.begin(), Steps.end(), [](const TRomanStep& A, const TRomanStep& B) { return A.Value > B.Value; });
  return Steps;
}

// The form argument: 0 to 4, TRUE for classic and FALSE for simplified.
bool RomanForm(const TFunctionCall& C, int& Form) {
  if (C.Count() < 2) {
    Form = 0;
    return true;
  }
  TCellValue Value = C[1].First();
  if (Value.Kind == cvkBoolean) {
    Form = Value.BooleanValue ? 0 : 4;
    return true;
  }
  double Number;
  if (!AsNumber(Value, Number) || !(Number >= 0 && Number < 5)) return false;
  Form = static_cast<int>(Number);
  return true;
}

// ROMAN(number, [form]): 0 to 3999, truncated; 0 is empty text.
TCellValue Roman(const TFunctionCall& C) {
  double Number;
  int Form;
  if (!ArgInteger(C[0], Number) || !RomanForm(C, Form)) return Err(ceValue);
  if (!(Number >= 0 && Number <= 3999)) return Err(ceValue);
  int Rest = static_cast<int>(Number);
  std::string Numeral;
  for (const TRomanStep& Step : RomanSteps(Form)) {
    for (; Rest >= Step.Value; Rest -= Step.Value) Numeral += Step.Text;
  }
  return Text(std::move(Numeral));
}

// ARABIC(text): any sequence of Roman symbols in either case, a symbol
// before a larger one counting negative, so that the concise forms read back
// too (MXMVII is 1997). Blanks around it are ignored, a leading "-" negates,
// empty text is 0. Anything else, numbers included, is #VALUE!.
TCellValue Arabic(const TFunctionCall& C) {
  TCellValue Value = C[0].First();
  if (Value.Kind != cvkText && Value.Kind != cvkEmpty) return Err(ceValue);
  std::string_view Numeral = TrimBlanks(Value.Text);
  constexpr size_t MaxLength = 255;
  if (Numeral.size() > MaxLength) return Err(ceValue);
  bool Negative = !Numeral.empty() && Numeral.front() == '-';
  if (Negative) Numeral.remove_prefix(1);
  if (Negative && Numeral.empty()) return Err(ceValue);
  double Total = 0;
  int Next = 0;  // the value of the symbol to the right
  for (auto It = Numeral.rbegin(); It != Numeral.rend(); ++It) {
    int Symbol = RomanValueOf(static_cast<char>(*It >= 'a' && *It <= 'z' ? *It - 'a' + 'A' : *It));
    if (Symbol == 0) return Err(ceValue);
    Total += Symbol < Next ? -Symbol : Symbol;
    Next = std::max(Next, Symbol);
  }
  return Num(Negative ? -Total : Total);
}

constexpr std::string_view Digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
// Whole numbers below 2^53 are exact in a double, which bounds BASE's input.
constexpr double ExactIntegerLimit = 9007199254740992.0;

// The radix argument, truncated: 2 to 36, else ceNum; no number is ceValue.
TCellErrorCode RadixArg(const TFormulaArg& Arg, int& Radix) {
  double Number;
  if (!ArgInteger(Arg, Number)) return ceValue;
  if (!(Number >= 2 && Number <= 36)) return ceNum;
  Radix = static_cast<int>(Number);
  return ceNone;
}

// BASE(number, radix, [minLength]): the digits of a whole number from 0 to
// below 2^53, padded with zeros to at least minLength (0 to 255).
TCellValue Base(const TFunctionCall& C) {
  double Number, MinLength;
  int Radix = 0;
  if (!ArgInteger(C[0], Number) || !OptArgInteger(C, 2, 0, MinLength)) return Err(ceValue);
  if (TCellErrorCode Code = RadixArg(C[1], Radix); Code != ceNone) return Err(Code);
  if (!(Number >= 0 && Number < ExactIntegerLimit) || !(MinLength >= 0 && MinLength <= 255)) return Err(ceNum);
  std::string Reversed;
  auto Rest = static_cast<uint64_t>(Number);
  do {
    Reversed += Digits[Rest % Radix];
    Rest /= Radix;
  } while (Rest > 0);
  Reversed.resize(std::max(Reversed.size(), static_cast<size_t>(MinLength)), '0');
  return Text(std::string(Reversed.rbegin(), Reversed.rend()));
}

int DigitValue(char Ch) {
  if (Ch >= '0' && Ch <= '9') return Ch - '0';
  if (Ch >= 'A' && Ch <= 'Z') return Ch - 'A' + 10;
  if (Ch >= 'a' && Ch <= 'z') return Ch - 'a' + 10;
  return -1;
}

// DECIMAL(text, radix): digits of the radix in either case, at most 255 of
// them; empty text is 0. A character that is no digit of the radix is #NUM!.
TCellValue Decimal(const TFunctionCall& C) {
  std::string Number = ArgText(C[0]);
  int Radix = 0;
  if (TCellErrorCode Code = RadixArg(C[1], Radix); Code != ceNone) return Err(Code);
  if (Utf16Length(Number) > 255) return Err(ceValue);
  double Result = 0;
  for (char Ch : Number) {
    int Digit = DigitValue(Ch);
    if (Digit < 0 || Digit >= Radix) return Err(ceNum);
    Result = Result * Radix + Digit;
  }
  return FiniteNum(Result);
}

}  // namespace

std::span<const TFunctionDef> NumberSystemFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ROMAN", 1, 2, fnNone, Roman},
      {"ARABIC", 1, 1, fnNone, Arabic},
      {"BASE", 2, 3, fnNone, Base},
      {"DECIMAL", 2, 2, fnNone, Decimal},
  };
  return Table;
}

}  // namespace Tabrino
