// Date text to date serial under the locale settings: the one parser that
// DATEVALUE, typed cell input and imports share.
#pragma once

#include <string_view>

namespace Tabrino {

// Accepts, with blanks around:
// - numbers split by one separator (the settings' DateSeparator, "/", "-" or
//   "."): three in the settings' DateOrder, or year first when it has four
//   digits ("2024-03-05"); two are month and day of CurrentYear in the
//   order's sense, or month and year when one side has four digits (day 1);
// - a month name, long or short, with a day and a year around it in either
//   order ("5 March 2024", "Mar 5, 2024", "5-Mar-24"), a leading day name
//   skipped; without a year the day falls in CurrentYear, a year alone means
//   the first of the month;
// - then optionally, after a blank or "T", a time "h:mm[:ss[.fff]]" with an
//   optional AM/PM marker, which adds its day fraction.
// Two-digit years below 30 are in 2000s, the rest in the 1900s. False for any
// other text and for a date or time that does not exist.
bool TryParseDateText(std::string_view Text, int CurrentYear, double& Serial);
// The same with the year of the local system clock.
bool TryParseDateText(std::string_view Text, double& Serial);
// A time alone, "h:mm[:ss[.fff]]" with an optional AM/PM marker, as the
// fraction of a day. False for anything else.
bool TryParseTimeText(std::string_view Text, double& Time);

}  // namespace Tabrino
