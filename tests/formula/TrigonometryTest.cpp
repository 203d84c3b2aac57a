#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "FunctionTestSupport.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(Trigonometry, WrongArgumentCounts) {
  ExpectCases({
      {"SIN", {}, E(ceValue)},
      {"COS", {1, 2}, E(ceValue)},
      {"ATAN2", {1}, E(ceValue)},
      {"ATAN2", {1, 2, 3}, E(ceValue)},
      {"SQRTPI", {}, E(ceValue)},
  });
}

TEST(Trigonometry, ArgumentsThatAreNoNumbers) {
  ExpectCases({
      {"SIN", {"x"}, E(ceValue)},
      {"ACOT", {""}, E(ceValue)},
      {"COT", {E(ceNA)}, E(ceValue)},
      {"ATAN2", {1, "y"}, E(ceValue)},
      {"SIN", {Blank()}, V(0)},
      {"COS", {false}, V(1)},
      {"RADIANS", {"180"}, V(std::numbers::pi)},
  });
}

TEST(Trigonometry, DomainEdges) {
  ExpectCases({
      {"ASIN", {1.0000001}, E(ceNum)},
      {"ACOS", {2}, E(ceNum)},
      {"ACOS", {-1}, V(std::numbers::pi)},
      {"ACOSH", {0.999}, E(ceNum)},
      {"ACOSH", {1}, V(0)},
      {"ATANH", {1}, E(ceNum)},
      {"ATANH", {-1.5}, E(ceNum)},
      {"ACOTH", {1}, E(ceNum)},
      {"ACOTH", {0.5}, E(ceNum)},
      {"ATAN2", {0, 0}, E(ceDiv0)},
      {"SQRTPI", {-1}, E(ceNum)},
      {"SQRTPI", {0}, V(0)},
      // The poles at 0, and the documented limit of 2^27 for the reciprocals.
      {"COT", {0}, E(ceDiv0)},
      {"CSC", {0}, E(ceDiv0)},
      {"COTH", {0}, E(ceDiv0)},
      {"CSCH", {0}, E(ceDiv0)},
      {"SEC", {0}, V(1)},
      {"SECH", {0}, V(1)},
      {"COT", {134217728}, E(ceNum)},
      {"SEC", {-134217728}, E(ceNum)},
      {"SECH", {134217728}, E(ceNum)},
      {"CSCH", {134217727}, V(0)},
      // Overflow is #NUM!, never an infinity in a cell.
      {"SINH", {1000}, E(ceNum)},
      {"COSH", {-1000}, E(ceNum)},
      {"TANH", {1000}, V(1)},
      {"DEGREES", {1E308}, E(ceNum)},
  });
}

// References from mpmath at 30 digits (mp.dps=30; sin, acot, csch, ...).
TEST(Trigonometry, AgreeWithReferenceValues) {
  struct TReference {
    const char* Name;
    std::vector<TTestArg> Args;
    double Expected;
  };
  const TReference Cases[] = {
      {"SIN", {1}, 0.84147098480789650665},
      {"COS", {1}, 0.5403023058681397174},
      {"TAN", {1}, 1.5574077246549022305},
      {"SIN", {1E6}, -0.34999350217129295212},
      {"ASIN", {0.5}, 0.52359877559829887308},
      {"ACOS", {-0.5}, 2.0943951023931954923},
      {"ATAN", {1}, 0.78539816339744830962},
      {"ATAN2", {-1, -1}, -2.3561944901923449288},  // x first: the third quadrant
      {"ACOT", {2}, 0.46364760900080611621},
      {"ACOT", {-1}, 2.3561944901923449288},  // between 0 and pi
      {"ACOT", {0}, 1.5707963267948966192},
      {"SINH", {2}, 3.6268604078470187677},
      {"COSH", {2}, 3.7621956910836314596},
      {"TANH", {0.5}, 0.4621171572600097585},
      {"ASINH", {-2.5}, -1.6472311463710957106},
      {"ACOSH", {10}, 2.9932228461263808979},
      {"ATANH", {0.76}, 0.99621508234510308104},
      {"ACOTH", {6}, 0.16823611831060646525},
      {"COT", {30}, -0.15611995216165922287},
      {"CSC", {15}, 1.537780561540853567},
      {"SEC", {45}, 1.9035944074044247389},
      {"COTH", {2}, 1.0373147207275480959},
      {"CSCH", {1.5}, 0.46964244059522458473},
      {"SECH", {1}, 0.64805427366388539957},
      {"SQRTPI", {2}, 2.5066282746310005024},
      {"DEGREES", {1}, 57.295779513082320877},
      {"RADIANS", {270}, 4.7123889803846898577},
  };
  for (const TReference& Case : Cases) {
    std::vector<TFormulaArg> Args;
    for (const TTestArg& A : Case.Args) Args.push_back(A.Arg);
    EXPECT_TRUE(IsNear(Dispatch(Case.Name, Args, {}), Case.Expected, 1E-14)) << Case.Name;
  }
}

TEST(Trigonometry, AngleConversionsRoundTrip) {
  ExpectCases({
      {"DEGREES", {std::numbers::pi}, V(180)},
      {"RADIANS", {180}, V(std::numbers::pi)},
      {"DEGREES", {-std::numbers::pi / 2}, V(-90)},
  });
}

}  // namespace
}  // namespace Tabrino
