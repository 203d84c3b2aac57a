// Functions that differ from their plain twins only under a double-byte
// (East Asian) system locale. This engine speaks a single-byte locale, where
// the byte-counting functions (FINDB, LEFTB, ...) count as the character
// versions do, the width conversions (ASC, JIS, DBCS) leave text as it is,
// and PHONETIC, with no stored reading to give, gives the text itself.

#include <string>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// FINDB is FIND, LEFTB is LEFT, and so on: the core function of the name
// without its final "B".
TCellValue SameAsCharacterVersion(const TFunctionCall& Call) {
  std::string_view Name = Call.Name;
  const TFunctionDef* Twin = FindCoreFunction(Name.substr(0, Name.size() - 1));
  return Twin ? Twin->Invoke(Call) : Err(ceName);
}

TCellValue Unchanged(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkError) return Value;
  return Text(Value.ToDisplayString());
}

}  // namespace

std::span<const TFunctionDef> DoubleByteTextFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"FINDB", 2, 3, fnNone, SameAsCharacterVersion},
      {"LEFTB", 1, 2, fnNone, SameAsCharacterVersion},
      {"LENB", 1, 1, fnNone, SameAsCharacterVersion},
      {"MIDB", 3, 3, fnNone, SameAsCharacterVersion},
      {"REPLACEB", 4, 4, fnNone, SameAsCharacterVersion},
      {"RIGHTB", 1, 2, fnNone, SameAsCharacterVersion},
      {"SEARCHB", 2, 3, fnNone, SameAsCharacterVersion},
      {"ASC", 1, 1, fnNone, Unchanged},
      {"JIS", 1, 1, fnNone, Unchanged},
      {"DBCS", 1, 1, fnNone, Unchanged},
      {"PHONETIC", 1, 1, fnNone, Unchanged},
  };
  return Table;
}

}  // namespace Tabrino
