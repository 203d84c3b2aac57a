// The statistical families reached through formulas on a sheet: references
// read as cells, array results in scalar context, the legacy names, and
// AGGREGATE passing over totals nested in its range.

#include <gtest/gtest.h>

#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// A1:A6 1..6, B1:B6 the y of a near line, C1 text, D1:D3 a subtotal, a
// number and an AGGREGATE.
class StatisticsEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const double Ys[] = {2.1, 3.9, 6.2, 7.8, 10.1, 12.2};
    for (int Row = 1; Row <= 6; ++Row) {
      Set("A" + std::to_string(Row), V(Row));
      Set("B" + std::to_string(Row), V(Ys[Row - 1]));
    }
    Set("C1", V("7"));
    Set("D1", TCellValue::FromFormula("=SUBTOTAL(9,A1:A2)"));
    Set("D2", V(10));
    Set("D3", TCellValue::FromFormula("=aggregate(4,6,A1:A6)"));
  }
  void Set(const std::string& Address, TCellValue Value) {
    FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(std::move(Value)));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(StatisticsEvaluated, DescriptiveAndRanking) {
  EXPECT_EQ(Eval("=MEDIAN(A1:A6)"), V(3.5));
  EXPECT_EQ(Eval("=VAR.P(C1,2,4)"), V(1));   // the text in C1 is passed over
  EXPECT_EQ(Eval("=VAR.P(\"7\",1)"), V(9));  // typed in, it counts
  EXPECT_EQ(Eval("=STDEV(A1:A6)"), Eval("=_xlfn.STDEV.S(A1:A6)"));
  EXPECT_EQ(Eval("=LARGE(A1:A6,2)+SMALL(A1:A6,2)"), V(7));
  EXPECT_EQ(Eval("=QUARTILE(A1:A6,2)"), V(3.5));
  EXPECT_EQ(Eval("=MAXIFS(B1:B6,A1:A6,\"<4\")"), V(6.2));
  EXPECT_EQ(Eval("=STDEV()"), E(ceValue));
}

TEST_F(StatisticsEvaluated, RegressionAndArrays) {
  EXPECT_TRUE(IsNear(Eval("=SLOPE(B1:B6,A1:A6)"), 2.02, 1e-13));
  EXPECT_TRUE(IsNear(Eval("=FORECAST(8,B1:B6,A1:A6)"), 16.14, 1e-13));
  // An array function in scalar context gives its first value.
  EXPECT_TRUE(IsNear(Eval("=LINEST(B1:B6,A1:A6)"), 2.02, 1e-13));
  EXPECT_EQ(Eval("=SUM(FREQUENCY(A1:A6,{2,4}))"), V(6));
  EXPECT_EQ(Eval("=MODE.MULT(A1:A6)"), E(ceNA));
}

TEST_F(StatisticsEvaluated, AggregatePassesOverNestedTotals) {
  EXPECT_EQ(Eval("=D1+D3"), V(9));  // 3 and 6
  EXPECT_EQ(Eval("=AGGREGATE(9,0,D1:D3)"), V(10));
  EXPECT_EQ(Eval("=AGGREGATE(9,4,D1:D3)"), V(19));
  EXPECT_EQ(Eval("=AGGREGATE(14,3,D1:D3,1)"), V(10));
}

TEST_F(StatisticsEvaluated, ForecastEts) {
  TCellValue Linear = Eval("=FORECAST.ETS(9,B1:B6,A1:A6,0)");
  ASSERT_EQ(Linear.Kind, cvkNumber);
  EXPECT_NEAR(Linear.Number, 18.16, 1);
  EXPECT_EQ(Eval("=FORECAST.ETS(3,B1:B6,A1:A6)"), E(ceNum));
  EXPECT_EQ(Eval("=FORECAST.ETS.STAT(B1:B6,A1:A6,8)"), V(1));
}

}  // namespace
}  // namespace Tabrino
