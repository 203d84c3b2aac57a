#include "Tabrino.Formula.SpillOrder.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>

namespace Tabrino {

namespace {

bool RowMajorLess(const TSheetCellKey& A, const TSheetCellKey& B) {
  return std::tie(A.Sheet, A.Row, A.Col) < std::tie(B.Sheet, B.Row, B.Col);
}

// Block cells a formula is reached from, up to three: enough to tell one
// source from several even after a block cell's own key is set aside.
class TSourceSet {
 public:
  bool Add(const TSheetCellKey& Key) {
    if (Full() || std::find(FKeys.begin(), FKeys.begin() + FCount, Key) != FKeys.begin() + FCount) return false;
    FKeys[FCount++] = Key;
    return true;
  }
  bool Full() const { return FCount == FKeys.size(); }
  std::span<const TSheetCellKey> Keys() const { return {FKeys.data(), FCount}; }

 private:
  std::array<TSheetCellKey, 3> FKeys{};
  size_t FCount = 0;
};

constexpr int32_t Far = std::numeric_limits<int32_t>::max();

// A formula woken through the block.
struct TNode {
  TSheetCellKey Key;
  TSourceSet Sources;
  // Woken formulas that read this one, in the graph's order.
  std::vector<int32_t> Dependents;
  // Woken formulas this one reads that have not left the queue yet.
  int32_t Pending = 0;
  // The earliest block cell it reads directly: the order of discovery.
  TSheetCellKey FirstRead{Far, Far, Far};
  bool ListedOnce = false;
  bool Queued = false;
  bool Released = false;
};

class TPlanner {
 public:
  TPlanner(const TFormulaDependencyGraph& Graph, int32_t Sheet, const TCellRange& Block)
      : FGraph(Graph), FSheet(Sheet), FBlock(Block.Normalize()) {}

  void Run(std::span<const TSheetCellKey> BlockFormulas, std::vector<TSheetCellKey>& Circular,
           std::vector<TSheetCellKey>& Order) {
    FindReaders();
    PropagateSources();
    for (TNode& Node : FNodes) Node.ListedOnce = Repeats(Node) == 1;
    Order.clear();
    // The block's own cells leave the queue first, in row order; a formula
    // among them that reads nothing woken has nothing to wait for.
    for (const TSheetCellKey& Cell : BlockFormulas)
      if (!FIndexOf.contains(Cell)) Order.push_back(Cell);
    Release(Order);
    Circular.clear();
    for (int32_t Index : FDiscovery)
      if (!FNodes[Index].Released) Circular.push_back(FNodes[Index].Key);
  }

 private:
  bool InBlock(const TSheetCellKey& Key) const { return Key.Sheet == FSheet && FBlock.Contains(Key.Col, Key.Row); }

  int32_t NodeOf(const TSheetCellKey& Key) {
    auto [It, Added] = FIndexOf.try_emplace(Key, int32_t(FNodes.size()));
    if (Added) {
      FNodes.emplace_back().Key = Key;
      FDiscovery.push_back(It->second);
    }
    return It->second;
  }

  // Every formula that reads the block, then everything downstream, with the
  // edges between them. Direct readers are discovered by the earliest block
  // cell they read, as the rule lists them.
  void FindReaders() {
    FGraph.ForEachReadIn({FSheet, FBlock}, [&](const TSheetCellKey& Formula, const TCellRange& Part) {
      TNode& Node = FNodes[NodeOf(Formula)];
      const TSheetCellKey First{FSheet, Part.StartCol, Part.StartRow};
      if (RowMajorLess(First, Node.FirstRead)) Node.FirstRead = First;
      for (int32_t Row = Part.StartRow; Row <= Part.EndRow && !Node.Sources.Full(); ++Row)
        for (int32_t Col = Part.StartCol; Col <= Part.EndCol && !Node.Sources.Full(); ++Col)
          Node.Sources.Add({FSheet, Col, Row});
    });
    std::sort(FDiscovery.begin(), FDiscovery.end(), [&](int32_t A, int32_t B) {
      const TNode &NA = FNodes[A], &NB = FNodes[B];
      if (NA.FirstRead != NB.FirstRead) return RowMajorLess(NA.FirstRead, NB.FirstRead);
      return RowMajorLess(NA.Key, NB.Key);
    });
    std::vector<TSheetCellKey> Direct;
    for (size_t I = 0; I < FDiscovery.size(); ++I) {
      const int32_t Reader = FDiscovery[I];
      Direct.clear();
      FGraph.GetDependents(FNodes[Reader].Key, Direct);
      for (const TSheetCellKey& Dependent : Direct) {
        const int32_t Index = NodeOf(Dependent);
        FNodes[Reader].Dependents.push_back(Index);
        ++FNodes[Index].Pending;
      }
    }
  }

