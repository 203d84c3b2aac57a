#include "Tabrino.Formula.Query.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

// ---- Tokens ---------------------------------------------------------------

enum TQueryTokenKind : uint8_t {
  qtkEnd,
  qtkIdentifier,
  qtkNumber,
  qtkString,
  qtkStar,
  qtkComma,
  qtkOpen,
  qtkClose,
  qtkEqual,
  qtkNotEqual,  // "!=" or "<>"
  qtkLess,
  qtkGreater,
  qtkLessEqual,
  qtkGreaterEqual,
};

struct TQueryToken {
  TQueryTokenKind Kind = qtkEnd;
  std::string Text;
  double Number = 0;

  TQueryToken() = default;
  TQueryToken(TQueryTokenKind K, std::string T = {}) : Kind(K), Text(std::move(T)) {}  // NOLINT: {qtkStar} reads well
};

bool IsDigit(char C) { return C >= '0' && C <= '9'; }
bool IsNumberChar(char C) { return IsDigit(C) || C == '.'; }
// Bytes of non-ASCII characters count as letters, so that headers in any
// script can be named.
bool IsIdentifierStart(char C) {
  unsigned char U = static_cast<unsigned char>(C);
  return (U >= 'A' && U <= 'Z') || (U >= 'a' && U <= 'z') || U == '_' || U >= 0x80;
}
bool IsIdentifierPart(char C) { return IsIdentifierStart(C) || IsDigit(C); }

// An optional sign, then digits and dots. Read invariantly: "." is the query
// language's decimal separator whatever the locale.
bool ParseQueryNumber(std::string_view Text, double& Number) {
  bool Negative = !Text.empty() && Text.front() == '-';
  if (!Text.empty() && (Text.front() == '-' || Text.front() == '+')) Text.remove_prefix(1);
  const char* End = Text.data() + Text.size();
  auto [Stop, Error] = std::from_chars(Text.data(), End, Number, std::chars_format::fixed);
  if (Text.empty() || Error != std::errc() || Stop != End) return false;
  if (Negative) Number = -Number;
  return true;
}

// "'" opens a string in which "''" stands for one quote. Unterminated, it
// runs to the end of the text and still counts as a string.
TQueryToken ReadString(std::string_view Text, size_t& Pos) {
  TQueryToken Token{qtkString};
  ++Pos;
  while (Pos < Text.size()) {
    char C = Text[Pos++];
    if (C == '\'') {
      if (Pos >= Text.size() || Text[Pos] != '\'') return Token;
      ++Pos;
    }
    Token.Text += C;
  }
  return Token;
}

TQueryToken ReadNumber(std::string_view Text, size_t& Pos) {
  size_t Start = Pos++;
  while (Pos < Text.size() && IsNumberChar(Text[Pos])) ++Pos;
  TQueryToken Token{qtkNumber, std::string(Text.substr(Start, Pos - Start))};
  // A text that is no number ("1.2.3", ".") ends the query.
  if (!ParseQueryNumber(Token.Text, Token.Number)) return {};
  return Token;
}

// The token at Pos, blanks and control characters skipped. A character that
// starts no token yields the end token: whatever follows it is never read.
TQueryToken ReadToken(std::string_view Text, size_t& Pos) {
  while (Pos < Text.size() && static_cast<unsigned char>(Text[Pos]) <= ' ') ++Pos;
  if (Pos >= Text.size()) return {};
  const char C = Text[Pos];
  if (C == '\'') return ReadString(Text, Pos);
  const bool Signed = (C == '+' || C == '-') && Pos + 1 < Text.size() && IsNumberChar(Text[Pos + 1]);
  if (IsNumberChar(C) || Signed) return ReadNumber(Text, Pos);
  if (IsIdentifierStart(C)) {
    size_t Start = Pos;
    while (Pos < Text.size() && IsIdentifierPart(Text[Pos])) ++Pos;
    return {qtkIdentifier, std::string(Text.substr(Start, Pos - Start))};
  }
  ++Pos;
  auto Followed = [&](char Next) {
    if (Pos >= Text.size() || Text[Pos] != Next) return false;
    ++Pos;
    return true;
  };
  switch (C) {
    case '*': return {qtkStar};
    case ',': return {qtkComma};
    case '(': return {qtkOpen};
    case ')': return {qtkClose};
    case '=': return {qtkEqual};
    case '!': return Followed('=') ? TQueryToken{qtkNotEqual} : TQueryToken{};
    case '<':
      if (Followed('>')) return {qtkNotEqual};
      return Followed('=') ? TQueryToken{qtkLessEqual} : TQueryToken{qtkLess};
    case '>': return Followed('=') ? TQueryToken{qtkGreaterEqual} : TQueryToken{qtkGreater};
    default: return {};
  }
}

