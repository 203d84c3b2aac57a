#include <gtest/gtest.h>

#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// A row-by-row matrix of numbers.
TFormulaArg Matrix(int32_t Rows, int32_t Cols, std::vector<double> Values) {
  std::vector<TCellValue> Cells;
  for (double X : Values) Cells.push_back(V(X));
  return Range(std::move(Cells), Rows, Cols);
}

void ExpectArray(const TFormulaArg& Actual, int32_t Rows, int32_t Cols, const std::vector<double>& Expected,
                 double Relative = 0) {
  ASSERT_TRUE(Actual.IsRange) << Actual.First().ToDisplayString();
  ASSERT_EQ(Actual.RowCount, Rows);
  ASSERT_EQ(Actual.ColCount, Cols);
  for (size_t I = 0; I < Expected.size(); ++I) {
    if (Relative == 0) {
      EXPECT_EQ(Actual.Cells[I], V(Expected[I])) << "cell " << I;
    } else {
      EXPECT_TRUE(IsNear(Actual.Cells[I], Expected[I], Relative)) << "cell " << I;
    }
  }
}

TEST(Matrix, WrongArgumentCounts) {
  ExpectCases({
      {"MDETERM", {}, E(ceValue)},
      {"MINVERSE", {1, 2}, E(ceValue)},
      {"MMULT", {1}, E(ceValue)},
      {"MUNIT", {}, E(ceValue)},
      {"SUMSQ", {}, E(ceValue)},
      {"SUMX2MY2", {1}, E(ceValue)},
      {"SERIESSUM", {1, 2, 3}, E(ceValue)},
  });
}

// A matrix holds numbers only: an empty, text, boolean or error cell fails.
TEST(Matrix, CellsThatAreNoNumbers) {
  for (TCellValue Bad : {Blank(), V("1"), V(true), E(ceNA)}) {
    TFormulaArg WithBad = Range({V(1), V(2), Bad, V(4)}, 2, 2);
    EXPECT_EQ(Call("MDETERM", {WithBad}), E(ceValue));
    EXPECT_EQ(Call("MINVERSE", {WithBad}), E(ceValue));
    EXPECT_EQ(Call("MMULT", {WithBad, WithBad}), E(ceValue));
  }
  ExpectCases({
      {"MDETERM", {"x"}, E(ceValue)},
      {"MMULT", {2, "3"}, V(6)},
      {"MUNIT", {"x"}, E(ceValue)},
      {"SUMSQ", {"x"}, E(ceValue)},
      {"SUMX2PY2", {"x", 1}, E(ceValue)},
      {"SERIESSUM", {"x", 0, 1, 1}, E(ceValue)},
      {"SERIESSUM", {2, 0, 1, Column({V(1), V("t")})}, E(ceValue)},
  });
}

TEST(Matrix, Shapes) {
  ExpectCases({
      {"MDETERM", {Matrix(2, 3, {1, 2, 3, 4, 5, 6})}, E(ceValue)},
      {"MINVERSE", {Matrix(3, 2, {1, 2, 3, 4, 5, 6})}, E(ceValue)},
      {"MMULT", {Matrix(2, 3, {1, 2, 3, 4, 5, 6}), Matrix(2, 3, {1, 2, 3, 4, 5, 6})}, E(ceValue)},
      {"MDETERM", {Range({}, 0, 0)}, E(ceValue)},
      {"MUNIT", {0}, E(ceValue)},
      {"MUNIT", {-2}, E(ceValue)},
      {"MUNIT", {1E9}, E(ceValue)},  // never allocates gigabytes
      {"MUNIT", {1025}, E(ceValue)},
      {"MDETERM", {5}, V(5)},
      {"MINVERSE", {4}, V(0.25)},
      {"MINVERSE", {0}, E(ceNum)},
  });
}

