#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tabrino.Workbook.h"

using namespace Tabrino;

namespace {

TCell NumberCell(double V) { return TCell::WithValue(TCellValue::FromNumber(V)); }

TCell FormulaWithCache(const char* Formula, const TCellValue& Cached) {
  TCell C = TCell::WithValue(TCellValue::FromFormula(Formula));
  C.SetCachedResult(Cached);
  return C;
}

}  // namespace

TEST(CellStore, EveryLayoutRoundTrips) {
  TCell Styled = TCell::CreateEmpty();
  Styled.StyleIndex = 3;
  TCell HugeStyle = NumberCell(1);
  HugeStyle.StyleIndex = 1 << 30;  // beyond the inline style bits
  TCell Override = TCell::WithValue(TCellValue::FromText("t"));
  Override.HasFormatOverride = true;
  Override.FormatOverride.NumberFormat = "0.00";
  TCell Rich = TCell::WithValue(TCellValue::FromText("ab"));
  Rich.RichText = {{"a", TCellFontInfo::Default()}, {"b", TCellFontInfo::Default()}};
  TCell Spark = NumberCell(2);
  Spark.Sparkline.Kind = spkBar;
  Spark.Sparkline.Values = {1, 2, 3};
  std::vector<TCell> Cells = {NumberCell(-0.25),
                              TCell::WithValue(TCellValue::FromBoolean(true)),
                              TCell::WithValue(TCellValue::FromError(ceRef)),
                              TCell::WithValue(TCellValue::FromText(std::string(100, 'x'))),
                              FormulaWithCache("=1+1", TCellValue::FromNumber(2)),
                              Styled,
                              HugeStyle,
                              Override,
                              Rich,
                              Spark};
  TWorksheet Sheet("S");
  for (size_t I = 0; I < Cells.size(); ++I) Sheet.SetCell({1, int32_t(I) + 1}, Cells[I]);
  for (size_t I = 0; I < Cells.size(); ++I) {
    TCell Back = Sheet.GetCellAt(1, int32_t(I) + 1);
    EXPECT_EQ(Back.Value, Cells[I].Value) << I;
    EXPECT_EQ(Back.StyleIndex, Cells[I].StyleIndex) << I;
    EXPECT_EQ(Back.HasFormatOverride, Cells[I].HasFormatOverride) << I;
    EXPECT_EQ(Back.FormatOverride.NumberFormat, Cells[I].FormatOverride.NumberFormat) << I;
    EXPECT_EQ(Back.RichText, Cells[I].RichText) << I;
    EXPECT_EQ(Back.CachedValue, Cells[I].CachedValue) << I;
    EXPECT_EQ(Back.Sparkline, Cells[I].Sparkline) << I;
  }
  // Overwriting every cell must release what the old records held (ASan checks).
  for (size_t I = 0; I < Cells.size(); ++I) Sheet.SetCell({1, int32_t(I) + 1}, Cells[Cells.size() - 1 - I]);
  EXPECT_EQ(Sheet.GetCellAt(1, 1).Sparkline.Values.size(), 3u);
}

TEST(Worksheet, WritesFireOneEventWithOldAndNew) {
  TWorksheet Sheet("S");
  std::vector<std::string> Log;
  Sheet.FOnChange = [&](TWorksheet& Sender, const TCellAddress& A, const TCell& Old, const TCell& New) {
    EXPECT_EQ(&Sender, &Sheet);
    // The store is already updated when the event fires.
    Log.push_back(A.ToKey() + ":" + Old.Value.ToDisplayString() + "->" + New.Value.ToDisplayString() + ":" +
                  Sender.GetCell(A).Value.ToDisplayString());
  };
  Sheet.SetCell({2, 3}, NumberCell(1));
  Sheet.SetCell({2, 3}, NumberCell(2));
  Sheet.ClearCell({2, 3});
  EXPECT_EQ(Log, (std::vector<std::string>{"B3:->1:1", "B3:1->2:2", "B3:2->:"}));
  EXPECT_FALSE(Sheet.HasCell({2, 3}));
}

