// Cash flows and rates: dated flows (XNPV, XIRR), the modified internal rate
// (MIRR), the parts of an annuity's payments (IPMT, PPMT, CUMIPMT, CUMPRINC,
// ISPMT), conversions between rates (EFFECT, NOMINAL, RRI, PDURATION,
// FVSCHEDULE) and fractional dollar prices (DOLLARDE, DOLLARFR).
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.RootFinding.h"

namespace Tabrino {

namespace {

// A dated cash flow: years after the first flow's date (of 365 days) and amount.
struct TDatedFlow {
  double Years = 0, Amount = 0;
};

// (values, dates) at the given places: as many dates as values, every date
// on or after the first one, which may come in any order. A value must be a
// number (#VALUE! else); a count mismatch or an earlier date is #NUM!.
std::vector<TDatedFlow> ReadDatedFlows(TArgReader& R, size_t ValuesIndex, size_t DatesIndex) {
  std::vector<TDatedFlow> Flows;
  const TFormulaArg &Values = R.Call()[ValuesIndex], &Dates = R.Call()[DatesIndex];
  std::span<const TCellValue> AllValues = ArgValues(Values), AllDates = ArgValues(Dates);
  R.Require(AllValues.size() == AllDates.size() && !AllValues.empty());
  if (R.Failed()) return Flows;
  double Base = R.DateOf(AllDates[0]);
  for (size_t I = 0; I < AllValues.size() && !R.Failed(); ++I) {
    const TCellValue& V = AllValues[I];
    double Amount = 0;
    R.Require(Values.IsRange ? V.Kind == cvkNumber : AsNumber(V, Amount), ceValue);
    if (V.Kind == cvkNumber) Amount = V.Number;
    double Date = R.DateOf(AllDates[I]);
    R.Require(Date >= Base);
    Flows.push_back({(Date - Base) / 365, Amount});
  }
  return Flows;
}

double PresentValue(const std::vector<TDatedFlow>& Flows, double Rate) {
  double Sum = 0;
  for (const TDatedFlow& F : Flows) Sum += F.Amount / std::pow(1 + Rate, F.Years);
  return Sum;
}

// XNPV(rate, values, dates)
TCellValue FnXnpv(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(0);
  R.Require(Rate > -1);
  std::vector<TDatedFlow> Flows = ReadDatedFlows(R, 1, 2);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum(PresentValue(Flows, Rate));
}

// XIRR(values, dates, [guess]): the rate that brings XNPV to zero; it needs
// a payment and a receipt, else #NUM!.
TCellValue FnXirr(const TFunctionCall& C) {
  TArgReader R(C);
  double Guess = R.OptNumber(2, 0.1);
  std::vector<TDatedFlow> Flows = ReadDatedFlows(R, 0, 1);
  if (R.Failed()) return Err(R.Error());
  bool Paid = false, Received = false;
  for (const TDatedFlow& F : Flows) {
    Paid = Paid || F.Amount < 0;
    Received = Received || F.Amount > 0;
  }
  if (!Paid || !Received) return Err(ceNum);
  std::optional<double> Rate = SolveRate([&](double Rate) { return PresentValue(Flows, Rate); }, Guess, -1);
  return Rate ? FiniteNum(*Rate) : Err(ceNum);
}

// MIRR(values, finance_rate, reinvest_rate): payments discounted at the
// finance rate, receipts compounded at the reinvestment rate. Numbers only:
// text, booleans and empty cells in the values are passed over.
TCellValue FnMirr(const TFunctionCall& C) {
  TArgReader R(C);
  double Finance = R.Number(1), Reinvest = R.Number(2);
  std::vector<double> Values;
  if (!CollectNumbers(C.Args.first(1), Values)) R.Fail(ceValue);
  if (R.Failed()) return Err(R.Error());
  double N = static_cast<double>(Values.size());
  double PaidNow = 0, ReceivedLater = 0;
  for (size_t I = 0; I < Values.size(); ++I) {
    double T = static_cast<double>(I);
    if (Values[I] < 0) PaidNow += Values[I] / std::pow(1 + Finance, T);
    if (Values[I] > 0) ReceivedLater += Values[I] * std::pow(1 + Reinvest, N - 1 - T);
  }
  if (PaidNow == 0 || ReceivedLater == 0) return Err(ceDiv0);
  return FiniteNum(std::pow(-ReceivedLater / PaidNow, 1 / (N - 1)) - 1);
}

// An annuity: pv now, a payment each period (at its start when Due), fv at
// the end; the rate per period within the zero tolerance counts as zero.
struct TAnnuity {
  double Rate = 0, Nper = 0, Pv = 0, Fv = 0;
  bool Due = false;

