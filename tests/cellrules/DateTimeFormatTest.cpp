#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.FormatSettings.h"
#include "Tabrino.Types.h"

using namespace Tabrino;

TEST(DateSerial, EncodeDate) {
  struct Case {
    int Y, M, D;
    double Serial;
  } Cases[] = {{1899, 12, 30, 0},    {1899, 12, 31, 1},    {1900, 1, 1, 2},    {1900, 3, 1, 61},
               {2000, 2, 29, 36585}, {2024, 2, 29, 45351}, {1, 1, 1, -693593}, {9999, 12, 31, 2958465}};
  for (const Case& C : Cases) {
    EXPECT_EQ(EncodeDate(C.Y, C.M, C.D), C.Serial) << C.Y << "-" << C.M << "-" << C.D;
    int Y, M, D;
    ASSERT_TRUE(DecodeDate(C.Serial, Y, M, D));
    EXPECT_EQ(Y * 10000 + M * 100 + D, C.Y * 10000 + C.M * 100 + C.D) << C.Serial;
  }
}

TEST(DateSerial, InvalidDatesAreRefused) {
  double Serial = -1;
  EXPECT_FALSE(TryEncodeDate(2023, 2, 29, Serial));
  EXPECT_FALSE(TryEncodeDate(1900, 2, 29, Serial));  // the real calendar: 1900 was no leap year
  EXPECT_FALSE(TryEncodeDate(0, 1, 1, Serial));
  EXPECT_FALSE(TryEncodeDate(10000, 1, 1, Serial));
  EXPECT_FALSE(TryEncodeDate(2024, 13, 1, Serial));
  EXPECT_FALSE(TryEncodeDate(2024, 4, 31, Serial));
  EXPECT_EQ(Serial, -1);
  EXPECT_THROW(EncodeDate(2024, 0, 1), EException);

  int Y = 1, M = 1, D = 1;
  EXPECT_FALSE(DecodeDate(-693594, Y, M, D));
  EXPECT_EQ(Y + M + D, 0);
  EXPECT_FALSE(DecodeDate(2958466, Y, M, D));
  EXPECT_FALSE(DecodeDate(std::numeric_limits<double>::quiet_NaN(), Y, M, D));
  EXPECT_FALSE(DecodeDate(1e300, Y, M, D));
  EXPECT_EQ(DayOfWeek(1e300), 0);
}

TEST(DateSerial, Time) {
  EXPECT_DOUBLE_EQ(EncodeTime(12, 0, 0, 0), 0.5);
  EXPECT_DOUBLE_EQ(EncodeTime(18, 30, 15, 500), (18 * 3600 + 30 * 60 + 15.5) / 86400);
  EXPECT_THROW(EncodeTime(24, 0, 0, 0), EException);
  double T;
  EXPECT_FALSE(TryEncodeTime(0, 60, 0, 0, T));
  EXPECT_FALSE(TryEncodeTime(0, 0, 0, 1000, T));

  int H, N, S, Ms;
  ASSERT_TRUE(DecodeTime(45351 + EncodeTime(18, 30, 15, 500), H, N, S, Ms));
  EXPECT_EQ((std::vector<int>{H, N, S, Ms}), (std::vector<int>{18, 30, 15, 500}));
}

TEST(DateSerial, NegativeSerialsKeepTheDateAndTakeTheAbsoluteTime) {
  int Y, M, D, H, N, S, Ms;
  ASSERT_TRUE(DecodeDate(-1.25, Y, M, D));
  EXPECT_EQ(Y * 10000 + M * 100 + D, 18991229);
  ASSERT_TRUE(DecodeTime(-1.25, H, N, S, Ms));
  EXPECT_EQ(H, 6);
  ASSERT_TRUE(DecodeDate(-0.5, Y, M, D));  // truncated toward zero: still 1899-12-30
  EXPECT_EQ(D, 30);
  EXPECT_EQ(FormatDateTime("yyyy-mm-dd hh:nn", -1.25), "1899-12-29 06:00");
}

TEST(DateSerial, TimeRoundingUpToMidnightMovesToTheNextDay) {
  int Y, M, D, H, N, S, Ms;
  ASSERT_TRUE(DecodeDate(0.9999999999, Y, M, D));
  ASSERT_TRUE(DecodeTime(0.9999999999, H, N, S, Ms));
  EXPECT_EQ(D, 31);
  EXPECT_EQ(H + N + S + Ms, 0);
  EXPECT_EQ(FormatDateTime("d hh:nn:ss.zzz", 0.9999999999), "31 00:00:00.000");
}

