#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tabrino.SheetTable.h"
#include "Tabrino.Worksheet.h"

using namespace Tabrino;

namespace {

TSheetTable MakeTable(const char* Name, const char* Ref, bool Header = true, bool Totals = false) {
  TSheetTable T(Name, TCellRange::FromA1(Ref));
  T.FHasHeaderRow = Header;
  T.FHasTotalsRow = Totals;
  return T;
}

std::vector<std::string> Refs(const TSheetTableList& List) {
  std::vector<std::string> Out;
  for (const auto& T : List.FItems) Out.push_back(T->FName + "=" + T->FRef.ToA1());
  return Out;
}

}  // namespace

TEST(SheetTable, ConstructionNormalisesAndNamesBoth) {
  TSheetTable T("Sales", TCellRange::Make(4, 9, 2, 3));
  EXPECT_EQ(T.FRef.ToA1(), "B3:D9");
  EXPECT_EQ(T.FDisplayName, "Sales");
  EXPECT_EQ(T.ColumnCount(), 3);
}

TEST(SheetTable, DataRangeWithAndWithoutHeaderAndTotals) {
  struct TCase {
    const char* Ref;
    bool Header, Totals;
    const char* Data;
  };
  const TCase Cases[] = {
      {"A1:C5", true, false, "A2:C5"}, {"A1:C5", false, false, "A1:C5"}, {"A1:C5", true, true, "A2:C4"},
      {"A1:C5", false, true, "A1:C4"}, {"A1:C2", true, true, "A2:C2"},  // header, totals, nothing between
      {"A1:C1", true, false, "A2:C2"},                                  // only a header: the row under it
      {"A1:C1", false, true, "A1:C1"},                                  // a lone totals row is still data
  };
  for (const auto& C : Cases) {
    const TSheetTable T = MakeTable("T", C.Ref, C.Header, C.Totals);
    EXPECT_EQ(T.DataRange().ToA1(), C.Data) << C.Ref << " header " << C.Header << " totals " << C.Totals;
  }
}

TEST(SheetTable, ColumnLookupIgnoresCase) {
  TSheetTable T = MakeTable("T", "B2:D6", true, true);
  T.SetColumnNames({"Region", "Amount", "Unit"});
  EXPECT_EQ(T.ColumnIndex("AMOUNT"), 1);
  EXPECT_EQ(T.ColumnIndex("region"), 0);
  EXPECT_EQ(T.ColumnIndex("Amount "), -1);
  EXPECT_EQ(T.ColumnDataRange("amount"), TCellRange::Make(3, 3, 3, 5));
  const TCellRange Unknown = T.ColumnDataRange("Price");
  EXPECT_EQ(Unknown.StartCol, 2);
  EXPECT_EQ(Unknown.EndCol, 2);
  EXPECT_EQ(Unknown.EndRow, Unknown.StartRow - 1);
}

TEST(SheetTable, RowRoles) {
  const TSheetTable T = MakeTable("T", "A2:B6", true, true);
  EXPECT_EQ(T.HeaderRow(), 2);
  EXPECT_TRUE(T.IsHeaderRow(2));
  EXPECT_TRUE(T.IsTotalsRow(6));
  EXPECT_FALSE(T.IsTotalsRow(5));
  EXPECT_EQ(T.DataBandIndex(2), -1);
  EXPECT_EQ(T.DataBandIndex(3), 0);
  EXPECT_EQ(T.DataBandIndex(5), 2);
  EXPECT_EQ(T.DataBandIndex(6), -1);

  const TSheetTable Bare = MakeTable("U", "A2:B6", false, false);
  EXPECT_EQ(Bare.HeaderRow(), 0);
  EXPECT_FALSE(Bare.IsHeaderRow(2));
  EXPECT_FALSE(Bare.IsTotalsRow(6));
  EXPECT_EQ(Bare.DataBandIndex(2), 0);
  EXPECT_EQ(Bare.DataBandIndex(6), 4);
}

TEST(SheetTableList, LookupByNameOrDisplayNameAndByCell) {
  TSheetTableList List;
  TSheetTable* First = List.Add(MakeTable("Alpha", "A1:B3"));
  TSheetTable Second = MakeTable("Beta", "B2:D4");
  Second.FDisplayName = "Beta Shown";
  TSheetTable* SecondPtr = List.Add(Second);
  EXPECT_EQ(List.Count(), 2);
  EXPECT_EQ(List.GetItem(1), SecondPtr);
  EXPECT_EQ(List.GetItem(2), nullptr);
  EXPECT_EQ(List.GetItem(-1), nullptr);
  EXPECT_EQ(List.FindByName("ALPHA"), First);
  EXPECT_EQ(List.FindByName("beta shown"), SecondPtr);
  EXPECT_EQ(List.FindByName("Gamma"), nullptr);
  EXPECT_EQ(List.FindContaining(2, 2), First);  // both contain it; the first wins
  EXPECT_EQ(List.FindContaining(4, 4), SecondPtr);
  EXPECT_EQ(List.FindContaining(5, 1), nullptr);
  List.Clear();
  EXPECT_EQ(List.Count(), 0);
}

