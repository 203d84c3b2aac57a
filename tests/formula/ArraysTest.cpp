// The dynamic-array functions: each one's shape rules and error cases, called
// in array context, then a few through the evaluator.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;
using namespace Tabrino::FunctionTest;

namespace {

// "1,2;3,4": rows split by ";", cells by ","; a scalar as its display text.
std::string Shown(const TFormulaArg& Arg) {
  if (!Arg.IsRange) return Arg.Scalar.ToDisplayString();
  std::string Text;
  for (int32_t Row = 0; Row < Arg.RowCount; ++Row) {
    if (Row > 0) Text += ';';
    for (int32_t Col = 0; Col < Arg.ColCount; ++Col) {
      if (Col > 0) Text += ',';
      Text += Arg.CellAt(Row, Col).ToDisplayString();
    }
  }
  return Text;
}

struct TArrayCase {
  const char* Name;
  std::vector<TTestArg> Args;
  const char* Expected;
};

void ExpectArrays(std::initializer_list<TArrayCase> Cases) {
  for (const TArrayCase& Case : Cases) {
    std::vector<TFormulaArg> Args;
    for (const TTestArg& A : Case.Args) Args.push_back(A.Arg);
    const TFunctionDef* Def = FindFunction(Case.Name);
    ASSERT_NE(Def, nullptr) << Case.Name;
    const TFormulaArg Result = Def->AcceptsCount(Args.size()) ? Def->Run(TFunctionCall{Def->Name, Args, {}})
                                                              : TFormulaArg::FromError(ceValue);
    EXPECT_EQ(Shown(Result), Case.Expected) << Describe(TCallCase{Case.Name, Case.Args, {}});
  }
}

TFormulaArg Col(std::vector<TCellValue> Cells) {
  return Column(std::move(Cells));
}
TFormulaArg Row(std::vector<TCellValue> Cells) {
  const int32_t Count = int32_t(Cells.size());
  return Range(std::move(Cells), 1, Count);
}
// 1 to 4 as a 2 by 2 block.
TFormulaArg Square() {
  return Range({V(1), V(2), V(3), V(4)}, 2, 2);
}

}  // namespace

TEST(Arrays, WrongArgumentCountsAreValueErrors) {
  ExpectArrays({
      {"FILTER", {Col({V(1)})}, "#VALUE!"},
      {"UNIQUE", {}, "#VALUE!"},
      {"SORTBY", {Col({V(1)})}, "#VALUE!"},
      {"SEQUENCE", {}, "#VALUE!"},
      {"GROUPBY", {Col({V(1)}), Col({V(1)})}, "#VALUE!"},
      {"PIVOTBY", {Col({V(1)}), Col({V(1)}), Col({V(1)})}, "#VALUE!"},
      {"TAKE", {Col({V(1)})}, "#VALUE!"},
      {"EXPAND", {Col({V(1)}), 2}, "#VALUE!"},  // the dispatcher lets two through; the size needs three
      {"ARRAYFORMULA", {1, 2}, "#VALUE!"},
  });
}

TEST(Arrays, Filter) {
  ExpectArrays({
      {"FILTER", {Col({V(1), V(2), V(3)}), Col({V(true), V(false), V(true)})}, "1;3"},
      {"FILTER", {Square(), Col({V(0), V(1)})}, "3,4"},
      {"FILTER", {Square(), Range({V(0), V(1), V(1), V(0)}, 2, 2)}, "3,4"},  // the first column decides
      {"FILTER", {Col({V(1), V(2), V(3)}), Col({V("x"), V(""), E(ceNA)})}, "1"},
      {"FILTER", {7, true}, "7"},
      {"FILTER", {Col({V(1), V(2)}), Col({V(0), V(0)})}, "#N/A"},
      {"FILTER", {Col({V(1), V(2)}), Col({V(0), V(0)}), "none"}, "none"},
      {"FILTER", {Col({V(1), V(2)}), Col({V(0), V(0)}), Col({V("a"), V("b")})}, "a"},
      {"FILTER", {Col({V(1), V(2), V(3)}), Col({V(1), V(1)})}, "#VALUE!"},
      {"FILTER", {Range({V(1), V(2), V(3)}, 1, 3), Range({V(1), V(1)}, 1, 2)}, "#VALUE!"},
  });
}

