#include <gtest/gtest.h>

#include <string>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(NumberSystems, WrongArgumentCounts) {
  ExpectCases({
      {"ROMAN", {}, E(ceValue)},
      {"ROMAN", {1, 0, 0}, E(ceValue)},
      {"ARABIC", {"I", "I"}, E(ceValue)},
      {"BASE", {1}, E(ceValue)},
      {"BASE", {1, 2, 3, 4}, E(ceValue)},
      {"DECIMAL", {"1"}, E(ceValue)},
  });
}

TEST(NumberSystems, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"ROMAN", {"x"}, E(ceValue)},
      {"ROMAN", {10, "form"}, E(ceValue)},
      {"ROMAN", {"14", "1"}, V("XIV")},
      {"ARABIC", {5}, E(ceValue)},  // documented: numbers are no numerals
      {"ARABIC", {true}, E(ceValue)},
      {"ARABIC", {E(ceNA)}, E(ceValue)},
      {"ARABIC", {Blank()}, V(0)},
      {"BASE", {"x", 2}, E(ceValue)},
      {"BASE", {5, "two"}, E(ceValue)},
      {"BASE", {5, 2, "wide"}, E(ceValue)},
      {"DECIMAL", {"FF", "x"}, E(ceValue)},
      {"DECIMAL", {111, 2}, V(7)},  // a number is read by its digits
  });
}

// 499 in the five forms, as documented; 1999 in the concise ones.
TEST(NumberSystems, RomanForms) {
  ExpectCases({
      {"ROMAN", {499}, V("CDXCIX")},
      {"ROMAN", {499, 0}, V("CDXCIX")},
      {"ROMAN", {499, 1}, V("LDVLIV")},
      {"ROMAN", {499, 2}, V("XDIX")},
      {"ROMAN", {499, 3}, V("VDIV")},
      {"ROMAN", {499, 4}, V("ID")},
      {"ROMAN", {499, true}, V("CDXCIX")},
      {"ROMAN", {499, false}, V("ID")},
      {"ROMAN", {499, 3.9}, V("VDIV")},
      {"ROMAN", {1999, 1}, V("MLMVLIV")},
      {"ROMAN", {1999, 2}, V("MXMIX")},
      {"ROMAN", {1999, 3}, V("MVMIV")},
      {"ROMAN", {1999, 4}, V("MIM")},
      {"ROMAN", {3999}, V("MMMCMXCIX")},
      {"ROMAN", {2024}, V("MMXXIV")},
      {"ROMAN", {2.9}, V("II")},
      {"ROMAN", {0}, V("")},
  });
}

TEST(NumberSystems, RomanDomain) {
  ExpectCases({
      {"ROMAN", {4000}, E(ceValue)},
      {"ROMAN", {-1}, E(ceValue)},
      {"ROMAN", {1E300}, E(ceValue)},
      {"ROMAN", {10, 5}, E(ceValue)},
      {"ROMAN", {10, -1}, E(ceValue)},
  });
}

TEST(NumberSystems, Arabic) {
  ExpectCases({
      {"ARABIC", {"LVII"}, V(57)},
      {"ARABIC", {"mcmxii"}, V(1912)},
      {"ARABIC", {"mxmvii"}, V(1997)},
      {"ARABIC", {"MMMCMXCIX"}, V(3999)},
      {"ARABIC", {""}, V(0)},
      {"ARABIC", {"  XIV "}, V(14)},
      {"ARABIC", {"-MMXI"}, V(-2011)},
      {"ARABIC", {"IIII"}, V(4)},
      {"ARABIC", {"-"}, E(ceValue)},
      {"ARABIC", {"X I"}, E(ceValue)},
      {"ARABIC", {"ABC"}, E(ceValue)},
      {"ARABIC", {"--X"}, E(ceValue)},
  });
  EXPECT_EQ(Call("ARABIC", {std::string(255, 'M').c_str()}), V(255000));
  EXPECT_EQ(Call("ARABIC", {std::string(256, 'M').c_str()}), E(ceValue));
}

// Every numeral of every form reads back to its number.
TEST(NumberSystems, ArabicReadsEveryRomanForm) {
  for (int Form = 0; Form <= 4; ++Form) {
    for (int N = 0; N <= 3999; ++N) {
      TCellValue Numeral = Call("ROMAN", {N, Form});
      ASSERT_EQ(Numeral.Kind, cvkText) << N;
      ASSERT_EQ(Call("ARABIC", {TFormulaArg::FromScalar(Numeral)}), V(N)) << Numeral.Text << " form " << Form;
    }
  }
}

TEST(NumberSystems, Base) {
  ExpectCases({
      {"BASE", {7, 2}, V("111")},
      {"BASE", {100, 16}, V("64")},
      {"BASE", {15, 2, 10}, V("0000001111")},
      {"BASE", {255, 16, 1}, V("FF")},
      {"BASE", {0, 2}, V("0")},
      {"BASE", {0, 2, 3}, V("000")},
      {"BASE", {35.9, 36}, V("Z")},
      {"BASE", {9007199254740991.0, 36}, V("2GOSA7PA2GV")},  // Python: 2**53-1 in base 36
      {"BASE", {-1, 2}, E(ceNum)},
      {"BASE", {9007199254740992.0, 2}, E(ceNum)},
      {"BASE", {1, 1}, E(ceNum)},
      {"BASE", {1, 37}, E(ceNum)},
      {"BASE", {1, 2, -1}, E(ceNum)},
      {"BASE", {1, 2, 256}, E(ceNum)},
  });
  EXPECT_EQ(Call("BASE", {1, 2, 255}).Text.size(), 255u);
}

TEST(NumberSystems, Decimal) {
  ExpectCases({
      {"DECIMAL", {"FF", 16}, V(255)},
      {"DECIMAL", {"ff", 16}, V(255)},
      {"DECIMAL", {"zap", 36}, V(45745)},  // Python: int("zap", 36)
      {"DECIMAL", {"", 2}, V(0)},
      {"DECIMAL", {"0017", 8.9}, V(15)},
      {"DECIMAL", {"12", 2}, E(ceNum)},
      {"DECIMAL", {"G", 16}, E(ceNum)},
      {"DECIMAL", {"-1", 10}, E(ceNum)},
      {"DECIMAL", {"1.5", 10}, E(ceNum)},
      {"DECIMAL", {"FF", 37}, E(ceNum)},
      {"DECIMAL", {"FF", 1}, E(ceNum)},
  });
  EXPECT_EQ(Call("DECIMAL", {std::string(255, '1').c_str(), 2}).Kind, cvkNumber);
  EXPECT_EQ(Call("DECIMAL", {std::string(256, '1').c_str(), 2}), E(ceValue));
  EXPECT_EQ(Call("DECIMAL", {std::string(255, 'Z').c_str(), 36}), E(ceNum));  // past the largest double
}

}  // namespace
}  // namespace Tabrino
