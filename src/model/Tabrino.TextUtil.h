// Small text helpers over std::string_view (abseil's string_view is a
// distinct type on this platform, so its helpers do not take ours).
#pragma once

#include <string>
#include <string_view>

namespace Tabrino {

// Removes control characters and blanks (everything up to U+0020) at both ends.
std::string_view TrimBlanks(std::string_view Text);
std::string UpperAscii(std::string_view Text);
std::string ReplaceAll(std::string_view Text, std::string_view From, std::string_view To);
bool StartsWith(std::string_view Text, std::string_view Prefix);

}  // namespace Tabrino
