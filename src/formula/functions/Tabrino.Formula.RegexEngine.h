// Regular expressions for the formula functions, over PCRE2 in UTF-8 mode
// with Unicode character classes. Patterns compile once into a small cache
// per thread. Every match runs under match, depth and heap limits, so that a
// pattern with catastrophic backtracking fails quickly instead of hanging the
// calculation.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

// PCRE2's handles, kept out of the header.
struct pcre2_real_code_8;
struct pcre2_real_match_data_8;

namespace Tabrino {

// One match inside ForEachMatch: byte offsets into the subject.
class TRegexMatch {
 public:
  TRegexMatch(std::string_view Subject, pcre2_real_match_data_8* Data, size_t GroupCount);
  size_t Start() const { return FOffsets[0]; }
  size_t End() const { return FOffsets[1]; }
  // Group 0 is the whole match; a group that took no part is empty.
  std::string_view Group(size_t Index) const;
  size_t GroupCount() const { return FGroupCount; }
  std::string_view Subject() const { return FSubject; }
  pcre2_real_match_data_8* Data() const { return FData; }

 private:
  std::string_view FSubject;
  pcre2_real_match_data_8* FData;
  const size_t* FOffsets;
  size_t FGroupCount;
};

class TRegex {
 public:
  // The compiled pattern, from the cache; nullptr when PCRE2 rejects it.
  // IgnoreCase folds case by Unicode rules.
  static std::shared_ptr<const TRegex> Compile(std::string_view Pattern, bool IgnoreCase);

  TRegex(const TRegex&) = delete;
  TRegex& operator=(const TRegex&) = delete;
  ~TRegex();

  // Number of capture groups in the pattern.
  size_t CaptureCount() const;
  // Calls Visit on each successive match, left to right and not overlapping;
  // after an empty match the next one may not be empty at the same place.
  // Visit returns false to stop. False when matching failed (a limit was hit).
  bool ForEachMatch(std::string_view Subject, const std::function<bool(const TRegexMatch&)>& Visit) const;
  // Appends the replacement for Match (valid only inside Visit), where "$1",
  // "${1}" and "${name}" stand for groups (an unset one is empty) and "$$"
  // for "$". False for a replacement PCRE2 rejects, such as an unknown group.
  bool AppendReplacement(const TRegexMatch& Match, std::string_view Replacement, std::string& Out) const;

 private:
  explicit TRegex(pcre2_real_code_8* Code) : FCode(Code) {}
  pcre2_real_code_8* FCode;
};

}  // namespace Tabrino