TEST(Worksheet, EmptyCellsAreRemovedAndBoundsOnlyGrow) {
  TWorksheet Sheet("S");
  EXPECT_EQ(Sheet.FUsedMaxCol, 1);
  Sheet.SetCell({5, 9}, NumberCell(1));
  TCell RichOnly = TCell::CreateEmpty();
  RichOnly.RichText = {{"x", TCellFontInfo::Default()}};
  Sheet.SetCell({7, 2}, RichOnly);
  EXPECT_FALSE(Sheet.HasCell({7, 2}));
  EXPECT_EQ(Sheet.FUsedMaxCol, 7);  // raised even though nothing was stored
  Sheet.ClearCell({5, 9});
  Sheet.ClearCell({7, 2});
  EXPECT_EQ(Sheet.FUsedMaxRow, 9);
  Sheet.RecalcUsedBounds();
  EXPECT_EQ(Sheet.FUsedMaxCol, 1);
  EXPECT_EQ(Sheet.FUsedMaxRow, 1);
  Sheet.SetCell({3, 4}, NumberCell(1));
  Sheet.SetCell({2, 8}, NumberCell(1));
  Sheet.FUsedMaxCol = Sheet.FUsedMaxRow = 1;
  Sheet.RecalcUsedBounds();
  EXPECT_EQ(Sheet.FUsedMaxCol, 3);
  EXPECT_EQ(Sheet.FUsedMaxRow, 8);
}

TEST(Worksheet, DisplayText) {
  TTabrinoStyleSheet Styles;
  TCellFormat Money;
  Money.NumberFormat = "#,##0.00";
  int32_t MoneyIndex = Styles.AddCellXf(Money);
  TWorksheet Sheet("S");
  TCell Styled = NumberCell(1234.5);
  Styled.StyleIndex = MoneyIndex;
  Sheet.SetCell({1, 1}, Styled);
  Sheet.SetCell({1, 2}, TCell::WithValue(TCellValue::FromFormula("=A1*2")));
  Sheet.SetCell({1, 3}, FormulaWithCache("=A1*0", TCellValue::FromNumber(0)));
  Sheet.SetCell({1, 4}, TCell::WithValue(TCellValue::FromText("0")));
  TCell Rich = TCell::WithValue(TCellValue::FromText("ignored"));
  Rich.RichText = {{"bo", TCellFontInfo::Default()}, {"ld", TCellFontInfo::Default()}};
  Sheet.SetCell({1, 5}, Rich);
  Sheet.SetCell({1, 6}, TCell::WithValue(TCellValue::FromError(ceDiv0)));
  TCell Override = NumberCell(0.5);
  Override.HasFormatOverride = true;
  Override.FormatOverride.NumberFormat = "0%";
  Override.StyleIndex = MoneyIndex;  // the override wins
  Sheet.SetCell({1, 7}, Override);

  EXPECT_EQ(Sheet.GetDisplayText({1, 1}, &Styles), "1,234.50");
  EXPECT_EQ(Sheet.GetDisplayText({1, 1}, nullptr), "1234.5");
  EXPECT_EQ(Sheet.GetDisplayText({1, 2}, &Styles), "=A1*2");  // no cache yet
  EXPECT_EQ(Sheet.GetDisplayText({1, 3}, &Styles), "0");
  EXPECT_EQ(Sheet.GetDisplayText({1, 5}, &Styles), "bold");
  EXPECT_EQ(Sheet.GetDisplayText({1, 6}, &Styles), "#DIV/0!");
  EXPECT_EQ(Sheet.GetDisplayText({1, 7}, &Styles), "50%");
  EXPECT_EQ(Sheet.GetDisplayText({9, 9}, &Styles), "");

  Sheet.FShowZeros = false;
  EXPECT_EQ(Sheet.GetDisplayText({1, 3}, &Styles), "");  // computed zero hidden
  EXPECT_EQ(Sheet.GetDisplayText({1, 4}, &Styles), "0");  // text "0" is not a number
  Sheet.FShowFormulas = true;
  EXPECT_EQ(Sheet.GetDisplayText({1, 3}, &Styles), "=A1*0");
}

TEST(Worksheet, EffectiveValueAndHyperlinks) {
  TWorksheet Sheet("S");
  Sheet.SetCell({1, 1}, TCell::WithValue(TCellValue::FromFormula("=1")));
  Sheet.SetCell({1, 2}, FormulaWithCache("=1", TCellValue::FromNumber(1)));
  Sheet.SetCell({1, 3}, TCell::WithValue(TCellValue::FromText("t")));
  EXPECT_TRUE(Sheet.GetEffectiveValue({1, 1}).IsEmpty());
  EXPECT_EQ(Sheet.GetEffectiveValue({1, 2}), TCellValue::FromNumber(1));
  EXPECT_EQ(Sheet.GetEffectiveValue({1, 3}), TCellValue::FromText("t"));

  std::string Target;
  Sheet.SetHyperlink(2, 2, " https://example.org ");
  ASSERT_TRUE(Sheet.FindHyperlink(2, 2, Target));
  EXPECT_EQ(Target, " https://example.org ");  // stored untrimmed
  Sheet.SetHyperlink(2, 2, "   ");
  EXPECT_FALSE(Sheet.FindHyperlink(2, 2, Target));
}

