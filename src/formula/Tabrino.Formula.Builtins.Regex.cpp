#include "Tabrino.Formula.Builtins.Regex.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.Formula.RegexEngine.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

// No UTF-16 unit takes more than three UTF-8 bytes: past this a result cannot
// fit the text cap, so building it stops at once.
constexpr size_t MaxResultBytes = 3 * MaxTextUnits;

TFormulaArg ArgError(TCellErrorCode Code) { return TFormulaArg::FromError(Code); }

// The first argument whose first value is an error.
bool FirstError(std::span<const TFormulaArg> Args, TCellValue& Error) {
  for (const TFormulaArg& Arg : Args) {
    TCellValue First = Arg.First();
    if (First.Kind == cvkError) {
      Error = std::move(First);
      return true;
    }
  }
  return false;
}

// A number argument, truncated; Default when absent. False when it does not
// convert or is not finite.
bool IntegerArg(std::span<const TFormulaArg> Args, size_t Index, double Default, double& Number) {
  Number = Default;
  if (Index < Args.size() && !AsNumber(Args[Index].First(), Number)) return false;
  Number = std::trunc(Number);
  return std::isfinite(Number);
}

// The case argument of REGEXEXTRACT, REGEXREPLACE and REGEXTEST: 0 (the
// default) matches case, 1 ignores it; anything else fails.
bool IgnoreCaseArg(std::span<const TFormulaArg> Args, size_t Index, bool& IgnoreCase) {
  double Flag;
  if (!IntegerArg(Args, Index, 0, Flag) || (Flag != 0 && Flag != 1)) return false;
  IgnoreCase = Flag == 1;
  return true;
}

// A 1-based match number as a count; beyond Limit (more than any text can
// hold) it is clamped, which still finds no match.
size_t MatchNumber(double Number, size_t Limit) { return Number >= double(Limit) ? Limit : size_t(Number); }

// The text a match stands for: group 1 when the pattern has groups, else the
// whole match.
std::string_view Extracted(const TRegexMatch& Match) { return Match.Group(Match.GroupCount() > 0 ? 1 : 0); }

// Subject with its Which-th match (1-based) replaced, or every match for 0.
// False when matching or the replacement failed, or the result outgrew the cap.
bool ReplaceMatches(const TRegex& Regex, std::string_view Subject, std::string_view Replacement, size_t Which,
                    std::string& Out) {
  size_t Copied = 0, Index = 0;
  bool Replaced = true;
  bool Completed = Regex.ForEachMatch(Subject, [&](const TRegexMatch& Match) {
    ++Index;
    if (Which != 0 && Index != Which) return true;
    Out.append(Subject.substr(Copied, Match.Start() - std::min(Copied, Match.Start())));
    Replaced = Regex.AppendReplacement(Match, Replacement, Out) && Out.size() <= MaxResultBytes;
    Copied = std::max(Copied, Match.End());
    return Replaced && Which == 0;
  });
  Out.append(Subject.substr(Copied));
  return Completed && Replaced;
}

// The number of matches in Subject, or false when matching failed.
bool CountMatches(const TRegex& Regex, std::string_view Subject, size_t& Count) {
  Count = 0;
  return Regex.ForEachMatch(Subject, [&](const TRegexMatch&) { return ++Count, true; });
}

TCellValue ReplaceResult(const TRegex& Regex, std::string_view Subject, std::string_view Replacement, size_t Which) {
  std::string Out;
  if (!ReplaceMatches(Regex, Subject, Replacement, Which, Out)) return Err(ceValue);
  return TextResult(std::move(Out));
}

// Table rows over the routines, which take the argument array alone.
template <TCellValue (*Routine)(std::span<const TFormulaArg>)>
TCellValue ScalarRow(const TFunctionCall& Call) {
  return Routine(Call.Args);
}
template <TFormulaArg (*Routine)(std::span<const TFormulaArg>)>
TFormulaArg ArrayRow(const TFunctionCall& Call) {
  return Routine(Call.Args);
}

}  // namespace

