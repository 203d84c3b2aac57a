// LET, LAMBDA and the lambda iterators through the evaluator: the flat name
// table and its limits, omitted parameters, errors inside iterations, lambdas
// as cell results, bounded and endless recursion, and the CLI.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.Lambda.h"
#include "Tabrino.Workbook.h"
#include "io/TempDir.h"

using namespace Tabrino;

namespace {

struct TFormulaCase {
  const char* Formula;
  const char* Expected;
};

// A1:A3 hold 1, 2, 3 and A1:B2 reads 1, 10; 2, 20 unless a test says else.
class Lambda : public ::testing::Test {
 protected:
  TWorkbook Book;
  TFormulaEvaluator Evaluator{Book};
  TWorksheet& Sheet = *Book.ActiveSheet();

  void SetUp() override {
    for (int32_t Row = 1; Row <= 3; ++Row) {
      Set(1, Row, TCellValue::FromNumber(Row));
      Set(2, Row, TCellValue::FromNumber(Row * 10));
    }
  }
  void Set(int32_t Col, int32_t Row, const TCellValue& Value) { Sheet.SetCell({Col, Row}, TCell::WithValue(Value)); }
  void Set(const std::string& A1, const TCellValue& Value) {
    const TCellAddress A = TCellAddress::FromA1(A1);
    Set(A.Col, A.Row, Value);
  }
  // Puts the formula into At, evaluates it and returns the anchor's shown value.
  std::string Eval(const std::string& Formula, const std::string& At = "H1") {
    Set(At, TCellValue::FromFormula(Formula));
    const TCellAddress A = TCellAddress::FromA1(At);
    return Evaluator.EvaluateCell(0, A.Col, A.Row).ToDisplayString();
  }
  // "1,2;3,4": the block a formula in H1 spilled, or its one value.
  std::string Spilled(const std::string& Formula) {
    const std::string First = Eval(Formula);
    const TSpillRange* Spill = Sheet.FSpills.FindSpill(8, 1);
    if (!Spill) return First;
    std::string Text;
    for (int32_t Row = Spill->AnchorRow; Row <= Spill->EndRow; ++Row) {
      if (Row > Spill->AnchorRow) Text += ';';
      for (int32_t Col = Spill->AnchorCol; Col <= Spill->EndCol; ++Col) {
        if (Col > Spill->AnchorCol) Text += ',';
        Text += Sheet.GetEffectiveValue({Col, Row}).ToDisplayString();
      }
    }
    return Text;
  }
  void Check(std::initializer_list<TFormulaCase> Cases) {
    for (const TFormulaCase& C : Cases) EXPECT_EQ(Spilled(C.Formula), C.Expected) << C.Formula;
  }
};

}  // namespace

TEST_F(Lambda, LetBindsInOrderAndChecksItsShape) {
  Check({
      {"=LET(x,1,y,x+1,y)", "2"},
      {"=LET(x,1)", "#VALUE!"},
      {"=LET(x,1,y,2)", "#VALUE!"},
      {"=LET(1,2,3)", "#VALUE!"},
      {"=LET(A1,2,3)", "#VALUE!"},
      {"=LET($x,4,X*2)", "8"},
      {"=LET(r,A1:A3,SUM(r))", "6"},
      {"=LET(r,A1:A3,r)", "1;2;3"},
      {"=SUM(LET(x,2,x),LET(y,3,y))", "5"},
      // An error in any definition ends the LET, used or not.
      {"=LET(x,1/0,5)", "#DIV/0!"},
      {"=LET(x,1,y,NA(),x)", "#N/A"},
  });
}

TEST_F(Lambda, LetInScalarContextIsAnUnknownFunction) {
  Check({
      {"=1+LET(x,2,x)", "#NAME?"},
      // The inner LET sits under "+" and is no LET there.
      {"=LET(x,1,LET(x,2,x)+x)", "#NAME?"},
  });
}

