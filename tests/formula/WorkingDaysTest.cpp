// NETWORKDAYS, WORKDAY and their .INTL forms with weekend codes and masks.
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

TEST(WorkingDays, WrongArgumentCounts) {
  ExpectCases({
      {"NETWORKDAYS", {1}, E(ceValue)},
      {"NETWORKDAYS", {1, 2, 3, 4}, E(ceValue)},
      {"NETWORKDAYS.INTL", {1, 2, 3, 4, 5}, E(ceValue)},
      {"WORKDAY", {1}, E(ceValue)},
      {"WORKDAY.INTL", {1, 2, 3, 4, 5}, E(ceValue)},
  });
}

TEST(WorkingDays, Networkdays) {
  double Start = Day(2012, 10, 1), End = Day(2013, 3, 1);
  TFormulaArg Holidays = Column({V(Day(2012, 11, 22)), V(Day(2012, 12, 4)), V(Day(2013, 1, 21))});
  ExpectCases({
      {"NETWORKDAYS", {Start, End}, V(110)},                     // doc
      {"NETWORKDAYS", {Start, End, Day(2012, 11, 22)}, V(109)},  // doc
      {"NETWORKDAYS", {Start, End, Holidays}, V(107)},           // doc
      {"NETWORKDAYS", {End, Start, Holidays}, V(-107)},
      {"NETWORKDAYS", {Start, Start}, V(1)},
      {"NETWORKDAYS", {Day(2012, 10, 6), Day(2012, 10, 7)}, V(0)},  // a weekend
      // A holiday on a weekend or given twice takes one day at most; blanks are no holidays.
      {"NETWORKDAYS",
       {Start, End, Column({V(Day(2012, 11, 22)), V(Day(2012, 11, 22)), V(Day(2012, 11, 24)), Blank()})},
       V(109)},
      {"NETWORKDAYS", {Start, End, Column({V("2012-11-22")})}, V(109)},
      {"NETWORKDAYS", {Start, End, Column({V("holiday")})}, E(ceValue)},
      {"NETWORKDAYS", {"start", End}, E(ceValue)},
      // From 0001-01-01, a Monday, to 9999-12-31: 521722 weeks and five days.
      {"NETWORKDAYS", {Day(1, 1, 1), Day(9999, 12, 31)}, V(2608615)},
  });
}

TEST(WorkingDays, NetworkdaysWithOwnWeekends) {
  TFormulaArg Holidays = Column({V("2006/1/2"), V("2006/1/16")});
  ExpectCases({
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31)}, V(22)},                      // doc
      {"NETWORKDAYS.INTL", {Day(2006, 2, 28), Day(2006, 1, 31)}, V(-21)},                    // doc
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 2, 1), 7, Holidays}, V(22)},          // doc
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 2, 1), "0010001", Holidays}, V(20)},  // doc
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), 1}, V(22)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), Blank()}, V(22)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), 11}, V(26)},  // Sundays only
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), 17}, V(27)},  // Saturdays only
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), "0000000"}, V(31)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), "1111111"}, V(0)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), 8}, E(ceNum)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), 0}, E(ceNum)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), "000001"}, E(ceValue)},
      {"NETWORKDAYS.INTL", {Day(2006, 1, 1), Day(2006, 1, 31), "0000012"}, E(ceValue)},
  });
}

TEST(WorkingDays, Workday) {
  double Start = Day(2008, 10, 1);  // a Wednesday
  TFormulaArg Holidays = Column({V(Day(2008, 11, 26)), V(Day(2008, 12, 4)), V(Day(2009, 1, 21))});
  ExpectCases({
      {"WORKDAY", {Start, 151}, V(Day(2009, 4, 30))},           // doc
      {"WORKDAY", {Start, 151, Holidays}, V(Day(2009, 5, 5))},  // doc
      {"WORKDAY", {Start, 1}, V(Day(2008, 10, 2))},
      {"WORKDAY", {Start, 3}, V(Day(2008, 10, 6))},
      {"WORKDAY", {Start, -5}, V(Day(2008, 9, 24))},
      {"WORKDAY", {Start, -5.9}, V(Day(2008, 9, 24))},
      {"WORKDAY", {Day(2008, 10, 4), 0}, V(Day(2008, 10, 4))},  // a Saturday stays
      {"WORKDAY", {Day(2008, 10, 4), 1}, V(Day(2008, 10, 6))},
      {"WORKDAY", {Day(2008, 10, 4), -1}, V(Day(2008, 10, 3))},
      // A million working days from a Monday: 200000 weeks.
      {"WORKDAY", {Day(2000, 1, 3), 1000000}, V(Day(2000, 1, 3) + 1400000)},
      {"WORKDAY", {Day(9999, 12, 30), 5}, E(ceNum)},
      {"WORKDAY", {Start, 1E12}, E(ceNum)},
      {"WORKDAY", {Start, "n"}, E(ceValue)},
  });
}

TEST(WorkingDays, WorkdayWithOwnWeekends) {
  ExpectCases({
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, 0}, E(ceNum)},              // doc
      {"WORKDAY.INTL", {Day(2012, 1, 1), 90, 11}, V(Day(2012, 4, 14))},  // doc
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, 17}, V(Day(2012, 2, 5))},   // doc
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, "0000011"}, V(Day(2012, 2, 10))},
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, "0000000"}, V(Day(2012, 1, 31))},
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, "1111111"}, E(ceValue)},
      {"WORKDAY.INTL", {Day(2012, 1, 1), 30, "111111"}, E(ceValue)},
      {"WORKDAY.INTL", {Day(2012, 1, 1), -3, "1000001", Column({V(Day(2011, 12, 30))})}, V(Day(2011, 12, 28))},
  });
}

}  // namespace
}  // namespace Tabrino
