// The evaluator's own functions, declared so that listings know them and the
// evaluator checks their argument counts against one place.
#include <algorithm>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

std::span<const TFunctionDef> SpecialFormFunctions() {
  static constexpr uint8_t Volatile = fnSpecialForm | fnVolatile;
  static const TFunctionDef Table[] = {
      // lookup: references computed while the formula runs
      {"INDIRECT", 1, 2, Volatile, nullptr},
      {"OFFSET", 3, 5, Volatile, nullptr},
      // information
      {"ISOMITTED", 1, 1, fnSpecialForm, nullptr},
      // logical: names and lambdas
      {"LET", 3, -1, fnSpecialForm, nullptr},
      {"LAMBDA", 2, -1, fnSpecialForm, nullptr},
      {"MAP", 2, -1, fnSpecialForm, nullptr},
      {"BYROW", 2, 2, fnSpecialForm, nullptr},
      {"BYCOL", 2, 2, fnSpecialForm, nullptr},
      {"REDUCE", 2, 3, fnSpecialForm, nullptr},
      {"SCAN", 2, 3, fnSpecialForm, nullptr},
      {"MAKEARRAY", 3, 3, fnSpecialForm, nullptr},
  };
  return Table;
}

const TFunctionDef* FindSpecialForm(std::string_view CanonicalName) {
  std::span<const TFunctionDef> Forms = SpecialFormFunctions();
  auto It =
      std::find_if(Forms.begin(), Forms.end(), [&](const TFunctionDef& Def) { return Def.Name == CanonicalName; });
  return It == Forms.end() ? nullptr : &*It;
}

}  // namespace Tabrino
