// Descriptive statistics. Reference values come from mpmath at 40 digits
// (formulas of the textbook definitions, e.g. sample skewness
// n/((n-1)(n-2)) * sum(((x-mean)/s)^3)), rounded to 17 significant digits.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// 3.5, 1.25, 8, 2, 9.75, 4, 6.5, 0.001 with text, a boolean, an empty cell
// and an error among them, all of which a range passes over.
TFormulaArg Data() {
  return Range({V(3.5), V(1.25), V("text"), V(8), V(2), V(true), V(9.75), Blank(), V(4), V(6.5), E(ceNA), V(1e-3)}, 4,
               3);
}

TEST(Statistical, WrongArgumentCounts) {
  ExpectCases({
      {"STDEV.S", {}, E(ceValue)},
      {"AVEDEV", {}, E(ceValue)},
      {"STANDARDIZE", {1, 2}, E(ceValue)},
      {"STANDARDIZE", {1, 2, 3, 4}, E(ceValue)},
      {"FISHER", {1, 2}, E(ceValue)},
      {"FISHERINV", {}, E(ceValue)},
      {"AVERAGEIFS", {Column({V(1)}), Column({V(1)})}, E(ceValue)},
      {"MAXIFS", {Column({V(1)}), Column({V(1)})}, E(ceValue)},
  });
}

TEST(Statistical, TypedInValuesConvertAndTextThatIsNoNumberFails) {
  ExpectCases({
      {"VAR.S", {"2", true, 3}, V(1)},  // 2, 1, 3
      {"STDEV.P", {"x", 1}, E(ceValue)},
      {"GEOMEAN", {1, E(ceDiv0)}, E(ceValue)},
      {"AVERAGEA", {"2", false}, V(1)},
      {"MAXA", {"abc"}, E(ceValue)},
      {"STANDARDIZE", {"x", 1, 1}, E(ceValue)},
      {"FISHER", {"half"}, E(ceValue)},
  });
}

TEST(Statistical, AReferencedCellCountsOnlyWhenItHoldsANumber) {
  TFormulaArg TextCell = Referenced(TFormulaArg::FromScalar(V("7")), 1, 1);
  TFormulaArg BoolCell = Referenced(TFormulaArg::FromScalar(V(true)), 1, 2);
  EXPECT_EQ(Call("VAR.P", {TextCell, BoolCell, 2, 4}), V(1));
  EXPECT_EQ(Call("VARPA", {BoolCell, 3}), V(1));  // TRUE counts 1 in the "A" form
}

TEST(Statistical, TooFewValuesOrNoSpread) {
  ExpectCases({
      {"STDEV.S", {Column({V(5), V("x")})}, E(ceDiv0)},
      {"VAR.S", {Column({V("x")})}, E(ceDiv0)},
      {"VAR.P", {Column({V("x")})}, E(ceDiv0)},
      {"VAR.P", {7}, V(0)},
      {"STDEVA", {Column({Blank()})}, E(ceDiv0)},
      {"DEVSQ", {Column({V("x")})}, E(ceNum)},
      {"AVEDEV", {Column({Blank()})}, E(ceNum)},
      {"AVERAGEA", {Column({Blank()})}, E(ceDiv0)},
      {"MAXA", {Column({Blank()})}, V(0)},
      {"SKEW", {1, 2}, E(ceDiv0)},
      {"SKEW", {3, 3, 3, 3}, E(ceDiv0)},
      {"SKEW.P", {1, 2}, E(ceDiv0)},
      {"KURT", {1, 2, 3}, E(ceDiv0)},
      {"KURT", {2, 2, 2, 2, 2}, E(ceDiv0)},
  });
}

TEST(Statistical, DomainEdges) {
  ExpectCases({
      {"GEOMEAN", {1, 0}, E(ceNum)},
      {"GEOMEAN", {Column({V(4), V(-1)})}, E(ceNum)},
      {"HARMEAN", {2, -2}, E(ceNum)},
      {"HARMEAN", {Column({V("x")})}, E(ceNum)},
      {"STANDARDIZE", {1, 0, 0}, E(ceNum)},
      {"STANDARDIZE", {1, 0, -1}, E(ceNum)},
      {"FISHER", {1}, E(ceNum)},
      {"FISHER", {-1}, E(ceNum)},
      {"FISHER", {0}, V(0)},
      {"FISHERINV", {0}, V(0)},
  });
}

TEST(Statistical, NonFiniteCellsAreNum) {
  TFormulaArg WithInfinity = Column({V(1), V(std::numeric_limits<double>::infinity())});
  EXPECT_EQ(Call("STDEV.S", {WithInfinity}), E(ceNum));
  EXPECT_EQ(Call("AVERAGEA", {Column({V(std::nan(""))})}), E(ceNum));
}

