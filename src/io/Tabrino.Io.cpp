#include "Tabrino.Io.h"

#include <fmt/format.h>

#include <filesystem>

#include "Tabrino.Io.Csv.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

namespace {

// One row per format; a new format is one more row. Save is the format's own
// save (which clears the modified flag); Export, where a format can write
// without touching the workbook, leaves it alone.
struct TFormatEntry {
  TTabrinoFileFormat Format;
  void (*Load)(TWorkbook&, const std::string&, const TIoProgressProc&);
  void (*Save)(TWorkbook&, const std::string&);
  void (*Export)(const TWorkbook&, const std::string&);
};

void CsvLoad(TWorkbook& W, const std::string& F, const TIoProgressProc& P) {
  TCsvIO::LoadFromFile(W, F, P);
}
void CsvSave(TWorkbook& W, const std::string& F) {
  TCsvIO::SaveToFile(W, F, W.FActiveSheetIndex);
}
void CsvExport(const TWorkbook& W, const std::string& F) {
  TCsvIO::ExportWithOptions(W, F, TCsvExportOptions::Default(), W.FActiveSheetIndex);
}

constexpr TFormatEntry Formats[] = {
    {ffCsv, &CsvLoad, &CsvSave, &CsvExport},
};

std::string ExtensionForMessage(const std::string& AFileName, TTabrinoFileFormat AFormat) {
  switch (AFormat) {
    case ffTbx: return ".tbx";
    case ffXlsx: return ".xlsx";
    case ffOds: return ".ods";
    case ffCsv: return ".csv";
    case ffAuto: break;
  }
  const std::string Extension = std::filesystem::path(AFileName).extension().string();
  return Extension.empty() ? fmt::format("\"{}\" has no extension", AFileName) : Extension;
}

// The entry's operation Op for the file's format; raises when there is none.
template <typename TOperation>
TOperation OperationFor(const std::string& AFileName, TTabrinoFileFormat AFormat, TOperation TFormatEntry::*Op) {
  const TTabrinoFileFormat Format = AFormat == ffAuto ? FileFormatFromExtension(AFileName) : AFormat;
  for (const TFormatEntry& Entry : Formats) {
    if (Entry.Format == Format && Entry.*Op) return Entry.*Op;
  }
  throw EException(fmt::format("Unsupported file format: {}", ExtensionForMessage(AFileName, AFormat)));
}

}  // namespace

void LoadWorkbook(TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat,
                  const TIoProgressProc& AProgress) {
  std::error_code Error;
  if (!std::filesystem::exists(AFileName, Error)) throw EException(fmt::format("File not found: {}", AFileName));
  OperationFor(AFileName, AFormat, &TFormatEntry::Load)(AWorkbook, AFileName, AProgress);
}

void SaveWorkbook(TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat) {
  OperationFor(AFileName, AFormat, &TFormatEntry::Save)(AWorkbook, AFileName);
}

void SaveWorkbook(const TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat) {
  OperationFor(AFileName, AFormat, &TFormatEntry::Export)(AWorkbook, AFileName);
}

}  // namespace Tabrino
