// Text to number under the process-wide locale settings: the one conversion
// that CSV import, formula coercion and criteria share.
#pragma once

#include <string_view>

namespace Tabrino {

// Accepts surrounding blanks, an optional sign, digits with at most one
// locale decimal separator (at least one digit in all), and an optional
// exponent ("E"/"e", optional sign, digits). No thousands separators, no
// currency, no hexadecimal, no INF/NAN. False leaves Number untouched.
bool TryTextToFloat(std::string_view Text, double& Number);

}  // namespace Tabrino
