// CONVERT(number, from, to): the documented unit table. Unit names are case
// sensitive. Units of one kind convert through the kind's base unit (gram,
// metre, second, pascal, newton, joule, watt, tesla, cubic metre, square metre,
// bit, metre per second); temperatures through degrees Celsius. Metric
// prefixes apply to the units that take them, binary prefixes to bit and
// byte; on square and cubic metres (and angstroms) a prefix scales the length,
// so "km2" is a square kilometre. Unknown units, and units of different
// kinds, give #N/A.
#include <cmath>
#include <optional>
#include <string_view>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

enum TUnitKind : uint8_t {
  ukMass,
  ukDistance,
  ukTime,
  ukPressure,
  ukForce,
  ukEnergy,
  ukPower,
  ukMagnetism,
  ukTemperature,
  ukVolume,
  ukArea,
  ukInformation,
  ukSpeed
};

enum TPrefixes : uint8_t { upNone, upMetric, upMetricAndBinary };

struct TUnit {
  std::string_view Name;
  TUnitKind Kind;
  double Factor;  // in the kind's base unit
  TPrefixes Prefixes = upNone;
  int Power = 1;  // a prefix scales a length that is squared or cubed here
  // Temperature only: Celsius = (value - Offset) / Degree. Absolute scales
  // start at absolute zero and convert among themselves by Degree alone.
  double Offset = 0;
  double Degree = 1;
  bool Absolute = false;
};

constexpr double Inch = 0.0254, Foot = 0.3048, Yard = 0.9144, Mile = 1609.344, NauticalMile = 1852;
constexpr double PicaPoint = Inch / 72, LightYear = 9460730472580800.0;
constexpr double PoundMass = 453.59237, StandardGravity = 9.80665;
constexpr double PoundForce = PoundMass / 1000 * StandardGravity;
constexpr double FootPound = Foot * PoundForce;
constexpr double Horsepower = 550 * FootPound;
constexpr double UsGallon = 231 * Inch * Inch * Inch;
constexpr double UsSurveyFoot = 1200.0 / 3937;

constexpr TUnit Metric(std::string_view Name, TUnitKind Kind, double Factor, int Power = 1) {
  return {Name, Kind, Factor, upMetric, Power};
}
constexpr TUnit Temperature(std::string_view Name, double Offset, double Degree, TPrefixes Prefixes = upNone) {
  return {Name, ukTemperature, 1, Prefixes, 1, Offset, Degree};
}
constexpr TUnit AbsoluteTemperature(std::string_view Name, double Offset, double Degree, TPrefixes Prefixes = upNone) {
  return {Name, ukTemperature, 1, Prefixes, 1, Offset, Degree, true};
}

