// Counting: factorials, combinations, multinomials, and the greatest common
// divisor and least common multiple. Arguments are truncated to whole
// numbers; a negative one is #NUM!, and so is a count too large for a double.
#include <cmath>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// 2^53: beyond it a double no longer holds every whole number, so divisors
// and multiples would be guesses.
constexpr double ExactIntegerLimit = 9007199254740992.0;

// N choose K for whole numbers 0 <= K <= N. Each step's value is itself a
// binomial coefficient, so the product stays whole while it fits in a double;
// the loop ends once the result has overflowed, at most a few hundred steps
// past where it stops fitting.
double Binomial(double N, double K) {
  K = std::min(K, N - K);
  double Result = 1;
  for (double I = 1; I <= K && std::isfinite(Result); ++I) Result = Result * (N - K + I) / I;
  return Result;
}

// The two count arguments of COMBIN and COMBINA, truncated; false when they
// are no numbers.
bool CountArgs(const TFunctionCall& C, double& N, double& K) {
  return ArgInteger(C[0], N) && ArgInteger(C[1], K);
}

bool IsCount(double X) {
  return X >= 0 && std::isfinite(X);
}

TCellValue Combin(const TFunctionCall& C) {
  double N, K;
  if (!CountArgs(C, N, K)) return Err(ceValue);
  if (!IsCount(N) || !IsCount(K) || N < K) return Err(ceNum);
  return FiniteNum(Binomial(N, K));
}

// Combinations with repetition: (N+K-1) choose K. The number must not be
// below the number chosen, as documented.
TCellValue CombinA(const TFunctionCall& C) {
  double N, K;
  if (!CountArgs(C, N, K)) return Err(ceValue);
  if (!IsCount(N) || !IsCount(K) || N < K) return Err(ceNum);
  return FiniteNum(K == 0 ? 1 : Binomial(N + K - 1, K));
}

// The product N * (N - Step) * ... down to 1 or 2; it stops once overflowed.
double FallingProduct(double N, double Step) {
  double Result = 1;
  for (double F = N; F > 1 && std::isfinite(Result); F -= Step) Result *= F;
  return Result;
}

template <double Step>
TCellValue Factorial(const TFunctionCall& C) {
  double N;
  if (!ArgInteger(C[0], N)) return Err(ceValue);
  if (!IsCount(N)) return Err(ceNum);
  return FiniteNum(FallingProduct(N, Step));
}

// The whole numbers of every argument (ranges give their number cells),
// truncated; ceNum for a negative one or one past the exact integers.
TCellErrorCode WholeNumbers(const TFunctionCall& C, std::vector<double>& Numbers) {
  if (!CollectNumbers(C.Args, Numbers)) return ceValue;
  for (double& X : Numbers) {
    X = std::trunc(X);
    if (!(X >= 0 && X < ExactIntegerLimit)) return ceNum;
  }
  return ceNone;
}

double Gcd(double A, double B) {
  while (B != 0) {
    double R = std::fmod(A, B);
    A = B;
    B = R;
  }
  return A;
}

TCellValue GcdFn(const TFunctionCall& C) {
  std::vector<double> Numbers;
  if (TCellErrorCode Code = WholeNumbers(C, Numbers); Code != ceNone) return Err(Code);
  double Result = 0;
  for (double X : Numbers) Result = Gcd(Result, X);
  return Num(Result);
}

// A multiple of 0 is 0; a multiple past the exact integers is #NUM!.
TCellValue LcmFn(const TFunctionCall& C) {
  std::vector<double> Numbers;
  if (TCellErrorCode Code = WholeNumbers(C, Numbers); Code != ceNone) return Err(Code);
  if (Numbers.empty()) return Num(0);
  double Result = 1;
  for (double X : Numbers) {
    if (X == 0) return Num(0);
    Result = Result / Gcd(Result, X) * X;
    if (Result >= ExactIntegerLimit) return Err(ceNum);
  }
  return Num(Result);
}

// (a1 + a2 + ...)! / (a1! a2! ...), built as a product of binomials so that
// no factorial on the way overflows before the result does.
TCellValue Multinomial(const TFunctionCall& C) {
  std::vector<double> Numbers;
  if (!CollectNumbers(C.Args, Numbers)) return Err(ceValue);
  double Total = 0, Result = 1;
  for (double X : Numbers) {
    X = std::trunc(X);
    if (!IsCount(X)) return Err(ceNum);
    Total += X;
    Result *= Binomial(Total, X);
    if (!std::isfinite(Result)) return Err(ceNum);
  }
  return Num(Result);
}

}  // namespace

std::span<const TFunctionDef> CombinatoricsFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"FACT", 1, 1, fnNone, Factorial<1.0>},
      {"FACTDOUBLE", 1, 1, fnNone, Factorial<2.0>},
      {"COMBIN", 2, 2, fnNone, Combin},
      {"COMBINA", 2, 2, fnNone, CombinA},
      {"MULTINOMIAL", 1, -1, fnNone, Multinomial},
      {"GCD", 1, -1, fnNone, GcdFn},
      {"LCM", 1, -1, fnNone, LcmFn},
  };
  return Table;
}

}  // namespace Tabrino
