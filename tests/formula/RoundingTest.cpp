#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Rounding, WrongArgumentCounts) {
  ExpectCases({
      {"CEILING.MATH", {}, E(ceValue)},
      {"CEILING.MATH", {1, 2, 3, 4}, E(ceValue)},
      {"CEILING.PRECISE", {1, 2, 0}, E(ceValue)},
      {"ISO.CEILING", {1, 2, 0}, E(ceValue)},
      {"FLOOR.PRECISE", {1, 2, 0}, E(ceValue)},
      {"MROUND", {1}, E(ceValue)},
      {"EVEN", {}, E(ceValue)},
      {"ROUNDSIG", {1}, E(ceValue)},
      {"QUOTIENT", {1, 2, 3}, E(ceValue)},
      {"RAWSUBTRACT", {1}, E(ceValue)},
  });
}

TEST(Rounding, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"CEILING.MATH", {"x"}, E(ceValue)},
      {"FLOOR.MATH", {5, "two"}, E(ceValue)},
      {"FLOOR.MATH", {-5.5, 2, "mode"}, E(ceValue)},
      {"MROUND", {E(ceNA), 2}, E(ceValue)},
      {"ODD", {""}, E(ceValue)},
      {"QUOTIENT", {"9", "2"}, V(4)},
      {"EVEN", {true}, V(2)},
      {"RAWSUBTRACT", {10, "x"}, E(ceValue)},
  });
}

// The documented examples of each function.
TEST(Rounding, ToMultiples) {
  ExpectCases({
      {"CEILING.MATH", {24.3, 5}, V(25)},
      {"CEILING.MATH", {6.7}, V(7)},
      {"CEILING.MATH", {-8.1, 2}, V(-8)},
      {"CEILING.MATH", {-5.5, 2, -1}, V(-6)},
      {"CEILING.MATH", {-5.5, -2}, V(-4)},  // the significance's sign does not matter
      {"CEILING.MATH", {5, 0}, V(0)},
      {"FLOOR.MATH", {24.3, 5}, V(20)},
      {"FLOOR.MATH", {6.7}, V(6)},
      {"FLOOR.MATH", {-8.1, 2}, V(-10)},
      {"FLOOR.MATH", {-5.5, 2, -1}, V(-4)},
      {"FLOOR.MATH", {5.5, 2, 1}, V(4)},  // the mode only turns negative numbers round
      {"CEILING.PRECISE", {4.3}, V(5)},
      {"CEILING.PRECISE", {-4.3}, V(-4)},
      {"CEILING.PRECISE", {4.3, -2}, V(6)},
      {"CEILING.PRECISE", {-4.3, -2}, V(-4)},
      {"ISO.CEILING", {-4.3, 2}, V(-4)},
      {"FLOOR.PRECISE", {-3.2, -1}, V(-4)},
      {"FLOOR.PRECISE", {3.2, -1}, V(3)},
      {"FLOOR.PRECISE", {-0.5}, V(-1)},
      {"CEILING.PRECISE", {-0.5}, V(0)},
  });
}

// Binary representation must not push a value over a step, nor leave a
// binary tail on a decimal result.
TEST(Rounding, DecimalSteps) {
  ExpectCases({
      {"CEILING.MATH", {0.3, 0.1}, V(0.3)},
      {"FLOOR.MATH", {0.3, 0.1}, V(0.3)},
      {"CEILING.PRECISE", {0.7, 0.1}, V(0.7)},
      {"FLOOR.PRECISE", {1.15, 0.05}, V(1.15)},
      {"MROUND", {1.3, 0.2}, V(1.4)},
      {"MROUND", {-1.3, -0.2}, V(-1.4)},
      {"QUOTIENT", {0.3, 0.1}, V(3)},
      {"ROUNDSIG", {1.005, 3}, V(1.01)},
      {"CEILING.MATH", {1E13 + 0.0625, 1}, V(1E13 + 1)},  // a genuine fraction is kept
  });
}

TEST(Rounding, MRoundEvenOdd) {
  ExpectCases({
      {"MROUND", {10, 3}, V(9)},
      {"MROUND", {-10, -3}, V(-9)},
      {"MROUND", {5, -2}, E(ceNum)},
      {"MROUND", {-5, 2}, E(ceNum)},
      {"MROUND", {7.5, 5}, V(10)},  // halves away from zero
      {"MROUND", {5, 0}, V(0)},
      {"MROUND", {0, -2}, V(0)},
      {"EVEN", {1.5}, V(2)},
      {"EVEN", {3}, V(4)},
      {"EVEN", {2}, V(2)},
      {"EVEN", {-1}, V(-2)},
      {"EVEN", {0}, V(0)},
      {"ODD", {1.5}, V(3)},
      {"ODD", {3}, V(3)},
      {"ODD", {2}, V(3)},
      {"ODD", {-1}, V(-1)},
      {"ODD", {-2}, V(-3)},
      {"ODD", {0}, V(1)},
  });
}

TEST(Rounding, SignificantDigitsAndQuotients) {
  ExpectCases({
      {"ROUNDSIG", {123.456, 2}, V(120)},
      {"ROUNDSIG", {123.456, 5}, V(123.46)},
      {"ROUNDSIG", {0.000123456, 3}, V(0.000123)},
      {"ROUNDSIG", {-2.5, 1}, V(-3)},
      {"ROUNDSIG", {999.96, 3}, V(1000)},
      {"ROUNDSIG", {0, 3}, V(0)},
      {"ROUNDSIG", {1.23456789, 40}, V(1.23456789)},
      {"ROUNDSIG", {1.5, 2.9}, V(1.5)},  // digits truncated
      {"ROUNDSIG", {5, 0}, E(ceNum)},
      {"ROUNDSIG", {5, -1}, E(ceNum)},
      {"ROUNDSIG", {1E300, 1}, V(1E300)},
      {"QUOTIENT", {5, 2}, V(2)},
      {"QUOTIENT", {4.5, 3.1}, V(1)},
      {"QUOTIENT", {-10, 3}, V(-3)},
      {"QUOTIENT", {1, 0}, E(ceDiv0)},
      {"QUOTIENT", {1E308, 1E-308}, E(ceNum)},
  });
}

TEST(Rounding, RawSubtract) {
  ExpectCases({
      {"RAWSUBTRACT", {0.3, 0.1, 0.2}, V(0.3 - 0.1 - 0.2)},  // the tiny remainder stays
      {"RAWSUBTRACT", {10, Column({V(1), V("skipped"), Blank(), V(2)})}, V(7)},
      {"RAWSUBTRACT", {"10", true}, V(9)},
  });
}

}  // namespace
}  // namespace Tabrino
