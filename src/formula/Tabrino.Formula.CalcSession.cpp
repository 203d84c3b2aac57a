#include "Tabrino.Formula.CalcSession.h"

#include "Tabrino.OutermostScope.h"

namespace Tabrino {

TCalcSession::TCalcSession(TWorkbook& Workbook) : FWorkbook(Workbook), FEvaluator(Workbook) {
  for (const auto& Sheet : FWorkbook.FSheets) HookSheet(*Sheet);
  FChainedSheetAdded = FWorkbook.FOnSheetAdded;
  FWorkbook.FOnSheetAdded = [this](TWorksheet& Sheet) {
    if (FChainedSheetAdded) FChainedSheetAdded(Sheet);
    HookSheet(Sheet);
  };
}

TCalcSession::~TCalcSession() {
  FWorkbook.FOnSheetAdded = FChainedSheetAdded;
  // Sheets removed meanwhile are gone with our handler; only live ones get theirs back.
  for (const auto& Sheet : FWorkbook.FSheets)
    if (auto It = FChainedHandlers.find(Sheet.get()); It != FChainedHandlers.end())
      Sheet->FOnChange = std::move(It->second);
}

void TCalcSession::HookSheet(TWorksheet& Sheet) {
  FChainedHandlers.insert_or_assign(&Sheet, Sheet.FOnChange);
  Sheet.FOnChange = [this](TWorksheet& Sender, const TCellAddress& Address, const TCell& OldCell,
                           const TCell& NewCell) {
    if (auto It = FChainedHandlers.find(&Sender); It != FChainedHandlers.end() && It->second)
      It->second(Sender, Address, OldCell, NewCell);
    CellChanged(Sender, Address);
  };
}

template <typename F>
void TCalcSession::Evaluating(F&& Work) {
  TOutermostScope Outermost(FEvaluating);
  Work();
}

void TCalcSession::CellChanged(TWorksheet& Sheet, const TCellAddress& Address) {
  if (FEvaluating) return;
  if (InBatch()) {
    FBatchDirty = true;
    return;
  }
  const int32_t SheetIndex = FWorkbook.IndexOfSheet(&Sheet);
  if (SheetIndex < 0) return;
  Evaluating([&] { FEvaluator.NotifyCellChanged(SheetIndex, Address.Col, Address.Row); });
}

void TCalcSession::EndBatch() {
  if (FBatchDepth == 0 || --FBatchDepth > 0 || !FBatchDirty) return;
  FBatchDirty = false;
  RecalculateAll();
}

void TCalcSession::RecalculateAll() {
  Evaluating([&] { FEvaluator.RecalculateAll(); });
}

TCellValue TCalcSession::EvaluateCell(int32_t SheetIndex, int32_t Col, int32_t Row) {
  TCellValue Result;
  Evaluating([&] { Result = FEvaluator.EvaluateCell(SheetIndex, Col, Row); });
  return Result;
}

}  // namespace Tabrino
