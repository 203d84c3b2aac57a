#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "Tabrino.Formula.DependencyGraph.h"

using namespace Tabrino;

namespace {

TSheetCellKey K(int32_t Col, int32_t Row, int32_t Sheet = 0) {
  return {Sheet, Col, Row};
}

TFormulaDependencies Cells(std::initializer_list<TSheetCellKey> Keys) {
  TFormulaDependencies Deps;
  for (const TSheetCellKey& Key : Keys) Deps.AddCell(Key);
  return Deps;
}

TFormulaDependencies Range(int32_t C1, int32_t R1, int32_t C2, int32_t R2, int32_t Sheet = 0) {
  TFormulaDependencies Deps;
  Deps.AddRange(Sheet, TCellRange::Make(C1, R1, C2, R2));
  return Deps;
}

std::vector<TSheetCellKey> Dependents(const TFormulaDependencyGraph& Graph, const TSheetCellKey& Key) {
  std::vector<TSheetCellKey> List;
  Graph.GetDependents(Key, List);
  return List;
}

}  // namespace

TEST(DependencyGraph, KeyTextRoundTrip) {
  EXPECT_EQ(CellKey(0, 2, 5), "0!2,5");
  struct TCase {
    const char* Text;
    bool Ok;
    int32_t Sheet, Col, Row;
  };
  for (const TCase& C : std::initializer_list<TCase>{{"0!2,5", true, 0, 2, 5},
                                                     {"12!16384,1048576", true, 12, 16384, 1048576},
                                                     {"x!2,5", false, -1, 2, 5},
                                                     {"0!0,5", false, 0, 0, 5},
                                                     {"0!2,", false, 0, 2, 0},
                                                     {"0,2!5", false, -1, 0, 0},
                                                     {"025", false, -1, 0, 0}}) {
    int32_t Sheet, Col, Row;
    EXPECT_EQ(ParseKey(C.Text, Sheet, Col, Row), C.Ok) << C.Text;
    EXPECT_EQ(Sheet, C.Sheet) << C.Text;
    EXPECT_EQ(Col, C.Col) << C.Text;
    EXPECT_EQ(Row, C.Row) << C.Text;
  }
}

TEST(DependencyGraph, DependentsInRegistrationOrderOnceEach) {
  TFormulaDependencyGraph Graph;
  TFormulaDependencies Both = Range(1, 1, 1, 10);
  Both.AddCell(K(1, 5));
  Both.AddCell(K(1, 5));
  Graph.SetDependencies(K(2, 1), Both);
  Graph.SetDependencies(K(3, 1), Cells({K(1, 5)}));
  Graph.SetDependencies(K(4, 1), Range(1, 3, 2, 8));
  EXPECT_EQ(Graph.FindDependencies(K(2, 1))->Cells.size(), 1u) << "duplicates dropped";
  EXPECT_EQ(Dependents(Graph, K(1, 5)), (std::vector{K(2, 1), K(3, 1), K(4, 1)}));
  EXPECT_EQ(Dependents(Graph, K(1, 9)), (std::vector{K(2, 1)}));
  EXPECT_TRUE(Dependents(Graph, K(1, 5, 1)).empty()) << "other sheet";

  // Registering again moves a formula behind the others.
  Graph.SetDependencies(K(2, 1), Both);
  EXPECT_EQ(Dependents(Graph, K(1, 5)), (std::vector{K(3, 1), K(4, 1), K(2, 1)}));

  // Clearing a formula removes what it reads, not what reads it.
  Graph.SetDependencies(K(9, 9), Cells({K(2, 1)}));
  Graph.ClearCell(K(2, 1));
  EXPECT_EQ(Dependents(Graph, K(1, 5)), (std::vector{K(3, 1), K(4, 1)}));
  EXPECT_EQ(Dependents(Graph, K(2, 1)), (std::vector{K(9, 9)}));
}

TEST(DependencyGraph, LongRangesAreStoredOncePerBucket) {
  TFormulaDependencyGraph Graph;
  constexpr int32_t Formulas = 2000;
  for (int32_t I = 1; I <= Formulas; ++I) Graph.SetDependencies(K(2, I), Range(1, 1, 1, 100000));
  // A hundred thousand rows span 98 buckets of 1024 rows.
  EXPECT_EQ(Graph.RangeIndexEntryCount(), size_t(Formulas) * 98);
  std::vector<TSheetCellKey> Readers = Dependents(Graph, K(1, 54321));
  ASSERT_EQ(Readers.size(), size_t(Formulas));
  EXPECT_EQ(Readers.front(), K(2, 1));
  EXPECT_EQ(Readers.back(), K(2, Formulas));
  EXPECT_TRUE(Dependents(Graph, K(1, 100001)).empty());

  // A huge block goes to the scanned list and is found all the same.
  Graph.SetDependencies(K(5, 5), Range(2, 2, 16000, 1000000));
  EXPECT_EQ(Dependents(Graph, K(15999, 999999)), (std::vector{K(5, 5)}));
  for (int32_t I = 1; I <= Formulas; ++I) Graph.ClearCell(K(2, I));
  Graph.ClearCell(K(5, 5));
  EXPECT_EQ(Graph.RangeIndexEntryCount(), 0u);
}

