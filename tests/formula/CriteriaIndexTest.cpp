// The criteria index must answer exactly as the walk over the cells would:
// the same counts, and sums equal to the last bit where it answers at all.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "Tabrino.Formula.CriteriaIndex.h"
#include "Tabrino.Formula.Criterion.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

TCellValue RandomCell(std::mt19937& Random) {
  static const std::vector<TCellValue> Pool = {
      TCellValue::FromNumber(5),
      TCellValue::FromNumber(0),
      TCellValue::FromNumber(-0.0),
      TCellValue::FromNumber(0.1),
      TCellValue::FromNumber(2.5),
      TCellValue::FromNumber(-3),
      TCellValue::FromNumber(1e300),
      TCellValue::FromText("5"),
      TCellValue::FromText("5.0"),
      TCellValue::FromText("abc"),
      TCellValue::FromText("ABC"),
      TCellValue::FromText(""),
      TCellValue::FromText("true"),
      TCellValue::FromBoolean(true),
      TCellValue::FromBoolean(false),
      TCellValue::FromError(ceNA),
      TCellValue(),
      TCellValue::FromText("2.5"),
  };
  return Pool[std::uniform_int_distribution<size_t>(0, Pool.size() - 1)(Random)];
}

bool SameBits(double A, double B) {
  return std::memcmp(&A, &B, sizeof A) == 0;
}

TEST(CriteriaIndex, AnswersAsTheWalkDoes) {
  const std::vector<std::string> Criteria = {"5",       "=5",  "<>5",   ">2",   "<=0",  ">=abc", "abc", "=ABC",
                                             "",        "=",   "<>",    "TRUE", "0",    "-0",    "5.0", "<0.1",
                                             ">=1e300", "2.5", "<>abc", "#N/A", "true", ">",     "<abc"};
  std::mt19937 Random(5);
  int SumsAnswered = 0;
  for (int Round = 0; Round < 30; ++Round) {
    std::vector<TCellValue> Tested(200), Summed(180);
    for (auto& Cell : Tested) Cell = RandomCell(Random);
    for (auto& Cell : Summed) Cell = RandomCell(Random);
    const TCriteriaIndex Sums(Tested, Summed), Counts(Tested, {});
    for (const std::string& Text : Criteria) {
      const TCriterion Criterion{std::string_view(Text)};
      TMatchTotals Walk;
      double WalkCount = 0;
      for (size_t I = 0; I < Tested.size(); ++I) {
        if (!Criterion.Matches(Tested[I])) continue;
        ++WalkCount;
        if (I < Summed.size() && Summed[I].Kind == cvkNumber) {
          Walk.Sum += Summed[I].Number;
          ++Walk.Count;
        }
      }
      double Count = -1;
      ASSERT_TRUE(Counts.TryCount(Criterion, Count)) << Text;
      EXPECT_EQ(Count, WalkCount) << "criterion " << Text << ", round " << Round;
      TMatchTotals Totals;
      if (!Sums.TrySum(Criterion, Totals)) continue;
      ++SumsAnswered;
      EXPECT_TRUE(SameBits(Totals.Sum, Walk.Sum)) << "criterion " << Text << ", round " << Round;
      EXPECT_EQ(Totals.Count, Walk.Count) << "criterion " << Text;
    }
  }
  EXPECT_GT(SumsAnswered, 100) << "equality sums are answered from the index";
}

// Through the evaluator: formulas that test one range again and again get
// the index from their second call on, and the answers stay those of the walk.
TEST(CriteriaIndex, RepeatedAggregatesOverOneRange) {
  TWorkbook Book;
  TWorksheet& Sheet = *Book.AddSheet("S");
  for (int32_t Row = 1; Row <= 300; ++Row) {
    Sheet.SetCell({1, Row}, TCell::WithValue(TCellValue::FromText("K" + std::to_string(Row % 7))));
    Sheet.SetCell({2, Row}, TCell::WithValue(TCellValue::FromNumber(Row % 11)));
  }
  for (int32_t Row = 1; Row <= 20; ++Row) {
    const std::string R = std::to_string(Row);
    Sheet.SetCell({3, Row}, TCell::WithValue(TCellValue::FromFormula("=SUMIF($A$1:$A$300,\"K" +
                                                                     std::to_string(Row % 7) + "\",$B$1:$B$300)")));
    Sheet.SetCell({4, Row}, TCell::WithValue(TCellValue::FromFormula("=COUNTIF($B$1:$B$300,\">" + R + "\")")));
    Sheet.SetCell({5, Row}, TCell::WithValue(TCellValue::FromFormula("=AVERAGEIF($B$1:$B$300,\"<>" + R + "\")")));
  }
  TFormulaEvaluator Evaluator(Book);
  Evaluator.RecalculateAll();
  for (int32_t Row = 1; Row <= 20; ++Row) {
    double Sum = 0, Count = 0, OtherSum = 0, Others = 0;
    for (int32_t I = 1; I <= 300; ++I) {
      if (I % 7 == Row % 7) Sum += I % 11;
      if (I % 11 > Row) ++Count;
      if (I % 11 != Row) {
        OtherSum += I % 11;
        ++Others;
      }
    }
    EXPECT_EQ(Sheet.GetEffectiveValue({3, Row}).Number, Sum) << Row;
    EXPECT_EQ(Sheet.GetEffectiveValue({4, Row}).Number, Count) << Row;
    EXPECT_DOUBLE_EQ(Sheet.GetEffectiveValue({5, Row}).Number, OtherSum / Others) << Row;
  }
}

}  // namespace
}  // namespace Tabrino
