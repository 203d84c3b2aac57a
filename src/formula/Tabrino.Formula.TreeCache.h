// Parsed formula trees, shared by every cell whose formula has the same
// shape: the same tokens, with relative references at the same offsets from
// their cell. The hundred thousand formulas of a filled-down column
// (=A1*1.1, =A2*1.1, ...) share one tree, parsed once; a caller evaluates it
// with its relative references shifted by the distance between its cell and
// the cell the tree was parsed for. Trees are immutable.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Parser.h"

namespace Tabrino {

// A tree and how far its relative references must move for the asking cell.
struct TSharedTree {
  std::shared_ptr<const TAstNode> Tree;
  int32_t ShiftCol = 0;
  int32_t ShiftRow = 0;
};

class TFormulaTreeCache {
 public:
  explicit TFormulaTreeCache(size_t Capacity = 1 << 16) : FCapacity(Capacity) {}
  // The tree of Text standing in cell (HostCol, HostRow), parsing it when no
  // formula of its shape was seen. Never a null tree.
  TSharedTree Get(std::string_view Text, int32_t HostCol, int32_t HostRow);
  void Clear() { FTrees.clear(); }
  size_t Size() const { return FTrees.size(); }

  // The shape key of Text in that cell: equal keys parse to equal trees up to
  // the shift of their relative references.
  static std::string ShapeKey(std::string_view Text, int32_t HostCol, int32_t HostRow);

 private:
  struct TEntry {
    std::shared_ptr<const TAstNode> Tree;
    int32_t ParsedCol;
    int32_t ParsedRow;
  };
  size_t FCapacity;
  absl::flat_hash_map<std::string, TEntry> FTrees;
};

}  // namespace Tabrino