TEST_F(Lambda, NamesLiveInOneFlatTable) {
  Book.SetNamedFormula("x", "=100");
  Check({
      // A LET name beats a defined name while it is bound ...
      {"=LET(x,1,x)", "1"},
      // ... and once it ends the defined name is seen again.
      {"=SUM(LET(x,1,x),x)", "101"},
  });
  Book.FNamedFormulas.clear();
  Check({
      // An inner binding of the same name removes the outer one when it ends.
      {"=LET(x,1,HSTACK(LET(x,2,x),x))", "2,#NAME?"},
      {"=LET(x,10,HSTACK(MAP(A1:A2,LAMBDA(x,x)),x))", "1,#NAME?;2,#N/A"},
      // A lambda captures nothing, yet sees names bound while it runs.
      {"=LET(k,3,f,LAMBDA(v,v*k),MAP(A1:A2,f))", "3;6"},
  });
}

TEST_F(Lambda, AFailedLetUnbindsWhatItHadBound) {
  // x is bound before y fails; the catch must not leave x behind.
  EXPECT_EQ(Eval("=LET(a,IFERROR(ABS(LET(x,5,y,1/0,0)),0),x)"), "#NAME?");
  EXPECT_EQ(Eval("=LET(a,IFERROR(ABS(LET(x,5,1,1,0)),0),x)"), "#NAME?");
  EXPECT_TRUE(Evaluator.FLocalNames.empty());
  EXPECT_TRUE(Evaluator.FMissingParams.empty());
}

TEST_F(Lambda, AFormulaDoesNotSeeTheNamesOfTheFormulaThatReadIt) {
  // C1 is evaluated for the first time from inside A5's LET.
  Set("C1", TCellValue::FromFormula("=x"));
  EXPECT_EQ(Eval("=LET(x,5,C1)", "A5"), "#NAME?");
  Set("C2", TCellValue::FromFormula("=MAP(A1:A2,LAMBDA(v,ISOMITTED(w)))"));
  EXPECT_EQ(Eval("=MAP(A1,LAMBDA(v,w,C2))", "A6"), "FALSE");
}

TEST_F(Lambda, IteratorsShapeTheirResults) {
  Check({
      {"=LET(f,LAMBDA(a,a*2),MAP(A1:A3,f))", "2;4;6"},
      {"=MAP(A1:B2,LAMBDA(v,v+1))", "2,11;3,21"},
      {"=MAP(5,LAMBDA(v,v+1))", "6"},
      // Only the first value of a lambda's array result is kept.
      {"=MAP(A1:A2,LAMBDA(v,SEQUENCE(2,2,v*10)))", "10;20"},
      {"=BYROW(A1:B2,LAMBDA(r,SUM(r)))", "11;22"},
      {"=BYROW(A1:B2,LAMBDA(r,COLUMNS(r)))", "2;2"},
      {"=BYCOL(A1:B3,LAMBDA(c,SUM(c)))", "6,60"},
      {"=BYCOL(A1:B3,LAMBDA(c,ROWS(c)))", "3,3"},
      {"=MAKEARRAY(2,2,LAMBDA(r,c,r*10+c))", "11,12;21,22"},
      {"=MAKEARRAY(2.9,1.2,LAMBDA(r,c,r))", "1;2"},
      {"=SUM(MAP(A1:A3,LAMBDA(v,v*2)))", "12"},
  });
}

TEST_F(Lambda, ReduceAndScanTakeArrayLambdaInitial) {
  Check({
      {"=REDUCE(A1:A3,LAMBDA(a,b,a+b),0)", "6"},
      // Without an initial value the first cell starts the fold and is seen twice.
      {"=REDUCE(A1:A3,LAMBDA(a,b,a+b))", "7"},
      {"=REDUCE(A1:A3,LAMBDA(a,b,a&b),\"x\")", "x123"},
      {"=REDUCE(A1:A3,LAMBDA(a,b,a+b),A1:A3)", "7"},
      {"=SCAN(A1:A3,LAMBDA(a,b,a+b),0)", "1;3;6"},
      {"=SCAN(A1:B2,LAMBDA(a,b,a+b),0)", "1,11;13,33"},
      {"=SCAN(A1:A3,LAMBDA(a,b,a*b))", "1;2;6"},
      // The order of other spreadsheets fails: the second argument is no lambda.
      {"=REDUCE(0,A1:A3,LAMBDA(a,b,a+b))", "#VALUE!"},
      {"=SCAN(0,A1:A3,LAMBDA(a,b,a+b))", "#VALUE!"},
      {"=1+REDUCE(A1:A3,LAMBDA(a,b,a+b),0)", "7"},
  });
}

