// Correlation and regression. References come from mpmath at 40 digits:
// centred sums for the paired statistics, and for LINEST the normal equations
// solved exactly with sigma^2 (X'X)^-1 for the standard errors.

#include <gtest/gtest.h>

#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TFormulaArg Xs() {
  return Column({V(1), V(2), V(3), V(4), V(5), V(6)});
}
TFormulaArg Ys() {
  return Column({V(2.1), V(3.9), V(6.2), V(7.8), V(10.1), V(12.2)});
}

// Two variables side by side for a column of y.
TFormulaArg TwoVariables() {
  return Range({V(1), V(2), V(2), V(1), V(3), V(4), V(4), V(3), V(5), V(6), V(6), V(5), V(7), V(9)}, 7, 2);
}
TFormulaArg TwoVariableYs() {
  return Column({V(3.1), V(4.2), V(7.9), V(8.1), V(12.3), V(12.9), V(17.8)});
}

TEST(Regression, WrongArgumentCounts) {
  ExpectCases({
      {"CORREL", {Xs()}, E(ceValue)},
      {"SLOPE", {Ys(), Xs(), Xs()}, E(ceValue)},
      {"FORECAST.LINEAR", {1, Ys()}, E(ceValue)},
      {"LINEST", {}, E(ceValue)},
      {"TREND", {Ys(), Xs(), Xs(), true, 1}, E(ceValue)},
  });
}

TEST(Regression, PairedStatisticsAgainstReferences) {
  struct TCase {
    const char* Name;
    double Expected;
  } Cases[] = {
      {"CORREL", 0.99910493248081797},
      {"PEARSON", 0.99910493248081797},
      {"RSQ", 0.99821066610749983},
      {"SLOPE", 2.02},
      {"INTERCEPT", -0.02},
      {"STEYX", 0.17888543819998318},
      {"COVARIANCE.P", 5.8916666666666667},
      {"COVARIANCE.S", 7.07},
  };
  for (const TCase& C : Cases) EXPECT_TRUE(IsNear(Call(C.Name, {Ys(), Xs()}), C.Expected, 1e-13)) << C.Name;
  EXPECT_TRUE(IsNear(Call("FORECAST.LINEAR", {8, Ys(), Xs()}), 16.14, 1e-14));
}

TEST(Regression, PairsWithANonNumberOnEitherSideAreLeftOut) {
  TFormulaArg X = Column({V(1), V("x"), V(2), V(3), Blank()});
  TFormulaArg Y = Column({V(2), V(100), V(4), V(6), V(7)});
  EXPECT_EQ(Call("SLOPE", {Y, X}), V(2));
  EXPECT_EQ(Call("INTERCEPT", {Y, X}), V(0));
  EXPECT_EQ(Call("COVARIANCE.S", {Y, X}), V(2));
}

TEST(Regression, PairedEdges) {
  TFormulaArg Flat = Column({V(3), V(3), V(3)});
  ExpectCases({
      {"CORREL", {Ys(), Column({V(1), V(2)})}, E(ceNA)},
      {"SLOPE", {Column({V("a")}), Column({V("b")})}, E(ceDiv0)},
      {"SLOPE", {Column({V(1), V(2), V(3)}), Flat}, E(ceDiv0)},
      {"CORREL", {Flat, Column({V(1), V(2), V(3)})}, E(ceDiv0)},
      {"STEYX", {Column({V(1), V(2)}), Column({V(1), V(3)})}, E(ceDiv0)},
      {"COVARIANCE.S", {Column({V(1)}), Column({V(1)})}, E(ceDiv0)},
      {"COVARIANCE.P", {Column({V(1)}), Column({V(4)})}, V(0)},
      {"FORECAST.LINEAR", {"x", Ys(), Xs()}, E(ceValue)},
      {"FORECAST.LINEAR", {1, Ys(), Column({V(1)})}, E(ceNA)},
      {"CORREL", {1, "x"}, E(ceValue)},
  });
}

TEST(Regression, LinestWithStatistics) {
  TFormulaArg R = CallArray("LINEST", {Ys(), Xs(), true, true});
  ASSERT_TRUE(R.IsRange);
  ASSERT_EQ(R.RowCount, 5);
  ASSERT_EQ(R.ColCount, 2);
  const double Expected[5][2] = {{2.02, -0.02},
                                 {0.042761798705987902, 0.16653327995729062},
                                 {0.99821066610749983, 0.17888543819998318},
                                 {2231.46875, 4},
                                 {71.407, 0.128}};
  for (int Row = 0; Row < 5; ++Row)
    for (int Col = 0; Col < 2; ++Col)
      EXPECT_TRUE(IsNear(R.CellAt(Row, Col), Expected[Row][Col], 1e-12)) << Row << "," << Col;
}

