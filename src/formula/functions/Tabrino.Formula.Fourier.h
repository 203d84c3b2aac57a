// The discrete Fourier transform behind FOURIER, for sequences of any length.
#pragma once

#include <complex>
#include <vector>

namespace Tabrino {

using TComplexSequence = std::vector<std::complex<double>>;

// X_k = sum_j x_j e^(-2 pi i jk/N); the inverse uses e^(+2 pi i jk/N) and
// divides by N. Lengths that are powers of two take the radix-2 fast
// transform, all others Bluestein's chirp through a power of two, so every
// length costs N log N.
TComplexSequence DiscreteFourierTransform(const TComplexSequence& Data, bool Inverse);

}  // namespace Tabrino
