// Bond, bill and accrued-interest functions against reference values. "doc"
// marks the published example of a function (which these agree with to the
// digits printed there); "mpmath" values come from an independent script
// that writes the documented formulas out term by term (every coupon
// discounted on its own, odd first periods short and long as separate cases,
// yields by mpmath.findroot) at 40 significant digits.
#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

double Day(int Year, int Month, int DayOfMonth) {
  return EncodeDate(Year, Month, DayOfMonth);
}

// Closed forms agree to the last digits; solved yields to the solver's tolerance.
constexpr double ClosedForm = 1E-12, Solved = 1E-10;

TEST(Securities, WrongArgumentCounts) {
  ExpectCases({
      {"PRICE", {1, 2, 3, 4, 5}, E(ceValue)},
      {"PRICE", {1, 2, 3, 4, 5, 6, 7, 8}, E(ceValue)},
      {"YIELD", {1, 2, 3, 4, 5}, E(ceValue)},
      {"DURATION", {1, 2, 3, 4}, E(ceValue)},
      {"MDURATION", {1, 2, 3, 4, 5, 6, 7}, E(ceValue)},
      {"ACCRINT", {1, 2, 3, 4, 5}, E(ceValue)},
      {"ACCRINTM", {1, 2, 3}, E(ceValue)},
      {"DISC", {1, 2, 3}, E(ceValue)},
      {"PRICEMAT", {1, 2, 3, 4}, E(ceValue)},
      {"TBILLEQ", {1, 2}, E(ceValue)},
      {"ODDFPRICE", {1, 2, 3, 4, 5, 6, 7}, E(ceValue)},
      {"ODDLYIELD", {1, 2, 3, 4, 5, 6}, E(ceValue)},
  });
}

TEST(Securities, PriceAndYield) {
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2008, 2, 15), Day(2017, 11, 15), 0.0575, 0.065, 100, 2, 0}), 94.634361621322099,
                     ClosedForm));  // doc: 94.63436162
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2011, 3, 15), Day(2021, 8, 31), 0.05, 0.04, 105, 2, 1}), 111.78131604876835,
                     ClosedForm));  // mpmath, month-end maturity
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2011, 3, 31), Day(2020, 12, 31), 0.07, 0.08, 100, 4, 4}), 93.274352793611767,
                     ClosedForm));  // mpmath
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2010, 1, 10), Day(2040, 6, 30), 0.045, 0.052, 100, 1, 3}), 89.382865374452687,
                     ClosedForm));  // mpmath
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2012, 2, 29), Day(2030, 2, 28), 0.03, 0.025, 100, 2, 2}), 107.1822244631884,
                     ClosedForm));  // mpmath
  // One coupon left: simple interest to redemption.
  EXPECT_TRUE(IsNear(Call("PRICE", {Day(2020, 9, 1), Day(2020, 12, 15), 0.06, 0.05, 100, 2, 0}), 100.26673968601679,
                     ClosedForm));  // mpmath
  EXPECT_TRUE(IsNear(Call("YIELD", {Day(2008, 2, 15), Day(2016, 11, 15), 0.0575, 95.04287, 100, 2, 0}),
                     0.065000006880754623, Solved));  // doc: 6.5%
  EXPECT_TRUE(IsNear(Call("YIELD", {Day(2011, 3, 15), Day(2021, 8, 31), 0.05, 110, 105, 2, 1}), 0.041945700193928331,
                     Solved));  // mpmath
  EXPECT_TRUE(IsNear(Call("YIELD", {Day(2020, 9, 1), Day(2020, 12, 15), 0.06, 99.5, 100, 2, 0}), 0.076719509402274865,
                     ClosedForm));  // mpmath
  // YIELD inverts PRICE, a zero coupon bond too.
  double Price = Call("PRICE", {Day(2010, 5, 5), Day(2030, 5, 5), 0, 0.07, 100, 1, 1}).Number;
  EXPECT_TRUE(IsNear(Call("YIELD", {Day(2010, 5, 5), Day(2030, 5, 5), 0, Price, 100, 1, 1}), 0.07, Solved));
}

