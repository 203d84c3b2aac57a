// Descriptive statistics: averages and extremes of the "A" kind, deviations,
// variances, moments, the conditional extremes and COUNTUNIQUE. Numbers are
// gathered by the rules of Tabrino.Formula.Sample.h.

#include <absl/container/flat_hash_set.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "Tabrino.Formula.Criterion.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Sample.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

TCellValue AverageOrDiv0(std::span<const double> Values) {
  return Values.empty() ? Err(ceDiv0) : Num(MeanOf(Values));
}

// With nothing to compare the extremes are 0, as for MAX and MIN.
template <bool Largest>
TCellValue Extreme(std::span<const double> Values) {
  if (Values.empty()) return Num(0);
  return Num(Largest ? *std::max_element(Values.begin(), Values.end())
                     : *std::min_element(Values.begin(), Values.end()));
}

template <TVarianceKind Kind>
TCellValue Variance(std::span<const double> Values) {
  return VarianceOf(Values, Kind);
}

template <TVarianceKind Kind>
TCellValue Stdev(std::span<const double> Values) {
  return StdevOf(Values, Kind);
}

TCellValue DevSq(std::span<const double> Values) {
  return Values.empty() ? Err(ceNum) : Num(SumSquaredDeviations(Values));
}

TCellValue AveDev(std::span<const double> Values) {
  if (Values.empty()) return Err(ceNum);
  const double Mean = MeanOf(Values);
  std::vector<double> Deviations;
  Deviations.reserve(Values.size());
  for (double X : Values) Deviations.push_back(std::fabs(X - Mean));
  return Num(MeanOf(Deviations));
}

// Through logarithms, so that a long list of large numbers does not overflow
// on the way to its mean.
TCellValue GeoMean(std::span<const double> Values) {
  if (Values.empty()) return Err(ceNum);
  std::vector<double> Logs;
  Logs.reserve(Values.size());
  for (double X : Values) {
    if (!(X > 0)) return Err(ceNum);
    Logs.push_back(std::log(X));
  }
  return FiniteNum(std::exp(MeanOf(Logs)));
}

TCellValue HarMean(std::span<const double> Values) {
  if (Values.empty()) return Err(ceNum);
  std::vector<double> Reciprocals;
  Reciprocals.reserve(Values.size());
  for (double X : Values) {
    if (!(X > 0)) return Err(ceNum);
    Reciprocals.push_back(1 / X);
  }
  return FiniteNum(double(Values.size()) / SumOf(Reciprocals));
}

// The sum of the Power-th powers of the deviations from the mean, each
// measured in standard deviations of the given kind. Skewness and kurtosis
// need a spread to divide by: fewer values than MinCount, or values that are
// all equal, give #DIV/0!.
bool StandardizedPowerSum(std::span<const double> Values, size_t MinCount, TVarianceKind Kind, int Power, double& Sum) {
  TCellValue Spread = StdevOf(Values, Kind);
  if (Values.size() < MinCount || Spread.Kind != cvkNumber || Spread.Number == 0) return false;
  const double Mean = MeanOf(Values);
  std::vector<double> Terms;
  Terms.reserve(Values.size());
  for (double X : Values) Terms.push_back(std::pow((X - Mean) / Spread.Number, Power));
  Sum = SumOf(Terms);
  return true;
}

TCellValue Skew(std::span<const double> Values) {
  double Sum;
  if (!StandardizedPowerSum(Values, 3, vkSample, 3, Sum)) return Err(ceDiv0);
  const double N = double(Values.size());
  return Num(N / ((N - 1) * (N - 2)) * Sum);
}

TCellValue SkewP(std::span<const double> Values) {
  double Sum;
  if (!StandardizedPowerSum(Values, 3, vkPopulation, 3, Sum)) return Err(ceDiv0);
  return Num(Sum / double(Values.size()));
}

// Excess kurtosis of a sample.
TCellValue Kurt(std::span<const double> Values) {
  double Sum;
  if (!StandardizedPowerSum(Values, 4, vkSample, 4, Sum)) return Err(ceDiv0);
  const double N = double(Values.size());
  const double Scale = N * (N + 1) / ((N - 1) * (N - 2) * (N - 3));
  const double Correction = 3 * (N - 1) * (N - 1) / ((N - 2) * (N - 3));
  return Num(Scale * Sum - Correction);
}

TCellValue Standardize(const TFunctionCall& Call) {
  double X, Mean, Deviation;
  if (!ArgNumber(Call[0], X) || !ArgNumber(Call[1], Mean) || !ArgNumber(Call[2], Deviation)) return Err(ceValue);
  if (!(Deviation > 0)) return Err(ceNum);
  return FiniteNum((X - Mean) / Deviation);
}

TCellValue Fisher(const TFunctionCall& Call) {
  double X;
  if (!ArgNumber(Call[0], X)) return Err(ceValue);
  if (!(X > -1 && X < 1)) return Err(ceNum);
  return Num(std::atanh(X));
}

