// Order statistics: median, modes, k-th values, percentiles, quartiles,
// percent ranks, the averaged rank, the trimmed mean, frequency counts and
// PROB. Every list is read by the rules of Tabrino.Formula.Sample.h.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Sample.h"

namespace Tabrino {

namespace {

std::vector<double> Sorted(std::vector<double> Values) {
  std::sort(Values.begin(), Values.end());
  return Values;
}

// The numbers of one array argument in ascending order; false when a typed-in
// value is no number.
bool SortedArgument(const TFormulaArg& Arg, std::vector<double>& Values) {
  TSample Sample = GatherSample(Arg);
  if (Sample.Failed()) return false;
  Values = Sorted(std::move(Sample.Values));
  return true;
}

TCellValue Median(std::span<const double> Values) {
  return PercentileInc(Sorted({Values.begin(), Values.end()}), 0.5);
}

TCellValue ModeSingle(std::span<const double> Values) {
  std::vector<double> Modes = ModesOf(Values);
  return Modes.empty() ? Err(ceNA) : Num(Modes.front());
}

// Every most frequent value, in the order of first appearance, as a column.
TFormulaArg ModeMultiple(const TFunctionCall& Call) {
  TSample Sample = GatherSample(Call.Args);
  if (Sample.Failed()) return TFormulaArg::FromError(Sample.Error);
  std::vector<double> Modes = ModesOf(Sample.Values);
  if (Modes.empty()) return TFormulaArg::FromError(ceNA);
  std::vector<TCellValue> Cells;
  Cells.reserve(Modes.size());
  for (double X : Modes) Cells.push_back(Num(X));
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Modes.size()), 1);
}

// LARGE and SMALL: the k-th value from the top or the bottom, k truncated.
template <bool FromTop>
TCellValue KthValue(const TFunctionCall& Call) {
  std::vector<double> Values;
  double K;
  if (!SortedArgument(Call[0], Values) || !ArgInteger(Call[1], K)) return Err(ceValue);
  if (!(K >= 1 && K <= double(Values.size()))) return Err(ceNum);
  const size_t Index = size_t(K) - 1;
  return Num(FromTop ? Values[Values.size() - 1 - Index] : Values[Index]);
}

template <TCellValue (*Percentile)(std::span<const double>, double)>
TCellValue PercentileOf(const TFunctionCall& Call) {
  std::vector<double> Values;
  double K;
  if (!SortedArgument(Call[0], Values) || !ArgNumber(Call[1], K)) return Err(ceValue);
  return Percentile(Values, K);
}

// The inclusive form takes quarts 0 to 4 (the minimum to the maximum), the
// exclusive one only 1 to 3.
template <TCellValue (*Percentile)(std::span<const double>, double), int Lowest, int Highest>
TCellValue QuartileOf(const TFunctionCall& Call) {
  std::vector<double> Values;
  double Quart;
  if (!SortedArgument(Call[0], Values) || !ArgInteger(Call[1], Quart)) return Err(ceValue);
  if (!(Quart >= Lowest && Quart <= Highest)) return Err(ceNum);
  return Percentile(Values, Quart / 4);
}

// The rank of X among sorted values as a fraction, interpolated between the
// neighbours it falls between. Inclusive ranks run from 0 (the minimum) to 1
// (the maximum) over positions divided by n - 1; exclusive ranks are position
// + 1 over n + 1, so they never reach 0 or 1.
enum TRankKind : uint8_t { rkInclusive, rkExclusive };

template <TRankKind Kind>
TCellValue PercentRank(const TFunctionCall& Call) {
  std::vector<double> Values;
  double X, Significance;
  if (!SortedArgument(Call[0], Values) || !ArgNumber(Call[1], X) || !OptArgInteger(Call, 2, 3, Significance))
    return Err(ceValue);
  if (Values.empty() || !(Significance >= 1)) return Err(ceNum);
  if (X < Values.front() || X > Values.back()) return Err(ceNA);

  const double N = double(Values.size());
  const size_t Below = size_t(std::lower_bound(Values.begin(), Values.end(), X) - Values.begin());
  double Position = double(Below);
  if (Values[Below] != X) {  // strictly between Values[Below - 1] and Values[Below]
    const double Low = Values[Below - 1], High = Values[Below];
    Position = double(Below - 1) + (X - Low) / (High - Low);
  }
  double Rank = 1;
  if (Kind == rkExclusive)
    Rank = (Position + 1) / (N + 1);
  else if (N > 1)
    Rank = Position / (N - 1);
  // The rank is cut, not rounded, to the asked number of digits; beyond
  // fifteen there are no more digits to cut.
  const double Scale = std::pow(10.0, std::min(Significance, 15.0));
  return Num(ApproxFloor(Rank * Scale) / Scale);
}

