// The evaluator's side of dynamic arrays: laying array results out on their
// sheet and waking the formulas that read the cells a spill covers.
#include <algorithm>
#include <optional>
#include <vector>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.SpillOrder.h"

namespace Tabrino {

namespace {

// A value, a formula or rich text: what a spill may not cover. A cell that
// holds only a style does not count.
bool HoldsContent(const TStoredCell& Cell) {
  return Cell.Kind() != cvkEmpty || Cell.HasRichText();
}

// Calls Visit(col, row, cell) for the stored cells inside Block, walking the
// block or the sheet's cells, whichever is fewer; the order is not promised.
template <typename F>
void ForEachStoredCellIn(const TWorksheet& Sheet, const TCellRange& Block, F&& Visit) {
  const int64_t Area = int64_t(Block.EndCol - Block.StartCol + 1) * int64_t(Block.EndRow - Block.StartRow + 1);
  if (Area <= int64_t(Sheet.CellCount())) {
    for (int32_t Row = Block.StartRow; Row <= Block.EndRow; ++Row)
      for (int32_t Col = Block.StartCol; Col <= Block.EndCol; ++Col)
        if (const TStoredCell* Cell = Sheet.FindCell(Col, Row)) Visit(Col, Row, *Cell);
    return;
  }
  for (const auto& [Key, Cell] : Sheet.FCells)
    if (Block.Contains(Key.Col, Key.Row)) Visit(Key.Col, Key.Row, Cell);
}

// The formula cells of a block, in row order.
std::vector<TSheetCellKey> BlockFormulaCells(const TWorksheet& Sheet, int32_t SheetIndex, const TCellRange& Block) {
  std::vector<TSheetCellKey> Cells;
  ForEachStoredCellIn(Sheet, Block, [&](int32_t Col, int32_t Row, const TStoredCell& Cell) {
    if (Cell.Kind() == cvkFormula) Cells.push_back({SheetIndex, Col, Row});
  });
  std::sort(Cells.begin(), Cells.end(), [](const TSheetCellKey& A, const TSheetCellKey& B) {
    return A.Row < B.Row || (A.Row == B.Row && A.Col < B.Col);
  });
  return Cells;
}

}  // namespace

bool TFormulaEvaluator::HoldsFormula(int32_t SheetIndex, int32_t Col, int32_t Row) const {
  const TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  const TStoredCell* Cell = Sheet ? Sheet->FindCell(Col, Row) : nullptr;
  return Cell && Cell->Kind() == cvkFormula;
}

void TFormulaEvaluator::ApplySpill(int32_t SheetIndex, int32_t Col, int32_t Row, const TFormulaArg& Arg) {
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  if (!Sheet) return;
  std::optional<TCellRange> Old;
  if (const TSpillRange* Present = Sheet->FSpills.FindSpill(Col, Row)) Old = Present->AsRange();
  Sheet->FSpills.ClearAnchor(Col, Row);
  // Spilled values show through empty cells of ranges read before.
  const bool Spills = Arg.IsRange && int64_t(Arg.RowCount) * Arg.ColCount > 1;
  if (Old || Spills) FRangeCache.Clear();
  // What the old block showed has gone or moved: its readers must look again.
  auto DirtyOld = [&] {
    if (Old) DirtySpillDependents(SheetIndex, Old->StartCol, Old->StartRow, Old->EndCol, Old->EndRow);
  };

  if (Spills) {
    if (SpillDestinationBlocked(Sheet, Col, Row, Arg.ColCount, Arg.RowCount)) {
      WriteCache(SheetIndex, Col, Row, TCellValue::FromError(ceSpill));
      DirtyOld();
      return;
    }
    WriteCache(SheetIndex, Col, Row, Arg.First());
    Sheet->FSpills.SetSpill(Col, Row, Arg.RowCount, Arg.ColCount, Arg.Cells.Shared());
    const int32_t EndCol = Col + Arg.ColCount - 1, EndRow = Row + Arg.RowCount - 1;
    Sheet->ExpandUsedBounds(EndCol, EndRow);
    DirtySpillDependents(SheetIndex, Col, Row, EndCol, EndRow);
    // A block of the same extent was dirtied with the new one.
    if (Old && (Old->EndCol != EndCol || Old->EndRow != EndRow)) DirtyOld();
    return;
  }
  // A lambda can't stand as a cell's value; a scalar or a 1 by 1 range needs no spill.
  WriteCache(SheetIndex, Col, Row, Arg.IsLambda ? TCellValue::FromError(ceValue) : Arg.First());
  DirtyOld();
}

bool TFormulaEvaluator::SpillDestinationBlocked(const TWorksheet* Sheet, int32_t Col, int32_t Row, int32_t ColCount,
                                                int32_t RowCount) {
  if (!Sheet || ColCount < 1 || RowCount < 1) return false;
  // A block that would run off the sheet has nowhere to go.
  if (int64_t(Col) + ColCount - 1 > MaxCol || int64_t(Row) + RowCount - 1 > MaxRow) return true;
  const TCellRange Block{Col, Row, Col + ColCount - 1, Row + RowCount - 1};
  if (Sheet->FSpills.CoversAnyOf(Block, Col, Row)) return true;
  bool Blocked = false;
  ForEachStoredCellIn(*Sheet, Block, [&](int32_t C, int32_t R, const TStoredCell& Cell) {
    if ((C != Col || R != Row) && HoldsContent(Cell)) Blocked = true;
  });
  return Blocked;
}

void TFormulaEvaluator::DirtySpillDependents(int32_t SheetIndex, int32_t Col1, int32_t Row1, int32_t Col2,
                                             int32_t Row2) {
  TPassScope Pass(*this);
  const TCellRange Block = TCellRange{Col1, Row1, Col2, Row2}.Normalize();
  const TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  const std::vector<TSheetCellKey> BlockFormulas =
      Sheet ? BlockFormulaCells(*Sheet, SheetIndex, Block) : std::vector<TSheetCellKey>();
  std::vector<TSheetCellKey> Circular, Order;
  OrderSpillDependents(FGraph, SheetIndex, Block, BlockFormulas, Circular, Order);
  // Cells under evaluation are skipped: that is what keeps a spill from
  // re-entering its own anchor.
  for (const TSheetCellKey& K : Circular)
    if (!FVisiting.contains(K)) WriteCache(K.Sheet, K.Col, K.Row, TCellValue::FromError(ceCirc));
  for (const TSheetCellKey& K : Order)
    if (!FVisiting.contains(K)) EvaluateIfFormula(K.Sheet, K.Col, K.Row);
}

}  // namespace Tabrino
