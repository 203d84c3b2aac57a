#include "Tabrino.StyleSheet.h"

#include "Tabrino.NumberFormat.h"

namespace Tabrino {

void TTabrinoStyleSheet::Clear() {
  FFonts = {TCellFontInfo::Default()};
  FFills = {TCellFillInfo::None()};
  FBorders = {TCellBorderInfo::None()};
  FNumFmts.clear();
  FCellXfs = {TCellFormat::Default()};
  FCellStyleXfs.clear();
}

template <typename T>
static int32_t Append(std::vector<T>& Table, const T& Item) {
  Table.push_back(Item);
  return static_cast<int32_t>(Table.size() - 1);
}

int32_t TTabrinoStyleSheet::AddFont(const TCellFontInfo& Font) { return Append(FFonts, Font); }
int32_t TTabrinoStyleSheet::AddFill(const TCellFillInfo& Fill) { return Append(FFills, Fill); }
int32_t TTabrinoStyleSheet::AddBorder(const TCellBorderInfo& Border) { return Append(FBorders, Border); }
int32_t TTabrinoStyleSheet::AddCellXf(const TCellFormat& Format) { return Append(FCellXfs, Format); }

const TCellFormat& TTabrinoStyleSheet::GetCellXf(int32_t Index) const {
  static const TCellFormat Default = TCellFormat::Default();
  if (Index < 0 || Index >= static_cast<int32_t>(FCellXfs.size())) return Default;
  return FCellXfs[Index];
}

std::string TTabrinoStyleSheet::GetNumFmt(int32_t Id) const {
  auto It = FNumFmts.find(Id);
  return It != FNumFmts.end() ? It->second : BuiltInExcelNumberFormat(Id);
}

}  // namespace Tabrino
