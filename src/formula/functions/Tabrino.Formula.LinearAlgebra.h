// Dense matrix arithmetic for the matrix built-ins. Matrices of whole numbers
// whose minors fit in 64 bits are solved exactly (fraction-free elimination
// in 128-bit integers), so MDETERM of a whole-number matrix is a whole number
// and MINVERSE's entries are the correctly rounded fractions; all others go
// through elimination with partial pivoting in extended precision.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tabrino {

struct TMatrix {
  int32_t Rows = 0;
  int32_t Cols = 0;
  std::vector<double> Values;  // row by row

  TMatrix() = default;
  TMatrix(int32_t ARows, int32_t ACols) : Rows(ARows), Cols(ACols), Values(size_t(ARows) * size_t(ACols)) {}
  double& At(int32_t Row, int32_t Col) { return Values[size_t(Row) * Cols + Col]; }
  double At(int32_t Row, int32_t Col) const { return Values[size_t(Row) * Cols + Col]; }
};

// The determinant of a square matrix.
double Determinant(const TMatrix& Square);
// The inverse of a square matrix; false when it is singular.
bool Invert(const TMatrix& Square, TMatrix& Inverse);
// The product; A.Cols must equal B.Rows.
TMatrix Multiply(const TMatrix& A, const TMatrix& B);

}  // namespace Tabrino
