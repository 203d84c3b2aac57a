#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.NumberFormat.h"

using namespace Tabrino;

namespace {

struct TNumberCase {
  const char* Format;
  double Value;
  const char* Expected;
};

void ExpectAll(std::initializer_list<TNumberCase> Cases) {
  for (const TNumberCase& C : Cases) {
    EXPECT_EQ(FormatNumber(C.Value, C.Format), C.Expected) << "format [" << C.Format << "] value " << C.Value;
  }
}

constexpr uint32_t Black = 0xFF000000;
constexpr uint32_t Red = 0xFFFF0000;

}  // namespace

TEST(NumberFormat, EveryBuiltInIdFormats) {
  struct Case {
    int32_t Id;
    double Value;
    const char* Expected;
  } Cases[] = {
      {0, 1234.5, "1234.5"},
      {1, 2.5, "2"},  // half to even on this fast path
      {1, 3.5, "4"},
      {2, 1234.567, "1234.57"},
      {3, 1234.5, "1,235"},
      {4, -1234.567, "-1,234.57"},
      {5, 1234.5, "$1,235 "},
      {5, -1234.5, "($1,235)"},
      {6, -1234.5, "($1,235)"},
      {7, 1234.5, "$1,234.50 "},
      {8, -1, "($1.00)"},
      {9, 0.125, "12%"},
      {10, 0.12345, "12.35%"},
      {11, 12345, "1.23E+04"},
      {12, 3.25, "3 1/4"},
      {13, M_PI, "3 14/99"},
      {14, 45351, "2/29/2024"},
      {15, 45351, "29-Feb-24"},
      {16, 45351, "29-Feb"},
      {17, 45351, "Feb-24"},
      {18, 0.75, "6:00 PM"},
      {19, 0.5 + 1.0 / 86400, "12:00:01 PM"},
      {20, 0.75, "18:00"},
      {21, 0.75, "18:00:00"},
      {22, 45351.5, "2/29/2024 12:00"},
      {37, 1234, "1,234 "},
      {37, -1234, "(1,234)"},
      {38, -5, "(5)"},
      {39, -5, "(5.00)"},
      {40, 5, "5.00"},
      {41, 5, "5 "},
      {41, -5, "(5)"},
      {42, 5, "$ 5 "},
      {43, -1234.5, "(1,234.50)"},
      {44, 1234.5, "$ 1,234.50 "},
      {45, 0.5, "12:00"},  // no hour before it, so mm is the month (December 1899)
      {46, 1.5, "[12]:00:00"},
      {47, 0.5, "mmss.5"},  // has a "0": not a date, and its letters are text
      {48, 12345, "123.5E+2"},
      {49, 1234.5, "1234.5"},
  };
  for (const Case& C : Cases) {
    EXPECT_EQ(FormatNumber(C.Value, BuiltInExcelNumberFormat(C.Id)), C.Expected) << "id " << C.Id;
  }
  for (int32_t Id : {-1, 23, 36, 50, 164}) EXPECT_EQ(BuiltInExcelNumberFormat(Id), "General") << Id;
}

TEST(NumberFormat, FastPaths) {
  ExpectAll({
      {"", 0.1, "0.1"},
      {" general ", 1e20, "1E20"},
      {"0", 0.5, "0"},
      {"0", 1.5, "2"},
      {"0", -0.4, "0"},
      {"0", 1e30, "1000000000000000000000000000000"},
      {"0.00", -0.001, "0.00"},
      {"0%", 0.005, "0%"},
      {"0.00%", -0.5, "-50.00%"},
      {"@", 0.1 + 0.2, "0.3"},
      {"TEXT", 12, "12"},
      {"0", std::numeric_limits<double>::quiet_NaN(), "NAN"},
  });
}

