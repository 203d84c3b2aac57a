#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Logical, WrongArgumentCounts) {
  ExpectCases({
      {"SINGLE", {}, E(ceValue)},
      {"IF", {true}, E(ceValue)},
      {"IF", {true, 1, 2, 3}, E(ceValue)},
      {"IFERROR", {1}, E(ceValue)},
      {"AND", {}, E(ceValue)},
      {"NOT", {1, 2}, E(ceValue)},
      {"TRUE", {1}, E(ceValue)},
      {"CHOOSE", {1}, E(ceValue)},
      {"IFS", {true}, E(ceValue)},
      {"SWITCH", {1, 2}, E(ceValue)},
  });
}

TEST(Logical, ImplicitIntersectionWithTheEvaluatedCell) {
  // C2:C4, B5:D5 and B2:C3, read in a formula at C3.
  TFormulaArg Column3 = Referenced(Column({V("c2"), V("c3"), V("c4")}), 3, 2);
  TFormulaArg Row5 = Referenced(Range({V("b5"), V("c5"), V("d5")}, 1, 3), 2, 5);
  TFormulaArg Block = Referenced(Range({V("b2"), V("c2"), V("b3"), V("c3")}, 2, 2), 2, 2);
  TFormulaArg OneCell = Referenced(Column({V("z9")}), 26, 9);
  TFormulaContext AtC3 = EvaluatedAt(3, 3);
  ExpectCases(
      {
          {"SINGLE", {Column3}, V("c3")},
          {"SINGLE", {Row5}, V("c5")},
          {"SINGLE", {Block}, V("c3")},
          {"SINGLE", {OneCell}, V("z9")},
          {"SINGLE", {Column({V("first"), V("second")})}, V("first")},
          {"SINGLE", {"plain"}, V("plain")},
      },
      AtC3);
  // At E6 none of the ranges is crossed.
  ExpectCases({{"SINGLE", {Column3}, E(ceValue)}, {"SINGLE", {Row5}, E(ceValue)}, {"SINGLE", {Block}, E(ceValue)}},
              EvaluatedAt(5, 6));
  EXPECT_EQ(ImplicitIntersect(Column3, 1, 4), V("c4"));
  EXPECT_EQ(ImplicitIntersect(Referenced(Range({}, 0, 0), 1, 1), 1, 1), E(ceValue));
}

TEST(Logical, ConditionalsOnValues) {
  ExpectCases({
      {"IF", {true, 1, 2}, V(1)},
      {"IF", {0, 1, 2}, V(2)},
      {"IF", {0, 1}, V(false)},
      {"IF", {"0", 1, 2}, V(1)},
      {"IF", {E(ceDiv0), 1, 2}, E(ceDiv0)},
      {"IF", {Column({V(1), V(0)}), "yes", "no"}, V("yes")},
      {"IFERROR", {E(ceNA), 1}, V(1)},
      {"IFERROR", {5, 1}, V(5)},
      {"IFNA", {E(ceNA), 1}, V(1)},
      {"IFNA", {E(ceDiv0), 1}, E(ceDiv0)},
      {"CHOOSE", {2, "a", "b"}, V("b")},
      {"CHOOSE", {1.9, "a", "b"}, V("a")},
      {"CHOOSE", {"2", "a", "b"}, V("b")},
      {"CHOOSE", {3, "a", "b"}, E(ceValue)},
      {"CHOOSE", {0, "a", "b"}, E(ceValue)},
      {"CHOOSE", {E(ceDiv0), "a", "b"}, E(ceValue)},
      {"CHOOSE", {1e300, "a"}, E(ceValue)},
      {"IFS", {false, 1, true, 2}, V(2)},
      {"IFS", {0, 1, "x", 2}, V(2)},
      {"IFS", {false, 1}, E(ceNA)},
      {"IFS", {false, 1, true}, E(ceNA)},
      {"SWITCH", {2, 1, "a", 2, "b"}, V("b")},
      {"SWITCH", {"X", "x", 1}, V(1)},
      {"SWITCH", {"5", 5, "n"}, V("n")},
      {"SWITCH", {3, 1, "a", "d"}, V("d")},
      {"SWITCH", {3, 1, "a"}, E(ceNA)},
  });
}

TEST(Logical, AndOrXorOverAllValues) {
  TFormulaArg Skipped = Column({V(true), V("x"), Blank()});
  ExpectCases({
      {"AND", {true, 1}, V(true)},
      {"AND", {true, 0}, V(false)},
      {"AND", {Skipped}, V(true)},
      {"AND", {Column({V("x"), Blank()})}, E(ceValue)},
      {"AND", {"x"}, E(ceValue)},
      {"AND", {"true", 1}, V(true)},
      {"AND", {"False"}, V(false)},
      {"AND", {Referenced(TFormulaArg::FromScalar(V("x")), 1, 1), true}, V(true)},
      {"AND", {true, Column({V(1), E(ceNA)})}, E(ceNA)},
      {"OR", {false, 0}, V(false)},
      {"OR", {Column({V(0), V(true)})}, V(true)},
      {"OR", {Column({})}, E(ceValue)},
      {"XOR", {true, true, true}, V(true)},
      {"XOR", {true, Column({V(2), V(false)})}, V(false)},
      {"NOT", {0}, V(true)},
      {"NOT", {""}, V(true)},
      {"NOT", {"x"}, V(false)},
      {"NOT", {E(ceNA)}, E(ceNA)},
      {"TRUE", {}, V(true)},
      {"FALSE", {}, V(false)},
  });
}

}  // namespace
}  // namespace Tabrino
