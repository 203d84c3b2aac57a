// Text is UTF-8 throughout; where behaviour counts characters (text
// functions, token spans, carets) it counts UTF-16 code units, as users of
// spreadsheets expect. These helpers are the one place that arithmetic lives.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tabrino {

// Decodes one code point at Pos and advances Pos; invalid bytes decode as
// U+FFFD one byte at a time, so every input makes progress.
char32_t DecodeUtf8(std::string_view Text, size_t& Pos);
void AppendUtf8(std::string& Out, char32_t CodePoint);

inline size_t Utf16UnitsOf(char32_t CodePoint) { return CodePoint >= 0x10000 ? 2 : 1; }
size_t Utf16Length(std::string_view Text);

// Byte offset in Text of the UTF-16 unit index Units (clamped to the text).
// An index that falls inside a surrogate pair points at the pair's start.
size_t Utf8OffsetOfUtf16(std::string_view Text, size_t Units);
// Substring by UTF-16 units: Start is 0-based, Count clamped to the text.
std::string Utf16Substr(std::string_view Text, size_t Start, size_t Count = std::string::npos);

std::u16string Utf8ToUtf16(std::string_view Text);
std::string Utf16ToUtf8(std::u16string_view Text);

}  // namespace Tabrino
