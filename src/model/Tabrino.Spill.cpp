#include "Tabrino.Spill.h"

#include <algorithm>

namespace Tabrino {

namespace {

// Grid cells of 16 columns by 64 rows: a 1000 by 1000 block meets about a
// thousand of them, and a column of small spills puts at most 64 in one.
constexpr int32_t ColBlockShift = 4;
constexpr int32_t RowBlockShift = 6;

const TCellValue EmptyValue;

}  // namespace

TSpillRange TSpillRange::Create(int32_t AnchorCol, int32_t AnchorRow, int32_t EndCol, int32_t EndRow,
                                TSpillValues Values) {
  return TSpillRange{AnchorCol, AnchorRow, EndCol, EndRow, std::move(Values)};
}

const TCellValue& TSpillRange::ValueAt(int32_t Col, int32_t Row) const {
  if (!Contains(Col, Row) || !Values) return EmptyValue;
  const size_t Index = size_t(Row - AnchorRow) * size_t(ColCount()) + size_t(Col - AnchorCol);
  return Index < Values->size() ? (*Values)[Index] : EmptyValue;
}

template <typename F>
void TSpillMap::ForEachBucket(const TCellRange& Range, F&& Visit) {
  for (int32_t RowBlock = Range.StartRow >> RowBlockShift; RowBlock <= Range.EndRow >> RowBlockShift; ++RowBlock)
    for (int32_t ColBlock = Range.StartCol >> ColBlockShift; ColBlock <= Range.EndCol >> ColBlockShift; ++ColBlock)
      Visit(TBucketKey{ColBlock, RowBlock});
}

void TSpillMap::SetSpill(int32_t AnchorCol, int32_t AnchorRow, int32_t RowCount, int32_t ColCount,
                         TSpillValues Values) {
  ClearAnchor(AnchorCol, AnchorRow);
  if (RowCount < 1 || ColCount < 1 || (RowCount == 1 && ColCount == 1)) return;
  if (AnchorCol < 1 || AnchorRow < 1 || int64_t(AnchorCol) + ColCount - 1 > MaxCol ||
      int64_t(AnchorRow) + RowCount - 1 > MaxRow)
    return;
  const TSpillRange Range = TSpillRange::Create(AnchorCol, AnchorRow, AnchorCol + ColCount - 1,
                                                AnchorRow + RowCount - 1, std::move(Values));
  const TCellKey Anchor{AnchorCol, AnchorRow};
  ForEachBucket(Range.AsRange(), [&](const TBucketKey& Bucket) { FBuckets[Bucket].push_back(Anchor); });
  FByAnchor.insert_or_assign(Anchor, TEntry{Range, FNextSerial++});
}

void TSpillMap::ClearAnchor(int32_t Col, int32_t Row) {
  const TCellKey Anchor{Col, Row};
  auto It = FByAnchor.find(Anchor);
  if (It == FByAnchor.end()) return;
  ForEachBucket(It->second.Range.AsRange(), [&](const TBucketKey& Bucket) {
    auto Found = FBuckets.find(Bucket);
    if (Found == FBuckets.end()) return;
    std::erase(Found->second, Anchor);
    if (Found->second.empty()) FBuckets.erase(Found);
  });
  FByAnchor.erase(It);
}

void TSpillMap::ClearAll() {
  FByAnchor.clear();
  FBuckets.clear();
}

const TSpillMap::TEntry* TSpillMap::FindCovering(int32_t Col, int32_t Row) const {
  if (FBuckets.empty()) return nullptr;
  auto Bucket = FBuckets.find(TBucketKey{Col >> ColBlockShift, Row >> RowBlockShift});
  if (Bucket == FBuckets.end()) return nullptr;
  const TEntry* Newest = nullptr;
  for (const TCellKey& Anchor : Bucket->second) {
    const TEntry& Entry = FByAnchor.find(Anchor)->second;
    const TSpillRange& R = Entry.Range;
    if (!R.Contains(Col, Row) || (R.AnchorCol == Col && R.AnchorRow == Row)) continue;
    if (!Newest || Entry.Serial > Newest->Serial) Newest = &Entry;
  }
  return Newest;
}

bool TSpillMap::TryGetValue(int32_t Col, int32_t Row, TCellValue& Value) const {
  const TCellValue* Found = FindValue(Col, Row);
  if (!Found) return false;
  Value = *Found;
  return true;
}

const TCellValue* TSpillMap::FindValue(int32_t Col, int32_t Row) const {
  const TEntry* Entry = FindCovering(Col, Row);
  return Entry ? &Entry->Range.ValueAt(Col, Row) : nullptr;
}

bool TSpillMap::FindAnchor(int32_t Col, int32_t Row, int32_t& AnchorCol, int32_t& AnchorRow) const {
  AnchorCol = Col;
  AnchorRow = Row;
  if (FByAnchor.contains(TCellKey{Col, Row})) return true;
  const TEntry* Entry = FindCovering(Col, Row);
  if (!Entry) return false;
  AnchorCol = Entry->Range.AnchorCol;
  AnchorRow = Entry->Range.AnchorRow;
  return true;
}

bool TSpillMap::TryGetSpill(int32_t AnchorCol, int32_t AnchorRow, TSpillRange& Range) const {
  const TSpillRange* Found = FindSpill(AnchorCol, AnchorRow);
  if (Found) Range = *Found;
  return Found != nullptr;
}

const TSpillRange* TSpillMap::FindSpill(int32_t AnchorCol, int32_t AnchorRow) const {
  auto It = FByAnchor.find(TCellKey{AnchorCol, AnchorRow});
  return It == FByAnchor.end() ? nullptr : &It->second.Range;
}

bool TSpillMap::CoversAnyOf(const TCellRange& Range, int32_t ExceptCol, int32_t ExceptRow) const {
  const TCellRange R = Range.Normalize();
  auto Meets = [&](const TSpillRange& Spill) {
    const int32_t Left = std::max(R.StartCol, Spill.AnchorCol), Right = std::min(R.EndCol, Spill.EndCol);
    const int32_t Top = std::max(R.StartRow, Spill.AnchorRow), Bottom = std::min(R.EndRow, Spill.EndRow);
    if (Left > Right || Top > Bottom) return false;
    // The overlap is a rectangle: it matters unless it is the excepted cell alone.
    return Left != Right || Top != Bottom || Left != ExceptCol || Top != ExceptRow;
  };
  const int64_t BucketsOfRange = (int64_t(R.EndCol >> ColBlockShift) - (R.StartCol >> ColBlockShift) + 1) *
                                 (int64_t(R.EndRow >> RowBlockShift) - (R.StartRow >> RowBlockShift) + 1);
  if (BucketsOfRange > int64_t(FByAnchor.size())) {
    for (const auto& [Key, Entry] : FByAnchor)
      if (Meets(Entry.Range)) return true;
    return false;
  }
  bool Found = false;
  ForEachBucket(R, [&](const TBucketKey& Bucket) {
    if (Found) return;
    auto It = FBuckets.find(Bucket);
    if (It == FBuckets.end()) return;
    for (const TCellKey& Anchor : It->second)
      if (Meets(FByAnchor.find(Anchor)->second.Range)) Found = true;
  });
  return Found;
}

void TSpillMap::CollectNavRowsInColumn(int32_t Col, std::vector<int32_t>& Rows) const {
  for (const auto& [Key, Entry] : FByAnchor) {
    const TSpillRange& R = Entry.Range;
    if (Col < R.AnchorCol || Col > R.EndCol) continue;
    for (int32_t Row = R.AnchorRow; Row <= R.EndRow; ++Row)
      if (Col != R.AnchorCol || Row != R.AnchorRow) Rows.push_back(Row);
  }
  for (const auto& [Key, Entry] : FByAnchor)
    if (Key.Col == Col) Rows.push_back(Key.Row);
}

void TSpillMap::CollectNavColsInRow(int32_t Row, std::vector<int32_t>& Cols) const {
  for (const auto& [Key, Entry] : FByAnchor) {
    const TSpillRange& R = Entry.Range;
    if (Row < R.AnchorRow || Row > R.EndRow) continue;
    for (int32_t Col = R.AnchorCol; Col <= R.EndCol; ++Col)
      if (Col != R.AnchorCol || Row != R.AnchorRow) Cols.push_back(Col);
  }
  for (const auto& [Key, Entry] : FByAnchor)
    if (Key.Row == Row) Cols.push_back(Key.Col);
}

void TSpillMap::ShiftRows(int32_t /*Index*/, int32_t Delta) {
  if (Delta != 0) ClearAll();
}

void TSpillMap::ShiftColumns(int32_t /*Index*/, int32_t Delta) {
  if (Delta != 0) ClearAll();
}

void TSpillMap::MoveRows(int32_t From, int32_t Count, int32_t Final) {
  if (Count >= 1 && Final != From) ClearAll();
}

void TSpillMap::MoveColumns(int32_t From, int32_t Count, int32_t Final) {
  if (Count >= 1 && Final != From) ClearAll();
}

}  // namespace Tabrino
