#include <gtest/gtest.h>

#include "Tabrino.Cell.h"
#include "Tabrino.StyleSheet.h"
#include "Tabrino.Theme.h"

using namespace Tabrino;

TEST(Tint, LightensDarkensAndKeepsAlpha) {
  struct Case {
    uint32_t Color;
    double Tint;
    uint32_t Expected;
  } Cases[] = {
      {0xFF4472C4, 1, 0xFFFFFFFF},   {0x804472C4, -1, 0x80000000},  {0xFF4472C4, 0, 0xFF4472C4},
      {0xFF000000, 0.5, 0xFF808080}, {0xFFFFFFFF, -0.5, 0xFF808080}, {0xFF4472C4, 0.4, 0xFF8FAADC},
      {0xFF4472C4, -0.25, 0xFF2F5597}, {0xFFED7D31, 0.8, 0xFFFBE5D6},
  };
  for (const Case& C : Cases) EXPECT_EQ(ApplyTint(C.Color, C.Tint), C.Expected) << std::hex << C.Color << " " << C.Tint;
}

TEST(Theme, ResolvesSwappedIndexesAndFallsBackToBlack) {
  TTabrinoTheme Theme;
  EXPECT_EQ(Theme.ResolveThemeColor(0, 0), 0xFFFFFFFFu);  // lt1 and dk1 swap
  EXPECT_EQ(Theme.ResolveThemeColor(1, 0), 0xFF000000u);
  EXPECT_EQ(Theme.ResolveThemeColor(2, 0), 0xFFE7E6E6u);
  EXPECT_EQ(Theme.ResolveThemeColor(3, 0), 0xFF44546Au);
  EXPECT_EQ(Theme.ResolveThemeColor(4, 0), 0xFF4472C4u);
  EXPECT_EQ(Theme.ResolveThemeColor(12, 0), 0xFF000000u);
  EXPECT_EQ(Theme.ResolveThemeColor(-1, 0.5), 0xFF808080u);  // black, then tinted
  EXPECT_EQ(ResolveColor(TColorRef::FromTheme(4, 0), &Theme), 0xFF4472C4u);
  EXPECT_EQ(ResolveColor(TColorRef::FromTheme(4, 0), nullptr), 0u);
  EXPECT_EQ(ResolveColor(TColorRef::FromARGB(0xFF123456), &Theme), 0xFF123456u);
}

TEST(ReadingOrder, FirstStrongCharacterDecides) {
  EXPECT_EQ(ResolveReadingOrder("  \xD7\xA9\xD7\x9C abc", roContext), roRTL);  // Hebrew first
  EXPECT_EQ(ResolveReadingOrder("(1) \xD7\xA9", roContext), roLTR);           // the digit decides
  EXPECT_EQ(ResolveReadingOrder("!?-", roContext), roLTR);
  EXPECT_EQ(ResolveReadingOrder("", roContext), roLTR);
  EXPECT_EQ(ResolveReadingOrder("abc", roRTL), roRTL);
  EXPECT_TRUE(TextHasStrongRtl("x \xD8\xA7"));  // Arabic alef
  EXPECT_FALSE(TextHasStrongRtl("plain"));
}

TEST(CellFormat, EqualsIsShallow) {
  TCellFormat A, B;
  B.Fill = TCellFillInfo::Solid(TColorRef::FromARGB(0xFFFF0000));
  B.Border.Left.Style = blsThick;
  EXPECT_TRUE(A.Equals(B));
  B.Font.Bold = true;
  EXPECT_FALSE(A.Equals(B));
}

TEST(StyleSheet, DefaultsAndLookups) {
  TTabrinoStyleSheet Styles;
  EXPECT_EQ(Styles.FFonts.size(), 1u);
  EXPECT_TRUE(Styles.FCellStyleXfs.empty());
  EXPECT_EQ(Styles.GetCellXf(-1).NumberFormat, "General");
  EXPECT_EQ(Styles.GetCellXf(99).NumberFormat, "General");
  TCellFormat Money;
  Money.NumberFormat = "#,##0.00";
  EXPECT_EQ(Styles.AddCellXf(Money), 1);
  EXPECT_EQ(Styles.AddCellXf(Money), 2);  // no interning
  EXPECT_EQ(Styles.ResolveFormat(1).NumberFormat, "#,##0.00");
  EXPECT_EQ(Styles.GetNumFmt(14), "m/d/yyyy");
  Styles.RegisterNumFmt(14, "dd.mm.yyyy");
  EXPECT_EQ(Styles.GetNumFmt(14), "dd.mm.yyyy");
  EXPECT_EQ(Styles.GetNumFmt(164), "General");
  Styles.Clear();
  EXPECT_EQ(Styles.FCellXfs.size(), 1u);
  EXPECT_EQ(Styles.GetNumFmt(14), "m/d/yyyy");
}

TEST(Cell, EmptinessAndCache) {
  TCell C = TCell::CreateEmpty();
  EXPECT_TRUE(C.IsEmpty());
  C.RichText.push_back({"runs only", TCellFontInfo::Default()});
  EXPECT_TRUE(C.IsEmpty());  // rich text alone does not count
  C.SetCachedResult(TCellValue::FromFormula("=A1"));
  EXPECT_EQ(C.CachedValue.Kind, cvkText);
  EXPECT_EQ(C.CachedValue.Text, "=A1");
  EXPECT_TRUE(C.CachedValue.Formula.empty());
  EXPECT_FALSE(C.IsEmpty());
  C.Sparkline.Kind = spkLine;
  C.Sparkline.Values = {1, 2};
  C.ClearCachedResult();
  EXPECT_FALSE(C.HasCachedValue);
  EXPECT_EQ(C.Sparkline.Kind, spkNone);
  EXPECT_TRUE(C.Sparkline.Values.empty());
}