TEST(DependencyGraph, TransitiveDependentsLeaveOutTheStart) {
  TFormulaDependencyGraph Graph;
  Graph.SetDependencies(K(2, 1), Cells({K(1, 1)}));   // B1 = A1
  Graph.SetDependencies(K(1, 1), Cells({K(2, 1)}));   // A1 = B1
  Graph.SetDependencies(K(3, 1), Range(2, 1, 2, 3));  // C1 = SUM(B1:B3)
  std::vector<TSheetCellKey> List{K(7, 7)};
  Graph.CollectTransitiveDependents(K(1, 1), List);
  EXPECT_EQ(List, (std::vector{K(7, 7), K(2, 1), K(3, 1)}));
}

TEST(DependencyGraph, TopologicalOrderTiesAndCycles) {
  TFormulaDependencyGraph Graph;
  // A1 <- B1 <- C1, and D1 reading A1 directly.
  Graph.SetDependencies(K(2, 1), Cells({K(1, 1)}));
  Graph.SetDependencies(K(3, 1), Cells({K(2, 1)}));
  Graph.SetDependencies(K(4, 1), Cells({K(1, 1)}));
  std::vector<TSheetCellKey> Cycle{K(99, 99)}, Order{K(98, 98)};
  Graph.TopologicalOrder({K(3, 1), K(1, 1), K(4, 1), K(2, 1)}, &Cycle, Order);
  EXPECT_EQ(Order, (std::vector{K(1, 1), K(2, 1), K(4, 1), K(3, 1)})) << "nodes order, then first in first out";
  EXPECT_TRUE(Cycle.empty());

  // A cycle and everything downstream of it stay out of the order.
  Graph.SetDependencies(K(1, 1), Cells({K(3, 1)}));
  Graph.TopologicalOrder({K(1, 1), K(2, 1), K(3, 1), K(4, 1), K(5, 1)}, &Cycle, Order);
  EXPECT_EQ(Order, (std::vector{K(5, 1)}));
  EXPECT_EQ(Cycle, (std::vector{K(1, 1), K(2, 1), K(3, 1), K(4, 1)}));

  // Self-reference never reaches in-degree zero.
  Graph.SetDependencies(K(6, 1), Cells({K(6, 1)}));
  Graph.TopologicalOrder({K(6, 1)}, &Cycle, Order);
  EXPECT_TRUE(Order.empty());
  EXPECT_EQ(Cycle, (std::vector{K(6, 1)}));
}

TEST(DependencyGraph, TopologicalOrderCountsRepeatedEntries) {
  TFormulaDependencyGraph Graph;
  Graph.SetDependencies(K(2, 1), Cells({K(1, 1)}));  // B1 = A1
  std::vector<TSheetCellKey> Cycle, Order;
  // A repeated dependent counts its dependency twice but is released once.
  Graph.TopologicalOrder({K(1, 1), K(2, 1), K(2, 1)}, &Cycle, Order);
  EXPECT_EQ(Order, (std::vector{K(1, 1)}));
  EXPECT_EQ(Cycle, (std::vector{K(2, 1), K(2, 1)}));
  // A repeated source is queued and released twice.
  Graph.TopologicalOrder({K(1, 1), K(1, 1), K(2, 1)}, &Cycle, Order);
  EXPECT_EQ(Order, (std::vector{K(1, 1), K(1, 1), K(2, 1)}));
  EXPECT_TRUE(Cycle.empty());
}

