#include <gtest/gtest.h>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Types.h"

using namespace Tabrino;

TEST(ColumnLetters, RoundTripAndLimits) {
  struct Case {
    int32_t Col;
    const char* Letters;
  } Cases[] = {{1, "A"}, {26, "Z"}, {27, "AA"}, {52, "AZ"}, {53, "BA"}, {702, "ZZ"}, {703, "AAA"}, {16384, "XFD"}};
  for (const Case& C : Cases) {
    EXPECT_EQ(ColToLetters(C.Col), C.Letters);
    EXPECT_EQ(LettersToCol(C.Letters), C.Col) << C.Letters;
  }
  EXPECT_EQ(ColToLetters(0), "");
  EXPECT_EQ(ColToLetters(-3), "");
  EXPECT_EQ(ColToLetters(16385), "XFE");  // no upper limit on the way out
  EXPECT_EQ(LettersToCol("xfd"), 16384);
  EXPECT_EQ(LettersToCol("XFE"), 0);
  EXPECT_EQ(LettersToCol("ABCD"), 0);
  EXPECT_EQ(LettersToCol(""), 0);
  EXPECT_EQ(LettersToCol("A1"), 0);
}

TEST(CellAddress, FromA1IsForgiving) {
  struct Case {
    const char* Text;
    int32_t Col, Row;
  } Cases[] = {
      {"B2", 2, 2},       {"$B$2", 2, 2},     {"b 2", 2, 2},         {"  C10 ", 3, 10}, {"XFD1048576", 16384, 1048576},
      {"1A", 0, 0},       {"A0", 0, 0},       {"A1048577", 0, 0},    {"XFE1", 0, 0},    {"ABCD1", 0, 0},
      {"A", 0, 0},        {"12", 0, 0},       {"A99999999999", 0, 0}, {"", 0, 0},        {"A1B", 0, 0},
  };
  for (const Case& C : Cases) {
    TCellAddress A = TCellAddress::FromA1(C.Text);
    EXPECT_EQ(A.Col, C.Col) << C.Text;
    EXPECT_EQ(A.Row, C.Row) << C.Text;
  }
  EXPECT_EQ((TCellAddress{28, 7}.ToKey()), "AB7");
  EXPECT_EQ(TCellAddress::FromKey("AB7"), (TCellAddress{28, 7}));
}

TEST(CellRange, ParseNormaliseAndQuery) {
  TCellRange R = TCellRange::FromA1(" C3:A1 ");
  EXPECT_EQ(R, (TCellRange{1, 1, 3, 3}));
  EXPECT_EQ(R.ToA1(), "A1:C3");
  EXPECT_EQ(TCellRange::FromA1("B5").ToA1(), "B5");
  EXPECT_EQ(TCellRange::FromA1("B5:zz").StartCol, 0);  // a bad corner gives 0, not a failure
  TCellRange Unnormalised{5, 5, 2, 2};
  EXPECT_EQ(Unnormalised.Width(), 4);
  EXPECT_EQ(Unnormalised.Height(), 4);
  EXPECT_TRUE(Unnormalised.Contains(3, 4));
  EXPECT_FALSE(Unnormalised.Contains(6, 4));
  EXPECT_TRUE((TCellRange{1, 1, 2, 2}).Intersects({2, 2, 3, 3}));
  EXPECT_FALSE((TCellRange{1, 1, 2, 2}).Intersects({3, 1, 4, 2}));
  EXPECT_FALSE((TCellRange{1, 1, 2, 2}).Intersects({1, 3, 2, 4}));
}

TEST(CellValue, FactoriesAndDisplay) {
  EXPECT_EQ(TCellValue::FromFormula("SUM(A1)").Formula, "=SUM(A1)");
  EXPECT_EQ(TCellValue::FromFormula("=A1").Formula, "=A1");
  EXPECT_EQ(TCellValue::FromFormula("").Formula, "");
  EXPECT_EQ(TCellValue::FromFormula("=A1").ToDisplayString(), "=A1");
  EXPECT_EQ(TCellValue::FromBoolean(true).ToDisplayString(), "TRUE");
  EXPECT_EQ(TCellValue::FromText("x").ToDisplayString(), "x");
  EXPECT_EQ(TCellValue::Empty().ToDisplayString(), "");
  EXPECT_TRUE(TCellValue::Empty().IsEmpty());
  TCellValue Number = TCellValue::FromNumber(2);
  EXPECT_TRUE(Number.Text.empty() && Number.Formula.empty());
}

TEST(CellValue, ErrorTexts) {
  std::pair<TCellErrorCode, const char*> Cases[] = {
      {ceDiv0, "#DIV/0!"}, {ceNA, "#N/A"},     {ceName, "#NAME?"},  {ceNull, "#NULL!"},   {ceNum, "#NUM!"},
      {ceRef, "#REF!"},    {ceValue, "#VALUE!"}, {ceCirc, "#CIRC!"}, {ceSpill, "#SPILL!"}, {ceNone, "#ERROR!"},
  };
  for (auto [Code, Text] : Cases) EXPECT_EQ(TCellValue::FromError(Code).ToDisplayString(), Text);
}

TEST(GeneralNumberText, FifteenDigitsAndTrimming) {
  std::pair<double, const char*> Cases[] = {
      {0, "0"},
      {1, "1"},
      {-2.5, "-2.5"},
      {0.1 + 0.2, "0.3"},
      {1234567.125, "1234567.125"},
      {1.0 / 3, "0.333333333333333"},
      {123456789012345.0, "123456789012345"},
      {1234567890123456.0, "1.23456789012346E15"},
      {0.00001, "0.00001"},
      {0.000001234, "1.234E-6"},
      {1e100, "1E100"},
      {100, "100"},
      {0.5, "0.5"},
  };
  for (auto [Value, Text] : Cases) EXPECT_EQ(GeneralNumberText(Value), Text) << Value;
}

TEST(GeneralNumberText, UsesLocaleDecimalSeparator) {
  TFormatSettings Comma;
  Comma.DecimalSeparator = ",";
  TFormatSettingsScope Scope(Comma);
  EXPECT_EQ(GeneralNumberText(1.25), "1,25");
}

TEST(FileFormat, FromExtension) {
  std::pair<const char*, TTabrinoFileFormat> Cases[] = {
      {"a.TBX", ffTbx}, {"b.xlsx", ffXlsx}, {"c.XLSM", ffXlsx}, {"d.ods", ffOds},
      {"e.csv", ffCsv}, {"f.txt", ffAuto},  {"noext", ffAuto},  {"dir.csv/file", ffAuto},
  };
  for (auto [Name, Format] : Cases) EXPECT_EQ(FileFormatFromExtension(Name), Format) << Name;
}
