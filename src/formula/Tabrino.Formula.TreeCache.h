// Parsed formula trees by formula text. Trees are immutable, so one parse
// serves every evaluation of the same text and the dependency walk too.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Parser.h"

namespace Tabrino {

class TFormulaTreeCache {
 public:
  explicit TFormulaTreeCache(size_t Capacity = 1 << 16) : FCapacity(Capacity) {}
  // The tree of Text, parsing it on first sight. Never nullptr.
  std::shared_ptr<const TAstNode> Get(std::string_view Text);
  void Clear() { FTrees.clear(); }
  size_t Size() const { return FTrees.size(); }

 private:
  // Lets lookups take a string_view without building a string.
  struct TTextHash {
    using is_transparent = void;
    size_t operator()(std::string_view Text) const { return std::hash<std::string_view>()(Text); }
  };
  struct TTextEq {
    using is_transparent = void;
    bool operator()(std::string_view A, std::string_view B) const { return A == B; }
  };

  size_t FCapacity;
  absl::flat_hash_map<std::string, std::shared_ptr<const TAstNode>, TTextHash, TTextEq> FTrees;
};

}  // namespace Tabrino
