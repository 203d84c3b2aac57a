#include "Tabrino.Formula.LinearAlgebra.h"

#include <cfloat>
#include <cmath>
#include <utility>

namespace Tabrino {

namespace {

using TWide = __int128;

// Every minor of Square (with Augment unit columns beside it, for the
// inverse) is below 2^60 in magnitude, so that products of two stay inside
// 128 bits: Hadamard's bound, the product of the row lengths (at least 1
// each), limits every minor. False too for an entry that is not a whole
// number below 2^53.
bool MinorsFitExactly(const TMatrix& Square, bool Augment) {
  constexpr double MaxLog2 = 60;
  double Log2Bound = 0;
  for (int32_t R = 0; R < Square.Rows; ++R) {
    double SumOfSquares = Augment ? 1 : 0;
    for (int32_t C = 0; C < Square.Cols; ++C) {
      double X = Square.At(R, C);
      if (!(std::fabs(X) < 9007199254740992.0) || X != std::trunc(X)) return false;
      SumOfSquares += X * X;
    }
    Log2Bound += std::max(0.0, 0.5 * std::log2(SumOfSquares));
    if (Log2Bound > MaxLog2) return false;
  }
  return true;
}

// Integer quotients of the wide type: exact, and a long double holds up to
// 64 bits of each without rounding.
double WideRatio(TWide Numerator, TWide Denominator) {
  return static_cast<double>(static_cast<long double>(Numerator) / static_cast<long double>(Denominator));
}

using TWideRows = std::vector<std::vector<TWide>>;

TWideRows WideRows(const TMatrix& M, int32_t ExtraCols) {
  TWideRows Rows(M.Rows, std::vector<TWide>(M.Cols + ExtraCols, 0));
  for (int32_t R = 0; R < M.Rows; ++R)
    for (int32_t C = 0; C < M.Cols; ++C) Rows[R][C] = static_cast<TWide>(M.At(R, C));
  return Rows;
}

// Brings a row with a non-zero entry in column K to row K; false when there
// is none. Swap counts the exchanges.
bool PivotRow(TWideRows& A, int32_t K, int& Swaps) {
  if (A[K][K] != 0) return true;
  for (size_t R = K + 1; R < A.size(); ++R) {
    if (A[R][K] != 0) {
      std::swap(A[K], A[R]);
      ++Swaps;
      return true;
    }
  }
  return false;
}

// Bareiss' fraction-free elimination: every division is exact and every
// entry stays a minor of the input.
double ExactDeterminant(const TMatrix& Square) {
  int32_t N = Square.Rows;
  TWideRows A = WideRows(Square, 0);
  TWide Previous = 1;
  int Swaps = 0;
  for (int32_t K = 0; K < N; ++K) {
    if (!PivotRow(A, K, Swaps)) return 0;
    for (int32_t I = K + 1; I < N; ++I)
      for (int32_t J = K + 1; J < N; ++J) A[I][J] = (A[I][J] * A[K][K] - A[I][K] * A[K][J]) / Previous;
    Previous = A[K][K];
  }
  double Result = WideRatio(A[N - 1][N - 1], 1);
  return Swaps % 2 ? -Result : Result;
}

// Fraction-free Gauss-Jordan on [Square | I]: at the end the left block is
// d times the identity and the right block d times the inverse, all exact.
bool ExactInverse(const TMatrix& Square, TMatrix& Inverse) {
  int32_t N = Square.Rows;
  TWideRows A = WideRows(Square, N);
  for (int32_t I = 0; I < N; ++I) A[I][N + I] = 1;
  TWide Previous = 1;
  int Swaps = 0;
  for (int32_t K = 0; K < N; ++K) {
    if (!PivotRow(A, K, Swaps)) return false;
    for (int32_t I = 0; I < N; ++I) {
      if (I == K) continue;
      TWide Factor = A[I][K];
      for (int32_t J = 0; J < 2 * N; ++J) A[I][J] = (A[K][K] * A[I][J] - Factor * A[K][J]) / Previous;
    }
    Previous = A[K][K];
  }
  Inverse = TMatrix(N, N);
  for (int32_t I = 0; I < N; ++I)
    for (int32_t J = 0; J < N; ++J) Inverse.At(I, J) = WideRatio(A[I][N + J], A[I][I]);
  return true;
}

using TRealRows = std::vector<std::vector<long double>>;

TRealRows RealRows(const TMatrix& M, int32_t ExtraCols) {
  TRealRows Rows(M.Rows, std::vector<long double>(M.Cols + ExtraCols, 0));
  for (int32_t R = 0; R < M.Rows; ++R)
    for (int32_t C = 0; C < M.Cols; ++C) Rows[R][C] = M.At(R, C);
  return Rows;
}

// Partial pivoting: the row at or below K with the largest entry in column K
// goes to row K.
void PivotLargest(TRealRows& A, int32_t K, int& Swaps) {
  size_t Best = K;
  for (size_t R = K + 1; R < A.size(); ++R)
    if (std::fabs(A[R][K]) > std::fabs(A[Best][K])) Best = R;
  if (Best != size_t(K)) {
    std::swap(A[K], A[Best]);
    ++Swaps;
  }
}

double RealDeterminant(const TMatrix& Square) {
  int32_t N = Square.Rows;
  TRealRows A = RealRows(Square, 0);
  long double Result = 1;
  int Swaps = 0;
  for (int32_t K = 0; K < N; ++K) {
    PivotLargest(A, K, Swaps);
    if (A[K][K] == 0) return 0;
    Result *= A[K][K];
    for (int32_t I = K + 1; I < N; ++I) {
      long double Factor = A[I][K] / A[K][K];
      for (int32_t J = K + 1; J < N; ++J) A[I][J] -= Factor * A[K][J];
    }
  }
  return static_cast<double>(Swaps % 2 ? -Result : Result);
}

// Gauss-Jordan with partial pivoting. A pivot that is no more than rounding
// noise against its column's own scale means the matrix is singular as far as
// doubles can tell.
bool RealInverse(const TMatrix& Square, TMatrix& Inverse) {
  int32_t N = Square.Rows;
  TRealRows A = RealRows(Square, N);
  for (int32_t I = 0; I < N; ++I) A[I][N + I] = 1;
  int Swaps = 0;
  for (int32_t K = 0; K < N; ++K) {
    double ColumnScale = 0;
    for (int32_t R = 0; R < N; ++R) ColumnScale = std::max(ColumnScale, std::fabs(Square.At(R, K)));
    PivotLargest(A, K, Swaps);
    if (!(std::fabs(A[K][K]) > 4 * N * DBL_EPSILON * ColumnScale)) return false;
    long double Pivot = A[K][K];
    for (long double& X : A[K]) X /= Pivot;
    for (int32_t I = 0; I < N; ++I) {
      if (I == K || A[I][K] == 0) continue;
      long double Factor = A[I][K];
      for (int32_t J = 0; J < 2 * N; ++J) A[I][J] -= Factor * A[K][J];
    }
  }
  Inverse = TMatrix(N, N);
  for (int32_t I = 0; I < N; ++I)
    for (int32_t J = 0; J < N; ++J) Inverse.At(I, J) = static_cast<double>(A[I][N + J]);
  return true;
}

}  // namespace

double Determinant(const TMatrix& Square) {
  return MinorsFitExactly(Square, false) ? ExactDeterminant(Square) : RealDeterminant(Square);
}

bool Invert(const TMatrix& Square, TMatrix& Inverse) {
  return MinorsFitExactly(Square, true) ? ExactInverse(Square, Inverse) : RealInverse(Square, Inverse);
}

TMatrix Multiply(const TMatrix& A, const TMatrix& B) {
  TMatrix Product(A.Rows, B.Cols);
  for (int32_t R = 0; R < A.Rows; ++R) {
    for (int32_t C = 0; C < B.Cols; ++C) {
      long double Sum = 0;
      for (int32_t K = 0; K < A.Cols; ++K) Sum += static_cast<long double>(A.At(R, K)) * B.At(K, C);
      Product.At(R, C) = static_cast<double>(Sum);
    }
  }
  return Product;
}

}  // namespace Tabrino
