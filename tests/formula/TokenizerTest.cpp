#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Formula.Tokenizer.h"
#include "Tabrino.Types.h"

namespace Tabrino {
namespace {

// "ftCellRef A1 | ftColon : | ..." : the kinds and texts of a whole formula at a glance.
std::string KindsAndTexts(std::string_view Formula) {
  std::string Out;
  for (const TFormulaToken& T : TokenizeFormula(Formula)) {
    if (!Out.empty()) Out += " | ";
    Out.append(FormulaTokenKindName(T.Kind)).append(" ").append(T.Text);
  }
  return Out;
}

TFormulaToken Only(std::string_view Formula) {
  std::vector<TFormulaToken> Tokens = TokenizeFormula(Formula);
  EXPECT_EQ(Tokens.size(), 1u) << Formula << ": " << KindsAndTexts(Formula);
  return Tokens.empty() ? TFormulaToken{} : Tokens.front();
}

struct TRefCase {
  const char* Formula;
  TFormulaTokenKind Kind;
  const char* Text;
  const char* Sheet;
  int32_t Col, Row, Col2, Row2;
};

class ReferenceForms : public testing::TestWithParam<TRefCase> {};

TEST_P(ReferenceForms, ReadAsOneToken) {
  const TRefCase& C = GetParam();
  TFormulaToken T = Only(C.Formula);
  EXPECT_EQ(T.Kind, C.Kind) << FormulaTokenKindName(T.Kind);
  EXPECT_EQ(T.Text, C.Text);
  EXPECT_EQ(T.SheetName, C.Sheet);
  EXPECT_EQ(T.Col, C.Col);
  EXPECT_EQ(T.Row, C.Row);
  EXPECT_EQ(T.Col2, C.Col2);
  EXPECT_EQ(T.Row2, C.Row2);
}

INSTANTIATE_TEST_SUITE_P(
    Tokenizer, ReferenceForms,
    testing::Values(TRefCase{"A1", ftCellRef, "A1", "", 1, 1, 0, 0},
                    TRefCase{"$b$2", ftCellRef, "$b$2", "", 2, 2, 0, 0},
                    TRefCase{"XFD1048576", ftCellRef, "XFD1048576", "", MaxCol, MaxRow, 0, 0},
                    TRefCase{"A1:B2", ftRangeRef, "A1:B2", "", 1, 1, 2, 2},
                    TRefCase{" A1 : B2 ", ftRangeRef, "A1:B2", "", 1, 1, 2, 2},
                    TRefCase{"$C$3:A$1", ftRangeRef, "$C$3:A$1", "", 3, 3, 1, 1},
                    TRefCase{"A:C", ftRangeRef, "A:C", "", 1, 1, 3, MaxRow},
                    TRefCase{"$A:$C", ftRangeRef, "$A:$C", "", 1, 1, 3, MaxRow},
                    TRefCase{"$3:$7", ftRangeRef, "$3:$7", "", 1, 3, MaxCol, 7},
                    TRefCase{"Sheet1!A1", ftSheetRef, "Sheet1!A1", "Sheet1", 1, 1, 0, 0},
                    TRefCase{"$Sheet1!A1", ftSheetRef, "Sheet1!A1", "Sheet1", 1, 1, 0, 0},
                    TRefCase{"Sheet1!A1:B2", ftRangeRef, "Sheet1!A1:B2", "Sheet1", 1, 1, 2, 2},
                    TRefCase{"Sheet1!3:7", ftRangeRef, "Sheet1!3:7", "Sheet1", 1, 3, MaxCol, 7},
                    TRefCase{"Sheet1!B:D", ftRangeRef, "Sheet1!B:D", "Sheet1", 2, 1, 4, MaxRow},
                    TRefCase{"'My Sheet'!$A$1", ftSheetRef, "My Sheet!$A$1", "My Sheet", 1, 1, 0, 0},
                    TRefCase{"'It''s'!A1", ftSheetRef, "It's!A1", "It's", 1, 1, 0, 0},
                    TRefCase{"'Q1 2024'!A1:B2", ftRangeRef, "Q1 2024!A1:B2", "Q1 2024", 1, 1, 2, 2},
                    TRefCase{"Sheet2.A1", ftSheetRef, "Sheet2!A1", "Sheet2", 1, 1, 0, 0},
                    TRefCase{"$Sheet2.$A$1", ftSheetRef, "Sheet2!$A$1", "Sheet2", 1, 1, 0, 0},
                    TRefCase{"$'My Sheet'.A1:B2", ftRangeRef, "My Sheet!A1:B2", "My Sheet", 1, 1, 2, 2},
                    TRefCase{"'x'.C3", ftSheetRef, "x!C3", "x", 3, 3, 0, 0}));

TEST(Tokenizer, SheetFormsThatFail) {
  // A quoted name with nothing to separate it from a reference is an error token.
  TFormulaToken Quoted = Only("'x'");
  EXPECT_EQ(Quoted.Kind, ftError);
  EXPECT_EQ(Quoted.Text, "x");
  // Qualified forms allow no spaces around ":".
  EXPECT_EQ(KindsAndTexts("Sheet1!A1 : B2"), "ftSheetRef Sheet1!A1 | ftColon : | ftCellRef B2");
  EXPECT_EQ(Only("Sheet1!A1:B").Kind, ftError);
  EXPECT_EQ(Only("Sheet1!Total").Kind, ftError);
  EXPECT_EQ(Only("Sheet1!A:3").Kind, ftError);
  // An unterminated sheet name ends with the text.
  TFormulaToken Open = Only("'abc");
  EXPECT_EQ(Open.Kind, ftError);
  EXPECT_EQ(Open.Text, "abc");
}

TEST(Tokenizer, DottedFormIsNoSheetAfterACellShape) {
  EXPECT_EQ(KindsAndTexts("A1.B2"), "ftCellRef A1 | ftError . | ftCellRef B2");
  EXPECT_EQ(KindsAndTexts("Data.5"), "ftFunction DATA | ftNumber .5");
}

TEST(Tokenizer, RowOnlyRangeNeedsASheetOrDollar) {
  EXPECT_EQ(KindsAndTexts("3:7"), "ftNumber 3 | ftColon : | ftNumber 7");
  EXPECT_EQ(KindsAndTexts("A:3"), "ftFunction A | ftColon : | ftNumber 3");
  EXPECT_EQ(KindsAndTexts("$0:$2"), "ftFunction $0 | ftColon : | ftFunction $2");
  EXPECT_EQ(Only("$1:$1048576").Row2, MaxRow);
  EXPECT_EQ(KindsAndTexts("$1:$1048577"), "ftFunction $1 | ftColon : | ftFunction $1048577");
}

TEST(Tokenizer, FunctionsNamesAndCells) {
  // A cell-shaped word before "(" is a function; alone it is a cell.
  EXPECT_EQ(KindsAndTexts("LOG10(2)"), "ftFunction LOG10 | ftLParen ( | ftNumber 2 | ftRParen )");
  EXPECT_EQ(KindsAndTexts("LOG10"), "ftCellRef LOG10");
  EXPECT_EQ(KindsAndTexts("sum (A1)"), "ftFunction SUM | ftLParen ( | ftCellRef A1 | ftRParen )");
  EXPECT_EQ(KindsAndTexts("$Sum$(1)"), "ftFunction SUM | ftLParen ( | ftNumber 1 | ftRParen )");
  // Bare names keep their `$`; cells beyond the sheet are names.
  EXPECT_EQ(KindsAndTexts("my_name"), "ftFunction MY_NAME");
  EXPECT_EQ(KindsAndTexts("$Tax"), "ftFunction $TAX");
  EXPECT_EQ(KindsAndTexts("XFE1"), "ftFunction XFE1");
  EXPECT_EQ(KindsAndTexts("A1048577"), "ftFunction A1048577");
  EXPECT_EQ(KindsAndTexts("A0"), "ftFunction A0");
  EXPECT_EQ(KindsAndTexts("ABCD1"), "ftFunction ABCD1");
  EXPECT_EQ(KindsAndTexts("_x"), "ftFunction _X");
}

TEST(Tokenizer, DottedFunctionNames) {
  EXPECT_EQ(KindsAndTexts("_xlfn.XLOOKUP(1)"), "ftFunction _XLFN.XLOOKUP | ftLParen ( | ftNumber 1 | ftRParen )");
  EXPECT_EQ(KindsAndTexts("_xlfn._xlws.sort (A1)"),
            "ftFunction _XLFN._XLWS.SORT | ftLParen ( | ftCellRef A1 | ftRParen )");
  EXPECT_EQ(KindsAndTexts("com.x.f2()"), "ftFunction COM.X.F2 | ftLParen ( | ftRParen )");
  EXPECT_EQ(KindsAndTexts("t.dist.2t(1)"), "ftFunction T.DIST.2T | ftLParen ( | ftNumber 1 | ftRParen )");
  // Without "(" the dotted text is a sheet reference or nothing special.
  EXPECT_EQ(KindsAndTexts("Sheet2.B3"), "ftSheetRef Sheet2!B3");
  EXPECT_EQ(KindsAndTexts("a.b.(1)"), "ftError a!b | ftError . | ftLParen ( | ftNumber 1 | ftRParen )");
}

TEST(Tokenizer, Booleans) {
  TFormulaToken True = Only("true");
  EXPECT_EQ(True.Kind, ftBoolean);
  EXPECT_EQ(True.Text, "TRUE");
  EXPECT_EQ(True.Number, 1);
  TFormulaToken False = Only("False");
  EXPECT_EQ(False.Kind, ftBoolean);
  EXPECT_EQ(False.Number, 0);
  EXPECT_EQ(KindsAndTexts("true()"), "ftFunction TRUE | ftLParen ( | ftRParen )");
}

TEST(Tokenizer, TableReferences) {
  struct TCase {
    const char* Formula;
    const char* Table;
    const char* Column;
  };
  for (TCase C : {TCase{"Table1[Col]", "Table1", "Col"}, TCase{"Table1[[Col]]", "Table1", "Col"},
                  TCase{"Table1['My col']", "Table1", "My col"},
                  TCase{"Table1[ [ Sales 2024 ]]", "Table1", "Sales 2024"}, TCase{"Table1 [Col]", "Table1", "Col"},
                  TCase{"[Col]", "", "Col"}, TCase{"[[Col]]", "", "Col"}, TCase{"T['a,b']", "T", "a,b"}}) {
    TFormulaToken T = Only(C.Formula);
    EXPECT_EQ(T.Kind, ftTableRef) << C.Formula;
    EXPECT_EQ(T.Text, C.Table) << C.Formula;
    EXPECT_EQ(T.ColumnName, C.Column) << C.Formula;
  }
  // No selector syntax: the first bracket group is the column, the rest is left behind.
  EXPECT_EQ(KindsAndTexts("T[[#Data],[Col]]"), "ftTableRef T | ftComma , | ftTableRef ");
  EXPECT_EQ(TokenizeFormula("T[[#Data],[Col]]").front().ColumnName, "#Data");
  // Closing brackets are taken only when they follow at once.
  EXPECT_EQ(KindsAndTexts("T[ [Col] ]"), "ftTableRef T | ftError ]");
  EXPECT_EQ(KindsAndTexts("T[]"), "ftFunction T | ftError [");
  EXPECT_EQ(KindsAndTexts("[ ]"), "ftError [");
}

TEST(Tokenizer, NumbersAndStrings) {
  TFormulaToken Number = Only("12.5");
  EXPECT_EQ(Number.Kind, ftNumber);
  EXPECT_EQ(Number.Number, 12.5);
  EXPECT_EQ(Only(".25").Number, 0.25);
  EXPECT_EQ(Only("7.").Number, 7);
  TFormulaToken TwoDots = Only("1.2.3");
  EXPECT_EQ(TwoDots.Kind, ftNumber);
  EXPECT_EQ(TwoDots.Text, "1.2.3");
  EXPECT_EQ(TwoDots.Number, 0);
  {
    TFormatSettings Comma;
    Comma.DecimalSeparator = ",";
    Comma.ThousandSeparator = ".";
    TFormatSettingsScope Scope(Comma);
    EXPECT_EQ(Only("12.5").Number, 12.5) << "formula text always uses the dot";
  }
  // No exponent syntax: 1E5 is the number 1 and the cell E5.
  EXPECT_EQ(KindsAndTexts("1E5"), "ftNumber 1 | ftCellRef E5");

  EXPECT_EQ(Only("\"say \"\"hi\"\"\"").Text, "say \"hi\"");
  EXPECT_EQ(Only("\"\"").Text, "");
  TFormulaToken Open = Only("\"open");
  EXPECT_EQ(Open.Kind, ftString);
  EXPECT_EQ(Open.Text, "open");
  EXPECT_EQ(Only("\"a\"\"").Text, "a\"");
}

TEST(Tokenizer, OperatorsAndPunctuation) {
  EXPECT_EQ(KindsAndTexts("<=<>>=<>=&*+-/^@"),
            "ftOperator <= | ftOperator <> | ftOperator >= | ftOperator <> | ftOperator = | ftOperator & | "
            "ftOperator * | ftOperator + | ftOperator - | ftOperator / | ftOperator ^ | ftOperator @");
  EXPECT_EQ(KindsAndTexts("(,):;{}"),
            "ftLParen ( | ftComma , | ftRParen ) | ftColon : | ftSemicolon ; | ftLBrace { | ftRBrace }");
}

TEST(Tokenizer, ErrorTokens) {
  // "%" and "#" belong to no syntax here; only U+0020 is white space.
  EXPECT_EQ(KindsAndTexts("50%"), "ftNumber 50 | ftError %");
  EXPECT_EQ(KindsAndTexts("#N/A"), "ftError # | ftFunction N | ftOperator / | ftFunction A");
  EXPECT_EQ(KindsAndTexts("1\t+\n2"), "ftNumber 1 | ftError \t | ftOperator + | ftError \n | ftNumber 2");
  EXPECT_EQ(KindsAndTexts("!?"), "ftError ! | ftError ?");
  // A non-ASCII character is one error token holding the whole character.
  EXPECT_EQ(KindsAndTexts("é1"), "ftError é | ftNumber 1");
  EXPECT_EQ(KindsAndTexts("A1😀"), "ftCellRef A1 | ftError 😀");
  EXPECT_EQ(KindsAndTexts("\xff"), "ftError \xff");
}

TEST(Tokenizer, EndRepeatsAndNothingIsRead) {
  TFormulaTokenizer Tokenizer;
  Tokenizer.SetFormula("=1");
  EXPECT_EQ(Tokenizer.NextToken().Kind, ftNumber);
  EXPECT_EQ(Tokenizer.NextToken().Kind, ftEnd);
  EXPECT_EQ(Tokenizer.NextToken().Kind, ftEnd);
  EXPECT_TRUE(TokenizeFormula("").empty());
  EXPECT_TRUE(TokenizeFormula("=").empty());
  EXPECT_TRUE(TokenizeFormula("=   ").empty());
  // Only one "=" is stripped.
  EXPECT_EQ(KindsAndTexts("==1"), "ftOperator = | ftNumber 1");
}

TEST(Tokenizer, CellShapeHelpers) {
  EXPECT_TRUE(TFormulaTokenizer::LooksLikeCellRef("$A$1"));
  EXPECT_TRUE(TFormulaTokenizer::LooksLikeCellRef("ZZZ9"));
  EXPECT_FALSE(TFormulaTokenizer::LooksLikeCellRef("A1B"));
  EXPECT_FALSE(TFormulaTokenizer::LooksLikeCellRef("ABCD1"));
  EXPECT_FALSE(TFormulaTokenizer::LooksLikeCellRef("$$"));
  EXPECT_FALSE(TFormulaTokenizer::LooksLikeCellRef("A_1"));
  int32_t Col = -1, Row = -1;
  EXPECT_TRUE(TFormulaTokenizer::ParseCellRefText("$AB$12", Col, Row));
  EXPECT_EQ(Col, 28);
  EXPECT_EQ(Row, 12);
  EXPECT_FALSE(TFormulaTokenizer::ParseCellRefText("ZZZ1", Col, Row));  // beyond XFD
  EXPECT_EQ(Col, 0);
  EXPECT_EQ(Row, 0);
}

struct TSpan {
  int32_t Start, Length;
  bool operator==(const TSpan&) const = default;
};

std::vector<TSpan> Spans(std::string_view Formula) {
  std::vector<TSpan> Out;
  for (const TFormulaToken& T : TokenizeFormula(Formula)) Out.push_back({T.StartIndex, T.Length});
  return Out;
}

TEST(TokenizerSpans, CountTheStrippedEquals) {
  EXPECT_EQ(Spans("=A1"), (std::vector<TSpan>{{1, 2}}));
  EXPECT_EQ(Spans("A1"), (std::vector<TSpan>{{0, 2}}));
  EXPECT_EQ(Spans("= SUM( A1 : B2 ,'S 1'!C3)"),
            (std::vector<TSpan>{{2, 3}, {5, 1}, {7, 7}, {15, 1}, {16, 8}, {24, 1}}));
  // The span of a cell left behind by a failed range ends at the cell.
  EXPECT_EQ(Spans("A1 :"), (std::vector<TSpan>{{0, 2}, {3, 1}}));
}

TEST(TokenizerSpans, CountUtf16UnitsOfNonAsciiText) {
  // "é" is one unit, the emoji two (a surrogate pair), each three or four bytes in UTF-8.
  EXPECT_EQ(Spans("=\"é\"&A1"), (std::vector<TSpan>{{1, 3}, {4, 1}, {5, 2}}));
  EXPECT_EQ(Spans("=\"😀x\"&B2"), (std::vector<TSpan>{{1, 5}, {6, 1}, {7, 2}}));
  EXPECT_EQ(Spans("='Ümsatz 😀'!A1+1"), (std::vector<TSpan>{{1, 14}, {15, 1}, {16, 1}}));
  EXPECT_EQ(Spans("😀é"), (std::vector<TSpan>{{0, 2}, {2, 1}}));
  EXPECT_EQ(Spans("T['Größe']"), (std::vector<TSpan>{{0, 10}}));
}

}  // namespace
}  // namespace Tabrino
