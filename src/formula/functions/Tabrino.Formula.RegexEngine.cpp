#include "Tabrino.Formula.RegexEngine.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <absl/container/flat_hash_map.h>
#include <pcre2.h>

namespace Tabrino {

namespace {

// A few million steps take tens of milliseconds; a pattern that needs more
// on one text is backtracking without end, and a formula gets #VALUE!.
constexpr uint32_t MatchLimit = 1'000'000;
constexpr uint32_t DepthLimit = 200'000;
constexpr PCRE2_SIZE HeapLimitKib = 64 * 1024;
// Formulas use a handful of patterns; the cache starts over once it holds
// this many, which bounds its memory whatever a sheet does.
constexpr size_t CacheCapacity = 64;

struct TMatchContextDeleter {
  void operator()(pcre2_match_context* Context) const { pcre2_match_context_free(Context); }
};
struct TMatchDataDeleter {
  void operator()(pcre2_match_data* Data) const { pcre2_match_data_free(Data); }
};

// The limits every match runs under, one context per thread.
pcre2_match_context* LimitedMatchContext() {
  thread_local std::unique_ptr<pcre2_match_context, TMatchContextDeleter> Context = [] {
    std::unique_ptr<pcre2_match_context, TMatchContextDeleter> Made(pcre2_match_context_create(nullptr));
    if (Made) {
      pcre2_set_match_limit(Made.get(), MatchLimit);
      pcre2_set_depth_limit(Made.get(), DepthLimit);
      pcre2_set_heap_limit(Made.get(), HeapLimitKib);
    }
    return Made;
  }();
  return Context.get();
}

PCRE2_SPTR Units(std::string_view Text) { return reinterpret_cast<PCRE2_SPTR>(Text.data()); }

}  // namespace

TRegexMatch::TRegexMatch(std::string_view Subject, pcre2_match_data* Data, size_t GroupCount)
    : FSubject(Subject), FData(Data), FOffsets(pcre2_get_ovector_pointer(Data)), FGroupCount(GroupCount) {}

std::string_view TRegexMatch::Group(size_t Index) const {
  if (Index > FGroupCount) return {};
  size_t From = FOffsets[2 * Index], To = FOffsets[2 * Index + 1];
  if (From == PCRE2_UNSET || To < From) return {};
  return FSubject.substr(From, To - From);
}

std::shared_ptr<const TRegex> TRegex::Compile(std::string_view Pattern, bool IgnoreCase) {
  thread_local absl::flat_hash_map<std::string, std::shared_ptr<const TRegex>> Cache;
  std::string Key = (IgnoreCase ? "i:" : "c:") + std::string(Pattern);
  if (auto It = Cache.find(Key); It != Cache.end()) return It->second;
  if (Cache.size() >= CacheCapacity) Cache.clear();

  // Invalid UTF-8 in a subject is matched around rather than refused.
  uint32_t Options = PCRE2_UTF | PCRE2_UCP | PCRE2_MATCH_INVALID_UTF | (IgnoreCase ? PCRE2_CASELESS : 0);
  int ErrorCode;
  PCRE2_SIZE ErrorOffset;
  pcre2_code* Code = pcre2_compile(Units(Pattern), Pattern.size(), Options, &ErrorCode, &ErrorOffset, nullptr);
  std::shared_ptr<const TRegex> Compiled(Code ? new TRegex(Code) : nullptr);
  Cache.emplace(std::move(Key), Compiled);
  return Compiled;
}

TRegex::~TRegex() { pcre2_code_free(FCode); }

size_t TRegex::CaptureCount() const {
  uint32_t Count = 0;
  pcre2_pattern_info(FCode, PCRE2_INFO_CAPTURECOUNT, &Count);
  return Count;
}

bool TRegex::ForEachMatch(std::string_view Subject, const std::function<bool(const TRegexMatch&)>& Visit) const {
  std::unique_ptr<pcre2_match_data, TMatchDataDeleter> Data(pcre2_match_data_create_from_pattern(FCode, nullptr));
  pcre2_match_context* Context = LimitedMatchContext();
  if (!Data || !Context) return false;
  const size_t Groups = CaptureCount();
  size_t Offset = 0;
  uint32_t Options = 0;
  while (Offset <= Subject.size()) {
    int Result = pcre2_match(FCode, Units(Subject), Subject.size(), Offset, Options, Data.get(), Context);
    if (Result == PCRE2_ERROR_NOMATCH) return true;
    if (Result < 0) return false;
    TRegexMatch Match(Subject, Data.get(), Groups);
    if (!Visit(Match)) return true;
    // After an empty match, look again from the same place for one that is
    // not empty there, so that the walk always makes progress.
    Options = Match.End() == Match.Start() ? PCRE2_NOTEMPTY_ATSTART : 0;
    Offset = Match.End();
  }
  return true;
}

bool TRegex::AppendReplacement(const TRegexMatch& Match, std::string_view Replacement, std::string& Out) const {
  const uint32_t Options =
      PCRE2_SUBSTITUTE_MATCHED | PCRE2_SUBSTITUTE_REPLACEMENT_ONLY | PCRE2_SUBSTITUTE_UNSET_EMPTY |
      PCRE2_SUBSTITUTE_OVERFLOW_LENGTH;
  std::string_view Subject = Match.Subject();
  std::string Buffer(Replacement.size() + 64, '\0');
  for (int Attempt = 0; Attempt < 2; ++Attempt) {
    PCRE2_SIZE Length = Buffer.size();
    int Result = pcre2_substitute(FCode, Units(Subject), Subject.size(), 0, Options, Match.Data(), nullptr,
                                  Units(Replacement), Replacement.size(),
                                  reinterpret_cast<PCRE2_UCHAR*>(Buffer.data()), &Length);
    if (Result >= 0) {
      Out.append(Buffer.data(), Length);
      return true;
    }
    // Too small: Length now holds the size needed, with room for a terminator.
    if (Result != PCRE2_ERROR_NOMEMORY) return false;
    Buffer.resize(Length);
  }
  return false;
}

}  // namespace Tabrino
