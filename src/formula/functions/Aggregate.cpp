// Aggregates over every value of every argument. Only cells that hold a
// number take part, whether they come from a range or are given directly, so
// SUM("5",TRUE) is 0 and an error inside a summed range does not propagate.

#include <limits>
#include <vector>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// Everything the aggregates read from a list of values, gathered in one pass.
struct TNumberStats {
  double Sum = 0;
  double Product = 1;
  double Min = std::numeric_limits<double>::max();
  double Max = std::numeric_limits<double>::lowest();
  double Count = 0;
  double NonEmpty = 0;

  void Add(const TCellValue& V) {
    if (V.Kind != cvkEmpty) ++NonEmpty;
    if (V.Kind != cvkNumber) return;
    ++Count;
    Sum += V.Number;
    Product *= V.Number;
    if (V.Number < Min) Min = V.Number;
    if (V.Number > Max) Max = V.Number;
  }
};

TNumberStats StatsOf(std::span<const TFormulaArg> Args) {
  TNumberStats Stats;
  ForEachFlat(Args, [&Stats](const TCellValue& V) { Stats.Add(V); });
  return Stats;
}

// The rules shared by the plain functions and SUBTOTAL: with no numbers the
// average is #DIV/0!, the extremes and the product 0.
TCellValue AverageOf(const TNumberStats& S) {
  return S.Count > 0 ? Num(S.Sum / S.Count) : Err(ceDiv0);
}
TCellValue MinOf(const TNumberStats& S) {
  return Num(S.Count > 0 ? S.Min : 0);
}
TCellValue MaxOf(const TNumberStats& S) {
  return Num(S.Count > 0 ? S.Max : 0);
}
TCellValue ProductOf(const TNumberStats& S) {
  return Num(S.Count > 0 ? S.Product : 0);
}

TCellValue Sum(const TFunctionCall& Call) {
  return Num(StatsOf(Call.Args).Sum);
}
TCellValue Average(const TFunctionCall& Call) {
  return AverageOf(StatsOf(Call.Args));
}
TCellValue Min(const TFunctionCall& Call) {
  return MinOf(StatsOf(Call.Args));
}
TCellValue Max(const TFunctionCall& Call) {
  return MaxOf(StatsOf(Call.Args));
}
TCellValue Count(const TFunctionCall& Call) {
  return Num(StatsOf(Call.Args).Count);
}
TCellValue CountA(const TFunctionCall& Call) {
  return Num(StatsOf(Call.Args).NonEmpty);
}
TCellValue Product(const TFunctionCall& Call) {
  return ProductOf(StatsOf(Call.Args));
}

TCellValue CountBlank(const TFunctionCall& Call) {
  double Blank = 0;
  ForEachFlat(Call.Args, [&Blank](const TCellValue& V) {
    if (V.Kind == cvkEmpty || (V.Kind == cvkText && V.Text.empty())) ++Blank;
  });
  return Num(Blank);
}

// Codes above 100 ask to skip hidden rows elsewhere; here they mean the same
// as their base code. Deviation and variance (7, 8) are not offered.
TCellValue Subtotal(const TFunctionCall& Call) {
  double Code;
  if (!ArgInteger(Call[0], Code)) return Err(ceValue);
  if (Code >= 100) Code -= 100;
  TNumberStats Stats = StatsOf(Call.Args.subspan(1));
  if (Code == 1) return AverageOf(Stats);
  if (Code == 2) return Num(Stats.Count);
  if (Code == 3) return Num(Stats.NonEmpty);
  if (Code == 4) return MaxOf(Stats);
  if (Code == 5) return MinOf(Stats);
  if (Code == 6) return ProductOf(Stats);
  if (Code == 9) return Num(Stats.Sum);
  return Err(ceValue);
}

// One plus the number of numbers ranked before Number; #N/A unless Number
// itself is among them.
TCellValue Rank(const TFunctionCall& Call) {
  double Number;
  if (!ArgNumber(Call[0], Number)) return Err(ceValue);
  bool Ascending = false;
  if (Call.Count() > 2) {
    double Order;
    if (!ArgNumber(Call[2], Order)) return Err(ceValue);
    Ascending = !IsZero(Order);
  }
  double Position = 1;
  bool Found = false;
  for (const TCellValue& V : ArgValues(Call[1])) {
    if (V.Kind != cvkNumber) continue;
    if (V.Number == Number)
      Found = true;
    else if (Ascending ? V.Number < Number : V.Number > Number)
      ++Position;
  }
  return Found ? Num(Position) : Err(ceNA);
}

// The first argument sets how many products there are; a scalar repeats for
// each, and a place past a shorter range or a value that is no number counts
// as 0 rather than being an error.
TCellValue SumProduct(const TFunctionCall& Call) {
  struct TFactor {
    std::span<const TCellValue> Values;
    bool Repeats;
  };
  std::vector<TFactor> Factors;
  Factors.reserve(Call.Count());
  for (const TFormulaArg& Arg : Call.Args) Factors.push_back({ArgValues(Arg), !Arg.IsRange});

  const size_t Extent = Call[0].ValueCount();
  double Total = 0;
  for (size_t I = 0; I < Extent; ++I) {
    double Term = 1;
    for (const TFactor& F : Factors) {
      size_t At = F.Repeats ? 0 : I;
      double X = 0;
      if (At < F.Values.size()) {
        const TCellValue& V = F.Values[At];
        if (V.Kind == cvkNumber)
          X = V.Number;
        else if (!AsNumber(V, X))
          X = 0;
      }
      Term *= X;
    }
    Total += Term;
  }
  return Num(Total);
}

}  // namespace

std::span<const TFunctionDef> AggregateFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"SUM", 1, -1, fnNone, Sum},
      {"AVERAGE", 1, -1, fnNone, Average},
      {"MIN", 1, -1, fnNone, Min},
      {"MAX", 1, -1, fnNone, Max},
      {"COUNT", 1, -1, fnNone, Count},
      {"COUNTA", 1, -1, fnNone, CountA},
      {"COUNTBLANK", 1, -1, fnNone, CountBlank},
      {"PRODUCT", 1, -1, fnNone, Product},
      {"RANK", 2, 3, fnNone, Rank},
      {"RANK.EQ", 2, 3, fnNone, Rank},
      {"SUBTOTAL", 2, -1, fnNone, Subtotal},
      {"SUMPRODUCT", 1, -1, fnNone, SumProduct},
  };
  return Table;
}

}  // namespace Tabrino
