// Formula text to tokens. One notation only: A1 references with `$` markers,
// plus the dotted sheet form (`Sheet2.A1`, `$'My sheet'.A1`) that ODS text
// uses. Every token carries its span in the text as given, counted in UTF-16
// units, so structural edits can rewrite references in place and editors can
// colour them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tabrino {

enum TFormulaTokenKind : uint8_t {
  ftEnd,
  ftNumber,
  ftString,
  ftBoolean,
  ftError,
  ftCellRef,
  ftRangeRef,
  ftFunction,
  ftOperator,
  ftLParen,
  ftRParen,
  ftComma,
  ftColon,
  ftSheetRef,
  ftTableRef,
  ftLBrace,
  ftRBrace,
  ftSemicolon
};

// The tokenizer's character classes, for scanners that must agree with it.
// Only ASCII counts: a character beyond ASCII never starts or continues a
// word unless it stands inside quotes.
namespace FormulaChars {
inline bool IsDigit(char C) {
  return C >= '0' && C <= '9';
}
inline bool IsLetter(char C) {
  return (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z');
}
// What a word (a reference, function or name) is made of.
inline bool IsWordChar(char C) {
  return C == '$' || C == '_' || IsDigit(C) || IsLetter(C);
}
// What the second corner of a range is made of.
inline bool IsRefChar(char C) {
  return C == '$' || IsDigit(C) || IsLetter(C);
}
}  // namespace FormulaChars

// The enumerator's own name ("ftCellRef"), for tools and test messages.
std::string_view FormulaTokenKindName(TFormulaTokenKind Kind);

struct TFormulaToken {
  TFormulaTokenKind Kind = ftEnd;
  // References: as written, sheet part joined by "!", `$` kept. Strings: the
  // value with doubled quotes reduced. Functions and names: upper-cased.
  // Table references: the table name (empty for a bare `[Col]`).
  std::string Text;
  double Number = 0;  // ftNumber; 1 or 0 for ftBoolean
  int32_t Col = 0;
  int32_t Row = 0;
  int32_t Col2 = 0;  // second corner of ftRangeRef
  int32_t Row2 = 0;
  std::string SheetName;   // unquoted
  std::string ColumnName;  // ftTableRef
  int32_t StartIndex = 0;  // UTF-16 units into the text as given, a stripped "=" counted
  int32_t Length = 0;      // UTF-16 units
};

class TFormulaTokenizer {
 public:
  // Takes the text with or without its leading "=".
  void SetFormula(std::string_view Text);
  // The next token; ftEnd, every time, once the text is used up.
  TFormulaToken NextToken();

  // Shape only: one to three letters then at least one digit, `$` ignored.
  static bool LooksLikeCellRef(std::string_view Text);
  // True for a cell-shaped text whose corner lies inside the sheet; Col and
  // Row are 0 otherwise.
  static bool ParseCellRefText(std::string_view Text, int32_t& Col, int32_t& Row);

 private:
  using TCharClass = bool (*)(char);

  char Peek() const { return PeekAt(0); }
  char PeekAt(size_t Delta) const { return FPos + Delta < FInput.size() ? FInput[FPos + Delta] : '\0'; }
  bool AtEnd() const { return FPos >= FInput.size(); }
  bool SkipSpaces();
  std::string_view ReadWhile(TCharClass InClass);
  std::string_view ReadIdentifier();

  void ReadNumber(TFormulaToken& Token);
  void ReadString(TFormulaToken& Token);
  void ReadSymbol(TFormulaToken& Token);
  void ReadQuoted(char Quote, std::string& Out);
  std::string ReadQuotedSheetName();
  std::string ReadTableColumn();
  void ReadCellOrIdentOrFunc(TFormulaToken& Token);
  bool TryReadDottedFunction(std::string_view Word, TFormulaToken& Token);
  void ReadSheetQualified(TFormulaToken& Token, std::string Sheet, std::string_view Word);
  void ReadUnqualified(TFormulaToken& Token, std::string_view Word);

  void AnnotateSpan(TFormulaToken& Token);
  int32_t UnitsBefore(size_t BytePos);

  std::string FInput;        // without the leading "="
  size_t FPos = 0;           // byte index of the next character
  size_t FEqualsOffset = 0;  // 1 when an "=" was stripped
  size_t FTokenStart = 0;    // FPos where the current token began
  // UTF-16 units counted so far up to byte FUnitsPos; spans only move forward,
  // so counting resumes where it stopped instead of rescanning the text.
  size_t FUnitsPos = 0;
  int32_t FUnits = 0;
};

// All tokens of Text up to, and without, ftEnd.
std::vector<TFormulaToken> TokenizeFormula(std::string_view Text);

}  // namespace Tabrino
