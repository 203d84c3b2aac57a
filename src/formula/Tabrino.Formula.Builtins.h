// The currency of built-in functions: evaluated arguments (TFormulaArg), the
// per-call context, the function table every family declares, and the
// dispatcher built from those tables.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Types.h"

namespace Tabrino {

class TWorkbook;
class TWorksheet;
class TTabrinoStyleSheet;
class ILambdaClosure;

// Cells of a range argument, row by row. Shared and immutable once built, so
// that passing an argument around never copies its cells.
class TCellArray {
 public:
  TCellArray() = default;
  TCellArray(std::vector<TCellValue> Cells)  // NOLINT: a vector reads naturally as a cell array
      : FCells(std::make_shared<const std::vector<TCellValue>>(std::move(Cells))) {}
  size_t size() const { return FCells ? FCells->size() : 0; }
  bool empty() const { return size() == 0; }
  const TCellValue& operator[](size_t I) const { return (*FCells)[I]; }
  const TCellValue* begin() const { return FCells ? FCells->data() : nullptr; }
  const TCellValue* end() const { return FCells ? FCells->data() + FCells->size() : nullptr; }
  // The shared storage itself, for holders outside the formula layer (a spill).
  const std::shared_ptr<const std::vector<TCellValue>>& Shared() const { return FCells; }

 private:
  std::shared_ptr<const std::vector<TCellValue>> FCells;
};

struct TFormulaArg {
  bool IsRange = false;
  bool IsLambda = false;
  TCellValue Scalar;
  TCellArray Cells;
  int32_t RowCount = 0;
  int32_t ColCount = 0;
  int32_t OriginCol = 0;
  int32_t OriginRow = 0;
  int32_t OriginSheetIndex = -1;
  bool HasOrigin = false;
  std::shared_ptr<ILambdaClosure> Lambda;
  bool AsTable = false;
  bool AsTableHasHeader = false;

  static TFormulaArg FromScalar(TCellValue Value);
  static TFormulaArg FromRange(TCellArray Cells, int32_t Rows, int32_t Cols);
  static TFormulaArg FromLambda(std::shared_ptr<ILambdaClosure> Closure);
  static TFormulaArg FromError(TCellErrorCode Code) { return FromScalar(TCellValue::FromError(Code)); }
  // The scalar, or the first cell, or empty for an empty range or a lambda.
  TCellValue First() const;
  // 0-based. A scalar answers for every index; a range gives ceRef outside itself.
  TCellValue CellAt(int32_t Row, int32_t Col) const;
  // Number of values: cells of a range, 1 otherwise.
  size_t ValueCount() const { return IsRange ? Cells.size() : 1; }
};

// Wall clock as a date serial (days since 1899-12-30, local time). Replaceable
// so that tests and hosts can pin TODAY and NOW.
using TClockFunc = std::function<double()>;
double SystemClockSerial();

class TExactIndexCache;
class TCriteriaIndexCache;

struct TFormulaContext {
  TWorksheet* Sheet = nullptr;
  int32_t SheetIndex = 0;
  const TTabrinoStyleSheet* StyleSheet = nullptr;
  TWorkbook* Workbook = nullptr;
  int32_t EvalCol = 0;
  int32_t EvalRow = 0;
  const TClockFunc* Clock = nullptr;
  // Indexes for repeated exact lookups and conditional aggregates; none
  // outside an evaluator.
  TExactIndexCache* ExactIndexes = nullptr;
  TCriteriaIndexCache* CriteriaIndexes = nullptr;

  double Now() const { return Clock && *Clock ? (*Clock)() : SystemClockSerial(); }
};

// One call of a built-in: its canonical name, evaluated arguments and context.
struct TFunctionCall {
  std::string_view Name;
  std::span<const TFormulaArg> Args;
  const TFormulaContext& Context;

  size_t Count() const { return Args.size(); }
  const TFormulaArg& operator[](size_t I) const { return Args[I]; }
};

// fnSpecialForm: the evaluator runs the function itself (its arguments are not
// all evaluated up front); the row only declares it and has no Invoke.
enum TFunctionFlag : uint8_t { fnNone = 0, fnVolatile = 1, fnReturnsArray = 2, fnSpecialForm = 4 };

using TScalarFunction = TCellValue (*)(const TFunctionCall& Call);
using TArrayFunction = TFormulaArg (*)(const TFunctionCall& Call);

// One row of a family's function table. Too few or too many arguments give
// ceValue before the implementation runs. MaxArgs -1 means unbounded. A
// function that returns an array sets InvokeArray (and fnReturnsArray)
// instead of Invoke; in scalar context its result is the array's first value.
struct TFunctionDef {
  const char* Name;
  int16_t MinArgs;
  int16_t MaxArgs;
  uint8_t Flags;
  TScalarFunction Invoke;
  TArrayFunction InvokeArray = nullptr;

  bool AcceptsCount(size_t Count) const {
    return int(Count) >= MinArgs && (MaxArgs < 0 || int(Count) <= MaxArgs);
  }
  // Runs the function in array context: an array function gives its array,
  // a scalar one its value. The count must already be accepted.
  TFormulaArg Run(const TFunctionCall& Call) const;
};

// Trim, drop "$", upper-case, strip the "_XLFN._XLWS.", "_XLFN.", "_XLPM." and
// "COM.MICROSOFT." prefixes.
std::string CanonicalFunctionName(std::string_view Name);

// The core built-ins. A name they do not know gives ceName; the evaluator
// then asks TryEvaluateExtra (Tabrino.Formula.Builtins.Extra.h).
TCellValue EvaluateFunction(std::string_view Name, std::span<const TFormulaArg> Args, const TFormulaContext& Context);
// The table row of a canonical core name, or nullptr.
const TFunctionDef* FindCoreFunction(std::string_view CanonicalName);
// Core or extended: the table row of a canonical name, or nullptr.
const TFunctionDef* FindFunction(std::string_view CanonicalName);
// Every registered function, core and extended, and the special forms, for listings.
std::vector<const TFunctionDef*> AllFunctions();
// The functions the evaluator runs itself and that have no other table row
// (INDIRECT, OFFSET, LET, LAMBDA, ISOMITTED and the lambda iterators): their
// names and argument counts, flagged fnSpecialForm. Never dispatched.
std::span<const TFunctionDef> SpecialFormFunctions();
// The special form of a canonical name, or nullptr.
const TFunctionDef* FindSpecialForm(std::string_view CanonicalName);

// Whether a canonical function name is one of the functions whose array
// result spills as a dynamic array (FILTER, SEQUENCE, UNIQUE, SORT, ...).
bool IsDynamicArraySpillFunction(std::string_view Name);
// The same test on formula text: leading "+", "=" and "@" go, and the text
// before the first "(" names the function. A file reader uses it to tell
// formulas stored as array formulas only because they spill.
bool IsDynamicArraySpillFormulaText(std::string_view Text);

// A scalar becomes a 1 by 1 range; a range is returned as it is.
TFormulaArg AsRangeArg(const TFormulaArg& Arg);

// Implicit intersection of an evaluated argument with the cell being
// evaluated. A non-range gives its value, a range without origin its First.
// A range with origin: a single cell is itself; a column gives its cell in
// EvalRow, a row its cell in EvalCol, a block the cell at both; no such cell
// gives ceValue.
TCellValue ImplicitIntersect(const TFormulaArg& Arg, int32_t EvalCol, int32_t EvalRow);

}  // namespace Tabrino
