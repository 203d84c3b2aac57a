// Engineering built-ins on plain numbers: conversions between the binary,
// octal, decimal and hexadecimal systems, bitwise operations, DELTA, GESTEP
// and the error functions.
//
// A number in another base is text of at most 10 digits in two's complement:
// 10 binary digits hold -512..511, 10 octal digits 30 bits, 10 hexadecimal
// digits 40 bits. A negative result is always written with all 10 digits.
#include <cmath>
#include <cstdint>
#include <string>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

constexpr int BaseDigits = 10;

struct TBase {
  int Radix;
  int BitsPerDigit;
  int Bits() const { return BitsPerDigit * BaseDigits; }
  int64_t Min() const { return -(int64_t{1} << (Bits() - 1)); }
  int64_t Max() const { return (int64_t{1} << (Bits() - 1)) - 1; }
};

constexpr TBase Binary{2, 1}, Octal{8, 3}, Hexadecimal{16, 4};
// The decimal side of DEC2HEX and HEX2DEC: the range of 40-bit two's complement.
constexpr int64_t DecimalMin = -(int64_t{1} << 39), DecimalMax = (int64_t{1} << 39) - 1;

int DigitValue(char C) {
  if (C >= '0' && C <= '9') return C - '0';
  if (C >= 'A' && C <= 'F') return C - 'A' + 10;
  if (C >= 'a' && C <= 'f') return C - 'a' + 10;
  return 99;
}

// The digits of a number in Base: text as it stands, a number as its general
// text (so the number 1010 reads as the digits 1010), empty as zero. Booleans
// and errors are no digits at all.
bool BaseText(const TCellValue& Value, std::string& Digits) {
  switch (Value.Kind) {
    case cvkEmpty: Digits.clear(); return true;
    case cvkText: Digits = Value.Text; return true;
    case cvkNumber: Digits = GeneralNumberText(Value.Number); return true;
    default: return false;
  }
}

// Reads up to 10 digits of Base in two's complement. ceValue for a value that
// has no digits, ceNum for anything that is not a valid number of that base.
TCellErrorCode ParseBase(const TFormulaArg& Arg, TBase Base, int64_t& Number) {
  std::string Digits;
  if (!BaseText(Arg.First(), Digits)) return ceValue;
  if (Digits.size() > BaseDigits) return ceNum;
  uint64_t Unsigned = 0;
  for (char C : Digits) {
    int D = DigitValue(C);
    if (D >= Base.Radix) return ceNum;
    Unsigned = Unsigned * Base.Radix + D;
  }
  bool Negative = Digits.size() == BaseDigits && (Unsigned >> (Base.Bits() - 1)) != 0;
  Number = static_cast<int64_t>(Unsigned) - (Negative ? int64_t{1} << Base.Bits() : 0);
  return ceNone;
}

// The optional places argument: 0 when absent (as few digits as needed),
// else truncated and between 1 and 10.
TCellErrorCode ReadPlaces(const TFunctionCall& C, size_t Index, int& Places) {
  Places = 0;
  if (Index >= C.Count()) return ceNone;
  double P;
  if (!ArgInteger(C[Index], P)) return ceValue;
  if (P < 1 || P > BaseDigits) return ceNum;
  Places = static_cast<int>(P);
  return ceNone;
}

// Number written in Base: negative numbers in ten digits of two's complement
// (places ignored), others padded to Places, which they may not exceed.
TCellValue FormatBase(int64_t Number, TBase Base, int Places) {
  if (Number < Base.Min() || Number > Base.Max()) return Err(ceNum);
  uint64_t Unsigned = static_cast<uint64_t>(Number) & ((uint64_t{1} << Base.Bits()) - 1);
  std::string Digits;
  do {
    Digits.insert(Digits.begin(), "0123456789ABCDEF"[Unsigned % Base.Radix]);
    Unsigned /= Base.Radix;
  } while (Unsigned != 0);
  if (Number >= 0 && Places > 0) {
    if (Digits.size() > static_cast<size_t>(Places)) return Err(ceNum);
    Digits.insert(0, Places - Digits.size(), '0');
  }
  return Text(std::move(Digits));
}

template <const TBase& From>
TCellValue ToDecimal(const TFunctionCall& C) {
  int64_t Number;
  TCellErrorCode Code = ParseBase(C[0], From, Number);
  return Code == ceNone ? Num(static_cast<double>(Number)) : Err(Code);
}

template <const TBase& From, const TBase& To>
TCellValue BaseToBase(const TFunctionCall& C) {
  int64_t Number;
  int Places;
  TCellErrorCode Code = ParseBase(C[0], From, Number);
  if (Code == ceNone) Code = ReadPlaces(C, 1, Places);
  return Code == ceNone ? FormatBase(Number, To, Places) : Err(Code);
}

template <const TBase& To>
TCellValue FromDecimal(const TFunctionCall& C) {
  double X;
  if (!ArgInteger(C[0], X)) return Err(ceValue);
  int Places;
  if (TCellErrorCode Code = ReadPlaces(C, 1, Places); Code != ceNone) return Err(Code);
  // Beyond what the widest base holds is out for every base; FormatBase then
  // checks the range of the one asked for.
  if (!(X >= DecimalMin && X <= DecimalMax)) return Err(ceNum);
  return FormatBase(static_cast<int64_t>(X), To, Places);
}

// Bitwise operands are whole numbers from 0 below 2^48.
constexpr double BitLimit = 281474976710656.0;  // 2^48

