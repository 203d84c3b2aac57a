#include "Tabrino.Formula.ArgReader.h"

#include <cmath>

#include "Tabrino.DateParse.h"
#include "Tabrino.DateTimeFormat.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.Values.h"

namespace Tabrino {

double TArgReader::Truncated(double V) {
  return std::trunc(V);
}

bool TArgReader::Present(size_t Index) const {
  return !ArgOmitted(FCall, Index);
}

void TArgReader::Fail(TCellErrorCode Code) {
  if (FError == ceNone || (Code == ceValue && FError != ceValue)) FError = Code;
}

double TArgReader::Number(size_t Index) {
  double V;
  if (!AsNumber(FCall[Index].First(), V)) {
    Fail(ceValue);
    return 0;
  }
  if (!std::isfinite(V)) {
    Fail(ceNum);
    return 0;
  }
  return V;
}

bool TArgReader::OptTruthy(size_t Index, bool Default) const {
  return Present(Index) ? ValueIsTruthy(FCall[Index].First()) : Default;
}

int TArgReader::CurrentYear() const {
  int Year, Month, Day;
  return DecodeDate(FCall.Context.Now(), Year, Month, Day) ? Year : 2000;
}

double TArgReader::DateOf(const TCellValue& Value) {
  double Serial;
  bool Converted =
      AsNumber(Value, Serial) || (Value.Kind == cvkText && TryParseDateText(Value.Text, CurrentYear(), Serial));
  if (!Converted) {
    Fail(ceValue);
    return 0;
  }
  int Year, Month, Day;
  if (!DecodeDate(Serial, Year, Month, Day)) {
    Fail(ceNum);
    return 0;
  }
  return std::trunc(Serial);
}

}  // namespace Tabrino
