// Numbers to text and back under explicit rules: NUMBERVALUE reads a number
// with given separators, FIXED and DOLLAR write one with a fixed count of
// decimals through the number format engine, BAHTTEXT spells an amount in
// Thai baht and satang.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

#include "Tabrino.FormatSettings.h"
#include "Tabrino.Formula.Functions.h"
#include "Tabrino.NumberFormat.h"

namespace Tabrino {

namespace {

// The first character of a separator argument, or the locale's separator.
bool SeparatorArg(const TFunctionCall& Call, size_t Index, const std::string& Default, std::string& Separator) {
  if (Index >= Call.Count()) {
    Separator = Default;
    return true;
  }
  std::string S = ArgText(Call[Index]);
  if (S.empty()) return false;
  size_t Pos = 0;
  DecodeUtf8(S, Pos);
  Separator = S.substr(0, Pos);
  return true;
}

// Sign, digits, an optional fraction after ".", an optional exponent: the
// whole text or nothing. Read without the C library's locale.
bool ParsePlainNumber(std::string_view S, double& Number) {
  bool Negative = !S.empty() && S.front() == '-';
  if (!S.empty() && (S.front() == '-' || S.front() == '+')) S.remove_prefix(1);
  if (S.empty() || S.find_first_of("0123456789") == std::string_view::npos || S.front() == '-' || S.front() == '+')
    return false;
  auto [End, Error] = std::from_chars(S.data(), S.data() + S.size(), Number, std::chars_format::general);
  // Out of a double's range counts as no number, like any other unreadable text.
  if (End != S.data() + S.size() || Error != std::errc()) return false;
  if (Negative) Number = -Number;
  return true;
}

// NUMBERVALUE(text, [decimal_separator], [group_separator]): blanks anywhere
// are ignored, group separators count only before the decimal separator,
// and every trailing "%" divides by 100.
TCellValue NumberValue(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkError) return Value;
  std::string Decimal, Group;
  if (!SeparatorArg(Call, 1, FormatSettings().DecimalSeparator, Decimal) ||
      !SeparatorArg(Call, 2, FormatSettings().ThousandSeparator, Group) || Decimal == Group)
    return Err(ceValue);
  std::string Text;
  for (char C : Value.ToDisplayString())
    if (C != ' ' && C != '\t' && C != '\n' && C != '\r') Text += C;
  int Percents = 0;
  while (!Text.empty() && Text.back() == '%') {
    Text.pop_back();
    ++Percents;
  }
  if (Text.empty()) return Num(0);
  size_t Point = Text.find(Decimal);
  if (Point != std::string::npos && Text.find(Decimal, Point + Decimal.size()) != std::string::npos)
    return Err(ceValue);
  std::string Whole = Text.substr(0, Point), Fraction;
  if (Point != std::string::npos) {
    Fraction = Text.substr(Point + Decimal.size());
    if (Fraction.find(Group) != std::string::npos) return Err(ceValue);
  }
  std::string Plain;
  for (size_t At = 0; At < Whole.size();) {
    if (Whole.compare(At, Group.size(), Group) == 0) {
      At += Group.size();
    } else {
      Plain += Whole[At++];
    }
  }
  if (Point != std::string::npos) Plain += "." + Fraction;
  double Number;
  if (!ParsePlainNumber(Plain, Number)) return Err(ceValue);
  // Divided once per sign, as 9%% is in a formula.
  for (int K = 0; K < Percents; ++K) Number /= 100;
  return FiniteNum(Number);
}

// Rounded half away from zero to Decimals places (negative: left of the point).
double RoundTo(double X, double Decimals) {
  double Scale = std::pow(10.0, std::fabs(Decimals));
  return Decimals >= 0 ? std::round(X * Scale) / Scale : std::round(X / Scale) * Scale;
}

// A fixed-decimals number text through the format engine: Pattern holds
// "0" where the digits go, and the "0" gains ".00..." for positive decimals.
TCellValue FixedDecimals(const TFunctionCall& Call, double DefaultDecimals, std::string_view Positive,
                         std::string_view Negative) {
  double X, Decimals;
  if (!ArgNumber(Call[0], X) || !OptArgInteger(Call, 1, DefaultDecimals, Decimals)) return Err(ceValue);
  if (Decimals > 127) return Err(ceValue);
  if (!std::isfinite(X)) return Err(ceNum);
  std::string Digits = Decimals > 0 ? "0." + std::string(static_cast<size_t>(Decimals), '0') : "0";
  X = RoundTo(X, Decimals < -308 ? -308 : Decimals);
  auto Fill = [&Digits](std::string_view Pattern) {
    std::string Out(Pattern);
    Out.replace(Out.find('0'), 1, Digits);
    return Out;
  };
  std::string Format = Fill(Positive);
  if (!Negative.empty()) Format += ";" + Fill(Negative);
  return TextResult(FormatNumber(X, Format));
}

// FIXED(number, [decimals=2], [no_commas=FALSE]).
TCellValue Fixed(const TFunctionCall& Call) {
  bool NoCommas = Call.Count() > 2 && ArgTruthy(Call[2]);
  return FixedDecimals(Call, 2, NoCommas ? "0" : "#,##0", "");
}

// DOLLAR(number, [decimals=2]): the currency form, negatives in parentheses.
TCellValue Dollar(const TFunctionCall& Call) {
  return FixedDecimals(Call, 2, "$#,##0", "($#,##0)");
}

// ---- BAHTTEXT ----

constexpr std::string_view ThaiDigits[] = {"ศูนย์", "หนึ่ง", "สอง", "สาม", "สี่", "ห้า", "หก", "เจ็ด", "แปด", "เก้า"};
constexpr std::string_view ThaiPlaces[] = {"", "สิบ", "ร้อย", "พัน", "หมื่น", "แสน"};
constexpr std::string_view ThaiMillion = "ล้าน";
constexpr std::string_view ThaiOneAfterTens = "เอ็ด";
constexpr std::string_view ThaiTwentyPrefix = "ยี่";
constexpr std::string_view ThaiBaht = "บาท";
constexpr std::string_view ThaiSatang = "สตางค์";
constexpr std::string_view ThaiExact = "ถ้วน";
constexpr std::string_view ThaiMinus = "ลบ";

// Thai words of a whole number given as decimal digits without leading
// zeros. Every six places make a million; a final 1 after any higher digit
// is "et", a 1 in the tens is plain "sip", a 2 there "yi sip".
std::string ThaiNumber(std::string_view Digits) {
  std::string Out;
  bool HigherDigit = false;
  for (size_t I = 0; I < Digits.size(); ++I) {
    size_t Power = Digits.size() - 1 - I;
    size_t Place = Power % 6;
    int D = Digits[I] - '0';
    if (D != 0) {
      if (Place == 0 && D == 1 && HigherDigit)
        Out += ThaiOneAfterTens;
      else if (Place == 1 && D == 1)
        Out += ThaiPlaces[1];
      else if (Place == 1 && D == 2)
        Out += std::string(ThaiTwentyPrefix) + std::string(ThaiPlaces[1]);
      else
        Out += std::string(ThaiDigits[D]) + std::string(ThaiPlaces[Place]);
      HigherDigit = true;
    }
    // A new million starts below this digit; the unit rule restarts with it.
    if (Place == 0 && Power > 0) {
      if (HigherDigit) Out += ThaiMillion;
    }
  }
  return Out;
}

TCellValue BahtText(const TFunctionCall& Call) {
  double X;
  if (!ArgNumber(Call[0], X)) return Err(ceValue);
  if (!std::isfinite(X)) return Err(ceNum);
  bool Negative = X < 0;
  X = std::fabs(X);
  // Whole satang while they are exact in a double; beyond that no satang.
  double Baht, Satang = 0;
  if (X < 1E13) {
    double Total = std::round(X * 100);
    Baht = std::floor(Total / 100);
    Satang = Total - Baht * 100;
  } else {
    Baht = std::round(X);
  }
  char Buffer[400];
  std::snprintf(Buffer, sizeof Buffer, "%.0f", Baht);
  std::string Out = Negative && (Baht > 0 || Satang > 0) ? std::string(ThaiMinus) : "";
  if (Baht > 0) Out += ThaiNumber(Buffer) + std::string(ThaiBaht);
  if (Satang > 0) {
    std::snprintf(Buffer, sizeof Buffer, "%.0f", Satang);
    Out += ThaiNumber(Buffer) + std::string(ThaiSatang);
  } else {
    Out += (Baht > 0 ? "" : std::string(ThaiDigits[0]) + std::string(ThaiBaht)) + std::string(ThaiExact);
  }
  return Text(std::move(Out));
}

}  // namespace

std::span<const TFunctionDef> NumberTextFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"NUMBERVALUE", 1, 3, fnNone, NumberValue},
      {"FIXED", 1, 3, fnNone, Fixed},
      {"DOLLAR", 1, 2, fnNone, Dollar},
      {"BAHTTEXT", 1, 1, fnNone, BahtText},
  };
  return Table;
}

}  // namespace Tabrino
