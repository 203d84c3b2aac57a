#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Math, WrongArgumentCounts) {
  ExpectCases({
      {"ABS", {}, E(ceValue)},
      {"ABS", {1, 2}, E(ceValue)},
      {"ROUND", {1.5}, E(ceValue)},
      {"TRUNC", {1, 2, 3}, E(ceValue)},
      {"MOD", {1}, E(ceValue)},
      {"PI", {1}, E(ceValue)},
      {"RAND", {1}, E(ceValue)},
      {"RANDBETWEEN", {1}, E(ceValue)},
      {"LOG", {1, 2, 3}, E(ceValue)},
  });
}

TEST(Math, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"ABS", {"x"}, E(ceValue)},
      {"ABS", {""}, E(ceValue)},
      {"SQRT", {E(ceDiv0)}, E(ceValue)},
      {"ROUND", {1.5, "two"}, E(ceValue)},
      {"MOD", {"7", "2"}, V(1)},
      {"ABS", {"-3"}, V(3)},
      {"ABS", {true}, V(1)},
      {"ABS", {Blank()}, V(0)},
      {"INT", {Column({V(-2.5), V("ignored")})}, V(-3)},
  });
}

TEST(Math, SignAndWholeNumbers) {
  ExpectCases({
      {"ABS", {-2.5}, V(2.5)},
      {"SIGN", {-0.001}, V(-1)},
      {"SIGN", {0}, V(0)},
      {"SIGN", {1E-20}, V(1)},
      {"INT", {2.7}, V(2)},
      {"INT", {-2.1}, V(-3)},
      {"TRUNC", {-2.7}, V(-2)},
      {"TRUNC", {3.14159, 2}, V(3.14)},
      {"TRUNC", {1234.5, -2}, V(1200)},
  });
}

TEST(Math, RoundingHalfAwayFromZero) {
  ExpectCases({
      {"ROUND", {2.5, 0}, V(3)},
      {"ROUND", {-2.5, 0}, V(-3)},
      {"ROUND", {1.234, 2}, V(1.23)},
      {"ROUND", {1234, -2}, V(1200)},
      {"ROUND", {1250, -2}, V(1300)},
      {"ROUND", {0.5, 0.9}, V(1)},  // digits are truncated
      {"ROUND", {5, 400}, V(5)},    // a scale past the doubles leaves the number
      {"ROUND", {5, -400}, V(0)},
      {"ROUNDUP", {3.2, 0}, V(4)},
      {"ROUNDUP", {-3.2, 0}, V(-4)},
      {"ROUNDUP", {0.1 * 3, 1}, V(0.3)},  // no step up from binary noise
      {"ROUNDUP", {1.21, 1}, V(1.3)},
      {"ROUNDDOWN", {-3.9, 0}, V(-3)},
      {"ROUNDDOWN", {4.35, 2}, V(4.35)},
      {"ROUNDDOWN", {1299, -2}, V(1200)},
  });
}

TEST(Math, CeilingAndFloorFollowTheSignificance) {
  ExpectCases({
      {"CEILING", {2.5, 1}, V(3)},
      {"CEILING", {2.5}, V(3)},
      {"CEILING", {4.2, 0.5}, V(4.5)},
      {"CEILING", {0.3, 0.1}, V(0.30000000000000004)},  // three steps of 0.1, not four
      {"CEILING", {-2.5, 2}, V(-2)},
      {"CEILING", {-2.5, -2}, V(-4)},
      {"CEILING", {2.5, -2}, E(ceNum)},
      {"CEILING", {2.5, 0}, V(0)},
      {"FLOOR", {2.5, 1}, V(2)},
      {"FLOOR", {-2.5, 2}, V(-4)},
      {"FLOOR", {-2.5, -2}, V(-2)},
      {"FLOOR", {2.5, -2}, E(ceNum)},
      {"FLOOR", {2.5, 0}, E(ceDiv0)},
      {"FLOOR", {0, 0}, V(0)},
  });
}

TEST(Math, ModuloTakesTheSignOfTheDivisor) {
  ExpectCases({
      {"MOD", {7, 3}, V(1)},
      {"MOD", {-7, 3}, V(2)},
      {"MOD", {7, -3}, V(-2)},
      {"MOD", {-7, -3}, V(-1)},
      {"MOD", {6, 3}, V(0)},
      {"MOD", {1.5, 1}, V(0.5)},
      {"MOD", {5, 0}, E(ceDiv0)},
      {"MOD", {1E20, 3}, V(1)},  // exact where n - d*INT(n/d) is not
  });
}

TEST(Math, PowersAndLogarithmsGuardTheirDomains) {
  ExpectCases({
      {"POWER", {2, 10}, V(1024)},    {"POWER", {4, 0.5}, V(2)},
      {"POWER", {0, -1}, E(ceDiv0)},  {"POWER", {-8, 1.0 / 3}, E(ceNum)},
      {"POWER", {10, 400}, E(ceNum)}, {"SQRT", {16}, V(4)},
      {"SQRT", {-1}, E(ceNum)},       {"EXP", {0}, V(1)},
      {"EXP", {1000}, E(ceNum)},      {"LN", {1}, V(0)},
      {"LN", {0}, E(ceNum)},          {"LN", {-1}, E(ceNum)},
      {"LOG", {100}, V(2)},           {"LOG", {8, 2}, V(3)},
      {"LOG", {8, 1}, E(ceDiv0)},     {"LOG", {8, 0}, E(ceNum)},
      {"LOG", {0, 2}, E(ceNum)},      {"LOG10", {1000}, V(3)},
      {"LOG10", {-5}, E(ceNum)},      {"PI", {}, V(std::numbers::pi)},
  });
}

TEST(Math, RandomNumbersStayInTheirSpan) {
  for (int I = 0; I < 200; ++I) {
    TCellValue R = Call("RAND", {});
    ASSERT_EQ(R.Kind, cvkNumber);
    EXPECT_GE(R.Number, 0);
    EXPECT_LT(R.Number, 1);
    TCellValue B = Call("RANDBETWEEN", {-2.5, 3.5});
    ASSERT_EQ(B.Kind, cvkNumber);
    EXPECT_GE(B.Number, -2);
    EXPECT_LE(B.Number, 3);
    EXPECT_EQ(B.Number, std::trunc(B.Number));
  }
  ExpectCases({
      {"RANDBETWEEN", {5, 5}, V(5)},
      {"RANDBETWEEN", {5.5, 5.7}, E(ceNum)},  // no whole number between
      {"RANDBETWEEN", {6, 5}, E(ceNum)},
      {"RANDBETWEEN", {0, 1E300}, E(ceNum)},
      {"RANDBETWEEN", {"a", 5}, E(ceValue)},
  });
}

TEST(Math, OnlyTheRandomFunctionsAreVolatile) {
  for (const char* Name : {"RAND", "RANDBETWEEN"}) EXPECT_EQ(FindFunction(Name)->Flags & fnVolatile, fnVolatile);
  for (const char* Name : {"ABS", "ROUND", "PI"}) EXPECT_EQ(FindFunction(Name)->Flags & fnVolatile, 0);
}

}  // namespace
}  // namespace Tabrino
