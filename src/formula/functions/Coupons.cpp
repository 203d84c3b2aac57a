// The coupon schedule of a bond (COUPPCD, COUPNCD, COUPNUM, COUPDAYBS,
// COUPDAYS, COUPDAYSNC) and the interest accrued on a security (ACCRINT,
// ACCRINTM). All count days through the shared day-count bases.
#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.DayCount.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// (settlement, maturity, frequency, [basis]) and one fact of its coupon period.
TCellValue CouponFact(const TFunctionCall& C, double (*Fact)(const TCouponPeriod&)) {
  TArgReader R(C);
  TBondTerms Bond = ReadBondTerms(R, 0, 1, 2, 3);
  if (R.Failed()) return Err(R.Error());
  TCouponPeriod Period;
  return CouponPeriodAt(Bond, Period) ? Num(Fact(Period)) : Err(ceNum);
}

TCellValue FnCouppcd(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return P.Previous; });
}
TCellValue FnCoupncd(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return P.Next; });
}
TCellValue FnCoupnum(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return static_cast<double>(P.Remaining); });
}
TCellValue FnCoupdaybs(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return P.Accrued; });
}
TCellValue FnCoupdays(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return P.Length; });
}
TCellValue FnCoupdaysnc(const TFunctionCall& C) {
  return CouponFact(C, [](const TCouponPeriod& P) { return P.ToNext; });
}

// The par value: 1000 when left empty in the call.
double ReadPar(TArgReader& R, size_t Index) {
  return R.OptNumber(Index, 1000);
}

// ACCRINT(issue, first_interest, settlement, rate, par, frequency, [basis],
// [calc_method]): par * rate / frequency for every coupon period accrued, the
// periods running through first_interest. From issue, or, with calc_method
// FALSE and settlement after first_interest, from first_interest.
TCellValue FnAccrint(const TFunctionCall& C) {
  TArgReader R(C);
  double Issue = R.Date(0), FirstInterest = R.Date(1), Settlement = R.Date(2);
  double Rate = R.Number(3), Par = ReadPar(R, 4);
  int Frequency = ReadFrequency(R, 5);
  TDayCountBasis Basis = ReadBasis(R, 6);
  bool FromIssue = R.OptTruthy(7, true);
  R.Require(Rate > 0 && Par > 0 && Issue < Settlement);
  if (R.Failed()) return Err(R.Error());
  double From = !FromIssue && Settlement > FirstInterest ? FirstInterest : Issue;
  double Periods = AccruedPeriods(From, Settlement, FirstInterest, Frequency, Basis);
  return Periods < 0 ? Err(ceNum) : FiniteNum(Par * Rate / Frequency * Periods);
}

// ACCRINTM(issue, settlement, rate, par, [basis]): interest paid at maturity,
// par * rate * the years from issue to settlement.
TCellValue FnAccrintm(const TFunctionCall& C) {
  TArgReader R(C);
  double Issue = R.Date(0), Settlement = R.Date(1);
  double Rate = R.Number(2), Par = ReadPar(R, 3);
  TDayCountBasis Basis = ReadBasis(R, 4);
  R.Require(Rate > 0 && Par > 0 && Issue < Settlement);
  if (R.Failed()) return Err(R.Error());
  return FiniteNum(Par * Rate * YearFraction(Issue, Settlement, Basis));
}

}  // namespace

std::span<const TFunctionDef> CouponFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"COUPPCD", 3, 4, fnNone, FnCouppcd},   {"COUPNCD", 3, 4, fnNone, FnCoupncd},
      {"COUPNUM", 3, 4, fnNone, FnCoupnum},   {"COUPDAYBS", 3, 4, fnNone, FnCoupdaybs},
      {"COUPDAYS", 3, 4, fnNone, FnCoupdays}, {"COUPDAYSNC", 3, 4, fnNone, FnCoupdaysnc},
      {"ACCRINT", 6, 8, fnNone, FnAccrint},   {"ACCRINTM", 4, 5, fnNone, FnAccrintm},
  };
  return Table;
}

}  // namespace Tabrino
