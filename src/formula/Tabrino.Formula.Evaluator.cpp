#include "Tabrino.Formula.Evaluator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Tabrino.Formula.Builtins.Extra.h"
#include "Tabrino.Formula.DeepStack.h"
#include "Tabrino.Formula.Values.h"
#include "Tabrino.TextUtil.h"

namespace Tabrino {

namespace {

// Materialising a range costs memory per cell; a reference larger than this
// gives #NUM! instead of exhausting memory.
constexpr int64_t MaxRangeCells = 16 * 1024 * 1024;

bool IsComparison(std::string_view Op) {
  return Op == "=" || Op == "<>" || Op == "<" || Op == ">" || Op == "<=" || Op == ">=";
}

TCellRange Ordered(int32_t C1, int32_t R1, int32_t C2, int32_t R2) {
  return TCellRange{C1, R1, C2, R2}.Normalize();
}

// The one rule of implicit intersection: a single cell is itself; a column
// meets the anchor's row, a row the anchor's column, a block both.
bool IntersectAnchor(const TCellRange& R, int32_t AnchorCol, int32_t AnchorRow, int32_t& Col, int32_t& Row) {
  bool OneCol = R.StartCol == R.EndCol, OneRow = R.StartRow == R.EndRow;
  if (OneCol && OneRow) {
    Col = R.StartCol;
    Row = R.StartRow;
    return true;
  }
  bool RowInside = AnchorRow >= R.StartRow && AnchorRow <= R.EndRow;
  bool ColInside = AnchorCol >= R.StartCol && AnchorCol <= R.EndCol;
  if (OneCol) {
    Col = R.StartCol;
    Row = AnchorRow;
    return RowInside;
  }
  if (OneRow) {
    Col = AnchorCol;
    Row = R.StartRow;
    return ColInside;
  }
  Col = AnchorCol;
  Row = AnchorRow;
  return RowInside && ColInside;
}

}  // namespace

// ---- cells -----------------------------------------------------------------

TCellValue TFormulaEvaluator::EvaluateCell(int32_t SheetIndex, int32_t Col, int32_t Row) {
  TPassScope Pass(*this);
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  if (!Sheet) return TCellValue::FromError(ceRef);
  const TStoredCell* Cell = Sheet->FindCell(Col, Row);
  if (!Cell || Cell->Kind() != cvkFormula) return Cell ? Cell->Value() : TCellValue();
  EvaluateFormulaCell(SheetIndex, Col, Row);
  Cell = Sheet->FindCell(Col, Row);
  const TCellValue* Cached = Cell ? Cell->CachedValue() : nullptr;
  return Cached ? *Cached : TCellValue();
}

TCellValue TFormulaEvaluator::GetRawCellValue(int32_t SheetIndex, int32_t Col, int32_t Row) {
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  if (!Sheet) return TCellValue::FromError(ceRef);
  const TStoredCell* Cell = Sheet->FindCell(Col, Row);
  if (!Cell || Cell->Kind() == cvkEmpty) {
    // An empty cell shows what a spill put there, if anything.
    const TCellValue* Spilled = Sheet->FSpills.FindValue(Col, Row);
    return Spilled ? *Spilled : TCellValue();
  }
  switch (Cell->Kind()) {
    case cvkNumber: return TCellValue::FromNumber(Cell->Number());
    case cvkFormula: break;
    default: return Cell->Value();
  }
  if (FVisiting.contains(TSheetCellKey{SheetIndex, Col, Row})) return TCellValue::FromError(ceCirc);
  if (const TCellValue* Cached = Cell->CachedValue()) return *Cached;
  EvaluateFormulaCell(SheetIndex, Col, Row);
  Cell = Sheet->FindCell(Col, Row);
  const TCellValue* Cached = Cell ? Cell->CachedValue() : nullptr;
  return Cached ? *Cached : TCellValue();
}

TSharedTree TFormulaEvaluator::TreeOfCell(const TStoredCell& Cell, int32_t Col, int32_t Row) {
  if (const TSharedTree* Kept = Cell.KeptTree(Col, Row)) return *Kept;
  TSharedTree Shared = FTrees.Get(Cell.Formula(), Col, Row);
  Cell.KeepTree(Shared, Col, Row);
  return Shared;
}

void TFormulaEvaluator::WriteCache(int32_t SheetIndex, int32_t Col, int32_t Row, const TCellValue& Value) {
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  if (!Sheet) return;
  Sheet->SetCachedResult(Col, Row, Value);
  FRangeCache.Invalidate(SheetIndex, Col, Row);
}

void TFormulaEvaluator::EvaluateFormulaCell(int32_t SheetIndex, int32_t Col, int32_t Row) {
  if (EvaluateIfFormula(SheetIndex, Col, Row)) return;
  // A formula that has gone takes its spill with it.
  if (TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex)) {
    if (Sheet->FSpills.FindSpill(Col, Row)) FRangeCache.Clear();
    Sheet->FSpills.ClearAnchor(Col, Row);
  }
}

