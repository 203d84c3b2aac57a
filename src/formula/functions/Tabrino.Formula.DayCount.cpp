#include "Tabrino.Formula.DayCount.h"

#include <algorithm>
#include <utility>

namespace Tabrino {

namespace {

bool IsFebruaryEnd(const TYmd& Date) {
  return Date.Month == 2 && IsMonthEnd(Date);
}

// Days from 0001-01-01 to the first of January of Year + 1.
int64_t DaysThroughYear(int64_t Year) {
  return Year * 365 + Year / 4 - Year / 100 + Year / 400;
}

double ActualActualYears(double From, double To) {
  TYmd A, B;
  if (!ToYmd(From, A) || !ToYmd(To, B)) return (To - From) / 365;
  if (A.Year == B.Year) return (To - From) / DaysInYear(A.Year);
  bool WithinYear = B.Year == A.Year + 1 && std::pair(B.Month, B.Day) <= std::pair(A.Month, A.Day);
  if (WithinYear) {
    bool TakesLeapDay = (IsLeapYear(A.Year) && A.Month <= 2) || (IsLeapYear(B.Year) && (B.Month > 2 || B.Day == 29));
    return (To - From) / (TakesLeapDay ? 366 : 365);
  }
  double Years = B.Year - A.Year + 1;
  double Days = static_cast<double>(DaysThroughYear(B.Year) - DaysThroughYear(A.Year - 1));
  return (To - From) / (Days / Years);
}

}  // namespace

TDayCountBasis ReadBasis(TArgReader& Reader, size_t Index) {
  double Basis = Reader.OptInteger(Index, 0);
  bool Known = Basis >= 0 && Basis <= 4;
  Reader.Require(Known);
  return Known ? static_cast<TDayCountBasis>(Basis) : dcbUs30360;
}

int ReadFrequency(TArgReader& Reader, size_t Index) {
  double Frequency = Reader.Integer(Index);
  bool Known = Frequency == 1 || Frequency == 2 || Frequency == 4;
  Reader.Require(Known);
  return Known ? static_cast<int>(Frequency) : 1;
}

int Days360(const TYmd& From, const TYmd& To, T360Method Method) {
  int D1 = From.Day, D2 = To.Day;
  if (Method == m360European) {
    D1 = std::min(D1, 30);
    D2 = std::min(D2, 30);
  } else {
    if (Method == m360Us && IsFebruaryEnd(From) && IsFebruaryEnd(To)) D2 = 30;
    if (IsMonthEnd(From)) D1 = 30;
    if (D2 == 31 && D1 >= 30) D2 = 30;
  }
  return (To.Year - From.Year) * 360 + (To.Month - From.Month) * 30 + D2 - D1;
}

double BasisDays(double From, double To, TDayCountBasis Basis) {
  TYmd A, B;
  bool ThirtyDayMonths = Basis == dcbUs30360 || Basis == dcbEuropean30360;
  if (!ThirtyDayMonths || !ToYmd(From, A) || !ToYmd(To, B)) return To - From;
  return Days360(A, B, Basis == dcbUs30360 ? m360Us : m360European);
}

double YearFraction(double From, double To, TDayCountBasis Basis) {
  if (From > To) std::swap(From, To);
  switch (Basis) {
    case dcbActualActual: return ActualActualYears(From, To);
    case dcbActual365: return (To - From) / 365;
    default: return BasisDays(From, To, Basis) / 360;
  }
}

bool CouponDate(double Anchor, int Frequency, int64_t Periods, double& Date) {
  TYmd A;
  if (!ToYmd(Anchor, A) || Periods > 40000 || Periods < -40000) return false;
  return ToSerial(AddMonths(A, Periods * (12 / Frequency), IsMonthEnd(A)), Date);
}

double CouponLength(double Start, double End, int Frequency, TDayCountBasis Basis) {
  switch (Basis) {
    case dcbActualActual: return End - Start;
    case dcbActual365: return 365.0 / Frequency;
    default: return 360.0 / Frequency;
  }
}

double DaysToPeriodEnd(double Start, double Day, double End, int Frequency, TDayCountBasis Basis) {
  if (Basis == dcbUs30360 || Basis == dcbEuropean30360) {
    return CouponLength(Start, End, Frequency, Basis) - BasisDays(Start, Day, Basis);
  }
  return End - Day;
}

bool CouponSpanHolding(double Anchor, int Frequency, double Day, TCouponSpan& Span) {
  TYmd A, D;
  if (!ToYmd(Anchor, A) || !ToYmd(Day, D)) return false;
  // Estimate the period by months, then correct it by a step or two.
  int64_t Step = 12 / Frequency;
  int64_t Months = int64_t(D.Year - A.Year) * 12 + (D.Month - A.Month);
  Span.Index = Months >= 0 ? Months / Step : -((Step - 1 - Months) / Step);
  if (!CouponDate(Anchor, Frequency, Span.Index, Span.Start)) return false;
  while (Span.Start > Day) {
    if (!CouponDate(Anchor, Frequency, --Span.Index, Span.Start)) return false;
  }
  if (!CouponDate(Anchor, Frequency, Span.Index + 1, Span.End)) return false;
  while (Span.End <= Day) {
    Span.Start = Span.End;
    if (!CouponDate(Anchor, Frequency, ++Span.Index + 1, Span.End)) return false;
  }
  return true;
}

double AccruedPeriods(double From, double To, double Anchor, int Frequency, TDayCountBasis Basis) {
  TCouponSpan Span;
  if (!CouponSpanHolding(Anchor, Frequency, From, Span)) return -1;
  double Periods = 0;
  for (double Day = From; Day < To;) {
    double Days =
        To < Span.End ? BasisDays(Day, To, Basis) : DaysToPeriodEnd(Span.Start, Day, Span.End, Frequency, Basis);
    Periods += Days / CouponLength(Span.Start, Span.End, Frequency, Basis);
    Day = Span.End;
    Span.Start = Span.End;
    if (Day < To && !CouponDate(Anchor, Frequency, ++Span.Index + 1, Span.End)) return -1;
  }
  return Periods;
}

TBondTerms ReadBondTerms(TArgReader& Reader, size_t Settlement, size_t Maturity, size_t Frequency, size_t Basis) {
  TBondTerms Bond;
  Bond.Settlement = Reader.Date(Settlement);
  Bond.Maturity = Reader.Date(Maturity);
  Bond.Frequency = ReadFrequency(Reader, Frequency);
  Bond.Basis = ReadBasis(Reader, Basis);
  Reader.Require(Bond.Settlement < Bond.Maturity);
  return Bond;
}

bool CouponPeriodAt(const TBondTerms& Bond, TCouponPeriod& Period) {
  TCouponSpan Span;
  if (!CouponSpanHolding(Bond.Maturity, Bond.Frequency, Bond.Settlement, Span)) return false;
  Period.Previous = Span.Start;
  Period.Next = Span.End;
  Period.Remaining = -Span.Index;
  Period.Accrued = BasisDays(Span.Start, Bond.Settlement, Bond.Basis);
  Period.Length = CouponLength(Span.Start, Span.End, Bond.Frequency, Bond.Basis);
  Period.ToNext = DaysToPeriodEnd(Span.Start, Bond.Settlement, Span.End, Bond.Frequency, Bond.Basis);
  return true;
}

}  // namespace Tabrino
