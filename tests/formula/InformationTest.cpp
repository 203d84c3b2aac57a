#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Information, WrongArgumentCounts) {
  ExpectCases({
      {"ISBLANK", {}, E(ceValue)},
      {"ISNUMBER", {1, 2}, E(ceValue)},
      {"NA", {1}, E(ceValue)},
      {"TYPE", {}, E(ceValue)},
  });
}

// Each kind of value against every IS function, in the order of Kinds below.
struct TKindRow {
  const char* Name;
  bool Expected[6];
};

TEST(Information, KindTests) {
  const TCellValue Kinds[] = {Blank(), V(""), V(1), V(true), E(ceNA), E(ceValue)};
  const TKindRow Rows[] = {
      {"ISBLANK", {true, false, false, false, false, false}},   {"ISERROR", {false, false, false, false, true, true}},
      {"ISERR", {false, false, false, false, false, true}},     {"ISNA", {false, false, false, false, true, false}},
      {"ISNUMBER", {false, false, true, false, false, false}},  {"ISTEXT", {false, true, false, false, false, false}},
      {"ISLOGICAL", {false, false, false, true, false, false}}, {"ISNONTEXT", {true, false, true, true, true, true}},
  };
  for (const TKindRow& Row : Rows)
    for (size_t K = 0; K < std::size(Kinds); ++K)
      EXPECT_EQ(Call(Row.Name, {Kinds[K]}), V(Row.Expected[K])) << Row.Name << " of kind " << K;
}

TEST(Information, ValuesAndParity) {
  ExpectCases({
      {"ISNUMBER", {"1"}, V(false)},
      {"ISNUMBER", {Column({V(1), V("a")})}, V(true)},
      {"ISEVEN", {2.9}, V(true)},
      {"ISEVEN", {-3}, V(false)},
      {"ISODD", {-3}, V(true)},
      {"ISODD", {"7"}, V(true)},
      {"ISEVEN", {Blank()}, V(true)},
      {"ISODD", {"x"}, E(ceValue)},
      {"ISEVEN", {E(ceNA)}, E(ceValue)},
      {"ISEVEN", {1e300}, V(true)},
      {"N", {5}, V(5)},
      {"N", {true}, V(1)},
      {"N", {"7"}, V(0)},
      {"N", {Blank()}, V(0)},
      {"N", {E(ceDiv0)}, E(ceDiv0)},
      {"NA", {}, E(ceNA)},
      {"TYPE", {1}, V(1)},
      {"TYPE", {Blank()}, V(1)},
      {"TYPE", {"a"}, V(2)},
      {"TYPE", {false}, V(4)},
      {"TYPE", {E(ceRef)}, V(16)},
      {"TYPE", {Column({V("a"), V(1)})}, V(64)},
      {"TYPE", {Column({V("a")})}, V(2)},
  });
}

}  // namespace
}  // namespace Tabrino
