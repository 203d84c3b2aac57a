// Argument reading for built-ins with many numeric and date arguments, as the
// security and calendar functions have. Each read converts one argument and
// remembers a failure instead of returning it, so that a body reads all its
// arguments, states its domain, and returns one error. A value that does not
// convert (#VALUE!) outranks one outside the function's domain (#NUM!).
#pragma once

#include <cstddef>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

class TArgReader {
 public:
  explicit TArgReader(const TFunctionCall& Call) : FCall(Call) {}

  const TFunctionCall& Call() const { return FCall; }
  // False for an argument left out or left empty in the call (F(a,,c)): the
  // optional reads then give their default.
  bool Present(size_t Index) const;

  // A number through AsNumber; an infinity or NaN is #NUM!.
  double Number(size_t Index);
  double Integer(size_t Index) { return Truncated(Number(Index)); }
  double OptNumber(size_t Index, double Default) { return Present(Index) ? Number(Index) : Default; }
  double OptInteger(size_t Index, double Default) { return Truncated(OptNumber(Index, Default)); }
  bool OptTruthy(size_t Index, bool Default) const;

  // A date: a number, or a text the date parser reads (a year it leaves out
  // is the clock's), truncated to the whole day. #NUM! outside the valid dates.
  double Date(size_t Index) { return DateOf(FCall[Index].First()); }
  double DateOf(const TCellValue& Value);

  // A domain rule of the function: Code (#NUM! unless told) when it fails.
  void Require(bool Condition, TCellErrorCode Code = ceNum) {
    if (!Condition) Fail(Code);
  }
  void Fail(TCellErrorCode Code);
  bool Failed() const { return FError != ceNone; }
  TCellErrorCode Error() const { return FError; }

 private:
  static double Truncated(double V);
  int CurrentYear() const;

  const TFunctionCall& FCall;
  TCellErrorCode FError = ceNone;
};

}  // namespace Tabrino
