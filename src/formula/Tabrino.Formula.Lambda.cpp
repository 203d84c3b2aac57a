#include "Tabrino.Formula.Lambda.h"

#include <algorithm>

#include "Tabrino.TextUtil.h"

namespace Tabrino {

const std::string& TLambdaClosure::GetParamName(int32_t Index) const {
  static const std::string None;
  return Index >= 0 && Index < GetParamCount() ? FParamNames[size_t(Index)] : None;
}

bool IsLetIdentifier(const TAstNode* Node) {
  return Node && Node->Kind == ankFunc && Node->Args.empty() && !Node->Text.empty();
}

std::string LetIdentifierName(const TAstNode* Node) {
  return IsLetIdentifier(Node) ? LocalNameKey(Node->Text) : std::string();
}

std::string LocalNameKey(std::string_view Name) {
  // Names as the parser hands them over are mostly plain already; they are
  // looked up on every read of a parameter, so skip the rewrite then.
  const bool Plain = !Name.empty() && Name.front() > ' ' && Name.back() > ' ' &&
                     std::none_of(Name.begin(), Name.end(), [](char C) { return C == '$' || (C >= 'a' && C <= 'z'); });
  if (Plain) return std::string(Name);
  return UpperAscii(ReplaceAll(TrimBlanks(Name), "$", ""));
}

TLambdaForm LambdaFormOf(std::string_view Name) {
  struct TEntry {
    std::string_view Name;
    TLambdaForm Form;
  };
  static constexpr TEntry Forms[] = {{"LET", lfLet},       {"LAMBDA", lfLambda}, {"ISOMITTED", lfIsOmitted},
                                     {"MAP", lfMap},       {"BYROW", lfByRow},   {"BYCOL", lfByCol},
                                     {"REDUCE", lfReduce}, {"SCAN", lfScan},     {"MAKEARRAY", lfMakeArray}};
  for (const TEntry& Entry : Forms)
    if (Entry.Name == Name) return Entry.Form;
  return lfNone;
}

int32_t LambdaArgIndex(TLambdaForm Form) {
  switch (Form) {
    case lfMap:
    case lfByRow:
    case lfByCol:
    case lfReduce:
    case lfScan: return 1;
    case lfMakeArray: return 2;
    default: return -1;
  }
}

}  // namespace Tabrino
