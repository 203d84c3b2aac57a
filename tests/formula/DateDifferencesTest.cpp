// DATEDIF, DAYS, DAYS360, YEARFRAC, MONTHS, WEEKS, YEARS. Published examples
// are marked "doc".
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

double Day(int Year, int Month, int DayOfMonth) {
  return EncodeDate(Year, Month, DayOfMonth);
}

TEST(DateDifferences, WrongArgumentCounts) {
  ExpectCases({
      {"DATEDIF", {1, 2}, E(ceValue)},
      {"DAYS", {1}, E(ceValue)},
      {"DAYS360", {1, 2, 3, 4}, E(ceValue)},
      {"YEARFRAC", {1}, E(ceValue)},
      {"MONTHS", {1, 2}, E(ceValue)},
      {"WEEKS", {1, 2, 3, 4}, E(ceValue)},
      {"YEARS", {1, 2}, E(ceValue)},
  });
}

TEST(DateDifferences, Datedif) {
  double Start = Day(2001, 6, 1), End = Day(2002, 8, 15);
  ExpectCases({
      {"DATEDIF", {Day(2001, 1, 1), Day(2003, 1, 1), "Y"}, V(2)},  // doc
      {"DATEDIF", {Start, End, "D"}, V(440)},                      // doc
      {"DATEDIF", {Start, End, "YD"}, V(75)},                      // doc
      {"DATEDIF", {Start, End, "MD"}, V(14)},
      {"DATEDIF", {Start, End, "M"}, V(14)},
      {"DATEDIF", {Start, End, "ym"}, V(2)},
      {"DATEDIF", {Day(2001, 1, 31), Day(2001, 2, 28), "M"}, V(0)},  // the 31st is not reached again
      {"DATEDIF", {Day(2001, 1, 31), Day(2002, 1, 30), "Y"}, V(0)},
      {"DATEDIF", {Day(2015, 1, 31), Day(2015, 3, 1), "MD"}, V(-2)},  // the known quirk of "MD"
      {"DATEDIF", {Day(2011, 12, 15), Day(2012, 1, 10), "YD"}, V(26)},
      {"DATEDIF", {Day(2012, 2, 29), Day(2013, 3, 1), "YD"}, V(1)},  // 29 February falls on the 28th
      {"DATEDIF", {"2001-06-01", "2002-08-15", "d"}, V(440)},
      {"DATEDIF", {End, Start, "D"}, E(ceNum)},
      {"DATEDIF", {Start, End, "W"}, E(ceNum)},
      {"DATEDIF", {Start, "soon", "D"}, E(ceValue)},
      {"DATEDIF", {Start + 0.9, End + 0.1, "D"}, V(440)},
  });
}

TEST(DateDifferences, DaysAndDays360) {
  ExpectCases({
      {"DAYS", {Day(2021, 3, 15), Day(2021, 2, 1)}, V(42)},  // doc
      {"DAYS", {"2021-03-15", "2021-02-01"}, V(42)},
      {"DAYS", {Day(2021, 2, 1), Day(2021, 3, 15)}, V(-42)},
      {"DAYS", {1.9, 0.2}, V(1)},
      {"DAYS", {"x", 1}, E(ceValue)},
      {"DAYS", {1E9, 1}, E(ceNum)},
      {"DAYS360", {Day(2014, 1, 30), Day(2014, 2, 1)}, V(1)},            // doc
      {"DAYS360", {"2008-02-29", "2008-08-31"}, V(180)},                 // doc
      {"DAYS360", {Day(2008, 12, 20), Day(2009, 3, 31)}, V(101)},        // doc
      {"DAYS360", {Day(2008, 2, 27), Day(2009, 3, 31), false}, V(394)},  // doc
      {"DAYS360", {Day(2008, 2, 27), Day(2009, 3, 31), true}, V(393)},   // doc, European
      {"DAYS360", {Day(2011, 1, 15), Day(2011, 2, 28)}, V(43)},
      {"DAYS360", {Day(2011, 3, 31), Day(2011, 1, 15)}, V(-75)},
  });
}

TEST(DateDifferences, Yearfrac) {
  double Start = Day(2012, 1, 1), End = Day(2012, 7, 30);
  EXPECT_TRUE(IsNear(Call("YEARFRAC", {Start, End}), 0.58055555555555556));     // doc
  EXPECT_TRUE(IsNear(Call("YEARFRAC", {Start, End, 1}), 0.57650273224043716));  // doc
  EXPECT_TRUE(IsNear(Call("YEARFRAC", {Start, End, 3}), 0.57808219178082192));  // doc
  EXPECT_TRUE(IsNear(Call("YEARFRAC", {End, Start, 2}), 211.0 / 360));
  ExpectCases({
      {"YEARFRAC", {Day(2007, 1, 1), Day(2009, 7, 1), 0}, V(2.5)},  // doc
      {"YEARFRAC", {Start, End, 5}, E(ceNum)},
      {"YEARFRAC", {Start, End, -1}, E(ceNum)},
      {"YEARFRAC", {Start, End, "b"}, E(ceValue)},
      {"YEARFRAC", {"x", End, 9}, E(ceValue)},
  });
}

TEST(DateDifferences, MonthsWeeksYears) {
  ExpectCases({
      // doc examples
      {"MONTHS", {"2010-04-03", "2011-06-17", 0}, V(14)},
      {"MONTHS", {"2010-03-31", "2010-04-30", 0}, V(0)},
      {"MONTHS", {"2010-03-31", "2010-06-30", 0}, V(2)},
      {"MONTHS", {"2010-04-03", "2011-06-17", 1}, V(14)},
      {"MONTHS", {"2010-03-31", "2010-04-01", 1}, V(1)},
      {"WEEKS", {"2010-05-03", "2010-05-17", 0}, V(2)},
      {"WEEKS", {"2010-05-04", "2010-05-27", 0}, V(3)},
      {"WEEKS", {"2010-05-06", "2010-05-17", 1}, V(2)},
      {"WEEKS", {"2010-05-09", "2010-05-10", 1}, V(1)},
      // Reversed dates give the negative count.
      {"MONTHS", {"2011-06-17", "2010-04-03", 0}, V(-14)},
      {"WEEKS", {"2010-05-27", "2010-05-04", 0}, V(-3)},
      {"WEEKS", {"2010-05-10", "2010-05-09", 1}, V(-1)},
      {"YEARS", {"2009-02-28", "2008-02-29", 0}, V(0)},
      {"YEARS", {"2008-02-29", "2009-02-28", 0}, V(0)},
      {"YEARS", {"2008-02-29", "2012-02-29", 0}, V(4)},
      {"YEARS", {"2010-12-31", "2011-01-01", 0}, V(0)},
      {"YEARS", {"2010-12-31", "2011-01-01", 1}, V(1)},
      {"MONTHS", {"2010-04-03", "2011-06-17", "t"}, E(ceValue)},
  });
}

}  // namespace
}  // namespace Tabrino
