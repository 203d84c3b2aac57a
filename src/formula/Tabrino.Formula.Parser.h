// Formula text to a tree: a small recursive-descent parser over the token
// stream. It never raises and never returns a partial tree: any syntax fault
// turns the whole formula into one error node that evaluates to #VALUE!.
//
//   Expression := Comparison
//   Comparison := Concat   { ("=" | "<>" | "<" | ">" | "<=" | ">=") Concat }
//   Concat     := AddSub   { "&" AddSub }
//   AddSub     := MulDiv   { ("+" | "-") MulDiv }
//   MulDiv     := Power    { ("*" | "/") Power }
//   Power      := Unary    { "^" Unary }                   left-associative
//   Unary      := ("@" | "+" | "-") Unary | Primary        tighter than "^": -2^2 is 4
//   Primary    := literal | reference | Name [ "(" [Expression {"," Expression}] ")" ]
//               | "(" Expression ")" | "{" Row { ";" Row } "}"
//   Row        := Expression { "," Expression }            every row as wide as the first
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Tokenizer.h"
#include "Tabrino.Types.h"

namespace Tabrino {

enum TAstNodeKind : uint8_t {
  ankNumber,
  ankString,
  ankBool,
  ankError,
  ankCellRef,
  ankRange,
  ankSheetRef,
  ankTableRef,
  ankUnary,
  ankBinary,
  ankFunc,
  ankArrayLit
};

// The enumerator's own name ("ankBinary"), for tools and test messages.
std::string_view AstNodeKindName(TAstNodeKind Kind);

// Which coordinates of a reference are absolute ($A$1, or the row span of a
// whole column): those stay put when a tree parsed for one cell serves
// another cell whose formula differs only by where it stands.
enum TRefFlag : uint8_t { rfColAbs = 1, rfRowAbs = 2, rfCol2Abs = 4, rfRow2Abs = 8 };
// The TRefFlag bits of a reference token's text ("Sheet1!$A1:B$2", "A:A", "3:5").
uint8_t ReferenceAbsoluteFlags(std::string_view RefText);
// rfColAbs and rfRowAbs of one corner ("$A1", "B$2", "C", "7"): a column-only
// corner spans every row, a row-only corner every column, so those never move.
uint8_t CornerAbsoluteFlags(std::string_view Corner);

// One node shape for every kind; which fields mean something depends on Kind.
// Trees are immutable once parsed, so they may be shared by readers.
class TAstNode {
 public:
  TAstNodeKind Kind = ankError;
  bool BooleanValue = false;          // ankBool
  uint8_t RefFlags = 0;               // references: TRefFlag bits
  TCellErrorCode ErrorCode = ceNone;  // ankError
  int32_t Col = 0, Row = 0;           // references
  int32_t Col2 = 0, Row2 = 0;         // ankRange; for ankArrayLit the columns and rows
  double Number = 0;                  // ankNumber
  std::string Text;                   // source text of literals and references; name of ankFunc; table of ankTableRef
  std::string SheetName;              // ankRange, ankSheetRef
  std::string ColumnName;             // ankTableRef
  std::string Op;                     // ankUnary, ankBinary
  std::unique_ptr<TAstNode> Left;     // a unary node uses Left only
  std::unique_ptr<TAstNode> Right;
  std::vector<std::unique_ptr<TAstNode>> Args;  // function arguments; array elements row by row

  explicit TAstNode(TAstNodeKind AKind = ankError) : Kind(AKind) {}
};

// Deep copy of a whole tree; nullptr for nullptr. Lambdas keep their body
// beyond the tree it was parsed in.
std::unique_ptr<TAstNode> CloneAstNode(const TAstNode* Node);

class TFormulaParser {
 public:
  // The tree of Text (with or without its "="), owned by the caller; never nullptr.
  static std::unique_ptr<TAstNode> Parse(std::string_view Text);

 private:
  using TNodePtr = std::unique_ptr<TAstNode>;

  // A subtree in the making with its height, so that trees stay shallow
  // enough for the recursive walkers that consume them. A null Node means a
  // syntax fault: it travels up unchanged and fails the whole formula.
  struct TSubtree {
    TNodePtr Node;
    int32_t Height = 0;
  };

  TFormulaParser() = default;

  void Next();
  static TNodePtr MakeError(TCellErrorCode Code);
  static TSubtree MakeBinary(std::string Op, TSubtree Left, TSubtree Right);
  static TSubtree WithHeight(TNodePtr Node, int32_t Height);

  // Binary operators by how loosely they bind; the current token's level is
  // worked out once when it is read.
  enum TBinaryLevel : uint8_t { blNone, blComparison, blConcat, blAddSub, blMulDiv, blPower };
  using TLevel = TSubtree (TFormulaParser::*)();

  TSubtree ParseExpression() { return ParseComparison(); }
  TSubtree ParseComparison();
  TSubtree ParseConcat();
  TSubtree ParseAddSub();
  TSubtree ParseMulDiv();
  TSubtree ParsePower();
  TSubtree ParseBinaryLevel(TBinaryLevel Level, TLevel Operand);
  TSubtree ParseUnary();
  TSubtree ParsePrimary();
  TSubtree ParseLiteralOrReference();
  TSubtree ParseFunction();
  TSubtree ParseArrayLiteral();
  // Expressions separated by Separator, appended to Items; false on a fault.
  bool ParseList(TFormulaTokenKind Separator, std::vector<TNodePtr>& Items, int32_t& MaxHeight);

  TFormulaTokenizer FTok;
  TFormulaToken FCurrent;
  TBinaryLevel FCurrentLevel = blNone;
  int32_t FDepth = 0;  // nesting of ParseUnary, which every sub-expression passes through
};

}  // namespace Tabrino
