// One sheet of a workbook: its cells and per-sheet state. Every change to a
// cell goes through SetCell, which fires FOnChange; the sheet knows nothing
// of formulas beyond the cached results written into its cells.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstdint>
#include <functional>
#include <string>

#include "Tabrino.Cell.h"
#include "Tabrino.CellStore.h"
#include "Tabrino.SheetTable.h"
#include "Tabrino.Spill.h"
#include "Tabrino.StyleSheet.h"
#include "Tabrino.Types.h"

namespace Tabrino {

class TWorksheet;
using TWorksheetChangeEvent =
    std::function<void(TWorksheet& Sender, const TCellAddress& Address, const TCell& OldCell, const TCell& NewCell)>;

class TWorksheet {
 public:
  std::string FName;
  TCellMap FCells;
  TSheetTableList FTables;
  // Arrays spilled by formulas into the empty cells beside them.
  TSpillMap FSpills;
  int32_t FUsedMaxCol = 1;
  int32_t FUsedMaxRow = 1;
  bool FShowGridLines = true;
  bool FShowHeaders = true;
  bool FShowFormulas = false;
  bool FShowZeros = true;
  bool FR1C1 = false;
  int32_t FFrozenRows = 0;
  int32_t FFrozenCols = 0;
  int32_t FZoom = 100;
  bool FRightToLeft = false;
  bool FProtected = false;
  TSheetVisibility FVisibility = svVisible;
  absl::flat_hash_map<TCellKey, std::string> FHyperlinks;
  TWorksheetChangeEvent FOnChange;

  explicit TWorksheet(std::string Name) : FName(std::move(Name)) {}
  TWorksheet(const TWorksheet&) = delete;
  TWorksheet& operator=(const TWorksheet&) = delete;

  bool IsVisible() const { return FVisibility == svVisible; }
  static std::string CellKey(const TCellAddress& Address) { return Address.ToKey(); }

  TCell GetCell(const TCellAddress& Address) const { return GetCellAt(Address.Col, Address.Row); }
  TCell GetCellAt(int32_t Col, int32_t Row) const;
  bool HasCell(const TCellAddress& Address) const { return FCells.Contains(TCellKey{Address.Col, Address.Row}); }
  // Read access without copying the cell: nullptr when the cell is absent.
  const TStoredCell* FindCell(int32_t Col, int32_t Row) const { return FCells.Find(TCellKey{Col, Row}); }

  // The single write path: store (or remove when empty), raise the used
  // bounds, then fire FOnChange with the old and new cell.
  void SetCell(const TCellAddress& Address, const TCell& Cell);
  void ClearCell(const TCellAddress& Address) { SetCell(Address, TCell::CreateEmpty()); }
  // A formula cell's new cached result, with the same effect and change event
  // as storing the cell again with that cache; nothing for other cells.
  void SetCachedResult(int32_t Col, int32_t Row, const TCellValue& Value);
  // Number of stored cells.
  size_t CellCount() const { return FCells.size(); }

  void UpdateUsedBounds(const TCellAddress& Address) { ExpandUsedBounds(Address.Col, Address.Row); }
  void ExpandUsedBounds(int32_t Col, int32_t Row);
  void RecalcUsedBounds();
  // Whole rows and columns shrink to the used part of the sheet as it is now,
  // so that A:A costs what the sheet holds, not a million cells.
  TCellRange ClipToUsedBounds(TCellRange Range) const;

  TCellFormat ResolveFormat(const TCellAddress& Address, const TTabrinoStyleSheet* Styles) const;
  // The format in force for a stored cell (nullptr: an absent one), without a copy.
  static const TCellFormat& FormatOf(const TStoredCell* Stored, const TTabrinoStyleSheet* Styles);
  // A formula's cached result (empty without one); a spilled value in an
  // empty cell; otherwise the value itself.
  TCellValue GetEffectiveValue(const TCellAddress& Address) const;
  std::string GetDisplayText(const TCellAddress& Address, const TTabrinoStyleSheet* Styles) const;

  void SetHyperlink(int32_t Col, int32_t Row, const std::string& Target);
  bool FindHyperlink(int32_t Col, int32_t Row, std::string& Target) const;
  void ClearHyperlink(int32_t Col, int32_t Row) { FHyperlinks.erase(TCellKey{Col, Row}); }

  // Column names of every table with a header row, read again from its header
  // cells; an empty header cell names its column "Column<n>".
  void RefreshTableColumnNames();

 private:
  // The cells FOnChange is given are built into these spares, so that a
  // write does not construct two whole cells for its event; a handler that
  // writes again gets fresh ones, as it may still hold the outer pair.
  TCell FSpareOld, FSpareNew;
  bool FFiring = false;
  class TEventCell;
  void FireChange(const TCellAddress& Address, const TCell& OldCell, const TCell& NewCell);
};

}  // namespace Tabrino