namespace Tabrino {
namespace {

// An edit's order in one walk must equal the two-step rule it stands for.
TEST(DependencyGraph, OrderFromAnEditMatchesCollectThenOrder) {
  TFormulaDependencyGraph Graph;
  Graph.SetDependencies(K(2, 1), Cells({K(1, 1)}));  // diamond: B1, C1 read A1
  Graph.SetDependencies(K(3, 1), Cells({K(1, 1)}));
  Graph.SetDependencies(K(4, 1), Cells({K(2, 1), K(3, 1)}));  // D1 reads both
  Graph.SetDependencies(K(5, 1), Range(1, 1, 4, 1));          // E1 reads the row
  Graph.SetDependencies(K(6, 1), Cells({K(6, 1), K(5, 1)}));  // F1 reads itself
  Graph.SetDependencies(K(7, 1), Cells({K(6, 1)}));           // G1 downstream of the cycle
  Graph.SetDependencies(K(1, 2), Cells({K(1, 2)}));           // A2 reads itself
  for (const TSheetCellKey& Start : {K(1, 1), K(2, 1), K(6, 1), K(1, 2), K(9, 9)}) {
    std::vector<TSheetCellKey> Nodes{Start};
    Graph.CollectTransitiveDependents(Start, Nodes);
    std::vector<TSheetCellKey> WantCycle, WantOrder, Cycle, Order;
    Graph.TopologicalOrder(Nodes, &WantCycle, WantOrder);
    Graph.OrderFrom(Start, Cycle, Order);
    EXPECT_EQ(Order, WantOrder) << CellKey(Start.Sheet, Start.Col, Start.Row);
    EXPECT_EQ(Cycle, WantCycle) << CellKey(Start.Sheet, Start.Col, Start.Row);
  }
}

}  // namespace
}  // namespace Tabrino

// Ordering the whole graph from each formula's reads must reach the same
// formulas, and leave the same ones circular, as asking the reverse index,
// with small and large ranges, other sheets, cycles and re-registrations.
TEST(DependencyGraph, OrderAllAgreesWithTopologicalOrderOverEveryFormula) {
  std::mt19937 Random(11);
  std::uniform_int_distribution<int32_t> Coord(1, 12), Sheet(0, 1), Kind(0, 9), Size(0, 11);
  for (int Round = 0; Round < 40; ++Round) {
    TFormulaDependencyGraph Graph;
    std::vector<TSheetCellKey> Formulas;
    for (int I = 0; I < 60; ++I) {
      const TSheetCellKey Key = K(Coord(Random), Coord(Random), Sheet(Random));
      TFormulaDependencies Deps;
      for (int Read = Kind(Random) % 3; Read >= 0; --Read) {
        const int32_t Col = Coord(Random), Row = Coord(Random);
        if (Kind(Random) < 6) {
          Deps.AddCell(K(Col, Row, Sheet(Random)));
        } else {
          const int32_t Extent = Kind(Random) < 8 ? 1 : Size(Random) * 4;  // past 64 cells: the large path
          Deps.AddRange(Sheet(Random), TCellRange::Make(Col, Row, Col + Extent, Row + Extent));
        }
      }
      Graph.SetDependencies(Key, Deps);
      if (Kind(Random) == 0) Graph.ClearCell(Key);
    }
    for (int32_t S = 0; S <= 1; ++S)
      for (int32_t Col = 1; Col <= 64; ++Col)
        for (int32_t Row = 1; Row <= 64; ++Row)
          if (Graph.HasDependencies(K(Col, Row, S))) Formulas.push_back(K(Col, Row, S));

    std::vector<TSheetCellKey> Cycle, Order, AllCycle, AllOrder;
    Graph.TopologicalOrder(Formulas, &Cycle, Order);
    Graph.OrderAll(AllCycle, AllOrder);
    auto Sorted = [](std::vector<TSheetCellKey> Keys) {
      std::sort(Keys.begin(), Keys.end(), [](const TSheetCellKey& A, const TSheetCellKey& B) {
        return std::tie(A.Sheet, A.Col, A.Row) < std::tie(B.Sheet, B.Col, B.Row);
      });
      return Keys;
    };
    ASSERT_EQ(Sorted(AllOrder), Sorted(Order)) << "round " << Round;
    ASSERT_EQ(Sorted(AllCycle), Sorted(Cycle)) << "round " << Round;
    // Every formula comes after the formulas it reads.
    std::map<std::tuple<int32_t, int32_t, int32_t>, size_t> Position;
    for (size_t I = 0; I < AllOrder.size(); ++I) Position[{AllOrder[I].Sheet, AllOrder[I].Col, AllOrder[I].Row}] = I;
    for (size_t I = 0; I < AllOrder.size(); ++I) {
      std::vector<TSheetCellKey> Readers;
      Graph.GetDependents(AllOrder[I], Readers);
      for (const TSheetCellKey& Reader : Readers)
        if (auto It = Position.find({Reader.Sheet, Reader.Col, Reader.Row}); It != Position.end())
          EXPECT_LT(I, It->second);
    }
  }
}
