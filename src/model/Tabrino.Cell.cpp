#include "Tabrino.Cell.h"

namespace Tabrino {

bool TCell::IsEmpty() const {
  return Value.IsEmpty() && !HasFormatOverride && StyleIndex == 0 && !HasCachedValue && Sparkline.Kind == spkNone;
}

void TCell::SetCachedResult(const TCellValue& V) {
  if (V.Kind == cvkFormula) {
    CachedValue = TCellValue::FromText(V.Formula);
  } else {
    CachedValue = V;
  }
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
