// FORECAST.ETS and its companions: forecasts, prediction intervals, the
// detected season and the fit's statistics from additive triple exponential
// smoothing (Tabrino.Formula.Ets.h).

#include <cmath>
#include <vector>

#include "Tabrino.Formula.Ets.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Sample.h"
#include "Tabrino.Formula.GammaBeta.h"

namespace Tabrino {

namespace {

constexpr size_t NoArgument = size_t(-1);

// Where each shared argument stands in one function's list.
struct TEtsArguments {
  size_t Values, Timeline, Seasonality, Completion, Aggregation;
};

// An optional whole-number option: its default when left out, else truncated
// and checked against [Lowest, Highest] (#NUM! outside, #VALUE! for text).
TCellErrorCode ReadOption(const TFunctionCall& Call, size_t Index, double Default, double Lowest, double Highest,
                          double& Option) {
  Option = Default;
  if (Index == NoArgument || ArgOmitted(Call, Index)) return ceNone;
  if (!ArgInteger(Call[Index], Option)) return ceValue;
  return Option >= Lowest && Option <= Highest ? ceNone : ceNum;
}

// The number of one value of the timeline or the values.
bool PointNumber(const TFormulaArg& Arg, const TCellValue& Value, double& X) {
  if (IsCellArgument(Arg)) return Value.Kind == cvkNumber && std::isfinite(X = Value.Number);
  return AsNumber(Value, X) && std::isfinite(X);
}

// The regular series and the season to fit it with. Timeline and values of
// different sizes are #N/A, a date that is no number #VALUE!. Seasonality 1
// asks for detection, 0 for none; an explicit season needs two of itself in
// the series.
TCellErrorCode ReadSeries(const TFunctionCall& Call, const TEtsArguments& At, TEtsSeries& Series, int32_t& Season) {
  std::span<const TCellValue> Values = ArgValues(Call[At.Values]);
  std::span<const TCellValue> Times = ArgValues(Call[At.Timeline]);
  if (Values.size() != Times.size()) return ceNA;
  double SeasonOption, Completion, Aggregation;
  for (TCellErrorCode E : {ReadOption(Call, At.Seasonality, 1, 0, MaxEtsSeason, SeasonOption),
                           ReadOption(Call, At.Completion, 1, 0, 1, Completion),
                           ReadOption(Call, At.Aggregation, 1, eaAverage, eaSum, Aggregation)})
    if (E != ceNone) return E;

  std::vector<TEtsPoint> Points;
  Points.reserve(Values.size());
  for (size_t I = 0; I < Values.size(); ++I) {
    if (Times[I].Kind == cvkEmpty && Values[I].Kind == cvkEmpty) continue;
    TEtsPoint P;
    if (!PointNumber(Call[At.Timeline], Times[I], P.Time)) return ceValue;
    P.HasNumber = PointNumber(Call[At.Values], Values[I], P.Value);
    Points.push_back(P);
  }
  if (TCellErrorCode E = BuildEtsSeries(std::move(Points), TEtsAggregation(Aggregation), Completion == 1, Series);
      E != ceNone)
    return E;

  if (SeasonOption == 1) {
    Season = DetectSeason(Series.Values);
  } else {
    Season = int32_t(SeasonOption);
    if (Series.Values.size() < 2 * size_t(Season)) return ceNum;
  }
  return ceNone;
}

// The fitted model and the number of steps from the end of the series to the
// target date, which may not lie before that end.
TCellErrorCode FitToTarget(const TFunctionCall& Call, const TEtsArguments& At, TEtsModel& Model, double& Steps) {
  double Target;
  if (!ArgNumber(Call[0], Target)) return ceValue;
  TEtsSeries Series;
  int32_t Season;
  if (TCellErrorCode E = ReadSeries(Call, At, Series, Season); E != ceNone) return E;
  Steps = (Target - Series.End()) / Series.Step;
  if (!(Steps >= 0)) return ceNum;
  Model = FitEts(Series.Values, Season);
  return ceNone;
}

TCellValue ForecastEts(const TFunctionCall& Call) {
  TEtsModel Model;
  double Steps;
  if (TCellErrorCode E = FitToTarget(Call, {1, 2, 3, 4, 5}, Model, Steps); E != ceNone) return Err(E);
  return FiniteNum(Model.Forecast(Steps));
}

// Half the width of the interval around the forecast that holds the true
// value with the given confidence (0.95 by default).
TCellValue ForecastEtsConfidence(const TFunctionCall& Call) {
  double Confidence = 0.95;
  if (!ArgOmitted(Call, 3)) {
    if (!ArgNumber(Call[3], Confidence)) return Err(ceValue);
    if (!(Confidence > 0 && Confidence < 1)) return Err(ceNum);
  }
  TEtsModel Model;
  double Steps;
  if (TCellErrorCode E = FitToTarget(Call, {1, 2, 4, 5, 6}, Model, Steps); E != ceNone) return Err(E);
  return FiniteNum(Model.HalfInterval(Steps, InverseNormalCdf((1 + Confidence) / 2)));
}

TCellValue ForecastEtsSeasonality(const TFunctionCall& Call) {
  TEtsSeries Series;
  int32_t Season;
  if (TCellErrorCode E = ReadSeries(Call, {0, 1, NoArgument, 2, 3}, Series, Season); E != ceNone) return Err(E);
  return Num(Season);
}

double MeanAbsolute(std::span<const double> Values) {
  std::vector<double> A;
  A.reserve(Values.size());
  for (double X : Values) A.push_back(std::fabs(X));
  return MeanOf(A);
}

// 1 alpha, 2 beta, 3 gamma, 4 MASE (the mean absolute error over that of the
// naive one-step forecast), 5 SMAPE, 6 MAE, 7 RMSE, 8 the step of the
// timeline.
TCellValue ForecastEtsStatistic(const TFunctionCall& Call) {
  double Type;
  if (!ArgInteger(Call[2], Type)) return Err(ceValue);
  if (!(Type >= 1 && Type <= 8)) return Err(ceNum);
  TEtsSeries Series;
  int32_t Season;
  if (TCellErrorCode E = ReadSeries(Call, {0, 1, 3, 4, 5}, Series, Season); E != ceNone) return Err(E);
  if (Type == 8) return Num(Series.Step);
  const TEtsModel Model = FitEts(Series.Values, Season);
  const std::vector<double>& Y = Series.Values;
  switch (int(Type)) {
    case 1: return Num(Model.Alpha);
    case 2: return Num(Model.Beta);
    case 3: return Num(Model.Gamma);
    case 4: {
      std::vector<double> Naive;
      for (size_t T = 1; T < Y.size(); ++T) Naive.push_back(Y[T] - Y[T - 1]);
      return FiniteNum(MeanAbsolute(Model.Errors) / MeanAbsolute(Naive));
    }
    case 5: {
      std::vector<double> Shares;
      for (size_t T = 0; T < Y.size(); ++T) {
        const double Scale = (std::fabs(Y[T]) + std::fabs(Model.Fitted[T])) / 2;
        Shares.push_back(Scale == 0 ? 0 : std::fabs(Model.Errors[T]) / Scale);
      }
      return FiniteNum(MeanOf(Shares));
    }
    case 6: return FiniteNum(MeanAbsolute(Model.Errors));
    default: {
      std::vector<double> Squares;
      for (double E : Model.Errors) Squares.push_back(E * E);
      return FiniteNum(std::sqrt(MeanOf(Squares)));
    }
  }
}

}  // namespace

std::span<const TFunctionDef> ForecastEtsFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"FORECAST.ETS", 3, 6, fnNone, ForecastEts},
      {"FORECAST.ETS.CONFINT", 3, 7, fnNone, ForecastEtsConfidence},
      {"FORECAST.ETS.SEASONALITY", 2, 4, fnNone, ForecastEtsSeasonality},
      {"FORECAST.ETS.STAT", 3, 6, fnNone, ForecastEtsStatistic},
  };
  return Table;
}

}  // namespace Tabrino
