// The classic float formatter: a small pattern language of digit placeholders
// ("0" always shown, "#" only when significant, "?" a blank when not), a
// grouping or scaling ",", a decimal ".", an "E+"/"E-" exponent and quoted
// literals, in up to three ";" sections for positive, negative and zero values.
// Separators in the output come from FormatSettings().
#pragma once

#include <string>
#include <string_view>

namespace Tabrino {

std::string FormatFloat(std::string_view Format, double Value);

}  // namespace Tabrino
