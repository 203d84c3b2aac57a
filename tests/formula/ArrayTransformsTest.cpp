#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TFormulaArg Numbers(int32_t Rows, int32_t Cols, std::vector<double> Values) {
  std::vector<TCellValue> Cells;
  for (double X : Values) Cells.push_back(V(X));
  return Range(std::move(Cells), Rows, Cols);
}

// Rows of two numbers each, every one within Tolerance (absolute) of Expected.
void ExpectPairs(const TFormulaArg& Actual, const std::vector<std::pair<double, double>>& Expected,
                 double Tolerance = 1E-12) {
  ASSERT_TRUE(Actual.IsRange) << Actual.First().ToDisplayString();
  ASSERT_EQ(Actual.RowCount, int32_t(Expected.size()));
  ASSERT_EQ(Actual.ColCount, 2);
  for (size_t K = 0; K < Expected.size(); ++K) {
    for (int P = 0; P < 2; ++P) {
      const TCellValue& Cell = Actual.Cells[2 * K + P];
      double Want = P == 0 ? Expected[K].first : Expected[K].second;
      ASSERT_EQ(Cell.Kind, cvkNumber) << "row " << K;
      EXPECT_NEAR(Cell.Number, Want, Tolerance) << "row " << K << " part " << P;
    }
  }
}

TEST(ArrayTransforms, WrongArgumentCounts) {
  ExpectCases({
      {"FOURIER", {1}, E(ceValue)},
      {"FOURIER", {1, true, false, false, 0, 1}, E(ceValue)},
      {"MAXPOOL", {1}, E(ceValue)},
      {"MEDIANPOOL", {1, 1, 1, 1}, E(ceValue)},
  });
}

TEST(ArrayTransforms, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"FOURIER", {Column({V(1), V("x")}), true}, E(ceValue)},
      {"FOURIER", {Column({V(1), V(2)}), "yes"}, E(ceValue)},
      {"FOURIER", {Column({V(1), V(2)}), true, false, true, "m"}, E(ceValue)},
      {"MAXPOOL", {Numbers(2, 2, {1, 2, 3, 4}), "w"}, E(ceValue)},
      {"MAXPOOL", {Numbers(2, 2, {1, 2, 3, 4}), 1, "s"}, E(ceValue)},
  });
}

// References: a direct DFT in mpmath at 40 digits.
TEST(ArrayTransforms, FourierOfRealSequences) {
  // Length 5 takes the chirp path, length 8 the radix-2 one.
  ExpectPairs(CallArray("FOURIER", {Column({V(1), V(2), V(3), V(4), V(5)}), true}), {{15, 0},
                                                                                     {-2.5, 3.4409548011779338455},
                                                                                     {-2.5, 0.81229924058226581539},
                                                                                     {-2.5, -0.81229924058226581539},
                                                                                     {-2.5, -3.4409548011779338455}});
  ExpectPairs(CallArray("FOURIER", {Numbers(1, 8, {1.5, -2, 0.25, 7, 3, -1, 0, 2}), false}),
              {{10.75, 0},
               {-5.7426406871192851464, -3.0784271247461900976},
               {4.25, 12},
               {2.7426406871192851464, -2.5784271247461900976},
               {-1.25, 0},
               {2.7426406871192851464, 2.5784271247461900976},
               {4.25, -12},
               {-5.7426406871192851464, 3.0784271247461900976}});
  ExpectPairs(CallArray("FOURIER", {7, true}), {{7, 0}});
}

TEST(ArrayTransforms, FourierOfComplexSequencesAndInverse) {
  // Real parts beside imaginary parts, grouped by columns; and by rows.
  TFormulaArg ByColumns = Numbers(3, 2, {1, 2, -1, 0.5, 3, -3});
  TFormulaArg ByRows = Numbers(2, 3, {1, -1, 3, 2, 0.5, -3});
  std::vector<std::pair<double, double>> Inverse = {{1, -0.16666666666666666667},
                                                    {-1.0103629710818450879, -0.071367205045918195685},
                                                    {1.0103629710818450879, 2.2380338717125848624}};
  ExpectPairs(CallArray("FOURIER", {ByColumns, true, true}), Inverse);
  ExpectPairs(CallArray("FOURIER", {ByRows, false, true}), Inverse);
  // Forward then inverse gives the sequence back.
  std::vector<double> Round;
  for (const TCellValue& C : CallArray("FOURIER", {ByColumns, true}).Cells) Round.push_back(C.Number);
  ExpectPairs(CallArray("FOURIER", {Numbers(3, 2, Round), true, true}), {{1, 2}, {-1, 0.5}, {3, -3}});
  // An empty cell is 0; a third column is no complex number.
  ExpectPairs(CallArray("FOURIER", {Range({V(1), Blank(), V(1), Blank()}, 2, 2), true}), {{2, 0}, {0, 0}});
  EXPECT_EQ(Call("FOURIER", {Numbers(2, 3, {1, 2, 3, 4, 5, 6}), true}), E(ceValue));
}

