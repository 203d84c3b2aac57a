#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

using TRows = std::vector<std::vector<TCellValue>>;

TRows RowsOf(const TFormulaArg& Result) {
  TRows Rows;
  if (!Result.IsRange) return {{Result.Scalar}};
  for (int32_t Row = 0; Row < Result.RowCount; ++Row) {
    Rows.emplace_back();
    for (int32_t Col = 0; Col < Result.ColCount; ++Col) Rows.back().push_back(Result.CellAt(Row, Col));
  }
  return Rows;
}

TFormulaArg Table(const TRows& Rows) {
  std::vector<TCellValue> Cells;
  for (const auto& Row : Rows) Cells.insert(Cells.end(), Row.begin(), Row.end());
  return Range(std::move(Cells), static_cast<int32_t>(Rows.size()), static_cast<int32_t>(Rows.front().size()));
}

// Staff by department; departments first appear in the order B, A, C, and
// Eve's salary is empty.
const TRows Staff = {
    {V("Name"), V("Dept"), V("Salary")}, {V("Ann"), V("B"), V(10)}, {V("Bob"), V("A"), V(20)},
    {V("Cid"), V("B"), V(30)},           {V("Dee"), V("A"), V(5)},  {V("Eve"), V("C"), Blank()},
};

TRows Query(const std::string& Text, const TRows& Data = Staff) {
  return RowsOf(CallArray("QUERY", {Table(Data), Text.c_str()}));
}
TRows Query(const std::string& Text, double Headers, const TRows& Data = Staff) {
  return RowsOf(CallArray("QUERY", {Table(Data), Text.c_str(), Headers}));
}
const TRows ValueError = {{E(ceValue)}};
const TRows NotAvailable = {{E(ceNA)}};

TEST(Query, SelectsFiltersOrdersAndWindowsInClauseOrder) {
  EXPECT_EQ(Query("select * where C > 5 order by C desc limit 2 offset 1"),
            (TRows{{V("Name"), V("Dept"), V("Salary")}, {V("Bob"), V("A"), V(20)}, {V("Ann"), V("B"), V(10)}}));
  EXPECT_EQ(Query("select * where C > 5 order by C desc offset 1 limit 2"), ValueError);
  EXPECT_EQ(Query("select A order by C limit 1 where C > 5"), ValueError);
  EXPECT_EQ(Query("SeLeCt a WHERE c >= 20 OrDeR bY a DeSc"), (TRows{{V("Name")}, {V("Cid")}, {V("Bob")}}));
}

TEST(Query, NamesColumnsByPositionLettersAndHeaders) {
  EXPECT_EQ(Query("select Col1, C where Dept = 'A'"), (TRows{{V("Name"), V("Salary")}, {V("Bob"), V(20)}, {V("Dee"), V(5)}}));
  EXPECT_EQ(Query("select salary where name = 'Dee'"), (TRows{{V("Salary")}, {V(5)}}));
  // Letters win: the header "B" of the first column is reached only by position.
  const TRows Lettered = {{V("B"), V("X")}, {V(1), V(2)}};
  EXPECT_EQ(Query("select B", Lettered), (TRows{{V("X")}, {V(2)}}));
  EXPECT_EQ(Query("select Col1", Lettered), (TRows{{V("B")}, {V(1)}}));
  EXPECT_EQ(Query("select Col4"), ValueError) << "past the last column, and no header of that name";
  EXPECT_EQ(Query("select D"), ValueError);
  EXPECT_EQ(Query("select Nobody"), ValueError);
}

TEST(Query, GroupsInOrderOfFirstAppearance) {
  EXPECT_EQ(Query("select B, sum(C) group by B"),
            (TRows{{V("Dept"), V("sum Salary")}, {V("B"), V(40)}, {V("A"), V(25)}, {V("C"), V(0)}}));
  EXPECT_EQ(Query("select sum(C)"), (TRows{{V("sum Salary")}, {V(65)}}));
  EXPECT_EQ(Query("select count(C), avg(C), min(C), max(C) where B != 'C'"),
            (TRows{{V("count Salary"), V("avg Salary"), V("min Salary"), V("max Salary")}, {V(4), V(16.25), V(5), V(30)}}));
  // Ordered by the plain item of the key's column; a key without one is dropped.
  EXPECT_EQ(Query("select B, max(C) group by B order by B desc"),
            (TRows{{V("Dept"), V("max Salary")}, {V("C"), V(0)}, {V("B"), V(30)}, {V("A"), V(20)}}));
  EXPECT_EQ(Query("select max(C) group by B order by B desc"),
            (TRows{{V("max Salary")}, {V(30)}, {V(20)}, {V(0)}}));
}

