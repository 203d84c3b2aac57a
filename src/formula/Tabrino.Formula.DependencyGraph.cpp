#include "Tabrino.Formula.DependencyGraph.h"

#include <absl/container/flat_hash_set.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <numeric>
#include <span>
#include <tuple>

namespace Tabrino {

namespace {

// Ranges are indexed in buckets of one of two grains: small ranges (a row's
// SUM) in buckets of 8 columns by 16 rows, so that a lookup scans the few
// ranges near the cell; taller ones in buckets of 16 columns by 1024 rows,
// so that a long column range touches one bucket per thousand rows. A range
// over more coarse buckets than MaxBucketsPerRange is kept in its sheet's
// scanned list instead.
struct TGrain {
  int32_t ColShift;
  int32_t RowShift;
  int64_t MaxBucketsPerRange;
};
constexpr TGrain Grains[] = {{3, 4, 4}, {4, 10, 4096}};
constexpr int32_t GrainCount = 2;
constexpr int32_t LargeGrain = GrainCount;

bool ParseInt(std::string_view Text, int32_t& Value) {
  const char* End = Text.data() + Text.size();
  auto [Ptr, Error] = std::from_chars(Text.data(), End, Value);
  return Error == std::errc() && Ptr == End;
}

int64_t BucketCount(const TCellRange& R, const TGrain& G) {
  const int64_t Cols = (R.EndCol >> G.ColShift) - (R.StartCol >> G.ColShift) + 1;
  const int64_t Rows = (R.EndRow >> G.RowShift) - (R.StartRow >> G.RowShift) + 1;
  return Cols * Rows;
}

int32_t GrainOf(const TCellRange& R) {
  int32_t Grain = 0;
  while (Grain < GrainCount && BucketCount(R, Grains[Grain]) > Grains[Grain].MaxBucketsPerRange) ++Grain;
  return Grain;
}

// Calls Visit(key) for each bucket of the grain that meets R.
template <typename F>
void ForEachBucketKey(int32_t Sheet, int32_t Grain, const TCellRange& R, F&& Visit) {
  const TGrain& G = Grains[Grain];
  for (int32_t RowBlock = R.StartRow >> G.RowShift; RowBlock <= R.EndRow >> G.RowShift; ++RowBlock)
    for (int32_t ColBlock = R.StartCol >> G.ColShift; ColBlock <= R.EndCol >> G.ColShift; ++ColBlock)
      Visit(Sheet, Grain, ColBlock, RowBlock);
}

}  // namespace

void TFormulaDependencies::AddRange(int32_t Sheet, const TCellRange& Range) {
  const TCellRange R = Range.Normalize();
  if (R.StartCol == R.EndCol && R.StartRow == R.EndRow) {
    AddCell({Sheet, R.StartCol, R.StartRow});
  } else {
    Ranges.push_back({Sheet, R});
  }
}

std::string CellKey(int32_t SheetIndex, int32_t Col, int32_t Row) {
  return fmt::format("{}!{},{}", SheetIndex, Col, Row);
}

bool ParseKey(std::string_view Key, int32_t& SheetIndex, int32_t& Col, int32_t& Row) {
  SheetIndex = -1;
  Col = Row = 0;
  const size_t Bang = Key.find('!');
  const size_t Comma = Key.find(',');
  if (Bang == std::string_view::npos || Comma == std::string_view::npos || Comma < Bang) return false;
  if (!ParseInt(Key.substr(0, Bang), SheetIndex)) SheetIndex = -1;
  if (!ParseInt(Key.substr(Bang + 1, Comma - Bang - 1), Col)) Col = 0;
  if (!ParseInt(Key.substr(Comma + 1), Row)) Row = 0;
  return SheetIndex >= 0 && Col > 0 && Row > 0;
}

// ---- registration --------------------------------------------------------------

void TFormulaDependencyGraph::Clear() {
  FNodeIds.clear();
  FNodes.clear();
  FFreeNodes.clear();
  FDependents.clear();
  FRanges.clear();
  FFreeRangeIds.clear();
  FRangeBuckets.clear();
  FLargeRanges.clear();
}

void TFormulaDependencyGraph::ClearCell(const TSheetCellKey& Key) {
  const uint32_t* Id = FNodeIds.Find(Key);
  if (!Id) return;
  UnlinkNode(FNodes[*Id]);
  FNodes[*Id] = TFormulaNode();
  FFreeNodes.push_back(*Id);
  FNodeIds.Erase(Key);
}

void TFormulaDependencyGraph::UnlinkNode(const TFormulaNode& Node) {
  const TSheetCellKey& Key = Node.Key;
  for (const TSheetCellKey& Dep : Node.Deps.Cells) {
    TReaders* List = FDependents.Find(Dep);
    if (!List) continue;
    List->erase(std::remove(List->begin(), List->end(), Key), List->end());
    if (List->empty()) FDependents.Erase(Dep);
  }
  for (uint32_t Id : Node.RangeIds) RemoveRangeEntry(Id);
}

namespace {

// Appends the entries of In not yet in Out, first occurrence kept: a scan
// for the usual handful, a set for the long lists of generated formulas.
void AppendDistinctCells(std::span<const TSheetCellKey> In, absl::InlinedVector<TSheetCellKey, 2>& Out) {
  constexpr size_t ScanLimit = 16;
  if (In.size() <= ScanLimit) {
    for (const TSheetCellKey& Key : In)
      if (std::find(Out.begin(), Out.end(), Key) == Out.end()) Out.push_back(Key);
    return;
  }
  absl::flat_hash_set<TSheetCellKey> Seen;
  for (const TSheetCellKey& Key : In)
    if (Seen.insert(Key).second) Out.push_back(Key);
}

}  // namespace

void TFormulaDependencyGraph::SetDependencies(const TSheetCellKey& Key, const TFormulaDependencies& Deps) {
  auto [Id, Added] = FNodeIds.TryEmplace(Key);
  if (Added) {
    if (FFreeNodes.empty()) {
      Id = static_cast<uint32_t>(FNodes.size());
      FNodes.emplace_back();
    } else {
      Id = FFreeNodes.back();
      FFreeNodes.pop_back();
    }
  } else {
    UnlinkNode(FNodes[Id]);
    FNodes[Id] = TFormulaNode();
  }
  TFormulaNode& Node = FNodes[Id];
  Node.Key = Key;
  Node.Live = true;
  Node.Registration = FNextRegistration++;
  AppendDistinctCells(Deps.Cells, Node.Deps.Cells);
  for (const TSheetCellKey& Dep : Node.Deps.Cells) FDependents[Dep].push_back(Key);
  for (const TSheetRangeKey& Range : Deps.Ranges) {
    if (std::find(Node.Deps.Ranges.begin(), Node.Deps.Ranges.end(), Range) != Node.Deps.Ranges.end()) continue;
    Node.Deps.Ranges.push_back(Range);
    Node.RangeIds.push_back(AddRangeEntry(Key, Range, Node.Registration));
  }
}

const TFormulaDependencies* TFormulaDependencyGraph::FindDependencies(const TSheetCellKey& Key) const {
  const uint32_t* Id = FNodeIds.Find(Key);
  return Id ? &FNodes[*Id].Deps : nullptr;
}

// ---- the range index -------------------------------------------------------------

template <typename F>
void TFormulaDependencyGraph::ForEachBucket(const TRangeEntry& Entry, F&& Visit) {
  const int32_t Sheet = Entry.Range.Sheet;
  const TCellRange& R = Entry.Range.Range;
  if (Entry.Grain == LargeGrain) {
    Visit(FLargeRanges, Sheet);
    return;
  }
  ForEachBucketKey(Sheet, Entry.Grain, R, [&](int32_t S, int32_t Grain, int32_t ColBlock, int32_t RowBlock) {
    Visit(FRangeBuckets, TBucketKey{S, Grain, ColBlock, RowBlock});
  });
}

uint32_t TFormulaDependencyGraph::AddRangeEntry(const TSheetCellKey& Formula, const TSheetRangeKey& Range,
                                                uint64_t Registration) {
  const TRangeEntry Entry{Formula, Range, Registration, GrainOf(Range.Range)};
  uint32_t Id;
  if (!FFreeRangeIds.empty()) {
    Id = FFreeRangeIds.back();
    FFreeRangeIds.pop_back();
    FRanges[Id] = Entry;
  } else {
    Id = static_cast<uint32_t>(FRanges.size());
    FRanges.push_back(Entry);
  }
  ForEachBucket(Entry, [Id](auto& Map, const auto& BucketKey) { Map[BucketKey].push_back(Id); });
  return Id;
}

void TFormulaDependencyGraph::RemoveRangeEntry(uint32_t Id) {
  ForEachBucket(FRanges[Id], [Id](auto& Map, const auto& BucketKey) {
    auto It = Map.find(BucketKey);
    if (It == Map.end()) return;
    std::erase(It->second, Id);
    if (It->second.empty()) Map.erase(It);
  });
  FFreeRangeIds.push_back(Id);
}

size_t TFormulaDependencyGraph::RangeIndexEntryCount() const {
  size_t Count = 0;
  for (const auto& [Key, Ids] : FRangeBuckets) Count += Ids.size();
  for (const auto& [Sheet, Ids] : FLargeRanges) Count += Ids.size();
  return Count;
}

uint64_t TFormulaDependencyGraph::RegistrationOf(const TSheetCellKey& Formula) const {
  const uint32_t* Id = FNodeIds.Find(Formula);
  return Id ? FNodes[*Id].Registration : 0;
}

// ---- queries -------------------------------------------------------------------

void TFormulaDependencyGraph::GetDependents(const TSheetCellKey& Key, std::vector<TSheetCellKey>& List) const {
  const TReaders* CellReaders = FDependents.Find(Key);

  std::vector<std::pair<uint64_t, TSheetCellKey>> RangeReaders;
  auto Scan = [&](const std::vector<uint32_t>& Ids) {
    for (uint32_t Id : Ids) {
      const TRangeEntry& Entry = FRanges[Id];
      if (Entry.Range.Range.Contains(Key.Col, Key.Row)) RangeReaders.emplace_back(Entry.Registration, Entry.Formula);
    }
  };
  // A sheet without range reads (a chain of single references) skips the index.
  for (int32_t Grain = 0; Grain < GrainCount && !FRangeBuckets.empty(); ++Grain) {
    const TGrain& G = Grains[Grain];
    if (auto It = FRangeBuckets.find(TBucketKey{Key.Sheet, Grain, Key.Col >> G.ColShift, Key.Row >> G.RowShift});
        It != FRangeBuckets.end())
      Scan(It->second);
  }
  if (!FLargeRanges.empty())
    if (auto It = FLargeRanges.find(Key.Sheet); It != FLargeRanges.end()) Scan(It->second);

  if (RangeReaders.empty()) {
    // Single-cell readers are kept in registration order already.
    if (CellReaders) List.insert(List.end(), CellReaders->begin(), CellReaders->end());
    return;
  }
  if (CellReaders)
    for (const TSheetCellKey& Reader : *CellReaders) RangeReaders.emplace_back(RegistrationOf(Reader), Reader);
  // One registration number per formula: sorting by it restores registration
  // order and brings a formula's several hits together.
  std::sort(RangeReaders.begin(), RangeReaders.end(), [](const auto& A, const auto& B) { return A.first < B.first; });
  for (size_t I = 0; I < RangeReaders.size(); ++I)
    if (I == 0 || RangeReaders[I].first != RangeReaders[I - 1].first) List.push_back(RangeReaders[I].second);
}

void TFormulaDependencyGraph::ForEachReadIn(
    const TSheetRangeKey& Block,
    const std::function<void(const TSheetCellKey& Formula, const TCellRange& Part)>& Visit) const {
  const TCellRange B = Block.Range.Normalize();
  const int64_t Area = int64_t(B.EndCol - B.StartCol + 1) * int64_t(B.EndRow - B.StartRow + 1);
  auto VisitReaders = [&](const TSheetCellKey& Cell, const TReaders& Readers) {
    for (const TSheetCellKey& Reader : Readers) Visit(Reader, TCellRange{Cell.Col, Cell.Row, Cell.Col, Cell.Row});
  };
  // Single-cell reads: walk the block or the read cells, whichever is fewer.
  if (Area <= int64_t(FDependents.size())) {
    for (int32_t Row = B.StartRow; Row <= B.EndRow; ++Row)
      for (int32_t Col = B.StartCol; Col <= B.EndCol; ++Col)
        if (const TReaders* Readers = FDependents.Find(TSheetCellKey{Block.Sheet, Col, Row}))
          VisitReaders(TSheetCellKey{Block.Sheet, Col, Row}, *Readers);
  } else {
    for (const auto& [Cell, Readers] : FDependents)
      if (Cell.Sheet == Block.Sheet && B.Contains(Cell.Col, Cell.Row)) VisitReaders(Cell, Readers);
  }
  // Range reads: each entry once, however many buckets it shares with the block.
  absl::flat_hash_set<uint32_t> Seen;
  auto VisitRanges = [&](const std::vector<uint32_t>& Ids) {
    for (uint32_t Id : Ids) {
      const TRangeEntry& Entry = FRanges[Id];
      const TCellRange& R = Entry.Range.Range;
      if (Entry.Range.Sheet != Block.Sheet || !R.Intersects(B) || !Seen.insert(Id).second) continue;
      Visit(Entry.Formula, TCellRange{std::max(R.StartCol, B.StartCol), std::max(R.StartRow, B.StartRow),
                                      std::min(R.EndCol, B.EndCol), std::min(R.EndRow, B.EndRow)});
    }
  };
  int64_t BlockBuckets = 0;
  for (const TGrain& G : Grains) BlockBuckets += BucketCount(B, G);
  if (BlockBuckets <= int64_t(FRangeBuckets.size())) {
    for (int32_t Grain = 0; Grain < GrainCount; ++Grain)
      ForEachBucketKey(Block.Sheet, Grain, B, [&](int32_t S, int32_t G, int32_t ColBlock, int32_t RowBlock) {
        if (auto It = FRangeBuckets.find(TBucketKey{S, G, ColBlock, RowBlock}); It != FRangeBuckets.end())
          VisitRanges(It->second);
      });
  } else {
    for (const auto& [Bucket, Ids] : FRangeBuckets)
      if (Bucket.Sheet == Block.Sheet) VisitRanges(Ids);
  }
  if (auto It = FLargeRanges.find(Block.Sheet); It != FLargeRanges.end()) VisitRanges(It->second);
}

void TFormulaDependencyGraph::CollectTransitiveDependents(const TSheetCellKey& Key,
                                                          std::vector<TSheetCellKey>& List) const {
  absl::flat_hash_set<TSheetCellKey> Seen{Key};
  std::vector<TSheetCellKey> Direct;
  // The keys appended to List are the queue: breadth-first order is the
  // order they were found in.
  const size_t Start = List.size();
  TSheetCellKey Current = Key;
  for (size_t Next = Start;; ++Next) {
    Direct.clear();
    GetDependents(Current, Direct);
    for (const TSheetCellKey& Dependent : Direct)
      if (Seen.insert(Dependent).second) List.push_back(Dependent);
    if (Next == List.size()) break;
    Current = List[Next];
  }
}

namespace {

// Keys as dense indexes, each with its dependents inside the set: a slice
// of one shared list, so that no node needs a container of its own.
struct TSubgraph {
  std::vector<TSheetCellKey> Keys;
  std::vector<int64_t> Repeats;       // how often each key was listed
  std::vector<int64_t> DistinctDeps;  // how many keys of the set read each key
  std::vector<size_t> FirstDependent;
  std::vector<int32_t> Dependents;

