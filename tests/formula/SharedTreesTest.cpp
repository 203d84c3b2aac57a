// Formulas of one shape share a parsed tree, and large ranges read during a
// calculation are kept: both must be invisible in every result.
#include <gtest/gtest.h>

#include <string>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.TreeCache.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

TEST(TreeShapes, KeysMatchOnlyWhenRelativeOffsetsAndAbsolutesMatch) {
  struct TCase {
    const char* A;
    int32_t ACol, ARow;
    const char* B;
    int32_t BCol, BRow;
    bool Shared;
  };
  const TCase Cases[] = {
      {"=A1*1.1", 2, 1, "=A2*1.1", 2, 2, true},
      {"=A1*1.1", 2, 1, "=A1*1.1", 2, 2, false},   // same text, other offset
      {"=$A$1+A1", 2, 1, "=$A$1+A5", 2, 5, true},  // absolute part stays
      {"=$A$1+A1", 2, 1, "=$A$2+A5", 2, 5, false},
      {"=A$1+B1", 3, 1, "=A$1+B7", 3, 7, true},  // mixed: row fixed, column relative
      {"=A$1+B1", 3, 1, "=B$1+C1", 4, 1, true},
      {"=SUM(A:A)", 2, 1, "=SUM(A:A)", 2, 9, true},  // whole column: rows never move
      {"=SUM(A:A)", 2, 1, "=SUM(B:B)", 3, 9, true},
      {"=SUM(1:1)", 2, 5, "=SUM(1:1)", 9, 5, true},
      {"=Sheet2!A1", 2, 1, "=Sheet3!A1", 2, 1, false},
      {"=\"a\"&A1", 2, 1, "=\"b\"&A2", 2, 2, false},   // literals are part of the shape
      {"=sum(A1)", 2, 1, "=SUM(A2)", 2, 2, true},      // names are upper-cased tokens
      {"=LOG10(A1)", 2, 1, "=LOG10(A2)", 2, 2, true},  // a cell's shape before "(" is a function
      {"=$A1+SUM($B$1:B1)*2", 3, 1, "=$A2+SUM($B$1:B2)*2", 3, 2, true},
      {"=A1:B2", 3, 1, "=A1 : B2", 3, 1, true},   // blanks around ":" are no part of a range
      {"=XFD1+1", 1, 1, "=XFE2+1", 1, 2, false},  // past the last column: a name, not a cell
      {"=A1048576", 2, 1, "=A1048577", 2, 2, false},
      {"=1A1", 2, 1, "=1A2", 2, 2, true},  // a number, then a cell
      {"=A1&\"x\"", 2, 1, "=A2&\"x\"", 2, 2, true},
  };
  for (const TCase& C : Cases) {
    const bool Same =
        TFormulaTreeCache::ShapeKey(C.A, C.ACol, C.ARow) == TFormulaTreeCache::ShapeKey(C.B, C.BCol, C.BRow);
    EXPECT_EQ(Same, C.Shared) << C.A << " at " << C.ACol << "," << C.ARow << " vs " << C.B;
  }
}

class SharedTrees : public ::testing::Test {
 protected:
  TWorkbook Book;
  TWorksheet& Sheet = *Book.ActiveSheet();

  void Set(const char* A1, const TCellValue& Value) {
    Sheet.SetCell(TCellAddress::FromA1(A1), TCell::WithValue(Value));
  }
  void Formula(const char* A1, const std::string& Text) { Set(A1, TCellValue::FromFormula(Text)); }
  std::string Shown(const char* A1) { return Sheet.GetEffectiveValue(TCellAddress::FromA1(A1)).ToDisplayString(); }
};

TEST_F(SharedTrees, FilledDownFormulasReadTheirOwnRows) {
  for (int Row = 1; Row <= 5; ++Row) {
    const std::string R = std::to_string(Row);
    Set(("A" + R).c_str(), TCellValue::FromNumber(Row));
    Formula(("B" + R).c_str(), "=A" + R + "*10+$A$1+A$2");
    Formula(("C" + R).c_str(), "=SUM(A1:A" + R + ")");
    Formula(("D" + R).c_str(), "=ROW(A" + R + ")+COLUMN(B" + R + ")");
  }
  TFormulaEvaluator Evaluator(Book);
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("B1"), "13");
  EXPECT_EQ(Shown("B4"), "43");
  EXPECT_EQ(Shown("C5"), "15");
  EXPECT_EQ(Shown("D3"), "5");
  // An edit reaches the readers through dependencies found on shared trees.
  Set("A3", TCellValue::FromNumber(100));
  Evaluator.NotifyCellChanged(0, 1, 3);
  EXPECT_EQ(Shown("B3"), "1003");
  EXPECT_EQ(Shown("C5"), "112");
}

TEST_F(SharedTrees, LambdaBodiesReadRelativeToTheirOwnFormula) {
  // Every row's lambda adds its own row's A: the body is copied from a tree
  // shared by all three rows and must still be read at its own row.
  for (int Row = 1; Row <= 3; ++Row) {
    const std::string R = std::to_string(Row);
    Set(("A" + R).c_str(), TCellValue::FromNumber(Row * 100));
    Formula(("B" + R).c_str(), "=REDUCE(SEQUENCE(2),LAMBDA(a,v,a+v+A" + R + "),0)");
  }
  TFormulaEvaluator Evaluator(Book);
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("B1"), "203");
  EXPECT_EQ(Shown("B3"), "603");
}

TEST_F(SharedTrees, KeptRangesNeverShowStaleValues) {
  for (int Row = 1; Row <= 100; ++Row) {
    const std::string R = std::to_string(Row);
    Set(("A" + R).c_str(), TCellValue::FromText("K" + R));
    Set(("B" + R).c_str(), TCellValue::FromNumber(Row));
  }
  Formula("D1", "=VLOOKUP(\"K50\",$A$1:$B$100,2,FALSE)");
  Formula("D2", "=SUM($B$1:$B$100)");
  TFormulaEvaluator Evaluator(Book);
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("D1"), "50");
  // An edit between calculations, and a formula inside the range whose value
  // changes during the next one.
  Set("B50", TCellValue::FromNumber(-1));
  Set("F5", TCellValue::FromNumber(7));
  Formula("B100", "=F5*2");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("D1"), "-1");
  EXPECT_EQ(Shown("D2"), std::to_string(5050 - 50 - 1 - 100 + 14));
  EXPECT_EQ(Evaluator.Evaluate("=SUM(B1:B100)", 0).ToDisplayString(), Shown("D2"));
  // A spill landing in empty cells of a range that was just read.
  Formula("F1", "=COUNT(G1:G100)");
  Formula("E1", "=SEQUENCE(1,1)");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("F1"), "0");
  Formula("G1", "=SEQUENCE(80)");
  Evaluator.NotifyCellChanged(0, 7, 1);
  EXPECT_EQ(Shown("F1"), "80");
}

}  // namespace
}  // namespace Tabrino
