// Every extended date and financial function against awkward arguments:
// huge and tiny numbers, negative dates, text, booleans, errors, empty and
// mixed ranges. Nothing may crash (the sanitizers watch), hang, or put an
// infinity or NaN in a cell.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

std::vector<TFormulaArg> AwkwardValues() {
  std::vector<TFormulaArg> Values;
  for (TCellValue V : {V(1E308), V(-1E308), V(0), V(-1), V(1E-300), V(0.5), V(2), V(4), V(45000), V(2958465),
                       V(-693593), V("x"), V(""), V("2020-02-29"), V("0000011"), V(true), E(ceNA), Blank()}) {
    Values.push_back(TFormulaArg::FromScalar(V));
  }
  Values.push_back(Range({}, 0, 0));
  Values.push_back(Column({V(-100), V("t"), Blank(), V(50), V(80)}));
  Values.push_back(Column({V(40000), V(39000), V(41000), V(40500), V(40001)}));
  return Values;
}

TEST(DateFinanceRobustness, AwkwardArgumentsGiveValuesOrErrors) {
  const std::vector<TFormulaArg> Values = AwkwardValues();
  const std::span<const TFunctionDef> Families[] = {
      DateDifferenceFunctions(), CalendarFunctions(),  WorkingDayFunctions(),   CouponFunctions(),
      SecurityFunctions(),       OddCouponFunctions(), DepreciationFunctions(), CashflowFunctions()};
  uint64_t Seed = 12345;
  auto NextIndex = [&Seed](size_t Count) {
    Seed = Seed * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<size_t>((Seed >> 33) % Count);
  };
  for (std::span<const TFunctionDef> Family : Families) {
    for (const TFunctionDef& Def : Family) {
      int MaxCount = Def.MaxArgs < 0 ? Def.MinArgs + 3 : std::min<int>(Def.MaxArgs, Def.MinArgs + 3);
      for (int Count = Def.MinArgs; Count <= MaxCount; ++Count) {
        for (int Round = 0; Round < 150; ++Round) {
          std::vector<TFormulaArg> Args;
          for (int I = 0; I < Count; ++I) Args.push_back(Values[NextIndex(Values.size())]);
          TCellValue Result = Dispatch(Def.Name, Args, {});
          if (Result.Kind == cvkNumber) {
            ASSERT_TRUE(std::isfinite(Result.Number)) << Def.Name << " with " << Count << " arguments";
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace Tabrino