bool TFormulaEvaluator::EvaluateIfFormula(int32_t SheetIndex, int32_t Col, int32_t Row) {
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  const TStoredCell* Stored = Sheet ? Sheet->FindCell(Col, Row) : nullptr;
  if (!Stored || Stored->Kind() != cvkFormula) return false;
  TPassScope Pass(*this);
  const TSheetCellKey Key{SheetIndex, Col, Row};
  if (FVisiting.contains(Key)) {
    WriteCache(SheetIndex, Col, Row, TCellValue::FromError(ceCirc));
    return true;
  }
  const TSharedTree Shared = TreeOfCell(*Stored, Col, Row);
  if (Stored->HasSparkline()) {
    // A sparkline function starts from nothing on every evaluation.
    TCell Cell = Stored->ToCell();
    Cell.Sparkline.Values.clear();
    Sheet->SetCell({Col, Row}, Cell);
  }
  RunWithStackHeadroom([&] {
    FVisiting.insert(Key);
    FEvalCol = Col;
    FEvalRow = Row;
    // LET and LAMBDA state belongs to one formula: a cell evaluated first
    // from inside another's lambda sees neither its names nor its call depth.
    struct TLeave {
      TFormulaEvaluator* Self;
      TSheetCellKey Key;
      decltype(FLocalNames) OuterNames;
      decltype(FMissingParams) OuterMissing;
      int32_t OuterDepth;
      bool OuterOverflow;
      ~TLeave() {
        Self->FVisiting.erase(Key);
        Self->FLocalNames = std::move(OuterNames);
        Self->FMissingParams = std::move(OuterMissing);
        Self->FLambdaDepth = OuterDepth;
        Self->FLambdaOverflow = OuterOverflow;
      }
    } Leave{this,
            Key,
            std::exchange(FLocalNames, {}),
            std::exchange(FMissingParams, {}),
            std::exchange(FLambdaDepth, 0),
            std::exchange(FLambdaOverflow, false)};
    TShiftScope Shift(*this, Shared);
    TFormulaArg Result = EvalNodeArg(Shared.Tree.get(), SheetIndex);
    ApplySpill(SheetIndex, Col, Row, Result);
  });
  return true;
}

TCellValue TFormulaEvaluator::Evaluate(std::string_view FormulaText, int32_t SheetIndex) {
  if (SheetIndex < 0) SheetIndex = FWorkbook->FActiveSheetIndex;
  TPassScope Pass(*this);
  const TSharedTree Shared = FTrees.Get(FormulaText, 0, 0);
  TShiftScope Shift(*this, Shared);
  return EvalNode(Shared.Tree.get(), SheetIndex);
}

// ---- sheets, tables, names ---------------------------------------------------

int32_t TFormulaEvaluator::ResolveSheetIndex(int32_t SheetIndex, std::string_view Name) const {
  if (Name.empty()) return SheetIndex >= 0 ? SheetIndex : FWorkbook->FActiveSheetIndex;
  std::string_view Text = Name;
  // An external-workbook prefix "[n]" goes.
  if (Text.size() > 3 && Text.front() == '[') {
    size_t Close = Text.find(']');
    if (Close != std::string_view::npos && Close >= 2 && Close + 1 < Text.size() &&
        std::all_of(Text.begin() + 1, Text.begin() + Close, [](char C) { return C >= '0' && C <= '9'; }))
      Text.remove_prefix(Close + 1);
  }
  if (!Text.empty() && Text.front() == '$') Text.remove_prefix(1);
  std::string Plain(Text);
  if (Plain.size() >= 2 && Plain.front() == '\'' && Plain.back() == '\'')
    Plain = ReplaceAll(Plain.substr(1, Plain.size() - 2), "''", "'");
  int32_t Index = FWorkbook->IndexOfSheet(FWorkbook->FindSheet(Plain));
  if (Index < 0 && Plain != Name) Index = FWorkbook->IndexOfSheet(FWorkbook->FindSheet(std::string(Name)));
  return Index;
}

