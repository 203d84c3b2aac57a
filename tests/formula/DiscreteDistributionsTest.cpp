// Discrete distributions. Reference values: exact rational sums (Python's
// fractions over the double arguments) for the binomial, negative binomial
// and hypergeometric cases, mpmath 1.3 at 40 digits for the Poisson ones.
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

void ExpectPrecise(std::initializer_list<TPreciseCase> Cases) {
  for (const TPreciseCase& Case : Cases) {
    std::vector<TFormulaArg> Evaluated;
    for (const TTestArg& A : Case.Args) Evaluated.push_back(A.Arg);
    EXPECT_TRUE(IsNear(Dispatch(Case.Name, Evaluated, {}), Case.Expected)) << Describe({Case.Name, Case.Args, {}});
  }
}

TEST(DiscreteDistributions, WrongArgumentCounts) {
  ExpectCases({
      {"BINOM.DIST", {1, 2, 0.5}, E(ceValue)},
      {"BINOM.DIST.RANGE", {10, 0.5}, E(ceValue)},
      {"B", {10, 0.5, 1, 2, 3}, E(ceValue)},
      {"BINOM.INV", {10, 0.5}, E(ceValue)},
      {"HYPGEOM.DIST", {1, 4, 8, 20}, E(ceValue)},
      {"PERMUT", {3}, E(ceValue)},
      {"PERMUTATIONA", {3, 2, 1}, E(ceValue)},
  });
}

TEST(DiscreteDistributions, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"BINOM.DIST", {"six", 10, 0.5, false}, E(ceValue)},
      {"POISSON.DIST", {2, E(ceNA), true}, E(ceValue)},
      {"NEGBINOM.DIST", {1, 2, 0.5, E(ceRef)}, E(ceValue)},
      {"PERMUT", {"", 2}, E(ceValue)},
  });
  // Typed text that reads as a number is that number.
  EXPECT_TRUE(IsNear(Call("BINOM.DIST", {6, 10, "0.5", false}), 0.205078125));
}

TEST(DiscreteDistributions, DomainEdges) {
  ExpectCases({
      {"BINOM.DIST", {-1, 10, 0.5, true}, E(ceNum)},
      {"BINOM.DIST", {11, 10, 0.5, true}, E(ceNum)},
      {"BINOM.DIST", {1, 10, 1.5, true}, E(ceNum)},
      {"BINOM.DIST", {10, 10, 0.5, true}, V(1)},
      {"BINOM.DIST", {0, 10, 0, false}, V(1)},
      {"BINOM.DIST", {10, 10, 1, false}, V(1)},
      {"BINOM.DIST.RANGE", {10, 0.5, 11}, E(ceNum)},
      {"BINOM.DIST.RANGE", {10, 0.5, 5, 4}, E(ceNum)},
      {"BINOM.DIST.RANGE", {10, 0.5, 0, 10}, V(1)},
      {"BINOM.INV", {-1, 0.5, 0.5}, E(ceNum)},
      {"BINOM.INV", {10, 0.5, 1.5}, E(ceNum)},
      {"BINOM.INV", {6, 0.5, 0.75}, V(4)},
      // An exact tie: P(X <= 0) is 1/4.
      {"BINOM.INV", {2, 0.5, 0.25}, V(0)},
      {"BINOM.INV", {10, 0.5, 0}, V(0)},
      {"BINOM.INV", {10, 0, 0.5}, V(0)},
      {"BINOM.INV", {10, 1, 0.5}, V(10)},
      {"BINOM.INV", {1000, 0.3, 0.5}, V(300)},
      {"NEGBINOM.DIST", {-1, 5, 0.25, true}, E(ceNum)},
      {"NEGBINOM.DIST", {1, 0, 0.25, true}, E(ceNum)},
      {"NEGBINOM.DIST", {0, 3, 1, false}, V(1)},
      {"POISSON.DIST", {-1, 2, true}, E(ceNum)},
      {"POISSON.DIST", {1, -2, true}, E(ceNum)},
      {"POISSON.DIST", {0, 0, false}, V(1)},
      {"POISSON.DIST", {3, 0, true}, V(1)},
      {"HYPGEOM.DIST", {5, 4, 8, 20, true}, E(ceNum)},
      {"HYPGEOM.DIST", {0, 15, 8, 20, false}, E(ceNum)},
      {"HYPGEOM.DIST", {1, 0, 8, 20, false}, E(ceNum)},
      {"HYPGEOM.DIST", {1, 4, 21, 20, false}, E(ceNum)},
      {"HYPGEOM.DIST", {4, 4, 8, 20, true}, V(1)},
      {"HYPGEOM.DIST", {3, 3, 3, 3, false}, V(1)},
      {"PERMUT", {0, 0}, E(ceNum)},
      {"PERMUT", {3, 4}, E(ceNum)},
      {"PERMUT", {3, -1}, E(ceNum)},
      {"PERMUT", {100, 3}, V(970200)},
      {"PERMUT", {3.9, 2.2}, V(6)},
      {"PERMUT", {1E6, 1E6}, E(ceNum)},
      {"PERMUTATIONA", {3, 2}, V(9)},
      {"PERMUTATIONA", {0, 0}, V(1)},
      {"PERMUTATIONA", {-1, 2}, E(ceNum)},
      {"PERMUTATIONA", {10, 400}, E(ceNum)},
  });
}

