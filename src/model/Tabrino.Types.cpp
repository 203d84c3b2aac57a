#include "Tabrino.Types.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "Tabrino.FormatSettings.h"

namespace Tabrino {

std::string ColToLetters(int32_t Col) {
  std::string Letters;
  while (Col > 0) {
    int32_t N = Col - 1;
    Letters.insert(Letters.begin(), static_cast<char>('A' + N % 26));
    Col = N / 26;
  }
  return Letters;
}

int32_t LettersToCol(std::string_view Text) {
  if (Text.empty() || Text.size() > 3) return 0;
  int32_t Value = 0;
  for (char C : Text) {
    if (C >= 'a' && C <= 'z') C = static_cast<char>(C - 'a' + 'A');
    if (C < 'A' || C > 'Z') return 0;
    Value = Value * 26 + (C - 64);
    if (Value > MaxCol) return 0;
  }
  return Value;
}

std::string TCellAddress::ToA1() const { return ColToLetters(Col) + std::to_string(Row); }

TCellAddress TCellAddress::FromA1(std::string_view Text) {
  // Deliberately forgiving: "$", blanks and other noise are skipped.
  std::string Letters;
  int64_t Row = 0;
  bool SeenDigit = false;
  bool RowOverflow = false;
  for (char C : Text) {
    if ((C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z')) {
      if (SeenDigit) return {};
      Letters += C;
    } else if (C >= '0' && C <= '9') {
      SeenDigit = true;
      if (!RowOverflow) {
        Row = Row * 10 + (C - '0');
        if (Row > INT32_MAX) RowOverflow = true;
      }
    }
  }
  if (Letters.empty() || !SeenDigit || Letters.size() > 3) return {};
  TCellAddress A{LettersToCol(Letters), RowOverflow ? 0 : static_cast<int32_t>(Row)};
  return A.IsValid() ? A : TCellAddress{};
}

TCellRange TCellRange::FromA1(std::string_view Text) {
  while (!Text.empty() && static_cast<unsigned char>(Text.front()) <= ' ') Text.remove_prefix(1);
  while (!Text.empty() && static_cast<unsigned char>(Text.back()) <= ' ') Text.remove_suffix(1);
  size_t Colon = Text.find(':');
  TCellAddress First = TCellAddress::FromA1(Text.substr(0, Colon));
  TCellAddress Second = Colon == std::string_view::npos ? First : TCellAddress::FromA1(Text.substr(Colon + 1));
  return TCellRange{First.Col, First.Row, Second.Col, Second.Row}.Normalize();
}

TCellRange TCellRange::Normalize() const {
  return {std::min(StartCol, EndCol), std::min(StartRow, EndRow), std::max(StartCol, EndCol),
          std::max(StartRow, EndRow)};
}

bool TCellRange::Intersects(const TCellRange& Other) const {
  TCellRange A = Normalize(), B = Other.Normalize();
  return !(A.EndCol < B.StartCol || A.StartCol > B.EndCol || A.EndRow < B.StartRow || A.StartRow > B.EndRow);
}

int32_t TCellRange::Width() const {
  TCellRange N = Normalize();
  return N.EndCol - N.StartCol + 1;
}

int32_t TCellRange::Height() const {
  TCellRange N = Normalize();
  return N.EndRow - N.StartRow + 1;
}

std::string TCellRange::ToA1() const {
  TCellRange N = Normalize();
  std::string First = TCellAddress{N.StartCol, N.StartRow}.ToA1();
  if (N.StartCol == N.EndCol && N.StartRow == N.EndRow) return First;
  return First + ":" + TCellAddress{N.EndCol, N.EndRow}.ToA1();
}

std::string ErrorCodeToString(TCellErrorCode Code) {
  switch (Code) {
    case ceDiv0: return "#DIV/0!";
    case ceNA: return "#N/A";
    case ceName: return "#NAME?";
    case ceNull: return "#NULL!";
    case ceNum: return "#NUM!";
    case ceRef: return "#REF!";
    case ceValue: return "#VALUE!";
    case ceCirc: return "#CIRC!";
    case ceSpill: return "#SPILL!";
    default: return "#ERROR!";
  }
}

TTabrinoFileFormat FileFormatFromExtension(std::string_view FileName) {
  size_t Dot = FileName.find_last_of('.');
  size_t Slash = FileName.find_last_of("/\\");
  if (Dot == std::string_view::npos || (Slash != std::string_view::npos && Dot < Slash)) return ffAuto;
  std::string Ext(FileName.substr(Dot));
  std::transform(Ext.begin(), Ext.end(), Ext.begin(), [](unsigned char C) { return std::tolower(C); });
  if (Ext == ".tbx") return ffTbx;
  if (Ext == ".xlsx" || Ext == ".xlsm") return ffXlsx;
  if (Ext == ".ods") return ffOds;
  if (Ext == ".csv") return ffCsv;
  return ffAuto;
}

TCellValue TCellValue::FromText(std::string Text) {
  TCellValue V;
  V.Kind = cvkText;
  V.Text = std::move(Text);
  return V;
}

TCellValue TCellValue::FromNumber(double Number) {
  TCellValue V;
  V.Kind = cvkNumber;
  V.Number = Number;
  return V;
}

TCellValue TCellValue::FromBoolean(bool Value) {
  TCellValue V;
  V.Kind = cvkBoolean;
  V.BooleanValue = Value;
  return V;
}

TCellValue TCellValue::FromError(TCellErrorCode Code) {
  TCellValue V;
  V.Kind = cvkError;
  V.ErrorCode = Code;
  return V;
}

TCellValue TCellValue::FromFormula(std::string Text) {
  TCellValue V;
  V.Kind = cvkFormula;
  if (!Text.empty() && Text.front() != '=') Text.insert(Text.begin(), '=');
  V.Formula = std::move(Text);
  return V;
}

std::string TCellValue::ToDisplayString() const {
  switch (Kind) {
    case cvkText: return Text;
    case cvkNumber: return GeneralNumberText(Number);
    case cvkBoolean: return BooleanValue ? "TRUE" : "FALSE";
    case cvkError: return ErrorCodeToString(ErrorCode);
    case cvkFormula: return Formula;
    default: return {};
  }
}

std::string GeneralNumberText(double Value) {
  if (std::isnan(Value)) return "NAN";
  if (std::isinf(Value)) return Value > 0 ? "INF" : "-INF";
  if (Value == 0) return "0";
  // 15 significant digits: mantissa digits and decimal exponent from %e.
  // to_chars writes what printf's "%.14e" writes, without the locale and
  // stream machinery: this runs for every number shown.
  char Buf[40];
  const auto Written = std::to_chars(Buf, Buf + sizeof Buf, Value, std::chars_format::scientific, 14);
  std::string_view S(Buf, static_cast<size_t>(Written.ptr - Buf));
  bool Negative = S.front() == '-';
  if (Negative) S.remove_prefix(1);
  std::string Digits;
  Digits += S[0];
  size_t E = S.find('e');
  Digits.append(S.substr(2, E - 2));
  int Exponent = std::atoi(std::string(S.substr(E + 1)).c_str());
  while (Digits.size() > 1 && Digits.back() == '0') Digits.pop_back();

  const std::string& Dec = FormatSettings().DecimalSeparator;
  std::string Out = Negative ? "-" : "";
  if (Exponent >= 15 || Exponent < -5) {
    // Scientific form of the classic general format: no "+" and no padding.
    Out += Digits[0];
    if (Digits.size() > 1) Out += Dec + Digits.substr(1);
    Out += "E" + std::to_string(Exponent);
    return Out;
  }
  if (Exponent < 0) {
    Out += "0" + Dec + std::string(static_cast<size_t>(-Exponent - 1), '0') + Digits;
  } else if (static_cast<size_t>(Exponent) + 1 >= Digits.size()) {
    Out += Digits + std::string(Exponent + 1 - Digits.size(), '0');
  } else {
    Out += Digits.substr(0, Exponent + 1) + Dec + Digits.substr(Exponent + 1);
  }
  return Out;
}

}  // namespace Tabrino
