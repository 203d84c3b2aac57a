#include "Tabrino.Structure.h"

#include <algorithm>
#include <limits>

namespace Tabrino {

namespace {

// Sums are formed in 64 bits so that no argument can overflow; a result past
// the 32-bit range saturates rather than wrapping into a valid-looking index.
int32_t Saturate(int64_t Value) {
  return static_cast<int32_t>(
      std::clamp<int64_t>(Value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

struct TAxisBounds {
  int32_t TCellRange::*Start;
  int32_t TCellRange::*End;
};

TAxisBounds BoundsOf(TShiftAxis Axis) {
  if (Axis == saRows) return {&TCellRange::StartRow, &TCellRange::EndRow};
  return {&TCellRange::StartCol, &TCellRange::EndCol};
}

TCellRange WithBounds(TCellRange Range, TShiftAxis Axis, int32_t Start, int32_t End) {
  const TAxisBounds Bounds = BoundsOf(Axis);
  Range.*Bounds.Start = Start;
  Range.*Bounds.End = End;
  return Range;
}

}  // namespace

int32_t ShiftIndex(int32_t Index, int32_t At, int32_t Delta, bool& Deleted) {
  Deleted = false;
  if (Delta == 0 || Index < At) return Index;
  if (Delta > 0) return Saturate(int64_t(Index) + Delta);
  const int64_t BandEnd = int64_t(At) - Delta - 1;
  if (Index <= BandEnd) {
    Deleted = true;
    return 0;
  }
  return Saturate(int64_t(Index) + Delta);
}

bool NormalizeMoveDest(int32_t From, int32_t Count, int32_t Dest, int32_t& Final) {
  Final = From;
  if (From < 1 || Count < 1 || Dest < 1) return false;
  // Dropping the band anywhere inside itself or right after it leaves it in place.
  const int64_t PastBand = int64_t(From) + Count;
  if (Dest > From && Dest <= PastBand) return false;
  // Below the band the indexes it vacates close up, so the target slides up by Count.
  Final = Dest > PastBand ? Saturate(int64_t(Dest) - Count) : Dest;
  return Final != From;
}

int32_t MoveIndex(int32_t Index, int32_t From, int32_t Count, int32_t Final) {
  const int64_t BandEnd = int64_t(From) + Count - 1;
  if (Index >= From && Index <= BandEnd) return Saturate(int64_t(Final) + (int64_t(Index) - From));
  if (From > Final) {
    // Moving up: what lay between the new and the old place makes room below.
    if (Index >= Final && Index < From) return Saturate(int64_t(Index) + Count);
  } else if (Index > BandEnd && Index < int64_t(Final) + Count) {
    // Moving down: what the band passes over closes up behind it.
    return Saturate(int64_t(Index) - Count);
  }
  return Index;
}

TCellRange AdjustRange(const TCellRange& Range, TShiftAxis Axis, int32_t At, int32_t Delta, bool& Deleted) {
  Deleted = false;
  const TCellRange Normal = Range.Normalize();
  const TAxisBounds Bounds = BoundsOf(Axis);
  int64_t Start = Normal.*Bounds.Start;
  int64_t End = Normal.*Bounds.End;
  if (Delta == 0 || End < At) return Normal;
  if (Delta > 0) {
    // An insert inside the range widens it; one at or before its start carries it along.
    if (Start >= At) Start += Delta;
    End += Delta;
  } else {
    const int64_t BandEnd = int64_t(At) - Delta - 1;
    const bool LosesStart = Start >= At;
    const bool LosesEnd = BandEnd >= End;
    if (BandEnd < Start) {
      Start += Delta;
      End += Delta;
    } else if (LosesStart && LosesEnd) {
      Deleted = true;
      return Normal;
    } else if (LosesStart) {
      Start = At;
      End += Delta;
    } else if (LosesEnd) {
      End = int64_t(At) - 1;
    } else {
      End += Delta;
    }
  }
  if (End < Start) {
    Deleted = true;
    return Normal;
  }
  return WithBounds(Normal, Axis, Saturate(Start), Saturate(End));
}

TCellRange AdjustRangeForMove(const TCellRange& Range, TShiftAxis Axis, int32_t From, int32_t Count, int32_t Final) {
  const TCellRange Normal = Range.Normalize();
  if (Count < 1 || Final == From) return Normal;
  const TAxisBounds Bounds = BoundsOf(Axis);
  const int32_t A = MoveIndex(Normal.*Bounds.Start, From, Count, Final);
  const int32_t B = MoveIndex(Normal.*Bounds.End, From, Count, Final);
  return WithBounds(Normal, Axis, std::min(A, B), std::max(A, B));
}

bool SplitSheetRefText(std::string_view Text, std::string& Sheet, std::string& First, std::string& Second) {
  Sheet.clear();
  First.clear();
  Second.clear();
  const size_t Bang = Text.find('!');
  if (Bang == std::string_view::npos) return false;
  std::string_view Name = Text.substr(0, Bang);
  if (Name.size() >= 2 && Name.front() == '\'' && Name.back() == '\'') {
    Name = Name.substr(1, Name.size() - 2);
    // Inside quotes a doubled quote stands for one.
    for (size_t I = 0; I < Name.size(); ++I) {
      Sheet += Name[I];
      if (Name[I] == '\'' && I + 1 < Name.size() && Name[I + 1] == '\'') ++I;
    }
  } else {
    Sheet = Name;
  }
  const std::string_view Corners = Text.substr(Bang + 1);
  const size_t Colon = Corners.find(':');
  First = Corners.substr(0, Colon);
  if (Colon != std::string_view::npos) Second = Corners.substr(Colon + 1);
  return !First.empty();
}

}  // namespace Tabrino
