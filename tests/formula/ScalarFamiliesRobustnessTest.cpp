#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Awkward values for every argument place: no function of these families may
// crash, hang, or hand a NaN or an infinity to a cell, whatever it is given.
std::vector<TFormulaArg> AwkwardArgs() {
  const double Inf = std::numeric_limits<double>::infinity();
  std::vector<TFormulaArg> Args;
  for (TCellValue V : {V(0), V(-1), V(0.5), V(1E300), V(-1E300), V(Inf), V(-Inf), V(std::nan("")), V(255), V(""),
                       V("x\xF0\x9F\x98\x80y"), V("\xFF\xFE"), V(true), E(ceNA), Blank()}) {
    Args.push_back(TFormulaArg::FromScalar(V));
  }
  Args.push_back(Range({}, 0, 0));
  Args.push_back(Column({V(-5), V("t"), Blank(), V(7)}));
  Args.push_back(TFormulaArg::FromLambda(nullptr));
  return Args;
}

void CallEveryCombination(const TFunctionDef& Def, const std::vector<TFormulaArg>& Pool, std::vector<TFormulaArg>& Args,
                          size_t Arity) {
  if (Args.size() == Arity) {
    TCellValue R = EvaluateFunction(Def.Name, Args, TFormulaContext{});
    if (R.Kind == cvkNumber) {
      EXPECT_TRUE(std::isfinite(R.Number)) << Def.Name;
    }
    return;
  }
  for (const TFormulaArg& A : Pool) {
    Args.push_back(A);
    CallEveryCombination(Def, Pool, Args, Arity);
    Args.pop_back();
  }
}

TEST(ScalarFamilies, AwkwardArgumentsNeverCrashOrLeakNonFiniteNumbers) {
  std::vector<TFormulaArg> Pool = AwkwardArgs();
  for (auto Family : {MathFunctions(), TextFunctions(), DateFunctions(), FinancialFunctions()}) {
    for (const TFunctionDef& Def : Family) {
      // Three argument places cover every rule; later ones only repeat them.
      size_t Highest = Def.MaxArgs < 0 ? 3 : std::min<size_t>(Def.MaxArgs, 3);
      for (size_t Arity = Def.MinArgs; Arity <= Highest; ++Arity) {
        std::vector<TFormulaArg> Args;
        CallEveryCombination(Def, Pool, Args, Arity);
      }
    }
  }
}

}  // namespace
}  // namespace Tabrino
