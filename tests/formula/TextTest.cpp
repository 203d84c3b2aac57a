#include <gtest/gtest.h>

#include <string>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Characters.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

const char* const Smile = "\xF0\x9F\x98\x80";  // U+1F600: two UTF-16 units

std::string Repeated(const char* S, size_t Times) {
  std::string Out;
  for (size_t I = 0; I < Times; ++I) Out += S;
  return Out;
}

TEST(Text, WrongArgumentCounts) {
  ExpectCases({
      {"CONCAT", {}, E(ceValue)},
      {"LEN", {}, E(ceValue)},
      {"LEFT", {"a", 1, 2}, E(ceValue)},
      {"MID", {"abc", 1}, E(ceValue)},
      {"FIND", {"a"}, E(ceValue)},
      {"SUBSTITUTE", {"a", "b"}, E(ceValue)},
      {"REPLACE", {"a", 1, 1}, E(ceValue)},
      {"TEXT", {1}, E(ceValue)},
      {"TEXTJOIN", {",", true}, E(ceValue)},
  });
}

TEST(Text, ArgumentsReadAsDisplayText) {
  ExpectCases({
      {"LEN", {12.5}, V(4)},
      {"LEN", {true}, V(4)},
      {"LEN", {Blank()}, V(0)},
      {"LEN", {E(ceDiv0)}, V(7)},  // "#DIV/0!"
      {"UPPER", {Column({V("first"), V("second")})}, V("FIRST")},
      {"CONCATENATE", {"a", 1, true, Column({V("x"), V("y")})}, V("a1TRUEx")},
      {"EXACT", {1, "1"}, V(true)},
      {"EXACT", {"a", "A"}, V(false)},
  });
}

TEST(Text, CountsAreUtf16UnitsTruncatedAndNeverNegative) {
  std::string Mixed = std::string("a") + Smile + "b";
  ExpectCases({
      {"LEN", {Smile}, V(2)},
      {"LEN", {"\xC3\xA9t\xC3\xA9"}, V(3)},  // été
      {"LEFT", {"abc"}, V("a")},
      {"LEFT", {"abc", 2.9}, V("ab")},
      {"LEFT", {"abc", 10}, V("abc")},
      {"LEFT", {"abc", 0}, V("")},
      {"LEFT", {"abc", -1}, E(ceValue)},
      {"LEFT", {"abc", "x"}, E(ceValue)},
      {"LEFT", {Mixed.c_str(), 3}, V((std::string("a") + Smile).c_str())},
      {"RIGHT", {"abc", 2}, V("bc")},
      {"RIGHT", {"abc", 5}, V("abc")},
      {"RIGHT", {"abc", -1}, E(ceValue)},
      {"RIGHT", {Mixed.c_str(), 3}, V((std::string(Smile) + "b").c_str())},
      {"MID", {"abcdef", 2, 3}, V("bcd")},
      {"MID", {"abc", 5, 1}, V("")},
      {"MID", {"abc", 0, 1}, E(ceValue)},
      {"MID", {"abc", 1, -1}, E(ceValue)},
      {"MID", {Mixed.c_str(), 4, 1}, V("b")},
      {"MID", {"abc", 1, 1E300}, V("abc")},
  });
}

