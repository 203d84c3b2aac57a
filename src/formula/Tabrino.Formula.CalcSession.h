// Ties a workbook's edits to recalculation for a host: every user write to a
// cell re-evaluates what depends on it, and writes inside a batch are held
// back for one full recalculation at its end. The caches that the evaluator
// writes come back through the same change events and are ignored.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>

#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

class TCalcSession {
 public:
  // Hooks every sheet of Workbook, and each sheet added later, chaining the
  // handlers already in place. The session must not outlive the workbook.
  explicit TCalcSession(TWorkbook& Workbook);
  // Puts the chained handlers back.
  ~TCalcSession();
  TCalcSession(const TCalcSession&) = delete;
  TCalcSession& operator=(const TCalcSession&) = delete;

  // Evaluating calls made on it directly write caches that this session
  // would take for edits: go through the session's own operations instead.
  TFormulaEvaluator& Evaluator() { return FEvaluator; }

  // Batches nest; the outermost EndBatch recalculates everything once when a
  // write came in meanwhile.
  void BeginBatch() { ++FBatchDepth; }
  void EndBatch();
  bool InBatch() const { return FBatchDepth > 0; }

  void RecalculateAll();
  TCellValue EvaluateCell(int32_t SheetIndex, int32_t Col, int32_t Row);

 private:
  void HookSheet(TWorksheet& Sheet);
  void CellChanged(TWorksheet& Sheet, const TCellAddress& Address);
  // Runs Work with the writes it causes ignored.
  template <typename F>
  void Evaluating(F&& Work);

  TWorkbook& FWorkbook;
  TFormulaEvaluator FEvaluator;
  absl::flat_hash_map<TWorksheet*, TWorksheetChangeEvent> FChainedHandlers;
  TSheetAddedEvent FChainedSheetAdded;
  int32_t FBatchDepth = 0;
  bool FBatchDirty = false;
  bool FEvaluating = false;
};

}  // namespace Tabrino
