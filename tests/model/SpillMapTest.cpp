#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "Tabrino.Spill.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

TSpillValues Numbers(int Count) {
  auto Values = std::make_shared<std::vector<TCellValue>>();
  for (int I = 1; I <= Count; ++I) Values->push_back(TCellValue::FromNumber(I));
  return Values;
}

double ValueAt(const TSpillMap& Map, int32_t Col, int32_t Row) {
  TCellValue Value;
  EXPECT_TRUE(Map.TryGetValue(Col, Row, Value)) << Col << "," << Row;
  return Value.Number;
}

std::vector<int32_t> Sorted(std::vector<int32_t> Lines) {
  std::sort(Lines.begin(), Lines.end());
  return Lines;
}

}  // namespace

TEST(SpillMap, ChildrenReadTheirValuesButTheAnchorDoesNot) {
  TSpillMap Map;
  Map.SetSpill(2, 3, /*RowCount=*/2, /*ColCount=*/3, Numbers(6));  // B3:D4
  EXPECT_EQ(ValueAt(Map, 3, 3), 2);
  EXPECT_EQ(ValueAt(Map, 4, 4), 6);
  TCellValue Value;
  EXPECT_FALSE(Map.TryGetValue(2, 3, Value)) << "the anchor's value is its cached result";
  EXPECT_FALSE(Map.TryGetValue(5, 3, Value));
  EXPECT_FALSE(Map.TryGetValue(2, 5, Value));
  EXPECT_TRUE(Map.IsSpillChild(2, 4));
  EXPECT_FALSE(Map.IsSpillChild(2, 3));

  int32_t Col = 0, Row = 0;
  EXPECT_TRUE(Map.FindAnchor(4, 4, Col, Row));
  EXPECT_EQ(Col * 10 + Row, 23);
  EXPECT_TRUE(Map.FindAnchor(2, 3, Col, Row)) << "an anchor reports itself";
  EXPECT_EQ(Col * 10 + Row, 23);
  EXPECT_FALSE(Map.FindAnchor(9, 9, Col, Row));
  EXPECT_EQ(Col * 10 + Row, 99) << "outputs default to the inputs";

  TSpillRange Range;
  ASSERT_TRUE(Map.TryGetSpill(2, 3, Range));
  EXPECT_EQ(Range.AsRange(), (TCellRange{2, 3, 4, 4}));
  EXPECT_EQ(Range.RowCount(), 2);
  EXPECT_EQ(Range.ColCount(), 3);
  EXPECT_FALSE(Map.TryGetSpill(3, 3, Range));
}

TEST(SpillMap, SingleValuesAndEmptySizesLeaveNoEntry) {
  TSpillMap Map;
  Map.SetSpill(1, 1, 1, 1, Numbers(1));
  Map.SetSpill(1, 5, 0, 3, Numbers(0));
  Map.SetSpill(1, 9, 3, -1, Numbers(0));
  EXPECT_TRUE(Map.IsEmpty());
  // A new spill at an anchor replaces the old one, even by nothing.
  Map.SetSpill(1, 1, 3, 1, Numbers(3));
  Map.SetSpill(1, 1, 1, 1, Numbers(1));
  EXPECT_TRUE(Map.IsEmpty());
  EXPECT_FALSE(Map.IsSpillChild(1, 2));
}

TEST(SpillMap, ValuesShortOfTheBlockReadEmpty) {
  TSpillMap Map;
  Map.SetSpill(1, 1, 2, 2, Numbers(3));
  TCellValue Value = TCellValue::FromNumber(7);
  EXPECT_TRUE(Map.TryGetValue(2, 2, Value));
  EXPECT_TRUE(Value.IsEmpty());
  Map.SetSpill(5, 5, 2, 1, nullptr);
  EXPECT_TRUE(Map.TryGetValue(5, 6, Value));
  EXPECT_TRUE(Value.IsEmpty());
}

TEST(SpillMap, ClearingAnAnchorFreesItsCells) {
  TSpillMap Map;
  Map.SetSpill(1, 1, 3, 1, Numbers(3));
  Map.SetSpill(2, 1, 1, 2, Numbers(2));
  Map.ClearAnchor(1, 1);
  EXPECT_FALSE(Map.IsSpillChild(1, 2));
  EXPECT_TRUE(Map.IsSpillChild(3, 1));
  Map.ClearAnchor(1, 1);  // nothing there any more
  Map.ClearAnchor(3, 1);  // a child is no anchor
  EXPECT_EQ(Map.Count(), 1u);
  Map.ClearAll();
  EXPECT_TRUE(Map.IsEmpty());
  EXPECT_FALSE(Map.IsSpillChild(3, 1));
}

TEST(SpillMap, TheNewestSpillAnswersForACellCoveredTwice) {
  TSpillMap Map;
  Map.SetSpill(1, 1, 3, 3, Numbers(9));  // A1:C3
  Map.SetSpill(2, 2, 2, 2, Numbers(4));  // B2:C3, laid over it
  EXPECT_EQ(ValueAt(Map, 3, 3), 4);
  EXPECT_EQ(ValueAt(Map, 2, 2), 5) << "B2 anchors the newer spill but is a child of the older";
  Map.ClearAnchor(2, 2);
  EXPECT_EQ(ValueAt(Map, 3, 3), 9);
}

