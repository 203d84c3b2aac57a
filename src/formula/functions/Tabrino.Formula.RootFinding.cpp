#include "Tabrino.Formula.RootFinding.h"

#include <algorithm>
#include <cmath>

namespace Tabrino {

namespace {

constexpr int MaxNewtonSteps = 100;

bool Settled(double Step, double Rate) {
  return std::fabs(Step) <= 1E-13 * std::max(1.0, std::fabs(Rate));
}

std::optional<double> Newton(const std::function<double(double)>& F, double Rate, double Lower) {
  for (int Iteration = 0; Iteration < MaxNewtonSteps; ++Iteration) {
    double Value = F(Rate);
    if (!std::isfinite(Value)) return std::nullopt;
    if (Value == 0) return Rate;
    double H = 1E-7 * std::max(1.0, std::fabs(Rate));
    double Slope = (F(Rate + H) - F(Rate - H)) / (2 * H);
    if (!std::isfinite(Slope) || Slope == 0) return std::nullopt;
    double Step = Value / Slope;
    double Next = Rate - Step;
    // A step out of the domain goes halfway to its edge instead.
    if (!(Next > Lower)) Next = (Rate + Lower) / 2;
    if (Settled(Rate - Next, Next)) return Next;
    Rate = Next;
  }
  return std::nullopt;
}

std::optional<double> Bisect(const std::function<double(double)>& F, double A, double FA, double B) {
  for (int Iteration = 0; Iteration < 400; ++Iteration) {
    double Mid = (A + B) / 2;
    if (Mid == A || Mid == B) return Mid;
    double FM = F(Mid);
    if (!std::isfinite(FM)) return std::nullopt;
    if (FM == 0) return Mid;
    if ((FM < 0) == (FA < 0)) {
      A = Mid;
      FA = FM;
    } else {
      B = Mid;
    }
  }
  return (A + B) / 2;
}

// Points stepping away from the guess, upward by doubling steps and downward
// halving the distance to the domain's edge; the first pair of neighbours
// with opposite signs is bisected.
std::optional<double> BracketAndBisect(const std::function<double(double)>& F, double Guess, double Lower) {
  double Start = Guess > Lower ? Guess : Lower + 1;
  double FStart = F(Start);
  if (!std::isfinite(FStart)) return std::nullopt;
  double Up = Start, FUp = FStart, Down = Start, FDown = FStart;
  double Step = std::max(0.01, std::fabs(Start) / 10);
  for (int Round = 0; Round < 200; ++Round) {
    double NextUp = Up + Step * std::ldexp(1.0, Round);
    if (NextUp < 1E10) {
      double FNext = F(NextUp);
      if (std::isfinite(FNext) && (FNext < 0) != (FUp < 0)) return Bisect(F, Up, FUp, NextUp);
      if (std::isfinite(FNext)) Up = NextUp, FUp = FNext;
    }
    double NextDown = Lower + (Down - Lower) / 2;
    if (NextDown > Lower && NextDown < Down) {
      double FNext = F(NextDown);
      if (std::isfinite(FNext) && (FNext < 0) != (FDown < 0)) return Bisect(F, Down, FDown, NextDown);
      if (std::isfinite(FNext)) Down = NextDown, FDown = FNext;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<double> SolveRate(const std::function<double(double)>& F, double Guess, double Lower) {
  if (Guess > Lower) {
    if (std::optional<double> Root = Newton(F, Guess, Lower)) return Root;
  }
  return BracketAndBisect(F, Guess, Lower);
}

}  // namespace Tabrino
