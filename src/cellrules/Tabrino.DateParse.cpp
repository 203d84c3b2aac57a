#include "Tabrino.DateParse.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.FormatSettings.h"

namespace Tabrino {

namespace {

enum TDateTokenKind : uint8_t { dtkNumber, dtkWord, dtkSeparator };

struct TDateToken {
  TDateTokenKind Kind;
  std::string_view Text;
  int Value = 0;  // numbers only
};

bool IsDigit(char C) {
  return C >= '0' && C <= '9';
}
// Month names may be non-ASCII, so every byte of a multi-byte character counts as a letter.
bool IsLetterByte(char C) {
  unsigned char U = static_cast<unsigned char>(C);
  return (U >= 'A' && U <= 'Z') || (U >= 'a' && U <= 'z') || U >= 0x80;
}
bool IsBlank(char C) {
  return C == ' ' || C == '\t';
}

char FoldAscii(char C) {
  return C >= 'a' && C <= 'z' ? static_cast<char>(C - 32) : C;
}
bool SameNoCase(std::string_view A, std::string_view B) {
  if (A.size() != B.size()) return false;
  for (size_t I = 0; I < A.size(); ++I) {
    if (FoldAscii(A[I]) != FoldAscii(B[I])) return false;
  }
  return true;
}

// Digit runs, letter runs and separators; a run of blanks is one " "
// separator and the settings' date separator is one token even when longer
// than a byte. Digit runs longer than four never belong to a date.
bool Tokenize(std::string_view Text, const std::string& DateSeparator, std::vector<TDateToken>& Tokens) {
  size_t Pos = 0;
  while (Pos < Text.size()) {
    size_t Start = Pos;
    char C = Text[Pos];
    if (IsDigit(C)) {
      int Value = 0;
      for (; Pos < Text.size() && IsDigit(Text[Pos]); ++Pos) {
        if (Pos - Start == 4) return false;
        Value = Value * 10 + (Text[Pos] - '0');
      }
      Tokens.push_back({dtkNumber, Text.substr(Start, Pos - Start), Value});
    } else if (IsLetterByte(C)) {
      while (Pos < Text.size() && IsLetterByte(Text[Pos])) ++Pos;
      Tokens.push_back({dtkWord, Text.substr(Start, Pos - Start)});
    } else if (IsBlank(C)) {
      while (Pos < Text.size() && IsBlank(Text[Pos])) ++Pos;
      Tokens.push_back({dtkSeparator, " "});
    } else {
      size_t Width = DateSeparator.size() > 1 && Text.substr(Pos).starts_with(DateSeparator) ? DateSeparator.size() : 1;
      Pos += Width;
      Tokens.push_back({dtkSeparator, Text.substr(Start, Width)});
    }
  }
  return true;
}

// ":" always; the settings' own separator only where it cannot be read as
// the date separator.
bool IsTimeSeparator(const TDateToken& T, const TFormatSettings& Settings) {
  bool Own = T.Text == Settings.TimeSeparator && Settings.TimeSeparator != Settings.DateSeparator;
  return T.Kind == dtkSeparator && (T.Text == ":" || Own);
}

// Where the time starts: the first number followed by a time separator.
size_t TimeStart(std::span<const TDateToken> Tokens, const TFormatSettings& Settings) {
  for (size_t I = 0; I + 1 < Tokens.size(); ++I) {
    if (Tokens[I].Kind == dtkNumber && IsTimeSeparator(Tokens[I + 1], Settings)) return I;
  }
  return Tokens.size();
}

int ExpandYear(const TDateToken& T) {
  if (T.Text.size() > 2) return T.Value;
  return T.Value < 30 ? 2000 + T.Value : 1900 + T.Value;
}

bool HasYearDigits(const TDateToken& T) {
  return T.Text.size() > 2;
}

// 1..12 for a long or short month name, else 0.
int MonthOfName(std::string_view Word, const TFormatSettings& Settings) {
  for (int M = 0; M < 12; ++M) {
    if (SameNoCase(Word, Settings.LongMonthNames[M]) || SameNoCase(Word, Settings.ShortMonthNames[M])) return M + 1;
  }
  return 0;
}

bool IsDayName(std::string_view Word, const TFormatSettings& Settings) {
  for (int D = 0; D < 7; ++D) {
    if (SameNoCase(Word, Settings.LongDayNames[D]) || SameNoCase(Word, Settings.ShortDayNames[D])) return true;
  }
  return false;
}

struct TDateParts {
  int Year = 0, Month = 0, Day = 0;
};

// "5 March 2024", "Mar 5, 2024", "Monday, 5-Mar-24", "March 2024", "5 Mar".
std::optional<TDateParts> PartsWithMonthName(std::span<const TDateToken> Tokens, int CurrentYear,
                                             const TFormatSettings& Settings) {
  TDateParts P;
  std::vector<const TDateToken*> Numbers;
  for (size_t I = 0; I < Tokens.size(); ++I) {
    const TDateToken& T = Tokens[I];
    if (T.Kind == dtkNumber) {
      Numbers.push_back(&T);
    } else if (T.Kind == dtkWord) {
      int Month = MonthOfName(T.Text, Settings);
      if (Month > 0 && P.Month == 0)
        P.Month = Month;
      else if (I != 0 || !IsDayName(T.Text, Settings))
        return std::nullopt;
    } else if (T.Text != " " && T.Text != "," && T.Text != "." && T.Text != "-" && T.Text != "/" &&
               T.Text != Settings.DateSeparator) {
      return std::nullopt;
    }
  }
  if (P.Month == 0) return std::nullopt;
  if (Numbers.size() == 2) {
    bool YearFirst = HasYearDigits(*Numbers[0]);
    P.Year = ExpandYear(*Numbers[YearFirst ? 0 : 1]);
    P.Day = Numbers[YearFirst ? 1 : 0]->Value;
  } else if (Numbers.size() == 1 && (HasYearDigits(*Numbers[0]) || Numbers[0]->Value > 31)) {
    P.Year = ExpandYear(*Numbers[0]);
    P.Day = 1;
  } else if (Numbers.size() == 1) {
    P.Year = CurrentYear;
    P.Day = Numbers[0]->Value;
  } else {
    return std::nullopt;
  }
  return P;
}

// "3/5/2024" in the settings' order, "2024-03-05", "3/5", "3/2024".
std::optional<TDateParts> NumericParts(std::span<const TDateToken> Tokens, int CurrentYear,
                                       const TFormatSettings& Settings) {
  if (Tokens.size() != 3 && Tokens.size() != 5) return std::nullopt;
  std::string_view Separator = Tokens[1].Text;
  if (Separator != Settings.DateSeparator && Separator != "/" && Separator != "-" && Separator != ".") {
    return std::nullopt;
  }
  for (size_t I = 0; I < Tokens.size(); ++I) {
    bool Ok = I % 2 == 0 ? Tokens[I].Kind == dtkNumber : Tokens[I].Text == Separator;
    if (!Ok) return std::nullopt;
  }
  const TDateToken &A = Tokens[0], &B = Tokens[2];
  TDateParts P;
  if (Tokens.size() == 5) {
    const TDateToken& C = Tokens[4];
    TDateOrder Order = HasYearDigits(A) ? doYMD : Settings.DateOrder;
    switch (Order) {
      case doMDY: P = {ExpandYear(C), A.Value, B.Value}; break;
      case doDMY: P = {ExpandYear(C), B.Value, A.Value}; break;
      case doYMD: P = {ExpandYear(A), B.Value, C.Value}; break;
    }
  } else if (HasYearDigits(A)) {
    P = {A.Value, B.Value, 1};
  } else if (HasYearDigits(B)) {
    P = {B.Value, A.Value, 1};
  } else if (Settings.DateOrder == doDMY) {
    P = {CurrentYear, B.Value, A.Value};
  } else {
    P = {CurrentYear, A.Value, B.Value};
  }
  return P;
}

bool IsMarker(std::string_view Word, const std::string& Setting, std::string_view Long, std::string_view Short) {
  return (!Setting.empty() && SameNoCase(Word, Setting)) || SameNoCase(Word, Long) || SameNoCase(Word, Short);
}

// "h:mm", "h:mm:ss", "h:mm:ss.fff", each optionally with AM or PM.
bool ParseTime(std::span<const TDateToken> Tokens, const TFormatSettings& Settings, double& Time) {
  int Fields[3] = {0, 0, 0};
  size_t FieldCount = 0, I = 0;
  while (I < Tokens.size() && FieldCount < 3 && Tokens[I].Kind == dtkNumber && Tokens[I].Text.size() <= 2) {
    Fields[FieldCount++] = Tokens[I++].Value;
    if (FieldCount < 3 && I + 1 < Tokens.size() && IsTimeSeparator(Tokens[I], Settings))
      ++I;
    else
      break;
  }
  if (FieldCount < 2) return false;
  int MilliSecond = 0;
  if (FieldCount == 3 && I + 1 < Tokens.size() && Tokens[I + 1].Kind == dtkNumber &&
      (Tokens[I].Text == "." || Tokens[I].Text == Settings.DecimalSeparator)) {
    std::string_view Digits = Tokens[I + 1].Text;
    for (size_t D = 0; D < 3; ++D) MilliSecond = MilliSecond * 10 + (D < Digits.size() ? Digits[D] - '0' : 0);
    I += 2;
  }
  int Hour = Fields[0];
  if (I < Tokens.size() && Tokens[I].Text == " ") ++I;
  if (I < Tokens.size() && Tokens[I].Kind == dtkWord) {
    bool Am = IsMarker(Tokens[I].Text, Settings.TimeAMString, "AM", "A");
    bool Pm = !Am && IsMarker(Tokens[I].Text, Settings.TimePMString, "PM", "P");
    if ((!Am && !Pm) || Hour < 1 || Hour > 12) return false;
    Hour = Hour % 12 + (Pm ? 12 : 0);
    ++I;
  }
  return I == Tokens.size() && TryEncodeTime(Hour, Fields[1], Fields[2], MilliSecond, Time);
}

}  // namespace

bool TryParseDateText(std::string_view Text, int CurrentYear, double& Serial) {
  const TFormatSettings& Settings = FormatSettings();
  std::vector<TDateToken> Tokens;
  if (Text.size() > 256 || !Tokenize(Text, Settings.DateSeparator, Tokens)) return false;
  if (!Tokens.empty() && Tokens.front().Text == " ") Tokens.erase(Tokens.begin());
  if (!Tokens.empty() && Tokens.back().Text == " ") Tokens.pop_back();

  std::span<const TDateToken> All(Tokens);
  size_t TimeAt = TimeStart(All, Settings);
  std::span<const TDateToken> DatePart = All.first(TimeAt);
  double Time = 0;
  if (TimeAt < All.size()) {
    if (!ParseTime(All.subspan(TimeAt), Settings, Time)) return false;
    // The date and the time are parted by blanks or an ISO "T".
    bool Parted = !DatePart.empty() && (DatePart.back().Text == " " || SameNoCase(DatePart.back().Text, "T"));
    if (!Parted) return false;
    DatePart = DatePart.first(DatePart.size() - 1);
  }
  if (DatePart.empty()) return false;

  bool HasWord = false;
  for (const TDateToken& T : DatePart) HasWord = HasWord || T.Kind == dtkWord;
  std::optional<TDateParts> P =
      HasWord ? PartsWithMonthName(DatePart, CurrentYear, Settings) : NumericParts(DatePart, CurrentYear, Settings);
  double Day;
  if (!P || !TryEncodeDate(P->Year, P->Month, P->Day, Day)) return false;
  // Before the epoch the fraction still counts forward within the day.
  Serial = Day < 0 ? Day - Time : Day + Time;
  return true;
}

bool TryParseTimeText(std::string_view Text, double& Time) {
  const TFormatSettings& Settings = FormatSettings();
  std::vector<TDateToken> Tokens;
  if (Text.size() > 256 || !Tokenize(Text, Settings.DateSeparator, Tokens)) return false;
  std::span<const TDateToken> All(Tokens);
  while (!All.empty() && All.front().Text == " ") All = All.subspan(1);
  while (!All.empty() && All.back().Text == " ") All = All.first(All.size() - 1);
  return !All.empty() && ParseTime(All, Settings, Time);
}

bool TryParseDateText(std::string_view Text, double& Serial) {
  std::time_t Now = std::time(nullptr);
  std::tm Local{};
  localtime_r(&Now, &Local);
  return TryParseDateText(Text, Local.tm_year + 1900, Serial);
}

}  // namespace Tabrino
