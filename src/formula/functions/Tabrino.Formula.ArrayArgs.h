// Arguments and results of the dynamic-array functions: an argument read as a
// grid of cells, and the size rule every result obeys.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

// An array argument's cells, row by row, without a copy. Valid while the
// argument it was read from lives.
struct TGrid {
  const TCellValue* Cells = nullptr;
  int32_t Rows = 0;
  int32_t Cols = 0;

  const TCellValue& At(int32_t Row, int32_t Col) const { return Cells[size_t(Row) * size_t(Cols) + size_t(Col)]; }
  size_t Size() const { return size_t(Rows) * size_t(Cols); }
};

// A scalar reads as a 1 by 1 grid. False for a lambda, and for a range that
// is empty or whose cells do not fill its shape.
inline bool ReadGrid(const TFormulaArg& Arg, TGrid& Grid) {
  if (Arg.IsLambda) return false;
  if (!Arg.IsRange) {
    Grid = TGrid{&Arg.Scalar, 1, 1};
    return true;
  }
  if (Arg.RowCount < 1 || Arg.ColCount < 1 || Arg.Cells.size() != size_t(Arg.RowCount) * size_t(Arg.ColCount))
    return false;
  Grid = TGrid{Arg.Cells.begin(), Arg.RowCount, Arg.ColCount};
  return true;
}

// Whether an array of this size may be built: at least one cell, at most
// MaxArrayCells. Tested before allocating, so that no formula can ask for
// gigabytes; sizes come as doubles because they may come straight from
// arguments.
inline bool FitsArray(double Rows, double Cols) {
  return Rows >= 1 && Cols >= 1 && Rows * Cols <= double(MaxArrayCells);
}

// A count or index: AsNumber of the argument's First, truncated; Default when
// the argument is absent. False when it does not convert or is NaN.
inline bool CountArg(const TFunctionCall& C, size_t Index, double Default, double& Count) {
  return OptArgInteger(C, Index, Default, Count) && !std::isnan(Count);
}

inline TFormulaArg ArrayError(TCellErrorCode Code) {
  return TFormulaArg::FromError(Code);
}

// The listed rows of a grid (columns when ByCol), in the order listed, which
// must name at least one: what every function that picks or reorders lines
// builds its result with.
inline TFormulaArg PickLines(const TGrid& Grid, const std::vector<int32_t>& Lines, bool ByCol) {
  std::vector<TCellValue> Cells;
  const int32_t Rows = ByCol ? Grid.Rows : int32_t(Lines.size());
  const int32_t Cols = ByCol ? int32_t(Lines.size()) : Grid.Cols;
  Cells.reserve(size_t(Rows) * size_t(Cols));
  for (int32_t R = 0; R < Rows; ++R)
    for (int32_t C = 0; C < Cols; ++C) Cells.push_back(ByCol ? Grid.At(R, Lines[C]) : Grid.At(Lines[R], C));
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

}  // namespace Tabrino
