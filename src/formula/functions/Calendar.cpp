// Facts about a date's place in the calendar: week numbers, month and year
// lengths, leap years, Easter; and two conversions of time spans, TIMEVALUE
// (a time text to a day fraction) and INTERVAL (seconds to an ISO 8601
// duration text).
#include <cstdint>
#include <string>
#include <utility>

#include "Tabrino.DateParse.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.CivilDate.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// The single date argument, decoded; false leaves the error in the reader.
bool ReadDate(TArgReader& R, size_t Index, double& Serial, TYmd& Date) {
  Serial = R.Date(Index);
  return !R.Failed() && ToYmd(Serial, Date);
}

double FirstOfJanuary(int Year) {
  double Serial = 0;
  ToSerial({Year, 1, 1}, Serial);
  return Serial;
}

// ISO 8601: weeks start on Monday, and week 1 holds the year's first Thursday.
int IsoWeekNumber(double Serial) {
  double Thursday = Serial - MondayBasedWeekday(static_cast<int64_t>(Serial)) + 3;
  TYmd Date;
  if (!ToYmd(Thursday, Date)) return 0;
  return static_cast<int>(Thursday - FirstOfJanuary(Date.Year)) / 7 + 1;
}

TCellValue FnIsoweeknum(const TFunctionCall& C) {
  TArgReader R(C);
  double Serial;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  int Week = IsoWeekNumber(Serial);
  return Week > 0 ? Num(Week) : Err(ceNum);
}

// WEEKNUM(date, [type]): week 1 is the week that holds 1 January, weeks
// starting on the type's day (1 and 17 Sunday, 2 and 11 Monday, 12 Tuesday
// ... 16 Saturday); type 21 is the ISO week.
TCellValue FnWeeknum(const TFunctionCall& C) {
  TArgReader R(C);
  double Type = R.OptInteger(1, 1);
  double Serial;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  int WeekStart;  // 0 = Monday ... 6 = Sunday
  if (Type == 1) {
    WeekStart = 6;
  } else if (Type == 2) {
    WeekStart = 0;
  } else if (Type >= 11 && Type <= 17) {
    WeekStart = static_cast<int>(Type) - 11;
  } else if (Type == 21) {
    int Week = IsoWeekNumber(Serial);
    return Week > 0 ? Num(Week) : Err(ceNum);
  } else {
    return Err(ceNum);
  }
  double January1 = FirstOfJanuary(Date.Year);
  int Lead = (MondayBasedWeekday(static_cast<int64_t>(January1)) - WeekStart + 7) % 7;
  return Num(static_cast<int>(Serial - January1 + Lead) / 7 + 1);
}

// The text's time of day; a date in it is passed over. Only text is read.
TCellValue FnTimevalue(const TFunctionCall& C) {
  TCellValue V = C[0].First();
  if (V.Kind != cvkText) return Err(ceValue);
  double Time;
  if (TryParseTimeText(V.Text, Time)) return Num(Time);
  int CurrentYear, Month, Day;
  double Serial;
  if (!DecodeDate(C.Context.Now(), CurrentYear, Month, Day) || !TryParseDateText(V.Text, CurrentYear, Serial)) {
    return Err(ceValue);
  }
  // The time's fields again, as subtracting the day would cost digits.
  int Hour, Minute, Second, MilliSecond;
  DecodeTime(Serial, Hour, Minute, Second, MilliSecond);
  return Num(EncodeTime(Hour, Minute, Second, MilliSecond));
}

TCellValue FnDaysinmonth(const TFunctionCall& C) {
  TArgReader R(C);
  double Serial;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  return Num(DaysInMonth(Date.Year, Date.Month));
}

TCellValue FnDaysinyear(const TFunctionCall& C) {
  TArgReader R(C);
  double Serial;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  return Num(DaysInYear(Date.Year));
}

TCellValue FnIsleapyear(const TFunctionCall& C) {
  TArgReader R(C);
  double Serial;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  return Bool(IsLeapYear(Date.Year));
}