// Every token up to and including the first end token.
std::vector<TQueryToken> TokenizeQuery(std::string_view Text) {
  std::vector<TQueryToken> Tokens;
  size_t Pos = 0;
  do {
    Tokens.push_back(ReadToken(Text, Pos));
  } while (Tokens.back().Kind != qtkEnd);
  return Tokens;
}

// ---- Values ---------------------------------------------------------------

// Case-sensitive order by UTF-16 code unit. It differs from code point order
// only where a character beyond U+FFFF (a surrogate pair, D800-DBFF first)
// meets one from U+E000 to U+FFFF.
int CompareUtf16Units(std::string_view A, std::string_view B) {
  auto Rank = [](char32_t C) -> uint32_t { return C >= 0xE000 && C <= 0xFFFF ? C + 0x110000 : C; };
  size_t I = 0, J = 0;
  while (I < A.size() && J < B.size()) {
    uint32_t X = Rank(DecodeUtf8(A, I)), Y = Rank(DecodeUtf8(B, J));
    if (X != Y) return X < Y ? -1 : 1;
  }
  return I < A.size() ? 1 : (J < B.size() ? -1 : 0);
}

// A value as the comparer reads it: its number when it converts (empty is 0,
// a boolean 0 or 1), and its display text for comparing with one that doesn't.
struct TComparable {
  bool IsNumber = false;
  double Number = 0;
  std::string Text;

  TComparable() = default;
  explicit TComparable(const TCellValue& Value) : Text(Value.ToDisplayString()) {
    IsNumber = AsNumber(Value, Number);
  }
};

int NumberOrder(double A, double B) { return A < B ? -1 : (A > B ? 1 : 0); }
int TextOrder(std::string_view A, std::string_view B) {
  int Order = CompareUtf16Units(A, B);
  return (Order > 0) - (Order < 0);
}

// Numeric order when both are numbers, else display texts by code unit with
// case: so the text "10" compares as a number and an error by its text.
int Compare(const TComparable& A, const TComparable& B) {
  return A.IsNumber && B.IsNumber ? NumberOrder(A.Number, B.Number) : TextOrder(A.Text, B.Text);
}
// The same for a cell against a converted value, building the cell's text
// only when it is needed.
int Compare(const TCellValue& Cell, const TComparable& Other) {
  double X;
  if (Other.IsNumber && AsNumber(Cell, X)) return NumberOrder(X, Other.Number);
  return TextOrder(Cell.ToDisplayString(), Other.Text);
}

bool OperatorHolds(TQueryTokenKind Operator, int Order) {
  switch (Operator) {
    case qtkEqual: return Order == 0;
    case qtkNotEqual: return Order != 0;
    case qtkLess: return Order < 0;
    case qtkGreater: return Order >= 1;
    case qtkLessEqual: return Order < 1;
    default: return Order >= 0;
  }
}

// ---- Parsed query ---------------------------------------------------------

enum TQueryAggregate : uint8_t { qaNone, qaSum, qaAvg, qaCount, qaMin, qaMax };

struct TQuerySelectItem {
  int32_t Column = 0;  // 0-based
  TQueryAggregate Aggregate = qaNone;
  std::string Heading;
};



struct TQueryComparison {
  int32_t Column = 0;
  TQueryTokenKind Operator = qtkEqual;
  TComparable Literal;
};

// A condition without parentheses or NOT, with AND binding tighter than OR and
// both folding to the left, is always an OR of ANDs: it is kept in that flat
// form, so that no chain of conditions can exhaust the stack. No terms at all
// means no condition, which every row passes.
using TQueryCondition = std::vector<std::vector<TQueryComparison>>;

struct TQueryOrderKey {
  int32_t Column = 0;
  bool Descending = false;
};

