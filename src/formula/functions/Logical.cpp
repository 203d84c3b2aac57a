// Logical functions on evaluated arguments. The evaluator runs IF, IFERROR,
// IFNA and CHOOSE itself so that only the chosen branch is evaluated; the
// versions here serve calls that reach the dispatcher with values in hand.

#include <cstdint>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

TCellValue ImplicitIntersect(const TFormulaArg& Arg, int32_t EvalCol, int32_t EvalRow) {
  if (!Arg.IsRange || !Arg.HasOrigin || (Arg.RowCount == 1 && Arg.ColCount == 1)) return Arg.First();
  // A single row or column is crossed along its length only.
  int64_t Row = Arg.RowCount == 1 ? 0 : int64_t{EvalRow} - Arg.OriginRow;
  int64_t Col = Arg.ColCount == 1 ? 0 : int64_t{EvalCol} - Arg.OriginCol;
  if (Row < 0 || Row >= Arg.RowCount || Col < 0 || Col >= Arg.ColCount) return Err(ceValue);
  return Arg.CellAt(static_cast<int32_t>(Row), static_cast<int32_t>(Col));
}

namespace {

TCellValue Single(const TFunctionCall& Call) {
  return ImplicitIntersect(Call[0], Call.Context.EvalCol, Call.Context.EvalRow);
}

TCellValue If(const TFunctionCall& Call) {
  TCellValue Test = Call[0].First();
  if (Test.Kind == cvkError) return Test;
  if (ValueIsTruthy(Test)) return Call[1].First();
  return Call.Count() > 2 ? Call[2].First() : Bool(false);
}

TCellValue IfError(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  return Value.Kind == cvkError ? Call[1].First() : Value;
}

TCellValue IfNa(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  return Value.Kind == cvkError && Value.ErrorCode == ceNA ? Call[1].First() : Value;
}

// AND, OR and XOR over every value: booleans and numbers count. Text and
// empty cells inside ranges or behind references are passed over; text typed
// directly must read TRUE or FALSE. The first error is the result, and no
// logical value at all is #VALUE!.
template <typename TDecide>
TCellValue LogicalOver(const TFunctionCall& Call, TDecide Decide) {
  int64_t Trues = 0, Total = 0;
  for (const TFormulaArg& Arg : Call.Args) {
    const bool Referenced = Arg.IsRange || Arg.HasOrigin;
    for (const TCellValue& V : ArgValues(Arg)) {
      switch (V.Kind) {
        case cvkError: return V;
        case cvkBoolean:
        case cvkNumber:
          ++Total;
          Trues += ValueIsTruthy(V) ? 1 : 0;
          break;
        case cvkText:
          if (Referenced) break;
          if (!EqualsNoCase(V.Text, "TRUE") && !EqualsNoCase(V.Text, "FALSE")) return Err(ceValue);
          ++Total;
          Trues += EqualsNoCase(V.Text, "TRUE") ? 1 : 0;
          break;
        default: break;
      }
    }
  }
  if (Total == 0) return Err(ceValue);
  return Bool(Decide(Trues, Total));
}

TCellValue And(const TFunctionCall& Call) {
  return LogicalOver(Call, [](int64_t Trues, int64_t Total) { return Trues == Total; });
}
TCellValue Or(const TFunctionCall& Call) {
  return LogicalOver(Call, [](int64_t Trues, int64_t) { return Trues > 0; });
}
TCellValue Xor(const TFunctionCall& Call) {
  return LogicalOver(Call, [](int64_t Trues, int64_t) { return Trues % 2 == 1; });
}

TCellValue Not(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  return Value.Kind == cvkError ? Value : Bool(!ValueIsTruthy(Value));
}

TCellValue True(const TFunctionCall&) {
  return Bool(true);
}
TCellValue False(const TFunctionCall&) {
  return Bool(false);
}

// An index that is no number, an error included, or that names no argument
// is #VALUE!.
TCellValue Choose(const TFunctionCall& Call) {
  double Pick;
  if (!ArgInteger(Call[0], Pick) || !(Pick >= 1 && Pick < static_cast<double>(Call.Count()))) return Err(ceValue);
  return Call[static_cast<size_t>(Pick)].First();
}

// Test and value pairs; a trailing lone argument is ignored.
TCellValue Ifs(const TFunctionCall& Call) {
  for (size_t I = 0; I + 1 < Call.Count(); I += 2)
    if (ArgTruthy(Call[I])) return Call[I + 1].First();
  return Err(ceNA);
}

// Case and result pairs after the expression; one argument left over after
// them is the default.
TCellValue Switch(const TFunctionCall& Call) {
  TLookupKey Key(Call[0].First());
  size_t I = 1;
  for (; I + 1 < Call.Count(); I += 2) {
    TCellValue Case = Call[I].First();
    double CaseNumber;
    bool Same = DisplayEqualsNoCase(Case, Key.Text) || (Key.BothNumeric(Case, CaseNumber) && CaseNumber == Key.Number);
    if (Same) return Call[I + 1].First();
  }
  return I < Call.Count() ? Call[I].First() : Err(ceNA);
}

}  // namespace

std::span<const TFunctionDef> LogicalFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"SINGLE", 1, 1, fnNone, Single},  {"IF", 2, 3, fnNone, If},          {"IFERROR", 2, 2, fnNone, IfError},
      {"IFNA", 2, 2, fnNone, IfNa},      {"AND", 1, -1, fnNone, And},       {"OR", 1, -1, fnNone, Or},
      {"XOR", 1, -1, fnNone, Xor},       {"NOT", 1, 1, fnNone, Not},        {"TRUE", 0, 0, fnNone, True},
      {"FALSE", 0, 0, fnNone, False},    {"CHOOSE", 2, -1, fnNone, Choose}, {"IFS", 2, -1, fnNone, Ifs},
      {"SWITCH", 3, -1, fnNone, Switch},
  };
  return Table;
}

}  // namespace Tabrino
