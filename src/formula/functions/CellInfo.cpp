// What the engine can tell about a cell and about itself: CELL, INFO,
// ERROR.TYPE and its legacy twin ERRORTYPE, ISBINARY and VERSION. A headless
// engine has no file path, window or column widths of its own, so those
// answers are fixed ones that formulas testing them still understand.

#include <cctype>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.ReferenceArgs.h"
#include "Tabrino.TextUtil.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

namespace {

constexpr std::string_view EngineName = "Tabrino";
constexpr std::string_view EngineRelease = "0.1.0";
// Excel's default column width of 8.43 characters, as CELL("width") rounds it.
constexpr int DefaultColumnWidth = 8;

// What the number format says in CELL("format"), CELL("color") and
// CELL("parentheses").
struct TFormatTraits {
  std::string Code = "G";
  bool NegativeInColor = false;
  bool Parentheses = false;
};

// The format's sections split at ";" outside quotes and brackets, each with
// quoted texts, escaped characters and padding (_x, *x) removed and brackets
// kept apart.
struct TFormatSection {
  std::string Body;  // lower-cased
  std::vector<std::string> Brackets;
};

std::vector<TFormatSection> SplitFormat(std::string_view Format) {
  std::vector<TFormatSection> Sections(1);
  for (size_t I = 0; I < Format.size(); ++I) {
    char C = Format[I];
    if (C == '"') {
      size_t End = Format.find('"', I + 1);
      I = End == std::string_view::npos ? Format.size() : End;
    } else if ((C == '\\' || C == '_' || C == '*') && I + 1 < Format.size()) {
      ++I;
    } else if (C == '[') {
      size_t End = Format.find(']', I + 1);
      if (End == std::string_view::npos) End = Format.size();
      Sections.back().Brackets.push_back(UpperAscii(Format.substr(I + 1, End - I - 1)));
      I = End;
    } else if (C == ';') {
      Sections.emplace_back();
    } else {
      Sections.back().Body += static_cast<char>(std::tolower(static_cast<unsigned char>(C)));
    }
  }
  return Sections;
}

bool IsColorBracket(const std::string& Bracket) {
  static constexpr std::string_view Colors[] = {"BLACK", "BLUE", "CYAN", "GREEN", "MAGENTA", "RED", "WHITE", "YELLOW"};
  for (std::string_view Color : Colors)
    if (Bracket == Color) return true;
  return StartsWith(Bracket, "COLOR");
}

bool Has(std::string_view Body, std::string_view Part) {
  return Body.find(Part) != std::string_view::npos;
}

std::string DateCode(const std::string& Body) {
  bool Hours = Has(Body, "h"), Seconds = Has(Body, "s");
  bool TwelveHour = Has(Body, "am/pm") || Has(Body, "a/p");
  bool Years = Has(Body, "y"), Days = Has(Body, "d"), MonthName = Has(Body, "mmm");
  if (Years && Days) return MonthName ? "D1" : "D4";
  if (Years) return "D3";
  if (Days) return MonthName ? "D2" : "D5";
  if (Hours) return TwelveHour ? (Seconds ? "D6" : "D7") : (Seconds ? "D8" : "D9");
  return "D3";
}

TFormatTraits FormatTraits(std::string_view Format) {
  TFormatTraits Traits;
  std::vector<TFormatSection> Sections = SplitFormat(Format);
  for (const TFormatSection& Section : Sections)
    for (const std::string& Bracket : Section.Brackets)
      if (IsColorBracket(Bracket)) Traits.NegativeInColor = true;
  const TFormatSection& First = Sections.front();
  const std::string& Body = First.Body;
  Traits.Parentheses = Has(Body, "(");
  bool Currency = Has(Body, "$") || Has(Body, "€") || Has(Body, "£") || Has(Body, "¥");
  for (const std::string& Bracket : First.Brackets) Currency = Currency || StartsWith(Bracket, "$");
  bool Digits = Body.find_first_of("0#?") != std::string::npos;
  bool DateParts = Body.find_first_of("ydhs") != std::string::npos || (Has(Body, "m") && !Digits);
  if (Body.empty() || Body == "general") return Traits;
  if (DateParts && !Digits) {
    Traits.Code = DateCode(Body);
    return Traits;
  }
  size_t Point = Body.find('.');
  size_t Decimals = 0;
  for (size_t I = Point == std::string::npos ? Body.size() : Point + 1;
       I < Body.size() && Body.find_first_of("0#?", I) == I; ++I)
    ++Decimals;
  std::string Places = std::to_string(Decimals);
  if (Has(Body, "%"))
    Traits.Code = "P" + Places;
  else if (Has(Body, "e+") || Has(Body, "e-"))
    Traits.Code = "S" + Places;
  else if (Currency)
    Traits.Code = "C" + Places;
  else if (Has(Body, "/"))
    Traits.Code = "G";
  else if (Has(Body, ",") && Digits)
    Traits.Code = "," + Places;
  else if (Digits)
    Traits.Code = "F" + Places;
  if (Traits.NegativeInColor && Traits.Code.front() != 'D' && Traits.Code != "G") Traits.Code += "-";
  if (Traits.Parentheses && Traits.Code != "G") Traits.Code += "()";
  return Traits;
}

// The cell CELL asks about: the reference's top left, or the formula's own
// cell without one.
struct TCellTarget {
  const TWorksheet* Sheet = nullptr;
  int32_t SheetIndex = 0;
  int32_t Col = 1;
  int32_t Row = 1;
  TCellValue Value;
};

bool ReadTarget(const TFunctionCall& Call, TCellTarget& Target) {
  const TFormulaContext& Context = Call.Context;
  if (Call.Count() < 2) {
    Target.Sheet =
        Context.Sheet ? Context.Sheet : (Context.Workbook ? Context.Workbook->GetSheet(Context.SheetIndex) : nullptr);
    Target.SheetIndex = Context.SheetIndex;
    Target.Col = Context.EvalCol > 0 ? Context.EvalCol : 1;
    Target.Row = Context.EvalRow > 0 ? Context.EvalRow : 1;
    if (Target.Sheet) Target.Value = Target.Sheet->GetEffectiveValue({Target.Col, Target.Row});
    return true;
  }
  const TFormulaArg& Arg = Call[1];
  if (!Arg.HasOrigin) return false;
  Target.Sheet = OriginSheet(Arg, Context);
  Target.SheetIndex = Arg.OriginSheetIndex >= 0 ? Arg.OriginSheetIndex : Context.SheetIndex;
  Target.Col = Arg.OriginCol;
  Target.Row = Arg.OriginRow;
  Target.Value = Arg.First();
  return true;
}

// "b" blank, "l" a text constant, "v" anything else (a formula too).
std::string CellType(const TCellTarget& Target) {
  const TStoredCell* Stored = Target.Sheet ? Target.Sheet->FindCell(Target.Col, Target.Row) : nullptr;
  TCellValueKind Kind = Target.Sheet ? (Stored ? Stored->Kind() : cvkEmpty) : Target.Value.Kind;
  return Kind == cvkEmpty ? "b" : Kind == cvkText ? "l" : "v";
}

// The label prefix of a text cell: its horizontal alignment as one character.
std::string LabelPrefix(const TCellTarget& Target, const TCellFormat& Format) {
  if (CellType(Target) != "l") return "";
  switch (Format.Alignment.Horizontal) {
    case haRight: return "\"";
    case haCenter: return "^";
    case haFill: return "\\";
    default: return "'";
  }
}

TCellValue Cell(const TFunctionCall& Call) {
  TCellValue InfoValue = Call[0].First();
  if (InfoValue.Kind == cvkError) return InfoValue;
  std::string Info = UpperAscii(TrimBlanks(InfoValue.ToDisplayString()));
  TCellTarget Target;
  if (!ReadTarget(Call, Target)) return Err(ceValue);
  TCellFormat Format = Target.Sheet ? Target.Sheet->ResolveFormat({Target.Col, Target.Row}, Call.Context.StyleSheet)
                                    : TCellFormat::Default();
  if (Info == "ADDRESS") {
    std::string Address = "$" + ColToLetters(Target.Col) + "$" + std::to_string(Target.Row);
    if (Target.SheetIndex == Call.Context.SheetIndex || !Target.Sheet) return Text(std::move(Address));
    return Text(SheetPrefix(Target.Sheet->FName) + Address);
  }
  if (Info == "COL") return Num(Target.Col);
  if (Info == "ROW") return Num(Target.Row);
  if (Info == "CONTENTS") return Target.Value;
  if (Info == "TYPE") return Text(CellType(Target));
  if (Info == "FILENAME") return Text("");
  if (Info == "WIDTH") return Num(DefaultColumnWidth);
  if (Info == "PROTECT") return Num(Format.Locked ? 1 : 0);
  if (Info == "PREFIX") return Text(LabelPrefix(Target, Format));
  TFormatTraits Traits = FormatTraits(Format.NumberFormat);
  if (Info == "FORMAT") return Text(Traits.Code);
  if (Info == "COLOR") return Num(Traits.NegativeInColor ? 1 : 0);
  if (Info == "PARENTHESES") return Num(Traits.Parentheses ? 1 : 0);
  return Err(ceValue);
}

TCellValue Info(const TFunctionCall& Call) {
  TCellValue TypeValue = Call[0].First();
  if (TypeValue.Kind == cvkError) return TypeValue;
  std::string Type = UpperAscii(TrimBlanks(TypeValue.ToDisplayString()));
  if (Type == "DIRECTORY") return Text("");
  if (Type == "NUMFILE") return Num(Call.Context.Workbook ? Call.Context.Workbook->SheetCount() : 1);
  if (Type == "ORIGIN") return Text("$A:$A$1");
  if (Type == "OSVERSION") return Text(std::string(EngineName) + " " + std::string(EngineRelease));
  if (Type == "RECALC") return Text("Automatic");
  if (Type == "RELEASE") return Text(std::string(EngineRelease));
  if (Type == "SYSTEM") return Text("pcdos");
  // Memory figures were retired by the spreadsheets that had them.
  if (Type == "MEMAVAIL" || Type == "MEMUSED" || Type == "TOTMEM") return Err(ceNA);
  return Err(ceValue);
}

// 1 #NULL!, 2 #DIV/0!, 3 #VALUE!, 4 #REF!, 5 #NAME?, 6 #NUM!, 7 #N/A,
// 9 #SPILL!; #N/A for anything else, a circular reference too, which has no
// number of its own.
TCellValue ErrorType(const TFunctionCall& Call) {
  TCellValue V = Call[0].First();
  if (V.Kind != cvkError) return Err(ceNA);
  switch (V.ErrorCode) {
    case ceNull: return Num(1);
    case ceDiv0: return Num(2);
    case ceValue: return Num(3);
    case ceRef: return Num(4);
    case ceName: return Num(5);
    case ceNum: return Num(6);
    case ceNA: return Num(7);
    case ceSpill: return Num(9);
    default: return Err(ceNA);
  }
}

// The internal error numbers of the spreadsheet that named ERRORTYPE: 503
// #NUM!, 519 #VALUE!, 521 #NULL!, 522 circular reference, 524 #REF!, 525
// #NAME?, 532 #DIV/0!, 32767 #N/A.
TCellValue LegacyErrorType(const TFunctionCall& Call) {
  TCellValue V = Call[0].First();
  if (V.Kind != cvkError) return Err(ceNA);
  switch (V.ErrorCode) {
    case ceNum: return Num(503);
    case ceValue: return Num(519);
    case ceNull: return Num(521);
    case ceCirc: return Num(522);
    case ceRef: return Num(524);
    case ceName: return Num(525);
    case ceDiv0: return Num(532);
    case ceNA: return Num(32767);
    default: return Err(ceNA);
  }
}

// A binary number as BIN2DEC takes it: one to ten digits 0 and 1.
TCellValue IsBinary(const TFunctionCall& Call) {
  std::string S = ArgText(Call[0]);
  return Bool(!S.empty() && S.size() <= 10 && S.find_first_not_of("01") == std::string::npos);
}

TCellValue Version(const TFunctionCall&) {
  return Text(std::string(EngineName) + " " + std::string(EngineRelease));
}

}  // namespace

std::span<const TFunctionDef> CellInfoFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CELL", 1, 2, fnVolatile, Cell},        {"INFO", 1, 1, fnVolatile, Info},
      {"ERROR.TYPE", 1, 1, fnNone, ErrorType}, {"ERRORTYPE", 1, 1, fnNone, LegacyErrorType},
      {"ISBINARY", 1, 1, fnNone, IsBinary},    {"VERSION", 0, 0, fnNone, Version},
  };
  return Table;
}

}  // namespace Tabrino
