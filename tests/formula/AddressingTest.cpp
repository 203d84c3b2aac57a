#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.ReferenceArgs.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Address, StylesAndAbsoluteModes) {
  ExpectCases({
      {"ADDRESS", {1}, E(ceValue)},
      {"ADDRESS", {1, 1, 1, true, "s", 1}, E(ceValue)},
      {"ADDRESS", {2, 3}, V("$C$2")},
      {"ADDRESS", {2, 3, 2}, V("C$2")},
      {"ADDRESS", {2, 3, 3}, V("$C2")},
      {"ADDRESS", {2, 3, 4}, V("C2")},
      {"ADDRESS", {2, 3, 1, false}, V("R2C3")},
      {"ADDRESS", {2, 3, 2, false}, V("R2C[3]")},
      {"ADDRESS", {2, 3, 3, false}, V("R[2]C3")},
      {"ADDRESS", {2, 3, 4, false}, V("R[2]C[3]")},
      {"ADDRESS", {2.9, 28.9}, V("$AB$2")},
      {"ADDRESS", {1048576, 16384}, V("$XFD$1048576")},
      {"ADDRESS", {2, 3, Blank()}, V("$C$2")},
      {"ADDRESS", {2, 3, 1, Blank()}, V("R2C3")},  // an empty a1 argument is FALSE
  });
}

TEST(Address, DomainEdges) {
  ExpectCases({
      {"ADDRESS", {0, 1}, E(ceValue)},
      {"ADDRESS", {1, 0}, E(ceValue)},
      {"ADDRESS", {1048577, 1}, E(ceValue)},
      {"ADDRESS", {1, 16385}, E(ceValue)},
      {"ADDRESS", {1, 1, 5}, E(ceValue)},
      {"ADDRESS", {1, 1, 0}, E(ceValue)},
      {"ADDRESS", {"x", 1}, E(ceValue)},
      {"ADDRESS", {1e300, 1}, E(ceValue)},
      {"ADDRESS", {1, 1, 1, true, E(ceNA)}, E(ceNA)},
  });
}

TEST(Address, SheetTextIsQuotedWhereAFormulaNeedsIt) {
  ExpectCases({
      {"ADDRESS", {1, 1, 1, true, "Data"}, V("Data!$A$1")},
      {"ADDRESS", {1, 1, 1, true, "My Sheet"}, V("'My Sheet'!$A$1")},
      {"ADDRESS", {1, 1, 1, true, "It's"}, V("'It''s'!$A$1")},
      {"ADDRESS", {1, 1, 1, false, "2024"}, V("'2024'!R1C1")},
  });
  EXPECT_EQ(SheetPrefix("Sheet1"), "Sheet1!");
  EXPECT_EQ(SheetPrefix("AB12"), "'AB12'!");
  EXPECT_EQ(SheetPrefix("R1C1"), "'R1C1'!");
  EXPECT_EQ(SheetPrefix("Résumé_2.x"), "Résumé_2.x!");
  EXPECT_EQ(SheetPrefix("a-b"), "'a-b'!");
}

TEST(Reference, AreasAndIsRefNeedAnOrigin) {
  TFormulaArg Cells = Referenced(Column({V(1), V(2)}), 1, 1);
  ExpectCases({
      {"AREAS", {Cells}, V(1)},
      {"AREAS", {Column({V(1), V(2)})}, E(ceValue)},
      {"AREAS", {1}, E(ceValue)},
      {"ISREF", {Cells}, V(true)},
      {"ISREF", {Column({V(1)})}, V(false)},
      {"ISREF", {E(ceRef)}, V(false)},
      {"ISFORMULA", {1}, E(ceValue)},
      {"FORMULATEXT", {1}, E(ceValue)},
  });
}

