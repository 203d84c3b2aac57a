#include "Tabrino.Formula.Ets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include "Tabrino.Formula.Sample.h"

namespace Tabrino {

namespace {

// Up to this share of the steps may be missing and filled in.
constexpr double MaxMissingShare = 0.3;

double Aggregate(std::span<const TEtsPoint> Group, TEtsAggregation Aggregation, bool& Defined) {
  std::vector<double> Numbers;
  for (const TEtsPoint& P : Group)
    if (P.HasNumber) Numbers.push_back(P.Value);
  Defined = true;
  switch (Aggregation) {
    case eaCount: return double(Numbers.size());
    case eaCountA: return double(Group.size());
    default: break;
  }
  Defined = !Numbers.empty();
  if (!Defined) return 0;
  switch (Aggregation) {
    case eaMax: return *std::max_element(Numbers.begin(), Numbers.end());
    case eaMin: return *std::min_element(Numbers.begin(), Numbers.end());
    case eaSum: return SumOf(Numbers);
    case eaMedian: std::sort(Numbers.begin(), Numbers.end()); return PercentileInc(Numbers, 0.5).Number;
    default: return MeanOf(Numbers);
  }
}

}  // namespace

TCellErrorCode BuildEtsSeries(std::vector<TEtsPoint> Points, TEtsAggregation Aggregation, bool Interpolate,
                              TEtsSeries& Series) {
  std::stable_sort(Points.begin(), Points.end(),
                   [](const TEtsPoint& A, const TEtsPoint& B) { return A.Time < B.Time; });
  std::vector<double> Times, Values;
  std::vector<bool> Known;
  for (size_t First = 0; First < Points.size();) {
    size_t Last = First;
    while (Last < Points.size() && Points[Last].Time == Points[First].Time) ++Last;
    bool Defined;
    const double Value = Aggregate(std::span(Points).subspan(First, Last - First), Aggregation, Defined);
    Times.push_back(Points[First].Time);
    Values.push_back(Value);
    Known.push_back(Defined);
    First = Last;
  }
  if (Times.size() < 2) return ceValue;

  double Step = std::numeric_limits<double>::infinity();
  for (size_t I = 1; I < Times.size(); ++I) Step = std::min(Step, Times[I] - Times[I - 1]);
  std::vector<size_t> Slot(Times.size(), 0);
  for (size_t I = 1; I < Times.size(); ++I) {
    const double Ratio = (Times[I] - Times[I - 1]) / Step;
    const double Whole = std::round(Ratio);
    if (std::fabs(Ratio - Whole) > 1e-6 * Whole) return ceNum;
    const double At = double(Slot[I - 1]) + Whole;
    // Checked before anything is allocated for the slots.
    if (At * (1 - MaxMissingShare) > double(Times.size())) return ceNum;
    Slot[I] = size_t(At);
  }
  const size_t Count = Slot.back() + 1;
  size_t Missing = Count - Times.size();
  for (bool K : Known) Missing += K ? 0 : 1;
  if (double(Missing) > MaxMissingShare * double(Count)) return ceNum;

  Series.Start = Times.front();
  Series.Step = Step;
  Series.Values.assign(Count, 0);
  std::vector<bool> Filled(Count, false);
  for (size_t I = 0; I < Times.size(); ++I) {
    if (!Known[I]) continue;
    Series.Values[Slot[I]] = Values[I];
    Filled[Slot[I]] = true;
  }
  if (!Interpolate) return ceNone;
  // A run of gaps takes the straight line between the values around it; at
  // either end, where there is only one neighbour, its value.
  size_t Previous = Count;  // none yet
  for (size_t I = 0; I <= Count; ++I) {
    if (I < Count && !Filled[I]) continue;
    const size_t GapStart = Previous == Count ? 0 : Previous + 1;
    for (size_t G = GapStart; G < I; ++G) {
      if (Previous == Count)
        Series.Values[G] = I < Count ? Series.Values[I] : 0;
      else if (I == Count)
        Series.Values[G] = Series.Values[Previous];
      else
        Series.Values[G] = Series.Values[Previous] +
                           (Series.Values[I] - Series.Values[Previous]) * double(G - Previous) / double(I - Previous);
    }
    Previous = I;
  }
  return ceNone;
}

int32_t DetectSeason(std::span<const double> Values) {
  const size_t N = Values.size();
  if (N < 4) return 0;
  // Take out the straight-line trend, so that only repetition correlates.
  std::vector<double> Times(N);
  for (size_t T = 0; T < N; ++T) Times[T] = double(T);
  const double MeanT = MeanOf(Times), MeanY = MeanOf(Values);
  double Stt = 0, Sty = 0;
  for (size_t T = 0; T < N; ++T) {
    Stt += (double(T) - MeanT) * (double(T) - MeanT);
    Sty += (double(T) - MeanT) * (Values[T] - MeanY);
  }
  const double Slope = Sty / Stt;
  std::vector<double> Rest(N);
  double Variance = 0, Size = 0;
  for (size_t T = 0; T < N; ++T) {
    Rest[T] = Values[T] - (MeanY + Slope * (double(T) - MeanT));
    Variance += Rest[T] * Rest[T];
    Size += Values[T] * Values[T];
  }
  // What a straight line leaves over by rounding alone is no season.
  if (!(Variance > 1e-20 * Size) || !std::isfinite(Variance)) return 0;

  const size_t MaxLag = std::min(N / 2, size_t(MaxEtsSeason));
  std::vector<double> Correlation(MaxLag + 2, 0);
  for (size_t Lag = 1; Lag <= MaxLag + 1 && Lag < N; ++Lag) {
    double Sum = 0;
    for (size_t T = Lag; T < N; ++T) Sum += Rest[T] * Rest[T - Lag];
    Correlation[Lag] = Sum / Variance;
  }
  // Peaks must stand out from what noise gives (about 2 / sqrt(n)); of the
  // peaks nearly as strong as the strongest the shortest wins, so that a
  // multiple of the season does not displace the season itself.
  const double Threshold = std::max(2 / std::sqrt(double(N)), 0.25);
  std::vector<size_t> Peaks;
  double Strongest = Threshold;
  for (size_t Lag = 2; Lag <= MaxLag; ++Lag) {
    const double C = Correlation[Lag];
    if (C > Threshold && C > Correlation[Lag - 1] && C >= Correlation[Lag + 1]) {
      Peaks.push_back(Lag);
      Strongest = std::max(Strongest, C);
    }
  }
  for (size_t Lag : Peaks)
    if (Correlation[Lag] >= 0.9 * Strongest) return int32_t(Lag);
  return 0;
}

namespace {

struct TSmoothing {
  double Alpha, Beta, Gamma;
};

// Runs the recursions over the series from a starting state taken from the
// first two seasons (or the first two values), filling Model's state and
// errors. Returns the sum of squared one-step errors.
double Smooth(std::span<const double> Y, int32_t Season, TSmoothing P, TEtsModel& Model) {
  const size_t N = Y.size();
  const size_t M = size_t(Season);
  std::vector<double> Ring(std::max<size_t>(M, 1), 0);
  double Level, Trend;
  if (M > 0) {
    const double First = MeanOf(Y.subspan(0, M)), Second = MeanOf(Y.subspan(M, M));
    Trend = (Second - First) / double(M);
    const double Middle = (double(M) - 1) / 2;
    Level = First - Trend * (Middle + 1);  // the state just before the first value
    for (size_t I = 0; I < M; ++I) Ring[I] = Y[I] - (First + Trend * (double(I) - Middle));
    const double Offset = MeanOf(Ring);
    for (double& S : Ring) S -= Offset;
  } else {
    Trend = Y[1] - Y[0];
    Level = Y[0] - Trend;
  }
  Model.Errors.resize(N);
  Model.Fitted.resize(N);
  double Sse = 0;
  for (size_t T = 0; T < N; ++T) {
    const double S = M > 0 ? Ring[T % M] : 0;
    const double Forecast = Level + Trend + S;
    const double Error = Y[T] - Forecast;
    const double NewLevel = P.Alpha * (Y[T] - S) + (1 - P.Alpha) * (Level + Trend);
    Trend = P.Beta * (NewLevel - Level) + (1 - P.Beta) * Trend;
    if (M > 0) Ring[T % M] = P.Gamma * (Y[T] - NewLevel) + (1 - P.Gamma) * S;
    Level = NewLevel;
    Model.Fitted[T] = Forecast;
    Model.Errors[T] = Error;
    Sse += Error * Error;
  }
  Model.Season = Season;
  Model.Alpha = P.Alpha;
  Model.Beta = P.Beta;
  Model.Gamma = M > 0 ? P.Gamma : 0;
  Model.Level = Level;
  Model.Trend = Trend;
  Model.Seasonal.assign(M, 0);
  for (size_t J = 0; J < M; ++J) Model.Seasonal[J] = Ring[(N - M + J) % M];
  return std::isfinite(Sse) ? Sse : std::numeric_limits<double>::max();
}

double Clamp01(double X) {
  return std::isfinite(X) ? std::clamp(X, 0.0, 1.0) : 0.5;
}

// Nelder-Mead in Dimensions parameters, each held to [0, 1]. Deterministic:
// the same series always gives the same parameters.
using TPoint = std::array<double, 3>;

TPoint Minimize(const std::function<double(const TPoint&)>& F, TPoint Start, int Dimensions) {
  std::vector<TPoint> Simplex(size_t(Dimensions) + 1, Start);
  std::vector<double> Values(Simplex.size());
  for (int D = 0; D < Dimensions; ++D) Simplex[size_t(D) + 1][size_t(D)] += Start[size_t(D)] < 0.5 ? 0.2 : -0.2;
  auto Clamped = [](TPoint P) {
    for (double& X : P) X = Clamp01(X);
    return P;
  };
  for (size_t I = 0; I < Simplex.size(); ++I) Values[I] = F(Clamped(Simplex[I]));
  auto Along = [&](const TPoint& From, const TPoint& To, double T) {
    TPoint P = From;
    for (int D = 0; D < Dimensions; ++D) P[size_t(D)] = From[size_t(D)] + T * (To[size_t(D)] - From[size_t(D)]);
    return Clamped(P);
  };
  for (int Iteration = 0; Iteration < 200 * Dimensions; ++Iteration) {
    std::vector<size_t> Order(Simplex.size());
    for (size_t I = 0; I < Order.size(); ++I) Order[I] = I;
    std::sort(Order.begin(), Order.end(), [&](size_t A, size_t B) { return Values[A] < Values[B]; });
    const size_t Best = Order.front(), Worst = Order.back(), Second = Order[Order.size() - 2];
    if (Values[Worst] - Values[Best] <= 1e-13 * std::fabs(Values[Best]) + 1e-300) break;
    TPoint Centroid{};
    for (size_t I : Order)
      if (I != Worst)
        for (int D = 0; D < Dimensions; ++D) Centroid[size_t(D)] += Simplex[I][size_t(D)] / Dimensions;
    const TPoint Reflected = Along(Simplex[Worst], Centroid, 2);
    const double FR = F(Reflected);
    if (FR < Values[Best]) {
      const TPoint Expanded = Along(Simplex[Worst], Centroid, 3);
      const double FE = F(Expanded);
      Simplex[Worst] = FE < FR ? Expanded : Reflected;
      Values[Worst] = std::min(FE, FR);
    } else if (FR < Values[Second]) {
      Simplex[Worst] = Reflected;
      Values[Worst] = FR;
    } else {
      const TPoint Contracted = Along(Simplex[Worst], Centroid, 0.5);
      const double FC = F(Contracted);
      if (FC < Values[Worst]) {
        Simplex[Worst] = Contracted;
        Values[Worst] = FC;
      } else {
        for (size_t I = 0; I < Simplex.size(); ++I) {
          if (I == Best) continue;
          Simplex[I] = Along(Simplex[Best], Simplex[I], 0.5);
          Values[I] = F(Simplex[I]);
        }
      }
    }
  }
  size_t Best = 0;
  for (size_t I = 1; I < Simplex.size(); ++I)
    if (Values[I] < Values[Best]) Best = I;
  return Clamped(Simplex[Best]);
}

}  // namespace

TEtsModel FitEts(std::span<const double> Values, int32_t Season) {
  TEtsModel Scratch;
  const int Dimensions = Season > 0 ? 3 : 2;
  auto Objective = [&](const TPoint& P) { return Smooth(Values, Season, {P[0], P[1], P[2]}, Scratch); };
  TPoint Best{};
  double BestSse = std::numeric_limits<double>::infinity();
  for (const TPoint& Start : {TPoint{0.3, 0.1, 0.1}, TPoint{0.7, 0.3, 0.3}}) {
    const TPoint P = Minimize(Objective, Start, Dimensions);
    const double Sse = Objective(P);
    if (Sse < BestSse) {
      BestSse = Sse;
      Best = P;
    }
  }
  TEtsModel Model;
  Smooth(Values, Season, {Best[0], Best[1], Best[2]}, Model);
  return Model;
}

double TEtsModel::Forecast(double Steps) const {
  const double Linear = Level + Steps * Trend;
  if (Season == 0) return Linear;
  const double M = double(Season);
  auto Component = [&](double H) { return Seasonal[size_t(std::fmod(M - 1 + H, M))]; };
  const double Whole = std::floor(Steps);
  const double Fraction = Steps - Whole;
  const double S = Component(Whole);
  return Linear + (Fraction == 0 ? S : S + Fraction * (Component(Whole + 1) - S));
}

// For h steps ahead the variance is sigma^2 (1 + sum of c_j^2, j < h), with
// c_j = alpha (1 + j beta) + gamma (1 - alpha) when j is a whole number of
// seasons: the recursions written as corrections by the one-step error.
// The sums have closed forms, so a far target costs nothing more.
double TEtsModel::HalfInterval(double Steps, double Z) const {
  std::vector<double> Squares(Errors.size());
  for (size_t I = 0; I < Errors.size(); ++I) Squares[I] = Errors[I] * Errors[I];
  const double Variance = MeanOf(Squares);
  const double N = std::max(0.0, std::ceil(Steps) - 1);
  const double A = Alpha, B = Alpha * Beta;
  double Sum = 1 + N * A * A + A * B * N * (N + 1) + B * B * N * (N + 1) * (2 * N + 1) / 6;
  if (Season > 0) {
    const double G = Gamma * (1 - Alpha);
    const double M = double(Season);
    const double K = std::floor(N / M);
    Sum += K * (2 * A * G + G * G) + B * G * M * K * (K + 1);
  }
  return Z * std::sqrt(Variance * Sum);
}

}  // namespace Tabrino
