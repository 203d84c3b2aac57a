#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Tabrino.Structure.h"

using namespace Tabrino;

namespace {

struct TShiftIndexCase {
  int32_t Index, At, Delta;
  int32_t Expected;
  bool Deleted;
};

// Rows 3..6 of columns A..C, so row arithmetic can be read off directly.
const TCellRange Block = TCellRange::Make(1, 3, 3, 6);

struct TAdjustCase {
  const char* What;
  int32_t At, Delta;
  int32_t Start, End;  // expected rows; ignored when deleted
  bool Deleted;
};

}  // namespace

TEST(ShiftIndex, InsertsAndDeletes) {
  const TShiftIndexCase Cases[] = {
      {5, 3, 0, 5, false},                // no shift
      {2, 3, 2, 2, false},                // before an insert
      {3, 3, 2, 5, false},                // at the insert point
      {9, 3, 2, 11, false},               // after it
      {2, 3, -2, 2, false},               // before a deleted band
      {3, 3, -2, 0, true},                // first deleted
      {4, 3, -2, 0, true},                // last deleted
      {5, 3, -2, 3, false},               // closes up
      {MaxRow, 1, 1, MaxRow + 1, false},  // pushed past the limit, not dropped
  };
  for (const auto& C : Cases) {
    bool Deleted = !C.Deleted;
    EXPECT_EQ(ShiftIndex(C.Index, C.At, C.Delta, Deleted), C.Expected) << C.Index << " @" << C.At << " " << C.Delta;
    EXPECT_EQ(Deleted, C.Deleted) << C.Index << " @" << C.At << " " << C.Delta;
  }
}

TEST(ShiftIndex, ExtremeArgumentsDoNotOverflow) {
  bool Deleted = false;
  EXPECT_EQ(ShiftIndex(INT32_MAX, 1, INT32_MAX, Deleted), INT32_MAX);
  EXPECT_EQ(ShiftIndex(INT32_MAX, 1, INT32_MIN, Deleted), 0);
  EXPECT_TRUE(Deleted);
}

TEST(NormalizeMoveDest, DropPointsInsideOrRightAfterTheBandChangeNothing) {
  struct TCase {
    int32_t From, Count, Dest;
    bool Moves;
    int32_t Final;
  };
  const TCase Cases[] = {
      {2, 3, 4, false, 2}, {2, 3, 5, false, 2}, {2, 3, 2, false, 2}, {2, 3, 6, true, 3},  {2, 3, 9, true, 6},
      {2, 3, 1, true, 1},  {0, 3, 5, false, 0}, {2, 0, 5, false, 2}, {2, 3, 0, false, 2},
  };
  for (const auto& C : Cases) {
    int32_t Final = -1;
    EXPECT_EQ(NormalizeMoveDest(C.From, C.Count, C.Dest, Final), C.Moves) << C.From << "+" << C.Count << "->" << C.Dest;
    EXPECT_EQ(Final, C.Final) << C.From << "+" << C.Count << "->" << C.Dest;
  }
}

TEST(MoveIndex, DownAndUp) {
  // Rows 2..4 dropped before row 8 land on 5..7; rows 5..7 close up to 2..4.
  const int32_t Down[] = {1, 5, 6, 7, 2, 3, 4, 8, 9};
  for (int32_t I = 1; I <= 9; ++I) EXPECT_EQ(MoveIndex(I, 2, 3, 5), Down[I - 1]) << I;
  // Rows 5..6 moved to 2: rows 2..4 make room and become 4..6.
  const int32_t Up[] = {1, 4, 5, 6, 2, 3, 7};
  for (int32_t I = 1; I <= 7; ++I) EXPECT_EQ(MoveIndex(I, 5, 2, 2), Up[I - 1]) << I;
}

// Every legal move must be a reordering: no two indexes may meet, none may
// leave 1..N, the band must arrive whole at Final and the rest keep its order.
TEST(MoveIndex, EveryMoveIsAPermutation) {
  const int32_t N = 9;
  for (int32_t From = 1; From <= N; ++From)
    for (int32_t Count = 1; From + Count - 1 <= N; ++Count)
      for (int32_t Dest = 1; Dest <= N + 1; ++Dest) {
        int32_t Final = 0;
        if (!NormalizeMoveDest(From, Count, Dest, Final)) continue;
        std::vector<int32_t> Seen(N + 1, 0), Others;
        for (int32_t I = 1; I <= N; ++I) {
          const int32_t J = MoveIndex(I, From, Count, Final);
          ASSERT_TRUE(J >= 1 && J <= N) << From << "+" << Count << "->" << Dest << ": " << I << "->" << J;
          ++Seen[J];
          if (I >= From && I < From + Count) {
            EXPECT_EQ(J, Final + I - From);
          } else {
            Others.push_back(J);
          }
        }
        EXPECT_EQ(std::count(Seen.begin() + 1, Seen.end(), 1), N) << From << "+" << Count << "->" << Dest;
        EXPECT_TRUE(std::is_sorted(Others.begin(), Others.end())) << From << "+" << Count << "->" << Dest;
      }
}

