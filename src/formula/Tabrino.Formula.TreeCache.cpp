#include "Tabrino.Formula.TreeCache.h"

#include <cstring>

#include "Tabrino.Formula.Tokenizer.h"

namespace Tabrino {

namespace {

void AppendInt(std::string& Key, int32_t Value) {
  char Bytes[sizeof Value];
  std::memcpy(Bytes, &Value, sizeof Value);
  Key.append(Bytes, sizeof Value);
}

// Length first, so that no text can imitate the next field.
void AppendText(std::string& Key, const std::string& Text) {
  AppendInt(Key, int32_t(Text.size()));
  Key += Text;
}

// An absolute coordinate as itself, a relative one as its offset from the
// host; the flag keeps the two apart.
void AppendCoordinate(std::string& Key, int32_t Value, bool Absolute, int32_t Host) {
  Key += Absolute ? 'a' : 'r';
  AppendInt(Key, Absolute ? Value : Value - Host);
}

bool IsReference(TFormulaTokenKind Kind) {
  return Kind == ftCellRef || Kind == ftRangeRef || Kind == ftSheetRef;
}

// ---- the quick key --------------------------------------------------------------
//
// Most formulas are operators, numbers, function names and plain A1
// references. For those a key is built in one pass over the characters: the
// text itself, upper-cased, with each reference replaced by its offsets. The
// scan follows the tokenizer's rules for where words start and end and what a
// word is, so equal quick keys mean equal tokens up to the references' places.
// Whatever it does not follow (strings, sheet names, dotted names, tables,
// whole rows or columns, error tokens, non-ASCII text) makes it give up, and
// the text is keyed by its tokens instead. The two kinds of key start with
// different bytes: a token key opens with a token kind, never 0xFF.

constexpr char QuickKeyMark = '\xFF';
constexpr char CellMark = '\xFE';
constexpr char RangeMark = '\xFD';

using namespace FormulaChars;

class TQuickKeyScan {
 public:
  TQuickKeyScan(std::string_view Text, int32_t HostCol, int32_t HostRow, std::string& Key)
      : FText(Text), FHostCol(HostCol), FHostRow(HostRow), FKey(Key) {}

  bool Run() {
    if (!FText.empty() && FText.front() == '=') FText.remove_prefix(1);
    FKey += QuickKeyMark;
    while (FPos < FText.size()) {
      const char C = FText[FPos];
      if (C == '$' || C == '_' || IsLetter(C)) {
        if (!Word()) return false;
      } else if (IsDigit(C) || (C == '.' && IsDigit(At(FPos + 1)))) {
        while (IsDigit(At(FPos)) || At(FPos) == '.') FKey += FText[FPos++];
      } else if (std::string_view(" :;(),{}=&*+-/^@<>").find(C) != std::string_view::npos) {
        FKey += C;
        ++FPos;
      } else {
        return false;
      }
    }
    return true;
  }

 private:
  char At(size_t Pos) const { return Pos < FText.size() ? FText[Pos] : '\0'; }
  size_t SkipSpaces(size_t Pos) const {
    while (At(Pos) == ' ') ++Pos;
    return Pos;
  }
  std::string_view ReadRun(size_t& Pos, bool (*InRun)(char)) const {
    const size_t Start = Pos;
    while (InRun(At(Pos))) ++Pos;
    return FText.substr(Start, Pos - Start);
  }

