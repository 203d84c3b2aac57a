#include "Tabrino.Formula.Distributions.h"

#include <cmath>
#include <limits>

namespace Tabrino {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Epsilon = std::numeric_limits<double>::epsilon();

// x = df / (df + t^2) and its complement, each without cancellation.
TUnitPoint StudentPoint(double T, double Df) {
  if (T * T > Df) {
    double Ratio = Df / T / T;
    return {Ratio / (1 + Ratio), 1 / (1 + Ratio)};
  }
  double Ratio = T * T / Df;
  return {1 / (1 + Ratio), Ratio / (1 + Ratio)};
}

// x = d1 f / (d1 f + d2) and its complement.
TUnitPoint FisherPoint(double F, double D1, double D2) {
  double Ratio = D1 * F / D2;
  if (!(Ratio <= 1)) {
    double Inverse = D2 / D1 / F;
    return {1 / (1 + Inverse), Inverse / (1 + Inverse)};
  }
  return {Ratio / (1 + Ratio), 1 / (1 + Ratio)};
}

// The density at an end of the support, where x^(a-1) is 0, 1 or infinite.
double DensityAtEnd(double Shape, double ValueAtOne) {
  return Shape < 1 ? Infinity : (Shape == 1 ? ValueAtOne : 0);
}

// A tail of the hypergeometric distribution summed from one count outward,
// term by term through the ratio of neighbours (Step is -1 or +1). The
// terms fall off geometrically away from the mode, so the sum stops once the
// bound of what is left is negligible; every 64th term is computed afresh.
// The tail spans some standard deviations; one beyond MaxTerms (from
// populations far beyond 1E14) gives NaN rather than a long wait.
double HypergeometricSum(double K, double Last, int Step, double Draws, double Marked, double Population) {
  constexpr int MaxTerms = 20000000;
  double Term = HypergeometricProbability(K, Draws, Marked, Population);
  double Sum = Term;
  double Others = Population - Marked;
  for (int N = 1; Term > 0 && K != Last; ++N) {
    if (N > MaxTerms) return NAN;
    double Ratio = Step < 0 ? K * (Others - Draws + K) / ((Marked - K + 1) * (Draws - K + 1))
                            : (Marked - K) * (Draws - K) / ((K + 1) * (Others - Draws + K + 1));
    K += Step;
    Term = N % 64 == 0 ? HypergeometricProbability(K, Draws, Marked, Population) : Term * Ratio;
    Sum += Term;
    if (Ratio < 1 && Term * Ratio <= Epsilon * Sum * (1 - Ratio)) break;
  }
  return Sum;
}

}  // namespace

TTailPair StudentTTails(double T, double Df) {
  // P(|X| > |t|) = I_x(df/2, 1/2); its complement is the mass between -|t| and |t|.
  TTailPair Outside = RegularizedBeta(Df / 2, 0.5, StudentPoint(T, Df));
  double Far = Outside.Lower / 2, Near = 0.5 + Outside.Upper / 2;
  return T < 0 ? TTailPair{Far, Near} : TTailPair{Near, Far};
}

// Gamma((df + 1) / 2) / (Gamma(df / 2) sqrt(df pi)) = 1 / (sqrt(df) B(df/2, 1/2)).
double StudentTDensity(double T, double Df) {
  return std::exp(-(Df + 1) / 2 * std::log1p(T * T / Df)) / (std::sqrt(Df) * BetaFunction(Df / 2, 0.5));
}

double StudentTQuantile(TTailPair Target, double Df) {
  if (Target.Lower == Target.Upper) return 0;
  bool Negative = Target.Lower < Target.Upper;
  double Tail = Negative ? Target.Lower : Target.Upper;
  if (!(Tail > 0)) return Negative ? -Infinity : Infinity;
  // Both tails beyond |t| together, and the mass between.
  double Between = Negative ? Target.Upper - Target.Lower : Target.Lower - Target.Upper;
  TUnitPoint Point = InverseRegularizedBeta(Df / 2, 0.5, {2 * Tail, Between});
  double T = Point.X > 0 ? std::sqrt(Df * (Point.Y / Point.X)) : Infinity;
  return Negative ? -T : T;
}

