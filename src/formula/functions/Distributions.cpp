// Continuous probability distributions: normal, lognormal, exponential,
// Weibull, gamma, beta, chi-square, F and Student's t, with their densities,
// tails and inverses, and the gamma function itself. Domains and errors
// follow the documented behaviour of the major spreadsheets: an argument
// that is no number is #VALUE!, one outside the domain #NUM!, degrees of
// freedom are truncated and must lie in [1, 1E10].
#include <cmath>
#include <numbers>

#include "Tabrino.Formula.DistributionBuiltins.h"
#include "Tabrino.Formula.Distributions.h"

namespace Tabrino::DistributionBuiltins {

namespace {

// The lower tail p as a pair, and the upper tail q as a pair.
TTailPair LowerTail(double P) {
  return {P, 1 - P};
}
TTailPair UpperTail(double Q) {
  return {1 - Q, Q};
}

// The cumulative flag at Index, or Default when the call leaves it out.
bool ReadOptFlag(const TFunctionCall& Call, size_t Index, bool Default, bool& Flag) {
  if (Index >= Call.Count()) {
    Flag = Default;
    return true;
  }
  return ReadFlag(Call[Index], Flag);
}

TCellValue Phi(const TFunctionCall& C) {
  double Z;
  if (!ReadNumbers(C, {&Z})) return Err(ceValue);
  return Checked(NormalDensity(Z));
}

// Phi(z) - 1/2 through erf, which keeps the digits of a small result.
TCellValue Gauss(const TFunctionCall& C) {
  double Z;
  if (!ReadNumbers(C, {&Z})) return Err(ceValue);
  return Checked(0.5 * std::erf(Z / std::numbers::sqrt2));
}

TCellValue GammaFn(const TFunctionCall& C) {
  double X;
  if (!ReadNumbers(C, {&X})) return Err(ceValue);
  return Checked(GammaFunction(X));
}

TCellValue GammaLn(const TFunctionCall& C) {
  double X;
  if (!ReadNumbers(C, {&X})) return Err(ceValue);
  if (X <= 0) return Err(ceNum);
  return Checked(LogGamma(X));
}

TCellValue ChisqDist(const TFunctionCall& C) {
  double X, Df;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Df}) || !ReadFlag(C[2], Cumulative)) return Err(ceValue);
  if (X < 0 || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(Cumulative ? GammaTails(X / 2, Df / 2).Lower : GammaDensity(X / 2, Df / 2) / 2);
}

TCellValue ChisqInv(const TFunctionCall& C) {
  double P, Df;
  if (!ReadNumbers(C, {&P, &Df})) return Err(ceValue);
  if (!IsProbability(P) || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(2 * GammaQuantile(LowerTail(P), Df / 2));
}

// The OpenDocument forms: CHISQDIST's flag is optional (cumulative by
// default) and the distribution has no mass below 0; CHISQINV takes p in [0, 1).
TCellValue OpenChisqDist(const TFunctionCall& C) {
  double X, Df;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Df}) || !ReadOptFlag(C, 2, true, Cumulative)) return Err(ceValue);
  if (!ValidDegrees(Df)) return Err(ceNum);
  if (X < 0) return Num(0);
  return Checked(Cumulative ? GammaTails(X / 2, Df / 2).Lower : GammaDensity(X / 2, Df / 2) / 2);
}

TCellValue OpenChisqInv(const TFunctionCall& C) {
  double P, Df;
  if (!ReadNumbers(C, {&P, &Df})) return Err(ceValue);
  if (!(P >= 0 && P < 1) || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(2 * GammaQuantile(LowerTail(P), Df / 2));
}

TCellValue FDist(const TFunctionCall& C) {
  double X, D1, D2;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &D1, &D2}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  if (X < 0 || !ValidDegrees(D1) || !ValidDegrees(D2)) return Err(ceNum);
  return Checked(Cumulative ? FisherTails(X, D1, D2).Lower : FisherDensity(X, D1, D2));
}

TCellValue FInv(const TFunctionCall& C) {
  double P, D1, D2;
  if (!ReadNumbers(C, {&P, &D1, &D2})) return Err(ceValue);
  if (!IsProbability(P) || !ValidDegrees(D1) || !ValidDegrees(D2)) return Err(ceNum);
  return Checked(FisherQuantile(LowerTail(P), D1, D2));
}

TCellValue TDist(const TFunctionCall& C) {
  double X, Df;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Df}) || !ReadFlag(C[2], Cumulative)) return Err(ceValue);
  if (!ValidDegrees(Df)) return Err(ceNum);
  return Checked(Cumulative ? StudentTTails(X, Df).Lower : StudentTDensity(X, Df));
}

TCellValue TInv(const TFunctionCall& C) {
  double P, Df;
  if (!ReadNumbers(C, {&P, &Df})) return Err(ceValue);
  if (!(P > 0 && P <= 1) || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(StudentTQuantile(LowerTail(P), Df));
}

}  // namespace

