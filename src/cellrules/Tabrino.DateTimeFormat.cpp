#include "Tabrino.DateTimeFormat.h"

#include <cmath>
#include <cstdint>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Types.h"

namespace Tabrino {

namespace {

constexpr int64_t MsPerDay = 86400000;
// 1899-12-30 counted from 1970-01-01.
constexpr int64_t SerialEpochDays = -25569;
constexpr int64_t MinDaySerial = -693593;  // 0001-01-01
constexpr int64_t MaxDaySerial = 2958465;  // 9999-12-31

bool IsLeapYear(int Year) {
  return Year % 4 == 0 && (Year % 100 != 0 || Year % 400 == 0);
}

int DaysInMonth(int Year, int Month) {
  static constexpr int Days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return Month == 2 && IsLeapYear(Year) ? 29 : Days[Month - 1];
}

// Proleptic Gregorian calendar through 400-year eras of 146097 days, with the
// year starting in March so that the leap day comes last.
int64_t DaysFromCivil(int Year, int Month, int Day) {
  int64_t Y = Year - (Month <= 2 ? 1 : 0);
  int64_t Era = (Y >= 0 ? Y : Y - 399) / 400;
  int64_t YearOfEra = Y - Era * 400;
  int64_t DayOfYear = (153 * (Month > 2 ? Month - 3 : Month + 9) + 2) / 5 + Day - 1;
  int64_t DayOfEra = YearOfEra * 365 + YearOfEra / 4 - YearOfEra / 100 + DayOfYear;
  return Era * 146097 + DayOfEra - 719468;
}

void CivilFromDays(int64_t Days, int& Year, int& Month, int& Day) {
  Days += 719468;
  int64_t Era = (Days >= 0 ? Days : Days - 146096) / 146097;
  int64_t DayOfEra = Days - Era * 146097;
  int64_t YearOfEra = (DayOfEra - DayOfEra / 1460 + DayOfEra / 36524 - DayOfEra / 146096) / 365;
  int64_t DayOfYear = DayOfEra - (365 * YearOfEra + YearOfEra / 4 - YearOfEra / 100);
  int64_t MonthIndex = (5 * DayOfYear + 2) / 153;
  Day = static_cast<int>(DayOfYear - (153 * MonthIndex + 2) / 5 + 1);
  Month = static_cast<int>(MonthIndex < 10 ? MonthIndex + 3 : MonthIndex - 9);
  Year = static_cast<int>(YearOfEra + Era * 400 + (Month <= 2 ? 1 : 0));
}

struct TSerialParts {
  int64_t Day = 0;
  int64_t MilliSeconds = 0;
};

bool SplitSerial(double Serial, TSerialParts& Parts) {
  if (!std::isfinite(Serial)) return false;
  double DayPart = std::trunc(Serial);
  if (DayPart < MinDaySerial || DayPart > MaxDaySerial) return false;
  Parts.Day = static_cast<int64_t>(DayPart);
  Parts.MilliSeconds = std::llround(std::fabs(Serial - DayPart) * MsPerDay);
  if (Parts.MilliSeconds >= MsPerDay) {
    ++Parts.Day;
    Parts.MilliSeconds -= MsPerDay;
  }
  return Parts.Day <= MaxDaySerial;
}

struct TDateTimeFields {
  int Year = 0, Month = 0, Day = 0, DayOfWeek = 0;
  int Hour = 0, Minute = 0, Second = 0, MilliSecond = 0;
};

TDateTimeFields FieldsOf(const TSerialParts& P) {
  TDateTimeFields F;
  CivilFromDays(P.Day + SerialEpochDays, F.Year, F.Month, F.Day);
  // Serial 0 was a Saturday.
  F.DayOfWeek = static_cast<int>(((P.Day % 7) + 13) % 7) + 1;
  int64_t Ms = P.MilliSeconds;
  F.Hour = static_cast<int>(Ms / 3600000);
  F.Minute = static_cast<int>(Ms / 60000 % 60);
  F.Second = static_cast<int>(Ms / 1000 % 60);
  F.MilliSecond = static_cast<int>(Ms % 1000);
  return F;
}

char LowerAscii(char C) {
  return C >= 'A' && C <= 'Z' ? static_cast<char>(C + 32) : C;
}

bool MatchesAt(std::string_view Text, size_t Pos, std::string_view Lower) {
  if (Pos + Lower.size() > Text.size()) return false;
  for (size_t I = 0; I < Lower.size(); ++I) {
    if (LowerAscii(Text[Pos + I]) != Lower[I]) return false;
  }
  return true;
}

// The length of an AM/PM, A/P or ampm token at Pos, or 0.
size_t AmPmTokenLength(std::string_view Format, size_t Pos) {
  for (std::string_view Token : {"am/pm", "a/p", "ampm"}) {
    if (MatchesAt(Format, Pos, Token)) return Token.size();
  }
  return 0;
}

size_t RunLength(std::string_view Format, size_t Pos, size_t Max) {
  char Letter = LowerAscii(Format[Pos]);
  size_t N = 1;
  while (N < Max && Pos + N < Format.size() && LowerAscii(Format[Pos + N]) == Letter) ++N;
  return N;
}

// Reads the quoted literal opening at Pos; a doubled quote stands for itself.
void AppendQuoted(std::string_view Format, size_t& Pos, std::string& Out) {
  char Quote = Format[Pos++];
  while (Pos < Format.size()) {
    char C = Format[Pos++];
    if (C != Quote) {
      Out += C;
    } else if (Pos < Format.size() && Format[Pos] == Quote) {
      Out += Quote;
      ++Pos;
    } else {
      return;
    }
  }
}

bool HasAmPmToken(std::string_view Format) {
  for (size_t Pos = 0; Pos < Format.size();) {
    if (Format[Pos] == '\'' || Format[Pos] == '"') {
      std::string Ignored;
      AppendQuoted(Format, Pos, Ignored);
    } else if (AmPmTokenLength(Format, Pos) > 0) {
      return true;
    } else {
      ++Pos;
    }
  }
  return false;
}

std::string Padded(int Value, size_t Width) {
  std::string S = std::to_string(Value);
  if (S.size() < Width) S.insert(0, Width - S.size(), '0');
  return S;
}

class TDateTimeWriter {
 public:
  TDateTimeWriter(std::string_view Format, const TDateTimeFields& Fields)
      : FFormat(Format), FF(Fields), FSettings(FormatSettings()), FTwelveHour(HasAmPmToken(Format)) {}