// The average of the places Number would take among the numbers of the
// reference: ties share the mean of their places. #N/A unless Number is
// among them.
TCellValue RankAverage(const TFunctionCall& Call) {
  double Number, Order;
  if (!ArgNumber(Call[0], Number) || !OptArgNumber(Call, 2, 0, Order)) return Err(ceValue);
  const bool Ascending = !IsZero(Order);
  double Before = 0, Equal = 0;
  for (const TCellValue& V : ArgValues(Call[1])) {
    if (V.Kind != cvkNumber) continue;
    if (V.Number == Number)
      ++Equal;
    else if (Ascending ? V.Number < Number : V.Number > Number)
      ++Before;
  }
  if (Equal == 0) return Err(ceNA);
  return Num(Before + (Equal + 1) / 2);
}

// The mean without the given fraction of the values, half from each end; the
// count left out is rounded down to an even number.
TCellValue TrimMean(const TFunctionCall& Call) {
  std::vector<double> Values;
  double Percent;
  if (!SortedArgument(Call[0], Values) || !ArgNumber(Call[1], Percent)) return Err(ceValue);
  if (Values.empty() || !(Percent >= 0 && Percent < 1)) return Err(ceNum);
  const size_t PerSide = size_t(ApproxFloor(double(Values.size()) * Percent) / 2);
  return Num(MeanOf(std::span<const double>(Values).subspan(PerSide, Values.size() - 2 * PerSide)));
}

// A column with one count per bin and one more for the values above the
// highest bin. A bin counts the values above the next lower bin and not above
// itself; bins need not be sorted and keep their places in the result, and of
// equal bins the first takes the values.
TFormulaArg Frequency(const TFunctionCall& Call) {
  TSample Data = GatherSample(Call[0]);
  TSample Bins = GatherSample(Call[1]);
  if (Data.Failed() || Bins.Failed()) return TFormulaArg::FromError(ceValue);

  std::vector<size_t> Order(Bins.size());
  std::iota(Order.begin(), Order.end(), 0);
  std::stable_sort(Order.begin(), Order.end(), [&](size_t A, size_t B) { return Bins.Values[A] < Bins.Values[B]; });
  std::vector<double> SortedBins;
  SortedBins.reserve(Order.size());
  for (size_t I : Order) SortedBins.push_back(Bins.Values[I]);

  std::vector<double> Counts(Bins.size() + 1, 0);
  for (double X : Data.Values) {
    const size_t At = size_t(std::lower_bound(SortedBins.begin(), SortedBins.end(), X) - SortedBins.begin());
    ++Counts[At < Order.size() ? Order[At] : Bins.size()];
  }
  std::vector<TCellValue> Cells;
  Cells.reserve(Counts.size());
  for (double C : Counts) Cells.push_back(Num(C));
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Counts.size()), 1);
}

// The probability that a value lies between the limits (or equals the lower
// one when there is no upper), from values paired with their probabilities.
// The probabilities must each lie in (0, 1] and add up to 1.
TCellValue Prob(const TFunctionCall& Call) {
  double Lower, Upper;
  if (!ArgNumber(Call[2], Lower) || !OptArgNumber(Call, 3, Lower, Upper)) return Err(ceValue);
  std::span<const TCellValue> Xs = ArgValues(Call[0]);
  std::span<const TCellValue> Ps = ArgValues(Call[1]);
  if (Xs.size() != Ps.size()) return Err(ceNA);
  std::vector<double> All, Inside;
  for (size_t I = 0; I < Xs.size(); ++I) {
    if (Xs[I].Kind != cvkNumber || Ps[I].Kind != cvkNumber) continue;
    const double P = Ps[I].Number;
    if (!(P > 0 && P <= 1)) return Err(ceNum);
    All.push_back(P);
    if (Xs[I].Number >= Lower && Xs[I].Number <= Upper) Inside.push_back(P);
  }
  if (!IsZero(SumOf(All) - 1)) return Err(ceNum);
  return Num(SumOf(Inside));
}

}  // namespace

std::span<const TFunctionDef> RankingFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"MEDIAN", 1, -1, fnNone, OverSample<Median>},
      {"MODE.SNGL", 1, -1, fnNone, OverSample<ModeSingle>},
      {"MODE.MULT", 1, -1, fnReturnsArray, nullptr, ModeMultiple},
      {"LARGE", 2, 2, fnNone, KthValue<true>},
      {"SMALL", 2, 2, fnNone, KthValue<false>},
      {"PERCENTILE.INC", 2, 2, fnNone, PercentileOf<PercentileInc>},
      {"PERCENTILE.EXC", 2, 2, fnNone, PercentileOf<PercentileExc>},
      {"QUARTILE.INC", 2, 2, fnNone, QuartileOf<PercentileInc, 0, 4>},
      {"QUARTILE.EXC", 2, 2, fnNone, QuartileOf<PercentileExc, 1, 3>},
      {"PERCENTRANK.INC", 2, 3, fnNone, PercentRank<rkInclusive>},
      {"PERCENTRANK.EXC", 2, 3, fnNone, PercentRank<rkExclusive>},
      {"RANK.AVG", 2, 3, fnNone, RankAverage},
      {"TRIMMEAN", 2, 2, fnNone, TrimMean},
      {"FREQUENCY", 2, 2, fnReturnsArray, nullptr, Frequency},
      {"PROB", 3, 4, fnNone, Prob},
  };
  return Table;
}

}  // namespace Tabrino
