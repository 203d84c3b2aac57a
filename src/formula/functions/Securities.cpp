// Bonds with regular coupons (PRICE, YIELD, DURATION, MDURATION), securities
// paying at maturity or sold at a discount (DISC, INTRATE, RECEIVED,
// PRICEDISC, PRICEMAT, YIELDDISC, YIELDMAT) and Treasury bills (TBILLEQ,
// TBILLPRICE, TBILLYIELD). Prices are per 100 of face value; years and days
// come from the shared day-count bases. Also STOCKHISTORY, which needs a
// market data provider.
#include <cmath>
#include <optional>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.DayCount.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.RootFinding.h"

namespace Tabrino {

namespace {

// A bond on its settlement date: the coupon period and the per-period terms.
struct TBond {
  TCouponPeriod Period;
  int Frequency = 1;
  double Coupon = 0;  // paid each period, per 100 of face value
  double Redemption = 100;

  double ToNextShare() const { return Period.ToNext / Period.Length; }
  double AccruedShare() const { return Period.Accrued / Period.Length; }

  // The price (less accrued interest) at an annual yield: coupons and the
  // redemption discounted from their dates, the first DSC/E of a period away.
  double Price(double Yield) const {
    double N = static_cast<double>(Period.Remaining), D = ToNextShare(), PerPeriod = Yield / Frequency;
    if (Period.Remaining == 1) return (Redemption + Coupon) / (1 + D * PerPeriod) - Coupon * AccruedShare();
    double V = 1 + PerPeriod;
    // The coupons as one geometric sum: Coupon * sum of V^-(k-1+D), k = 1..N.
    double Annuity = PerPeriod == 0 ? N : (1 - std::pow(V, -N)) / (1 - 1 / V);
    return Redemption / std::pow(V, N - 1 + D) + Coupon * Annuity / std::pow(V, D) - Coupon * AccruedShare();
  }

