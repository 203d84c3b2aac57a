// Spilled arrays through the evaluator: laying out, blocking, shrinking and
// growing, and the formulas that read spilled cells.
#include <gtest/gtest.h>

#include <string>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

class Spill : public ::testing::Test {
 protected:
  TWorkbook Book;
  TFormulaEvaluator Evaluator{Book};
  TWorksheet& Sheet = *Book.ActiveSheet();

  // Writes a cell ("=..." a formula, digits a number, "" nothing) and tells
  // the evaluator, as a host does.
  void Edit(const std::string& A1, const std::string& Text) {
    const TCellAddress A = TCellAddress::FromA1(A1);
    TCellValue Value = TCellValue::FromText(Text);
    if (Text.empty()) Value = TCellValue();
    else if (Text[0] == '=') Value = TCellValue::FromFormula(Text);
    else if (Text.find_first_not_of("0123456789") == std::string::npos) Value = TCellValue::FromNumber(std::stod(Text));
    Sheet.SetCell(A, TCell::WithValue(Value));
    Evaluator.NotifyCellChanged(0, A.Col, A.Row);
  }
  std::string Shown(const std::string& A1) {
    return Sheet.GetEffectiveValue(TCellAddress::FromA1(A1)).ToDisplayString();
  }
  // "1,2;3,4": a block of shown values.
  std::string Block(const std::string& Range) {
    const TCellRange R = TCellRange::FromA1(Range);
    std::string Text;
    for (int32_t Row = R.StartRow; Row <= R.EndRow; ++Row) {
      if (Row > R.StartRow) Text += ';';
      for (int32_t Col = R.StartCol; Col <= R.EndCol; ++Col) {
        if (Col > R.StartCol) Text += ',';
        Text += Sheet.GetEffectiveValue({Col, Row}).ToDisplayString();
      }
    }
    return Text;
  }
  bool Spills(const std::string& A1) {
    const TCellAddress A = TCellAddress::FromA1(A1);
    return Sheet.FSpills.FindSpill(A.Col, A.Row) != nullptr;
  }
};

}  // namespace

TEST_F(Spill, AnArrayResultFillsTheEmptyCellsBesideIt) {
  Edit("B2", "=SEQUENCE(2,3)");
  EXPECT_EQ(Block("A1:E4"), ",,,,;,1,2,3,;,4,5,6,;,,,,");
  EXPECT_EQ(Evaluator.GetRawCellValue(0, 4, 3), TCellValue::FromNumber(6));
  EXPECT_EQ(Sheet.GetDisplayText({3, 3}, &Book.FStyleSheet), "5");
  EXPECT_EQ(Sheet.CellCount(), 1u) << "spilled values are no cells";
  EXPECT_GE(Sheet.FUsedMaxCol, 4);
  EXPECT_GE(Sheet.FUsedMaxRow, 3);
  EXPECT_EQ(Evaluator.EvaluateCell(0, 2, 2), TCellValue::FromNumber(1));
}

TEST_F(Spill, RangesAndSingleValuesAtTheRoot) {
  Edit("A1", "1");
  Edit("B1", "2");
  Edit("A2", "3");
  Edit("D1", "=A1:B2");
  EXPECT_EQ(Block("D1:E2"), "1,2;3,");
  Edit("D4", "=SEQUENCE(1)");
  Edit("D5", "=SEQUENCE(3)+1");
  Edit("D7", "=@SEQUENCE(3)");
  EXPECT_EQ(Block("D4:D8"), "1;2;;1;");
  EXPECT_FALSE(Spills("D4") || Spills("D5") || Spills("D7"));
}

TEST_F(Spill, ReadersOfSpilledCellsFollowTheSpill) {
  Edit("H1", "3");
  Edit("D1", "=A3*10");
  Edit("D2", "=Sheet1!B1");
  Edit("A1", "=SEQUENCE(H1,2)");
  EXPECT_EQ(Shown("D1"), "50");
  EXPECT_EQ(Shown("D2"), "2");
  // Shrinking: the cells left behind read empty, and their readers learn it.
  Edit("H1", "2");
  EXPECT_EQ(Block("A1:B3"), "1,2;3,4;,");
  EXPECT_EQ(Shown("D1"), "0");
  // Growing again.
  Edit("H1", "4");
  EXPECT_EQ(Block("A1:B4"), "1,2;3,4;5,6;7,8");
  EXPECT_EQ(Shown("D1"), "50");
  // Readers on another sheet too.
  TWorksheet& Other = *Book.AddSheet("Other");
  Other.SetCell({1, 1}, TCell::WithValue(TCellValue::FromFormula("=Sheet1!A5+1")));
  Evaluator.NotifyCellChanged(1, 1, 1);
  EXPECT_EQ(Other.GetEffectiveValue({1, 1}), TCellValue::FromNumber(1));
  Edit("H1", "5");
  EXPECT_EQ(Other.GetEffectiveValue({1, 1}), TCellValue::FromNumber(10));
}

TEST_F(Spill, AReaderOfTheWholeBlockIsRightOnceTheRecalculationReachesIt) {
  Edit("H1", "3");
  Edit("D1", "=SUM(A1:A3)");
  Edit("A1", "=SEQUENCE(H1)");
  EXPECT_EQ(Shown("D1"), "6");
  Edit("H1", "4");
  EXPECT_EQ(Shown("D1"), "6") << "A4 was not in the range";
}

