#include <gtest/gtest.h>

#include <string>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Regex, ArgumentCountsAndErrorsFirst) {
  ExpectCases({
      {"REGEXEXTRACT", {"a"}, E(ceValue)},
      {"REGEXREPLACE", {"a", "b"}, E(ceValue)},
      {"REGEXMATCH", {"a"}, E(ceValue)},
      {"REGEXTEST", {"a", "b", 0, 1}, E(ceValue)},
      {"ISEMAIL", {}, E(ceValue)},
      {"JOIN", {"-"}, E(ceValue)},
      {"ARRAY_CONSTRAIN", {1, 1}, E(ceValue)},
      // The first argument holding an error wins, before the pattern is looked at.
      {"REGEXMATCH", {E(ceNA), "("}, E(ceNA)},
      {"REGEXEXTRACT", {"x", E(ceDiv0)}, E(ceDiv0)},
      {"REGEXREPLACE", {"x", "x", E(ceRef)}, E(ceRef)},
      {"ISURL", {E(ceNum)}, E(ceNum)},
      {"ARRAY_CONSTRAIN", {Range({E(ceNA), V(1)}, 1, 2), 1, 1}, E(ceNA)},
  });
}

TEST(Regex, RejectedPatternsAreValueErrors) {
  ExpectCases({
      {"REGEXMATCH", {"abc", "("}, E(ceValue)},
      {"REGEXEXTRACT", {"abc", "[a-"}, E(ceValue)},
      {"REGEXREPLACE", {"abc", "a{2,1}", "x"}, E(ceValue)},
      {"REGEX", {"abc", "(?<"}, E(ceValue)},
  });
}

TEST(Regex, Extract) {
  ExpectCases({
      {"REGEXEXTRACT", {"ab12", "[0-9]+"}, V("12")},
      {"REGEXEXTRACT", {"ab12", "(\\w)\\d"}, V("b")},
      {"REGEXEXTRACT", {"ab12", "(x)?b"}, V("")},
      {"REGEXEXTRACT", {"ab12", "z"}, E(ceNA)},
      {"REGEXEXTRACT", {12.5, "\\d+$"}, V("5")},
      {"REGEXEXTRACT", {"Größe 42", "\\w+"}, V("Größe")},
      {"REGEXEXTRACT", {"ABC", "b"}, E(ceNA)},
      {"REGEXEXTRACT", {"ABC", "b", 0, 1}, V("B")},
      {"REGEXEXTRACT", {"ABC", "b", 3}, E(ceValue)},
      {"REGEXEXTRACT", {"ABC", "b", 0, 2}, E(ceValue)},
  });
  TFormulaArg All = CallArray("REGEXEXTRACT", {"a1 b22 c333", "[a-z](\\d+)", 1});
  ASSERT_TRUE(All.IsRange);
  EXPECT_EQ(All.RowCount, 3);
  EXPECT_EQ(All.ColCount, 1);
  EXPECT_EQ(All.CellAt(2, 0), V("333"));
  TFormulaArg Groups = CallArray("REGEXEXTRACT", {"2024-06-30", "(\\d+)-(\\d+)-(\\d+)", 2});
  ASSERT_TRUE(Groups.IsRange);
  EXPECT_EQ(Groups.RowCount, 1);
  EXPECT_EQ(Groups.ColCount, 3);
  EXPECT_EQ(Groups.CellAt(0, 1), V("06"));
}

TEST(Regex, Replace) {
  ExpectCases({
      {"REGEXREPLACE", {"a1b22", "\\d+", "#"}, V("a#b#")},
      {"REGEXREPLACE", {"John Smith", "(\\w+) (\\w+)", "$2, ${1}"}, V("Smith, John")},
      {"REGEXREPLACE", {"cost", "o", "$$"}, V("c$st")},
      {"REGEXREPLACE", {"abc", "x*", "-"}, V("-a-b-c-")},
      {"REGEXREPLACE", {"a1b2c3", "\\d", "#", 2}, V("a1b#c3")},
      {"REGEXREPLACE", {"a1b2c3", "\\d", "#", -1}, V("a1b2c#")},
      {"REGEXREPLACE", {"a1b2c3", "\\d", "#", 4}, V("a1b2c3")},
      {"REGEXREPLACE", {"a1b2c3", "\\d", "#", -4}, V("a1b2c3")},
      {"REGEXREPLACE", {"ABC", "b", "x", 0, 1}, V("AxC")},
      {"REGEXREPLACE", {"abc", "b", "$5"}, E(ceValue)},
      {"REGEXREPLACE", {"abc", "(x)?b", "[$1]"}, V("a[]c")},
      {"REGEXREPLACE", {"é-é", "é", "e"}, V("e-e")},
  });
}

TEST(Regex, MatchAndTest) {
  ExpectCases({
      {"REGEXMATCH", {"abc", "^a.c$"}, V(true)},
      {"REGEXMATCH", {"abc", "^b"}, V(false)},
      {"REGEXTEST", {"ÄRGER", "ärger", 1}, V(true)},
      {"REGEXTEST", {"ÄRGER", "ärger"}, V(false)},
      {"REGEXMATCH", {"", "^$"}, V(true)},
      {"REGEXMATCH", {true, "^TRUE$"}, V(true)},
  });
}