TEST_F(Lambda, OmittedParametersAreEmptyAndKnownAsSuch) {
  Check({
      {"=MAP(A1:A2,LAMBDA(v,w,ISOMITTED(w)))", "TRUE;TRUE"},
      {"=MAP(A1:A2,LAMBDA(v,w,ISOMITTED(v)))", "FALSE;FALSE"},
      {"=MAP(A1:A2,LAMBDA(v,w,w&\"!\"))", "!;!"},
      {"=REDUCE(A1:A2,LAMBDA(a,b,c,IF(ISOMITTED(c),a+b,-1)),0)", "3"},
      {"=ISOMITTED(v)", "FALSE"},
      {"=MAP(A1,LAMBDA(v,w,ISOMITTED(1)))", "#VALUE!"},
      // A later binding of the same name as a real value clears the mark.
      {"=MAP(A1,LAMBDA(v,w,LET(w,1,ISOMITTED(w))))", "FALSE"},
  });
}

TEST_F(Lambda, ErrorsStopTheIterationWithoutAPartialArray) {
  Set("A2", TCellValue::FromNumber(0));
  Check({
      {"=MAP(A1:A3,LAMBDA(v,1/v))", "#DIV/0!"},
      {"=MAP(A1:A3,LAMBDA(v,ISERROR(1/v)))", "FALSE;TRUE;FALSE"},
      {"=BYROW(A1:B3,LAMBDA(r,1/INDEX(r,1,1)))", "#DIV/0!"},
      {"=SCAN(A1:A3,LAMBDA(a,b,a/b),1)", "#DIV/0!"},
      {"=REDUCE(A1:A3,LAMBDA(a,b,IF(b=3,NA(),a+b)),0)", "#N/A"},
      {"=MAKEARRAY(2,2,LAMBDA(r,c,IF(c=2,NA(),1)))", "#N/A"},
  });
  EXPECT_FALSE(Sheet.FSpills.FindSpill(8, 1));
  EXPECT_TRUE(Evaluator.FLocalNames.empty()) << "every way out unbinds";
}

TEST_F(Lambda, BadOperandsAndArgumentCountsGiveValueErrors) {
  Check({
      {"=MAP(A1:A3)", "#VALUE!"},
      {"=MAP(A1:A3,5)", "#VALUE!"},
      {"=MAP(A1:A2,B1:B2,LAMBDA(v,w,v+w))", "#VALUE!"},
      {"=MAP(LAMBDA(v,v),LAMBDA(v,v))", "#VALUE!"},
      {"=MAP(A1:A3,LAMBDA(v))", "#VALUE!"},
      {"=MAP(A1:A3,LAMBDA(1,2))", "#VALUE!"},
      {"=MAP(A1:A3,LAMBDA(A1,2))", "#VALUE!"},
      {"=BYROW(A1:B2,LAMBDA(r,1),3)", "#VALUE!"},
      {"=BYCOL(A1:B2)", "#VALUE!"},
      {"=REDUCE(A1:A3,LAMBDA(a,b,a+b),0,1)", "#VALUE!"},
      {"=SCAN(A1:A3)", "#VALUE!"},
      {"=MAKEARRAY(1,LAMBDA(r,c,1))", "#VALUE!"},
      {"=MAKEARRAY(1,1,5)", "#VALUE!"},
      {"=MAKEARRAY(\"a\",1,LAMBDA(r,c,1))", "#VALUE!"},
      {"=MAKEARRAY(0,2,LAMBDA(r,c,1))", "#NUM!"},
      {"=MAKEARRAY(2,-1,LAMBDA(r,c,1))", "#NUM!"},
      {"=MAKEARRAY(1001,1000,LAMBDA(r,c,1))", "#NUM!"},
      {"=ISOMITTED(v,w)", "#VALUE!"},
      {"=LAMBDA(x,x+1)(2)", "#VALUE!"},
  });
}

TEST_F(Lambda, ALambdaCannotBeACellsValue) {
  Check({
      {"=LAMBDA(v,v+1)", "#VALUE!"},
      {"=LET(f,LAMBDA(v,v),f)", "#VALUE!"},
      {"=MAP(A1:A2,LAMBDA(v,LAMBDA(w,w)))", ";"},
  });
}

