// Date and time built-ins over date serials: days since 1899-12-30 with the
// time of day as fraction. The calendar itself lives in the date-serial
// helpers; these functions only convert arguments and pick fields.
#include <algorithm>
#include <cmath>

#include "Tabrino.DateParse.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// An integer argument that fits an int; wider values can be no calendar field.
bool IntArg(const TFormulaArg& Arg, int& Value) {
  double N;
  if (!ArgInteger(Arg, N) || !(std::fabs(N) <= 1E9)) return false;
  Value = static_cast<int>(N);
  return true;
}

TCellValue FnToday(const TFunctionCall& C) {
  return Num(std::floor(C.Context.Now()));
}
TCellValue FnNow(const TFunctionCall& C) {
  return Num(C.Context.Now());
}

// No rollover: month 13 or day 32 is #VALUE!, like any date that does not exist.
TCellValue FnDate(const TFunctionCall& C) {
  int Year, Month, Day;
  double Serial;
  if (!IntArg(C[0], Year) || !IntArg(C[1], Month) || !IntArg(C[2], Day)) return Err(ceValue);
  return TryEncodeDate(Year, Month, Day, Serial) ? Num(Serial) : Err(ceValue);
}

// Each part is taken modulo its unit, so TIME(25,0,0) is 1:00.
TCellValue FnTime(const TFunctionCall& C) {
  double Parts[3];
  for (size_t I = 0; I < 3; ++I) {
    if (!ArgInteger(C[I], Parts[I]) || !std::isfinite(Parts[I])) return Err(ceValue);
  }
  auto Modulo = [](double V, double Unit) {
    double R = std::fmod(V, Unit);
    return static_cast<int>(R < 0 ? R + Unit : R);
  };
  return Num(EncodeTime(Modulo(Parts[0], 24), Modulo(Parts[1], 60), Modulo(Parts[2], 60), 0));
}

enum TSerialField { sfYear, sfMonth, sfDay, sfHour, sfMinute, sfSecond, sfMilliSecond };

template <TSerialField Field>
TCellValue SerialField(const TFunctionCall& C) {
  double Serial;
  if (!ArgNumber(C[0], Serial)) return Err(ceValue);
  int F[7];
  if (!DecodeDate(Serial, F[sfYear], F[sfMonth], F[sfDay]) ||
      !DecodeTime(Serial, F[sfHour], F[sfMinute], F[sfSecond], F[sfMilliSecond])) {
    return Err(ceNum);
  }
  return Num(F[Field]);
}

// Type 1 counts Sunday 1 to Saturday 7; every other type, 2 and 3 alike,
// Monday 1 to Sunday 7.
TCellValue FnWeekday(const TFunctionCall& C) {
  double Serial, Type;
  if (!ArgNumber(C[0], Serial) || !OptArgInteger(C, 1, 1, Type)) return Err(ceValue);
  int SundayFirst = DayOfWeek(Serial);
  if (SundayFirst == 0) return Err(ceNum);
  return Num(Type == 1 ? SundayFirst : (SundayFirst + 5) % 7 + 1);
}

// The serial of the month's last day: the first of the next month less one.
bool LastDayOfMonth(int Year, int Month, double& Serial) {
  double NextFirst;
  if (TryEncodeDate(Month == 12 ? Year + 1 : Year, Month % 12 + 1, 1, NextFirst)) {
    Serial = NextFirst - 1;
    return true;
  }
  return TryEncodeDate(Year, Month, 31, Serial);  // December of the last year has no next month
}

struct TShiftedMonth {
  int Year = 0, Month = 0, Day = 0;
  double LastDay = 0;
};

// The date's year and month moved by whole months, with the last day of the
// month reached. #VALUE! for arguments that are no numbers, #NUM! when either
// end leaves the calendar.
TCellErrorCode ShiftMonths(const TFunctionCall& C, TShiftedMonth& Out) {
  double Serial, Months;
  if (!ArgNumber(C[0], Serial) || !ArgInteger(C[1], Months)) return ceValue;
  int Year, Month;
  if (!DecodeDate(Serial, Year, Month, Out.Day) || !(std::fabs(Months) <= 120000)) return ceNum;
  int Index = Year * 12 + (Month - 1) + static_cast<int>(Months);
  Out.Year = Index / 12;
  Out.Month = Index % 12 + 1;
  return Index >= 0 && LastDayOfMonth(Out.Year, Out.Month, Out.LastDay) ? ceNone : ceNum;
}

// The same day so many months on, clipped to the end of a shorter month.
TCellValue FnEdate(const TFunctionCall& C) {
  TShiftedMonth S;
  if (TCellErrorCode Error = ShiftMonths(C, S)) return Err(Error);
  int LastYear, LastMonth, LastDay;
  DecodeDate(S.LastDay, LastYear, LastMonth, LastDay);
  double Serial;
  return TryEncodeDate(S.Year, S.Month, std::min(S.Day, LastDay), Serial) ? Num(Serial) : Err(ceNum);
}

TCellValue FnEomonth(const TFunctionCall& C) {
  TShiftedMonth S;
  TCellErrorCode Error = ShiftMonths(C, S);
  return Error ? Err(Error) : Num(S.LastDay);
}

// A date text under the locale settings; a year it leaves out is the one of
// the clock's today.
TCellValue FnDatevalue(const TFunctionCall& C) {
  int CurrentYear, Month, Day;
  if (!DecodeDate(C.Context.Now(), CurrentYear, Month, Day)) return Err(ceValue);
  double Serial;
  if (!TryParseDateText(ArgText(C[0]), CurrentYear, Serial)) return Err(ceValue);
  return Num(std::trunc(Serial));
}

}  // namespace

std::span<const TFunctionDef> DateFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"TODAY", 0, 0, fnVolatile, FnToday},
      {"NOW", 0, 0, fnVolatile, FnNow},
      {"DATE", 3, 3, fnNone, FnDate},
      {"TIME", 3, 3, fnNone, FnTime},
      {"YEAR", 1, 1, fnNone, SerialField<sfYear>},
      {"MONTH", 1, 1, fnNone, SerialField<sfMonth>},
      {"DAY", 1, 1, fnNone, SerialField<sfDay>},
      {"HOUR", 1, 1, fnNone, SerialField<sfHour>},
      {"MINUTE", 1, 1, fnNone, SerialField<sfMinute>},
      {"SECOND", 1, 1, fnNone, SerialField<sfSecond>},
      {"WEEKDAY", 1, 2, fnNone, FnWeekday},
      {"EOMONTH", 2, 2, fnNone, FnEomonth},
      {"EDATE", 2, 2, fnNone, FnEdate},
      {"DATEVALUE", 1, 1, fnNone, FnDatevalue},
  };
  return Table;
}

}  // namespace Tabrino
