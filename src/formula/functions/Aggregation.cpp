// AGGREGATE, which runs one of nineteen functions over its references with
// errors and nested subtotals optionally left out, and PERCENTOF.
//
// Hidden rows are not modelled: the options that skip them skip nothing.

#include <array>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {

namespace {

// AGGREGATE's function numbers, 1 to 19. From 14 on the function takes an
// array and k.
constexpr std::array<std::string_view, 19> AggregateFunctionNames = {
    "AVERAGE",      "COUNT",          "COUNTA",      "MAX",    "MIN",       "PRODUCT", "STDEV.S", "STDEV.P",
    "SUM",          "VAR.S",          "VAR.P",       "MEDIAN", "MODE.SNGL", "LARGE",   "SMALL",   "PERCENTILE.INC",
    "QUARTILE.INC", "PERCENTILE.EXC", "QUARTILE.EXC"};
constexpr int FirstArrayFunction = 14;

// Options 0 to 3 leave out cells whose formulas hold SUBTOTAL or AGGREGATE;
// 2, 3, 6 and 7 leave out errors.
bool SkipsNestedTotals(int Options) {
  return Options <= 3;
}
bool SkipsErrors(int Options) {
  return Options == 2 || Options == 3 || Options == 6 || Options == 7;
}

// Whether the cell at an argument's place holds a formula that totals.
class TNestedTotals {
 public:
  TNestedTotals() = default;  // finds none
  TNestedTotals(const TFormulaArg& Arg, const TFormulaContext& Context) {
    if (!Arg.HasOrigin || !Context.Workbook) return;
    FSheet = Context.Workbook->GetSheet(Arg.OriginSheetIndex >= 0 ? Arg.OriginSheetIndex : Context.SheetIndex);
    FCol = Arg.OriginCol;
    FRow = Arg.OriginRow;
    FCols = Arg.IsRange ? Arg.ColCount : 1;
  }

  bool At(size_t Index) const {
    if (!FSheet || FCols < 1) return false;
    const TStoredCell* Cell =
        FSheet->FindCell(FCol + int32_t(Index % size_t(FCols)), FRow + int32_t(Index / size_t(FCols)));
    if (!Cell || Cell->Kind() != cvkFormula) return false;
    const std::string Formula = UpperAscii(Cell->Formula());
    return Formula.find("SUBTOTAL(") != std::string::npos || Formula.find("AGGREGATE(") != std::string::npos;
  }

 private:
  const TWorksheet* FSheet = nullptr;
  int32_t FCol = 0, FRow = 0, FCols = 0;
};

// The argument with the cells the options leave out made empty. An error the
// options do not leave out ends the call: it is returned in Error.
TFormulaArg Filtered(const TFormulaArg& Arg, int Options, const TFormulaContext& Context, TCellValue& Error) {
  const TNestedTotals Nested = SkipsNestedTotals(Options) ? TNestedTotals(Arg, Context) : TNestedTotals();
  std::span<const TCellValue> Values = ArgValues(Arg);
  std::vector<TCellValue> Kept(Values.begin(), Values.end());
  for (size_t I = 0; I < Kept.size(); ++I) {
    if (Nested.At(I)) {
      Kept[I] = {};
    } else if (Kept[I].Kind == cvkError) {
      if (!SkipsErrors(Options)) {
        Error = Kept[I];
        return {};
      }
      Kept[I] = {};
    }
  }
  if (!Arg.IsRange) {
    TFormulaArg Scalar = Arg;
    Scalar.Scalar = Kept.empty() ? TCellValue{} : Kept.front();
    return Scalar;
  }
  TFormulaArg Range = TFormulaArg::FromRange(std::move(Kept), Arg.RowCount, Arg.ColCount);
  Range.HasOrigin = Arg.HasOrigin;
  Range.OriginCol = Arg.OriginCol;
  Range.OriginRow = Arg.OriginRow;
  Range.OriginSheetIndex = Arg.OriginSheetIndex;
  return Range;
}

TCellValue Aggregate(const TFunctionCall& Call) {
  double Function, Options = 0;
  if (!ArgInteger(Call[0], Function) || !(Function >= 1 && Function <= 19)) return Err(ceValue);
  if (!ArgOmitted(Call, 1) && (!ArgInteger(Call[1], Options) || !(Options >= 0 && Options <= 7))) return Err(ceValue);
  const bool ArrayForm = Function >= FirstArrayFunction;
  if (ArrayForm && Call.Count() != 4) return Err(ceValue);

  std::vector<TFormulaArg> Args;
  const size_t LastData = ArrayForm ? 2 : Call.Count() - 1;  // k is no data
  for (size_t I = 2; I < Call.Count(); ++I) {
    if (I > LastData) {
      Args.push_back(Call[I]);
      continue;
    }
    TCellValue Error;
    Args.push_back(Filtered(Call[I], int(Options), Call.Context, Error));
    if (Error.Kind == cvkError) return Error;
  }
  return RunFunction(AggregateFunctionNames[size_t(Function) - 1], Args, Call.Context).First();
}

// The share the first set's sum has in the second's, each summed as SUM does.
TCellValue PercentOf(const TFunctionCall& Call) {
  auto SumOf = [](const TFormulaArg& Arg) {
    double Sum = 0;
    for (const TCellValue& V : ArgValues(Arg))
      if (V.Kind == cvkNumber) Sum += V.Number;
    return Sum;
  };
  const double Total = SumOf(Call[1]);
  if (Total == 0) return Err(ceDiv0);
  return FiniteNum(SumOf(Call[0]) / Total);
}

}  // namespace

std::span<const TFunctionDef> AggregationFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"AGGREGATE", 3, -1, fnNone, Aggregate},
      {"PERCENTOF", 2, 2, fnNone, PercentOf},
  };
  return Table;
}

}  // namespace Tabrino
