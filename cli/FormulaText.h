// Shared rendering for the formula debugging commands: texts shown in double
// quotes with control characters escaped, so a tab or a line break inside a
// formula stays visible on one output line.
#pragma once

#include <string>
#include <string_view>

namespace TabrinoCli {

std::string QuotedText(std::string_view Text);

}  // namespace TabrinoCli
