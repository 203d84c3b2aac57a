// Reading reference arguments: the sheet an argument came from, and how a
// sheet's name is written in front of an address.
#pragma once

#include <string>
#include <string_view>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

// The sheet a reference argument reads: its origin sheet, or the formula's
// own sheet when the origin names none. nullptr for an argument that came
// from no reference, or when the context knows no sheets.
TWorksheet* OriginSheet(const TFormulaArg& Arg, const TFormulaContext& Context);

// "Name!", the name quoted where a formula needs it: "'My Sheet'!", "'A1'!",
// "'It''s'!".
std::string SheetPrefix(std::string_view SheetName);

}  // namespace Tabrino
