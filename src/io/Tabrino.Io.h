// The front door to the file formats: load and save a workbook by file name,
// the format chosen by the extension unless one is given.
#pragma once

#include <string>

#include "Tabrino.Io.Files.h"
#include "Tabrino.Types.h"

namespace Tabrino {

class TWorkbook;

// Raises EException "File not found: <name>" for a missing file and
// "Unsupported file format: <extension>" for a format that cannot be read.
void LoadWorkbook(TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat = ffAuto,
                  const TIoProgressProc& AProgress = {});
// A save: the workbook is no longer modified afterwards.
void SaveWorkbook(TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat = ffAuto);
// An export of a workbook that stays as it is, modified flag included.
void SaveWorkbook(const TWorkbook& AWorkbook, const std::string& AFileName, TTabrinoFileFormat AFormat = ffAuto);

}  // namespace Tabrino