struct TQueryLabel {
  int32_t Column = 0;
  std::string Text;
};

struct TParsedQuery {
  bool SelectAll = false;
  std::vector<TQuerySelectItem> Items;
  TQueryCondition Where;
  std::vector<int32_t> GroupColumns;
  std::vector<TQueryOrderKey> OrderKeys;
  std::optional<double> Limit;
  std::optional<double> Offset;
  std::vector<TQueryLabel> Labels;
};

constexpr std::string_view ReservedWords[] = {"SELECT", "WHERE", "ORDER", "BY",  "ASC", "DESC",  "LIMIT",
                                              "OFFSET", "GROUP", "AND",   "OR",  "LABEL", "SUM", "AVG",
                                              "COUNT",  "MIN",   "MAX",   "AS",  "TRUE", "FALSE"};

struct TAggregateName {
  std::string_view Name;
  TQueryAggregate Aggregate;
  std::string_view HeadingPrefix;
};
constexpr TAggregateName AggregateNames[] = {
    {"SUM", qaSum, "sum "}, {"AVG", qaAvg, "avg "}, {"COUNT", qaCount, "count "},
    {"MIN", qaMin, "min "}, {"MAX", qaMax, "max "},
};

TQueryAggregate AggregateNamed(std::string_view Word) {
  for (const TAggregateName& A : AggregateNames)
    if (EqualsNoCase(Word, A.Name)) return A.Aggregate;
  return qaNone;
}

std::string_view HeadingPrefix(TQueryAggregate Aggregate) {
  for (const TAggregateName& A : AggregateNames)
    if (A.Aggregate == Aggregate) return A.HeadingPrefix;
  return {};
}

// ---- Parser ---------------------------------------------------------------

// Recursive descent over the clauses in their one fixed order. Every method
// returns false on a syntax fault; the query then fails as a whole.
class TQueryParser {
 public:
  TQueryParser(std::string_view Text, const std::vector<std::string>& ColumnNames)
      : FTokens(TokenizeQuery(Text)), FColumnNames(ColumnNames) {}

  bool Parse(TParsedQuery& Query) {
    if (!AcceptKeyword("SELECT") || !ParseSelectList(Query)) return false;
    if (AcceptKeyword("WHERE") && !ParseCondition(Query.Where)) return false;
    if (AcceptKeyword("GROUP") && !(AcceptKeyword("BY") && ParseColumnList(Query.GroupColumns))) return false;
    if (AcceptKeyword("ORDER") && !(AcceptKeyword("BY") && ParseOrderKeys(Query.OrderKeys))) return false;
    if (AcceptKeyword("LIMIT") && !ParseCount(Query.Limit)) return false;
    if (AcceptKeyword("OFFSET") && !ParseCount(Query.Offset)) return false;
    if (AcceptKeyword("LABEL") && !ParseLabels(Query.Labels)) return false;
    return Current().Kind == qtkEnd;
  }

 private:
  const TQueryToken& Current() const { return FTokens[FPos]; }
  // The end token is last and stays current once reached.
  void Advance() {
    if (FPos + 1 < FTokens.size()) ++FPos;
  }
  bool Accept(TQueryTokenKind Kind) {
    if (Current().Kind != Kind) return false;
    Advance();
    return true;
  }
  bool AcceptKeyword(std::string_view Word) {
    if (Current().Kind != qtkIdentifier || !EqualsNoCase(Current().Text, Word)) return false;
    Advance();
    return true;
  }

  // "*" anywhere in the list makes it select-all and ends it.
  bool ParseSelectList(TParsedQuery& Query) {
    do {
      if (Accept(qtkStar)) {
        Query.SelectAll = true;
        Query.Items.clear();
        return true;
      }
      TQuerySelectItem Item;
      if (!ParseSelectItem(Item)) return false;
      Query.Items.push_back(std::move(Item));
    } while (Accept(qtkComma));
    return true;
  }

  // An aggregate's name must open its parenthesis, so no plain column can be
  // selected under such a name.
  bool ParseSelectItem(TQuerySelectItem& Item) {
    if (Current().Kind == qtkIdentifier) Item.Aggregate = AggregateNamed(Current().Text);
    if (Item.Aggregate == qaNone) return ParseColumn(Item.Column);
    Advance();
    return Accept(qtkOpen) && ParseColumn(Item.Column) && Accept(qtkClose);
  }