// A formula that reads two or more cells of a spill, and not its anchor, is
// listed once per cell when the spill wakes its readers; the repeats keep it
// out of the order, and it is marked #CIRC! though it is in no cycle. That is
// the engine's settled behaviour; a full recalculation repairs it.
TEST_F(Spill, AReaderOfSeveralChildrenAloneIsMarkedCircular) {
  Edit("D5", "=B1+C1");
  Edit("D6", "=C1*2");
  Edit("A1", "=SEQUENCE(1,3)");
  EXPECT_EQ(Shown("D5"), "#CIRC!");
  EXPECT_EQ(Shown("D6"), "6");
  Edit("D5", "=B1+C1");
  EXPECT_EQ(Shown("D5"), "5") << "evaluating the reader itself repairs it";
}

TEST_F(Spill, AnythingInTheWayBlocksTheSpill) {
  Edit("A3", "x");
  Edit("A1", "=SEQUENCE(3)");
  EXPECT_EQ(Block("A1:A3"), "#SPILL!;;x");
  EXPECT_FALSE(Spills("A1"));
  // Clearing the obstacle does not by itself wake the anchor.
  Edit("A3", "");
  EXPECT_EQ(Shown("A1"), "#SPILL!");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Block("A1:A3"), "1;2;3");
}

TEST_F(Spill, RichTextBlocksAndAStyleDoesNot) {
  TCell Styled = TCell::CreateEmpty();
  Styled.StyleIndex = 1;
  Sheet.SetCell({1, 2}, Styled);
  Edit("A1", "=SEQUENCE(2)");
  EXPECT_EQ(Block("A1:A2"), "1;2");
  TCell Rich = TCell::CreateEmpty();
  Rich.StyleIndex = 1;  // runs alone would not be stored
  Rich.RichText.push_back({"note", TCellFontInfo::Default()});
  Sheet.SetCell({2, 2}, Rich);
  Edit("B1", "=SEQUENCE(2)");
  EXPECT_EQ(Shown("B1"), "#SPILL!");
}

TEST_F(Spill, AnotherSpillBlocksButItsOwnOldBlockDoesNot) {
  Edit("C1", "=SEQUENCE(3)");
  Edit("B2", "=SEQUENCE(2,2)");
  EXPECT_EQ(Shown("B2"), "#SPILL!") << "C2 and C3 belong to C1's spill";
  Edit("A1", "=SEQUENCE(2,1,10)");
  Edit("A1", "=SEQUENCE(2,1,20)");
  EXPECT_EQ(Block("A1:A2"), "20;21") << "re-spilling over its own cells";
}

TEST_F(Spill, ATypedValueOverAChildStaysAndBlocksTheNextEvaluation) {
  Edit("A1", "=SEQUENCE(3)");
  Edit("A2", "7");
  EXPECT_EQ(Block("A1:A3"), "1;7;3");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Block("A1:A3"), "#SPILL!;7;");
}

TEST_F(Spill, ReplacingTheFormulaEndsItsSpill) {
  Edit("A1", "=SEQUENCE(3)");
  Edit("A1", "5");
  EXPECT_FALSE(Spills("A1"));
  EXPECT_EQ(Block("A1:A3"), "5;;");
  Edit("B1", "=SEQUENCE(3)");
  Sheet.ClearCell({2, 1});
  Evaluator.EvaluateFormulaCell(0, 2, 1);
  EXPECT_FALSE(Spills("B1"));
}

TEST_F(Spill, ABlockThatWouldLeaveTheSheetIsBlocked) {
  Sheet.SetCell({1, MaxRow - 1}, TCell::WithValue(TCellValue::FromFormula("=SEQUENCE(3)")));
  Evaluator.NotifyCellChanged(0, 1, MaxRow - 1);
  EXPECT_EQ(Sheet.GetEffectiveValue({1, MaxRow - 1}), TCellValue::FromError(ceSpill));
  Sheet.SetCell({MaxCol, 1}, TCell::WithValue(TCellValue::FromFormula("=SEQUENCE(1,2)")));
  Evaluator.NotifyCellChanged(0, MaxCol, 1);
  EXPECT_EQ(Sheet.GetEffectiveValue({MaxCol, 1}), TCellValue::FromError(ceSpill));
}

TEST_F(Spill, RecalculationLaysSpillsOutAgainAfterARowInsertion) {
  Edit("A1", "=SEQUENCE(2)");
  Sheet.FSpills.ShiftRows(1, 1);
  EXPECT_EQ(Block("A1:A2"), "1;");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Block("A1:A2"), "1;2");
}

TEST_F(Spill, AMillionSpilledValuesAreReadAndSummed) {
  Edit("ALM1", "=SUM(A1:ALL1000)");
  Edit("A1", "=SEQUENCE(1000,1000)");
  EXPECT_EQ(Shown("ALL1000"), "1000000");
  EXPECT_EQ(Shown("ALM1"), "500000500000");
  EXPECT_EQ(Sheet.CellCount(), 2u);
}
