#include "Tabrino.Formula.Parser.h"

#include <algorithm>
#include <utility>

namespace Tabrino {
namespace {

// Parentheses, calls, array literals and prefix signs nest through ParseUnary;
// deeper than this is refused so that no text can exhaust the parser's stack.
constexpr int32_t MaxNestingDepth = 256;
// Left-associative chains deepen the tree without nesting. This bound covers
// every chain that fits a formula of 8192 characters and keeps the recursive
// walkers of the tree (evaluation, dependency collection, cloning) safe.
constexpr int32_t MaxTreeHeight = 4096;

// Restores the nesting count however the level is left.
class TNestingGuard {
 public:
  explicit TNestingGuard(int32_t& Depth) : FDepth(++Depth) {}
  ~TNestingGuard() { --FDepth; }
  TNestingGuard(const TNestingGuard&) = delete;
  TNestingGuard& operator=(const TNestingGuard&) = delete;
  bool TooDeep() const { return FDepth > MaxNestingDepth; }

 private:
  int32_t& FDepth;
};

}  // namespace

std::string_view AstNodeKindName(TAstNodeKind Kind) {
  static constexpr std::string_view Names[] = {"ankNumber",  "ankString", "ankBool",     "ankError",
                                               "ankCellRef", "ankRange",  "ankSheetRef", "ankTableRef",
                                               "ankUnary",   "ankBinary", "ankFunc",     "ankArrayLit"};
  return Kind < std::size(Names) ? Names[Kind] : "ank?";
}

std::unique_ptr<TAstNode> CloneAstNode(const TAstNode* Node) {
  if (!Node) return nullptr;
  auto Copy = std::make_unique<TAstNode>(Node->Kind);
  Copy->BooleanValue = Node->BooleanValue;
  Copy->RefFlags = Node->RefFlags;
  Copy->ErrorCode = Node->ErrorCode;
  Copy->Col = Node->Col;
  Copy->Row = Node->Row;
  Copy->Col2 = Node->Col2;
  Copy->Row2 = Node->Row2;
  Copy->Number = Node->Number;
  Copy->Text = Node->Text;
  Copy->SheetName = Node->SheetName;
  Copy->ColumnName = Node->ColumnName;
  Copy->Op = Node->Op;
  Copy->Left = CloneAstNode(Node->Left.get());
  Copy->Right = CloneAstNode(Node->Right.get());
  Copy->Args.reserve(Node->Args.size());
  for (const auto& Arg : Node->Args) Copy->Args.push_back(CloneAstNode(Arg.get()));
  return Copy;
}

std::unique_ptr<TAstNode> TFormulaParser::Parse(std::string_view Text) {
  TFormulaParser Parser;
  Parser.FTok.SetFormula(Text);
  Parser.Next();
  if (Parser.FCurrent.Kind == ftEnd) return MakeError(ceValue);
  TSubtree Root = Parser.ParseExpression();
  // A token left over means the text was not one expression: nothing of it survives.
  if (!Root.Node || Parser.FCurrent.Kind != ftEnd) return MakeError(ceValue);
  return std::move(Root.Node);
}

void TFormulaParser::Next() {
  FCurrent = FTok.NextToken();
  FCurrentLevel = blNone;
  if (FCurrent.Kind != ftOperator) return;
  switch (FCurrent.Text[0]) {
    case '=':
    case '<':
    case '>': FCurrentLevel = blComparison; break;
    case '&': FCurrentLevel = blConcat; break;
    case '+':
    case '-': FCurrentLevel = blAddSub; break;
    case '*':
    case '/': FCurrentLevel = blMulDiv; break;
    case '^': FCurrentLevel = blPower; break;
    default: break;  // "@" is prefix only
  }
}

std::unique_ptr<TAstNode> TFormulaParser::MakeError(TCellErrorCode Code) {
  auto Node = std::make_unique<TAstNode>(ankError);
  Node->ErrorCode = Code;
  return Node;
}

TFormulaParser::TSubtree TFormulaParser::WithHeight(TNodePtr Node, int32_t Height) {
  if (Height > MaxTreeHeight) return {};
  return {std::move(Node), Height};
}

TFormulaParser::TSubtree TFormulaParser::MakeBinary(std::string Op, TSubtree Left, TSubtree Right) {
  auto Node = std::make_unique<TAstNode>(ankBinary);
  Node->Op = std::move(Op);
  Node->Left = std::move(Left.Node);
  Node->Right = std::move(Right.Node);
  return WithHeight(std::move(Node), std::max(Left.Height, Right.Height) + 1);
}

TFormulaParser::TSubtree TFormulaParser::ParseComparison() {
  return ParseBinaryLevel(blComparison, &TFormulaParser::ParseConcat);
}

TFormulaParser::TSubtree TFormulaParser::ParseConcat() {
  return ParseBinaryLevel(blConcat, &TFormulaParser::ParseAddSub);
}

TFormulaParser::TSubtree TFormulaParser::ParseAddSub() {
  return ParseBinaryLevel(blAddSub, &TFormulaParser::ParseMulDiv);
}

TFormulaParser::TSubtree TFormulaParser::ParseMulDiv() {
  return ParseBinaryLevel(blMulDiv, &TFormulaParser::ParsePower);
}

// Left-associative like every level: 2^3^2 is 64. Both operands are unary so
// that 2^-1 reads.
TFormulaParser::TSubtree TFormulaParser::ParsePower() {
  return ParseBinaryLevel(blPower, &TFormulaParser::ParseUnary);
}

TFormulaParser::TSubtree TFormulaParser::ParseBinaryLevel(TBinaryLevel Level, TLevel Operand) {
  TSubtree Left = (this->*Operand)();
  while (Left.Node && FCurrentLevel == Level) {
    std::string Op = std::move(FCurrent.Text);
    Next();
    TSubtree Right = (this->*Operand)();
    if (!Right.Node) return {};
    Left = MakeBinary(std::move(Op), std::move(Left), std::move(Right));
  }
  return Left;
}

// Prefix signs bind tighter than "^" on purpose: -2^2 is 4. A "+" stays in the tree.
TFormulaParser::TSubtree TFormulaParser::ParseUnary() {
  TNestingGuard Nesting(FDepth);
  if (Nesting.TooDeep()) return {};
  bool PrefixSign =
      FCurrent.Kind == ftOperator && (FCurrent.Text == "@" || FCurrent.Text == "+" || FCurrent.Text == "-");
  if (!PrefixSign) return ParsePrimary();
  auto Node = std::make_unique<TAstNode>(ankUnary);
  Node->Op = std::move(FCurrent.Text);
  Next();
  TSubtree Operand = ParseUnary();
  if (!Operand.Node) return {};
  Node->Left = std::move(Operand.Node);
  return WithHeight(std::move(Node), Operand.Height + 1);
}

TFormulaParser::TSubtree TFormulaParser::ParsePrimary() {
  switch (FCurrent.Kind) {
    case ftNumber:
    case ftString:
    case ftBoolean:
    case ftCellRef:
    case ftRangeRef:
    case ftSheetRef:
    case ftTableRef: return ParseLiteralOrReference();
    case ftFunction: return ParseFunction();
    case ftLBrace: return ParseArrayLiteral();
    case ftLParen: {
      Next();
      TSubtree Inner = ParseExpression();
      if (!Inner.Node || FCurrent.Kind != ftRParen) return {};
      Next();
      return Inner;  // parentheses leave no node of their own
    }
    default: return {};  // among them "," and ")" where an argument was left out: IF(A1,,2)
  }
}

uint8_t CornerAbsoluteFlags(std::string_view Corner) {
  // One pass, no searches: every shape key asks this of each reference.
  bool HasLetter = false, HasDigit = false, DollarBeforeDigits = false;
  char Before = '\0';
  for (char C : Corner) {
    if (C >= '0' && C <= '9') {
      if (!HasDigit) DollarBeforeDigits = Before == '$';
      HasDigit = true;
    } else if (C != '$') {
      HasLetter = true;
    }
    Before = C;
  }
  const bool ColAbs = !HasLetter || (!Corner.empty() && Corner.front() == '$');
  const bool RowAbs = !HasDigit || DollarBeforeDigits;
  return uint8_t((ColAbs ? rfColAbs : 0) | (RowAbs ? rfRowAbs : 0));
}

uint8_t ReferenceAbsoluteFlags(std::string_view RefText) {
  if (size_t Bang = RefText.rfind('!'); Bang != std::string_view::npos) RefText.remove_prefix(Bang + 1);
  const size_t Colon = RefText.find(':');
  if (Colon == std::string_view::npos) return CornerAbsoluteFlags(RefText);
  return uint8_t(CornerAbsoluteFlags(RefText.substr(0, Colon)) | (CornerAbsoluteFlags(RefText.substr(Colon + 1)) << 2));
}

TFormulaParser::TSubtree TFormulaParser::ParseLiteralOrReference() {
  TAstNodeKind Kind;
  switch (FCurrent.Kind) {
    case ftNumber: Kind = ankNumber; break;
    case ftString: Kind = ankString; break;
    case ftBoolean: Kind = ankBool; break;
    case ftCellRef: Kind = ankCellRef; break;
    case ftRangeRef: Kind = ankRange; break;
    case ftSheetRef: Kind = ankSheetRef; break;
    default: Kind = ankTableRef; break;
  }
  auto Node = std::make_unique<TAstNode>(Kind);
  if (Kind == ankNumber) Node->Number = FCurrent.Number;
  if (Kind == ankBool) Node->BooleanValue = FCurrent.Text == "TRUE";  // the tokenizer upper-cased it
  if (Kind == ankCellRef || Kind == ankRange || Kind == ankSheetRef)
    Node->RefFlags = ReferenceAbsoluteFlags(FCurrent.Text);
  Node->Col = FCurrent.Col;
  Node->Row = FCurrent.Row;
  Node->Col2 = FCurrent.Col2;
  Node->Row2 = FCurrent.Row2;
  Node->Text = std::move(FCurrent.Text);
  Node->SheetName = std::move(FCurrent.SheetName);
  Node->ColumnName = std::move(FCurrent.ColumnName);
  Next();
  return {std::move(Node), 1};
}

TFormulaParser::TSubtree TFormulaParser::ParseFunction() {
  auto Node = std::make_unique<TAstNode>(ankFunc);
  Node->Text = std::move(FCurrent.Text);
  Next();
  if (FCurrent.Kind != ftLParen) return {std::move(Node), 1};  // a name: defined name or LET variable
  Next();
  int32_t ArgsHeight = 0;
  // An omitted argument (F(1,) or IF(A1,,2)) is no argument: the call fails.
  if (FCurrent.Kind != ftRParen && !ParseList(ftComma, Node->Args, ArgsHeight)) return {};
  if (FCurrent.Kind != ftRParen) return {};
  Next();
  return WithHeight(std::move(Node), ArgsHeight + 1);
}

TFormulaParser::TSubtree TFormulaParser::ParseArrayLiteral() {
  auto Node = std::make_unique<TAstNode>(ankArrayLit);
  Next();
  int32_t ElementsHeight = 0;
  if (FCurrent.Kind != ftRBrace) {
    for (;;) {
      size_t RowStart = Node->Args.size();
      if (!ParseList(ftComma, Node->Args, ElementsHeight)) return {};
      auto Width = static_cast<int32_t>(Node->Args.size() - RowStart);
      if (Node->Row2 == 0) Node->Col2 = Width;  // the first row fixes the width
      if (Width != Node->Col2) return {};
      ++Node->Row2;
      if (FCurrent.Kind == ftRBrace) break;
      if (FCurrent.Kind != ftSemicolon) return {};
      Next();
    }
  }
  Next();
  return WithHeight(std::move(Node), ElementsHeight + 1);
}

bool TFormulaParser::ParseList(TFormulaTokenKind Separator, std::vector<TNodePtr>& Items, int32_t& MaxHeight) {
  for (;;) {
    TSubtree Item = ParseExpression();
    if (!Item.Node) return false;
    MaxHeight = std::max(MaxHeight, Item.Height);
    Items.push_back(std::move(Item.Node));
    if (FCurrent.Kind != Separator) return true;
    Next();
  }
}

}  // namespace Tabrino
