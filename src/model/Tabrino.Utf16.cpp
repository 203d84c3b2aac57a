#include "Tabrino.Utf16.h"

namespace Tabrino {

char32_t DecodeUtf8(std::string_view Text, size_t& Pos) {
  auto Byte = [&](size_t I) { return static_cast<unsigned char>(Text[I]); };
  unsigned char Lead = Byte(Pos);
  size_t Extra;
  char32_t Cp;
  if (Lead < 0x80) {
    ++Pos;
    return Lead;
  } else if ((Lead & 0xE0) == 0xC0) {
    Extra = 1;
    Cp = Lead & 0x1F;
  } else if ((Lead & 0xF0) == 0xE0) {
    Extra = 2;
    Cp = Lead & 0x0F;
  } else if ((Lead & 0xF8) == 0xF0) {
    Extra = 3;
    Cp = Lead & 0x07;
  } else {
    ++Pos;
    return 0xFFFD;
  }
  if (Pos + Extra >= Text.size()) {
    ++Pos;
    return 0xFFFD;
  }
  for (size_t I = 1; I <= Extra; ++I) {
    if ((Byte(Pos + I) & 0xC0) != 0x80) {
      ++Pos;
      return 0xFFFD;
    }
    Cp = (Cp << 6) | (Byte(Pos + I) & 0x3F);
  }
  static constexpr char32_t MinForLength[] = {0, 0x80, 0x800, 0x10000};
  if (Cp < MinForLength[Extra] || Cp > 0x10FFFF) {
    ++Pos;
    return 0xFFFD;
  }
  Pos += Extra + 1;
  return Cp;
}

void AppendUtf8(std::string& Out, char32_t Cp) {
  if (Cp < 0x80) {
    Out += static_cast<char>(Cp);
  } else if (Cp < 0x800) {
    Out += static_cast<char>(0xC0 | (Cp >> 6));
    Out += static_cast<char>(0x80 | (Cp & 0x3F));
  } else if (Cp < 0x10000) {
    Out += static_cast<char>(0xE0 | (Cp >> 12));
    Out += static_cast<char>(0x80 | ((Cp >> 6) & 0x3F));
    Out += static_cast<char>(0x80 | (Cp & 0x3F));
  } else if (Cp <= 0x10FFFF) {
    Out += static_cast<char>(0xF0 | (Cp >> 18));
    Out += static_cast<char>(0x80 | ((Cp >> 12) & 0x3F));
    Out += static_cast<char>(0x80 | ((Cp >> 6) & 0x3F));
    Out += static_cast<char>(0x80 | (Cp & 0x3F));
  } else {
    AppendUtf8(Out, 0xFFFD);
  }
}

size_t Utf16Length(std::string_view Text) {
  size_t Units = 0;
  for (size_t Pos = 0; Pos < Text.size();) {
    if (static_cast<unsigned char>(Text[Pos]) < 0x80) {
      ++Pos;
      ++Units;
    } else {
      Units += Utf16UnitsOf(DecodeUtf8(Text, Pos));
    }
  }
  return Units;
}

size_t Utf8OffsetOfUtf16(std::string_view Text, size_t Units) {
  size_t Pos = 0, Seen = 0;
  while (Pos < Text.size()) {
    size_t Next = Pos;
    size_t Width = Utf16UnitsOf(DecodeUtf8(Text, Next));
    if (Seen + Width > Units) break;
    Seen += Width;
    Pos = Next;
  }
  return Pos;
}

std::string Utf16Substr(std::string_view Text, size_t Start, size_t Count) {
  size_t Begin = Utf8OffsetOfUtf16(Text, Start);
  if (Count == std::string::npos) return std::string(Text.substr(Begin));
  size_t End = Begin + Utf8OffsetOfUtf16(Text.substr(Begin), Count);
  return std::string(Text.substr(Begin, End - Begin));
}

std::u16string Utf8ToUtf16(std::string_view Text) {
  std::u16string Out;
  Out.reserve(Text.size());
  for (size_t Pos = 0; Pos < Text.size();) {
    char32_t Cp = DecodeUtf8(Text, Pos);
    if (Cp >= 0x10000) {
      Cp -= 0x10000;
      Out += static_cast<char16_t>(0xD800 + (Cp >> 10));
      Out += static_cast<char16_t>(0xDC00 + (Cp & 0x3FF));
    } else {
      Out += static_cast<char16_t>(Cp);
    }
  }
  return Out;
}

std::string Utf16ToUtf8(std::u16string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  for (size_t I = 0; I < Text.size(); ++I) {
    char32_t Cp = Text[I];
    if (Cp >= 0xD800 && Cp <= 0xDBFF && I + 1 < Text.size() && Text[I + 1] >= 0xDC00 && Text[I + 1] <= 0xDFFF) {
      Cp = 0x10000 + ((Cp - 0xD800) << 10) + (Text[I + 1] - 0xDC00);
      ++I;
    } else if (Cp >= 0xD800 && Cp <= 0xDFFF) {
      Cp = 0xFFFD;  // a lone surrogate has no UTF-8 form
    }
    AppendUtf8(Out, Cp);
  }
  return Out;
}

}  // namespace Tabrino
