// Working days: NETWORKDAYS counts them between two dates, WORKDAY steps over
// them; the .INTL forms name their own weekend. Both count in O(1) per span
// (whole weeks, then the rest) less the holidays inside it, found by binary
// search, so that a span of centuries costs no more than a week.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "Tabrino.Formula.ArgReader.h"
#include "Tabrino.Formula.CivilDate.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// The days off of a week and the holidays that fall on working days.
class TWorkCalendar {
 public:
  std::array<bool, 7> Off{false, false, false, false, false, true, true};  // Monday .. Sunday

  int WorkdaysPerWeek() const { return static_cast<int>(std::count(Off.begin(), Off.end(), false)); }
  bool IsWorkday(int64_t Serial) const { return !Off[MondayBasedWeekday(Serial)]; }

  void AddHoliday(int64_t Serial) {
    if (IsWorkday(Serial)) FHolidays.push_back(Serial);
  }
  void SortHolidays() {
    std::sort(FHolidays.begin(), FHolidays.end());
    FHolidays.erase(std::unique(FHolidays.begin(), FHolidays.end()), FHolidays.end());
  }
  size_t HolidayCount() const { return FHolidays.size(); }

  // Working days from First to Last, both included; 0 when Last comes first.
  int64_t Count(int64_t First, int64_t Last) const {
    if (Last < First) return 0;
    int64_t Days = Last - First + 1;
    int64_t Result = Days / 7 * WorkdaysPerWeek();
    for (int64_t Day = First + Days / 7 * 7; Day <= Last; ++Day) Result += IsWorkday(Day) ? 1 : 0;
    auto Lower = std::lower_bound(FHolidays.begin(), FHolidays.end(), First);
    auto Upper = std::upper_bound(FHolidays.begin(), FHolidays.end(), Last);
    return Result - (Upper - Lower);
  }

 private:
  std::vector<int64_t> FHolidays;
};

// The weekend argument of the .INTL functions: absent or empty means Saturday
// and Sunday; a number 1-7 names a pair of days (1 Saturday-Sunday, 2
// Sunday-Monday ... 7 Friday-Saturday), 11-17 one day (11 Sunday, 12 Monday
// ... 17 Saturday), other numbers are #NUM!; a text of seven "0" and "1" marks
// the days off from Monday, any other text is #VALUE!.
void ReadWeekend(TArgReader& R, size_t Index, TWorkCalendar& Calendar) {
  if (!R.Present(Index)) return;
  const TCellValue V = R.Call()[Index].First();
  if (V.IsEmpty()) return;
  if (V.Kind == cvkText) {
    bool Mask = V.Text.size() == 7 && V.Text.find_first_not_of("01") == std::string::npos;
    R.Require(Mask, ceValue);
    for (size_t Day = 0; Mask && Day < 7; ++Day) Calendar.Off[Day] = V.Text[Day] == '1';
    return;
  }
  double Code = R.Integer(Index);
  if (R.Failed()) return;
  Calendar.Off.fill(false);
  if (Code >= 1 && Code <= 7) {
    int Pair = static_cast<int>(Code);
    Calendar.Off[(Pair + 4) % 7] = Calendar.Off[(Pair + 5) % 7] = true;
  } else if (Code >= 11 && Code <= 17) {
    Calendar.Off[(static_cast<int>(Code) - 5) % 7] = true;
  } else {
    R.Fail(ceNum);
  }
}

// Every date in the holidays argument; empty cells of a range are passed over.
void ReadHolidays(TArgReader& R, size_t Index, TWorkCalendar& Calendar) {
  if (!R.Present(Index)) return;
  for (const TCellValue& V : ArgValues(R.Call()[Index])) {
    if (V.IsEmpty()) continue;
    double Serial = R.DateOf(V);
    if (!R.Failed()) Calendar.AddHoliday(static_cast<int64_t>(Serial));
  }
  Calendar.SortHolidays();
}

// NETWORKDAYS(start, end, [holidays]) and NETWORKDAYS.INTL(start, end,
// [weekend], [holidays]): negative when the end comes first.
template <bool Intl>
TCellValue FnNetworkdays(const TFunctionCall& C) {
  TArgReader R(C);
  TWorkCalendar Calendar;
  auto Start = static_cast<int64_t>(R.Date(0)), End = static_cast<int64_t>(R.Date(1));
  if (Intl) ReadWeekend(R, 2, Calendar);
  ReadHolidays(R, Intl ? 3 : 2, Calendar);
  if (R.Failed()) return Err(R.Error());
  return Num(static_cast<double>(Start <= End ? Calendar.Count(Start, End) : -Calendar.Count(End, Start)));
}

// The working day Days working days after Start (before it when negative):
// a binary search for the nearest day whose span from Start holds that many.
// Days 0 gives Start itself, working day or not.
template <bool Intl>
TCellValue FnWorkday(const TFunctionCall& C) {
  TArgReader R(C);
  TWorkCalendar Calendar;
  auto Start = static_cast<int64_t>(R.Date(0));
  double Days = R.Integer(1);
  if (Intl) ReadWeekend(R, 2, Calendar);
  ReadHolidays(R, Intl ? 3 : 2, Calendar);
  R.Require(Calendar.WorkdaysPerWeek() > 0, ceValue);
  if (R.Failed()) return Err(R.Error());
  if (std::fabs(Days) > 4E6) return Err(ceNum);  // beyond any valid date
  auto Wanted = static_cast<int64_t>(std::fabs(Days));
  if (Wanted == 0) return Num(static_cast<double>(Start));
  // Each week gives WorkdaysPerWeek days and each holiday costs up to a week.
  int64_t Reach = ((Wanted + static_cast<int64_t>(Calendar.HolidayCount())) / Calendar.WorkdaysPerWeek() + 1) * 7;
  int64_t Near = 1, Far = Reach;  // distance from Start
  while (Near < Far) {
    int64_t Mid = Near + (Far - Near) / 2;
    int64_t Found = Days > 0 ? Calendar.Count(Start + 1, Start + Mid) : Calendar.Count(Start - Mid, Start - 1);
    if (Found >= Wanted)
      Far = Mid;
    else
      Near = Mid + 1;
  }
  double Result = static_cast<double>(Days > 0 ? Start + Near : Start - Near);
  TYmd Valid;
  return ToYmd(Result, Valid) ? Num(Result) : Err(ceNum);
}

}  // namespace

std::span<const TFunctionDef> WorkingDayFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"NETWORKDAYS", 2, 3, fnNone, FnNetworkdays<false>},
      {"NETWORKDAYS.INTL", 2, 4, fnNone, FnNetworkdays<true>},
      {"WORKDAY", 2, 3, fnNone, FnWorkday<false>},
      {"WORKDAY.INTL", 2, 4, fnNone, FnWorkday<true>},
  };
  return Table;
}

}  // namespace Tabrino
