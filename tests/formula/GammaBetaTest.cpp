// Reference values: mpmath 1.3 at 50 digits (gammainc, betainc through
// hyp2f1, ncdf, npdf, gamma, loggamma, beta; quantiles by Newton steps on
// those at 50 digits). Inputs are the doubles shown; a beta point is given by
// x with 1 - x exact, so that x and y describe the same point.
#include "Tabrino.Formula.GammaBeta.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tabrino {
namespace {

constexpr double Tight = 1E-13;

void ExpectRelative(double Actual, double Expected, double Tolerance, const char* What) {
  if (Expected == 0) {
    EXPECT_EQ(Actual, 0) << What;
    return;
  }
  EXPECT_LE(std::fabs(Actual - Expected) / std::fabs(Expected), Tolerance)
      << What << ": got " << Actual << ", expected " << Expected;
}

TEST(GammaBeta, GammaAndBetaFunctions) {
  struct TCase {
    double X, Gamma, LogGamma;
  };
  for (const TCase& C :
       {TCase{0.5, 1.772453850905516, 5.7236494292470009e-1}, TCase{5.5, 5.234277778455352e+1, 3.9578139676187163},
        TCase{-2.5, -9.4530872048294188e-1, -5.6243716497674051e-2},
        TCase{150.2, 1.0370235662989805e+261, 6.0101106392589216e+2},
        TCase{1e-05, 9.9999422794225559e+4, 1.1512919692895826e+1},
        TCase{1.0000001, 9.9999994227844337e-1, -5.7721558299185071e-8}}) {
    ExpectRelative(GammaFunction(C.X), C.Gamma, Tight, "Gamma");
    ExpectRelative(LogGamma(C.X), C.LogGamma, Tight, "LogGamma");
  }
  struct TBetaCase {
    double A, B, Beta;
  };
  for (const TBetaCase& C : {TBetaCase{2, 3, 8.3333333333333333e-2}, TBetaCase{0.5, 0.5, 3.1415926535897932},
                             TBetaCase{0.001, 400, 9.9345490418490224e+2}, TBetaCase{300, 400, 4.7201161088312107e-209},
                             TBetaCase{10, 100000.0, 3.6271674590455815e-45}}) {
    ExpectRelative(BetaFunction(C.A, C.B), C.Beta, Tight, "Beta");
    ExpectRelative(LogBeta(C.A, C.B), std::log(C.Beta), Tight, "LogBeta");
  }
  EXPECT_TRUE(std::isnan(GammaFunction(-3)));
}

TEST(GammaBeta, PoissonAndBinomialTerms) {
  struct TPoisson {
    double K, Lambda, Expected;
  };
  for (const TPoisson& C : {TPoisson{5, 5, 1.7546736976785071e-1}, TPoisson{0.5, 3, 9.730434665928292e-2},
                            TPoisson{1000, 1050, 3.7622603827075116e-3}, TPoisson{1e-07, 2, 1.3533530042910422e-1},
                            TPoisson{30, 0.01, 3.73247562514561e-93}, TPoisson{100, 180, 2.4223679570222041e-11},
                            TPoisson{0, 3, 4.9787068367863943e-2}}) {
    ExpectRelative(PoissonTerm(C.K, C.Lambda), C.Expected, Tight, "PoissonTerm");
  }
  EXPECT_EQ(PoissonTerm(0, 0), 1);
  EXPECT_EQ(PoissonTerm(2, 0), 0);
  struct TBinomial {
    double K, N, P, Expected;
  };
  for (const TBinomial& C :
       {TBinomial{3, 10, 0.25, 2.5028228759765625e-1}, TBinomial{500, 1000, 0.5, 2.5225018178360802e-2},
        TBinomial{0.5, 20.5, 0.125, 1.2577546496981687e-1}, TBinomial{0, 1000, 0.5, 9.3326361850321888e-302},
        TBinomial{40, 60, 0.75, 3.8340332373059215e-2}, TBinomial{100000.0, 1000000.0, 0.1, 1.3298064808525465e-3}}) {
    ExpectRelative(BinomialTerm(C.K, C.N, C.P, 1 - C.P), C.Expected, Tight, "BinomialTerm");
  }
}

TEST(GammaBeta, RegularizedGammaKeepsBothTails) {
  struct TCase {
    double A, X, P, Q;
  };
  for (const TCase& C : {
           TCase{0.5, 0.2, 4.7291074313446193e-1, 5.2708925686553807e-1},
           TCase{0.001, 0.5, 9.9943993334352925e-1, 5.6006665647074989e-4},
           TCase{0.01, 0.5, 9.9437324380603282e-1, 5.6267561939671841e-3},
           TCase{0.001, 1e-05, 9.8912304469578267e-1, 1.0876955304217331e-2},
           TCase{0.5, 1e-10, 1.1283791670579e-5, 9.9998871620832942e-1},
           TCase{2, 0.5, 9.0204010431049865e-2, 9.0979598956895014e-1},
           TCase{3, 100, 1.0, 1.8976107553682284e-40},
           TCase{3, 700, 1.0, 2.4225323864783195e-299},
           TCase{30, 60, 9.9999312373503127e-1, 6.8762649687320967e-6},
           TCase{100, 90, 1.5822098918643017e-1, 8.4177901081356983e-1},
           TCase{100, 110, 8.4172132993991291e-1, 1.5827867006008709e-1},
           TCase{1e4, 1e4, 5.013298083399552e-1, 4.986701916600448e-1},
           TCase{1e6, 1e6, 5.0013298076087259e-1, 4.9986701923912741e-1},
           TCase{1e6, 999000, 1.5865521357430365e-1, 8.4134478642569635e-1},
           TCase{5e7, 50001000.0, 5.5624970473242915e-1, 4.4375029526757085e-1},
       }) {
    TTailPair R = RegularizedGamma(C.A, C.X);
    ExpectRelative(R.Lower, C.P, Tight, "P");
    ExpectRelative(R.Upper, C.Q, Tight, "Q");
  }
}

TEST(GammaBeta, RegularizedBetaKeepsBothTails) {
  struct TCase {
    double A, B, X, I, J;
  };
  // Small shapes, both large shapes, and one huge shape with x near 1 (the
  // Student t regime).
  for (const TCase& C : {
           TCase{2, 3, 0.4, 5.2480000000000004e-1, 4.7519999999999996e-1},
           TCase{0.5, 0.5, 0.0010000000000000009, 2.01350416333775e-2, 9.798649583666225e-1},
           TCase{5, 0.5, 0.9999, 9.7539390595470292e-1, 2.4606094045297083e-2},
           TCase{100, 200, 0.30000000000000004, 1.0884306564491015e-1, 8.9115693435508985e-1},
           TCase{0.001, 2, 0.5, 9.9980674653694775e-1, 1.9325346305225182e-4},
           TCase{20, 30, 1.000000082740371e-10, 2.827757406217488e-187, 1.0},
           TCase{20, 30, 0.999, 1.0, 1.8508062761415847e-77},
           TCase{0.2, 0.3, 0.7, 6.8044989141692072e-1, 3.1955010858307928e-1},
           TCase{1e6, 1e6, 0.49950000000000006, 7.8649577580924675e-2, 9.2135042241907533e-1},
           TCase{1e8, 1e8, 0.5, 0.5, 0.5},
           TCase{1e6, 3e6, 0.24950000000000006, 1.0437534054144324e-2, 9.8956246594585568e-1},
           TCase{5e5, 0.5, 0.999996, 4.5500101923155166e-2, 9.5449989807684483e-1},
           TCase{5e8, 0.5, 0.9999999, 1.5239668365111638e-23, 1.0},
           TCase{0.5, 5e4, 3.9997999999985545e-05, 9.5449595643155433e-1, 4.5504043568445673e-2},
           TCase{1e5, 40, 0.996, 1.4197786145791651e-119, 1.0},
           TCase{1e8, 1e4, 0.99989801, 2.327099761233357e-2, 9.7672900238766643e-1},
           TCase{1e5, 5000, 0.95103408, 2.0890443976765107e-2, 9.7910955602323489e-1},
       }) {
    TTailPair R = RegularizedBeta(C.A, C.B, {C.X, 1 - C.X});
    // Shapes of 1E4 and beyond cost their size in units of rounding.
    double Tolerance = C.A * C.B >= 1E8 ? 1E-12 : Tight;
    ExpectRelative(R.Lower, C.I, Tolerance, "I");
    ExpectRelative(R.Upper, C.J, Tolerance, "1 - I");
  }
}

TEST(GammaBeta, EndsAndDomain) {
  TTailPair AtZero = RegularizedGamma(2, 0);
  EXPECT_EQ(AtZero.Lower, 0);
  EXPECT_EQ(AtZero.Upper, 1);
  EXPECT_EQ(RegularizedGamma(2, INFINITY).Upper, 0);
  EXPECT_EQ(RegularizedBeta(2, 3, {0, 1}).Lower, 0);
  EXPECT_EQ(RegularizedBeta(2, 3, {1, 0}).Upper, 0);
  EXPECT_DOUBLE_EQ(RegularizedBeta(1, 1, {0.3, 0.7}).Lower, 0.3);
  EXPECT_TRUE(std::isnan(RegularizedGamma(NAN, 1).Lower));
  EXPECT_TRUE(std::isnan(RegularizedGamma(1E13, 1E13).Lower));
  EXPECT_TRUE(std::isnan(RegularizedBeta(1E13, 1E13, {0.5, 0.5}).Lower));
  EXPECT_EQ(InverseRegularizedGamma(2, {0, 1}), 0);
  EXPECT_EQ(InverseRegularizedGamma(2, {1, 0}), INFINITY);
  EXPECT_EQ(InverseRegularizedBeta(2, 3, {1, 0}).X, 1);
  EXPECT_EQ(InverseRegularizedBeta(2, 3, {0, 1}).X, 0);
  EXPECT_TRUE(std::isnan(InverseRegularizedGamma(1E13, {0.5, 0.5})));
}

TEST(GammaBeta, NormalDistributionDeepInTheTails) {
  struct TCase {
    double Z, Cdf, Density;
  };
  for (const TCase& C : {TCase{-37, 5.7255712225245768e-300, 2.1200065515246056e-298},
                         TCase{-30, 4.9067139271481871e-198, 1.4736461348785475e-196},
                         TCase{-10, 7.6198530241605261e-24, 7.6945986267064193e-23},
                         TCase{-1.5, 6.6807201268858066e-2, 1.2951759566589173e-1},
                         TCase{-0.3, 3.8208857781104737e-1, 3.8138781546052409e-1},
                         TCase{1e-10, 5.0000000003989423e-1, 3.9894228040143268e-1},
                         TCase{2.5, 9.9379033467422386e-1, 1.7528300493568537e-2},
                         TCase{8, 9.9999999999999938e-1, 5.0522710835368923e-15}}) {
    ExpectRelative(NormalCdf(C.Z), C.Cdf, Tight, "NormalCdf");
    ExpectRelative(NormalDensity(C.Z), C.Density, Tight, "NormalDensity");
  }
  struct TQuantile {
    double P, Z;
  };
  for (const TQuantile& C : {TQuantile{1e-300, -3.7047096299361199e+1}, TQuantile{1e-10, -6.3613409024040562},
                             TQuantile{0.025, -1.9599639845400542}, TQuantile{0.3, -5.2440051270804082e-1},
                             TQuantile{0.4999999999, -2.5066284820303539e-10}, TQuantile{0.5, 0},
                             TQuantile{0.975, 1.9599639845400539}, TQuantile{0.9999999, 5.1993375822906611}}) {
    ExpectRelative(InverseNormalCdf(C.P), C.Z, Tight, "InverseNormalCdf");
  }
  EXPECT_EQ(InverseNormalCdf(0), -INFINITY);
  EXPECT_EQ(InverseNormalCdf(1), INFINITY);
  EXPECT_TRUE(std::isnan(InverseNormalCdf(1.5)));
}

TEST(GammaBeta, InverseGammaFromEitherTail) {
  struct TCase {
    double A, Target;
    bool Upper;
    double X;
  };
  for (const TCase& C :
       {TCase{0.5, 0.3, false, 7.4235930916272719e-2}, TCase{0.5, 1e-20, false, 7.8539816339744822e-41},
        TCase{0.5, 1e-20, true, 4.3580866713454911e+1}, TCase{2.5, 0.95, false, 5.5352488467581759},
        TCase{2.5, 1e-12, true, 3.2619318106683922e+1}, TCase{100, 0.01, false, 7.8215983053795827e+1},
        TCase{100, 1e-100, true, 4.8321953022256193e+2}, TCase{1e5, 0.5, false, 9.9999666666864198e+4},
        TCase{30, 1e-300, false, 1.2044497038599611e-9}, TCase{5e7, 0.025, true, 5.0013859985372117e+7}}) {
    TTailPair Target = C.Upper ? TTailPair{1 - C.Target, C.Target} : TTailPair{C.Target, 1 - C.Target};
    ExpectRelative(InverseRegularizedGamma(C.A, Target), C.X, Tight, "InverseRegularizedGamma");
  }
}

TEST(GammaBeta, InverseBetaNearZeroAndOne) {
  struct TCase {
    double A, B, Target;
    bool Upper;  // Target is 1 - I, and the expected value is 1 - x
    double Expected;
  };
  for (const TCase& C :
       {TCase{2, 3, 0.5, false, 3.8572756813238955e-1}, TCase{2, 3, 1e-12, false, 4.0824840157503271e-7},
        TCase{2, 3, 1e-12, true, 6.2997044667279009e-5}, TCase{0.5, 0.5, 1e-08, true, 2.4674011002723396e-16},
        TCase{0.1, 0.2, 0.3, false, 2.5970009490093431e-4}, TCase{1000, 0.5, 0.05, false, 9.9808063476601418e-1},
        TCase{5e5, 0.5, 1e-10, true, 1.5707971121932565e-26}, TCase{200, 300, 0.999999, false, 5.0588811592203592e-1},
        TCase{1, 1, 1e-300, true, 1.0e-300}, TCase{3, 1e5, 0.5, false, 2.6739978215774575e-5}}) {
    TTailPair Target = C.Upper ? TTailPair{1 - C.Target, C.Target} : TTailPair{C.Target, 1 - C.Target};
    TUnitPoint Point = InverseRegularizedBeta(C.A, C.B, Target);
    ExpectRelative(C.Upper ? Point.Y : Point.X, C.Expected, Tight, "InverseRegularizedBeta");
  }
}

}  // namespace
}  // namespace Tabrino
