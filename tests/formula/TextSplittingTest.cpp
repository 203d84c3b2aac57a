#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(TextBeforeAfter, ArgumentChecks) {
  ExpectCases({
      {"TEXTBEFORE", {"a-b"}, E(ceValue)},
      {"TEXTAFTER", {"a-b", "-", 1, 0, 0, "x", 1}, E(ceValue)},
      {"TEXTBEFORE", {"a-b", "-", 0}, E(ceValue)},
      {"TEXTBEFORE", {"a-b", "-", 5}, E(ceValue)},  // beyond the text's length
      {"TEXTBEFORE", {"a-b", "-", 1, 2}, E(ceValue)},
      {"TEXTBEFORE", {"a-b", "-", 1, 0, 2}, E(ceValue)},
      {"TEXTBEFORE", {"a-b", "-", "x"}, E(ceValue)},
      {"TEXTBEFORE", {E(ceDiv0), "-"}, E(ceDiv0)},
      {"TEXTAFTER", {"a-b", E(ceRef)}, E(ceRef)},
  });
}

TEST(TextBeforeAfter, InstancesFromEitherEnd) {
  ExpectCases({
      {"TEXTBEFORE", {"a-b-c", "-"}, V("a")},
      {"TEXTBEFORE", {"a-b-c", "-", 2}, V("a-b")},
      {"TEXTBEFORE", {"a-b-c", "-", -1}, V("a-b")},
      {"TEXTBEFORE", {"a-b-c", "-", -2}, V("a")},
      {"TEXTAFTER", {"a-b-c", "-"}, V("b-c")},
      {"TEXTAFTER", {"a-b-c", "-", 2}, V("c")},
      {"TEXTAFTER", {"a-b-c", "-", -1}, V("c")},
      {"TEXTBEFORE", {"a-b-c", "-", 3}, E(ceNA)},
      {"TEXTBEFORE", {"a-b-c", "-", 3, 0, 1}, V("a-b-c")},  // the end counts as a delimiter
      {"TEXTAFTER", {"a-b-c", "-", -3, 0, 1}, V("a-b-c")},  // and the start, from the end
      {"TEXTAFTER", {"a-b-c", "-", 4, 0, 1}, E(ceNA)},
      {"TEXTBEFORE", {"abc", "x", 1, 0, 0, "none"}, V("none")},
      {"TEXTBEFORE", {"abc", ""}, V("")},
      {"TEXTAFTER", {"abc", ""}, V("abc")},
      {"TEXTAFTER", {"abc", "", -1}, V("")},
  });
}

TEST(TextBeforeAfter, CaseDelimiterListsAndUnits) {
  ExpectCases({
      {"TEXTBEFORE", {"fooXbar", "x"}, E(ceNA)},
      {"TEXTBEFORE", {"fooXbar", "x", 1, 1}, V("foo")},
      {"TEXTAFTER", {"a,b;c", Range({V(";"), V(",")}, 1, 2)}, V("b;c")},
      {"TEXTAFTER", {"a,b;c", Range({V(";"), V(",")}, 1, 2), 2}, V("c")},
      {"TEXTAFTER", {"x😀y😀z", "😀", -1}, V("z")},
      {"TEXTBEFORE", {"a--b", Range({V("-"), V("--")}, 1, 2)}, V("a")},
      {"TEXTAFTER", {"a--b", Range({V("-"), V("--")}, 1, 2)}, V("b")},  // the longest delimiter at a place wins
      {"TEXTBEFORE", {12345, 3}, V("12")},
  });
  TFormulaArg Each = CallArray("TEXTAFTER", {Column({V("a=1"), V("b=2"), V("c")}), "="});
  ASSERT_EQ(Each.RowCount, 3);
  EXPECT_EQ(Each.CellAt(0, 0), V("1"));
  EXPECT_EQ(Each.CellAt(1, 0), V("2"));
  EXPECT_EQ(Each.CellAt(2, 0), E(ceNA));
}

