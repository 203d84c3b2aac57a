#include "Tabrino.Formula.Values.h"

#include <algorithm>
#include <cmath>

#include "Tabrino.NumberParse.h"

namespace Tabrino {

bool AsNumber(const TCellValue& Value, double& Number) {
  switch (Value.Kind) {
    case cvkEmpty: Number = 0; return true;
    case cvkNumber: Number = Value.Number; return true;
    case cvkBoolean: Number = Value.BooleanValue ? 1 : 0; return true;
    case cvkText: return TryTextToFloat(Value.Text, Number);
    default: Number = 0; return false;
  }
}

bool ValueIsTruthy(const TCellValue& Value) {
  switch (Value.Kind) {
    case cvkText: return !Value.Text.empty();
    case cvkNumber: return Value.Number != 0 || std::isnan(Value.Number);
    case cvkBoolean: return Value.BooleanValue;
    default: return false;
  }
}

static char FoldAscii(char C) { return C >= 'a' && C <= 'z' ? static_cast<char>(C - 32) : C; }

int CompareTextNoCase(std::string_view A, std::string_view B) {
  size_t N = std::min(A.size(), B.size());
  for (size_t I = 0; I < N; ++I) {
    unsigned char X = FoldAscii(A[I]), Y = FoldAscii(B[I]);
    if (X != Y) return X < Y ? -1 : 1;
  }
  return A.size() == B.size() ? 0 : (A.size() < B.size() ? -1 : 1);
}

bool EqualsNoCase(std::string_view A, std::string_view B) {
  return A.size() == B.size() && CompareTextNoCase(A, B) == 0;
}

TCellValue CompareValues(const TCellValue& A, const TCellValue& B, std::string_view Op) {
  int Order;
  double X, Y;
  if (AsNumber(A, X) && AsNumber(B, Y)) {
    // Unordered (NaN) counts as less.
    Order = X > Y ? 1 : (X == Y ? 0 : -1);
  } else {
    Order = CompareTextNoCase(A.ToDisplayString(), B.ToDisplayString());
  }
  bool Result;
  if (Op == "=") Result = Order == 0;
  else if (Op == "<>") Result = Order != 0;
  else if (Op == "<") Result = Order < 0;
  else if (Op == ">") Result = Order > 0;
  else if (Op == "<=") Result = Order <= 0;
  else if (Op == ">=") Result = Order >= 0;
  else return TCellValue::FromError(ceValue);
  return TCellValue::FromBoolean(Result);
}

}  // namespace Tabrino
