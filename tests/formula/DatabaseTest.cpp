#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Tree, Height, Age, Yield, Profit.
TFormulaArg Orchard() {
  return Range({V("Tree"),   V("Height"), V("Age"), V("Yield"), V("Profit"),  //
                V("Apple"),  V(18),       V(20),    V(14),      V(105),       //
                V("Pear"),   V(12),       V(12),    V(10),      V(96),        //
                V("Cherry"), V(13),       V(14),    V(9),       V(105),       //
                V("Apple"),  V(14),       V(15),    V(10),      V(75),        //
                V("Pear"),   V(9),        V(8),     V(8),       V(76.8),      //
                V("Apple"),  V(8),        V(9),     V(6),       V(45)},
               7, 5);
}

// Criteria with a header row; rows are given after it.
TFormulaArg Criteria(std::vector<TCellValue> Cells, int32_t Cols) {
  int32_t Rows = static_cast<int32_t>(Cells.size()) / Cols;
  return Range(std::move(Cells), Rows, Cols);
}

const TFormulaArg TallApples = Criteria({V("tree"), V("Height"), V("Apple"), V(">10")}, 2);
const TFormulaArg ApplesOrPears = Criteria({V("Tree"), V("Apple"), V("Pear")}, 1);

TEST(Database, AggregatesOverTheMatchingRecords) {
  const TFormulaArg Db = Orchard();
  ExpectCases({
      {"DSUM", {Db, "Profit", TallApples}, V(180)},
      {"DSUM", {Db, 5, TallApples}, V(180)},
      {"DAVERAGE", {Db, "Yield", TallApples}, V(12)},
      {"DCOUNT", {Db, "Age", ApplesOrPears}, V(5)},
      {"DCOUNT", {Db, "Tree", ApplesOrPears}, V(0)},
      {"DCOUNT", {Db, Blank(), TallApples}, V(2)},
      {"DCOUNTA", {Db, "Tree", ApplesOrPears}, V(5)},
      {"DCOUNTA", {Db, Blank(), ApplesOrPears}, V(5)},
      {"DMAX", {Db, "Profit", TallApples}, V(105)},
      {"DMIN", {Db, "Profit", TallApples}, V(75)},
      {"DPRODUCT", {Db, "Yield", TallApples}, V(140)},
  });
  EXPECT_TRUE(IsNear(Call("DSUM", {Db, "PROFIT", ApplesOrPears}), 397.8));
  // Yields 14, 10, 10, 8, 6: squared deviations from 9.6 add up to 35.2.
  EXPECT_TRUE(IsNear(Call("DVAR", {Db, "Yield", ApplesOrPears}), 8.8));
  EXPECT_TRUE(IsNear(Call("DVARP", {Db, "Yield", ApplesOrPears}), 7.04));
  EXPECT_TRUE(IsNear(Call("DSTDEV", {Db, "Yield", ApplesOrPears}), std::sqrt(8.8)));
  EXPECT_TRUE(IsNear(Call("DSTDEVP", {Db, "Yield", ApplesOrPears}), std::sqrt(7.04)));
}

TEST(Database, CriteriaRowsOrColumnsAnd) {
  const TFormulaArg Db = Orchard();
  ExpectCases({
      // One field twice in a row: both must hold.
      {"DCOUNT", {Db, "Age", Criteria({V("Height"), V("Height"), V(">10"), V("<16")}, 2)}, V(3)},
      // A blank criteria row lets every record through.
      {"DCOUNT", {Db, "Age", Criteria({V("Tree"), V("Apple"), Blank()}, 1)}, V(6)},
      {"DCOUNT", {Db, "Age", Criteria({V("Tree"), V("<>apple")}, 1)}, V(3)},
      {"DCOUNT", {Db, "Age", Criteria({V("Profit"), V(105)}, 1)}, V(2)},
      // No wildcards: the core matcher compares whole texts.
      {"DCOUNT", {Db, "Age", Criteria({V("Tree"), V("App*")}, 1)}, V(0)},
      // A criterion under a header that names no field lets nothing pass.
      {"DCOUNT", {Db, "Age", Criteria({V("Colour"), V("red")}, 1)}, V(0)},
      {"DCOUNT", {Db, "Age", Criteria({V("Colour"), Blank()}, 1)}, V(6)},
  });
}

TEST(Database, DGetWantsExactlyOneRecord) {
  const TFormulaArg Db = Orchard();
  ExpectCases({
      {"DGET", {Db, "Profit", Criteria({V("Tree"), V("Cherry")}, 1)}, V(105)},
      {"DGET", {Db, "Tree", Criteria({V("Yield"), V(">12")}, 1)}, V("Apple")},
      {"DGET", {Db, "Profit", TallApples}, E(ceNum)},
      {"DGET", {Db, "Profit", Criteria({V("Tree"), V("Plum")}, 1)}, E(ceValue)},
  });
}

TEST(Database, BadArgumentsAndEmptySelections) {
  const TFormulaArg Db = Orchard();
  const TFormulaArg Nothing = Criteria({V("Tree"), V("Plum")}, 1);
  ExpectCases({
      {"DSUM", {Db, "Profit"}, E(ceValue)},
      {"DSUM", {Db, "Weight", TallApples}, E(ceValue)},
      {"DSUM", {Db, 0, TallApples}, E(ceValue)},
      {"DSUM", {Db, 6, TallApples}, E(ceValue)},
      {"DSUM", {Db, true, TallApples}, E(ceValue)},
      {"DSUM", {Db, Blank(), TallApples}, E(ceValue)},
      {"DSUM", {Db, "Profit", Criteria({V("Tree")}, 1)}, E(ceValue)},
      {"DSUM", {5, "Profit", TallApples}, E(ceValue)},
      {"DSUM", {Db, "Profit", Nothing}, V(0)},
      {"DMAX", {Db, "Profit", Nothing}, V(0)},
      {"DPRODUCT", {Db, "Profit", Nothing}, V(0)},
      {"DAVERAGE", {Db, "Profit", Nothing}, E(ceDiv0)},
      {"DVARP", {Db, "Profit", Nothing}, E(ceDiv0)},
      {"DSTDEV", {Db, "Profit", Criteria({V("Tree"), V("Cherry")}, 1)}, E(ceDiv0)},
  });
}

}  // namespace
}  // namespace Tabrino
