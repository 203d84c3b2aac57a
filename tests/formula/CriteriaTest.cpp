#include <gtest/gtest.h>

#include <limits>

#include "FunctionTestSupport.h"
#include "Tabrino.FormatSettings.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Criteria, WrongArgumentCounts) {
  TFormulaArg Data = Column({V(1), V(2)});
  ExpectCases({
      {"COUNTIF", {Data}, E(ceValue)},
      {"COUNTIF", {Data, 1, 2}, E(ceValue)},
      {"SUMIF", {Data}, E(ceValue)},
      {"AVERAGEIF", {Data, 1, Data, 1}, E(ceValue)},
      {"SUMIFS", {Data, Data}, E(ceValue)},
      {"COUNTIFS", {Data}, E(ceValue)},
  });
}

// Each row: the criterion and how many of the cells below it matches.
struct TMatchCase {
  TTestArg Criterion;
  int Matches;
};

TEST(Criteria, OneMatcherForEveryOperator) {
  TFormulaArg Cells = Column({V(1), V(2), V("3"), V("abc"), V("ABC"), Blank(), V(""), V(true), E(ceNA), V("x*")});
  std::vector<TMatchCase> Cases = {
      {">1", 2},                             // 2 and the text "3"; text that is no number never orders
      {">=1", 4},  {"<2", 3},                // 1, the empty cell as 0, TRUE as 1
      {"<=0", 1},                            // the empty cell
      {"0", 1},                              // the empty cell is 0
      {"=2", 1},   {2, 1},                   // a number criterion reads as its text
      {3, 1},                                // the text "3" converts
      {"abc", 2},                            // text ignores case
      {"=ABC", 2}, {"<>abc", 8}, {"x*", 1},  // no wildcards
      {"a*", 0},   {"", 2},                  // empty cell and empty text
      {"=", 2},    {"<>", 8},                // everything that shows some text
      {"<>2", 9},  {"TRUE", 1},              // compared as display text
      {true, 1},   {"#N/A", 1},  {">a", 0},  // orderings hold only between numbers
  };
  for (const TMatchCase& C : Cases) {
    TCellValue Got = Call("COUNTIF", {Cells, C.Criterion});
    EXPECT_EQ(Got, V(C.Matches)) << "criterion " << C.Criterion.Arg.Scalar.ToDisplayString();
  }
}

TEST(Criteria, OperandReadsUnderTheLocale) {
  TFormatSettings Comma;
  Comma.DecimalSeparator = ",";
  TFormatSettingsScope Scope(Comma);
  TFormulaArg Cells = Column({V(1.5), V(2.5), V("1,5")});
  ExpectCases({
      {"COUNTIF", {Cells, "1,5"}, V(2)},
      {"COUNTIF", {Cells, ">1,5"}, V(1)},
      {"COUNTIF", {Cells, "1.5"}, V(0)},
  });
}

TEST(Criteria, NumbersWithoutADigitShowAsText) {
  const double Inf = std::numeric_limits<double>::infinity();
  TFormulaArg Cells = Column({V(Inf), V(-Inf), V(5)});
  ExpectCases({
      {"COUNTIF", {Cells, "inf"}, V(1)},
      {"COUNTIF", {Cells, "-INF"}, V(1)},
      {"COUNTIF", {Cells, "<>INF"}, V(2)},
      {"COUNTIF", {Cells, ">4"}, V(2)},
  });
}

TEST(Criteria, SumIfPairsByIndexOverTheShorterRange) {
  TFormulaArg Keys = Column({V(1), V(2), V(3)});
  ExpectCases({
      {"SUMIF", {Keys, ">1", Column({V(10), V(20), V(30)})}, V(50)},
      {"SUMIF", {Keys, ">1", Column({V(10), V(20)})}, V(20)},
      {"SUMIF", {Keys, ">0", Column({V("5"), V(true), V(7)})}, V(7)},
      {"SUMIF", {Column({V(1), V(2), V("3")}), ">1"}, V(2)},
      {"SUMIF", {Keys, "nothing"}, V(0)},
      {"COUNTIF", {5, 5}, V(1)},
      {"AVERAGEIF", {Keys, ">1"}, V(2.5)},
      {"AVERAGEIF", {Keys, ">1", Column({V(10), V(20), V("x")})}, V(20)},
      {"AVERAGEIF", {Keys, ">5"}, E(ceDiv0)},
  });
}

TEST(Criteria, MultipleCriteriaAllHold) {
  TFormulaArg Sums = Column({V(10), V(20), V(30), V("40")});
  TFormulaArg Names = Column({V("a"), V("b"), V("A"), V("a")});
  TFormulaArg Sizes = Column({V(1), V(2), V(3), V(4)});
  ExpectCases({
      {"SUMIFS", {Sums, Names, "a"}, V(40)},
      {"SUMIFS", {Sums, Names, "a", Sizes, ">1"}, V(30)},
      {"COUNTIFS", {Names, "a", Sizes, ">1"}, V(2)},
      {"COUNTIFS", {Names, "a"}, V(3)},
      // Ranges must agree in shape, and criteria come in pairs.
      {"SUMIFS", {Sums, Column({V("a")}), "a"}, E(ceValue)},
      {"SUMIFS", {Sums, Range({V("a"), V("b"), V("A"), V("a")}, 1, 4), "a"}, E(ceValue)},
      {"SUMIFS", {Sums, Names, "a", Sizes}, E(ceValue)},
      {"COUNTIFS", {Names, "a", Sizes}, E(ceValue)},
      {"COUNTIFS", {Names, "a", Column({V(1)}), 1}, E(ceValue)},
  });
}

}  // namespace
}  // namespace Tabrino
