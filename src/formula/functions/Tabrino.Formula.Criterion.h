// The one criteria matcher of the conditional aggregates and the database
// functions. A criterion is an optional comparison operator and an operand:
// numbers compare as numbers when both sides are numeric, everything else by
// display text ignoring case. There are no wildcards: "a*" matches the text
// "a*" only.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

  TCriterionOp Op() const { return FOp; }
  // The text after the operator, and its number when it reads as one.
  const std::string& Operand() const { return FOperand; }
  bool OperandIsNumber() const { return FOperandIsNumber; }
  double Number() const { return FNumber; }

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

// Range and criterion pairs whose ranges all have the shape of Shape; a cell
// index matches when the cells at that index pass every criterion.
class TCriteriaSet {
 public:
  TCriteriaSet(std::span<const TFormulaArg> Pairs, const TFormulaArg& Shape) {
    FValid = Pairs.size() % 2 == 0;
    for (size_t I = 0; FValid && I < Pairs.size(); I += 2) {
      FValid = SameShape(Pairs[I], Shape);
      FRanges.push_back(ArgValues(Pairs[I]));
      FCriteria.emplace_back(Pairs[I + 1]);
    }
  }

  bool Valid() const { return FValid; }
  bool Matches(size_t Index) const {
    for (size_t K = 0; K < FCriteria.size(); ++K)
      if (!FCriteria[K].Matches(FRanges[K][Index])) return false;
    return true;
  }

 private:
  // A scalar stands for a 1 by 1 range.
  static bool SameShape(const TFormulaArg& A, const TFormulaArg& B) {
    auto Rows = [](const TFormulaArg& X) { return X.IsRange ? X.RowCount : 1; };
    auto Cols = [](const TFormulaArg& X) { return X.IsRange ? X.ColCount : 1; };
    return Rows(A) == Rows(B) && Cols(A) == Cols(B) && ArgValues(A).size() == ArgValues(B).size();
  }

  bool FValid = false;
  std::vector<std::span<const TCellValue>> FRanges;
  std::vector<TCriterion> FCriteria;
};

}  // namespace Tabrino