TEST(Securities, Durations) {
  EXPECT_TRUE(IsNear(Call("DURATION", {Day(2018, 7, 1), Day(2048, 1, 1), 0.08, 0.09, 2, 1}), 10.919145281591913,
                     ClosedForm));  // doc: 10.9191453
  EXPECT_TRUE(IsNear(Call("MDURATION", {Day(2008, 1, 1), Day(2016, 1, 1), 0.08, 0.09, 2, 1}), 5.735669813918836,
                     ClosedForm));  // doc: 5.73567
  EXPECT_TRUE(IsNear(Call("DURATION", {Day(2011, 3, 15), Day(2021, 8, 31), 0.05, 0.04, 4, 0}), 8.2988922686518769,
                     ClosedForm));  // mpmath
}

TEST(Securities, BondArgumentErrors) {
  double S = Day(2008, 2, 15), M = Day(2017, 11, 15);
  ExpectCases({
      {"PRICE", {S, M, -0.01, 0.065, 100, 2}, E(ceNum)},
      {"PRICE", {S, M, 0.0575, -0.065, 100, 2}, E(ceNum)},
      {"PRICE", {S, M, 0.0575, 0.065, 0, 2}, E(ceNum)},
      {"PRICE", {S, M, 0.0575, 0.065, 100, 3}, E(ceNum)},
      {"PRICE", {S, M, 0.0575, 0.065, 100, 2, 5}, E(ceNum)},
      {"PRICE", {M, S, 0.0575, 0.065, 100, 2}, E(ceNum)},
      {"PRICE", {S, M, "rate", 0.065, 100, 2}, E(ceValue)},
      {"PRICE", {"someday", M, 0.0575, 0.065, 100, 2}, E(ceValue)},
      {"YIELD", {S, M, 0.0575, 0, 100, 2}, E(ceNum)},
      {"DURATION", {S, M, 0.08, -0.09, 2}, E(ceNum)},
      {"MDURATION", {S, S, 0.08, 0.09, 2}, E(ceNum)},
  });
}

