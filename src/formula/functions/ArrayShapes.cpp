// Dynamic arrays that reshape: TRANSPOSE, HSTACK, VSTACK, TOROW, TOCOL, TAKE,
// DROP, EXPAND, CHOOSEROWS, CHOOSECOLS, WRAPROWS, WRAPCOLS, and ARRAYFORMULA,
// which in this engine hands its argument on unchanged.
#include <algorithm>
#include <cmath>
#include <vector>

#include "Tabrino.Formula.ArrayArgs.h"

namespace Tabrino {

namespace {

// The block of Rows by Cols cells of a grid from (Top, Left), 0-based.
TFormulaArg SubGrid(const TGrid& Grid, int32_t Top, int32_t Left, int32_t Rows, int32_t Cols) {
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Rows) * size_t(Cols));
  for (int32_t R = Top; R < Top + Rows; ++R)
    for (int32_t C = Left; C < Left + Cols; ++C) Cells.push_back(Grid.At(R, C));
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

TFormulaArg Transpose(const TFunctionCall& C) {
  TGrid Array;
  if (!ReadGrid(C[0], Array)) return ArrayError(ceValue);
  std::vector<TCellValue> Cells;
  Cells.reserve(Array.Size());
  for (int32_t Col = 0; Col < Array.Cols; ++Col)
    for (int32_t Row = 0; Row < Array.Rows; ++Row) Cells.push_back(Array.At(Row, Col));
  return TFormulaArg::FromRange(std::move(Cells), Array.Cols, Array.Rows);
}

// Every argument side by side (or one below the other); cells no part
// reaches hold #N/A.
TFormulaArg Stack(const TFunctionCall& C, bool SideBySide) {
  std::vector<TGrid> Parts(C.Count());
  double Along = 0, Across = 0;
  for (size_t I = 0; I < C.Count(); ++I) {
    if (!ReadGrid(C[I], Parts[I])) return ArrayError(ceValue);
    Along += SideBySide ? Parts[I].Cols : Parts[I].Rows;
    Across = std::max<double>(Across, SideBySide ? Parts[I].Rows : Parts[I].Cols);
  }
  const double Rows = SideBySide ? Across : Along, Cols = SideBySide ? Along : Across;
  if (!FitsArray(Rows, Cols)) return ArrayError(ceValue);
  const int32_t Width = int32_t(Cols);
  std::vector<TCellValue> Cells(size_t(Rows * Cols), TCellValue::FromError(ceNA));
  int32_t Offset = 0;
  for (const TGrid& Part : Parts) {
    for (int32_t R = 0; R < Part.Rows; ++R)
      for (int32_t K = 0; K < Part.Cols; ++K) {
        const int32_t Row = SideBySide ? R : Offset + R, Col = SideBySide ? Offset + K : K;
        Cells[size_t(Row) * Width + Col] = Part.At(R, K);
      }
    Offset += SideBySide ? Part.Cols : Part.Rows;
  }
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), Width);
}

TFormulaArg HStack(const TFunctionCall& C) {
  return Stack(C, true);
}
TFormulaArg VStack(const TFunctionCall& C) {
  return Stack(C, false);
}

// All cells in row order as one row or one column.
TFormulaArg Flatten(const TFunctionCall& C, bool AsRow) {
  TGrid Array;
  if (!ReadGrid(C[0], Array)) return ArrayError(ceValue);
  const int32_t Count = int32_t(Array.Size());
  return TFormulaArg::FromRange(std::vector<TCellValue>(Array.Cells, Array.Cells + Count), AsRow ? 1 : Count,
                                AsRow ? Count : 1);
}

TFormulaArg ToRow(const TFunctionCall& C) {
  return Flatten(C, true);
}
TFormulaArg ToCol(const TFunctionCall& C) {
  return Flatten(C, false);
}

// The lines TAKE keeps of Size: Count from the start, or -Count from the end,
// clipped to what there is. Count is not 0.
void TakenSpan(int32_t Size, double Count, int32_t& First, int32_t& Length) {
  Length = int32_t(std::min<double>(std::fabs(Count), Size));
  First = Count > 0 ? 0 : Size - Length;
}

TFormulaArg Take(const TFunctionCall& C) {
  TGrid Array;
  double Rows, Cols;
  if (!ReadGrid(C[0], Array) || !CountArg(C, 1, 0, Rows) || !CountArg(C, 2, 0, Cols) || Rows == 0)
    return ArrayError(ceValue);
  int32_t Top, Height, Left = 0, Width = Array.Cols;
  TakenSpan(Array.Rows, Rows, Top, Height);
  if (Cols != 0) TakenSpan(Array.Cols, Cols, Left, Width);
  return SubGrid(Array, Top, Left, Height, Width);
}

// The lines DROP leaves of Size: Count dropped from the start, or -Count
// from the end.
void KeptSpan(int32_t Size, double Count, int32_t& First, int32_t& Length) {
  const int32_t Dropped = int32_t(std::min<double>(std::fabs(Count), Size));
  Length = Size - Dropped;
  First = Count > 0 ? Dropped : 0;
}

TFormulaArg Drop(const TFunctionCall& C) {
  TGrid Array;
  double Rows, Cols;
  if (!ReadGrid(C[0], Array) || !CountArg(C, 1, 0, Rows) || !CountArg(C, 2, 0, Cols)) return ArrayError(ceValue);
  int32_t Top, Height, Left, Width;
  KeptSpan(Array.Rows, Rows, Top, Height);
  KeptSpan(Array.Cols, Cols, Left, Width);
  if (Height < 1 || Width < 1) return ArrayError(ceValue);
  return SubGrid(Array, Top, Left, Height, Width);
}

