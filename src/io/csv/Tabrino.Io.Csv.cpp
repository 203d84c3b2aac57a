#include "Tabrino.Io.Csv.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "Tabrino.Io.Text.h"
#include "Tabrino.NumberParse.h"
#include "Tabrino.Utf16.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

namespace {

constexpr std::string_view Utf8Bom = "\xEF\xBB\xBF";
constexpr size_t DetectWindow = 4096;     // characters looked at by DetectTextDelimiter
constexpr size_t ProgressStep = 1 << 20;  // bytes between two progress reports
constexpr size_t WriteChunk = 1 << 16;    // bytes collected before a write

std::string DelimiterText(char32_t ADelimiter) {
  std::string Text;
  AppendUtf8(Text, ADelimiter);
  return Text;
}

// Calls AOnField(Index, Text) for each field of ALine (see ParseDelimitedLine).
// A field without quotes is a view into ALine; one with quotes is assembled
// in AScratch, so no field costs an allocation of its own.
template <typename TOnField>
void ForEachField(std::string_view ALine, std::string_view ADelimiter, std::string& AScratch, TOnField&& AOnField) {
  const char DelimiterLead = ADelimiter.front();
  bool InQuotes = false, HadQuote = false;
  size_t FieldStart = 0, SegmentStart = 0;
  int32_t Index = 0;
  AScratch.clear();
  auto Emit = [&](size_t End) {
    if (HadQuote) {
      AScratch.append(ALine.substr(SegmentStart, End - SegmentStart));
      AOnField(Index++, std::string_view(AScratch));
      AScratch.clear();
    } else {
      AOnField(Index++, ALine.substr(FieldStart, End - FieldStart));
    }
    HadQuote = false;
  };
  for (size_t Pos = 0; Pos < ALine.size(); ++Pos) {
    const char C = ALine[Pos];
    if (C == '"') {
      AScratch.append(ALine.substr(SegmentStart, Pos - SegmentStart));
      SegmentStart = Pos + 1;
      HadQuote = true;
      InQuotes = !InQuotes;
    } else if (C == DelimiterLead && !InQuotes && ALine.substr(Pos).starts_with(ADelimiter)) {
      Emit(Pos);
      Pos += ADelimiter.size() - 1;
      FieldStart = SegmentStart = Pos + 1;
    }
  }
  Emit(ALine.size());
}

// Calls AOnLine(Line, NextPos) for each line, ending at CR LF, CR or LF. A
// final line end makes no extra empty line.
template <typename TOnLine>
void ForEachLine(std::string_view AText, TOnLine&& AOnLine) {
  size_t Pos = 0;
  while (Pos < AText.size()) {
    size_t End = Pos;
    while (End < AText.size() && AText[End] != '\n' && AText[End] != '\r') ++End;
    size_t Next = End + 1;
    if (End < AText.size() && AText[End] == '\r' && Next < AText.size() && AText[Next] == '\n') ++Next;
    Next = std::min(Next, AText.size());
    if (!AOnLine(AText.substr(Pos, End - Pos), Next)) return;
    Pos = Next;
  }
}

void AppendEscapedField(std::string& Out, std::string_view AValue, std::string_view ADelimiter) {
  const bool NeedsQuotes =
      AValue.find(ADelimiter) != std::string_view::npos || AValue.find_first_of("\"\r\n") != std::string_view::npos;
  if (NeedsQuotes) Out += '"';
  for (size_t Pos = 0;;) {
    size_t Quote = AValue.find('"', Pos);
    Out.append(AValue.substr(Pos, Quote - Pos));
    if (Quote == std::string_view::npos) break;
    Out += "\"\"";
    Pos = Quote + 1;
  }
  if (NeedsQuotes) Out += '"';
}

// Sizes the cell map once for the whole import instead of growing it step by step.
void ReserveCells(TWorksheet& ASheet, std::string_view AText) {
  const char LineEnd = AText.find('\n') != std::string_view::npos ? '\n' : '\r';
  const size_t Lines = std::count(AText.begin(), AText.end(), LineEnd) + 1;
  const size_t FirstLineEnd = AText.find_first_of("\r\n");
  const std::string_view FirstLine = AText.substr(0, FirstLineEnd);
  const size_t Fields = std::count(FirstLine.begin(), FirstLine.end(), ',') + 1;
  ASheet.FCells.reserve(std::min(Lines * Fields, AText.size() + Lines));
}

TCellRange UsedRange(const TWorksheet* ASheet) {
  return ASheet ? TCellRange::Make(1, 1, ASheet->FUsedMaxCol, ASheet->FUsedMaxRow) : TCellRange::Make(1, 1, 1, 1);
}

// The file name without its extension, as long as the last dot is in the name
// and not in a folder.
std::string WithoutExtension(const std::string& AFileName) {
  const size_t Dot = AFileName.find_last_of('.');
  const size_t Slash = AFileName.find_last_of("/\\");
  if (Dot == std::string::npos || (Slash != std::string::npos && Dot < Slash)) return AFileName;
  return AFileName.substr(0, Dot);
}

}  // namespace

