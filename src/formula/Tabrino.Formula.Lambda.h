// LET names and LAMBDA values. A lambda is a first-class value that the
// iterators (MAP, BYROW, BYCOL, REDUCE, SCAN, MAKEARRAY) call; it captures
// nothing but its parameter names and a private copy of its body. Names are
// bound in one flat table of the evaluator (Tabrino.Formula.Evaluator.h), not
// in environments, so a closure needs no scope of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Parser.h"

namespace Tabrino {

// Immutable once made and shared by every TFormulaArg that holds it.
class ILambdaClosure {
 public:
  virtual ~ILambdaClosure() = default;
  virtual int32_t GetParamCount() const = 0;
  // Upper-cased; the empty text outside the range.
  virtual const std::string& GetParamName(int32_t Index) const = 0;
  // Owned by the closure, so it outlives the tree it was written in.
  virtual const TAstNode* GetBody() const = 0;
};

class TLambdaClosure final : public ILambdaClosure {
 public:
  std::vector<std::string> FParamNames;
  std::unique_ptr<const TAstNode> FBody;

  // Takes the body over; names are expected upper-cased (LetIdentifierName).
  TLambdaClosure(std::vector<std::string> ParamNames, std::unique_ptr<TAstNode> Body)
      : FParamNames(std::move(ParamNames)), FBody(std::move(Body)) {}

  int32_t GetParamCount() const override { return int32_t(FParamNames.size()); }
  const std::string& GetParamName(int32_t Index) const override;
  const TAstNode* GetBody() const override { return FBody.get(); }
};

// A name as LET and LAMBDA write it: a function node with no arguments.
bool IsLetIdentifier(const TAstNode* Node);
// The identifier's key: trimmed, every "$" removed, upper-cased; empty for a
// node that is no identifier.
std::string LetIdentifierName(const TAstNode* Node);
// The same key for name text.
std::string LocalNameKey(std::string_view Name);

// The functions that bind names or call lambdas, by canonical name. Their
// arguments are not evaluated up front, so the evaluator handles them itself.
enum TLambdaForm : uint8_t {
  lfNone,
  lfLet,
  lfLambda,
  lfIsOmitted,
  lfMap,
  lfByRow,
  lfByCol,
  lfReduce,
  lfScan,
  lfMakeArray
};
TLambdaForm LambdaFormOf(std::string_view CanonicalName);
// Which argument (0-based) of an iterator is the lambda; -1 for other forms.
int32_t LambdaArgIndex(TLambdaForm Form);

}  // namespace Tabrino