  double Payment() const {
    if (IsZero(Rate)) return -(Pv + Fv) / Nper;
    double Growth = std::pow(1 + Rate, Nper);
    return -(Fv + Pv * Growth) * Rate / ((1 + Rate * (Due ? 1 : 0)) * (Growth - 1));
  }
  // What is still owed after the payment of period K (K = 0: Pv), in the
  // sign of Pv.
  double OwedAfter(double K) const {
    double Pmt = Payment();
    if (IsZero(Rate)) return Pv + Pmt * K;
    // Payments at the start: K - 1 whole periods of interest, then payment K.
    double Periods = Due && K > 0 ? K - 1 : K;
    double Growth = std::pow(1 + Rate, Periods);
    double Owed = Pv * Growth + Pmt * (Due ? 1 + Rate : 1) * (Growth - 1) / Rate;
    return Due && K > 0 ? Owed + Pmt : Owed;
  }
  // The interest and principal parts of payment K (K from 1): the interest
  // on what was owed after the payment before, none in a first payment made
  // at the start.
  double Interest(double K) const { return Due && K <= 1 ? 0 : -Rate * OwedAfter(K - 1); }
  double Principal(double K) const { return Payment() - Interest(K); }
};

// IPMT and PPMT(rate, per, nper, pv, [fv], [type]): per from 1 to nper.
template <bool PrincipalPart>
TCellValue FnPaymentPart(const TFunctionCall& C) {
  TArgReader R(C);
  TAnnuity A;
  A.Rate = R.Number(0);
  double Period = R.Number(1);
  A.Nper = R.Number(2);
  A.Pv = R.Number(3);
  A.Fv = R.OptNumber(4, 0);
  A.Due = R.OptNumber(5, 0) != 0;
  R.Require(Period >= 1 && Period <= A.Nper);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum(PrincipalPart ? A.Principal(Period) : A.Interest(Period));
}

// CUMIPMT and CUMPRINC(rate, nper, pv, start_period, end_period, type): the
// parts of payments start to end, from the change in what is owed.
template <bool PrincipalPart>
TCellValue FnCumulative(const TFunctionCall& C) {
  TArgReader R(C);
  TAnnuity A;
  A.Rate = R.Number(0);
  A.Nper = R.Number(1);
  A.Pv = R.Number(2);
  double Start = R.Integer(3), End = R.Integer(4), Type = R.Integer(5);
  R.Require(A.Rate > 0 && A.Nper > 0 && A.Pv > 0 && Start >= 1 && Start <= End && End <= A.Nper &&
            (Type == 0 || Type == 1));
  if (R.Failed()) return Err(R.Error());
  A.Due = Type == 1;
  double Principal = A.OwedAfter(End) - A.OwedAfter(Start - 1);
  return FiniteNum(PrincipalPart ? Principal : A.Payment() * (End - Start + 1) - Principal);
}

// ISPMT(rate, per, nper, pv): interest of period per (counted from 0) on a
// loan repaid in equal parts of principal.
TCellValue FnIspmt(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(0), Period = R.Number(1), Nper = R.Number(2), Pv = R.Number(3);
  if (R.Failed()) return Err(R.Error());
  return Nper == 0 ? Err(ceDiv0) : FiniteNum(Pv * Rate * (Period / Nper - 1));
}

// EFFECT(nominal_rate, npery) and NOMINAL(effect_rate, npery): npery
// truncated, at least 1; the rate positive.
template <bool ToEffective>
TCellValue FnRateConversion(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(0), Periods = R.Integer(1);
  R.Require(Rate > 0 && Periods >= 1);
  if (R.Failed()) return Err(R.Error());
  if (ToEffective) return FiniteNum(std::pow(1 + Rate / Periods, Periods) - 1);
  return FiniteNum(Periods * (std::pow(1 + Rate, 1 / Periods) - 1));
}

// RRI(nper, pv, fv): the rate of growth from pv to fv over nper periods.
TCellValue FnRri(const TFunctionCall& C) {
  TArgReader R(C);
  double Nper = R.Number(0), Pv = R.Number(1), Fv = R.Number(2);
  R.Require(Nper > 0 && Pv != 0);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum(std::pow(Fv / Pv, 1 / Nper) - 1);
}

// PDURATION(rate, pv, fv): periods for pv to grow to fv; all positive.
TCellValue FnPduration(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(0), Pv = R.Number(1), Fv = R.Number(2);
  R.Require(Rate > 0 && Pv > 0 && Fv > 0);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum((std::log(Fv) - std::log(Pv)) / std::log1p(Rate));
}

// FVSCHEDULE(principal, schedule): compounded by each rate in turn. Empty
// cells count as 0; any other value that is no number is #VALUE!.
TCellValue FnFvschedule(const TFunctionCall& C) {
  TArgReader R(C);
  double Value = R.Number(0);
  for (const TCellValue& V : ArgValues(C[1])) {
    double Rate = 0;
    if (C[1].IsRange ? V.Kind == cvkNumber || V.IsEmpty() : AsNumber(V, Rate)) {
      if (V.Kind == cvkNumber) Rate = V.Number;
      Value *= 1 + Rate;
    } else {
      R.Fail(ceValue);
    }
  }
  return R.Failed() ? Err(R.Error()) : FiniteNum(Value);
}

// DOLLARDE(fractional_dollar, fraction) and DOLLARFR(decimal_dollar,
// fraction): the digits after the point read as so many parts of the
// fraction, and back. The fraction is truncated: negative is #NUM!, below 1
// #DIV/0!.
template <bool ToDecimal>
TCellValue FnDollar(const TFunctionCall& C) {
  TArgReader R(C);
  double Dollar = R.Number(0), Fraction = R.Integer(1);
  R.Require(Fraction >= 0);
  if (R.Failed()) return Err(R.Error());
  if (Fraction < 1) return Err(ceDiv0);
  double Scale = std::pow(10.0, std::ceil(std::log10(Fraction)));
  double Whole = std::trunc(Dollar), Part = Dollar - Whole;
  return FiniteNum(Whole + (ToDecimal ? Part * Scale / Fraction : Part * Fraction / Scale));
}

}  // namespace

std::span<const TFunctionDef> CashflowFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"XNPV", 3, 3, fnNone, FnXnpv},
      {"XIRR", 2, 3, fnNone, FnXirr},
      {"MIRR", 3, 3, fnNone, FnMirr},
      {"IPMT", 4, 6, fnNone, FnPaymentPart<false>},
      {"PPMT", 4, 6, fnNone, FnPaymentPart<true>},
      {"CUMIPMT", 6, 6, fnNone, FnCumulative<false>},
      {"CUMPRINC", 6, 6, fnNone, FnCumulative<true>},
      {"ISPMT", 4, 4, fnNone, FnIspmt},
      {"EFFECT", 2, 2, fnNone, FnRateConversion<true>},
      {"NOMINAL", 2, 2, fnNone, FnRateConversion<false>},
      {"RRI", 3, 3, fnNone, FnRri},
      {"PDURATION", 3, 3, fnNone, FnPduration},
      {"FVSCHEDULE", 2, 2, fnNone, FnFvschedule},
      {"DOLLARDE", 2, 2, fnNone, FnDollar<true>},
      {"DOLLARFR", 2, 2, fnNone, FnDollar<false>},
  };
  return Table;
}

}  // namespace Tabrino
