#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.SheetTable.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

// A workbook with cells typed as a user would: "=..." formulas, numbers, text.
class EvaluatorTest : public ::testing::Test {
 protected:
  TWorkbook Book;
  TFormulaEvaluator Evaluator{Book};

  void Set(const std::string& A1, const std::string& Text, int32_t Sheet = 0) {
    TCellValue V;
    double N;
    if (!Text.empty() && Text[0] == '=') V = TCellValue::FromFormula(Text);
    else if (!Text.empty() && std::sscanf(Text.c_str(), "%lf", &N) == 1 && std::to_string(N).size() > 0 &&
             Text.find_first_not_of("0123456789.-") == std::string::npos)
      V = TCellValue::FromNumber(N);
    else V = TCellValue::FromText(Text);
    Book.GetSheet(Sheet)->SetCell(TCellAddress::FromA1(A1), TCell::WithValue(V));
  }
  // Puts the formula in Z100 of the first sheet and returns its display text.
  std::string Eval(const std::string& Formula, const std::string& At = "Z100") {
    TCellAddress A = TCellAddress::FromA1(At);
    Book.GetSheet(0)->SetCell(A, TCell::WithValue(TCellValue::FromFormula(Formula)));
    return Evaluator.EvaluateCell(0, A.Col, A.Row).ToDisplayString();
  }
};

struct TFormulaCase {
  const char* Formula;
  const char* Expected;
};


}  // namespace

class EvaluatorCases : public EvaluatorTest {
 protected:
  void Check(std::initializer_list<TFormulaCase> Cases, const std::string& At = "Z100") {
    for (const TFormulaCase& C : Cases) EXPECT_EQ(Eval(C.Formula, At), C.Expected) << C.Formula;
  }
};

TEST_F(EvaluatorCases, OperatorsAndCoercion) {
  Set("A1", "5");
  Set("A2", "text");
  Set("A3", "7");
  Check({
      {"=1+2*3", "7"},         {"=-2^2", "4"},          {"=2^3^2", "64"},       {"=2^-1", "0.5"},
      {"=10/4", "2.5"},        {"=1/0", "#DIV/0!"},     {"=\"3\"+4", "7"},      {"=TRUE+1", "2"},
      {"=A9", ""},             {"=A9+0", "0"},          {"=A2+1", "#VALUE!"},   {"=\"a\"&1&TRUE", "a1TRUE"},
      {"=+A2", "text"},        {"=-A2", "#VALUE!"},     {"=-\"2\"", "-2"},      {"=1/0+A2", "#DIV/0!"},
      {"=A2+1/0", "#DIV/0!"},  {"={1,2,3}", ""},        {"=", "#VALUE!"},       {"=50%", "#VALUE!"},
      {"=#N/A", "#VALUE!"},    {"=(1+2", "#VALUE!"},    {"=IF(A1,,2)", "#VALUE!"},
  });
}

TEST_F(EvaluatorCases, Comparison) {
  Set("A1", "5");
  Check({
      {"=\"a\"=\"A\"", "TRUE"}, {"=A9=0", "TRUE"},     {"=\"5\"=5", "TRUE"},   {"=TRUE=1", "TRUE"},
      {"=\"b\">\"A\"", "TRUE"}, {"=5<\"x\"", "TRUE"},  {"=A1<>5", "FALSE"},    {"=1/0=1", "#DIV/0!"},
  });
}

TEST_F(EvaluatorCases, ImplicitIntersection) {
  for (int Row = 1; Row <= 3; ++Row) Set("A" + std::to_string(Row), std::to_string(Row * 10));
  EXPECT_EQ(Eval("=A1:A3+0", "B2"), "20");
  EXPECT_EQ(Eval("=A1:A3+0", "B7"), "#VALUE!");
  EXPECT_EQ(Eval("=@A1:A3", "C3"), "30");
  EXPECT_EQ(Eval("=SUM(A1:A3>15)", "D1"), "0");  // booleans are not summed, but the array stays
  EXPECT_EQ(Eval("=SUMPRODUCT(--(A1:A3>15))", "D2"), "2");
  EXPECT_EQ(Eval("=SUM(A1:A3*2)", "B2"), "40");  // no element-wise arithmetic: intersected
}

TEST_F(EvaluatorCases, SpecialFormsRunOnlyWhatTheyNeed) {
  Set("A1", "0");
  Set("A2", "=1/0");
  Check({
      {"=IF(TRUE,1,1/0)", "1"},       {"=IF(1/0,1,2)", "#DIV/0!"},  {"=IF(FALSE,1)", "FALSE"},
      {"=IF(\"0\",\"yes\",\"no\")", "yes"}, {"=IF(A1,\"yes\",\"no\")", "no"},
      {"=IFERROR(A2,\"caught\")", "caught"}, {"=IFNA(A2,\"x\")", "#DIV/0!"}, {"=IFNA(NA(),\"x\")", "x"},
      {"=CHOOSE(2,\"a\",\"b\")", "b"}, {"=CHOOSE(1/0,1,2)", "#VALUE!"}, {"=CHOOSE(3,1,2)", "#VALUE!"},
      {"=ROW(C7)", "7"},              {"=COLUMN(C7:E9)", "3"},      {"=ROW(1+1)", "1"},
  });
  EXPECT_EQ(Eval("=ROW()", "D12"), "12");
  EXPECT_EQ(Eval("=COLUMN()", "D12"), "4");
}

TEST_F(EvaluatorCases, RowAfterAForcedEvaluationNamesTheOtherCell) {
  // The anchor is not restored after a nested first evaluation.
  Set("B5", "=1");
  EXPECT_EQ(Eval("=B5+ROW()", "C9"), "6");
}