  bool ParseCondition(TQueryCondition& Condition) {
    do {
      std::vector<TQueryComparison>& AllOf = Condition.emplace_back();
      do {
        if (!ParseComparison(AllOf.emplace_back())) return false;
      } while (AcceptKeyword("AND"));
    } while (AcceptKeyword("OR"));
    return true;
  }

  // Always a column, an operator, then a literal: a string, a number, TRUE or FALSE.
  bool ParseComparison(TQueryComparison& Comparison) {
    if (!ParseColumn(Comparison.Column)) return false;
    Comparison.Operator = Current().Kind;
    if (Comparison.Operator < qtkEqual || Comparison.Operator > qtkGreaterEqual) return false;
    Advance();
    const TQueryToken& Token = Current();
    if (Token.Kind == qtkString) {
      Comparison.Literal = TComparable(TCellValue::FromText(Token.Text));
    } else if (Token.Kind == qtkNumber) {
      Comparison.Literal = TComparable(TCellValue::FromNumber(Token.Number));
    } else if (Token.Kind == qtkIdentifier && (EqualsNoCase(Token.Text, "TRUE") || EqualsNoCase(Token.Text, "FALSE"))) {
      Comparison.Literal = TComparable(TCellValue::FromBoolean(EqualsNoCase(Token.Text, "TRUE")));
    } else {
      return false;
    }
    Advance();
    return true;
  }

  bool ParseColumnList(std::vector<int32_t>& Columns) {
    do {
      if (!ParseColumn(Columns.emplace_back())) return false;
    } while (Accept(qtkComma));
    return true;
  }

  bool ParseOrderKeys(std::vector<TQueryOrderKey>& Keys) {
    do {
      TQueryOrderKey& Key = Keys.emplace_back();
      if (!ParseColumn(Key.Column)) return false;
      Key.Descending = AcceptKeyword("DESC");
      if (!Key.Descending) AcceptKeyword("ASC");
    } while (Accept(qtkComma));
    return true;
  }

  // The argument of LIMIT and OFFSET: a number, truncated, not negative.
  bool ParseCount(std::optional<double>& Count) {
    if (Current().Kind != qtkNumber || std::trunc(Current().Number) < 0) return false;
    Count = std::trunc(Current().Number);
    Advance();
    return true;
  }

  bool ParseLabels(std::vector<TQueryLabel>& Labels) {
    do {
      TQueryLabel& Label = Labels.emplace_back();
      if (!ParseColumn(Label.Column) || Current().Kind != qtkString) return false;
      Label.Text = Current().Text;
      Advance();
    } while (Accept(qtkComma));
    return true;
  }

  // An identifier naming a column. Reserved words are no columns, except the
  // aggregate names, which may name columns outside the select list.
  bool ParseColumn(int32_t& Column) {
    if (Current().Kind != qtkIdentifier) return false;
    const std::string& Name = Current().Text;
    for (std::string_view Word : ReservedWords)
      if (EqualsNoCase(Name, Word) && AggregateNamed(Word) == qaNone) return false;
    Column = ResolveColumn(Name);
    if (Column < 0) return false;
    Advance();
    return true;
  }

  // "ColN" by position, then letters, then the first header equal to the
  // text ignoring case; -1 for none. Letters win over a header of that text.
  int32_t ResolveColumn(std::string_view Name) const {
    const int64_t Count = static_cast<int64_t>(FColumnNames.size());
    if (Name.size() >= 4 && EqualsNoCase(Name.substr(0, 3), "COL")) {
      std::string_view Digits = Name.substr(3);
      int64_t N = 0;
      bool AllDigits = true;
      for (char C : Digits) {
        AllDigits = AllDigits && IsDigit(C);
        if (AllDigits) N = std::min<int64_t>(N * 10 + (C - '0'), Count + 1);
      }
      if (AllDigits && N >= 1 && N <= Count) return static_cast<int32_t>(N - 1);
    }
    if (Name.size() < 4) {
      int32_t Letters = LettersToCol(Name);
      if (Letters >= 1 && Letters <= Count) return Letters - 1;
    }
    for (size_t I = 0; I < FColumnNames.size(); ++I)
      if (EqualsNoCase(FColumnNames[I], Name)) return static_cast<int32_t>(I);
    return -1;
  }

