// LET, LAMBDA and the iterators that call lambdas, as operations of the
// evaluator: they bind names in its flat table and walk bodies with its walkers.
#include <cmath>

#include "Tabrino.Formula.DeepStack.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Formula.Values.h"

namespace Tabrino {

namespace {

// Lambdas can reach themselves through a LET name, so a call chain has no
// natural end. Past this depth a call fails instead of recursing on.
constexpr int32_t MaxLambdaDepth = 1000;

// Results are materialised, so a MAKEARRAY size is capped like SEQUENCE's.
constexpr double MaxArrayRows = 1048576, MaxArrayCols = 16384, MaxArrayCells = 1000000;

TFormulaArg ValueError() {
  return TFormulaArg::FromError(ceValue);
}

bool IsError(const TCellValue& Value) {
  return Value.Kind == cvkError;
}

// Unbinds what a LET or a call bound, on every way out.
struct TUnbindOnExit {
  TFormulaEvaluator& Evaluator;
  std::vector<std::string> Names;
  ~TUnbindOnExit() { Evaluator.UnbindLocalNames(Names); }
};

// The array and the lambda every iterator but MAKEARRAY starts from; false
// when the second argument is no lambda or the first is one.
bool IteratorOperands(std::span<const TFormulaArg> Args, TFormulaArg& Array, const ILambdaClosure*& Closure) {
  if (Args.size() < 2 || !Args[1].IsLambda || Args[0].IsLambda) return false;
  Array = AsRangeArg(Args[0]);
  Closure = Args[1].Lambda.get();
  return true;
}

// A Rows by Cols result, one call per cell in row order (0-based indexes);
// the first error ends it and is the result, so no partial array comes back.
template <typename TCall>
TFormulaArg CollectCalls(int32_t Rows, int32_t Cols, TCall Call) {
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Rows) * size_t(Cols));
  for (int32_t Row = 0; Row < Rows; ++Row) {
    for (int32_t Col = 0; Col < Cols; ++Col) {
      TCellValue Value = Call(Row, Col);
      if (IsError(Value)) return TFormulaArg::FromScalar(std::move(Value));
      Cells.push_back(std::move(Value));
    }
  }
  return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
}

// The cells of one row or column, as a range of its own without origin.
TFormulaArg Slice(const TFormulaArg& Array, int32_t Index, bool Row) {
  const int32_t Count = Row ? Array.ColCount : Array.RowCount;
  std::vector<TCellValue> Cells;
  Cells.reserve(size_t(Count));
  for (int32_t I = 0; I < Count; ++I) Cells.push_back(Row ? Array.CellAt(Index, I) : Array.CellAt(I, Index));
  return Row ? TFormulaArg::FromRange(std::move(Cells), 1, Count) : TFormulaArg::FromRange(std::move(Cells), Count, 1);
}

}  // namespace

// ---- the name table ------------------------------------------------------------

void TFormulaEvaluator::BindLocalName(std::string_view Name, const TFormulaArg& Arg, bool Missing) {
  std::string Key = LocalNameKey(Name);
  if (Missing)
    FMissingParams.insert(Key);
  else if (!FMissingParams.empty())
    FMissingParams.erase(Key);
  FLocalNames.insert_or_assign(std::move(Key), Arg);
}

void TFormulaEvaluator::UnbindLocalNames(std::span<const std::string> Names) {
  for (const std::string& Name : Names) {
    std::string Key = LocalNameKey(Name);
    FLocalNames.erase(Key);
    FMissingParams.erase(Key);
  }
}

bool TFormulaEvaluator::TryLocalArg(std::string_view Name, TFormulaArg& Arg) const {
  if (FLocalNames.empty()) return false;
  auto It = FLocalNames.find(LocalNameKey(Name));
  if (It == FLocalNames.end()) return false;
  Arg = It->second;
  return true;
}

bool TFormulaEvaluator::TryLocalName(std::string_view Name, TCellValue& Value) const {
  if (FLocalNames.empty()) return false;
  auto It = FLocalNames.find(LocalNameKey(Name));
  if (It == FLocalNames.end()) return false;
  Value = It->second.First();
  return true;
}

// ---- LET and LAMBDA ----------------------------------------------------------------

TFormulaArg TFormulaEvaluator::MakeLambdaArg(const TAstNode* Node) const {
  if (!Node || Node->Kind != ankFunc || CanonicalFunctionName(Node->Text) != "LAMBDA") return ValueError();
  const auto& A = Node->Args;
  if (A.size() < 2) return ValueError();
  std::vector<std::string> Params;
  Params.reserve(A.size() - 1);
  for (size_t I = 0; I + 1 < A.size(); ++I) {
    if (!IsLetIdentifier(A[I].get())) return ValueError();
    Params.push_back(LetIdentifierName(A[I].get()));
  }
  return TFormulaArg::FromLambda(std::make_shared<TLambdaClosure>(std::move(Params), CloneAstNode(A.back().get())));
}

