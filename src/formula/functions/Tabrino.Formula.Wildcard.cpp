#include "Tabrino.Formula.Wildcard.h"

#include "Tabrino.Formula.Characters.h"
#include "Tabrino.Utf16.h"

namespace Tabrino {

std::u16string FoldCaseUtf16(std::string_view Text) {
  std::u16string Units = Utf8ToUtf16(Text);
  for (char16_t& U : Units) {
    bool Surrogate = U >= 0xD800 && U <= 0xDFFF;
    if (!Surrogate) U = static_cast<char16_t>(LowerChar(U));
  }
  return Units;
}

TWildcardPattern::TWildcardPattern(std::string_view Pattern) {
  std::u16string Units = FoldCaseUtf16(Pattern);
  for (size_t I = 0; I < Units.size(); ++I) {
    char16_t U = Units[I];
    if (U == u'~' && I + 1 < Units.size()) {
      FElements.push_back({wkLiteral, Units[++I]});
    } else if (U == u'*') {
      FHasWildcards = true;
      // Runs of stars match what one star matches.
      if (FElements.empty() || FElements.back().Kind != wkAnyRun) FElements.push_back({wkAnyRun, 0});
    } else if (U == u'?') {
      FHasWildcards = true;
      FElements.push_back({wkAnyOne, 0});
    } else {
      FElements.push_back({wkLiteral, U});
    }
  }
}

// Greedy matching that falls back to the last star: linear for the usual
// patterns and never worse than pattern length times text length.
bool TWildcardPattern::Matches(std::string_view Text) const {
  std::u16string Units = FoldCaseUtf16(Text);
  size_t P = 0, T = 0;
  size_t StarAt = std::u16string::npos, StarText = 0;
  while (T < Units.size()) {
    if (P < FElements.size() && FElements[P].Kind == wkAnyRun) {
      StarAt = P++;
      StarText = T;
    } else if (P < FElements.size() && (FElements[P].Kind == wkAnyOne || FElements[P].Unit == Units[T])) {
      ++P;
      ++T;
    } else if (StarAt != std::u16string::npos) {
      P = StarAt + 1;
      T = ++StarText;
    } else {
      return false;
    }
  }
  while (P < FElements.size() && FElements[P].Kind == wkAnyRun) ++P;
  return P == FElements.size();
}

}  // namespace Tabrino