// Pads the array to Rows by Cols. The dispatcher lets two arguments through,
// but the size needs both.
TFormulaArg Expand(const TFunctionCall& C) {
  TGrid Array;
  double Rows, Cols;
  if (C.Count() < 3 || !ReadGrid(C[0], Array) || !CountArg(C, 1, 0, Rows) || !CountArg(C, 2, 0, Cols))
    return ArrayError(ceValue);
  if (!(Rows >= Array.Rows && Cols >= Array.Cols) || !FitsArray(Rows, Cols)) return ArrayError(ceValue);
  const TCellValue Pad = C.Count() > 3 ? C[3].First() : TCellValue();
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Rows * Cols));
  for (int32_t R = 0; R < int32_t(Rows); ++R)
    for (int32_t K = 0; K < int32_t(Cols); ++K) Cells.push_back(R < Array.Rows && K < Array.Cols ? Array.At(R, K) : Pad);
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), int32_t(Cols));
}

// The rows (columns) named by every further argument's values, 1-based,
// negative counting from the end.
TFormulaArg ChooseLines(const TFunctionCall& C, bool Columns) {
  TGrid Array;
  if (!ReadGrid(C[0], Array)) return ArrayError(ceValue);
  const int32_t Size = Columns ? Array.Cols : Array.Rows;
  std::vector<int32_t> Lines;
  bool Valid = true;
  ForEachFlat(C.Args.subspan(1), [&](const TCellValue& Value) {
    double Index;
    if (!Valid || !AsNumber(Value, Index)) {
      Valid = false;
      return;
    }
    Index = std::trunc(Index);
    if (Index < 0) Index += Size + 1;
    if (!(Index >= 1 && Index <= Size)) Valid = false;
    else Lines.push_back(int32_t(Index) - 1);
  });
  const double Other = Columns ? Array.Rows : Array.Cols;
  if (!Valid || !FitsArray(double(Lines.size()), Other)) return ArrayError(ceValue);
  return PickLines(Array, Lines, Columns);
}

TFormulaArg ChooseRows(const TFunctionCall& C) {
  return ChooseLines(C, false);
}
TFormulaArg ChooseCols(const TFunctionCall& C) {
  return ChooseLines(C, true);
}

// All cells in row order, wrapped into rows (or columns) of Count cells, the
// last one filled up with the pad value.
TFormulaArg Wrap(const TFunctionCall& C, bool IntoRows) {
  TGrid Array;
  double Count;
  if (!ReadGrid(C[0], Array) || !CountArg(C, 1, 0, Count) || Count < 1) return ArrayError(ceValue);
  const double Total = double(Array.Size()), Lines = std::ceil(Total / Count);
  const double Rows = IntoRows ? Lines : Count, Cols = IntoRows ? Count : Lines;
  if (!FitsArray(Rows, Cols)) return ArrayError(ceValue);
  const TCellValue Pad = C.Count() > 2 ? C[2].First() : TCellValue();
  const size_t Width = size_t(Cols), Height = size_t(Rows), Stride = size_t(Count);
  std::vector<TCellValue> Cells;
  Cells.reserve(Width * Height);
  for (size_t R = 0; R < Height; ++R)
    for (size_t K = 0; K < Width; ++K) {
      const size_t Flat = IntoRows ? R * Stride + K : K * Stride + R;
      Cells.push_back(Flat < Array.Size() ? Array.Cells[Flat] : Pad);
    }
  return TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), int32_t(Cols));
}

TFormulaArg WrapRows(const TFunctionCall& C) {
  return Wrap(C, true);
}
TFormulaArg WrapCols(const TFunctionCall& C) {
  return Wrap(C, false);
}

TFormulaArg ArrayFormula(const TFunctionCall& C) {
  return C[0];
}

}  // namespace

// In array context these run with at least MinArgs arguments and ignore any
// beyond those they use, so no row states a maximum.
std::span<const TFunctionDef> ArrayShapeFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"TRANSPOSE", 1, -1, fnReturnsArray, nullptr, Transpose},
      {"HSTACK", 1, -1, fnReturnsArray, nullptr, HStack},
      {"VSTACK", 1, -1, fnReturnsArray, nullptr, VStack},
      {"TOROW", 1, -1, fnReturnsArray, nullptr, ToRow},
      {"TOCOL", 1, -1, fnReturnsArray, nullptr, ToCol},
      {"TAKE", 2, -1, fnReturnsArray, nullptr, Take},
      {"DROP", 2, -1, fnReturnsArray, nullptr, Drop},
      {"EXPAND", 2, -1, fnReturnsArray, nullptr, Expand},
      {"CHOOSEROWS", 2, -1, fnReturnsArray, nullptr, ChooseRows},
      {"CHOOSECOLS", 2, -1, fnReturnsArray, nullptr, ChooseCols},
      {"WRAPROWS", 2, -1, fnReturnsArray, nullptr, WrapRows},
      {"WRAPCOLS", 2, -1, fnReturnsArray, nullptr, WrapCols},
      {"ARRAYFORMULA", 1, 1, fnReturnsArray, nullptr, ArrayFormula},
  };
  return Table;
}

}  // namespace Tabrino