TEST(Arrays, Sequence) {
  ExpectArrays({
      {"SEQUENCE", {3}, "1;2;3"},
      {"SEQUENCE", {2, 3}, "1,2,3;4,5,6"},
      {"SEQUENCE", {2, 2, 0, 0.5}, "0,0.5;1,1.5"},
      {"SEQUENCE", {2.9, 1, 10, -1}, "10;9"},
      {"SEQUENCE", {"2"}, "1;2"},
      {"SEQUENCE", {"x"}, "#VALUE!"},
      {"SEQUENCE", {2, "x"}, "#VALUE!"},
      {"SEQUENCE", {0}, "#NUM!"},
      {"SEQUENCE", {1, 0}, "#NUM!"},
      {"SEQUENCE", {1048577}, "#NUM!"},
      {"SEQUENCE", {1, 16385}, "#NUM!"},
      {"SEQUENCE", {1001, 1000}, "#NUM!"},
  });
  const TFormulaArg Million = CallArray("SEQUENCE", {1000, 1000});
  ASSERT_TRUE(Million.IsRange);
  EXPECT_EQ(Million.RowCount * Million.ColCount, 1000000);
  EXPECT_EQ(Million.CellAt(999, 999), V(1000000));
  EXPECT_EQ(Call("SEQUENCE", {3, 1, 5}), V(5)) << "in scalar context the first value";
}

TEST(Arrays, Unique) {
  ExpectArrays({
      {"UNIQUE", {Col({V(1), V(1), V(2), V(1)})}, "1;2"},
      {"UNIQUE", {Col({V(1), V("1")})}, "1;1"},  // a number and its text differ
      {"UNIQUE", {Col({V("a"), V("A")})}, "a;A"},  // text compares with case
      {"UNIQUE", {Col({V(true), V("TRUE"), Blank(), V("")})}, "TRUE;TRUE;;"},
      {"UNIQUE", {Col({E(ceNA), E(ceNA), E(ceDiv0)})}, "#N/A;#DIV/0!"},
      {"UNIQUE", {Range({V(1), V(2), V(1), V(2), V(1), V(3)}, 3, 2)}, "1,2;1,3"},
      {"UNIQUE", {Col({V(1), V(1), V(2)}), 0, 1}, "2"},
      {"UNIQUE", {Col({V(1), V(1)}), 0, true}, "#N/A"},
      {"UNIQUE", {Row({V(1), V(1), V(2)}), 1}, "1,2"},
      {"UNIQUE", {Row({V(1), V(1), V(2)}), "yes"}, "1,1,2"},  // a flag must be numeric
      {"UNIQUE", {5}, "5"},
  });
}

TEST(Arrays, SortKeepsTheExchangeSortsTieOrder) {
  ExpectArrays({
      {"SORT", {Col({V(3), V(1), V(2)})}, "1;2;3"},
      {"SORT", {Col({V(3), V(1), V(2)}), 1, -1}, "3;2;1"},
      {"SORT", {Col({V(3), V(1), V(2)}), 1, -0.5}, "1;2;3"},  // the order is truncated to 0
      {"SORT", {Col({V("b"), V(10), V("a"), V(2)})}, "2;10;a;b"},
      {"SORT", {Col({V("10x"), V(2), V(10)})}, "10;10x;2"},  // mixed keys compare pair by pair
      {"SORT", {Col({V("b"), V("B"), V("a")})}, "a;B;b"},  // ties fall as the exchange loop leaves them
      {"SORT", {Col({V("b"), V("B"), V("a")}), 1, -1}, "b;B;a"},
      {"SORT", {Range({V("x"), V(2), V("y"), V(1)}, 2, 2), 2}, "y,1;x,2"},
      {"SORT", {Range({V(3), V(1), V(2), V("c"), V("a"), V("b")}, 2, 3), 1, 1, 1}, "1,2,3;a,b,c"},
      {"SORT", {Col({V(1), V(2)}), 2}, "#VALUE!"},
      {"SORT", {Col({V(1), V(2)}), 0}, "#VALUE!"},
      {"SORT", {Col({V(1), V(2)}), "x"}, "#VALUE!"},
      {"SORT", {Range({V(3), V(1), V(2)}, 1, 3), 2, 1, 1}, "#VALUE!"},  // by columns the index picks a row
  });
}

TEST(Arrays, SortBy) {
  ExpectArrays({
      {"SORTBY", {Col({V("x"), V("y"), V("z")}), Col({V(3), V(1), V(2)})}, "y;z;x"},
      {"SORTBY", {Col({V("x"), V("y"), V("z")}), Col({V(3), V(1), V(2)}), -1}, "x;z;y"},
      {"SORTBY", {Col({V("x"), V("y")}), Range({V(2), V(0), V(1), V(9)}, 2, 2)}, "y;x"},  // first key column only
      {"SORTBY", {Col({V("x"), V("y")}), Col({V(2), V(1)}), 1, Col({V(0), V(0)}), 1}, "y;x"},  // more pairs ignored
      {"SORTBY", {Col({V("x"), V("y")}), Col({V(1), V(2), V(3)})}, "#VALUE!"},
  });
}