TEST(Regex, CatalogueRegex) {
  ExpectCases({
      {"REGEX", {"abcdefg", "cd"}, V("cd")},
      {"REGEX", {"abcdefg", "x"}, E(ceNA)},
      {"REGEX", {"abc", "[a-z]", Blank(), 2}, V("b")},
      {"REGEX", {"abc", "[a-z]", Blank(), 4}, E(ceNA)},
      {"REGEX", {"axbxc", "x", "-"}, V("a-bxc")},
      {"REGEX", {"axbxc", "x", "-", "g"}, V("a-b-c")},
      {"REGEX", {"axbxc", "x", "-", 2}, V("axb-c")},
      {"REGEX", {"axbxc", "x", ""}, V("abxc")},
      {"REGEX", {"abc", "x", "-"}, V("abc")},
      {"REGEX", {"axbxc", "x", "-", 0}, V("axbxc")},
      {"REGEX", {"axbxc", "x", "-", "q"}, E(ceValue)},
      {"REGEX", {"axbxc", "x", "-", -1}, E(ceValue)},
      {"REGEX", {"John Smith", "(\\w+) (\\w+)", "$2"}, V("Smith")},
  });
}

TEST(Regex, HostilePatternsEndQuicklyWithAnError) {
  const std::string Almost = std::string(34, 'a') + "b";
  const std::string Long = std::string(5000, 'x');
  const std::string Hostile = Long + "zy";
  ExpectCases({
      {"REGEXMATCH", {Almost.c_str(), "(a+)+$"}, E(ceValue)},
      {"REGEXEXTRACT", {Almost.c_str(), "^(a|a)*$"}, E(ceValue)},
      // The "y" after the run defeats the search for a required character.
      {"REGEXREPLACE", {Hostile.c_str(), "(x+x+)+y", "-"}, E(ceValue)},
      {"REGEX", {Almost.c_str(), "(a*)*$", "-", "g"}, E(ceValue)},
  });
  // The same text with a pattern that does not backtrack is fine.
  EXPECT_EQ(Call("REGEXREPLACE", {Long.c_str(), "x+", "-"}), V("-"));
}

TEST(Regex, IsEmail) {
  ExpectCases({
      {"ISEMAIL", {"ann@example.com"}, V(true)},
      {"ISEMAIL", {"ann@localhost"}, V(false)},
      {"ISEMAIL", {"ann@ex@ample.com"}, V(false)},
      {"ISEMAIL", {" ann@example.com"}, V(false)},
      {"ISEMAIL", {"ann.b@example"}, V(false)},
      {"ISEMAIL", {"@example.com"}, V(false)},
      {"ISEMAIL", {"ann@"}, V(false)},
      {"ISEMAIL", {""}, V(false)},
      {"ISEMAIL", {42}, V(false)},
  });
}

TEST(Regex, IsUrl) {
  ExpectCases({
      {"ISURL", {"  http://localhost  "}, V(true)},
      {"ISURL", {"HTTPS://x"}, V(true)},
      {"ISURL", {"example.com"}, V(true)},
      {"ISURL", {"exam ple.com"}, V(false)},
      {"ISURL", {"http://a b"}, V(false)},
      {"ISURL", {"localhost"}, V(false)},
      {"ISURL", {"   "}, V(false)},
      {"ISURL", {1.5}, V(true)},
  });
}

TEST(Regex, Join) {
  ExpectCases({
      {"JOIN", {"-", Range({V("a"), V(""), V("b"), Blank()}, 2, 2), "c"}, V("a-b-c")},
      {"JOIN", {", ", 1, true, ""}, V("1, TRUE")},
      {"JOIN", {"-", Range({V("a"), E(ceDiv0)}, 1, 2), "c"}, E(ceDiv0)},
      {"JOIN", {E(ceNA), "a"}, E(ceNA)},
      {"JOIN", {"-", "", ""}, V("")},
  });
  const std::string Big(20000, 'x');
  EXPECT_EQ(Call("JOIN", {"", Big.c_str(), Big.c_str()}), E(ceValue)) << "past the text cap";
}

TEST(Regex, ArrayConstrain) {
  const TFormulaArg Square = Range({V(1), V(2), V(3), V(4), V(5), V(6), V(7), V(8), V(9)}, 3, 3);
  TFormulaArg Block = CallArray("ARRAY_CONSTRAIN", {Square, 2, 5});
  ASSERT_TRUE(Block.IsRange);
  EXPECT_EQ(Block.RowCount, 2);
  EXPECT_EQ(Block.ColCount, 3);
  EXPECT_EQ(Block.CellAt(1, 2), V(6));
  EXPECT_EQ(Call("ARRAY_CONSTRAIN", {Square, 2, 5}), V(1)) << "as a plain function, the top-left value";
  TFormulaArg Truncated = CallArray("ARRAY_CONSTRAIN", {Square, 1.9, "2"});
  EXPECT_EQ(Truncated.RowCount, 1);
  EXPECT_EQ(Truncated.ColCount, 2);
  EXPECT_EQ(CallArray("ARRAY_CONSTRAIN", {7, 3, 3}).CellAt(0, 0), V(7));
  ExpectCases({
      {"ARRAY_CONSTRAIN", {Square, 0, 1}, E(ceValue)},
      {"ARRAY_CONSTRAIN", {Square, 1, "x"}, E(ceValue)},
  });
}

}  // namespace
}  // namespace Tabrino