TCellErrorCode BitOperand(const TFormulaArg& Arg, uint64_t& Bits) {
  double X;
  if (!ArgNumber(Arg, X)) return ceValue;
  if (!(X >= 0 && X < BitLimit) || X != std::trunc(X)) return ceNum;
  Bits = static_cast<uint64_t>(X);
  return ceNone;
}

template <uint64_t (*Op)(uint64_t, uint64_t)>
TCellValue Bitwise(const TFunctionCall& C) {
  uint64_t A, B;
  TCellErrorCode Code = BitOperand(C[0], A);
  if (Code == ceNone) Code = BitOperand(C[1], B);
  return Code == ceNone ? Num(static_cast<double>(Op(A, B))) : Err(Code);
}

uint64_t AndOp(uint64_t A, uint64_t B) {
  return A & B;
}
uint64_t OrOp(uint64_t A, uint64_t B) {
  return A | B;
}
uint64_t XorOp(uint64_t A, uint64_t B) {
  return A ^ B;
}

// Shifts left by Shift bits (right for a negative Shift); the amount is
// truncated and at most 53 either way, the result below 2^48.
TCellValue Shift(const TFunctionCall& C, double Direction) {
  uint64_t Bits;
  if (TCellErrorCode Code = BitOperand(C[0], Bits); Code != ceNone) return Err(Code);
  double Amount;
  if (!ArgInteger(C[1], Amount)) return Err(ceValue);
  if (!(std::fabs(Amount) <= 53)) return Err(ceNum);
  int Left = static_cast<int>(Amount * Direction);
  double Result = Left >= 0 ? std::ldexp(static_cast<double>(Bits), Left) : static_cast<double>(Bits >> -Left);
  return Result < BitLimit ? Num(Result) : Err(ceNum);
}

TCellValue BitLShift(const TFunctionCall& C) {
  return Shift(C, 1);
}
TCellValue BitRShift(const TFunctionCall& C) {
  return Shift(C, -1);
}

TCellValue Delta(const TFunctionCall& C) {
  double A, B;
  if (!ArgNumber(C[0], A) || !OptArgNumber(C, 1, 0, B)) return Err(ceValue);
  return Num(A == B ? 1 : 0);
}

TCellValue GeStep(const TFunctionCall& C) {
  double X, Step;
  if (!ArgNumber(C[0], X) || !OptArgNumber(C, 1, 0, Step)) return Err(ceValue);
  return Num(X >= Step ? 1 : 0);
}

TCellValue Finite(double V) {
  return std::isfinite(V) ? Num(V) : Err(ceNum);
}

// erf(B) - erf(A), through erfc where both lie on one side of 0, so that the
// integral between two points far out keeps its digits.
double ErfBetween(double A, double B) {
  if (A >= 0 && B >= 0) return std::erfc(A) - std::erfc(B);
  if (A <= 0 && B <= 0) return std::erfc(-B) - std::erfc(-A);
  return std::erf(B) - std::erf(A);
}

TCellValue Erf(const TFunctionCall& C) {
  double Lower, Upper;
  if (!ArgNumber(C[0], Lower)) return Err(ceValue);
  if (C.Count() < 2) return Finite(std::erf(Lower));
  if (!ArgNumber(C[1], Upper)) return Err(ceValue);
  return Finite(ErfBetween(Lower, Upper));
}

template <double (*Rule)(double)>
TCellValue OneNumber(const TFunctionCall& C) {
  double X;
  if (!ArgNumber(C[0], X)) return Err(ceValue);
  return Finite(Rule(X));
}

double ErfRule(double X) {
  return std::erf(X);
}
double ErfcRule(double X) {
  return std::erfc(X);
}

}  // namespace

std::span<const TFunctionDef> EngineeringFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"BIN2DEC", 1, 1, fnNone, ToDecimal<Binary>},
      {"BIN2HEX", 1, 2, fnNone, BaseToBase<Binary, Hexadecimal>},
      {"BIN2OCT", 1, 2, fnNone, BaseToBase<Binary, Octal>},
      {"DEC2BIN", 1, 2, fnNone, FromDecimal<Binary>},
      {"DEC2HEX", 1, 2, fnNone, FromDecimal<Hexadecimal>},
      {"DEC2OCT", 1, 2, fnNone, FromDecimal<Octal>},
      {"HEX2BIN", 1, 2, fnNone, BaseToBase<Hexadecimal, Binary>},
      {"HEX2DEC", 1, 1, fnNone, ToDecimal<Hexadecimal>},
      {"HEX2OCT", 1, 2, fnNone, BaseToBase<Hexadecimal, Octal>},
      {"OCT2BIN", 1, 2, fnNone, BaseToBase<Octal, Binary>},
      {"OCT2DEC", 1, 1, fnNone, ToDecimal<Octal>},
      {"OCT2HEX", 1, 2, fnNone, BaseToBase<Octal, Hexadecimal>},
      {"BITAND", 2, 2, fnNone, Bitwise<AndOp>},
      {"BITOR", 2, 2, fnNone, Bitwise<OrOp>},
      {"BITXOR", 2, 2, fnNone, Bitwise<XorOp>},
      {"BITLSHIFT", 2, 2, fnNone, BitLShift},
      {"BITRSHIFT", 2, 2, fnNone, BitRShift},
      {"DELTA", 1, 2, fnNone, Delta},
      {"GESTEP", 1, 2, fnNone, GeStep},
      {"ERF", 1, 2, fnNone, Erf},
      {"ERF.PRECISE", 1, 1, fnNone, OneNumber<ErfRule>},
      {"ERFC", 1, 1, fnNone, OneNumber<ErfcRule>},
      {"ERFC.PRECISE", 1, 1, fnNone, OneNumber<ErfcRule>},
  };
  return Table;
}

}  // namespace Tabrino
