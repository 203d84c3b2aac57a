// Discrete probability distributions: binomial (with its ranges and
// inverse), negative binomial, Poisson and hypergeometric; and the counts of
// arrangements, PERMUT and PERMUTATIONA. Counts are truncated to whole
// numbers; an argument outside its domain is #NUM!.
#include <cmath>

#include "Tabrino.Formula.DistributionBuiltins.h"
#include "Tabrino.Formula.Distributions.h"

namespace Tabrino::DistributionBuiltins {

namespace {

double BinomialProbability(double K, double Trials, double P) {
  return BinomialTerm(K, Trials, P, 1 - P);
}

// P(First <= X <= Last). A short run is summed term by term; a long one is
// a difference of two lower tails when it lies below the mean, else of two
// upper tails, so that no tail close to 1 is subtracted.
double BinomialRange(double Trials, double P, double First, double Last) {
  constexpr double MaxTermsSummed = 64;
  if (Last - First < MaxTermsSummed) {
    double Sum = 0;
    for (double K = First; K <= Last; ++K) Sum += BinomialProbability(K, Trials, P);
    return Sum;
  }
  double Mean = Trials * P;
  if (Last <= Mean) return BinomialTails(Last, Trials, P).Lower - BinomialTails(First - 1, Trials, P).Lower;
  return BinomialTails(First - 1, Trials, P).Upper - BinomialTails(Last, Trials, P).Upper;
}

// BINOM.DIST.RANGE(trials, p, s, [s2]) and the OpenDocument B(trials, p, s, [s2]).
TCellValue BinomDistRange(const TFunctionCall& C) {
  double Trials, P, First, Last;
  if (!ReadNumbers(C, {&Trials, &P, &First}) || !OptArgNumber(C, 3, First, Last)) return Err(ceValue);
  Trials = std::trunc(Trials);
  First = std::trunc(First);
  Last = std::trunc(Last);
  if (Trials < 0 || !IsProbability(P) || First < 0 || First > Trials || Last < First || Last > Trials)
    return Err(ceNum);
  return Checked(BinomialRange(Trials, P, First, Last));
}

// The product n (n - 1) ... (n - k + 1); it overflows within a few hundred
// factors, so the loop stays short whatever k is.
TCellValue Permut(const TFunctionCall& C) {
  double N, K;
  if (!ReadNumbers(C, {&N, &K})) return Err(ceValue);
  N = std::trunc(N);
  K = std::trunc(K);
  if (N <= 0 || K < 0 || N < K) return Err(ceNum);
  double Product = 1;
  for (double I = 0; I < K && std::isfinite(Product); ++I) Product *= N - I;
  return Checked(Product);
}

TCellValue PermutationA(const TFunctionCall& C) {
  double N, K;
  if (!ReadNumbers(C, {&N, &K})) return Err(ceValue);
  N = std::trunc(N);
  K = std::trunc(K);
  if (N < 0 || K < 0) return Err(ceNum);
  return Checked(std::pow(N, K));
}

}  // namespace

TCellValue BinomDist(const TFunctionCall& C) {
  double K, Trials, P;
  bool Cumulative;
  if (!ReadNumbers(C, {&K, &Trials, &P}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  K = std::trunc(K);
  Trials = std::trunc(Trials);
  if (K < 0 || K > Trials || !IsProbability(P)) return Err(ceNum);
  return Checked(Cumulative ? BinomialTails(K, Trials, P).Lower : BinomialProbability(K, Trials, P));
}

// The smallest k whose cumulative probability reaches alpha, by bisection
// over [0, trials]. A cumulative probability within rounding of alpha
// counts as reaching it, so that an exact tie (alpha = 0.25 for two fair
// coins) gives the k at which it is reached.
TCellValue BinomInv(const TFunctionCall& C) {
  double Trials, P, Alpha;
  if (!ReadNumbers(C, {&Trials, &P, &Alpha})) return Err(ceValue);
  Trials = std::trunc(Trials);
  if (Trials < 0 || !IsProbability(P) || !IsProbability(Alpha)) return Err(ceNum);
  double Reached = Alpha * (1 - 1E-14);
  double Low = 0, High = Trials;
  while (Low < High) {
    double Mid = std::floor(Low + (High - Low) / 2);
    double Cumulative = BinomialTails(Mid, Trials, P).Lower;
    if (std::isnan(Cumulative)) return Err(ceNum);
    if (Cumulative >= Reached) {
      High = Mid;
    } else {
      Low = Mid + 1;
    }
  }
  return Num(Low);
}

TCellValue NegbinomDist(const TFunctionCall& C) {
  double Failures, Successes, P;
  bool Cumulative;
  if (!ReadNumbers(C, {&Failures, &Successes, &P}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  Failures = std::trunc(Failures);
  Successes = std::trunc(Successes);
  if (Failures < 0 || Successes < 1 || !IsProbability(P)) return Err(ceNum);
  if (Cumulative) return Checked(NegativeBinomialTails(Failures, Successes, P).Lower);
  // C(f + s - 1, f) p^s q^f = s / (f + s) * C(f + s, s) p^s q^f.
  double Total = Failures + Successes;
  return Checked(Successes / Total * BinomialTerm(Successes, Total, P, 1 - P));
}

TCellValue PoissonDist(const TFunctionCall& C) {
  double K, Mean;
  bool Cumulative;
  if (!ReadNumbers(C, {&K, &Mean}) || !ReadFlag(C[2], Cumulative)) return Err(ceValue);
  K = std::trunc(K);
  if (K < 0 || Mean < 0) return Err(ceNum);
  return Checked(Cumulative ? PoissonTails(K, Mean).Lower : PoissonTerm(K, Mean));
}

// HYPGEOM.DIST(sample_s, number_sample, population_s, number_pop, cumulative).
TCellValue HypgeomDist(const TFunctionCall& C) {
  double K, Draws, Marked, Population;
  bool Cumulative;
  if (!ReadNumbers(C, {&K, &Draws, &Marked, &Population}) || !ReadFlag(C[4], Cumulative)) return Err(ceValue);
  K = std::trunc(K);
  Draws = std::trunc(Draws);
  Marked = std::trunc(Marked);
  Population = std::trunc(Population);
  if (Population <= 0 || Draws <= 0 || Draws > Population || Marked <= 0 || Marked > Population) return Err(ceNum);
  if (K < 0 || K > std::fmin(Draws, Marked) || K < Draws - Population + Marked) return Err(ceNum);
  return Checked(Cumulative ? HypergeometricTails(K, Draws, Marked, Population).Lower
                            : HypergeometricProbability(K, Draws, Marked, Population));
}

}  // namespace Tabrino::DistributionBuiltins

namespace Tabrino {

std::span<const TFunctionDef> DiscreteDistributionFunctions() {
  using namespace DistributionBuiltins;
  static constexpr TFunctionDef Table[] = {
      {"BINOM.DIST", 4, 4, fnNone, BinomDist},       {"BINOM.DIST.RANGE", 3, 4, fnNone, BinomDistRange},
      {"B", 3, 4, fnNone, BinomDistRange},           {"BINOM.INV", 3, 3, fnNone, BinomInv},
      {"NEGBINOM.DIST", 4, 4, fnNone, NegbinomDist}, {"POISSON.DIST", 3, 3, fnNone, PoissonDist},
      {"HYPGEOM.DIST", 5, 5, fnNone, HypgeomDist},   {"PERMUT", 2, 2, fnNone, Permut},
      {"PERMUTATIONA", 2, 2, fnNone, PermutationA},
  };
  return Table;
}

}  // namespace Tabrino
