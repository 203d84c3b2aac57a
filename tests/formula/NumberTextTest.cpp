#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.FormatSettings.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Utf16.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(NumberValue, SeparatorsBlanksAndPercents) {
  ExpectCases({
      {"NUMBERVALUE", {}, E(ceValue)},
      {"NUMBERVALUE", {"1", ".", ",", 1}, E(ceValue)},
      {"NUMBERVALUE", {"2.500,27", ",", "."}, V(2500.27)},
      {"NUMBERVALUE", {"3.5%"}, V(0.035)},
      {"NUMBERVALUE", {"9%%"}, V(0.0009)},
      {"NUMBERVALUE", {" 3 000 "}, V(3000)},
      {"NUMBERVALUE", {""}, V(0)},
      {"NUMBERVALUE", {"1,234.5"}, V(1234.5)},
      {"NUMBERVALUE", {"-1.5e3"}, V(-1500)},
      {"NUMBERVALUE", {"+.5"}, V(0.5)},
      {"NUMBERVALUE", {"1.2.3"}, E(ceValue)},
      {"NUMBERVALUE", {"1.234,5"}, E(ceValue)},  // a group separator after the decimal one
      {"NUMBERVALUE", {"12abc"}, E(ceValue)},
      {"NUMBERVALUE", {"1e999"}, E(ceValue)},
      {"NUMBERVALUE", {"5", "", ","}, E(ceValue)},
      {"NUMBERVALUE", {"5", ".", "."}, E(ceValue)},
      {"NUMBERVALUE", {"1x5", "xyz", "."}, V(1.5)},  // only a separator's first character counts
      {"NUMBERVALUE", {E(ceNA)}, E(ceNA)},
      {"NUMBERVALUE", {7}, V(7)},
  });
}

TEST(NumberValue, DefaultsFollowTheLocale) {
  TFormatSettings German;
  German.DecimalSeparator = ",";
  German.ThousandSeparator = ".";
  TFormatSettingsScope Scope(German);
  ExpectCases({{"NUMBERVALUE", {"1.234,5"}, V(1234.5)}});
}

TEST(Fixed, DecimalsAndGrouping) {
  ExpectCases({
      {"FIXED", {}, E(ceValue)},
      {"FIXED", {1234.567}, V("1,234.57")},
      {"FIXED", {1234.567, 1}, V("1,234.6")},
      {"FIXED", {1234.567, -1}, V("1,230")},
      {"FIXED", {-1234.567, -1, true}, V("-1230")},
      {"FIXED", {44.332}, V("44.33")},
      {"FIXED", {2.5, 0}, V("3")},
      {"FIXED", {-2.5, 0}, V("-3")},
      {"FIXED", {1234.5, 0, true}, V("1235")},
      {"FIXED", {1, -400}, V("0")},
      {"FIXED", {1, 128}, E(ceValue)},
      {"FIXED", {"x"}, E(ceValue)},
      {"FIXED", {1, "x"}, E(ceValue)},
  });
  EXPECT_EQ(Utf16Length(Call("FIXED", {1, 127}).Text), 129u);
}

TEST(Dollar, CurrencyFormWithParenthesesForNegatives) {
  ExpectCases({
      {"DOLLAR", {1234.567}, V("$1,234.57")},
      {"DOLLAR", {1234.567, -2}, V("$1,200")},
      {"DOLLAR", {-1234.567, 4}, V("($1,234.5670)")},
      {"DOLLAR", {-0.123, 4}, V("($0.1230)")},
      {"DOLLAR", {99.888}, V("$99.89")},
      {"DOLLAR", {"x"}, E(ceValue)},
      {"DOLLAR", {1, 2, 3}, E(ceValue)},
  });
}

TEST(BahtText, ThaiWordsForBahtAndSatang) {
  ExpectCases({
      {"BAHTTEXT", {1234}, V("หนึ่งพันสองร้อยสามสิบสี่บาทถ้วน")},  // the documented example
      {"BAHTTEXT", {0}, V("ศูนย์บาทถ้วน")},
      {"BAHTTEXT", {1}, V("หนึ่งบาทถ้วน")},
      {"BAHTTEXT", {11}, V("สิบเอ็ดบาทถ้วน")},
      {"BAHTTEXT", {21}, V("ยี่สิบเอ็ดบาทถ้วน")},
      {"BAHTTEXT", {101}, V("หนึ่งร้อยเอ็ดบาทถ้วน")},
      {"BAHTTEXT", {0.5}, V("ห้าสิบสตางค์")},
      {"BAHTTEXT", {1.25}, V("หนึ่งบาทยี่สิบห้าสตางค์")},
      {"BAHTTEXT", {-3}, V("ลบสามบาทถ้วน")},
      {"BAHTTEXT", {1000000}, V("หนึ่งล้านบาทถ้วน")},
      {"BAHTTEXT", {21000000}, V("ยี่สิบเอ็ดล้านบาทถ้วน")},
      {"BAHTTEXT", {1000000000000.0}, V("หนึ่งล้านล้านบาทถ้วน")},
      {"BAHTTEXT", {"x"}, E(ceValue)},
  });
}

TEST(NumberTextEvaluated, ThroughFormulas) {
  TWorkbook Book;
  Book.GetSheet(0)->SetCell(TCellAddress::FromA1("A1"), TCell::WithValue(V(-1234.5)));
  TFormulaEvaluator Evaluator(Book);
  EXPECT_EQ(Evaluator.Evaluate("=FIXED(A1,1)", 0), V("-1,234.5"));
  EXPECT_EQ(Evaluator.Evaluate("=DOLLAR(A1)", 0), V("($1,234.50)"));
  EXPECT_EQ(Evaluator.Evaluate("=NUMBERVALUE(\"1.234,5\",\",\",\".\")+A1", 0), V(0));
  EXPECT_EQ(Evaluator.Evaluate("=T(A1)&UNICHAR(65)", 0), V("A"));
}

}  // namespace
}  // namespace Tabrino
