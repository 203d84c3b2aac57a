#include "Tabrino.Formula.RangeCache.h"

#include <algorithm>

namespace Tabrino {

const TFormulaArg* TRangeReadCache::Find(int32_t Sheet, const TCellRange& Range) const {
  for (const TEntry& E : FEntries)
    if (E.Sheet == Sheet && E.Range.StartCol == Range.StartCol && E.Range.StartRow == Range.StartRow &&
        E.Range.EndCol == Range.EndCol && E.Range.EndRow == Range.EndRow)
      return &E.Cells;
  return nullptr;
}

void TRangeReadCache::Store(int32_t Sheet, const TCellRange& Range, const TFormulaArg& Cells) {
  if (int64_t(Range.EndCol - Range.StartCol + 1) * int64_t(Range.EndRow - Range.StartRow + 1) < MinCells) return;
  if (FEntries.size() < Capacity) {
    FEntries.push_back({Sheet, Range, Cells});
    return;
  }
  // Round robin: cheap, and a pass that reads more tables than this keeps
  // the newest ones.
  FEntries[FNextVictim] = {Sheet, Range, Cells};
  FNextVictim = (FNextVictim + 1) % Capacity;
}

void TRangeReadCache::Invalidate(int32_t Sheet, int32_t Col, int32_t Row) {
  std::erase_if(FEntries, [&](const TEntry& E) { return E.Sheet == Sheet && E.Range.Contains(Col, Row); });
  FNextVictim = 0;
}

}  // namespace Tabrino