  int32_t Add(const TSheetCellKey& Key) {
    Keys.push_back(Key);
    Repeats.push_back(0);
    DistinctDeps.push_back(0);
    return static_cast<int32_t>(Keys.size() - 1);
  }
};

// Kahn's algorithm over the subgraph, the queue seeded in the order of
// Entries (indexes into the subgraph, repeats allowed). Every entry counts
// its dependencies, so a repeated entry counts them again.
void KahnOrder(const TSubgraph& G, std::span<const int32_t> Entries, std::vector<TSheetCellKey>* CycleList,
               std::vector<TSheetCellKey>& Order) {
  const size_t Count = G.Keys.size();
  std::vector<int64_t> InDegree(Count);
  for (size_t I = 0; I < Count; ++I) InDegree[I] = G.DistinctDeps[I] * G.Repeats[I];
  std::vector<bool> Output(Count, false);
  // A first-in first-out queue that never shrinks: Head is its front.
  std::vector<int32_t> Queue;
  Queue.reserve(Entries.size());
  for (int32_t Index : Entries)
    if (InDegree[Index] == 0) Queue.push_back(Index);
  for (size_t Head = 0; Head < Queue.size(); ++Head) {
    const int32_t Current = Queue[Head];
    Order.push_back(G.Keys[Current]);
    Output[Current] = true;
    const size_t End = size_t(Current) + 1 < Count ? G.FirstDependent[Current + 1] : G.Dependents.size();
    for (size_t I = G.FirstDependent[Current]; I < End; ++I)
      if (--InDegree[G.Dependents[I]] == 0) Queue.push_back(G.Dependents[I]);
  }
  if (!CycleList) return;
  CycleList->clear();
  for (int32_t Index : Entries)
    if (!Output[Index]) CycleList->push_back(G.Keys[Index]);
}

// Records the edges out of every key of the subgraph, asking the graph once
// per key. IndexOf gives a dependent's index in the subgraph, or -1 to leave
// it out; it may add keys, which get their edges recorded in turn.
template <typename F>
void LinkDependents(const TFormulaDependencyGraph& Graph, TSubgraph& G, F&& IndexOf) {
  std::vector<TSheetCellKey> Direct;
  for (size_t Node = 0; Node < G.Keys.size(); ++Node) {
    Direct.clear();
    Graph.GetDependents(G.Keys[Node], Direct);
    G.FirstDependent.push_back(G.Dependents.size());
    for (const TSheetCellKey& Dependent : Direct) {
      const int32_t Index = IndexOf(Dependent);
      if (Index < 0) continue;
      G.Dependents.push_back(Index);
      ++G.DistinctDeps[Index];
    }
  }
}

}  // namespace

void TFormulaDependencyGraph::TopologicalOrder(const std::vector<TSheetCellKey>& Nodes,
                                               std::vector<TSheetCellKey>* CycleList,
                                               std::vector<TSheetCellKey>& Order) const {
  Order.clear();
  TSubgraph G;
  absl::flat_hash_map<TSheetCellKey, int32_t> IndexOf;
  IndexOf.reserve(Nodes.size());
  std::vector<int32_t> Entries;
  Entries.reserve(Nodes.size());
  for (const TSheetCellKey& Key : Nodes) {
    auto [It, Added] = IndexOf.try_emplace(Key, 0);
    if (Added) It->second = G.Add(Key);
    ++G.Repeats[It->second];
    Entries.push_back(It->second);
  }
  LinkDependents(*this, G, [&](const TSheetCellKey& Dependent) {
    auto It = IndexOf.find(Dependent);
    return It == IndexOf.end() ? -1 : It->second;
  });
  KahnOrder(G, Entries, CycleList, Order);
}

void TFormulaDependencyGraph::OrderFrom(const TSheetCellKey& Key, std::vector<TSheetCellKey>& CycleList,
                                        std::vector<TSheetCellKey>& Order) const {
  Order.clear();
  // One breadth-first walk finds the keys and, with them, every edge among
  // them: all dependents of a key in the closure are in the closure.
  TSubgraph G;
  absl::flat_hash_map<TSheetCellKey, int32_t> IndexOf;
  IndexOf.emplace(Key, G.Add(Key));
  LinkDependents(*this, G, [&](const TSheetCellKey& Dependent) {
    auto [It, Added] = IndexOf.try_emplace(Dependent, 0);
    if (Added) It->second = G.Add(Dependent);
    return It->second;
  });
  std::fill(G.Repeats.begin(), G.Repeats.end(), 1);
  std::vector<int32_t> Entries(G.Keys.size());
  std::iota(Entries.begin(), Entries.end(), 0);
  KahnOrder(G, Entries, &CycleList, Order);
}

// ---- ordering the whole graph --------------------------------------------------

namespace {

// The registered formulas of a workbook by place, so that the formulas inside
// a range are found without visiting its cells.
class TFormulaPlaces {
 public:
  void Add(const TSheetCellKey& Key, uint32_t Id) { FPlaces.push_back({Key.Sheet, Key.Col, Key.Row, Id}); }
  void Sort() { std::sort(FPlaces.begin(), FPlaces.end()); }
  template <typename F>
  void ForEachIn(const TSheetRangeKey& Range, F&& Visit) const {
    const TCellRange& R = Range.Range;
    for (int32_t Col = R.StartCol; Col <= R.EndCol;) {
      auto It = std::lower_bound(FPlaces.begin(), FPlaces.end(), TPlace{Range.Sheet, Col, R.StartRow, 0});
      for (; It != FPlaces.end() && It->Sheet == Range.Sheet && It->Col == Col && It->Row <= R.EndRow; ++It)
        Visit(It->Id);
      // On to the next column that holds a formula at all.
      if (It == FPlaces.end() || It->Sheet != Range.Sheet) return;
      Col = It->Col == Col ? Col + 1 : It->Col;
    }
  }

