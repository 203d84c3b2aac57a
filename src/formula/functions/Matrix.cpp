// Matrices (MDETERM, MINVERSE, MMULT, MUNIT) and the sums of squares and of
// power series. A matrix argument holds numbers only: an empty, text,
// boolean or error cell in it is #VALUE!, and so is a shape that does not
// fit. MINVERSE of a singular matrix is #NUM!.
#include <cmath>
#include <optional>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.LinearAlgebra.h"

namespace Tabrino {

namespace {

// Elimination costs the cube of the order: this keeps MDETERM and MINVERSE
// well under a second.
constexpr int32_t MaxSquareOrder = 512;
// Multiply-adds one MMULT may spend.
constexpr double MaxProductWork = 1 << 30;

// The matrix of an argument: a range's cells, which must all be numbers, or
// a single value that converts through AsNumber.
bool ReadMatrix(const TFormulaArg& Arg, TMatrix& Matrix) {
  if (!Arg.IsRange) {
    Matrix = TMatrix(1, 1);
    return ArgNumber(Arg, Matrix.Values[0]);
  }
  if (Arg.Cells.empty() || Arg.Cells.size() != size_t(Arg.RowCount) * size_t(Arg.ColCount)) return false;
  Matrix = TMatrix(Arg.RowCount, Arg.ColCount);
  for (size_t I = 0; I < Arg.Cells.size(); ++I) {
    if (Arg.Cells[I].Kind != cvkNumber) return false;
    Matrix.Values[I] = Arg.Cells[I].Number;
  }
  return true;
}

bool ReadSquare(const TFormulaArg& Arg, TMatrix& Matrix) {
  return ReadMatrix(Arg, Matrix) && Matrix.Rows == Matrix.Cols && Matrix.Rows <= MaxSquareOrder;
}

// A matrix as an array result; an entry that overflowed makes it #NUM!.
TFormulaArg MatrixResult(const TMatrix& Matrix) {
  std::vector<TCellValue> Cells;
  Cells.reserve(Matrix.Values.size());
  for (double X : Matrix.Values) {
    if (!std::isfinite(X)) return TFormulaArg::FromError(ceNum);
    Cells.push_back(Num(X + 0.0));
  }
  return TFormulaArg::FromRange(std::move(Cells), Matrix.Rows, Matrix.Cols);
}

TCellValue MDeterm(const TFunctionCall& C) {
  TMatrix Square;
  if (!ReadSquare(C[0], Square)) return Err(ceValue);
  return FiniteNum(Determinant(Square));
}

TFormulaArg MInverse(const TFunctionCall& C) {
  TMatrix Square, Inverse;
  if (!ReadSquare(C[0], Square)) return TFormulaArg::FromError(ceValue);
  if (!Invert(Square, Inverse)) return TFormulaArg::FromError(ceNum);
  return MatrixResult(Inverse);
}

// MMULT(a, b): a's column count must equal b's row count.
TFormulaArg MMult(const TFunctionCall& C) {
  TMatrix A, B;
  if (!ReadMatrix(C[0], A) || !ReadMatrix(C[1], B) || A.Cols != B.Rows) return TFormulaArg::FromError(ceValue);
  double Cells = double(A.Rows) * B.Cols;
  if (Cells > MaxArrayCells || Cells * A.Cols > MaxProductWork) return TFormulaArg::FromError(ceValue);
  return MatrixResult(Multiply(A, B));
}

// MUNIT(n): the identity of order n, truncated; below 1 or too large to hold
// is #VALUE!.
TFormulaArg MUnit(const TFunctionCall& C) {
  double Order;
  if (!ArgInteger(C[0], Order) || !(Order >= 1 && Order * Order <= MaxArrayCells))
    return TFormulaArg::FromError(ceValue);
  auto N = static_cast<int32_t>(Order);
  std::vector<TCellValue> Cells(size_t(N) * N, Num(0));
  for (int32_t I = 0; I < N; ++I) Cells[size_t(I) * N + I] = Num(1);
  return TFormulaArg::FromRange(std::move(Cells), N, N);
}

TCellValue SumSq(const TFunctionCall& C) {
  std::vector<double> Numbers;
  if (!CollectNumbers(C.Args, Numbers)) return Err(ceValue);
  double Sum = 0;
  for (double X : Numbers) Sum += X * X;
  return FiniteNum(Sum);
}

// The values of one side of a paired sum, nullopt where a cell takes no part
// (text, boolean, empty or error). A value given directly converts through
// AsNumber; false when it does not.
bool PairSide(const TFormulaArg& Arg, std::vector<std::optional<double>>& Side) {
  if (!Arg.IsRange) {
    double X;
    if (!ArgNumber(Arg, X)) return false;
    Side.push_back(X);
    return true;
  }
  for (const TCellValue& V : Arg.Cells) Side.push_back(V.Kind == cvkNumber ? std::optional(V.Number) : std::nullopt);
  return true;
}

// Sum of Term(x, y) over the pairs of two arrays of equal count (else #N/A);
// a pair with a value that is no number is passed over.
template <double (*Term)(double, double)>
TCellValue SumOfPairs(const TFunctionCall& C) {
  std::vector<std::optional<double>> Xs, Ys;
  if (!PairSide(C[0], Xs) || !PairSide(C[1], Ys)) return Err(ceValue);
  if (Xs.size() != Ys.size()) return Err(ceNA);
  double Sum = 0;
  for (size_t I = 0; I < Xs.size(); ++I)
    if (Xs[I] && Ys[I]) Sum += Term(*Xs[I], *Ys[I]);
  return FiniteNum(Sum);
}

double SquaresDifference(double X, double Y) {
  return X * X - Y * Y;
}
double SquaresSum(double X, double Y) {
  return X * X + Y * Y;
}
double DifferenceSquared(double X, double Y) {
  return (X - Y) * (X - Y);
}

// A coefficient of SERIESSUM: a number cell, or 0 for an empty one; a value
// given directly converts through AsNumber. False for anything else.
bool Coefficient(const TFormulaArg& Arg, const TCellValue& V, double& A) {
  if (!Arg.IsRange) return AsNumber(V, A);
  A = V.Kind == cvkNumber ? V.Number : 0;
  return V.Kind == cvkNumber || V.Kind == cvkEmpty;
}

// SERIESSUM(x, n, m, coefficients): the sum of a_i * x^(n + i*m); a zero
// coefficient adds no term at all.
TCellValue SeriesSum(const TFunctionCall& C) {
  double X, N, M;
  if (!ArgNumber(C[0], X) || !ArgNumber(C[1], N) || !ArgNumber(C[2], M)) return Err(ceValue);
  double Sum = 0, Index = 0;
  for (const TCellValue& V : ArgValues(C[3])) {
    double A;
    if (!Coefficient(C[3], V, A)) return Err(ceValue);
    if (A != 0) Sum += A * std::pow(X, N + Index * M);
    ++Index;
  }
  return FiniteNum(Sum);
}

}  // namespace

std::span<const TFunctionDef> MatrixFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"MDETERM", 1, 1, fnNone, MDeterm},
      {"MINVERSE", 1, 1, fnReturnsArray, nullptr, MInverse},
      {"MMULT", 2, 2, fnReturnsArray, nullptr, MMult},
      {"MUNIT", 1, 1, fnReturnsArray, nullptr, MUnit},
      {"SUMSQ", 1, -1, fnNone, SumSq},
      {"SUMX2MY2", 2, 2, fnNone, SumOfPairs<SquaresDifference>},
      {"SUMX2PY2", 2, 2, fnNone, SumOfPairs<SquaresSum>},
      {"SUMXMY2", 2, 2, fnNone, SumOfPairs<DifferenceSquared>},
      {"SERIESSUM", 4, 4, fnNone, SeriesSum},
  };
  return Table;
}

}  // namespace Tabrino