TEST(Text, CaseMappingCoversLatinGreekAndCyrillic) {
  ExpectCases({
      {"UPPER", {"abc \xC3\xA9\xC3\xBF"}, V("ABC \xC3\x89\xC5\xB8")},  // éÿ -> ÉŸ
      {"LOWER", {"ABC \xC3\x89\xC5\xB8"}, V("abc \xC3\xA9\xC3\xBF")},
      {"UPPER",
       {"stra\xC3\x9F"
        "e"},
       V("STRA\xC3\x9F"
         "E")},  // ß has no single upper case
      {"UPPER",
       {"\xC5\x82\xC3\xB3"
        "d\xC5\xBA"},
       V("\xC5\x81\xC3\x93"
         "D\xC5\xB9")},                                        // łódź
      {"UPPER", {"\xCF\x83\xCF\x82"}, V("\xCE\xA3\xCE\xA3")},  // σς
      {"LOWER", {"\xD0\x9F\xD0\x81"}, V("\xD0\xBF\xD1\x91")},  // ПЁ
      {"UPPER", {Smile}, V(Smile)},
      {"PROPER", {"hello wORLD"}, V("Hello World")},
      {"PROPER", {"2-way street's"}, V("2-Way Street'S")},
      {"PROPER", {"76budget"}, V("76Budget")},
      {"PROPER", {"\xC3\xA9t\xC3\xA9 \xC3\xA0"}, V("\xC3\x89t\xC3\xA9 \xC3\x80")},
  });
}

TEST(Text, CaseTablesRoundTrip) {
  for (char32_t C = 0; C < 0x500; ++C) {
    char32_t Upper = UpperChar(C), Lower = LowerChar(C);
    if (Upper != C && C != 0x3C2) {  // final sigma upper-cases to the sigma of the middle of a word
      EXPECT_EQ(LowerChar(Upper), C) << std::hex << static_cast<uint32_t>(C);
    }
    if (Lower != C) {
      EXPECT_EQ(UpperChar(Lower), C) << std::hex << static_cast<uint32_t>(C);
    }
  }
}

TEST(Text, TrimCleanAndRept) {
  ExpectCases({
      {"TRIM", {"  a   b  c  "}, V("a b c")},
      {"TRIM", {"   "}, V("")},
      {"TRIM", {"a\tb"}, V("a\tb")},
      {"CLEAN",
       {"a\x01"
        "b\nc\x7F"},
       V("abc\x7F")},
      {"REPT", {"ab", 3}, V("ababab")},
      {"REPT", {"ab", 0}, V("")},
      {"REPT", {"ab", -1}, E(ceValue)},
      {"REPT", {"x", 32767}, V(Repeated("x", 32767).c_str())},
      {"REPT", {"x", 32768}, E(ceValue)},
      {"REPT", {Smile, 20000}, E(ceValue)},  // 40,000 units
      {"REPT", {"ab", 1E300}, E(ceValue)},
      {"REPT", {"", 1E300}, V("")},
  });
}

TEST(Text, FindIsExactAndSearchIgnoresCase) {
  std::string Mixed = std::string(Smile) + "ab";
  ExpectCases({
      {"FIND", {"b", "abcb"}, V(2)},
      {"FIND", {"b", "abcb", 3}, V(4)},
      {"FIND", {"B", "abc"}, E(ceValue)},
      {"FIND", {"", "abc"}, V(1)},
      {"FIND", {"", "abc", 4}, V(4)},
      {"FIND", {"a", "abc", 5}, E(ceValue)},
      {"FIND", {"a", "abc", 0}, E(ceValue)},
      {"FIND", {"a*", "abc"}, E(ceValue)},  // no wildcards
      {"FIND", {"b", Mixed.c_str()}, V(4)},
      {"SEARCH", {"B", "abc"}, V(2)},
      {"SEARCH", {"\xC3\x89", "caf\xC3\xA9"}, V(4)},
      {"SEARCH", {"?", "abc"}, E(ceValue)},
      {"SEARCH", {"c", "abc", 4}, E(ceValue)},
  });
}