TEST(Workbook, ModifiedEventsAndUpdateBrackets) {
  TWorkbook Book;
  int Events = 0;
  Book.FOnModified = [&](TWorkbook&) { ++Events; };
  Book.ActiveSheet()->SetCell({1, 1}, NumberCell(1));
  Book.ActiveSheet()->SetCell({1, 1}, NumberCell(2));
  EXPECT_EQ(Events, 2);  // every time, even when already modified
  EXPECT_TRUE(Book.FModified);

  Book.BeginUpdate();
  Book.BeginUpdate();
  Book.ActiveSheet()->SetCell({1, 2}, NumberCell(1));
  Book.EndUpdate();
  EXPECT_EQ(Events, 2);
  Book.EndUpdate();
  EXPECT_EQ(Events, 3);
  Book.EndUpdate();  // ignored at zero
  EXPECT_EQ(Book.FUpdateLock, 0);

  Book.BeginUpdate();
  Book.EndUpdate();
  EXPECT_EQ(Events, 3);  // nothing changed inside
  Book.ClearModified();
  EXPECT_FALSE(Book.FModified);
}

TEST(Workbook, SheetsAndActiveIndex) {
  TWorkbook Book;
  ASSERT_EQ(Book.SheetCount(), 1);
  EXPECT_EQ(Book.ActiveSheet()->FName, "Sheet1");
  Book.AddSheet("Data");
  Book.AddSheet("Data");  // names are not checked for uniqueness
  EXPECT_FALSE(Book.FModified);
  EXPECT_EQ(Book.FindSheet("dATA"), Book.GetSheet(1));
  EXPECT_EQ(Book.FindSheet("none"), nullptr);
  EXPECT_EQ(Book.GetSheet(7), nullptr);
  Book.SetActiveSheetIndex(2);
  Book.SetActiveSheetIndex(9);
  EXPECT_EQ(Book.FActiveSheetIndex, 2);
  Book.RemoveSheet(0);  // an earlier sheet goes: the index stays, so the next sheet is active
  EXPECT_EQ(Book.FActiveSheetIndex, 1);
  Book.RemoveSheet(1);
  EXPECT_EQ(Book.FActiveSheetIndex, 0);
  EXPECT_TRUE(Book.FModified);
  // Sheets added later report their writes too.
  int Events = 0;
  Book.FOnModified = [&](TWorkbook&) { ++Events; };
  Book.AddSheet("Late")->SetCell({1, 1}, NumberCell(1));
  EXPECT_EQ(Events, 1);
}

TEST(Workbook, Visibility) {
  TWorkbook Book;
  EXPECT_THROW(
      {
        try {
          Book.SetSheetVisibility(0, svHidden);
        } catch (const EException& E) {
          EXPECT_STREQ(E.what(), "Cannot hide the only visible worksheet");
          throw;
        }
      },
      EException);
  Book.AddSheet("Two");
  Book.AddSheet("Three");
  Book.SetActiveSheetIndex(1);
  Book.SetSheetVisibility(1, svVeryHidden);
  EXPECT_EQ(Book.FActiveSheetIndex, 0);
  EXPECT_EQ(Book.VisibleSheetCount(), 2);
  Book.SetSheetVisibility(0, svHidden);
  EXPECT_EQ(Book.FActiveSheetIndex, 2);
  EXPECT_EQ(Book.FirstVisibleSheetIndex(), 2);
  EXPECT_THROW(Book.SetSheetVisibility(2, svHidden), EException);
  Book.SetSheetVisibility(7, svHidden);  // ignored
}

TEST(Workbook, NamedFormulasAndNewWorkbook) {
  TWorkbook Book;
  Book.SetNamedFormula(" $Tax$Rate ", " 0.2 ");
  std::string Formula;
  ASSERT_TRUE(Book.FindNamedFormula("taxrate", Formula));
  EXPECT_EQ(Formula, "=0.2");
  Book.SetNamedFormula(" $ ", "=1");  // empty key ignored
  EXPECT_EQ(Book.FNamedFormulas.size(), 1u);
  Book.PutWebCache("k", "v");
  Book.AddSheet("Other");
  Book.NewWorkbook();
  EXPECT_EQ(Book.SheetCount(), 1);
  EXPECT_TRUE(Book.FNamedFormulas.empty());
  EXPECT_FALSE(Book.TryGetWebCache("k", Formula));
  EXPECT_FALSE(Book.FModified);
}
