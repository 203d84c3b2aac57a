#include "Tabrino.SheetTable.h"

#include <absl/strings/match.h>

namespace Tabrino {

TSheetTable::TSheetTable(std::string Name, const TCellRange& Ref)
    : FName(Name), FDisplayName(std::move(Name)), FRef(Ref.Normalize()) {}

int32_t TSheetTable::ColumnIndex(const std::string& Name) const {
  for (size_t I = 0; I < FColumnNames.size(); ++I)
    if (absl::EqualsIgnoreCase(FColumnNames[I], Name)) return static_cast<int32_t>(I);
  return -1;
}

TCellRange TSheetTable::DataRange() const {
  TCellRange Data = FRef.Normalize();
  if (FHasHeaderRow) ++Data.StartRow;
  // A totals row is only cut off while a data row remains above it.
  if (FHasTotalsRow && Data.StartRow < Data.EndRow) --Data.EndRow;
  if (Data.EndRow < Data.StartRow) Data.EndRow = Data.StartRow;
  return Data;
}

TCellRange TSheetTable::ColumnDataRange(const std::string& Name) const {
  const TCellRange Data = DataRange();
  const int32_t Index = ColumnIndex(Name);
  if (Index < 0) return TCellRange::Make(Data.StartCol, Data.StartRow, Data.StartCol, Data.StartRow - 1);
  const int32_t Col = Data.StartCol + Index;
  return TCellRange::Make(Col, Data.StartRow, Col, Data.EndRow);
}

int32_t TSheetTable::HeaderRow() const {
  return FHasHeaderRow ? FRef.Normalize().StartRow : 0;
}

bool TSheetTable::IsHeaderRow(int32_t Row) const {
  return FHasHeaderRow && Row == FRef.Normalize().StartRow;
}

bool TSheetTable::IsTotalsRow(int32_t Row) const {
  return FHasTotalsRow && Row == FRef.Normalize().EndRow;
}

int32_t TSheetTable::DataBandIndex(int32_t Row) const {
  const TCellRange Data = DataRange();
  return Row >= Data.StartRow && Row <= Data.EndRow ? Row - Data.StartRow : -1;
}

TSheetTable* TSheetTableList::Add(TSheetTable Table) {
  FItems.push_back(std::make_unique<TSheetTable>(std::move(Table)));
  return FItems.back().get();
}

TSheetTable* TSheetTableList::GetItem(int32_t Index) const {
  return Index >= 0 && Index < Count() ? FItems[Index].get() : nullptr;
}

TSheetTable* TSheetTableList::FindByName(const std::string& Name) const {
  for (const auto& Table : FItems)
    if (absl::EqualsIgnoreCase(Table->FName, Name) || absl::EqualsIgnoreCase(Table->FDisplayName, Name))
      return Table.get();
  return nullptr;
}

TSheetTable* TSheetTableList::FindContaining(int32_t Col, int32_t Row) const {
  for (const auto& Table : FItems)
    if (Table->Contains(Col, Row)) return Table.get();
  return nullptr;
}

void TSheetTableList::Shift(TShiftAxis Axis, int32_t At, int32_t Delta) {
  if (Delta == 0) return;
  std::erase_if(FItems, [&](const std::unique_ptr<TSheetTable>& Table) {
    bool Deleted = false;
    Table->FRef = AdjustRange(Table->FRef, Axis, At, Delta, Deleted);
    return Deleted;
  });
}

void TSheetTableList::Move(TShiftAxis Axis, int32_t From, int32_t Count, int32_t Final) {
  for (const auto& Table : FItems) Table->FRef = AdjustRangeForMove(Table->FRef, Axis, From, Count, Final);
}

}  // namespace Tabrino
