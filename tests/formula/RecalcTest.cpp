#include <gtest/gtest.h>

#include <string>

#include "Tabrino.Formula.CalcSession.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

TCellValue ValueOf(const std::string& Text) {
  if (!Text.empty() && Text[0] == '=') return TCellValue::FromFormula(Text);
  char* End = nullptr;
  const double Number = std::strtod(Text.c_str(), &End);
  if (!Text.empty() && *End == '\0') return TCellValue::FromNumber(Number);
  return TCellValue::FromText(Text);
}

// A workbook written cell by cell, read back as display texts of the caches.
class RecalcTest : public ::testing::Test {
 protected:
  TWorkbook Book;

  void Set(const std::string& A1, const std::string& Text, int32_t Sheet = 0) {
    Book.GetSheet(Sheet)->SetCell(TCellAddress::FromA1(A1), TCell::WithValue(ValueOf(Text)));
  }
  std::string Shown(const std::string& A1, int32_t Sheet = 0) {
    return Book.GetSheet(Sheet)->GetEffectiveValue(TCellAddress::FromA1(A1)).ToDisplayString();
  }
};

class EvaluatorRecalc : public RecalcTest {
 protected:
  TFormulaEvaluator Evaluator{Book};

  // Writes a cell and tells the evaluator, as a host does.
  void Edit(const std::string& A1, const std::string& Text, int32_t Sheet = 0) {
    Set(A1, Text, Sheet);
    const TCellAddress A = TCellAddress::FromA1(A1);
    Evaluator.NotifyCellChanged(Sheet, A.Col, A.Row);
  }
};

}  // namespace

TEST_F(EvaluatorRecalc, EditReevaluatesDependentsInOrder) {
  Edit("A1", "2");
  Edit("B1", "=A1*10");
  Edit("C1", "=B1+A1");
  Edit("D1", "=SUM(A1:C1)");
  EXPECT_EQ(Shown("D1"), "44");
  Edit("A1", "3");
  EXPECT_EQ(Shown("B1"), "30");
  EXPECT_EQ(Shown("C1"), "33");
  EXPECT_EQ(Shown("D1"), "66");
  // Across sheets too.
  Book.AddSheet("Two");
  Edit("A1", "=Sheet1!D1/2", 1);
  Edit("A1", "1");
  EXPECT_EQ(Shown("A1", 1), "11");
}

TEST_F(EvaluatorRecalc, CyclesAndWhatFollowsThemShowCirc) {
  Edit("A1", "=A1");
  EXPECT_EQ(Shown("A1"), "#CIRC!");

  Edit("B2", "=A2");
  Edit("A2", "=B2");
  Edit("C2", "=B2+1");
  for (const char* Cell : {"A2", "B2", "C2"}) EXPECT_EQ(Shown(Cell), "#CIRC!") << Cell;

  // Breaking the cycle with a value clears the error downstream.
  Edit("A2", "4");
  EXPECT_EQ(Shown("B2"), "4");
  EXPECT_EQ(Shown("C2"), "5");
}

TEST_F(EvaluatorRecalc, IndirectRefreshesOnlyOnRecalculateAll) {
  Set("A1", "1");
  Set("B1", "=INDIRECT(\"A1\")");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("B1"), "1");
  Edit("A1", "2");
  EXPECT_EQ(Shown("B1"), "1");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("B1"), "2");
}

TEST_F(EvaluatorRecalc, WholeColumnIsCutAtRegistration) {
  for (int Row = 1; Row <= 10; ++Row) Set("A" + std::to_string(Row), "1");
  Edit("B1", "=SUM(A:A)");
  const TFormulaDependencies* Deps = Evaluator.FGraph.FindDependencies({0, 2, 1});
  ASSERT_NE(Deps, nullptr);
  ASSERT_EQ(Deps->Ranges.size(), 1u);
  EXPECT_EQ(Deps->Ranges[0].Range, TCellRange::Make(1, 1, 1, 10));
  EXPECT_EQ(Shown("B1"), "10");

  Edit("A20", "5");
  EXPECT_EQ(Shown("B1"), "10") << "below the registered bounds";
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("B1"), "15");
  Edit("A20", "6");
  EXPECT_EQ(Shown("B1"), "16");
}

