// Bonds whose first or last coupon period is odd: shorter or longer than a
// regular one (ODDFPRICE, ODDFYIELD, ODDLPRICE, ODDLYIELD). The odd period is
// cut into quasi-coupon periods, regular periods of the schedule through the
// first coupon (or from the last one), and each piece contributes its share
// of a normal period's length: DC for the days it holds of the odd period, A
// for the days accrued by settlement, DSC for those still to come.
#include <algorithm>
#include <cmath>
#include <optional>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.DayCount.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.RootFinding.h"

namespace Tabrino {

namespace {

// Odd periods longer than this many regular ones are not bonds; the bound
// keeps the period walk short.
constexpr int64_t MaxQuasiPeriods = 4000;

// A bond with an odd first period, reduced to what its price needs.
struct TOddFirstBond {
  double Coupon = 0, Redemption = 100;
  int Frequency = 1;
  double Counted = 0;       // sum of DC/NL over the odd period
  double Accrued = 0;       // sum of A/NL
  int64_t WholeBefore = 0;  // Nq: whole quasi periods from settlement's to the first coupon
  double ToNext = 0;        // DSC/E: share of settlement's quasi period still to come
  int64_t Regular = 0;      // N: regular coupons after the first one

  double Price(double Yield) const {
    double V = 1 + Yield / Frequency, N = static_cast<double>(Regular);
    double Lead = static_cast<double>(WholeBefore) + ToNext;        // periods to the first coupon
    double Annuity = V == 1 ? N : (1 - std::pow(V, -N)) / (V - 1);  // sum of V^-k, k = 1..N
    return Redemption / std::pow(V, N + Lead) + (Coupon * Counted + Coupon * Annuity) / std::pow(V, Lead) -
           Coupon * Accrued;
  }
};

// (settlement, maturity, issue, first_coupon, rate, x, redemption, frequency,
// [basis]), x left to the caller. Dates must run issue < settlement <
// first_coupon < maturity.
bool ReadOddFirst(TArgReader& R, TOddFirstBond& Bond) {
  double Settlement = R.Date(0), Maturity = R.Date(1), Issue = R.Date(2), First = R.Date(3);
  double Rate = R.Number(4);
  Bond.Redemption = R.Number(6);
  Bond.Frequency = ReadFrequency(R, 7);
  TDayCountBasis Basis = ReadBasis(R, 8);
  R.Require(Rate >= 0 && Bond.Redemption > 0 && Issue < Settlement && Settlement < First && First < Maturity);
  if (R.Failed()) return false;
  Bond.Coupon = 100 * Rate / Bond.Frequency;
  TCouponPeriod AfterFirst;
  if (!CouponPeriodAt({First, Maturity, Bond.Frequency, Basis}, AfterFirst)) {
    R.Fail(ceNum);
    return false;
  }
  Bond.Regular = AfterFirst.Remaining;
  // Quasi periods back from the first coupon until one starts on or before issue.
  double End = First;
  for (int64_t Back = 1;; ++Back) {
    double Start;
    if (Back > MaxQuasiPeriods || !CouponDate(First, Bond.Frequency, -Back, Start)) {
      R.Fail(ceNum);
      return false;
    }
    double Length = CouponLength(Start, End, Bond.Frequency, Basis);
    double From = std::max(Start, Issue);
    double Counted = Start < Issue ? DaysToPeriodEnd(Start, Issue, End, Bond.Frequency, Basis) : Length;
    Bond.Counted += Counted / Length;
    if (Settlement >= End) {
      Bond.Accrued += Counted / Length;
    } else if (Settlement > From) {
      Bond.Accrued += BasisDays(From, Settlement, Basis) / Length;
    }
    if (Start > Settlement) ++Bond.WholeBefore;
    if (Start <= Settlement && Settlement < End) {
      Bond.ToNext = DaysToPeriodEnd(Start, Settlement, End, Bond.Frequency, Basis) / Length;
    }
    if (Start <= Issue) return true;
    End = Start;
  }
}

// ODDFPRICE(settlement, maturity, issue, first_coupon, rate, yld, redemption, frequency, [basis])
TCellValue FnOddfprice(const TFunctionCall& C) {
  TArgReader R(C);
  double Yield = R.Number(5);
  R.Require(Yield >= 0);
  TOddFirstBond Bond;
  if (!ReadOddFirst(R, Bond)) return Err(R.Error());
  return FiniteNum(Bond.Price(Yield));
}

// ODDFYIELD(settlement, maturity, issue, first_coupon, rate, pr, redemption,
// frequency, [basis]): the yield at which ODDFPRICE gives pr.
TCellValue FnOddfyield(const TFunctionCall& C) {
  TArgReader R(C);
  double Price = R.Number(5);
  R.Require(Price > 0);
  TOddFirstBond Bond;
  if (!ReadOddFirst(R, Bond)) return Err(R.Error());
  double Guess = Bond.Coupon > 0 ? Bond.Coupon * Bond.Frequency / 100 : 0.1;
  std::optional<double> Yield = SolveRate([&](double Y) { return Bond.Price(Y) - Price; }, Guess, -Bond.Frequency);
  return Yield ? FiniteNum(*Yield) : Err(ceNum);
}

// A bond with an odd last period: the sums of DC/NL, A/NL and DSC/NL over
// the quasi periods from the last coupon to maturity.
struct TOddLastBond {
  double Coupon = 0, Redemption = 100;
  int Frequency = 1;
  double Counted = 0, Accrued = 0, ToCome = 0;