TEST(DateSerial, DayOfWeek) {
  EXPECT_EQ(DayOfWeek(0), 7);  // 1899-12-30 was a Saturday
  EXPECT_EQ(DayOfWeek(1), 1);
  EXPECT_EQ(DayOfWeek(-1), 6);
  EXPECT_EQ(DayOfWeek(-1.9), 6);
  EXPECT_EQ(DayOfWeek(45351.75), 5);  // 2024-02-29, a Thursday
  EXPECT_EQ(DayOfWeek(-693593), 2);   // 0001-01-01, a Monday
}

namespace {

// 2024-03-05 (a Tuesday) 14:07:09.045
double Sample() {
  return EncodeDate(2024, 3, 5) + EncodeTime(14, 7, 9, 45);
}

}  // namespace

TEST(FormatDateTime, Tokens) {
  struct Case {
    const char* Format;
    const char* Expected;
  } Cases[] = {
      {"yyyy-mm-dd", "2024-03-05"},
      {"d/m/yy", "5/3/24"},
      {"y", "24"},
      {"yyy", "2024"},
      {"ddd dddd", "Tue Tuesday"},
      {"DDDD, MMMM D", "Tuesday, March 5"},
      {"mmm mmmm", "Mar March"},
      {"hh:nn:ss", "14:07:09"},
      {"h:n:s", "14:7:9"},
      {"z zzz", "45 045"},
      {"s.zzz", "9.045"},
      {"c e g x", "c e g x"},
  };
  for (const Case& C : Cases) EXPECT_EQ(FormatDateTime(C.Format, Sample()), C.Expected) << C.Format;
}

TEST(FormatDateTime, MonthTokenAfterAnHourMeansMinutes) {
  struct Case {
    const char* Format;
    const char* Expected;
  } Cases[] = {
      {"h:mm", "14:07"},
      {"h:m", "14:7"},
      {"HH:MM", "14:07"},
      {"h 'x' mm", "14 x 07"},  // literals between do not break the link
      {"hh:mm:ss mm", "14:07:09 03"},
      {"mm:ss", "03:09"},  // nothing before it: the month
      {"h:mmm", "14:Mar"},
      {"m/d/yyyy h:mm", "3/5/2024 14:07"},
  };
  for (const Case& C : Cases) EXPECT_EQ(FormatDateTime(C.Format, Sample()), C.Expected) << C.Format;
}

TEST(FormatDateTime, TwelveHourClock) {
  struct Case {
    const char* Format;
    double Value;
    const char* Expected;
  } Cases[] = {
      {"h:mm AM/PM", Sample(), "2:07 PM"},
      {"hh am/pm", Sample(), "02 pm"},
      {"h Am/pM", 0.25, "6 Am"},
      {"h Am/pM", 0.75, "6 pM"},
      {"h a/p", 0.75, "6 p"},
      {"h A/P", 0.25, "6 A"},
      {"h ampm", 0.75, "6 PM"},
      {"h AM/PM", 0, "12 AM"},
      {"h AM/PM", 0.5, "12 PM"},
      {"h 'AM/PM'", 0.75, "18 AM/PM"},  // quoted: no 12-hour clock
  };
  for (const Case& C : Cases) EXPECT_EQ(FormatDateTime(C.Format, C.Value), C.Expected) << C.Format;
}

TEST(FormatDateTime, LiteralsAndSeparators) {
  EXPECT_EQ(FormatDateTime("'d/m' d", Sample()), "d/m 5");
  EXPECT_EQ(FormatDateTime("\"at\" h", Sample()), "at 14");
  EXPECT_EQ(FormatDateTime("'it''s' yyyy", Sample()), "it's 2024");
  EXPECT_EQ(FormatDateTime("[h]:mm", Sample()), "[14]:07");
  EXPECT_EQ(FormatDateTime("yyyy 'open", Sample()), "2024 open");

  TFormatSettings Other;
  Other.DateSeparator = ".";
  Other.TimeSeparator = "-";
  Other.LongMonthNames[2] = "März";
  Other.ShortDayNames[2] = "Di";
  Other.TimeAMString = "vorm.";
  Other.TimePMString = "nachm.";
  TFormatSettingsScope Scope(Other);
  EXPECT_EQ(FormatDateTime("d/m/yyyy h:nn", Sample()), "5.3.2024 14-07");
  EXPECT_EQ(FormatDateTime("ddd d. mmmm", Sample()), "Di 5. März");
  EXPECT_EQ(FormatDateTime("h ampm", Sample()), "2 nachm.");
}

TEST(FormatDateTime, OutOfRangeRaises) {
  EXPECT_THROW(FormatDateTime("yyyy", 2958466), EException);
  EXPECT_THROW(FormatDateTime("yyyy", -693594), EException);
  EXPECT_THROW(FormatDateTime("yyyy", std::numeric_limits<double>::infinity()), EException);
  EXPECT_EQ(FormatDateTime("yyyy yy", -693593), "0001 01");
  EXPECT_EQ(FormatDateTime("yyyy-mm-dd", 2958465.99), "9999-12-31");
}
