// The worksheet's cell dictionary. Cells are keyed by the packed (column, row)
// pair in a flat hash map, and each stored record is 12 bytes: a plain number,
// boolean or error lives inline; text points to its string; a plain formula
// points to its text and cached result; anything richer (format overrides,
// rich text, sparklines) points to an out-of-line record that exists only for
// such cells. Callers see whole TCell copies; the evaluator reads through the
// lighter accessors.
//
// Records are grouped in blocks of consecutive rows of one column, so that
// cells read together (a row's neighbours, a column's run) share a hash entry
// and usually a cache line, rather than each costing a lookup of its own.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "Tabrino.Cell.h"
#include "Tabrino.Formula.TreeCache.h"

namespace Tabrino {

struct TCellKey {
  int32_t Col;
  int32_t Row;
  bool operator==(const TCellKey&) const = default;
  template <typename H>
  friend H AbslHashValue(H State, const TCellKey& K) {
    return H::combine(std::move(State), K.Col, K.Row);
  }
};

class TStoredCell {
 public:
  static TStoredCell FromCell(const TCell& Cell);
  TStoredCell(TStoredCell&& Other) noexcept;
  TStoredCell& operator=(TStoredCell&& Other) noexcept;
  TStoredCell(const TStoredCell&) = delete;
  TStoredCell& operator=(const TStoredCell&) = delete;
  ~TStoredCell() { Release(); }

  TCell ToCell() const;
  // The same as assigning ToCell(), reusing Out's buffers: no allocation
  // once Out has held a cell of this size.
  void CopyTo(TCell& Out) const;
  TCellValueKind Kind() const;
  int32_t StyleIndex() const;
  double Number() const;                 // cvkNumber only
  bool Boolean() const;                  // cvkBoolean only
  TCellErrorCode Error() const;          // cvkError only
  const std::string& Text() const;       // cvkText only
  const std::string& Formula() const;    // cvkFormula only
  bool HasCachedValue() const;
  const TCellValue* CachedValue() const;  // nullptr without a cache
  const TCellFormat* FormatOverride() const;  // nullptr without one
  // Replaces a formula's cached result where it lies; false when the cell
  // holds no formula. Equivalent to storing the cell again with that cache.
  bool HasRichText() const;
  bool HasSparkline() const;
  std::string RichTextPlain() const;
  TCellValue Value() const;
  bool SetCachedResult(const TCellValue& Value);
  // The parsed tree of a plain formula standing at (Col, Row), kept with its
  // text once looked up. The record goes whenever the cell is stored again,
  // so a kept tree can never outlive its text; nullptr when none is kept.
  const TSharedTree* KeptTree(int32_t Col, int32_t Row) const;
  void KeepTree(const TSharedTree& Tree, int32_t Col, int32_t Row) const;

 private:
  friend class TCellMap;
  enum TLayout : uint8_t { lyStyleOnly, lyNumber, lyBoolean, lyError, lyText, lyFormula, lyRecord };
  struct TRecord;
  struct TFormulaRecord;
  static constexpr uint32_t StyleBits = 24;
  static constexpr uint32_t StyleMask = (1u << StyleBits) - 1;

  TStoredCell() = default;
  TLayout Layout() const { return static_cast<TLayout>(FStyleAndLayout >> StyleBits); }
  void SetLayout(TLayout Layout, int32_t Style) { FStyleAndLayout = (uint32_t(Layout) << StyleBits) | uint32_t(Style); }
  template <typename T>
  T Payload() const {
    T V;
    std::memcpy(&V, FPayload, sizeof V);
    return V;
  }
  template <typename T>
  void SetPayload(T V) {
    std::memcpy(FPayload, &V, sizeof V);
  }
  const TRecord& Record() const { return *Payload<TRecord*>(); }
  const TFormulaRecord& FormulaRecord() const { return *Payload<TFormulaRecord*>(); }
  void Release();

  // Two 32-bit words instead of one 64-bit field keep the record 4-byte
  // aligned, so a map slot is 20 bytes rather than 24.
  uint32_t FPayload[2] = {0, 0};
  uint32_t FStyleAndLayout = 0;
};

// The sheet's cells by (column, row). Iteration visits every cell once, in no
// promised order; pointers and iterators are invalidated by any insertion or
// removal.
class TCellMap {
 public:
  static constexpr int32_t BlockRows = 16;

  const TStoredCell* Find(int32_t Col, int32_t Row) const;
  bool Contains(int32_t Col, int32_t Row) const { return Find(Col, Row) != nullptr; }
  void Set(int32_t Col, int32_t Row, TStoredCell&& Cell);
  // False when there was no cell.
  bool Erase(int32_t Col, int32_t Row);
  // A stored cell to change in place; nullptr when absent.
  TStoredCell* FindMutable(int32_t Col, int32_t Row);
  size_t size() const { return FCount; }
  void clear();
  // Room for about this many cells, as filled column by column.
  void reserve(size_t Cells) { FBlocks.reserve(Cells / BlockRows + 1); }

 private:
  struct TBlock {
    uint32_t Present = 0;  // bit n: row Base + n holds a cell
    TStoredCell Slots[BlockRows];
  };
  using TBlocks = absl::flat_hash_map<TCellKey, TBlock>;  // (column, first row / BlockRows)

 public:
  class TIterator {
   public:
    using value_type = std::pair<TCellKey, const TStoredCell&>;
    value_type operator*() const {
      return {TCellKey{FBlock->first.Col, FBlock->first.Row * BlockRows + FBit}, FBlock->second.Slots[FBit]};
    }
    TIterator& operator++() {
      Advance(FBit + 1);
      return *this;
    }
    bool operator==(const TIterator& Other) const { return FBlock == Other.FBlock && FBit == Other.FBit; }

   private:
    friend class TCellMap;
    TIterator(TBlocks::const_iterator Block, TBlocks::const_iterator End) : FBlock(Block), FEnd(End) { Advance(0); }
    // Moves to the first present cell at or after bit From of the current block.
    void Advance(int32_t From);
    TBlocks::const_iterator FBlock, FEnd;
    int32_t FBit = 0;
  };
  TIterator begin() const { return TIterator(FBlocks.begin(), FBlocks.end()); }
  TIterator end() const { return TIterator(FBlocks.end(), FBlocks.end()); }

 private:
  static TCellKey BlockKey(int32_t Col, int32_t Row) { return TCellKey{Col, Row >> RowShift}; }
  static int32_t Bit(int32_t Row) { return Row & (BlockRows - 1); }
  static constexpr int32_t RowShift = 4;
  static_assert(BlockRows == 1 << RowShift);

  TBlocks FBlocks;
  size_t FCount = 0;
};

}  // namespace Tabrino