TCellValue FisherInv(const TFunctionCall& Call) {
  double Y;
  if (!ArgNumber(Call[0], Y)) return Err(ceValue);
  return Num(std::tanh(Y));
}

// Distinct values among all arguments. Empty cells and errors do not count;
// texts that differ only in case are one value, as everywhere else, and a
// number is never the same value as a text or a boolean.
TCellValue CountUnique(const TFunctionCall& Call) {
  absl::flat_hash_set<double> Numbers;
  absl::flat_hash_set<std::string> Texts;
  bool Booleans[2] = {false, false};
  ForEachFlat(Call.Args, [&](const TCellValue& V) {
    switch (V.Kind) {
      case cvkNumber:
        if (!std::isnan(V.Number)) Numbers.insert(V.Number);
        break;
      case cvkText: Texts.insert(UpperAscii(V.Text)); break;
      case cvkBoolean: Booleans[V.BooleanValue] = true; break;
      default: break;
    }
  });
  return Num(double(Numbers.size() + Texts.size() + Booleans[0] + Booleans[1]));
}

// The number cells of the first range whose places pass every criterion.
// Ranges of another shape than the first, or a criterion without its range,
// give #VALUE!.
bool MatchedNumbers(const TFunctionCall& Call, std::vector<double>& Numbers) {
  TCriteriaSet Criteria(Call.Args.subspan(1), Call[0]);
  if (!Criteria.Valid()) return false;
  std::span<const TCellValue> Cells = ArgValues(Call[0]);
  for (size_t I = 0; I < Cells.size(); ++I)
    if (Cells[I].Kind == cvkNumber && Criteria.Matches(I)) Numbers.push_back(Cells[I].Number);
  return true;
}

TCellValue AverageIfs(const TFunctionCall& Call) {
  std::vector<double> Numbers;
  if (!MatchedNumbers(Call, Numbers)) return Err(ceValue);
  return Numbers.empty() ? Err(ceDiv0) : Num(MeanOf(Numbers));
}

// MAXIFS and MINIFS give 0 when no cell matches.
template <bool Largest>
TCellValue ExtremeIfs(const TFunctionCall& Call) {
  std::vector<double> Numbers;
  if (!MatchedNumbers(Call, Numbers)) return Err(ceValue);
  if (Numbers.empty()) return Num(0);
  return Num(Largest ? *std::max_element(Numbers.begin(), Numbers.end())
                     : *std::min_element(Numbers.begin(), Numbers.end()));
}

}  // namespace

std::span<const TFunctionDef> StatisticalFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"AVERAGEA", 1, -1, fnNone, OverSample<AverageOrDiv0, srValues>},
      {"MAXA", 1, -1, fnNone, OverSample<Extreme<true>, srValues>},
      {"MINA", 1, -1, fnNone, OverSample<Extreme<false>, srValues>},
      {"VAR.S", 1, -1, fnNone, OverSample<Variance<vkSample>>},
      {"VAR.P", 1, -1, fnNone, OverSample<Variance<vkPopulation>>},
      {"VARA", 1, -1, fnNone, OverSample<Variance<vkSample>, srValues>},
      {"VARPA", 1, -1, fnNone, OverSample<Variance<vkPopulation>, srValues>},
      {"STDEV.S", 1, -1, fnNone, OverSample<Stdev<vkSample>>},
      {"STDEV.P", 1, -1, fnNone, OverSample<Stdev<vkPopulation>>},
      {"STDEVA", 1, -1, fnNone, OverSample<Stdev<vkSample>, srValues>},
      {"STDEVPA", 1, -1, fnNone, OverSample<Stdev<vkPopulation>, srValues>},
      {"DEVSQ", 1, -1, fnNone, OverSample<DevSq>},
      {"AVEDEV", 1, -1, fnNone, OverSample<AveDev>},
      {"GEOMEAN", 1, -1, fnNone, OverSample<GeoMean>},
      {"HARMEAN", 1, -1, fnNone, OverSample<HarMean>},
      {"SKEW", 1, -1, fnNone, OverSample<Skew>},
      {"SKEW.P", 1, -1, fnNone, OverSample<SkewP>},
      {"KURT", 1, -1, fnNone, OverSample<Kurt>},
      {"STANDARDIZE", 3, 3, fnNone, Standardize},
      {"FISHER", 1, 1, fnNone, Fisher},
      {"FISHERINV", 1, 1, fnNone, FisherInv},
      {"COUNTUNIQUE", 1, -1, fnNone, CountUnique},
      {"AVERAGEIFS", 3, -1, fnNone, AverageIfs},
      {"MAXIFS", 3, -1, fnNone, ExtremeIfs<true>},
      {"MINIFS", 3, -1, fnNone, ExtremeIfs<false>},
  };
  return Table;
}

}  // namespace Tabrino