TEST(Statistical, MomentsAgainstReferences) {
  struct TCase {
    const char* Name;
    double Expected;
  } Cases[] = {
      {"DEVSQ", 81.991250875},         {"VAR.S", 11.713035839285714},     {"VAR.P", 10.248906359375},
      {"STDEV.S", 3.4224312760500706}, {"STDEV.P", 3.2013913161897282},   {"AVEDEV", 2.78115625},
      {"GEOMEAN", 1.4326315147732513}, {"HARMEAN", 0.007982302241797056}, {"SKEW", 0.39992616368027886},
      {"SKEW.P", 0.32065428953538851}, {"KURT", -1.097672123394542},
  };
  for (const TCase& C : Cases) EXPECT_TRUE(IsNear(Call(C.Name, {Data()}), C.Expected)) << C.Name;
}

TEST(Statistical, TheAFormsCountTextAsZeroAndBooleansAsNumbers) {
  // 1, TRUE, "x", 4 and an empty cell: the values 1, 1, 0, 4.
  TFormulaArg Mixed = Column({V(1), V(true), V("x"), V(4), Blank()});
  EXPECT_EQ(Call("AVERAGEA", {Mixed}), V(1.5));
  EXPECT_EQ(Call("VARA", {Mixed}), V(3));
  EXPECT_EQ(Call("VARPA", {Mixed}), V(2.25));
  EXPECT_EQ(Call("STDEVPA", {Mixed}), V(1.5));
  EXPECT_TRUE(IsNear(Call("STDEVA", {Mixed}), 1.7320508075688773));
  EXPECT_EQ(Call("MINA", {Mixed}), V(0));
  EXPECT_EQ(Call("MAXA", {Column({V(-3), V(false)})}), V(0));
  // The plain forms see only 1 and 4.
  EXPECT_EQ(Call("VAR.P", {Mixed}), V(2.25));
}

TEST(Statistical, VarianceKeepsItsDigitsUnderALargeOffset) {
  // 1E9 + {4, 7, 13, 16}: a one-pass sum of squares loses the answer 30.
  TFormulaArg Offset = Column({V(1e9 + 4), V(1e9 + 7), V(1e9 + 13), V(1e9 + 16)});
  EXPECT_EQ(Call("VAR.S", {Offset}), V(30));
  EXPECT_EQ(Call("DEVSQ", {Offset}), V(90));
}

TEST(Statistical, StandardizeAndFisher) {
  EXPECT_EQ(Call("STANDARDIZE", {42, 40, 1.5}), V(4.0 / 3));
  EXPECT_TRUE(IsNear(Call("FISHER", {0.75}), 0.97295507452765665));
  EXPECT_TRUE(IsNear(Call("FISHERINV", {-1.5}), -0.90514825364486644));
  EXPECT_TRUE(IsNear(Call("FISHERINV", {Call("FISHER", {0.3})}), 0.3, 1e-15));
}

TEST(Statistical, CountUniqueFoldsCaseAndKeepsKindsApart) {
  ExpectCases({
      {"COUNTUNIQUE", {1, 1, 2, 3, 5, 8, 13}, V(6)},
      {"COUNTUNIQUE", {Column({V("a"), V("A"), V("b"), Blank(), E(ceNA)})}, V(2)},
      {"COUNTUNIQUE", {Column({V(1), V("1"), V(true), V(true), V(false)})}, V(4)},
      {"COUNTUNIQUE", {Column({Blank(), Blank()})}, V(0)},
  });
}

TEST(Statistical, ConditionalAverageAndExtremes) {
  TFormulaArg Amounts = Column({V(10), V(20), V("n/a"), V(40), V(50)});
  TFormulaArg Regions = Column({V("east"), V("West"), V("west"), V("east"), V("west")});
  TFormulaArg Sizes = Column({V(1), V(2), V(3), V(4), V(5)});
  ExpectCases({
      {"AVERAGEIFS", {Amounts, Regions, "west"}, V(35)},
      {"AVERAGEIFS", {Amounts, Regions, "east", Sizes, ">1"}, V(40)},
      {"AVERAGEIFS", {Amounts, Regions, "north"}, E(ceDiv0)},
      {"MAXIFS", {Amounts, Regions, "west"}, V(50)},
      {"MINIFS", {Amounts, Regions, "west", Sizes, "<5"}, V(20)},
      {"MAXIFS", {Amounts, Regions, "north"}, V(0)},
      {"MINIFS", {Amounts, Regions, "north"}, V(0)},
      // Ranges of another shape, and a criterion without its range.
      {"AVERAGEIFS", {Amounts, Column({V("east")}), "east"}, E(ceValue)},
      {"MAXIFS", {Amounts, Regions, "east", Sizes}, E(ceValue)},
  });
}

}  // namespace
}  // namespace Tabrino
