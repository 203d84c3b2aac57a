// Shared by the function family files: their tables and the argument
// conversions, so that each function body states only its own rule.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Builtins.h"
#include "Tabrino.Formula.Values.h"
#include "Tabrino.Utf16.h"

namespace Tabrino {

// One table per family; the dispatchers' hash tables are built from these.
// Core families answer first (EvaluateFunction), extended ones after
// (TryEvaluateExtra); a name stands in exactly one table.
std::span<const TFunctionDef> AggregateFunctions();
std::span<const TFunctionDef> CriteriaFunctions();
std::span<const TFunctionDef> LogicalFunctions();
std::span<const TFunctionDef> InformationFunctions();
std::span<const TFunctionDef> MathFunctions();
std::span<const TFunctionDef> TextFunctions();
std::span<const TFunctionDef> DateFunctions();
std::span<const TFunctionDef> LookupFunctions();
std::span<const TFunctionDef> FinancialFunctions();
std::span<const TFunctionDef> DateDifferenceFunctions();
std::span<const TFunctionDef> CalendarFunctions();
std::span<const TFunctionDef> WorkingDayFunctions();
std::span<const TFunctionDef> CouponFunctions();
std::span<const TFunctionDef> SecurityFunctions();
std::span<const TFunctionDef> OddCouponFunctions();
std::span<const TFunctionDef> DepreciationFunctions();
std::span<const TFunctionDef> CashflowFunctions();
std::span<const TFunctionDef> TrigonometryFunctions();
std::span<const TFunctionDef> RoundingFunctions();
std::span<const TFunctionDef> CombinatoricsFunctions();
std::span<const TFunctionDef> NumberSystemFunctions();
std::span<const TFunctionDef> MatrixFunctions();
std::span<const TFunctionDef> ArrayTransformFunctions();
std::span<const TFunctionDef> ArrayFunctions();
std::span<const TFunctionDef> ArrayShapeFunctions();
std::span<const TFunctionDef> LookupSearchFunctions();
std::span<const TFunctionDef> AddressingFunctions();
std::span<const TFunctionDef> CellInfoFunctions();
std::span<const TFunctionDef> TextSplittingFunctions();
std::span<const TFunctionDef> NumberTextFunctions();
std::span<const TFunctionDef> TextConversionFunctions();
std::span<const TFunctionDef> DoubleByteTextFunctions();
std::span<const TFunctionDef> WebFunctions();
std::span<const TFunctionDef> UnavailableFunctions();
std::span<const TFunctionDef> EuroConvertFunctions();
std::span<const TFunctionDef> CellStylingFunctions();

std::span<const TFunctionDef> StatisticalFunctions();
std::span<const TFunctionDef> RankingFunctions();
std::span<const TFunctionDef> RegressionFunctions();
std::span<const TFunctionDef> ForecastEtsFunctions();
std::span<const TFunctionDef> AggregationFunctions();
std::span<const TFunctionDef> StatisticalCompatibilityFunctions();
std::span<const TFunctionDef> QueryFunctions();
std::span<const TFunctionDef> RegexFunctions();
std::span<const TFunctionDef> EngineeringFunctions();
std::span<const TFunctionDef> BesselFunctions();
std::span<const TFunctionDef> UnitConversionFunctions();
std::span<const TFunctionDef> ComplexFunctions();
std::span<const TFunctionDef> DatabaseFunctions();
std::span<const TFunctionDef> DistributionFunctions();
std::span<const TFunctionDef> DiscreteDistributionFunctions();
std::span<const TFunctionDef> HypothesisTestFunctions();
std::span<const TFunctionDef> DistributionCompatibilityFunctions();
// The lists of families, core and extended (Tabrino.Formula.Builtins.Extra.cpp).
const std::vector<std::span<const TFunctionDef>>& CoreFunctionFamilies();
const std::vector<std::span<const TFunctionDef>>& ExtraFunctionFamilies();
using TFunctionIndex = absl::flat_hash_map<std::string_view, const TFunctionDef*>;
TFunctionIndex BuildFunctionIndex(const std::vector<std::span<const TFunctionDef>>& Families);
const TFunctionDef* FindExtraFunction(std::string_view CanonicalName);

// Runs another built-in, core or extended, on the given arguments as if the
// formula had called it by that name: a count it does not take is #VALUE!.
inline TFormulaArg RunFunction(std::string_view CanonicalName, std::span<const TFormulaArg> Args,
                               const TFormulaContext& Context) {
  const TFunctionDef* Def = FindFunction(CanonicalName);
  if (!Def) return TFormulaArg::FromError(ceName);
  if (!Def->AcceptsCount(Args.size())) return TFormulaArg::FromError(ceValue);
  return Def->Run(TFunctionCall{Def->Name, Args, Context});
}

inline TCellValue Num(double V) { return TCellValue::FromNumber(V); }
inline TCellValue Err(TCellErrorCode Code) { return TCellValue::FromError(Code); }
inline TCellValue Bool(bool V) { return TCellValue::FromBoolean(V); }
inline TCellValue Text(std::string V) { return TCellValue::FromText(std::move(V)); }

// Number of an argument: AsNumber of its First.
inline bool ArgNumber(const TFormulaArg& Arg, double& Number) { return AsNumber(Arg.First(), Number); }
// Integer arguments are truncated toward zero.
inline bool ArgInteger(const TFormulaArg& Arg, double& Number) {
  if (!ArgNumber(Arg, Number)) return false;
  Number = std::trunc(Number);
  return true;
}
// An optional argument: Default when absent, else as ArgNumber / ArgInteger.
inline bool OptArgNumber(const TFunctionCall& Call, size_t Index, double Default, double& Number) {
  if (Index >= Call.Count()) {
    Number = Default;
    return true;
  }
  return ArgNumber(Call[Index], Number);
}
inline bool OptArgInteger(const TFunctionCall& Call, size_t Index, double Default, double& Number) {
  if (!OptArgNumber(Call, Index, Default, Number)) return false;
  Number = std::trunc(Number);
  return true;
}
// An optional argument left out, or left empty in the call (F(a,,c)): both
// mean its default. A reference to an empty cell is no omission.
inline bool ArgOmitted(const TFunctionCall& Call, size_t Index) {
  if (Index >= Call.Count()) return true;
  const TFormulaArg& Arg = Call[Index];
  return !Arg.IsRange && !Arg.IsLambda && !Arg.HasOrigin && Arg.Scalar.Kind == cvkEmpty;
}
inline std::string ArgText(const TFormulaArg& Arg) { return Arg.First().ToDisplayString(); }

// Text results are capped at this many UTF-16 units, as in other spreadsheets;
// the cap also keeps a formula from building enormous strings.
inline constexpr size_t MaxTextUnits = 32767;
// The text, or #VALUE! beyond the cap.
inline TCellValue TextResult(std::string V) {
  return V.size() > MaxTextUnits && Utf16Length(V) > MaxTextUnits ? Err(ceValue) : Text(std::move(V));
}
inline bool ArgTruthy(const TFormulaArg& Arg) { return ValueIsTruthy(Arg.First()); }

// The values of one argument in order: a range's cells row by row, else the
// scalar alone (nothing for a lambda).
inline std::span<const TCellValue> ArgValues(const TFormulaArg& Arg) {
  if (Arg.IsRange) return {Arg.Cells.begin(), Arg.Cells.size()};
  if (Arg.IsLambda) return {};
  return {&Arg.Scalar, 1};
}

// Whether Value's display text equals Text ignoring case. Builds no text for
// empty, text and boolean values, nor for a finite number when Text cannot be
// its general form, which starts with a digit or "-": lookups and criteria
// call this once per cell.
inline bool DisplayEqualsNoCase(const TCellValue& Value, std::string_view Text) {
  switch (Value.Kind) {
    case cvkEmpty: return Text.empty();
    case cvkText: return EqualsNoCase(Value.Text, Text);
    case cvkBoolean: return EqualsNoCase(Value.BooleanValue ? "TRUE" : "FALSE", Text);
    case cvkNumber: {
      bool MayBeNumber = !Text.empty() && ((Text.front() >= '0' && Text.front() <= '9') || Text.front() == '-');
      if (std::isfinite(Value.Number) && !MayBeNumber) return false;
      return EqualsNoCase(GeneralNumberText(Value.Number), Text);
    }
    default: return EqualsNoCase(Value.ToDisplayString(), Text);
  }
}

// A value to look for, converted once for a walk over many cells. A cell is
// the same value when both convert to equal numbers, or, where either does
// not convert, when their display texts are equal ignoring case.
struct TLookupKey {
  bool IsNumber = false;
  double Number = 0;
  std::string Text;

