// Depreciation of an asset: straight line (SLN), sum of years' digits (SYD),
// fixed declining balance (DB), double or factor declining balance (DDB, VDB
// with its switch to straight line) and the French accounting methods
// (AMORLINC linear, AMORDEGRC degressive with rounding to whole units).
#include <algorithm>
#include <cmath>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.DayCount.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// VDB walks its periods one by one; beyond this many it gives #NUM!.
constexpr double MaxWalkedPeriods = 1E6;

// SLN(cost, salvage, life)
TCellValue FnSln(const TFunctionCall& C) {
  TArgReader R(C);
  double Cost = R.Number(0), Salvage = R.Number(1), Life = R.Number(2);
  if (R.Failed()) return Err(R.Error());
  return Life == 0 ? Err(ceDiv0) : FiniteNum((Cost - Salvage) / Life);
}

// SYD(cost, salvage, life, per)
TCellValue FnSyd(const TFunctionCall& C) {
  TArgReader R(C);
  double Cost = R.Number(0), Salvage = R.Number(1), Life = R.Number(2), Period = R.Number(3);
  R.Require(Salvage >= 0 && Life > 0 && Period > 0 && Period <= Life);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum((Cost - Salvage) * (Life - Period + 1) * 2 / (Life * (Life + 1)));
}

// DB(cost, salvage, life, period, [month]): the rate 1 - (salvage/cost)^(1/life)
// rounded to three places, applied to the value left. The first period has
// only month/12 of a year, and with month below 12 a last period life + 1
// takes the rest of that year.
TCellValue FnDb(const TFunctionCall& C) {
  TArgReader R(C);
  double Cost = R.Number(0), Salvage = R.Number(1), Life = R.Number(2);
  double Period = R.Integer(3), Month = R.OptInteger(4, 12);
  double LastPeriod = Month < 12 ? Life + 1 : Life;
  R.Require(Cost >= 0 && Salvage >= 0 && Life > 0 && Period > 0 && Month > 0 && Month <= 12 && Period <= LastPeriod);
  if (R.Failed()) return Err(R.Error());
  if (Cost == 0) return Num(0);
  double Rate = std::round((1 - std::pow(Salvage / Cost, 1 / Life)) * 1000) / 1000;
  double First = Cost * Rate * Month / 12;
  if (Period == 1) return FiniteNum(First);
  // The value left after the first period and the Period - 2 full ones since.
  double Left = (Cost - First) * std::pow(1 - Rate, Period - 2);
  double Share = Period > Life ? (12 - Month) / 12 : 1;
  return FiniteNum(Left * Rate * Share);
}

// The book value of an asset after T periods of a declining balance at Rate.
double DecliningValue(double Cost, double Rate, double T) {
  return Rate >= 1 ? (T < 1 ? Cost : 0) : Cost * std::pow(1 - Rate, T);
}

// DDB(cost, salvage, life, period, [factor]): the book value's fall over the
// period, never below salvage; the period may be fractional.
TCellValue FnDdb(const TFunctionCall& C) {
  TArgReader R(C);
  double Cost = R.Number(0), Salvage = R.Number(1), Life = R.Number(2), Period = R.Number(3);
  double Factor = R.OptNumber(4, 2);
  R.Require(Cost >= 0 && Salvage >= 0 && Life > 0 && Period > 0 && Factor > 0 && Period <= Life);
  if (R.Failed()) return Err(R.Error());
  double Rate = Factor / Life;
  double Before = DecliningValue(Cost, Rate, Period - 1), After = DecliningValue(Cost, Rate, Period);
  return FiniteNum(std::max(0.0, Before - std::max(After, Salvage)));
}

// Depreciation through time T of the VDB schedule: period by period the
// declining balance at Factor/Life, limited to the value above salvage,
// switching for good to straight line over the remaining life once that
// gives more (unless NoSwitch). Within a period it grows linearly.
double VdbThrough(double Cost, double Salvage, double Life, double Factor, bool NoSwitch, double T) {
  double Rate = std::min(1.0, Factor / Life), Book = Cost, Total = 0;
  bool Straight = false;
  double StraightAmount = 0;
  for (double Period = 0; Period < T; ++Period) {
    double Amount;
    if (Straight) {
      Amount = StraightAmount;
    } else {
      Amount = std::max(0.0, std::min(Book * Rate, Book - Salvage));
      double RemainingLife = Life - Period;
      if (!NoSwitch && RemainingLife > 0 && (Book - Salvage) / RemainingLife > Amount) {
        Straight = true;
        StraightAmount = (Book - Salvage) / RemainingLife;
        Amount = StraightAmount;
      }
    }
    Amount = std::min(Amount, std::max(0.0, Book - Salvage));
    double Share = std::min(1.0, T - Period);
    Total += Amount * Share;
    Book -= Amount;
  }
  return Total;
}

