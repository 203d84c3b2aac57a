// A cell as callers see it: a value record plus style, format override, rich
// text runs, the cached formula result and an optional sparkline. Copied
// freely; the worksheet stores cells in a compact form of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tabrino.CellFormat.h"
#include "Tabrino.Types.h"

namespace Tabrino {

struct TRichTextRun {
  std::string Text;
  TCellFontInfo Font;
  bool operator==(const TRichTextRun&) const = default;
};
using TRichTextRuns = std::vector<TRichTextRun>;

enum TSparklineKind : uint8_t { spkNone, spkBar, spkColumn, spkLine, spkWinLoss };

struct TSparklineData {
  TSparklineKind Kind = spkNone;
  double Value = 0;
  double MaxVal = 0;
  uint32_t Color = 0;
  std::vector<double> Values;
  bool operator==(const TSparklineData&) const = default;
};

// What a cache holds for a result: a formula is stored as its text.
TCellValue CacheableResult(const TCellValue& V);

struct TCell {
  TCellValue Value;
  int32_t StyleIndex = 0;
  TCellFormat FormatOverride;
  bool HasFormatOverride = false;
  TRichTextRuns RichText;
  TCellValue CachedValue;
  bool HasCachedValue = false;
  TSparklineData Sparkline;

  static TCell CreateEmpty() { return {}; }
  static TCell WithValue(TCellValue Value) {
    TCell C;
    C.Value = std::move(Value);
    return C;
  }
  // Rich text is deliberately not looked at: a cell with only runs is empty.
  bool IsEmpty() const;
  // The cache never holds a formula: one is stored as its text.
  void SetCachedResult(const TCellValue& Value);
  // Also drops the sparkline, which is a formula's result too.
  void ClearCachedResult();
  // Concatenated run texts.
  std::string RichTextPlain() const;
};

}  // namespace Tabrino
