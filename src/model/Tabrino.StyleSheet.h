// The workbook's indexed format tables. A cell format record is complete in
// itself; the font, fill and border tables are kept for the file formats.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Tabrino.CellFormat.h"

namespace Tabrino {

class TTabrinoStyleSheet {
 public:
  std::vector<TCellFontInfo> FFonts;
  std::vector<TCellFillInfo> FFills;
  std::vector<TCellBorderInfo> FBorders;
  std::map<int32_t, std::string> FNumFmts;
  std::vector<TCellFormat> FCellXfs;
  std::vector<TCellFormat> FCellStyleXfs;

  TTabrinoStyleSheet() { Clear(); }
  // Leaves one default entry at index 0 of each table; cell style formats empty.
  void Clear();

  // Append and return the new index; no interning here, callers deduplicate.
  int32_t AddFont(const TCellFontInfo& Font);
  int32_t AddFill(const TCellFillInfo& Fill);
  int32_t AddBorder(const TCellBorderInfo& Border);
  int32_t AddCellXf(const TCellFormat& Format);

  const TCellFormat& GetCellXf(int32_t Index) const;
  const TCellFormat& ResolveFormat(int32_t Index) const { return GetCellXf(Index); }
  void RegisterNumFmt(int32_t Id, const std::string& Text) { FNumFmts[Id] = Text; }
  std::string GetNumFmt(int32_t Id) const;
};

}  // namespace Tabrino