TWorksheet* TFormulaEvaluator::ResolveSheet(int32_t SheetIndex, std::string_view Name) const {
  return FWorkbook->GetSheet(ResolveSheetIndex(SheetIndex, Name));
}

bool TFormulaEvaluator::ResolveTableColumn(int32_t SheetIndex, std::string_view TableName, std::string_view ColumnName,
                                           int32_t& TableSheetIndex, TCellRange& Range) const {
  const std::string TableKey = std::string(TrimBlanks(TableName));
  const std::string ColumnKey(TrimBlanks(ColumnName));
  TableSheetIndex = -1;
  Range = TCellRange{};
  const TSheetTable* Table = nullptr;
  if (!TableKey.empty()) {
    if (TWorksheet* Own = FWorkbook->GetSheet(SheetIndex); Own && (Table = Own->FTables.FindByName(TableKey)))
      TableSheetIndex = SheetIndex;
    for (int32_t I = 0; !Table && I < FWorkbook->SheetCount(); ++I) {
      if (I == SheetIndex) continue;
      if ((Table = FWorkbook->GetSheet(I)->FTables.FindByName(TableKey))) TableSheetIndex = I;
    }
  } else if (TWorksheet* Own = FWorkbook->GetSheet(SheetIndex); Own && FEvalCol >= 1 && FEvalRow >= 1) {
    if ((Table = Own->FTables.FindContaining(FEvalCol, FEvalRow))) TableSheetIndex = SheetIndex;
  }
  if (!Table) return false;
  Range = ColumnKey.empty() ? Table->DataRange() : Table->ColumnDataRange(ColumnKey);
  if (Range.EndRow < Range.StartRow) {
    Range = TCellRange{};
    return false;
  }
  return true;
}

TCellValue TFormulaEvaluator::EvalNamedFormula(std::string_view Name, int32_t SheetIndex) {
  std::string Key = NamedFormulaKey(std::string(Name));
  auto It = FWorkbook->FNamedFormulas.find(Key);
  if (It == FWorkbook->FNamedFormulas.end()) return TCellValue::FromError(ceName);
  if (FVisitingNames.contains(Key)) return TCellValue::FromError(ceCirc);
  std::string Formula = It->second;
  TCellValue Result;
  RunWithStackHeadroom([&] {
    FVisitingNames.insert(Key);
    struct TLeave {
      TFormulaEvaluator* Self;
      const std::string& Key;
      ~TLeave() { Self->FVisitingNames.erase(Key); }
    } Leave{this, Key};
    Result = Evaluate(Formula, SheetIndex);
  });
  return Result;
}

// ---- references ---------------------------------------------------------------

TFormulaArg TFormulaEvaluator::ReadRange(int32_t SheetIndex, TCellRange Range, bool ClipToUsed) {
  TWorksheet* Sheet = FWorkbook->GetSheet(SheetIndex);
  if (!Sheet) return TFormulaArg::FromError(ceRef);
  Range = Range.Normalize();
  if (ClipToUsed) Range = Sheet->ClipToUsedBounds(Range);
  const int64_t Rows = int64_t(Range.EndRow) - Range.StartRow + 1;
  const int64_t Cols = int64_t(Range.EndCol) - Range.StartCol + 1;
  if (Rows * Cols > MaxRangeCells) return TFormulaArg::FromError(ceNum);
  if (const TFormulaArg* Cached = FRangeCache.Find(SheetIndex, Range)) return *Cached;
  std::vector<TCellValue> Cells;
  Cells.reserve(static_cast<size_t>(Rows * Cols));
  for (int32_t Row = Range.StartRow; Row <= Range.EndRow; ++Row)
    for (int32_t Col = Range.StartCol; Col <= Range.EndCol; ++Col)
      Cells.push_back(GetRawCellValue(SheetIndex, Col, Row));
  TFormulaArg Arg = TFormulaArg::FromRange(std::move(Cells), int32_t(Rows), int32_t(Cols));
  Arg.HasOrigin = true;
  Arg.OriginCol = Range.StartCol;
  Arg.OriginRow = Range.StartRow;
  Arg.OriginSheetIndex = SheetIndex;
  if (FPassDepth > 0) FRangeCache.Store(SheetIndex, Range, Arg);
  return Arg;
}

