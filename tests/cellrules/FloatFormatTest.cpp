#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Tabrino.FloatFormat.h"
#include "Tabrino.FormatSettings.h"

using namespace Tabrino;

namespace {

struct TFloatCase {
  const char* Format;
  double Value;
  const char* Expected;
};

void ExpectAll(std::initializer_list<TFloatCase> Cases) {
  for (const TFloatCase& C : Cases) {
    EXPECT_EQ(FormatFloat(C.Format, C.Value), C.Expected) << "format [" << C.Format << "] value " << C.Value;
  }
}

}  // namespace

TEST(FormatFloat, DigitPlaceholders) {
  ExpectAll({
      {"0", 0, "0"},
      {"#", 0, ""},
      {"00000", 123, "00123"},
      {"0##", 5, "005"},  // placeholders after the first "0" are all shown
      {"#", 12345, "12345"},
      {"0", 123456, "123456"},  // digits without a placeholder go to the first one
      {"???0", 5, "   5"},
      {"0.00", 1, "1.00"},
      {"#.##", 1, "1"},  // no fraction digit, so no decimal point either
      {"0.##", 1.5, "1.5"},
      {"0.0#", 1.5, "1.5"},
      {"0.0#", 1.25, "1.25"},
      {"0.0#", 1, "1.0"},
      {"0.0??", 1.5, "1.5  "},
      {"#.00", 0.5, ".50"},
      {".00", 1.5, "1.50"},
      {"0-00", 123, "1-23"},
      {"0.0.0", 1.25, "1.25"},  // only the first point is the decimal point
  });
}

TEST(FormatFloat, RoundsHalfAwayFromZeroOnDecimalDigits) {
  ExpectAll({
      {"0", 1.5, "2"},
      {"0", 2.5, "3"},
      {"0", -2.5, "-3"},
      {"0.00", 2.675, "2.68"},  // 2.67499999... in binary, 2.675 in 15 digits
      {"0.00", 1.005, "1.01"},
      {"0.000", 0.1 + 0.2, "0.300"},
      {"0.0000000000000000", 0.1 + 0.2, "0.3000000000000000"},
      {"0.0", 0.05, "0.1"},
      {"0.00", 0.004, "0.00"},
      {"0.00", 0.0004, "0.00"},
      {"0.00", 9.999, "10.00"},
      {"0.00", -0.001, "0.00"},  // rounds to zero: no minus sign
      {"0.00", 1e20, "100000000000000000000.00"},
  });
}

TEST(FormatFloat, CommasGroupBetweenPlaceholdersAndScaleAtTheEnd) {
  ExpectAll({
      {"#,##0", 5, "5"},
      {"#,##0", 1234567, "1,234,567"},
      {"#,##0", 999.5, "1,000"},
      {"#,##0.00", -1234.567, "-1,234.57"},
      {"0,000", 5, "0,005"},
      {"#,###", 123456789012.0, "123,456,789,012"},
      {"#,##0,", 1234567, "1,235"},
      {"0.0,,", 12345678, "12.3"},
      {"0,.00", 1500, "1.50"},
      {"0,'K'", 2500, "3K"},
      {",0", 1234, "1234"},  // no placeholder before it: neither grouping nor scaling
  });
}

TEST(FormatFloat, Exponent) {
  ExpectAll({
      {"0.00E+00", 12345, "1.23E+04"},
      {"0.00E+00", 0.00012345, "1.23E-04"},
      {"0.00E+00", 0, "0.00E+00"},
      {"0.00E+00", -12345, "-1.23E+04"},
      {"0.00E-00", 12345, "1.23E04"},
      {"0.00e-0", 0.0012345, "1.23e-3"},
      {"0.0E+0", 9.96, "1.0E+1"},  // the carry moves the exponent
      {"0E+000", 1e100, "1E+100"},
      {"##0.0E+0", 12345, "123.5E+2"},  // every integer placeholder takes a digit
      {"0 'E+0'", 5, "5 E+0"},
      {"0E", 5, "5E"},  // "E" without a sign is text
  });
}

TEST(FormatFloat, QuotedLiterals) {
  ExpectAll({
      {"'#'0", 5, "#5"},
      {"\"x\"0", 5, "x5"},
      {"0 'it''s'", 5, "5 it's"},
      {"0 '0.0'", 5, "5 0.0"},
      {"0 'unterminated", 5, "5 unterminated"},
      {"'a;b'0", 5, "a;b5"},  // a quoted ";" does not split sections
  });
}

TEST(FormatFloat, SectionsAndSign) {
  ExpectAll({
      {"0;(0)", -5, "(5)"},
      {"0;(0)", 5, "5"},
      {"0;;'zero'", -5, "-5"},  // empty negative section: positive one with a sign
      {"0;;'zero'", 0, "zero"},
      {"0.0;-0.0;'nil'", 0.04, "nil"},  // rounds to zero at the section's precision
      {"0;(0);", 0, "0"},               // empty zero section falls back to the first
      {"$#,##0", -5, "$-5"},            // the sign goes before the first digit
      {"'a'#.#", -0.5, "a-.5"},
      {"", 1.5, "1.5"},
      {";0", 1.5, "1.5"},  // empty positive section: general text
  });
}

TEST(FormatFloat, NonFiniteValuesGiveGeneralText) {
  EXPECT_EQ(FormatFloat("0.00", std::numeric_limits<double>::quiet_NaN()), "NAN");
  EXPECT_EQ(FormatFloat("0.00", std::numeric_limits<double>::infinity()), "INF");
  EXPECT_EQ(FormatFloat("0.00", -std::numeric_limits<double>::infinity()), "-INF");
}

TEST(FormatFloat, SeparatorsComeFromTheSettings) {
  TFormatSettings German;
  German.DecimalSeparator = ",";
  German.ThousandSeparator = ".";
  TFormatSettingsScope Scope(German);
  ExpectAll({
      {"#,##0.00", 1234567.891, "1.234.567,89"},
      {"0.00E+00", 12345, "1,23E+04"},
      {"0,", 1500, "2"},  // the pattern's "," and "." keep their meaning
  });
}