TEST_F(EvaluatorRecalc, RemovedFormulaKeepsItsDependents) {
  Edit("A1", "3");
  Edit("B1", "=A1*2");
  Edit("C1", "=B1+1");
  Edit("B1", "10");
  EXPECT_EQ(Shown("C1"), "11");
  EXPECT_FALSE(Evaluator.FGraph.HasDependencies({0, 2, 1}));
  Edit("B1", "20");
  EXPECT_EQ(Shown("C1"), "21");
  Edit("A1", "100");
  EXPECT_EQ(Shown("C1"), "21") << "B1 no longer reads A1";
}

TEST_F(EvaluatorRecalc, RecalculateAllOrdersAFileLoadedChain) {
  // Written without notifications, last link first, as a reader would.
  Set("A4", "=A3+1");
  Set("A3", "=A2+1");
  Set("A2", "=A1+1");
  Set("A1", "1");
  Evaluator.RecalculateAll();
  EXPECT_EQ(Shown("A4"), "4");
  Set("A1", "10");
  Evaluator.RecalculateSheet(Book.GetSheet(0));
  EXPECT_EQ(Shown("A4"), "13");
  Evaluator.Reset();
  EXPECT_EQ(Evaluator.FGraph.FormulaCount(), 0u);
  Evaluator.RebuildAllDependencies();
  EXPECT_EQ(Evaluator.FGraph.FormulaCount(), 3u);
}

TEST_F(RecalcTest, SessionRecalculatesUserWritesAndIgnoresCaches) {
  int Writes = 0;
  Book.GetSheet(0)->FOnChange = [&, Chained = Book.GetSheet(0)->FOnChange](TWorksheet& S, const TCellAddress& A,
                                                                           const TCell& Old, const TCell& New) {
    ++Writes;
    Chained(S, A, Old, New);
  };
  {
    TCalcSession Session(Book);
    Set("A1", "2");
    Set("B1", "=A1+1");
    Set("C1", "=B1*2");
    EXPECT_EQ(Shown("C1"), "6");
    Writes = 0;
    Set("A1", "5");
    EXPECT_EQ(Shown("C1"), "12");
    EXPECT_EQ(Writes, 3) << "the edit and two caches, each once";
    EXPECT_TRUE(Book.FModified) << "the workbook's own handler still runs";

    // A sheet added later is listened to as well.
    Book.AddSheet("Later");
    Set("A1", "=Sheet1!C1+1", 1);
    EXPECT_EQ(Shown("A1", 1), "13");
    Set("A1", "0");
    EXPECT_EQ(Shown("A1", 1), "3");
  }
  // Gone with the session: writes no longer recalculate.
  Set("A1", "1");
  EXPECT_EQ(Shown("C1"), "2");
}

TEST_F(RecalcTest, SessionBatchRecalculatesOnceAtTheEnd) {
  TCalcSession Session(Book);
  Set("A1", "1");
  Set("B1", "=A1*3");
  Session.BeginBatch();
  Session.BeginBatch();
  Set("A1", "2");
  Set("C1", "=B1+A1");
  Session.EndBatch();
  EXPECT_EQ(Shown("B1"), "3") << "held back inside the batch";
  EXPECT_EQ(Shown("C1"), "");
  Session.EndBatch();
  EXPECT_EQ(Shown("B1"), "6");
  EXPECT_EQ(Shown("C1"), "8");
  Session.EndBatch();  // unbalanced: ignored
  Set("A1", "3");
  EXPECT_EQ(Shown("C1"), "12");
}