TCellValue TFormulaEvaluator::ReadRangeCellAtAnchor(int32_t SheetIndex, const TCellRange& Range) {
  int32_t Col, Row;
  if (!IntersectAnchor(Range.Normalize(), FEvalCol, FEvalRow, Col, Row)) return TCellValue::FromError(ceValue);
  return GetRawCellValue(SheetIndex, Col, Row);
}

TCellValue TFormulaEvaluator::ImplicitIntersectRange(const TAstNode* Node, int32_t SheetIndex) {
  if (!Node || Node->Kind != ankRange) return TCellValue::FromError(ceValue);
  int32_t Target = ResolveSheetIndex(SheetIndex, Node->SheetName);
  if (!FWorkbook->GetSheet(Target)) return TCellValue::FromError(ceRef);
  return ReadRangeCellAtAnchor(Target, Ordered(RefCol(Node), RefRow(Node), RefCol2(Node), RefRow2(Node)));
}

TCellValue TFormulaEvaluator::ImplicitIntersectArg(const TFormulaArg& Arg) const {
  return ImplicitIntersect(Arg, FEvalCol, FEvalRow);
}

TCellValue TFormulaEvaluator::EvalIndirectRef(std::string_view Text, int32_t SheetIndex) {
  std::string Ref = ReplaceAll(TrimBlanks(Text), "$", "");
  if (Ref.empty()) return TCellValue::FromError(ceRef);
  int32_t Target = SheetIndex;
  if (size_t Bang = Ref.find('!'); Bang != std::string::npos) {
    std::string SheetName = Ref.substr(0, Bang);
    if (SheetName.size() >= 2 && SheetName.front() == '\'' && SheetName.back() == '\'')
      SheetName = SheetName.substr(1, SheetName.size() - 2);
    Target = ResolveSheetIndex(SheetIndex, SheetName);
    if (Target < 0) return TCellValue::FromError(ceRef);
    Ref = Ref.substr(Bang + 1);
  }
  if (Ref.find(':') == std::string::npos) {
    TCellAddress A = TCellAddress::FromA1(Ref);
    if (A.Col < 1 || A.Row < 1) return TCellValue::FromError(ceRef);
    return GetRawCellValue(Target, A.Col, A.Row);
  }
  TCellRange R = TCellRange::FromA1(Ref);
  if (R.StartCol < 1 || R.StartRow < 1) return TCellValue::FromError(ceRef);
  if (R.StartCol == R.EndCol && FEvalRow >= R.StartRow && FEvalRow <= R.EndRow)
    return GetRawCellValue(Target, R.StartCol, FEvalRow);
  if (R.StartRow == R.EndRow && FEvalCol >= R.StartCol && FEvalCol <= R.EndCol)
    return GetRawCellValue(Target, FEvalCol, R.StartRow);
  return GetRawCellValue(Target, R.StartCol, R.StartRow);
}

