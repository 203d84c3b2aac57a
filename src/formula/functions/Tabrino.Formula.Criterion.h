// The one criteria matcher of the conditional aggregates and the database
// functions. A criterion is an optional comparison operator and an operand:
// numbers compare as numbers when both sides are numeric, everything else by
// display text ignoring case. There are no wildcards: "a*" matches the text
// "a*" only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Tabrino.Formula.Functions.h"
#include "Tabrino.NumberParse.h"

namespace Tabrino {

enum TCriterionOp : uint8_t { coEqual, coNotEqual, coLess, coGreater, coLessEqual, coGreaterEqual };

// A criterion parsed once, so that testing a cell converts and allocates
// nothing beyond the cell's own number where it is text.
class TCriterion {
 public:
  // The criterion is the display text of the argument's First.
  explicit TCriterion(const TFormulaArg& Arg) : TCriterion(std::string_view(ArgText(Arg))) {}
  explicit TCriterion(std::string_view Source) {
    static constexpr struct {
      std::string_view Text;
      TCriterionOp Op;
    } Operators[] = {{"<>", coNotEqual}, {"<=", coLessEqual}, {">=", coGreaterEqual},
                     {"<", coLess},      {"=", coEqual},      {">", coGreater}};
    for (const auto& [Text, Op] : Operators) {
      if (Source.starts_with(Text)) {
        FOp = Op;
        Source.remove_prefix(Text.size());
        break;
      }
    }
    FOperand = Source;
    FOperandIsNumber = TryTextToFloat(FOperand, FNumber);
  }

  bool Matches(const TCellValue& Cell) const {
    if (FOperandIsNumber) {
      double X = Cell.Number;
      if (Cell.Kind == cvkNumber || AsNumber(Cell, X)) return CompareNumbers(X);
    }
    // Orderings hold only between numbers.
    if (FOp != coEqual && FOp != coNotEqual) return false;
    return DisplayEqualsNoCase(Cell, FOperand) == (FOp == coEqual);
  }

 private:
  bool CompareNumbers(double X) const {
    switch (FOp) {
      case coEqual: return X == FNumber;
      case coNotEqual: return X != FNumber;
      case coLess: return X < FNumber;
      case coGreater: return X > FNumber;
      case coLessEqual: return X <= FNumber;
      case coGreaterEqual: return X >= FNumber;
    }
    return false;
  }

  TCriterionOp FOp = coEqual;
  std::string FOperand;
  bool FOperandIsNumber = false;
  double FNumber = 0;
};

}  // namespace Tabrino
