// Which formula cells read which cells, for push-based recalculation: a change
// re-evaluates the transitive dependents of the changed cell in topological
// order. Keys are integer (sheet, column, row) triples; the text form
// "sheet!col,row" exists for callers that print or parse keys.
//
// A single cell read is one edge. A range read is stored once, as a range,
// in a bucketed index, so that ten thousand formulas over one long column
// cost ten thousand index entries per bucket rather than a billion edges.
#pragma once

#include <absl/container/flat_hash_map.h>
#include <absl/container/inlined_vector.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.CellBlocks.h"
#include "Tabrino.Types.h"

namespace Tabrino {

// A cell of a workbook: sheet index, column, row.
struct TSheetCellKey {
  int32_t Sheet;
  int32_t Col;
  int32_t Row;
  bool operator==(const TSheetCellKey&) const = default;
  template <typename H>
  friend H AbslHashValue(H State, const TSheetCellKey& K) {
    return H::combine(std::move(State), K.Sheet, K.Col, K.Row);
  }
};

// A rectangle of cells on one sheet, corners in order.
struct TSheetRangeKey {
  int32_t Sheet;
  TCellRange Range;
  bool operator==(const TSheetRangeKey&) const = default;
};

// What one formula reads: single cells and whole ranges, each in the order
// first met. Most formulas read a cell or two and at most one range: those
// need no allocation of their own.
struct TFormulaDependencies {
  absl::InlinedVector<TSheetCellKey, 2> Cells;
  absl::InlinedVector<TSheetRangeKey, 1> Ranges;

  void AddCell(const TSheetCellKey& Key) { Cells.push_back(Key); }
  // A one-cell range is recorded as that cell.
  void AddRange(int32_t Sheet, const TCellRange& Range);
};

// "%d!%d,%d" over sheet, column and row.
std::string CellKey(int32_t SheetIndex, int32_t Col, int32_t Row);
// Splits at the first "!" and the first ","; bad parts read as -1 for the
// sheet and 0 for the others. True for sheet >= 0, col > 0, row > 0 with the
// "," behind the "!".
bool ParseKey(std::string_view Key, int32_t& SheetIndex, int32_t& Col, int32_t& Row);

class TFormulaDependencyGraph {
 public:
  void Clear();
  // Room for this many formulas (and about as many read cells), so that a
  // full rebuild does not regrow its tables.
  void Reserve(size_t Formulas) {
    FNodeIds.reserve(Formulas);
    FNodes.reserve(Formulas);
    FDependents.reserve(Formulas);
  }
  // Forgets what Key reads; what reads Key is untouched.
  void ClearCell(const TSheetCellKey& Key);
  // Replaces what Key reads. Duplicates are dropped, first occurrence kept.
  void SetDependencies(const TSheetCellKey& Key, const TFormulaDependencies& Deps);
  bool HasDependencies(const TSheetCellKey& Key) const { return FNodeIds.Contains(Key); }
  // What Key reads, as recorded; nullptr when nothing is.
  const TFormulaDependencies* FindDependencies(const TSheetCellKey& Key) const;

