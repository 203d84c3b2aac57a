#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

// A column mixing every kind, so that each aggregate shows what it skips.
TFormulaArg Mixed() {
  return Column({V(1), V("2"), E(ceDiv0), V(true), Blank(), V(""), V(3)});
}

TEST(Aggregate, WrongArgumentCounts) {
  ExpectCases({
      {"SUM", {}, E(ceValue)},
      {"AVERAGE", {}, E(ceValue)},
      {"RANK", {1}, E(ceValue)},
      {"RANK.EQ", {1, 1, 0, 0}, E(ceValue)},
      {"SUBTOTAL", {9}, E(ceValue)},
      {"SUMPRODUCT", {}, E(ceValue)},
  });
}

TEST(Aggregate, OnlyNumberCellsTakePartEvenWhenGivenDirectly) {
  ExpectCases({
      {"SUM", {"5", true}, V(0)},
      {"SUM", {Mixed()}, V(4)},
      {"SUM", {E(ceNA), 2}, V(2)},
      {"COUNT", {Mixed(), 1, "1", true}, V(3)},
      {"COUNTA", {Mixed()}, V(6)},
      {"COUNTBLANK", {Mixed()}, V(2)},
      {"PRODUCT", {2, "4", Column({V(3), V(true)})}, V(6)},
      {"AVERAGE", {Mixed()}, V(2)},
  });
}

TEST(Aggregate, NoNumbersAtAll) {
  ExpectCases({
      {"AVERAGE", {"x", Column({Blank()})}, E(ceDiv0)},
      {"MIN", {"x"}, V(0)},
      {"MAX", {true}, V(0)},
      {"PRODUCT", {"3"}, V(0)},
      {"SUM", {Column({})}, V(0)},
  });
}

TEST(Aggregate, ExtremesOfNegativeAndPositiveNumbers) {
  ExpectCases({
      {"MAX", {Column({V(-5), V(-2), V("9")})}, V(-2)},
      {"MIN", {Column({V(5), V(2), Blank()})}, V(2)},
      {"MIN", {-3, 5}, V(-3)},
  });
}

TEST(Aggregate, SubtotalCodes) {
  TFormulaArg Data = Column({V(2), V(8), V("x"), Blank(), V(5)});
  ExpectCases({
      {"SUBTOTAL", {1, Data}, V(5)},
      {"SUBTOTAL", {2, Data}, V(3)},
      {"SUBTOTAL", {3, Data}, V(4)},
      {"SUBTOTAL", {4, Data}, V(8)},
      {"SUBTOTAL", {5, Data}, V(2)},
      {"SUBTOTAL", {6, Data}, V(80)},
      {"SUBTOTAL", {9, Data}, V(15)},
      {"SUBTOTAL", {109, Data, Data}, V(30)},
      {"SUBTOTAL", {9.7, Data}, V(15)},
      {"SUBTOTAL", {101, Column({V("x")})}, E(ceDiv0)},
      {"SUBTOTAL", {104, Column({V("x")})}, V(0)},
      {"SUBTOTAL", {106, Column({})}, V(0)},
      // Deviation and variance are not offered, nor any other code.
      {"SUBTOTAL", {7, Data}, E(ceValue)},
      {"SUBTOTAL", {108, Data}, E(ceValue)},
      {"SUBTOTAL", {10, Data}, E(ceValue)},
      {"SUBTOTAL", {209, Data}, E(ceValue)},
      {"SUBTOTAL", {"sum", Data}, E(ceValue)},
  });
}

TEST(Aggregate, RankCountsGreaterOrSmallerNumbers) {
  TFormulaArg Data = Column({V(1), V(5), V(7), V(5), V(9), V("100"), Blank()});
  ExpectCases({
      {"RANK", {5, Data}, V(3)},
      {"RANK.EQ", {5, Data, 1}, V(2)},
      {"RANK", {9, Data, 0}, V(1)},
      {"RANK", {4, Data}, E(ceNA)},
      {"RANK", {100, Data}, E(ceNA)},
      {"RANK", {"x", Data}, E(ceValue)},
      {"RANK", {5, Data, "x"}, E(ceValue)},
      {"RANK", {"5", Data}, V(3)},
  });
}

TEST(Aggregate, SumProductExtentComesFromTheFirstArgument) {
  TFormulaArg Three = Column({V(1), V(2), V(3)});
  ExpectCases({
      {"SUMPRODUCT", {Three, Column({V(4), V(5), V(6)})}, V(32)},
      {"SUMPRODUCT", {Three}, V(6)},
      {"SUMPRODUCT", {Three, 2}, V(12)},
      {"SUMPRODUCT", {Three, Column({V(10), V(10)})}, V(30)},
      {"SUMPRODUCT", {Column({V(10), V(10)}), Three}, V(30)},
      {"SUMPRODUCT", {2, Three}, V(2)},
      // Values that are no number count as 0; text and booleans that convert count.
      {"SUMPRODUCT", {Column({V(1), V("x"), E(ceNA), V("2"), V(true)}), 3}, V(12)},
      {"SUMPRODUCT", {Range({V(1), V(2), V(3), V(4)}, 2, 2), Range({V(1), V(1), V(1), V(1)}, 1, 4)}, V(10)},
  });
}

}  // namespace
}  // namespace Tabrino
