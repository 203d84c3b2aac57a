// Depreciation schedules. "doc" marks a function's published example;
// "mpmath" an independent 40-digit walk through the documented schedule,
// period by period.
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

constexpr double Close = 1E-12;

TEST(Depreciation, WrongArgumentCounts) {
  ExpectCases({
      {"SLN", {1, 2}, E(ceValue)},
      {"SYD", {1, 2, 3}, E(ceValue)},
      {"DB", {1, 2, 3}, E(ceValue)},
      {"DDB", {1, 2, 3, 4, 5, 6}, E(ceValue)},
      {"VDB", {1, 2, 3, 4}, E(ceValue)},
      {"AMORLINC", {1, 2, 3, 4, 5}, E(ceValue)},
      {"AMORDEGRC", {1, 2, 3, 4, 5, 6, 7, 8}, E(ceValue)},
  });
}

TEST(Depreciation, StraightLineAndSumOfDigits) {
  EXPECT_TRUE(IsNear(Call("SLN", {30000, 7500, 10}), 2250, Close));                    // doc
  EXPECT_TRUE(IsNear(Call("SYD", {30000, 7500, 10, 1}), 4090.9090909090909, Close));   // doc: 4090.91
  EXPECT_TRUE(IsNear(Call("SYD", {30000, 7500, 10, 10}), 409.09090909090909, Close));  // doc: 409.09
  ExpectCases({
      {"SLN", {1000, 100, 0}, E(ceDiv0)},
      {"SLN", {"c", 100, 10}, E(ceValue)},
      {"SYD", {30000, 7500, 10, 11}, E(ceNum)},
      {"SYD", {30000, 7500, 10, 0}, E(ceNum)},
      {"SYD", {30000, 7500, 0, 1}, E(ceNum)},
      {"SYD", {30000, -1, 10, 1}, E(ceNum)},
  });
}

TEST(Depreciation, FixedDecliningBalance) {
  // doc: 186083.33 ... 15845.10; mpmath for the digits.
  const double Expected[] = {186083.33333333333, 259639.41666666667, 176814.44275,      120410.63551275,
                             81999.64278418275,  55841.756736028453, 15845.098473848073};
  for (int Period = 1; Period <= 7; ++Period) {
    EXPECT_TRUE(IsNear(Call("DB", {1000000, 100000, 6, Period, 7}), Expected[Period - 1], Close)) << Period;
  }
  ExpectCases({
      {"DB", {1000000, 100000, 6, 8, 7}, E(ceNum)},  // beyond the extra last period
      {"DB", {1000000, 100000, 6, 7}, E(ceNum)},     // a full first year has no extra period
      {"DB", {1000000, 100000, 6, 1, 13}, E(ceNum)},
      {"DB", {1000000, 100000, 0, 1}, E(ceNum)},
      {"DB", {-1, 100000, 6, 1}, E(ceNum)},
      {"DB", {0, 0, 6, 1}, V(0)},
  });
}

TEST(Depreciation, DoubleDecliningBalance) {
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 3650, 1}), 2400 * 2 / 3650.0, Close));   // doc: 1.32
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 120, 1, 2}), 40, Close));                // doc
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 10, 1, 2}), 480, Close));                // doc
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 10, 2, 1.5}), 306, Close));              // doc
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 10, 10}), 22.1225472, Close));           // doc: 22.12
  EXPECT_TRUE(IsNear(Call("DDB", {2400, 300, 10, 1.5}), 429.32505167995962, Close));  // mpmath, a fractional period
  ExpectCases({
      {"DDB", {1000, 100, 2, 1, 3}, V(900)},  // a factor beyond the life takes everything at once
      {"DDB", {1000, 100, 2, 2, 3}, V(0)},
      {"DDB", {2400, 300, 10, 11}, E(ceNum)},
      {"DDB", {2400, 300, 10, 1, 0}, E(ceNum)},
      {"DDB", {2400, -300, 10, 1}, E(ceNum)},
  });
}

TEST(Depreciation, VariableDecliningBalance) {
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 3650, 0, 1}), 2400 * 2 / 3650.0, Close));        // doc: 1.32
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 120, 0, 1}), 40, Close));                        // doc
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 10, 0, 1}), 480, Close));                        // doc
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 120, 6, 18}), 396.30605326475086, Close));       // doc: 396.31
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 120, 6, 18, 1.5}), 311.80893665823408, Close));  // doc: 311.81
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 10, 0, 0.875, 1.5}), 315, Close));               // doc
  // mpmath: with and without the switch to straight line
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 0, 10, 5, 10}), 786.432, Close));
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 0, 10, 5, 10, 2, true}), 528.73396224, Close));
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 0, 10, 6.5, 8.25}), 275.2512, Close));
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 100, 7, 3, 7, 1.5}), 1064.1399416909621, Close));
  EXPECT_TRUE(IsNear(Call("VDB", {2400, 300, 10, 2.5, 7.25}), 904.249344, Close));
  ExpectCases({
      {"VDB", {2400, 300, 10, 5, 4}, E(ceNum)},
      {"VDB", {2400, 300, 10, 5, 11}, E(ceNum)},
      {"VDB", {2400, 300, 10, -1, 1}, E(ceNum)},
      {"VDB", {2400, 300, 1E12, 0, 1E12}, E(ceNum)},  // too many periods to walk
      {"VDB", {2400, 300, 10, 0, 1, "f"}, E(ceValue)},
  });
}

TEST(Depreciation, FrenchAccounting) {
  double Purchased = EncodeDate(2008, 8, 19), FirstEnd = EncodeDate(2008, 12, 31);
  ExpectCases({
      {"AMORLINC", {2400, Purchased, FirstEnd, 300, 1, 0.15, 1}, V(360)},  // doc
      {"AMORLINC", {2400, Purchased, FirstEnd, 300, 7, 0.15, 1}, V(0)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 1, 0.15, 1}, V(776)},  // doc
      // Coefficient 2.5, rounded periods: 330, 776, 485, 303, 190, then the
      // last two take half of the 316 left each.
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 0, 0.15, 1}, V(330)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 4, 0.15, 1}, V(190)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 5, 0.15, 1}, V(158)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 6, 0.15, 1}, V(158)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 7, 0.15, 1}, V(0)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 1E9, 0.15, 1}, V(0)},
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 1, 0.22, 1}, E(ceNum)},  // a life of 4.5 years
      {"AMORDEGRC", {2400, Purchased, FirstEnd, 300, 1, 0.6, 1}, E(ceNum)},
      {"AMORLINC", {2400, Purchased, FirstEnd, 300, 1, 0.15, 2}, E(ceNum)},  // no actual/360 here
      {"AMORLINC", {2400, FirstEnd, Purchased, 300, 1, 0.15, 1}, E(ceNum)},
      {"AMORLINC", {2400, Purchased, FirstEnd, 300, 1, 0, 1}, E(ceNum)},
      {"AMORLINC", {2400, Purchased, FirstEnd, 300, -1, 0.15, 1}, E(ceNum)},
      {"AMORLINC", {2400, "bought", FirstEnd, 300, 1, 0.15, 1}, E(ceValue)},
  });
  // mpmath: the first period pro rata (134 of 366 days), the sixth what is left.
  EXPECT_TRUE(IsNear(Call("AMORLINC", {2400, Purchased, FirstEnd, 300, 0, 0.15, 1}), 131.80327868852459, Close));
  EXPECT_TRUE(IsNear(Call("AMORLINC", {2400, Purchased, FirstEnd, 300, 6, 0.15, 1}), 168.19672131147541, Close));
}

}  // namespace
}  // namespace Tabrino
