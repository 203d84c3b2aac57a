#include "Tabrino.Formula.Characters.h"

#include <algorithm>
#include <iterator>

#include "Tabrino.Utf16.h"

namespace Tabrino {

namespace {

// Upper-case letters First..Last and the distance to their lower case. A
// paired span alternates upper and lower (U+0100 A-macron, U+0101 a-macron, ...)
// and lists only its upper-case letters, every second one from First.
struct TCaseSpan {
  char32_t First, Last;
  int32_t ToLower;
  bool Paired;
};

constexpr TCaseSpan CaseSpans[] = {
    {0x0041, 0x005A, 32, false},    // ASCII
    {0x00C0, 0x00D6, 32, false},    // Latin-1, before the multiplication sign
    {0x00D8, 0x00DE, 32, false},    // Latin-1, after it
    {0x0178, 0x0178, -121, false},  // Y with diaeresis, whose lower case is in Latin-1
    {0x0100, 0x012E, 1, true},      // Latin Extended-A
    {0x0132, 0x0136, 1, true},     {0x0139, 0x0147, 1, true},   {0x014A, 0x0176, 1, true},
    {0x0179, 0x017D, 1, true},     {0x0386, 0x0386, 38, false},  // Greek with tonos
    {0x0388, 0x038A, 37, false},   {0x038C, 0x038C, 64, false}, {0x038E, 0x038F, 63, false},
    {0x0391, 0x03A1, 32, false},                                 // Greek
    {0x03A3, 0x03AB, 32, false},   {0x0400, 0x040F, 80, false},  // Cyrillic
    {0x0410, 0x042F, 32, false},
};

constexpr char32_t FinalSigma = 0x03C2, CapitalSigma = 0x03A3;

bool InSpan(char32_t C, char32_t First, char32_t Last, bool Paired) {
  return C >= First && C <= Last && (!Paired || (C - First) % 2 == 0);
}

template <char32_t (*Map)(char32_t)>
std::string MapText(std::string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  for (size_t Pos = 0; Pos < Text.size();) AppendUtf8(Out, Map(DecodeUtf8(Text, Pos)));
  return Out;
}

// 0x80..0x9F of Windows-1252; 0 marks the bytes it leaves undefined.
constexpr char16_t Windows1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

}  // namespace

char32_t LowerChar(char32_t C) {
  for (const TCaseSpan& S : CaseSpans) {
    if (InSpan(C, S.First, S.Last, S.Paired)) return static_cast<char32_t>(static_cast<int32_t>(C) + S.ToLower);
  }
  return C;
}

char32_t UpperChar(char32_t C) {
  if (C == FinalSigma) return CapitalSigma;
  for (const TCaseSpan& S : CaseSpans) {
    char32_t First = static_cast<char32_t>(static_cast<int32_t>(S.First) + S.ToLower);
    char32_t Last = static_cast<char32_t>(static_cast<int32_t>(S.Last) + S.ToLower);
    if (InSpan(C, First, Last, S.Paired)) return static_cast<char32_t>(static_cast<int32_t>(C) - S.ToLower);
  }
  return C;
}

bool IsCasedLetter(char32_t C) {
  constexpr char32_t SharpS = 0x00DF;  // has no single-letter upper case
  return C == SharpS || UpperChar(C) != C || LowerChar(C) != C;
}

std::string UpperText(std::string_view Text) {
  return MapText<UpperChar>(Text);
}
std::string LowerText(std::string_view Text) {
  return MapText<LowerChar>(Text);
}

std::string ProperText(std::string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  bool InWord = false;
  for (size_t Pos = 0; Pos < Text.size();) {
    char32_t C = DecodeUtf8(Text, Pos);
    bool Letter = IsCasedLetter(C);
    AppendUtf8(Out, !Letter ? C : (InWord ? LowerChar(C) : UpperChar(C)));
    InWord = Letter;
  }
  return Out;
}

char32_t CodePageToChar(uint8_t Byte) {
  if (Byte < 0x80 || Byte >= 0xA0) return Byte;
  char16_t Mapped = Windows1252High[Byte - 0x80];
  return Mapped ? Mapped : Byte;
}

uint8_t CharToCodePage(char32_t C) {
  if (C < 0x80 || (C >= 0xA0 && C <= 0xFF)) return static_cast<uint8_t>(C);
  auto Found = std::find(std::begin(Windows1252High), std::end(Windows1252High), static_cast<char16_t>(C));
  if (C <= 0xFFFF && Found != std::end(Windows1252High)) return static_cast<uint8_t>(0x80 + (Found - Windows1252High));
  // The undefined bytes round-trip as their control characters.
  if (C >= 0x80 && C < 0xA0 && Windows1252High[C - 0x80] == 0) return static_cast<uint8_t>(C);
  return '?';
}

}  // namespace Tabrino