TEST(Regression, LinestThroughTheOrigin) {
  TFormulaArg R = CallArray("LINEST", {Ys(), Xs(), false, true});
  ASSERT_EQ(R.RowCount, 5);
  EXPECT_TRUE(IsNear(R.CellAt(0, 0), 2.0153846153846154));
  EXPECT_EQ(R.CellAt(0, 1), V(0));
  EXPECT_TRUE(IsNear(R.CellAt(1, 0), 0.016802769163558154, 1e-12));
  EXPECT_EQ(R.CellAt(1, 1), E(ceNA));
  EXPECT_TRUE(IsNear(R.CellAt(2, 0), 0.9996525719040932));
  EXPECT_TRUE(IsNear(R.CellAt(2, 1), 0.16028820197477945, 1e-12));
  EXPECT_TRUE(IsNear(R.CellAt(3, 0), 14386.467065868263, 1e-11));
  EXPECT_EQ(R.CellAt(3, 1), V(5));
  EXPECT_TRUE(IsNear(R.CellAt(4, 0), 369.62153846153846));
  EXPECT_TRUE(IsNear(R.CellAt(4, 1), 0.12846153846153846, 1e-12));
}

TEST(Regression, LinestOfTwoVariablesListsThemInReverse) {
  TFormulaArg R = CallArray("LINEST", {TwoVariableYs(), TwoVariables(), true, true});
  ASSERT_EQ(R.ColCount, 3);
  const double Row0[] = {0.84509803921568627, 1.4179271708683473, 0.17787114845938375};
  const double Row1[] = {0.082790620318755442, 0.10310741355500003, 0.21148928705349534};
  for (int Col = 0; Col < 3; ++Col) {
    EXPECT_TRUE(IsNear(R.CellAt(0, Col), Row0[Col], 1e-12)) << Col;
    EXPECT_TRUE(IsNear(R.CellAt(1, Col), Row1[Col], 1e-11)) << Col;
  }
  EXPECT_TRUE(IsNear(R.CellAt(2, 0), 0.99845730450912205));
  EXPECT_TRUE(IsNear(R.CellAt(3, 0), 1294.4321292349114, 1e-11));
  EXPECT_EQ(R.CellAt(3, 1), V(4));
  EXPECT_EQ(R.CellAt(2, 2), E(ceNA));
  EXPECT_EQ(R.CellAt(4, 2), E(ceNA));
}

TEST(Regression, ACollinearColumnIsLeftOut) {
  // The second variable is twice the first: it adds nothing, gets 0 and a
  // standard error of 0, and costs no degree of freedom.
  std::vector<TCellValue> Cells;
  for (int X = 1; X <= 6; ++X) {
    Cells.push_back(V(X));
    Cells.push_back(V(2 * X));
  }
  TFormulaArg R = CallArray("LINEST", {Ys(), Range(Cells, 6, 2), true, true});
  EXPECT_EQ(R.CellAt(0, 0), V(0));
  EXPECT_TRUE(IsNear(R.CellAt(0, 1), 2.02, 1e-13));
  EXPECT_EQ(R.CellAt(1, 0), V(0));
  EXPECT_EQ(R.CellAt(3, 1), V(4));
}

TEST(Regression, LinestWithoutXUsesPositions) {
  TFormulaArg R = CallArray("LINEST", {Ys()});
  ASSERT_EQ(R.RowCount, 1);
  EXPECT_TRUE(IsNear(R.CellAt(0, 0), 2.02, 1e-13));
  EXPECT_TRUE(IsNear(R.CellAt(0, 1), -0.02, 1e-12));
  // A row of y takes its variables from rows of x.
  TFormulaArg RowY = Range({V(2), V(4), V(6)}, 1, 3);
  TFormulaArg RowX = Range({V(1), V(2), V(3)}, 1, 3);
  TFormulaArg Fit = CallArray("LINEST", {RowY, RowX});
  EXPECT_TRUE(IsNear(Fit.CellAt(0, 0), 2));
  EXPECT_TRUE(IsNear(Fit.CellAt(0, 1), 0));
}

