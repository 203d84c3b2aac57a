// The workbook theme and the colour arithmetic that resolves theme colours.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tabrino.CellFormat.h"

namespace Tabrino {

class TTabrinoTheme {
 public:
  std::vector<uint32_t> FColors;
  std::string FMajorFont;
  std::string FMinorFont;

  TTabrinoTheme() { SetDefaultOfficeTheme(); }
  void SetDefaultOfficeTheme();
  void AddColor(uint32_t ARGB) { FColors.push_back(ARGB); }
  // Indexes are the file's: 0/1 and 2/3 are swapped against the stored order.
  uint32_t ResolveThemeColor(int32_t Index, double Tint) const;
};

// Lightens (Tint > 0) or darkens (Tint < 0) in HSL space; alpha is kept.
uint32_t ApplyTint(uint32_t ARGB, double Tint);
uint32_t ResolveColor(const TColorRef& Ref, const TTabrinoTheme* Theme);

}  // namespace Tabrino