TEST_F(Lambda, ALambdaIsNoArgumentOfALambda) {
  const TFormulaArg Closure = Evaluator.MakeLambdaArg(TFormulaParser::Parse("=LAMBDA(v,w,v+1)").get());
  ASSERT_TRUE(Closure.IsLambda);
  const TFormulaArg Good[] = {TFormulaArg::FromScalar(TCellValue::FromNumber(1))};
  EXPECT_EQ(Evaluator.InvokeLambda(Closure.Lambda.get(), Good, 0).First(), TCellValue::FromNumber(2));
  const TFormulaArg Bad[] = {TFormulaArg::FromScalar(TCellValue::FromNumber(1)), Closure};
  EXPECT_EQ(Evaluator.InvokeLambda(Closure.Lambda.get(), Bad, 0).First(), TCellValue::FromError(ceValue));
  EXPECT_EQ(Evaluator.InvokeLambda(nullptr, Good, 0).First(), TCellValue::FromError(ceValue));
  EXPECT_TRUE(Evaluator.FLocalNames.empty());
}

TEST_F(Lambda, AClosureOutlivesTheTreeItCameFrom) {
  TFormulaArg Closure;
  {
    auto Tree = TFormulaParser::Parse("=LAMBDA(v,v*3)");
    Closure = Evaluator.MakeLambdaArg(Tree.get());
  }
  const TFormulaArg Args[] = {TFormulaArg::FromScalar(TCellValue::FromNumber(4))};
  EXPECT_EQ(Evaluator.InvokeLambda(Closure.Lambda.get(), Args, 0).First(), TCellValue::FromNumber(12));
  EXPECT_EQ(Closure.Lambda->GetParamName(0), "V");
  EXPECT_EQ(Closure.Lambda->GetParamName(1), "");
  EXPECT_EQ(Closure.Lambda->GetParamName(-1), "");
}

TEST_F(Lambda, TheNameTableNormalisesAndTracksOmissions) {
  Evaluator.BindLocalName(" $ab ", TFormulaArg::FromScalar(TCellValue::FromNumber(1)), true);
  TCellValue Value;
  ASSERT_TRUE(Evaluator.TryLocalName("AB", Value));
  EXPECT_EQ(Value, TCellValue::FromNumber(1));
  EXPECT_TRUE(Evaluator.FMissingParams.contains("AB"));
  Evaluator.BindLocalName("ab", TFormulaArg::FromScalar(TCellValue::FromNumber(2)), false);
  EXPECT_FALSE(Evaluator.FMissingParams.contains("AB"));
  ASSERT_TRUE(Evaluator.TryLocalName("$Ab", Value));
  EXPECT_EQ(Value, TCellValue::FromNumber(2));
  const std::string Names[] = {"ab"};
  Evaluator.UnbindLocalNames(Names);
  EXPECT_FALSE(Evaluator.TryLocalName("AB", Value));
}

TEST_F(Lambda, RecursionThroughALetNameEndsOrFails) {
  Check({
      {"=LET(f,LAMBDA(n,IF(n<1,0,n+SUM(MAP(n-1,f)))),MAP(4,f))", "10"},
      {"=LET(f,LAMBDA(n,IF(n<1,0,n+SUM(MAP(n-1,f)))),MAP(400,f))", "80200"},
      // Endless: an error value, not an exhausted stack.
      {"=LET(f,LAMBDA(n,MAP(n,f)),MAP(1,f))", "#VALUE!"},
      // Endless and branching with the errors caught: the limit still ends it
      // quickly instead of exploring every branch.
      {"=LET(f,LAMBDA(n,IFERROR(MAP({1,2,3},f),0)),MAP(1,f))", "0"},
  });
  // The limit belongs to the call that hit it.
  EXPECT_EQ(Eval("=MAP(2,LAMBDA(v,v*5))"), "10");
}

