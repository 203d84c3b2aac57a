// The day-count bases shared by YEARFRAC and the security functions, and the
// coupon schedule (COUPPCD, COUPNCD, COUPNUM, COUPDAYBS, COUPDAYS,
// COUPDAYSNC). Reference values marked "doc" are the published examples of
// the functions; "mpmath" ones come from an independent script that writes
// the documented definitions out term by term at 40 digits.
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.Formula.DayCount.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

double Day(int Year, int Month, int DayOfMonth) {
  return EncodeDate(Year, Month, DayOfMonth);
}

TEST(DayCount, ThirtyDayMonthMethods) {
  struct TCase {
    TYmd From, To;
    int Nasd, Us, European;
  };
  const TCase Cases[] = {
      {{2011, 1, 15}, {2011, 2, 28}, 43, 43, 43},
      {{2011, 1, 30}, {2011, 3, 31}, 60, 60, 60},  // end on the 31st after a 30th counts as the 30th
      {{2011, 1, 15}, {2011, 3, 31}, 76, 76, 75},  // ...but not after an earlier day
      {{2011, 2, 28}, {2011, 3, 31}, 30, 30, 32},  // February's last day starts as the 30th
      {{2008, 2, 29}, {2008, 8, 31}, 180, 180, 181},
      {{2011, 2, 28}, {2012, 2, 29}, 359, 360, 361},  // basis 0 also moves a February end after one
      {{2008, 2, 27}, {2009, 3, 31}, 394, 394, 393},
      {{2011, 3, 31}, {2011, 1, 15}, -75, -75, -75},
  };
  for (const TCase& C : Cases) {
    EXPECT_EQ(Days360(C.From, C.To, m360Nasd), C.Nasd) << C.From.Month << "/" << C.From.Day;
    EXPECT_EQ(Days360(C.From, C.To, m360Us), C.Us) << C.From.Month << "/" << C.From.Day;
    EXPECT_EQ(Days360(C.From, C.To, m360European), C.European) << C.From.Month << "/" << C.From.Day;
  }
}

TEST(DayCount, YearFractionOnEveryBasis) {
  double Start = Day(2012, 1, 1), End = Day(2012, 7, 30);
  // doc: 0.58055556, 0.57650273, 0.57808219
  EXPECT_TRUE(IsNear(V(YearFraction(Start, End, dcbUs30360)), 0.58055555555555556));
  EXPECT_TRUE(IsNear(V(YearFraction(Start, End, dcbActualActual)), 0.57650273224043716));
  EXPECT_TRUE(IsNear(V(YearFraction(Start, End, dcbActual360)), 211.0 / 360));
  EXPECT_TRUE(IsNear(V(YearFraction(Start, End, dcbActual365)), 0.57808219178082192));
  EXPECT_TRUE(IsNear(V(YearFraction(Day(2011, 1, 31), Day(2011, 3, 31), dcbEuropean30360)), 1.0 / 6));
  // Either order gives the same positive fraction.
  EXPECT_EQ(YearFraction(End, Start, dcbActualActual), YearFraction(Start, End, dcbActualActual));
}

TEST(DayCount, ActualActualYearLength) {
  // mpmath: within a year, 366 only when the span takes in a 29 February...
  EXPECT_TRUE(IsNear(V(YearFraction(Day(2011, 12, 1), Day(2012, 3, 1), dcbActualActual)), 0.24863387978142077));
  EXPECT_TRUE(IsNear(V(YearFraction(Day(2012, 3, 1), Day(2013, 2, 28), dcbActualActual)), 0.99726027397260274));
  // ...beyond a year, the average length of the calendar years touched.
  EXPECT_TRUE(IsNear(V(YearFraction(Day(2010, 6, 15), Day(2013, 2, 1), dcbActualActual)), 2.6338124572210815));
  EXPECT_EQ(YearFraction(Day(2012, 5, 1), Day(2012, 5, 1), dcbActualActual), 0);
}

TEST(DayCount, CouponDatesKeepTheMaturityDayOrTheMonthEnd) {
  double Date;
  ASSERT_TRUE(CouponDate(Day(2011, 8, 31), 2, -1, Date));
  EXPECT_EQ(Date, Day(2011, 2, 28));
  ASSERT_TRUE(CouponDate(Day(2011, 8, 31), 4, -2, Date));
  EXPECT_EQ(Date, Day(2011, 2, 28));
  ASSERT_TRUE(CouponDate(Day(2011, 8, 31), 4, -1, Date));
  EXPECT_EQ(Date, Day(2011, 5, 31));
  ASSERT_TRUE(CouponDate(Day(2012, 2, 29), 2, -1, Date));  // a month end: August's 31st
  EXPECT_EQ(Date, Day(2011, 8, 31));
  // Not a month end: the day is clipped in short months and comes back after.
  ASSERT_TRUE(CouponDate(Day(2012, 8, 30), 2, -1, Date));
  EXPECT_EQ(Date, Day(2012, 2, 29));
  ASSERT_TRUE(CouponDate(Day(2012, 8, 30), 1, -1, Date));
  EXPECT_EQ(Date, Day(2011, 8, 30));
  EXPECT_FALSE(CouponDate(Day(9999, 12, 31), 1, 1, Date));
}

