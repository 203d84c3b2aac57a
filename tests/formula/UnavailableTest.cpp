#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Functions whose data lives outside the engine give the provider-less error
// for every accepted argument count, and #VALUE! for a count they do not take.
TEST(Unavailable, ProviderlessErrors) {
  ExpectCases({
      {"CUBEVALUE", {"conn"}, E(ceNA)},
      {"CUBEVALUE", {"conn", "a", "b", "c"}, E(ceNA)},
      {"CUBEMEMBER", {"conn", "[x]"}, E(ceNA)},
      {"CUBESET", {"conn", "x", "y", 1, "z"}, E(ceNA)},
      {"CUBESETCOUNT", {"set"}, E(ceNA)},
      {"CUBEKPIMEMBER", {"c", "k", 1}, E(ceNA)},
      {"CUBEMEMBERPROPERTY", {"c", "m", "p"}, E(ceNA)},
      {"CUBERANKEDMEMBER", {"c", "s", 1}, E(ceNA)},
      {"RTD", {"prog", "", "topic"}, E(ceNA)},
      {"WEBSERVICE", {"https://example.com"}, E(ceNA)},
      {"DETECTLANGUAGE", {"hola"}, E(ceNA)},
      {"TRANSLATE", {"hola", "es", "en"}, E(ceNA)},
      {"CALL", {"lib"}, E(ceNA)},
      {"REGISTER.ID", {"lib", "proc"}, E(ceNA)},
      {"DDE", {"app", "topic", "item"}, E(ceNA)},
      {"CURRENT", {}, E(ceNA)},
      {"MULTIPLE.OPERATIONS", {1, 2, 3}, E(ceNA)},
      {"GETPIVOTDATA", {"Sales", 1}, E(ceRef)},
      {"FIELDVALUE", {1, "Population"}, E(ceValue)},
      {"IMAGE", {"https://example.com/a.png"}, E(ceValue)},
      {"CUBESETCOUNT", {}, E(ceValue)},
      {"RTD", {"prog", ""}, E(ceValue)},
      {"CURRENT", {1}, E(ceValue)},
  });
}

TEST(EuroConvert, FixedRatesAndRounding) {
  // Expected values: the fixed rates by hand in python, rounded as documented.
  ExpectCases({
      {"EUROCONVERT", {1.2, "DEM", "EUR"}, V(0.61)},
      {"EUROCONVERT", {1, "FRF", "EUR"}, V(0.15)},
      {"EUROCONVERT", {1, "frf", "DEM", false, 3}, V(0.3)},
      {"EUROCONVERT", {100, "BEF", "ESP"}, V(412)},
      {"EUROCONVERT", {1, "EUR", "ITL"}, V(1936)},
      {"EUROCONVERT", {7, "DEM", "DEM"}, V(7)},
      {"EUROCONVERT", {1, "USD", "EUR"}, E(ceValue)},
      {"EUROCONVERT", {1, "FRF", "DEM", true, 2}, E(ceValue)},
      {"EUROCONVERT", {"x", "FRF", "DEM"}, E(ceValue)},
      {"EUROCONVERT", {1, "FRF"}, E(ceValue)},
  });
  EXPECT_TRUE(IsNear(Call("EUROCONVERT", {1, "FRF", "EUR", true}), 1 / 6.55957));
  EXPECT_TRUE(IsNear(Call("EUROCONVERT", {1, "FRF", "DEM", true, 3}), 0.152 * 1.95583));
}

TEST(CellStyling, ColorPacksAndStyleIsZero) {
  ExpectCases({
      {"COLOR", {255, 0, 0}, V(16711680)},
      {"COLOR", {1, 2, 3, 4}, V(4 * 16777216 + 65536 + 2 * 256 + 3)},
      {"COLOR", {256, 0, 0}, E(ceNum)},
      {"COLOR", {0, -1, 0}, E(ceNum)},
      {"COLOR", {0, "x", 0}, E(ceValue)},
      {"COLOR", {0, 0}, E(ceValue)},
      {"STYLE", {"Accent"}, V(0)},
      {"STYLE", {"Accent", 3, "Default"}, V(0)},
  });
}

}  // namespace
}  // namespace Tabrino