TEST(NumberFormat, SectionChoice) {
  ExpectAll({
      {"0;(0);\"zero\"", 5, "5"},
      {"0;(0);\"zero\"", -5, "(5)"},
      {"0;(0);\"zero\"", 0, "zero"},
      {"0;(0)", 0, "0"},
      {"0.00;(0.00);", 0, "0"},  // the empty third section reads as "0"
      {"0.0;;", -5, "-5"},       // an empty section reads as "0"
      {"0;0", -5, "-5"},         // the second section gets the sign too
      {"0;-0", -5, "-5"},
      {"0;0;0;\"text\"", -5, "-5"},
      {"\"a;b\"0;0", 5, "a;b5"},
      {"[>=100]\"big\";\"small\"", 5, "big"},  // conditions are not evaluated
      {"[>=100]\"big\";\"small\"", -500, "-small"},
  });
}

TEST(NumberFormat, BracketTagsAndColours) {
  ExpectAll({
      {"[Red]0.0", 5, "5.0"},
      {"[foo]0", 5, "5"},
      {"[$-409]#,##0", 1234, "$1,234"},
      {"[$€-407] #,##0.00", 1234, "€ 1,234.00"},
      {"[$USD] 0", 5, "USD 5"},
      {"[Blue][$-409]0", 5, "$5"},
      {"0[", 5, "5["},
      {"[$[-1]0", 5, "[5"},  // the inserted "[" finds no "]": tag scan stops
  });

  struct Case {
    const char* Format;
    double Value;
    bool HasColor;
    uint32_t Color;
  } Cases[] = {
      {"[Red]0", 5, true, Red},
      {"[GREEN]0", 5, true, 0xFF008000},
      {"[Color10]0", 5, true, Red},  // indexed colours all show as red
      {"[white]0", 5, true, 0xFFFFFFFF},
      {"[Magenta][Cyan]0", 5, true, 0xFF00FFFF},
      {"0;[Blue]0", -5, true, 0xFF0000FF},
      {"0;[Blue]0", 5, false, Black},
      {"0;0;[Yellow]0", 0, true, 0xFFFFFF00},
      {"[h] [Red]0", 5, false, Black},  // an elapsed-time tag ends the scan
      {"General", 5, false, Black},
  };
  for (const Case& C : Cases) {
    uint32_t Color = 1;
    EXPECT_EQ(NumberFormatColor(C.Value, C.Format, Color), C.HasColor) << C.Format;
    EXPECT_EQ(Color, C.Color) << C.Format;
  }
}

TEST(NumberFormat, LiteralsPercentAndSign) {
  ExpectAll({
      {"\"Total: \"0", 5, "Total: 5"},
      {"\"it's \"0", 5, "it's 5"},
      {"0 \"0.0\"", 5, "5 0.0"},
      {"\\#0", 5, "#5"},
      {"$0", 5, "$5"},
      {"0.0%", 0.1234, "12.3%"},
      {"0%;-0%", -0.5, "-50%"},
      {"0%;(0%)", -0.5, "(1%)"},  // only a final "%" scales
      {"0\\%", 0.5, "50%"},       // an escaped "%" at the end still scales
      {"\"n/a\"", 5, "n/a"},
      {"\"abc\"", -5, "-abc"},
      {"(0)", -5, "(5)"},
      {"0 \"-\"", -5, "5 -"},  // a minus anywhere in the format replaces the sign
      {"#,##0.00 \"EUR\"", -1234.5, "-1,234.50 EUR"},
  });
}

TEST(NumberFormat, TrailingBlanks) {
  ExpectAll({
      {"#,##0.00_);(#,##0.00)", 1234.5, "1,234.50 "},
      {"#,##0.00_);(#,##0.00)", -1234.5, "(1,234.50)"},
      {"0_);0_)", -5, "-5 "},  // "_)" is a blank, not a parenthesis
      {"0_)_)", 5, "5  "},
      {"0\" \"", 5, "5 "},
      {"0_", 5, "5_"},  // a lone "_" at the end stays
  });
}