TEST(Securities, AccruedInterest) {
  EXPECT_TRUE(IsNear(Call("ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 2, 0}),
                     16.666666666666668, ClosedForm));  // doc
  EXPECT_TRUE(IsNear(Call("ACCRINT", {Day(2001, 2, 28), Day(2001, 8, 31), Day(2001, 5, 1), 0.1, 1000, 2, 0}),
                     16.944444444444445, ClosedForm));  // doc (a February start counts as the 30th)
  // Across four whole periods: mpmath 1008.3333
  EXPECT_TRUE(IsNear(Call("ACCRINT", {Day(2003, 1, 1), Day(2003, 1, 7), Day(2005, 1, 7), 0.5, 1000, 2}),
                     1008.3333333333333, ClosedForm));
  // Actual/actual, from issue or (calc_method FALSE) from the first interest date: mpmath
  EXPECT_TRUE(IsNear(Call("ACCRINT", {Day(2010, 2, 15), Day(2010, 8, 31), Day(2012, 5, 20), 0.06, 1000, 2, 1}),
                     135.36121787172711, ClosedForm));
  EXPECT_TRUE(IsNear(Call("ACCRINT", {Day(2010, 2, 15), Day(2010, 8, 31), Day(2012, 5, 20), 0.06, 1000, 2, 1, false}),
                     103.20652173913043, ClosedForm));
  // Before the first interest date calc_method changes nothing.
  EXPECT_EQ(Call("ACCRINT", {Day(2008, 3, 5), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 2, 0, false}),
            Call("ACCRINT", {Day(2008, 3, 5), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 2, 0, true}));
  // An empty par is the default 1000.
  EXPECT_EQ(Call("ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, Blank(), 2, 0}),
            Call("ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 2, 0}));
  EXPECT_TRUE(IsNear(Call("ACCRINTM", {Day(2008, 4, 1), Day(2008, 6, 15), 0.1, 1000, 3}), 20.547945205479452,
                     ClosedForm));  // doc: 20.54794521
  ExpectCases({
      {"ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0, 1000, 2}, E(ceNum)},
      {"ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, -5, 2}, E(ceNum)},
      {"ACCRINT", {Day(2008, 5, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 2}, E(ceNum)},
      {"ACCRINT", {Day(2008, 3, 1), Day(2008, 8, 31), Day(2008, 5, 1), 0.1, 1000, 12}, E(ceNum)},
      {"ACCRINTM", {Day(2008, 6, 15), Day(2008, 4, 1), 0.1, 1000}, E(ceNum)},
      {"ACCRINTM", {Day(2008, 4, 1), Day(2008, 6, 15), 0.1, 1000, 7}, E(ceNum)},
  });
}

TEST(Securities, DiscountedAndAtMaturity) {
  EXPECT_TRUE(IsNear(Call("DISC", {Day(2018, 7, 1), Day(2048, 1, 1), 97.975, 100, 1}), 0.00068638416912134492,
                     ClosedForm));  // doc: 0.07%
  EXPECT_TRUE(IsNear(Call("INTRATE", {Day(2008, 2, 15), Day(2008, 5, 15), 1000000, 1014420, 2}), 0.05768,
                     ClosedForm));  // doc
  EXPECT_TRUE(IsNear(Call("RECEIVED", {Day(2008, 2, 15), Day(2008, 5, 15), 1000000, 0.0575, 2}),
                     1000000 / (1 - 0.0575 * 90 / 360), ClosedForm));  // doc: 1014584.654
  EXPECT_TRUE(IsNear(Call("PRICEDISC", {Day(2008, 2, 16), Day(2008, 3, 1), 0.0525, 100, 2}), 99.795833333333333,
                     ClosedForm));  // doc
  EXPECT_TRUE(IsNear(Call("YIELDDISC", {Day(2008, 2, 16), Day(2008, 3, 1), 99.795, 100, 2}), 0.205 / 99.795 * 360 / 14,
                     ClosedForm));  // doc: 0.052823
  EXPECT_TRUE(IsNear(Call("PRICEMAT", {Day(2008, 2, 15), Day(2008, 4, 13), Day(2007, 11, 11), 0.061, 0.061, 0}),
                     99.984498875556949, ClosedForm));  // doc: 99.98449888
  EXPECT_TRUE(IsNear(Call("PRICEMAT", {Day(2011, 6, 30), Day(2013, 2, 28), Day(2010, 1, 15), 0.05, 0.045, 1}),
                     100.26489036995343, ClosedForm));  // mpmath
  EXPECT_TRUE(IsNear(Call("YIELDMAT", {Day(2008, 3, 15), Day(2008, 11, 3), Day(2007, 11, 8), 0.0625, 100.0123, 0}),
                     0.060954333691538521, ClosedForm));  // doc: 0.060954
  ExpectCases({
      {"DISC", {Day(2018, 7, 1), Day(2048, 1, 1), 0, 100}, E(ceNum)},
      {"INTRATE", {Day(2008, 5, 15), Day(2008, 2, 15), 1000000, 1014420}, E(ceNum)},
      {"RECEIVED", {Day(2008, 2, 15), Day(2008, 5, 15), 1000000, 4.0}, E(ceNum)},  // nothing left to receive
      {"PRICEDISC", {Day(2008, 2, 16), Day(2008, 3, 1), -0.05, 100}, E(ceNum)},
      {"YIELDDISC", {Day(2008, 2, 16), Day(2008, 3, 1), 99.795, "r"}, E(ceValue)},
      {"PRICEMAT", {Day(2008, 2, 15), Day(2008, 4, 13), Day(2008, 3, 1), 0.061, 0.061}, E(ceNum)},  // issued later
      {"YIELDMAT", {Day(2008, 3, 15), Day(2008, 11, 3), Day(2007, 11, 8), 0.0625, 0}, E(ceNum)},
  });
}

TEST(Securities, TreasuryBills) {
  double S = Day(2008, 3, 31), M = Day(2008, 6, 1);
  EXPECT_TRUE(IsNear(Call("TBILLEQ", {S, M, 0.0914}), 0.094151493565943016, ClosedForm));    // doc: 0.094151
  EXPECT_TRUE(IsNear(Call("TBILLPRICE", {S, M, 0.09}), 98.45, ClosedForm));                  // doc
  EXPECT_TRUE(IsNear(Call("TBILLYIELD", {S, M, 98.45}), 0.091416962925342814, ClosedForm));  // doc: 0.091417
  ExpectCases({
      {"TBILLPRICE", {S, Day(2009, 3, 31), 0.09}, V(100 * (1 - 0.09 * 365 / 360))},  // exactly a year
      {"TBILLPRICE", {S, Day(2009, 4, 1), 0.09}, E(ceNum)},                          // more than a year
      {"TBILLPRICE", {M, S, 0.09}, E(ceNum)},
      {"TBILLPRICE", {S, M, 0}, E(ceNum)},
      {"TBILLPRICE", {S, Day(2009, 3, 1), 1.2}, E(ceNum)},  // no price left
      {"TBILLEQ", {S, M, -0.01}, E(ceNum)},
      {"TBILLYIELD", {S, M, 0}, E(ceNum)},
      {"TBILLYIELD", {S, M, "p"}, E(ceValue)},
  });
}

TEST(Securities, OddFirstPeriod) {
  // doc: 113.597717474079, the short odd first period
  EXPECT_TRUE(IsNear(Call("ODDFPRICE", {Day(2008, 11, 11), Day(2021, 3, 1), Day(2008, 10, 15), Day(2009, 3, 1), 0.0785,
                                        0.0625, 100, 2, 1}),
                     113.59771747407884, ClosedForm));
  // mpmath, long odd first periods
  EXPECT_TRUE(IsNear(
      Call("ODDFPRICE", {Day(2009, 2, 1), Day(2020, 6, 15), Day(2008, 7, 20), Day(2009, 6, 15), 0.06, 0.05, 100, 2, 0}),
      108.54325780403629, ClosedForm));
  EXPECT_TRUE(IsNear(
      Call("ODDFPRICE", {Day(2008, 8, 1), Day(2020, 6, 15), Day(2008, 7, 20), Day(2009, 6, 15), 0.06, 0.05, 100, 2, 1}),
      108.81742285617393, ClosedForm));
  EXPECT_TRUE(IsNear(Call("ODDFPRICE", {Day(2010, 3, 3), Day(2015, 12, 31), Day(2009, 10, 5), Day(2010, 6, 30), 0.08,
                                        0.07, 102, 4, 3}),
                     106.03277697903115, ClosedForm));
  // doc: 0.0772455
  EXPECT_TRUE(IsNear(Call("ODDFYIELD", {Day(2008, 11, 11), Day(2021, 3, 1), Day(2008, 10, 15), Day(2009, 3, 1), 0.0575,
                                        84.5, 100, 2, 0}),
                     0.07724554159781739, Solved));
  EXPECT_TRUE(IsNear(
      Call("ODDFYIELD", {Day(2008, 8, 1), Day(2020, 6, 15), Day(2008, 7, 20), Day(2009, 6, 15), 0.06, 108, 100, 2, 1}),
      0.050876677899231364, Solved));  // mpmath
  // Issued on a regular coupon date the odd period is a regular one: PRICE's result.
  EXPECT_TRUE(IsNear(Call("ODDFPRICE", {Day(2009, 2, 1), Day(2020, 6, 15), Day(2008, 12, 15), Day(2009, 6, 15), 0.06,
                                        0.05, 100, 2, 1}),
                     Call("PRICE", {Day(2009, 2, 1), Day(2020, 6, 15), 0.06, 0.05, 100, 2, 1}).Number, ClosedForm));
  double S = Day(2008, 11, 11), M = Day(2021, 3, 1), I = Day(2008, 10, 15), F = Day(2009, 3, 1);
  ExpectCases({
      {"ODDFPRICE", {S, M, I, F, 0.0785, -0.01, 100, 2}, E(ceNum)},
      {"ODDFPRICE", {S, M, I, F, -0.0785, 0.0625, 100, 2}, E(ceNum)},
      {"ODDFPRICE", {I, M, S, F, 0.0785, 0.0625, 100, 2}, E(ceNum)},  // issue after settlement
      {"ODDFPRICE", {S, M, I, S, 0.0785, 0.0625, 100, 2}, E(ceNum)},  // first coupon at settlement
      {"ODDFPRICE", {S, F, I, M, 0.0785, 0.0625, 100, 2}, E(ceNum)},  // first coupon after maturity
      {"ODDFPRICE", {S, M, I, F, 0.0785, 0.0625, 100, 2, 9}, E(ceNum)},
      {"ODDFYIELD", {S, M, I, F, 0.0575, 0, 100, 2}, E(ceNum)},
      {"ODDFYIELD", {S, M, I, F, 0.0575, "pr", 100, 2}, E(ceValue)},
  });
}

TEST(Securities, OddLastPeriod) {
  EXPECT_TRUE(
      IsNear(Call("ODDLPRICE", {Day(2008, 2, 7), Day(2008, 6, 15), Day(2007, 10, 15), 0.0375, 0.0405, 100, 2, 0}),
             99.878286014721346, ClosedForm));  // doc: 99.8782860
  EXPECT_TRUE(
      IsNear(Call("ODDLPRICE", {Day(2008, 2, 7), Day(2009, 3, 1), Day(2007, 10, 15), 0.0375, 0.0405, 100, 2, 1}),
             99.64589608582123, ClosedForm));  // mpmath, three quasi periods
  EXPECT_TRUE(
      IsNear(Call("ODDLYIELD", {Day(2008, 4, 20), Day(2008, 6, 15), Day(2007, 12, 24), 0.0375, 99.875, 100, 2, 0}),
             0.045192235629168851, ClosedForm));  // doc: 0.0451922
  EXPECT_TRUE(IsNear(Call("ODDLYIELD", {Day(2008, 2, 7), Day(2009, 3, 1), Day(2007, 10, 15), 0.0375, 99.8, 100, 2, 1}),
                     0.039001402484068747, ClosedForm));  // mpmath
  ExpectCases({
      {"ODDLPRICE", {Day(2007, 10, 15), Day(2008, 6, 15), Day(2008, 2, 7), 0.0375, 0.0405, 100, 2}, E(ceNum)},
      {"ODDLPRICE", {Day(2008, 2, 7), Day(2008, 6, 15), Day(2007, 10, 15), 0.0375, -1, 100, 2}, E(ceNum)},
      {"ODDLYIELD", {Day(2008, 4, 20), Day(2008, 6, 15), Day(2007, 12, 24), 0.0375, -99, 100, 2}, E(ceNum)},
      {"ODDLYIELD", {Day(2008, 4, 20), Day(2008, 6, 15), Day(2007, 12, 24), 0.0375, 99, 100, 2, 5}, E(ceNum)},
      {"ODDLYIELD", {Day(2008, 4, 20), Day(2008, 6, 15), Day(2007, 12, 24), 0.0375, 99, 100, 6}, E(ceNum)},
  });
}

TEST(Securities, StockHistoryWithoutAProviderIsNotAvailable) {
  EXPECT_EQ(Call("STOCKHISTORY", {"MSFT", Day(2020, 1, 1)}), E(ceNA));
  TFormulaArg Result = CallArray("STOCKHISTORY", {"MSFT", Day(2020, 1, 1), Day(2020, 2, 1)});
  EXPECT_EQ(Result.First(), E(ceNA));
  EXPECT_EQ(Call("STOCKHISTORY", {"MSFT"}), E(ceValue));
}

}  // namespace
}  // namespace Tabrino
