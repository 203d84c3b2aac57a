#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Keys 9, 1, 4 in no order, with a letter beside each.
TFormulaArg Unsorted() {
  return Range({V(9), V("a"), V(1), V("b"), V(4), V("c")}, 3, 2);
}

TEST(Lookup, WrongArgumentCounts) {
  ExpectCases({
      {"VLOOKUP", {1, Unsorted()}, E(ceValue)},
      {"HLOOKUP", {1, Unsorted(), 1, true, 1}, E(ceValue)},
      {"INDEX", {Unsorted()}, E(ceValue)},
      {"MATCH", {1}, E(ceValue)},
      {"ROW", {1, 2}, E(ceValue)},
      {"XLOOKUP", {1, Unsorted()}, E(ceValue)},
      {"ROWS", {}, E(ceValue)},
  });
}

TEST(Lookup, VLookupWalksTheWholeFirstColumn) {
  TFormulaArg Ties = Range({V(1), V("x"), V(3), V("first"), V(3), V("second"), V(10), V("y")}, 4, 2);
  TFormulaArg Words = Range({V("apple"), V(1), V("5"), V(2), V(true), V(3)}, 3, 2);
  ExpectCases({
      {"VLOOKUP", {5, Unsorted(), 2}, V("c")},
      {"VLOOKUP", {100, Unsorted(), 1}, V(9)},
      {"VLOOKUP", {0, Unsorted(), 2}, E(ceNA)},
      {"VLOOKUP", {5, Unsorted(), 2, false}, E(ceNA)},
      {"VLOOKUP", {4, Unsorted(), 2, false}, V("c")},
      {"VLOOKUP", {5, Ties, 2}, V("second")},
      {"VLOOKUP", {3, Ties, 2}, V("first")},
      {"VLOOKUP", {"APPLE", Words, 2, false}, V(1)},
      {"VLOOKUP", {5, Words, 2, false}, V(2)},
      {"VLOOKUP", {"true", Words, 2, false}, V(3)},
      {"VLOOKUP", {"ap", Words, 2}, E(ceNA)},
  });
}

TEST(Lookup, TableAndColumnChecks) {
  ExpectCases({
      {"VLOOKUP", {1, Unsorted(), 3}, E(ceRef)},
      {"VLOOKUP", {1, Unsorted(), 0}, E(ceRef)},
      {"VLOOKUP", {1, Unsorted(), 1e300}, E(ceRef)},
      {"VLOOKUP", {1, Unsorted(), "x"}, E(ceValue)},
      {"VLOOKUP", {1, 1, 1}, E(ceRef)},
      {"VLOOKUP", {1, Range({}, 0, 0), 1}, E(ceRef)},
      {"VLOOKUP", {1, Unsorted(), 2.9}, V("b")},
  });
}

TEST(Lookup, HLookupWalksTheFirstRow) {
  TFormulaArg Table = Range({V(9), V(1), V(4), V("a"), V("b"), V("c")}, 2, 3);
  ExpectCases({
      {"HLOOKUP", {5, Table, 2}, V("c")},
      {"HLOOKUP", {1, Table, 2, false}, V("b")},
      {"HLOOKUP", {1, Table, 3}, E(ceRef)},
      {"HLOOKUP", {"z", Table, 1}, E(ceNA)},
  });
}

TEST(Lookup, IndexTreatsZeroAsOne) {
  TFormulaArg Block = Range({V(1), V(2), V(3), V(4)}, 2, 2);
  ExpectCases({
      {"INDEX", {Block, 0, 2}, V(2)},
      {"INDEX", {Block, 2, 0}, V(3)},
      {"INDEX", {Block, 2}, V(3)},
      {"INDEX", {Block, 2, 2}, V(4)},
      {"INDEX", {Block, 3, 1}, E(ceRef)},
      {"INDEX", {Block, 1, 3}, E(ceRef)},
      {"INDEX", {Block, -1}, E(ceRef)},
      {"INDEX", {Block, "x"}, E(ceValue)},
      {"INDEX", {Block, 1, "x"}, E(ceValue)},
      {"INDEX", {7, 1}, V(7)},
      {"INDEX", {7, 0, 1}, V(7)},
      {"INDEX", {7, 2}, E(ceRef)},
      {"INDEX", {7, 1, 2}, E(ceRef)},
  });
}

TEST(Lookup, MatchTypes) {
  TFormulaArg Letters = Column({V("b"), V("a"), V("A")});
  TFormulaArg Numbers = Column({V(1), V(3), V(7), V(3), V("x")});
  TFormulaArg Falling = Column({V(9), V(7), V(6), V(1)});
  ExpectCases({
      {"MATCH", {"A", Letters, 0}, V(2)},
      {"MATCH", {"a", Letters, 1}, E(ceNA)},
      {"MATCH", {"a", Letters}, E(ceNA)},
      {"MATCH", {"3", Numbers, 0}, V(2)},
      {"MATCH", {5, Numbers, 1}, V(4)},
      {"MATCH", {5, Numbers, "x"}, V(4)},
      {"MATCH", {0, Numbers, 1}, E(ceNA)},
      {"MATCH", {5, Falling, -1}, V(3)},
      {"MATCH", {6, Falling, 2}, V(3)},
      {"MATCH", {10, Falling, -1}, E(ceNA)},
      {"MATCH", {7, Range({V(1), V(7), V(3), V(7)}, 2, 2), 0}, V(2)},
      {"MATCH", {7, 7, 0}, V(1)},
  });
}

TEST(Lookup, XLookupIsAnExactWalk) {
  TFormulaArg Keys = Column({V("a"), V("5"), V("b")});
  TFormulaArg Results = Column({V(1), V(2), V(3)});
  ExpectCases({
      {"XLOOKUP", {"B", Keys, Results}, V(3)},
      {"XLOOKUP", {5, Keys, Results}, V(2)},
      {"XLOOKUP", {"c", Keys, Results}, E(ceNA)},
      {"XLOOKUP", {"c", Keys, Results, "none"}, V("none")},
      {"XLOOKUP", {"b", Keys, Column({V(1)})}, E(ceRef)},
      {"_xlfn.XLOOKUP", {"a", Keys, Results, "none", 1, 1}, V(1)},
  });
}

TEST(Lookup, PositionAndSize) {
  TFormulaArg Block = Referenced(Range({V(1), V(2), V(3), V(4), V(5), V(6)}, 3, 2), 4, 7);
  ExpectCases({
      {"ROW", {Block}, V(7)},
      {"COLUMN", {Block}, V(4)},
      {"ROW", {5}, V(1)},
      {"COLUMN", {Referenced(TFormulaArg::FromScalar(V(1)), 3, 9)}, V(3)},
      {"ROW", {}, V(1)},
      {"COLUMN", {}, V(1)},
      {"ROWS", {Block}, V(3)},
      {"COLUMNS", {Block}, V(2)},
      {"ROWS", {"x"}, V(1)},
      {"COLUMNS", {Range({}, 0, 0)}, V(0)},
  });
  ExpectCases({{"ROW", {}, V(12)}, {"COLUMN", {}, V(5)}}, EvaluatedAt(5, 12));
}

}  // namespace
}  // namespace Tabrino
