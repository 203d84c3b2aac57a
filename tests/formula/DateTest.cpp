#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FunctionTestSupport.h"
#include "Tabrino.DateParse.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.FormatSettings.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// 2024-02-29 18:00, a Thursday.
constexpr double Leap = 45351;
constexpr double LeapEvening = 45351.75;

TFormulaContext PinnedClock(const TClockFunc& Clock) {
  TFormulaContext Context;
  Context.Clock = &Clock;
  return Context;
}

TEST(Date, WrongArgumentCounts) {
  ExpectCases({
      {"TODAY", {1}, E(ceValue)},
      {"DATE", {2024, 1}, E(ceValue)},
      {"TIME", {1, 2, 3, 4}, E(ceValue)},
      {"YEAR", {}, E(ceValue)},
      {"WEEKDAY", {1, 2, 3}, E(ceValue)},
      {"EDATE", {1}, E(ceValue)},
      {"DATEVALUE", {}, E(ceValue)},
  });
}

TEST(Date, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"DATE", {"2024", 1, 1}, V(45292)},
      {"DATE", {"x", 1, 1}, E(ceValue)},
      {"YEAR", {"soon"}, E(ceValue)},
      {"YEAR", {E(ceNA)}, E(ceValue)},
      {"WEEKDAY", {Leap, "x"}, E(ceValue)},
      {"EDATE", {"x", 1}, E(ceValue)},
      {"EOMONTH", {Leap, "x"}, E(ceValue)},
      {"DATEVALUE", {45351}, E(ceValue)},
  });
}

TEST(Date, DateHasNoRollover) {
  ExpectCases({
      {"DATE", {2024, 2, 29}, V(Leap)},
      {"DATE", {1899, 12, 30}, V(0)},
      {"DATE", {2024.9, 2.5, 29.99}, V(Leap)},
      {"DATE", {2024, 13, 1}, E(ceValue)},
      {"DATE", {2024, 1, 32}, E(ceValue)},
      {"DATE", {2023, 2, 29}, E(ceValue)},
      {"DATE", {2024, 0, 1}, E(ceValue)},
      {"DATE", {10000, 1, 1}, E(ceValue)},
      {"DATE", {1E300, 1, 1}, E(ceValue)},
  });
}

TEST(Date, TimeTakesEachPartModuloItsUnit) {
  ExpectCases({
      {"TIME", {18, 0, 0}, V(0.75)},
      {"TIME", {42, 0, 0}, V(0.75)},
      {"TIME", {-6, 0, 0}, V(0.75)},
      {"TIME", {18, 60, 0}, V(0.75)},
      {"TIME", {1E300, 0, 0}, V(EncodeTime(static_cast<int>(std::fmod(1E300, 24)), 0, 0, 0))},
  });
  EXPECT_EQ(Call("TIME", {6, 30, 15}), V(EncodeTime(6, 30, 15, 0)));
}

TEST(Date, FieldsOfASerial) {
  ExpectCases({
      {"YEAR", {LeapEvening}, V(2024)},
      {"MONTH", {LeapEvening}, V(2)},
      {"DAY", {LeapEvening}, V(29)},
      {"HOUR", {LeapEvening}, V(18)},
      {"MINUTE", {Leap + EncodeTime(6, 7, 8, 0)}, V(7)},
      {"SECOND", {Leap + EncodeTime(6, 7, 8, 0)}, V(8)},
      {"YEAR", {Blank()}, V(1899)},
      {"YEAR", {1E12}, E(ceNum)},
      {"HOUR", {-1E12}, E(ceNum)},
  });
}

TEST(Date, WeekdayNumbering) {
  ExpectCases({
      {"WEEKDAY", {Leap}, V(5)},
      {"WEEKDAY", {Leap, 1}, V(5)},
      {"WEEKDAY", {Leap, 2}, V(4)},
      {"WEEKDAY", {Leap, 3}, V(4)},  // type 3 has no numbering of its own
      {"WEEKDAY", {Leap + 3, 1}, V(1)},
      {"WEEKDAY", {Leap + 3, 2}, V(7)},
      {"WEEKDAY", {1E12}, E(ceNum)},
  });
}