// VDB(cost, salvage, life, start_period, end_period, [factor], [no_switch])
TCellValue FnVdb(const TFunctionCall& C) {
  TArgReader R(C);
  double Cost = R.Number(0), Salvage = R.Number(1), Life = R.Number(2), Start = R.Number(3), End = R.Number(4);
  double Factor = R.OptNumber(5, 2);
  bool NoSwitch = R.OptTruthy(6, false);
  R.Require(Cost >= 0 && Salvage >= 0 && Life > 0 && Start >= 0 && Start <= End && End <= Life && Factor > 0 &&
            End <= MaxWalkedPeriods);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum(VdbThrough(Cost, Salvage, Life, Factor, NoSwitch, End) -
                   VdbThrough(Cost, Salvage, Life, Factor, NoSwitch, Start));
}

// The arguments of AMORLINC and AMORDEGRC: (cost, date_purchased,
// first_period, salvage, period, rate, [basis]). Basis 2 has no meaning in
// French accounting and is #NUM!.
struct TAmortization {
  double Cost = 0, Salvage = 0, Period = 0, Rate = 0;
  double FirstYears = 0;  // the share of a year from purchase to the end of the first period
};

bool ReadAmortization(TArgReader& R, TAmortization& A) {
  A.Cost = R.Number(0);
  double Purchased = R.Date(1), FirstEnd = R.Date(2);
  A.Salvage = R.Number(3);
  A.Period = R.Integer(4);
  A.Rate = R.Number(5);
  TDayCountBasis Basis = ReadBasis(R, 6);
  R.Require(A.Cost > 0 && A.Salvage >= 0 && A.Salvage <= A.Cost && A.Period >= 0 && A.Rate > 0 &&
            Purchased <= FirstEnd && Basis != dcbActual360);
  A.FirstYears = YearFraction(Purchased, FirstEnd, Basis);
  return !R.Failed();
}

// AMORLINC: cost * rate a year, the first period pro rata, the last one what
// is left above salvage.
TCellValue FnAmorlinc(const TFunctionCall& C) {
  TArgReader R(C);
  TAmortization A;
  if (!ReadAmortization(R, A)) return Err(R.Error());
  double Depreciable = A.Cost - A.Salvage, Yearly = A.Cost * A.Rate;
  double First = std::min(Depreciable, A.FirstYears * Yearly);
  double FullYears = std::floor((Depreciable - First) / Yearly);
  if (A.Period == 0) return FiniteNum(First);
  if (A.Period <= FullYears) return FiniteNum(Yearly);
  if (A.Period == FullYears + 1) return FiniteNum(Depreciable - First - Yearly * FullYears);
  return Num(0);
}

// The degressive coefficient by the asset's life 1/rate: 1.5 for 3 to 4
// years, 2 for 5 to 6, 2.5 beyond 6; other lives are #NUM! (0 when none).
double DegressiveCoefficient(double Rate) {
  double Life = 1 / Rate;
  if (Life >= 3 && Life <= 4) return 1.5;
  if (Life >= 5 && Life <= 6) return 2;
  return Life > 6 ? 2.5 : 0;
}

// AMORDEGRC: the rate times the coefficient on the value left, each period
// rounded to a whole unit, the first pro rata. When a period would take the
// value below salvage, it and the next one each take half of what is left,
// and later periods nothing.
TCellValue FnAmordegrc(const TFunctionCall& C) {
  TArgReader R(C);
  TAmortization A;
  if (!ReadAmortization(R, A)) return Err(R.Error());
  double Coefficient = DegressiveCoefficient(A.Rate);
  if (Coefficient == 0) return Err(ceNum);
  double Rate = A.Rate * Coefficient;
  double Amount = std::round(A.FirstYears * Rate * A.Cost);
  double Book = A.Cost - Amount, AboveSalvage = Book - A.Salvage;
  for (double Period = 1; Period <= A.Period; ++Period) {
    Amount = std::round(Rate * Book);
    AboveSalvage -= Amount;
    if (AboveSalvage < 0) return Num(A.Period - Period <= 1 ? std::round(Book / 2) : 0);
    if (Amount == 0) return Num(0);  // nothing left to take, now or later
    Book -= Amount;
  }
  return FiniteNum(Amount);
}

}  // namespace

std::span<const TFunctionDef> DepreciationFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"SLN", 3, 3, fnNone, FnSln},
      {"SYD", 4, 4, fnNone, FnSyd},
      {"DB", 4, 5, fnNone, FnDb},
      {"DDB", 4, 5, fnNone, FnDdb},
      {"VDB", 5, 7, fnNone, FnVdb},
      {"AMORLINC", 6, 7, fnNone, FnAmorlinc},
      {"AMORDEGRC", 6, 7, fnNone, FnAmordegrc},
  };
  return Table;
}

}  // namespace Tabrino
