// Delimited text: the line and body splitters that text-import functions use,
// and TCsvIO, the CSV file format. CSV carries display texts one way and plain
// fields the other; what it loses on a round trip (doubled quotes, formats,
// formulas) is the nature of this format and stays.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Io.Files.h"
#include "Tabrino.PrintWhat.h"
#include "Tabrino.Types.h"

namespace Tabrino {

class TWorkbook;
class TWorksheet;

// Splits one line. A '"' toggles quoting and is never kept, so a doubled
// quote vanishes ("a""b" reads as ab); the delimiter ends a field only outside
// quotes. Nothing is trimmed, and an empty line gives one empty field.
std::vector<std::string> ParseDelimitedLine(std::string_view ALine, char32_t ADelimiter);
std::vector<std::string> ParseCsvLine(std::string_view ALine);

// Tab when the first 4096 characters hold more tabs than commas, else comma.
char32_t DetectTextDelimiter(std::string_view AText);

// Splits a whole text at CR LF, CR or LF and each line with
// ParseDelimitedLine. Only an empty last line is dropped; a line end inside
// quotes still ends the row. False when no row results.
bool ParseDelimitedBody(std::string_view AText, char32_t ADelimiter, std::vector<std::vector<std::string>>& ARows);

struct TCsvExportOptions {
  char32_t Delimiter = U',';
  bool Utf8Bom = true;
  TPrintWhat What = pwActiveSheets;
  TCellRange Selection = TCellRange::Make(1, 1, 1, 1);

  static TCsvExportOptions Default() { return {}; }
};

// How fields become cells on import.
struct TCsvImportOptions {
  // Off, as the format has it: a field is a number or text, "=..." included,
  // and an empty field is an empty text. On, each field becomes what typing
  // it into its cell would make: "=..." a formula, an empty field no cell at
  // all. For sheets whose formulas were kept as text.
  bool AsTyped = false;
};

// The CSV format: class-level operations only.
class TCsvIO {
 public:
  TCsvIO() = delete;

  // Doubles every quote; quotes the field when it held the delimiter, a quote,
  // CR or LF. Leading and trailing blanks do not cause quoting.
  static std::string EscapeCsvField(std::string_view AValue, char32_t ADelimiter);
  // A sheet name made safe for a file name: characters other than ASCII
  // letters, digits, blank, '-' and '_' become '_', then trimmed; "Sheet"
  // when nothing is left.
  static std::string SanitizeFileNamePart(std::string_view AValue);

  // Replaces the cells (only the cells) of sheet ASheetIndex with the lines of
  // AStream, from its current position, then marks the workbook modified.
  // Always comma-separated; a field that reads as a number in the current
  // locale becomes one, everything else text, formulas included.
  static void ImportSheet(TWorkbook& AWorkbook, std::istream& AStream, int32_t ASheetIndex,
                          const TIoProgressProc& AProgress = {}, const TCsvImportOptions& AOptions = {});
  // The used range of the sheet with the default options.
  static void ExportSheet(const TWorkbook& AWorkbook, std::ostream& AStream, int32_t ASheetIndex);
  // Display texts, as the user sees them, with CR LF line ends.
  static void ExportRange(const TWorkbook& AWorkbook, const TWorksheet* ASheet, std::ostream& AStream,
                          const TCellRange& ARange, const TCsvExportOptions& AOptions);
  // Writes base + ".csv" whatever extension AFileName had, and for the whole
  // workbook base + "_" + sheet name + ".csv" for each other visible sheet.
  // An export, not a save: the modified flag stays.
  static void ExportWithOptions(const TWorkbook& AWorkbook, const std::string& AFileName,
                                const TCsvExportOptions& AOptions, int32_t AActiveSheetIndex);

  // Imports into sheet 0; the modified flag is left as the import sets it.
  static void LoadFromFile(TWorkbook& AWorkbook, const std::string& AFileName, const TIoProgressProc& AProgress = {},
                           const TCsvImportOptions& AOptions = {});
  // Exports with the default options, then clears the modified flag.
  static void SaveToFile(TWorkbook& AWorkbook, const std::string& AFileName, int32_t AActiveSheetIndex);
};

}  // namespace Tabrino
