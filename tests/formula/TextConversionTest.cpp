#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(ValueToText, ConciseAndStrictForms) {
  ExpectCases({
      {"VALUETOTEXT", {}, E(ceValue)},
      {"VALUETOTEXT", {"a", 2}, E(ceValue)},
      {"VALUETOTEXT", {"a", "x"}, E(ceValue)},
      {"VALUETOTEXT", {"say \"hi\""}, V("say \"hi\"")},
      {"VALUETOTEXT", {"say \"hi\"", 1}, V("\"say \"\"hi\"\"\"")},
      {"VALUETOTEXT", {1.5, 1}, V("1.5")},
      {"VALUETOTEXT", {true, 1}, V("TRUE")},
      {"VALUETOTEXT", {E(ceNA)}, V("#N/A")},
      {"VALUETOTEXT", {Blank()}, V("")},
  });
  TFormulaArg Each = CallArray("VALUETOTEXT", {Range({V(1), V("b")}, 1, 2), 1});
  EXPECT_EQ(Each.CellAt(0, 1), V("\"b\""));
}

TEST(ArrayToText, ConciseListAndStrictArrayConstant) {
  TFormulaArg Block = Range({V(1), V("a"), V(true), E(ceNA)}, 2, 2);
  ExpectCases({
      {"ARRAYTOTEXT", {Block}, V("1, a, TRUE, #N/A")},
      {"ARRAYTOTEXT", {Block, 1}, V("{1,\"a\";TRUE,#N/A}")},
      {"ARRAYTOTEXT", {Range({V(1), Blank(), V(3)}, 1, 3)}, V("1, , 3")},
      {"ARRAYTOTEXT", {5, 1}, V("{5}")},
      {"ARRAYTOTEXT", {Block, -1}, E(ceValue)},
  });
}

TEST(UniCharUniCode, FullCodePoints) {
  ExpectCases({
      {"UNICHAR", {65}, V("A")},
      {"UNICHAR", {0x1F600}, V("😀")},
      {"UNICHAR", {66.9}, V("B")},
      {"UNICHAR", {0}, E(ceValue)},
      {"UNICHAR", {0x110000}, E(ceValue)},
      {"UNICHAR", {0xD800}, E(ceNA)},
      {"UNICHAR", {"x"}, E(ceValue)},
      {"UNICODE", {"😀x"}, V(0x1F600)},
      {"UNICODE", {"é"}, V(233)},
      {"UNICODE", {""}, E(ceValue)},
      {"UNICODE", {12}, V(49)},
      {"UNICODE", {E(ceRef)}, E(ceRef)},
  });
}

TEST(TAndRot13, Basics) {
  ExpectCases({
      {"T", {"abc"}, V("abc")},
      {"T", {12}, V("")},
      {"T", {true}, V("")},
      {"T", {E(ceDiv0)}, E(ceDiv0)},
      {"T", {Column({V("x"), V(1)})}, V("x")},
      {"ROT13", {"Hello, World!"}, V("Uryyb, Jbeyq!")},
      {"ROT13", {"Uryyb"}, V("Hello")},
      {"ROT13", {"ü1"}, V("ü1")},
  });
}

TEST(DoubleByte, SingleByteLocaleBehaviour) {
  ExpectCases({
      {"LENB", {"héllo😀"}, V(7)},
      {"LEFTB", {"abc", 2}, V("ab")},
      {"RIGHTB", {"abc"}, V("c")},
      {"MIDB", {"abcdef", 2, 3}, V("bcd")},
      {"FINDB", {"c", "abcabc", 4}, V(6)},
      {"SEARCHB", {"C", "abc"}, V(3)},
      {"REPLACEB", {"abcdef", 2, 3, "X"}, V("aXef")},
      {"LEFTB", {"abc", -1}, E(ceValue)},
      {"MIDB", {"abc", 1}, E(ceValue)},
      {"ASC", {"ＡＢＣ abc"}, V("ＡＢＣ abc")},
      {"JIS", {"abc"}, V("abc")},
      {"DBCS", {12}, V("12")},
      {"PHONETIC", {"東京"}, V("東京")},
      {"ASC", {E(ceNA)}, E(ceNA)},
  });
}

}  // namespace
}  // namespace Tabrino