TEST(Regression, LinestErrors) {
  EXPECT_EQ(Call("LINEST", {Column({V(1), V("x"), V(3)})}), E(ceValue));
  EXPECT_EQ(Call("LINEST", {Ys(), Column({V(1), V(2)})}), E(ceRef));
  EXPECT_EQ(Call("LINEST", {Ys(), Column({V(1), V(2), V(3), V(4), V(5), V(true)})}), E(ceValue));
  EXPECT_EQ(Call("LOGEST", {Column({V(1), V(0), V(3)})}), E(ceNum));
  EXPECT_EQ(Call("GROWTH", {Column({V(1), V(-2)})}), E(ceNum));
  // An exact fit has no residual spread to report.
  TFormulaArg Exact = CallArray("LINEST", {Column({V(1), V(3)}), Column({V(1), V(2)}), true, true});
  EXPECT_TRUE(IsNear(Exact.CellAt(0, 0), 2, 1e-14));
  EXPECT_EQ(Exact.CellAt(2, 1), E(ceNum));
}

TEST(Regression, LogestAndGrowth) {
  TFormulaArg Units = Column({V(33100), V(47300), V(69000), V(102000), V(150000), V(220000)});
  TFormulaArg Months = Column({V(11), V(12), V(13), V(14), V(15), V(16)});
  TFormulaArg R = CallArray("LOGEST", {Units, Months, true, true});
  EXPECT_TRUE(IsNear(R.CellAt(0, 0), 1.4632756281161759, 1e-13));
  EXPECT_TRUE(IsNear(R.CellAt(0, 1), 495.30477015872754, 1e-11));
  EXPECT_TRUE(IsNear(R.CellAt(1, 0), 0.0026334028914250613, 1e-11));
  EXPECT_TRUE(IsNear(R.CellAt(2, 0), 0.99980861977581754));
  TFormulaArg G = CallArray("GROWTH", {Units, Months, Column({V(17), V(18)})});
  ASSERT_EQ(G.RowCount, 2);
  EXPECT_TRUE(IsNear(G.CellAt(0, 0), 320196.71836347318, 1e-12));
  EXPECT_TRUE(IsNear(G.CellAt(1, 0), 468536.05418404951, 1e-12));
  // Without a constant the line in logarithms goes through ln 1 = 0.
  TFormulaArg Through = CallArray("LOGEST", {Column({V(2), V(4), V(8)}), Column({V(1), V(2), V(3)}), false});
  EXPECT_TRUE(IsNear(Through.CellAt(0, 0), 2, 1e-14));
  EXPECT_EQ(Through.CellAt(0, 1), V(1));
}

TEST(Regression, TrendTakesTheShapeOfItsPoints) {
  TFormulaArg New = Range({V(7), V(8), V(9)}, 1, 3);
  TFormulaArg T = CallArray("TREND", {Ys(), Xs(), New});
  ASSERT_EQ(T.RowCount, 1);
  ASSERT_EQ(T.ColCount, 3);
  EXPECT_TRUE(IsNear(T.CellAt(0, 0), 14.12, 1e-14));
  EXPECT_TRUE(IsNear(T.CellAt(0, 2), 18.16, 1e-14));
  // No new points: the fitted values at the known ones.
  TFormulaArg Fitted = CallArray("TREND", {Ys()});
  ASSERT_EQ(Fitted.RowCount, 6);
  EXPECT_TRUE(IsNear(Fitted.CellAt(0, 0), 2.0, 1e-14));
  // Two variables: each row of the new x is one point.
  TFormulaArg Points = Range({V(8), V(8), V(1), V(0)}, 2, 2);
  TFormulaArg Two = CallArray("TREND", {TwoVariableYs(), TwoVariables(), Points});
  ASSERT_EQ(Two.RowCount, 2);
  ASSERT_EQ(Two.ColCount, 1);
  EXPECT_TRUE(IsNear(Two.CellAt(0, 0), 0.17787114845938375 + 8 * (1.4179271708683473 + 0.84509803921568627), 1e-12));
  EXPECT_TRUE(IsNear(Two.CellAt(1, 0), 0.17787114845938375 + 1.4179271708683473, 1e-12));
  EXPECT_EQ(Call("TREND", {TwoVariableYs(), TwoVariables(), Column({V(1), V(2)})}), E(ceRef));
  // Through the origin.
  TFormulaArg Origin = CallArray("TREND", {Ys(), Xs(), Column({V(10)}), false});
  EXPECT_TRUE(IsNear(Origin.CellAt(0, 0), 20.153846153846154, 1e-13));
}

}  // namespace
}  // namespace Tabrino