TEST(TrimRange, DropsBlankOuterRowsAndColumns) {
  // 4 x 3, values only at (1,1) and (2,1):
  //   . . .
  //   . x .
  //   . y .
  //   . . .
  std::vector<TCellValue> Cells(12);
  Cells[4] = V("x");
  Cells[7] = V("y");
  TFormulaArg Block = Referenced(Range(Cells, 4, 3), 2, 5);
  struct {
    double Rows, Cols;
    int32_t RowCount, ColCount, OriginCol, OriginRow;
  } Cases[] = {
      {3, 3, 2, 1, 3, 6}, {0, 0, 4, 3, 2, 5}, {1, 1, 3, 2, 3, 6}, {2, 2, 3, 2, 2, 5}, {1, 0, 3, 3, 2, 6},
  };
  for (const auto& Case : Cases) {
    TFormulaArg Trimmed = CallArray("TRIMRANGE", {Block, Case.Rows, Case.Cols});
    EXPECT_EQ(Trimmed.RowCount, Case.RowCount) << Case.Rows << "," << Case.Cols;
    EXPECT_EQ(Trimmed.ColCount, Case.ColCount) << Case.Rows << "," << Case.Cols;
    EXPECT_TRUE(Trimmed.HasOrigin);
    EXPECT_EQ(Trimmed.OriginCol, Case.OriginCol);
    EXPECT_EQ(Trimmed.OriginRow, Case.OriginRow);
  }
  TFormulaArg Both = CallArray("TRIMRANGE", {Block});
  EXPECT_EQ(Both.CellAt(0, 0), V("x"));
  EXPECT_EQ(Both.CellAt(1, 0), V("y"));
}

TEST(TrimRange, EdgesAndBadOptions) {
  TFormulaArg Empty = CallArray("TRIMRANGE", {Range(std::vector<TCellValue>(6), 2, 3)});
  EXPECT_EQ(Empty.RowCount, 1);
  EXPECT_EQ(Empty.ColCount, 1);
  EXPECT_EQ(Call("TRIMRANGE", {5}), V(5));
  EXPECT_EQ(Call("TRIMRANGE", {Column({V(1)}), 4}), E(ceValue));
  EXPECT_EQ(Call("TRIMRANGE", {Column({V(1)}), 1, -1}), E(ceValue));
  EXPECT_EQ(Call("TRIMRANGE", {Column({V(1)}), "x"}), E(ceValue));
}

// Through formulas on a workbook: what only real references can tell.
class ReferenceEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    TWorksheet* First = FBook.GetSheet(0);
    First->SetCell(TCellAddress::FromA1("A1"), TCell::WithValue(TCellValue::FromFormula("=1+2")));
    First->SetCell(TCellAddress::FromA1("A2"), TCell::WithValue(V(5)));
    TWorksheet* Second = FBook.AddSheet("Data Sheet");
    Second->SetCell(TCellAddress::FromA1("B2"), TCell::WithValue(TCellValue::FromFormula("=SUM(1,2)")));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(ReferenceEvaluated, FormulaTextAndIsFormula) {
  EXPECT_EQ(Eval("=FORMULATEXT(A1)"), V("=1+2"));
  EXPECT_EQ(Eval("=FORMULATEXT(A1:A2)"), V("=1+2"));
  EXPECT_EQ(Eval("=FORMULATEXT(A2)"), E(ceNA));
  EXPECT_EQ(Eval("=FORMULATEXT(Z99)"), E(ceNA));
  EXPECT_EQ(Eval("=FORMULATEXT('Data Sheet'!B2)"), V("=SUM(1,2)"));
  EXPECT_EQ(Eval("=ISFORMULA(A1)"), V(true));
  EXPECT_EQ(Eval("=ISFORMULA(A2)"), V(false));
  EXPECT_EQ(Eval("=ISFORMULA('Data Sheet'!B2)"), V(true));
  EXPECT_EQ(Eval("=ISREF(A2)"), V(true));
  EXPECT_EQ(Eval("=ISREF(A2+0)"), V(false));
}

TEST_F(ReferenceEvaluated, SheetNumbersAndCounts) {
  EXPECT_EQ(Eval("=SHEET()"), V(1));
  EXPECT_EQ(Eval("=SHEET('Data Sheet'!B2)"), V(2));
  EXPECT_EQ(Eval("=SHEET(\"data sheet\")"), V(2));
  EXPECT_EQ(Eval("=SHEET(\"nope\")"), E(ceNA));
  EXPECT_EQ(Eval("=SHEETS()"), V(2));
  EXPECT_EQ(Eval("=SHEETS(A1:B3)"), V(1));
  EXPECT_EQ(Eval("=SHEETS(5)"), E(ceNA));
  EXPECT_EQ(Eval("=AREAS(A1:B3)"), V(1));
}

TEST_F(ReferenceEvaluated, TrimRangeFeedsOtherFunctions) {
  EXPECT_EQ(Eval("=ROWS(TRIMRANGE(A1:A50))"), V(2));
  EXPECT_EQ(Eval("=SUM(TRIMRANGE(A1:C9))"), V(8));
}

}  // namespace
}  // namespace Tabrino