std::vector<std::string> ParseDelimitedLine(std::string_view ALine, char32_t ADelimiter) {
  std::vector<std::string> Fields;
  std::string Scratch;
  ForEachField(ALine, DelimiterText(ADelimiter), Scratch,
               [&](int32_t, std::string_view Field) { Fields.emplace_back(Field); });
  return Fields;
}

std::vector<std::string> ParseCsvLine(std::string_view ALine) {
  return ParseDelimitedLine(ALine, U',');
}

char32_t DetectTextDelimiter(std::string_view AText) {
  const std::string_view Window = AText.substr(0, Utf8OffsetOfUtf16(AText, DetectWindow));
  const auto Tabs = std::count(Window.begin(), Window.end(), '\t');
  const auto Commas = std::count(Window.begin(), Window.end(), ',');
  return Tabs > Commas ? U'\t' : U',';
}

bool ParseDelimitedBody(std::string_view AText, char32_t ADelimiter, std::vector<std::vector<std::string>>& ARows) {
  ARows.clear();
  ForEachLine(AText, [&](std::string_view Line, size_t) {
    ARows.push_back(ParseDelimitedLine(Line, ADelimiter));
    return true;
  });
  return !ARows.empty();
}

std::string TCsvIO::EscapeCsvField(std::string_view AValue, char32_t ADelimiter) {
  std::string Out;
  AppendEscapedField(Out, AValue, DelimiterText(ADelimiter));
  return Out;
}

