#include "FormulaText.h"

#include <fmt/format.h>

#include "Tabrino.Utf16.h"

namespace TabrinoCli {

std::string QuotedText(std::string_view Text) {
  std::string Out = "\"";
  for (size_t Pos = 0; Pos < Text.size();) {
    char C = Text[Pos];
    auto Byte = static_cast<unsigned char>(C);
    if (Byte >= 0x80) {
      size_t Start = Pos;
      // A byte that starts no valid sequence decodes alone; show it as a hex escape.
      if (Tabrino::DecodeUtf8(Text, Pos) == 0xFFFD && Pos == Start + 1)
        Out += fmt::format("\\x{:02X}", Byte);
      else
        Out.append(Text.substr(Start, Pos - Start));
      continue;
    }
    ++Pos;
    switch (C) {
      case '"': Out += "\\\""; break;
      case '\\': Out += "\\\\"; break;
      case '\t': Out += "\\t"; break;
      case '\n': Out += "\\n"; break;
      case '\r': Out += "\\r"; break;
      default:
        if (Byte < 0x20 || Byte == 0x7F)
          Out += fmt::format("\\x{:02X}", Byte);
        else
          Out += C;
    }
  }
  return Out + "\"";
}

}  // namespace TabrinoCli
