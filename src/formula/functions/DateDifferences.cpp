// Differences between two dates: in days (DAYS, DAYS360), in whole units
// (DATEDIF, MONTHS, WEEKS, YEARS) and as a fraction of a year (YEARFRAC).
// Dates are read as day serials or date texts, times of day dropped.
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.CivilDate.h"
#include "Tabrino.Formula.DayCount.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// Two date arguments, decoded.
struct TDatePair {
  double First = 0, Second = 0;
  TYmd A, B;
};

bool ReadDatePair(TArgReader& R, size_t FirstIndex, size_t SecondIndex, TDatePair& Pair) {
  Pair.First = R.Date(FirstIndex);
  Pair.Second = R.Date(SecondIndex);
  return !R.Failed() && ToYmd(Pair.First, Pair.A) && ToYmd(Pair.Second, Pair.B);
}

// Whole months from A to B (A not after B): a month is complete once the
// day of the month is reached again.
int64_t WholeMonths(const TYmd& A, const TYmd& B) {
  return int64_t(B.Year - A.Year) * 12 + (B.Month - A.Month) - (B.Day < A.Day ? 1 : 0);
}

// Whole months, negative when the second date comes first.
int64_t SignedWholeMonths(const TDatePair& P) {
  return P.First <= P.Second ? WholeMonths(P.A, P.B) : -WholeMonths(P.B, P.A);
}

// DATEDIF's "MD": the days of the month apart, borrowing the length of the
// month before the end's month when the end's day is the smaller. Like the
// function it imitates, this can come out negative when the start's day does
// not exist in that month (31 January to 1 March gives -2).
int DayOfMonthDifference(const TYmd& A, const TYmd& B) {
  int Days = B.Day - A.Day;
  if (Days >= 0) return Days;
  TYmd PreviousMonth = AddMonths(B, -1, false);
  return Days + DaysInMonth(PreviousMonth.Year, PreviousMonth.Month);
}

// DATEDIF's "YD": days from the start's anniversary on or before the end. A
// 29 February falls on the 28th in other years.
double DaysSinceAnniversary(const TDatePair& P) {
  int Years = P.B.Year - P.A.Year;
  if (std::pair(P.B.Month, P.B.Day) < std::pair(P.A.Month, P.A.Day)) --Years;
  double Anniversary;
  if (!ToSerial(AddMonths(P.A, int64_t(Years) * 12, false), Anniversary)) return 0;
  return P.Second - Anniversary;
}

TCellValue FnDatedif(const TFunctionCall& C) {
  TArgReader R(C);
  TDatePair P;
  std::string Unit = ArgText(C[2]);
  for (char& Ch : Unit) Ch = static_cast<char>(Ch >= 'a' && Ch <= 'z' ? Ch - 32 : Ch);
  if (!ReadDatePair(R, 0, 1, P)) return Err(R.Error());
  if (P.First > P.Second) return Err(ceNum);
  int64_t Months = WholeMonths(P.A, P.B);
  if (Unit == "D") return Num(P.Second - P.First);
  if (Unit == "M") return Num(static_cast<double>(Months));
  if (Unit == "Y") return Num(static_cast<double>(Months / 12));
  if (Unit == "YM") return Num(static_cast<double>(Months % 12));
  if (Unit == "MD") return Num(DayOfMonthDifference(P.A, P.B));
  if (Unit == "YD") return Num(DaysSinceAnniversary(P));
  return Err(ceNum);
}

// DAYS(end, start)
TCellValue FnDays(const TFunctionCall& C) {
  TArgReader R(C);
  double End = R.Date(0), Start = R.Date(1);
  return R.Failed() ? Err(R.Error()) : Num(End - Start);
}

// DAYS360(start, end, [european])
TCellValue FnDays360(const TFunctionCall& C) {
  TArgReader R(C);
  TDatePair P;
  if (!ReadDatePair(R, 0, 1, P)) return Err(R.Error());
  return Num(Days360(P.A, P.B, R.OptTruthy(2, false) ? m360European : m360Nasd));
}

// YEARFRAC(start, end, [basis])
TCellValue FnYearfrac(const TFunctionCall& C) {
  TArgReader R(C);
  double Start = R.Date(0), End = R.Date(1);
  TDayCountBasis Basis = ReadBasis(R, 2);
  return R.Failed() ? Err(R.Error()) : Num(YearFraction(Start, End, Basis));
}

// MONTHS, WEEKS and YEARS(start, end, type): type 0 counts whole units of
// time from the start, any other type the calendar units (months, Monday to
// Sunday weeks, years) the two dates lie apart. Negative when the end comes
// first.
TCellValue FnMonths(const TFunctionCall& C) {
  TArgReader R(C);
  TDatePair P;
  bool Calendar = R.Integer(2) != 0;
  if (!ReadDatePair(R, 0, 1, P)) return Err(R.Error());
  if (Calendar) return Num((P.B.Year - P.A.Year) * 12.0 + (P.B.Month - P.A.Month));
  return Num(static_cast<double>(SignedWholeMonths(P)));
}

TCellValue FnYears(const TFunctionCall& C) {
  TArgReader R(C);
  TDatePair P;
  bool Calendar = R.Integer(2) != 0;
  if (!ReadDatePair(R, 0, 1, P)) return Err(R.Error());
  if (Calendar) return Num(P.B.Year - P.A.Year);
  return Num(static_cast<double>(SignedWholeMonths(P) / 12));
}

TCellValue FnWeeks(const TFunctionCall& C) {
  TArgReader R(C);
  bool Calendar = R.Integer(2) != 0;
  double Start = R.Date(0), End = R.Date(1);
  if (R.Failed()) return Err(R.Error());
  if (!Calendar) return Num(std::trunc((End - Start) / 7));
  auto WeekStart = [](double Serial) { return Serial - MondayBasedWeekday(static_cast<int64_t>(Serial)); };
  return Num((WeekStart(End) - WeekStart(Start)) / 7);
}

}  // namespace

std::span<const TFunctionDef> DateDifferenceFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"DATEDIF", 3, 3, fnNone, FnDatedif},   {"DAYS", 2, 2, fnNone, FnDays},     {"DAYS360", 2, 3, fnNone, FnDays360},
      {"YEARFRAC", 2, 3, fnNone, FnYearfrac}, {"MONTHS", 3, 3, fnNone, FnMonths}, {"WEEKS", 3, 3, fnNone, FnWeeks},
      {"YEARS", 3, 3, fnNone, FnYears},
  };
  return Table;
}

}  // namespace Tabrino
