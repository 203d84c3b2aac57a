// Functions known by name whose answer lives outside a headless engine: an
// OLAP cube, a real-time data server, the web, a translation service, an
// add-in library, a DDE server, linked data types, pivot tables, image
// downloads, or the what-if and partial-result hooks of another program's
// evaluator. Each gives the error an unconnected spreadsheet gives: #N/A for
// a missing provider, #REF! for a pivot table that is not there, #VALUE! for
// a field of a data type and for an image that cannot be fetched.

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

template <TCellErrorCode Code>
TCellValue Unavailable(const TFunctionCall&) {
  return Err(Code);
}

constexpr TScalarFunction NoProvider = Unavailable<ceNA>;

}  // namespace

std::span<const TFunctionDef> UnavailableFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"CUBEKPIMEMBER", 3, 4, fnNone, NoProvider},
      {"CUBEMEMBER", 2, 3, fnNone, NoProvider},
      {"CUBEMEMBERPROPERTY", 3, 3, fnNone, NoProvider},
      {"CUBERANKEDMEMBER", 3, 4, fnNone, NoProvider},
      {"CUBESET", 2, 5, fnNone, NoProvider},
      {"CUBESETCOUNT", 1, 1, fnNone, NoProvider},
      {"CUBEVALUE", 1, -1, fnNone, NoProvider},
      {"RTD", 3, -1, fnVolatile, NoProvider},
      {"WEBSERVICE", 1, 1, fnNone, NoProvider},
      {"DETECTLANGUAGE", 1, 1, fnNone, NoProvider},
      {"TRANSLATE", 1, 3, fnNone, NoProvider},
      {"CALL", 1, -1, fnNone, NoProvider},
      {"REGISTER.ID", 2, 3, fnNone, NoProvider},
      {"DDE", 3, 4, fnNone, NoProvider},
      {"CURRENT", 0, 0, fnNone, NoProvider},
      {"MULTIPLE.OPERATIONS", 3, 5, fnNone, NoProvider},
      {"GETPIVOTDATA", 2, -1, fnNone, Unavailable<ceRef>},
      {"FIELDVALUE", 2, 2, fnNone, Unavailable<ceValue>},
      {"IMAGE", 1, 5, fnNone, Unavailable<ceValue>},
  };
  return Table;
}

}  // namespace Tabrino
