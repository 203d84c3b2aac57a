// FORECAST.ETS and its companions. The fitted smoothing parameters depend on
// the optimiser, so the checks rest on what holds whatever they are: a series
// that a trend and a season describe exactly is continued exactly, gaps and
// duplicates are resolved before fitting, and the interval agrees with the
// variance formula of additive smoothing evaluated here term by term.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

constexpr double Season[4] = {3, -1, -4, 2};

// 10 + t/2 + a season of four, at times 1..Count.
double Exact(int T) {
  return 10 + 0.5 * T + Season[T % 4];
}

struct TSeries {
  std::vector<TCellValue> Values, Times;
  void Add(double Time, double Value) {
    Times.push_back(V(Time));
    Values.push_back(V(Value));
  }
  TFormulaArg ValueArg() const { return Column(Values); }
  TFormulaArg TimeArg() const { return Column(Times); }
};

TSeries ExactSeries(int Count) {
  TSeries S;
  for (int T = 1; T <= Count; ++T) S.Add(T, Exact(T));
  return S;
}

// A yearly pattern with a trend and deterministic noise.
TSeries NoisyMonthly() {
  TSeries S;
  for (int T = 0; T < 60; ++T) {
    const double Noise = std::sin(T * 12.9898) * 0.8;
    S.Add(45000 + 30.5 * T, 100 + 0.8 * T + 12 * std::sin(2 * M_PI * T / 12) + Noise);
  }
  return S;
}

TEST(ForecastEts, WrongArgumentCounts) {
  TSeries S = ExactSeries(12);
  ExpectCases({
      {"FORECAST.ETS", {13, S.ValueArg()}, E(ceValue)},
      {"FORECAST.ETS", {13, S.ValueArg(), S.TimeArg(), 1, 1, 1, 1}, E(ceValue)},
      {"FORECAST.ETS.CONFINT", {13, S.ValueArg()}, E(ceValue)},
      {"FORECAST.ETS.SEASONALITY", {S.ValueArg()}, E(ceValue)},
      {"FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg()}, E(ceValue)},
  });
}

TEST(ForecastEts, ArgumentErrors) {
  TSeries S = ExactSeries(16);
  TFormulaArg Values = S.ValueArg(), Times = S.TimeArg();
  TSeries Short = ExactSeries(1);
  ExpectCases({
      {"FORECAST.ETS", {"x", Values, Times}, E(ceValue)},
      {"FORECAST.ETS", {10, Values, Times}, E(ceNum)},  // before the end of the timeline
      {"FORECAST.ETS", {20, Values, Column({V(1), V(2)})}, E(ceNA)},
      {"FORECAST.ETS", {20, Values, Column(std::vector<TCellValue>(16, V("day")))}, E(ceValue)},
      {"FORECAST.ETS", {20, Values, Times, 8761}, E(ceNum)},
      {"FORECAST.ETS", {20, Values, Times, -1}, E(ceNum)},
      {"FORECAST.ETS", {20, Values, Times, 9}, E(ceNum)},  // two seasons of 9 need 18 values
      {"FORECAST.ETS", {20, Values, Times, 1, 2}, E(ceNum)},
      {"FORECAST.ETS", {20, Values, Times, 1, 1, 0}, E(ceNum)},
      {"FORECAST.ETS", {20, Values, Times, 1, 1, 8}, E(ceNum)},
      {"FORECAST.ETS", {20, Values, Times, "x"}, E(ceValue)},
      {"FORECAST.ETS", {20, Short.ValueArg(), Short.TimeArg()}, E(ceValue)},
      {"FORECAST.ETS.CONFINT", {20, Values, Times, 1}, E(ceNum)},
      {"FORECAST.ETS.CONFINT", {20, Values, Times, 0}, E(ceNum)},
      {"FORECAST.ETS.STAT", {Values, Times, 9}, E(ceNum)},
      {"FORECAST.ETS.STAT", {Values, Times, 0}, E(ceNum)},
  });
  // Steps that are no whole multiple of the smallest one.
  EXPECT_EQ(Call("FORECAST.ETS", {9, Column({V(1), V(2), V(3)}), Column({V(1), V(2), V(4.5)})}), E(ceNum));
  // More than 30% of the steps missing.
  EXPECT_EQ(Call("FORECAST.ETS", {20, Column({V(1), V(2), V(3)}), Column({V(1), V(2), V(6)})}), E(ceNum));
}

TEST(ForecastEts, AnExactTrendAndSeasonContinueExactly) {
  TSeries S = ExactSeries(24);
  for (int Target : {24, 25, 27, 30, 41}) {
    EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {Target, S.ValueArg(), S.TimeArg()}), Exact(Target), 1e-9)) << Target;
    EXPECT_TRUE(IsNear(Call("FORECAST.ETS.CONFINT", {Target, S.ValueArg(), S.TimeArg()}), 0, 1e-9)) << Target;
  }
  EXPECT_EQ(Call("FORECAST.ETS.SEASONALITY", {S.ValueArg(), S.TimeArg()}), V(4));
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 6}), 0, 1e-9));
  EXPECT_EQ(Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 8}), V(1));
  // A fractional target lies between the neighbouring forecasts.
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {25.5, S.ValueArg(), S.TimeArg()}), (Exact(25) + Exact(26)) / 2, 1e-9));
}

