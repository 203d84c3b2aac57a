#include "Tabrino.Worksheet.h"

#include <algorithm>
#include <optional>

#include "Tabrino.NumberFormat.h"
#include "Tabrino.OutermostScope.h"

namespace Tabrino {

TCell TWorksheet::GetCellAt(int32_t Col, int32_t Row) const {
  const TStoredCell* Stored = FindCell(Col, Row);
  return Stored ? Stored->ToCell() : TCell::CreateEmpty();
}

// One of the sheet's spare cells, or a cell of its own while a handler runs.
class TWorksheet::TEventCell {
 public:
  TEventCell(TWorksheet& Sheet, TCell& Spare) : FCell(Sheet.FFiring ? FOwn.emplace() : Spare) {}
  TCell& operator*() { return FCell; }

 private:
  std::optional<TCell> FOwn;
  TCell& FCell;
};

void TWorksheet::FireChange(const TCellAddress& Address, const TCell& OldCell, const TCell& NewCell) {
  TOutermostScope Outermost(FFiring);
  FOnChange(*this, Address, OldCell, NewCell);
}

void TWorksheet::SetCell(const TCellAddress& Address, const TCell& Cell) {
  static const TCell NoCell;
  // The old cell is only needed by the change event.
  std::optional<TEventCell> Old;
  const TStoredCell* Stored = FOnChange ? FindCell(Address.Col, Address.Row) : nullptr;
  if (Stored) Stored->CopyTo(*Old.emplace(*this, FSpareOld));
  if (Cell.IsEmpty()) {
    FCells.Erase(TCellKey{Address.Col, Address.Row});
  } else {
    FCells[TCellKey{Address.Col, Address.Row}] = TStoredCell::FromCell(Cell);
  }
  UpdateUsedBounds(Address);
  if (FOnChange) FireChange(Address, Old ? **Old : NoCell, Cell);
}

void TWorksheet::SetCachedResult(int32_t Col, int32_t Row, const TCellValue& Value) {
  TStoredCell* Stored = FCells.Find(TCellKey{Col, Row});
  if (!Stored || Stored->Kind() != cvkFormula) return;
  // Updated where it lies: a recalculation writes every formula's cache, and
  // rebuilding each record would cost an allocation per formula.
  if (!FOnChange) {
    Stored->SetCachedResult(Value);
    return;
  }
  TEventCell Old(*this, FSpareOld), New(*this, FSpareNew);
  Stored->CopyTo(*Old);
  Stored->SetCachedResult(Value);
  Stored->CopyTo(*New);
  FireChange(TCellAddress{Col, Row}, *Old, *New);
}

void TWorksheet::ExpandUsedBounds(int32_t Col, int32_t Row) {
  FUsedMaxCol = std::max(FUsedMaxCol, Col);
  FUsedMaxRow = std::max(FUsedMaxRow, Row);
}

void TWorksheet::RecalcUsedBounds() {
  FUsedMaxCol = 1;
  FUsedMaxRow = 1;
  for (const auto& [Key, Cell] : FCells) ExpandUsedBounds(Key.Col, Key.Row);
}

TCellRange TWorksheet::ClipToUsedBounds(TCellRange Range) const {
  if (Range.StartRow == 1 && Range.EndRow == MaxRow) Range.EndRow = std::max(1, FUsedMaxRow);
  if (Range.StartCol == 1 && Range.EndCol == MaxCol) Range.EndCol = std::max(1, FUsedMaxCol);
  return Range;
}

TCellFormat TWorksheet::ResolveFormat(const TCellAddress& Address, const TTabrinoStyleSheet* Styles) const {
  return FormatOf(FindCell(Address.Col, Address.Row), Styles);
}

const TCellFormat& TWorksheet::FormatOf(const TStoredCell* Stored, const TTabrinoStyleSheet* Styles) {
  static const TCellFormat Default = TCellFormat::Default();
  if (Stored)
    if (const TCellFormat* Override = Stored->FormatOverride()) return *Override;
  const int32_t Style = Stored ? Stored->StyleIndex() : 0;
  return Styles ? Styles->ResolveFormat(Style) : Default;
}

TCellValue TWorksheet::GetEffectiveValue(const TCellAddress& Address) const {
  const TStoredCell* Stored = FindCell(Address.Col, Address.Row);
  if (!Stored || Stored->Kind() == cvkEmpty) {
    const TCellValue* Spilled = FSpills.FindValue(Address.Col, Address.Row);
    return Spilled ? *Spilled : TCellValue::Empty();
  }
  if (Stored->Kind() == cvkFormula) {
    const TCellValue* Cached = Stored->CachedValue();
    return Cached ? *Cached : TCellValue::Empty();
  }
  return Stored->Value();
}

std::string TWorksheet::GetDisplayText(const TCellAddress& Address, const TTabrinoStyleSheet* Styles) const {
  const TStoredCell* Stored = FindCell(Address.Col, Address.Row);
  const TCellValueKind Kind = Stored ? Stored->Kind() : cvkEmpty;
  const TCellValue* Spilled = Kind == cvkEmpty ? FSpills.FindValue(Address.Col, Address.Row) : nullptr;
  if (!Stored && !Spilled) return {};
  if (FShowFormulas && Kind == cvkFormula) return std::string(Stored->Formula());
  if (Stored && Stored->HasRichText()) {
    std::string Runs = Stored->RichTextPlain();
    if (!Runs.empty()) return Runs;
  }
  auto Formatted = [&](const TCellValue& V) -> std::string {
    if (V.Kind == cvkNumber && !FShowZeros && IsZero(V.Number)) return {};
    // By reference: copying a whole format per shown cell cost more than formatting it.
    return FormatCellValue(V, FormatOf(Stored, Styles).NumberFormat);
  };
  switch (Kind) {
    case cvkEmpty: return Spilled ? Formatted(*Spilled) : std::string();
    case cvkNumber: return Formatted(Stored->Value());
    case cvkFormula: {
      const TCellValue* Cached = Stored->CachedValue();
      return Cached ? Formatted(*Cached) : std::string(Stored->Formula());
    }
    default: return Stored->Value().ToDisplayString();
  }
}

void TWorksheet::SetHyperlink(int32_t Col, int32_t Row, const std::string& Target) {
  bool Blank = std::all_of(Target.begin(), Target.end(), [](unsigned char C) { return C <= ' '; });
  if (Blank) {
    ClearHyperlink(Col, Row);
  } else {
    FHyperlinks.insert_or_assign(TCellKey{Col, Row}, Target);
  }
}

bool TWorksheet::FindHyperlink(int32_t Col, int32_t Row, std::string& Target) const {
  auto It = FHyperlinks.find(TCellKey{Col, Row});
  if (It == FHyperlinks.end()) return false;
  Target = It->second;
  return true;
}

void TWorksheet::RefreshTableColumnNames() {
  for (const auto& Table : FTables.FItems) {
    if (!Table->FHasHeaderRow) continue;
    const TCellRange Ref = Table->FRef.Normalize();
    std::vector<std::string> Names;
    Names.reserve(Table->ColumnCount());
    for (int32_t Col = Ref.StartCol; Col <= Ref.EndCol; ++Col) {
      const TStoredCell* Header = FindCell(Col, Ref.StartRow);
      std::string Name;
      if (Header) Name = Header->HasRichText() ? Header->RichTextPlain() : Header->Value().ToDisplayString();
      if (Name.empty()) Name = "Column" + std::to_string(Col - Ref.StartCol + 1);
      Names.push_back(std::move(Name));
    }
    Table->SetColumnNames(std::move(Names));
  }
}

}  // namespace Tabrino
