// Regular-expression and other text functions that spreadsheet users know from
// outside the classic set: REGEXEXTRACT, REGEXREPLACE, REGEXMATCH (also named
// REGEXTEST), REGEX, ISEMAIL, ISURL, JOIN and ARRAY_CONSTRAIN. Their table
// rows (RegexFunctions in Tabrino.Formula.Functions.h) call these routines.
//
// Shared rules: text arguments are the display text of their first value;
// the first argument whose first value is an error is the result; a pattern
// the regular-expression service rejects, or one that exhausts its matching
// limits, gives #VALUE!. Numbers convert as AsNumber does (empty is 0, text
// through the float parser, booleans 0 or 1).
#pragma once

#include <span>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

// REGEXEXTRACT(text, pattern, [mode], [ignoreCase]). Mode 0: the first match,
// or its group 1 when the pattern has groups, as text; #N/A without a match.
// Mode 1: that for every match, in a column. Mode 2: the groups of the first
// match in a row (the whole match when there are none).
TFormulaArg EvalRegexExtract(std::span<const TFormulaArg> Args);
// REGEXREPLACE(text, pattern, replacement, [occurrence], [ignoreCase]): every
// match (occurrence 0), the n-th (n > 0) or the n-th from the end (n < 0) is
// replaced; "$1" in the replacement stands for a group.
TCellValue EvalRegexReplace(std::span<const TFormulaArg> Args);
// REGEXMATCH / REGEXTEST(text, pattern, [ignoreCase]): whether anything matches.
TCellValue EvalRegexMatch(std::span<const TFormulaArg> Args);
// REGEX(text, pattern, [replacement], [flags | occurrence]). Without a
// replacement: the occurrence-th match (1 by default), #N/A when there is
// none. With one: the first match replaced, every match with the flag "g",
// the occurrence-th with a number; no match leaves the text as it is.
// Occurrence 0 gives the text unchanged.
TCellValue EvalRegex(std::span<const TFormulaArg> Args);
// ISEMAIL(text): a hand test, deliberately no pattern: no blank, exactly one
// "@" with text on both sides, and a "." after it. The text is not trimmed.
TCellValue EvalIsEmail(std::span<const TFormulaArg> Args);
// ISURL(text): trimmed, non-empty and without blanks; true when it starts
// with "http://" or "https://" (any case), else when it holds a ".".
TCellValue EvalIsUrl(std::span<const TFormulaArg> Args);
// JOIN(delimiter, value, ...): the display texts of every further value (every
// cell of a range) joined by the delimiter, empty texts skipped with their
// delimiter. Any error met is the result.
TCellValue EvalJoin(std::span<const TFormulaArg> Args);
// ARRAY_CONSTRAIN(range, rows, cols): the top-left block of at most rows by
// cols cells. Counts are truncated; below 1 gives #VALUE!.
TFormulaArg EvalArrayConstrain(std::span<const TFormulaArg> Args);

}  // namespace Tabrino
