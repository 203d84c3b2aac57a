// The legacy names of the distribution functions: each is the dotted
// function under its old argument convention.
#include <gtest/gtest.h>

#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

struct TAliasCase {
  const char* Legacy;
  std::vector<TTestArg> LegacyArgs;
  const char* Current;
  std::vector<TTestArg> CurrentArgs;
};

TCellValue Evaluate(const char* Name, const std::vector<TTestArg>& Args) {
  std::vector<TFormulaArg> Evaluated;
  for (const TTestArg& A : Args) Evaluated.push_back(A.Arg);
  return Dispatch(Name, Evaluated, {});
}

TFormulaArg Sample() {
  return Column({V(3), V(4), V(5), V(8), V(9), V(1), V(2), V(4), V(5)});
}
TFormulaArg OtherSample() {
  return Column({V(6), V(19), V(3), V(2), V(14), V(4), V(5), V(17), V(1)});
}

TEST(DistributionCompatibility, LegacyNamesKeepTheirConventions) {
  const TAliasCase Cases[] = {
      {"BETADIST", {2, 8, 10, 1, 3}, "BETA.DIST", {2, 8, 10, true, 1, 3}},
      {"BETADIST", {0.3, 2, 3}, "BETA.DIST", {0.3, 2, 3, true}},
      {"BETAINV", {0.6, 8, 10, 1, 3}, "BETA.INV", {0.6, 8, 10, 1, 3}},
      {"BINOMDIST", {6, 10, 0.5, false}, "BINOM.DIST", {6, 10, 0.5, false}},
      {"CHIDIST", {18.307, 10}, "CHISQ.DIST.RT", {18.307, 10}},
      {"CHIINV", {0.05, 10}, "CHISQ.INV.RT", {0.05, 10}},
      {"CHITEST", {Sample(), OtherSample()}, "CHISQ.TEST", {Sample(), OtherSample()}},
      {"CONFIDENCE", {0.05, 2.5, 50}, "CONFIDENCE.NORM", {0.05, 2.5, 50}},
      {"CRITBINOM", {6, 0.5, 0.75}, "BINOM.INV", {6, 0.5, 0.75}},
      {"EXPONDIST", {0.2, 10, true}, "EXPON.DIST", {0.2, 10, true}},
      {"FDIST", {15.2, 6, 4}, "F.DIST.RT", {15.2, 6, 4}},
      {"FINV", {0.01, 6, 4}, "F.INV.RT", {0.01, 6, 4}},
      {"FTEST", {Sample(), OtherSample()}, "F.TEST", {Sample(), OtherSample()}},
      {"GAMMADIST", {10, 9, 2, true}, "GAMMA.DIST", {10, 9, 2, true}},
      {"GAMMAINV", {0.068, 9, 2}, "GAMMA.INV", {0.068, 9, 2}},
      {"HYPGEOMDIST", {1, 4, 8, 20}, "HYPGEOM.DIST", {1, 4, 8, 20, false}},
      {"LOGINV", {0.039, 3.5, 1.2}, "LOGNORM.INV", {0.039, 3.5, 1.2}},
      {"LOGNORMDIST", {4, 3.5, 1.2}, "LOGNORM.DIST", {4, 3.5, 1.2, true}},
      {"NEGBINOMDIST", {10, 5, 0.25}, "NEGBINOM.DIST", {10, 5, 0.25, false}},
      {"NORMDIST", {42, 40, 1.5, false}, "NORM.DIST", {42, 40, 1.5, false}},
      {"NORMINV", {0.9, 40, 1.5}, "NORM.INV", {0.9, 40, 1.5}},
      {"NORMSDIST", {1.333333}, "NORM.S.DIST", {1.333333, true}},
      {"NORMSINV", {0.9}, "NORM.S.INV", {0.9}},
      {"POISSON", {2, 5, true}, "POISSON.DIST", {2, 5, true}},
      {"TDIST", {1.96, 60, 1}, "T.DIST.RT", {1.96, 60}},
      {"TDIST", {1.96, 60, 2}, "T.DIST.2T", {1.96, 60}},
      {"TINV", {0.05, 60}, "T.INV.2T", {0.05, 60}},
      {"TTEST", {Sample(), OtherSample(), 2, 3}, "T.TEST", {Sample(), OtherSample(), 2, 3}},
      {"WEIBULL", {105, 20, 100, false}, "WEIBULL.DIST", {105, 20, 100, false}},
      {"ZTEST", {Sample(), 4}, "Z.TEST", {Sample(), 4}},
  };
  for (const TAliasCase& Case : Cases) {
    TCellValue Legacy = Evaluate(Case.Legacy, Case.LegacyArgs);
    EXPECT_EQ(Legacy.Kind, cvkNumber) << Case.Legacy;
    EXPECT_EQ(Legacy, Evaluate(Case.Current, Case.CurrentArgs)) << Case.Legacy;
  }
}

TEST(DistributionCompatibility, LegacyArgumentRules) {
  ExpectCases({
      {"TDIST", {-1, 10, 1}, E(ceNum)},
      {"TDIST", {1, 10, 3}, E(ceNum)},
      {"TDIST", {1, 0, 2}, E(ceNum)},
      {"TDIST", {-1, "x", 1}, E(ceValue)},
      {"TDIST", {1, 10}, E(ceValue)},
      {"BETADIST", {0.5, 2}, E(ceValue)},
      {"BETADIST", {3, 2, 2, 0, 1}, E(ceNum)},
      {"NORMSDIST", {1, true}, E(ceValue)},
      {"LOGNORMDIST", {-1, 0, 1}, E(ceNum)},
      {"HYPGEOMDIST", {5, 4, 8, 20}, E(ceNum)},
      {"TINV", {0, 10}, E(ceNum)},
      {"CHIINV", {0, 10}, E(ceNum)},
  });
}

}  // namespace
}  // namespace Tabrino