TEST(Arrays, SortOfManyRowsFinishes) {
  std::vector<TCellValue> Cells;
  for (int I = 0; I < 50000; ++I) Cells.push_back(V((I * 7919) % 50000));
  const TFormulaArg Sorted = CallArray("SORT", {Col(Cells), 1, -1});
  ASSERT_EQ(Sorted.RowCount, 50000);
  EXPECT_EQ(Sorted.CellAt(0, 0), V(49999));
  EXPECT_EQ(Sorted.CellAt(49999, 0), V(0));
}

TEST(Arrays, Reshaping) {
  ExpectArrays({
      {"TRANSPOSE", {Range({V(1), V(2), V(3), V(4), V(5), V(6)}, 2, 3)}, "1,4;2,5;3,6"},
      {"TRANSPOSE", {5}, "5"},
      {"HSTACK", {Col({V(1), V(2)}), 3}, "1,3;2,#N/A"},
      {"VSTACK", {Row({V(1), V(2)}), 3, Square()}, "1,2;3,#N/A;1,2;3,4"},
      {"TOROW", {Square()}, "1,2,3,4"},
      {"TOCOL", {Square()}, "1;2;3;4"},
      {"WRAPROWS", {Row({V(1), V(2), V(3), V(4), V(5)}), 2}, "1,2;3,4;5,"},
      {"WRAPROWS", {Square(), 3, 0}, "1,2,3;4,0,0"},
      {"WRAPCOLS", {Row({V(1), V(2), V(3), V(4), V(5)}), 2}, "1,3,5;2,4,"},
      {"WRAPCOLS", {Square(), 0.5}, "#VALUE!"},
      {"WRAPROWS", {Square(), 1E9}, "#VALUE!"},
      {"ARRAYFORMULA", {Square()}, "1,2;3,4"},
  });
}

TEST(Arrays, TakeDropAndExpand) {
  const TFormulaArg Three = Col({V(1), V(2), V(3)});
  ExpectArrays({
      {"TAKE", {Three, 2}, "1;2"},
      {"TAKE", {Three, -2}, "2;3"},
      {"TAKE", {Three, 9}, "1;2;3"},
      {"TAKE", {Three, 0}, "#VALUE!"},
      {"TAKE", {Three, "x"}, "#VALUE!"},
      {"TAKE", {Square(), 1, -1}, "2"},
      {"TAKE", {Square(), -1, 0}, "3,4"},
      {"DROP", {Three, 1}, "2;3"},
      {"DROP", {Three, -1}, "1;2"},
      {"DROP", {Three, 3}, "#VALUE!"},
      {"DROP", {Three, -5}, "#VALUE!"},
      {"DROP", {Square(), 0, 1}, "2;4"},
      {"DROP", {Square(), 0, -2}, "#VALUE!"},
      {"EXPAND", {Row({V(1), V(2)}), 2, 3}, "1,2,;,,"},
      {"EXPAND", {Row({V(1), V(2)}), 2, 3, 0}, "1,2,0;0,0,0"},
      {"EXPAND", {Square(), 1, 2}, "#VALUE!"},
      {"EXPAND", {Square(), 2, 1}, "#VALUE!"},
      {"EXPAND", {Square(), 1E6, 1E6}, "#VALUE!"},
  });
}

TEST(Arrays, ChooseRowsAndColumns) {
  const TFormulaArg Three = Col({V(1), V(2), V(3)});
  ExpectArrays({
      {"CHOOSEROWS", {Three, 3, -3}, "3;1"},
      {"CHOOSEROWS", {Three, Row({V(2), V(2)})}, "2;2"},
      {"CHOOSEROWS", {Three, 2.7}, "2"},
      {"CHOOSEROWS", {Three, 0}, "#VALUE!"},
      {"CHOOSEROWS", {Three, 4}, "#VALUE!"},
      {"CHOOSEROWS", {Three, -4}, "#VALUE!"},
      {"CHOOSEROWS", {Three, "x"}, "#VALUE!"},
      {"CHOOSECOLS", {Square(), -1}, "2;4"},
      {"CHOOSECOLS", {Square(), 2, 1}, "2,1;4,3"},
  });
}

