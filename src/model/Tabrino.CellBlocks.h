// A hash map from cells to values that keeps a column's runs together:
// entries are grouped in blocks of sixteen consecutive rows of one column
// under a single hash entry. Cells read or written together (down a column,
// along a row of a filled block) then share an entry and usually a cache
// line, where a map keyed by every cell would send each of them to a random
// slot of a table far larger than the cache.
//
// TKey is a cell key with an int32_t Row member and an AbslHashValue; the
// block of a key is the key with its row divided by the block height.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Tabrino {

template <typename TKey, typename TValue>
class TCellBlockMap {
 public:
  static constexpr int32_t BlockRows = 16;

  const TValue* Find(const TKey& Key) const {
    auto It = FBlocks.find(BlockOf(Key));
    if (It == FBlocks.end() || !(It->second.Present & MaskOf(Key))) return nullptr;
    return &It->second.Slots[Bit(Key)];
  }
  TValue* Find(const TKey& Key) { return const_cast<TValue*>(std::as_const(*this).Find(Key)); }
  bool Contains(const TKey& Key) const { return Find(Key) != nullptr; }

  // The value at Key, default-made first when absent; the flag says so.
  std::pair<TValue&, bool> TryEmplace(const TKey& Key) {
    TBlock& Block = FBlocks[BlockOf(Key)];
    const bool Added = !(Block.Present & MaskOf(Key));
    if (Added) {
      Block.Present |= MaskOf(Key);
      ++FCount;
    }
    return {Block.Slots[Bit(Key)], Added};
  }
  TValue& operator[](const TKey& Key) { return TryEmplace(Key).first; }

  // Removes the entry, leaving its slot default-made; false when there was none.
  bool Erase(const TKey& Key) {
    auto It = FBlocks.find(BlockOf(Key));
    if (It == FBlocks.end() || !(It->second.Present & MaskOf(Key))) return false;
    It->second.Slots[Bit(Key)] = TValue();
    It->second.Present &= ~MaskOf(Key);
    --FCount;
    if (It->second.Present == 0) FBlocks.erase(It);
    return true;
  }

  size_t size() const { return FCount; }
  bool empty() const { return FCount == 0; }
  void clear() {
    FBlocks.clear();
    FCount = 0;
  }
  // Room for about this many entries when they come in runs down columns.
  void reserve(size_t Entries) { FBlocks.reserve(Entries / BlockRows + 1); }

 private:
  struct TBlock {
    uint32_t Present = 0;  // bit n: row (block row) * BlockRows + n holds an entry
    TValue Slots[BlockRows];
  };
  using TBlocks = absl::flat_hash_map<TKey, TBlock>;

  static constexpr int32_t RowShift = 4;
  static_assert(BlockRows == 1 << RowShift);
  // Arithmetic shifts and masks, so that rows below 1 have blocks too.
  static TKey BlockOf(TKey Key) {
    Key.Row >>= RowShift;
    return Key;
  }
  static int32_t Bit(const TKey& Key) { return Key.Row & (BlockRows - 1); }
  static uint32_t MaskOf(const TKey& Key) { return 1u << Bit(Key); }

  TBlocks FBlocks;
  size_t FCount = 0;

 public:
  // Visits every entry once, in no promised order. Any insertion or removal
  // invalidates iterators and pointers to values.
  class TIterator {
   public:
    using value_type = std::pair<TKey, const TValue&>;
    value_type operator*() const {
      TKey Key = FBlock->first;
      Key.Row = Key.Row * BlockRows + FBit;
      return {Key, FBlock->second.Slots[FBit]};
    }
    TIterator& operator++() {
      Advance(FBit + 1);
      return *this;
    }
    bool operator==(const TIterator& Other) const { return FBlock == Other.FBlock && FBit == Other.FBit; }

   private:
    friend class TCellBlockMap;
    TIterator(typename TBlocks::const_iterator Block, typename TBlocks::const_iterator End) : FBlock(Block), FEnd(End) {
      Advance(0);
    }
    // Moves to the first entry at or after bit From of the current block.
    void Advance(int32_t From) {
      for (; FBlock != FEnd; ++FBlock, From = 0) {
        const uint32_t Rest = From < BlockRows ? FBlock->second.Present >> From : 0;
        if (Rest) {
          FBit = From + std::countr_zero(Rest);
          return;
        }
      }
      FBit = 0;
    }
    typename TBlocks::const_iterator FBlock, FEnd;
    int32_t FBit = 0;
  };
  TIterator begin() const { return TIterator(FBlocks.begin(), FBlocks.end()); }
  TIterator end() const { return TIterator(FBlocks.end(), FBlocks.end()); }
};

}  // namespace Tabrino