// Whole-number matrices come out exact (the documented examples).
TEST(Matrix, DeterminantOfWholeNumbers) {
  ExpectCases({
      {"MDETERM", {Matrix(4, 4, {1, 3, 8, 5, 1, 3, 6, 1, 1, 1, 1, 0, 7, 3, 10, 2})}, V(88)},
      {"MDETERM", {Matrix(3, 3, {3, 6, 1, 1, 1, 0, 3, 10, 2})}, V(1)},
      {"MDETERM", {Matrix(2, 2, {3, 6, 1, 1})}, V(-3)},
      {"MDETERM", {Matrix(2, 2, {1, 2, 2, 4})}, V(0)},
      {"MDETERM", {Matrix(2, 2, {0, 1, 1, 0})}, V(-1)},
      {"MDETERM", {Matrix(3, 3, {0, 0, 1, 0, 1, 0, 1, 0, 0})}, V(-1)},
      {"MDETERM", {Matrix(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9})}, V(0)},
      // Minors near 2^53 stay exact in 128 bits.
      {"MDETERM", {Matrix(2, 2, {94906265, 1, 0, 94906265})}, V(94906265.0 * 94906265.0)},
  });
}

// References: mpmath det at 40 digits on the same doubles.
TEST(Matrix, DeterminantOfFractions) {
  EXPECT_TRUE(IsNear(Call("MDETERM", {Matrix(3, 3, {0.5, 1.25, -3.75, 2.2, 3.1, 0.7, -1.3, 0.4, 5.9})}),
                     -26.77000000000000283884027, 1E-14));
  std::vector<double> Hilbert;
  for (int I = 0; I < 6; ++I)
    for (int J = 0; J < 6; ++J) Hilbert.push_back(1.0 / (I + J + 1));
  EXPECT_TRUE(IsNear(Call("MDETERM", {Matrix(6, 6, Hilbert)}), 5.367299886945031626707756e-18, 1E-9));
  EXPECT_EQ(Call("MDETERM", {Matrix(2, 2, {1E200, 0, 0, 1E200})}), E(ceNum));
}

TEST(Matrix, InverseOfWholeNumbers) {
  ExpectArray(CallArray("MINVERSE", {Matrix(2, 2, {4, -1, 2, 0})}), 2, 2, {0, 0.5, -1, 2});
  ExpectArray(CallArray("MINVERSE", {Matrix(3, 3, {1, 2, 1, 3, 4, -1, 0, 2, 0})}), 3, 3,
              {0.25, 0.25, -0.75, 0, 0, 0.5, 0.75, -0.25, -0.25});
  // Thirds are correctly rounded, not merely close.
  ExpectArray(CallArray("MINVERSE", {Matrix(2, 2, {3, 0, 0, 3})}), 2, 2, {1.0 / 3, 0, 0, 1.0 / 3});
  ExpectArray(CallArray("MINVERSE", {Matrix(2, 2, {0, 1, 1, 0})}), 2, 2, {0, 1, 1, 0});
  EXPECT_EQ(Call("MINVERSE", {Matrix(2, 2, {4, -1, 2, 0})}), V(0));  // scalar context: the first value
}

TEST(Matrix, SingularMatricesHaveNoInverse) {
  EXPECT_EQ(Call("MINVERSE", {Matrix(2, 2, {1, 2, 2, 4})}), E(ceNum));
  EXPECT_EQ(Call("MINVERSE", {Matrix(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9})}), E(ceNum));
  EXPECT_EQ(Call("MINVERSE", {Matrix(2, 2, {0, 0, 0, 0})}), E(ceNum));
  // Singular but for the binary rounding of 0.1 and 0.3.
  EXPECT_EQ(Call("MINVERSE", {Matrix(2, 2, {0.1, 0.3, 0.2, 0.6})}), E(ceNum));
}

