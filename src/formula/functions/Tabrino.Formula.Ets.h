// Exponential triple smoothing with additive error, trend and season (AAA)
// for the FORECAST.ETS functions: turning a timeline into a regular series,
// detecting the season's length, fitting the smoothing parameters and
// forecasting.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Tabrino.Types.h"

namespace Tabrino {

// How several values on one date become one, as the aggregation argument
// numbers them.
enum TEtsAggregation : uint8_t {
  eaAverage = 1,
  eaCount,
  eaCountA,
  eaMax,
  eaMedian,
  eaMin,
  eaSum,
};

struct TEtsPoint {
  double Time = 0;
  bool HasNumber = false;  // empty or text values still count for COUNTA
  double Value = 0;
};

// Values at equal steps from the first date to the last.
struct TEtsSeries {
  double Start = 0;
  double Step = 0;
  std::vector<double> Values;

  double End() const { return Start + Step * double(Values.size() - 1); }
};

// Sorts the points, merges those on one date, finds the step and fills the
// gaps: by interpolating between the neighbours, or with 0 when Interpolate
// is false. Fewer than two dates is ceValue; dates that are not whole steps
// apart, or more than 30% of the steps missing, are ceNum.
TCellErrorCode BuildEtsSeries(std::vector<TEtsPoint> Points, TEtsAggregation Aggregation, bool Interpolate,
                              TEtsSeries& Series);

// The longest season is a year of hours.
inline constexpr int32_t MaxEtsSeason = 8760;

// The season's length from the autocorrelation of the detrended series: the
// strongest significant peak, or 0 when there is none.
int32_t DetectSeason(std::span<const double> Values);

struct TEtsModel {
  int32_t Season = 0;  // 0: trend only
  double Alpha = 0, Beta = 0, Gamma = 0;
  // State after the last value; Seasonal holds the last Season components,
  // the one of the last value last.
  double Level = 0, Trend = 0;
  std::vector<double> Seasonal;
  // One-step-ahead errors over the series, and what they are measured against.
  std::vector<double> Errors;
  std::vector<double> Fitted;

  // The forecast Steps (>= 0, possibly fractional) steps after the last value.
  double Forecast(double Steps) const;
  // Half the width of the prediction interval at that distance, for a
  // normal quantile Z.
  double HalfInterval(double Steps, double Z) const;
};

// Fits the smoothing parameters by least squares of the one-step errors.
// Season must leave at least two whole seasons in the series.
TEtsModel FitEts(std::span<const double> Values, int32_t Season);

}  // namespace Tabrino
