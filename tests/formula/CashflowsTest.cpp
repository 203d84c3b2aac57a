// Dated cash flows, annuity parts, rate conversions and dollar fractions.
// "doc" marks a function's published example; "mpmath" an independent
// 40-digit computation of the documented formula (IPMT and PPMT from the
// future value of the balance, CUMIPMT and CUMPRINC by summing them, XIRR by
// mpmath.findroot).
#include <gtest/gtest.h>

#include <cmath>

#include "FunctionTestSupport.h"
#include "Tabrino.DateTimeFormat.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

double Day(int Year, int Month, int DayOfMonth) {
  return EncodeDate(Year, Month, DayOfMonth);
}

constexpr double ClosedForm = 1E-12, Solved = 1E-10;

TFormulaArg Flows() {
  return Column({V(-10000), V(2750), V(4250), V(3250), V(2750)});
}
TFormulaArg FlowDates() {
  return Column(
      {V(Day(2008, 1, 1)), V(Day(2008, 3, 1)), V(Day(2008, 10, 30)), V(Day(2009, 2, 15)), V(Day(2009, 4, 1))});
}

TEST(Cashflows, WrongArgumentCounts) {
  ExpectCases({
      {"XNPV", {0.1, Flows()}, E(ceValue)},
      {"XIRR", {Flows()}, E(ceValue)},
      {"MIRR", {Flows(), 0.1}, E(ceValue)},
      {"IPMT", {0.1, 1, 3}, E(ceValue)},
      {"CUMPRINC", {0.1, 10, 1000, 1, 2}, E(ceValue)},
      {"EFFECT", {0.1}, E(ceValue)},
      {"DOLLARDE", {1.02, 16, 1}, E(ceValue)},
  });
}

TEST(Cashflows, DatedFlows) {
  EXPECT_TRUE(IsNear(Call("XNPV", {0.09, Flows(), FlowDates()}), 2086.6476020315367, ClosedForm));  // doc: 2086.65
  EXPECT_TRUE(IsNear(Call("XIRR", {Flows(), FlowDates()}), 0.37336253351883151, Solved));           // doc: 0.373362535
  // Dates in any order after the first: each flow keeps its own date.
  TFormulaArg Values = Column({V(-10000), V(3250), V(2750), V(4250), V(2750)});
  TFormulaArg Dates =
      Column({V(Day(2008, 1, 1)), V(Day(2009, 2, 15)), V(Day(2008, 3, 1)), V(Day(2008, 10, 30)), V(Day(2009, 4, 1))});
  EXPECT_TRUE(IsNear(Call("XNPV", {0.09, Values, Dates}), 2086.6476020315367, ClosedForm));
  EXPECT_TRUE(IsNear(Call("XIRR", {Values, Dates}), 0.37336253351883151, Solved));
  // Roots far from the guess are found by bracketing.
  TFormulaArg Year = Column({V(Day(2010, 1, 1)), V(Day(2011, 1, 1))});
  EXPECT_TRUE(IsNear(Call("XIRR", {Column({V(-1), V(100)}), Year}), 99, Solved));
  EXPECT_TRUE(IsNear(Call("XIRR", {Column({V(-100), V(5)}), Year}), -0.95, Solved));
  EXPECT_TRUE(IsNear(Call("XIRR", {Column({V(-100), V(5)}), Year, 3}), -0.95, Solved));
  ExpectCases({
      // -100 + 300/(1+r) - 250/(1+r)^2 has no real root.
      {"XIRR",
       {Column({V(-100), V(300), V(-250)}), Column({V(Day(2010, 1, 1)), V(Day(2011, 1, 1)), V(Day(2012, 1, 1))})},
       E(ceNum)},
      {"XIRR", {Column({V(100), V(5)}), Year}, E(ceNum)},  // no payment
      {"XNPV",
       {0.09, Flows(),
        Column(
            {V(Day(2008, 1, 1)), V(Day(2007, 3, 1)), V(Day(2008, 10, 30)), V(Day(2009, 2, 15)), V(Day(2009, 4, 1))})},
       E(ceNum)},                                 // a date before the first
      {"XNPV", {0.09, Flows(), Year}, E(ceNum)},  // counts differ
      {"XNPV", {0.09, Column({V(-10), V("x")}), Year}, E(ceValue)},
      {"XNPV", {0.09, Column({V(-10), Blank()}), Year}, E(ceValue)},
      {"XNPV", {0.09, Column({V(-10), V(5)}), Column({V(Day(2010, 1, 1)), V("later")})}, E(ceValue)},
      {"XNPV", {-1, Column({V(-10), V(5)}), Year}, E(ceNum)},
      {"XNPV", {0.1, -10, Day(2010, 1, 1)}, V(-10)},
  });
}

