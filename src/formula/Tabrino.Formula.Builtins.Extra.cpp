#include "Tabrino.Formula.Builtins.Extra.h"

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

const std::vector<std::span<const TFunctionDef>>& ExtraFunctionFamilies() {
  static const std::vector<std::span<const TFunctionDef>> Families = {StatisticalFunctions(), RankingFunctions(), RegressionFunctions(), ForecastEtsFunctions(), AggregationFunctions(), StatisticalCompatibilityFunctions(),DateDifferenceFunctions(), CalendarFunctions(), WorkingDayFunctions(), CouponFunctions(), SecurityFunctions(), OddCouponFunctions(), DepreciationFunctions(), CashflowFunctions(), LookupSearchFunctions(), AddressingFunctions(), CellInfoFunctions(), TextSplittingFunctions(), NumberTextFunctions(), TextConversionFunctions(), DoubleByteTextFunctions(), WebFunctions(), UnavailableFunctions(), EuroConvertFunctions(), CellStylingFunctions(), TrigonometryFunctions(), RoundingFunctions(), CombinatoricsFunctions(),
      NumberSystemFunctions(), MatrixFunctions(), ArrayTransformFunctions(), ArrayFunctions(), ArrayShapeFunctions(), QueryFunctions(), RegexFunctions(), EngineeringFunctions(), BesselFunctions(), UnitConversionFunctions(), ComplexFunctions(), DatabaseFunctions(), DistributionFunctions(), DiscreteDistributionFunctions(), HypothesisTestFunctions(), DistributionCompatibilityFunctions(), };
  return Families;
}

const TFunctionDef* FindExtraFunction(std::string_view CanonicalName) {
  static const TFunctionIndex Index = BuildFunctionIndex(ExtraFunctionFamilies());
  auto It = Index.find(CanonicalName);
  return It == Index.end() ? nullptr : It->second;
}

bool TryEvaluateExtra(std::string_view Name, std::span<const TFormulaArg> Args, const TFormulaContext& Context,
                      TCellValue& Value) {
  const TFunctionDef* Def = FindExtraFunction(CanonicalFunctionName(Name));
  if (!Def) return false;
  Value = Def->AcceptsCount(Args.size()) ? Def->Run(TFunctionCall{Def->Name, Args, Context}).First()
                                          : TCellValue::FromError(ceValue);
  return true;
}

}  // namespace Tabrino
