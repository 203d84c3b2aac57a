#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Wildcard.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TFormulaArg Ascending() {
  return Column({V(10), V(20), V(20), V(30), V(40)});
}
TFormulaArg Descending() {
  return Column({V(40), V(30), V(20), V(20), V(10)});
}
TFormulaArg Fruit() {
  return Range({V("Apple"), V("banana"), V("Cherry"), V("apricot")}, 1, 4);
}

TEST(Wildcard, PatternsMatchWholeTextsIgnoringCase) {
  struct {
    const char* Pattern;
    const char* Text;
    bool Matches;
  } Cases[] = {
      {"a*", "APPLE", true},
      {"a*e", "apple", true},
      {"a*e", "apples", false},
      {"?pple", "Apple", true},
      {"?pple", "pple", false},
      {"*", "", true},
      {"", "", true},
      {"", "x", false},
      {"~*", "*", true},
      {"~*", "a", false},
      {"a~?", "a?", true},
      {"a~?", "ab", false},
      {"**b", "aab", true},
      {"*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},
      {"h?llo", "h😀llo", false},  // ? is one UTF-16 unit, the emoji two
      {"h??llo", "h😀llo", true},
      {"ÄB*", "äbc", true},
      {"~", "~", true},
  };
  for (const auto& Case : Cases)
    EXPECT_EQ(TWildcardPattern(Case.Pattern).Matches(Case.Text), Case.Matches) << Case.Pattern << " / " << Case.Text;
  EXPECT_FALSE(TWildcardPattern("a~*").HasWildcards());
  EXPECT_TRUE(TWildcardPattern("a?").HasWildcards());
}

TEST(XMatch, ArgumentCountsModesAndShapes) {
  ExpectCases({
      {"XMATCH", {1}, E(ceValue)},
      {"XMATCH", {1, Ascending(), 0, 1, 1}, E(ceValue)},
      {"XMATCH", {10, Ascending(), 3}, E(ceValue)},
      {"XMATCH", {10, Ascending(), -2}, E(ceValue)},
      {"XMATCH", {10, Ascending(), 0, 0}, E(ceValue)},
      {"XMATCH", {10, Ascending(), 0, 3}, E(ceValue)},
      {"XMATCH", {10, Ascending(), "x"}, E(ceValue)},
      {"XMATCH", {"a*", Fruit(), 2, 2}, E(ceValue)},
      {"XMATCH", {1, Range({V(1), V(2), V(3), V(4)}, 2, 2)}, E(ceValue)},
      {"XMATCH", {E(ceDiv0), Ascending()}, E(ceDiv0)},
      {"XMATCH", {5, 5}, V(1)},
      {"XMATCH", {5, Range({}, 0, 0)}, E(ceNA)},
  });
}

TEST(XMatch, LinearModes) {
  ExpectCases({
      {"XMATCH", {20, Ascending()}, V(2)},
      {"XMATCH", {20, Ascending(), 0, -1}, V(3)},
      {"XMATCH", {25, Ascending()}, E(ceNA)},
      {"XMATCH", {25, Ascending(), -1}, V(2)},      // the first 20 met
      {"XMATCH", {25, Ascending(), -1, -1}, V(3)},  // the first 20 met from the end
      {"XMATCH", {25, Ascending(), 1}, V(4)},
      {"XMATCH", {5, Ascending(), -1}, E(ceNA)},
      {"XMATCH", {45, Ascending(), 1}, E(ceNA)},
      {"XMATCH", {25, Descending(), -1}, V(3)},  // unsorted data works linearly
      {"XMATCH", {"CHERRY", Fruit()}, V(3)},
      {"XMATCH", {"b", Fruit(), 1}, V(2)},    // texts order among texts
      {"XMATCH", {"b", Fruit(), -1}, V(4)},   // apricot is the largest text below "b"
      {"XMATCH", {15, Fruit(), 1}, E(ceNA)},  // numbers never order against texts
      {"XMATCH", {"20", Ascending()}, V(2)},  // the core rule: both convert, numbers decide
  });
}

TEST(XMatch, WildcardMode) {
  ExpectCases({
      {"XMATCH", {"a*", Fruit(), 2}, V(1)},
      {"XMATCH", {"a*", Fruit(), 2, -1}, V(4)},
      {"XMATCH", {"?anana", Fruit(), 2}, V(2)},
      {"XMATCH", {"*rr*", Fruit(), 2}, V(3)},
      {"XMATCH", {"a*", Fruit(), 0}, E(ceNA)},
      {"XMATCH", {"z*", Fruit(), 2}, E(ceNA)},
      {"XMATCH", {30, Ascending(), 2}, V(4)},
      {"XMATCH", {"a~*", Column({V("ab"), V("a*")}), 2}, V(2)},
  });
}

TEST(XMatch, BinarySearch) {
  ExpectCases({
      {"XMATCH", {30, Ascending(), 0, 2}, V(4)},
      {"XMATCH", {20, Ascending(), 0, 2}, V(2)},
      {"XMATCH", {25, Ascending(), 0, 2}, E(ceNA)},
      {"XMATCH", {25, Ascending(), -1, 2}, V(3)},
      {"XMATCH", {25, Ascending(), 1, 2}, V(4)},
      {"XMATCH", {5, Ascending(), -1, 2}, E(ceNA)},
      {"XMATCH", {5, Ascending(), 1, 2}, V(1)},
      {"XMATCH", {45, Ascending(), 1, 2}, E(ceNA)},
      {"XMATCH", {45, Ascending(), -1, 2}, V(5)},
      {"XMATCH", {30, Descending(), 0, -2}, V(2)},
      {"XMATCH", {25, Descending(), -1, -2}, V(3)},
      {"XMATCH", {25, Descending(), 1, -2}, V(2)},
      {"XMATCH", {50, Descending(), 1, -2}, E(ceNA)},
      {"XMATCH", {5, Descending(), -1, -2}, E(ceNA)},
      {"XMATCH", {"b", Column({V(1), V(2), V("a"), V("c")}), -1, 2}, V(3)},
      {"XMATCH", {3, Column({V(1), V(2), V("a"), V("c")}), -1, 2}, V(2)},
  });
}

TEST(XMatch, ArrayOfValuesGivesArrayOfPlaces) {
  TFormulaArg Places = CallArray("XMATCH", {Range({V(30), V(99), V(10)}, 1, 3), Ascending()});
  ASSERT_TRUE(Places.IsRange);
  EXPECT_EQ(Places.RowCount, 1);
  EXPECT_EQ(Places.ColCount, 3);
  EXPECT_EQ(Places.CellAt(0, 0), V(4));
  EXPECT_EQ(Places.CellAt(0, 1), E(ceNA));
  EXPECT_EQ(Places.CellAt(0, 2), V(1));
}

TEST(Lookup, VectorForm) {
  TFormulaArg Keys = Column({V(1), V(3), V(3), V(7)});
  TFormulaArg Results = Column({V("a"), V("b"), V("c"), V("d")});
  ExpectCases({
      {"LOOKUP", {3, Keys, Results}, V("c")},  // the last of equals
      {"LOOKUP", {5, Keys, Results}, V("c")},
      {"LOOKUP", {100, Keys, Results}, V("d")},
      {"LOOKUP", {0, Keys, Results}, E(ceNA)},
      {"LOOKUP", {7, Keys, Column({V("a")})}, E(ceRef)},
      {"LOOKUP", {"c", Range({V("a"), V("b"), V("d")}, 1, 3), Range({V(1), V(2), V(3)}, 1, 3)}, V(2)},
      {"LOOKUP", {E(ceNum), Keys, Results}, E(ceNum)},
      {"LOOKUP", {5, 5}, V(5)},
      {"LOOKUP", {1}, E(ceValue)},
  });
}

TEST(Lookup, SkipsErrorsSoTheLastMatchIdiomWorks) {
  // LOOKUP(2, 1/(criteria), results): ones where the criteria hold, errors elsewhere.
  TFormulaArg Hits = Column({V(1), E(ceDiv0), V(1), E(ceDiv0)});
  ExpectCases({{"LOOKUP", {2, Hits, Column({V("x"), V("y"), V("z"), V("w")})}, V("z")}});
}

TEST(Lookup, ArrayFormReadsTheLastLineAlongTheLongerSide) {
  TFormulaArg Wide = Range({V(1), V("a"), V("x"), V(2), V("b"), V("y")}, 2, 3);  // wider: first row
  TFormulaArg Square = Range({V(1), V("a"), V(2), V("b")}, 2, 2);                // square: first column
  TFormulaArg Deep = Range({V(1), V("a"), V(2), V("b"), V(3), V("c")}, 3, 2);
  ExpectCases({
      {"LOOKUP", {"a", Wide}, V("b")},
      {"LOOKUP", {2, Square}, V("b")},
      {"LOOKUP", {2.5, Deep}, V("b")},
  });
}

}  // namespace
}  // namespace Tabrino