TEST(NumberFormat, Fractions) {
  ExpectAll({
      {"# ?/?", 0.5, "1/2"},
      {"# ?/?", 3, "3"},
      {"?/?", 0, "0"},
      {"# ?/?", 0.999999999999, "1"},
      {"# ?/?", 0.00000000001, "0"},
      {"# ?/?", -2.25, "-2 1/4"},
      {"# ?/?", -0.00000000001, "0"},
      {"?/?", 1.5, "1 1/2"},  // the whole part shows even without an integer placeholder
      {"# ?/?", 0.01, "0"},   // no numerator above 0 fits
      {"# ?/?", 0.3, "2/7"},
      {"# ?/16", 0.3, "3/10"},    // "16" is the largest denominator, not a fixed one
      {"# ?/100", 0.3, "0"},      // "100" reads as 1: its zeros are placeholders
      {"# ?/100", 0.7, "1"},      // 1/1 carried into the whole part
      {"# ?\?/??", 0.25, "1/4"},  // reduced, and not padded to its placeholders
      {"# ??\?/???", M_PI, "3 16/113"},
      {"# ?/? \"kg\"", 0.5, "1/2"},  // text around a fraction is not shown
      {"# ?/?_)", 0.5, "1/2 "},
      {"0 / 0", 0.75, "3/4"},
      {"#/#", 7.5, "7 1/2"},
  });
}

TEST(NumberFormat, FractionDenominatorsAreBounded) {
  // A denominator pattern this long must neither hang nor overflow.
  EXPECT_EQ(FormatNumber(0.5, "# ?/99999999999999999999"), "1/2");
  EXPECT_EQ(FormatNumber(0.5, "# ?????????????????\?/??????????????????????"), "1/2");
}

TEST(NumberFormat, DateFormats) {
  const double LeapDay = 45351.75;  // 2024-02-29 18:00
  ExpectAll({
      {"yyyy-mm-dd", LeapDay, "2024-02-29"},
      {"YYYY-MM-DD", LeapDay, "2024-02-29"},
      {"dddd d mmmm", LeapDay, "Thursday 29 February"},
      {"mmmmm yyyy", LeapDay, "2 2024"},  // single-letter months show the number
      {"h A/P", LeapDay, "6 PM"},
      {"h:mm am/pm", LeapDay, "6:00 PM"},
      {"yyyy \"year\"", LeapDay, "2024 year"},
      {"\"it's\" yyyy", LeapDay, "it's 2024"},
      {"yyyy\\-mm", LeapDay, "2024-02"},
      {"[h]:mm:ss", 1.5, "[12]:00:00"},
      {"mm-dd-yy", LeapDay, "02/29/24"},
      {"yyyy-mm-dd", -700000, "-700000"},  // outside the calendar: general text
      {"yyyy-mm-dd", 1e10, "10000000000"},
      {"yyyy", std::numeric_limits<double>::quiet_NaN(), "NAN"},
  });

  TFormatSettings Dotted;
  Dotted.DateSeparator = ".";
  TFormatSettingsScope Scope(Dotted);
  EXPECT_EQ(FormatNumber(LeapDay, "mm-dd-yy"), "02.29.24");
  EXPECT_EQ(FormatNumber(LeapDay, "dd/mm/yyyy"), "29.02.2024");
}

TEST(NumberFormat, DigitPlaceholdersBeatDateLetters) {
  ExpectAll({
      {"mmss.0", 0.5, "mmss.5"},
      {"0 \"days\"", 3, "3 days"},
      {"#\" h\"", 3, "3 h"},
      {"\"x\"0%", 0.5, "x50%"},
  });
}

TEST(NumberFormat, FillSplit) {
  struct Case {
    const char* Format;
    double Value;
    const char* Left;
    const char* Right;
  } Cases[] = {
      {R"(_($* #,##0_);_($* (#,##0);_($* "-"_);_(@_))", 1234, " $", "1,234 "},
      {R"(_($* #,##0_);_($* (#,##0);_($* "-"_);_(@_))", -1234, " $", "(1,234)"},
      {R"(_($* #,##0_);_($* (#,##0);_($* "-"_);_(@_))", 0, " $", "-  "},
      {"[Red]\"USD\"*.0.00", 5, "USD", "5.00"},
      {"0*", 5, "0", "5"},  // nothing after the fill reads as "0"
      {"**0", 5, "", "5"},
  };
  for (const Case& C : Cases) {
    std::string Left, Right;
    ASSERT_TRUE(TryFormatNumberFillSplit(C.Value, C.Format, Left, Right)) << C.Format;
    EXPECT_EQ(Left, C.Left) << C.Format;
    EXPECT_EQ(Right, C.Right) << C.Format;
  }
  std::string Left, Right;
  EXPECT_FALSE(TryFormatNumberFillSplit(5, "#,##0.00", Left, Right));
  EXPECT_FALSE(TryFormatNumberFillSplit(5, "\"*\"0", Left, Right));
  EXPECT_FALSE(TryFormatNumberFillSplit(5, "0;* 0", Left, Right));  // only the chosen section counts
}

