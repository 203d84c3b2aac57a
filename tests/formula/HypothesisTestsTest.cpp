// Hypothesis tests and confidence intervals. Reference values: mpmath 1.3
// at 40 digits on the samples below (those of the documented examples of the
// major spreadsheets, whose printed digits agree).
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TFormulaArg First() {
  return Column({V(3), V(4), V(5), V(8), V(9), V(1), V(2), V(4), V(5)});
}
TFormulaArg Second() {
  return Column({V(6), V(19), V(3), V(2), V(14), V(4), V(5), V(17), V(1)});
}
TFormulaArg ZSample() {
  return Column({V(3), V(6), V(7), V(8), V(6), V(5), V(4), V(2), V(1), V(9)});
}
TFormulaArg Actual() {
  return Range({V(58), V(35), V(11), V(25), V(10), V(23)}, 3, 2);
}
TFormulaArg Expected() {
  return Range({V(45.35), V(47.65), V(17.56), V(18.44), V(16.09), V(16.91)}, 3, 2);
}

TEST(HypothesisTests, WrongArgumentCounts) {
  ExpectCases({
      {"T.TEST", {First(), Second(), 2}, E(ceValue)},
      {"F.TEST", {First()}, E(ceValue)},
      {"CHISQ.TEST", {Actual()}, E(ceValue)},
      {"Z.TEST", {ZSample()}, E(ceValue)},
      {"Z.TEST", {ZSample(), 4, 1, 2}, E(ceValue)},
      {"CONFIDENCE.NORM", {0.05, 2.5}, E(ceValue)},
  });
}

TEST(HypothesisTests, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"T.TEST", {First(), Second(), "two", 1}, E(ceValue)},
      {"T.TEST", {"x", Second(), 2, 2}, E(ceValue)},
      {"Z.TEST", {ZSample(), "x"}, E(ceValue)},
      {"CONFIDENCE.T", {0.05, E(ceNA), 50}, E(ceValue)},
  });
}

TEST(HypothesisTests, DomainEdges) {
  ExpectCases({
      {"T.TEST", {First(), Second(), 3, 1}, E(ceNum)},
      {"T.TEST", {First(), Second(), 2, 4}, E(ceNum)},
      {"T.TEST", {First(), Column({V(1), V(2)}), 2, 1}, E(ceNA)},
      {"T.TEST", {Column({V(1)}), Column({V(2)}), 2, 2}, E(ceDiv0)},
      {"T.TEST", {Column({V(1), V(2)}), Column({V(2), V(3)}), 2, 1}, E(ceDiv0)},
      {"F.TEST", {Column({V(1), V(1)}), First()}, E(ceDiv0)},
      {"CHISQ.TEST", {Actual(), Column({V(1), V(2)})}, E(ceNA)},
      {"CHISQ.TEST", {V(1), V(2)}, E(ceNA)},
      {"CHISQ.TEST", {Column({V(1), V(2)}), Column({V(0), V(2)})}, E(ceDiv0)},
      {"CHISQ.TEST", {Column({V(1), V(2)}), Column({V(-1), V(2)})}, E(ceNum)},
      {"Z.TEST", {Column({V("a")}), 1}, E(ceNA)},
      {"Z.TEST", {ZSample(), 4, 0}, E(ceNum)},
      {"Z.TEST", {Column({V(5)}), 4}, E(ceDiv0)},
      {"CONFIDENCE.NORM", {0, 2.5, 50}, E(ceNum)},
      {"CONFIDENCE.NORM", {0.05, 0, 50}, E(ceNum)},
      {"CONFIDENCE.NORM", {0.05, 2.5, 0.5}, E(ceNum)},
      {"CONFIDENCE.T", {0.05, 1, 1}, E(ceDiv0)},
      {"CONFIDENCE.T", {1, 1, 10}, E(ceNum)},
  });
}

TEST(HypothesisTests, AgreeWithReferenceValues) {
  EXPECT_TRUE(IsNear(Call("T.TEST", {First(), Second(), 2, 1}), 1.9601578492528211e-1));
  EXPECT_TRUE(IsNear(Call("T.TEST", {First(), Second(), 1, 1}), 9.8007892462641053e-2));
  EXPECT_TRUE(IsNear(Call("T.TEST", {First(), Second(), 2, 2}), 1.9199588676039622e-1));
  // Welch's test keeps its fractional degrees of freedom (10.2552...).
  EXPECT_TRUE(IsNear(Call("T.TEST", {First(), Second(), 2, 3}), 2.0229392336867789e-1));
  EXPECT_TRUE(
      IsNear(Call("F.TEST", {Column({V(6), V(7), V(9), V(15), V(21)}), Column({V(20), V(28), V(31), V(38), V(40)})}),
             6.483178467861745e-1));
  EXPECT_TRUE(IsNear(Call("CHISQ.TEST", {Actual(), Expected()}), 3.0819201700830947e-4));
  EXPECT_TRUE(IsNear(Call("Z.TEST", {ZSample(), 4}), 9.057419685136376e-2));
  EXPECT_TRUE(IsNear(Call("Z.TEST", {ZSample(), 6}), 8.6304338912952989e-1));
  EXPECT_TRUE(IsNear(Call("Z.TEST", {ZSample(), 4, 1}), 2.521091147245031e-4));
  EXPECT_TRUE(IsNear(Call("Z.TEST", {ZSample(), 2, 1}), 5.4612400113325459e-23));
  EXPECT_TRUE(IsNear(Call("CONFIDENCE.NORM", {0.05, 2.5, 50}), 6.9295191217483896e-1));
  EXPECT_TRUE(IsNear(Call("CONFIDENCE.T", {0.05, 1, 50}), 2.8419685549572992e-1));
}

// Samples are read as SUM reads them: text, booleans and blanks in a range
// are passed over, and a paired test drops the pairs they break.
TEST(HypothesisTests, NonNumbersInRangesArePassedOver) {
  TFormulaArg Padded = Column({V(6), V(7), V("n/a"), V(9), V(15), Blank(), V(21), V(true)});
  EXPECT_EQ(Call("F.TEST", {Padded, Column({V(20), V(28), V(31), V(38), V(40)})}),
            Call("F.TEST", {Column({V(6), V(7), V(9), V(15), V(21)}), Column({V(20), V(28), V(31), V(38), V(40)})}));
  TFormulaArg A = Column({V(3), V(4), V("x"), V(5), V(8), V(9), V(1), V(2), V(4), V(5)});
  TFormulaArg B = Column({V(6), V(19), V(7), V(3), V(2), V(14), V(4), V(5), V(17), V(1)});
  EXPECT_EQ(Call("T.TEST", {A, B, 2, 1}), Call("T.TEST", {First(), Second(), 2, 1}));
}

}  // namespace
}  // namespace Tabrino
