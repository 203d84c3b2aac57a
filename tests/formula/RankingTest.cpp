// Order statistics. Expected values are worked by hand from the definitions
// (interpolated positions k*(n-1) and k*(n+1)-1 over sorted data); the
// PERCENTRANK cases are the worked examples of the functions' public
// documentation.

#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// 1, 3, 3, 6, 7, 9, 12, 15 out of order, with cells a range passes over.
TFormulaArg Data() {
  return Range({V(12), V(3), V("x"), V(1), V(15), V(true), V(6), V(3), Blank(), V(9), V(7), E(ceDiv0)}, 3, 4);
}

TEST(Ranking, WrongArgumentCounts) {
  ExpectCases({
      {"MEDIAN", {}, E(ceValue)},
      {"LARGE", {Data()}, E(ceValue)},
      {"SMALL", {Data(), 1, 2}, E(ceValue)},
      {"PERCENTILE.INC", {Data()}, E(ceValue)},
      {"PERCENTRANK.INC", {Data(), 1, 3, 4}, E(ceValue)},
      {"QUARTILE.EXC", {Data(), 1, 1}, E(ceValue)},
      {"RANK.AVG", {3}, E(ceValue)},
      {"TRIMMEAN", {Data()}, E(ceValue)},
      {"PROB", {Data(), Data()}, E(ceValue)},
  });
}

TEST(Ranking, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"MEDIAN", {1, "two"}, E(ceValue)},
      {"LARGE", {Data(), "first"}, E(ceValue)},
      {"PERCENTILE.INC", {Data(), "half"}, E(ceValue)},
      {"PERCENTRANK.EXC", {Data(), "x"}, E(ceValue)},
      {"PERCENTRANK.INC", {Data(), 3, "x"}, E(ceValue)},
      {"RANK.AVG", {"x", Data()}, E(ceValue)},
      {"TRIMMEAN", {Data(), "x"}, E(ceValue)},
      {"PROB", {Column({V(1)}), Column({V(1)}), "x"}, E(ceValue)},
  });
}

TEST(Ranking, EmptyListsAndDomainEdges) {
  TFormulaArg Nothing = Column({V("a"), Blank()});
  ExpectCases({
      {"MEDIAN", {Nothing}, E(ceNum)},
      {"MODE.SNGL", {Nothing}, E(ceNA)},
      {"MODE.SNGL", {1, 2, 3}, E(ceNA)},
      {"LARGE", {Data(), 0}, E(ceNum)},
      {"LARGE", {Data(), 9}, E(ceNum)},
      {"SMALL", {Nothing, 1}, E(ceNum)},
      {"PERCENTILE.INC", {Data(), -0.1}, E(ceNum)},
      {"PERCENTILE.INC", {Data(), 1.1}, E(ceNum)},
      {"PERCENTILE.INC", {Nothing, 0.5}, E(ceNum)},
      {"PERCENTILE.EXC", {Data(), 0.1}, E(ceNum)},  // rank 0.9 lies before the first value
      {"PERCENTILE.EXC", {Data(), 0.95}, E(ceNum)},
      {"QUARTILE.INC", {Data(), -1}, E(ceNum)},
      {"QUARTILE.INC", {Data(), 5}, E(ceNum)},
      {"QUARTILE.EXC", {Data(), 0}, E(ceNum)},
      {"QUARTILE.EXC", {Data(), 4}, E(ceNum)},
      {"PERCENTRANK.INC", {Data(), 16}, E(ceNA)},
      {"PERCENTRANK.INC", {Data(), 0.5}, E(ceNA)},
      {"PERCENTRANK.INC", {Data(), 3, 0}, E(ceNum)},
      {"PERCENTRANK.EXC", {Nothing, 1}, E(ceNum)},
      {"RANK.AVG", {4, Data()}, E(ceNA)},
      {"TRIMMEAN", {Data(), 1}, E(ceNum)},
      {"TRIMMEAN", {Data(), -0.1}, E(ceNum)},
      {"TRIMMEAN", {Nothing, 0.1}, E(ceNum)},
  });
}

TEST(Ranking, OrdinaryCases) {
  ExpectCases({
      {"MEDIAN", {Data()}, V(6.5)},
      {"MEDIAN", {5, 1, 3}, V(3)},
      {"LARGE", {Data(), 2}, V(12)},
      {"LARGE", {Data(), 2.9}, V(12)},  // k truncated
      {"SMALL", {Data(), 3}, V(3)},
      {"SMALL", {Data(), 8}, V(15)},
      {"PERCENTILE.INC", {Data(), 0}, V(1)},
      {"PERCENTILE.INC", {Data(), 1}, V(15)},
      {"PERCENTILE.EXC", {Data(), 1.0 / 9}, V(1)},
      {"PERCENTILE.EXC", {Data(), 8.0 / 9}, V(15)},
      {"QUARTILE.INC", {Data(), 0}, V(1)},
      {"QUARTILE.INC", {Data(), 1}, V(3)},
      {"QUARTILE.INC", {Data(), 3}, V(9.75)},
      {"QUARTILE.INC", {Data(), 4.7}, V(15)},
      {"QUARTILE.EXC", {Data(), 3}, V(11.25)},
      {"RANK.AVG", {3, Data()}, V(6.5)},
      {"RANK.AVG", {3, Data(), 1}, V(2.5)},
      {"RANK.AVG", {15, Data()}, V(1)},
      {"TRIMMEAN", {Data(), 0.25}, V(40.0 / 6)},
      {"TRIMMEAN", {Data(), 0.2}, V(7)},  // 1.6 values rounds down to none
  });
  EXPECT_TRUE(IsNear(Call("PERCENTILE.INC", {Data(), 0.3}), 3.3, 1e-15));
  EXPECT_TRUE(IsNear(Call("PERCENTILE.EXC", {Data(), 0.6}), 7.8, 1e-15));
}

