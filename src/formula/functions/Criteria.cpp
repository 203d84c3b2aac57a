// The conditional aggregates, over the shared criteria matcher
// (Tabrino.Formula.Criterion.h); ranges tested again and again are answered
// from an index (Tabrino.Formula.CriteriaIndex.h).

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.CriteriaIndex.h"
#include "Tabrino.Formula.Criterion.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// Pairs Tested with Summed by index over the shorter of the two; only cells
// that hold numbers are added.
TMatchTotals SumWhere(std::span<const TCellValue> Tested, const TCriterion& Criterion,
                      std::span<const TCellValue> Summed) {
  TMatchTotals Totals;
  size_t Extent = std::min(Tested.size(), Summed.size());
  for (size_t I = 0; I < Extent; ++I) {
    const TCellValue& V = Summed[I];
    if (V.Kind == cvkNumber && Criterion.Matches(Tested[I])) {
      Totals.Sum += V.Number;
      ++Totals.Count;
    }
  }
  return Totals;
}

// The index of the call's tested range (and summed one), when the evaluator
// keeps one for it.
const TCriteriaIndex* IndexFor(const TFunctionCall& Call, const TFormulaArg* Summed) {
  return Call.Context.CriteriaIndexes ? Call.Context.CriteriaIndexes->For(Call[0], Summed) : nullptr;
}

// SUMIF and AVERAGEIF add the optional third argument, else the tested range itself.
TMatchTotals SumIfTotals(const TFunctionCall& Call) {
  const TCriterion Criterion(Call[1]);
  const TFormulaArg& Summed = Call.Count() > 2 ? Call[2] : Call[0];
  TMatchTotals Totals;
  if (const TCriteriaIndex* Index = IndexFor(Call, &Summed); Index && Index->TrySum(Criterion, Totals)) return Totals;
  return SumWhere(ArgValues(Call[0]), Criterion, ArgValues(Summed));
}

TCellValue CountIf(const TFunctionCall& Call) {
  const TCriterion Criterion(Call[1]);
  double Count = 0;
  if (const TCriteriaIndex* Index = IndexFor(Call, nullptr); Index && Index->TryCount(Criterion, Count))
    return Num(Count);
  for (const TCellValue& V : ArgValues(Call[0]))
    if (Criterion.Matches(V)) ++Count;
  return Num(Count);
}

TCellValue SumIf(const TFunctionCall& Call) {
  return Num(SumIfTotals(Call).Sum);
}

TCellValue AverageIf(const TFunctionCall& Call) {
  const TMatchTotals Totals = SumIfTotals(Call);
  return Totals.Count > 0 ? Num(Totals.Sum / Totals.Count) : Err(ceDiv0);
}

TCellValue SumIfs(const TFunctionCall& Call) {
  TCriteriaSet Criteria(Call.Args.subspan(1), Call[0]);
  if (!Criteria.Valid()) return Err(ceValue);
  std::span<const TCellValue> Summed = ArgValues(Call[0]);
  double Sum = 0;
  for (size_t I = 0; I < Summed.size(); ++I)
    if (Summed[I].Kind == cvkNumber && Criteria.Matches(I)) Sum += Summed[I].Number;
  return Num(Sum);
}

TCellValue CountIfs(const TFunctionCall& Call) {
  TCriteriaSet Criteria(Call.Args, Call[0]);
  if (!Criteria.Valid()) return Err(ceValue);
  size_t Extent = ArgValues(Call[0]).size();
  double Count = 0;
  for (size_t I = 0; I < Extent; ++I)
    if (Criteria.Matches(I)) ++Count;
  return Num(Count);
}

}  // namespace

std::span<const TFunctionDef> CriteriaFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"SUMIF", 2, 3, fnNone, SumIf},        {"COUNTIF", 2, 2, fnNone, CountIf},     {"SUMIFS", 3, -1, fnNone, SumIfs},
      {"COUNTIFS", 2, -1, fnNone, CountIfs}, {"AVERAGEIF", 2, 3, fnNone, AverageIf},
  };
  return Table;
}

}  // namespace Tabrino