TFormulaArg TFormulaEvaluator::EvalOffsetRef(std::span<const TFormulaArg> Args, int32_t SheetIndex) {
  if (Args.size() < 3 || !Args[0].HasOrigin) return TFormulaArg::FromError(ceValue);
  double RowOffset, ColOffset;
  if (!AsNumber(Args[1].First(), RowOffset) || !AsNumber(Args[2].First(), ColOffset))
    return TFormulaArg::FromError(ceValue);
  double Height = std::max(1, Args[0].RowCount), Width = std::max(1, Args[0].ColCount), Size;
  if (Args.size() > 3 && AsNumber(Args[3].First(), Size)) Height = std::trunc(Size);
  if (Args.size() > 4 && AsNumber(Args[4].First(), Size)) Width = std::trunc(Size);
  if (Height < 1 || Width < 1) return TFormulaArg::FromError(ceRef);
  double Top = Args[0].OriginRow + std::trunc(RowOffset), Left = Args[0].OriginCol + std::trunc(ColOffset);
  if (Top < 1 || Left < 1 || Left + Width - 1 > MaxCol || Top + Height - 1 > MaxRow)
    return TFormulaArg::FromError(ceRef);
  // The base's sheet is ignored on purpose: OFFSET reads the formula's sheet.
  return ReadRange(
      SheetIndex, TCellRange{int32_t(Left), int32_t(Top), int32_t(Left + Width - 1), int32_t(Top + Height - 1)}, false);
}

// ---- walkers ------------------------------------------------------------------

TFormulaContext TFormulaEvaluator::MakeContext(int32_t SheetIndex) const {
  TFormulaContext Context;
  Context.Sheet = FWorkbook->GetSheet(SheetIndex);
  Context.SheetIndex = SheetIndex;
  Context.StyleSheet = &FWorkbook->FStyleSheet;
  Context.Workbook = FWorkbook;
  Context.EvalCol = FEvalCol;
  Context.EvalRow = FEvalRow;
  Context.Clock = &FClock;
  Context.ExactIndexes = &FExactIndexes;
  Context.CriteriaIndexes = &FCriteriaIndexes;
  return Context;
}

TCellValue TFormulaEvaluator::EvalToScalar(const TAstNode* Node, int32_t SheetIndex) {
  if (Node && Node->Kind == ankRange) return ImplicitIntersectRange(Node, SheetIndex);
  return EvalNode(Node, SheetIndex);
}

TCellValue TFormulaEvaluator::EvalNode(const TAstNode* Node, int32_t SheetIndex) {
  if (!Node) return {};
  switch (Node->Kind) {
    case ankNumber: return TCellValue::FromNumber(Node->Number);
    case ankString: return TCellValue::FromText(Node->Text);
    case ankBool: return TCellValue::FromBoolean(Node->BooleanValue);
    case ankError: return TCellValue::FromError(Node->ErrorCode);
    case ankCellRef: return GetRawCellValue(SheetIndex, RefCol(Node), RefRow(Node));
    case ankRange: return ImplicitIntersectRange(Node, SheetIndex);
    case ankSheetRef: {
      int32_t Target = ResolveSheetIndex(SheetIndex, Node->SheetName);
      if (Target < 0) return TCellValue::FromError(ceRef);
      return GetRawCellValue(Target, RefCol(Node), RefRow(Node));
    }
    case ankTableRef: {
      int32_t Target;
      TCellRange Range;
      if (!ResolveTableColumn(SheetIndex, Node->Text, Node->ColumnName, Target, Range))
        return TCellValue::FromError(ceRef);
      return ReadRangeCellAtAnchor(Target, Range);
    }
    case ankUnary: return EvalUnary(Node, SheetIndex);
    case ankBinary: return EvalBinary(Node, SheetIndex);
    case ankFunc: return EvalFunction(Node, SheetIndex);
    case ankArrayLit: return {};  // a bare array literal at the top yields nothing
  }
  return {};
}

TCellValue TFormulaEvaluator::EvalUnary(const TAstNode* Node, int32_t SheetIndex) {
  if (Node->Op == "@") return ImplicitIntersectArg(EvalNodeArg(Node->Left.get(), SheetIndex));
  if (Node->Op == "+") return EvalNode(Node->Left.get(), SheetIndex);  // "+" keeps text text
  TCellValue Operand = EvalToScalar(Node->Left.get(), SheetIndex);
  if (Operand.Kind == cvkError) return Operand;
  double N;
  if (!AsNumber(Operand, N)) return TCellValue::FromError(ceValue);
  return TCellValue::FromNumber(-N);
}

