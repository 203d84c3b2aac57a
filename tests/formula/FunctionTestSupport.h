// Calling built-ins directly with hand-made arguments, for the function family
// tests: Call("SUM", {1, "x", Range({V(1), V(2)}, 2, 1)}).
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <iomanip>
#include <ostream>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Builtins.Extra.h"
#include "Tabrino.Formula.Builtins.h"
#include "Tabrino.Types.h"

namespace Tabrino {

// gtest shows values in failure messages through this.
inline void PrintTo(const TCellValue& Value, std::ostream* Out) {
  switch (Value.Kind) {
    case cvkEmpty: *Out << "<empty>"; break;
    case cvkText: *Out << '"' << Value.Text << '"'; break;
    case cvkNumber: *Out << Value.Number; break;
    default: *Out << Value.ToDisplayString();
  }
}

namespace FunctionTest {

inline TCellValue V(double X) {
  return TCellValue::FromNumber(X);
}
inline TCellValue V(int X) {
  return TCellValue::FromNumber(X);
}
inline TCellValue V(const char* S) {
  return TCellValue::FromText(S);
}
inline TCellValue V(bool B) {
  return TCellValue::FromBoolean(B);
}
inline TCellValue E(TCellErrorCode Code) {
  return TCellValue::FromError(Code);
}
inline TCellValue Blank() {
  return {};
}

// Cells row by row; no origin, like an array result.
inline TFormulaArg Range(std::vector<TCellValue> Cells, int32_t Rows, int32_t Cols) {
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}
inline TFormulaArg Column(std::vector<TCellValue> Cells) {
  int32_t Rows = static_cast<int32_t>(Cells.size());
  return Range(std::move(Cells), Rows, 1);
}
// As if read from the sheet with its top left at (Col, Row).
inline TFormulaArg Referenced(TFormulaArg Arg, int32_t Col, int32_t Row) {
  Arg.HasOrigin = true;
  Arg.OriginCol = Col;
  Arg.OriginRow = Row;
  Arg.OriginSheetIndex = 0;
  return Arg;
}

// One argument of Call: a plain value becomes a scalar.
struct TTestArg {
  TFormulaArg Arg;
  TTestArg(TFormulaArg A) : Arg(std::move(A)) {}                                  // NOLINT
  TTestArg(TCellValue Value) : Arg(TFormulaArg::FromScalar(std::move(Value))) {}  // NOLINT
  TTestArg(double X) : TTestArg(V(X)) {}                                          // NOLINT
  TTestArg(int X) : TTestArg(V(X)) {}                                             // NOLINT
  TTestArg(const char* S) : TTestArg(V(S)) {}                                     // NOLINT
  TTestArg(bool B) : TTestArg(V(B)) {}                                            // NOLINT
};

// The context of a formula in the cell at (Col, Row).
inline TFormulaContext EvaluatedAt(int32_t Col, int32_t Row) {
  TFormulaContext Context;
  Context.EvalCol = Col;
  Context.EvalRow = Row;
  return Context;
}

// As the evaluator dispatches: the core first, then the extended families.
inline TCellValue Dispatch(std::string_view Name, std::span<const TFormulaArg> Args, const TFormulaContext& Context) {
  TCellValue Result = EvaluateFunction(Name, Args, Context);
  TCellValue Extra;
  if (Result == TCellValue::FromError(ceName) && TryEvaluateExtra(Name, Args, Context, Extra)) return Extra;
  return Result;
}

inline TCellValue Call(std::string_view Name, std::initializer_list<TTestArg> Args,
                       const TFormulaContext& Context = {}) {
  std::vector<TFormulaArg> Evaluated;
  for (const TTestArg& A : Args) Evaluated.push_back(A.Arg);
  return Dispatch(Name, Evaluated, Context);
}

// The whole result of a function in array context (core or extended); a
// count the function does not accept gives the scalar #VALUE!.
inline TFormulaArg CallArray(std::string_view Name, std::initializer_list<TTestArg> Args,
                             const TFormulaContext& Context = {}) {
  std::vector<TFormulaArg> Evaluated;
  for (const TTestArg& A : Args) Evaluated.push_back(A.Arg);
  const TFunctionDef* Def = FindFunction(CanonicalFunctionName(Name));
  if (!Def) return TFormulaArg::FromError(ceName);
  if (!Def->AcceptsCount(Evaluated.size())) return TFormulaArg::FromError(ceValue);
  return Def->Run(TFunctionCall{Def->Name, Evaluated, Context});
}

// A row of a table-driven case: the call, its arguments and the result.
struct TCallCase {
  const char* Name;
  std::vector<TTestArg> Args;
  TCellValue Expected;
};

// "SUM(1, "x", {2x1: 1; 2})", for failure messages.
inline std::string Describe(const TCallCase& Case) {
  std::ostringstream Out;
  Out << Case.Name << '(';
  for (size_t I = 0; I < Case.Args.size(); ++I) {
    const TFormulaArg& A = Case.Args[I].Arg;
    if (I > 0) Out << ", ";
    if (!A.IsRange) {
      PrintTo(A.Scalar, &Out);
      continue;
    }
    Out << '{' << A.RowCount << 'x' << A.ColCount << ':';
    for (size_t K = 0; K < A.Cells.size(); ++K) {
      Out << (K == 0 ? " " : "; ");
      PrintTo(A.Cells[K], &Out);
    }
    Out << '}';
  }
  Out << ')';
  return Out.str();
}

inline void ExpectCases(std::initializer_list<TCallCase> Cases, const TFormulaContext& Context = {}) {
  for (const TCallCase& Case : Cases) {
    std::vector<TFormulaArg> Evaluated;
    for (const TTestArg& A : Case.Args) Evaluated.push_back(A.Arg);
    EXPECT_EQ(Dispatch(Case.Name, Evaluated, Context), Case.Expected) << Describe(Case);
  }
}

// A number within Relative of Expected (an absolute bound when Expected is 0),
// for results checked against independently computed references.
inline ::testing::AssertionResult IsNear(const TCellValue& Actual, double Expected, double Relative = 1e-12) {
  if (Actual.Kind != cvkNumber) return ::testing::AssertionFailure() << "not a number: " << Actual.ToDisplayString();
  double Tolerance = Expected == 0 ? Relative : Relative * std::fabs(Expected);
  if (std::fabs(Actual.Number - Expected) <= Tolerance) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << std::setprecision(17) << Actual.Number << " differs from " << Expected
                                       << " by more than " << Tolerance;
}

}  // namespace FunctionTest
}  // namespace Tabrino