  // Sources flow along the edges until nothing changes; a set grows at most
  // three times, so each node is revisited a bounded number of times.
  void PropagateSources() {
    std::vector<int32_t> Work(FDiscovery.rbegin(), FDiscovery.rend());
    std::vector<bool> InWork(FNodes.size(), true);
    while (!Work.empty()) {
      const int32_t Index = Work.back();
      Work.pop_back();
      InWork[Index] = false;
      TSourceSet Flowing = FNodes[Index].Sources;
      if (InBlock(FNodes[Index].Key)) Flowing.Add(FNodes[Index].Key);
      for (int32_t Dependent : FNodes[Index].Dependents) {
        bool Changed = false;
        for (const TSheetCellKey& Source : Flowing.Keys()) Changed |= FNodes[Dependent].Sources.Add(Source);
        if (Changed && !InWork[Dependent]) {
          InWork[Dependent] = true;
          Work.push_back(Dependent);
        }
      }
    }
  }

  // How often the rule lists the formula (capped): once per block cell it is
  // reached from, and a block cell once more for its own turn unless a cell
  // before it has listed it already.
  int32_t Repeats(const TNode& Node) const {
    if (!InBlock(Node.Key)) return int32_t(Node.Sources.Keys().size());
    int32_t Others = 0;
    bool ListedEarlier = false;
    for (const TSheetCellKey& Source : Node.Sources.Keys()) {
      if (Source == Node.Key) continue;
      ++Others;
      ListedEarlier |= RowMajorLess(Source, Node.Key);
    }
    return Others + (ListedEarlier ? 0 : 1);
  }

  // Kahn's queue over the woken formulas. One listed once and reading no
  // other woken formula reads exactly one block cell and is released in that
  // cell's turn, in the order the graph keeps that cell's readers. The rest
  // are released when the woken formulas they read have left.
  void Release(std::vector<TSheetCellKey>& Order) {
    std::vector<TSheetCellKey> Cells;
    for (const TNode& Node : FNodes)
      if (Node.ListedOnce && Node.Pending == 0) Cells.push_back(SoleSource(Node));
    std::sort(Cells.begin(), Cells.end(), RowMajorLess);
    Cells.erase(std::unique(Cells.begin(), Cells.end()), Cells.end());
    std::vector<int32_t> Queue;
    std::vector<TSheetCellKey> Readers;
    for (const TSheetCellKey& Cell : Cells) {
      Readers.clear();
      FGraph.GetDependents(Cell, Readers);
      for (const TSheetCellKey& Reader : Readers) {
        auto It = FIndexOf.find(Reader);
        if (It == FIndexOf.end()) continue;
        TNode& Node = FNodes[It->second];
        if (!Node.ListedOnce || Node.Pending != 0 || Node.Queued) continue;
        Node.Queued = true;
        Queue.push_back(It->second);
      }
    }
    for (size_t Head = 0; Head < Queue.size(); ++Head) {
      TNode& Node = FNodes[Queue[Head]];
      Node.Released = true;
      Order.push_back(Node.Key);
      for (int32_t Dependent : Node.Dependents) {
        TNode& Next = FNodes[Dependent];
        if (Next.ListedOnce && --Next.Pending == 0) Queue.push_back(Dependent);
      }
    }
  }

  static TSheetCellKey SoleSource(const TNode& Node) {
    for (const TSheetCellKey& Source : Node.Sources.Keys())
      if (Source != Node.Key) return Source;
    return Node.Key;
  }

  const TFormulaDependencyGraph& FGraph;
  const int32_t FSheet;
  const TCellRange FBlock;
  absl::flat_hash_map<TSheetCellKey, int32_t> FIndexOf;
  std::vector<TNode> FNodes;
  std::vector<int32_t> FDiscovery;
};

}  // namespace

void OrderSpillDependents(const TFormulaDependencyGraph& Graph, int32_t Sheet, const TCellRange& Block,
                          std::span<const TSheetCellKey> BlockFormulas, std::vector<TSheetCellKey>& Circular,
                          std::vector<TSheetCellKey>& Order) {
  TPlanner(Graph, Sheet, Block).Run(BlockFormulas, Circular, Order);
}

}  // namespace Tabrino
