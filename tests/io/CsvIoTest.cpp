#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Io.Csv.h"
#include "Tabrino.Workbook.h"
#include "TempDir.h"

using namespace Tabrino;
using namespace TabrinoTest;

namespace {

const std::string Bom = "\xEF\xBB\xBF";

void Import(TWorkbook& Book, const std::string& Bytes, int32_t Sheet = 0, const TCsvImportOptions& Options = {}) {
  std::istringstream Stream(Bytes);
  TCsvIO::ImportSheet(Book, Stream, Sheet, {}, Options);
}

std::string Export(const TWorkbook& Book, int32_t Sheet = 0) {
  std::ostringstream Stream;
  TCsvIO::ExportSheet(Book, Stream, Sheet);
  return Stream.str();
}

TCellValue ValueAt(const TWorkbook& Book, int32_t Col, int32_t Row, int32_t Sheet = 0) {
  return Book.GetSheet(Sheet)->GetCellAt(Col, Row).Value;
}

void Put(TWorksheet& Sheet, const char* A1, const TCellValue& Value) {
  Sheet.SetCell(TCellAddress::FromA1(A1), TCell::WithValue(Value));
}

}  // namespace

TEST(CsvImport, AsTypedMakesFormulasAndLeavesEmptyFieldsBlank) {
  TWorkbook Book;
  Import(Book, "=A2*2,,=\n3,x,\n", 0, TCsvImportOptions{.AsTyped = true});
  const TWorksheet& Sheet = *Book.GetSheet(0);
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromFormula("=A2*2"));
  EXPECT_FALSE(Sheet.HasCell({2, 1})) << "an empty field leaves no cell";
  EXPECT_EQ(ValueAt(Book, 3, 1), TCellValue::FromText("=")) << "a lone = is no formula";
  EXPECT_EQ(ValueAt(Book, 1, 2), TCellValue::FromNumber(3));
  EXPECT_EQ(ValueAt(Book, 2, 2), TCellValue::FromText("x"));
  EXPECT_EQ(Sheet.FUsedMaxCol, 3) << "the extent still takes in empty fields";
  EXPECT_EQ(Sheet.CellCount(), 4u);

  TWorkbook Plain;
  Import(Plain, "=A2*2,,=\n");
  EXPECT_EQ(ValueAt(Plain, 1, 1), TCellValue::FromText("=A2*2")) << "by default formulas stay text";
  EXPECT_EQ(ValueAt(Plain, 2, 1), TCellValue::FromText(""));
}

TEST(CsvImport, NumbersByLocaleEverythingElseText) {
  TWorkbook Book;
  Import(Book, "1, 2.5 ,-3e2,abc,=A1+1,,TRUE,1,000\r\n");
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromNumber(1));
  EXPECT_EQ(ValueAt(Book, 2, 1), TCellValue::FromNumber(2.5));  // blanks around a number are fine
  EXPECT_EQ(ValueAt(Book, 3, 1), TCellValue::FromNumber(-300));
  EXPECT_EQ(ValueAt(Book, 4, 1), TCellValue::FromText("abc"));
  EXPECT_EQ(ValueAt(Book, 5, 1), TCellValue::FromText("=A1+1"));  // formulas are not recognised
  EXPECT_EQ(ValueAt(Book, 6, 1), TCellValue::FromText(""));       // an empty field is an empty text
  EXPECT_EQ(ValueAt(Book, 7, 1), TCellValue::FromText("TRUE"));
  EXPECT_EQ(ValueAt(Book, 9, 1), TCellValue::FromNumber(0));  // "1,000" unquoted is two fields
  EXPECT_EQ(Book.GetSheet(0)->CellCount(), 9u);
}

TEST(CsvImport, DecimalCommaLocale) {
  TFormatSettings Comma;
  Comma.DecimalSeparator = ",";
  Comma.ThousandSeparator = ".";
  TFormatSettingsScope Scope(Comma);
  TWorkbook Book;
  Import(Book, "\"1,5\",1.5,\"1.000\"\n");
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromNumber(1.5));
  EXPECT_EQ(ValueAt(Book, 2, 1), TCellValue::FromText("1.5"));
  EXPECT_EQ(ValueAt(Book, 3, 1), TCellValue::FromText("1.000"));  // no thousands separators
}

