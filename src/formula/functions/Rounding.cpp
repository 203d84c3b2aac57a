// Rounding to multiples and to significant digits, whole quotients, and plain
// subtraction. CEILING and FLOOR with their older rules stand with the core
// functions; these are their later variants.
#include <cfloat>
#include <cmath>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// A quotient or a scaled value within a few units in the last place of a
// whole or half number is taken as that number: 0.3/0.1 is 3, not
// 2.9999999999999996, and 1.3/0.2 is the half 6.5, so the binary error of
// the operands never pushes a value over a rounding step.
double SnapToHalves(double V) {
  double Nearest = std::round(2 * V) / 2;
  return std::fabs(V - Nearest) <= 8 * DBL_EPSILON * std::fabs(V) ? Nearest : V;
}

// Count steps of Step. When Step is the reciprocal of a whole number (0.1,
// 0.25), dividing by that number lands on the decimal that is meant: three
// steps of 0.1 are 0.3, not 0.30000000000000004.
double Steps(double Count, double Step) {
  double Reciprocal = SnapToHalves(1 / Step);
  bool WholeReciprocal =
      std::fabs(Reciprocal) > 1 && std::fabs(Reciprocal) < 9007199254740992.0 && Reciprocal == std::trunc(Reciprocal);
  return WholeReciprocal ? Count / Reciprocal : Count * Step;
}

// Rounds a quotient to a whole number. ModeSet is a non-zero mode argument,
// which turns the direction round for negative numbers.
using TQuotientRule = double (*)(double Quotient, bool ModeSet);

// Up, or away from zero for a negative number under a mode.
double CeilingRule(double Q, bool ModeSet) {
  return Q < 0 && ModeSet ? std::floor(Q) : std::ceil(Q);
}
// Down, or toward zero for a negative number under a mode.
double FloorRule(double Q, bool ModeSet) {
  return Q < 0 && ModeSet ? std::ceil(Q) : std::floor(Q);
}

// number, [significance = 1], [mode = 0]. The significance's sign does not
// matter; a significance of 0 gives 0. The PRECISE forms are these without
// the mode argument.
template <TQuotientRule Rule>
TCellValue ToMultiple(const TFunctionCall& C) {
  double X, Significance, Mode;
  if (!ArgNumber(C[0], X) || !OptArgNumber(C, 1, 1, Significance) || !OptArgNumber(C, 2, 0, Mode)) return Err(ceValue);
  double Step = std::fabs(Significance);
  if (X == 0 || Step == 0) return Num(0);
  return FiniteNum(Steps(Rule(SnapToHalves(X / Step), Mode != 0), Step));
}

// The nearest multiple, halves away from zero (as std::round does). A number
// and a multiple of different signs are #NUM!.
TCellValue MRound(const TFunctionCall& C) {
  double X, Multiple;
  if (!ArgNumber(C[0], X) || !ArgNumber(C[1], Multiple)) return Err(ceValue);
  if (X == 0 || Multiple == 0) return Num(0);
  if ((X > 0) != (Multiple > 0)) return Err(ceNum);
  return FiniteNum(Steps(std::round(SnapToHalves(X / Multiple)), Multiple));
}

// Away from zero to the next even whole number; EVEN(0) is 0.
double EvenRule(double X) {
  return std::copysign(2 * std::ceil(std::fabs(X) / 2), X);
}
// Away from zero to the next odd whole number; ODD(0) is 1.
double OddRule(double X) {
  double Up = std::ceil(std::fabs(X));
  if (std::fmod(Up, 2) == 0) Up += 1;
  return X < 0 ? -Up : Up;
}

template <double (*Rule)(double)>
TCellValue Unary(const TFunctionCall& C) {
  double X;
  if (!ArgNumber(C[0], X)) return Err(ceValue);
  return FiniteNum(Rule(X));
}

// Rounds to Decimals places (negative: to tens, hundreds, ...) by halves away
// from zero, scaling by a power of ten that is itself exact either way.
double RoundToDecimals(double X, double Decimals) {
  if (Decimals >= 0) {
    double Scale = std::pow(10.0, Decimals);
    double Scaled = X * Scale;
    return std::isfinite(Scaled) ? std::round(SnapToHalves(Scaled)) / Scale : X;
  }
  double Scale = std::pow(10.0, -Decimals);
  return std::round(SnapToHalves(X / Scale)) * Scale;
}

// ROUNDSIG(value, digits): to that many significant digits. Digits below 1
// are #NUM!; a double holds no more than 17 of them.
TCellValue RoundSig(const TFunctionCall& C) {
  double X, Digits;
  if (!ArgNumber(C[0], X) || !ArgInteger(C[1], Digits)) return Err(ceValue);
  if (!(Digits >= 1)) return Err(ceNum);
  if (X == 0 || Digits >= 17 || !std::isfinite(X)) return FiniteNum(X);
  double Magnitude = std::floor(std::log10(std::fabs(X))) + 1;
  return FiniteNum(RoundToDecimals(X, Digits - Magnitude));
}

// The whole part of a division, toward zero.
TCellValue Quotient(const TFunctionCall& C) {
  double N, D;
  if (!ArgNumber(C[0], N) || !ArgNumber(C[1], D)) return Err(ceValue);
  if (D == 0) return Err(ceDiv0);
  return FiniteNum(std::trunc(SnapToHalves(N / D)));
}

// The first number less every later one, in order. This engine never rounds
// a difference toward 0, so it is the plain subtraction that the name
// promises.
TCellValue RawSubtract(const TFunctionCall& C) {
  std::vector<double> Numbers;
  if (!CollectNumbers(C.Args, Numbers)) return Err(ceValue);
  if (Numbers.empty()) return Num(0);
  double Result = Numbers[0];
  for (size_t I = 1; I < Numbers.size(); ++I) Result -= Numbers[I];
  return FiniteNum(Result);
}

}  // namespace

std::span<const TFunctionDef> RoundingFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CEILING.MATH", 1, 3, fnNone, ToMultiple<CeilingRule>},
      {"CEILING.PRECISE", 1, 2, fnNone, ToMultiple<CeilingRule>},
      {"ISO.CEILING", 1, 2, fnNone, ToMultiple<CeilingRule>},
      {"FLOOR.MATH", 1, 3, fnNone, ToMultiple<FloorRule>},
      {"FLOOR.PRECISE", 1, 2, fnNone, ToMultiple<FloorRule>},
      {"MROUND", 2, 2, fnNone, MRound},
      {"EVEN", 1, 1, fnNone, Unary<EvenRule>},
      {"ODD", 1, 1, fnNone, Unary<OddRule>},
      {"ROUNDSIG", 2, 2, fnNone, RoundSig},
      {"QUOTIENT", 2, 2, fnNone, Quotient},
      {"RAWSUBTRACT", 2, -1, fnNone, RawSubtract},
  };
  return Table;
}

}  // namespace Tabrino