TEST(NumberFormat, DecimalCommaLocale) {
  TFormatSettings German;
  German.DecimalSeparator = ",";
  German.ThousandSeparator = ".";
  TFormatSettingsScope Scope(German);
  ExpectAll({
      {"General", 1234.5, "1234,5"},
      {"#,##0.00", 1234.5, "1.234,50"},
      {"0.00%", 0.125, "12,50%"},
      {"#,##0.00 \"EUR\";-#,##0.00 \"EUR\"", -1234.5, "-1.234,50 EUR"},
      {"# ?/?", 1.5, "1 1/2"},
      {"0.0E+00", 12345, "1,2E+04"},
  });
}

TEST(NumberFormat, FormatCellValue) {
  EXPECT_EQ(FormatCellValue(TCellValue::FromText("abc"), "0.00"), "abc");
  EXPECT_EQ(FormatCellValue(TCellValue::FromText("12"), "0.00"), "12");
  EXPECT_EQ(FormatCellValue(TCellValue::FromNumber(12), "0.00"), "12.00");
  EXPECT_EQ(FormatCellValue(TCellValue::FromBoolean(true), "0.00"), "TRUE");
  EXPECT_EQ(FormatCellValue(TCellValue::FromError(ceDiv0), "0.00"), "#DIV/0!");
  EXPECT_EQ(FormatCellValue(TCellValue::FromFormula("SUM(A1)"), "0.00"), "=SUM(A1)");
  EXPECT_EQ(FormatCellValue(TCellValue::Empty(), "0.00"), "");
}

TEST(NumberFormat, IsTextNumberFormat) {
  EXPECT_TRUE(IsTextNumberFormat("@"));
  EXPECT_TRUE(IsTextNumberFormat(" text "));
  EXPECT_FALSE(IsTextNumberFormat("@@"));
  EXPECT_FALSE(IsTextNumberFormat("General"));
  EXPECT_FALSE(IsTextNumberFormat("0;0;0;@"));
}

TEST(NumberFormat, HostileFormatsNeverFail) {
  const char* Formats[] = {"[",
                           "]",
                           "[$",
                           "\"",
                           "\\",
                           "_",
                           "*",
                           "E+",
                           "0E+",
                           "0.0E-",
                           ",,,",
                           ".",
                           "%",
                           "%%%",
                           "'",
                           "0'",
                           "#,##0,,,,,,",
                           "/",
                           "0/",
                           "/0",
                           "?/",
                           "yyyy\\",
                           "\x01",
                           "\x01\x01",
                           "[Red",
                           "[$-]0",
                           ";;;;;",
                           "0;;;;",
                           "_€0",
                           "\\€0",
                           "0*€",
                           "[h]",
                           "[[[]]]0",
                           "d/m/y h:n",
                           "\"unterminated",
                           "0.0000000000000000000000000000000000000000"};
  const double Values[] = {0,
                           -0.0,
                           1,
                           -1,
                           0.5,
                           1e-300,
                           -1e-300,
                           1e300,
                           -1e300,
                           1e15,
                           123.45,
                           -2e9,
                           std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};
  for (const char* Format : Formats) {
    for (double Value : Values) {
      std::string Left, Right;
      uint32_t Color;
      FormatNumber(Value, Format);
      NumberFormatColor(Value, Format, Color);
      TryFormatNumberFillSplit(Value, Format, Left, Right);
    }
  }
}
