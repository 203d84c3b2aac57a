#include "Tabrino.Formula.ExactIndex.h"

#include <algorithm>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

// Display texts compare ignoring ASCII case only; upper-casing ASCII gives
// equal keys for exactly the texts that compare equal.
std::string TextKey(const TCellValue& Cell) {
  return UpperAscii(Cell.ToDisplayString());
}

// 0 and -0 are one key, as they are one number to ==.
double NumberKey(double X) {
  return X == 0 ? 0.0 : X;
}

int64_t FirstOf(const absl::flat_hash_map<std::string, int64_t>& Map, const std::string& Key) {
  auto It = Map.find(Key);
  return It == Map.end() ? -1 : It->second;
}

}  // namespace

TExactMatchIndex::TExactMatchIndex(std::span<const TCellValue> Cells, int64_t Count, int64_t Stride) {
  for (int64_t At = 0; At < Count && static_cast<size_t>(At * Stride) < Cells.size(); ++At) {
    const TCellValue& Cell = Cells[At * Stride];
    std::string Text = TextKey(Cell);
    double X;
    const bool Numeric = AsNumber(Cell, X);
    // NaN equals nothing, so it is never indexed by number.
    if (Numeric && X == X) FByNumber.try_emplace(NumberKey(X), At);
    if (!Numeric) FByTextOfNonNumbers.try_emplace(Text, At);
    FByText.try_emplace(std::move(Text), At);
  }
}

int64_t TExactMatchIndex::Find(const TLookupKey& Key) const {
  const std::string Text = UpperAscii(Key.Text);
  if (!Key.IsNumber) return FirstOf(FByText, Text);
  // A numeric key meets numeric cells by number and the others by text.
  int64_t ByNumber = -1;
  if (auto It = FByNumber.find(NumberKey(Key.Number)); It != FByNumber.end()) ByNumber = It->second;
  const int64_t ByText = FirstOf(FByTextOfNonNumbers, Text);
  if (ByNumber < 0) return ByText;
  return ByText < 0 ? ByNumber : std::min(ByNumber, ByText);
}

const TExactMatchIndex* TExactIndexCache::For(const TFormulaArg& Table, int64_t Count, int64_t Stride) {
  const auto& Storage = Table.Cells.Shared();
  if (!Table.IsRange || !Storage || Count < MinCells) return nullptr;
  for (TEntry& E : FEntries) {
    if (E.Storage != Storage || E.Count != Count || E.Stride != Stride) continue;
    if (!E.Index) E.Index = std::make_unique<TExactMatchIndex>(std::span(*Storage), Count, Stride);
    return E.Index.get();
  }
  TEntry Entry{Storage, Count, Stride, nullptr};
  if (FEntries.size() < Capacity) {
    FEntries.push_back(std::move(Entry));
  } else {
    FEntries[FNextVictim] = std::move(Entry);
    FNextVictim = (FNextVictim + 1) % Capacity;
  }
  return nullptr;
}

}  // namespace Tabrino
