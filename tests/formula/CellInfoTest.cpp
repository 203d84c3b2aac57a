#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(ErrorType, NumbersOfEachError) {
  ExpectCases({
      {"ERROR.TYPE", {}, E(ceValue)},
      {"ERROR.TYPE", {E(ceNull)}, V(1)},
      {"ERROR.TYPE", {E(ceDiv0)}, V(2)},
      {"ERROR.TYPE", {E(ceValue)}, V(3)},
      {"ERROR.TYPE", {E(ceRef)}, V(4)},
      {"ERROR.TYPE", {E(ceName)}, V(5)},
      {"ERROR.TYPE", {E(ceNum)}, V(6)},
      {"ERROR.TYPE", {E(ceNA)}, V(7)},
      {"ERROR.TYPE", {E(ceSpill)}, V(9)},
      {"ERROR.TYPE", {E(ceCirc)}, E(ceNA)},
      {"ERROR.TYPE", {1}, E(ceNA)},
      {"ERROR.TYPE", {"#N/A"}, E(ceNA)},
      {"ERROR.TYPE", {Column({E(ceRef), V(1)})}, V(4)},
      {"ERRORTYPE", {E(ceNum)}, V(503)},
      {"ERRORTYPE", {E(ceValue)}, V(519)},
      {"ERRORTYPE", {E(ceNull)}, V(521)},
      {"ERRORTYPE", {E(ceCirc)}, V(522)},
      {"ERRORTYPE", {E(ceRef)}, V(524)},
      {"ERRORTYPE", {E(ceName)}, V(525)},
      {"ERRORTYPE", {E(ceDiv0)}, V(532)},
      {"ERRORTYPE", {E(ceNA)}, V(32767)},
      {"ERRORTYPE", {E(ceSpill)}, E(ceNA)},
      {"ERRORTYPE", {"x"}, E(ceNA)},
  });
}

TEST(IsBinary, OneToTenBinaryDigits) {
  ExpectCases({
      {"ISBINARY", {"1010"}, V(true)},
      {"ISBINARY", {101}, V(true)},
      {"ISBINARY", {"1111111111"}, V(true)},
      {"ISBINARY", {"11111111111"}, V(false)},
      {"ISBINARY", {"102"}, V(false)},
      {"ISBINARY", {""}, V(false)},
      {"ISBINARY", {-1}, V(false)},
      {"ISBINARY", {true}, V(false)},
      {"ISBINARY", {}, E(ceValue)},
  });
}

TEST(Info, FixedAnswersOfAHeadlessEngine) {
  ExpectCases({
      {"INFO", {"recalc"}, V("Automatic")},
      {"INFO", {"SYSTEM"}, V("pcdos")},
      {"INFO", {"directory"}, V("")},
      {"INFO", {"numfile"}, V(1)},
      {"INFO", {"origin"}, V("$A:$A$1")},
      {"INFO", {"release"}, V("0.1.0")},
      {"INFO", {"osversion"}, V("Tabrino 0.1.0")},
      {"INFO", {"memavail"}, E(ceNA)},
      {"INFO", {"colour"}, E(ceValue)},
      {"INFO", {E(ceDiv0)}, E(ceDiv0)},
      {"VERSION", {}, V("Tabrino 0.1.0")},
      {"VERSION", {1}, E(ceValue)},
  });
}

TEST(Cell, NeedsAReferenceAndAKnownInfoType) {
  TFormulaArg A2 = Referenced(TFormulaArg::FromScalar(V("x")), 1, 2);
  ExpectCases({
      {"CELL", {}, E(ceValue)},
      {"CELL", {"row", 5}, E(ceValue)},
      {"CELL", {"nonsense", A2}, E(ceValue)},
      {"CELL", {E(ceNA), A2}, E(ceNA)},
      {"CELL", {"row", A2}, V(2)},
      {"CELL", {"col", A2}, V(1)},
      {"CELL", {"address", A2}, V("$A$2")},
      {"CELL", {"contents", A2}, V("x")},
      {"CELL", {"type", A2}, V("l")},
      {"CELL", {"format", A2}, V("G")},
      {"CELL", {"width", A2}, V(8)},
      {"CELL", {"filename", A2}, V("")},
      {"CELL", {"protect", A2}, V(1)},
  });
  EXPECT_EQ(Call("CELL", {"address"}, EvaluatedAt(3, 7)), V("$C$7"));
}

class CellEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    TWorksheet* Sheet = FBook.GetSheet(0);
    Sheet->SetCell(TCellAddress::FromA1("A1"), TCell::WithValue(V("label")));
    Sheet->SetCell(TCellAddress::FromA1("A2"), TCell::WithValue(V(5)));
    Sheet->SetCell(TCellAddress::FromA1("A3"), TCell::WithValue(TCellValue::FromFormula("=\"t\"")));
    FBook.AddSheet("Other");
  }
  void Format(const char* Address, const std::string& NumberFormat, THorizontalAlignment Align = haGeneral) {
    TCell Cell = FBook.GetSheet(0)->GetCell(TCellAddress::FromA1(Address));
    Cell.HasFormatOverride = true;
    Cell.FormatOverride.NumberFormat = NumberFormat;
    Cell.FormatOverride.Alignment.Horizontal = Align;
    FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), Cell);
  }
  TCellValue Eval(const std::string& Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(CellEvaluated, TypeAddressAndContents) {
  EXPECT_EQ(Eval("=CELL(\"type\",A1)"), V("l"));
  EXPECT_EQ(Eval("=CELL(\"type\",A2)"), V("v"));
  EXPECT_EQ(Eval("=CELL(\"type\",A3)"), V("v"));  // a formula is no text constant
  EXPECT_EQ(Eval("=CELL(\"type\",B9)"), V("b"));
  EXPECT_EQ(Eval("=CELL(\"contents\",A2:A3)"), V(5));
  EXPECT_EQ(Eval("=CELL(\"address\",B2:C9)"), V("$B$2"));
  EXPECT_EQ(Eval("=CELL(\"address\",Other!C3)"), V("Other!$C$3"));
  EXPECT_EQ(Eval("=INFO(\"numfile\")"), V(2));
}

TEST_F(CellEvaluated, FormatCodes) {
  struct {
    const char* Format;
    const char* Code;
    int Color;
    int Parentheses;
  } Cases[] = {
      {"General", "G", 0, 0},
      {"0", "F0", 0, 0},
      {"0.00", "F2", 0, 0},
      {"#,##0", ",0", 0, 0},
      {"#,##0.00", ",2", 0, 0},
      {"$#,##0_);($#,##0)", "C0", 0, 0},
      {"$#,##0_);[Red]($#,##0)", "C0-", 1, 0},
      {"$#,##0.00_);($#,##0.00)", "C2", 0, 0},
      {"0%", "P0", 0, 0},
      {"0.00%", "P2", 0, 0},
      {"0.00E+00", "S2", 0, 0},
      {"# ?/?", "G", 0, 0},
      {"m/d/yy", "D4", 0, 0},
      {"m/d/yy h:mm", "D4", 0, 0},
      {"d-mmm-yy", "D1", 0, 0},
      {"d-mmm", "D2", 0, 0},
      {"mmm-yy", "D3", 0, 0},
      {"mm/dd", "D5", 0, 0},
      {"h:mm AM/PM", "D7", 0, 0},
      {"h:mm:ss AM/PM", "D6", 0, 0},
      {"h:mm", "D9", 0, 0},
      {"h:mm:ss", "D8", 0, 0},
      {"(0.00)", "F2()", 0, 1},
      {"0;[Red]-0", "F0-", 1, 0},
      {"\"Total: \"0", "F0", 0, 0},
  };
  for (const auto& Case : Cases) {
    Format("A2", Case.Format);
    EXPECT_EQ(Eval("=CELL(\"format\",A2)"), V(Case.Code)) << Case.Format;
    EXPECT_EQ(Eval("=CELL(\"color\",A2)"), V(Case.Color)) << Case.Format;
    EXPECT_EQ(Eval("=CELL(\"parentheses\",A2)"), V(Case.Parentheses)) << Case.Format;
  }
}

TEST_F(CellEvaluated, PrefixFollowsTheAlignmentOfText) {
  const std::pair<THorizontalAlignment, const char*> Cases[] = {
      {haGeneral, "'"}, {haLeft, "'"}, {haRight, "\""}, {haCenter, "^"}, {haFill, "\\"}};
  for (const auto& [Align, Prefix] : Cases) {
    Format("A1", "General", Align);
    EXPECT_EQ(Eval("=CELL(\"prefix\",A1)"), V(Prefix));
  }
  Format("A2", "General", haCenter);
  EXPECT_EQ(Eval("=CELL(\"prefix\",A2)"), V(""));
}

}  // namespace
}  // namespace Tabrino
