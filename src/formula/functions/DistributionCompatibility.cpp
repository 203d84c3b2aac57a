// The legacy names of the distribution functions, kept for workbooks written
// before the dotted names. Most are the same function under its old name;
// the rest keep their old argument conventions: a cumulative form without
// the flag (BETADIST, LOGNORMDIST, NORMSDIST), a probability mass form
// without it (HYPGEOMDIST, NEGBINOMDIST), or a tail count (TDIST).
#include <algorithm>
#include <cmath>
#include <vector>

#include "Tabrino.Formula.DistributionBuiltins.h"

namespace Tabrino::DistributionBuiltins {

namespace {

// Body called with the logical Flag put in at Position: the old form of a
// function that later gained a cumulative argument there.
template <TScalarFunction Body, size_t Position, bool Flag>
TCellValue WithFlag(const TFunctionCall& C) {
  std::vector<TFormulaArg> Args(C.Args.begin(), C.Args.end());
  Args.insert(Args.begin() + std::min(Position, Args.size()), TFormulaArg::FromScalar(Bool(Flag)));
  return Body(TFunctionCall{C.Name, Args, C.Context});
}

// TDIST(x, df, tails): the upper tail, or both tails, of |t| >= x >= 0.
TCellValue LegacyTDist(const TFunctionCall& C) {
  double X, Df, Tails;
  if (!ReadNumbers(C, {&X, &Df, &Tails})) return Err(ceValue);
  Tails = std::trunc(Tails);
  if (X < 0 || (Tails != 1 && Tails != 2)) return Err(ceNum);
  TFunctionCall Call{C.Name, C.Args.first(2), C.Context};
  return Tails == 1 ? TDistRt(Call) : TDist2T(Call);
}

}  // namespace

}  // namespace Tabrino::DistributionBuiltins

namespace Tabrino {

std::span<const TFunctionDef> DistributionCompatibilityFunctions() {
  using namespace DistributionBuiltins;
  static constexpr TFunctionDef Table[] = {
      {"BETADIST", 3, 5, fnNone, WithFlag<BetaDist, 3, true>},
      {"BETAINV", 3, 5, fnNone, BetaInv},
      {"BINOMDIST", 4, 4, fnNone, BinomDist},
      {"CHIDIST", 2, 2, fnNone, ChisqDistRt},
      {"CHIINV", 2, 2, fnNone, ChisqInvRt},
      {"CHITEST", 2, 2, fnNone, ChisqTest},
      {"CONFIDENCE", 3, 3, fnNone, ConfidenceNorm},
      {"CRITBINOM", 3, 3, fnNone, BinomInv},
      {"EXPONDIST", 3, 3, fnNone, ExponDist},
      {"FDIST", 3, 3, fnNone, FDistRt},
      {"FINV", 3, 3, fnNone, FInvRt},
      {"FTEST", 2, 2, fnNone, FTest},
      {"GAMMADIST", 4, 4, fnNone, GammaDist},
      {"GAMMAINV", 3, 3, fnNone, GammaInv},
      {"HYPGEOMDIST", 4, 4, fnNone, WithFlag<HypgeomDist, 4, false>},
      {"LOGINV", 3, 3, fnNone, LognormInv},
      {"LOGNORMDIST", 3, 3, fnNone, WithFlag<LognormDist, 3, true>},
      {"NEGBINOMDIST", 3, 3, fnNone, WithFlag<NegbinomDist, 3, false>},
      {"NORMDIST", 4, 4, fnNone, NormDist},
      {"NORMINV", 3, 3, fnNone, NormInv},
      {"NORMSDIST", 1, 1, fnNone, WithFlag<NormSDist, 1, true>},
      {"NORMSINV", 1, 1, fnNone, NormSInv},
      {"POISSON", 3, 3, fnNone, PoissonDist},
      {"TDIST", 3, 3, fnNone, LegacyTDist},
      {"TINV", 2, 2, fnNone, TInv2T},
      {"TTEST", 4, 4, fnNone, TTest},
      {"WEIBULL", 4, 4, fnNone, WeibullDist},
      {"ZTEST", 2, 3, fnNone, ZTest},
  };
  return Table;
}

}  // namespace Tabrino
