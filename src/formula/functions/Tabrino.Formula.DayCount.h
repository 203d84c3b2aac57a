// The day-count bases that every security function shares, and the coupon
// schedule of a bond. One implementation of each, so that YEARFRAC, the
// coupon functions and the bond prices always count days alike.
//
// Bases: 0 US (NASD) 30/360, 1 actual/actual, 2 actual/360, 3 actual/365,
// 4 European 30/360. Coupon dates step from an anchor date (maturity, or a
// first or last coupon) by 12/frequency months, keeping the anchor's day of
// the month, clipped to shorter months, or every month's last day when the
// anchor is a month end.
#pragma once

#include <cstdint>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.CivilDate.h"

namespace Tabrino {

enum TDayCountBasis : uint8_t { dcbUs30360, dcbActualActual, dcbActual360, dcbActual365, dcbEuropean30360 };

// The optional basis argument: 0 when absent, truncated, #NUM! outside 0-4.
TDayCountBasis ReadBasis(TArgReader& Reader, size_t Index);
// Coupons per year, truncated: 1, 2 or 4, else #NUM!.
int ReadFrequency(TArgReader& Reader, size_t Index);

// 30/360 day counts. NASD is DAYS360's US method: a start on its month's
// last day counts as the 30th, and an end on the 31st as the 30th when the
// start is (now) the 30th. US, basis 0, also moves an end on the last day of
// February to the 30th when the start is the last day of February too.
// European counts every 31st as the 30th.
enum T360Method : uint8_t { m360Nasd, m360Us, m360European };
int Days360(const TYmd& From, const TYmd& To, T360Method Method);

// Days from From to To as Basis counts them: 30/360 for bases 0 and 4,
// actual days otherwise. Negative when To comes first.
double BasisDays(double From, double To, TDayCountBasis Basis);
// Years between two dates in either order, never negative. Basis 1 divides
// by the length of the year for spans within one year (366 when the span
// lies in one leap year or takes in a 29 February), else by the average
// length of the calendar years it touches.
double YearFraction(double From, double To, TDayCountBasis Basis);

// The coupon date Periods coupon periods after Anchor (before it when
// negative); false when it leaves the valid dates.
bool CouponDate(double Anchor, int Frequency, int64_t Periods, double& Date);
// The normal length in days of the coupon period from Start to End: its
// actual days for basis 1, 365/frequency for basis 3, 360/frequency else.
double CouponLength(double Start, double End, int Frequency, TDayCountBasis Basis);
// Days from Day to End within the period [Start, End]. Under 30/360 these are
// the period's length less the days since Start, so that days accrued and
// days to come always fill the period; actual days otherwise.
double DaysToPeriodEnd(double Start, double Day, double End, int Frequency, TDayCountBasis Basis);

// The coupon period of the schedule through Anchor that holds Day: Start <=
// Day < End, Start being Index periods from Anchor. False when the schedule
// leaves the valid dates.
struct TCouponSpan {
  int64_t Index = 0;
  double Start = 0, End = 0;
};
bool CouponSpanHolding(double Anchor, int Frequency, double Day, TCouponSpan& Span);

// Coupon periods accrued from From to To (From first) on the schedule through
// Anchor: each period contributes the share of its normal length that lies in
// the span, so whole periods count 1 on every basis. Negative when a date
// leaves the valid dates.
double AccruedPeriods(double From, double To, double Anchor, int Frequency, TDayCountBasis Basis);

// A bond's dates and coupon terms.
struct TBondTerms {
  double Settlement = 0, Maturity = 0;
  int Frequency = 1;
  TDayCountBasis Basis = dcbUs30360;
};
// Reads them from the given argument places (basis optional); settlement
// must come before maturity, else #NUM!.
TBondTerms ReadBondTerms(TArgReader& Reader, size_t Settlement, size_t Maturity, size_t Frequency, size_t Basis);

// The regular coupon period of a bond around its settlement date, on the
// schedule through maturity.
struct TCouponPeriod {
  double Previous = 0;    // last coupon date on or before settlement (COUPPCD)
  double Next = 0;        // first coupon date after settlement (COUPNCD)
  int64_t Remaining = 0;  // coupons after settlement up to maturity (COUPNUM)
  double Accrued = 0;     // days from Previous to settlement (COUPDAYBS)
  double Length = 0;      // days in the period (COUPDAYS)
  double ToNext = 0;      // days from settlement to Next (COUPDAYSNC)
};
// False when the schedule leaves the valid dates.
bool CouponPeriodAt(const TBondTerms& Bond, TCouponPeriod& Period);

}  // namespace Tabrino
