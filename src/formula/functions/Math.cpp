// Arithmetic built-ins: sign and rounding, modulo, powers and logarithms, and
// random numbers. A result that is not a finite number (overflow, a square
// root of a negative) is #NUM!, never a NaN or an infinity in a cell.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

TCellValue Checked(double V) {
  return std::isfinite(V) ? Num(V) : Err(ceNum);
}

// One numeric argument, one rule; the rule's domain faults come back as NaN
// or infinity and become #NUM!.
template <double (*Rule)(double)>
TCellValue Unary(const TFunctionCall& C) {
  double X;
  if (!ArgNumber(C[0], X)) return Err(ceValue);
  return Checked(Rule(X));
}

double AbsRule(double X) {
  return std::fabs(X);
}
double SignRule(double X) {
  return X > 0 ? 1 : (X < 0 ? -1 : 0);
}
double IntRule(double X) {
  return std::floor(X);
}
double SqrtRule(double X) {
  return std::sqrt(X);
}
double ExpRule(double X) {
  return std::exp(X);
}
double LnRule(double X) {
  return X > 0 ? std::log(X) : NAN;
}
double Log10Rule(double X) {
  return X > 0 ? std::log10(X) : NAN;
}

// Scaled values that lie within a few units in the last place of a whole
// number are taken as that number, so that ROUNDUP(0.1*3,1) is 0.3 and not
// 0.4: the binary error of the scaling must not push a value over a step.
double SnapToInteger(double V) {
  double Nearest = std::round(V);
  return std::fabs(V - Nearest) <= 1E-14 * std::max(1.0, std::fabs(V)) ? Nearest : V;
}

double HalfAwayFromZero(double V) {
  return std::trunc(V >= 0 ? V + 0.5 : V - 0.5);
}
double AwayFromZero(double V) {
  V = SnapToInteger(V);
  return V >= 0 ? std::ceil(V) : std::floor(V);
}
double TowardZero(double V) {
  return std::trunc(SnapToInteger(V));
}

// Multiply by 10 to the digits, make a whole number by the rule, divide back.
// Digits beyond what a double can scale leave the number as it is (or make
// it 0 when it is scaled below the smallest double).
template <double (*ToInteger)(double)>
TCellValue RoundTo(const TFunctionCall& C) {
  double X, Digits;
  if (!ArgNumber(C[0], X) || !OptArgInteger(C, 1, 0, Digits)) return Err(ceValue);
  double Scale = std::pow(10.0, Digits);
  if (Scale == 0) return Num(0);
  double Scaled = X * Scale;
  if (!std::isfinite(Scaled)) return Checked(X);
  return Checked(ToInteger(Scaled) / Scale);
}

// Multiple of Significance by the rounding rule: Round(quotient) * Significance.
// A positive number with a negative significance is #NUM!; a negative number
// with a positive significance rounds on the quotient, which turns the
// direction round (CEILING(-2.5,2) is -2, FLOOR(-2.5,2) is -4).
template <double (*Round)(double), TCellErrorCode ZeroSignificance>
TCellValue ToMultiple(const TFunctionCall& C) {
  double X, Significance;
  if (!ArgNumber(C[0], X) || !OptArgNumber(C, 1, 1, Significance)) return Err(ceValue);
  if (X == 0) return Num(0);
  if (Significance == 0) return ZeroSignificance == ceNone ? Num(0) : Err(ZeroSignificance);
  if (X > 0 && Significance < 0) return Err(ceNum);
  return Checked(Round(SnapToInteger(X / Significance)) * Significance);
}

double CeilRule(double V) {
  return std::ceil(V);
}
double FloorRule(double V) {
  return std::floor(V);
}

// The remainder takes the sign of the divisor. fmod is exact where the
// textbook n - d*INT(n/d) loses digits for large quotients.
TCellValue FnMod(const TFunctionCall& C) {
  double N, D;
  if (!ArgNumber(C[0], N) || !ArgNumber(C[1], D)) return Err(ceValue);
  if (D == 0) return Err(ceDiv0);
  double R = std::fmod(N, D);
  if (R != 0 && (R < 0) != (D < 0)) R += D;
  return Checked(R);
}

TCellValue FnPower(const TFunctionCall& C) {
  double Base, Exponent;
  if (!ArgNumber(C[0], Base) || !ArgNumber(C[1], Exponent)) return Err(ceValue);
  if (Base == 0 && Exponent < 0) return Err(ceDiv0);
  return Checked(std::pow(Base, Exponent));
}

TCellValue FnLog(const TFunctionCall& C) {
  double X, Base;
  if (!ArgNumber(C[0], X) || !OptArgNumber(C, 1, 10, Base)) return Err(ceValue);
  if (X <= 0 || Base <= 0) return Err(ceNum);
  if (Base == 1) return Err(ceDiv0);
  return Checked(std::log(X) / std::log(Base));
}

TCellValue FnPi(const TFunctionCall&) {
  return Num(std::numbers::pi);
}

std::mt19937_64& RandomEngine() {
  static std::mt19937_64 Engine{std::random_device{}()};
  return Engine;
}

TCellValue FnRand(const TFunctionCall&) {
  return Num(std::uniform_real_distribution<double>(0, 1)(RandomEngine()));
}

// Whole numbers from the smallest integer not below Low to the largest not
// above High; beyond the exact integers of a double there is no span to draw from.
TCellValue FnRandBetween(const TFunctionCall& C) {
  double Low, High;
  if (!ArgNumber(C[0], Low) || !ArgNumber(C[1], High)) return Err(ceValue);
  Low = std::ceil(Low);
  High = std::floor(High);
  constexpr double Limit = 9007199254740992.0;  // 2^53
  if (!(Low <= High) || Low < -Limit || High > Limit) return Err(ceNum);
  std::uniform_int_distribution<int64_t> Span(static_cast<int64_t>(Low), static_cast<int64_t>(High));
  return Num(static_cast<double>(Span(RandomEngine())));
}

}  // namespace

std::span<const TFunctionDef> MathFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ABS", 1, 1, fnNone, Unary<AbsRule>},
      {"SIGN", 1, 1, fnNone, Unary<SignRule>},
      {"INT", 1, 1, fnNone, Unary<IntRule>},
      {"TRUNC", 1, 2, fnNone, RoundTo<TowardZero>},
      {"ROUND", 2, 2, fnNone, RoundTo<HalfAwayFromZero>},
      {"ROUNDUP", 2, 2, fnNone, RoundTo<AwayFromZero>},
      {"ROUNDDOWN", 2, 2, fnNone, RoundTo<TowardZero>},
      {"CEILING", 1, 2, fnNone, ToMultiple<CeilRule, ceNone>},
      {"FLOOR", 1, 2, fnNone, ToMultiple<FloorRule, ceDiv0>},
      {"MOD", 2, 2, fnNone, FnMod},
      {"POWER", 2, 2, fnNone, FnPower},
      {"SQRT", 1, 1, fnNone, Unary<SqrtRule>},
      {"EXP", 1, 1, fnNone, Unary<ExpRule>},
      {"LN", 1, 1, fnNone, Unary<LnRule>},
      {"LOG", 1, 2, fnNone, FnLog},
      {"LOG10", 1, 1, fnNone, Unary<Log10Rule>},
      {"PI", 0, 0, fnNone, FnPi},
      {"RAND", 0, 0, fnVolatile, FnRand},
      {"RANDBETWEEN", 2, 2, fnVolatile, FnRandBetween},
  };
  return Table;
}

}  // namespace Tabrino
