// Index and range arithmetic of structural edits. A shift inserts (Delta > 0,
// that many indexes before At) or deletes (Delta < 0, |Delta| indexes from At
// on); a move takes Count indexes from From so that they start at Final.
// Every per-sheet list re-indexes itself through these functions, so a row
// means the same thing to cells, merges, tables and rules after an edit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Tabrino.Types.h"

namespace Tabrino {

enum TShiftAxis : uint8_t { saRows, saColumns };

// Index after the shift. An index in a deleted band sets Deleted and gives 0.
int32_t ShiftIndex(int32_t Index, int32_t At, int32_t Delta, bool& Deleted);

// Turns a requested destination (the index the band is dropped before) into
// Final, the first index of the band after the move. False, with Final =
// From, when the move changes nothing or an argument is below 1.
bool NormalizeMoveDest(int32_t From, int32_t Count, int32_t Dest, int32_t& Final);

// Index after moving Count indexes from From to Final.
int32_t MoveIndex(int32_t Index, int32_t From, int32_t Count, int32_t Final);

// The normalised range after a shift along Axis. A range that loses some of
// its indexes shrinks; one that loses all of them sets Deleted and comes back
// as it was (normalised).
TCellRange AdjustRange(const TCellRange& Range, TShiftAxis Axis, int32_t At, int32_t Delta, bool& Deleted);

// The normalised range after a move along Axis: each bound moves on its own,
// so a range straddling the band's old or new place can stretch.
TCellRange AdjustRangeForMove(const TCellRange& Range, TShiftAxis Axis, int32_t From, int32_t Count, int32_t Final);

// Splits "Sheet!A1:B2" (or "'My ''Sheet'''!A1") into its sheet name, unquoted,
// and the two corner texts; Second is empty without ":". False without "!" or
// when First is empty.
bool SplitSheetRefText(std::string_view Text, std::string& Sheet, std::string& First, std::string& Second);

}  // namespace Tabrino
