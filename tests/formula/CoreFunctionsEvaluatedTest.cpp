#include <gtest/gtest.h>

#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// The core families reached through formulas on a sheet whose A1:B3 holds
// 9 a / 1 b / 4 c and C1:C3 holds 1, "text", #DIV/0!.
class CoreFunctionsEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V(9)},   {"B1", V("a")}, {"A2", V(1)},      {"B2", V("b")},    {"A3", V(4)},
        {"B3", V("c")}, {"C1", V(1)},   {"C2", V("text")}, {"C3", E(ceDiv0)},
    };
    for (const auto& [Address, Value] : Cells) Put(Address, Value);
  }
  void Put(const char* Address, TCellValue Value) {
    FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(std::move(Value)));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(CoreFunctionsEvaluated, SpreadsheetEdgeCases) {
  EXPECT_EQ(Eval("=COUNTIF(A1:A3,\">1\")"), V(2));
  EXPECT_EQ(Eval("=COUNTIF(B1:B3,\"a*\")"), V(0));
  EXPECT_EQ(Eval("=VLOOKUP(5,A1:B3,2)"), V("c"));
  EXPECT_EQ(Eval("=INDEX(A1:B2,0,2)"), V("a"));
  EXPECT_EQ(Eval("=MATCH(\"b\",B1:B3,1)"), E(ceNA));
  EXPECT_EQ(Eval("=_xlfn.XLOOKUP(\"C\",B1:B3,A1:A3)"), V(4));
  EXPECT_EQ(Eval("=SUM(C1:C3,A1:A3)"), V(15));
  EXPECT_EQ(Eval("=SUMPRODUCT(A1:A3,A1:A3)"), V(98));
  EXPECT_EQ(Eval("=SUM(A1:A3>1)"), V(0));
  EXPECT_EQ(Eval("=SUMPRODUCT(A1:A3>1)"), V(2));
  EXPECT_EQ(Eval("=AND(C1:C2)"), V(true));
  EXPECT_EQ(Eval("=ISERR(C3)"), V(true));
  EXPECT_EQ(Eval("=ROWS(A1:B3)*COLUMNS(A1:B3)"), V(6));
}

}  // namespace
}  // namespace Tabrino
