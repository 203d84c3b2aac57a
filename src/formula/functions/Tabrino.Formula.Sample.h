// The numbers a statistical function reads from its arguments, and the
// descriptive kernels the statistical, ranking, regression and forecasting
// families share.
//
// Cells read from a range, an array or a single cell reference count only
// when they hold numbers, as for SUM; errors among them are passed over, as
// the core aggregates do. A value typed directly into the call converts like
// any scalar argument, so "5" and TRUE count there and text that is no number
// is #VALUE!.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

enum TSampleRule : uint8_t {
  srNumbers,  // cells count only when they hold numbers
  srValues,   // the "A" variants: cell text counts 0, booleans 1 or 0
};

struct TSample {
  std::vector<double> Values;
  // ceValue when a directly given argument is no number, ceNum for a value
  // that is not finite; the sample is then not to be used.
  TCellErrorCode Error = ceNone;

  bool Failed() const { return Error != ceNone; }
  size_t size() const { return Values.size(); }
};

TSample GatherSample(std::span<const TFormulaArg> Args, TSampleRule Rule = srNumbers);
inline TSample GatherSample(const TFormulaArg& Arg, TSampleRule Rule = srNumbers) {
  return GatherSample(std::span<const TFormulaArg>(&Arg, 1), Rule);
}

// A statistic of the numbers alone, as a function body: the arguments are
// gathered under Rule and a failed gathering is the result.
using TSampleStatistic = TCellValue (*)(std::span<const double> Values);
template <TSampleStatistic Statistic, TSampleRule Rule = srNumbers>
TCellValue OverSample(const TFunctionCall& Call) {
  TSample Sample = GatherSample(Call.Args, Rule);
  return Sample.Failed() ? Err(Sample.Error) : Statistic(Sample.Values);
}

// The number of one cell under Rule, or false when the cell does not count.
bool SampleCellNumber(const TCellValue& Cell, TSampleRule Rule, double& Number);

// Whether an argument is read cell by cell (a range, an array or a
// reference), rather than converted as a typed-in value.
inline bool IsCellArgument(const TFormulaArg& Arg) {
  return Arg.IsRange || Arg.HasOrigin;
}

// Compensated sums keep long columns exact to the last digits.
double SumOf(std::span<const double> Values);
double MeanOf(std::span<const double> Values);
// Sum of squared deviations from the mean, in two passes with the first
// pass's rounding corrected.
double SumSquaredDeviations(std::span<const double> Values);

// Variance and standard deviation of a sample (n - 1) or a population (n).
// Too few values gives ceDiv0.
enum TVarianceKind : uint8_t { vkSample, vkPopulation };
TCellValue VarianceOf(std::span<const double> Values, TVarianceKind Kind);
TCellValue StdevOf(std::span<const double> Values, TVarianceKind Kind);

// Percentiles of ascending values, interpolating between neighbours.
// Inclusive: K in [0, 1] over positions 0..n-1. Exclusive: K*(n+1) must lie
// in [1, n]. Outside gives ceNum, as does an empty list.
TCellValue PercentileInc(std::span<const double> Sorted, double K);
TCellValue PercentileExc(std::span<const double> Sorted, double K);

// The most frequent values, each once, in the order of their first
// appearance; empty when no value repeats.
std::vector<double> ModesOf(std::span<const double> Values);

// Floor that forgives the last bits of binary rounding: a value within
// rounding of a whole number is that number, so 0.7 * 1000 computed as
// 699.99999999999989 floors to 700.
double ApproxFloor(double X);

}  // namespace Tabrino