// 52, or 53 for a year whose 28 December lies in ISO week 53.
TCellValue FnWeeksinyear(const TFunctionCall& C) {
  TArgReader R(C);
  double Serial, December28;
  TYmd Date;
  if (!ReadDate(R, 0, Serial, Date)) return Err(R.Error());
  if (!ToSerial({Date.Year, 12, 28}, December28)) return Err(ceNum);
  return Num(IsoWeekNumber(December28));
}

// EASTERSUNDAY(year): the Gregorian computus (the anonymous algorithm). Years
// 0-99 read as two-digit years the way date texts do: below 30 in the 2000s.
TCellValue FnEastersunday(const TFunctionCall& C) {
  TArgReader R(C);
  double Year = R.Integer(0);
  if (R.Failed()) return Err(R.Error());
  if (Year >= 0 && Year < 100) Year += Year < 30 ? 2000 : 1900;
  if (Year < 1583 || Year > 9999) return Err(ceNum);
  int Y = static_cast<int>(Year);
  int A = Y % 19, B = Y / 100, Cy = Y % 100, D = B / 4, E = B % 4;
  int F = (B + 8) / 25, G = (B - F + 1) / 3;
  int H = (19 * A + B - D - G + 15) % 30;
  int I = Cy / 4, K = Cy % 4;
  int L = (32 + 2 * E + 2 * I - H - K) % 7;
  int M = (A + 11 * H + 22 * L) / 451;
  int Month = (H + L - 7 * M + 114) / 31, Day = (H + L - 7 * M + 114) % 31 + 1;
  double Serial;
  return ToSerial({Y, Month, Day}, Serial) ? Num(Serial) : Err(ceNum);
}

// INTERVAL(seconds): an ISO 8601 duration of whole seconds, counting months
// of 30 days and years of 12 such months; parts that are zero are left out
// ("P1DT2H", "PT45S"), and no time at all is "PT0S".
TCellValue FnInterval(const TFunctionCall& C) {
  TArgReader R(C);
  double Seconds = R.Integer(0);
  if (R.Failed()) return Err(R.Error());
  if (Seconds < 0 || Seconds >= 1E15) return Err(ceNum);
  int64_t Rest = static_cast<int64_t>(Seconds);
  int64_t Second = Rest % 60, Minute = Rest / 60 % 60, Hour = Rest / 3600 % 24;
  int64_t Days = Rest / 86400;
  int64_t Day = Days % 30, Month = Days / 30 % 12, Year = Days / 360;
  std::string Duration = "P";
  auto Part = [&Duration](int64_t Count, char Unit) {
    if (Count != 0) Duration += std::to_string(Count) + Unit;
  };
  Part(Year, 'Y');
  Part(Month, 'M');
  Part(Day, 'D');
  if (Hour != 0 || Minute != 0 || Second != 0 || Rest == 0) {
    Duration += 'T';
    Part(Hour, 'H');
    Part(Minute, 'M');
    Part(Second, 'S');
    if (Rest == 0) Duration += "0S";
  }
  return Text(std::move(Duration));
}

}  // namespace

std::span<const TFunctionDef> CalendarFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ISOWEEKNUM", 1, 1, fnNone, FnIsoweeknum},   {"WEEKNUM", 1, 2, fnNone, FnWeeknum},
      {"TIMEVALUE", 1, 1, fnNone, FnTimevalue},     {"DAYSINMONTH", 1, 1, fnNone, FnDaysinmonth},
      {"DAYSINYEAR", 1, 1, fnNone, FnDaysinyear},   {"ISLEAPYEAR", 1, 1, fnNone, FnIsleapyear},
      {"WEEKSINYEAR", 1, 1, fnNone, FnWeeksinyear}, {"EASTERSUNDAY", 1, 1, fnNone, FnEastersunday},
      {"INTERVAL", 1, 1, fnNone, FnInterval},
  };
  return Table;
}

}  // namespace Tabrino