TEST_F(Lambda, ACellFirstReadByARunawayRecursionStillCallsItsLambdas) {
  // C9 is evaluated for the first time once A5's recursion has hit the limit.
  Set("C9", TCellValue::FromFormula("=MAP(3,LAMBDA(v,v+1))"));
  EXPECT_EQ(Eval("=LET(f,LAMBDA(n,IFERROR(MAP(n,f),C9)),MAP(1,f))", "A5"), "4");
  EXPECT_EQ(Sheet.GetEffectiveValue({3, 9}), TCellValue::FromNumber(4));
}

TEST_F(Lambda, MapSpillsAndFollowsItsPrecedents) {
  Set("C1", TCellValue::FromFormula("=MAP(A1:A3,LAMBDA(v,v*2))"));
  Evaluator.RecalculateAll();
  EXPECT_EQ(Sheet.GetEffectiveValue({3, 3}), TCellValue::FromNumber(6));
  Set("A3", TCellValue::FromNumber(7));
  Evaluator.NotifyCellChanged(0, 1, 3);
  EXPECT_EQ(Sheet.GetEffectiveValue({3, 3}), TCellValue::FromNumber(14));
  Set("C2", TCellValue::FromText("block"));
  Evaluator.NotifyCellChanged(0, 3, 2);
  Evaluator.RecalculateAll();
  EXPECT_EQ(Sheet.GetEffectiveValue({3, 1}), TCellValue::FromError(ceSpill));
}

TEST_F(Lambda, SpecialFormsAreListedAndNeverDispatched) {
  const std::vector<const TFunctionDef*> All = AllFunctions();
  for (const char* Name :
       {"INDIRECT", "OFFSET", "LET", "LAMBDA", "ISOMITTED", "MAP", "BYROW", "BYCOL", "REDUCE", "SCAN", "MAKEARRAY"}) {
    const TFunctionDef* Form = FindSpecialForm(Name);
    ASSERT_TRUE(Form) << Name;
    EXPECT_TRUE(Form->Flags & fnSpecialForm) << Name;
    EXPECT_EQ(FindFunction(Name), nullptr) << Name << " must not reach a table dispatcher";
    EXPECT_EQ(std::count(All.begin(), All.end(), Form), 1) << Name;
  }
  EXPECT_EQ(FindSpecialForm("IF"), nullptr) << "IF has a table row of its own";
}

// ---- through the CLI -------------------------------------------------------------

namespace {

std::string RunCli(const TabrinoTest::TTempDir& Dir, const std::string& Args) {
  const std::string Out = Dir.File("stdout.txt");
  const std::string Command = std::string("'") + TABRINO_CLI_PATH + "' " + Args + " >'" + Out + "' 2>&1";
  const int Status = std::system(Command.c_str());
  const std::string Text = TabrinoTest::ReadFile(Out);
  return WIFEXITED(Status) && WEXITSTATUS(Status) == 0 ? Text : "failed: " + Text;
}

}  // namespace

TEST(LambdaCli, EvalSpillsIteratorsAndRejectsLambdaResults) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TabrinoTest::TTempDir Dir;
  EXPECT_EQ(RunCli(Dir, "eval '=MAP(A1:A3,LAMBDA(x,x*2))' --set A1=1 --set A2=2 --set A3=3"), "2\n4\n6\n");
  EXPECT_EQ(RunCli(Dir, "eval '=MAKEARRAY(2,3,LAMBDA(r,c,r*c))'"), "1\t2\t3\n2\t4\t6\n");
  EXPECT_EQ(RunCli(Dir, "eval '=LET(x,2,y,x*x,y+1)'"), "5\n");
  EXPECT_EQ(RunCli(Dir, "eval '=LAMBDA(x,x)'"), "#VALUE!\n");
}

TEST(LambdaCli, FunctionsKnowsEveryCataloguedName) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TabrinoTest::TTempDir Dir;
  EXPECT_EQ(RunCli(Dir, "functions --missing"), "");
  const std::string Logical = RunCli(Dir, "functions --category logical");
  EXPECT_NE(Logical.find("LET\tlogical\t3\tn\n"), std::string::npos) << Logical;
  EXPECT_NE(Logical.find("REDUCE\tlogical\t2\t3\n"), std::string::npos) << Logical;
  EXPECT_NE(RunCli(Dir, "functions --category lookup").find("OFFSET\tlookup\t3\t5\n"), std::string::npos);
}