TEST(CsvImport, LineEndsBlankLinesAndQuirks) {
  TWorkbook Book;
  Import(Book, "a\r\n\r\nb\rc\n\"x\"\"y\",\"p,q\"\n");
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromText("a"));
  // A blank line in the middle advances the row and sets one empty text.
  EXPECT_TRUE(Book.GetSheet(0)->HasCell(TCellAddress{1, 2}));
  EXPECT_EQ(ValueAt(Book, 1, 2), TCellValue::FromText(""));
  EXPECT_EQ(ValueAt(Book, 1, 3), TCellValue::FromText("b"));
  EXPECT_EQ(ValueAt(Book, 1, 4), TCellValue::FromText("c"));
  EXPECT_EQ(ValueAt(Book, 1, 5), TCellValue::FromText("xy"));  // doubled quotes vanish
  EXPECT_EQ(ValueAt(Book, 2, 5), TCellValue::FromText("p,q"));
  EXPECT_EQ(Book.GetSheet(0)->FUsedMaxRow, 5) << "a final line end adds no row";
  EXPECT_EQ(Book.GetSheet(0)->CellCount(), 6u);
}

TEST(CsvImport, EmptyStreamClearsCellsOnlyAndMarksModified) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.GetSheet(0);
  Put(Sheet, "C3", TCellValue::FromText("old"));
  Sheet.SetHyperlink(1, 1, "https://example.com");
  Book.ClearModified();
  int Events = 0;
  Book.FOnModified = [&](TWorkbook&) { ++Events; };

  Import(Book, "");
  EXPECT_EQ(Sheet.CellCount(), 0u);
  EXPECT_TRUE(Book.FModified);
  EXPECT_EQ(Events, 1);
  std::string Target;
  EXPECT_TRUE(Sheet.FindHyperlink(1, 1, Target)) << "only the cells are cleared";
}

TEST(CsvImport, ByteOrderMarksAndBrokenBytes) {
  TWorkbook Book;
  Import(Book, Bom + "\xC3\xA9,1\n");
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromText("\xC3\xA9"));
  EXPECT_EQ(ValueAt(Book, 2, 1), TCellValue::FromNumber(1));

  Import(Book, std::string("\xFF\xFE"
                           "a\0,\0\xE9\0\n\0",
                           10));  // UTF-16 LE: a,é
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromText("a"));
  EXPECT_EQ(ValueAt(Book, 2, 1), TCellValue::FromText("\xC3\xA9"));

  Import(Book, "x\xFFy");
  EXPECT_EQ(ValueAt(Book, 1, 1), TCellValue::FromText("x\xEF\xBF\xBDy"));
}

TEST(CsvImport, AddsASheetToAnEmptyWorkbookAndReportsProgress) {
  TWorkbook Book;
  Book.RemoveSheet(0);
  std::istringstream Stream("1,2\n3,4\n");
  uint64_t LastDone = 0, LastTotal = 0;
  TCsvIO::ImportSheet(Book, Stream, 0, [&](uint64_t Done, uint64_t Total) {
    LastDone = Done;
    LastTotal = Total;
  });
  ASSERT_EQ(Book.SheetCount(), 1);
  EXPECT_EQ(Book.GetSheet(0)->FName, "Sheet1");
  EXPECT_EQ(ValueAt(Book, 2, 2), TCellValue::FromNumber(4));
  EXPECT_EQ(LastDone, 8u);
  EXPECT_EQ(LastTotal, 8u);
}

TEST(CsvExport, DisplayTextsWithCrLfAndEscaping) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.GetSheet(0);
  Put(Sheet, "A1", TCellValue::FromText("a\"b"));
  Put(Sheet, "B1", TCellValue::FromText("x,y"));
  TCell Formatted = TCell::WithValue(TCellValue::FromNumber(1.5));
  Formatted.HasFormatOverride = true;
  Formatted.FormatOverride.NumberFormat = "0.00";
  Sheet.SetCell(TCellAddress{1, 2}, Formatted);
  TCell Formula = TCell::WithValue(TCellValue::FromFormula("=1+1"));
  Formula.SetCachedResult(TCellValue::FromNumber(2));
  Sheet.SetCell(TCellAddress{3, 2}, Formula);

  EXPECT_EQ(Export(Book), Bom + "\"a\"\"b\",\"x,y\",\r\n1.50,,2\r\n");
}

TEST(CsvExport, ByteOrderMarkDelimiterAndRange) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.GetSheet(0);
  Put(Sheet, "A1", TCellValue::FromText("a;b"));
  Put(Sheet, "B2", TCellValue::FromNumber(7));
  TCsvExportOptions Options;
  Options.Utf8Bom = false;
  Options.Delimiter = U';';
  std::ostringstream Stream;
  TCsvIO::ExportRange(Book, &Sheet, Stream, TCellRange::Make(2, 2, 1, 1), Options);  // inverted: normalised
  EXPECT_EQ(Stream.str(), "\"a;b\";\r\n;7\r\n");

  std::ostringstream Nothing;
  TCsvIO::ExportRange(Book, nullptr, Nothing, TCellRange::Make(1, 1, 1, 1), TCsvExportOptions::Default());
  EXPECT_EQ(Nothing.str(), "");
}

