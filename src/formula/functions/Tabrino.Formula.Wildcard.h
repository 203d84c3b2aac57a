// Wildcard patterns as the lookup functions read them: "*" stands for any run
// of characters, "?" for one, and "~" takes the next character literally.
// Case is ignored, and characters are UTF-16 units like everywhere in the
// text functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tabrino {

class TWildcardPattern {
 public:
  explicit TWildcardPattern(std::string_view Pattern);
  bool Matches(std::string_view Text) const;
  // False when the pattern is a plain text: then it matches only itself.
  bool HasWildcards() const { return FHasWildcards; }

 private:
  enum TKind : uint8_t { wkLiteral, wkAnyOne, wkAnyRun };
  struct TElement {
    TKind Kind;
    char16_t Unit;
  };
  std::vector<TElement> FElements;
  bool FHasWildcards = false;
};

// The text with every UTF-16 unit lower-cased (surrogates stay as they are).
std::u16string FoldCaseUtf16(std::string_view Text);

}  // namespace Tabrino
