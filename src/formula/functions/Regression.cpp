// Correlation, covariance and regression: the paired statistics over two
// lists (CORREL, SLOPE, FORECAST.LINEAR, ...) and the least-squares family
// (LINEST, LOGEST, TREND, GROWTH).

#include <cmath>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.LeastSquares.h"
#include "Tabrino.Formula.Sample.h"

namespace Tabrino {

namespace {

// ---- Paired statistics -------------------------------------------------------------------------

// The number of one value of a paired or regression argument: a cell when it
// holds a number, a typed-in value when it converts. Error is ceValue for a
// typed-in value that does not convert, ceNum for one that is not finite.
bool PairedNumber(const TFormulaArg& Arg, const TCellValue& Value, double& X, TCellErrorCode& Error) {
  if (IsCellArgument(Arg)) {
    if (!SampleCellNumber(Value, srNumbers, X)) return false;
  } else if (!AsNumber(Value, X)) {
    Error = ceValue;
    return false;
  }
  if (std::isfinite(X)) return true;
  Error = ceNum;
  return false;
}

// Centred sums of two lists, taken only at the places where both hold a
// number. Lists of different lengths give #N/A.
struct TPairedMoments {
  double N = 0;
  double MeanX = 0, MeanY = 0;
  double Sxx = 0, Syy = 0, Sxy = 0;
  TCellErrorCode Error = ceNone;
};

TPairedMoments PairedMoments(const TFormulaArg& YArg, const TFormulaArg& XArg) {
  TPairedMoments M;
  std::span<const TCellValue> Ys = ArgValues(YArg), Xs = ArgValues(XArg);
  if (Ys.size() != Xs.size()) {
    M.Error = ceNA;
    return M;
  }
  std::vector<double> X, Y;
  for (size_t I = 0; I < Ys.size() && M.Error == ceNone; ++I) {
    double A = 0, B = 0;
    if (PairedNumber(XArg, Xs[I], A, M.Error) && PairedNumber(YArg, Ys[I], B, M.Error)) {
      X.push_back(A);
      Y.push_back(B);
    }
  }
  M.N = double(X.size());
  M.MeanX = MeanOf(X);
  M.MeanY = MeanOf(Y);
  std::vector<double> Dxx, Dyy, Dxy;
  for (size_t I = 0; I < X.size(); ++I) {
    const double Dx = X[I] - M.MeanX, Dy = Y[I] - M.MeanY;
    Dxx.push_back(Dx * Dx);
    Dyy.push_back(Dy * Dy);
    Dxy.push_back(Dx * Dy);
  }
  M.Sxx = SumOf(Dxx);
  M.Syy = SumOf(Dyy);
  M.Sxy = SumOf(Dxy);
  return M;
}

using TPairedStatistic = TCellValue (*)(const TPairedMoments& M);

// A paired statistic as a function body: (y, x) or (array1, array2) in the
// first two arguments.
template <TPairedStatistic Statistic>
TCellValue OverPairs(const TFunctionCall& Call) {
  TPairedMoments M = PairedMoments(Call[0], Call[1]);
  return M.Error != ceNone ? Err(M.Error) : Statistic(M);
}

TCellValue Correlation(const TPairedMoments& M) {
  if (M.N < 1 || M.Sxx == 0 || M.Syy == 0) return Err(ceDiv0);
  return Num(std::clamp(M.Sxy / std::sqrt(M.Sxx * M.Syy), -1.0, 1.0));
}

TCellValue RSquared(const TPairedMoments& M) {
  TCellValue R = Correlation(M);
  return R.Kind == cvkNumber ? Num(R.Number * R.Number) : R;
}

TCellValue Slope(const TPairedMoments& M) {
  if (M.N < 1 || M.Sxx == 0) return Err(ceDiv0);
  return Num(M.Sxy / M.Sxx);
}

TCellValue Intercept(const TPairedMoments& M) {
  if (M.N < 1 || M.Sxx == 0) return Err(ceDiv0);
  return Num(M.MeanY - M.Sxy / M.Sxx * M.MeanX);
}

// The standard error of the y estimate: residual spread with n - 2 degrees of
// freedom.
TCellValue Steyx(const TPairedMoments& M) {
  if (M.N < 3 || M.Sxx == 0) return Err(ceDiv0);
  return Num(std::sqrt(std::max(0.0, M.Syy - M.Sxy * M.Sxy / M.Sxx) / (M.N - 2)));
}

TCellValue CovariancePopulation(const TPairedMoments& M) {
  if (M.N < 1) return Err(ceDiv0);
  return Num(M.Sxy / M.N);
}

TCellValue CovarianceSample(const TPairedMoments& M) {
  if (M.N < 2) return Err(ceDiv0);
  return Num(M.Sxy / (M.N - 1));
}

TCellValue ForecastLinear(const TFunctionCall& Call) {
  double X;
  if (!ArgNumber(Call[0], X)) return Err(ceValue);
  TPairedMoments M = PairedMoments(Call[1], Call[2]);
  if (M.Error != ceNone) return Err(M.Error);
  if (M.N < 1 || M.Sxx == 0) return Err(ceDiv0);
  return FiniteNum(M.MeanY + M.Sxy / M.Sxx * (X - M.MeanX));
}

// ---- Least squares ----------------------------------------------------------------------------

bool OptTruthy(const TFunctionCall& Call, size_t Index, bool Default) {
  return ArgOmitted(Call, Index) ? Default : ArgTruthy(Call[Index]);
}

int32_t RowsOf(const TFormulaArg& Arg) {
  return Arg.IsRange ? Arg.RowCount : 1;
}
int32_t ColsOf(const TFormulaArg& Arg) {
  return Arg.IsRange ? Arg.ColCount : 1;
}

// Every value of a regression argument as a number; any that is not one makes
// the whole call #VALUE! (#NUM! when not finite).
bool AllNumbers(const TFormulaArg& Arg, std::vector<double>& Numbers, TCellErrorCode& Error) {
  for (const TCellValue& V : ArgValues(Arg)) {
    double X = 0;
    if (!PairedNumber(Arg, V, X, Error)) {
      if (Error == ceNone) Error = ceValue;
      return false;
    }
    Numbers.push_back(X);
  }
  return true;
}

// How the variables lie in an x array, set by the shape of y: beside each
// other as columns when y is a column, one per row when y is a row, and a
// single variable of the same shape when y is a block.
enum TLayout : uint8_t { lyColumns, lyRows, lyBlock };

struct TRegression {
  std::vector<double> Y;
  std::vector<std::vector<double>> Variables;
  TLayout Layout = lyColumns;
  // The shape of y, which the fitted values of TREND take by default.
  int32_t Rows = 1, Cols = 1;
  bool WithConstant = true;
  TLeastSquaresFit Fit;
};

// The variables of X under Layout, given Count observations; false when X has
// the wrong shape for that.
bool SplitVariables(const std::vector<double>& Values, int32_t Rows, int32_t Cols, TLayout Layout, size_t Count,
                    std::vector<std::vector<double>>& Variables) {
  Variables.clear();
  if (Layout == lyBlock) {
    if (Values.size() != Count) return false;
    Variables.push_back(Values);
    return true;
  }
  const bool ByColumn = Layout == lyColumns;
  const size_t Observations = size_t(ByColumn ? Rows : Cols);
  const size_t K = size_t(ByColumn ? Cols : Rows);
  if (Observations != Count) return false;
  Variables.assign(K, std::vector<double>(Count));
  for (int32_t R = 0; R < Rows; ++R)
    for (int32_t C = 0; C < Cols; ++C) {
      const double V = Values[size_t(R) * size_t(Cols) + size_t(C)];
      if (ByColumn)
        Variables[size_t(C)][size_t(R)] = V;
      else
        Variables[size_t(R)][size_t(C)] = V;
    }
  return true;
}

// 1, 2, 3, ... as the one variable, when x is left out.
std::vector<std::vector<double>> Positions(size_t Count) {
  std::vector<double> P(Count);
  for (size_t I = 0; I < Count; ++I) P[I] = double(I + 1);
  return {P};
}

// Reads y (in logarithms for the exponential fits) and x and fits them.
// Mismatched shapes are #REF!, values that are no numbers #VALUE!, and a y
// not above 0 in an exponential fit #NUM!.
TCellErrorCode FitCall(const TFunctionCall& Call, bool Exponential, size_t ConstantIndex, TRegression& Out) {
  TCellErrorCode Error = ceNone;
  if (!AllNumbers(Call[0], Out.Y, Error)) return Error;
  if (Exponential) {
    for (double& Y : Out.Y) {
      if (!(Y > 0)) return ceNum;
      Y = std::log(Y);
    }
  }
  Out.Rows = RowsOf(Call[0]);
  Out.Cols = ColsOf(Call[0]);
  Out.Layout = Out.Cols == 1 ? lyColumns : Out.Rows == 1 ? lyRows : lyBlock;
  if (ArgOmitted(Call, 1)) {
    Out.Variables = Positions(Out.Y.size());
  } else {
    std::vector<double> X;
    if (!AllNumbers(Call[1], X, Error)) return Error;
    if (!SplitVariables(X, RowsOf(Call[1]), ColsOf(Call[1]), Out.Layout, Out.Y.size(), Out.Variables)) return ceRef;
  }
  if (Out.Y.empty() || Out.Variables.empty()) return ceRef;
  Out.WithConstant = OptTruthy(Call, ConstantIndex, true);
  Out.Fit = FitLeastSquares(Out.Y, Out.Variables, Out.WithConstant);
  return ceNone;
}

// LINEST and LOGEST: the coefficients in reverse order of the variables, then
// the constant; with statistics four more rows: standard errors, r squared
// and the standard error of y, F and the degrees of freedom, the regression
// and residual sums of squares. Cells with nothing to show are #N/A.
template <bool Exponential>
TFormulaArg Estimate(const TFunctionCall& Call) {
  TRegression R;
  if (TCellErrorCode Error = FitCall(Call, Exponential, 2, R); Error != ceNone) return TFormulaArg::FromError(Error);
  const bool WithStatistics = Call.Count() > 3 && ArgTruthy(Call[3]);
  const TLeastSquaresFit& F = R.Fit;
  const size_t K = F.Coefficients.size();
  const int32_t Cols = int32_t(K + 1);
  const int32_t Rows = WithStatistics ? 5 : 1;
  std::vector<TCellValue> Cells(size_t(Rows) * size_t(Cols), Err(ceNA));
  auto Put = [&](int32_t Row, int32_t Col, double V) {
    Cells[size_t(Row) * size_t(Cols) + size_t(Col)] = FiniteNum(V);
  };

  auto Coefficient = [](double C) { return Exponential ? std::exp(C) : C; };
  for (size_t J = 0; J < K; ++J) Put(0, int32_t(K - 1 - J), Coefficient(F.Coefficients[J]));
  Put(0, Cols - 1, Coefficient(F.Intercept));
  if (WithStatistics) {
    for (size_t J = 0; J < K; ++J) Put(1, int32_t(K - 1 - J), F.StandardErrors[J]);
    if (R.WithConstant) Put(1, Cols - 1, F.InterceptError);
    const double SsTotal = F.SsRegression + F.SsResidual;
    Put(2, 0, F.SsRegression / SsTotal);
    Put(2, 1, std::sqrt(F.SsResidual / F.DegreesOfFreedom));
    Put(3, 0, (F.SsRegression / double(F.Rank)) / (F.SsResidual / F.DegreesOfFreedom));
    Put(3, 1, F.DegreesOfFreedom);
    Put(4, 0, F.SsRegression);
    Put(4, 1, F.SsResidual);
  }
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

// TREND and GROWTH: fitted values at new points. Without new points, at the
// known x (or at 1, 2, 3, ... in the shape of y). With one variable every
// cell of the new x is a point and the result has its shape; with several,
// the new x lists points the way the known x does.
template <bool Exponential>
TFormulaArg Project(const TFunctionCall& Call) {
  TRegression R;
  if (TCellErrorCode Error = FitCall(Call, Exponential, 3, R); Error != ceNone) return TFormulaArg::FromError(Error);
  const size_t K = R.Variables.size();

  std::vector<std::vector<double>> Points;  // per variable, per point
  int32_t Rows = R.Rows, Cols = R.Cols;
  const TFormulaArg* Source = !ArgOmitted(Call, 2) ? &Call[2] : !ArgOmitted(Call, 1) ? &Call[1] : nullptr;
  if (!Source) {
    Points = R.Variables;
  } else {
    std::vector<double> X;
    TCellErrorCode Error = ceNone;
    if (!AllNumbers(*Source, X, Error)) return TFormulaArg::FromError(Error);
    Rows = RowsOf(*Source);
    Cols = ColsOf(*Source);
    if (K == 1) {
      Points = {X};
    } else {
      const TLayout Layout = R.Layout;
      const size_t Count = size_t(Layout == lyColumns ? Rows : Cols);
      if (!SplitVariables(X, Rows, Cols, Layout, Count, Points) || Points.size() != K)
        return TFormulaArg::FromError(ceRef);
      Rows = Layout == lyColumns ? int32_t(Count) : 1;
      Cols = Layout == lyColumns ? 1 : int32_t(Count);
    }
  }
  std::vector<TCellValue> Cells;
  const size_t Count = Points.front().size();
  Cells.reserve(Count);
  std::vector<double> Point(K);
  for (size_t I = 0; I < Count; ++I) {
    for (size_t J = 0; J < K; ++J) Point[J] = Points[J][I];
    const double Y = R.Fit.Predict(Point);
    Cells.push_back(FiniteNum(Exponential ? std::exp(Y) : Y));
  }
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

}  // namespace

std::span<const TFunctionDef> RegressionFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CORREL", 2, 2, fnNone, OverPairs<Correlation>},
      {"PEARSON", 2, 2, fnNone, OverPairs<Correlation>},
      {"RSQ", 2, 2, fnNone, OverPairs<RSquared>},
      {"SLOPE", 2, 2, fnNone, OverPairs<Slope>},
      {"INTERCEPT", 2, 2, fnNone, OverPairs<Intercept>},
      {"STEYX", 2, 2, fnNone, OverPairs<Steyx>},
      {"COVARIANCE.P", 2, 2, fnNone, OverPairs<CovariancePopulation>},
      {"COVARIANCE.S", 2, 2, fnNone, OverPairs<CovarianceSample>},
      {"FORECAST.LINEAR", 3, 3, fnNone, ForecastLinear},
      {"LINEST", 1, 4, fnReturnsArray, nullptr, Estimate<false>},
      {"LOGEST", 1, 4, fnReturnsArray, nullptr, Estimate<true>},
      {"TREND", 1, 4, fnReturnsArray, nullptr, Project<false>},
      {"GROWTH", 1, 4, fnReturnsArray, nullptr, Project<true>},
  };
  return Table;
}

}  // namespace Tabrino