  std::string Write() {
    size_t Pos = 0;
    while (Pos < FFormat.size()) WriteTokenAt(Pos);
    return FOut;
  }

 private:
  std::string_view FFormat;
  const TDateTimeFields& FF;
  const TFormatSettings& FSettings;
  bool FTwelveHour;
  char FLastToken = 0;  // letter of the last date or time token; literals leave it
  std::string FOut;

  void WriteTokenAt(size_t& Pos) {
    const char C = FFormat[Pos];
    const char Letter = LowerAscii(C);
    if (C == '\'' || C == '"') {
      AppendQuoted(FFormat, Pos, FOut);
      return;
    }
    if (size_t Length = AmPmTokenLength(FFormat, Pos)) {
      WriteAmPm(FFormat.substr(Pos, Length));
      Pos += Length;
      FLastToken = 'a';
      return;
    }
    size_t Length = 1;
    switch (Letter) {
      case 'y': Length = WriteYear(RunLength(FFormat, Pos, 4)); break;
      case 'd': Length = WriteDay(RunLength(FFormat, Pos, 4)); break;
      case 'm': Length = WriteMonthOrMinute(RunLength(FFormat, Pos, 4)); break;
      case 'h': Length = WriteNumber(TwelveHourAdjusted(FF.Hour), RunLength(FFormat, Pos, 2)); break;
      case 'n': Length = WriteNumber(FF.Minute, RunLength(FFormat, Pos, 2)); break;
      case 's': Length = WriteNumber(FF.Second, RunLength(FFormat, Pos, 2)); break;
      case 'z': Length = WriteMilliSeconds(RunLength(FFormat, Pos, 3)); break;
      case '/': FOut += FSettings.DateSeparator; break;
      case ':': FOut += FSettings.TimeSeparator; break;
      default: FOut += C; break;
    }
    if (std::string_view("ydmhnsz").find(Letter) != std::string_view::npos) FLastToken = Letter;
    Pos += Length;
  }

  // Returns how many letters the token used.
  size_t WriteNumber(int Value, size_t Run) {
    FOut += Padded(Value, Run >= 2 ? 2 : 1);
    return Run;
  }

  size_t WriteYear(size_t Run) {
    if (Run <= 2) {
      FOut += Padded(FF.Year % 100, 2);
    } else {
      FOut += Padded(FF.Year, 4);
    }
    return Run;
  }

