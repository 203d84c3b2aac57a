// The rate solver of the iterative financial functions (YIELD, ODDFYIELD,
// XIRR): Newton's method, and bisection when Newton fails.
#pragma once

#include <functional>
#include <optional>

namespace Tabrino {

// A root of F above Lower (the open bound of the domain: a rate per period
// must stay above -1). Newton's method starts at Guess with a numeric slope;
// if it leaves the domain, stalls or does not settle within 100 steps, a
// bracket is sought by widening steps from the guess to both sides and is
// bisected to full precision. Nothing when no sign change is found.
std::optional<double> SolveRate(const std::function<double(double)>& F, double Guess, double Lower);

}  // namespace Tabrino
