#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(UnitConversion, ArgumentsAndUnknownUnits) {
  ExpectCases({
      {"CONVERT", {1, "m"}, E(ceValue)},
      {"CONVERT", {"a", "m", "ft"}, E(ceValue)},
      {"CONVERT", {2.5, "ft", "sec"}, E(ceNA)},
      {"CONVERT", {1, "FT", "m"}, E(ceNA)},
      {"CONVERT", {1, "m", ""}, E(ceNA)},
      // Prefixes only where the unit takes them, binary ones only on bits and bytes.
      {"CONVERT", {1, "kft", "m"}, E(ceNA)},
      {"CONVERT", {1, "kC", "C"}, E(ceNA)},
      {"CONVERT", {1, "kim", "m"}, E(ceNA)},
      {"CONVERT", {1E308, "km", "mm"}, E(ceNum)},
  });
}

// Exact definitions: the results are the defining numbers or simple
// multiples of them.
TEST(UnitConversion, DefinedFactors) {
  ExpectCases({
      {"CONVERT", {1, "lbm", "kg"}, V(0.45359237)},
      {"CONVERT", {1, "in", "m"}, V(0.0254)},
      {"CONVERT", {1, "mi", "ft"}, V(5280)},
      {"CONVERT", {1, "yr", "day"}, V(365.25)},
      {"CONVERT", {1, "hr", "sec"}, V(3600)},
      {"CONVERT", {1, "kg", "g"}, V(1000)},
      {"CONVERT", {1, "dam", "m"}, V(10)},
      {"CONVERT", {1, "km2", "m2"}, V(1E6)},
      {"CONVERT", {1, "kibyte", "byte"}, V(1024)},
      {"CONVERT", {1, "kbyte", "bit"}, V(8000)},
      {"CONVERT", {1, "Gibit", "Mibit"}, V(1024)},
      {"CONVERT", {1, "gal", "qt"}, V(4)},
      {"CONVERT", {1, "ha", "ar"}, V(100)},
      {"CONVERT", {1, "kW", "W"}, V(1000)},
      {"CONVERT", {1, "T", "ga"}, V(10000)},
      {"CONVERT", {1, "atm", "Pa"}, V(101325)},
  });
}

TEST(UnitConversion, Temperatures) {
  ExpectCases({
      {"CONVERT", {68, "F", "C"}, V(20)},
      {"CONVERT", {100, "C", "F"}, V(212)},
      {"CONVERT", {0, "cel", "kel"}, V(273.15)},
      {"CONVERT", {100, "C", "Reau"}, V(80)},
      {"CONVERT", {0, "K", "Rank"}, V(0)},
      {"CONVERT", {1000, "mK", "K"}, V(1)},
  });
  EXPECT_TRUE(IsNear(Call("CONVERT", {0, "K", "F"}), -459.67, 1e-15));
  EXPECT_TRUE(IsNear(Call("CONVERT", {491.67, "Rank", "C"}), 0, 1e-12));
}

// Derived factors, checked against hand-computed quotients of the defining
// numbers.
TEST(UnitConversion, DerivedFactors) {
  EXPECT_TRUE(IsNear(Call("CONVERT", {100, "ft2", "m2"}), 9.290304));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "cm3", "l"}), 1E-3));
  EXPECT_TRUE(IsNear(Call("CONVERT", {36, "km/h", "m/s"}), 10));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "HP", "W"}), 745.69987158227022));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "hh", "Wh"}), 745.69987158227022));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "atm", "Torr"}), 760));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "lbf", "N"}), 4.4482216152605));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "sg", "lbm"}), 9.80665 / 0.3048));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "uk_gal", "l"}), 4.54609));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "tbs", "tsp"}), 3));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "Nmi", "m"}), 1852));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "kn", "mph"}), 1852 / 1609.344));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "Pica", "pica"}), 1.0 / 12));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "uk_acre", "yd^2"}), 4840));
  EXPECT_TRUE(IsNear(Call("CONVERT", {1, "GRT", "ft3"}), 100));
}

}  // namespace
}  // namespace Tabrino