TEST(Query, AggregatesTreatEmptyAndTextCellsAsStated) {
  const TRows Mixed = {{V("K"), V("X")}, {V("a"), Blank()}, {V("a"), V(4)}, {V("b"), V("n/a")}, {V("b"), V("6")}};
  // Empty converts to 0; text that is no number is passed over; COUNT counts rows.
  EXPECT_EQ(Query("select A, count(B), sum(B), avg(B), min(B) group by A", Mixed),
            (TRows{{V("K"), V("count X"), V("sum X"), V("avg X"), V("min X")},
                   {V("a"), V(2), V(4), V(2), V(0)},
                   {V("b"), V(2), V(6), V(6), V(6)}}));
  const TRows TextOnly = {{V("K"), V("X")}, {V("a"), V("x")}};
  EXPECT_EQ(Query("select sum(B), avg(B), max(B)", TextOnly), (TRows{{V("sum X"), V("avg X"), V("max X")}, {V(0), Blank(), Blank()}}));
}

TEST(Query, LabelsRenamePlainSelectionsOnly) {
  EXPECT_EQ(Query("select A, count(A), A where C = 30 label A 'Who'"),
            (TRows{{V("Who"), V("count Name"), V("Who")}, {V("Cid"), V(1), V("Cid")}}));
  EXPECT_EQ(Query("select A label sum(A) 'x'"), ValueError);
  EXPECT_EQ(Query("select A label A"), ValueError);
  EXPECT_EQ(Query("select A where C = 30 label B 'unused', A 'It''s'"), (TRows{{V("It's")}, {V("Cid")}}));
}

TEST(Query, ConditionsAndBindsTighterThanOr) {
  // (B = 'A' and C > 10) or C = 10
  EXPECT_EQ(Query("select A where B = 'A' and C > 10 or C = 10"), (TRows{{V("Name")}, {V("Ann")}, {V("Bob")}}));
  EXPECT_EQ(Query("select A where C <> 10 and C != 20 and C < 30 and C <= 5 and C >= 0"),
            (TRows{{V("Name")}, {V("Dee")}, {V("Eve")}}));
  EXPECT_EQ(Query("select A where (C > 1)"), ValueError);
  EXPECT_EQ(Query("select A where not C > 1"), ValueError);
  EXPECT_EQ(Query("select A where C > B"), ValueError) << "no column on the right";
  EXPECT_EQ(Query("select A where C > 1000"), NotAvailable) << "no rows left is #N/A, not an empty table";
}

TEST(Query, ComparesNumbersNumericallyAndTextsWithCase) {
  const TRows Data = {{V("T"), V("F")}, {V("10"), V(true)}, {V("9"), V(false)}, {V("abc"), V(true)}};
  EXPECT_EQ(Query("select A where A > 9.5", Data), (TRows{{V("T")}, {V("10")}, {V("abc")}}))
      << "the text 10 compares as a number; abc against 9.5 compares as text";
  EXPECT_EQ(Query("select A where A = 'ABC'", Data), NotAvailable);
  EXPECT_EQ(Query("select A where B = TRUE", Data), (TRows{{V("T")}, {V("10")}, {V("abc")}}));
  EXPECT_EQ(Query("select A where B = false", Data), (TRows{{V("T")}, {V("9")}}));
  EXPECT_EQ(Query("select A where C > -5.5 and C < +.5"), (TRows{{V("Name")}, {V("Eve")}})) << "signed numbers";
}

TEST(Query, SortIsThePlainExchangeSort) {
  // Exchange sort moves "c" to the front by swapping it with "a", so the tied
  // "a" and "b" come out reversed; a stable sort would keep a before b.
  const TRows Data = {{V("N"), V("K")}, {V("a"), V(1)}, {V("b"), V(1)}, {V("c"), V(0)}};
  EXPECT_EQ(Query("select A order by B", Data), (TRows{{V("N")}, {V("c")}, {V("b")}, {V("a")}}));
  EXPECT_EQ(Query("select A order by B desc, A asc", Data), (TRows{{V("N")}, {V("a")}, {V("b")}, {V("c")}}));
}