TEST(Date, MonthArithmeticClipsToTheMonthEnd) {
  double Jan31 = EncodeDate(2024, 1, 31);
  ExpectCases({
      {"EDATE", {Jan31, 1}, V(Leap)},
      {"EDATE", {Jan31, 13}, V(EncodeDate(2025, 2, 28))},
      {"EDATE", {Jan31, -2}, V(EncodeDate(2023, 11, 30))},
      {"EDATE", {Jan31 + 0.5, 0}, V(Jan31)},
      {"EDATE", {Jan31, 1.9}, V(Leap)},
      {"EOMONTH", {EncodeDate(2024, 2, 3), 0}, V(Leap)},
      {"EOMONTH", {Jan31, -1}, V(EncodeDate(2023, 12, 31))},
      {"EOMONTH", {EncodeDate(9999, 12, 1), 0}, V(EncodeDate(9999, 12, 31))},
      {"EOMONTH", {EncodeDate(9999, 12, 1), 1}, E(ceNum)},
      {"EDATE", {EncodeDate(1, 1, 1), -1}, E(ceNum)},
      {"EDATE", {Jan31, 1E300}, E(ceNum)},
  });
}

TEST(Date, TodayAndNowReadTheContextClock) {
  TClockFunc Clock = [] { return LeapEvening; };
  TFormulaContext Context = PinnedClock(Clock);
  ExpectCases({{"TODAY", {}, V(Leap)}, {"NOW", {}, V(LeapEvening)}}, Context);
  EXPECT_EQ(FindFunction("NOW")->Flags & fnVolatile, fnVolatile);
  EXPECT_EQ(FindFunction("TODAY")->Flags & fnVolatile, fnVolatile);
  EXPECT_EQ(FindFunction("DATE")->Flags & fnVolatile, 0);
  // The system clock lies well inside the calendar.
  TCellValue Today = Call("TODAY", {});
  ASSERT_EQ(Today.Kind, cvkNumber);
  EXPECT_GT(Today.Number, EncodeDate(2020, 1, 1));
}

TEST(Date, DatevalueUsesTheLocaleAndTheClocksYear) {
  TClockFunc Clock = [] { return LeapEvening; };
  TFormulaContext Context = PinnedClock(Clock);
  ExpectCases(
      {
          {"DATEVALUE", {"2/29/2024"}, V(Leap)},
          {"DATEVALUE", {"2024-02-29"}, V(Leap)},
          {"DATEVALUE", {"29 February 2024"}, V(Leap)},
          {"DATEVALUE", {"2/29/2024 6:00 PM"}, V(Leap)},
          {"DATEVALUE", {"3/5"}, V(EncodeDate(2024, 3, 5))},
          {"DATEVALUE", {"2/30/2024"}, E(ceValue)},
          {"DATEVALUE", {"tomorrow"}, E(ceValue)},
          {"DATEVALUE", {""}, E(ceValue)},
      },
      Context);
  TFormatSettings German;
  German.DateOrder = doDMY;
  German.DateSeparator = ".";
  TFormatSettingsScope Scope(German);
  ExpectCases({{"DATEVALUE", {"29.02.2024"}, V(Leap)}, {"DATEVALUE", {"2.3."}, E(ceValue)}}, Context);
}

struct TParseCase {
  const char* Text;
  double Expected;
};

constexpr double NoDate = std::numeric_limits<double>::quiet_NaN();

void ExpectParses(std::initializer_list<TParseCase> Cases) {
  for (const TParseCase& Case : Cases) {
    double Serial = -1;
    bool Parsed = TryParseDateText(Case.Text, 2024, Serial);
    if (std::isnan(Case.Expected)) {
      EXPECT_FALSE(Parsed) << Case.Text << " read as " << Serial;
    } else {
      EXPECT_TRUE(Parsed) << Case.Text;
      EXPECT_DOUBLE_EQ(Serial, Case.Expected) << Case.Text;
    }
  }
}

