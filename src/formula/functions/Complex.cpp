// Complex numbers as text: "3+4i", "-2.5j", "i", "-j", "7". The suffix is a
// lower-case i or j; the numbers read and print under the locale's decimal
// separator, like every other number. Results print each part with at most
// 15 significant digits, a unit imaginary part as a bare "i" ("1+i", "-i"),
// a pure real number without suffix and a pure imaginary one without its
// zero real part. Text that is no complex number is #NUM!, a boolean or an
// error #VALUE!; an empty value is 0. Results that leave the doubles (a
// division by 0, a logarithm of 0, an overflow) are #NUM!.
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.NumberParse.h"

namespace Tabrino {

namespace {

using TComplex = std::complex<double>;

// The suffix seen so far over the arguments of one call; mixing i and j is
// an error.
class TSuffix {
 public:
  bool Merge(char Suffix) {
    if (Suffix == 0) return true;
    if (FSuffix != 0 && FSuffix != Suffix) return false;
    FSuffix = Suffix;
    return true;
  }
  char Get() const { return FSuffix == 0 ? 'i' : FSuffix; }

 private:
  char FSuffix = 0;
};

// The real part of a complex text, or a coefficient of the imaginary unit
// where a lone sign (or nothing) means 1.
bool ReadPart(std::string_view Text, bool IsCoefficient, double& Number) {
  if (IsCoefficient && (Text.empty() || Text == "+" || Text == "-")) {
    Number = Text == "-" ? -1 : 1;
    return true;
  }
  return !Text.empty() && TryTextToFloat(Text, Number);
}

// "a", "bi", "a+bi", "a-bi", "i", "-i", "a+i", with i or j.
bool ParseComplexText(std::string_view Text, TComplex& Z, char& Suffix) {
  Suffix = 0;
  if (Text.empty()) {
    Z = 0;
    return true;
  }
  if (Text.find(' ') != std::string_view::npos) return false;
  double Re = 0, Im = 0;
  if (Text.back() != 'i' && Text.back() != 'j') {
    if (!ReadPart(Text, false, Re)) return false;
    Z = Re;
    return true;
  }
  Suffix = Text.back();
  Text.remove_suffix(1);
  // The imaginary part starts at the last sign that is neither leading nor an exponent's.
  size_t Split = 0;
  for (size_t I = Text.size(); I-- > 1;) {
    if ((Text[I] == '+' || Text[I] == '-') && Text[I - 1] != 'e' && Text[I - 1] != 'E') {
      Split = I;
      break;
    }
  }
  if (Split > 0 && !ReadPart(Text.substr(0, Split), false, Re)) return false;
  if (!ReadPart(Text.substr(Split), true, Im)) return false;
  Z = {Re, Im};
  return true;
}

// Reads one complex value: text parses, a number is real, empty is 0.
TCellErrorCode ReadComplex(const TCellValue& Value, TComplex& Z, TSuffix& Suffix) {
  char Seen = 0;
  switch (Value.Kind) {
    case cvkEmpty: Z = 0; return ceNone;
    case cvkNumber: Z = Value.Number; return ceNone;
    case cvkText:
      if (!ParseComplexText(Value.Text, Z, Seen)) return ceNum;
      return Suffix.Merge(Seen) ? ceNone : ceValue;
    default: return ceValue;
  }
}

std::string FormatComplex(TComplex Z, char Suffix) {
  std::string Re = GeneralNumberText(Z.real());
  if (Z.imag() == 0) return Re;
  std::string Im = GeneralNumberText(Z.imag());
  // A coefficient that prints as 1 is left out: "i", "-i", "3+i".
  if (Im == "1" || Im == "-1") Im.pop_back();
  Im += Suffix;
  if (Z.real() == 0) return Im;
  return Re + (Z.imag() > 0 ? "+" : "") + Im;
}

TCellValue ComplexResult(TComplex Z, const TSuffix& Suffix) {
  if (!std::isfinite(Z.real()) || !std::isfinite(Z.imag())) return Err(ceNum);
  return Text(FormatComplex(Z, Suffix.Get()));
}

TCellValue Complex(const TFunctionCall& C) {
  double Re, Im;
  if (!ArgNumber(C[0], Re) || !ArgNumber(C[1], Im)) return Err(ceValue);
  std::string Suffix = C.Count() > 2 ? ArgText(C[2]) : "";
  if (!(Suffix.empty() || Suffix == "i" || Suffix == "j")) return Err(ceValue);
  TSuffix S;
  S.Merge(Suffix.empty() ? 'i' : Suffix[0]);
  return ComplexResult({Re, Im}, S);
}

// One complex argument to a complex result; the rule's domain faults come
// back as infinities or NaNs and become #NUM!.
template <TComplex (*Rule)(TComplex)>
TCellValue ComplexUnary(const TFunctionCall& C) {
  TComplex Z;
  TSuffix Suffix;
  if (TCellErrorCode Code = ReadComplex(C[0].First(), Z, Suffix); Code != ceNone) return Err(Code);
  return ComplexResult(Rule(Z), Suffix);
}

// One complex argument to a real number.
template <double (*Rule)(TComplex)>
TCellValue ComplexToReal(const TFunctionCall& C) {
  TComplex Z;
  TSuffix Suffix;
  if (TCellErrorCode Code = ReadComplex(C[0].First(), Z, Suffix); Code != ceNone) return Err(Code);
  double R = Rule(Z);
  return std::isfinite(R) ? Num(R) : Err(ceNum);
}

// Two complex arguments to a complex result.
template <TComplex (*Rule)(TComplex, TComplex)>
TCellValue ComplexBinary(const TFunctionCall& C) {
  TComplex A, B;
  TSuffix Suffix;
  TCellErrorCode Code = ReadComplex(C[0].First(), A, Suffix);
  if (Code == ceNone) Code = ReadComplex(C[1].First(), B, Suffix);
  if (Code != ceNone) return Err(Code);
  return ComplexResult(Rule(A, B), Suffix);
}

// IMSUM and IMPRODUCT: every value of every argument, empty cells of ranges
// left out.
template <TComplex (*Rule)(TComplex, TComplex)>
TCellValue ComplexFold(const TFunctionCall& C, TComplex Start) {
  TComplex Result = Start;
  TSuffix Suffix;
  for (const TFormulaArg& Arg : C.Args) {
    for (const TCellValue& V : ArgValues(Arg)) {
      if (Arg.IsRange && V.Kind == cvkEmpty) continue;
      TComplex Z;
      if (TCellErrorCode Code = ReadComplex(V, Z, Suffix); Code != ceNone) return Err(Code);
      Result = Rule(Result, Z);
    }
  }
  return ComplexResult(Result, Suffix);
}

TComplex Add(TComplex A, TComplex B) {
  return A + B;
}
TComplex Subtract(TComplex A, TComplex B) {
  return A - B;
}
TComplex Multiply(TComplex A, TComplex B) {
  return A * B;
}
TComplex Divide(TComplex A, TComplex B) {
  return B == TComplex(0) ? TComplex(NAN) : A / B;
}

TCellValue ImSum(const TFunctionCall& C) {
  return ComplexFold<Add>(C, 0);
}
TCellValue ImProduct(const TFunctionCall& C) {
  return ComplexFold<Multiply>(C, 1);
}

// Powers and roots in polar form, r^n (cos n theta + i sin n theta): so
// IMPOWER("i",2) carries the rounding of cos and sin like other spreadsheets.
TComplex PolarPower(TComplex Z, double N) {
  double R = std::abs(Z);
  if (R == 0) return N > 0 ? TComplex(0) : TComplex(NAN);
  double Theta = std::arg(Z);
  return std::pow(R, N) * TComplex(std::cos(N * Theta), std::sin(N * Theta));
}

TCellValue ImPower(const TFunctionCall& C) {
  TComplex Z;
  TSuffix Suffix;
  if (TCellErrorCode Code = ReadComplex(C[0].First(), Z, Suffix); Code != ceNone) return Err(Code);
  double N;
  if (!ArgNumber(C[1], N)) return Err(ceValue);
  return ComplexResult(PolarPower(Z, N), Suffix);
}

TComplex Sqrt(TComplex Z) {
  return PolarPower(Z, 0.5);
}
TComplex Conjugate(TComplex Z) {
  return std::conj(Z);
}
TComplex Exp(TComplex Z) {
  return std::exp(Z);
}
TComplex Ln(TComplex Z) {
  return std::log(Z);
}
TComplex Log10(TComplex Z) {
  return std::log(Z) / std::numbers::ln10;
}
TComplex Log2(TComplex Z) {
  return std::log(Z) / std::numbers::ln2;
}
TComplex Sin(TComplex Z) {
  return std::sin(Z);
}
TComplex Cos(TComplex Z) {
  return std::cos(Z);
}
TComplex Tan(TComplex Z) {
  return std::tan(Z);
}
TComplex Sinh(TComplex Z) {
  return std::sinh(Z);
}
TComplex Cosh(TComplex Z) {
  return std::cosh(Z);
}
// The reciprocals: a zero denominator gives NaN, so #NUM!.
template <TComplex (*F)(TComplex)>
TComplex Reciprocal(TComplex Z) {
  return Divide(1, F(Z));
}

double Abs(TComplex Z) {
  return std::hypot(Z.real(), Z.imag());
}
double Real(TComplex Z) {
  return Z.real();
}
double Imaginary(TComplex Z) {
  return Z.imag();
}

TCellValue ImArgument(const TFunctionCall& C) {
  TComplex Z;
  TSuffix Suffix;
  if (TCellErrorCode Code = ReadComplex(C[0].First(), Z, Suffix); Code != ceNone) return Err(Code);
  if (Z == TComplex(0)) return Err(ceDiv0);
  double Angle = std::arg(Z);
  return std::isfinite(Angle) ? Num(Angle) : Err(ceNum);
}

}  // namespace

std::span<const TFunctionDef> ComplexFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"COMPLEX", 2, 3, fnNone, Complex},
      {"IMABS", 1, 1, fnNone, ComplexToReal<Abs>},
      {"IMAGINARY", 1, 1, fnNone, ComplexToReal<Imaginary>},
      {"IMARGUMENT", 1, 1, fnNone, ImArgument},
      {"IMCONJUGATE", 1, 1, fnNone, ComplexUnary<Conjugate>},
      {"IMCOS", 1, 1, fnNone, ComplexUnary<Cos>},
      {"IMCOSH", 1, 1, fnNone, ComplexUnary<Cosh>},
      {"IMCOT", 1, 1, fnNone, ComplexUnary<Reciprocal<Tan>>},
      {"IMCSC", 1, 1, fnNone, ComplexUnary<Reciprocal<Sin>>},
      {"IMCSCH", 1, 1, fnNone, ComplexUnary<Reciprocal<Sinh>>},
      {"IMDIV", 2, 2, fnNone, ComplexBinary<Divide>},
      {"IMEXP", 1, 1, fnNone, ComplexUnary<Exp>},
      {"IMLN", 1, 1, fnNone, ComplexUnary<Ln>},
      {"IMLOG10", 1, 1, fnNone, ComplexUnary<Log10>},
      {"IMLOG2", 1, 1, fnNone, ComplexUnary<Log2>},
      {"IMPOWER", 2, 2, fnNone, ImPower},
      {"IMPRODUCT", 1, -1, fnNone, ImProduct},
      {"IMREAL", 1, 1, fnNone, ComplexToReal<Real>},
      {"IMSEC", 1, 1, fnNone, ComplexUnary<Reciprocal<Cos>>},
      {"IMSECH", 1, 1, fnNone, ComplexUnary<Reciprocal<Cosh>>},
      {"IMSIN", 1, 1, fnNone, ComplexUnary<Sin>},
      {"IMSINH", 1, 1, fnNone, ComplexUnary<Sinh>},
      {"IMSQRT", 1, 1, fnNone, ComplexUnary<Sqrt>},
      {"IMSUB", 2, 2, fnNone, ComplexBinary<Subtract>},
      {"IMSUM", 1, -1, fnNone, ImSum},
      {"IMTAN", 1, 1, fnNone, ComplexUnary<Tan>},
  };
  return Table;
}

}  // namespace Tabrino
