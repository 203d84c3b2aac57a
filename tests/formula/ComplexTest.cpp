#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Complex, ArgumentCounts) {
  ExpectCases({
      {"COMPLEX", {1}, E(ceValue)},
      {"IMABS", {"1", "2"}, E(ceValue)},
      {"IMSUM", {}, E(ceValue)},
      {"IMPOWER", {"i"}, E(ceValue)},
  });
}

TEST(Complex, ComplexFormatsLikeASpreadsheet) {
  ExpectCases({
      {"COMPLEX", {3, 4}, V("3+4i")},
      {"COMPLEX", {3, 4, "j"}, V("3+4j")},
      {"COMPLEX", {1.5, -2.25}, V("1.5-2.25i")},
      {"COMPLEX", {0, 1}, V("i")},
      {"COMPLEX", {0, -1}, V("-i")},
      {"COMPLEX", {2, 1}, V("2+i")},
      {"COMPLEX", {1, 0}, V("1")},
      {"COMPLEX", {0, 0}, V("0")},
      {"COMPLEX", {1, 2, ""}, V("1+2i")},
      {"COMPLEX", {1, 1E-20}, V("1+1E-20i")},
      {"COMPLEX", {1, 1, "I"}, E(ceValue)},
      {"COMPLEX", {"a", 1}, E(ceValue)},
  });
}

TEST(Complex, ParsingAcceptsTheDocumentedForms) {
  ExpectCases({
      {"IMAGINARY", {"3+4i"}, V(4)},
      {"IMAGINARY", {"i"}, V(1)},
      {"IMAGINARY", {"+i"}, V(1)},
      {"IMAGINARY", {"-j"}, V(-1)},
      {"IMAGINARY", {"1-i"}, V(-1)},
      {"IMAGINARY", {"4"}, V(0)},
      {"IMAGINARY", {5}, V(0)},
      {"IMREAL", {"-2.5e+3+1e-1j"}, V(-2500)},
      {"IMAGINARY", {"-2.5e+3+1e-1j"}, V(0.1)},
      {"IMREAL", {"6-9i"}, V(6)},
      {"IMREAL", {""}, V(0)},
      {"IMREAL", {Blank()}, V(0)},
      {"IMABS", {"5+12i"}, V(13)},
      {"IMCONJUGATE", {"3+4i"}, V("3-4i")},
      {"IMCONJUGATE", {"-j"}, V("j")},
  });
}

TEST(Complex, UnparsableTextIsNum) {
  ExpectCases({
      {"IMABS", {"3+4"}, E(ceNum)},
      {"IMABS", {"3 + 4i"}, E(ceNum)},
      {"IMABS", {"i3"}, E(ceNum)},
      {"IMABS", {"3+4I"}, E(ceNum)},
      {"IMABS", {"1+2+3i"}, E(ceNum)},
      {"IMABS", {"ii"}, E(ceNum)},
      {"IMABS", {"1e999"}, E(ceNum)},
      {"IMABS", {true}, E(ceValue)},
      {"IMABS", {E(ceNA)}, E(ceValue)},
      {"IMSUM", {"1+i", "1+j"}, E(ceValue)},
  });
}

TEST(Complex, Arithmetic) {
  ExpectCases({
      {"IMSUM", {"3+4i", "5-3i"}, V("8+i")},
      {"IMSUM", {Column({V("1+j"), Blank(), V(2)})}, V("3+j")},
      {"IMSUB", {"13+4i", "5+3i"}, V("8+i")},
      {"IMPRODUCT", {"3+4i", "5-3i"}, V("27+11i")},
      {"IMPRODUCT", {"1+2i", 30}, V("30+60i")},
      {"IMDIV", {"-238+240i", "10+24i"}, V("5+12i")},
      {"IMDIV", {"1", "0"}, E(ceNum)},
      // Powers go through the polar form, rounding included.
      {"IMPOWER", {"2+3i", 3}, V("-46+9.00000000000001i")},
      {"IMPOWER", {"i", 2}, V("-1+1.22464679914735E-16i")},
      {"IMPOWER", {"0", 0}, E(ceNum)},
      {"IMPOWER", {"0", 2}, V("0")},
      {"IMPOWER", {"i", "x"}, E(ceValue)},
      {"IMSQRT", {"1+i"}, V("1.09868411346781+0.455089860562227i")},
      {"IMARGUMENT", {"0"}, E(ceDiv0)},
  });
  EXPECT_TRUE(IsNear(Call("IMARGUMENT", {"3+4i"}), 0.927295218001612232428512462922));
}

// Expected texts: mpmath at 30 digits, each part rounded to 15 significant
// digits.
TEST(Complex, ElementaryFunctions) {
  ExpectCases({
      {"IMEXP", {"1+i"}, V("1.46869393991589+2.28735528717884i")},
      {"IMLN", {"3+4i"}, V("1.6094379124341+0.927295218001612i")},
      {"IMLOG10", {"3+4i"}, V("0.698970004336019+0.402719196273373i")},
      {"IMLOG2", {"3+4i"}, V("2.32192809488736+1.33780421245098i")},
      {"IMSIN", {"4+3i"}, V("-7.61923172032141-6.548120040911i")},
      {"IMCOS", {"1+i"}, V("0.833730025131149-0.988897705762865i")},
      {"IMTAN", {"4+3i"}, V("0.00490825806749606+1.00070953606723i")},
      {"IMSINH", {"4+3i"}, V("-27.0168132580039+3.85373803791938i")},
      {"IMCOSH", {"4+3i"}, V("-27.0349456030742+3.85115333481178i")},
      {"IMSEC", {"4+3i"}, V("-0.065294027857947-0.0752249603027732i")},
      {"IMSECH", {"4+3i"}, V("-0.0362534969158689-0.00516434460775318i")},
      {"IMCSC", {"4+3i"}, V("-0.0754898329158637+0.0648774713706355i")},
      {"IMCSCH", {"4+3i"}, V("-0.036275889628626-0.0051744731840194i")},
      {"IMCOT", {"4+3i"}, V("0.00490118239430447-0.999266927805902i")},
      {"IMLN", {"0"}, E(ceNum)},
      {"IMCOT", {"0"}, E(ceNum)},
      {"IMCSC", {"0"}, E(ceNum)},
      {"IMEXP", {"1000"}, E(ceNum)},
  });
}

}  // namespace
}  // namespace Tabrino
