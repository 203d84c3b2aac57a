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

}  // namespace

std::string TFormulaTreeCache::ShapeKey(std::string_view Text, int32_t HostCol, int32_t HostRow) {
  std::string Key;
  Key.reserve(Text.size() * 2);
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
