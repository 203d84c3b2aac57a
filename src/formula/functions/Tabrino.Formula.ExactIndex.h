// Hash indexes for exact lookups. VLOOKUP(..., FALSE), MATCH(..., 0) and
// XLOOKUP walk their table for the first cell a key matches; ten thousand of
// them over one table cost ten thousand walks. A table's cells are immutable
// shared storage, so an index built over them answers every later lookup of
// the same line of cells in constant time, with exactly the walk's answer.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Tabrino.Formula.Builtins.h"
#include "Tabrino.Formula.IndexCache.h"

namespace Tabrino {

struct TLookupKey;

// The first position, along Count cells Stride apart, of each value a key
// can match: by number for cells that convert, by upper-cased display text
// for all cells and for those that do not convert.
class TExactMatchIndex {
 public:
  TExactMatchIndex(std::span<const TCellValue> Cells, int64_t Count, int64_t Stride);
  // What the first-to-last walk with TLookupKey::Matches finds; -1 for none.
  int64_t Find(const TLookupKey& Key) const;

 private:
  absl::flat_hash_map<double, int64_t> FByNumber;
  absl::flat_hash_map<std::string, int64_t> FByText;
  absl::flat_hash_map<std::string, int64_t> FByTextOfNonNumbers;
};

// The indexes of the tables searched more than once lately. The evaluator
// owns one and empties it with its other per-calculation caches.
class TExactIndexCache {
 public:
  // The index of a table's line of cells, or nullptr while indexing would
  // not pay: small tables, and a table on its first search.
  const TExactMatchIndex* For(const TFormulaArg& Table, int64_t Count, int64_t Stride);
  void Clear() { FCache.Clear(); }

 private:
  static constexpr int64_t MinCells = 64;
  struct TKey {
    std::shared_ptr<const std::vector<TCellValue>> Storage;  // keeps the cells alive and identifies them
    int64_t Count;
    int64_t Stride;
    bool operator==(const TKey&) const = default;
  };
  TSecondUseCache<TKey, TExactMatchIndex> FCache;
};

}  // namespace Tabrino
