// Trigonometric and hyperbolic functions with their inverses, angle
// conversion and SQRTPI. Angles are radians. A value outside a function's
// domain is #NUM!; a pole at 0 (COT, CSC, COTH, CSCH) is #DIV/0!.
#include <cmath>
#include <numbers>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// The reciprocal functions refuse arguments of 2^27 or more in magnitude, as
// documented: so far out, a double no longer pins down the angle's phase.
constexpr double ReciprocalLimit = 134217728.0;

// One numeric argument, one rule; the rule reports its domain faults as NaN
// or infinity, which become #NUM!.
template <double (*Rule)(double)>
TCellValue Unary(const TFunctionCall& C) {
  double X;
  if (!ArgNumber(C[0], X)) return Err(ceValue);
  return FiniteNum(Rule(X));
}

// A reciprocal function: its pole at 0 is #DIV/0!, a huge argument #NUM!.
template <double (*Rule)(double), bool PoleAtZero>
TCellValue Reciprocal(const TFunctionCall& C) {
  double X;
  if (!ArgNumber(C[0], X)) return Err(ceValue);
  if (PoleAtZero && X == 0) return Err(ceDiv0);
  if (!(std::fabs(X) < ReciprocalLimit)) return Err(ceNum);
  return FiniteNum(Rule(X));
}

double Sin(double X) {
  return std::sin(X);
}
double Cos(double X) {
  return std::cos(X);
}
double Tan(double X) {
  return std::tan(X);
}
double Asin(double X) {
  return std::asin(X);
}
double Acos(double X) {
  return std::acos(X);
}
double Atan(double X) {
  return std::atan(X);
}
// Between 0 and pi, so that ACOT(-1) is 3pi/4 and not -pi/4.
double Acot(double X) {
  return std::atan2(1.0, X);
}
double Sinh(double X) {
  return std::sinh(X);
}
double Cosh(double X) {
  return std::cosh(X);
}
double Tanh(double X) {
  return std::tanh(X);
}
double Asinh(double X) {
  return std::asinh(X);
}
double Acosh(double X) {
  return std::acosh(X);
}
// The open interval: atanh(1) would be an infinity, which is #NUM! too.
double Atanh(double X) {
  return std::atanh(X);
}
double Acoth(double X) {
  return std::fabs(X) > 1 ? std::atanh(1 / X) : NAN;
}
double Cot(double X) {
  return 1 / std::tan(X);
}
double Csc(double X) {
  return 1 / std::sin(X);
}
double Sec(double X) {
  return 1 / std::cos(X);
}
double Coth(double X) {
  return 1 / std::tanh(X);
}
double Csch(double X) {
  return 1 / std::sinh(X);
}
double Sech(double X) {
  return 1 / std::cosh(X);
}
double Degrees(double X) {
  return X * 180 / std::numbers::pi;
}
double Radians(double X) {
  return X * std::numbers::pi / 180;
}
double SqrtPi(double X) {
  return X >= 0 ? std::sqrt(X * std::numbers::pi) : NAN;
}

// ATAN2(x, y): the angle of the point (x, y), x first as documented; the
// origin has no angle.
TCellValue Atan2(const TFunctionCall& C) {
  double X, Y;
  if (!ArgNumber(C[0], X) || !ArgNumber(C[1], Y)) return Err(ceValue);
  if (X == 0 && Y == 0) return Err(ceDiv0);
  return FiniteNum(std::atan2(Y, X));
}

}  // namespace

std::span<const TFunctionDef> TrigonometryFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"SIN", 1, 1, fnNone, Unary<Sin>},
      {"COS", 1, 1, fnNone, Unary<Cos>},
      {"TAN", 1, 1, fnNone, Unary<Tan>},
      {"ASIN", 1, 1, fnNone, Unary<Asin>},
      {"ACOS", 1, 1, fnNone, Unary<Acos>},
      {"ATAN", 1, 1, fnNone, Unary<Atan>},
      {"ATAN2", 2, 2, fnNone, Atan2},
      {"ACOT", 1, 1, fnNone, Unary<Acot>},
      {"COT", 1, 1, fnNone, Reciprocal<Cot, true>},
      {"CSC", 1, 1, fnNone, Reciprocal<Csc, true>},
      {"SEC", 1, 1, fnNone, Reciprocal<Sec, false>},
      {"SINH", 1, 1, fnNone, Unary<Sinh>},
      {"COSH", 1, 1, fnNone, Unary<Cosh>},
      {"TANH", 1, 1, fnNone, Unary<Tanh>},
      {"ASINH", 1, 1, fnNone, Unary<Asinh>},
      {"ACOSH", 1, 1, fnNone, Unary<Acosh>},
      {"ATANH", 1, 1, fnNone, Unary<Atanh>},
      {"ACOTH", 1, 1, fnNone, Unary<Acoth>},
      {"COTH", 1, 1, fnNone, Reciprocal<Coth, true>},
      {"CSCH", 1, 1, fnNone, Reciprocal<Csch, true>},
      {"SECH", 1, 1, fnNone, Reciprocal<Sech, false>},
      {"DEGREES", 1, 1, fnNone, Unary<Degrees>},
      {"RADIANS", 1, 1, fnNone, Unary<Radians>},
      {"SQRTPI", 1, 1, fnNone, Unary<SqrtPi>},
  };
  return Table;
}

}  // namespace Tabrino
