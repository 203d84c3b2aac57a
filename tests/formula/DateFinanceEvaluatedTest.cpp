// The extended date and financial families through formulas on a sheet:
// argument ranges, array literals and dates typed as text as the evaluator
// hands them over.
#include <gtest/gtest.h>

#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// A1:A5 cash flows, B1:B5 their dates out of order, C1:C2 holidays.
class DateFinanceEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V(-10000)},
        {"A2", V(3250)},
        {"A3", V(2750)},
        {"A4", V(4250)},
        {"A5", V(2750)},
        {"B1", V(EncodeDate(2008, 1, 1))},
        {"B2", V(EncodeDate(2009, 2, 15))},
        {"B3", V(EncodeDate(2008, 3, 1))},
        {"B4", V(EncodeDate(2008, 10, 30))},
        {"B5", V(EncodeDate(2009, 4, 1))},
        {"C1", V(EncodeDate(2008, 11, 26))},
        {"C2", V("2008-12-04")},
    };
    for (const auto& [Address, Value] : Cells) {
      FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
    }
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(DateFinanceEvaluated, DatedCashFlowsFromRanges) {
  EXPECT_TRUE(IsNear(Eval("=XNPV(0.09,A1:A5,B1:B5)"), 2086.6476020315367));
  EXPECT_TRUE(IsNear(Eval("=XIRR(A1:A5,B1:B5)"), 0.37336253351883151, 1E-10));
  EXPECT_EQ(Eval("=XIRR(A1:A5,B1:B4)"), E(ceNum));
}

TEST_F(DateFinanceEvaluated, WorkingDaysWithHolidayRange) {
  EXPECT_EQ(Eval("=WORKDAY(DATE(2008,10,1),151,C1:C2)"), V(EncodeDate(2009, 5, 4)));
  EXPECT_EQ(Eval("=NETWORKDAYS.INTL(DATE(2006,1,1),DATE(2006,2,1),\"0010001\",{\"2006/1/2\",\"2006/1/16\"})"), V(20));
  EXPECT_EQ(Eval("=WORKDAY.INTL(DATE(2012,1,1),30,\"1111111\")"), E(ceValue));
}

TEST_F(DateFinanceEvaluated, DatesAndBonds) {
  EXPECT_EQ(Eval("=DATEDIF(\"2001-06-01\",\"2002-08-15\",\"YD\")"), V(75));
  EXPECT_EQ(Eval("=DAYS360(\"2008-02-29\",\"2008-08-31\")"), V(180));
  EXPECT_TRUE(IsNear(Eval("=YEARFRAC(DATE(2012,1,1),DATE(2012,7,30),1)"), 0.57650273224043716));
  EXPECT_TRUE(IsNear(Eval("=PRICE(DATE(2008,2,15),DATE(2017,11,15),0.0575,0.065,100,2,0)"), 94.634361621322099));
  EXPECT_EQ(Eval("=COUPNCD(DATE(2011,1,25),DATE(2011,11,15),2,1)"), V(EncodeDate(2011, 5, 15)));
  EXPECT_TRUE(IsNear(Eval("=ACCRINT(DATE(2008,3,1),DATE(2008,8,31),DATE(2008,5,1),0.1,1000,2)"), 16.666666666666668));
  // A reference to an empty cell is no omitted par: 0 is out of range.
  EXPECT_EQ(Eval("=ACCRINT(DATE(2008,3,1),DATE(2008,8,31),DATE(2008,5,1),0.1,D1,2)"), E(ceNum));
  EXPECT_EQ(Eval("=STOCKHISTORY(\"MSFT\",DATE(2020,1,1))"), E(ceNA));
}

}  // namespace
}  // namespace Tabrino
