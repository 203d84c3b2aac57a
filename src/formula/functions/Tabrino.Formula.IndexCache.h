// What the lookup and criteria indexes share: the keys cells are grouped by,
// and a small cache that builds an index only when a line of cells is
// searched a second time. Indexes are built over the immutable shared storage
// of range arguments, so an index stays exact for as long as its storage lives.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Tabrino.Formula.Builtins.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

// Display texts compare ignoring ASCII case only; upper-casing ASCII gives
// equal keys for exactly the texts that compare equal.
inline std::string IndexTextKey(const TCellValue& Cell) {
  return UpperAscii(Cell.ToDisplayString());
}

// 0 and -0 are one key, as they are one number to ==.
inline double IndexNumberKey(double X) {
  return X == 0 ? 0.0 : X;
}

// A few indexes by key, replaced round robin. The first request for a key
// only records it (an index of a table searched once would not pay); the
// second builds the index; later ones reuse it.
template <typename TKey, typename TIndex>
class TSecondUseCache {
 public:
  template <typename FBuild>
  const TIndex* For(const TKey& Key, FBuild&& Build) {
    for (TEntry& E : FEntries) {
      if (!(E.Key == Key)) continue;
      if (!E.Index) E.Index = std::make_unique<TIndex>(Build());
      return E.Index.get();
    }
    TEntry Entry{Key, nullptr};
    if (FEntries.size() < Capacity) {
      FEntries.push_back(std::move(Entry));
    } else {
      FEntries[FNextVictim] = std::move(Entry);
      FNextVictim = (FNextVictim + 1) % Capacity;
    }
    return nullptr;
  }
  void Clear() {
    FEntries.clear();
    FNextVictim = 0;
  }

 private:
  static constexpr size_t Capacity = 8;
  struct TEntry {
    TKey Key;
    std::unique_ptr<TIndex> Index;
  };
  std::vector<TEntry> FEntries;
  size_t FNextVictim = 0;
};

}  // namespace Tabrino
