#include "Tabrino.Formula.ExactIndex.h"

#include <algorithm>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

int64_t FirstOf(const absl::flat_hash_map<std::string, int64_t>& Map, const std::string& Key) {
  auto It = Map.find(Key);
  return It == Map.end() ? -1 : It->second;
}

}  // namespace

TExactMatchIndex::TExactMatchIndex(std::span<const TCellValue> Cells, int64_t Count, int64_t Stride) {
  for (int64_t At = 0; At < Count && static_cast<size_t>(At * Stride) < Cells.size(); ++At) {
    const TCellValue& Cell = Cells[At * Stride];
    std::string Text = IndexTextKey(Cell);
    double X;
    const bool Numeric = AsNumber(Cell, X);
    // NaN equals nothing, so it is never indexed by number.
    if (Numeric && X == X) FByNumber.try_emplace(IndexNumberKey(X), At);
    if (!Numeric) FByTextOfNonNumbers.try_emplace(Text, At);
    FByText.try_emplace(std::move(Text), At);
  }
}

int64_t TExactMatchIndex::Find(const TLookupKey& Key) const {
  const std::string Text = UpperAscii(Key.Text);
  if (!Key.IsNumber) return FirstOf(FByText, Text);
  // A numeric key meets numeric cells by number and the others by text.
  int64_t ByNumber = -1;
  if (auto It = FByNumber.find(IndexNumberKey(Key.Number)); It != FByNumber.end()) ByNumber = It->second;
  const int64_t ByText = FirstOf(FByTextOfNonNumbers, Text);
  if (ByNumber < 0) return ByText;
  return ByText < 0 ? ByNumber : std::min(ByNumber, ByText);
}

const TExactMatchIndex* TExactIndexCache::For(const TFormulaArg& Table, int64_t Count, int64_t Stride) {
  const auto& Storage = Table.Cells.Shared();
  if (!Table.IsRange || !Storage || Count < MinCells) return nullptr;
  return FCache.For(TKey{Storage, Count, Stride}, [&] { return TExactMatchIndex(std::span(*Storage), Count, Stride); });
}

}  // namespace Tabrino
