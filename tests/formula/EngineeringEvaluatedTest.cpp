#include <gtest/gtest.h>

#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// The engineering, complex, unit and database families reached through
// formulas, on a sheet with a small database in A1:C4 and criteria in E1:F2.
class EngineeringEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V("Item")}, {"B1", V("Qty")}, {"C1", V("Price")},  //
        {"A2", V("bolt")}, {"B2", V(10)},    {"C2", V(0.5)},      //
        {"A3", V("nut")},  {"B3", V(20)},    {"C3", V(0.25)},     //
        {"A4", V("bolt")}, {"B4", V(5)},     {"C4", V(0.75)},     //
        {"E1", V("item")}, {"F1", V("Qty")},                      //
        {"E2", V("bolt")}, {"F2", V(">6")},                       //
        {"H1", V("3+4i")}, {"H2", V("1-i")},
    };
    for (const auto& [Address, Value] : Cells)
      FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(EngineeringEvaluated, BasesBitsAndErrorFunction) {
  EXPECT_EQ(Eval("=BIN2HEX(\"11111011\",4)"), V("00FB"));
  EXPECT_EQ(Eval("=HEX2DEC(DEC2HEX(-54))"), V(-54));
  EXPECT_EQ(Eval("=BITXOR(BITLSHIFT(1,4),1)"), V(17));
  EXPECT_EQ(Eval("=DEC2BIN(512)"), E(ceNum));
  EXPECT_TRUE(IsNear(Eval("=ERF(0,1.5)"), 0.96610514647531072707));
  EXPECT_TRUE(IsNear(Eval("=BESSELJ(1.9,2)"), 0.32992572769238723738));
}

TEST_F(EngineeringEvaluated, ComplexAndUnits) {
  EXPECT_EQ(Eval("=IMSUM(H1:H2)"), V("4+3i"));
  EXPECT_EQ(Eval("=IMPRODUCT(H1,H2)"), V("7+i"));
  EXPECT_EQ(Eval("=IMABS(H1)"), V(5));
  EXPECT_EQ(Eval("=COMPLEX(IMREAL(H1),-IMAGINARY(H1),\"j\")"), V("3-4j"));
  EXPECT_EQ(Eval("=CONVERT(68,\"F\",\"C\")"), V(20));
  EXPECT_EQ(Eval("=CONVERT(1,\"mi\",\"kg\")"), E(ceNA));
}

TEST_F(EngineeringEvaluated, DatabaseOverSheetRanges) {
  EXPECT_EQ(Eval("=DSUM(A1:C4,\"Qty\",E1:F2)"), V(10));
  EXPECT_EQ(Eval("=DCOUNT(A1:C4,2,E1:E2)"), V(2));
  EXPECT_EQ(Eval("=DCOUNT(A1:C4,Z99,E1:E2)"), E(ceValue));
  EXPECT_EQ(Eval("=DGET(A1:C4,\"Price\",E1:F2)"), V(0.5));
  EXPECT_EQ(Eval("=DGET(A1:C4,\"Price\",E1:E2)"), E(ceNum));
  EXPECT_EQ(Eval("=DMAX(A1:C4,\"Price\",E1:E2)"), V(0.75));
}

}  // namespace
}  // namespace Tabrino
