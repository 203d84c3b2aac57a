#include <gtest/gtest.h>

#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// The math, text, date and financial families reached through formulas on a
// sheet whose A1:B3 holds -100 "a" / 60 "" / 60.5 "C".
class ScalarFamiliesEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V(-100)}, {"B1", V("a")}, {"A2", V(60)}, {"B2", V("")}, {"A3", V(60.5)}, {"B3", V("C")},
    };
    for (const auto& [Address, Value] : Cells) {
      FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
    }
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(ScalarFamiliesEvaluated, Math) {
  EXPECT_EQ(Eval("=ROUND(A3,-1)"), V(60));
  EXPECT_EQ(Eval("=ROUND(-2.5,0)"), V(-3));
  EXPECT_EQ(Eval("=MOD(A1,7)"), V(5));
  EXPECT_EQ(Eval("=SQRT(A1)"), E(ceNum));
  EXPECT_EQ(Eval("=POWER(0,-1)"), E(ceDiv0));
  EXPECT_EQ(Eval("=CEILING(-2.5,2)"), V(-2));
}

TEST_F(ScalarFamiliesEvaluated, Text) {
  EXPECT_EQ(Eval("=LEN(\"a\"&\"\xF0\x9F\x98\x80\")"), V(3));
  EXPECT_EQ(Eval("=TEXTJOIN(\"-\",TRUE,B1:B3)"), V("a-C"));
  EXPECT_EQ(Eval("=CONCAT(A1:B2)"), V("-100a60"));
  EXPECT_EQ(Eval("=PROPER(B1&\" \"&LOWER(B3))"), V("A C"));
  EXPECT_EQ(Eval("=SEARCH(\"c\",B3)"), V(1));
  EXPECT_EQ(Eval("=FIND(\"c\",B3)"), E(ceValue));
  EXPECT_EQ(Eval("=MID(\"spreadsheet\",-1,2)"), E(ceValue));
  EXPECT_EQ(Eval("=CODE(CHAR(200))"), V(200));
}

TEST_F(ScalarFamiliesEvaluated, Date) {
  EXPECT_EQ(Eval("=DATE(2024,13,1)"), E(ceValue));
  EXPECT_EQ(Eval("=WEEKDAY(DATE(2024,2,29),3)=WEEKDAY(DATE(2024,2,29),2)"), V(true));
  EXPECT_EQ(Eval("=EDATE(DATE(2024,1,31),1)"), Eval("=DATE(2024,2,29)"));
  EXPECT_EQ(Eval("=DATEVALUE(\"2024-02-29\")"), V(45351));
  EXPECT_EQ(Eval("=YEAR(TODAY())>=2024"), V(true));
}

TEST_F(ScalarFamiliesEvaluated, Financial) {
  EXPECT_EQ(Eval("=PMT(0,10,1000)"), V(-100));
  EXPECT_EQ(Eval("=ROUND(NPV(0.1,A1:B3),6)"), V(4.132231));
  EXPECT_EQ(Eval("=ROUND(IRR(A1:A3),6)"), V(0.133667));
}

}  // namespace
}  // namespace Tabrino