  // What is paid at maturity, and what the buyer pays besides the price.
  double AtMaturity() const { return Redemption + Coupon * Counted; }
  double AccruedInterest() const { return Coupon * Accrued; }
};

// (settlement, maturity, last_interest, rate, x, redemption, frequency,
// [basis]), x left to the caller. Dates must run last_interest < settlement
// < maturity.
bool ReadOddLast(TArgReader& R, TOddLastBond& Bond) {
  double Settlement = R.Date(0), Maturity = R.Date(1), Last = R.Date(2);
  double Rate = R.Number(3);
  Bond.Redemption = R.Number(5);
  Bond.Frequency = ReadFrequency(R, 6);
  TDayCountBasis Basis = ReadBasis(R, 7);
  R.Require(Rate >= 0 && Bond.Redemption > 0 && Last < Settlement && Settlement < Maturity);
  if (R.Failed()) return false;
  Bond.Coupon = 100 * Rate / Bond.Frequency;
  double Start = Last;
  for (int64_t Ahead = 1; Start < Maturity; ++Ahead) {
    double End;
    if (Ahead > MaxQuasiPeriods || !CouponDate(Last, Bond.Frequency, Ahead, End)) {
      R.Fail(ceNum);
      return false;
    }
    double Length = CouponLength(Start, End, Bond.Frequency, Basis);
    double Counted = End <= Maturity ? Length : BasisDays(Start, Maturity, Basis);
    double Accrued = Settlement >= End ? Counted : Settlement > Start ? BasisDays(Start, Settlement, Basis) : 0;
    Bond.Counted += Counted / Length;
    Bond.Accrued += Accrued / Length;
    Bond.ToCome += (Counted - Accrued) / Length;
    Start = End;
  }
  return true;
}

// ODDLPRICE(settlement, maturity, last_interest, rate, yld, redemption, frequency, [basis])
TCellValue FnOddlprice(const TFunctionCall& C) {
  TArgReader R(C);
  double Yield = R.Number(4);
  R.Require(Yield >= 0);
  TOddLastBond Bond;
  if (!ReadOddLast(R, Bond)) return Err(R.Error());
  return FiniteNum(Bond.AtMaturity() / (1 + Bond.ToCome * Yield / Bond.Frequency) - Bond.AccruedInterest());
}

// ODDLYIELD(settlement, maturity, last_interest, rate, pr, redemption, frequency, [basis])
TCellValue FnOddlyield(const TFunctionCall& C) {
  TArgReader R(C);
  double Price = R.Number(4);
  R.Require(Price > 0);
  TOddLastBond Bond;
  if (!ReadOddLast(R, Bond)) return Err(R.Error());
  double Paid = Price + Bond.AccruedInterest();
  return FiniteNum((Bond.AtMaturity() - Paid) / Paid * Bond.Frequency / Bond.ToCome);
}

}  // namespace

std::span<const TFunctionDef> OddCouponFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ODDFPRICE", 8, 9, fnNone, FnOddfprice},
      {"ODDFYIELD", 8, 9, fnNone, FnOddfyield},
      {"ODDLPRICE", 7, 8, fnNone, FnOddlprice},
      {"ODDLYIELD", 7, 8, fnNone, FnOddlyield},
  };
  return Table;
}

}  // namespace Tabrino
