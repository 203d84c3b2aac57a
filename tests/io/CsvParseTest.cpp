#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tabrino.Io.Csv.h"

using namespace Tabrino;
using TFields = std::vector<std::string>;

TEST(ParseDelimitedLine, QuotesToggleAndVanish) {
  struct TCase {
    std::string Line;
    TFields Expected;
  } Cases[] = {
      {"", {""}},
      {"a,b,c", {"a", "b", "c"}},
      {",", {"", ""}},
      {"\"a,b\",c", {"a,b", "c"}},
      {"\"a\"\"b\"", {"ab"}},  // a doubled quote toggles twice and is lost
      {"a\"\"b", {"ab"}},
      {" a , b ", {" a ", " b "}},  // nothing trimmed
      {"a\"b,c", {"ab,c"}},         // an open quote swallows the rest of the line
      {"x\"y\"z,w", {"xyz", "w"}},  // quotes mid-field still toggle
      {"a\r\nb", {"a\r\nb"}},       // a single line: line ends are just characters
      {"\xC3\xA9,\xF0\x9F\x98\x80", {"\xC3\xA9", "\xF0\x9F\x98\x80"}},
  };
  for (const TCase& Case : Cases) EXPECT_EQ(ParseCsvLine(Case.Line), Case.Expected) << Case.Line;
}

TEST(ParseDelimitedLine, AnyDelimiterIncludingNonAscii) {
  EXPECT_EQ(ParseDelimitedLine("a\tb,c", U'\t'), (TFields{"a", "b,c"}));
  EXPECT_EQ(ParseDelimitedLine("1;2;\"3;4\"", U';'), (TFields{"1", "2", "3;4"}));
  EXPECT_EQ(ParseDelimitedLine("a\xC2\xA7"
                               "b\xC2\xA7",
                               U'\u00A7'),
            (TFields{"a", "b", ""}));
}

TEST(DetectTextDelimiter, MoreTabsThanCommasGivesTab) {
  EXPECT_EQ(DetectTextDelimiter("a\tb\tc,d"), U'\t');
  EXPECT_EQ(DetectTextDelimiter("a\tb,c"), U',');  // a tie gives comma
  EXPECT_EQ(DetectTextDelimiter("a;b;c"), U',');   // semicolons are not considered
  EXPECT_EQ(DetectTextDelimiter(""), U',');
  EXPECT_EQ(DetectTextDelimiter("\"a\t\t\",b"), U'\t');  // quoting is not looked at
  // Only the first 4096 characters count, where a character beyond U+FFFF counts twice.
  std::string Emojis;
  for (int I = 0; I < 2047; ++I) Emojis += "\xF0\x9F\x98\x80";
  EXPECT_EQ(DetectTextDelimiter(Emojis + "\t," + std::string(10, '\t')), U',');
  EXPECT_EQ(DetectTextDelimiter(std::string(4095, 'x') + "\t" + std::string(10, ',')), U'\t');
}

TEST(ParseDelimitedBody, LineEndsAndBlankLines) {
  std::vector<TFields> Rows;
  EXPECT_FALSE(ParseDelimitedBody("", U',', Rows));
  EXPECT_TRUE(Rows.empty());

  ASSERT_TRUE(ParseDelimitedBody("a,b\r\nc\rd\n", U',', Rows));
  EXPECT_EQ(Rows, (std::vector<TFields>{{"a", "b"}, {"c"}, {"d"}}));

  ASSERT_TRUE(ParseDelimitedBody("a\n\nb\n\n", U',', Rows));
  EXPECT_EQ(Rows, (std::vector<TFields>{{"a"}, {""}, {"b"}, {""}}));  // only the last empty line goes

  ASSERT_TRUE(ParseDelimitedBody("\"x\ny\"", U',', Rows));  // no line breaks inside quotes
  EXPECT_EQ(Rows, (std::vector<TFields>{{"x"}, {"y"}}));

  ASSERT_TRUE(ParseDelimitedBody("\n", U'\t', Rows));
  EXPECT_EQ(Rows, (std::vector<TFields>{{""}}));
}

TEST(CsvEscaping, QuotesOnlyWhatNeedsIt) {
  struct TCase {
    std::string Value;
    std::string Expected;
  } Cases[] = {
      {"plain", "plain"},
      {" padded ", " padded "},
      {"a,b", "\"a,b\""},
      {"a\"b", "\"a\"\"b\""},
      {"two\nlines", "\"two\nlines\""},
      {"cr\r", "\"cr\r\""},
      {"", ""},
  };
  for (const TCase& Case : Cases) EXPECT_EQ(TCsvIO::EscapeCsvField(Case.Value, U','), Case.Expected) << Case.Value;
  EXPECT_EQ(TCsvIO::EscapeCsvField("a,b", U';'), "a,b");
  EXPECT_EQ(TCsvIO::EscapeCsvField("a;b", U';'), "\"a;b\"");
}

TEST(CsvEscaping, SanitizeFileNamePart) {
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart("Q1/Q2"), "Q1_Q2");
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart("  Sales - 2024_x  "), "Sales - 2024_x");
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart("\xC3\xA9t\xC3\xA9"), "_t_");
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart("\xF0\x9F\x98\x80"), "__");  // two UTF-16 units
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart("   "), "Sheet");
  EXPECT_EQ(TCsvIO::SanitizeFileNamePart(""), "Sheet");
}
