#include "Tabrino.TextUtil.h"

namespace Tabrino {

std::string_view TrimBlanks(std::string_view Text) {
  while (!Text.empty() && static_cast<unsigned char>(Text.front()) <= ' ') Text.remove_prefix(1);
  while (!Text.empty() && static_cast<unsigned char>(Text.back()) <= ' ') Text.remove_suffix(1);
  return Text;
}

std::string UpperAscii(std::string_view Text) {
  std::string Out(Text);
  for (char& C : Out)
    if (C >= 'a' && C <= 'z') C = static_cast<char>(C - 32);
  return Out;
}

std::string ReplaceAll(std::string_view Text, std::string_view From, std::string_view To) {
  if (From.empty()) return std::string(Text);
  std::string Out;
  Out.reserve(Text.size());
  size_t Pos = 0;
  for (size_t Hit; (Hit = Text.find(From, Pos)) != std::string_view::npos; Pos = Hit + From.size()) {
    Out.append(Text.substr(Pos, Hit - Pos));
    Out.append(To);
  }
  Out.append(Text.substr(Pos));
  return Out;
}

bool StartsWith(std::string_view Text, std::string_view Prefix) { return Text.substr(0, Prefix.size()) == Prefix; }

}  // namespace Tabrino