TEST_F(EvaluatorCases, NamesAndFunctions) {
  Book.SetNamedFormula("Rate", "=0.25");
  Book.SetNamedFormula("PI", "=3");
  Book.SetNamedFormula("Loop", "=Loop+1");
  Check({
      {"=Rate*4", "1"},     {"=PI", "3"},          {"=PI()", "3"},     {"=Loop", "#CIRC!"},
      {"=NOSUCH(1)", "#NAME?"}, {"=NOSUCH", "#NAME?"}, {"=_xlfn.SUM(1,2)", "3"}, {"=sum(1,2)", "3"},
  });
}

TEST_F(EvaluatorCases, SheetsAndReferences) {
  Book.AddSheet("Data Sheet");
  Book.AddSheet("It's");
  Set("B2", "4", 1);
  Set("A1", "9", 2);
  Check({
      {"='Data Sheet'!B2*2", "8"},  {"=SUM('Data Sheet'!A1:B2)", "4"}, {"='It''s'!A1", "9"},
      {"=Nowhere!A1", "#REF!"},     {"=SUM(Nowhere!A1:B2)", "0"},  // SUM skips errors    {"=[1]'It''s'!A1", "#VALUE!"},
  });
}

TEST_F(EvaluatorCases, IndirectAndOffset) {
  Book.AddSheet("Other");
  Set("A1", "1");
  Set("A2", "2");
  Set("B1", "3");
  Set("C3", "=5");
  Set("A1", "42", 1);
  Check({
      {"=INDIRECT(\"A2\")", "2"},          {"=INDIRECT(\"$B$1\")", "3"},      {"=INDIRECT(\"Other!A1\")", "42"},
      {"=INDIRECT(\"'Other'!A1\")", "42"}, {"=INDIRECT(\"nope\")", "#REF!"},   {"=INDIRECT(\"\")", "#REF!"},
      {"=INDIRECT(\"Missing!A1\")", "#REF!"}, {"=INDIRECT(1/0)", "#DIV/0!"},
      {"=OFFSET(A1,1,0)", "2"},            {"=OFFSET(A1,0,1)", "3"},          {"=SUM(OFFSET(A1,0,0,2,2))", "6"},
      {"=OFFSET(A1,-1,0)", "#REF!"},       {"=OFFSET(A1,0,0,0,1)", "#REF!"},  {"=OFFSET(1,0,0)", "#VALUE!"},
      {"=OFFSET(Other!A1,0,0)", "1"},      {"=OFFSET(A1,2,2)", "5"},
  });
}

TEST_F(EvaluatorCases, TableReferences) {
  TWorksheet* Sheet = Book.GetSheet(0);
  Set("B2", "Item");
  Set("C2", "Price");
  Set("B3", "a");
  Set("C3", "10");
  Set("B4", "b");
  Set("C4", "20");
  Set("D2", "Double");
  TSheetTable Table("Sales", TCellRange::FromA1("B2:D4"));
  Table.SetColumnNames({"Item", "Price", "Double"});
  Sheet->FTables.Add(std::move(Table));
  Check({
      {"=SUM(Sales[Price])", "30"}, {"=SUM(Sales[[price]])", "30"}, {"=COUNTA(Sales)", "4"},
      {"=Sales[Nope]", "#REF!"},     {"=Missing[Price]", "#REF!"},
  });
  EXPECT_EQ(Eval("=[Price]*2", "D4"), "40");  // bare column inside the table's rows, by row
}

TEST_F(EvaluatorCases, CyclesGiveCirc) {
  Set("A1", "=B1");
  Set("B1", "=A1");
  EXPECT_EQ(Evaluator.EvaluateCell(0, 1, 1).ToDisplayString(), "#CIRC!");
  Set("C1", "=C1+1");
  EXPECT_EQ(Evaluator.EvaluateCell(0, 3, 1).ToDisplayString(), "#CIRC!");
}

TEST_F(EvaluatorCases, EvaluateCellOnPlainAndMissingCells) {
  Set("A1", "hello");
  EXPECT_EQ(Evaluator.EvaluateCell(0, 1, 1).ToDisplayString(), "hello");
  EXPECT_TRUE(Evaluator.EvaluateCell(0, 5, 5).IsEmpty());
  EXPECT_EQ(Evaluator.EvaluateCell(7, 1, 1).ErrorCode, ceRef);
  EXPECT_EQ(Evaluator.Evaluate("=1+1", -1).Number, 2);
}

TEST_F(EvaluatorCases, HugeRangesFailInsteadOfExhaustingMemory) {
  Set("A1", "1");
  EXPECT_EQ(Eval("=A1:Z1000000"), "#NUM!");
  EXPECT_EQ(Eval("=SUM(A:A)"), "1");  // whole columns are cut to the used rows
}

TEST_F(EvaluatorCases, LongChainsDoNotOverflowTheStack) {
  // Each cell reads the one above; none has a cached value, so evaluating the
  // last recurses through all of them.
  const int Length = 100000;
  TWorksheet* Sheet = Book.GetSheet(0);
  Sheet->SetCell({1, 1}, TCell::WithValue(TCellValue::FromNumber(1)));
  for (int Row = 2; Row <= Length; ++Row)
    Sheet->SetCell({1, Row}, TCell::WithValue(TCellValue::FromFormula("=A" + std::to_string(Row - 1) + "+1")));
  EXPECT_EQ(Evaluator.EvaluateCell(0, 1, Length).Number, Length);
}
