// Continuous distributions. Reference values: mpmath 1.3 at 40 digits
// (ncdf, npdf, gammainc, betainc through hyp2f1, gamma, loggamma; quantiles
// solved by bisection and secant steps at 40 digits). Where the documented
// examples of the major spreadsheets give the same call, they agree to the
// digits they print.
#include <gtest/gtest.h>

#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

struct TPreciseCase {
  const char* Name;
  std::vector<TTestArg> Args;
  double Expected;
};

void ExpectPrecise(std::initializer_list<TPreciseCase> Cases, double Relative = 1e-12) {
  for (const TPreciseCase& Case : Cases) {
    std::vector<TFormulaArg> Evaluated;
    for (const TTestArg& A : Case.Args) Evaluated.push_back(A.Arg);
    EXPECT_TRUE(IsNear(Dispatch(Case.Name, Evaluated, {}), Case.Expected, Relative))
        << Describe({Case.Name, Case.Args, {}});
  }
}

TEST(Distributions, WrongArgumentCounts) {
  ExpectCases({
      {"NORM.DIST", {1, 0, 1}, E(ceValue)},
      {"NORM.S.DIST", {1}, E(ceValue)},
      {"NORM.S.INV", {0.5, 1}, E(ceValue)},
      {"GAMMA", {}, E(ceValue)},
      {"BETA.DIST", {0.5, 1, 1}, E(ceValue)},
      {"BETA.DIST", {0.5, 1, 1, true, 0, 1, 2}, E(ceValue)},
      {"BETA.INV", {0.5, 1, 1, 0, 1, 2}, E(ceValue)},
      {"CHISQ.DIST", {1, 2}, E(ceValue)},
      {"CHISQDIST", {1}, E(ceValue)},
      {"F.DIST", {1, 2, 3}, E(ceValue)},
      {"T.INV.2T", {0.5}, E(ceValue)},
  });
}

TEST(Distributions, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"NORM.DIST", {"x", 0, 1, true}, E(ceValue)},
      {"NORM.DIST", {1, 0, 1, E(ceNA)}, E(ceValue)},
      {"NORM.S.INV", {E(ceDiv0)}, E(ceValue)},
      {"GAMMA.DIST", {1, "two", 1, true}, E(ceValue)},
      {"T.DIST", {1, "", true}, E(ceValue)},
      // A non-numeric argument outranks one outside the domain.
      {"CHISQ.DIST.RT", {-1, "x"}, E(ceValue)},
  });
  // Typed text that reads as a number is that number; a number is a flag.
  EXPECT_TRUE(IsNear(Call("EXPON.DIST", {"0.2", 10, "TRUE"}), 8.6466471676338732e-1));
  EXPECT_TRUE(IsNear(Call("EXPON.DIST", {0.2, 10, 0}), 1.3533528323661268));
}