TEST(AdjustRange, RowShifts) {
  const TAdjustCase Cases[] = {
      {"no shift", 4, 0, 3, 6, false},
      {"insert after", 7, 2, 3, 6, false},
      {"insert at the last row", 6, 2, 3, 8, false},
      {"insert inside", 4, 2, 3, 8, false},
      {"insert at the first row", 3, 2, 5, 8, false},
      {"insert before", 1, 2, 5, 8, false},
      {"delete after", 7, -2, 3, 6, false},
      {"delete before", 1, -2, 1, 4, false},
      {"delete over the start", 2, -2, 2, 4, false},
      {"delete the first rows", 3, -2, 3, 4, false},
      {"delete over the end", 5, -3, 3, 4, false},
      {"delete the last row", 6, -1, 3, 5, false},
      {"delete inside", 4, -2, 3, 4, false},
      {"delete exactly", 3, -4, 0, 0, true},
      {"delete around", 1, -10, 0, 0, true},
  };
  for (const auto& C : Cases) {
    bool Deleted = !C.Deleted;
    const TCellRange Got = AdjustRange(Block, saRows, C.At, C.Delta, Deleted);
    EXPECT_EQ(Deleted, C.Deleted) << C.What;
    const TCellRange Expected = C.Deleted ? Block : TCellRange::Make(1, C.Start, 3, C.End);
    EXPECT_EQ(Got, Expected) << C.What << ": " << Got.ToA1();
  }
}

TEST(AdjustRange, ColumnShiftLeavesRowsAlone) {
  bool Deleted = true;
  EXPECT_EQ(AdjustRange(Block, saColumns, 2, 3, Deleted), TCellRange::Make(1, 3, 6, 6));
  EXPECT_FALSE(Deleted);
  EXPECT_EQ(AdjustRange(Block, saColumns, 1, -1, Deleted), TCellRange::Make(1, 3, 2, 6));
  EXPECT_EQ(AdjustRange(Block, saColumns, 1, -3, Deleted), Block);
  EXPECT_TRUE(Deleted);
}

TEST(AdjustRange, ReversedRangeIsNormalisedEvenWhenDeleted) {
  const TCellRange Reversed = TCellRange::Make(3, 6, 1, 3);
  bool Deleted = true;
  EXPECT_EQ(AdjustRange(Reversed, saRows, 10, 1, Deleted), Block);
  EXPECT_FALSE(Deleted);
  EXPECT_EQ(AdjustRange(Reversed, saRows, 1, -6, Deleted), Block);
  EXPECT_TRUE(Deleted);
}

TEST(AdjustRangeForMove, BoundsMoveIndependently) {
  struct TCase {
    const char* What;
    TCellRange Range;
    TShiftAxis Axis;
    int32_t From, Count, Final;
    TCellRange Expected;
  };
  const TCase Cases[] = {
      {"the range is the band", TCellRange::Make(1, 3, 2, 4), saRows, 3, 2, 6, TCellRange::Make(1, 6, 2, 7)},
      {"closes up under a band moved down", TCellRange::Make(1, 5, 1, 6), saRows, 2, 2, 5,
       TCellRange::Make(1, 3, 1, 4)},
      {"straddling stretches", TCellRange::Make(1, 3, 1, 5), saRows, 4, 2, 1, TCellRange::Make(1, 2, 1, 5)},
      {"columns", TCellRange::Make(2, 1, 2, 9), saColumns, 1, 1, 4, TCellRange::Make(1, 1, 1, 9)},
      {"no count", TCellRange::Make(3, 6, 1, 3), saRows, 3, 0, 1, Block},
      {"no move", TCellRange::Make(3, 6, 1, 3), saRows, 3, 2, 3, Block},
  };
  for (const auto& C : Cases) {
    const TCellRange Got = AdjustRangeForMove(C.Range, C.Axis, C.From, C.Count, C.Final);
    EXPECT_EQ(Got, C.Expected) << C.What << ": " << Got.ToA1();
  }
}

TEST(SplitSheetRefText, SheetAndCorners) {
  struct TCase {
    const char* Text;
    bool Ok;
    const char *Sheet, *First, *Second;
  };
  const TCase Cases[] = {
      {"Sheet1!A1:B2", true, "Sheet1", "A1", "B2"},
      {"'It''s here'!$C$3", true, "It's here", "$C$3", ""},
      {"''!A1", true, "", "A1", ""},
      {"'half!A1", true, "'half", "A1", ""},
      {"A1:B2", false, "", "", ""},
      {"Sheet1!", false, "Sheet1", "", ""},
      {"Sheet1!:B2", false, "Sheet1", "", "B2"},
  };
  for (const auto& C : Cases) {
    std::string Sheet = "x", First = "x", Second = "x";
    EXPECT_EQ(SplitSheetRefText(C.Text, Sheet, First, Second), C.Ok) << C.Text;
    EXPECT_EQ(Sheet, C.Sheet) << C.Text;
    EXPECT_EQ(First, C.First) << C.Text;
    EXPECT_EQ(Second, C.Second) << C.Text;
  }
}
