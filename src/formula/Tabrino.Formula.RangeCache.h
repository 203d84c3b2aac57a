// The cells of recently read ranges, kept while one calculation runs: ten
// thousand lookups over the same table read it once instead of ten thousand
// times. An entry is dropped as soon as a cached result inside it changes;
// anything else that could change a range's cells (a spill, an edit between
// calculations) clears the whole cache.
#pragma once

#include <cstdint>
#include <vector>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

class TRangeReadCache {
 public:
  // Ranges smaller than this are cheaper to read again than to keep.
  static constexpr int64_t MinCells = 64;

  const TFormulaArg* Find(int32_t Sheet, const TCellRange& Range) const;
  void Store(int32_t Sheet, const TCellRange& Range, const TFormulaArg& Cells);
  // A cell's value changed: entries that cover it are gone.
  void Invalidate(int32_t Sheet, int32_t Col, int32_t Row);
  void Clear() { FEntries.clear(); }

 private:
  static constexpr size_t Capacity = 32;
  struct TEntry {
    int32_t Sheet;
    TCellRange Range;
    TFormulaArg Cells;
  };
  std::vector<TEntry> FEntries;
  size_t FNextVictim = 0;
};

}  // namespace Tabrino
