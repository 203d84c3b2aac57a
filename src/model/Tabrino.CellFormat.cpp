#include "Tabrino.CellFormat.h"

#include "Tabrino.Utf16.h"

namespace Tabrino {

TCellFillInfo TCellFillInfo::Solid(TColorRef C) {
  TCellFillInfo F;
  F.PatternType = 1;
  F.ForegroundColor = C;
  return F;
}

TCellFillInfo TCellFillInfo::Gradient(TColorRef C1, TColorRef C2, int32_t Angle) {
  TCellFillInfo F;
  F.PatternType = -1;
  F.ForegroundColor = C1;
  F.BackgroundColor = C2;
  F.GradientAngle = Angle;
  return F;
}

bool TCellFormat::Equals(const TCellFormat& Other) const {
  return Font.Name == Other.Font.Name && Font.Size == Other.Font.Size && Font.Bold == Other.Font.Bold &&
         Font.Italic == Other.Font.Italic && NumberFormat == Other.NumberFormat;
}

bool IsStrongRtlChar(char32_t C) {
  return (C >= 0x0590 && C <= 0x08FF) || (C >= 0xFB1D && C <= 0xFDFF) || (C >= 0xFE70 && C <= 0xFEFF);
}

bool TextHasStrongRtl(std::string_view Text) {
  for (size_t Pos = 0; Pos < Text.size();)
    if (IsStrongRtlChar(DecodeUtf8(Text, Pos))) return true;
  return false;
}

TReadingOrder ResolveReadingOrder(std::string_view Text, TReadingOrder Order) {
  if (Order != roContext) return Order;
  for (size_t Pos = 0; Pos < Text.size();) {
    char32_t C = DecodeUtf8(Text, Pos);
    if (C <= 0x20) continue;
    if (IsStrongRtlChar(C)) return roRTL;
    if ((C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') || (C >= '0' && C <= '9') || (C >= 0xC0 && C <= 0x24F))
      return roLTR;
  }
  return roLTR;
}

}  // namespace Tabrino