  std::vector<TQueryToken> FTokens;
  size_t FPos = 0;
  const std::vector<std::string>& FColumnNames;
};

// The data range: its cells, column names and the rows below the headers.
struct TQueryData {
  const TFormulaArg& Range;
  int32_t FirstDataRow;

  int32_t ColCount() const { return Range.ColCount; }
  const TCellValue& At(size_t Row, int32_t Col) const { return Range.Cells[Row * size_t(Range.ColCount) + Col]; }
};

bool Passes(const TQueryCondition& Condition, const TQueryData& Data, size_t Row) {
  if (Condition.empty()) return true;
  return std::any_of(Condition.begin(), Condition.end(), [&](const std::vector<TQueryComparison>& AllOf) {
    return std::all_of(AllOf.begin(), AllOf.end(), [&](const TQueryComparison& C) {
      return OperatorHolds(C.Operator, Compare(Data.At(Row, C.Column), C.Literal));
    });
  });
}

// ---- Sorting, grouping, output -------------------------------------------

// Orders Rows in place by a plain exchange sort: for each i and each j after
// i, swap when row i compares above row j. Quadratic and unstable, kept as the
// function has always ordered ties. Keys are compared in order, DESC flipping
// the sign, the first non-zero result deciding. CellOf(row, column) reads a
// key cell; the keys are converted once up front.
template <typename TRow, typename TCellOf>
void ExchangeSort(std::vector<TRow>& Rows, std::span<const TQueryOrderKey> Keys, TCellOf CellOf) {
  if (Keys.empty() || Rows.size() < 2) return;
  const size_t KeyCount = Keys.size();
  std::vector<TComparable> Values;
  Values.reserve(Rows.size() * KeyCount);
  for (const TRow& Row : Rows)
    for (const TQueryOrderKey& Key : Keys) Values.emplace_back(CellOf(Row, Key.Column));
  auto Above = [&](size_t A, size_t B) {
    for (size_t K = 0; K < KeyCount; ++K) {
      int Order = Compare(Values[A * KeyCount + K], Values[B * KeyCount + K]);
      if (Order != 0) return Keys[K].Descending ? Order < 0 : Order > 0;
    }
    return false;
  };
  std::vector<size_t> Order(Rows.size());
  std::iota(Order.begin(), Order.end(), size_t(0));
  for (size_t I = 0; I < Order.size(); ++I)
    for (size_t J = I + 1; J < Order.size(); ++J)
      if (Above(Order[I], Order[J])) std::swap(Order[I], Order[J]);
  std::vector<TRow> Sorted;
  Sorted.reserve(Rows.size());
  for (size_t Index : Order) Sorted.push_back(std::move(Rows[Index]));
  Rows = std::move(Sorted);
}

// SUM, AVG, MIN and MAX read the cells that convert to numbers (empty as 0);
// AVG, MIN and MAX of none are empty. COUNT counts the group's rows, empty
// cells included.
TCellValue Aggregate(TQueryAggregate Kind, const TQueryData& Data, std::span<const size_t> Rows, int32_t Column) {
  if (Kind == qaCount) return Num(double(Rows.size()));
  double Sum = 0, Low = std::numeric_limits<double>::infinity(), High = -Low;
  size_t Count = 0;
  for (size_t Row : Rows) {
    double X;
    if (!AsNumber(Data.At(Row, Column), X)) continue;
    Sum += X;
    Low = std::min(Low, X);
    High = std::max(High, X);
    ++Count;
  }
  if (Kind == qaSum) return FiniteNum(Sum);
  if (Count == 0) return {};
  if (Kind == qaAvg) return FiniteNum(Sum / double(Count));
  return FiniteNum(Kind == qaMin ? Low : High);
}

using TOutputRow = std::vector<TCellValue>;

