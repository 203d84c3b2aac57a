#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// Awkward values for every argument place, references among them (one to a
// sheet that does not exist): no function of the text, reference,
// information, web and provider-less families may crash, hang or put a NaN
// or an infinity into a cell.
std::vector<TFormulaArg> AwkwardArgs() {
  const double Inf = std::numeric_limits<double>::infinity();
  std::vector<TFormulaArg> Args;
  for (TCellValue V : {V(0), V(-1), V(2.5), V(1E300), V(-Inf), V(std::nan("")), V(""), V("a,b;c x\xF0\x9F\x98\x80"),
                       V("\xFF\xFE"), V("<r><i>1</i></r>"), V(true), E(ceNA), Blank()}) {
    Args.push_back(TFormulaArg::FromScalar(V));
  }
  Args.push_back(Range({}, 0, 0));
  Args.push_back(Referenced(Column({V(-5), V("t"), Blank(), V(7)}), 2, 3));
  TFormulaArg Elsewhere = Referenced(TFormulaArg::FromScalar(V(1)), MaxCol, MaxRow);
  Elsewhere.OriginSheetIndex = 5;
  Args.push_back(Elsewhere);
  Args.push_back(TFormulaArg::FromLambda(nullptr));
  return Args;
}

void CheckFinite(const TFormulaArg& Result, const char* Name) {
  if (!Result.IsRange) {
    if (Result.Scalar.Kind == cvkNumber) {
      EXPECT_TRUE(std::isfinite(Result.Scalar.Number)) << Name;
    }
    return;
  }
  EXPECT_EQ(Result.Cells.size(), size_t(Result.RowCount) * Result.ColCount) << Name;
  for (const TCellValue& V : Result.Cells) {
    if (V.Kind == cvkNumber) {
      EXPECT_TRUE(std::isfinite(V.Number)) << Name;
    }
  }
}

bool CarriesNonFinite(const TFormulaArg& Arg) {
  auto NonFinite = [](const TCellValue& V) { return V.Kind == cvkNumber && !std::isfinite(V.Number); };
  return Arg.IsRange ? std::any_of(Arg.Cells.begin(), Arg.Cells.end(), NonFinite) : NonFinite(Arg.Scalar);
}

void CallEveryCombination(const TFunctionDef& Def, const std::vector<TFormulaArg>& Pool, std::vector<TFormulaArg>& Args,
                          size_t Arity, const TFormulaContext& Context) {
  if (Args.size() == Arity) {
    TFormulaArg Result = Def.Run(TFunctionCall{Def.Name, Args, Context});
    // A lookup may hand back a value it was given; only made-up ones count.
    if (!std::any_of(Args.begin(), Args.end(), CarriesNonFinite)) CheckFinite(Result, Def.Name);
    return;
  }
  for (const TFormulaArg& A : Pool) {
    Args.push_back(A);
    CallEveryCombination(Def, Pool, Args, Arity, Context);
    Args.pop_back();
  }
}

TEST(ReferenceTextFamilies, AwkwardArgumentsNeverCrashOrLeakNonFiniteNumbers) {
  TWorkbook Book;
  Book.GetSheet(0)->SetCell(TCellAddress::FromA1("B3"), TCell::WithValue(TCellValue::FromFormula("=1")));
  TFormulaContext WithBook = EvaluatedAt(2, 2);
  WithBook.Workbook = &Book;
  WithBook.Sheet = Book.GetSheet(0);
  WithBook.StyleSheet = &Book.FStyleSheet;
  std::vector<TFormulaArg> Pool = AwkwardArgs();
  for (auto Family : {LookupSearchFunctions(), AddressingFunctions(), CellInfoFunctions(), TextSplittingFunctions(),
                      NumberTextFunctions(), TextConversionFunctions(), DoubleByteTextFunctions(), WebFunctions(),
                      UnavailableFunctions(), EuroConvertFunctions(), CellStylingFunctions()}) {
    for (const TFunctionDef& Def : Family) {
      // Three argument places cover every rule; later ones only repeat them.
      size_t Highest = Def.MaxArgs < 0 ? 3 : std::min<size_t>(Def.MaxArgs, 3);
      for (size_t Arity = Def.MinArgs; Arity <= Highest; ++Arity) {
        const TFormulaContext* Contexts[] = {&WithBook, nullptr};
        for (const TFormulaContext* Context : Contexts) {
          TFormulaContext Empty;
          std::vector<TFormulaArg> Args;
          CallEveryCombination(Def, Pool, Args, Arity, Context ? *Context : Empty);
        }
      }
    }
  }
}

}  // namespace
}  // namespace Tabrino