TFormulaArg EvalRegexExtract(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 2) return ArgError(ceValue);
  if (FirstError(Args, Error)) return TFormulaArg::FromScalar(Error);
  double Mode;
  bool IgnoreCase;
  if (!IntegerArg(Args, 2, 0, Mode) || Mode < 0 || Mode > 2 || !IgnoreCaseArg(Args, 3, IgnoreCase))
    return ArgError(ceValue);
  std::shared_ptr<const TRegex> Regex = TRegex::Compile(ArgText(Args[1]), IgnoreCase);
  if (!Regex) return ArgError(ceValue);

  const std::string Subject = ArgText(Args[0]);
  std::vector<TCellValue> Cells;
  const bool Completed = Regex->ForEachMatch(Subject, [&](const TRegexMatch& Match) {
    if (Mode == 2) {
      for (size_t Group = std::min<size_t>(1, Match.GroupCount()); Group <= Match.GroupCount(); ++Group)
        Cells.push_back(Text(std::string(Match.Group(Group))));
      return false;
    }
    Cells.push_back(Text(std::string(Extracted(Match))));
    return Mode == 1 && Cells.size() <= MaxArrayCells;
  });
  if (!Completed || Cells.size() > MaxArrayCells) return ArgError(ceValue);
  if (Cells.empty()) return ArgError(ceNA);
  const auto Count = static_cast<int32_t>(Cells.size());
  if (Mode == 0) return TFormulaArg::FromScalar(std::move(Cells.front()));
  return Mode == 1 ? TFormulaArg::FromRange(std::move(Cells), Count, 1) : TFormulaArg::FromRange(std::move(Cells), 1, Count);
}

TCellValue EvalRegexReplace(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 3) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  double Occurrence;
  bool IgnoreCase;
  if (!IntegerArg(Args, 3, 0, Occurrence) || !IgnoreCaseArg(Args, 4, IgnoreCase)) return Err(ceValue);
  std::shared_ptr<const TRegex> Regex = TRegex::Compile(ArgText(Args[1]), IgnoreCase);
  if (!Regex) return Err(ceValue);

  const std::string Subject = ArgText(Args[0]);
  const size_t Limit = Subject.size() + 2;
  size_t Which = MatchNumber(std::fabs(Occurrence), Limit);
  if (Occurrence < 0) {
    // Counted from the end: the last match is -1.
    size_t Count;
    if (!CountMatches(*Regex, Subject, Count)) return Err(ceValue);
    if (Which > Count) return Text(Subject);
    Which = Count - Which + 1;
  }
  return ReplaceResult(*Regex, Subject, ArgText(Args[2]), Which);
}

TCellValue EvalRegexMatch(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 2) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  bool IgnoreCase;
  if (!IgnoreCaseArg(Args, 2, IgnoreCase)) return Err(ceValue);
  std::shared_ptr<const TRegex> Regex = TRegex::Compile(ArgText(Args[1]), IgnoreCase);
  if (!Regex) return Err(ceValue);
  bool Found = false;
  if (!Regex->ForEachMatch(ArgText(Args[0]), [&](const TRegexMatch&) { return Found = true, false; }))
    return Err(ceValue);
  return Bool(Found);
}

TCellValue EvalRegex(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 2) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  std::shared_ptr<const TRegex> Regex = TRegex::Compile(ArgText(Args[1]), false);
  if (!Regex) return Err(ceValue);

  const std::string Subject = ArgText(Args[0]);
  // An omitted argument (an empty value) counts as absent; an empty text is a
  // replacement that deletes.
  const bool Replacing = Args.size() >= 3 && Args[2].First().Kind != cvkEmpty;
  bool Global = false;
  size_t Which = 1;
  if (Args.size() >= 4 && Args[3].First().Kind != cvkEmpty) {
    double Occurrence;
    if (Args[3].First().Kind == cvkText) {
      if (Args[3].First().Text != "g") return Err(ceValue);
      Global = true;
    } else if (!IntegerArg(Args, 3, 1, Occurrence) || Occurrence < 0) {
      return Err(ceValue);
    } else if (Occurrence == 0) {
      return Text(Subject);
    } else {
      Which = MatchNumber(Occurrence, Subject.size() + 2);
    }
  }
  if (Replacing) return ReplaceResult(*Regex, Subject, ArgText(Args[2]), Global ? 0 : Which);

  std::string Match;
  size_t Index = 0;
  bool Found = false;
  if (!Regex->ForEachMatch(Subject, [&](const TRegexMatch& M) {
        if (++Index < Which) return true;
        Match = std::string(M.Group(0));
        return Found = true, false;
      }))
    return Err(ceValue);
  return Found ? Text(std::move(Match)) : Err(ceNA);
}

