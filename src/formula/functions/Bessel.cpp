// Bessel functions of whole order n >= 0: BESSELJ and BESSELY of the first
// and second kind, BESSELI and BESSELK modified. All to full double precision
// by documented methods:
//
// - J: Miller's backward recurrence, run on the ratios J_k/J_(k-1) so that it
//   can neither overflow nor underflow, and normalised by the identity
//   J_0 + 2(J_2 + J_4 + ...) = 1. Beyond x = 25, for orders below x, Hankel's
//   asymptotic expansions of J_0 and J_1 and forward recurrence, which is
//   stable while the order stays below x.
// - Y: Neumann's series over those J up to x = 25, Hankel's expansions beyond;
//   then forward recurrence, which is stable for Y at every order.
// - I: the power series up to x = 30 (positive terms, so no cancellation);
//   beyond, the asymptotic expansion of I_0 and the backward recurrence for
//   the ratio I_n/I_0.
// - K: K_0 and K_1 by the trapezoidal rule on the integral of
//   exp(-x cosh t) cosh(nu t), which converges exponentially for an integrand
//   this smooth; then forward recurrence, stable for K.
//
// A result too large for a double, a negative order, or an x outside the
// domain (x <= 0 for Y and K) is #NUM!.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>
#include <utility>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double EulerGamma = std::numbers::egamma;
constexpr double HankelFrom = 25;       // J and Y: Hankel's expansions beyond
constexpr double ISeriesUpTo = 30;      // I: the power series up to
constexpr double IOverflowFrom = 1419;  // I: e^(x/2) overflows beyond
constexpr double MaxOrder = 1e6;        // recurrences longer than this are refused
constexpr double LogSmallest = -746;    // a logarithm below this is 0 as a double
constexpr double NotComputable = NAN;

// Logarithm of (x/2)^n / n!, which bounds |J_n(x)| for x >= 0.
double LogLeadingTerm(double N, double X) {
  return N * std::log(X / 2) - std::lgamma(N + 1);
}

struct TCylinder {
  double J, Y;
};

// Hankel's asymptotic expansions of J_nu and Y_nu, nu 0 or 1, for large x:
// sqrt(2/(pi x)) (P cos w - Q sin w) and (P sin w + Q cos w), w = x - (2nu+1)pi/4.
TCylinder Hankel(int Nu, double X) {
  double Mu = 4.0 * Nu * Nu;
  double P = 0, Q = 0, Term = 1;
  for (int K = 0; K < 200; ++K) {
    double Signed = (K / 2) % 2 == 0 ? Term : -Term;
    (K % 2 == 0 ? P : Q) += Signed;
    double Odd = 2.0 * K + 1;
    double Next = Term * (Mu - Odd * Odd) / ((K + 1) * 8.0 * X);
    // Stop where the terms no longer matter, or where the series starts to diverge.
    if (std::fabs(Next) < 1e-17 * std::fabs(P) || std::fabs(Next) >= std::fabs(Term)) break;
    Term = Next;
  }
  // cos and sin of w from those of x, which are reduced exactly even for huge x.
  double C = std::cos(X), S = std::sin(X);
  double CosW = Nu == 0 ? C + S : S - C;
  double SinW = Nu == 0 ? S - C : -(S + C);
  double Amplitude = std::sqrt(2 / (Pi * X)) / std::numbers::sqrt2;
  return {Amplitude * (P * CosW - Q * SinW), Amplitude * (P * SinW + Q * CosW)};
}

// J_0(x) .. J_Last(x) for x > 0, where Last >= Top: Miller's recurrence from
// well above both Top and x. With r_k = J_k/J_(k-1), the recurrence
// J_(k-1) = (2k/x) J_k - J_(k+1) reads r_k = 1 / (2k/x - r_(k+1)).
std::vector<double> BesselJSequence(double X, int Top) {
  double Base = std::max<double>(Top, std::ceil(X));
  int Last = static_cast<int>(Base + 20 + std::sqrt(60 * Base));
  std::vector<double> Ratio(Last + 2, 0.0);
  for (int K = Last; K >= 1; --K) {
    double Denominator = 2.0 * K / X - Ratio[K + 1];
    // An exact zero of J_(k-1) at x: any tiny value keeps the products finite.
    Ratio[K] = 1 / (Denominator != 0 ? Denominator : 1e-300);
  }
  // J_k = J_0 * r_1 * ... * r_k, and 1 = J_0 (1 + 2 * sum of the even products).
  std::vector<double> J(Last + 1);
  J[0] = 1;
  double EvenSum = 0;
  for (int K = 1; K <= Last; ++K) {
    J[K] = J[K - 1] * Ratio[K];
    if (K % 2 == 0) EvenSum += J[K];
  }
  double J0 = 1 / (1 + 2 * EvenSum);
  for (double& V : J) V *= J0;
  return J;
}

