// Calendar arithmetic on whole-day serials for the date and financial
// built-ins: years, months and week days, without the time of day. Serials
// convert through the date-serial helpers, so valid dates run from 0001-01-01
// to 9999-12-31 here too.
#pragma once

#include <cstdint>

namespace Tabrino {

struct TYmd {
  int Year = 0, Month = 0, Day = 0;
  auto operator<=>(const TYmd&) const = default;
};

bool IsLeapYear(int Year);
int DaysInMonth(int Year, int Month);
inline int DaysInYear(int Year) {
  return IsLeapYear(Year) ? 366 : 365;
}
inline bool IsMonthEnd(const TYmd& Date) {
  return Date.Day == DaysInMonth(Date.Year, Date.Month);
}

// False for a serial or a date outside the valid dates. ToYmd drops the time.
bool ToYmd(double Serial, TYmd& Date);
bool ToSerial(const TYmd& Date, double& Serial);

// The year and month moved by whole months; the day is kept but clipped to
// the length of the new month, or, with ToMonthEnd, is the new month's last
// day. The year may leave the valid dates: ToSerial then fails.
TYmd AddMonths(const TYmd& Date, int64_t Months, bool ToMonthEnd);

// Day of the week of a whole serial, 0 = Monday ... 6 = Sunday.
inline int MondayBasedWeekday(int64_t Serial) {
  return static_cast<int>(((Serial % 7) + 12) % 7);  // serial 0 was a Saturday
}

}  // namespace Tabrino
