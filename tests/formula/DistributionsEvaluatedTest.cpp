// The distribution families reached through formulas, on a sheet whose
// A1:A9 and B1:B9 hold two samples and whose C1 holds text.
#include <gtest/gtest.h>

#include <string>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

class DistributionsEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const double First[] = {3, 4, 5, 8, 9, 1, 2, 4, 5};
    const double Second[] = {6, 19, 3, 2, 14, 4, 5, 17, 1};
    for (int Row = 1; Row <= 9; ++Row) {
      Set("A" + std::to_string(Row), V(First[Row - 1]));
      Set("B" + std::to_string(Row), V(Second[Row - 1]));
    }
    Set("C1", V("text"));
  }
  void Set(const std::string& Address, const TCellValue& Value) {
    FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(DistributionsEvaluated, ContinuousAndDiscrete) {
  // Reference values: mpmath 1.3 at 40 digits.
  EXPECT_TRUE(IsNear(Eval("=NORM.S.DIST(-30,TRUE)"), 4.9067139271481871e-198));
  EXPECT_TRUE(IsNear(Eval("=_xlfn.T.DIST.RT(5,1000000)"), 2.8669989354453708e-7));
  EXPECT_TRUE(IsNear(Eval("=BINOM.DIST(6,10,0.5,TRUE)"), 0.828125));
  EXPECT_EQ(Eval("=NORM.S.INV(NORM.S.DIST(0,TRUE))"), V(0));
  EXPECT_EQ(Eval("=CHISQ.DIST(C1,2,TRUE)"), E(ceValue));
  EXPECT_EQ(Eval("=GAMMA(0)"), E(ceNum));
}

TEST_F(DistributionsEvaluated, TestsOverRanges) {
  EXPECT_TRUE(IsNear(Eval("=T.TEST(A1:A9,B1:B9,2,1)"), 1.9601578492528211e-1));
  EXPECT_EQ(Eval("=TTEST(A1:A9,B1:B9,2,1)"), Eval("=T.TEST(A1:A9,B1:B9,2,1)"));
  // C1's text is passed over, as SUM passes it over.
  EXPECT_EQ(Eval("=Z.TEST(A1:C9,4)"), Eval("=Z.TEST(A1:B9,4)"));
}

TEST_F(DistributionsEvaluated, LegacyNames) {
  EXPECT_EQ(Eval("=TDIST(1.96,60,2)"), Eval("=T.DIST.2T(1.96,60)"));
  EXPECT_EQ(Eval("=NORMSDIST(1)"), Eval("=NORM.S.DIST(1,TRUE)"));
  EXPECT_EQ(Eval("=HYPGEOMDIST(1,4,8,20)"), Eval("=HYPGEOM.DIST(1,4,8,20,FALSE)"));
}

}  // namespace
}  // namespace Tabrino
