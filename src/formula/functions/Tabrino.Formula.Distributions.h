// The probability distributions of the statistical built-ins, as numbers:
// densities, both tails at once and quantiles, on top of the gamma and beta
// numerics. Parameters are taken as given (real degrees of freedom
// included); the built-ins check their domains before calling.
#pragma once

#include "Tabrino.Formula.GammaBeta.h"

namespace Tabrino {

// Student's t with Df > 0 degrees of freedom.
TTailPair StudentTTails(double T, double Df);
double StudentTDensity(double T, double Df);
// The t whose lower tail is Target.Lower.
double StudentTQuantile(TTailPair Target, double Df);

// Fisher's F with D1, D2 > 0 degrees of freedom, F >= 0.
TTailPair FisherTails(double F, double D1, double D2);
double FisherDensity(double F, double D1, double D2);
double FisherQuantile(TTailPair Target, double D1, double D2);

// The gamma distribution of unit scale with Shape > 0, X >= 0; the chi-square
// distribution with Df degrees of freedom is the one of shape Df/2 at X/2.
TTailPair GammaTails(double X, double Shape);
double GammaDensity(double X, double Shape);
double GammaQuantile(TTailPair Target, double Shape);

// The beta distribution on [0, 1] at a point given with its complement.
double BetaDensity(TUnitPoint Point, double A, double B);

// Discrete distributions: P(X <= K) and P(X > K) for a whole K.
TTailPair BinomialTails(double K, double Trials, double P);
TTailPair PoissonTails(double K, double Mean);
// Failures before the Successes-th success.
TTailPair NegativeBinomialTails(double Failures, double Successes, double P);
// Drawing Draws from a population of Population items of which Marked are
// marked: the number of marked items drawn.
double HypergeometricProbability(double K, double Draws, double Marked, double Population);
TTailPair HypergeometricTails(double K, double Draws, double Marked, double Population);

}  // namespace Tabrino