TEST(DayCount, CouponFunctionsWrongArgumentCounts) {
  for (const char* Name : {"COUPPCD", "COUPNCD", "COUPNUM", "COUPDAYBS", "COUPDAYS", "COUPDAYSNC"}) {
    double S = Day(2011, 1, 25), M = Day(2011, 11, 15);
    EXPECT_EQ(Call(Name, {S, M}), E(ceValue)) << Name;
    EXPECT_EQ(Call(Name, {S, M, 2, 1, 0}), E(ceValue)) << Name;
  }
}

TEST(DayCount, CouponFunctionsPublishedExample) {
  double S = Day(2011, 1, 25), M = Day(2011, 11, 15);
  ExpectCases({
      {"COUPDAYBS", {S, M, 2, 1}, V(71)},
      {"COUPDAYS", {S, M, 2, 1}, V(181)},
      {"COUPDAYSNC", {S, M, 2, 1}, V(110)},
      {"COUPNCD", {S, M, 2, 1}, V(Day(2011, 5, 15))},
      {"COUPPCD", {S, M, 2, 1}, V(Day(2010, 11, 15))},
      {"COUPNUM", {S, M, 2, 1}, V(2)},
      // Basis 0 counts 30/360: Nov 15 to Jan 25 is 70 days of a 180-day period.
      {"COUPDAYBS", {S, M, 2}, V(70)},
      {"COUPDAYS", {S, M, 2}, V(180)},
      {"COUPDAYSNC", {S, M, 2}, V(110)},
      {"COUPDAYS", {S, M, 4, 3}, V(365.0 / 4)},
      {"COUPDAYS", {S, M, 1, 2}, V(360)},
  });
}

TEST(DayCount, CouponScheduleEdges) {
  ExpectCases({
      // A month-end maturity keeps every coupon at a month end.
      {"COUPPCD", {Day(2011, 3, 15), Day(2011, 8, 31), 2}, V(Day(2011, 2, 28))},
      {"COUPPCD", {Day(2012, 3, 15), Day(2012, 8, 31), 4}, V(Day(2012, 2, 29))},
      {"COUPNCD", {Day(2012, 3, 15), Day(2012, 8, 31), 4}, V(Day(2012, 5, 31))},
      // Otherwise the maturity's day, clipped in February only.
      {"COUPPCD", {Day(2011, 3, 15), Day(2011, 8, 30), 2}, V(Day(2011, 2, 28))},
      {"COUPPCD", {Day(2011, 9, 15), Day(2012, 8, 30), 2}, V(Day(2011, 8, 30))},
      // Settlement on a coupon date: that is the previous coupon.
      {"COUPPCD", {Day(2011, 5, 15), Day(2011, 11, 15), 2}, V(Day(2011, 5, 15))},
      {"COUPDAYBS", {Day(2011, 5, 15), Day(2011, 11, 15), 2}, V(0)},
      {"COUPNUM", {Day(2011, 5, 15), Day(2011, 11, 15), 2}, V(1)},
      // Under 30/360 days accrued and days to come fill the period: 15 + 165.
      {"COUPDAYBS", {Day(2011, 3, 15), Day(2011, 8, 31), 2, 0}, V(15)},
      {"COUPDAYSNC", {Day(2011, 3, 15), Day(2011, 8, 31), 2, 0}, V(165)},
      {"COUPNUM", {Day(2000, 1, 1), Day(2099, 12, 31), 4}, V(400)},
      {"COUPNUM", {Day(1, 3, 31), Day(9999, 12, 31), 4}, V(39995)},
      {"COUPPCD", {Day(1, 1, 1), Day(9999, 12, 31), 4}, E(ceNum)},  // the coupon before lies before the calendar
  });
}

TEST(DayCount, CouponArgumentErrors) {
  double S = Day(2011, 1, 25), M = Day(2011, 11, 15);
  ExpectCases({
      {"COUPNUM", {M, S, 2}, E(ceNum)},  // settlement after maturity
      {"COUPNUM", {S, S, 2}, E(ceNum)},
      {"COUPNUM", {S, M, 3}, E(ceNum)},
      {"COUPNUM", {S, M, 2, 5}, E(ceNum)},
      {"COUPNUM", {S, M, 2, -1}, E(ceNum)},
      {"COUPNUM", {-1E9, M, 2}, E(ceNum)},  // no date
      {"COUPNUM", {"soon", M, 2}, E(ceValue)},
      {"COUPNUM", {S, M, E(ceNA)}, E(ceValue)},
      // A value that is no number outranks one out of range.
      {"COUPNUM", {M, S, "x"}, E(ceValue)},
      // Dates, frequency and basis are truncated.
      {"COUPDAYBS", {S + 0.9, M + 0.5, 2.7, 1.9}, V(71)},
      // Date texts read as dates.
      {"COUPNCD", {"2011-01-25", "2011-11-15", 2, 1}, V(Day(2011, 5, 15))},
  });
}

}  // namespace
}  // namespace Tabrino
