// Information functions: what kind of value an argument holds. They look at
// the argument's First, so a range answers for its top left cell.

#include <cmath>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

bool IsBlankValue(const TCellValue& V) {
  return V.Kind == cvkEmpty;
}
bool IsErrorValue(const TCellValue& V) {
  return V.Kind == cvkError;
}
bool IsErrValue(const TCellValue& V) {
  return IsErrorValue(V) && V.ErrorCode != ceNA;
}
bool IsNaValue(const TCellValue& V) {
  return IsErrorValue(V) && V.ErrorCode == ceNA;
}
bool IsNumberValue(const TCellValue& V) {
  return V.Kind == cvkNumber;
}
bool IsTextValue(const TCellValue& V) {
  return V.Kind == cvkText;
}
bool IsLogicalValue(const TCellValue& V) {
  return V.Kind == cvkBoolean;
}
bool IsNonTextValue(const TCellValue& V) {
  return V.Kind != cvkText;
}

template <bool (*Test)(const TCellValue&)>
TCellValue Is(const TFunctionCall& Call) {
  return Bool(Test(Call[0].First()));
}

// The parity of the truncated number; an argument that is no number is
// #VALUE!. Infinities and NaN are neither even nor odd.
template <int Remainder>
TCellValue HasParity(const TFunctionCall& Call) {
  double Number;
  if (!ArgInteger(Call[0], Number)) return Err(ceValue);
  return Bool(std::fabs(std::fmod(Number, 2.0)) == Remainder);
}

// Numbers stay, booleans become 1 or 0, errors pass through, anything else
// is 0.
TCellValue N(const TFunctionCall& Call) {
  TCellValue V = Call[0].First();
  switch (V.Kind) {
    case cvkNumber:
    case cvkError: return V;
    case cvkBoolean: return Num(V.BooleanValue ? 1 : 0);
    default: return Num(0);
  }
}

TCellValue Na(const TFunctionCall&) {
  return Err(ceNA);
}

// 1 number (an empty cell too), 2 text, 4 logical, 16 error, 64 an array of
// more than one value, 128 a lambda.
TCellValue Type(const TFunctionCall& Call) {
  const TFormulaArg& Arg = Call[0];
  if (Arg.IsLambda) return Num(128);
  if (Arg.IsRange && Arg.Cells.size() > 1) return Num(64);
  switch (Arg.First().Kind) {
    case cvkText: return Num(2);
    case cvkBoolean: return Num(4);
    case cvkError: return Num(16);
    default: return Num(1);
  }
}

}  // namespace

std::span<const TFunctionDef> InformationFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ISBLANK", 1, 1, fnNone, Is<IsBlankValue>},
      {"ISERROR", 1, 1, fnNone, Is<IsErrorValue>},
      {"ISERR", 1, 1, fnNone, Is<IsErrValue>},
      {"ISNA", 1, 1, fnNone, Is<IsNaValue>},
      {"ISNUMBER", 1, 1, fnNone, Is<IsNumberValue>},
      {"ISTEXT", 1, 1, fnNone, Is<IsTextValue>},
      {"ISLOGICAL", 1, 1, fnNone, Is<IsLogicalValue>},
      {"ISNONTEXT", 1, 1, fnNone, Is<IsNonTextValue>},
      {"ISEVEN", 1, 1, fnNone, HasParity<0>},
      {"ISODD", 1, 1, fnNone, HasParity<1>},
      {"N", 1, 1, fnNone, N},
      {"NA", 0, 0, fnNone, Na},
      {"TYPE", 1, 1, fnNone, Type},
  };
  return Table;
}

}  // namespace Tabrino