TEST(ArrayTransforms, FourierPolar) {
  TFormulaArg Sequence = Column({V(1), V(2), V(3), V(4), V(5)});
  ExpectPairs(CallArray("FOURIER", {Sequence, true, false, true}), {{15, 0},
                                                                    {4.2532540417601996609, 2.1991148575128552669},
                                                                    {2.6286555605956680301, 2.8274333882308139146},
                                                                    {2.6286555605956680301, -2.8274333882308139146},
                                                                    {4.2532540417601996609, -2.1991148575128552669}});
  // Magnitudes below the minimum are suppressed with their phase.
  ExpectPairs(CallArray("FOURIER", {Sequence, true, false, true, 3}),
              {{15, 0},
               {4.2532540417601996609, 2.1991148575128552669},
               {0, 0},
               {0, 0},
               {4.2532540417601996609, -2.1991148575128552669}});
}

TEST(ArrayTransforms, FourierOfALongSequenceMatchesTheDirectSum) {
  const size_t N = 1000;  // not a power of two
  std::vector<TCellValue> Cells;
  for (size_t J = 0; J < N; ++J) Cells.push_back(V(std::sin(0.37 * J) + 0.01 * J));
  TFormulaArg Spectrum = CallArray("FOURIER", {Column(Cells), true});
  ASSERT_EQ(Spectrum.RowCount, int32_t(N));
  for (size_t K : {size_t(0), size_t(1), size_t(59), size_t(500), size_t(999)}) {
    long double Re = 0, Im = 0;
    for (size_t J = 0; J < N; ++J) {
      long double Angle = -2 * 3.14159265358979323846264338L * ((J * K) % N) / N;
      Re += Cells[J].Number * std::cos(Angle);
      Im += Cells[J].Number * std::sin(Angle);
    }
    EXPECT_NEAR(Spectrum.Cells[2 * K].Number, double(Re), 1E-10) << K;
    EXPECT_NEAR(Spectrum.Cells[2 * K + 1].Number, double(Im), 1E-10) << K;
  }
}

TEST(ArrayTransforms, Pooling) {
  TFormulaArg Grid = Numbers(4, 4, {0, 0, 1, 7, 0, 2, 0, 0, 5, 2, 0, 0, 0, 0, 9, 8});
  auto Values = [](const TFormulaArg& A) {
    std::vector<TCellValue> Out(A.Cells.begin(), A.Cells.end());
    return std::make_pair(std::make_pair(A.RowCount, A.ColCount), Out);
  };
  using TShape = std::pair<int32_t, int32_t>;
  EXPECT_EQ(Values(CallArray("MAXPOOL", {Grid, 2})), std::make_pair(TShape{2, 2}, std::vector{V(2), V(7), V(5), V(9)}));
  EXPECT_EQ(Values(CallArray("MAXPOOL", {Grid, 3, 1})),
            std::make_pair(TShape{2, 2}, std::vector{V(5), V(7), V(9), V(9)}));
  EXPECT_EQ(Values(CallArray("MAXPOOL", {Grid, 2, 3})), std::make_pair(TShape{1, 1}, std::vector{V(2)}));
  EXPECT_EQ(Values(CallArray("MEDIANPOOL", {Grid, 2})),
            std::make_pair(TShape{2, 2}, std::vector{V(0), V(0.5), V(1), V(4)}));
  EXPECT_EQ(Values(CallArray("MEDIANPOOL", {Grid, 3, 1})),
            std::make_pair(TShape{2, 2}, std::vector{V(0), V(0), V(0), V(0)}));
  // Non-numbers are passed over; a window without numbers is 0 for the
  // maximum (as MAX) and #NUM! for the median.
  TFormulaArg Mixed = Range({V("a"), Blank(), V(3), V("b"), V(true), E(ceNA), V(-1), V(4)}, 2, 4);
  EXPECT_EQ(Values(CallArray("MAXPOOL", {Mixed, 2})), std::make_pair(TShape{1, 2}, std::vector{V(0), V(4)}));
  EXPECT_EQ(Values(CallArray("MEDIANPOOL", {Mixed, 2})), std::make_pair(TShape{1, 2}, std::vector{E(ceNum), V(3)}));
}

TEST(ArrayTransforms, PoolingSizes) {
  TFormulaArg Grid = Numbers(2, 3, {1, 2, 3, 4, 5, 6});
  ExpectCases({
      {"MAXPOOL", {Grid, 3}, E(ceValue)},  // taller than the range
      {"MAXPOOL", {Grid, 0}, E(ceNum)},
      {"MAXPOOL", {Grid, 1, 0}, E(ceNum)},
      {"MAXPOOL", {Grid, 1, 1E300}, V(1)},
      {"MEDIANPOOL", {Grid, 2.9}, V(3)},
      {"MAXPOOL", {5, 1}, V(5)},
  });
  // A million-cell sweep with a large window is refused rather than left to run.
  std::vector<TCellValue> Many(1000 * 1000, V(1));
  EXPECT_EQ(Call("MEDIANPOOL", {Range(Many, 1000, 1000), 500, 1}), E(ceValue));
}

}  // namespace
}  // namespace Tabrino
