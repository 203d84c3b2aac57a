#include "Tabrino.Formula.Sample.h"

#include <algorithm>
#include <cmath>

namespace Tabrino {

bool SampleCellNumber(const TCellValue& Cell, TSampleRule Rule, double& Number) {
  switch (Cell.Kind) {
    case cvkNumber: Number = Cell.Number; return true;
    case cvkBoolean:
      Number = Cell.BooleanValue ? 1 : 0;
      return Rule == srValues;
    case cvkText: Number = 0; return Rule == srValues;
    default: return false;
  }
}

// An infinity or NaN that arithmetic left in a cell has no place in a
// statistic (and would upset sorting): the sample fails with #NUM!.
TSample GatherSample(std::span<const TFormulaArg> Args, TSampleRule Rule) {
  TSample Sample;
  auto Add = [&Sample](double X) {
    if (!std::isfinite(X)) Sample.Error = ceNum;
    Sample.Values.push_back(X);
  };
  for (const TFormulaArg& Arg : Args) {
    if (Arg.IsLambda) continue;
    if (IsCellArgument(Arg)) {
      for (const TCellValue& Cell : ArgValues(Arg)) {
        double X;
        if (SampleCellNumber(Cell, Rule, X)) Add(X);
      }
    } else {
      double X = 0;
      if (!AsNumber(Arg.Scalar, X)) Sample.Error = ceValue;
      Add(X);
    }
    if (Sample.Failed()) return Sample;
  }
  return Sample;
}

// Neumaier's variant of Kahan summation: the running error is kept whichever
// of the two addends is larger.
double SumOf(std::span<const double> Values) {
  double Sum = 0;
  double Compensation = 0;
  for (double X : Values) {
    double T = Sum + X;
    if (std::fabs(Sum) >= std::fabs(X))
      Compensation += (Sum - T) + X;
    else
      Compensation += (X - T) + Sum;
    Sum = T;
  }
  return Sum + Compensation;
}

double MeanOf(std::span<const double> Values) {
  return Values.empty() ? 0 : SumOf(Values) / double(Values.size());
}

double SumSquaredDeviations(std::span<const double> Values) {
  if (Values.empty()) return 0;
  const double Mean = MeanOf(Values);
  std::vector<double> Squares;
  Squares.reserve(Values.size());
  double Drift = 0;
  for (double X : Values) {
    Squares.push_back((X - Mean) * (X - Mean));
    Drift += X - Mean;
  }
  // Drift is what the rounded mean leaves over; taking off its share keeps the
  // result from the cancellation a one-pass formula suffers.
  return std::max(0.0, SumOf(Squares) - Drift * Drift / double(Values.size()));
}

TCellValue VarianceOf(std::span<const double> Values, TVarianceKind Kind) {
  const double N = double(Values.size());
  const double Divisor = Kind == vkSample ? N - 1 : N;
  if (Divisor < 1) return Err(ceDiv0);
  return Num(SumSquaredDeviations(Values) / Divisor);
}

TCellValue StdevOf(std::span<const double> Values, TVarianceKind Kind) {
  TCellValue Variance = VarianceOf(Values, Kind);
  return Variance.Kind == cvkNumber ? Num(std::sqrt(Variance.Number)) : Variance;
}

namespace {

// The value at a fractional 0-based position between two neighbours.
double Interpolate(std::span<const double> Sorted, double Position) {
  const size_t Low = size_t(Position);
  const double Fraction = Position - double(Low);
  if (Low + 1 >= Sorted.size() || Fraction == 0) return Sorted[std::min(Low, Sorted.size() - 1)];
  return Sorted[Low] + Fraction * (Sorted[Low + 1] - Sorted[Low]);
}

}  // namespace

TCellValue PercentileInc(std::span<const double> Sorted, double K) {
  if (Sorted.empty() || !(K >= 0 && K <= 1)) return Err(ceNum);
  return Num(Interpolate(Sorted, K * double(Sorted.size() - 1)));
}

TCellValue PercentileExc(std::span<const double> Sorted, double K) {
  const double N = double(Sorted.size());
  double Rank = K * (N + 1);
  // 8/9 of 9 is 8.000000000000002 in binary: rounding must not push the
  // ends of the range out.
  if (std::fabs(Rank - std::round(Rank)) <= 1e-12 * N) Rank = std::round(Rank);
  if (Sorted.empty() || !(Rank >= 1 && Rank <= N)) return Err(ceNum);
  return Num(Interpolate(Sorted, Rank - 1));
}

std::vector<double> ModesOf(std::span<const double> Values) {
  absl::flat_hash_map<double, size_t> Counts;
  size_t Highest = 1;
  for (double X : Values) Highest = std::max(Highest, ++Counts[X]);
  std::vector<double> Modes;
  if (Highest < 2) return Modes;
  for (double X : Values) {
    auto It = Counts.find(X);
    if (It == Counts.end() || It->second != Highest) continue;  // NaN never finds itself
    Modes.push_back(X);
    It->second = 0;  // listed once
  }
  return Modes;
}

double ApproxFloor(double X) {
  const double Nearest = std::round(X);
  const double Distance = std::fabs(X - Nearest);
  return Distance < 0.5 && Distance <= 1e-13 * std::max(1.0, std::fabs(X)) ? Nearest : std::floor(X);
}

}  // namespace Tabrino