TCellValue NormDist(const TFunctionCall& C) {
  double X, Mean, Sd;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Mean, &Sd}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  if (Sd <= 0) return Err(ceNum);
  double Z = (X - Mean) / Sd;
  return Checked(Cumulative ? NormalCdf(Z) : NormalDensity(Z) / Sd);
}

TCellValue NormSDist(const TFunctionCall& C) {
  double Z;
  bool Cumulative;
  if (!ReadNumbers(C, {&Z}) || !ReadFlag(C[1], Cumulative)) return Err(ceValue);
  return Checked(Cumulative ? NormalCdf(Z) : NormalDensity(Z));
}

TCellValue NormInv(const TFunctionCall& C) {
  double P, Mean, Sd;
  if (!ReadNumbers(C, {&P, &Mean, &Sd})) return Err(ceValue);
  if (!IsOpenProbability(P) || Sd <= 0) return Err(ceNum);
  return Checked(Mean + Sd * InverseNormalCdf(P));
}

TCellValue NormSInv(const TFunctionCall& C) {
  double P;
  if (!ReadNumbers(C, {&P})) return Err(ceValue);
  if (!IsOpenProbability(P)) return Err(ceNum);
  return Checked(InverseNormalCdf(P));
}

TCellValue LognormDist(const TFunctionCall& C) {
  double X, Mean, Sd;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Mean, &Sd}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  if (X <= 0 || Sd <= 0) return Err(ceNum);
  double Z = (std::log(X) - Mean) / Sd;
  return Checked(Cumulative ? NormalCdf(Z) : NormalDensity(Z) / (X * Sd));
}

TCellValue LognormInv(const TFunctionCall& C) {
  double P, Mean, Sd;
  if (!ReadNumbers(C, {&P, &Mean, &Sd})) return Err(ceValue);
  if (!IsOpenProbability(P) || Sd <= 0) return Err(ceNum);
  return Checked(std::exp(Mean + Sd * InverseNormalCdf(P)));
}

TCellValue ExponDist(const TFunctionCall& C) {
  double X, Lambda;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Lambda}) || !ReadFlag(C[2], Cumulative)) return Err(ceValue);
  if (X < 0 || Lambda <= 0) return Err(ceNum);
  return Checked(Cumulative ? -std::expm1(-Lambda * X) : Lambda * std::exp(-Lambda * X));
}

TCellValue WeibullDist(const TFunctionCall& C) {
  double X, Alpha, Beta;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Alpha, &Beta}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  if (X < 0 || Alpha <= 0 || Beta <= 0) return Err(ceNum);
  double Power = std::pow(X / Beta, Alpha);
  if (Cumulative) return Checked(-std::expm1(-Power));
  return Checked(Alpha / Beta * std::pow(X / Beta, Alpha - 1) * std::exp(-Power));
}

TCellValue GammaDist(const TFunctionCall& C) {
  double X, Alpha, Beta;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Alpha, &Beta}) || !ReadFlag(C[3], Cumulative)) return Err(ceValue);
  if (X < 0 || Alpha <= 0 || Beta <= 0) return Err(ceNum);
  return Checked(Cumulative ? GammaTails(X / Beta, Alpha).Lower : GammaDensity(X / Beta, Alpha) / Beta);
}

TCellValue GammaInv(const TFunctionCall& C) {
  double P, Alpha, Beta;
  if (!ReadNumbers(C, {&P, &Alpha, &Beta})) return Err(ceValue);
  if (!IsProbability(P) || Alpha <= 0 || Beta <= 0) return Err(ceNum);
  return Checked(Beta * GammaQuantile(LowerTail(P), Alpha));
}

// On [A, B] (default [0, 1]); the point is measured from both ends so that
// either tail keeps its digits.
TCellValue BetaDist(const TFunctionCall& C) {
  double X, Alpha, Beta, Low, High;
  bool Cumulative;
  if (!ReadNumbers(C, {&X, &Alpha, &Beta}) || !ReadFlag(C[3], Cumulative) || !OptArgNumber(C, 4, 0, Low) ||
      !OptArgNumber(C, 5, 1, High))
    return Err(ceValue);
  if (Alpha <= 0 || Beta <= 0 || !(Low < High) || X < Low || X > High) return Err(ceNum);
  double Width = High - Low;
  TUnitPoint Point{(X - Low) / Width, (High - X) / Width};
  return Checked(Cumulative ? RegularizedBeta(Alpha, Beta, Point).Lower : BetaDensity(Point, Alpha, Beta) / Width);
}

TCellValue BetaInv(const TFunctionCall& C) {
  double P, Alpha, Beta, Low, High;
  if (!ReadNumbers(C, {&P, &Alpha, &Beta}) || !OptArgNumber(C, 3, 0, Low) || !OptArgNumber(C, 4, 1, High))
    return Err(ceValue);
  if (!(P > 0 && P <= 1) || Alpha <= 0 || Beta <= 0 || !(Low < High)) return Err(ceNum);
  TUnitPoint Point = InverseRegularizedBeta(Alpha, Beta, LowerTail(P));
  double Width = High - Low;
  return Checked(Point.X <= 0.5 ? Low + Width * Point.X : High - Width * Point.Y);
}

