#include "Tabrino.Formula.Builtins.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <chrono>
#include <ctime>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

TFormulaArg TFormulaArg::FromScalar(TCellValue Value) {
  TFormulaArg A;
  A.Scalar = std::move(Value);
  return A;
}

TFormulaArg TFormulaArg::FromRange(TCellArray Cells, int32_t Rows, int32_t Cols) {
  TFormulaArg A;
  A.IsRange = true;
  A.Cells = std::move(Cells);
  A.RowCount = Rows;
  A.ColCount = Cols;
  return A;
}

TFormulaArg TFormulaArg::FromLambda(std::shared_ptr<ILambdaClosure> Closure) {
  TFormulaArg A;
  A.IsLambda = true;
  A.Lambda = std::move(Closure);
  return A;
}

TCellValue TFormulaArg::First() const {
  if (IsLambda) return {};
  if (IsRange) return Cells.empty() ? TCellValue() : Cells[0];
  return Scalar;
}

TCellValue TFormulaArg::CellAt(int32_t Row, int32_t Col) const {
  if (!IsRange) return Scalar;
  if (Row < 0 || Col < 0 || Row >= RowCount || Col >= ColCount) return TCellValue::FromError(ceRef);
  size_t Index = static_cast<size_t>(Row) * ColCount + Col;
  return Index < Cells.size() ? Cells[Index] : TCellValue::FromError(ceRef);
}

bool IsDynamicArraySpillFunction(std::string_view Name) {
  static constexpr std::string_view Names[] = {
      "FILTER",          "SEQUENCE",   "UNIQUE",     "SORT",      "SORTBY",     "TRANSPOSE",     "HSTACK",
      "VSTACK",          "TOROW",      "TOCOL",      "TAKE",      "DROP",       "EXPAND",        "CHOOSEROWS",
      "CHOOSECOLS",      "RANDARRAY",  "WRAPROWS",   "WRAPCOLS",  "GROUPBY",    "PIVOTBY",       "STOCKHISTORY",
      "FILTERXML",       "IMPORTHTML", "IMPORTDATA", "IMPORTXML", "IMPORTFEED", "GOOGLEFINANCE", "IMPORTRANGE",
      "ARRAY_CONSTRAIN", "QUERY"};
  const std::string Canonical = CanonicalFunctionName(Name);
  return std::find(std::begin(Names), std::end(Names), Canonical) != std::end(Names);
}

bool IsDynamicArraySpillFormulaText(std::string_view Text) {
  Text = TrimBlanks(Text);
  while (!Text.empty() && (Text.front() == '+' || Text.front() == '=' || Text.front() == '@')) Text.remove_prefix(1);
  return IsDynamicArraySpillFunction(TrimBlanks(Text.substr(0, Text.find('('))));
}

TFormulaArg AsRangeArg(const TFormulaArg& Arg) {
  if (Arg.IsRange) return Arg;
  TFormulaArg R = TFormulaArg::FromRange(std::vector<TCellValue>{Arg.Scalar}, 1, 1);
  return R;
}

double SystemClockSerial() {
  using namespace std::chrono;
  std::time_t Now = system_clock::to_time_t(system_clock::now());
  std::tm Local{};
  localtime_r(&Now, &Local);
  // Days from 1899-12-30 to the local calendar date, plus the time of day.
  auto Days = sys_days{year{Local.tm_year + 1900} / month(unsigned(Local.tm_mon + 1)) / day(unsigned(Local.tm_mday))};
  auto Epoch = sys_days{year{1899} / December / day{30}};
  double Serial = (Days - Epoch).count();
  return Serial + (Local.tm_hour * 3600 + Local.tm_min * 60 + Local.tm_sec) / 86400.0;
}

std::string CanonicalFunctionName(std::string_view Name) {
  // Names from the tokenizer are upper-cased already and hold no blank or
  // "$": without a prefix they are canonical as they stand. This runs for
  // every function call of every evaluation.
  const bool AsItStands = !Name.empty() && Name.front() != '_' && !StartsWith(Name, "COM.") &&
                          std::none_of(Name.begin(), Name.end(), [](char C) {
                            return C == '$' || (C >= 'a' && C <= 'z') || static_cast<unsigned char>(C) <= ' ';
                          });
  if (AsItStands) return std::string(Name);
  std::string Upper = UpperAscii(ReplaceAll(TrimBlanks(Name), "$", ""));
  for (std::string_view Prefix : {"_XLFN._XLWS.", "_XLFN.", "_XLPM.", "COM.MICROSOFT."}) {
    if (StartsWith(Upper, Prefix)) return Upper.substr(Prefix.size());
  }
  return Upper;
}

TFormulaArg TFunctionDef::Run(const TFunctionCall& Call) const {
  return InvokeArray ? InvokeArray(Call) : TFormulaArg::FromScalar(Invoke(Call));
}

const TFunctionDef* FindCoreFunction(std::string_view CanonicalName) {
  static const TFunctionIndex Index = BuildFunctionIndex(CoreFunctionFamilies());
  auto It = Index.find(CanonicalName);
  return It == Index.end() ? nullptr : It->second;
}

const TFunctionDef* FindFunction(std::string_view CanonicalName) {
  const TFunctionDef* Def = FindCoreFunction(CanonicalName);
  return Def ? Def : FindExtraFunction(CanonicalName);
}

std::vector<const TFunctionDef*> AllFunctions() {
  std::vector<const TFunctionDef*> All;
  for (const auto* Families : {&CoreFunctionFamilies(), &ExtraFunctionFamilies()})
    for (std::span<const TFunctionDef> Family : *Families)
      for (const TFunctionDef& Def : Family) All.push_back(&Def);
  for (const TFunctionDef& Def : SpecialFormFunctions()) All.push_back(&Def);
  return All;
}

TFunctionIndex BuildFunctionIndex(const std::vector<std::span<const TFunctionDef>>& Families) {
  TFunctionIndex Index;
  for (std::span<const TFunctionDef> Family : Families)
    for (const TFunctionDef& Def : Family) Index.emplace(Def.Name, &Def);
  return Index;
}

const std::vector<std::span<const TFunctionDef>>& CoreFunctionFamilies() {
  static const std::vector<std::span<const TFunctionDef>> Families = {
      AggregateFunctions(), CriteriaFunctions(), LogicalFunctions(), InformationFunctions(), MathFunctions(),
      TextFunctions(),      DateFunctions(),     LookupFunctions(),  FinancialFunctions()};
  return Families;
}

TCellValue EvaluateFunction(std::string_view Name, std::span<const TFormulaArg> Args, const TFormulaContext& Context) {
  std::string Canonical = CanonicalFunctionName(Name);
  const TFunctionDef* Def = FindCoreFunction(Canonical);
  if (!Def) return TCellValue::FromError(ceName);
  if (!Def->AcceptsCount(Args.size())) return TCellValue::FromError(ceValue);
  return Def->Run(TFunctionCall{Def->Name, Args, Context}).First();
}

}  // namespace Tabrino
