// Values to text and characters to numbers: VALUETOTEXT and ARRAYTOTEXT
// write values the way a formula would show them, UNICHAR and UNICODE speak
// full code points, T keeps only text, ROT13 rotates Latin letters.

#include <string>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

enum TTextForm : uint8_t { tfConcise = 0, tfStrict = 1 };

bool FormArg(const TFunctionCall& Call, size_t Index, TTextForm& Form) {
  double N;
  if (!OptArgInteger(Call, Index, 0, N) || !(N == 0 || N == 1)) return false;
  Form = static_cast<TTextForm>(N);
  return true;
}

// The strict form quotes texts as a formula would, doubling inner quotes.
std::string ValueText(const TCellValue& Value, TTextForm Form) {
  if (Form == tfConcise || Value.Kind != cvkText) return Value.ToDisplayString();
  std::string Out = "\"";
  for (char C : Value.Text) {
    if (C == '"') Out += '"';
    Out += C;
  }
  return Out + "\"";
}

// VALUETOTEXT(value, [format=0]); an array gives an array of texts.
TFormulaArg ValueToText(const TFunctionCall& Call) {
  TTextForm Form;
  if (!FormArg(Call, 1, Form)) return TFormulaArg::FromError(ceValue);
  const TFormulaArg& Values = Call[0];
  if (!Values.IsRange) return TFormulaArg::FromScalar(TextResult(ValueText(Values.First(), Form)));
  std::vector<TCellValue> Texts;
  Texts.reserve(Values.Cells.size());
  for (const TCellValue& V : Values.Cells) Texts.push_back(TextResult(ValueText(V, Form)));
  return TFormulaArg::FromRange(std::move(Texts), Values.RowCount, Values.ColCount);
}

// ARRAYTOTEXT(array, [format=0]): concise is every value joined by ", ";
// strict is an array constant, "{1,"a";TRUE,#N/A}".
TCellValue ArrayToText(const TFunctionCall& Call) {
  TTextForm Form;
  if (!FormArg(Call, 1, Form)) return Err(ceValue);
  TFormulaArg Array = AsRangeArg(Call[0]);
  std::string Out = Form == tfStrict ? "{" : "";
  for (int32_t R = 0; R < Array.RowCount; ++R) {
    for (int32_t C = 0; C < Array.ColCount; ++C) {
      if (R > 0 || C > 0) Out += Form == tfConcise ? ", " : C == 0 ? ";" : ",";
      Out += ValueText(Array.CellAt(R, C), Form);
      if (Out.size() > 3 * MaxTextUnits) return Err(ceValue);
    }
  }
  if (Form == tfStrict) Out += "}";
  return TextResult(std::move(Out));
}

// Code points 1 to 0x10FFFF; a lone surrogate half is no character (#N/A).
TCellValue UniChar(const TFunctionCall& Call) {
  double N;
  if (!ArgInteger(Call[0], N)) return Err(ceValue);
  if (!(N >= 1 && N <= 0x10FFFF)) return Err(ceValue);
  if (N >= 0xD800 && N <= 0xDFFF) return Err(ceNA);
  std::string Out;
  AppendUtf8(Out, static_cast<char32_t>(N));
  return Text(std::move(Out));
}

// The code point of the first character, a whole one beyond the 16-bit plane.
TCellValue UniCode(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkError) return Value;
  std::string S = Value.ToDisplayString();
  if (S.empty()) return Err(ceValue);
  size_t Pos = 0;
  return Num(static_cast<double>(DecodeUtf8(S, Pos)));
}

// Texts stay, errors pass, everything else becomes the empty text.
TCellValue T(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkText || Value.Kind == cvkError) return Value;
  return Text("");
}

TCellValue Rot13(const TFunctionCall& Call) {
  std::string S = ArgText(Call[0]);
  for (char& C : S) {
    if (C >= 'a' && C <= 'z')
      C = static_cast<char>('a' + (C - 'a' + 13) % 26);
    else if (C >= 'A' && C <= 'Z')
      C = static_cast<char>('A' + (C - 'A' + 13) % 26);
  }
  return Text(std::move(S));
}

}  // namespace

std::span<const TFunctionDef> TextConversionFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"VALUETOTEXT", 1, 2, fnReturnsArray, nullptr, ValueToText},
      {"ARRAYTOTEXT", 1, 2, fnNone, ArrayToText},
      {"UNICHAR", 1, 1, fnNone, UniChar},
      {"UNICODE", 1, 1, fnNone, UniCode},
      {"T", 1, 1, fnNone, T},
      {"ROT13", 1, 1, fnNone, Rot13},
  };
  return Table;
}

}  // namespace Tabrino