TCellValue EvalIsEmail(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.empty()) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  const std::string Address = ArgText(Args[0]);
  const size_t At = Address.find('@');
  if (Address.find(' ') != std::string::npos || At == std::string::npos) return Bool(false);
  if (Address.find('@', At + 1) != std::string::npos || At == 0 || At + 1 == Address.size()) return Bool(false);
  return Bool(Address.find('.', At + 1) != std::string::npos);
}

TCellValue EvalIsUrl(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.empty()) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  const std::string Text = ArgText(Args[0]);
  const std::string_view Url = TrimBlanks(Text);
  if (Url.empty() || Url.find(' ') != std::string_view::npos) return Bool(false);
  if (EqualsNoCase(Url.substr(0, 7), "http://") || EqualsNoCase(Url.substr(0, 8), "https://")) return Bool(true);
  return Bool(Url.find('.') != std::string_view::npos);
}

TCellValue EvalJoin(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 2) return Err(ceValue);
  if (FirstError(Args, Error)) return Error;
  const std::string Delimiter = ArgText(Args[0]);
  std::string Joined;
  bool Any = false;
  for (const TFormulaArg& Arg : Args.subspan(1)) {
    for (const TCellValue& Value : ArgValues(Arg)) {
      if (Value.Kind == cvkError) return Value;
      std::string Part = Value.ToDisplayString();
      if (Part.empty()) continue;
      if (Any) Joined += Delimiter;
      Joined += Part;
      Any = true;
      if (Joined.size() > MaxResultBytes) return Err(ceValue);
    }
  }
  return TextResult(std::move(Joined));
}

TFormulaArg EvalArrayConstrain(std::span<const TFormulaArg> Args) {
  TCellValue Error;
  if (Args.size() < 3) return ArgError(ceValue);
  if (FirstError(Args, Error)) return TFormulaArg::FromScalar(Error);
  double Rows, Cols;
  if (!IntegerArg(Args, 1, 0, Rows) || !IntegerArg(Args, 2, 0, Cols) || Rows < 1 || Cols < 1)
    return ArgError(ceValue);
  const TFormulaArg Range = AsRangeArg(Args[0]);
  const auto RowCount = static_cast<int32_t>(std::min(Rows, double(Range.RowCount)));
  const auto ColCount = static_cast<int32_t>(std::min(Cols, double(Range.ColCount)));
  if (RowCount < 1 || ColCount < 1) return ArgError(ceValue);
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(RowCount) * size_t(ColCount));
  for (int32_t Row = 0; Row < RowCount; ++Row)
    for (int32_t Col = 0; Col < ColCount; ++Col) Cells.push_back(Range.CellAt(Row, Col));
  return TFormulaArg::FromRange(std::move(Cells), RowCount, ColCount);
}

std::span<const TFunctionDef> RegexFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"REGEXEXTRACT", 2, 4, fnReturnsArray, nullptr, ArrayRow<EvalRegexExtract>},
      {"REGEXREPLACE", 3, 5, fnNone, ScalarRow<EvalRegexReplace>},
      {"REGEXMATCH", 2, 3, fnNone, ScalarRow<EvalRegexMatch>},
      {"REGEXTEST", 2, 3, fnNone, ScalarRow<EvalRegexMatch>},
      {"REGEX", 2, 4, fnNone, ScalarRow<EvalRegex>},
      {"ISEMAIL", 1, 1, fnNone, ScalarRow<EvalIsEmail>},
      {"ISURL", 1, 1, fnNone, ScalarRow<EvalIsUrl>},
      {"JOIN", 2, -1, fnNone, ScalarRow<EvalJoin>},
      {"ARRAY_CONSTRAIN", 3, 3, fnReturnsArray, nullptr, ArrayRow<EvalArrayConstrain>},
  };
  return Table;
}

}  // namespace Tabrino