  size_t WriteDay(size_t Run) {
    switch (Run) {
      case 1:
      case 2: return WriteNumber(FF.Day, Run);
      case 3: FOut += FSettings.ShortDayNames[static_cast<size_t>(FF.DayOfWeek - 1)]; break;
      default: FOut += FSettings.LongDayNames[static_cast<size_t>(FF.DayOfWeek - 1)]; break;
    }
    return Run;
  }

  size_t WriteMonthOrMinute(size_t Run) {
    if (Run <= 2) return WriteNumber(FLastToken == 'h' ? FF.Minute : FF.Month, Run);
    const auto& Names = Run == 3 ? FSettings.ShortMonthNames : FSettings.LongMonthNames;
    FOut += Names[static_cast<size_t>(FF.Month - 1)];
    return Run;
  }

  size_t WriteMilliSeconds(size_t Run) {
    if (Run < 3) {
      FOut += std::to_string(FF.MilliSecond);
      return 1;
    }
    FOut += Padded(FF.MilliSecond, 3);
    return 3;
  }

  int TwelveHourAdjusted(int Hour) const {
    if (!FTwelveHour) return Hour;
    int H = Hour % 12;
    return H == 0 ? 12 : H;
  }

  // AM/PM and A/P print their halves in the case they are written in; ampm
  // prints the settings' strings.
  void WriteAmPm(std::string_view Token) {
    const bool Morning = FF.Hour < 12;
    if (Token.size() == 4) {
      FOut += Morning ? FSettings.TimeAMString : FSettings.TimePMString;
    } else {
      size_t Half = Token.size() / 2;
      FOut += Morning ? Token.substr(0, Half) : Token.substr(Half + 1);
    }
  }
};

}  // namespace

bool TryEncodeDate(int Year, int Month, int Day, double& Serial) {
  if (Year < 1 || Year > 9999 || Month < 1 || Month > 12 || Day < 1 || Day > DaysInMonth(Year, Month)) return false;
  Serial = static_cast<double>(DaysFromCivil(Year, Month, Day) - SerialEpochDays);
  return true;
}

double EncodeDate(int Year, int Month, int Day) {
  double Serial = 0;
  if (!TryEncodeDate(Year, Month, Day, Serial)) throw EException("Invalid date");
  return Serial;
}

bool TryEncodeTime(int Hour, int Minute, int Second, int MilliSecond, double& Time) {
  if (Hour < 0 || Hour > 23 || Minute < 0 || Minute > 59 || Second < 0 || Second > 59 || MilliSecond < 0 ||
      MilliSecond > 999) {
    return false;
  }
  Time = static_cast<double>(((Hour * 60 + Minute) * 60 + Second) * 1000 + MilliSecond) / MsPerDay;
  return true;
}

double EncodeTime(int Hour, int Minute, int Second, int MilliSecond) {
  double Time = 0;
  if (!TryEncodeTime(Hour, Minute, Second, MilliSecond, Time)) throw EException("Invalid time");
  return Time;
}

bool DecodeDate(double Serial, int& Year, int& Month, int& Day) {
  TSerialParts Parts;
  Year = Month = Day = 0;
  if (!SplitSerial(Serial, Parts)) return false;
  TDateTimeFields F = FieldsOf(Parts);
  Year = F.Year;
  Month = F.Month;
  Day = F.Day;
  return true;
}

bool DecodeTime(double Serial, int& Hour, int& Minute, int& Second, int& MilliSecond) {
  TSerialParts Parts;
  Hour = Minute = Second = MilliSecond = 0;
  if (!SplitSerial(Serial, Parts)) return false;
  TDateTimeFields F = FieldsOf(Parts);
  Hour = F.Hour;
  Minute = F.Minute;
  Second = F.Second;
  MilliSecond = F.MilliSecond;
  return true;
}

int DayOfWeek(double Serial) {
  TSerialParts Parts;
  return SplitSerial(Serial, Parts) ? FieldsOf(Parts).DayOfWeek : 0;
}

std::string FormatDateTime(std::string_view Format, double DateTime) {
  TSerialParts Parts;
  if (!SplitSerial(DateTime, Parts)) throw EException("Date value out of range");
  return TDateTimeWriter(Format, FieldsOf(Parts)).Write();
}

}  // namespace Tabrino