TFormulaArg TFormulaEvaluator::EvalLambdaRef(const TAstNode* Node, int32_t SheetIndex) {
  if (Node && Node->Kind == ankFunc && CanonicalFunctionName(Node->Text) == "LAMBDA") return MakeLambdaArg(Node);
  return EvalNodeArg(Node, SheetIndex);
}

TFormulaArg TFormulaEvaluator::EvalLet(const TAstNode* Node, int32_t SheetIndex) {
  const auto& A = Node->Args;
  if (A.size() < 3 || A.size() % 2 == 0) return ValueError();
  TUnbindOnExit Bound{*this, {}};
  for (size_t I = 0; I + 1 < A.size(); I += 2) {
    if (!IsLetIdentifier(A[I].get())) return ValueError();
    TFormulaArg Value = EvalNodeArg(A[I + 1].get(), SheetIndex);
    // An error in any definition ends the LET, whether the name is used or not.
    if (TCellValue First = Value.First(); IsError(First)) return TFormulaArg::FromScalar(First);
    std::string Name = LetIdentifierName(A[I].get());
    BindLocalName(Name, Value, false);
    Bound.Names.push_back(std::move(Name));
  }
  return EvalNodeArg(A.back().get(), SheetIndex);
}

TFormulaArg TFormulaEvaluator::InvokeLambda(const ILambdaClosure* Closure, std::span<const TFormulaArg> Args,
                                            int32_t SheetIndex) {
  if (!Closure) return ValueError();
  if (FLambdaOverflow || FLambdaDepth >= MaxLambdaDepth) {
    // Once the limit is hit, the rest of the outermost call fails fast, so
    // that a recursion whose errors are caught cannot branch without end.
    FLambdaOverflow = true;
    return ValueError();
  }
  struct TDepth {
    TFormulaEvaluator& Self;
    explicit TDepth(TFormulaEvaluator& S) : Self(S) { ++Self.FLambdaDepth; }
    ~TDepth() {
      if (--Self.FLambdaDepth == 0) Self.FLambdaOverflow = false;
    }
  } Depth(*this);
  TUnbindOnExit Bound{*this, {}};
  const int32_t Count = Closure->GetParamCount();
  Bound.Names.reserve(size_t(Count));
  for (int32_t I = 0; I < Count; ++I) {
    const std::string& Name = Closure->GetParamName(I);
    const bool Omitted = size_t(I) >= Args.size();
    // Lambdas are no arguments of lambdas.
    if (!Omitted && Args[size_t(I)].IsLambda) return ValueError();
    BindLocalName(Name, Omitted ? TFormulaArg::FromScalar({}) : Args[size_t(I)], Omitted);
    Bound.Names.push_back(Name);
  }
  TFormulaArg Result;
  RunWithStackHeadroom([&] { Result = EvalNodeArg(Closure->GetBody(), SheetIndex); });
  return Result;
}

// ---- iterators ----------------------------------------------------------------------

TFormulaArg TFormulaEvaluator::EvalMap(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  TFormulaArg Array;
  const ILambdaClosure* Closure;
  if (!IteratorOperands(Args, Array, Closure)) return ValueError();
  return CollectCalls(Array.RowCount, Array.ColCount, [&](int32_t Row, int32_t Col) {
    const TFormulaArg CallArgs[] = {TFormulaArg::FromScalar(Array.CellAt(Row, Col))};
    return InvokeLambda(Closure, CallArgs, SheetIndex).First();
  });
}

TFormulaArg TFormulaEvaluator::EvalByRow(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  TFormulaArg Array;
  const ILambdaClosure* Closure;
  if (!IteratorOperands(Args, Array, Closure)) return ValueError();
  return CollectCalls(Array.RowCount, 1, [&](int32_t Row, int32_t) {
    const TFormulaArg CallArgs[] = {Slice(Array, Row, true)};
    return InvokeLambda(Closure, CallArgs, SheetIndex).First();
  });
}

TFormulaArg TFormulaEvaluator::EvalByCol(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  TFormulaArg Array;
  const ILambdaClosure* Closure;
  if (!IteratorOperands(Args, Array, Closure)) return ValueError();
  return CollectCalls(1, Array.ColCount, [&](int32_t, int32_t Col) {
    const TFormulaArg CallArgs[] = {Slice(Array, Col, false)};
    return InvokeLambda(Closure, CallArgs, SheetIndex).First();
  });
}