TEST(Arrays, GroupAndPivotSumWhateverTheyAreAskedFor) {
  ExpectArrays({
      {"GROUPBY", {Col({V("a"), V("b"), V("a")}), Col({V(1), V(2), V(3)}), 0}, "a,4;b,2"},
      {"GROUPBY", {Col({V("a"), V("a")}), Col({V("5"), V("x")}), "AVERAGE"}, "a,5"},
      {"GROUPBY", {Col({V(1), V(1.0), V(true)}), Col({V(1), V(2), V(3)}), 0}, "1,3;TRUE,3"},
      {"PIVOTBY",
       {Col({V("r1"), V("r2"), V("r1")}), Col({V("c1"), V("c1"), V("c2")}), Col({V(1), V(2), V(3)}), 0},
       ",c1,c2;r1,1,3;r2,2,0"},
  });
}

TEST(Arrays, RandArray) {
  const TFormulaArg Unit = CallArray("RANDARRAY", {2, 3});
  ASSERT_EQ(Shown(Unit).size() > 0, true);
  ASSERT_EQ(Unit.RowCount * 10 + Unit.ColCount, 23);
  for (const TCellValue& V : Unit.Cells) EXPECT_TRUE(V.Number >= 0 && V.Number < 1) << V.Number;
  const TFormulaArg Dice = CallArray("RANDARRAY", {50, 1, 1, 3, true});
  for (const TCellValue& V : Dice.Cells) EXPECT_TRUE(V.Number == 1 || V.Number == 2 || V.Number == 3) << V.Number;
  EXPECT_EQ(CallArray("RANDARRAY", {}).ValueCount(), 1u);
  ExpectArrays({
      {"RANDARRAY", {0}, "#VALUE!"},
      {"RANDARRAY", {1, 1, 5, 4}, "#VALUE!"},
      {"RANDARRAY", {1, 1, 1.2, 1.8, 1}, "#VALUE!"},  // no whole number in the span
      {"RANDARRAY", {1, 1, 2, 2}, "2"},
      {"RANDARRAY", {"x"}, "#VALUE!"},
  });
  EXPECT_TRUE(FindFunction("RANDARRAY")->Flags & fnVolatile);
}

TEST(Arrays, SpillFunctionNames) {
  for (const char* Name : {"FILTER", "sequence", "_xlfn.UNIQUE", "QUERY", "ARRAY_CONSTRAIN", "PIVOTBY"})
    EXPECT_TRUE(IsDynamicArraySpillFunction(Name)) << Name;
  for (const char* Name : {"SUM", "MMULT", "ARRAYFORMULA", "LET"}) EXPECT_FALSE(IsDynamicArraySpillFunction(Name));
  for (const char* Text : {"=SEQUENCE(3)", " =+@ sort (A1:A3)", "@@FILTER(A1:A3,B1:B3)", "=_xlfn._xlws.SORT(A1:A3)",
                           "UNIQUE"})
    EXPECT_TRUE(IsDynamicArraySpillFormulaText(Text)) << Text;
  for (const char* Text : {"=SUM(SEQUENCE(3))", "=A1", "", "=", "= @SEQUENCE(3)", "=(SEQUENCE(3))"})
    EXPECT_FALSE(IsDynamicArraySpillFormulaText(Text)) << Text;
}

TEST(Arrays, ThroughTheEvaluator) {
  TWorkbook Book;
  TFormulaEvaluator Evaluator(Book);
  TWorksheet& Sheet = *Book.ActiveSheet();
  for (int Row = 1; Row <= 4; ++Row) {
    Sheet.SetCell({1, Row}, TCell::WithValue(V(5 - Row)));
    Sheet.SetCell({2, Row}, TCell::WithValue(V(Row % 2 ? "odd" : "even")));
  }
  auto Eval = [&](const char* Formula) { return Evaluator.Evaluate(Formula, 0).ToDisplayString(); };
  EXPECT_EQ(Eval("=SUM(SEQUENCE(10))"), "55");
  EXPECT_EQ(Eval("=ROWS(UNIQUE(B1:B4))"), "2");
  EXPECT_EQ(Eval("=INDEX(SORT(A1:A4),2)"), "2");
  EXPECT_EQ(Eval("=SUM(FILTER(A1:A4,B1:B4=\"odd\"))"), "6");
  EXPECT_EQ(Eval("=FILTER(A1:A4,A1:A4>9,\"none\")"), "none");
  EXPECT_EQ(Eval("=SEQUENCE(3,1,7)+1"), "8") << "scalar context takes the first value";
  EXPECT_EQ(Eval("=COUNTA(VSTACK(A1:A2,B1:B2))"), "4");
  EXPECT_EQ(Eval("=SUM(TAKE(SORTBY(A1:A4,A1:A4,-1),2))"), "7");
  EXPECT_EQ(Eval("=SEQUENCE(2000000)"), "#NUM!");
}