// Reference: mpmath inverse at 40 digits on the same doubles.
TEST(Matrix, InverseOfFractions) {
  ExpectArray(CallArray("MINVERSE", {Matrix(3, 3, {0.5, 1.25, -3.75, 2.2, 3.1, 0.7, -1.3, 0.4, 5.9})}), 3, 3,
              {-0.6727680239073589733920804, 0.3315278296600672239895922, -0.4669406051550242417626433,
               0.5188644004482629932771399, 0.07190885319387373122002321, 0.3212551363466566952535426,
               -0.1834142697048935320265641, 0.06817332835263354027195336, 0.04482629809488233284949509},
              1E-14);
  // A tiny but regular matrix is no singular one.
  ExpectArray(CallArray("MINVERSE", {Matrix(2, 2, {1E-10, 0, 0, 1E10})}), 2, 2, {1E10, 0, 0, 1E-10}, 1E-15);
}

TEST(Matrix, ProductsAndIdentity) {
  ExpectArray(CallArray("MMULT", {Matrix(2, 2, {1, 3, 7, 2}), Matrix(2, 2, {2, 0, 0, 2})}), 2, 2, {2, 6, 14, 4});
  ExpectArray(CallArray("MMULT", {Matrix(1, 3, {1, 2, 3}), Matrix(3, 1, {4, 5, 6})}), 1, 1, {32});
  ExpectArray(CallArray("MMULT", {Matrix(3, 1, {1, 2, 3}), Matrix(1, 2, {4, 5})}), 3, 2, {4, 5, 8, 10, 12, 15});
  ExpectArray(CallArray("MMULT", {Matrix(1, 2, {0.1, 0.2}), Matrix(2, 1, {3, 3})}), 1, 1, {0.9}, 1E-15);
  ExpectArray(CallArray("MUNIT", {3}), 3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
  ExpectArray(CallArray("MUNIT", {1.9}), 1, 1, {1});
  EXPECT_EQ(Call("MMULT", {Matrix(1, 1, {1E200}), Matrix(1, 1, {1E200})}), E(ceNum));
}

TEST(Matrix, SumsOfSquares) {
  TFormulaArg Xs = Column({V(2), V(3), V(9), V(1), V(8), V(7), V(5)});
  TFormulaArg Ys = Column({V(6), V(5), V(11), V(7), V(5), V(4), V(4)});
  ExpectCases({
      // The documented examples.
      {"SUMX2MY2", {Xs, Ys}, V(-55)},
      {"SUMX2PY2", {Xs, Ys}, V(521)},
      {"SUMXMY2", {Xs, Ys}, V(79)},
      // Counts, not shapes, must agree; a pair with a non-number is passed over.
      {"SUMXMY2", {Column({V(1), V(2)}), Range({V(1), V(1)}, 1, 2)}, V(1)},
      {"SUMXMY2", {Column({V(1), V(2)}), Column({V(1), V(2), V(3)})}, E(ceNA)},
      {"SUMX2PY2", {Column({V(1), V("x"), V(3)}), Column({V(1), V(5), Blank()})}, V(2)},
      {"SUMX2MY2", {3, 2}, V(5)},
      {"SUMSQ", {3, 4}, V(25)},
      {"SUMSQ", {Column({V(3), V("x"), Blank(), V(true), E(ceNA), V(4)}), "2", true}, V(30)},
      {"SUMSQ", {1E200}, E(ceNum)},
  });
}

TEST(Matrix, SeriesSum) {
  // Reference: mpmath at 40 digits with the same double coefficients.
  EXPECT_TRUE(
      IsNear(Call("SERIESSUM", {0.78539816339744828, 0, 2, Range({V(1), V(-0.5), V(1.0 / 24), V(-1.0 / 720)}, 1, 4)}),
             0.7071032148228456747575436, 1E-15));
  ExpectCases({
      {"SERIESSUM", {2, 1, 1, Column({V(1), Blank(), V(3)})}, V(2 + 3 * 8)},  // an empty cell is a zero term
      {"SERIESSUM", {2, 3, 0, 5}, V(40)},
      {"SERIESSUM", {0, -1, 1, Column({V(0), V(2)})}, V(2)},  // no 0^-1 for a zero coefficient
      {"SERIESSUM", {0, -1, 1, 1}, E(ceNum)},
  });
}

}  // namespace
}  // namespace Tabrino
