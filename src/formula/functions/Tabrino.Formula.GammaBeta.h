// The numerics behind the probability distributions: gamma and beta
// functions, the regularized incomplete gamma and beta integrals with their
// inverses, and the standard normal distribution. Everything is to full
// double precision, tails included: a probability is always returned together
// with its complement, each computed directly rather than as 1 minus the
// other, so that a tail of 1E-300 keeps all its digits.
#pragma once

namespace Tabrino {

// A probability and its complement: Lower + Upper = 1.
struct TTailPair {
  double Lower = 0;
  double Upper = 1;
};

// A point of the unit interval and its distance from 1: X + Y = 1.
struct TUnitPoint {
  double X = 0;
  double Y = 1;
};

// ln|Gamma(x)|; +infinity at the poles.
double LogGamma(double X);
// Gamma(x); NaN at the poles, infinity on overflow.
double GammaFunction(double X);
// ln B(a, b) and B(a, b) for a, b > 0.
double LogBeta(double A, double B);
double BetaFunction(double A, double B);

// Lambda^k e^-Lambda / Gamma(k + 1) for real k >= 0 and Lambda >= 0: the
// Poisson probability, and the prefix of the incomplete gamma integral.
double PoissonTerm(double K, double Lambda);
// Gamma(n + 1) / (Gamma(k + 1) Gamma(n - k + 1)) p^k q^(n - k) for real
// 0 <= k <= n, with q = 1 - p given separately so that it keeps its digits.
double BinomialTerm(double K, double N, double P, double Q);

// P(a, x) and Q(a, x), a > 0, x >= 0. Shapes beyond 1E12, where the sums
// would take too long, give NaN; so do they for the beta integral.
TTailPair RegularizedGamma(double A, double X);
// I_x(a, b) and 1 - I_x(a, b), a, b > 0, with Point.Y = 1 - Point.X.
TTailPair RegularizedBeta(double A, double B, TUnitPoint Point);
// x^a y^b / B(a, b): the factor in front of the incomplete beta integral.
double BetaPrefix(double A, double B, TUnitPoint Point);

// The x with P(a, x) = Target.Lower (equivalently Q(a, x) = Target.Upper).
// Target.Upper = 0 gives infinity.
double InverseRegularizedGamma(double A, TTailPair Target);
// The point x with I_x(a, b) = Target.Lower, with its complement.
TUnitPoint InverseRegularizedBeta(double A, double B, TTailPair Target);

// The standard normal density, lower tail and its inverse (P in (0, 1)).
double NormalDensity(double Z);
double NormalCdf(double Z);
double InverseNormalCdf(double P);

}  // namespace Tabrino
