#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Closed forms and iterations give results that agree with published values
// to about nine digits, not to the last bit.
void ExpectNear(const TCellValue& Actual, double Expected, const char* What) {
  ASSERT_EQ(Actual.Kind, cvkNumber) << What << " gave " << Actual.ToDisplayString();
  EXPECT_NEAR(Actual.Number, Expected, 1E-9 * std::max(1.0, std::fabs(Expected))) << What;
}

TEST(Financial, WrongArgumentCounts) {
  ExpectCases({
      {"PMT", {0.1, 10}, E(ceValue)},
      {"PMT", {0.1, 10, 100, 0, 0, 1}, E(ceValue)},
      {"NPV", {0.1}, E(ceValue)},
      {"IRR", {}, E(ceValue)},
      {"IRR", {1, 2, 3}, E(ceValue)},
      {"RATE", {10, -100}, E(ceValue)},
      {"RATE", {10, -100, 1000, 0, 0, 0.1, 1}, E(ceValue)},
  });
}

TEST(Financial, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"PMT", {"x", 10, 100}, E(ceValue)},
      {"FV", {0.1, 10, E(ceNA)}, E(ceValue)},
      {"PV", {0.1, 10, -100, "fv"}, E(ceValue)},
      {"NPER", {0.1, -100, 1000, 0, "type"}, E(ceValue)},
      {"NPV", {"r", 1}, E(ceValue)},
      {"NPV", {0.1, "x"}, E(ceValue)},
      {"IRR", {Column({V(-100), V(110)}), "g"}, E(ceValue)},
      {"RATE", {10, -100, 1000, 0, 0, "g"}, E(ceValue)},
  });
}

TEST(Financial, AnnuityClosedForms) {
  ExpectNear(Call("PMT", {0.08 / 12, 10, 10000}), -1037.0320893591606, "PMT");
  ExpectNear(Call("PMT", {0.08 / 12, 10, 10000, 0, 1}), -1030.1643271779742, "PMT at the start");
  ExpectNear(Call("FV", {0.06 / 12, 10, -200, -500, 1}), 2581.4033740601, "FV");
  ExpectNear(Call("PV", {0.08 / 12, 240, 500}), -59777.14585118638, "PV");
  ExpectNear(Call("NPER", {0.01, -100, -1000, 10000, 1}), 59.67386567429, "NPER");
  ExpectNear(Call("NPER", {0.01, -100, -1000}), -9.57859403981, "NPER");
  // Any non-zero type means payments at the start.
  EXPECT_EQ(Call("PMT", {0.01, 10, 1000, 0, 7}), Call("PMT", {0.01, 10, 1000, 0, 1}));
}

TEST(Financial, RatesWithinTheZeroToleranceTakeTheLimit) {
  ExpectCases({
      {"PMT", {0, 10, 1000}, V(-100)},
      {"PMT", {1E-13, 10, 1000, 200}, V(-120)},
      {"FV", {0, 10, -100, -1000}, V(2000)},
      {"PV", {0, 10, -100, 0}, V(1000)},
      {"NPER", {0, -100, 1000}, V(10)},
      {"NPER", {0, 0, 1000}, E(ceNum)},
      {"PMT", {0, 0, 1000}, E(ceNum)},
  });
}

TEST(Financial, ImpossibleAnnuitiesAreNumErrors) {
  ExpectCases({
      {"NPER", {0.1, -50, 1000}, E(ceNum)},  // payments below the interest never repay
      {"FV", {0.1, 1E6, -100}, E(ceNum)},
      {"PV", {-2, 0.5, 100}, E(ceNum)},
  });
}

TEST(Financial, NpvDiscountsFromPeriodOne) {
  ExpectNear(Call("NPV", {0.1, -10000, 3000, 4200, 6800}), 1188.4434123352216, "NPV");
  // Ranges give their number cells only; text, booleans and blanks take no period.
  TFormulaArg Flows = Column({V(3000), V("note"), Blank(), V(true), V(4200), V(6800)});
  ExpectNear(Call("NPV", {0.1, -10000, Flows}), 1188.4434123352216, "NPV over a range");
  ExpectNear(Call("NPV", {0.1, "110", true}), 100 + 1 / 1.21, "NPV of converted scalars");
  ExpectCases({
      {"NPV", {-1, 100}, E(ceDiv0)},
      {"NPV", {0.1, Blank()}, V(0)},
      {"NPV", {0.1, Column({V("a")})}, V(0)},
  });
}

TEST(Financial, IrrByNewtonsMethod) {
  TFormulaArg Flows = Column({V(-70000), V(12000), V(15000), V(18000), V(21000), V(26000)});
  ExpectNear(Call("IRR", {Flows}), 0.08663094803653162, "IRR");
  ExpectNear(Call("IRR", {Flows, 0.2}), 0.08663094803653162, "IRR from another guess");
  TCellValue Short = Call("IRR", {Column({V(-70000), V(12000), V(15000), V(18000), V(21000)})});
  ExpectNear(Short, -0.021244848272975403, "IRR below zero");
  // Text keeps its period: the 110 is two periods out.
  ExpectNear(Call("IRR", {Column({V(-100), V("x"), V(121)})}), 0.1, "IRR with a gap");
}

TEST(Financial, IrrNeverFailsForLackOfConvergence) {
  // No sign change: the iteration cannot settle, and the last rate stands.
  TCellValue AllPositive = Call("IRR", {Column({V(100), V(100), V(100)})});
  EXPECT_EQ(AllPositive.Kind, cvkNumber);
  // A flat derivative keeps the guess.
  ExpectCases({
      {"IRR", {Column({V(5)})}, V(0.1)},
      {"IRR", {Column({V(5)}), 0.3}, V(0.3)},
      {"IRR", {Column({V(-100), V(100)}), -1}, E(ceNum)},  // the pole of the discount
  });
}

TEST(Financial, RateByNewtonsMethod) {
  ExpectNear(Call("RATE", {48, -200, 8000}), 0.0077014724882020438, "RATE");
  ExpectNear(Call("RATE", {10, -100, 900, 0, 1}), 0.024227317682617946, "RATE at the start");
  // Close to zero the iteration stops on the rate as it stands.
  ExpectCases({
      {"RATE", {10, -100, 1000, 0, 0, 0}, V(0)},
      {"RATE", {10, -100, 1000, 0, 0, 1E-13}, V(1E-13)},
  });
  EXPECT_EQ(Call("RATE", {10, 100, 1000}).Kind, cvkNumber);  // no solution, yet no error
}

}  // namespace
}  // namespace Tabrino