TEST(DiscreteDistributions, AgreeWithReferenceValues) {
  ExpectPrecise({
      {"BINOM.DIST", {6, 10, 0.5, true}, 0.828125},
      {"BINOM.DIST", {6.9, 10.2, 0.5, false}, 0.205078125},
      {"BINOM.DIST", {2, 1000, 0.3, true}, 1.1551826579552274e-150},
      {"BINOM.DIST", {250, 1000, 0.3, true}, 2.5980303652893142e-4},
      {"BINOM.DIST", {300, 1000, 0.3, false}, 2.7521003821268386e-2},
      {"BINOM.DIST", {4000, 10000, 0.5, true}, 8.7021582061343929e-90},
      {"BINOM.DIST.RANGE", {60, 0.75, 48}, 8.3974967429047502e-2},
      {"BINOM.DIST.RANGE", {60, 0.75, 45, 50}, 5.236297934718872e-1},
      {"BINOM.DIST.RANGE", {1000, 0.5, 0, 400}, 1.3642320780330092e-10},
      {"BINOM.DIST.RANGE", {1000, 0.5, 300, 700}, 1.0},
      {"BINOM.DIST.RANGE", {1000, 0.5, 550, 1000}, 8.652680424881588e-4},
      {"B", {10, 1.0 / 6, 2}, 2.9071004920172229e-1},
      {"NEGBINOM.DIST", {10, 5, 0.25, true}, 3.1351405847817659e-1},
      {"NEGBINOM.DIST", {10, 5, 0.25, false}, 5.504866037517786e-2},
      {"POISSON.DIST", {2, 5, true}, 1.2465201948308114e-1},
      {"POISSON.DIST", {2, 5, false}, 8.4224337488568339e-2},
      {"POISSON.DIST", {50, 200, true}, 6.8158472355880008e-37},
      {"POISSON.DIST", {1000, 1000, false}, 1.26146113487215e-2},
      {"HYPGEOM.DIST", {1, 4, 8, 20, true}, 4.6542827657378741e-1},
      {"HYPGEOM.DIST", {1, 4, 8, 20, false}, 3.6326109391124871e-1},
      {"HYPGEOM.DIST", {30, 500, 1000, 10000, true}, 7.8546787372472081e-4},
      {"HYPGEOM.DIST", {50, 500, 1000, 10000, false}, 6.0912752316045731e-2},
      {"HYPGEOM.DIST", {60, 500, 1000, 10000, true}, 9.4295435981311087e-1},
  });
}

// Every k from 0 to n: the inverse lands on the smallest k whose cumulative
// probability reaches alpha.
TEST(DiscreteDistributions, BinomInvInvertsTheCumulative) {
  for (int K = 0; K <= 20; ++K) {
    TCellValue Cumulative = Call("BINOM.DIST", {K, 20, 0.37, true});
    ASSERT_EQ(Cumulative.Kind, cvkNumber);
    EXPECT_EQ(Call("BINOM.INV", {20, 0.37, Cumulative.Number}), V(K)) << K;
  }
}

}  // namespace
}  // namespace Tabrino