  explicit TLookupKey(const TCellValue& Value) : Text(Value.ToDisplayString()) { IsNumber = AsNumber(Value, Number); }
  // The cell's number when both sides are numeric: only then do numbers decide.
  bool BothNumeric(const TCellValue& Cell, double& CellNumber) const { return IsNumber && AsNumber(Cell, CellNumber); }
  bool Matches(const TCellValue& Cell) const {
    double CellNumber;
    if (BothNumeric(Cell, CellNumber)) return CellNumber == Number;
    return DisplayEqualsNoCase(Cell, Text);
  }
};

// Every value of every argument in order: a range contributes its cells row
// by row, anything else its scalar.
template <typename F>
void ForEachFlat(std::span<const TFormulaArg> Args, F&& Visit) {
  for (const TFormulaArg& Arg : Args) {
    if (Arg.IsRange) {
      for (const TCellValue& V : Arg.Cells) Visit(V);
    } else if (!Arg.IsLambda) {
      Visit(Arg.Scalar);
    }
  }
}

// The numbers of an aggregating function's arguments: a range gives its
// number cells only (text, booleans, empty cells and errors in it are passed
// over, as SUM does); a value given directly converts through AsNumber. False
// when a direct value does not convert: the function then gives #VALUE!.
inline bool CollectNumbers(std::span<const TFormulaArg> Args, std::vector<double>& Numbers) {
  for (const TFormulaArg& Arg : Args) {
    if (Arg.IsRange) {
      for (const TCellValue& V : Arg.Cells)
        if (V.Kind == cvkNumber) Numbers.push_back(V.Number);
    } else if (!Arg.IsLambda) {
      double X;
      if (!AsNumber(Arg.Scalar, X)) return false;
      Numbers.push_back(X);
    }
  }
  return true;
}

// A numeric result: an overflow or a domain fault that came back as NaN or an
// infinity is #NUM!, never a non-finite number in a cell; -0 shows as 0.
inline TCellValue FiniteNum(double V) {
  return std::isfinite(V) ? Num(V + 0.0) : Err(ceNum);
}

// Array results are capped at this many cells, so that no formula can ask for
// gigabytes (MUNIT(1E9)); beyond it a function gives #VALUE!.
inline constexpr size_t MaxArrayCells = size_t(1) << 20;

}  // namespace Tabrino
