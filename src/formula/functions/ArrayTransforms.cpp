// Array-returning transforms of numeric data: the discrete Fourier transform
// (FOURIER) and pooling over square windows (MAXPOOL, MEDIANPOOL).
#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "Tabrino.Formula.Fourier.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

TFormulaArg ArrayError(TCellErrorCode Code) {
  return TFormulaArg::FromError(Code);
}

// A flag argument (TRUE or FALSE, 1 or 0), absent meaning false.
bool FlagArg(const TFunctionCall& C, size_t Index, bool& Flag) {
  double Number;
  if (!OptArgNumber(C, Index, 0, Number)) return false;
  Flag = Number != 0;
  return true;
}

// The complex sequence of FOURIER's array. Grouped by columns, each row is
// one number: a real part, and an imaginary part beside it if there is a
// second column. Grouped by rows, the same with rows and columns swapped.
// Cells are numbers, an empty one being 0; false for anything else or for a
// third column (row).
bool ReadComplexSequence(const TFormulaArg& Arg, bool ByColumns, TComplexSequence& Sequence) {
  TFormulaArg Range = AsRangeArg(Arg);
  int32_t Length = ByColumns ? Range.RowCount : Range.ColCount;
  int32_t Parts = ByColumns ? Range.ColCount : Range.RowCount;
  if (Length < 1 || Parts < 1 || Parts > 2 || Range.Cells.size() != size_t(Length) * size_t(Parts)) return false;
  Sequence.assign(Length, 0);
  for (int32_t K = 0; K < Length; ++K) {
    double Part[2] = {0, 0};
    for (int32_t P = 0; P < Parts; ++P) {
      const TCellValue& V = ByColumns ? Range.Cells[size_t(K) * Parts + P] : Range.Cells[size_t(P) * Length + K];
      if (V.Kind != cvkNumber && V.Kind != cvkEmpty) return false;
      Part[P] = V.Kind == cvkNumber ? V.Number : 0;
    }
    Sequence[K] = {Part[0], Part[1]};
  }
  return true;
}

// FOURIER(array, groupedByColumns, [inverse], [polar], [minimumMagnitude]):
// one row per frequency, real and imaginary parts in two columns, or with
// polar the magnitude and the phase (-pi to pi). In polar form a magnitude
// below minimumMagnitude is written as 0 with phase 0, which hides the
// rounding noise of frequencies that are not there.
TFormulaArg Fourier(const TFunctionCall& C) {
  bool ByColumns, Inverse, Polar;
  double MinimumMagnitude;
  if (!FlagArg(C, 1, ByColumns) || !FlagArg(C, 2, Inverse) || !FlagArg(C, 3, Polar) ||
      !OptArgNumber(C, 4, 0, MinimumMagnitude))
    return ArrayError(ceValue);
  TComplexSequence Sequence;
  if (!ReadComplexSequence(C[0], ByColumns, Sequence) || 2 * Sequence.size() > MaxArrayCells)
    return ArrayError(ceValue);
  TComplexSequence Spectrum = DiscreteFourierTransform(Sequence, Inverse);
  std::vector<TCellValue> Cells;
  Cells.reserve(2 * Spectrum.size());
  for (const std::complex<double>& Z : Spectrum) {
    double First = Z.real(), Second = Z.imag();
    if (Polar) {
      First = std::abs(Z);
      Second = First < MinimumMagnitude ? 0 : std::arg(Z);
      if (First < MinimumMagnitude) First = 0;
    }
    if (!std::isfinite(First) || !std::isfinite(Second)) return ArrayError(ceNum);
    Cells.push_back(Num(First + 0.0));
    Cells.push_back(Num(Second + 0.0));
  }
  return TFormulaArg::FromRange(std::move(Cells), static_cast<int32_t>(Spectrum.size()), 2);
}

// Cells one pooling may read in all, windows overlapping or not.
constexpr double MaxPoolingWork = 1 << 28;

// A pooling rule over the numbers of one window (text, booleans, empty cells
// and errors in it are passed over, as MAX does).
using TPoolRule = TCellValue (*)(std::vector<double>& Numbers);

TCellValue MaxOfWindow(std::vector<double>& Numbers) {
  return Num(Numbers.empty() ? 0 : *std::max_element(Numbers.begin(), Numbers.end()));
}

// The middle number, or the mean of the two middle ones; no numbers is #NUM!.
TCellValue MedianOfWindow(std::vector<double>& Numbers) {
  if (Numbers.empty()) return Err(ceNum);
  size_t Middle = Numbers.size() / 2;
  std::nth_element(Numbers.begin(), Numbers.begin() + Middle, Numbers.end());
  double Upper = Numbers[Middle];
  if (Numbers.size() % 2) return Num(Upper);
  double Lower = *std::max_element(Numbers.begin(), Numbers.begin() + Middle);
  return FiniteNum(Lower / 2 + Upper / 2);
}

// POOL(range, windowSize, [stride = windowSize]): the rule over square
// windows of windowSize cells a side, moved by stride along rows and columns;
// windows that would reach past the range are left out. Sizes are truncated;
// below 1 is #NUM!, a window larger than the range #VALUE!. A window that
// holds an infinity or a NaN gives #NUM! in its place.
template <TPoolRule Rule>
TFormulaArg Pool(const TFunctionCall& C) {
  double Window, Stride;
  if (!ArgInteger(C[1], Window)) return ArrayError(ceValue);
  if (!OptArgInteger(C, 2, Window, Stride)) return ArrayError(ceValue);
  if (!(Window >= 1) || !(Stride >= 1)) return ArrayError(ceNum);
  TFormulaArg Range = AsRangeArg(C[0]);
  if (Window > Range.RowCount || Window > Range.ColCount ||
      Range.Cells.size() != size_t(Range.RowCount) * size_t(Range.ColCount))
    return ArrayError(ceValue);
  auto Size = static_cast<int32_t>(Window);
  int32_t Step = static_cast<int32_t>(std::min<double>(Stride, Range.RowCount + Range.ColCount));
  int32_t OutRows = (Range.RowCount - Size) / Step + 1;
  int32_t OutCols = (Range.ColCount - Size) / Step + 1;
  if (double(OutRows) * OutCols * Window * Window > MaxPoolingWork) return ArrayError(ceValue);
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(OutRows) * OutCols);
  std::vector<double> Numbers;
  for (int32_t R = 0; R < OutRows; ++R) {
    for (int32_t Col = 0; Col < OutCols; ++Col) {
      Numbers.clear();
      bool AllFinite = true;
      for (int32_t I = 0; I < Size; ++I) {
        for (int32_t J = 0; J < Size; ++J) {
          const TCellValue& V = Range.Cells[size_t(R * Step + I) * Range.ColCount + (Col * Step + J)];
          if (V.Kind != cvkNumber) continue;
          Numbers.push_back(V.Number);
          AllFinite = AllFinite && std::isfinite(V.Number);
        }
      }
      Cells.push_back(AllFinite ? Rule(Numbers) : Err(ceNum));
    }
  }
  return TFormulaArg::FromRange(std::move(Cells), OutRows, OutCols);
}

}  // namespace

std::span<const TFunctionDef> ArrayTransformFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"FOURIER", 2, 5, fnReturnsArray, nullptr, Fourier},
      {"MAXPOOL", 2, 3, fnReturnsArray, nullptr, Pool<MaxOfWindow>},
      {"MEDIANPOOL", 2, 3, fnReturnsArray, nullptr, Pool<MedianOfWindow>},
  };
  return Table;
}

}  // namespace Tabrino
