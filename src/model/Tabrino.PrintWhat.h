// What a print job or an export covers; shared by printing and the CSV export.
#pragma once

#include <cstdint>

namespace Tabrino {

enum TPrintWhat : uint8_t { pwSelection, pwActiveSheets, pwEntireWorkbook };

}  // namespace Tabrino