TEST(Ranking, PercentRankCutsToTheAskedDigits) {
  TFormulaArg Doc = Column({V(13), V(12), V(11), V(8), V(4), V(3), V(2), V(1), V(1), V(1)});
  TFormulaArg DocExc = Column({V(1), V(2), V(3), V(6), V(6), V(6), V(7), V(8), V(9)});
  ExpectCases({
      {"PERCENTRANK.INC", {Doc, 2}, V(0.333)},
      {"PERCENTRANK.INC", {Doc, 4}, V(0.555)},
      {"PERCENTRANK.INC", {Doc, 8}, V(0.666)},
      {"PERCENTRANK.INC", {Doc, 5}, V(0.583)},
      {"PERCENTRANK.INC", {Doc, 1}, V(0)},
      {"PERCENTRANK.INC", {Doc, 13}, V(1)},
      {"PERCENTRANK.INC", {Column({V(5)}), 5}, V(1)},
      {"PERCENTRANK.EXC", {DocExc, 7}, V(0.7)},
      {"PERCENTRANK.EXC", {DocExc, 5.43}, V(0.381)},
      {"PERCENTRANK.EXC", {DocExc, 5.43, 1}, V(0.3)},
      {"PERCENTRANK.EXC", {DocExc, 1}, V(0.1)},
  });
  EXPECT_TRUE(IsNear(Call("PERCENTRANK.INC", {Doc, 5, 20}), 5.25 / 9, 1e-15));
}

TEST(Ranking, ModesInOrderOfFirstAppearance) {
  EXPECT_EQ(Call("MODE.SNGL", {Column({V(6), V(6), V(3), V(3), V(1)})}), V(6));
  EXPECT_EQ(Call("MODE.SNGL", {Data()}), V(3));
  TFormulaArg Modes = CallArray("MODE.MULT", {Column({V(1), V(2), V(3), V(4), V(3), V(2), V(1), V(2), V(3)})});
  ASSERT_TRUE(Modes.IsRange);
  EXPECT_EQ(Modes.RowCount, 2);
  EXPECT_EQ(Modes.ColCount, 1);
  EXPECT_EQ(Modes.CellAt(0, 0), V(2));
  EXPECT_EQ(Modes.CellAt(1, 0), V(3));
  EXPECT_EQ(Call("MODE.MULT", {1, 2}), E(ceNA));
  EXPECT_EQ(Call("MODE.MULT", {"x"}), E(ceValue));
}

// One count per bin, in the bins' own order, and one for what lies above.
TEST(Ranking, FrequencyCountsIntoBins) {
  TFormulaArg Scores = Column({V(79), V(85), V(78), V(85), V(50), V(81), V(95), V(88), V(97), V("absent")});
  auto Counts = [&](TFormulaArg Bins) {
    TFormulaArg R = CallArray("FREQUENCY", {Scores, Bins});
    std::vector<double> Out;
    EXPECT_EQ(R.ColCount, 1);
    for (const TCellValue& C : R.Cells) Out.push_back(C.Number);
    return Out;
  };
  EXPECT_EQ(Counts(Column({V(70), V(79), V(89)})), (std::vector<double>{1, 2, 4, 2}));
  EXPECT_EQ(Counts(Column({V(89), V(70), V(79)})), (std::vector<double>{4, 1, 2, 2}));
  EXPECT_EQ(Counts(Column({V(70), V(70)})), (std::vector<double>{1, 0, 8}));
  EXPECT_EQ(Counts(Column({V("none")})), (std::vector<double>{9}));
  EXPECT_EQ(Call("FREQUENCY", {Scores, "x"}), E(ceValue));
}

TEST(Ranking, ProbabilityOfARange) {
  TFormulaArg Xs = Column({V(0), V(1), V(2), V(3)});
  ExpectCases({
      {"PROB", {Xs, Column({V(0.2), V(0.3), V(0.1), V(0.4)}), 2}, V(0.1)},
      {"PROB", {Xs, Column({V(0.2), V(0.3), V(0.1), V(0.4)}), 1, 3}, V(0.8)},
      {"PROB", {Xs, Column({V(0.2), V(0.3), V(0.1), V(0.4)}), 3, 1}, V(0)},
      {"PROB", {Xs, Column({V(0.2), V(0.3), V(0.1), V(0.3)}), 1}, E(ceNum)},  // adds up to 0.9
      {"PROB", {Xs, Column({V(0), V(0.5), V(0.1), V(0.4)}), 1}, E(ceNum)},
      {"PROB", {Xs, Column({V(0.5), V(0.5)}), 1}, E(ceNA)},
  });
}

}  // namespace
}  // namespace Tabrino
