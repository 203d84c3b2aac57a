// Turns a number and a spreadsheet format text into display text. Stateless:
// the format is interpreted on every call.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Tabrino.Types.h"

namespace Tabrino {

std::string BuiltInExcelNumberFormat(int32_t Id);
std::string FormatNumber(double Value, std::string_view Format);
std::string FormatCellValue(const TCellValue& Value, std::string_view Format);
// True when the section chosen for Value carries a colour tag; Color starts black.
bool NumberFormatColor(double Value, std::string_view Format, uint32_t& Color);
// For formats with a "*" fill: the text left and right of the fill point.
bool TryFormatNumberFillSplit(double Value, std::string_view Format, std::string& Left, std::string& Right);
bool IsTextNumberFormat(std::string_view Format);

}  // namespace Tabrino
