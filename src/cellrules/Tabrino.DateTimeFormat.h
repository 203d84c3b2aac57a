// Date serials and the classic date-time formatter. A serial is a double count
// of days since 1899-12-30 whose fraction is the time of day. A negative serial
// keeps its date part truncated toward zero and reads the absolute fraction as
// the time, so -1.25 is 1899-12-29 06:00. Valid dates run from 0001-01-01 to
// 9999-12-31; times are rounded to the millisecond.
#pragma once

#include <string>
#include <string_view>

namespace Tabrino {

bool TryEncodeDate(int Year, int Month, int Day, double& Serial);
// Raises EException for a date that does not exist.
double EncodeDate(int Year, int Month, int Day);
bool TryEncodeTime(int Hour, int Minute, int Second, int MilliSecond, double& Time);
// Raises EException for a time outside 00:00:00.000 to 23:59:59.999.
double EncodeTime(int Hour, int Minute, int Second, int MilliSecond);

// Both give false and zeros for a serial outside the valid dates. A time that
// rounds up to midnight belongs to the next day, in both.
bool DecodeDate(double Serial, int& Year, int& Month, int& Day);
bool DecodeTime(double Serial, int& Hour, int& Minute, int& Second, int& MilliSecond);
// 1 = Sunday ... 7 = Saturday; 0 for an invalid serial.
int DayOfWeek(double Serial);

// Tokens, case-insensitive: d dd ddd dddd, m mm mmm mmmm (m and mm mean minutes
// right after an hour token), yy yyyy, h hh, n nn, s ss, z zzz, AM/PM, A/P and
// ampm (which put the hours on a 12-hour clock). "/" and ":" give the
// settings' separators, '...' and "..." are literal, everything else is copied.
// Raises EException for a serial outside the valid dates.
std::string FormatDateTime(std::string_view Format, double DateTime);

}  // namespace Tabrino
