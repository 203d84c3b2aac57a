#include "Tabrino.Io.Text.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "Tabrino.Utf16.h"

namespace Tabrino {

namespace {

constexpr char32_t ReplacementChar = 0xFFFD;

bool IsSurrogate(char32_t C) {
  return C >= 0xD800 && C <= 0xDFFF;
}

bool StartsWithBytes(const std::string& Buffer, std::initializer_list<uint8_t> Bytes) {
  if (Buffer.size() < Bytes.size()) return false;
  size_t I = 0;
  for (uint8_t B : Bytes) {
    if (static_cast<uint8_t>(Buffer[I++]) != B) return false;
  }
  return true;
}

// Length of the leading run of ASCII bytes, eight at a time where possible.
size_t AsciiPrefix(std::string_view Text, size_t Pos) {
  constexpr uint64_t HighBits = 0x8080808080808080ull;
  while (Pos + 8 <= Text.size()) {
    uint64_t Word;
    std::memcpy(&Word, Text.data() + Pos, 8);
    if (Word & HighBits) break;
    Pos += 8;
  }
  while (Pos < Text.size() && static_cast<unsigned char>(Text[Pos]) < 0x80) ++Pos;
  return Pos;
}

// Validates UTF-8 in place. Well-formed input (the usual case) is left as it
// is without a copy; the first bad sequence starts a rebuilt copy.
bool SanitizeUtf8(std::string& Buffer) {
  std::string_view Text = Buffer;
  std::string Fixed;
  bool Rebuilding = false, HadSurrogates = false;
  size_t Copied = 0;  // bytes of Text already moved to Fixed
  for (size_t Pos = AsciiPrefix(Text, 0); Pos < Text.size(); Pos = AsciiPrefix(Text, Pos)) {
    size_t Start = Pos;
    char32_t Cp = DecodeUtf8(Text, Pos);
    bool Broken = (Cp == ReplacementChar && Pos - Start == 1) || IsSurrogate(Cp);
    if (Cp >= 0x10000 || IsSurrogate(Cp)) HadSurrogates = true;
    if (!Broken) continue;
    if (!Rebuilding) {
      Fixed.reserve(Buffer.size() + 16);
      Rebuilding = true;
    }
    Fixed.append(Text.substr(Copied, Start - Copied));
    AppendUtf8(Fixed, ReplacementChar);
    Copied = Pos;
  }
  if (Rebuilding) {
    Fixed.append(Text.substr(Copied));
    Buffer = std::move(Fixed);
  }
  return HadSurrogates;
}

bool DecodeUtf16(std::string& Buffer, bool BigEndian) {
  const size_t Units = (Buffer.size() - 2) / 2;
  std::u16string Wide(Units, u'\0');
  bool HadSurrogates = false;
  for (size_t I = 0; I < Units; ++I) {
    auto Hi = static_cast<uint8_t>(Buffer[2 + 2 * I + (BigEndian ? 0 : 1)]);
    auto Lo = static_cast<uint8_t>(Buffer[2 + 2 * I + (BigEndian ? 1 : 0)]);
    Wide[I] = static_cast<char16_t>((Hi << 8) | Lo);
    if (IsSurrogate(Wide[I])) HadSurrogates = true;
  }
  std::string Text = Utf16ToUtf8(Wide);                           // lone surrogates come out as U+FFFD
  if (Buffer.size() % 2 != 0) AppendUtf8(Text, ReplacementChar);  // a half unit at the end
  Buffer = std::move(Text);
  return HadSurrogates;
}

}  // namespace

bool DecodeTextBytes(std::string& ABuffer) {
  if (StartsWithBytes(ABuffer, {0xFF, 0xFE})) return DecodeUtf16(ABuffer, false);
  if (StartsWithBytes(ABuffer, {0xFE, 0xFF})) return DecodeUtf16(ABuffer, true);
  if (StartsWithBytes(ABuffer, {0xEF, 0xBB, 0xBF})) ABuffer.erase(0, 3);
  return SanitizeUtf8(ABuffer);
}

}  // namespace Tabrino
