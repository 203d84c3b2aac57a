// OrderSpillDependents against a literal run of the rule it computes: every
// cell of the block listed with its transitive dependents, then Kahn's
// ordering over that list, repeats and all.
#include <gtest/gtest.h>

#include <absl/container/flat_hash_set.h>

#include <algorithm>
#include <random>
#include <vector>

#include "Tabrino.Formula.DependencyGraph.h"
#include "Tabrino.Formula.SpillOrder.h"

using namespace Tabrino;

namespace {

struct TOutcome {
  std::vector<TSheetCellKey> Order;
  std::vector<TSheetCellKey> Circular;  // sorted: only membership is promised
};

void SortKeys(std::vector<TSheetCellKey>& Keys) {
  std::sort(Keys.begin(), Keys.end(), [](const TSheetCellKey& A, const TSheetCellKey& B) {
    return std::tie(A.Sheet, A.Col, A.Row) < std::tie(B.Sheet, B.Col, B.Row);
  });
  Keys.erase(std::unique(Keys.begin(), Keys.end()), Keys.end());
}

// The rule as stated, cell by cell. Only formulas are reported: evaluating or
// marking anything else does nothing.
TOutcome Literal(const TFormulaDependencyGraph& Graph, int32_t Sheet, const TCellRange& Block,
                 const absl::flat_hash_set<TSheetCellKey>& Formulas) {
  std::vector<TSheetCellKey> Nodes;
  for (int32_t Row = Block.StartRow; Row <= Block.EndRow; ++Row)
    for (int32_t Col = Block.StartCol; Col <= Block.EndCol; ++Col) {
      const TSheetCellKey Key{Sheet, Col, Row};
      if (std::find(Nodes.begin(), Nodes.end(), Key) == Nodes.end()) Nodes.push_back(Key);
      Graph.CollectTransitiveDependents(Key, Nodes);
    }
  std::vector<TSheetCellKey> Cycle, Order;
  Graph.TopologicalOrder(Nodes, &Cycle, Order);
  TOutcome Outcome;
  for (const TSheetCellKey& Key : Order)
    if (Formulas.contains(Key)) Outcome.Order.push_back(Key);
  for (const TSheetCellKey& Key : Cycle)
    if (Formulas.contains(Key)) Outcome.Circular.push_back(Key);
  SortKeys(Outcome.Circular);
  return Outcome;
}

TOutcome Fast(const TFormulaDependencyGraph& Graph, int32_t Sheet, const TCellRange& Block,
              const absl::flat_hash_set<TSheetCellKey>& Formulas) {
  std::vector<TSheetCellKey> BlockFormulas;
  for (int32_t Row = Block.StartRow; Row <= Block.EndRow; ++Row)
    for (int32_t Col = Block.StartCol; Col <= Block.EndCol; ++Col)
      if (Formulas.contains(TSheetCellKey{Sheet, Col, Row})) BlockFormulas.push_back({Sheet, Col, Row});
  TOutcome Outcome;
  OrderSpillDependents(Graph, Sheet, Block, BlockFormulas, Outcome.Circular, Outcome.Order);
  const size_t Distinct = Outcome.Circular.size();
  SortKeys(Outcome.Circular);
  EXPECT_EQ(Outcome.Circular.size(), Distinct) << "each circular formula is reported once";
  return Outcome;
}

std::string Describe(const std::vector<TSheetCellKey>& Keys) {
  std::string Text;
  for (const TSheetCellKey& K : Keys) Text += CellKey(K.Sheet, K.Col, K.Row) + " ";
  return Text;
}

}  // namespace

TEST(SpillOrder, ARangeReaderOfTwoBlockCellsIsLeftCircular) {
  TFormulaDependencyGraph Graph;
  TFormulaDependencies Sum;  // reads A1:C1, the whole block
  Sum.AddRange(0, {1, 1, 3, 1});
  Graph.SetDependencies({0, 5, 5}, Sum);
  TFormulaDependencies One;  // reads B1 only
  One.AddCell({0, 2, 1});
  Graph.SetDependencies({0, 6, 6}, One);
  TFormulaDependencies Next;  // reads the one above
  Next.AddCell({0, 6, 6});
  Graph.SetDependencies({0, 6, 7}, Next);
  const absl::flat_hash_set<TSheetCellKey> Formulas{{0, 1, 1}, {0, 5, 5}, {0, 6, 6}, {0, 6, 7}};

  const TOutcome Outcome = Fast(Graph, 0, {1, 1, 3, 1}, Formulas);
  EXPECT_EQ(Outcome.Order, (std::vector<TSheetCellKey>{{0, 1, 1}, {0, 6, 6}, {0, 6, 7}}));
  EXPECT_EQ(Outcome.Circular, (std::vector<TSheetCellKey>{{0, 5, 5}}));
}

TEST(SpillOrder, AgreesWithTheLiteralRuleOnRandomGraphs) {
  std::mt19937 Random(20240611);
  auto Pick = [&](int32_t Low, int32_t High) { return std::uniform_int_distribution<int32_t>(Low, High)(Random); };
  constexpr int32_t Size = 7;
  for (int Trial = 0; Trial < 3000; ++Trial) {
    TFormulaDependencyGraph Graph;
    absl::flat_hash_set<TSheetCellKey> Formulas;
    const int FormulaCount = Pick(1, 12);
    for (int F = 0; F < FormulaCount; ++F) {
      const TSheetCellKey Key{Pick(0, 4) == 0 ? 1 : 0, Pick(1, Size), Pick(1, Size)};
      Formulas.insert(Key);
      if (Pick(0, 5) == 0) continue;  // a formula the graph does not know
      TFormulaDependencies Deps;
      for (int R = Pick(1, 3); R > 0; --R) {
        const int32_t Col = Pick(1, Size), Row = Pick(1, Size);
        if (Pick(0, 2) == 0)
          Deps.AddRange(0, TCellRange{Col, Row, Pick(1, Size), Pick(1, Size)}.Normalize());
        else
          Deps.AddCell({Pick(0, 6) == 0 ? 1 : 0, Col, Row});
      }
      Graph.SetDependencies(Key, Deps);
    }
    const TCellRange Block = TCellRange{Pick(1, Size), Pick(1, Size), Pick(1, Size), Pick(1, Size)}.Normalize();

    const TOutcome Expected = Literal(Graph, 0, Block, Formulas);
    const TOutcome Actual = Fast(Graph, 0, Block, Formulas);
    ASSERT_EQ(Describe(Actual.Order), Describe(Expected.Order)) << "trial " << Trial;
    ASSERT_EQ(Describe(Actual.Circular), Describe(Expected.Circular)) << "trial " << Trial;
  }
}