constexpr TUnit Units[] = {
    // Mass, in grams.
    Metric("g", ukMass, 1),
    {"sg", ukMass, PoundForce / Foot * 1000},
    {"lbm", ukMass, PoundMass},
    Metric("u", ukMass, 1.660538782E-24),
    {"ozm", ukMass, PoundMass / 16},
    {"grain", ukMass, 0.06479891},
    {"cwt", ukMass, 100 * PoundMass},
    {"shweight", ukMass, 100 * PoundMass},
    {"uk_cwt", ukMass, 112 * PoundMass},
    {"lcwt", ukMass, 112 * PoundMass},
    {"hweight", ukMass, 112 * PoundMass},
    {"stone", ukMass, 14 * PoundMass},
    {"ton", ukMass, 2000 * PoundMass},
    {"uk_ton", ukMass, 2240 * PoundMass},
    {"LTON", ukMass, 2240 * PoundMass},
    {"brton", ukMass, 2240 * PoundMass},
    // Distance, in metres.
    Metric("m", ukDistance, 1),
    {"mi", ukDistance, Mile},
    {"Nmi", ukDistance, NauticalMile},
    {"in", ukDistance, Inch},
    {"ft", ukDistance, Foot},
    {"yd", ukDistance, Yard},
    Metric("ang", ukDistance, 1E-10),
    {"ell", ukDistance, 45 * Inch},
    {"ly", ukDistance, LightYear},
    {"parsec", ukDistance, 3.0856775814913673E16},
    {"pc", ukDistance, 3.0856775814913673E16},
    {"Pica", ukDistance, PicaPoint},
    {"Picapt", ukDistance, PicaPoint},
    {"pica", ukDistance, Inch / 6},
    {"survey_mi", ukDistance, 5280 * UsSurveyFoot},
    // Time, in seconds.
    {"yr", ukTime, 365.25 * 86400},
    {"day", ukTime, 86400},
    {"d", ukTime, 86400},
    {"hr", ukTime, 3600},
    {"mn", ukTime, 60},
    {"min", ukTime, 60},
    Metric("sec", ukTime, 1),
    Metric("s", ukTime, 1),
    // Pressure, in pascals.
    Metric("Pa", ukPressure, 1),
    Metric("p", ukPressure, 1),
    Metric("atm", ukPressure, 101325),
    Metric("at", ukPressure, 101325),
    Metric("mmHg", ukPressure, 13.5951 * StandardGravity),
    {"psi", ukPressure, PoundForce / (Inch * Inch)},
    {"Torr", ukPressure, 101325.0 / 760},
    // Force, in newtons.
    Metric("N", ukForce, 1),
    Metric("dyn", ukForce, 1E-5),
    Metric("dy", ukForce, 1E-5),
    {"lbf", ukForce, PoundForce},
    Metric("pond", ukForce, StandardGravity / 1000),
    // Energy, in joules.
    Metric("J", ukEnergy, 1),
    Metric("e", ukEnergy, 1E-7),
    Metric("c", ukEnergy, 4.184),
    Metric("cal", ukEnergy, 4.1868),
    Metric("eV", ukEnergy, 1.602176487E-19),
    Metric("ev", ukEnergy, 1.602176487E-19),
    {"HPh", ukEnergy, Horsepower * 3600},
    {"hh", ukEnergy, Horsepower * 3600},
    Metric("Wh", ukEnergy, 3600),
    Metric("wh", ukEnergy, 3600),
    {"flb", ukEnergy, FootPound},
    {"BTU", ukEnergy, 1055.05585262},
    {"btu", ukEnergy, 1055.05585262},
    // Power, in watts.
    {"HP", ukPower, Horsepower},
    {"h", ukPower, Horsepower},
    {"PS", ukPower, 75 * StandardGravity},
    Metric("W", ukPower, 1),
    Metric("w", ukPower, 1),
    // Magnetism, in teslas.
    Metric("T", ukMagnetism, 1),
    Metric("ga", ukMagnetism, 1E-4),
    // Temperature, through degrees Celsius.
    Temperature("C", 0, 1),
    Temperature("cel", 0, 1),
    Temperature("F", 32, 1.8),
    Temperature("fah", 32, 1.8),
    AbsoluteTemperature("K", 273.15, 1, upMetric),
    AbsoluteTemperature("kel", 273.15, 1, upMetric),
    AbsoluteTemperature("Rank", 491.67, 1.8),
    Temperature("Reau", 0, 0.8),
    // Volume, in cubic metres.
    {"tsp", ukVolume, UsGallon / 768},
    {"tspm", ukVolume, 5E-6},
    {"tbs", ukVolume, UsGallon / 256},
    {"oz", ukVolume, UsGallon / 128},
    {"cup", ukVolume, UsGallon / 16},
    {"pt", ukVolume, UsGallon / 8},
    {"us_pt", ukVolume, UsGallon / 8},
    {"uk_pt", ukVolume, 4.54609E-3 / 8},
    {"qt", ukVolume, UsGallon / 4},
    {"uk_qt", ukVolume, 4.54609E-3 / 4},
    {"gal", ukVolume, UsGallon},
    {"uk_gal", ukVolume, 4.54609E-3},
    Metric("l", ukVolume, 1E-3),
    Metric("L", ukVolume, 1E-3),
    Metric("lt", ukVolume, 1E-3),
    Metric("ang3", ukVolume, 1E-30, 3),
    Metric("ang^3", ukVolume, 1E-30, 3),
    {"barrel", ukVolume, 42 * UsGallon},
    {"bushel", ukVolume, 2150.42 * Inch* Inch* Inch},
    {"ft3", ukVolume, Foot* Foot* Foot},
    {"ft^3", ukVolume, Foot* Foot* Foot},
    {"in3", ukVolume, Inch* Inch* Inch},
    {"in^3", ukVolume, Inch* Inch* Inch},
    {"ly3", ukVolume, LightYear* LightYear* LightYear},
    {"ly^3", ukVolume, LightYear* LightYear* LightYear},
    Metric("m3", ukVolume, 1, 3),
    Metric("m^3", ukVolume, 1, 3),
    {"mi3", ukVolume, Mile* Mile* Mile},
    {"mi^3", ukVolume, Mile* Mile* Mile},
    {"yd3", ukVolume, Yard* Yard* Yard},
    {"yd^3", ukVolume, Yard* Yard* Yard},
    {"Nmi3", ukVolume, NauticalMile* NauticalMile* NauticalMile},
    {"Nmi^3", ukVolume, NauticalMile* NauticalMile* NauticalMile},
    {"Pica3", ukVolume, PicaPoint* PicaPoint* PicaPoint},
    {"Pica^3", ukVolume, PicaPoint* PicaPoint* PicaPoint},
    {"Picapt3", ukVolume, PicaPoint* PicaPoint* PicaPoint},
    {"Picapt^3", ukVolume, PicaPoint* PicaPoint* PicaPoint},
    {"GRT", ukVolume, 100 * Foot* Foot* Foot},
    {"regton", ukVolume, 100 * Foot* Foot* Foot},
    {"MTON", ukVolume, 40 * Foot* Foot* Foot},
    // Area, in square metres.
    {"uk_acre", ukArea, 4840 * Yard* Yard},
    {"us_acre", ukArea, 43560 * UsSurveyFoot* UsSurveyFoot},
    Metric("ang2", ukArea, 1E-20, 2),
    Metric("ang^2", ukArea, 1E-20, 2),
    Metric("ar", ukArea, 100),
    {"ft2", ukArea, Foot* Foot},
    {"ft^2", ukArea, Foot* Foot},
    {"ha", ukArea, 10000},
    {"in2", ukArea, Inch* Inch},
    {"in^2", ukArea, Inch* Inch},
    {"ly2", ukArea, LightYear* LightYear},
    {"ly^2", ukArea, LightYear* LightYear},
    Metric("m2", ukArea, 1, 2),
    Metric("m^2", ukArea, 1, 2),
    {"Morgen", ukArea, 2500},
    {"mi2", ukArea, Mile* Mile},
    {"mi^2", ukArea, Mile* Mile},
    {"Nmi2", ukArea, NauticalMile* NauticalMile},
    {"Nmi^2", ukArea, NauticalMile* NauticalMile},
    {"Pica2", ukArea, PicaPoint* PicaPoint},
    {"Pica^2", ukArea, PicaPoint* PicaPoint},
    {"Picapt2", ukArea, PicaPoint* PicaPoint},
    {"Picapt^2", ukArea, PicaPoint* PicaPoint},
    {"yd2", ukArea, Yard* Yard},
    {"yd^2", ukArea, Yard* Yard},
    // Information, in bits.
    {"bit", ukInformation, 1, upMetricAndBinary},
    {"byte", ukInformation, 8, upMetricAndBinary},
    // Speed, in metres per second.
    {"admkn", ukSpeed, 6080 * Foot / 3600},
    {"kn", ukSpeed, NauticalMile / 3600},
    Metric("m/h", ukSpeed, 1.0 / 3600),
    Metric("m/hr", ukSpeed, 1.0 / 3600),
    Metric("m/s", ukSpeed, 1),
    Metric("m/sec", ukSpeed, 1),
    {"mph", ukSpeed, Mile / 3600},
};

