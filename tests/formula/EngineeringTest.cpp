#include <gtest/gtest.h>

#include <limits>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Engineering, ArgumentCounts) {
  ExpectCases({
      {"BIN2DEC", {}, E(ceValue)},
      {"BIN2DEC", {"1", 2}, E(ceValue)},
      {"DEC2HEX", {1, 2, 3}, E(ceValue)},
      {"BITAND", {1}, E(ceValue)},
      {"ERF.PRECISE", {1, 2}, E(ceValue)},
      {"BESSELJ", {1}, E(ceValue)},
  });
}

// Examples of the documented conversions, negative numbers in ten digits of
// two's complement.
TEST(Engineering, BaseConversions) {
  ExpectCases({
      {"BIN2DEC", {"1100100"}, V(100)},
      {"BIN2DEC", {"1111111111"}, V(-1)},
      {"BIN2DEC", {1010}, V(10)},
      {"BIN2DEC", {""}, V(0)},
      {"BIN2HEX", {"11111011", 4}, V("00FB")},
      {"BIN2HEX", {"1111111111"}, V("FFFFFFFFFF")},
      {"BIN2OCT", {"1001", 3}, V("011")},
      {"BIN2OCT", {"1111111111"}, V("7777777777")},
      {"DEC2BIN", {9, 4}, V("1001")},
      {"DEC2BIN", {-100}, V("1110011100")},
      {"DEC2BIN", {9.9}, V("1001")},
      {"DEC2BIN", {-0.5}, V("0")},
      {"DEC2HEX", {100, 4}, V("0064")},
      {"DEC2HEX", {-54}, V("FFFFFFFFCA")},
      {"DEC2HEX", {549755813887.0}, V("7FFFFFFFFF")},
      {"DEC2HEX", {-549755813888.0}, V("8000000000")},
      {"DEC2OCT", {58, 3}, V("072")},
      {"DEC2OCT", {-100}, V("7777777634")},
      {"HEX2BIN", {"F", 8}, V("00001111")},
      {"HEX2BIN", {"FFFFFFFE00"}, V("1000000000")},
      {"HEX2DEC", {"a5"}, V(165)},
      {"HEX2DEC", {"FFFFFFFF5B"}, V(-165)},
      {"HEX2OCT", {"FFFFFFFF00"}, V("7777777400")},
      {"OCT2BIN", {"7777777000"}, V("1000000000")},
      {"OCT2DEC", {"7777777533"}, V(-165)},
      {"OCT2HEX", {"100", 4}, V("0040")},
      {"OCT2HEX", {"7777777533"}, V("FFFFFFFF5B")},
      // A negative number ignores places.
      {"DEC2BIN", {-1, 2}, V("1111111111")},
  });
}

TEST(Engineering, BaseConversionErrors) {
  ExpectCases({
      {"BIN2DEC", {"12"}, E(ceNum)},         {"BIN2DEC", {"10000000000"}, E(ceNum)},
      {"BIN2DEC", {" 1"}, E(ceNum)},         {"BIN2DEC", {-1}, E(ceNum)},
      {"BIN2DEC", {true}, E(ceValue)},       {"HEX2DEC", {E(ceNA)}, E(ceValue)},
      {"DEC2BIN", {512}, E(ceNum)},          {"DEC2BIN", {-513}, E(ceNum)},
      {"DEC2BIN", {"x"}, E(ceValue)},        {"DEC2BIN", {1, 0}, E(ceNum)},
      {"DEC2BIN", {1, 11}, E(ceNum)},        {"DEC2BIN", {1, "x"}, E(ceValue)},
      {"DEC2BIN", {2, 1.9}, E(ceNum)},       {"DEC2HEX", {549755813888.0}, E(ceNum)},
      {"DEC2OCT", {536870912}, E(ceNum)},    {"DEC2HEX", {std::numeric_limits<double>::quiet_NaN()}, E(ceNum)},
      {"HEX2BIN", {"200"}, E(ceNum)},        {"HEX2BIN", {"FFFFFFFDFF"}, E(ceNum)},
      {"HEX2OCT", {"FFDFFFFFFF"}, E(ceNum)}, {"OCT2BIN", {"8"}, E(ceNum)},
  });
}

TEST(Engineering, BitwiseOperations) {
  const double Top = 281474976710655.0;  // 2^48 - 1
  ExpectCases({
      {"BITAND", {13, 25}, V(9)},
      {"BITOR", {23, 10}, V(31)},
      {"BITXOR", {5, 3}, V(6)},
      {"BITAND", {Top, Top}, V(Top)},
      {"BITLSHIFT", {4, 2}, V(16)},
      {"BITLSHIFT", {4, -2}, V(1)},
      {"BITRSHIFT", {13, 2}, V(3)},
      {"BITRSHIFT", {13, -2}, V(52)},
      {"BITRSHIFT", {1, 53}, V(0)},
      {"BITLSHIFT", {1, 47}, V(140737488355328.0)},
      {"BITLSHIFT", {1, 48}, E(ceNum)},
      {"BITLSHIFT", {1, 54}, E(ceNum)},
      {"BITAND", {-1, 1}, E(ceNum)},
      {"BITAND", {1.5, 1}, E(ceNum)},
      {"BITOR", {Top + 1, 1}, E(ceNum)},
      {"BITXOR", {"a", 1}, E(ceValue)},
  });
}

