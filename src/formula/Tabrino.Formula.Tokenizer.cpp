#include "Tabrino.Formula.Tokenizer.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "Tabrino.Types.h"
#include "Tabrino.Utf16.h"

namespace Tabrino {
namespace {

using namespace FormulaChars;

bool IsIdentChar(char C) {
  return C == '_' || IsDigit(C) || IsLetter(C);
}
bool IsIdentStart(char C) {
  return C == '_' || IsLetter(C);
}

char UpperAscii(char C) {
  return C >= 'a' && C <= 'z' ? static_cast<char>(C - 'a' + 'A') : C;
}

std::string UpperAscii(std::string_view Text, bool DropDollars = false) {
  std::string Out;
  Out.reserve(Text.size());
  for (char C : Text)
    if (!DropDollars || C != '$') Out += UpperAscii(C);
  return Out;
}

bool EqualsIgnoreCase(std::string_view A, std::string_view B) {
  return A.size() == B.size() &&
         std::equal(A.begin(), A.end(), B.begin(), [](char X, char Y) { return UpperAscii(X) == UpperAscii(Y); });
}

std::string_view WithoutLeadingDollar(std::string_view Word) {
  if (!Word.empty() && Word.front() == '$') Word.remove_prefix(1);
  return Word;
}

std::string_view TrimControls(std::string_view Text) {
  while (!Text.empty() && static_cast<unsigned char>(Text.front()) <= ' ') Text.remove_prefix(1);
  while (!Text.empty() && static_cast<unsigned char>(Text.back()) <= ' ') Text.remove_suffix(1);
  return Text;
}

// The column of a column-only text such as `$C` or `AB`, else 0.
int32_t ColumnOnlyIndex(std::string_view Text) {
  std::array<char, 3> Letters;
  size_t Count = 0;
  for (char C : Text) {
    if (C == '$') continue;
    if (!IsLetter(C) || Count == Letters.size()) return 0;
    Letters[Count++] = C;
  }
  return LettersToCol(std::string_view(Letters.data(), Count));
}

// The row of a row-only text such as `$7`, else 0.
int32_t RowOnlyIndex(std::string_view Text) {
  int32_t Row = 0;
  bool SeenDigit = false;
  for (char C : Text) {
    if (C == '$') continue;
    if (!IsDigit(C)) return 0;
    SeenDigit = true;
    Row = Row * 10 + (C - '0');
    if (Row > MaxRow) return 0;
  }
  return SeenDigit ? Row : 0;
}

// `A:C` and `3:7`: whole columns or whole rows; both corners must be of one sort.
bool SetLineRange(TFormulaToken& Token, std::string_view First, std::string_view Second) {
  if (int32_t C1 = ColumnOnlyIndex(First), C2 = ColumnOnlyIndex(Second); C1 > 0 && C2 > 0) {
    Token.Col = C1;
    Token.Col2 = C2;
    Token.Row = 1;
    Token.Row2 = MaxRow;
    return true;
  }
  if (int32_t R1 = RowOnlyIndex(First), R2 = RowOnlyIndex(Second); R1 > 0 && R2 > 0) {
    Token.Col = 1;
    Token.Col2 = MaxCol;
    Token.Row = R1;
    Token.Row2 = R2;
    return true;
  }
  return false;
}

// The run is digits and dots: one dot is the decimal point, a second one makes
// the text no number at all, which reads as 0 like any failed conversion.
double NumberRunValue(std::string_view Run) {
  if (std::count(Run.begin(), Run.end(), '.') > 1) return 0;
  double Value = 0;
  auto [End, Error] = std::from_chars(Run.data(), Run.data() + Run.size(), Value, std::chars_format::fixed);
  return Error == std::errc() && End == Run.data() + Run.size() ? Value : 0;
}

}  // namespace

std::string_view FormulaTokenKindName(TFormulaTokenKind Kind) {
  static constexpr std::string_view Names[] = {"ftEnd",     "ftNumber",   "ftString",   "ftBoolean",  "ftError",
                                               "ftCellRef", "ftRangeRef", "ftFunction", "ftOperator", "ftLParen",
                                               "ftRParen",  "ftComma",    "ftColon",    "ftSheetRef", "ftTableRef",
                                               "ftLBrace",  "ftRBrace",   "ftSemicolon"};
  return Kind < std::size(Names) ? Names[Kind] : "ft?";
}

void TFormulaTokenizer::SetFormula(std::string_view Text) {
  FEqualsOffset = !Text.empty() && Text.front() == '=' ? 1 : 0;
  FInput.assign(Text.substr(FEqualsOffset));
  FPos = 0;
  FTokenStart = 0;
  FUnitsPos = 0;
  FUnits = 0;
}

TFormulaToken TFormulaTokenizer::NextToken() {
  TFormulaToken Token;
  // U+0020 only: a tab or a line break is no white space here and reads as an error token.
  bool HasMore = SkipSpaces();
  FTokenStart = FPos;
  if (HasMore) {
    char C = Peek();
    if (IsDigit(C) || (C == '.' && IsDigit(PeekAt(1)))) {
      ReadNumber(Token);
    } else if (C == '$' || C == '\'' || IsIdentStart(C)) {
      ReadCellOrIdentOrFunc(Token);
    } else if (C == '[') {
      ++FPos;
      Token.ColumnName = ReadTableColumn();
      Token.Kind = Token.ColumnName.empty() ? ftError : ftTableRef;
      if (Token.Kind == ftError) Token.Text = "[";
    } else {
      ReadSymbol(Token);
    }
  }
  AnnotateSpan(Token);
  return Token;
}

bool TFormulaTokenizer::SkipSpaces() {
  while (Peek() == ' ') ++FPos;
  return !AtEnd();
}

std::string_view TFormulaTokenizer::ReadWhile(TCharClass InClass) {
  size_t Start = FPos;
  while (!AtEnd() && InClass(FInput[FPos])) ++FPos;
  return std::string_view(FInput).substr(Start, FPos - Start);
}

std::string_view TFormulaTokenizer::ReadIdentifier() {
  return ReadWhile(IsIdentChar);
}

void TFormulaTokenizer::ReadNumber(TFormulaToken& Token) {
  std::string_view Run = ReadWhile([](char C) { return IsDigit(C) || C == '.'; });
  Token.Kind = ftNumber;
  Token.Text.assign(Run);
  Token.Number = NumberRunValue(Run);
}

void TFormulaTokenizer::ReadQuoted(char Quote, std::string& Out) {
  // After the opening quote: a doubled quote stands for one; the end of the
  // text closes the run silently.
  while (!AtEnd()) {
    size_t Close = FInput.find(Quote, FPos);
    if (Close == std::string::npos) Close = FInput.size();
    Out.append(FInput, FPos, Close - FPos);
    FPos = std::min(Close + 1, FInput.size());
    if (Close == FInput.size() || Peek() != Quote) return;
    Out += Quote;
    ++FPos;
  }
}

void TFormulaTokenizer::ReadString(TFormulaToken& Token) {
  Token.Kind = ftString;
  ReadQuoted('"', Token.Text);
}

std::string TFormulaTokenizer::ReadQuotedSheetName() {
  std::string Name;
  ++FPos;
  ReadQuoted('\'', Name);
  return Name;
}

void TFormulaTokenizer::ReadSymbol(TFormulaToken& Token) {
  size_t Start = FPos;
  char C = FInput[FPos++];
  switch (C) {
    case ':': Token.Kind = ftColon; break;
    case ';': Token.Kind = ftSemicolon; break;
    case '(': Token.Kind = ftLParen; break;
    case ')': Token.Kind = ftRParen; break;
    case ',': Token.Kind = ftComma; break;
    case '{': Token.Kind = ftLBrace; break;
    case '}': Token.Kind = ftRBrace; break;
    case '=':
    case '&':
    case '*':
    case '+':
    case '-':
    case '/':
    case '^':
    case '@': Token.Kind = ftOperator; break;
    case '<':
    case '>':
      Token.Kind = ftOperator;
      if (Peek() == '=' || (C == '<' && Peek() == '>')) ++FPos;
      break;
    case '"': ReadString(Token); return;
    default:
      // "%", "#", "!", "?", a tab, or one whole non-ASCII character.
      FPos = Start;
      DecodeUtf8(FInput, FPos);
      Token.Kind = ftError;
      break;
  }
  Token.Text.assign(FInput, Start, FPos - Start);
}

std::string TFormulaTokenizer::ReadTableColumn() {
  // After "[": `[Col]`, `[[Col]]` and `['My col']` all name one column; no
  // further selector syntax exists, so `[[#Data],[Col]]` names `#Data`.
  SkipSpaces();
  if (Peek() == '[') {
    ++FPos;
    SkipSpaces();
  }
  std::string Column;
  if (Peek() == '\'') {
    size_t Close = std::min(FInput.find('\'', FPos + 1), FInput.size());
    Column.assign(FInput, FPos + 1, Close - FPos - 1);
    FPos = std::min(Close + 1, FInput.size());
  } else {
    size_t Stop = std::min(FInput.find_first_of(",[]", FPos), FInput.size());
    Column.assign(TrimControls(std::string_view(FInput).substr(FPos, Stop - FPos)));
    FPos = Stop;
  }
  while (Peek() == ']') ++FPos;
  return Column;
}

void TFormulaTokenizer::ReadCellOrIdentOrFunc(TFormulaToken& Token) {
  if (Peek() == '$' && PeekAt(1) == '\'') ++FPos;  // the absolute sheet of ODS text: $'Sheet'.A1
  if (Peek() == '\'') {
    std::string Sheet = ReadQuotedSheetName();
    if (Peek() != '!' && Peek() != '.') {
      Token.Kind = ftError;
      Token.Text = std::move(Sheet);
      return;
    }
    ++FPos;
    ReadSheetQualified(Token, std::move(Sheet), ReadWhile(IsWordChar));
    return;
  }
  std::string_view Word = ReadWhile(IsWordChar);
  if (Peek() == '!') {
    ++FPos;
    ReadSheetQualified(Token, std::string(WithoutLeadingDollar(Word)), ReadWhile(IsRefChar));
    return;
  }
  if (Peek() == '.') {
    if (TryReadDottedFunction(Word, Token)) return;
    // Sheet2.A1 names a sheet; A1.B2 does not.
    char AfterDot = PeekAt(1);
    if ((AfterDot == '$' || IsLetter(AfterDot)) && !LooksLikeCellRef(Word)) {
      ++FPos;
      ReadSheetQualified(Token, std::string(WithoutLeadingDollar(Word)), ReadWhile(IsRefChar));
      return;
    }
  }
  ReadUnqualified(Token, Word);
}

bool TFormulaTokenizer::TryReadDottedFunction(std::string_view Word, TFormulaToken& Token) {
  // Prefixed names such as `_xlfn.XLOOKUP(` arrive as one function token.
  // Only the first segment must open with a letter: T.DIST.2T( is a name.
  if (!IsIdentStart(PeekAt(1))) return false;
  size_t FirstDot = FPos;
  while (Peek() == '.' && IsIdentChar(PeekAt(1))) {
    ++FPos;
    ReadIdentifier();
  }
  size_t ChainEnd = FPos;
  bool ChainComplete = Peek() != '.';
  if (ChainComplete && SkipSpaces() && Peek() == '(') {
    FPos = ChainEnd;
    Token.Kind = ftFunction;
    Token.Text = UpperAscii(std::string_view(Word.data(), Word.size() + (ChainEnd - FirstDot)));
    return true;
  }
  FPos = FirstDot;
  return false;
}

void TFormulaTokenizer::ReadSheetQualified(TFormulaToken& Token, std::string Sheet, std::string_view Word) {
  // No spaces around ":" in this form, unlike the unqualified one.
  Token.Text.reserve(Sheet.size() + Word.size() + 1);
  Token.Text.append(Sheet).append(1, '!').append(Word);
  Token.SheetName = std::move(Sheet);
  if (ParseCellRefText(Word, Token.Col, Token.Row)) {
    if (Peek() != ':') {
      Token.Kind = ftSheetRef;
      return;
    }
    ++FPos;
    std::string_view Second = ReadWhile(IsRefChar);
    Token.Text.append(1, ':').append(Second);
    Token.Kind = ParseCellRefText(Second, Token.Col2, Token.Row2) ? ftRangeRef : ftError;
    return;
  }
  Token.Kind = ftError;
  if (Peek() != ':') return;
  ++FPos;
  std::string_view Second = ReadWhile(IsRefChar);
  Token.Text.append(1, ':').append(Second);
  if (SetLineRange(Token, Word, Second)) Token.Kind = ftRangeRef;
}

void TFormulaTokenizer::ReadUnqualified(TFormulaToken& Token, std::string_view Word) {
  size_t AfterWord = FPos;
  // A word before "(" is a function even when it has a cell's shape (LOG10).
  if (SkipSpaces() && Peek() == '(') {
    FPos = AfterWord;
    Token.Kind = ftFunction;
    Token.Text = UpperAscii(Word, /*DropDollars=*/true);
    return;
  }
  FPos = AfterWord;

  if (EqualsIgnoreCase(Word, "TRUE") || EqualsIgnoreCase(Word, "FALSE")) {
    Token.Kind = ftBoolean;
    Token.Text = UpperAscii(Word);
    Token.Number = Token.Text == "TRUE" ? 1 : 0;
    return;
  }

  if (ParseCellRefText(Word, Token.Col, Token.Row)) {
    Token.Kind = ftCellRef;
    Token.Text.assign(Word);
    if (SkipSpaces() && Peek() == ':') {
      ++FPos;
      SkipSpaces();
      std::string_view Second = ReadWhile(IsRefChar);
      if (ParseCellRefText(Second, Token.Col2, Token.Row2)) {
        Token.Kind = ftRangeRef;
        Token.Text.append(1, ':').append(Second);
        return;
      }
    }
    FPos = AfterWord;
    return;
  }

  if (SkipSpaces() && Peek() == ':') {
    ++FPos;
    SkipSpaces();
    std::string_view Second = ReadWhile(IsRefChar);
    if (SetLineRange(Token, Word, Second)) {
      Token.Kind = ftRangeRef;
      Token.Text.assign(Word).append(1, ':').append(Second);
      return;
    }
  }
  FPos = AfterWord;

  if (SkipSpaces() && Peek() == '[') {
    ++FPos;
    std::string Column = ReadTableColumn();
    if (!Column.empty()) {
      Token.Kind = ftTableRef;
      Token.Text.assign(Word);
      Token.ColumnName = std::move(Column);
      return;
    }
  }
  FPos = AfterWord;

  // A bare name: a defined name or a LET variable, read as a function without "(".
  Token.Kind = ftFunction;
  Token.Text = UpperAscii(Word);
}

bool TFormulaTokenizer::LooksLikeCellRef(std::string_view Text) {
  int Letters = 0, Digits = 0;
  for (char C : Text) {
    if (C == '$') continue;
    if (IsLetter(C)) {
      if (Digits > 0) return false;
      ++Letters;
    } else if (IsDigit(C)) {
      ++Digits;
    } else {
      return false;
    }
  }
  return Letters >= 1 && Letters <= 3 && Digits >= 1;
}

bool TFormulaTokenizer::ParseCellRefText(std::string_view Text, int32_t& Col, int32_t& Row) {
  Col = 0;
  Row = 0;
  if (!LooksLikeCellRef(Text)) return false;
  TCellAddress Address = TCellAddress::FromA1(Text);
  Col = Address.Col;
  Row = Address.Row;
  return Col >= 1 && Row >= 1;
}

void TFormulaTokenizer::AnnotateSpan(TFormulaToken& Token) {
  int32_t Start = UnitsBefore(FTokenStart);
  int32_t End = UnitsBefore(FPos);
  Token.StartIndex = Start + static_cast<int32_t>(FEqualsOffset);
  Token.Length = std::max(0, End - Start);
}

int32_t TFormulaTokenizer::UnitsBefore(size_t BytePos) {
  if (BytePos < FUnitsPos) {  // spans never move back; recount rather than trust a stale cursor
    FUnitsPos = 0;
    FUnits = 0;
  }
  while (FUnitsPos < BytePos) {
    if (static_cast<unsigned char>(FInput[FUnitsPos]) < 0x80) {
      ++FUnitsPos;
      ++FUnits;
    } else {
      FUnits += static_cast<int32_t>(Utf16UnitsOf(DecodeUtf8(FInput, FUnitsPos)));
    }
  }
  return FUnits;
}

std::vector<TFormulaToken> TokenizeFormula(std::string_view Text) {
  TFormulaTokenizer Tokenizer;
  Tokenizer.SetFormula(Text);
  std::vector<TFormulaToken> Tokens;
  for (TFormulaToken Token = Tokenizer.NextToken(); Token.Kind != ftEnd; Token = Tokenizer.NextToken())
    Tokens.push_back(std::move(Token));
  return Tokens;
}

}  // namespace Tabrino