struct TPrefix {
  std::string_view Name;
  double Factor;
  bool Binary;
};

// Two-letter prefixes first, so that "da" is not read as deci.
constexpr TPrefix Prefixes[] = {
    {"da", 1E1, false},   {"Yi", 0x1p80, true}, {"Zi", 0x1p70, true}, {"Ei", 0x1p60, true}, {"Pi", 0x1p50, true},
    {"Ti", 0x1p40, true}, {"Gi", 0x1p30, true}, {"Mi", 0x1p20, true}, {"ki", 0x1p10, true}, {"Y", 1E24, false},
    {"Z", 1E21, false},   {"E", 1E18, false},   {"P", 1E15, false},   {"T", 1E12, false},   {"G", 1E9, false},
    {"M", 1E6, false},    {"k", 1E3, false},    {"h", 1E2, false},    {"e", 1E1, false},    {"d", 1E-1, false},
    {"c", 1E-2, false},   {"m", 1E-3, false},   {"u", 1E-6, false},   {"n", 1E-9, false},   {"p", 1E-12, false},
    {"f", 1E-15, false},  {"a", 1E-18, false},  {"z", 1E-21, false},  {"y", 1E-24, false},
};

const TUnit* FindUnit(std::string_view Name) {
  for (const TUnit& U : Units)
    if (U.Name == Name) return &U;
  return nullptr;
}

// A unit as named, or a prefix followed by a unit that takes it; the
// prefix folds into the factor.
std::optional<TUnit> ResolveUnit(std::string_view Name) {
  if (const TUnit* U = FindUnit(Name)) return *U;
  for (const TPrefix& P : Prefixes) {
    if (!Name.starts_with(P.Name)) continue;
    const TUnit* U = FindUnit(Name.substr(P.Name.size()));
    if (!U || U->Prefixes == upNone || (P.Binary && U->Prefixes != upMetricAndBinary)) continue;
    TUnit Prefixed = *U;
    Prefixed.Factor *= std::pow(P.Factor, U->Power);
    return Prefixed;
  }
  return std::nullopt;
}

TCellValue Convert(const TFunctionCall& C) {
  double Value;
  if (!ArgNumber(C[0], Value)) return Err(ceValue);
  std::optional<TUnit> From = ResolveUnit(ArgText(C[1]));
  std::optional<TUnit> To = ResolveUnit(ArgText(C[2]));
  if (!From || !To || From->Kind != To->Kind) return Err(ceNA);
  double Base = Value * From->Factor;
  if (From->Kind == ukTemperature && From->Absolute && To->Absolute)
    Base = Base / From->Degree * To->Degree;
  else if (From->Kind == ukTemperature)
    Base = (Base - From->Offset) / From->Degree * To->Degree + To->Offset;
  double Result = Base / To->Factor;
  return std::isfinite(Result) ? Num(Result) : Err(ceNum);
}

}  // namespace

std::span<const TFunctionDef> UnitConversionFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CONVERT", 3, 3, fnNone, Convert},
  };
  return Table;
}

}  // namespace Tabrino
