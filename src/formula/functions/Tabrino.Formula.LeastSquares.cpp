#include "Tabrino.Formula.LeastSquares.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "Tabrino.Formula.Sample.h"

namespace Tabrino {

namespace {

// A column whose part outside the span of the columns already taken is below
// this fraction of its length adds nothing to the fit: it is left out.
constexpr double CollinearFraction = 1e-12;

double NormFrom(const std::vector<double>& Column, size_t First) {
  double Scale = 0, Sum = 1;  // scaled, so that huge or tiny data neither overflows nor underflows
  for (size_t I = First; I < Column.size(); ++I) {
    double A = std::fabs(Column[I]);
    if (A == 0) continue;
    if (A > Scale) {
      Sum = 1 + Sum * (Scale / A) * (Scale / A);
      Scale = A;
    } else {
      Sum += (A / Scale) * (A / Scale);
    }
  }
  return Scale * std::sqrt(Sum);
}

// Reflects Target by the Householder vector V, which starts at row First.
void Reflect(const std::vector<double>& V, double VNormSquared, size_t First, std::vector<double>& Target) {
  double Dot = 0;
  for (size_t I = First; I < Target.size(); ++I) Dot += V[I] * Target[I];
  const double Factor = 2 * Dot / VNormSquared;
  for (size_t I = First; I < Target.size(); ++I) Target[I] -= Factor * V[I];
}

}  // namespace

double TLeastSquaresFit::Predict(std::span<const double> Variables) const {
  double Y = Intercept;
  for (size_t J = 0; J < Coefficients.size() && J < Variables.size(); ++J) Y += Coefficients[J] * Variables[J];
  return Y;
}

TLeastSquaresFit FitLeastSquares(std::span<const double> Y, const std::vector<std::vector<double>>& Variables,
                                 bool WithConstant) {
  const size_t N = Y.size();
  const size_t K = Variables.size();
  TLeastSquaresFit Fit;
  Fit.Coefficients.assign(K, 0);
  Fit.StandardErrors.assign(K, 0);

  // Centring first takes the constant out of the design and keeps columns of
  // large values from losing their variation to rounding.
  const double MeanY = WithConstant ? MeanOf(Y) : 0;
  std::vector<double> MeanX(K, 0);
  std::vector<std::vector<double>> Columns(K);
  std::vector<double> OriginalNorm(K);
  for (size_t J = 0; J < K; ++J) {
    if (WithConstant) MeanX[J] = MeanOf(Variables[J]);
    Columns[J].resize(N);
    for (size_t I = 0; I < N; ++I) Columns[J][I] = Variables[J][I] - MeanX[J];
    OriginalNorm[J] = NormFrom(Columns[J], 0);
  }
  std::vector<double> Rhs(N);
  for (size_t I = 0; I < N; ++I) Rhs[I] = Y[I] - MeanY;

  // Householder steps, each taking the column with the largest share of its
  // length left outside the columns already taken.
  std::vector<size_t> Order(K);
  std::iota(Order.begin(), Order.end(), 0);
  size_t Rank = 0;
  std::vector<double> V(N);
  for (size_t Step = 0; Step < std::min(N, K); ++Step) {
    size_t Best = Step;
    double BestShare = -1;
    for (size_t P = Step; P < K; ++P) {
      const size_t J = Order[P];
      const double Share = OriginalNorm[J] > 0 ? NormFrom(Columns[J], Step) / OriginalNorm[J] : 0;
      if (Share > BestShare) {
        BestShare = Share;
        Best = P;
      }
    }
    if (!(BestShare > CollinearFraction)) break;
    std::swap(Order[Step], Order[Best]);

    std::vector<double>& Pivot = Columns[Order[Step]];
    const double Length = NormFrom(Pivot, Step);
    const double Alpha = Pivot[Step] > 0 ? -Length : Length;
    std::fill(V.begin(), V.end(), 0.0);
    for (size_t I = Step; I < N; ++I) V[I] = Pivot[I];
    V[Step] -= Alpha;
    double VNormSquared = 0;
    for (size_t I = Step; I < N; ++I) VNormSquared += V[I] * V[I];
    for (size_t P = Step + 1; P < K; ++P) Reflect(V, VNormSquared, Step, Columns[Order[P]]);
    Reflect(V, VNormSquared, Step, Rhs);
    Pivot[Step] = Alpha;
    ++Rank;
  }
  Fit.Rank = Rank;

  // R(i, j) = Columns[Order[j]][i] for i <= j < Rank. Back substitution.
  auto R = [&](size_t I, size_t J) { return Columns[Order[J]][I]; };
  std::vector<double> Solution(Rank);
  for (size_t J = Rank; J-- > 0;) {
    double Sum = Rhs[J];
    for (size_t L = J + 1; L < Rank; ++L) Sum -= R(J, L) * Solution[L];
    Solution[J] = Sum / R(J, J);
  }
  for (size_t J = 0; J < Rank; ++J) Fit.Coefficients[Order[J]] = Solution[J];

  // Residuals from the original data rather than from the rotated right-hand
  // side: the same in exact arithmetic, closer in floating point.
  std::vector<double> Squares(N), Totals(N);
  for (size_t I = 0; I < N; ++I) {
    double Fitted = 0;
    for (size_t J = 0; J < K; ++J) Fitted += Fit.Coefficients[J] * (Variables[J][I] - MeanX[J]);
    const double Residual = (Y[I] - MeanY) - Fitted;
    Squares[I] = Residual * Residual;
    Totals[I] = (Y[I] - MeanY) * (Y[I] - MeanY);
  }
  Fit.SsResidual = SumOf(Squares);
  Fit.SsRegression = std::max(0.0, SumOf(Totals) - Fit.SsResidual);
  if (WithConstant) {
    Fit.Intercept = MeanY;
    for (size_t J = 0; J < K; ++J) Fit.Intercept -= Fit.Coefficients[J] * MeanX[J];
  }
  Fit.DegreesOfFreedom = double(N) - double(Rank) - (WithConstant ? 1 : 0);

  // Standard errors from sigma^2 (R'R)^-1, with R inverted column by column.
  const double Sigma2 =
      Fit.DegreesOfFreedom > 0 ? Fit.SsResidual / Fit.DegreesOfFreedom : std::numeric_limits<double>::quiet_NaN();
  std::vector<std::vector<double>> RInverse(Rank, std::vector<double>(Rank, 0));
  for (size_t J = 0; J < Rank; ++J) {
    RInverse[J][J] = 1 / R(J, J);
    for (size_t I = J; I-- > 0;) {
      double Sum = 0;
      for (size_t L = I + 1; L <= J; ++L) Sum += R(I, L) * RInverse[L][J];
      RInverse[I][J] = -Sum / R(I, I);
    }
  }
  // The covariance of coefficients a and b, up to Sigma2, is row a of R^-1
  // dotted with row b; the intercept's variance adds m'(R'R)^-1 m for the
  // means m of the variables, which is the squared length of R^-T m.
  for (size_t J = 0; J < Rank; ++J) {
    double Sum = 0;
    for (size_t L = J; L < Rank; ++L) Sum += RInverse[J][L] * RInverse[J][L];
    Fit.StandardErrors[Order[J]] = std::sqrt(Sigma2 * Sum);
  }
  if (WithConstant && N > 0) {
    double Spread = 1 / double(N);
    for (size_t L = 0; L < Rank; ++L) {
      double U = 0;
      for (size_t I = 0; I <= L; ++I) U += RInverse[I][L] * MeanX[Order[I]];
      Spread += U * U;
    }
    Fit.InterceptError = std::sqrt(Sigma2 * Spread);
  }
  return Fit;
}

}  // namespace Tabrino