TEST(Distributions, DomainEdges) {
  ExpectCases({
      {"NORM.DIST", {1, 0, 0, true}, E(ceNum)},
      {"NORM.INV", {0, 0, 1}, E(ceNum)},
      {"NORM.INV", {1, 0, 1}, E(ceNum)},
      {"NORM.S.INV", {0.5}, V(0)},
      {"LOGNORM.DIST", {0, 0, 1, true}, E(ceNum)},
      {"LOGNORM.INV", {0.5, 0, -1}, E(ceNum)},
      {"EXPON.DIST", {-1, 1, true}, E(ceNum)},
      {"EXPON.DIST", {1, 0, true}, E(ceNum)},
      {"WEIBULL.DIST", {0, 1, 2, false}, V(0.5)},
      {"WEIBULL.DIST", {0, 0.5, 2, false}, E(ceNum)},
      {"GAMMA", {0}, E(ceNum)},
      {"GAMMA", {-2}, E(ceNum)},
      {"GAMMA", {172}, E(ceNum)},
      {"GAMMALN", {0}, E(ceNum)},
      {"GAMMA.DIST", {0, 1, 1, false}, V(1)},
      {"GAMMA.DIST", {0, 2, 1, true}, V(0)},
      {"GAMMA.INV", {0, 2, 1}, V(0)},
      {"GAMMA.INV", {1, 2, 1}, E(ceNum)},
      {"GAMMA.INV", {1.1, 2, 1}, E(ceNum)},
      {"BETA.DIST", {0.5, 0, 1, true}, E(ceNum)},
      {"BETA.DIST", {3, 2, 2, true, 1, 2}, E(ceNum)},
      {"BETA.DIST", {1, 2, 2, true, 1, 1}, E(ceNum)},
      {"BETA.DIST", {1, 2, 2, true, 0, 1}, V(1)},
      {"BETA.INV", {0, 2, 2}, E(ceNum)},
      {"BETA.INV", {1, 2, 2, 5, 7}, V(7)},
      {"CHISQ.DIST", {-0.1, 2, true}, E(ceNum)},
      {"CHISQ.DIST", {1, 0.9, true}, E(ceNum)},
      {"CHISQ.DIST", {1, 1E10 + 1, true}, E(ceNum)},
      {"CHISQ.DIST", {0, 2, false}, V(0.5)},
      {"CHISQ.DIST", {0, 1, false}, E(ceNum)},
      {"CHISQ.INV.RT", {0, 2}, E(ceNum)},
      {"CHISQ.INV", {0, 2}, V(0)},
      {"CHISQDIST", {-1, 2}, V(0)},
      {"CHISQINV", {1, 2}, E(ceNum)},
      {"F.DIST", {-1, 2, 2, true}, E(ceNum)},
      {"F.DIST", {0, 2, 5, false}, V(1)},
      {"F.INV.RT", {1, 2, 3}, V(0)},
      {"T.DIST", {1, 0.5, true}, E(ceNum)},
      {"T.DIST", {0, 7, true}, V(0.5)},
      {"T.DIST.2T", {-1, 3}, E(ceNum)},
      {"T.DIST.2T", {0, 3}, V(1)},
      {"T.INV", {0, 3}, E(ceNum)},
      {"T.INV", {1, 3}, E(ceNum)},
      {"T.INV.2T", {1, 3}, V(0)},
      {"T.INV.2T", {1.5, 3}, E(ceNum)},
  });
}

TEST(Distributions, TruncatedDegreesOfFreedom) {
  EXPECT_EQ(Call("CHISQ.DIST", {3, 2.9, true}), Call("CHISQ.DIST", {3, 2, true}));
  EXPECT_EQ(Call("T.DIST.RT", {1.5, 4.99}), Call("T.DIST.RT", {1.5, 4}));
  EXPECT_EQ(Call("F.INV", {0.3, 3.5, 7.2}), Call("F.INV", {0.3, 3, 7}));
}

