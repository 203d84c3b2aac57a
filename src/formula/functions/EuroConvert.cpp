// EUROCONVERT: the fixed conversion rates of the currencies the euro
// replaced, with their rounding rules. Between two national currencies the
// amount goes through the euro (triangulation).

#include <cmath>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

struct TEuroCurrency {
  std::string_view Code;
  double UnitsPerEuro;
  int Decimals;  // calculation precision: what a result is rounded to
};

constexpr TEuroCurrency EuroCurrencies[] = {
    {"EUR", 1, 2},        {"ATS", 13.7603, 2},  {"BEF", 40.3399, 0}, {"CYP", 0.585274, 2}, {"DEM", 1.95583, 2},
    {"EEK", 15.6466, 2},  {"ESP", 166.386, 0},  {"FIM", 5.94573, 2}, {"FRF", 6.55957, 2},  {"GRD", 340.750, 0},
    {"HRK", 7.53450, 2},  {"IEP", 0.787564, 2}, {"ITL", 1936.27, 0}, {"LTL", 3.45280, 2},  {"LUF", 40.3399, 0},
    {"LVL", 0.702804, 2}, {"MTL", 0.429300, 2}, {"NLG", 2.20371, 2}, {"PTE", 200.482, 1},  {"SIT", 239.640, 2},
    {"SKK", 30.1260, 2},
};

const TEuroCurrency* FindCurrency(const TFormulaArg& Arg) {
  std::string Code = UpperAscii(TrimBlanks(ArgText(Arg)));
  for (const TEuroCurrency& Currency : EuroCurrencies)
    if (Currency.Code == Code) return &Currency;
  return nullptr;
}

double RoundDecimals(double X, int Decimals) {
  double Scale = std::pow(10.0, Decimals);
  return std::round(X * Scale) / Scale;
}

// EUROCONVERT(number, source, target, [full_precision=FALSE],
// [triangulation_precision]): unknown codes and a triangulation precision
// below 3 are #VALUE!. Without full precision the result is rounded to the
// target currency's calculation precision.
TCellValue EuroConvert(const TFunctionCall& Call) {
  double Amount;
  if (!ArgNumber(Call[0], Amount)) return Err(ceValue);
  const TEuroCurrency* Source = FindCurrency(Call[1]);
  const TEuroCurrency* Target = FindCurrency(Call[2]);
  if (!Source || !Target) return Err(ceValue);
  bool FullPrecision = Call.Count() > 3 && ArgTruthy(Call[3]);
  double Triangulation = -1;
  if (Call.Count() > 4 && (!ArgInteger(Call[4], Triangulation) || Triangulation < 3)) return Err(ceValue);
  if (Source == Target) return FiniteNum(Amount);

  double Euros = Amount / Source->UnitsPerEuro;
  bool BetweenNational = Source->Code != "EUR" && Target->Code != "EUR";
  if (BetweenNational && Triangulation >= 3)
    Euros = RoundDecimals(Euros, static_cast<int>(std::fmin(Triangulation, 15)));
  double Result = Euros * Target->UnitsPerEuro;
  return FiniteNum(FullPrecision ? Result : RoundDecimals(Result, Target->Decimals));
}

}  // namespace

std::span<const TFunctionDef> EuroConvertFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"EUROCONVERT", 3, 5, fnNone, EuroConvert},
  };
  return Table;
}

}  // namespace Tabrino