// Forward recurrence F_(k+1) = (2k/x) F_k - F_(k-1) from F_0, F_1 up to F_n,
// for J below x and for Y; an overflow ends it with infinity.
double RecurUp(double F0, double F1, int N, double X) {
  if (N == 0) return F0;
  for (int K = 1; K < N && std::isfinite(F1); ++K) {
    double Next = 2.0 * K / X * F1 - F0;
    F0 = F1;
    F1 = Next;
  }
  return F1;
}

// x >= 0.
double BesselJ(int N, double X) {
  if (X == 0) return N == 0 ? 1 : 0;
  if (N > X && LogLeadingTerm(N, X) < LogSmallest) return 0;
  if (N > MaxOrder) return NotComputable;
  if (X > HankelFrom && N < X) return RecurUp(Hankel(0, X).J, Hankel(1, X).J, N, X);
  return BesselJSequence(X, N)[N];
}

// Neumann's series of Y_0 and Y_1 over J_0, J_1, ... (x > 0):
//   Y_0 = (2/pi)(ln(x/2) + gamma) J_0 - (4/pi) sum (-1)^k J_2k / k
//   Y_1 = -2/(pi x) J_0 + (2/pi)(ln(x/2) - 1 + gamma) J_1
//         - (2/pi) sum (-1)^k (2k+1) J_(2k+1) / (k (k+1))
std::pair<double, double> NeumannY01(double X) {
  std::vector<double> J = BesselJSequence(X, 1);
  double Sum0 = 0, Sum1 = 0;
  for (size_t K = 1; 2 * K + 1 < J.size(); ++K) {
    double Sign = K % 2 == 0 ? 1 : -1;
    Sum0 += Sign * J[2 * K] / K;
    Sum1 += Sign * (2.0 * K + 1) * J[2 * K + 1] / (K * (K + 1.0));
  }
  double Log = std::log(X / 2) + EulerGamma;
  double Y0 = 2 / Pi * Log * J[0] - 4 / Pi * Sum0;
  double Y1 = -2 / (Pi * X) * J[0] + 2 / Pi * (Log - 1) * J[1] - 2 / Pi * Sum1;
  return {Y0, Y1};
}

// x > 0.
double BesselY(int N, double X) {
  if (N > MaxOrder) return NotComputable;
  double Y0, Y1;
  if (X > HankelFrom) {
    Y0 = Hankel(0, X).Y;
    Y1 = Hankel(1, X).Y;
  } else {
    std::tie(Y0, Y1) = NeumannY01(X);
  }
  return RecurUp(Y0, Y1, N, X);
}

// I_n(x) = sum over k of (x/2)^(2k+n) / (k! (n+k)!), for 0 < x <= 30.
double BesselISeries(int N, double X) {
  double Half = X / 2, Term = 1;
  for (int K = 1; K <= N; ++K) Term *= Half / K;
  double Sum = Term;
  for (int K = 1; Term > 1e-17 * Sum; ++K) {
    Term *= Half * Half / (K * (K + N + 0.0));
    Sum += Term;
  }
  return Sum;
}

// I_0(x) e^-x sqrt(2 pi x) for large x: sum of a_k / x^k with
// a_k = 1^2 3^2 ... (2k-1)^2 / (k! 8^k).
double ScaledI0Asymptotic(double X) {
  double Sum = 1, Term = 1;
  for (int K = 1; K < 200 && Term > 1e-17 * Sum; ++K) {
    double Odd = 2.0 * K - 1;
    Term *= Odd * Odd / (8.0 * K * X);
    Sum += Term;
  }
  return Sum;
}