TEST(ForecastEts, WithoutSeasonTheForecastIsLinear) {
  TSeries S;
  for (int T = 0; T < 10; ++T) S.Add(T, 3 + 2 * T);
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {15, S.ValueArg(), S.TimeArg(), 0}), 33, 1e-12));
  EXPECT_EQ(Call("FORECAST.ETS.SEASONALITY", {S.ValueArg(), S.TimeArg()}), V(0));
  EXPECT_EQ(Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 3, 0}), V(0));  // no gamma without a season
}

TEST(ForecastEts, TheTimelineIsSortedAndItsStepFound) {
  TSeries S;
  for (int T = 24; T >= 1; --T) S.Add(44000 + 7 * T, Exact(T));  // weekly, newest first
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {44000 + 7 * 26, S.ValueArg(), S.TimeArg()}), Exact(26), 1e-9));
  EXPECT_EQ(Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 8}), V(7));
}

TEST(ForecastEts, GapsAreInterpolatedOrZero) {
  TSeries S;
  for (int T = 1; T <= 20; ++T) S.Add(T, 5 + 1.5 * T);
  TSeries Gapped;
  for (int T = 1; T <= 20; ++T)
    if (T != 7 && T != 8 && T != 15) Gapped.Add(T, 5 + 1.5 * T);
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {23, Gapped.ValueArg(), Gapped.TimeArg(), 0}), 39.5, 1e-12));
  // Zeros break the line, so the forecast moves away from it.
  TCellValue Zeros = Call("FORECAST.ETS", {23, Gapped.ValueArg(), Gapped.TimeArg(), 0, 0});
  ASSERT_EQ(Zeros.Kind, cvkNumber);
  EXPECT_GT(std::fabs(Zeros.Number - 39.5), 1e-6);
  // A value that is no number leaves a gap too.
  S.Values[9] = V("n/a");
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {23, S.ValueArg(), S.TimeArg(), 0}), 39.5, 1e-12));
}

TEST(ForecastEts, ValuesOnOneDateAreAggregated) {
  TSeries S;
  for (int T = 1; T <= 12; ++T) S.Add(T, 2 * T);
  S.Add(6, 14);                                                                                    // 12 and 14 on day 6
  S.Add(6, 10);                                                                                    // and 10
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {14, S.ValueArg(), S.TimeArg(), 0}), 28, 1e-12));        // average 12
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS", {14, S.ValueArg(), S.TimeArg(), 0, 1, 5}), 28, 1e-12));  // median 12
  // Summed, day 6 holds 36 and the line has an outlier to absorb.
  EXPECT_TRUE(IsNear(Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 6, 0}), 0, 1e-12));
  TCellValue Summed = Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), 6, 0, 1, 7});
  ASSERT_EQ(Summed.Kind, cvkNumber);
  EXPECT_GT(Summed.Number, 1);
}

TEST(ForecastEts, NoisySeasonalData) {
  TSeries S = NoisyMonthly();
  EXPECT_EQ(Call("FORECAST.ETS.SEASONALITY", {S.ValueArg(), S.TimeArg()}), V(12));
  const double Step = 30.5;
  const double Last = 45000 + 59 * Step;
  TCellValue Next = Call("FORECAST.ETS", {Last + 3 * Step, S.ValueArg(), S.TimeArg()});
  ASSERT_EQ(Next.Kind, cvkNumber);
  const double Truth = 100 + 0.8 * 62 + 12 * std::sin(2 * M_PI * 62 / 12);
  EXPECT_NEAR(Next.Number, Truth, 3);
  for (int Type = 1; Type <= 3; ++Type) {
    TCellValue P = Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), Type});
    ASSERT_EQ(P.Kind, cvkNumber);
    EXPECT_GE(P.Number, 0);
    EXPECT_LE(P.Number, 1);
  }
  for (int Type = 4; Type <= 7; ++Type) {
    TCellValue Error = Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), Type});
    ASSERT_EQ(Error.Kind, cvkNumber);
    EXPECT_GT(Error.Number, 0);
    EXPECT_LT(Error.Number, 2);
  }
}

// The half width for h steps: z * RMSE * sqrt(1 + sum over j < h of c_j^2),
// c_j = alpha (1 + j beta) + gamma (1 - alpha) where j is a multiple of the
// season, summed here one term at a time.
TEST(ForecastEts, TheIntervalFollowsTheVarianceOfAdditiveSmoothing) {
  TSeries S = NoisyMonthly();
  auto Stat = [&](int Type) { return Call("FORECAST.ETS.STAT", {S.ValueArg(), S.TimeArg(), Type}).Number; };
  const double Alpha = Stat(1), Beta = Stat(2), Gamma = Stat(3), Rmse = Stat(7);
  const double Z = 1.959963984540054;  // the 97.5% normal quantile
  const double Last = 45000 + 59 * 30.5;
  for (int H : {1, 5, 12, 30}) {
    double Sum = 1;
    for (int J = 1; J < H; ++J) {
      const double C = Alpha * (1 + J * Beta) + (J % 12 == 0 ? Gamma * (1 - Alpha) : 0);
      Sum += C * C;
    }
    EXPECT_TRUE(IsNear(Call("FORECAST.ETS.CONFINT", {Last + H * 30.5, S.ValueArg(), S.TimeArg()}),
                       Z * Rmse * std::sqrt(Sum), 1e-9))
        << H;
  }
  TCellValue Wider = Call("FORECAST.ETS.CONFINT", {Last + 30.5, S.ValueArg(), S.TimeArg(), 0.99});
  TCellValue Narrower = Call("FORECAST.ETS.CONFINT", {Last + 30.5, S.ValueArg(), S.TimeArg(), 0.5});
  EXPECT_GT(Wider.Number, Narrower.Number);
}

}  // namespace
}  // namespace Tabrino
