#include "Tabrino.Formula.GammaBeta.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <utility>

namespace Tabrino {

namespace {

constexpr double Epsilon = std::numeric_limits<double>::epsilon();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double LogSqrt2Pi = 0.9189385332046728;
constexpr double InvSqrt2Pi = 0.3989422804014327;
// sqrt(2) as the sum of two doubles, for the exact residual of a division by it.
constexpr double Sqrt2High = 1.4142135623730951;
constexpr double Sqrt2Low = -9.667293313452913e-17;
// Series and continued fractions converge in O(sqrt(a)) terms near the centre
// of a distribution; this bound covers the shapes up to MaxShape.
constexpr int MaxTerms = 20000000;
constexpr double MaxShape = 1E12;

// ln Gamma(n + 1) - [(n + 1/2) ln n - n + ln sqrt(2 pi)]: what Stirling's
// formula leaves out. Small, so that exp of a sum of these keeps its digits.
double StirlingError(double N) {
  if (N <= 15) return std::lgamma(N + 1) - (N + 0.5) * std::log(N) + N - LogSqrt2Pi;
  // B(2k) / (2k (2k - 1)) n^(1 - 2k); beyond n = 15 the next term is below 1E-19.
  static constexpr double Coefficients[] = {1.0 / 12,   -1.0 / 360,        1.0 / 1260, -1.0 / 1680,
                                            1.0 / 1188, -691.0 / 360360.0, 1.0 / 156};
  double InverseSquare = 1 / (N * N);
  double Sum = 0;
  for (int K = int(std::size(Coefficients)) - 1; K >= 0; --K) Sum = Sum * InverseSquare + Coefficients[K];
  return Sum / N;
}

// k ln(k / m) + m - k: how far a count k lies from the mean m, in the terms
// of a log-likelihood. Near m the plain form cancels to nothing, so there the
// series in v = (k - m) / (k + m) of ln((1 + v) / (1 - v)) carries it.
double Deviance(double K, double M) {
  if (std::fabs(K - M) < 0.1 * (K + M)) {
    double V = (K - M) / (K + M);
    double V2 = V * V;
    double Sum = (K - M) * V;
    double Power = 2 * K * V;
    for (int J = 1; J < 1000; ++J) {
      Power *= V2;
      double Next = Sum + Power / (2 * J + 1);
      if (Next == Sum) break;
      Sum = Next;
    }
    return Sum;
  }
  double Ratio = K / M;
  double LogRatio = std::isfinite(Ratio) && Ratio > 0 ? std::log(Ratio) : std::log(K) - std::log(M);
  return K * LogRatio + M - K;
}

// q^n for q = 1 - p, from whichever of p and q holds more digits.
double ComplementPower(double P, double Q, double N) {
  return P < 0.5 ? std::exp(N * std::log1p(-P)) : std::pow(Q, N);
}

// Up to this many trials the binomial and Poisson terms are products of
// powers and gamma functions, each correct to a few units in the last place;
// beyond it they would overflow, and the deviance form takes over. (That form
// loses about |ln term| units, which only matters far out in a tail.)
constexpr double DirectLimit = 100;

// BinomialTerm with k and n - k given apart, so that a small n - k is not
// lost in the rounding of n.
double BinomialTermSplit(double K, double NK, double P, double Q) {
  if (P == 0) return K == 0 ? 1 : 0;
  if (Q == 0) return NK == 0 ? 1 : 0;
  if (K == 0) return ComplementPower(P, Q, NK);
  if (NK == 0) return ComplementPower(Q, P, K);
  double N = K + NK;
  if (N <= DirectLimit) {
    double Direct = std::pow(P, K) * std::pow(Q, NK) * std::tgamma(N + 1) / (std::tgamma(K + 1) * std::tgamma(NK + 1));
    if (std::isnormal(Direct)) return Direct;
  }
  double Exponent = StirlingError(N) - StirlingError(K) - StirlingError(NK) - Deviance(K, N * P) - Deviance(NK, N * Q);
  return std::exp(Exponent) * std::sqrt(N / (2 * std::numbers::pi * K * NK));
}

// b0 + a1 / (b1 + a2 / (b2 + ...)) by the modified Lentz method; Term(j)
// sets a_j and b_j for j >= 1. b0 must not be 0.
template <typename TTerm>
double ContinuedFraction(double B0, TTerm Term) {
  constexpr double Tiny = 1E-300;
  double F = B0, C = B0, D = 0;
  for (int J = 1; J <= MaxTerms; ++J) {
    double Aj, Bj;
    Term(J, Aj, Bj);
    D = Bj + Aj * D;
    if (D == 0) D = Tiny;
    C = Bj + Aj / C;
    if (C == 0) C = Tiny;
    D = 1 / D;
    double Delta = C * D;
    F *= Delta;
    if (std::fabs(Delta - 1) <= Epsilon) break;
  }
  return F;
}

// P(a, x) for x < a + 1 as the sum over n >= 0 of PoissonTerm(a + n, x),
// each term the one before times x / (a + n). A large a needs thousands of
// terms: every 64th is computed afresh so that the rounding of the running
// product cannot pile up, and the sum is compensated. The terms fall off
// slowly there, so the sum stops when the geometric bound of the whole
// remaining tail, not the last term, is negligible.
double LowerGammaSeries(double A, double X) {
  double Term = PoissonTerm(A, X), Sum = Term, Compensation = 0;
  for (int N = 1; N <= MaxTerms && Term * X > Epsilon * Sum * (A + N - X); ++N) {
    Term = N % 64 == 0 ? PoissonTerm(A + N, X) : Term * X / (A + N);
    double Next = Sum + Term;
    Compensation += (Sum - Next) + Term;
    Sum = Next;
  }
  return Sum + Compensation;
}

// ln Gamma(1 + a). For small a, 1 + a would round digits of a away, so
// there the Taylor series -gamma a + sum over k >= 2 of zeta(k) (-a)^k / k.
double LogGamma1p(double A) {
  if (std::fabs(A) >= 0.2) return std::lgamma(1 + A);
  constexpr double EulerGamma = 0.5772156649015329;
  static constexpr double Zeta[] = {// zeta(2) .. zeta(25)
                                    1.6449340668482264, 1.2020569031595942, 1.0823232337111381, 1.03692775514337,
                                    1.0173430619844492, 1.008349277381923,  1.0040773561979444, 1.0020083928260821,
                                    1.000994575127818,  1.0004941886041194, 1.000246086553308,  1.0001227133475785,
                                    1.0000612481350588, 1.000030588236307,  1.0000152822594086, 1.0000076371976379,
                                    1.000003817293265,  1.0000019082127165, 1.0000009539620338, 1.0000004769329869,
                                    1.0000002384505027, 1.000000119219926,  1.000000059608189,  1.0000000298035034};
  double T = -A;
  double Horner = 0;
  for (int K = 25; K >= 2; --K) Horner = Horner * T + Zeta[K - 2] / K;
  return T * (EulerGamma + T * Horner);
}

// Q(a, x) for a < 1 and x below about 1, where 1 - P would cancel:
// a Gamma(a, x) = [Gamma(1 + a) - 1] - [x^a - 1] - a x^a sum over n >= 1 of
// (-x)^n / (n! (a + n)), with both brackets computed without cancellation.
double UpperGammaSmallShape(double A, double X) {
  double Term = 1, Sum = 0;
  for (int N = 1; N < 1000; ++N) {
    Term *= -X / N;
    double Addend = Term / (A + N);
    Sum += Addend;
    if (std::fabs(Addend) <= Epsilon * std::fabs(Sum)) break;
  }
  double Gamma1pm1 = std::expm1(LogGamma1p(A));
  double PowerM1 = std::expm1(A * std::log(X));
  return (Gamma1pm1 - PowerM1 - A * (PowerM1 + 1) * Sum) / (1 + Gamma1pm1);
}

// Q(a, x) for x >= a + 1: x^a e^-x / Gamma(a) times Legendre's fraction
// 1 / (x + 1 - a - 1 (1 - a) / (x + 3 - a - 2 (2 - a) / (x + 5 - a - ...))).
double UpperGammaFraction(double A, double X) {
  double Prefix = A * PoissonTerm(A, X);
  if (Prefix == 0) return 0;
  double Fraction = ContinuedFraction(X + 1 - A, [&](int J, double& Aj, double& Bj) {
    Aj = -J * (J - A);
    Bj = X + 2 * J + 1 - A;
  });
  return Prefix / Fraction;
}

// I_x(a, b) as the sum over n >= 0 of x^(a+n) y^b / ((a + n) B(a + n, b)),
// from I_x(a, b) - I_x(a + 1, b). Below the mean the terms only fall, with
// ratios that tend to x; like the gamma series the sum is compensated, every
// 64th term computed afresh, and stopped on the geometric bound of the tail.
double LowerBetaSeries(double A, double B, TUnitPoint Point) {
  double X = Point.X;
  double Term = BetaPrefix(A, B, Point) / A, Sum = Term, Compensation = 0;
  for (int N = 1; N <= MaxTerms && Term > 0; ++N) {
    Term = N % 64 == 0 ? BetaPrefix(A + N, B, Point) / (A + N) : Term * (A + B + N - 1) * X / (A + N);
    double Next = Sum + Term;
    Compensation += (Sum - Next) + Term;
    Sum = Next;
    double Ratio = std::max((A + B + N) * X / (A + N + 1), X);
    if (Ratio < 1 && Term * Ratio <= Epsilon * Sum * (1 - Ratio)) break;
  }
  return Sum + Compensation;
}

// I_x(a, b) and its complement for a large shape a and a smaller b, where the
// series would need some a / b terms near x = 1. With x = e^-v the integral is
// one of e^(-a v) (1 - e^-v)^(b - 1), which is e^(-T v) v^(b - 1) times
// (sinh(v/2) / (v/2))^(b - 1) for T = a + (b - 1) / 2. Expanding that last,
// even factor as the sum of c_n v^2n turns the integral into a series of
// incomplete gamma functions at u = -T ln x:
//   I_x(a, b) = F sum of c_n (b)_2n T^-2n Q(b + 2n, u), F = Gamma(a + b) / (Gamma(a) T^b),
// and the complement the same with P. The series is asymptotic: false when
// its terms stop falling before they are negligible.
bool LargeShapeBeta(double A, double B, TUnitPoint Point, TTailPair& Result) {
  // ln(sinh(v/2) / (v/2)) = sum of e_k v^2k, e_k = B(2k) / (2k (2k)!).
  static constexpr double LogSinhc[] = {0.041666666666666664,   -0.00034722222222222224, 5.5114638447971785e-06,
                                        -1.033399470899471e-07, 2.08767569878681e-09,    -4.403491782239578e-11,
                                        9.55895466477477e-13,   -2.1185501852016142e-14, 4.770034475709914e-16,
                                        -1.087434349279031e-17, 2.5040921947091955e-19,  -5.814360285755218e-21};
  constexpr int MaxOrder = std::size(LogSinhc);
  double T = A + (B - 1) / 2;
  double U = -T * (Point.Y < 0.5 ? std::log1p(-Point.Y) : std::log(Point.X));
  // c_n of (sinh(v/2) / (v/2))^(b - 1) = exp((b - 1) sum of e_k v^2k), by
  // the recurrence for the exponential of a power series.
  double C[MaxOrder + 1] = {1};
  double Weight = 1;      // c_n (b)_2n T^-2n
  double Pochhammer = 1;  // (b)_2n T^-2n
  double Lower = 0, Upper = 0, LastLower = 0, LastUpper = 0;
  for (int N = 0;; ++N) {
    if (N > 0) {
      double Sum = 0;
      for (int K = 1; K <= N; ++K) Sum += K * LogSinhc[K - 1] * C[N - K];
      C[N] = (B - 1) * Sum / N;
      Pochhammer *= (B + 2 * N - 2) * (B + 2 * N - 1) / (T * T);
      Weight = C[N] * Pochhammer;
    }
    TTailPair G = RegularizedGamma(B + 2 * N, U);
    double TermLower = std::fabs(Weight * G.Upper), TermUpper = std::fabs(Weight * G.Lower);
    Lower += Weight * G.Upper;
    Upper += Weight * G.Lower;
    if (N > 0 && TermLower <= Epsilon * std::fabs(Lower) && TermUpper <= Epsilon * std::fabs(Upper)) break;
    bool Diverging = N > 1 && (TermLower > LastLower || TermUpper > LastUpper);
    if (Diverging || N == MaxOrder) return false;
    LastLower = TermLower;
    LastUpper = TermUpper;
  }
  // ln F by Stirling's formula; its leading terms (a - 1/2) ln(1 + b/a) - b
  // cancel, so they are taken as the deviance of a from a + b.
  double LogF = -Deviance(A, A + B) - 0.5 * std::log1p(B / A) + B * std::log1p((B + 1) / (2 * T)) +
                StirlingError(A + B) - StirlingError(A);
  double F = std::exp(LogF);
  Result = {F * Lower, F * Upper};
  return true;
}

// Where the expansion holds to full precision: its terms fall like
// (b^3 / a^2)^n, its rounding grows with b.
bool LargeShapeApplies(double Large, double Small) {
  return Large >= 30 && Small * Small < 10 * Large;
}

// f, f' and f''/f' of an increasing function at one point.
struct TRootEstimate {
  double Residual;
  double Slope;
  double CurvatureRatio;
};

// The root of an increasing function within (Low, High), from a good start,
// by Halley steps. A step that leaves the bracket the residuals have proved
// is replaced by a bisection (geometric where the bracket spans magnitudes),
// so that a poor start or a vanishing slope cannot send the search astray.
template <typename TEstimate>
double SolveIncreasing(TEstimate Estimate, double X, double Low, double High) {
  for (int Iteration = 0; Iteration < 400; ++Iteration) {
    TRootEstimate E = Estimate(X);
    if (std::isnan(E.Residual)) return NAN;
    if (E.Residual == 0) return X;
    (E.Residual < 0 ? Low : High) = X;
    double Newton = E.Residual / E.Slope;
    double Correction = 0.5 * Newton * E.CurvatureRatio;
    double Next = X - (std::fabs(Correction) < 0.5 ? Newton / (1 - Correction) : Newton);
    if (!(Next > Low && Next < High)) {
      if (std::isinf(High)) {
        Next = 2 * X + 1;
      } else if (Low == 0) {
        Next = High / 16;
      } else {
        Next = High > 16 * Low ? std::sqrt(Low * High) : Low + (High - Low) / 2;
      }
      if (Next <= Low || Next >= High) return X;
    }
    if (std::fabs(Next - X) <= 2 * Epsilon * std::fabs(Next)) return Next;
    X = Next;
  }
  return X;
}

// A start for InverseRegularizedGamma: the Wilson-Hilferty cube of a normal
// quantile where it applies, else the leading term of a tail of P or Q.
double GammaStart(double A, TTailPair Target) {
  double Z = Target.Lower <= Target.Upper ? InverseNormalCdf(Target.Lower) : -InverseNormalCdf(Target.Upper);
  if (A >= 1) {
    double C = 1 / (9 * A);
    double W = 1 - C + Z * std::sqrt(C);
    if (W > 0) return A * W * W * W;
  }
  // P(a, x) ~ x^a / Gamma(a + 1) for small x.
  double Small = std::exp((std::log(Target.Lower) + std::lgamma(A + 1)) / A);
  if (Small < 1 || Target.Lower <= Target.Upper) return Small;
  // Q(a, x) ~ x^(a - 1) e^-x / Gamma(a) for large x.
  double Large = -std::log(Target.Upper) - std::lgamma(A);
  if (Large > 1) Large += (A - 1) * std::log(Large);
  return Large > 0 ? Large : 1;
}

// A start for InverseRegularizedBeta. With both shapes above 1, a normal
// approximation of the logit of x; otherwise the leading terms of the two
// tails, x^a / (a B) near 0 and y^b / (b B) near 1, each used on its side of
// the split of the mass they imply.
TUnitPoint BetaStart(double A, double B, TTailPair Target) {
  if (A >= 1 && B >= 1) {
    // The upper quantile: a small lower tail means a small x.
    double Z = Target.Lower <= Target.Upper ? -InverseNormalCdf(Target.Lower) : InverseNormalCdf(Target.Upper);
    double R = (Z * Z - 3) / 6;
    double S = 1 / (2 * A - 1), T = 1 / (2 * B - 1);
    double H = 2 / (S + T);
    double W = Z * std::sqrt(H + R) / H - (T - S) * (R + 5.0 / 6 - 2 / (3 * H));
    double E = std::exp(2 * W);
    if (std::isfinite(E)) return {A / (A + B * E), B * E / (A + B * E)};
  }
  double LowMass = std::exp(A * std::log(A / (A + B))) / A;
  double HighMass = std::exp(B * std::log(B / (A + B))) / B;
  double Total = LowMass + HighMass;
  if (Target.Lower < LowMass / Total) {
    double X = std::pow(A * Total * Target.Lower, 1 / A);
    return {X, 1 - X};
  }
  double Y = std::pow(B * Total * Target.Upper, 1 / B);
  return {1 - Y, Y};
}

// The x in (0, 1) with I_x(a, b) = Target, from a start below about 1/2.
double SolveBeta(double A, double B, TTailPair Target, double Start) {
  bool FromLower = Target.Lower <= Target.Upper;
  auto Estimate = [&](double X) {
    TUnitPoint Point{X, 1 - X};
    TTailPair I = RegularizedBeta(A, B, Point);
    double Residual = FromLower ? I.Lower - Target.Lower : Target.Upper - I.Upper;
    double Density = BetaPrefix(A, B, Point) / (X * Point.Y);
    return TRootEstimate{Residual, Density, (A - 1) / X - (B - 1) / Point.Y};
  };
  if (!(Start > 0 && Start < 1)) Start = 0.5;
  return SolveIncreasing(Estimate, Start, 0, 1);
}

// Horner's rule, the coefficients running from the highest power down.
template <size_t N>
double Polynomial(const double (&Coefficients)[N], double X) {
  double Sum = 0;
  for (double C : Coefficients) Sum = Sum * X + C;
  return Sum;
}

// Acklam's rational approximation of the normal quantile for p <= 1/2,
// relative error below 1.2E-9: the start for InverseNormalCdf.
double NormalQuantileStart(double P) {
  if (P < 0.02425) {
    static constexpr double Numerator[] = {-7.784894002430293e-03, -3.223964580411365e-01, -2.400758277161838e+00,
                                           -2.549732539343734e+00, 4.374664141464968e+00,  2.938163982698783e+00};
    static constexpr double Denominator[] = {7.784695709041462e-03, 3.224671290700398e-01, 2.445134137142996e+00,
                                             3.754408661907416e+00, 1};
    double Q = std::sqrt(-2 * std::log(P));
    return Polynomial(Numerator, Q) / Polynomial(Denominator, Q);
  }
  static constexpr double Numerator[] = {-3.969683028665376e+01, 2.209460984245205e+02,  -2.759285104469687e+02,
                                         1.383577518672690e+02,  -3.066479806614716e+01, 2.506628277459239e+00};
  static constexpr double Denominator[] = {-5.447609879822406e+01, 1.615858368580409e+02,  -1.556989798598866e+02,
                                           6.680131188771972e+01,  -1.328068155288572e+01, 1};
  double Q = P - 0.5;
  return Q * Polynomial(Numerator, Q * Q) / Polynomial(Denominator, Q * Q);
}

}  // namespace

double LogGamma(double X) {
  return std::lgamma(X);
}

double GammaFunction(double X) {
  return std::tgamma(X);
}

double LogBeta(double A, double B) {
  if (A > B) std::swap(A, B);
  if (B < 10) return std::lgamma(A) + std::lgamma(B) - std::lgamma(A + B);
  // Stirling's formula for the large arguments, with its large terms
  // cancelled by hand, so that what is left has the size of the result.
  double Sum = A + B;
  if (A >= 10)
    return (A - 0.5) * std::log(A / Sum) + (B - 0.5) * std::log1p(-A / Sum) - 0.5 * std::log(Sum) + LogSqrt2Pi +
           StirlingError(A) + StirlingError(B) - StirlingError(Sum);
  double LogGammaRatio = -(B - 0.5) * std::log1p(A / B) - A * std::log(Sum) + A + StirlingError(B) - StirlingError(Sum);
  return std::lgamma(A) + LogGammaRatio;
}

// Through the gamma function itself where it neither overflows nor
// underflows: its few units of rounding beat the cancellation of logarithms.
double BetaFunction(double A, double B) {
  double GammaA = std::tgamma(A), GammaB = std::tgamma(B), GammaSum = std::tgamma(A + B);
  if (std::isnormal(GammaA) && std::isnormal(GammaB) && std::isnormal(GammaSum) && std::isfinite(GammaA * GammaB))
    return GammaA * GammaB / GammaSum;
  return std::exp(LogBeta(A, B));
}

double PoissonTerm(double K, double Lambda) {
  if (Lambda == 0) return K == 0 ? 1 : 0;
  if (K == 0) return std::exp(-Lambda);
  if (std::isinf(K) || std::isinf(Lambda)) return 0;
  if (K <= DirectLimit && Lambda < 700) {
    double Direct = std::pow(Lambda, K) * std::exp(-Lambda) / std::tgamma(K + 1);
    if (std::isnormal(Direct)) return Direct;
  }
  return std::exp(-StirlingError(K) - Deviance(K, Lambda)) / std::sqrt(2 * std::numbers::pi * K);
}

double BinomialTerm(double K, double N, double P, double Q) {
  return BinomialTermSplit(K, N - K, P, Q);
}

// x^a y^b / B(a, b) = a b / (a + b) * BinomialTerm(a, a + b, x, y).
double BetaPrefix(double A, double B, TUnitPoint Point) {
  return A * B / (A + B) * BinomialTermSplit(A, B, Point.X, Point.Y);
}

TTailPair RegularizedGamma(double A, double X) {
  if (std::isnan(A) || std::isnan(X) || A > MaxShape) return {NAN, NAN};
  if (X <= 0) return {0, 1};
  if (std::isinf(X)) return {1, 0};
  // For a small shape P is close to 1 unless x^a is small.
  if (A < 1 && X < 1.5 && std::pow(X, A) > 0.4) {
    double Q = UpperGammaSmallShape(A, X);
    return {1 - Q, Q};
  }
  if (X < A + 1) {
    double P = LowerGammaSeries(A, X);
    return {P, 1 - P};
  }
  double Q = UpperGammaFraction(A, X);
  return {1 - Q, Q};
}

// The series runs on the smaller tail, the one below the mean, so that it
// keeps its relative precision. Only where that tail lies within 1E-5 of 1
// would the series crawl; there the other side converges at once.
TTailPair RegularizedBeta(double A, double B, TUnitPoint Point) {
  if (std::isnan(A) || std::isnan(B) || std::isnan(Point.X) || std::max(A, B) > MaxShape) return {NAN, NAN};
  if (Point.X <= 0) return {0, 1};
  if (Point.Y <= 0) return {1, 0};
  TTailPair Result;
  if (A >= B && LargeShapeApplies(A, B) && LargeShapeBeta(A, B, Point, Result)) return Result;
  if (B > A && LargeShapeApplies(B, A) && LargeShapeBeta(B, A, {Point.Y, Point.X}, Result))
    return {Result.Upper, Result.Lower};
  bool LowerIsSmall = Point.X * (A + B) <= A;
  TUnitPoint Small = LowerIsSmall ? Point : TUnitPoint{Point.Y, Point.X};
  double SmallA = LowerIsSmall ? A : B, SmallB = LowerIsSmall ? B : A;
  double SmallTail;
  if (Small.Y >= 1E-5) {
    SmallTail = LowerBetaSeries(SmallA, SmallB, Small);
  } else {
    SmallTail = 1 - LowerBetaSeries(SmallB, SmallA, {Small.Y, Small.X});
  }
  return LowerIsSmall ? TTailPair{SmallTail, 1 - SmallTail} : TTailPair{1 - SmallTail, SmallTail};
}

double InverseRegularizedGamma(double A, TTailPair Target) {
  if (!(Target.Lower > 0)) return 0;
  if (!(Target.Upper > 0)) return Infinity;
  bool FromLower = Target.Lower <= Target.Upper;
  auto Estimate = [&](double X) {
    TTailPair P = RegularizedGamma(A, X);
    double Residual = FromLower ? P.Lower - Target.Lower : Target.Upper - P.Upper;
    // The density x^(a-1) e^-x / Gamma(a).
    double Density = A * PoissonTerm(A, X) / X;
    return TRootEstimate{Residual, Density, (A - 1) / X - 1};
  };
  double Start = GammaStart(A, Target);
  if (!(Start > 0 && std::isfinite(Start))) Start = A;
  return SolveIncreasing(Estimate, Start, 0, Infinity);
}

// Solved for whichever of x and 1 - x is the smaller, so that a point near 1
// keeps the digits of its distance from 1.
TUnitPoint InverseRegularizedBeta(double A, double B, TTailPair Target) {
  if (!(Target.Lower > 0)) return {0, 1};
  if (!(Target.Upper > 0)) return {1, 0};
  TUnitPoint Start = BetaStart(A, B, Target);
  if (Start.X <= 0.5) {
    double X = SolveBeta(A, B, Target, Start.X);
    return {X, 1 - X};
  }
  double Y = SolveBeta(B, A, {Target.Upper, Target.Lower}, Start.Y);
  return {1 - Y, Y};
}

double NormalDensity(double Z) {
  // z^2 split into a double and its rounding error, which would else cost
  // z^2 / 2 units of relative precision.
  double Square = Z * Z;
  double SquareError = std::fma(Z, Z, -Square);
  return InvSqrt2Pi * std::exp(-0.5 * Square) * (1 - 0.5 * SquareError);
}

double NormalCdf(double Z) {
  double W = -Z * std::numbers::sqrt2 / 2;
  double Tail = 0.5 * std::erfc(W);
  if (!(W > 0.5) || Tail == 0) return Tail;
  // W is -z / sqrt(2) rounded. Deep in the tail erfc is steep, and that
  // rounding would cost W^2 units of relative precision: move erfc along its
  // slope by the rounding error.
  double Shift = (std::fma(-W, Sqrt2High, -Z) - W * Sqrt2Low) * std::numbers::sqrt2 / 2;
  double LogSlope = W < 5 ? std::exp(-W * W) * std::numbers::inv_sqrtpi / Tail : 2 * W + 1 / W;
  return Tail * (1 - LogSlope * Shift);
}

double InverseNormalCdf(double P) {
  if (!(P > 0 && P < 1)) return P == 0 ? -Infinity : (P == 1 ? Infinity : NAN);
  if (P > 0.5) return -InverseNormalCdf(1 - P);  // 1 - P is exact here
  double X = NormalQuantileStart(P);
  for (int Iteration = 0; Iteration < 4; ++Iteration) {
    // Near the centre through erf and the exact P - 1/2, which keeps the
    // relative precision of a quantile close to 0.
    double Residual = X > -1 ? 0.5 * std::erf(X * std::numbers::sqrt2 / 2) - (P - 0.5) : NormalCdf(X) - P;
    double Newton = Residual / NormalDensity(X);
    double Step = Newton / (1 + 0.5 * X * Newton);
    X -= Step;
    if (std::fabs(Step) <= Epsilon * std::fabs(X)) break;
  }
  return X;
}

}  // namespace Tabrino