TEST(CsvRoundTrip, ValuesSurviveButQuotesDoNot) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.GetSheet(0);
  Put(Sheet, "A1", TCellValue::FromNumber(-12.25));
  Put(Sheet, "B1", TCellValue::FromText("with, comma"));
  Put(Sheet, "A2", TCellValue::FromText(" padded "));
  Put(Sheet, "B2", TCellValue::FromText("say \"hi\""));
  Put(Sheet, "C3", TCellValue::FromText("\xF0\x9F\x98\x80"));

  TWorkbook Copy;
  Import(Copy, Export(Book));
  EXPECT_EQ(ValueAt(Copy, 1, 1), TCellValue::FromNumber(-12.25));
  EXPECT_EQ(ValueAt(Copy, 2, 1), TCellValue::FromText("with, comma"));
  EXPECT_EQ(ValueAt(Copy, 1, 2), TCellValue::FromText(" padded "));
  EXPECT_EQ(ValueAt(Copy, 2, 2), TCellValue::FromText("say hi"));  // the kept asymmetry
  EXPECT_EQ(ValueAt(Copy, 3, 3), TCellValue::FromText("\xF0\x9F\x98\x80"));
}

TEST(CsvFiles, ExtensionIsAlwaysCsv) {
  TTempDir Dir;
  TWorkbook Book;
  Put(*Book.GetSheet(0), "A1", TCellValue::FromNumber(1));
  TCsvExportOptions Options;
  Options.Utf8Bom = false;
  TCsvIO::ExportWithOptions(Book, Dir.File("data.txt"), Options, 0);
  EXPECT_EQ(ReadFile(Dir.File("data.csv")), "1\r\n");
  EXPECT_FALSE(std::filesystem::exists(Dir.File("data.txt")));
  TCsvIO::ExportWithOptions(Book, Dir.File("noext"), Options, 0);
  EXPECT_TRUE(std::filesystem::exists(Dir.File("noext.csv")));
}

TEST(CsvFiles, EntireWorkbookWritesOneFilePerVisibleSheet) {
  TTempDir Dir;
  TWorkbook Book;
  Book.GetSheet(0)->FName = "Data";
  Put(*Book.GetSheet(0), "A1", TCellValue::FromText("data"));
  Put(*Book.AddSheet("Q1/Q2"), "A1", TCellValue::FromText("quarters"));
  Put(*Book.AddSheet("Secret"), "A1", TCellValue::FromText("hidden"));
  Book.SetSheetVisibility(2, svHidden);
  TCsvExportOptions Options;
  Options.What = pwEntireWorkbook;
  TCsvIO::ExportWithOptions(Book, Dir.File("out.csv"), Options, 0);

  EXPECT_EQ(ReadFile(Dir.File("out.csv")), Bom + "data\r\n");
  EXPECT_EQ(ReadFile(Dir.File("out_Q1_Q2.csv")), Bom + "quarters\r\n");
  EXPECT_FALSE(std::filesystem::exists(Dir.File("out_Secret.csv")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Dir.Path()), {}), 2);
}

TEST(CsvFiles, SelectionOfTheActiveSheet) {
  TTempDir Dir;
  TWorkbook Book;
  Put(*Book.GetSheet(0), "A1", TCellValue::FromText("first"));
  TWorksheet& Second = *Book.AddSheet("Second");
  Put(Second, "B2", TCellValue::FromNumber(5));
  Put(Second, "C3", TCellValue::FromNumber(6));
  TCsvExportOptions Options;
  Options.What = pwSelection;
  Options.Selection = TCellRange::FromA1("B2:C2");
  TCsvIO::ExportWithOptions(Book, Dir.File("sel.csv"), Options, 1);
  EXPECT_EQ(ReadFile(Dir.File("sel.csv")), Bom + "5,\r\n");
}

TEST(CsvFiles, ModifiedFlagRules) {
  TTempDir Dir;
  const std::string Name = Dir.File("book.csv");
  TWorkbook Book;
  Put(*Book.GetSheet(0), "A1", TCellValue::FromNumber(1));
  ASSERT_TRUE(Book.FModified);

  TCsvIO::ExportWithOptions(Book, Name, TCsvExportOptions::Default(), 0);
  EXPECT_TRUE(Book.FModified) << "an export is not a save";
  TCsvIO::SaveToFile(Book, Name, 0);
  EXPECT_FALSE(Book.FModified);

  TWorkbook Loaded;
  TCsvIO::LoadFromFile(Loaded, Name);
  EXPECT_TRUE(Loaded.FModified) << "loading imports, and an import marks modified";
  EXPECT_EQ(ValueAt(Loaded, 1, 1), TCellValue::FromNumber(1));
}
