// AGGREGATE, PERCENTOF and the legacy statistical names. AGGREGATE is
// checked against the functions it runs, so its expectations need no numbers
// of their own.

#include <gtest/gtest.h>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TFormulaArg WithError() {
  return Column({V(4), V(1), E(ceDiv0), V(7), V("x"), V(7), V(2)});
}
TFormulaArg WithoutError() {
  return Column({V(4), V(1), Blank(), V(7), V("x"), V(7), V(2)});
}

TEST(Aggregation, WrongArgumentCountsAndOptions) {
  ExpectCases({
      {"AGGREGATE", {9, 0}, E(ceValue)},
      {"AGGREGATE", {0, 0, WithoutError()}, E(ceValue)},
      {"AGGREGATE", {20, 0, WithoutError()}, E(ceValue)},
      {"AGGREGATE", {"sum", 0, WithoutError()}, E(ceValue)},
      {"AGGREGATE", {9, 8, WithoutError()}, E(ceValue)},
      {"AGGREGATE", {9, -1, WithoutError()}, E(ceValue)},
      {"AGGREGATE", {14, 6, WithoutError()}, E(ceValue)},  // LARGE needs k
      {"AGGREGATE", {14, 6, WithoutError(), 1, 2}, E(ceValue)},
      {"PERCENTOF", {1}, E(ceValue)},
      {"PERCENTOF", {1, 2, 3}, E(ceValue)},
  });
}

TEST(Aggregation, EveryFunctionNumberRunsItsFunction) {
  const char* Names[] = {"AVERAGE", "COUNT", "COUNTA", "MAX",   "MIN",    "PRODUCT",  "STDEV.S",
                         "STDEV.P", "SUM",   "VAR.S",  "VAR.P", "MEDIAN", "MODE.SNGL"};
  for (int Number = 1; Number <= 13; ++Number) {
    // Options 6 leave errors out, so the error cell counts as empty.
    EXPECT_EQ(Call("AGGREGATE", {Number, 6, WithError()}), Call(Names[Number - 1], {WithoutError()}))
        << Names[Number - 1];
  }
  const char* ArrayNames[] = {"LARGE", "SMALL", "PERCENTILE.INC", "QUARTILE.INC", "PERCENTILE.EXC", "QUARTILE.EXC"};
  const double Ks[] = {2, 3, 0.4, 3, 0.4, 1};
  for (int Number = 14; Number <= 19; ++Number) {
    const char* Name = ArrayNames[Number - 14];
    const double K = Ks[Number - 14];
    EXPECT_EQ(Call("AGGREGATE", {Number, 7, WithError(), K}), Call(Name, {WithoutError(), K})) << Name;
  }
}

TEST(Aggregation, ErrorsPassUnlessTheOptionsLeaveThemOut) {
  for (int Options : {0, 1, 4, 5}) EXPECT_EQ(Call("AGGREGATE", {9, Options, WithError()}), E(ceDiv0)) << Options;
  for (int Options : {2, 3, 6, 7}) EXPECT_EQ(Call("AGGREGATE", {9, Options, WithError()}), V(21)) << Options;
  // Options left empty mean 0.
  EXPECT_EQ(Call("AGGREGATE", {4, Blank(), WithError()}), E(ceDiv0));
  // Several references are one list.
  EXPECT_EQ(Call("AGGREGATE", {2, 6, WithError(), Column({V(5), E(ceNA)})}), V(6));
  EXPECT_EQ(Call("AGGREGATE", {12, 6, Column({E(ceNA), V(3), V(1), V(2)})}), V(2));
  // The function's own errors stand.
  EXPECT_EQ(Call("AGGREGATE", {1, 6, Column({E(ceNA)})}), E(ceDiv0));
  EXPECT_EQ(Call("AGGREGATE", {14, 6, WithError(), 9}), E(ceNum));
}

TEST(Aggregation, PercentOf) {
  ExpectCases({
      {"PERCENTOF", {Column({V(1), V(3)}), Column({V(1), V(3), V(4), V("x")})}, V(0.5)},
      {"PERCENTOF", {5, Column({V(10), V(10)})}, V(0.25)},
      {"PERCENTOF", {Column({V(1)}), Column({V(2), V(-2)})}, E(ceDiv0)},
      {"PERCENTOF", {Column({V(1)}), Column({V("x")})}, E(ceDiv0)},
  });
}

TEST(Aggregation, LegacyNamesRunTheirSuccessors) {
  TFormulaArg Data = Column({V(3), V(1), V(4), V(1), V(5), V(9), V(2), V(6)});
  TFormulaArg Other = Column({V(2), V(7), V(1), V(8), V(2), V(8), V(1), V(8)});
  const struct {
    const char* Legacy;
    const char* Modern;
    std::vector<TTestArg> Args;
  } Cases[] = {
      {"STDEV", "STDEV.S", {Data}},
      {"STDEVP", "STDEV.P", {Data}},
      {"VAR", "VAR.S", {Data}},
      {"VARP", "VAR.P", {Data}},
      {"MODE", "MODE.SNGL", {Data}},
      {"PERCENTILE", "PERCENTILE.INC", {Data, 0.3}},
      {"PERCENTRANK", "PERCENTRANK.INC", {Data, 4.5, 4}},
      {"QUARTILE", "QUARTILE.INC", {Data, 3}},
      {"COVAR", "COVARIANCE.P", {Data, Other}},
      {"FORECAST", "FORECAST.LINEAR", {10, Data, Other}},
  };
  for (const auto& C : Cases) {
    std::vector<TFormulaArg> Args;
    for (const TTestArg& A : C.Args) Args.push_back(A.Arg);
    const TCellValue Expected = Dispatch(C.Modern, Args, {});
    EXPECT_EQ(Expected.Kind, cvkNumber) << C.Modern;
    EXPECT_EQ(Dispatch(C.Legacy, Args, {}), Expected) << C.Legacy;
  }
  ExpectCases({
      {"STDEV", {}, E(ceValue)},
      {"QUARTILE", {Data}, E(ceValue)},
      {"FORECAST", {1, Data}, E(ceValue)},
      {"PERCENTILE", {Data, 2}, E(ceNum)},
      {"MODE", {1, 2}, E(ceNA)},
  });
}

}  // namespace
}  // namespace Tabrino