  // A word at FPos: a function or name (kept, upper-cased), a cell, or a
  // range of two cells; false for any other kind of word.
  bool Word() {
    size_t End = FPos;
    const std::string_view First = ReadRun(End, IsWordChar);
    const char Next = At(End);
    if (Next == '!' || Next == '.' || Next == '\'' || First == "$") return false;
    const size_t AfterSpaces = SkipSpaces(End);
    int32_t Col, Row;
    if (At(AfterSpaces) == '(' || !TFormulaTokenizer::ParseCellRefText(First, Col, Row)) {
      // A name before ":" or "[" would be a whole row, column or table.
      if (At(AfterSpaces) == ':' || At(AfterSpaces) == '[') return false;
      for (char C : First) FKey += C >= 'a' && C <= 'z' ? char(C - 'a' + 'A') : C;
      FPos = End;
      return true;
    }
    if (At(AfterSpaces) == ':') {
      size_t SecondEnd = SkipSpaces(AfterSpaces + 1);
      const std::string_view Second = ReadRun(SecondEnd, IsRefChar);
      int32_t Col2, Row2;
      if (!TFormulaTokenizer::ParseCellRefText(Second, Col2, Row2)) return false;
      const uint8_t Flags = CornerAbsoluteFlags(First) | uint8_t(CornerAbsoluteFlags(Second) << 2);
      FKey += RangeMark;
      FKey += char(Flags);
      AppendCorner(Col, Row, Flags & rfColAbs, Flags & rfRowAbs);
      AppendCorner(Col2, Row2, Flags & rfCol2Abs, Flags & rfRow2Abs);
      FPos = SecondEnd;
      return true;
    }
    const uint8_t Flags = CornerAbsoluteFlags(First);
    FKey += CellMark;
    FKey += char(Flags);
    AppendCorner(Col, Row, Flags & rfColAbs, Flags & rfRowAbs);
    FPos = End;
    return true;
  }

  void AppendCorner(int32_t Col, int32_t Row, bool ColAbs, bool RowAbs) {
    AppendInt(FKey, ColAbs ? Col : Col - FHostCol);
    AppendInt(FKey, RowAbs ? Row : Row - FHostRow);
  }

  std::string_view FText;
  size_t FPos = 0;
  int32_t FHostCol, FHostRow;
  std::string& FKey;
};

}  // namespace

std::string TFormulaTreeCache::ShapeKey(std::string_view Text, int32_t HostCol, int32_t HostRow) {
  std::string Key;
  Key.reserve(Text.size() * 2);
  if (TQuickKeyScan(Text, HostCol, HostRow, Key).Run()) return Key;
  Key.clear();
  // A reference the tokenizer could not place (a corner of 0) has no offset
  // to keep; such a formula gets a key of its own cell.
  bool Unplaced = false;
  TFormulaTokenizer Tokenizer;
  Tokenizer.SetFormula(Text);
  for (;;) {
    TFormulaToken Token = Tokenizer.NextToken();
    Key += char(Token.Kind);
    if (Token.Kind == ftEnd) break;
    AppendText(Key, Token.SheetName);
    AppendText(Key, Token.ColumnName);
    if (!IsReference(Token.Kind)) {
      AppendText(Key, Token.Text);
      continue;
    }
    Unplaced =
        Unplaced || Token.Col < 1 || Token.Row < 1 || (Token.Kind == ftRangeRef && (Token.Col2 < 1 || Token.Row2 < 1));
    const uint8_t Flags = ReferenceAbsoluteFlags(Token.Text);
    AppendCoordinate(Key, Token.Col, Flags & rfColAbs, HostCol);
    AppendCoordinate(Key, Token.Row, Flags & rfRowAbs, HostRow);
    if (Token.Kind == ftRangeRef) {
      AppendCoordinate(Key, Token.Col2, Flags & rfCol2Abs, HostCol);
      AppendCoordinate(Key, Token.Row2, Flags & rfRow2Abs, HostRow);
    }
  }
  if (Unplaced) {
    AppendInt(Key, HostCol);
    AppendInt(Key, HostRow);
  }
  return Key;
}

TSharedTree TFormulaTreeCache::Get(std::string_view Text, int32_t HostCol, int32_t HostRow) {
  std::string Key = ShapeKey(Text, HostCol, HostRow);
  if (auto It = FTrees.find(Key); It != FTrees.end())
    return {It->second.Tree, HostCol - It->second.ParsedCol, HostRow - It->second.ParsedRow};
  std::shared_ptr<const TAstNode> Tree = TFormulaParser::Parse(Text);
  // A workbook of mostly distinct shapes would grow the cache without bound;
  // starting over keeps memory flat and costs only re-parses.
  if (FTrees.size() >= FCapacity) FTrees.clear();
  FTrees.emplace(std::move(Key), TEntry{Tree, HostCol, HostRow});
  return {Tree, 0, 0};
}

}  // namespace Tabrino
