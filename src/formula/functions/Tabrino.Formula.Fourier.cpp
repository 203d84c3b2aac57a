#include "Tabrino.Formula.Fourier.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

namespace Tabrino {

namespace {

using TComplex = std::complex<double>;

bool IsPowerOfTwo(size_t N) {
  return N != 0 && (N & (N - 1)) == 0;
}

// e^(-2 pi i K/N). Each root is computed on its own rather than by repeated
// multiplication, which would let the rounding errors pile up.
TComplex UnitRoot(size_t K, size_t N) {
  double Angle = -2 * std::numbers::pi * double(K) / double(N);
  return {std::cos(Angle), std::sin(Angle)};
}

// In-place forward transform of a power-of-two length: bit-reversal, then
// butterflies of doubling span.
void Radix2(TComplexSequence& A) {
  size_t N = A.size();
  for (size_t I = 1, J = 0; I < N; ++I) {
    size_t Bit = N >> 1;
    for (; J & Bit; Bit >>= 1) J ^= Bit;
    J ^= Bit;
    if (I < J) std::swap(A[I], A[J]);
  }
  TComplexSequence Roots(N / 2);
  for (size_t K = 0; K < N / 2; ++K) Roots[K] = UnitRoot(K, N);
  for (size_t Span = 2; Span <= N; Span <<= 1) {
    size_t Stride = N / Span;
    for (size_t Start = 0; Start < N; Start += Span) {
      for (size_t K = 0; K < Span / 2; ++K) {
        TComplex Even = A[Start + K];
        TComplex Odd = A[Start + K + Span / 2] * Roots[K * Stride];
        A[Start + K] = Even + Odd;
        A[Start + K + Span / 2] = Even - Odd;
      }
    }
  }
}

// Bluestein: jk = (j^2 + k^2 - (k-j)^2) / 2 turns the transform into a
// convolution with the chirp e^(-pi i k^2/N), done by power-of-two
// transforms. k^2 is reduced modulo 2N in integers first, so the chirp's
// angle stays small and exact.
TComplexSequence Bluestein(const TComplexSequence& X) {
  size_t N = X.size();
  size_t M = 1;
  while (M < 2 * N - 1) M <<= 1;
  TComplexSequence Chirp(N);
  for (size_t K = 0; K < N; ++K) {
    uint64_t Square = uint64_t(K) * K % (2 * uint64_t(N));
    double Angle = -std::numbers::pi * double(Square) / double(N);
    Chirp[K] = {std::cos(Angle), std::sin(Angle)};
  }
  TComplexSequence A(M), B(M);
  for (size_t K = 0; K < N; ++K) A[K] = X[K] * Chirp[K];
  B[0] = std::conj(Chirp[0]);
  for (size_t K = 1; K < N; ++K) B[K] = B[M - K] = std::conj(Chirp[K]);
  Radix2(A);
  Radix2(B);
  for (size_t K = 0; K < M; ++K) A[K] = std::conj(A[K] * B[K]);
  Radix2(A);  // the inverse, through conjugation: conj(F(conj(.))) / M
  TComplexSequence Result(N);
  for (size_t K = 0; K < N; ++K) Result[K] = std::conj(A[K]) / double(M) * Chirp[K];
  return Result;
}

TComplexSequence Forward(const TComplexSequence& Data) {
  if (Data.size() <= 1) return Data;
  if (!IsPowerOfTwo(Data.size())) return Bluestein(Data);
  TComplexSequence Result = Data;
  Radix2(Result);
  return Result;
}

}  // namespace

TComplexSequence DiscreteFourierTransform(const TComplexSequence& Data, bool Inverse) {
  if (!Inverse) return Forward(Data);
  // The inverse through the forward transform: conj(F(conj(x))) / N.
  TComplexSequence Conjugated(Data.size());
  for (size_t K = 0; K < Data.size(); ++K) Conjugated[K] = std::conj(Data[K]);
  TComplexSequence Result = Forward(Conjugated);
  for (TComplex& Z : Result) Z = std::conj(Z) / double(Data.size());
  return Result;
}

}  // namespace Tabrino