TEST(Distributions, AgreeWithReferenceValues) {
  ExpectPrecise({
      {"NORM.DIST", {42, 40, 1.5, true}, 9.0878878027413213e-1},
      {"NORM.DIST", {42, 40, 1.5, false}, 1.0934004978399575e-1},
      {"NORM.S.DIST", {1.333333, false}, 1.6401014756936721e-1},
      {"NORM.S.INV", {0.908789}, 1.3333346730441072},
      {"NORM.INV", {0.908789, 40, 1.5}, 4.2000002009566161e+1},
      {"PHI", {0.75}, 3.011374321548044e-1},
      {"GAUSS", {2}, 4.7724986805182079e-1},
      {"LOGNORM.DIST", {4, 3.5, 1.2, true}, 3.9083555706800468e-2},
      {"LOGNORM.DIST", {4, 3.5, 1.2, false}, 1.7617596681819222e-2},
      {"LOGNORM.INV", {0.039084, 3.5, 1.2}, 4.0000252186806354},
      {"EXPON.DIST", {0.2, 10, true}, 8.6466471676338732e-1},
      {"EXPON.DIST", {0.2, 10, false}, 1.3533528323661268},
      {"WEIBULL.DIST", {105, 20, 100, true}, 9.2958139006927678e-1},
      {"WEIBULL.DIST", {105, 20, 100, false}, 3.5588864024504382e-2},
      {"GAMMA.DIST", {10.00001131, 9, 2, true}, 6.809400386978732e-2},
      {"GAMMA.DIST", {10.00001131, 9, 2, false}, 3.2639130418293998e-2},
      {"GAMMA.INV", {0.068094, 9, 2}, 1.0000011191437178e+1},
      {"GAMMA", {2.5}, 1.329340388179137},
      {"GAMMA", {-3.75}, 2.678661288614166e-1},
      {"GAMMALN", {4}, 1.791759469228055},
      {"GAMMALN.PRECISE", {0.001}, 6.9071788853838537},
      {"BETA.DIST", {2, 8, 10, true, 1, 3}, 6.854705810546875e-1},
      {"BETA.DIST", {2, 8, 10, false, 1, 3}, 1.4837646484375},
      {"BETA.INV", {0.685470581, 8, 10, 1, 3}, 1.9999999999631428},
      {"CHISQ.DIST", {0.5, 1, true}, 5.2049987781304654e-1},
      {"CHISQ.DIST", {2, 3, false}, 2.0755374871029735e-1},
      {"CHISQ.DIST.RT", {18.307, 10}, 5.000058909139812e-2},
      {"CHISQ.INV", {0.93, 1}, 3.2830202867595367},
      {"CHISQ.INV", {0.6, 2}, 1.83258146374831},
      {"CHISQ.INV.RT", {0.050001, 10}, 1.8306973456961056e+1},
      {"CHISQDIST", {0.5, 1}, 5.2049987781304654e-1},
      {"CHISQINV", {0.6, 2}, 1.83258146374831},
      {"F.DIST", {15.2069, 6, 4, true}, 9.9000004300276269e-1},
      {"F.DIST", {15.2069, 6, 4, false}, 1.2237917087831733e-3},
      {"F.DIST.RT", {15.2068649, 6, 4}, 9.9999999524646018e-3},
      {"F.INV", {0.01, 6, 4}, 1.0930991412457854e-1},
      {"F.INV.RT", {0.01, 6, 4}, 1.520686486115753e+1},
      {"T.DIST", {60, 1, true}, 9.9469532636737673e-1},
      {"T.DIST", {8, 3, false}, 7.3690652094692633e-4},
      {"T.DIST.2T", {1.959999998, 60}, 5.464492997592087e-2},
      {"T.DIST.RT", {1.959999998, 60}, 2.7322464987960435e-2},
      {"T.INV", {0.75, 2}, 8.1649658092772598e-1},
      {"T.INV.2T", {0.546449, 60}, 6.0653307582575505e-1},
  });
}

// Tails far from the centre keep their relative precision, and inverses
// near 0 and 1 keep the digits of the small side.
TEST(Distributions, TailsToFullPrecision) {
  ExpectPrecise({
      {"NORM.S.DIST", {-30, true}, 4.9067139271481871e-198},
      {"NORM.S.DIST", {-8.5, true}, 9.4795348222033184e-18},
      {"NORM.S.INV", {1E-300}, -3.7047096299361199e+1},
      {"GAUSS", {1E-10}, 3.9894228040143269e-11},
      {"EXPON.DIST", {1E-20, 1, true}, 9.9999999999999995e-21},
      {"GAMMA.DIST", {1E-5, 0.5, 1, true}, 3.5682363381804504e-3},
      {"BETA.DIST", {0.999, 0.5, 0.5, true}, 9.798649583666225e-1},
      {"BETA.INV", {1E-12, 2, 3}, 4.0824840157503271e-7},
      {"BETA.INV", {1E-10, 0.5, 0.5}, 2.4674011002723398e-20},
      {"BETA.INV", {0.999999999, 2, 3}, 9.9936994022152379e-1},
      {"CHISQ.DIST.RT", {500, 3}, 4.7716720319127585e-108},
      {"CHISQ.INV.RT", {1E-100, 3}, 4.6621435757129135e+2},
      {"F.DIST.RT", {50, 3, 1E6}, 2.6495788343831457e-32},
      {"T.DIST", {-100000, 2, true}, 4.99999999925e-11},
      {"T.DIST.RT", {5, 1000000}, 2.8669989354453708e-7},
      {"T.DIST.RT", {40, 3}, 1.7190340394579264e-5},
      {"T.INV", {1E-10, 5}, -1.5682559270889432e+2},
      {"T.INV.2T", {1E-12, 10000000}, 7.1305160900542597},
  });
}

}  // namespace
}  // namespace Tabrino