TEST(Cashflows, ModifiedInternalRate) {
  TFormulaArg Values = Column({V(-120000), V(39000), V(30000), V(21000), V(37000), V(46000)});
  EXPECT_TRUE(IsNear(Call("MIRR", {Values, 0.10, 0.12}), 0.12609413036590514, ClosedForm));  // doc: 12.61%
  EXPECT_TRUE(IsNear(Call("MIRR", {Values, 0.10, 0.14}), 0.13475911082831485, ClosedForm));  // doc: 13.48%
  // Text, booleans and blanks in the range take no period.
  TFormulaArg Mixed = Column({V(-120000), V("n/a"), V(39000), V(30000), Blank(), V(21000), V(true)});
  EXPECT_TRUE(IsNear(Call("MIRR", {Mixed, 0.10, 0.12}), -0.048044655249980822, ClosedForm));  // doc: -4.80%
  ExpectCases({
      {"MIRR", {Column({V(1), V(2)}), 0.1, 0.1}, E(ceDiv0)},
      {"MIRR", {Column({V(-1), V(-2)}), 0.1, 0.1}, E(ceDiv0)},
      {"MIRR", {Values, "f", 0.1}, E(ceValue)},
  });
}

TEST(Cashflows, PaymentParts) {
  EXPECT_TRUE(IsNear(Call("IPMT", {0.1 / 12, 1, 36, 8000}), -66.66666666666667, ClosedForm));  // doc: -66.67
  EXPECT_TRUE(IsNear(Call("IPMT", {0.1, 3, 3, 8000}), -292.44712990936558, ClosedForm));       // doc: -292.45
  EXPECT_TRUE(IsNear(Call("PPMT", {0.1 / 12, 1, 24, 2000}), -75.62318600836634, ClosedForm));  // doc: -75.62
  EXPECT_TRUE(IsNear(Call("PPMT", {0.08, 10, 10, 200000}), -27598.053462421376, ClosedForm));  // doc: -27598.05
  // Payments at the start: mpmath
  EXPECT_TRUE(IsNear(Call("IPMT", {0.1, 2, 3, 1000, 0, 1}), -63.444108761329308, ClosedForm));
  EXPECT_TRUE(IsNear(Call("IPMT", {0.07 / 12, 17, 60, 25000, -5000, 1}), -117.89987700186906, 1E-11));
  EXPECT_TRUE(IsNear(Call("PPMT", {0.07 / 12, 17, 60, 25000, -5000, 1}), -304.82486613681267, 1E-11));
  EXPECT_EQ(Call("IPMT", {0.1, 1, 3, 1000, 0, 1}), V(0.0));
  EXPECT_EQ(Call("IPMT", {0, 2, 10, 1000}), V(0.0));
  EXPECT_EQ(Call("PPMT", {0, 2, 10, 1000}), V(-100.0));
  EXPECT_TRUE(IsNear(Call("CUMIPMT", {0.09 / 12, 360, 125000, 13, 24, 0}), -11135.232130750842, 1E-11));   // doc
  EXPECT_TRUE(IsNear(Call("CUMIPMT", {0.09 / 12, 360, 125000, 13, 24, 1}), -11052.339583871804, 1E-11));   // mpmath
  EXPECT_TRUE(IsNear(Call("CUMPRINC", {0.09 / 12, 360, 125000, 13, 24, 0}), -934.10712342089837, 1E-11));  // doc
  EXPECT_TRUE(IsNear(Call("CUMPRINC", {0.09 / 12, 360, 125000, 1, 1, 1}), -998.29108802082222, 1E-11));    // mpmath
  EXPECT_TRUE(IsNear(Call("CUMIPMT", {0.09 / 12, 360, 125000, 1, 1, 0}), -937.5, ClosedForm));             // doc
  ExpectCases({
      {"IPMT", {0.1, 0, 3, 8000}, E(ceNum)},
      {"PPMT", {0.1, 4, 3, 8000}, E(ceNum)},
      {"IPMT", {0.1, 1, 3, "pv"}, E(ceValue)},
      {"CUMIPMT", {0, 360, 125000, 1, 1, 0}, E(ceNum)},
      {"CUMIPMT", {0.01, 360, -5, 1, 1, 0}, E(ceNum)},
      {"CUMIPMT", {0.01, 360, 125000, 0, 1, 0}, E(ceNum)},
      {"CUMIPMT", {0.01, 360, 125000, 5, 4, 0}, E(ceNum)},
      {"CUMIPMT", {0.01, 360, 125000, 5, 361, 0}, E(ceNum)},
      {"CUMPRINC", {0.01, 360, 125000, 1, 1, 2}, E(ceNum)},
      {"ISPMT", {0.1 / 12, 0, 48, 4000}, V(4000 * (0.1 / 12) * -1)},  // doc: -33.33
      {"ISPMT", {0.1, 1, 0, 4000}, E(ceDiv0)},
  });
}