TEST(DateParse, NumericDatesFollowTheLocaleOrder) {
  ExpectParses({
      {"3/5/2024", EncodeDate(2024, 3, 5)},
      {" 3-5-2024 ", EncodeDate(2024, 3, 5)},
      {"3.5.24", EncodeDate(2024, 3, 5)},
      {"3/5/29", EncodeDate(2029, 3, 5)},
      {"3/5/30", EncodeDate(1930, 3, 5)},
      {"3/5/0024", EncodeDate(24, 3, 5)},
      {"2024/3/5", EncodeDate(2024, 3, 5)},
      {"3/5", EncodeDate(2024, 3, 5)},
      {"3/2025", EncodeDate(2025, 3, 1)},
      {"2025-03", EncodeDate(2025, 3, 1)},
      {"3/5-2024", NoDate},
      {"3 5 2024", NoDate},
      {"13/5/2024", NoDate},
      {"3/5/2024/1", NoDate},
      {"3/5/12345", NoDate},
      {"99999999999999999999/1/1", NoDate},
      {"/3/5", NoDate},
  });
  TFormatSettings Dmy;
  Dmy.DateOrder = doDMY;
  Dmy.DateSeparator = ".";
  Dmy.TimeSeparator = ".";
  {
    TFormatSettingsScope Scope(Dmy);
    ExpectParses({{"5.3.2024", EncodeDate(2024, 3, 5)},
                  {"5.3.2024 6:00", EncodeDate(2024, 3, 5) + 0.25},
                  {"5/3", EncodeDate(2024, 3, 5)},
                  {"2024-03-05", 45356}});
  }
  TFormatSettings Ymd;
  Ymd.DateOrder = doYMD;
  TFormatSettingsScope Scope(Ymd);
  ExpectParses({{"24/3/5", EncodeDate(2024, 3, 5)}});
}

TEST(DateParse, MonthNamesInEitherOrder) {
  ExpectParses({
      {"5 March 2024", EncodeDate(2024, 3, 5)},
      {"March 5, 2024", EncodeDate(2024, 3, 5)},
      {"mar 5 2024", EncodeDate(2024, 3, 5)},
      {"5-Mar-24", EncodeDate(2024, 3, 5)},
      {"Tuesday, March 5, 2024", EncodeDate(2024, 3, 5)},
      {"2024 Mar 5", EncodeDate(2024, 3, 5)},
      {"5 Mar", EncodeDate(2024, 3, 5)},
      {"March 2025", EncodeDate(2025, 3, 1)},
      {"Mar. 5, 2024", EncodeDate(2024, 3, 5)},
      {"March", NoDate},
      {"March April 5", NoDate},
      {"5 Marchy 2024", NoDate},
      {"March 5, 2024, Tuesday", NoDate},
      {"31 Feb 2024", NoDate},
      {"5 Mar 2024 1 2", NoDate},
  });
  TFormatSettings French;
  French.LongMonthNames[2] = "mars";
  French.LongMonthNames[7] = "ao\xC3\xBBt";
  TFormatSettingsScope Scope(French);
  ExpectParses({{"5 mars 2024", EncodeDate(2024, 3, 5)}, {"1 ao\xC3\xBBt 2024", EncodeDate(2024, 8, 1)}});
}

TEST(DateParse, ATrailingTimeAddsItsFraction) {
  double Mar5 = EncodeDate(2024, 3, 5);
  ExpectParses({
      {"3/5/2024 18:00", Mar5 + 0.75},
      {"2024-03-05T18:00:00", Mar5 + 0.75},
      {"3/5/2024 6:00 PM", Mar5 + 0.75},
      {"3/5/2024 6:00pm", Mar5 + 0.75},
      {"3/5/2024 12:00 AM", Mar5},
      {"3/5/2024 6:30:15.5", Mar5 + EncodeTime(6, 30, 15, 500)},
      {"1/1/1800 6:00", EncodeDate(1800, 1, 1) - 0.25},
      {"3/5/2024 24:00", NoDate},
      {"3/5/2024 13:00 PM", NoDate},
      {"3/5/2024 6:00 XM", NoDate},
      {"3/5/2024 6:", NoDate},
      {"3/5/202418:00", NoDate},
      {"18:00", NoDate},
  });
}

}  // namespace
}  // namespace Tabrino
