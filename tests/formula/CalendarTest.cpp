// Week numbers, month and year lengths, Easter, TIMEVALUE and INTERVAL.
// Published examples are marked "doc".
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

double Day(int Year, int Month, int DayOfMonth) {
  return EncodeDate(Year, Month, DayOfMonth);
}

TEST(Calendar, WrongArgumentCountsAndTypes) {
  ExpectCases({
      {"ISOWEEKNUM", {}, E(ceValue)},
      {"WEEKNUM", {1, 2, 3}, E(ceValue)},
      {"TIMEVALUE", {"1:00", 2}, E(ceValue)},
      {"EASTERSUNDAY", {}, E(ceValue)},
      {"INTERVAL", {1, 2}, E(ceValue)},
      {"ISOWEEKNUM", {"someday"}, E(ceValue)},
      {"DAYSINMONTH", {E(ceNA)}, E(ceValue)},
      {"WEEKSINYEAR", {-1E9}, E(ceNum)},
      {"EASTERSUNDAY", {"year"}, E(ceValue)},
      {"INTERVAL", {"s"}, E(ceValue)},
  });
}

TEST(Calendar, WeekNumbers) {
  double Friday = Day(2012, 3, 9);  // 1 January 2012 was a Sunday
  ExpectCases({
      {"ISOWEEKNUM", {Friday}, V(10)},  // doc
      {"WEEKNUM", {Friday}, V(10)},     // doc
      {"WEEKNUM", {Friday, 2}, V(11)},  // doc
      {"WEEKNUM", {Friday, 11}, V(11)},
      {"WEEKNUM", {Friday, 15}, V(11)},  // weeks from Friday
      {"WEEKNUM", {Friday, 16}, V(10)},  // from Saturday
      {"WEEKNUM", {Friday, 17}, V(10)},
      {"WEEKNUM", {Friday, 21}, V(10)},
      {"WEEKNUM", {Day(2012, 1, 1), 2}, V(1)},
      {"WEEKNUM", {Day(2012, 1, 2), 2}, V(2)},
      {"WEEKNUM", {Day(2012, 12, 31), 1}, V(53)},
      {"WEEKNUM", {Friday, 3}, E(ceNum)},
      {"WEEKNUM", {Friday, 18}, E(ceNum)},
      // ISO weeks belong to the year of their Thursday.
      {"ISOWEEKNUM", {Day(2021, 1, 1)}, V(53)},
      {"ISOWEEKNUM", {Day(2018, 12, 31)}, V(1)},
      {"ISOWEEKNUM", {Day(2016, 1, 3)}, V(53)},
      {"ISOWEEKNUM", {"2012-03-09"}, V(10)},
      {"WEEKSINYEAR", {Day(2015, 6, 1)}, V(53)},
      {"WEEKSINYEAR", {Day(2020, 1, 1)}, V(53)},
      {"WEEKSINYEAR", {Day(2021, 12, 31)}, V(52)},
  });
}

TEST(Calendar, MonthsYearsAndEaster) {
  ExpectCases({
      {"DAYSINMONTH", {Day(2012, 2, 5)}, V(29)},
      {"DAYSINMONTH", {Day(2100, 2, 5)}, V(28)},
      {"DAYSINMONTH", {Day(2011, 4, 30)}, V(30)},
      {"DAYSINYEAR", {Day(2000, 6, 1)}, V(366)},
      {"DAYSINYEAR", {Day(1900, 6, 1)}, V(365)},
      {"ISLEAPYEAR", {Day(2000, 1, 1)}, V(true)},
      {"ISLEAPYEAR", {Day(1900, 1, 1)}, V(false)},
      {"ISLEAPYEAR", {Day(2024, 12, 31)}, V(true)},
      {"EASTERSUNDAY", {2024}, V(Day(2024, 3, 31))},
      {"EASTERSUNDAY", {2000}, V(Day(2000, 4, 23))},
      {"EASTERSUNDAY", {2019}, V(Day(2019, 4, 21))},
      {"EASTERSUNDAY", {1583}, V(Day(1583, 4, 10))},
      {"EASTERSUNDAY", {24}, V(Day(2024, 3, 31))},  // two-digit years as date texts read them
      {"EASTERSUNDAY", {99}, V(Day(1999, 4, 4))},
      {"EASTERSUNDAY", {1582}, E(ceNum)},
      {"EASTERSUNDAY", {-5}, E(ceNum)},
  });
}

TEST(Calendar, Timevalue) {
  EXPECT_TRUE(IsNear(Call("TIMEVALUE", {"2:24 AM"}), 0.1));                       // doc
  EXPECT_TRUE(IsNear(Call("TIMEVALUE", {"22-Aug-2011 6:35 AM"}), 395.0 / 1440));  // doc
  EXPECT_TRUE(IsNear(Call("TIMEVALUE", {" 18:30:15 "}), (18 * 3600 + 30 * 60 + 15) / 86400.0));
  ExpectCases({
      {"TIMEVALUE", {"2011-08-22"}, V(0)},
      {"TIMEVALUE", {0.5}, E(ceValue)},  // text only
      {"TIMEVALUE", {"noon"}, E(ceValue)},
      {"TIMEVALUE", {"25:00"}, E(ceValue)},
  });
}

TEST(Calendar, Interval) {
  ExpectCases({
      {"INTERVAL", {0}, V("PT0S")},
      {"INTERVAL", {45}, V("PT45S")},
      {"INTERVAL", {59.9}, V("PT59S")},
      {"INTERVAL", {3661}, V("PT1H1M1S")},
      {"INTERVAL", {86400}, V("P1D")},
      {"INTERVAL", {90061}, V("P1DT1H1M1S")},
      {"INTERVAL", {10000000}, V("P3M25DT17H46M40S")},
      {"INTERVAL", {360 * 86400}, V("P1Y")},
      {"INTERVAL", {-1}, E(ceNum)},
      {"INTERVAL", {1E300}, E(ceNum)},
  });
}

}  // namespace
}  // namespace Tabrino