// One output row per group, groups in order of first appearance. The key is
// the display texts of the group columns joined by U+0001; without group
// columns all rows form one group. A plain item takes the group's first row.
bool GroupRows(const TQueryData& Data, const std::vector<size_t>& Kept, const std::vector<int32_t>& GroupColumns,
               const std::vector<TQuerySelectItem>& Items, std::vector<TOutputRow>& Rows) {
  absl::flat_hash_map<std::string, size_t> GroupOfKey;
  std::vector<std::vector<size_t>> Groups;
  for (size_t Row : Kept) {
    std::string Key;
    for (size_t I = 0; I < GroupColumns.size(); ++I) {
      if (I > 0) Key += '\x01';
      Key += Data.At(Row, GroupColumns[I]).ToDisplayString();
    }
    auto [It, Inserted] = GroupOfKey.try_emplace(std::move(Key), Groups.size());
    if (Inserted) Groups.emplace_back();
    Groups[It->second].push_back(Row);
  }
  if (Groups.size() * Items.size() > MaxArrayCells) return false;
  Rows.reserve(Groups.size());
  for (const std::vector<size_t>& Group : Groups) {
    TOutputRow& Out = Rows.emplace_back();
    for (const TQuerySelectItem& Item : Items)
      Out.push_back(Item.Aggregate == qaNone ? Data.At(Group.front(), Item.Column)
                                             : Aggregate(Item.Aggregate, Data, Group, Item.Column));
  }
  return true;
}

// Grouped output is ordered by the first plain item of each key's column;
// keys with no such item are dropped, so aggregates cannot be ordered by.
std::vector<TQueryOrderKey> OutputOrderKeys(const TParsedQuery& Query, const std::vector<TQuerySelectItem>& Items) {
  std::vector<TQueryOrderKey> Keys;
  for (const TQueryOrderKey& Key : Query.OrderKeys) {
    auto Match = std::find_if(Items.begin(), Items.end(), [&](const TQuerySelectItem& Item) {
      return Item.Aggregate == qaNone && Item.Column == Key.Column;
    });
    if (Match != Items.end()) Keys.push_back({static_cast<int32_t>(Match - Items.begin()), Key.Descending});
  }
  return Keys;
}

// The rows [Start, End) that OFFSET and LIMIT leave; false when none.
bool Window(size_t Count, const TParsedQuery& Query, size_t& Start, size_t& End) {
  Start = static_cast<size_t>(std::min(Query.Offset.value_or(0), double(Count)));
  End = Query.Limit ? static_cast<size_t>(std::min(double(Start) + *Query.Limit, double(Count))) : Count;
  return Start < End;
}

// Headings (when the data has header rows) above RowCount rows of items;
// CellOf(row, item) gives a cell.
template <typename TCellOf>
TFormulaArg TableResult(const std::vector<TQuerySelectItem>& Items, bool WithHeadings, size_t RowCount,
                        TCellOf CellOf) {
  const size_t Rows = RowCount + (WithHeadings ? 1 : 0);
  if (Rows * Items.size() > MaxArrayCells) return TFormulaArg::FromError(ceValue);
  std::vector<TCellValue> Cells;
  Cells.reserve(Rows * Items.size());
  if (WithHeadings)
    for (const TQuerySelectItem& Item : Items) Cells.push_back(TCellValue::FromText(Item.Heading));
  for (size_t Row = 0; Row < RowCount; ++Row)
    for (size_t Item = 0; Item < Items.size(); ++Item) Cells.push_back(CellOf(Row, Item));
  return TFormulaArg::FromRange(std::move(Cells), static_cast<int32_t>(Rows), static_cast<int32_t>(Items.size()));
}

// The third argument: a number, truncated, a negative one counting as 0,
// capped at the row count; 1 when absent. False when it does not convert.
bool ReadHeaderRows(std::span<const TFormulaArg> Args, int32_t RowCount, int32_t& HeaderRows) {
  double Count = 1;
  if (Args.size() >= 3 && !AsNumber(Args[2].First(), Count)) return false;
  Count = std::trunc(Count);
  HeaderRows = Count > 0 ? static_cast<int32_t>(std::min(Count, double(RowCount))) : 0;
  return true;
}

// The display texts of the first row when there are headers, whatever their
// count; else "Col1", "Col2", ...
std::vector<std::string> ColumnNames(const TFormulaArg& Range, bool HasHeaders) {
  std::vector<std::string> Names;
  for (int32_t Col = 0; Col < Range.ColCount; ++Col)
    Names.push_back(HasHeaders ? Range.Cells[Col].ToDisplayString() : "Col" + std::to_string(Col + 1));
  return Names;
}

