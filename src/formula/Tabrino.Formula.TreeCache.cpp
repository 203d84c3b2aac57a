#include "Tabrino.Formula.TreeCache.h"

namespace Tabrino {

std::shared_ptr<const TAstNode> TFormulaTreeCache::Get(std::string_view Text) {
  if (auto It = FTrees.find(Text); It != FTrees.end()) return It->second;
  std::shared_ptr<const TAstNode> Tree = TFormulaParser::Parse(Text);
  // A workbook of mostly distinct texts would grow the cache without bound;
  // starting over keeps memory flat and costs only re-parses.
  if (FTrees.size() >= FCapacity) FTrees.clear();
  FTrees.emplace(std::string(Text), Tree);
  return Tree;
}

}  // namespace Tabrino