 private:
  struct TPlace {
    int32_t Sheet, Col, Row;
    uint32_t Id;
    friend bool operator<(const TPlace& A, const TPlace& B) {
      return std::tie(A.Sheet, A.Col, A.Row) < std::tie(B.Sheet, B.Col, B.Row);
    }
  };
  std::vector<TPlace> FPlaces;
};

// Ranges up to this many cells are looked up cell by cell.
constexpr int64_t SmallRangeCells = 64;

int64_t CellCount(const TCellRange& R) {
  return int64_t(R.EndCol - R.StartCol + 1) * int64_t(R.EndRow - R.StartRow + 1);
}

}  // namespace

void TFormulaDependencyGraph::OrderAll(std::vector<TSheetCellKey>& CycleList, std::vector<TSheetCellKey>& Order) const {
  Order.clear();
  CycleList.clear();
  // Only a large range read needs the formulas by place.
  TFormulaPlaces Places;
  bool LargeRanges = false;
  for (const TFormulaNode& Node : FNodes)
    for (const TSheetRangeKey& Range : Node.Deps.Ranges)
      LargeRanges = LargeRanges || CellCount(Range.Range) > SmallRangeCells;
  if (LargeRanges) {
    for (uint32_t Id = 0; Id < FNodes.size(); ++Id)
      if (FNodes[Id].Live) Places.Add(FNodes[Id].Key, Id);
    Places.Sort();
  }
  // Edges from each read formula to its reader, gathered from the readers'
  // own lists, then grouped by the read formula.
  std::vector<std::pair<uint32_t, uint32_t>> Edges;
  auto AddEdgeFrom = [&](const TSheetCellKey& Cell, uint32_t Reader) {
    if (const uint32_t* Read = FNodeIds.Find(Cell)) Edges.emplace_back(*Read, Reader);
  };
  for (uint32_t Reader = 0; Reader < FNodes.size(); ++Reader) {
    const TFormulaNode& Node = FNodes[Reader];
    if (!Node.Live) continue;
    for (const TSheetCellKey& Cell : Node.Deps.Cells) AddEdgeFrom(Cell, Reader);
    for (const TSheetRangeKey& Range : Node.Deps.Ranges) {
      const TCellRange& R = Range.Range;
      if (CellCount(R) > SmallRangeCells) {
        Places.ForEachIn(Range, [&](uint32_t Read) { Edges.emplace_back(Read, Reader); });
        continue;
      }
      for (int32_t Row = R.StartRow; Row <= R.EndRow; ++Row)
        for (int32_t Col = R.StartCol; Col <= R.EndCol; ++Col) AddEdgeFrom({Range.Sheet, Col, Row}, Reader);
    }
  }
  const size_t Count = FNodes.size();
  std::vector<uint32_t> FirstEdge(Count + 1, 0), InDegree(Count, 0);
  for (const auto& [Read, Reader] : Edges) {
    ++FirstEdge[Read + 1];
    ++InDegree[Reader];
  }
  for (size_t I = 0; I < Count; ++I) FirstEdge[I + 1] += FirstEdge[I];
  std::vector<uint32_t> Readers(Edges.size());
  std::vector<uint32_t> Fill(FirstEdge.begin(), FirstEdge.end() - 1);
  for (const auto& [Read, Reader] : Edges) Readers[Fill[Read]++] = Reader;

  std::vector<uint32_t> Queue;
  Queue.reserve(FNodeIds.size());
  for (uint32_t Id = 0; Id < Count; ++Id)
    if (FNodes[Id].Live && InDegree[Id] == 0) Queue.push_back(Id);
  Order.reserve(FNodeIds.size());
  for (size_t Head = 0; Head < Queue.size(); ++Head) {
    const uint32_t Current = Queue[Head];
    Order.push_back(FNodes[Current].Key);
    for (uint32_t I = FirstEdge[Current]; I < FirstEdge[Current + 1]; ++I)
      if (--InDegree[Readers[I]] == 0) Queue.push_back(Readers[I]);
  }
  if (Order.size() == FNodeIds.size()) return;
  for (uint32_t Id = 0; Id < Count; ++Id)
    if (FNodes[Id].Live && InDegree[Id] > 0) CycleList.push_back(FNodes[Id].Key);
}

}  // namespace Tabrino
