#include "Tabrino.Cell.h"

namespace Tabrino {

bool TCell::IsEmpty() const {
  return Value.IsEmpty() && !HasFormatOverride && StyleIndex == 0 && !HasCachedValue && Sparkline.Kind == spkNone;
}

TCellValue CacheableResult(const TCellValue& V) {
  return V.Kind == cvkFormula ? TCellValue::FromText(V.Formula) : V;
}

void TCell::SetCachedResult(const TCellValue& V) {
  CachedValue = CacheableResult(V);
  HasCachedValue = true;
}

void TCell::ClearCachedResult() {
  CachedValue = TCellValue::Empty();
  HasCachedValue = false;
  Sparkline.Kind = spkNone;
  Sparkline.Values.clear();
}

std::string TCell::RichTextPlain() const {
  std::string Text;
  for (const TRichTextRun& Run : RichText) Text += Run.Text;
  return Text;
}

}  // namespace Tabrino