// The items with their headings: select-all is every column of the range,
// duplicate names included. Labels rename the plain items of their column.
std::vector<TQuerySelectItem> SelectItems(const TParsedQuery& Query, const std::vector<std::string>& Names) {
  std::vector<TQuerySelectItem> Items = Query.Items;
  if (Query.SelectAll) {
    Items.clear();
    for (int32_t Col = 0; Col < static_cast<int32_t>(Names.size()); ++Col) Items.push_back({Col, qaNone, {}});
  }
  for (TQuerySelectItem& Item : Items) Item.Heading = std::string(HeadingPrefix(Item.Aggregate)) + Names[Item.Column];
  for (const TQueryLabel& Label : Query.Labels)
    for (TQuerySelectItem& Item : Items)
      if (Item.Aggregate == qaNone && Item.Column == Label.Column) Item.Heading = Label.Text;
  return Items;
}

TFormulaArg RunQuery(const TQueryData& Data, const TParsedQuery& Query, const std::vector<TQuerySelectItem>& Items) {
  std::vector<size_t> Kept;
  for (size_t Row = Data.FirstDataRow; Row < size_t(Data.Range.RowCount); ++Row)
    if (Passes(Query.Where, Data, Row)) Kept.push_back(Row);
  if (Kept.empty()) return TFormulaArg::FromError(ceNA);

  const bool WithHeadings = Data.FirstDataRow > 0;
  size_t Start, End;
  const bool Grouped = !Query.GroupColumns.empty() || std::any_of(Items.begin(), Items.end(), [](const auto& Item) {
    return Item.Aggregate != qaNone;
  });
  if (!Grouped) {
    ExchangeSort(Kept, Query.OrderKeys, [&](size_t Row, int32_t Col) -> const TCellValue& { return Data.At(Row, Col); });
    if (!Window(Kept.size(), Query, Start, End)) return TFormulaArg::FromError(ceNA);
    return TableResult(Items, WithHeadings, End - Start, [&](size_t Row, size_t Item) -> const TCellValue& {
      return Data.At(Kept[Start + Row], Items[Item].Column);
    });
  }
  std::vector<TOutputRow> Rows;
  if (!GroupRows(Data, Kept, Query.GroupColumns, Items, Rows)) return TFormulaArg::FromError(ceValue);
  ExchangeSort(Rows, OutputOrderKeys(Query, Items),
               [](const TOutputRow& Row, int32_t Col) -> const TCellValue& { return Row[Col]; });
  if (!Window(Rows.size(), Query, Start, End)) return TFormulaArg::FromError(ceNA);
  return TableResult(Items, WithHeadings, End - Start,
                     [&](size_t Row, size_t Item) -> const TCellValue& { return Rows[Start + Row][Item]; });
}

TFormulaArg FnQuery(const TFunctionCall& Call) { return EvalQuery(Call.Args); }

}  // namespace

TFormulaArg EvalQuery(std::span<const TFormulaArg> Args) {
  if (Args.size() < 2) return TFormulaArg::FromError(ceValue);
  const TFormulaArg Range = AsRangeArg(Args[0]);
  if (Range.RowCount < 1 || Range.ColCount < 1 ||
      Range.Cells.size() != size_t(Range.RowCount) * size_t(Range.ColCount))
    return TFormulaArg::FromError(ceNA);
  const std::string QueryText(TrimBlanks(ArgText(Args[1])));
  int32_t HeaderRows;
  if (QueryText.empty() || !ReadHeaderRows(Args, Range.RowCount, HeaderRows)) return TFormulaArg::FromError(ceValue);

  const std::vector<std::string> Names = ColumnNames(Range, HeaderRows > 0);
  TParsedQuery Query;
  if (!TQueryParser(QueryText, Names).Parse(Query)) return TFormulaArg::FromError(ceValue);
  const std::vector<TQuerySelectItem> Items = SelectItems(Query, Names);
  if (Items.empty()) return TFormulaArg::FromError(ceValue);
  return RunQuery(TQueryData{Range, HeaderRows}, Query, Items);
}

std::span<const TFunctionDef> QueryFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"QUERY", 2, 3, fnReturnsArray, nullptr, FnQuery},
  };
  return Table;
}

}  // namespace Tabrino
