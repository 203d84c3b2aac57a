#include <gtest/gtest.h>

#include <string>

#include "Tabrino.Io.h"
#include "Tabrino.Workbook.h"
#include "TempDir.h"

using namespace Tabrino;
using namespace TabrinoTest;

namespace {

std::string MessageOf(const std::function<void()>& Action) {
  try {
    Action();
  } catch (const EException& E) {
    return E.what();
  }
  return "(no exception)";
}

}  // namespace

TEST(FrontDoor, LoadsAndSavesCsvByExtension) {
  TTempDir Dir;
  WriteFile(Dir.File("in.CSV"), "1,x\n");
  TWorkbook Book;
  LoadWorkbook(Book, Dir.File("in.CSV"));
  EXPECT_EQ(Book.GetSheet(0)->GetCellAt(1, 1).Value, TCellValue::FromNumber(1));
  EXPECT_TRUE(Book.FModified);

  const TWorkbook& Unchanged = Book;
  SaveWorkbook(Unchanged, Dir.File("export.csv"));
  EXPECT_TRUE(Book.FModified) << "an export of a const workbook leaves the flag";
  SaveWorkbook(Book, Dir.File("saved.csv"));
  EXPECT_FALSE(Book.FModified);
  EXPECT_EQ(ReadFile(Dir.File("saved.csv")),
            "\xEF\xBB\xBF"
            "1,x\r\n");
  EXPECT_EQ(ReadFile(Dir.File("export.csv")), ReadFile(Dir.File("saved.csv")));
}

TEST(FrontDoor, ClearErrors) {
  TTempDir Dir;
  TWorkbook Book;
  const std::string Missing = Dir.File("missing.csv");
  EXPECT_EQ(MessageOf([&] { LoadWorkbook(Book, Missing); }), "File not found: " + Missing);
  WriteFile(Dir.File("notes.txt"), "x");
  EXPECT_EQ(MessageOf([&] { LoadWorkbook(Book, Dir.File("notes.txt")); }), "Unsupported file format: .txt");
  EXPECT_EQ(MessageOf([&] { SaveWorkbook(Book, Dir.File("out.txt")); }), "Unsupported file format: .txt");
  EXPECT_EQ(MessageOf([&] { SaveWorkbook(Book, Dir.File("out.csv"), ffXlsx); }), "Unsupported file format: .xlsx");
  EXPECT_EQ(MessageOf([&] { SaveWorkbook(Book, Dir.File("README")); }),
            "Unsupported file format: \"" + Dir.File("README") + "\" has no extension");
  EXPECT_FALSE(std::filesystem::exists(Dir.File("out.txt")));
}
