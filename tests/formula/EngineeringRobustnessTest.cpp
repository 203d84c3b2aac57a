#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Awkward values in every argument place: nothing of these families may
// crash, hang, or hand a NaN or an infinity to a cell.
TEST(EngineeringFamilies, AwkwardArgumentsNeverCrashOrLeakNonFiniteNumbers) {
  const double Inf = std::numeric_limits<double>::infinity();
  std::vector<TFormulaArg> Pool;
  for (TCellValue Value : {V(0), V(-1), V(0.5), V(1E300), V(-1E300), V(Inf), V(std::nan("")), V(1e-310), V(""),
                           V("1e999i"), V("-i"), V("ff"), V(true), E(ceNA), Blank()})
    Pool.push_back(TFormulaArg::FromScalar(Value));
  Pool.push_back(Range({}, 0, 0));
  Pool.push_back(Range({V("a"), V("b"), V(1), V(2)}, 2, 2));
  for (auto Family : {EngineeringFunctions(), BesselFunctions(), UnitConversionFunctions(), ComplexFunctions(),
                      DatabaseFunctions()}) {
    for (const TFunctionDef& Def : Family) {
      size_t Arity = static_cast<size_t>(Def.MinArgs);
      std::vector<size_t> Pick(Arity, 0);
      // Every combination of pool values over the required places.
      for (;;) {
        std::vector<TFormulaArg> Args;
        for (size_t P : Pick) Args.push_back(Pool[P]);
        TCellValue R = Def.Run(TFunctionCall{Def.Name, Args, TFormulaContext{}}).First();
        if (R.Kind == cvkNumber) {
          EXPECT_TRUE(std::isfinite(R.Number)) << Def.Name;
        }
        size_t I = 0;
        while (I < Arity && ++Pick[I] == Pool.size()) Pick[I++] = 0;
        if (I == Arity) break;
      }
    }
  }
}

}  // namespace
}  // namespace Tabrino