  // Macaulay duration in years for a redemption at par.
  double Duration(double Yield) const {
    double V = 1 + Yield / Frequency, D = ToNextShare();
    double Weighted = 0, Total = 0;
    for (int64_t K = 1; K <= Period.Remaining; ++K) {
      double Time = static_cast<double>(K) - 1 + D;
      double Flow = Coupon + (K == Period.Remaining ? 100 : 0);
      double Present = Flow / std::pow(V, Time);
      Weighted += Time * Present;
      Total += Present;
    }
    return Weighted / Total / Frequency;
  }
};

// The bond of (settlement, maturity, ...) at the given argument places; the
// caller checks the failure state of the reader.
bool ReadBond(TArgReader& R, size_t Frequency, size_t Basis, double Rate, double Redemption, TBond& Bond) {
  TBondTerms Terms = ReadBondTerms(R, 0, 1, Frequency, Basis);
  if (R.Failed()) return false;
  if (!CouponPeriodAt(Terms, Bond.Period)) {
    R.Fail(ceNum);
    return false;
  }
  Bond.Frequency = Terms.Frequency;
  Bond.Coupon = 100 * Rate / Terms.Frequency;
  Bond.Redemption = Redemption;
  return true;
}

// PRICE(settlement, maturity, rate, yld, redemption, frequency, [basis])
TCellValue FnPrice(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(2), Yield = R.Number(3), Redemption = R.Number(4);
  R.Require(Rate >= 0 && Yield >= 0 && Redemption > 0);
  TBond Bond;
  if (!ReadBond(R, 5, 6, Rate, Redemption, Bond)) return Err(R.Error());
  return FiniteNum(Bond.Price(Yield));
}

// YIELD(settlement, maturity, rate, pr, redemption, frequency, [basis]): with
// one coupon left the closed form of simple interest to redemption; else the
// yield at which PRICE gives pr, by Newton's method.
TCellValue FnYield(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(2), Price = R.Number(3), Redemption = R.Number(4);
  R.Require(Rate >= 0 && Price > 0 && Redemption > 0);
  TBond Bond;
  if (!ReadBond(R, 5, 6, Rate, Redemption, Bond)) return Err(R.Error());
  if (Bond.Period.Remaining == 1) {
    double Paid = Price / 100 + Bond.AccruedShare() * Rate / Bond.Frequency;
    double Received = Redemption / 100 + Rate / Bond.Frequency;
    return FiniteNum((Received - Paid) / Paid * Bond.Frequency / Bond.ToNextShare());
  }
  std::optional<double> Yield =
      SolveRate([&](double Y) { return Bond.Price(Y) - Price; }, Rate > 0 ? Rate : 0.1, -Bond.Frequency);
  return Yield ? FiniteNum(*Yield) : Err(ceNum);
}

// DURATION and MDURATION(settlement, maturity, coupon, yld, frequency, [basis])
template <bool Modified>
TCellValue FnDuration(const TFunctionCall& C) {
  TArgReader R(C);
  double Rate = R.Number(2), Yield = R.Number(3);
  R.Require(Rate >= 0 && Yield >= 0);
  TBond Bond;
  if (!ReadBond(R, 4, 5, Rate, 100, Bond)) return Err(R.Error());
  double Duration = Bond.Duration(Yield);
  return FiniteNum(Modified ? Duration / (1 + Yield / Bond.Frequency) : Duration);
}

// The terms of a security without coupons: (settlement, maturity, a, b,
// [basis]), a and b positive, and the years between the two dates.
struct TDiscountTerms {
  double A = 0, B = 0, Years = 0;
};

bool ReadDiscountTerms(TArgReader& R, TDiscountTerms& Terms) {
  double Settlement = R.Date(0), Maturity = R.Date(1);
  Terms.A = R.Number(2);
  Terms.B = R.Number(3);
  TDayCountBasis Basis = ReadBasis(R, 4);
  R.Require(Terms.A > 0 && Terms.B > 0 && Settlement < Maturity);
  Terms.Years = YearFraction(Settlement, Maturity, Basis);
  return !R.Failed();
}

// DISC(settlement, maturity, pr, redemption, [basis])
TCellValue FnDisc(const TFunctionCall& C) {
  TArgReader R(C);
  TDiscountTerms T;
  if (!ReadDiscountTerms(R, T)) return Err(R.Error());
  return FiniteNum((T.B - T.A) / T.B / T.Years);
}

// INTRATE(settlement, maturity, investment, redemption, [basis])
TCellValue FnIntrate(const TFunctionCall& C) {
  TArgReader R(C);
  TDiscountTerms T;
  if (!ReadDiscountTerms(R, T)) return Err(R.Error());
  return FiniteNum((T.B - T.A) / T.A / T.Years);
}

// RECEIVED(settlement, maturity, investment, discount, [basis]); a discount
// that eats the whole amount is #NUM!.
TCellValue FnReceived(const TFunctionCall& C) {
  TArgReader R(C);
  TDiscountTerms T;
  if (!ReadDiscountTerms(R, T)) return Err(R.Error());
  double Kept = 1 - T.B * T.Years;
  return Kept > 0 ? FiniteNum(T.A / Kept) : Err(ceNum);
}

// PRICEDISC(settlement, maturity, discount, redemption, [basis])
TCellValue FnPricedisc(const TFunctionCall& C) {
  TArgReader R(C);
  TDiscountTerms T;
  if (!ReadDiscountTerms(R, T)) return Err(R.Error());
  return FiniteNum(T.B - T.A * T.B * T.Years);
}

// YIELDDISC(settlement, maturity, pr, redemption, [basis])
TCellValue FnYielddisc(const TFunctionCall& C) {
  TArgReader R(C);
  TDiscountTerms T;
  if (!ReadDiscountTerms(R, T)) return Err(R.Error());
  return FiniteNum((T.B - T.A) / T.A / T.Years);
}

// A security paying its interest at maturity: (settlement, maturity, issue,
// rate, x, [basis]) with the years from issue to maturity, from issue to
// settlement and from settlement to maturity.
struct TMaturityTerms {
  double Rate = 0, X = 0;
  double IssueToMaturity = 0, IssueToSettlement = 0, SettlementToMaturity = 0;
};

bool ReadMaturityTerms(TArgReader& R, TMaturityTerms& T) {
  double Settlement = R.Date(0), Maturity = R.Date(1), Issue = R.Date(2);
  T.Rate = R.Number(3);
  T.X = R.Number(4);
  TDayCountBasis Basis = ReadBasis(R, 5);
  R.Require(T.Rate >= 0 && Issue <= Settlement && Settlement < Maturity);
  T.IssueToMaturity = YearFraction(Issue, Maturity, Basis);
  T.IssueToSettlement = YearFraction(Issue, Settlement, Basis);
  T.SettlementToMaturity = YearFraction(Settlement, Maturity, Basis);
  return !R.Failed();
}

// PRICEMAT(settlement, maturity, issue, rate, yld, [basis])
TCellValue FnPricemat(const TFunctionCall& C) {
  TArgReader R(C);
  TMaturityTerms T;
  if (!ReadMaturityTerms(R, T)) return Err(R.Error());
  if (T.X < 0) return Err(ceNum);
  double AtMaturity = 100 + T.IssueToMaturity * T.Rate * 100;
  return FiniteNum(AtMaturity / (1 + T.SettlementToMaturity * T.X) - T.IssueToSettlement * T.Rate * 100);
}

// YIELDMAT(settlement, maturity, issue, rate, pr, [basis])
TCellValue FnYieldmat(const TFunctionCall& C) {
  TArgReader R(C);
  TMaturityTerms T;
  if (!ReadMaturityTerms(R, T)) return Err(R.Error());
  if (T.X <= 0) return Err(ceNum);
  double Paid = T.X / 100 + T.IssueToSettlement * T.Rate;
  double Received = 1 + T.IssueToMaturity * T.Rate;
  return FiniteNum((Received - Paid) / Paid / T.SettlementToMaturity);
}

// A Treasury bill: (settlement, maturity, x), maturity at most a year after
// settlement, x positive; gives the days between the dates.
bool ReadBill(TArgReader& R, double& Days, double& X) {
  double Settlement = R.Date(0), Maturity = R.Date(1);
  X = R.Number(2);
  TYmd S;
  double YearLater = Settlement;
  if (!R.Failed() && ToYmd(Settlement, S)) ToSerial(AddMonths(S, 12, false), YearLater);
  R.Require(X > 0 && Settlement < Maturity && Maturity <= YearLater);
  Days = Maturity - Settlement;
  return !R.Failed();
}

// TBILLEQ(settlement, maturity, discount): the bond-equivalent yield.
TCellValue FnTbilleq(const TFunctionCall& C) {
  TArgReader R(C);
  double Days, Discount;
  if (!ReadBill(R, Days, Discount)) return Err(R.Error());
  double Denominator = 360 - Discount * Days;
  return Denominator > 0 ? FiniteNum(365 * Discount / Denominator) : Err(ceNum);
}

// TBILLPRICE(settlement, maturity, discount); a price of 0 or less is #NUM!.
TCellValue FnTbillprice(const TFunctionCall& C) {
  TArgReader R(C);
  double Days, Discount;
  if (!ReadBill(R, Days, Discount)) return Err(R.Error());
  double Price = 100 * (1 - Discount * Days / 360);
  return Price > 0 ? FiniteNum(Price) : Err(ceNum);
}

// TBILLYIELD(settlement, maturity, pr)
TCellValue FnTbillyield(const TFunctionCall& C) {
  TArgReader R(C);
  double Days, Price;
  if (!ReadBill(R, Days, Price)) return Err(R.Error());
  return FiniteNum((100 - Price) / Price * 360 / Days);
}

// STOCKHISTORY needs a provider of market data, and none is attached to the
// function tables: like any lookup that finds nothing, #N/A.
TFormulaArg FnStockhistory(const TFunctionCall&) {
  return TFormulaArg::FromError(ceNA);
}

}  // namespace

std::span<const TFunctionDef> SecurityFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"PRICE", 6, 7, fnNone, FnPrice},
      {"YIELD", 6, 7, fnNone, FnYield},
      {"DURATION", 5, 6, fnNone, FnDuration<false>},
      {"MDURATION", 5, 6, fnNone, FnDuration<true>},
      {"DISC", 4, 5, fnNone, FnDisc},
      {"INTRATE", 4, 5, fnNone, FnIntrate},
      {"RECEIVED", 4, 5, fnNone, FnReceived},
      {"PRICEDISC", 4, 5, fnNone, FnPricedisc},
      {"YIELDDISC", 4, 5, fnNone, FnYielddisc},
      {"PRICEMAT", 5, 6, fnNone, FnPricemat},
      {"YIELDMAT", 5, 6, fnNone, FnYieldmat},
      {"TBILLEQ", 3, 3, fnNone, FnTbilleq},
      {"TBILLPRICE", 3, 3, fnNone, FnTbillprice},
      {"TBILLYIELD", 3, 3, fnNone, FnTbillyield},
      {"STOCKHISTORY", 2, 11, fnReturnsArray, nullptr, FnStockhistory},
  };
  return Table;
}

}  // namespace Tabrino
