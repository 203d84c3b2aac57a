// The process-wide locale settings that parsing and formatting read. Hosts and
// tests set them; the library never touches the C library's locale.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Tabrino {

enum TDateOrder : uint8_t { doMDY, doDMY, doYMD };

struct TFormatSettings {
  std::string DecimalSeparator = ".";
  std::string ThousandSeparator = ",";
  std::string DateSeparator = "/";
  std::string TimeSeparator = ":";
  TDateOrder DateOrder = doMDY;
  std::string TimeAMString = "AM";
  std::string TimePMString = "PM";
  std::array<std::string, 12> ShortMonthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::array<std::string, 12> LongMonthNames{"January", "February", "March",     "April",   "May",      "June",
                                             "July",    "August",   "September", "October", "November", "December"};
  std::array<std::string, 7> ShortDayNames{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::array<std::string, 7> LongDayNames{"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

  // Separators as the C library's current locale reports them (localeconv),
  // everything else as the defaults above.
  static TFormatSettings FromCLocale();
};

// The settings in force. Initialised from the C locale on first use.
TFormatSettings& FormatSettings();

// Restores the previous settings when it leaves scope: for tests and for hosts
// that format one document under another locale.
class TFormatSettingsScope {
 public:
  explicit TFormatSettingsScope(const TFormatSettings& Temporary) : FSaved(FormatSettings()) {
    FormatSettings() = Temporary;
  }
  ~TFormatSettingsScope() { FormatSettings() = FSaved; }
  TFormatSettingsScope(const TFormatSettingsScope&) = delete;
  TFormatSettingsScope& operator=(const TFormatSettingsScope&) = delete;

 private:
  TFormatSettings FSaved;
};

}  // namespace Tabrino