TEST(Text, SubstituteAndReplace) {
  ExpectCases({
      {"SUBSTITUTE", {"a-b-c", "-", "+"}, V("a+b+c")},
      {"SUBSTITUTE", {"a-b-c", "-", "+", 2}, V("a-b+c")},
      {"SUBSTITUTE", {"a-b-c", "-", "+", 3}, V("a-b-c")},
      {"SUBSTITUTE", {"a-b-c", "-", "+", 0}, E(ceValue)},
      {"SUBSTITUTE", {"aaa", "aa", "b"}, V("ba")},
      {"SUBSTITUTE", {"abc", "", "x"}, V("abc")},
      {"SUBSTITUTE", {"abc", "B", "x"}, V("abc")},
      {"SUBSTITUTE", {Repeated("a", 20000).c_str(), "a", "bb"}, E(ceValue)},
      {"REPLACE", {"abcdef", 2, 3, "X"}, V("aXef")},
      {"REPLACE", {"abc", 4, 0, "d"}, V("abcd")},
      {"REPLACE", {"abc", 9, 2, "d"}, V("abcd")},
      {"REPLACE", {"abc", 0, 1, "d"}, E(ceValue)},
      {"REPLACE", {"abc", 1, -1, "d"}, E(ceValue)},
      {"REPLACE", {(std::string(Smile) + "x").c_str(), 3, 1, "y"}, V((std::string(Smile) + "y").c_str())},
  });
}

TEST(Text, ValueAndText) {
  ExpectCases({
      {"VALUE", {" 12.5 "}, V(12.5)},
      {"VALUE", {"1e3"}, V(1000)},
      {"VALUE", {"abc"}, E(ceValue)},
      {"VALUE", {""}, E(ceValue)},
      {"VALUE", {Blank()}, V(0)},
      {"VALUE", {E(ceNA)}, E(ceValue)},
      {"TEXT", {1234.5, "#,##0.00"}, V("1,234.50")},
      {"TEXT", {"1234.5", "0.0"}, V("1234.5")},
      {"TEXT", {Blank(), "0.0"}, V("0.0")},
      {"TEXT", {45351, "yyyy-mm-dd"}, V("2024-02-29")},
      {"TEXT", {"abc", "0.00"}, V("abc")},
      {"TEXT", {true, "0"}, V("TRUE")},
  });
}

TEST(Text, CharAndCodeSpeakWindows1252) {
  ExpectCases({
      {"CHAR", {65}, V("A")},
      {"CHAR", {65.9}, V("A")},
      {"CHAR", {233}, V("\xC3\xA9")},
      {"CHAR", {128}, V("\xE2\x82\xAC")},  // euro sign
      {"CHAR", {0}, E(ceValue)},
      {"CHAR", {256}, E(ceValue)},
      {"CHAR", {"x"}, E(ceValue)},
      {"CODE", {"ABC"}, V(65)},
      {"CODE", {"\xC3\xA9"}, V(233)},
      {"CODE", {"\xE2\x82\xAC"}, V(128)},
      {"CODE", {Smile}, V(63)},
      {"CODE", {""}, E(ceValue)},
  });
  for (int Byte = 1; Byte <= 255; ++Byte) EXPECT_EQ(Call("CODE", {Call("CHAR", {Byte})}), V(Byte)) << Byte;
}

TEST(Text, ConcatAndTextJoinWalkEveryCell) {
  TFormulaArg Block = Range({V("a"), Blank(), V(1), V(true)}, 2, 2);
  ExpectCases({
      {"CONCAT", {Block, "z"}, V("a1TRUEz")},
      {"CONCAT", {Range({}, 0, 0)}, V("")},
      {"TEXTJOIN", {"-", true, Block, "z"}, V("a-1-TRUE-z")},
      {"TEXTJOIN", {"-", false, Block}, V("a--1-TRUE")},
      {"TEXTJOIN", {Column({V(", "), V("x")}), 1, "a", "b"}, V("a, b")},
      {"TEXTJOIN", {"-", true, Blank(), ""}, V("")},
  });
  std::vector<TCellValue> Many(20000, V("ab"));
  TFormulaArg Big = Column(Many);
  EXPECT_EQ(Call("CONCAT", {Big}), E(ceValue));
  EXPECT_EQ(Call("TEXTJOIN", {",", true, Big}), E(ceValue));
}

}  // namespace
}  // namespace Tabrino
