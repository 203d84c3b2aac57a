// Ordinary least squares for LINEST, LOGEST, TREND and GROWTH: Householder
// QR with column pivoting on centred data, so that ill-conditioned columns
// keep their digits, and a column that adds nothing beyond the others (or
// beyond the constant) is left out with coefficient and standard error 0.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace Tabrino {

struct TLeastSquaresFit {
  // Per variable in the order given; 0 for a variable that was left out.
  std::vector<double> Coefficients;
  std::vector<double> StandardErrors;
  double Intercept = 0;
  double InterceptError = 0;
  // Variables that took part: the rank of the design without the constant.
  size_t Rank = 0;
  // Observations less the coefficients fitted, the constant included.
  double DegreesOfFreedom = 0;
  // Explained and residual sums of squares; with no constant the explained
  // part is measured from 0 rather than from the mean.
  double SsRegression = 0;
  double SsResidual = 0;

  double Predict(std::span<const double> Variables) const;
};

// Y has one value per observation; Variables[j] holds variable j for every
// observation. Without a constant the line goes through the origin.
TLeastSquaresFit FitLeastSquares(std::span<const double> Y, const std::vector<std::vector<double>>& Variables,
                                 bool WithConstant);

}  // namespace Tabrino