TCellValue TFormulaEvaluator::EvalBinary(const TAstNode* Node, int32_t SheetIndex) {
  TCellValue L = EvalToScalar(Node->Left.get(), SheetIndex);
  TCellValue R = EvalToScalar(Node->Right.get(), SheetIndex);
  if (L.Kind == cvkError) return L;
  if (R.Kind == cvkError) return R;
  const std::string& Op = Node->Op;
  if (Op == "&") return TCellValue::FromText(L.ToDisplayString() + R.ToDisplayString());
  if (IsComparison(Op)) return CompareValues(L, R, Op);
  double X, Y;
  if (!AsNumber(L, X) || !AsNumber(R, Y)) return TCellValue::FromError(ceValue);
  switch (Op.empty() ? 0 : Op[0]) {
    case '+': return TCellValue::FromNumber(X + Y);
    case '-': return TCellValue::FromNumber(X - Y);
    case '*': return TCellValue::FromNumber(X * Y);
    case '/': return Y == 0 ? TCellValue::FromError(ceDiv0) : TCellValue::FromNumber(X / Y);
    case '^': return TCellValue::FromNumber(std::pow(X, Y));
    default: return TCellValue::FromError(ceValue);
  }
}

std::vector<TFormulaArg> TFormulaEvaluator::EvalArgs(const TAstNode* Node, int32_t SheetIndex) {
  std::vector<TFormulaArg> Args;
  Args.reserve(Node->Args.size());
  for (const auto& Arg : Node->Args) Args.push_back(EvalArg(Arg.get(), SheetIndex));
  return Args;
}

bool TFormulaEvaluator::TryEvalSpecialForm(const std::string& Name, const TAstNode* Node, int32_t SheetIndex,
                                           TCellValue& Result) {
  const auto& A = Node->Args;
  const size_t N = A.size();
  if ((Name == "IF" || Name == "IFERROR" || Name == "IFNA") && N >= 2) {
    TCellValue First = EvalToScalar(A[0].get(), SheetIndex);
    if (Name == "IF") {
      if (First.Kind == cvkError)
        Result = First;
      else if (ValueIsTruthy(First))
        Result = EvalToScalar(A[1].get(), SheetIndex);
      else
        Result = N > 2 ? EvalToScalar(A[2].get(), SheetIndex) : TCellValue::FromBoolean(false);
    } else {
      bool Caught = First.Kind == cvkError && (Name == "IFERROR" || First.ErrorCode == ceNA);
      Result = Caught ? EvalToScalar(A[1].get(), SheetIndex) : First;
    }
    return true;
  }
  if (Name == "INDIRECT" && N >= 1) {
    TCellValue Ref = EvalToScalar(A[0].get(), SheetIndex);
    Result = Ref.Kind == cvkError ? Ref : EvalIndirectRef(Ref.ToDisplayString(), SheetIndex);
    return true;
  }
  if (Name == "OFFSET" && N >= 3) {
    std::vector<TFormulaArg> Args = EvalArgs(Node, SheetIndex);
    Result = EvalOffsetRef(Args, SheetIndex).First();
    return true;
  }
  if (Name == "CHOOSE" && N >= 2) {
    double Index;
    if (!AsNumber(EvalToScalar(A[0].get(), SheetIndex), Index) || std::trunc(Index) < 1 ||
        std::trunc(Index) > double(N - 1)) {
      Result = TCellValue::FromError(ceValue);
    } else {
      Result = EvalToScalar(A[size_t(std::trunc(Index))].get(), SheetIndex);
    }
    return true;
  }
  if (TFormulaArg Arg; TryEvalLambdaForm(Name, Node, SheetIndex, false, Arg)) {
    Result = Arg.First();
    return true;
  }
  if (Name == "ROW" || Name == "COLUMN") {
    bool IsRow = Name == "ROW";
    int32_t Value = 1;
    if (N == 0) {
      int32_t Anchor = IsRow ? FEvalRow : FEvalCol;
      Value = Anchor > 0 ? Anchor : 1;
    } else if (A[0]->Kind == ankCellRef || A[0]->Kind == ankSheetRef) {
      Value = IsRow ? RefRow(A[0].get()) : RefCol(A[0].get());
    } else if (A[0]->Kind == ankRange) {
      Value =
          IsRow ? std::min(RefRow(A[0].get()), RefRow2(A[0].get())) : std::min(RefCol(A[0].get()), RefCol2(A[0].get()));
    }
    Result = TCellValue::FromNumber(Value);
    return true;
  }
  return false;
}

