#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "Tabrino.CellStore.h"
#include "Tabrino.Worksheet.h"

using namespace Tabrino;

namespace {

TStoredCell Number(double V) {
  return TStoredCell::FromCell(TCell::WithValue(TCellValue::FromNumber(V)));
}

std::vector<std::pair<int32_t, int32_t>> Keys(const TCellMap& Map) {
  std::vector<std::pair<int32_t, int32_t>> Out;
  for (const auto& [Key, Cell] : Map) Out.emplace_back(Key.Col, Key.Row);
  std::sort(Out.begin(), Out.end());
  return Out;
}

// The blocked map against an ordinary ordered map under a random mix of writes and
// removals, with rows across block edges, zero and negative rows included.
TEST(CellBlockMap, AgreesWithAnOrderedMapUnderRandomEdits) {
  TCellMap Map;
  std::map<std::pair<int32_t, int32_t>, double> Model;
  std::mt19937 Random(3);
  std::uniform_int_distribution<int32_t> Col(1, 4), Row(-40, 80), Op(0, 3);
  for (int Step = 0; Step < 20000; ++Step) {
    const int32_t C = Col(Random), R = Row(Random);
    if (Op(Random) == 0) {
      EXPECT_EQ(Map.Erase({C, R}), Model.erase({C, R}) == 1);
    } else {
      Map[{C, R}] = Number(Step);
      Model[{C, R}] = Step;
    }
  }
  ASSERT_EQ(Map.size(), Model.size());
  std::vector<std::pair<int32_t, int32_t>> Expected;
  for (const auto& [Key, Value] : Model) {
    Expected.push_back(Key);
    const TStoredCell* Cell = Map.Find({Key.first, Key.second});
    ASSERT_NE(Cell, nullptr);
    EXPECT_EQ(Cell->Number(), Value);
  }
  EXPECT_EQ(Keys(Map), Expected) << "iteration visits every cell exactly once";
  EXPECT_EQ(Map.Find({5, 1}), nullptr);
}

TEST(CellBlockMap, ReplacingKeepsTheCountAndClearEmpties) {
  TCellMap Map;
  Map[{1, 16}] = Number(1);
  Map[{1, 16}] = Number(2);
  Map[{1, 15}] = Number(3);
  EXPECT_EQ(Map.size(), 2u);
  EXPECT_EQ(Map.Find({1, 16})->Number(), 2);
  EXPECT_FALSE(Map.Erase({1, 17}));
  Map.clear();
  EXPECT_EQ(Map.size(), 0u);
  EXPECT_EQ(Map.begin(), Map.end());
}

TCell Rich() {
  TCell Cell = TCell::WithValue(TCellValue::FromText("styled"));
  Cell.HasFormatOverride = true;
  Cell.FormatOverride.NumberFormat = "0.00";
  Cell.RichText.push_back({});
  return Cell;
}

TCell Formula() {
  TCell Cell = TCell::WithValue(TCellValue::FromFormula("=SUM(A1:A1000)+LEN(\"a long formula text\")"));
  Cell.StyleIndex = 3;
  Cell.SetCachedResult(TCellValue::FromNumber(7));
  return Cell;
}

// CopyTo into a cell that held anything before gives what ToCell gives.
TEST(StoredCell, CopyToOverAnyEarlierCellEqualsToCell) {
  const std::vector<TCell> Cells = {TCell(),
                                    TCell::WithValue(TCellValue::FromNumber(2.5)),
                                    TCell::WithValue(TCellValue::FromBoolean(true)),
                                    TCell::WithValue(TCellValue::FromError(ceDiv0)),
                                    TCell::WithValue(TCellValue::FromText("text")),
                                    Formula(),
                                    Rich()};
  for (const TCell& Before : Cells)
    for (const TCell& Source : Cells) {
      const TStoredCell Stored = TStoredCell::FromCell(Source);
      TCell Out = Before;
      Stored.CopyTo(Out);
      const TCell Expected = Stored.ToCell();
      EXPECT_EQ(Out.Value, Expected.Value);
      EXPECT_EQ(Out.StyleIndex, Expected.StyleIndex);
      EXPECT_EQ(Out.HasCachedValue, Expected.HasCachedValue);
      EXPECT_EQ(Out.CachedValue, Expected.CachedValue);
      EXPECT_EQ(Out.HasFormatOverride, Expected.HasFormatOverride);
      EXPECT_EQ(Out.FormatOverride.NumberFormat, Expected.FormatOverride.NumberFormat);
      EXPECT_EQ(Out.RichText.size(), Expected.RichText.size());
    }
}

// The cells a change event is given stay intact while its handler writes
// to the sheet again.
TEST(WorksheetEvents, HandlerWritesDoNotDisturbTheOuterEventsCells) {
  TWorksheet Sheet("S");
  Sheet.SetCell({1, 1}, Formula());
  std::vector<std::string> Seen;
  bool Nested = false;
  Sheet.FOnChange = [&](TWorksheet& Sender, const TCellAddress&, const TCell& Old, const TCell& New) {
    if (!Nested) {
      Nested = true;
      Sender.SetCachedResult(1, 1, TCellValue::FromText("inner"));
      Sender.SetCell({2, 1}, TCell::WithValue(TCellValue::FromNumber(1)));
    }
    Seen.push_back(Old.CachedValue.ToDisplayString() + ">" + New.CachedValue.ToDisplayString());
  };
  Sheet.SetCachedResult(1, 1, TCellValue::FromNumber(8));
  const std::vector<std::string> Expected = {"8>inner", ">", "7>8"};
  EXPECT_EQ(Seen, Expected);
}

}  // namespace