TEST(SheetTableList, ShiftsAndDeletedTables) {
  TSheetTableList List;
  List.Add(MakeTable("Top", "A1:C3"));
  List.Add(MakeTable("Mid", "A5:C6"));
  List.Add(MakeTable("Low", "A10:C12"))->SetColumnNames({"a", "b", "c"});

  List.ShiftRows(5, 0);
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Top=A1:C3", "Mid=A5:C6", "Low=A10:C12"}));

  List.ShiftRows(2, 2);
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Top=A1:C5", "Mid=A7:C8", "Low=A12:C14"}));

  // All of Mid's rows go; the tables around it survive, re-indexed.
  List.ShiftRows(6, -4);
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Top=A1:C5", "Low=A8:C10"}));

  List.ShiftColumns(1, -1);
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Top=A1:B5", "Low=A8:B10"}));
  // Names wait for the sheet to read its header cells again.
  EXPECT_EQ(List.GetItem(1)->FColumnNames.size(), 3u);

  List.ShiftColumns(1, -2);
  EXPECT_EQ(List.Count(), 0);
}

TEST(SheetTableList, LosingTheHeaderRowKeepsTheFlag) {
  TSheetTableList List;
  TSheetTable* T = List.Add(MakeTable("T", "A2:B5"));
  List.ShiftRows(2, -1);
  EXPECT_EQ(T->FRef.ToA1(), "A2:B4");
  EXPECT_TRUE(T->FHasHeaderRow);
  EXPECT_EQ(T->HeaderRow(), 2);  // the old first data row now reads as the header
}

TEST(SheetTableList, MovesNeverRemove) {
  TSheetTableList List;
  List.Add(MakeTable("Band", "A2:B3"));
  List.Add(MakeTable("Below", "A4:B6"));
  List.Add(MakeTable("Wide", "C1:D9"));
  List.MoveRows(2, 2, 5);  // rows 2..3 dropped before row 7
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Band=A5:B6", "Below=A2:B4", "Wide=C1:D9"}));
  List.MoveColumns(3, 2, 1);
  EXPECT_EQ(Refs(List), (std::vector<std::string>{"Band=C5:D6", "Below=C2:D4", "Wide=A1:B9"}));
  List.MoveRows(2, 0, 5);
  EXPECT_EQ(List.GetItem(0)->FRef.ToA1(), "C5:D6");
}

TEST(WorksheetTables, RefreshTableColumnNamesReadsHeaderCells) {
  TWorksheet Sheet("S");
  Sheet.SetCell({2, 3}, TCell::WithValue(TCellValue::FromText("Region")));
  Sheet.SetCell({3, 3}, TCell::WithValue(TCellValue::FromNumber(2024)));
  TCell Rich = TCell::WithValue(TCellValue::FromText("ignored"));
  Rich.RichText = {{"Net ", TCellFontInfo::Default()}, {"Sales", TCellFontInfo::Default()}};
  Sheet.SetCell({4, 3}, Rich);
  TCell StyledOnly = TCell::CreateEmpty();
  StyledOnly.StyleIndex = 2;
  Sheet.SetCell({6, 3}, StyledOnly);
  // Column E's header is absent, F's holds only a style.

  TSheetTable* Headed = Sheet.FTables.Add(MakeTable("Headed", "B3:F8"));
  TSheetTable* Headless = Sheet.FTables.Add(MakeTable("Headless", "B3:C8", false));
  Headless->SetColumnNames({"keep"});
  Sheet.RefreshTableColumnNames();

  EXPECT_EQ(Headed->FColumnNames, (std::vector<std::string>{"Region", "2024", "Net Sales", "Column4", "Column5"}));
  EXPECT_EQ(Headless->FColumnNames, (std::vector<std::string>{"keep"}));

  // After a column is deleted the names follow the header cells again.
  Sheet.FTables.ShiftColumns(3, -1);
  Sheet.ClearCell({3, 3});
  Sheet.RefreshTableColumnNames();
  EXPECT_EQ(Headed->FColumnNames, (std::vector<std::string>{"Region", "Column2", "Net Sales", "Column4"}));
}
