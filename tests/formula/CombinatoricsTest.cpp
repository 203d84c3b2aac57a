#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Combinatorics, WrongArgumentCounts) {
  ExpectCases({
      {"FACT", {}, E(ceValue)},
      {"FACTDOUBLE", {1, 2}, E(ceValue)},
      {"COMBIN", {5}, E(ceValue)},
      {"COMBINA", {5, 2, 1}, E(ceValue)},
      {"GCD", {}, E(ceValue)},
      {"LCM", {}, E(ceValue)},
      {"MULTINOMIAL", {}, E(ceValue)},
  });
}

TEST(Combinatorics, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"FACT", {"x"}, E(ceValue)},
      {"COMBIN", {5, E(ceDiv0)}, E(ceValue)},
      {"GCD", {12, "x"}, E(ceValue)},
      {"LCM", {"4", 6}, V(12)},
      // Ranges give their numbers only, as SUM takes them.
      {"GCD", {Column({V(12), V("text"), Blank(), V(true), E(ceNA), V(18)})}, V(6)},
      {"MULTINOMIAL", {Column({V(2), V("x"), V(3)})}, V(10)},
      {"FACT", {true}, V(1)},
  });
}

TEST(Combinatorics, DomainEdges) {
  ExpectCases({
      {"FACT", {-1}, E(ceNum)},
      {"FACT", {0}, V(1)},
      {"FACT", {5.9}, V(120)},  // truncated
      {"FACT", {171}, E(ceNum)},
      {"FACT", {1E300}, E(ceNum)},
      {"FACTDOUBLE", {-1}, E(ceNum)},
      {"FACTDOUBLE", {0}, V(1)},
      {"FACTDOUBLE", {1}, V(1)},
      {"FACTDOUBLE", {6}, V(48)},
      {"FACTDOUBLE", {7}, V(105)},
      {"FACTDOUBLE", {301}, E(ceNum)},
      {"COMBIN", {2, 3}, E(ceNum)},
      {"COMBIN", {-1, 0}, E(ceNum)},
      {"COMBIN", {4, -1}, E(ceNum)},
      {"COMBIN", {8, 2}, V(28)},
      {"COMBIN", {8.9, 2.9}, V(28)},
      {"COMBIN", {7, 0}, V(1)},
      {"COMBIN", {7, 7}, V(1)},
      {"COMBIN", {1E300, 1E299}, E(ceNum)},
      {"COMBINA", {4, 3}, V(20)},
      {"COMBINA", {10, 3}, V(220)},
      {"COMBINA", {0, 0}, V(1)},
      {"COMBINA", {5, 0}, V(1)},
      {"COMBINA", {2, 3}, E(ceNum)},  // documented: the number must not be below the number chosen
      {"COMBINA", {-1, 0}, E(ceNum)},
      {"GCD", {-4}, E(ceNum)},
      {"GCD", {9007199254740992.0}, E(ceNum)},
      {"LCM", {-4, 2}, E(ceNum)},
      {"MULTINOMIAL", {2, -1}, E(ceNum)},
      {"MULTINOMIAL", {600, 600}, E(ceNum)},
  });
}

TEST(Combinatorics, DivisorsAndMultiples) {
  ExpectCases({
      {"GCD", {5, 2}, V(1)},
      {"GCD", {24, 36}, V(12)},
      {"GCD", {7, 1}, V(1)},
      {"GCD", {5, 0}, V(5)},
      {"GCD", {0, 0}, V(0)},
      {"GCD", {24.9, 36.1}, V(12)},
      {"GCD", {9007199254740991.0, 3}, V(1)},
      {"LCM", {5, 2}, V(10)},
      {"LCM", {24, 36}, V(72)},
      {"LCM", {3, 0}, V(0)},
      {"LCM", {Column({V(2), V(3), V(4)}), 5}, V(60)},
      {"LCM", {4503599627370496.0, 3}, E(ceNum)},  // 2^52 * 3 is past the exact integers
  });
}

// Exact whole numbers where a double holds them; references from Python's
// math.comb and mpmath (binomial, factorial, fac2) at 40 digits.
TEST(Combinatorics, AgreeWithReferenceValues) {
  ExpectCases({
      {"COMBIN", {50, 25}, V(126410606437752.0)},
      {"FACT", {20}, V(2432902008176640000.0)},
      {"MULTINOMIAL", {2, 3, 4}, V(1260)},
      {"MULTINOMIAL", {0}, V(1)},
  });
  EXPECT_TRUE(IsNear(Call("FACT", {170}), 7.2574156153079989674e+306, 1E-13));
  EXPECT_TRUE(IsNear(Call("FACT", {25}), 1.5511210043330985984e+25, 1E-15));
  EXPECT_TRUE(IsNear(Call("FACTDOUBLE", {300}), 8.1544140693805943456e+307, 1E-13));
  EXPECT_TRUE(IsNear(Call("COMBIN", {60, 30}), 118264581564861424.0, 1E-15));
  EXPECT_TRUE(IsNear(Call("COMBIN", {1000, 500}), 2.7028824094543656952e+299, 1E-12));
  EXPECT_TRUE(IsNear(Call("MULTINOMIAL", {100, 100, 100}), 3.7652349356463106437e+140, 1E-13));
  EXPECT_EQ(Call("COMBIN", {1030, 515}), E(ceNum));  // 2.86E+308 overflows
}

}  // namespace
}  // namespace Tabrino
