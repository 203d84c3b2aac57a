#include "Tabrino.FormatSettings.h"

#include <clocale>

namespace Tabrino {

TFormatSettings TFormatSettings::FromCLocale() {
  TFormatSettings S;
  if (const std::lconv* Conv = std::localeconv()) {
    if (Conv->decimal_point && *Conv->decimal_point) S.DecimalSeparator = Conv->decimal_point;
    // The C locale has no thousands separator; keep the comma then, since an
    // empty one would make grouped formats unreadable.
    if (Conv->thousands_sep && *Conv->thousands_sep) S.ThousandSeparator = Conv->thousands_sep;
  }
  return S;
}

TFormatSettings& FormatSettings() {
  static TFormatSettings Settings = TFormatSettings::FromCLocale();
  return Settings;
}

}  // namespace Tabrino
