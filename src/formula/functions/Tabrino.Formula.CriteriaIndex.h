// Indexes for the conditional aggregates. A thousand SUMIFs or COUNTIFs over
// one long column walk it a thousand times; its cells are immutable shared
// storage, so totals grouped by the values a criterion can meet answer each
// later criterion at once, with exactly the walk's result.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Tabrino.Formula.IndexCache.h"

namespace Tabrino {

class TCriterion;

// The summed numbers a criterion selects: their total and how many there were.
struct TMatchTotals {
  double Sum = 0;
  double Count = 0;
};

class TCriteriaIndex {
 public:
  // Over the tested cells, with the numbers of Summed at the same positions
  // added up (the shorter of the two sets the extent). Without Summed the
  // index counts, over all the tested cells.
  TCriteriaIndex(std::span<const TCellValue> Tested, std::span<const TCellValue> Summed);
  // The walk's totals of the summed numbers at matching positions; false
  // where totals grouped by value could round differently from the walk.
  bool TrySum(const TCriterion& Criterion, TMatchTotals& Totals) const;
  // The walk's number of matching tested cells; false where the index cannot tell.
  bool TryCount(const TCriterion& Criterion, double& Count) const;

 private:
  struct TGroup {
    TMatchTotals Totals;  // summed numbers, added in the walk's order
    int64_t Matches = 0;  // tested cells
  };
  // The group of cells an equality criterion selects by number (numeric
  // cells) and by text (the cells that are not numeric); either may be null.
  void EqualGroups(const TCriterion& Criterion, const TGroup*& ByNumber, const TGroup*& ByText) const;

  int64_t FExtent = 0;
  absl::flat_hash_map<double, TGroup> FByNumber;
  absl::flat_hash_map<std::string, TGroup> FByText;
  absl::flat_hash_map<std::string, TGroup> FByTextOfNonNumbers;
  // The numeric tested cells in order of value, for counting orderings.
  std::vector<double> FSortedNumbers;
};

// The criteria indexes of the lines of cells tested more than once lately.
// The evaluator owns one and empties it with its other per-calculation caches.
class TCriteriaIndexCache {
 public:
  // The index over Tested (and Summed, for sums), or nullptr while indexing
  // would not pay: small ranges, and a range on its first use.
  const TCriteriaIndex* For(const TFormulaArg& Tested, const TFormulaArg* Summed);
  void Clear() { FCache.Clear(); }

 private:
  static constexpr size_t MinCells = 64;
  struct TKey {
    std::shared_ptr<const std::vector<TCellValue>> Tested, Summed;  // keep the cells alive and identify them
    bool operator==(const TKey&) const = default;
  };
  TSecondUseCache<TKey, TCriteriaIndex> FCache;
};

}  // namespace Tabrino