std::string TCsvIO::SanitizeFileNamePart(std::string_view AValue) {
  std::string Out;
  Out.reserve(AValue.size());
  for (size_t Pos = 0; Pos < AValue.size();) {
    const char32_t C = DecodeUtf8(AValue, Pos);
    const bool Kept =
        (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') || (C >= '0' && C <= '9') || C == ' ' || C == '-' || C == '_';
    // One '_' per UTF-16 unit, as the name counts characters.
    Out.append(Kept ? 1 : Utf16UnitsOf(C), Kept ? static_cast<char>(C) : '_');
  }
  const size_t First = Out.find_first_not_of(' ');
  if (First == std::string::npos) return "Sheet";
  return Out.substr(First, Out.find_last_not_of(' ') - First + 1);
}

void TCsvIO::ImportSheet(TWorkbook& AWorkbook, std::istream& AStream, int32_t ASheetIndex,
                         const TIoProgressProc& AProgress, const TCsvImportOptions& AOptions) {
  if (AWorkbook.SheetCount() == 0) AWorkbook.AddSheet("Sheet1");
  TWorksheet* Sheet = AWorkbook.GetSheet(ASheetIndex);
  if (!Sheet) return;
  Sheet->FCells.clear();

  std::string Text = ReadAllBytes(AStream);
  DecodeTextBytes(Text);
  ReserveCells(*Sheet, Text);

  TCell Cell;  // reused, so that a text field reuses the string's buffer
  std::string Scratch;
  int32_t Row = 0;
  size_t NextReport = ProgressStep;
  ForEachLine(Text, [&](std::string_view Line, size_t NextPos) {
    ++Row;
    ForEachField(Line, ",", Scratch, [&](int32_t Index, std::string_view Field) {
      TCellValue& Value = Cell.Value;
      Value.Number = 0;
      Value.Text.clear();
      Value.Formula.clear();
      if (AOptions.AsTyped && Field.empty()) {
        // No cell, but the sheet's extent still takes in the field.
        Sheet->UpdateUsedBounds(TCellAddress{Index + 1, Row});
        return;
      }
      if (TryTextToFloat(Field, Value.Number)) {
        Value.Kind = cvkNumber;
      } else if (AOptions.AsTyped && Field.size() > 1 && Field.front() == '=') {
        Value.Kind = cvkFormula;
        Value.Formula.assign(Field);
      } else {
        Value.Kind = cvkText;
        Value.Text.assign(Field);
      }
      Sheet->SetCell(TCellAddress{Index + 1, Row}, Cell);
    });
    if (AProgress && NextPos >= NextReport) {
      AProgress(NextPos, Text.size());
      NextReport = NextPos + ProgressStep;
    }
    return Row < INT32_MAX;
  });
  if (AProgress) AProgress(Text.size(), Text.size());
  AWorkbook.MarkModified();
}

void TCsvIO::ExportSheet(const TWorkbook& AWorkbook, std::ostream& AStream, int32_t ASheetIndex) {
  const TWorksheet* Sheet = AWorkbook.GetSheet(ASheetIndex);
  ExportRange(AWorkbook, Sheet, AStream, UsedRange(Sheet), TCsvExportOptions::Default());
}

void TCsvIO::ExportRange(const TWorkbook& AWorkbook, const TWorksheet* ASheet, std::ostream& AStream,
                         const TCellRange& ARange, const TCsvExportOptions& AOptions) {
  if (!ASheet) return;
  const TCellRange Range = ARange.Normalize();
  if (Range.StartCol > Range.EndCol || Range.StartRow > Range.EndRow) return;
  const std::string Delimiter = DelimiterText(AOptions.Delimiter);
  std::string Out;
  Out.reserve(WriteChunk + 1024);
  if (AOptions.Utf8Bom) Out += Utf8Bom;
  for (int32_t Row = Range.StartRow; Row <= Range.EndRow; ++Row) {
    for (int32_t Col = Range.StartCol; Col <= Range.EndCol; ++Col) {
      if (Col > Range.StartCol) Out += Delimiter;
      // What the user sees: formatted numbers, formula results, never sources.
      AppendEscapedField(Out, ASheet->GetDisplayText(TCellAddress{Col, Row}, &AWorkbook.FStyleSheet), Delimiter);
    }
    Out += "\r\n";
    if (Out.size() >= WriteChunk) {
      AStream.write(Out.data(), static_cast<std::streamsize>(Out.size()));
      Out.clear();
    }
  }
  AStream.write(Out.data(), static_cast<std::streamsize>(Out.size()));
}

void TCsvIO::ExportWithOptions(const TWorkbook& AWorkbook, const std::string& AFileName,
                               const TCsvExportOptions& AOptions, int32_t AActiveSheetIndex) {
  const std::string Base = WithoutExtension(AFileName);
  auto SaveRange = [&](const std::string& FileName, const TWorksheet* Sheet, const TCellRange& Range) {
    SaveToFileViaTemp(FileName, MakeWriteStreamProc([&](std::ostream& Stream) {
                        ExportRange(AWorkbook, Sheet, Stream, Range, AOptions);
                      }));
  };
  const TWorksheet* Active = AWorkbook.GetSheet(AActiveSheetIndex);
  switch (AOptions.What) {
    case pwSelection: SaveRange(Base + ".csv", Active, AOptions.Selection); break;
    case pwActiveSheets: SaveRange(Base + ".csv", Active, UsedRange(Active)); break;
    case pwEntireWorkbook:
      for (int32_t Index = 0; Index < AWorkbook.SheetCount(); ++Index) {
        const TWorksheet* Sheet = AWorkbook.GetSheet(Index);
        if (!Sheet->IsVisible()) continue;
        const std::string FileName =
            Index == AActiveSheetIndex ? Base + ".csv" : Base + "_" + SanitizeFileNamePart(Sheet->FName) + ".csv";
        SaveRange(FileName, Sheet, UsedRange(Sheet));
      }
      break;
  }
}

void TCsvIO::LoadFromFile(TWorkbook& AWorkbook, const std::string& AFileName, const TIoProgressProc& AProgress,
                          const TCsvImportOptions& AOptions) {
  std::unique_ptr<std::istream> Stream;
  bool UsedCopy = false;
  OpenSharedReadStream(AFileName, Stream, UsedCopy);
  ImportSheet(AWorkbook, *Stream, 0, AProgress, AOptions);
}

void TCsvIO::SaveToFile(TWorkbook& AWorkbook, const std::string& AFileName, int32_t AActiveSheetIndex) {
  ExportWithOptions(AWorkbook, AFileName, TCsvExportOptions::Default(), AActiveSheetIndex);
  AWorkbook.ClearModified();
}

}  // namespace Tabrino
