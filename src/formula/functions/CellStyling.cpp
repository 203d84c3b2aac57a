// Spreadsheet helpers about cell looks: COLOR packs a colour into a number,
// STYLE asks for a cell style. A headless engine applies no style from a
// formula, so STYLE gives only its value, 0, which lets it be added to a
// formula's result as it is meant to be.

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// COLOR(red, green, blue, [alpha=0]): alpha * 2^24 + red * 2^16 + green * 2^8
// + blue, every part a whole number from 0 to 255.
TCellValue Color(const TFunctionCall& Call) {
  double Parts[4] = {0, 0, 0, 0};
  for (size_t I = 0; I < Call.Count(); ++I) {
    if (!ArgInteger(Call[I], Parts[I])) return Err(ceValue);
    if (!(Parts[I] >= 0 && Parts[I] <= 255)) return Err(ceNum);
  }
  auto [Red, Green, Blue, Alpha] = Parts;
  return Num(((Alpha * 256 + Red) * 256 + Green) * 256 + Blue);
}

TCellValue Style(const TFunctionCall&) {
  return Num(0);
}

}  // namespace

std::span<const TFunctionDef> CellStylingFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"COLOR", 3, 4, fnNone, Color},
      {"STYLE", 1, 3, fnNone, Style},
  };
  return Table;
}

}  // namespace Tabrino
