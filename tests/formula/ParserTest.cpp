#include <gtest/gtest.h>

#include <array>
#include <string>

#include "AstText.h"
#include "Tabrino.Formula.Parser.h"

namespace Tabrino {
namespace {

using Testing::AstText;
using Testing::ParsedText;

struct TShapeCase {
  const char* Formula;
  const char* Tree;
};

class ParserShapes : public testing::TestWithParam<TShapeCase> {};

TEST_P(ParserShapes, ParseTo) {
  EXPECT_EQ(ParsedText(GetParam().Formula), GetParam().Tree) << GetParam().Formula;
}

INSTANTIATE_TEST_SUITE_P(Precedence, ParserShapes,
                         testing::Values(TShapeCase{"=-2^2", "(^ (- 2) 2)"},  // prefix signs bind tighter than "^"
                                         TShapeCase{"=2^-1", "(^ 2 (- 1))"}, TShapeCase{"=2^3^2", "(^ (^ 2 3) 2)"},
                                         TShapeCase{"=1+2*3", "(+ 1 (* 2 3))"}, TShapeCase{"=(1+2)*3", "(* (+ 1 2) 3)"},
                                         TShapeCase{"=1-2-3", "(- (- 1 2) 3)"}, TShapeCase{"=8/4/2", "(/ (/ 8 4) 2)"},
                                         TShapeCase{"=2*3^2", "(* 2 (^ 3 2))"}, TShapeCase{"=1&2+3", "(& 1 (+ 2 3))"},
                                         TShapeCase{"=\"a\"&1=\"a1\"", "(= (& \"a\" 1) \"a1\")"},
                                         TShapeCase{"=A1<>B1>=1", "(>= (<> A1 B1) 1)"}, TShapeCase{"=1<2", "(< 1 2)"},
                                         TShapeCase{"=-A1*-B1", "(* (- A1) (- B1))"}, TShapeCase{"=+A1", "(+ A1)"},
                                         TShapeCase{"=--A1", "(- (- A1))"}, TShapeCase{"=@A1:B2", "(@ A1:B2)"},
                                         TShapeCase{"=-(1+2)", "(- (+ 1 2))"}, TShapeCase{"=((((7))))", "7"},
                                         TShapeCase{"= 1 + 2 ", "(+ 1 2)"}));

INSTANTIATE_TEST_SUITE_P(
    Operands, ParserShapes,
    testing::Values(TShapeCase{"=SUM(A1:B2, 3)", "SUM(A1:B2, 3)"}, TShapeCase{"=sum(1)", "SUM(1)"},
                    TShapeCase{"=IF(A1>0,\"yes\",FALSE)", "IF((> A1 0), \"yes\", FALSE)"},
                    TShapeCase{"=LOG10(A1)+LOG10", "(+ LOG10(A1) LOG10)"},
                    TShapeCase{"=_xlfn.XLOOKUP(1,A:A,B:B)", "_XLFN.XLOOKUP(1, A:A, B:B)"},
                    TShapeCase{"=Tax*2", "(* TAX 2)"}, TShapeCase{"=Table1[Sales]", "Table1[Sales]"},
                    TShapeCase{"=[@Sales]", "[@Sales]"}, TShapeCase{"=SUM(Sales[Q1])", "SUM(Sales[Q1])"},
                    TShapeCase{"='It''s'!A1", "It's!A1"}, TShapeCase{"=Sheet2.A1:B2", "Sheet2!A1:B2"},
                    TShapeCase{"= A1 : B2 ", "A1:B2"}, TShapeCase{"=Sheet1!3:7", "Sheet1!3:7"},
                    TShapeCase{"=\"open", "\"open\""}, TShapeCase{"=\"\"\"\"", "\"\"\""},
                    TShapeCase{"=NOW()", "NOW"},  // a call without arguments reads like a name
                    TShapeCase{"=F(G(H(1)))", "F(G(H(1)))"}));

INSTANTIATE_TEST_SUITE_P(ArrayLiterals, ParserShapes,
                         testing::Values(TShapeCase{"={1,2;3,4}", "{1,2;3,4}"}, TShapeCase{"={1;2;3}", "{1;2;3}"},
                                         TShapeCase{"={}", "{}"}, TShapeCase{"={1+1,A1}", "{(+ 1 1),A1}"},
                                         TShapeCase{"={\"a\",TRUE;-1,{2}}", "{\"a\",TRUE;(- 1),{2}}"},
                                         TShapeCase{"=SUM({1,2})*2", "(* SUM({1,2}) 2)"}));

// Every syntax fault makes the whole formula one #VALUE! node, never a partial tree.
INSTANTIATE_TEST_SUITE_P(
    SyntaxFaults, ParserShapes,
    testing::Values(TShapeCase{"=", "#VALUE!"}, TShapeCase{"", "#VALUE!"}, TShapeCase{"=  ", "#VALUE!"},
                    TShapeCase{"=50%", "#VALUE!"}, TShapeCase{"=#N/A", "#VALUE!"}, TShapeCase{"=IF(A1,,2)", "#VALUE!"},
                    TShapeCase{"=F(1,)", "#VALUE!"}, TShapeCase{"=F(,1)", "#VALUE!"},
                    TShapeCase{"=SUM(A1;B1)", "#VALUE!"}, TShapeCase{"=(1", "#VALUE!"}, TShapeCase{"=1)", "#VALUE!"},
                    TShapeCase{"=SUM(1", "#VALUE!"}, TShapeCase{"=((1)", "#VALUE!"}, TShapeCase{"=()", "#VALUE!"},
                    TShapeCase{"=1+", "#VALUE!"}, TShapeCase{"=*1", "#VALUE!"}, TShapeCase{"=1+)", "#VALUE!"},
                    TShapeCase{"=IFERROR(1+),5)", "#VALUE!"}, TShapeCase{"=ISERROR(#)", "#VALUE!"},
                    TShapeCase{"=A1 B1", "#VALUE!"}, TShapeCase{"=A1@B1", "#VALUE!"}, TShapeCase{"=1E5", "#VALUE!"},
                    TShapeCase{"=3:7", "#VALUE!"}, TShapeCase{"=Sheet1!A1 : B2", "#VALUE!"},
                    TShapeCase{"=A1:", "#VALUE!"}, TShapeCase{"='x'", "#VALUE!"}, TShapeCase{"=\t1", "#VALUE!"},
                    TShapeCase{"=1\n+2", "#VALUE!"}, TShapeCase{"=é", "#VALUE!"}, TShapeCase{"=T[]", "#VALUE!"},
                    TShapeCase{"={1,2;3}", "#VALUE!"}, TShapeCase{"={1;2,3}", "#VALUE!"},
                    TShapeCase{"={1,2", "#VALUE!"}, TShapeCase{"={1;}", "#VALUE!"}, TShapeCase{"={1 2}", "#VALUE!"},
                    TShapeCase{"={,}", "#VALUE!"}, TShapeCase{"=}", "#VALUE!"}, TShapeCase{"=@", "#VALUE!"},
                    TShapeCase{"=A1,B1", "#VALUE!"}));

TEST(Parser, LiteralAndReferenceFields) {
  auto Number = TFormulaParser::Parse("=12.50");
  EXPECT_EQ(Number->Kind, ankNumber);
  EXPECT_EQ(Number->Number, 12.5);
  EXPECT_EQ(Number->Text, "12.50");

  auto Bool = TFormulaParser::Parse("=true");
  EXPECT_EQ(Bool->Kind, ankBool);
  EXPECT_TRUE(Bool->BooleanValue);
  EXPECT_EQ(Bool->Text, "TRUE");

  auto Range = TFormulaParser::Parse("='My Sheet'!$B$2:C$9");
  EXPECT_EQ(Range->Kind, ankRange);
  EXPECT_EQ(Range->SheetName, "My Sheet");
  EXPECT_EQ(Range->Text, "My Sheet!$B$2:C$9");
  EXPECT_EQ((std::array{Range->Col, Range->Row, Range->Col2, Range->Row2}), (std::array{2, 2, 3, 9}));

  auto Columns = TFormulaParser::Parse("=A:C");
  EXPECT_EQ(Columns->Kind, ankRange);
  EXPECT_EQ((std::array{Columns->Col, Columns->Row, Columns->Col2, Columns->Row2}), (std::array{1, 1, 3, MaxRow}));

  auto Sheet = TFormulaParser::Parse("=Data!D4");
  EXPECT_EQ(Sheet->Kind, ankSheetRef);
  EXPECT_EQ(Sheet->SheetName, "Data");
  EXPECT_EQ(Sheet->Col, 4);
  EXPECT_EQ(Sheet->Row, 4);

  auto Table = TFormulaParser::Parse("=Table1['Unit price']");
  EXPECT_EQ(Table->Kind, ankTableRef);
  EXPECT_EQ(Table->Text, "Table1");
  EXPECT_EQ(Table->ColumnName, "Unit price");

  auto Error = TFormulaParser::Parse("=1+");
  EXPECT_EQ(Error->Kind, ankError);
  EXPECT_EQ(Error->ErrorCode, ceValue);
}

TEST(Parser, ArrayLiteralDimensions) {
  auto Array = TFormulaParser::Parse("={1,2,3;4,5,6}");
  ASSERT_EQ(Array->Kind, ankArrayLit);
  EXPECT_EQ(Array->Col2, 3);
  EXPECT_EQ(Array->Row2, 2);
  EXPECT_EQ(Array->Args.size(), 6u);
  EXPECT_EQ(Array->Args[3]->Number, 4);

  auto Column = TFormulaParser::Parse("={1;2;3}");
  EXPECT_EQ(Column->Col2, 1);
  EXPECT_EQ(Column->Row2, 3);

  auto Empty = TFormulaParser::Parse("={}");
  EXPECT_EQ(Empty->Kind, ankArrayLit);
  EXPECT_TRUE(Empty->Args.empty());
  EXPECT_EQ(Empty->Col2, 0);
  EXPECT_EQ(Empty->Row2, 0);
}

TEST(Parser, CloneIsDeepAndComplete) {
  auto Original = TFormulaParser::Parse("=IF('S 1'!A1:B2>0,{1,-2;T[c],\"x\"},-Sheet2.C3^2&TRUE)");
  auto Copy = CloneAstNode(Original.get());
  EXPECT_EQ(AstText(Copy.get()), AstText(Original.get()));
  EXPECT_NE(Copy->Args[0].get(), Original->Args[0].get());
  const TAstNode& Range = *Copy->Args[0]->Left;
  EXPECT_EQ(Range.SheetName, "S 1");
  EXPECT_EQ((std::array{Range.Col, Range.Row, Range.Col2, Range.Row2}), (std::array{1, 1, 2, 2}));
  EXPECT_EQ(Copy->Args[1]->Col2, 2);
  EXPECT_EQ(Copy->Args[1]->Row2, 2);
  EXPECT_EQ(Copy->Args[1]->Args[2]->ColumnName, "c");
  EXPECT_EQ(CloneAstNode(nullptr), nullptr);
  // The copy outlives its source.
  Original.reset();
  EXPECT_EQ(AstText(Copy.get()), "IF((> S 1!A1:B2 0), {1,(- 2);T[c],\"x\"}, (& (^ (- Sheet2!C3) 2) TRUE))");
}

std::string Repeat(std::string_view Piece, size_t Count) {
  std::string Out;
  Out.reserve(Piece.size() * Count);
  for (size_t I = 0; I < Count; ++I) Out += Piece;
  return Out;
}

TEST(ParserLimits, ModerateNestingParses) {
  EXPECT_EQ(ParsedText("=" + Repeat("(", 200) + "1" + Repeat(")", 200)), "1");
  EXPECT_EQ(ParsedText("=" + Repeat("-", 200) + "1").size(), 200 * 4 + 1);
  EXPECT_EQ(ParsedText("=" + Repeat("F(", 100) + "1" + Repeat(")", 100)).substr(0, 6), "F(F(F(");
}

TEST(ParserLimits, ExcessiveNestingIsAnErrorNotACrash) {
  EXPECT_EQ(ParsedText("=" + Repeat("(", 100000) + "1" + Repeat(")", 100000)), "#VALUE!");
  EXPECT_EQ(ParsedText("=" + Repeat("-", 100000) + "1"), "#VALUE!");
  EXPECT_EQ(ParsedText("=" + Repeat("{", 100000) + "1" + Repeat("}", 100000)), "#VALUE!");
  EXPECT_EQ(ParsedText("=" + Repeat("SUM(", 100000) + "1" + Repeat(")", 100000)), "#VALUE!");
  EXPECT_EQ(ParsedText("=" + Repeat("(", 100000)), "#VALUE!");
}

TEST(ParserLimits, LongChainsParseUntilTheTreeGetsTooDeep) {
  auto Chain = TFormulaParser::Parse("=1" + Repeat("+1", 3000));
  EXPECT_EQ(Chain->Kind, ankBinary);
  auto Copy = CloneAstNode(Chain.get());
  EXPECT_EQ(Copy->Kind, ankBinary);
  EXPECT_EQ(ParsedText("=1" + Repeat("+1", 100000)), "#VALUE!");
  EXPECT_EQ(ParsedText("=2" + Repeat("^2", 100000)), "#VALUE!");
  // Wide is not deep: many arguments are fine.
  auto Wide = TFormulaParser::Parse("=SUM(A1" + Repeat(",A1", 20000) + ")");
  EXPECT_EQ(Wide->Args.size(), 20001u);
}

}  // namespace
}  // namespace Tabrino