// I_n(x) / I_0(x) by the backward recurrence on q_k = I_k/I_(k-1),
// q_k = 1 / (2k/x + q_(k+1)), started where I_k has fallen far below I_n.
double BesselIRatio(int N, double X) {
  int Start = static_cast<int>(std::sqrt(double(N) * N + 100 * X)) + 20;
  double Q = 0, Product = 1;
  for (int K = Start; K >= 1; --K) {
    Q = 1 / (2.0 * K / X + Q);
    if (K <= N) Product *= Q;
  }
  return Product;
}

// x >= 0.
double BesselI(int N, double X) {
  if (X == 0) return N == 0 ? 1 : 0;
  // (x/2)^n/n! times exp(x^2/(4(n+1))) bounds I_n(x).
  if (LogLeadingTerm(N, X) + X * X / (4 * (N + 1.0)) < LogSmallest) return 0;
  if (N > MaxOrder) return NotComputable;
  if (X <= ISeriesUpTo) return BesselISeries(N, X);
  if (X > IOverflowFrom) return NotComputable;
  // e^x in two halves, so that a result near the top of the range survives.
  double HalfGrowth = std::exp(X / 2);
  return HalfGrowth * BesselIRatio(N, X) * (HalfGrowth * ScaledI0Asymptotic(X) / std::sqrt(2 * Pi * X));
}

// e^x K_nu(x), nu 0 or 1, x > 0: the trapezoidal rule on the integral over
// t >= 0 of exp(-x (cosh t - 1)) cosh(nu t). The step shrinks as 1/sqrt(x)
// with the width of the integrand's peak.
double ScaledK01(int Nu, double X) {
  double H = std::min(0.15, 0.2 / std::sqrt(X));
  double Sum = 0.5;  // half the integrand at t = 0
  for (int J = 1;; ++J) {
    double T = J * H;
    double Sinh = std::sinh(T / 2);
    double Exponent = 2 * X * Sinh * Sinh;  // x (cosh t - 1) without cancellation
    Sum += std::exp(-Exponent) * (Nu == 0 ? 1 : std::cosh(T));
    // Past this point every further term is below e^-45 and still falling.
    if (Exponent > 45 + Nu * T) break;
  }
  return H * Sum;
}

// x > 0.
double BesselK(int N, double X) {
  if (N > MaxOrder) return NotComputable;
  double K0, K1, Decay;
  if (X < 1e-280) {
    // So close to 0 the integral reaches too far out; the leading terms are exact here.
    K0 = -(std::log(X / 2) + EulerGamma);
    K1 = 1 / X;
    Decay = 1;
  } else {
    // e^-x in two halves, as for I: one now, one after the recurrence.
    Decay = std::exp(-X / 2);
    K0 = ScaledK01(0, X) * Decay;
    K1 = ScaledK01(1, X) * Decay;
  }
  // K_(k+1) = K_(k-1) + (2k/x) K_k.
  for (int K = 1; K < N && std::isfinite(K1); ++K) {
    double Next = K0 + 2.0 * K / X * K1;
    K0 = K1;
    K1 = Next;
  }
  return (N == 0 ? K0 : K1) * Decay;
}

// BESSELx(x, n): x numeric, n truncated and not negative.
template <double (*Bessel)(int, double), bool PositiveXOnly>
TCellValue BesselFunction(const TFunctionCall& C) {
  double X, N;
  if (!ArgNumber(C[0], X) || !ArgInteger(C[1], N)) return Err(ceValue);
  if (!(N >= 0) || !std::isfinite(X) || (PositiveXOnly && X <= 0)) return Err(ceNum);
  int Order = static_cast<int>(std::min(N, MaxOrder + 1));
  // J and I of -x: (-1)^n times the value at x.
  double Sign = X < 0 && Order % 2 == 1 ? -1 : 1;
  double Result = Sign * Bessel(Order, std::fabs(X));
  return std::isfinite(Result) ? Num(Result) : Err(ceNum);
}

}  // namespace

std::span<const TFunctionDef> BesselFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"BESSELI", 2, 2, fnNone, BesselFunction<BesselI, false>},
      {"BESSELJ", 2, 2, fnNone, BesselFunction<BesselJ, false>},
      {"BESSELK", 2, 2, fnNone, BesselFunction<BesselK, true>},
      {"BESSELY", 2, 2, fnNone, BesselFunction<BesselY, true>},
  };
  return Table;
}

}  // namespace Tabrino