TCellValue ChisqDistRt(const TFunctionCall& C) {
  double X, Df;
  if (!ReadNumbers(C, {&X, &Df})) return Err(ceValue);
  if (X < 0 || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(GammaTails(X / 2, Df / 2).Upper);
}

TCellValue ChisqInvRt(const TFunctionCall& C) {
  double Q, Df;
  if (!ReadNumbers(C, {&Q, &Df})) return Err(ceValue);
  if (!IsProbability(Q) || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(2 * GammaQuantile(UpperTail(Q), Df / 2));
}

TCellValue FDistRt(const TFunctionCall& C) {
  double X, D1, D2;
  if (!ReadNumbers(C, {&X, &D1, &D2})) return Err(ceValue);
  if (X < 0 || !ValidDegrees(D1) || !ValidDegrees(D2)) return Err(ceNum);
  return Checked(FisherTails(X, D1, D2).Upper);
}

TCellValue FInvRt(const TFunctionCall& C) {
  double Q, D1, D2;
  if (!ReadNumbers(C, {&Q, &D1, &D2})) return Err(ceValue);
  if (!IsProbability(Q) || !ValidDegrees(D1) || !ValidDegrees(D2)) return Err(ceNum);
  return Checked(FisherQuantile(UpperTail(Q), D1, D2));
}

TCellValue TDistRt(const TFunctionCall& C) {
  double X, Df;
  if (!ReadNumbers(C, {&X, &Df})) return Err(ceValue);
  if (!ValidDegrees(Df)) return Err(ceNum);
  return Checked(StudentTTails(X, Df).Upper);
}

TCellValue TDist2T(const TFunctionCall& C) {
  double X, Df;
  if (!ReadNumbers(C, {&X, &Df})) return Err(ceValue);
  if (X < 0 || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(2 * StudentTTails(X, Df).Upper);
}

// The t beyond which both tails together hold p.
TCellValue TInv2T(const TFunctionCall& C) {
  double P, Df;
  if (!ReadNumbers(C, {&P, &Df})) return Err(ceValue);
  if (!(P > 0 && P <= 1) || !ValidDegrees(Df)) return Err(ceNum);
  return Checked(StudentTQuantile(UpperTail(P / 2), Df));
}

}  // namespace Tabrino::DistributionBuiltins

namespace Tabrino {

std::span<const TFunctionDef> DistributionFunctions() {
  using namespace DistributionBuiltins;
  static constexpr TFunctionDef Table[] = {
      {"NORM.DIST", 4, 4, fnNone, NormDist},
      {"NORM.INV", 3, 3, fnNone, NormInv},
      {"NORM.S.DIST", 2, 2, fnNone, NormSDist},
      {"NORM.S.INV", 1, 1, fnNone, NormSInv},
      {"PHI", 1, 1, fnNone, Phi},
      {"GAUSS", 1, 1, fnNone, Gauss},
      {"LOGNORM.DIST", 4, 4, fnNone, LognormDist},
      {"LOGNORM.INV", 3, 3, fnNone, LognormInv},
      {"EXPON.DIST", 3, 3, fnNone, ExponDist},
      {"WEIBULL.DIST", 4, 4, fnNone, WeibullDist},
      {"GAMMA", 1, 1, fnNone, GammaFn},
      {"GAMMALN", 1, 1, fnNone, GammaLn},
      {"GAMMALN.PRECISE", 1, 1, fnNone, GammaLn},
      {"GAMMA.DIST", 4, 4, fnNone, GammaDist},
      {"GAMMA.INV", 3, 3, fnNone, GammaInv},
      {"BETA.DIST", 4, 6, fnNone, BetaDist},
      {"BETA.INV", 3, 5, fnNone, BetaInv},
      {"CHISQ.DIST", 3, 3, fnNone, ChisqDist},
      {"CHISQ.DIST.RT", 2, 2, fnNone, ChisqDistRt},
      {"CHISQ.INV", 2, 2, fnNone, ChisqInv},
      {"CHISQ.INV.RT", 2, 2, fnNone, ChisqInvRt},
      {"CHISQDIST", 2, 3, fnNone, OpenChisqDist},
      {"CHISQINV", 2, 2, fnNone, OpenChisqInv},
      {"F.DIST", 4, 4, fnNone, FDist},
      {"F.DIST.RT", 3, 3, fnNone, FDistRt},
      {"F.INV", 3, 3, fnNone, FInv},
      {"F.INV.RT", 3, 3, fnNone, FInvRt},
      {"T.DIST", 3, 3, fnNone, TDist},
      {"T.DIST.2T", 2, 2, fnNone, TDist2T},
      {"T.DIST.RT", 2, 2, fnNone, TDistRt},
      {"T.INV", 2, 2, fnNone, TInv},
      {"T.INV.2T", 2, 2, fnNone, TInv2T},
  };
  return Table;
}

}  // namespace Tabrino
