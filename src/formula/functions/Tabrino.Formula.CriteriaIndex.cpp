#include "Tabrino.Formula.CriteriaIndex.h"

#include <algorithm>
#include <cmath>

#include "Tabrino.Formula.Criterion.h"

namespace Tabrino {

TCriteriaIndex::TCriteriaIndex(std::span<const TCellValue> Tested, std::span<const TCellValue> Summed) {
  const bool Counting = Summed.empty();
  FExtent = static_cast<int64_t>(Counting ? Tested.size() : std::min(Tested.size(), Summed.size()));
  for (int64_t At = 0; At < FExtent; ++At) {
    const TCellValue& Cell = Tested[At];
    auto AddTo = [&](TGroup& Group) {
      ++Group.Matches;
      if (Counting || Summed[At].Kind != cvkNumber) return;
      Group.Totals.Sum += Summed[At].Number;
      ++Group.Totals.Count;
    };
    std::string Text = IndexTextKey(Cell);
    double X;
    const bool Numeric = AsNumber(Cell, X);
    // NaN equals and orders with nothing, so it is never indexed by number.
    if (Numeric && !std::isnan(X)) {
      AddTo(FByNumber[IndexNumberKey(X)]);
      if (Counting) FSortedNumbers.push_back(X);
    }
    if (!Numeric) AddTo(FByTextOfNonNumbers[Text]);
    AddTo(FByText[std::move(Text)]);
  }
  std::sort(FSortedNumbers.begin(), FSortedNumbers.end());
}

void TCriteriaIndex::EqualGroups(const TCriterion& Criterion, const TGroup*& ByNumber, const TGroup*& ByText) const {
  auto Find = [](const auto& Map, const auto& Key) -> const TGroup* {
    auto It = Map.find(Key);
    return It == Map.end() ? nullptr : &It->second;
  };
  const std::string Text = UpperAscii(Criterion.Operand());
  // A numeric operand meets numeric cells by number and the others by text.
  ByNumber = Criterion.OperandIsNumber() ? Find(FByNumber, IndexNumberKey(Criterion.Number())) : nullptr;
  ByText = Criterion.OperandIsNumber() ? Find(FByTextOfNonNumbers, Text) : Find(FByText, Text);
}

bool TCriteriaIndex::TrySum(const TCriterion& Criterion, TMatchTotals& Totals) const {
  if (Criterion.Op() != coEqual) return false;
  const TGroup *ByNumber, *ByText;
  EqualGroups(Criterion, ByNumber, ByText);
  const bool FromNumbers = ByNumber && ByNumber->Totals.Count > 0;
  const bool FromTexts = ByText && ByText->Totals.Count > 0;
  // Summed numbers from both groups would interleave in the walk.
  if (FromNumbers && FromTexts) return false;
  Totals = FromNumbers ? ByNumber->Totals : FromTexts ? ByText->Totals : TMatchTotals();
  return true;
}

bool TCriteriaIndex::TryCount(const TCriterion& Criterion, double& Count) const {
  if (Criterion.Op() == coEqual || Criterion.Op() == coNotEqual) {
    const TGroup *ByNumber, *ByText;
    EqualGroups(Criterion, ByNumber, ByText);
    const int64_t Equal = (ByNumber ? ByNumber->Matches : 0) + (ByText ? ByText->Matches : 0);
    Count = static_cast<double>(Criterion.Op() == coEqual ? Equal : FExtent - Equal);
    return true;
  }
  // Orderings hold only between numbers.
  if (!Criterion.OperandIsNumber()) {
    Count = 0;
    return true;
  }
  const double N = Criterion.Number();
  const auto Begin = FSortedNumbers.begin(), End = FSortedNumbers.end();
  switch (Criterion.Op()) {
    case coLess: Count = static_cast<double>(std::lower_bound(Begin, End, N) - Begin); break;
    case coLessEqual: Count = static_cast<double>(std::upper_bound(Begin, End, N) - Begin); break;
    case coGreater: Count = static_cast<double>(End - std::upper_bound(Begin, End, N)); break;
    case coGreaterEqual: Count = static_cast<double>(End - std::lower_bound(Begin, End, N)); break;
    default: return false;
  }
  return true;
}

const TCriteriaIndex* TCriteriaIndexCache::For(const TFormulaArg& Tested, const TFormulaArg* Summed) {
  if (!Tested.IsRange || !Tested.Cells.Shared() || Tested.Cells.size() < MinCells) return nullptr;
  if (Summed && (!Summed->IsRange || !Summed->Cells.Shared() || Summed->Cells.empty())) return nullptr;
  const TKey Key{Tested.Cells.Shared(), Summed ? Summed->Cells.Shared() : nullptr};
  return FCache.For(Key, [&] {
    return TCriteriaIndex(std::span(*Key.Tested), Key.Summed ? std::span(*Key.Summed) : std::span<const TCellValue>());
  });
}

}  // namespace Tabrino
