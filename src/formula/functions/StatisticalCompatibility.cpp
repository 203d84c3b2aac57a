// The statistical functions under their older names. Each runs exactly as
// the function that replaced it: the same rules, arguments and errors.

#include <algorithm>
#include <cstddef>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// A function name as a template argument.
template <size_t N>
struct TModernName {
  char Text[N];
  constexpr TModernName(const char (&Name)[N]) { std::copy_n(Name, N, Text); }  // NOLINT: made from a literal
};

template <TModernName Modern>
TCellValue Legacy(const TFunctionCall& Call) {
  return RunFunction(Modern.Text, Call.Args, Call.Context).First();
}

}  // namespace

std::span<const TFunctionDef> StatisticalCompatibilityFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"STDEV", 1, -1, fnNone, Legacy<"STDEV.S">},
      {"STDEVP", 1, -1, fnNone, Legacy<"STDEV.P">},
      {"VAR", 1, -1, fnNone, Legacy<"VAR.S">},
      {"VARP", 1, -1, fnNone, Legacy<"VAR.P">},
      {"MODE", 1, -1, fnNone, Legacy<"MODE.SNGL">},
      {"PERCENTILE", 2, 2, fnNone, Legacy<"PERCENTILE.INC">},
      {"PERCENTRANK", 2, 3, fnNone, Legacy<"PERCENTRANK.INC">},
      {"QUARTILE", 2, 2, fnNone, Legacy<"QUARTILE.INC">},
      {"COVAR", 2, 2, fnNone, Legacy<"COVARIANCE.P">},
      {"FORECAST", 3, 3, fnNone, Legacy<"FORECAST.LINEAR">},
  };
  return Table;
}

}  // namespace Tabrino
