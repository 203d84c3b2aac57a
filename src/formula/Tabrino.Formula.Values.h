// The conversions every part of the formula engine shares: numbers from
// values, truthiness, comparison. One rule each, so the evaluator and the
// built-ins agree.
#pragma once

#include <string>
#include <string_view>

#include "Tabrino.Types.h"

namespace Tabrino {

// Empty is 0, booleans 1/0, text when it reads as a number under the locale
// (empty text fails), numbers themselves; everything else fails.
bool AsNumber(const TCellValue& Value, double& Number);
// Text: non-empty; number: non-zero (NaN too); boolean: itself; else false.
bool ValueIsTruthy(const TCellValue& Value);
// Numbers when both convert, else case-insensitive display texts. Returns a
// boolean value, or ceValue for an unknown operator.
TCellValue CompareValues(const TCellValue& A, const TCellValue& B, std::string_view Op);
// Case-insensitive (ASCII folding) three-way comparison of two texts.
int CompareTextNoCase(std::string_view A, std::string_view B);
bool EqualsNoCase(std::string_view A, std::string_view B);

}  // namespace Tabrino
