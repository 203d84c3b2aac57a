// What the distribution families share: their argument helpers, and the
// built-in bodies that the table of legacy names calls under the old names.
#pragma once

#include <cmath>
#include <initializer_list>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino::DistributionBuiltins {

// The numbers of the leading arguments, in order; false when one of them
// does not convert.
inline bool ReadNumbers(const TFunctionCall& Call, std::initializer_list<double*> Numbers) {
  size_t Index = 0;
  for (double* Number : Numbers)
    if (!ArgNumber(Call[Index++], *Number)) return false;
  return true;
}

// A logical argument: an error value is no truth value.
inline bool ReadFlag(const TFormulaArg& Arg, bool& Flag) {
  TCellValue Value = Arg.First();
  if (Value.Kind == cvkError) return false;
  Flag = ValueIsTruthy(Value);
  return true;
}

// A finite result, else #NUM!.
inline TCellValue Checked(double V) {
  return std::isfinite(V) ? Num(V) : Err(ceNum);
}

inline bool IsProbability(double P) {
  return P >= 0 && P <= 1;
}
inline bool IsOpenProbability(double P) {
  return P > 0 && P < 1;
}

// Degrees of freedom are truncated and must lie in [1, 1E10].
inline bool ValidDegrees(double& Df) {
  Df = std::trunc(Df);
  return Df >= 1 && Df <= 1E10;
}

// Continuous distributions (Distributions.cpp).
TCellValue NormDist(const TFunctionCall& Call);
TCellValue NormInv(const TFunctionCall& Call);
TCellValue NormSDist(const TFunctionCall& Call);
TCellValue NormSInv(const TFunctionCall& Call);
TCellValue LognormDist(const TFunctionCall& Call);
TCellValue LognormInv(const TFunctionCall& Call);
TCellValue ExponDist(const TFunctionCall& Call);
TCellValue WeibullDist(const TFunctionCall& Call);
TCellValue GammaDist(const TFunctionCall& Call);
TCellValue GammaInv(const TFunctionCall& Call);
TCellValue BetaDist(const TFunctionCall& Call);
TCellValue BetaInv(const TFunctionCall& Call);
TCellValue ChisqDistRt(const TFunctionCall& Call);
TCellValue ChisqInvRt(const TFunctionCall& Call);
TCellValue FDistRt(const TFunctionCall& Call);
TCellValue FInvRt(const TFunctionCall& Call);
TCellValue TDistRt(const TFunctionCall& Call);
TCellValue TDist2T(const TFunctionCall& Call);
TCellValue TInv2T(const TFunctionCall& Call);

// Discrete distributions (DiscreteDistributions.cpp).
TCellValue BinomDist(const TFunctionCall& Call);
TCellValue BinomInv(const TFunctionCall& Call);
TCellValue PoissonDist(const TFunctionCall& Call);
TCellValue HypgeomDist(const TFunctionCall& Call);
TCellValue NegbinomDist(const TFunctionCall& Call);

// Hypothesis tests (HypothesisTests.cpp).
TCellValue TTest(const TFunctionCall& Call);
TCellValue FTest(const TFunctionCall& Call);
TCellValue ChisqTest(const TFunctionCall& Call);
TCellValue ZTest(const TFunctionCall& Call);
TCellValue ConfidenceNorm(const TFunctionCall& Call);

}  // namespace Tabrino::DistributionBuiltins
