#include "Tabrino.Formula.CivilDate.h"

#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {

bool IsLeapYear(int Year) {
  return Year % 4 == 0 && (Year % 100 != 0 || Year % 400 == 0);
}

int DaysInMonth(int Year, int Month) {
  static constexpr int Days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return Month == 2 && IsLeapYear(Year) ? 29 : Days[Month - 1];
}

bool ToYmd(double Serial, TYmd& Date) {
  return DecodeDate(Serial, Date.Year, Date.Month, Date.Day);
}

bool ToSerial(const TYmd& Date, double& Serial) {
  return TryEncodeDate(Date.Year, Date.Month, Date.Day, Serial);
}

TYmd AddMonths(const TYmd& Date, int64_t Months, bool ToMonthEnd) {
  int64_t Index = int64_t(Date.Year) * 12 + (Date.Month - 1) + Months;
  int64_t Year = Index >= 0 ? Index / 12 : (Index - 11) / 12;
  TYmd Result{static_cast<int>(Year), static_cast<int>(Index - Year * 12) + 1, 0};
  int Last = DaysInMonth(Result.Year, Result.Month);
  Result.Day = ToMonthEnd || Date.Day > Last ? Last : Date.Day;
  return Result;
}

}  // namespace Tabrino
