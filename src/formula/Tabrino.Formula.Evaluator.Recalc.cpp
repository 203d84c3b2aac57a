// The evaluator's side of recalculation: walking trees for what they read,
// keeping the dependency graph current and evaluating in dependency order.
#include <algorithm>
#include <vector>

#include "Tabrino.Formula.Evaluator.h"

namespace Tabrino {

void TFormulaEvaluator::CollectDeps(const TAstNode* Node, int32_t SheetIndex, TFormulaDependencies& List) const {
  if (!Node) return;
  switch (Node->Kind) {
    case ankCellRef: List.AddCell({SheetIndex, RefCol(Node), RefRow(Node)}); return;
    case ankSheetRef:
      if (int32_t Target = ResolveSheetIndex(SheetIndex, Node->SheetName); Target >= 0)
        List.AddCell({Target, RefCol(Node), RefRow(Node)});
      return;
    case ankRange: {
      int32_t Target = ResolveSheetIndex(SheetIndex, Node->SheetName);
      if (Target < 0) Target = SheetIndex;
      TCellRange Range = TCellRange{RefCol(Node), RefRow(Node), RefCol2(Node), RefRow2(Node)}.Normalize();
      if (const TWorksheet* Sheet = FWorkbook->GetSheet(Target)) Range = Sheet->ClipToUsedBounds(Range);
      List.AddRange(Target, Range);
      return;
    }
    case ankTableRef: {
      int32_t Target;
      TCellRange Range;
      if (ResolveTableColumn(SheetIndex, Node->Text, Node->ColumnName, Target, Range)) List.AddRange(Target, Range);
      return;
    }
    case ankUnary: CollectDeps(Node->Left.get(), SheetIndex, List); return;
    case ankBinary:
      CollectDeps(Node->Left.get(), SheetIndex, List);
      CollectDeps(Node->Right.get(), SheetIndex, List);
      return;
    case ankFunc:
      if (Node->Args.empty()) {
        // A bare name reads a table's data when it names one; defined names add nothing.
        int32_t Target;
        TCellRange Range;
        if (ResolveTableColumn(SheetIndex, Node->Text, "", Target, Range)) List.AddRange(Target, Range);
        return;
      }
      for (const auto& Arg : Node->Args) CollectDeps(Arg.get(), SheetIndex, List);
      return;
    default: return;  // literals, and array literals on purpose
  }
}

void TFormulaEvaluator::RegisterCellFormula(int32_t SheetIndex, int32_t Col, int32_t Row) {
  const TSheetCellKey Key{SheetIndex, Col, Row};
  const TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  const TStoredCell* Cell = Sheet ? Sheet->FindCell(Col, Row) : nullptr;
  if (!Cell || Cell->Kind() != cvkFormula) {
    FGraph.ClearCell(Key);
    return;
  }
  const TSharedTree Shared = TreeOfCell(*Cell, Col, Row);
  TShiftScope Shift(*this, Shared);
  // A bare table column resolves against the table holding the formula's own
  // cell, as it will when evaluated; the anchor is put back afterwards.
  const int32_t SavedCol = FEvalCol, SavedRow = FEvalRow;
  FEvalCol = Col;
  FEvalRow = Row;
  TFormulaDependencies Deps;
  CollectDeps(Shared.Tree.get(), SheetIndex, Deps);
  FEvalCol = SavedCol;
  FEvalRow = SavedRow;
  FGraph.SetDependencies(Key, Deps);
}

void TFormulaEvaluator::NotifyCellChanged(int32_t SheetIndex, int32_t Col, int32_t Row) {
  TPassScope Pass(*this);
  // A value written over a spilling formula ends its spill.
  if (TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex); Sheet && !HoldsFormula(SheetIndex, Col, Row))
    Sheet->FSpills.ClearAnchor(Col, Row);
  RegisterCellFormula(SheetIndex, Col, Row);
  const TSheetCellKey Key{SheetIndex, Col, Row};
  std::vector<TSheetCellKey> Cycle, Order;
  FGraph.OrderFrom(Key, Cycle, Order);
  for (const TSheetCellKey& K : Cycle) WriteCache(K.Sheet, K.Col, K.Row, TCellValue::FromError(ceCirc));
  // A changed cell that holds no formula started the walk; it is not evaluated.
  for (const TSheetCellKey& K : Order) EvaluateIfFormula(K.Sheet, K.Col, K.Row);
}

void TFormulaEvaluator::RebuildAllDependencies() {
  FGraph.Clear();
  size_t Formulas = 0;
  for (int32_t SheetIndex = 0; SheetIndex < FWorkbook->SheetCount(); ++SheetIndex)
    for (const auto& [Key, Cell] : FWorkbook->GetSheet(SheetIndex)->FCells) Formulas += Cell.Kind() == cvkFormula;
  FGraph.Reserve(Formulas);
  for (int32_t SheetIndex = 0; SheetIndex < FWorkbook->SheetCount(); ++SheetIndex)
    for (const auto& [Key, Cell] : FWorkbook->GetSheet(SheetIndex)->FCells)
      if (Cell.Kind() == cvkFormula) RegisterCellFormula(SheetIndex, Key.Col, Key.Row);
}

void TFormulaEvaluator::RecalculateAll() {
  TPassScope Pass(*this);
  RebuildAllDependencies();
  // The rebuild registered every formula of the workbook, and only those.
  std::vector<TSheetCellKey> Cycle, Order;
  FGraph.OrderAll(Cycle, Order);
  for (const TSheetCellKey& K : Cycle) WriteCache(K.Sheet, K.Col, K.Row, TCellValue::FromError(ceCirc));
  for (const TSheetCellKey& K : Order) EvaluateFormulaCell(K.Sheet, K.Col, K.Row);
}

void TFormulaEvaluator::RecalculateSheet(const TWorksheet* Sheet) {
  if (!Sheet || FWorkbook->IndexOfSheet(Sheet) < 0) return;
  // Kept as its callers know it: a rebuild, then the whole workbook (which rebuilds again).
  RebuildAllDependencies();
  RecalculateAll();
}

void TFormulaEvaluator::Reset() {
  FVisiting.clear();
  FVisitingNames.clear();
  FGraph.Clear();
}

}  // namespace Tabrino