  // Appends the formulas reading Key directly, once each, oldest registration first.
  void GetDependents(const TSheetCellKey& Key, std::vector<TSheetCellKey>& List) const;
  // Calls Visit(formula, part) for every recorded read that meets Block: a
  // single-cell read with that cell as the part, a range read with its
  // overlap. Costs what the reads near Block cost, not what Block's cells do,
  // so that the readers of a million spilled values are found at once.
  void ForEachReadIn(const TSheetRangeKey& Block,
                     const std::function<void(const TSheetCellKey& Formula, const TCellRange& Part)>& Visit) const;
  // Breadth-first over the dependents of Key; each key found for the first
  // time in this call is appended (Key itself never). List is not consulted.
  void CollectTransitiveDependents(const TSheetCellKey& Key, std::vector<TSheetCellKey>& List) const;
  // Kahn's algorithm over the subgraph of Nodes. Ties go by the order of
  // Nodes, then first in, first out. Repeated entries count once each, both
  // for their in-degree and in the queue. CycleList, when given, receives
  // every entry of Nodes that did not reach Order: cycle members, what lies
  // downstream of them, and repeats whose in-degree never came down.
  void TopologicalOrder(const std::vector<TSheetCellKey>& Nodes, std::vector<TSheetCellKey>* CycleList,
                        std::vector<TSheetCellKey>& Order) const;
  // Exactly what TopologicalOrder gives for Key followed by its transitive
  // dependents as CollectTransitiveDependents lists them, in one walk of the
  // graph instead of two: what an edit needs.
  void OrderFrom(const TSheetCellKey& Key, std::vector<TSheetCellKey>& CycleList,
                 std::vector<TSheetCellKey>& Order) const;
  // Kahn's algorithm over every registered formula: the same formulas reach
  // Order and CycleList as TopologicalOrder over all of them would give, the
  // edges found from what each formula reads rather than by asking who reads
  // each one. Ties go by node (after a rebuild, the order of registration).
  void OrderAll(std::vector<TSheetCellKey>& CycleList, std::vector<TSheetCellKey>& Order) const;

  size_t FormulaCount() const { return FNodeIds.size(); }
  // Entries held by the range index, for checks on its size.
  size_t RangeIndexEntryCount() const;

 private:
  struct TFormulaNode {
    TSheetCellKey Key;
    bool Live = false;
    uint64_t Registration = 0;  // orders dependents by when they were registered
    TFormulaDependencies Deps;
    absl::InlinedVector<uint32_t, 1> RangeIds;
  };
  struct TRangeEntry {
    TSheetCellKey Formula;
    TSheetRangeKey Range;
    uint64_t Registration;
    int32_t Grain;  // index of the bucket grain, or LargeGrain
  };
  // A bucket of the range index: sheet, grain, column block, row block.
  struct TBucketKey {
    int32_t Sheet;
    int32_t Grain;
    int32_t ColBlock;
    int32_t RowBlock;
    bool operator==(const TBucketKey&) const = default;
    template <typename H>
    friend H AbslHashValue(H State, const TBucketKey& K) {
      return H::combine(std::move(State), K.Sheet, K.Grain, K.ColBlock, K.RowBlock);
    }
  };

  // Removes what the node's formula reads from the reverse index and the range index.
  void UnlinkNode(const TFormulaNode& Node);
  uint32_t AddRangeEntry(const TSheetCellKey& Formula, const TSheetRangeKey& Range, uint64_t Registration);
  void RemoveRangeEntry(uint32_t Id);
  // Calls Visit with each bucket list a range belongs to, creating them when asked.
  template <typename F>
  void ForEachBucket(const TRangeEntry& Entry, F&& Visit);
  uint64_t RegistrationOf(const TSheetCellKey& Formula) const;

  // Formulas by id: the nodes lie together in one array, in the order they
  // came (ids of cleared formulas are handed out again), and the key map
  // stays small.
  TCellBlockMap<TSheetCellKey, uint32_t> FNodeIds;
  std::vector<TFormulaNode> FNodes;
  std::vector<uint32_t> FFreeNodes;
  // Single-cell edges: for each read cell, its readers in registration order.
  // Most cells have one or two readers: those live in the map slot itself.
  using TReaders = absl::InlinedVector<TSheetCellKey, 2>;
  TCellBlockMap<TSheetCellKey, TReaders> FDependents;
  std::vector<TRangeEntry> FRanges;
  std::vector<uint32_t> FFreeRangeIds;
  absl::flat_hash_map<TBucketKey, std::vector<uint32_t>> FRangeBuckets;
  // Ranges spanning too many buckets, scanned on every query of their sheet.
  absl::flat_hash_map<int32_t, std::vector<uint32_t>> FLargeRanges;
  uint64_t FNextRegistration = 0;
};

}  // namespace Tabrino
