#include "Tabrino.Formula.ReferenceArgs.h"

#include <cctype>

#include "Tabrino.Workbook.h"

namespace Tabrino {

TWorksheet* OriginSheet(const TFormulaArg& Arg, const TFormulaContext& Context) {
  if (!Arg.HasOrigin) return nullptr;
  if (Arg.OriginSheetIndex < 0 || Arg.OriginSheetIndex == Context.SheetIndex || !Context.Workbook)
    return Context.Sheet ? Context.Sheet
                         : (Context.Workbook ? Context.Workbook->GetSheet(Context.SheetIndex) : nullptr);
  return Context.Workbook->GetSheet(Arg.OriginSheetIndex);
}

namespace {

bool IsAsciiDigit(char C) {
  return C >= '0' && C <= '9';
}
bool IsAsciiLetter(char C) {
  return (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z');
}

// "AB12": letters then digits, which a formula would read as a cell.
bool LooksLikeA1(std::string_view Name) {
  size_t Letters = 0;
  while (Letters < Name.size() && IsAsciiLetter(Name[Letters])) ++Letters;
  if (Letters == 0 || Letters > 3 || Letters == Name.size()) return false;
  for (char C : Name.substr(Letters))
    if (!IsAsciiDigit(C)) return false;
  return true;
}

// "R", "C12", "R1C1": what a formula would read as a row, column or cell in R1C1 style.
bool LooksLikeR1C1(std::string_view Name) {
  auto SkipPart = [&Name](char Letter) {
    if (Name.empty() || std::toupper(static_cast<unsigned char>(Name.front())) != Letter) return false;
    Name.remove_prefix(1);
    while (!Name.empty() && IsAsciiDigit(Name.front())) Name.remove_prefix(1);
    return true;
  };
  bool Row = SkipPart('R');
  bool Col = SkipPart('C');
  return (Row || Col) && Name.empty();
}

bool SheetNameNeedsQuotes(std::string_view Name) {
  if (Name.empty() || IsAsciiDigit(Name.front())) return true;
  for (char C : Name) {
    bool Plain = IsAsciiLetter(C) || IsAsciiDigit(C) || C == '_' || C == '.' || static_cast<unsigned char>(C) >= 0x80;
    if (!Plain) return true;
  }
  return LooksLikeA1(Name) || LooksLikeR1C1(Name);
}

}  // namespace

std::string SheetPrefix(std::string_view SheetName) {
  if (!SheetNameNeedsQuotes(SheetName)) return std::string(SheetName) + "!";
  std::string Out = "'";
  for (char C : SheetName) {
    if (C == '\'') Out += '\'';
    Out += C;
  }
  return Out + "'!";
}

}  // namespace Tabrino