TCellValue TFormulaEvaluator::EvalFunction(const TAstNode* Node, int32_t SheetIndex) {
  const std::string Name = CanonicalFunctionName(Node->Text);
  const bool NoArgs = Node->Args.empty();
  if (NoArgs) {
    TCellValue Local;
    if (TryLocalName(Node->Text, Local)) return Local;
    // A defined name beats a built-in of the same name called without arguments.
    TCellValue Named = EvalNamedFormula(Node->Text, SheetIndex);
    if (!(Named.Kind == cvkError && Named.ErrorCode == ceName)) return Named;
  }
  TCellValue Result;
  if (TryEvalSpecialForm(Name, Node, SheetIndex, Result)) return Result;
  std::vector<TFormulaArg> Args = EvalArgs(Node, SheetIndex);
  const TFormulaContext Context = MakeContext(SheetIndex);
  Result = EvaluateFunction(Name, Args, Context);
  if (Result.Kind == cvkError && Result.ErrorCode == ceName) TryEvaluateExtra(Name, Args, Context, Result);
  return Result;
}

TFormulaArg TFormulaEvaluator::EvalNodeArg(const TAstNode* Node, int32_t SheetIndex) {
  if (!Node) return TFormulaArg::FromScalar({});
  switch (Node->Kind) {
    case ankUnary:
      if (Node->Op == "@")
        return TFormulaArg::FromScalar(ImplicitIntersectArg(EvalNodeArg(Node->Left.get(), SheetIndex)));
      if (Node->Op == "+") return EvalNodeArg(Node->Left.get(), SheetIndex);
      if (Node->Op == "-") return NegateArg(EvalNodeArg(Node->Left.get(), SheetIndex));
      return TFormulaArg::FromScalar(EvalNode(Node, SheetIndex));
    case ankFunc: {
      TFormulaArg Result;
      if (Node->Args.empty() && TryLocalArg(Node->Text, Result)) return Result;
      const std::string Name = CanonicalFunctionName(Node->Text);
      if (TryEvalLambdaForm(Name, Node, SheetIndex, true, Result)) return Result;
      if (Node->Args.size() >= 3 && Name == "OFFSET") return EvalOffsetRef(EvalArgs(Node, SheetIndex), SheetIndex);
      if (const TFunctionDef* Def = FindFunction(Name);
          Def && Def->InvokeArray && Def->AcceptsCount(Node->Args.size())) {
        std::vector<TFormulaArg> Args = EvalArgs(Node, SheetIndex);
        return Def->Run(TFunctionCall{Def->Name, Args, MakeContext(SheetIndex)});
      }
      // Plain functions go straight to the scalar walker: evaluating their
      // arguments once here and again there would only double the work.
      return TFormulaArg::FromScalar(EvalNode(Node, SheetIndex));
    }
    case ankRange: return EvalArg(Node, SheetIndex);
    default: return TFormulaArg::FromScalar(EvalNode(Node, SheetIndex));
  }
}