TTailPair FisherTails(double F, double D1, double D2) {
  return RegularizedBeta(D1 / 2, D2 / 2, FisherPoint(F, D1, D2));
}

// Through the beta density at x = d1 f / (d1 f + d2): the chain rule leaves
// x^a y^b / (B(a, b) f).
double FisherDensity(double F, double D1, double D2) {
  if (F == 0) return DensityAtEnd(D1 / 2, 1);
  return BetaPrefix(D1 / 2, D2 / 2, FisherPoint(F, D1, D2)) / F;
}

double FisherQuantile(TTailPair Target, double D1, double D2) {
  TUnitPoint Point = InverseRegularizedBeta(D1 / 2, D2 / 2, Target);
  return Point.Y > 0 ? D2 / D1 * (Point.X / Point.Y) : Infinity;
}

TTailPair GammaTails(double X, double Shape) {
  return RegularizedGamma(Shape, X);
}

// x^(a-1) e^-x / Gamma(a) = a PoissonTerm(a, x) / x.
double GammaDensity(double X, double Shape) {
  if (X == 0) return DensityAtEnd(Shape, 1);
  return Shape * PoissonTerm(Shape, X) / X;
}

double GammaQuantile(TTailPair Target, double Shape) {
  return InverseRegularizedGamma(Shape, Target);
}

double BetaDensity(TUnitPoint Point, double A, double B) {
  if (Point.X == 0) return DensityAtEnd(A, B);
  if (Point.Y == 0) return DensityAtEnd(B, A);
  return BetaPrefix(A, B, Point) / (Point.X * Point.Y);
}

// P(X <= k) = I_(1-p)(n - k, k + 1).
TTailPair BinomialTails(double K, double Trials, double P) {
  if (K < 0) return {0, 1};
  if (K >= Trials || P == 0) return {1, 0};
  if (P == 1) return {0, 1};
  return RegularizedBeta(Trials - K, K + 1, {1 - P, P});
}

// P(X <= k) = Q(k + 1, mean).
TTailPair PoissonTails(double K, double Mean) {
  if (K < 0) return {0, 1};
  TTailPair Gamma = RegularizedGamma(K + 1, Mean);
  return {Gamma.Upper, Gamma.Lower};
}

// P(X <= f) = I_p(s, f + 1).
TTailPair NegativeBinomialTails(double Failures, double Successes, double P) {
  if (Failures < 0) return {0, 1};
  return RegularizedBeta(Successes, Failures + 1, {P, 1 - P});
}

// C(m, k) C(N - m, n - k) / C(N, n) as a ratio of binomial terms at p = n / N,
// where each term stays near its mode and keeps its digits; the powers of p
// and q cancel exactly.
double HypergeometricProbability(double K, double Draws, double Marked, double Population) {
  double Others = Population - Marked;
  if (K < 0 || K > Draws || K > Marked || Draws - K > Others) return 0;
  if (Draws == 0 || Draws == Population || Marked == 0 || Others == 0) return 1;
  double P = Draws / Population, Q = (Population - Draws) / Population;
  return BinomialTerm(K, Marked, P, Q) * BinomialTerm(Draws - K, Others, P, Q) / BinomialTerm(Draws, Population, P, Q);
}

// Summed on the side of K away from the mean, which is the smaller tail.
TTailPair HypergeometricTails(double K, double Draws, double Marked, double Population) {
  double Lowest = std::fmax(0, Draws - (Population - Marked)), Highest = std::fmin(Draws, Marked);
  if (K < Lowest) return {0, 1};
  if (K >= Highest) return {1, 0};
  if (K * Population <= Draws * Marked) {
    double Lower = HypergeometricSum(K, Lowest, -1, Draws, Marked, Population);
    return {Lower, 1 - Lower};
  }
  double Upper = HypergeometricSum(K + 1, Highest, 1, Draws, Marked, Population);
  return {1 - Upper, Upper};
}

}  // namespace Tabrino