TEST(Engineering, DeltaAndGeStep) {
  ExpectCases({
      {"DELTA", {5, 4}, V(0)},
      {"DELTA", {5, 5}, V(1)},
      {"DELTA", {0}, V(1)},
      {"DELTA", {"x"}, E(ceValue)},
      {"GESTEP", {5, 5}, V(1)},
      {"GESTEP", {-4, -5}, V(1)},
      {"GESTEP", {-1}, V(0)},
      {"GESTEP", {1, "x"}, E(ceValue)},
  });
}

// References from mpmath at 25 digits.
TEST(Engineering, ErrorFunctions) {
  EXPECT_TRUE(IsNear(Call("ERF", {0.745}), 0.70792892009573768414));
  EXPECT_TRUE(IsNear(Call("ERF", {0, 1.5}), 0.96610514647531072707));
  // Far out in the tail the difference keeps its digits.
  EXPECT_TRUE(IsNear(Call("ERF", {5, 6}), 1.5374382746913223513e-12));
  EXPECT_TRUE(IsNear(Call("ERF", {-6, -2}), 0.0046777349810472443182));
  EXPECT_TRUE(IsNear(Call("ERFC", {0.3}), 0.67137324054087257236));
  EXPECT_TRUE(IsNear(Call("ERFC.PRECISE", {-1}), 1.8427007929497148693));
  EXPECT_EQ(Call("ERF.PRECISE", {"x"}), E(ceValue));
  EXPECT_EQ(Call("ERF", {1, "x"}), E(ceValue));
}

struct TBesselCase {
  const char* Name;
  double X;
  double N;
  double Expected;
};

// References from mpmath at 25 digits: small and large arguments, orders
// above and below x, and the regions where each method hands over.
TEST(Engineering, BesselFunctionsToFullPrecision) {
  const TBesselCase Cases[] = {
      {"BESSELJ", 1.9, 2, 0.32992572769238723738},     {"BESSELJ", 1.9, 2.9, 0.32992572769238723738},
      {"BESSELJ", 30, 3, 0.12921122875972498304},      {"BESSELJ", 100, 50, -0.038698339728525383467},
      {"BESSELJ", 0.001, 0, 0.999999750000015625},     {"BESSELJ", 60, 0, -0.091471804089061869531},
      {"BESSELJ", 10, 20, 0.000011513369247813397783}, {"BESSELJ", -3.2, 3, -0.34306637640066820094},
      {"BESSELY", 2.5, 1, 0.14591813796678579888},     {"BESSELY", 1.9, 2, -0.66987867900128890339},
      {"BESSELY", 30, 3, -0.06803569025319872277},     {"BESSELY", 100, 50, 0.076505263944803040444},
      {"BESSELY", 0.001, 0, -4.471416611375923269},    {"BESSELY", 10, 20, -1597.483848269625981},
      {"BESSELI", 1.5, 1, 0.98166642857790758565},     {"BESSELI", 30, 3, 671140461797.43961864},
      {"BESSELI", 100, 50, 4.8219580855940806689e+36}, {"BESSELI", 10, 20, 0.00012507997356449475591},
      {"BESSELI", -3.2, 3, -1.2488807659758242768},    {"BESSELK", 1.5, 1, 0.27738780045684381609},
      {"BESSELK", 30, 3, 2.4713310636589929359e-14},   {"BESSELK", 100, 50, 9.2745226536133258846e-40},
      {"BESSELK", 0.001, 0, 7.0236888005623813436},    {"BESSELK", 10, 20, 178.74427820770548078},
  };
  for (const TBesselCase& C : Cases)
    EXPECT_TRUE(IsNear(Call(C.Name, {C.X, C.N}), C.Expected, 1e-13)) << C.Name << '(' << C.X << ", " << C.N << ')';
}

TEST(Engineering, BesselDomainEdges) {
  ExpectCases({
      {"BESSELJ", {"x", 1}, E(ceValue)},
      {"BESSELJ", {1, -1}, E(ceNum)},
      {"BESSELY", {0, 1}, E(ceNum)},
      {"BESSELK", {-1, 1}, E(ceNum)},
      {"BESSELJ", {0, 0}, V(1)},
      {"BESSELI", {0, 3}, V(0)},
      // Too large for a double.
      {"BESSELI", {800, 0}, E(ceNum)},
      {"BESSELY", {1, 300}, E(ceNum)},
      {"BESSELK", {1e-310, 2}, E(ceNum)},
      // Far below the smallest double.
      {"BESSELJ", {1, 1e9}, V(0)},
      {"BESSELK", {1e4, 0}, V(0)},
      // A recurrence of more than a million steps is refused.
      {"BESSELJ", {1e7, 2e6}, E(ceNum)},
  });
}

}  // namespace
}  // namespace Tabrino
