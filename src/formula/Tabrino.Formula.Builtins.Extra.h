// The extended built-ins: every function beyond the core set. The evaluator
// asks here when the core dispatcher does not know a name.
#pragma once

#include <span>
#include <string_view>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

// True when Name is an extended function; Value is then its result (ceValue
// for an argument count the function does not take).
bool TryEvaluateExtra(std::string_view Name, std::span<const TFormulaArg> Args, const TFormulaContext& Context,
                      TCellValue& Value);

}  // namespace Tabrino
