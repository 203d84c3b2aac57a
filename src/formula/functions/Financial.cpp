// Time-value-of-money built-ins. PMT, FV, PV and NPER are the closed forms of
// one annuity equation,
//   pv*(1+r)^n + pmt*(1+r*type)*((1+r)^n - 1)/r + fv = 0,
// solved for each unknown in turn (a rate within the zero tolerance takes the
// equation's limit at r = 0). IRR and RATE solve for r by Newton's method.
#include <cmath>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

TCellValue Checked(double V) {
  return std::isfinite(V) ? Num(V) : Err(ceNum);
}

// The three required numbers and the optional fourth, which defaults to 0,
// then the payment timing: any non-zero type means payments at the start.
struct TAnnuityArgs {
  double A = 0, B = 0, C = 0, D = 0;
  double Type = 0;
};

bool ReadAnnuity(const TFunctionCall& Call, TAnnuityArgs& Out) {
  double Type;
  if (!ArgNumber(Call[0], Out.A) || !ArgNumber(Call[1], Out.B) || !ArgNumber(Call[2], Out.C) ||
      !OptArgNumber(Call, 3, 0, Out.D) || !OptArgNumber(Call, 4, 0, Type)) {
    return false;
  }
  Out.Type = Type != 0 ? 1 : 0;
  return true;
}

// PMT(rate, nper, pv, [fv], [type])
TCellValue FnPmt(const TFunctionCall& C) {
  TAnnuityArgs X;
  if (!ReadAnnuity(C, X)) return Err(ceValue);
  auto [Rate, Nper, Pv, Fv, Type] = X;
  if (IsZero(Rate)) return Checked(-(Pv + Fv) / Nper);
  double P = std::pow(1 + Rate, Nper);
  return Checked(-(Fv + Pv * P) * Rate / ((1 + Rate * Type) * (P - 1)));
}

// FV(rate, nper, pmt, [pv], [type])
TCellValue FnFv(const TFunctionCall& C) {
  TAnnuityArgs X;
  if (!ReadAnnuity(C, X)) return Err(ceValue);
  auto [Rate, Nper, Pmt, Pv, Type] = X;
  if (IsZero(Rate)) return Checked(-(Pv + Pmt * Nper));
  double P = std::pow(1 + Rate, Nper);
  return Checked(-(Pv * P + Pmt * (1 + Rate * Type) * (P - 1) / Rate));
}

// PV(rate, nper, pmt, [fv], [type])
TCellValue FnPv(const TFunctionCall& C) {
  TAnnuityArgs X;
  if (!ReadAnnuity(C, X)) return Err(ceValue);
  auto [Rate, Nper, Pmt, Fv, Type] = X;
  if (IsZero(Rate)) return Checked(-(Fv + Pmt * Nper));
  double P = std::pow(1 + Rate, Nper);
  return Checked(-(Fv + Pmt * (1 + Rate * Type) * (P - 1) / Rate) / P);
}

// NPER(rate, pmt, pv, [fv], [type]): (1+r)^n from the equation, then its logarithm.
TCellValue FnNper(const TFunctionCall& C) {
  TAnnuityArgs X;
  if (!ReadAnnuity(C, X)) return Err(ceValue);
  auto [Rate, Pmt, Pv, Fv, Type] = X;
  if (IsZero(Rate)) return Pmt == 0 ? Err(ceNum) : Checked(-(Pv + Fv) / Pmt);
  double Due = Pmt * (1 + Rate * Type);
  double Growth = (Due - Fv * Rate) / (Due + Pv * Rate);
  if (!(Growth > 0)) return Err(ceNum);
  return Checked(std::log(Growth) / std::log(1 + Rate));
}

// NPV(rate, value, ...): values discounted from period 1. Ranges give their
// number cells only; a direct argument must be a number (empty is skipped).
TCellValue FnNpv(const TFunctionCall& C) {
  double Rate;
  if (!ArgNumber(C[0], Rate)) return Err(ceValue);
  if (1 + Rate == 0) return Err(ceDiv0);
  double Sum = 0, Discount = 1;
  for (const TFormulaArg& Arg : C.Args.subspan(1)) {
    for (const TCellValue& V : ArgValues(Arg)) {
      double N;
      if (Arg.IsRange ? V.Kind != cvkNumber : V.IsEmpty()) continue;
      if (!AsNumber(V, N)) return Err(ceValue);
      Discount *= 1 + Rate;
      Sum += N / Discount;
    }
  }
  return Checked(Sum);
}

// Newton's method on Step(r, f, derivative) from Guess, at most 40 steps. A
// derivative flatter than 1E-14 keeps the current rate, a step below 1E-8
// gives the new one, and after 40 steps the last rate stands: lack of
// convergence is deliberately no error.
template <typename TStep>
double NewtonRate(double Guess, bool StopNearZero, TStep&& Step) {
  double Rate = Guess;
  for (int Iteration = 0; Iteration < 40; ++Iteration) {
    if (StopNearZero && IsZero(Rate)) return Rate;
    double F = 0, Derivative = 0;
    Step(Rate, F, Derivative);
    if (std::fabs(Derivative) < 1E-14) return Rate;
    double Next = Rate - F / Derivative;
    if (std::fabs(Next - Rate) < 1E-8) return Next;
    Rate = Next;
  }
  return Rate;
}

// IRR(values, [guess]): cells that are no numbers are skipped but keep their period.
TCellValue FnIrr(const TFunctionCall& C) {
  double Guess;
  if (!OptArgNumber(C, 1, 0.1, Guess)) return Err(ceValue);
  std::vector<std::pair<double, double>> Flows;  // period, amount
  std::span<const TCellValue> Values = ArgValues(C[0]);
  for (size_t T = 0; T < Values.size(); ++T) {
    double N;
    if (AsNumber(Values[T], N)) Flows.emplace_back(static_cast<double>(T), N);
  }
  double Rate = NewtonRate(Guess, false, [&](double R, double& F, double& Derivative) {
    for (auto [T, V] : Flows) {
      F += V / std::pow(1 + R, T);
      Derivative += -T * V / std::pow(1 + R, T + 1);
    }
  });
  return Checked(Rate);
}

// RATE(nper, pmt, pv, [fv], [type], [guess]): the annuity equation in r.
TCellValue FnRate(const TFunctionCall& C) {
  TAnnuityArgs X;
  double Guess;
  if (!ReadAnnuity(C, X) || !OptArgNumber(C, 5, 0.1, Guess)) return Err(ceValue);
  auto [Nper, Pmt, Pv, Fv, Type] = X;
  double Rate = NewtonRate(Guess, true, [&](double R, double& F, double& Derivative) {
    double P = std::pow(1 + R, Nper);
    double DP = Nper * std::pow(1 + R, Nper - 1);
    double Due = Pmt * (1 + R * Type);
    F = Pv * P + Due * (P - 1) / R + Fv;
    Derivative = Pv * DP + Pmt * Type * (P - 1) / R + Due * (DP * R - (P - 1)) / (R * R);
  });
  return Checked(Rate);
}

}  // namespace

std::span<const TFunctionDef> FinancialFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"PMT", 3, 5, fnNone, FnPmt},   {"FV", 3, 5, fnNone, FnFv},    {"PV", 3, 5, fnNone, FnPv},
      {"NPER", 3, 5, fnNone, FnNper}, {"NPV", 2, -1, fnNone, FnNpv}, {"IRR", 1, 2, fnNone, FnIrr},
      {"RATE", 3, 6, fnNone, FnRate},
  };
  return Table;
}

}  // namespace Tabrino