TEST(Cashflows, RateConversions) {
  EXPECT_TRUE(IsNear(Call("EFFECT", {0.0525, 4}), 0.053542667370758057, ClosedForm));                // doc: 0.0535427
  EXPECT_TRUE(IsNear(Call("EFFECT", {0.0525, 4.9}), 0.053542667370758057, ClosedForm));              // npery truncated
  EXPECT_TRUE(IsNear(Call("NOMINAL", {0.053543, 4}), 0.052500319868355864, ClosedForm));             // doc: 0.0525003
  EXPECT_TRUE(IsNear(Call("RRI", {96, 10000, 11000}), 0.00099330737629139485, ClosedForm));          // doc: 0.0009933
  EXPECT_TRUE(IsNear(Call("PDURATION", {0.025, 2000, 2200}), 3.8598661626226452, ClosedForm));       // doc: 3.86
  EXPECT_TRUE(IsNear(Call("PDURATION", {0.025 / 12, 1000, 1200}), 87.605476419375628, ClosedForm));  // doc: 87.6
  EXPECT_TRUE(IsNear(Call("FVSCHEDULE", {1, Range({V(0.09), V(0.11), V(0.1)}, 1, 3)}), 1.33089, ClosedForm));  // doc
  EXPECT_TRUE(IsNear(Call("FVSCHEDULE", {100, Column({V(0.1), Blank(), V(0.1)})}), 121));  // blanks count as 0
  ExpectCases({
      {"EFFECT", {0, 4}, E(ceNum)},
      {"EFFECT", {0.05, 0.5}, E(ceNum)},
      {"NOMINAL", {-0.1, 4}, E(ceNum)},
      {"RRI", {0, 100, 200}, E(ceNum)},
      {"RRI", {10, 0, 200}, E(ceNum)},
      {"RRI", {2, 100, -200}, E(ceNum)},
      {"PDURATION", {0, 100, 200}, E(ceNum)},
      {"PDURATION", {0.1, 100, -200}, E(ceNum)},
      {"FVSCHEDULE", {100, Column({V(0.1), V("x")})}, E(ceValue)},
      {"FVSCHEDULE", {100, "0.5"}, V(150)},
  });
}

TEST(Cashflows, DollarFractions) {
  EXPECT_TRUE(IsNear(Call("DOLLARDE", {1.02, 16}), 1.125));  // doc
  EXPECT_TRUE(IsNear(Call("DOLLARDE", {1.1, 32}), 1.3125));  // doc
  EXPECT_TRUE(IsNear(Call("DOLLARDE", {-1.02, 16}), -1.125));
  EXPECT_TRUE(IsNear(Call("DOLLARDE", {1.5, 1}), 1.5));
  EXPECT_TRUE(IsNear(Call("DOLLARDE", {1.02, 16.9}), 1.125));
  EXPECT_TRUE(IsNear(Call("DOLLARFR", {1.125, 16}), 1.02));  // doc
  EXPECT_TRUE(IsNear(Call("DOLLARFR", {1.125, 32}), 1.04));  // doc
  ExpectCases({
      {"DOLLARDE", {1.02, 0.5}, E(ceDiv0)},
      {"DOLLARDE", {1.02, -1}, E(ceNum)},
      {"DOLLARFR", {1.02, "x"}, E(ceValue)},
  });
}

}  // namespace
}  // namespace Tabrino