// REDUCE and SCAN: (accumulator, cell) over every cell in row order. With no
// initial value the first cell starts the accumulator and is still folded in.
TFormulaArg TFormulaEvaluator::EvalFold(std::span<const TFormulaArg> Args, int32_t SheetIndex, bool KeepSteps) {
  TFormulaArg Array;
  const ILambdaClosure* Closure;
  if (!IteratorOperands(Args, Array, Closure)) return ValueError();
  if (Args.size() < 3 && Array.Cells.empty()) return ValueError();
  TCellValue Accumulator = Args.size() >= 3 ? Args[2].First() : Array.Cells[0];
  std::vector<TCellValue> Steps;
  if (KeepSteps) Steps.reserve(Array.Cells.size());
  for (const TCellValue& Cell : Array.Cells) {
    const TFormulaArg CallArgs[] = {TFormulaArg::FromScalar(std::move(Accumulator)), TFormulaArg::FromScalar(Cell)};
    Accumulator = InvokeLambda(Closure, CallArgs, SheetIndex).First();
    if (IsError(Accumulator)) return TFormulaArg::FromScalar(std::move(Accumulator));
    if (KeepSteps) Steps.push_back(Accumulator);
  }
  if (!KeepSteps) return TFormulaArg::FromScalar(std::move(Accumulator));
  return TFormulaArg::FromRange(std::move(Steps), Array.RowCount, Array.ColCount);
}

TFormulaArg TFormulaEvaluator::EvalReduce(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  return EvalFold(Args, SheetIndex, false);
}

TFormulaArg TFormulaEvaluator::EvalScan(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  return EvalFold(Args, SheetIndex, true);
}

TFormulaArg TFormulaEvaluator::EvalMakeArray(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  if (Args.size() < 3 || !Args[2].IsLambda || Args[0].IsLambda || Args[1].IsLambda) return ValueError();
  double Rows, Cols;
  if (!AsNumber(Args[0].First(), Rows) || !AsNumber(Args[1].First(), Cols)) return ValueError();
  Rows = std::trunc(Rows);
  Cols = std::trunc(Cols);
  if (!(Rows >= 1 && Cols >= 1 && Rows <= MaxArrayRows && Cols <= MaxArrayCols && Rows * Cols <= MaxArrayCells))
    return TFormulaArg::FromError(ceNum);
  const ILambdaClosure* Closure = Args[2].Lambda.get();
  return CollectCalls(int32_t(Rows), int32_t(Cols), [&](int32_t Row, int32_t Col) {
    const TFormulaArg CallArgs[] = {TFormulaArg::FromScalar(TCellValue::FromNumber(Row + 1)),
                                    TFormulaArg::FromScalar(TCellValue::FromNumber(Col + 1))};
    return InvokeLambda(Closure, CallArgs, SheetIndex).First();
  });
}

// ---- dispatch ----------------------------------------------------------------------

bool TFormulaEvaluator::TryEvalLambdaForm(const std::string& Name, const TAstNode* Node, int32_t SheetIndex,
                                          bool ArrayContext, TFormulaArg& Result) {
  // Without arguments the name is a name: a defined name may stand for it.
  if (Node->Args.empty()) return false;
  const TLambdaForm Form = LambdaFormOf(Name);
  switch (Form) {
    case lfNone: return false;
    // In scalar context LET and LAMBDA are no forms: they fall to the plain
    // function path, where they are unknown.
    case lfLet:
      if (!ArrayContext) return false;
      Result = EvalLet(Node, SheetIndex);
      return true;
    case lfLambda:
      if (!ArrayContext) return false;
      Result = MakeLambdaArg(Node);
      return true;
    default: break;
  }
  const auto& A = Node->Args;
  if (!FindSpecialForm(Name)->AcceptsCount(A.size())) {
    Result = ValueError();
    return true;
  }
  if (Form == lfIsOmitted) {
    // Tests the binding without evaluating the name.
    if (!IsLetIdentifier(A[0].get()))
      Result = ValueError();
    else
      Result = TFormulaArg::FromScalar(TCellValue::FromBoolean(FMissingParams.contains(LetIdentifierName(A[0].get()))));
    return true;
  }
  const int32_t LambdaAt = LambdaArgIndex(Form);
  std::vector<TFormulaArg> Args;
  Args.reserve(A.size());
  for (size_t I = 0; I < A.size(); ++I)
    Args.push_back(int32_t(I) == LambdaAt ? EvalLambdaRef(A[I].get(), SheetIndex) : EvalArg(A[I].get(), SheetIndex));
  switch (Form) {
    case lfMap: Result = EvalMap(Args, SheetIndex); break;
    case lfByRow: Result = EvalByRow(Args, SheetIndex); break;
    case lfByCol: Result = EvalByCol(Args, SheetIndex); break;
    case lfReduce: Result = EvalReduce(Args, SheetIndex); break;
    case lfScan: Result = EvalScan(Args, SheetIndex); break;
    default: Result = EvalMakeArray(Args, SheetIndex); break;
  }
  return true;
}

}  // namespace Tabrino
