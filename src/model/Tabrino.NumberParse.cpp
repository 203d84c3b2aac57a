#include "Tabrino.NumberParse.h"

#include <charconv>
#include <string>

#include "Tabrino.FormatSettings.h"

namespace Tabrino {

bool TryTextToFloat(std::string_view Text, double& Number) {
  while (!Text.empty() && Text.front() == ' ') Text.remove_prefix(1);
  while (!Text.empty() && Text.back() == ' ') Text.remove_suffix(1);
  if (Text.empty() || Text.size() > 400) return false;

  const std::string& Decimal = FormatSettings().DecimalSeparator;
  // Rewrite into the C form that from_chars reads, validating as we go.
  std::string C;
  C.reserve(Text.size());
  size_t I = 0;
  if (Text[I] == '+' || Text[I] == '-') {
    if (Text[I] == '-') C += '-';
    ++I;
  }
  bool Digits = false, Point = false;
  while (I < Text.size()) {
    char Ch = Text[I];
    if (Ch >= '0' && Ch <= '9') {
      C += Ch;
      Digits = true;
      ++I;
    } else if (!Point && !Decimal.empty() && Text.substr(I, Decimal.size()) == Decimal) {
      C += '.';
      Point = true;
      I += Decimal.size();
    } else {
      break;
    }
  }
  if (!Digits) return false;
  if (I < Text.size() && (Text[I] == 'E' || Text[I] == 'e')) {
    C += 'e';
    ++I;
    if (I < Text.size() && (Text[I] == '+' || Text[I] == '-')) C += Text[I++];
    bool ExponentDigits = false;
    while (I < Text.size() && Text[I] >= '0' && Text[I] <= '9') {
      C += Text[I++];
      ExponentDigits = true;
    }
    if (!ExponentDigits) return false;
  }
  if (I != Text.size()) return false;
  double Value = 0;
  auto [End, Error] = std::from_chars(C.data(), C.data() + C.size(), Value);
  // Out of double range reads as text, as a spreadsheet user would expect.
  if (Error != std::errc() || End != C.data() + C.size()) return false;
  Number = Value;
  return true;
}

}  // namespace Tabrino
