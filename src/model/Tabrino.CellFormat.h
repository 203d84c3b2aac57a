// Cell format records: font, fill, border and alignment, with colours kept
// symbolic (theme index and tint) until something paints them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Tabrino {

enum THorizontalAlignment : uint8_t { haGeneral, haLeft, haCenter, haRight, haFill, haJustify };
enum TVerticalAlignment : uint8_t { vaTop, vaCenter, vaBottom };
enum TReadingOrder : uint8_t { roContext, roLTR, roRTL };
enum TUnderlineStyle : uint8_t { usNone, usSingle, usDouble };
enum TScriptPosition : uint8_t { spNormal, spSuperscript, spSubscript };
enum TBorderLineStyle : uint8_t { blsNone, blsThin, blsMedium, blsThick, blsDashed, blsDotted, blsDouble, blsHair };

struct TColorRef {
  uint32_t ARGB = 0xFF000000;
  int32_t ThemeIndex = -1;  // negative: a literal colour
  double Tint = 0;

  static TColorRef FromARGB(uint32_t V) { return {V, -1, 0}; }
  static TColorRef FromTheme(int32_t Index, double Tint) { return {0, Index, Tint}; }
  bool IsThemeColor() const { return ThemeIndex >= 0; }
  bool operator==(const TColorRef&) const = default;
};

struct TCellFontInfo {
  std::string Name = "Calibri";
  float Size = 11;
  bool Bold = false;
  bool Italic = false;
  TUnderlineStyle Underline = usNone;
  bool Strikethrough = false;
  TScriptPosition Script = spNormal;
  TColorRef Color = TColorRef::FromARGB(0xFF000000);

  static TCellFontInfo Default() { return {}; }
  bool operator==(const TCellFontInfo&) const = default;
};

struct TCellFillInfo {
  int32_t PatternType = 0;  // 0 none, 1 solid, -1 gradient, others: reader pattern ids
  TColorRef ForegroundColor = TColorRef::FromARGB(0);
  TColorRef BackgroundColor = TColorRef::FromARGB(0xFFFFFFFF);
  int32_t GradientAngle = 90;

  static TCellFillInfo None() { return {}; }
  static TCellFillInfo Solid(TColorRef C);
  static TCellFillInfo Gradient(TColorRef C1, TColorRef C2, int32_t Angle);
  bool IsGradient() const { return PatternType < 0; }
  bool operator==(const TCellFillInfo&) const = default;
};

struct TBorderSide {
  TBorderLineStyle Style = blsNone;
  TColorRef Color = TColorRef::FromARGB(0xFF000000);

  static TBorderSide None() { return {}; }
  bool operator==(const TBorderSide&) const = default;
};

struct TCellBorderInfo {
  TBorderSide Left, Top, Right, Bottom, Diagonal;
  bool DiagonalUp = false;
  bool DiagonalDown = false;

  static TCellBorderInfo None() { return {}; }
  bool operator==(const TCellBorderInfo&) const = default;
};

struct TCellAlignmentInfo {
  THorizontalAlignment Horizontal = haGeneral;
  TVerticalAlignment Vertical = vaBottom;
  bool WrapText = false;
  bool ShrinkToFit = false;
  int32_t Indent = 0;
  int32_t TextRotation = 0;
  TReadingOrder ReadingOrder = roContext;
  double MarginLeftCm = 0, MarginRightCm = 0, PaddingLeftCm = 0, PaddingRightCm = 0;

  static TCellAlignmentInfo Default() { return {}; }
  bool operator==(const TCellAlignmentInfo&) const = default;
};

struct TCellFormat {
  TCellFontInfo Font;
  TCellFillInfo Fill;
  TCellBorderInfo Border;
  TCellAlignmentInfo Alignment;
  std::string NumberFormat = "General";
  bool Locked = true;
  bool Hidden = false;

  static TCellFormat Default() { return {}; }
  // Deliberately shallow: font name, size, bold, italic and the number format.
  // Formats differing only in fill or border count as equal.
  bool Equals(const TCellFormat& Other) const;
};

bool IsStrongRtlChar(char32_t C);
bool TextHasStrongRtl(std::string_view Text);
// The order a cell's text reads in; roContext is decided by its first strong character.
TReadingOrder ResolveReadingOrder(std::string_view Text, TReadingOrder Order);

}  // namespace Tabrino