TEST(SpillMap, CoverageOfARangeSkipsOneCell) {
  TSpillMap Map;
  Map.SetSpill(3, 3, 2, 2, Numbers(4));  // C3:D4
  EXPECT_TRUE(Map.CoversAnyOf({1, 1, 3, 3}, 1, 1));
  EXPECT_FALSE(Map.CoversAnyOf({1, 1, 3, 3}, 3, 3)) << "only the excepted cell is covered";
  EXPECT_TRUE(Map.CoversAnyOf({3, 3, 5, 5}, 3, 3));
  EXPECT_FALSE(Map.CoversAnyOf({5, 1, 9, 9}, 5, 1));
  EXPECT_TRUE(Map.CoversAnyOf({1, 4, MaxCol, 4}, 1, 4)) << "a wide range is answered from the spills";
}

TEST(SpillMap, NavigationListsChildrenThenAnchors) {
  TSpillMap Map;
  Map.SetSpill(2, 2, 3, 2, Numbers(6));  // B2:C4
  Map.SetSpill(2, 8, 2, 1, Numbers(2));  // B8:B9
  std::vector<int32_t> Rows;
  Map.CollectNavRowsInColumn(2, Rows);
  EXPECT_EQ(Sorted(Rows), (std::vector<int32_t>{2, 3, 4, 8, 9}));
  Rows.clear();
  Map.CollectNavRowsInColumn(3, Rows);
  EXPECT_EQ(Sorted(Rows), (std::vector<int32_t>{2, 3, 4}));
  std::vector<int32_t> Cols;
  Map.CollectNavColsInRow(2, Cols);
  EXPECT_EQ(Cols, (std::vector<int32_t>{3, 2})) << "the child first, then the anchor";
}

TEST(SpillMap, StructuralEditsDropEverySpill) {
  TSpillMap Map;
  auto Filled = [&] {
    Map.SetSpill(1, 1, 2, 2, Numbers(4));
    return &Map;
  };
  Filled()->ShiftRows(5, 0);
  EXPECT_FALSE(Map.IsEmpty()) << "a shift by nothing keeps them";
  Filled()->ShiftRows(50, 1);
  EXPECT_TRUE(Map.IsEmpty()) << "even a shift far below them";
  Filled()->ShiftColumns(1, -1);
  EXPECT_TRUE(Map.IsEmpty());
  Filled()->MoveRows(3, 1, 3);
  EXPECT_FALSE(Map.IsEmpty());
  Filled()->MoveColumns(3, 2, 1);
  EXPECT_TRUE(Map.IsEmpty());
}

TEST(SpillMap, AMillionValuesCostNoEntryPerCell) {
  TSpillMap Map;
  auto Values = std::make_shared<std::vector<TCellValue>>(1000 * 1000, TCellValue::FromNumber(1));
  Map.SetSpill(1, 1, 1000, 1000, Values);
  EXPECT_EQ(Map.Count(), 1u);
  EXPECT_TRUE(Map.IsSpillChild(1000, 1000));
  EXPECT_FALSE(Map.IsSpillChild(1001, 1000));
  EXPECT_EQ(Values.use_count(), 2) << "the values are shared, not copied";
  Map.ClearAnchor(1, 1);
  EXPECT_EQ(Values.use_count(), 1);
}

TEST(SpillMap, WorksheetShowsSpilledValuesInEmptyCells) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.ActiveSheet();
  auto Values = std::make_shared<std::vector<TCellValue>>(
      std::vector<TCellValue>{TCellValue::FromNumber(1), TCellValue::FromNumber(0.5), TCellValue::FromText("x"),
                              TCellValue::FromNumber(0)});
  Sheet.FSpills.SetSpill(1, 1, 2, 2, Values);
  TCell Styled = TCell::CreateEmpty();
  Styled.HasFormatOverride = true;
  Styled.FormatOverride.NumberFormat = "0.00";
  Sheet.SetCell({2, 1}, Styled);
  Sheet.SetCell({1, 2}, TCell::WithValue(TCellValue::FromText("typed")));

  EXPECT_EQ(Sheet.GetEffectiveValue({2, 1}), TCellValue::FromNumber(0.5)) << "a style-only cell is empty";
  EXPECT_EQ(Sheet.GetDisplayText({2, 1}, &Book.FStyleSheet), "0.50") << "formatted by the cell it shows in";
  EXPECT_EQ(Sheet.GetEffectiveValue({1, 2}), TCellValue::FromText("typed")) << "a value hides the spill";
  EXPECT_EQ(Sheet.GetDisplayText({2, 2}, &Book.FStyleSheet), "0");
  Sheet.FShowZeros = false;
  EXPECT_EQ(Sheet.GetDisplayText({2, 2}, &Book.FStyleSheet), "");
  EXPECT_TRUE(Sheet.GetEffectiveValue({1, 1}).IsEmpty()) << "the anchor shows its own cell";
}

TEST(SpillMap, ABlockLeavingTheSheetIsNotStored) {
  TSpillMap Map;
  Map.SetSpill(1, MaxRow - 1, 3, 1, Numbers(3));
  Map.SetSpill(MaxCol, 1, 1, 2, Numbers(2));
  Map.SetSpill(0, 1, 2, 2, Numbers(4));
  EXPECT_TRUE(Map.IsEmpty());
}
