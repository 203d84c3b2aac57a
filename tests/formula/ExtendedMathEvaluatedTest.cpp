#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// The extended math families reached through formulas on a sheet whose A1:B2
// holds the matrix 4 -1 / 2 0 and whose A3:B3 holds 12 and "x".
class ExtendedMathEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V(4)}, {"B1", V(-1)}, {"A2", V(2)}, {"B2", V(0)}, {"A3", V(12)}, {"B3", V("x")},
    };
    for (const auto& [Address, Value] : Cells) {
      FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
    }
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(ExtendedMathEvaluated, ScalarFunctions) {
  EXPECT_EQ(Eval("=ATAN2(1,1)*4"), V(std::numbers::pi));
  EXPECT_EQ(Eval("=COT(0)"), E(ceDiv0));
  EXPECT_EQ(Eval("=_xlfn.CEILING.MATH(-5.5,2,-1)"), V(-6));
  EXPECT_EQ(Eval("=MROUND(1.3,0.2)"), V(1.4));
  EXPECT_EQ(Eval("=COMBIN(8,2)+FACT(3)"), V(34));
  EXPECT_EQ(Eval("=GCD(A1:A3)"), V(2));
  EXPECT_EQ(Eval("=GCD(A1:B3)"), E(ceNum));  // -1 in B1
}

TEST_F(ExtendedMathEvaluated, NumberSystems) {
  EXPECT_EQ(Eval("=ROMAN(499,1)"), V("LDVLIV"));
  EXPECT_EQ(Eval("=ARABIC(ROMAN(1999,4))"), V(1999));
  EXPECT_EQ(Eval("=DECIMAL(BASE(A3,16,4),16)"), V(12));
  EXPECT_EQ(Eval("=ROMAN(4000)"), E(ceValue));
}

TEST_F(ExtendedMathEvaluated, ArraysInsideFormulas) {
  EXPECT_EQ(Eval("=MDETERM(A1:B2)"), V(2));
  EXPECT_EQ(Eval("=INDEX(MINVERSE(A1:B2),2,2)"), V(2));
  EXPECT_EQ(Eval("=MINVERSE(A1:B2)"), V(0));
  EXPECT_EQ(Eval("=SUM(MMULT(A1:B2,MINVERSE(A1:B2)))"), V(2));
  EXPECT_EQ(Eval("=SUM(MUNIT(3))"), V(3));
  EXPECT_EQ(Eval("=MUNIT(1E9)"), E(ceValue));
  EXPECT_EQ(Eval("=MMULT(A1:B2,A1:A3)"), E(ceValue));
  EXPECT_EQ(Eval("=SUMX2PY2(A1:A2,B1:B2)"), V(21));
  EXPECT_EQ(Eval("=SUM(MAXPOOL(A1:B2,1))"), V(5));
}

// Every function of the extended math families, fed awkward values in every
// argument place, answers with a value: no crash, no hang, and no NaN or
// infinity in a cell.
TEST(ExtendedMathRobustness, AwkwardArgumentsNeverCrashOrLeakNonFiniteNumbers) {
  const double Inf = std::numeric_limits<double>::infinity();
  std::vector<TFormulaArg> Pool;
  for (TCellValue V : {V(0), V(-1), V(0.5), V(3), V(1E300), V(-1E300), V(Inf), V(-Inf), V(std::nan("")), V(""),
                       V("x\xF0\x9F\x98\x80y"), V(true), E(ceNA), Blank()}) {
    Pool.push_back(TFormulaArg::FromScalar(V));
  }
  Pool.push_back(Range({}, 0, 0));
  Pool.push_back(Column({V(-5), V("t"), Blank(), V(7)}));
  Pool.push_back(Range({V(1), V(2), V(3), V(Inf)}, 2, 2));
  Pool.push_back(TFormulaArg::FromLambda(nullptr));
  auto Check = [](const TFunctionDef& Def, const std::vector<TFormulaArg>& Args) {
    TFormulaArg Result = Def.Run(TFunctionCall{Def.Name, Args, TFormulaContext{}});
    for (const TCellValue& V : ArgValues(Result)) {
      if (V.Kind == cvkNumber) {
        EXPECT_TRUE(std::isfinite(V.Number)) << Def.Name;
      }
    }
  };
  for (auto Family : {TrigonometryFunctions(), RoundingFunctions(), CombinatoricsFunctions(), NumberSystemFunctions(),
                      MatrixFunctions(), ArrayTransformFunctions()}) {
    for (const TFunctionDef& Def : Family) {
      size_t Highest = Def.MaxArgs < 0 ? 3 : std::min<size_t>(Def.MaxArgs, 3);
      for (size_t Arity = Def.MinArgs; Arity <= Highest; ++Arity) {
        std::vector<size_t> Pick(Arity, 0);
        while (true) {
          std::vector<TFormulaArg> Args;
          for (size_t P : Pick) Args.push_back(Pool[P]);
          Check(Def, Args);
          size_t Place = 0;
          while (Place < Arity && ++Pick[Place] == Pool.size()) Pick[Place++] = 0;
          if (Place == Arity) break;
        }
      }
    }
  }
}

}  // namespace
}  // namespace Tabrino
