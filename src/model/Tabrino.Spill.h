// Dynamic-array results laid out on a sheet. A formula whose result is an
// array spills it into the cells right of and below its own cell. Those cells
// stay empty in the cell store: a read of an empty cell falls through to this
// map. Spills are a product of evaluation, kept in memory only.
//
// A block is indexed as a whole, never cell by cell: a million spilled values
// cost one entry here plus a few hundred entries in the coarse grid that
// answers "which spill covers this cell".
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "Tabrino.CellStore.h"
#include "Tabrino.Types.h"

namespace Tabrino {

// Values of a spilled block, row by row. Shared with the formula result that
// produced them, so that laying out a large array copies nothing.
using TSpillValues = std::shared_ptr<const std::vector<TCellValue>>;

struct TSpillRange {
  int32_t AnchorCol = 0;
  int32_t AnchorRow = 0;
  int32_t EndCol = 0;
  int32_t EndRow = 0;
  // Row by row with the anchor's value first, stride ColCount.
  TSpillValues Values;

  static TSpillRange Create(int32_t AnchorCol, int32_t AnchorRow, int32_t EndCol, int32_t EndRow,
                            TSpillValues Values);
  TCellRange AsRange() const { return {AnchorCol, AnchorRow, EndCol, EndRow}; }
  bool Contains(int32_t Col, int32_t Row) const {
    return Col >= AnchorCol && Col <= EndCol && Row >= AnchorRow && Row <= EndRow;
  }
  int32_t RowCount() const { return EndRow - AnchorRow + 1; }
  int32_t ColCount() const { return EndCol - AnchorCol + 1; }
  // The empty value outside the block or past the end of Values.
  const TCellValue& ValueAt(int32_t Col, int32_t Row) const;
};

class TSpillMap {
 public:
  // Replaces any spill at the anchor. A size below 1, or exactly 1 by 1,
  // leaves no spill: a single value lives in the anchor's cached result. Nor
  // does a block that would leave the sheet.
  void SetSpill(int32_t AnchorCol, int32_t AnchorRow, int32_t RowCount, int32_t ColCount, TSpillValues Values);
  // Removes the spill anchored at the cell, if any.
  void ClearAnchor(int32_t Col, int32_t Row);
  void ClearAll();

  // The spilled value of a child cell; false for anchors and uncovered cells
  // (an anchor's value is its cached result).
  bool TryGetValue(int32_t Col, int32_t Row, TCellValue& Value) const;
  // As TryGetValue without a copy: nullptr where there is no child value.
  const TCellValue* FindValue(int32_t Col, int32_t Row) const;
  bool IsSpillChild(int32_t Col, int32_t Row) const { return FindCovering(Col, Row) != nullptr; }
  // True for a child, with its anchor, or for an anchor, which reports
  // itself. The outputs default to the inputs.
  bool FindAnchor(int32_t Col, int32_t Row, int32_t& AnchorCol, int32_t& AnchorRow) const;
  bool TryGetSpill(int32_t AnchorCol, int32_t AnchorRow, TSpillRange& Range) const;
  const TSpillRange* FindSpill(int32_t AnchorCol, int32_t AnchorRow) const;
  // Whether some spill covers a cell of Range other than (ExceptCol, ExceptRow).
  bool CoversAnyOf(const TCellRange& Range, int32_t ExceptCol, int32_t ExceptRow) const;

  // The rows (columns) of all children, then of all anchors, on one column
  // (row), unsorted: spilled values count as content for jumps to the edge
  // of data.
  void CollectNavRowsInColumn(int32_t Col, std::vector<int32_t>& Rows) const;
  void CollectNavColsInRow(int32_t Row, std::vector<int32_t>& Cols) const;

  // Structural edits do not move spills: any real change drops them all, and
  // the next evaluation of their anchors lays them out again.
  void ShiftRows(int32_t Index, int32_t Delta);
  void ShiftColumns(int32_t Index, int32_t Delta);
  void MoveRows(int32_t From, int32_t Count, int32_t Final);
  void MoveColumns(int32_t From, int32_t Count, int32_t Final);

  bool IsEmpty() const { return FByAnchor.empty(); }
  size_t Count() const { return FByAnchor.size(); }
  // Calls Visit(const TSpillRange&) for every spill, in no promised order.
  template <typename F>
  void ForEach(F&& Visit) const {
    for (const auto& [Key, Entry] : FByAnchor) Visit(Entry.Range);
  }

 private:
  struct TEntry {
    TSpillRange Range;
    uint64_t Serial;  // the newest spill answers for a cell covered twice
  };
  // A cell of the coarse grid: a block of columns by a block of rows.
  struct TBucketKey {
    int32_t ColBlock;
    int32_t RowBlock;
    bool operator==(const TBucketKey&) const = default;
    template <typename H>
    friend H AbslHashValue(H State, const TBucketKey& K) {
      return H::combine(std::move(State), K.ColBlock, K.RowBlock);
    }
  };

  template <typename F>
  static void ForEachBucket(const TCellRange& Range, F&& Visit);
  // The newest spill that holds the cell as a child.
  const TEntry* FindCovering(int32_t Col, int32_t Row) const;

  absl::flat_hash_map<TCellKey, TEntry> FByAnchor;
  // For every grid cell, the anchors of the spills whose blocks meet it.
  absl::flat_hash_map<TBucketKey, std::vector<TCellKey>> FBuckets;
  uint64_t FNextSerial = 0;
};

}  // namespace Tabrino