// The grid of a TEXTSPLIT call, row by row as display texts.
std::vector<std::vector<std::string>> Grid(const TFormulaArg& Result) {
  std::vector<std::vector<std::string>> Rows(Result.RowCount);
  for (int32_t R = 0; R < Result.RowCount; ++R)
    for (int32_t C = 0; C < Result.ColCount; ++C) Rows[R].push_back(Result.CellAt(R, C).ToDisplayString());
  return Rows;
}

using TGrid = std::vector<std::vector<std::string>>;

TEST(TextSplit, RowsThenColumnsPadded) {
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a,b;c", ",", ";"})), (TGrid{{"a", "b"}, {"c", "#N/A"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a,b;c", ",", ";", false, 0, "-"})), (TGrid{{"a", "b"}, {"c", "-"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a,,b", ","})), (TGrid{{"a", "", "b"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a,,b", ",", Blank(), true})), (TGrid{{"a", "b"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a;b;;c", Blank(), ";", true})), (TGrid{{"a"}, {"b"}, {"c"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"1 x 2 X 3", " x ", Blank(), false, 1})), (TGrid{{"1", "2", "3"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"a-b_c", Range({V("-"), V("_")}, 1, 2)})), (TGrid{{"a", "b", "c"}}));
  EXPECT_EQ(Grid(CallArray("TEXTSPLIT", {"abc", "x"})), (TGrid{{"abc"}}));
  EXPECT_EQ(CallArray("TEXTSPLIT", {"1,2", ","}).CellAt(0, 0), V("1"));  // pieces stay texts
}

TEST(TextSplit, EdgeCases) {
  ExpectCases({
      {"TEXTSPLIT", {"abc"}, E(ceValue)},
      {"TEXTSPLIT", {"abc", ""}, E(ceValue)},
      {"TEXTSPLIT", {"abc", Blank(), Blank()}, E(ceValue)},
      {"TEXTSPLIT", {",,", ",", Blank(), true}, E(ceValue)},
      {"TEXTSPLIT", {"a,b", ",", Blank(), false, 3}, E(ceValue)},
      {"TEXTSPLIT", {E(ceNum), ","}, E(ceNum)},
      {"TEXTSPLIT", {"a,b", E(ceNA)}, E(ceNA)},
      {"TEXTSPLIT", {"", ","}, V("")},
  });
}

TEST(Split, ZeroBasedWordsBetweenSingleSpaces) {
  ExpectCases({
      {"SPLIT", {"Lorem ipsum dolor", 0}, V("Lorem")},
      {"SPLIT", {"Lorem ipsum dolor", 2}, V("dolor")},
      {"SPLIT", {"Lorem ipsum dolor", 3}, E(ceValue)},
      {"SPLIT", {"a  b", 1}, V("")},
      {"SPLIT", {"a b", -1}, E(ceValue)},
      {"SPLIT", {"a b", "x"}, E(ceValue)},
      {"SPLIT", {"a b", 1.9}, V("b")},
      {"SPLIT", {"a b"}, E(ceValue)},
  });
}

TEST(TextSplittingEvaluated, ThroughFormulas) {
  TWorkbook Book;
  Book.GetSheet(0)->SetCell(TCellAddress::FromA1("A1"), TCell::WithValue(V("north;east;south")));
  TFormulaEvaluator Evaluator(Book);
  EXPECT_EQ(Evaluator.Evaluate("=TEXTAFTER(A1,\";\",-1)", 0), V("south"));
  EXPECT_EQ(Evaluator.Evaluate("=COLUMNS(TEXTSPLIT(A1,\";\"))", 0), V(3));
  EXPECT_EQ(Evaluator.Evaluate("=INDEX(TEXTSPLIT(A1,\"\",\";\"),2)", 0), V("east"));
  EXPECT_EQ(Evaluator.Evaluate("=_xlfn.TEXTBEFORE(A1,\";\")", 0), V("north"));
}

}  // namespace
}  // namespace Tabrino