TFormulaArg TFormulaEvaluator::EvalArg(const TAstNode* Node, int32_t SheetIndex) {
  if (!Node) return TFormulaArg::FromScalar({});
  switch (Node->Kind) {
    case ankCellRef:
    case ankSheetRef: {
      int32_t Target = Node->Kind == ankCellRef ? SheetIndex : ResolveSheetIndex(SheetIndex, Node->SheetName);
      if (Target < 0) return TFormulaArg::FromError(ceRef);
      TFormulaArg Arg = TFormulaArg::FromScalar(GetRawCellValue(Target, RefCol(Node), RefRow(Node)));
      Arg.HasOrigin = true;
      Arg.OriginCol = RefCol(Node);
      Arg.OriginRow = RefRow(Node);
      Arg.OriginSheetIndex = Target;
      return Arg;
    }
    case ankRange: {
      int32_t Target = ResolveSheetIndex(SheetIndex, Node->SheetName);
      if (Target < 0) return TFormulaArg::FromError(ceRef);
      return ReadRange(Target, TCellRange{RefCol(Node), RefRow(Node), RefCol2(Node), RefRow2(Node)}, true);
    }
    case ankTableRef: {
      int32_t Target;
      TCellRange Range;
      if (!ResolveTableColumn(SheetIndex, Node->Text, Node->ColumnName, Target, Range))
        return TFormulaArg::FromError(ceRef);
      TFormulaArg Arg = ReadRange(Target, Range, false);
      Arg.OriginSheetIndex = -1;
      return Arg;
    }
    case ankFunc:
      if (Node->Args.empty()) {
        if (TFormulaArg Local; TryLocalArg(Node->Text, Local)) return Local;
        int32_t Target;
        TCellRange Range;
        if (ResolveTableColumn(SheetIndex, Node->Text, "", Target, Range)) return ReadRange(Target, Range, false);
      }
      return EvalNodeArg(Node, SheetIndex);
    case ankArrayLit: {
      const size_t Count = Node->Args.size();
      int32_t Cols = std::max(1, Node->Col2);
      int32_t Rows = int32_t(Count) / Cols;
      if (Rows < 1) Rows = int32_t(Count);
      std::vector<TCellValue> Cells;
      Cells.reserve(Count);
      for (const auto& Element : Node->Args) Cells.push_back(EvalToScalar(Element.get(), SheetIndex));
      return TFormulaArg::FromRange(std::move(Cells), Rows, Cols);
    }
    case ankUnary:
      if (Node->Op == "@") return TFormulaArg::FromScalar(ImplicitIntersectArg(EvalArg(Node->Left.get(), SheetIndex)));
      if (Node->Op == "+") return EvalArg(Node->Left.get(), SheetIndex);
      if (Node->Op == "-") return NegateArg(EvalArg(Node->Left.get(), SheetIndex));
      return TFormulaArg::FromScalar(EvalNode(Node, SheetIndex));
    case ankBinary:
      if (IsComparison(Node->Op)) return EvalComparisonArg(Node, SheetIndex);
      return TFormulaArg::FromScalar(EvalToScalar(Node, SheetIndex));
    default: return TFormulaArg::FromScalar(EvalToScalar(Node, SheetIndex));
  }
}

TFormulaArg TFormulaEvaluator::EvalComparisonArg(const TAstNode* Node, int32_t SheetIndex) {
  TFormulaArg L = EvalArg(Node->Left.get(), SheetIndex);
  TFormulaArg R = EvalArg(Node->Right.get(), SheetIndex);
  const std::string& Op = Node->Op;
  if (!L.IsRange && !R.IsRange) return TFormulaArg::FromScalar(CompareValues(L.First(), R.First(), Op));
  if (L.IsRange && R.IsRange && (L.RowCount != R.RowCount || L.ColCount != R.ColCount))
    return TFormulaArg::FromError(ceValue);
  const TFormulaArg& Shape = L.IsRange ? L : R;
  std::vector<TCellValue> Cells;
  Cells.reserve(Shape.Cells.size());
  const TCellValue LeftScalar = L.IsRange ? TCellValue() : L.First();
  const TCellValue RightScalar = R.IsRange ? TCellValue() : R.First();
  for (size_t I = 0; I < Shape.Cells.size(); ++I)
    Cells.push_back(CompareValues(L.IsRange ? L.Cells[I] : LeftScalar, R.IsRange ? R.Cells[I] : RightScalar, Op));
  return TFormulaArg::FromRange(std::move(Cells), Shape.RowCount, Shape.ColCount);
}

TFormulaArg TFormulaEvaluator::NegateArg(const TFormulaArg& Arg) {
  auto Negate = [](const TCellValue& V) {
    if (V.Kind == cvkError) return V;
    double N;
    return AsNumber(V, N) ? TCellValue::FromNumber(-N) : TCellValue::FromError(ceValue);
  };
  if (Arg.IsLambda) return TFormulaArg::FromError(ceValue);
  TFormulaArg Result = Arg;
  if (!Arg.IsRange) {
    Result.Scalar = Negate(Arg.Scalar);
    return Result;
  }
  std::vector<TCellValue> Cells;
  Cells.reserve(Arg.Cells.size());
  for (const TCellValue& V : Arg.Cells) Cells.push_back(Negate(V));
  Result.Cells = std::move(Cells);
  return Result;
}

}  // namespace Tabrino
