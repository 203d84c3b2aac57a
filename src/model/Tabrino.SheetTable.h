// Named rectangular tables over sheet cells. A table holds no cell data, only
// its rectangle, flags and column names; the sheet owns the list and keeps the
// rectangles in step with structural edits.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Tabrino.Structure.h"
#include "Tabrino.Types.h"

namespace Tabrino {

class TSheetTable {
 public:
  std::string FName;
  std::string FDisplayName;
  TCellRange FRef;
  bool FHasHeaderRow = true;
  bool FHasTotalsRow = false;
  bool FShowAutoFilter = true;
  bool FShowRowStripes = true;
  bool FShowColumnStripes = false;
  std::string FStyleName;
  std::vector<std::string> FColumnNames;

  TSheetTable(std::string Name, const TCellRange& Ref);

  void SetColumnNames(std::vector<std::string> Names) { FColumnNames = std::move(Names); }
  int32_t ColumnCount() const { return FRef.Width(); }
  // 0-based position of the column name, ignoring case; -1 when unknown.
  int32_t ColumnIndex(const std::string& Name) const;

  // The rows between the header and the totals row. Never empty: a table of
  // only a header gives the row under it, which lies outside the table.
  TCellRange DataRange() const;
  // The data rows of one column; for an unknown name an empty range (end row
  // above start row) in the first column.
  TCellRange ColumnDataRange(const std::string& Name) const;

  bool Contains(int32_t Col, int32_t Row) const { return FRef.Contains(Col, Row); }
  // First row of the table, or 0 without a header.
  int32_t HeaderRow() const;
  bool IsHeaderRow(int32_t Row) const;
  bool IsTotalsRow(int32_t Row) const;
  // 0-based position of Row within DataRange, -1 outside it; drives striping.
  int32_t DataBandIndex(int32_t Row) const;
};

class TSheetTableList {
 public:
  std::vector<std::unique_ptr<TSheetTable>> FItems;

  void Clear() { FItems.clear(); }
  // Takes the table; the returned pointer stays valid until it is removed.
  TSheetTable* Add(TSheetTable Table);
  int32_t Count() const { return static_cast<int32_t>(FItems.size()); }
  // nullptr out of range.
  TSheetTable* GetItem(int32_t Index) const;

  // First table whose name or display name matches, ignoring case.
  TSheetTable* FindByName(const std::string& Name) const;
  TSheetTable* FindContaining(int32_t Col, int32_t Row) const;

  // Tables whose rows or columns are all deleted go. Column names stay as they
  // were: the sheet rebuilds them from the header cells.
  void ShiftRows(int32_t At, int32_t Delta) { Shift(saRows, At, Delta); }
  void ShiftColumns(int32_t At, int32_t Delta) { Shift(saColumns, At, Delta); }
  void MoveRows(int32_t From, int32_t Count, int32_t Final) { Move(saRows, From, Count, Final); }
  void MoveColumns(int32_t From, int32_t Count, int32_t Final) { Move(saColumns, From, Count, Final); }

 private:
  void Shift(TShiftAxis Axis, int32_t At, int32_t Delta);
  void Move(TShiftAxis Axis, int32_t From, int32_t Count, int32_t Final);
};

}  // namespace Tabrino
