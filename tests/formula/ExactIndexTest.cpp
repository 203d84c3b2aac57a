// The lookup index must give exactly what the first-to-last walk gives, for
// every kind of key against every kind of cell.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Tabrino.Formula.ExactIndex.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {
namespace {

std::vector<TCellValue> AwkwardValues() {
  return {TCellValue::FromNumber(5),      TCellValue::FromText("5"),         TCellValue::FromText("05"),
          TCellValue::FromText("abc"),    TCellValue::FromText("ABC"),       TCellValue::FromBoolean(true),
          TCellValue::FromText("TRUE"),   TCellValue::FromText("true"),      TCellValue(),
          TCellValue::FromText(""),       TCellValue::FromError(ceNA),       TCellValue::FromText("#N/A"),
          TCellValue::FromNumber(0),      TCellValue::FromNumber(-0.0),      TCellValue::FromNumber(1E20),
          TCellValue::FromText("1E+20"),  TCellValue::FromNumber(0.1 + 0.2), TCellValue::FromText(" 5"),
          TCellValue::FromBoolean(false), TCellValue::FromNumber(1),         TCellValue::FromText("ñ")};
}

int64_t Walk(const std::vector<TCellValue>& Cells, int64_t Count, int64_t Stride, const TLookupKey& Key) {
  for (int64_t At = 0; At < Count && size_t(At * Stride) < Cells.size(); ++At)
    if (Key.Matches(Cells[At * Stride])) return At;
  return -1;
}

TEST(ExactIndex, AgreesWithTheWalkForEveryKeyAndCell) {
  const std::vector<TCellValue> Pool = AwkwardValues();
  // Each value once in the first column, a second column of filler between.
  std::vector<TCellValue> Cells;
  for (size_t I = 0; I < Pool.size(); ++I) {
    Cells.push_back(Pool[Pool.size() - 1 - I]);
    Cells.push_back(TCellValue::FromNumber(double(I)));
  }
  const int64_t Rows = int64_t(Pool.size());
  for (const auto& [Count, Stride] : {std::pair<int64_t, int64_t>{Rows, 2}, {Rows * 2, 1}}) {
    TExactMatchIndex Index(Cells, Count, Stride);
    for (const TCellValue& KeyValue : Pool) {
      TLookupKey Key(KeyValue);
      EXPECT_EQ(Index.Find(Key), Walk(Cells, Count, Stride, Key))
          << "key " << KeyValue.ToDisplayString() << ", stride " << Stride;
    }
    EXPECT_EQ(Index.Find(TLookupKey(TCellValue::FromText("absent"))), -1);
  }
}

TEST(ExactIndex, TheCacheIndexesATableOnItsSecondSearch) {
  std::vector<TCellValue> Values;
  for (int I = 0; I < 100; ++I) Values.push_back(TCellValue::FromNumber(I));
  TFormulaArg Table = TFormulaArg::FromRange(Values, 100, 1);
  TFormulaArg Small = TFormulaArg::FromRange(std::vector<TCellValue>{TCellValue::FromNumber(1)}, 1, 1);
  TExactIndexCache Cache;
  EXPECT_EQ(Cache.For(Table, 100, 1), nullptr);
  const TExactMatchIndex* Index = Cache.For(Table, 100, 1);
  ASSERT_NE(Index, nullptr);
  EXPECT_EQ(Index->Find(TLookupKey(TCellValue::FromNumber(42))), 42);
  EXPECT_EQ(Cache.For(Table, 50, 1), nullptr) << "another line of the same cells is another index";
  EXPECT_EQ(Cache.For(Small, 1, 1), nullptr);
  EXPECT_EQ(Cache.For(Small, 1, 1), nullptr) << "small tables are walked";
}

}  // namespace
}  // namespace Tabrino