TEST(Query, TokenizerEdges) {
  EXPECT_EQ(Query("select A where B = 'A"), (TRows{{V("Name")}, {V("Bob")}, {V("Dee")}})) << "unterminated string";
  EXPECT_EQ(Query("select A where C = 1.2.3"), ValueError) << "a malformed number ends the text";
  EXPECT_EQ(Query("select A where C = -.5e1"), ValueError) << "no exponents";
  EXPECT_EQ(Query("select A where C = 5 # anything"), (TRows{{V("Name")}, {V("Dee")}}))
      << "a character that starts no token ends the query";
  EXPECT_EQ(Query("select A where C ! 5"), ValueError);
  EXPECT_EQ(Query("  select\tA  limit 1  "), (TRows{{V("Name")}, {V("Ann")}}));
}

TEST(Query, ReservedWordsAndSelectList) {
  EXPECT_EQ(Query("select where"), ValueError);
  EXPECT_EQ(Query("select sum"), ValueError) << "an aggregate name must open a parenthesis";
  EXPECT_EQ(Query("select count(*)"), ValueError);
  EXPECT_EQ(Query("select A,"), ValueError);
  EXPECT_EQ(Query("select A B"), ValueError);
  EXPECT_EQ(Query("A"), ValueError);
  // "*" in the list turns it into select-all and ends it.
  EXPECT_EQ(Query("select A, * where C = 30"), (TRows{{V("Name"), V("Dept"), V("Salary")}, {V("Cid"), V("B"), V(30)}}));
  EXPECT_EQ(Query("select *, A"), ValueError);
  // An aggregate name may still name a column outside the select list.
  const TRows Counted = {{V("count"), V("v")}, {V(2), V("x")}, {V(1), V("y")}};
  EXPECT_EQ(Query("select B order by count", Counted), (TRows{{V("v")}, {V("y")}, {V("x")}}));
}

TEST(Query, HeaderRowCounts) {
  const TRows Bare = {{V("x"), V(1)}, {V("y"), V(2)}};
  EXPECT_EQ(Query("select Col2, Col1 where Col2 > 1", 0, Bare), (TRows{{V(2), V("y")}}));
  EXPECT_EQ(Query("select *", -3, Bare), Bare) << "a negative count is 0";
  EXPECT_EQ(Query("select *", 0.9, Bare), Bare);
  // Two header rows: only the first names columns; the second is no data.
  const TRows TwoHeaders = {{V("Name"), V("N")}, {V("units"), V("kg")}, {V("a"), V(3)}};
  EXPECT_EQ(Query("select N, Name", 2, TwoHeaders), (TRows{{V("N"), V("Name")}, {V(3), V("a")}}));
  EXPECT_EQ(Query("select A where B = 'kg'", 2, TwoHeaders), NotAvailable);
  EXPECT_EQ(Query("select A", 5, TwoHeaders), NotAvailable) << "every row is a header";
  EXPECT_EQ(RowsOf(CallArray("QUERY", {Table(Bare), "select A", "many"})), ValueError);
  EXPECT_EQ(RowsOf(CallArray("QUERY", {Table(Bare), "select A", "0"})), (TRows{{V("x")}, {V("y")}}));
}

TEST(Query, SelectAllKeepsDuplicateColumnNames) {
  const TRows Twice = {{V("k"), V("k")}, {V(1), V(2)}};
  EXPECT_EQ(Query("select *", Twice), Twice);
  EXPECT_EQ(Query("select k", Twice), (TRows{{V("k")}, {V(1)}})) << "a name finds its first column";
}

TEST(Query, WindowAndArgumentFaults) {
  EXPECT_EQ(Query("select A limit 0"), NotAvailable);
  EXPECT_EQ(Query("select A offset 5"), NotAvailable);
  EXPECT_EQ(Query("select A offset 4"), (TRows{{V("Name")}, {V("Eve")}}));
  EXPECT_EQ(Query("select A limit -1"), ValueError);
  EXPECT_EQ(Query("select A limit 1.9"), (TRows{{V("Name")}, {V("Ann")}})) << "truncated";
  EXPECT_EQ(Query("select A limit 99999999999999999999"), Query("select A"));
  EXPECT_EQ(Query("   "), ValueError);
  EXPECT_EQ(RowsOf(CallArray("QUERY", {Table(Staff)})), ValueError);
  EXPECT_EQ(RowsOf(CallArray("QUERY", {Range({}, 0, 0), "select *"})), NotAvailable);
  EXPECT_EQ(RowsOf(CallArray("QUERY", {5, "select Col1", 0})), (TRows{{V(5)}})) << "a scalar is a 1 by 1 range";
  EXPECT_EQ(Call("QUERY", {Table(Staff), "select C order by C desc"}), V("Salary"))
      << "in scalar context the first value: the heading";
}

}  // namespace
}  // namespace Tabrino
