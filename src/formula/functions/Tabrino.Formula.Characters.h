// Character-level rules of the text functions: letter case without a locale
// library, and the single-byte code page that CHAR and CODE speak.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Tabrino {

// Case pairs of ASCII, Latin-1, Latin Extended-A, basic Greek and basic
// Cyrillic; every other character maps to itself.
char32_t UpperChar(char32_t C);
char32_t LowerChar(char32_t C);
// A character with a case, which is what starts and continues a word for PROPER.
bool IsCasedLetter(char32_t C);

std::string UpperText(std::string_view Text);
std::string LowerText(std::string_view Text);
// First letter of every run of letters upper-cased, the rest lower-cased.
std::string ProperText(std::string_view Text);

// Windows-1252: the code page of a Western system. Bytes the code page leaves
// undefined stand for the control character of the same number.
char32_t CodePageToChar(uint8_t Byte);
// The byte of a character, or 63 ("?") for one the code page cannot hold.
uint8_t CharToCodePage(char32_t C);

}  // namespace Tabrino
