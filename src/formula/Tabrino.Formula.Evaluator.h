// Evaluates formulas by walking their trees over a workbook it does not own.
// The only writer of cached results. A host creates one on a workbook and
// tells it of changes; the workbook holds no reference back.
#pragma once

#include <absl/container/flat_hash_map.h>
#include <absl/container/flat_hash_set.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Tabrino.Formula.Builtins.h"
#include "Tabrino.Formula.CriteriaIndex.h"
#include "Tabrino.Formula.DependencyGraph.h"
#include "Tabrino.Formula.ExactIndex.h"
#include "Tabrino.Formula.Lambda.h"
#include "Tabrino.Formula.RangeCache.h"
#include "Tabrino.Formula.TreeCache.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {

class TFormulaEvaluator {
 public:
  TWorkbook* FWorkbook;
  absl::flat_hash_set<TSheetCellKey> FVisiting;
  absl::flat_hash_set<std::string> FVisitingNames;
  // The cell whose evaluation started last: the anchor of implicit
  // intersection, ROW(), COLUMN() and bare table columns. Deliberately not
  // restored after a nested evaluation.
  int32_t FEvalCol = 0;
  int32_t FEvalRow = 0;
  // Replaces the system clock for TODAY and NOW when set.
  TClockFunc FClock;
  // How far the relative references of the tree under evaluation move: one
  // tree serves every formula of its shape (see TFormulaTreeCache), so a
  // reference's place is its node's plus this shift unless it is absolute.
  int32_t FShiftCol = 0;
  int32_t FShiftRow = 0;
  int32_t RefCol(const TAstNode* Node) const { return Node->Col + (Node->RefFlags & rfColAbs ? 0 : FShiftCol); }
  int32_t RefRow(const TAstNode* Node) const { return Node->Row + (Node->RefFlags & rfRowAbs ? 0 : FShiftRow); }
  int32_t RefCol2(const TAstNode* Node) const { return Node->Col2 + (Node->RefFlags & rfCol2Abs ? 0 : FShiftCol); }
  int32_t RefRow2(const TAstNode* Node) const { return Node->Row2 + (Node->RefFlags & rfRow2Abs ? 0 : FShiftRow); }

  explicit TFormulaEvaluator(TWorkbook& Workbook) : FWorkbook(&Workbook) {}
  TFormulaEvaluator(const TFormulaEvaluator&) = delete;
  TFormulaEvaluator& operator=(const TFormulaEvaluator&) = delete;

  // The cell's value; for a formula it is evaluated now and its cache read back.
  TCellValue EvaluateCell(int32_t SheetIndex, int32_t Col, int32_t Row);
  // Evaluates formula text in scalar context on a sheet (negative: the active one).
  TCellValue Evaluate(std::string_view FormulaText, int32_t SheetIndex);
  // How every reference reads a cell: a cached formula result however old, or
  // a first evaluation when there is none.
  TCellValue GetRawCellValue(int32_t SheetIndex, int32_t Col, int32_t Row);
  void WriteCache(int32_t SheetIndex, int32_t Col, int32_t Row, const TCellValue& Value);
  void EvaluateFormulaCell(int32_t SheetIndex, int32_t Col, int32_t Row);

  TWorksheet* ResolveSheet(int32_t SheetIndex, std::string_view Name) const;
  int32_t ResolveSheetIndex(int32_t SheetIndex, std::string_view Name) const;
  bool ResolveTableColumn(int32_t SheetIndex, std::string_view TableName, std::string_view ColumnName,
                          int32_t& TableSheetIndex, TCellRange& Range) const;

  // The walkers: scalar context, scalar with ranges intersected, function
  // argument (keeps ranges and origins), and array context (root of a formula).
  TCellValue EvalNode(const TAstNode* Node, int32_t SheetIndex);
  TCellValue EvalToScalar(const TAstNode* Node, int32_t SheetIndex);
  TFormulaArg EvalArg(const TAstNode* Node, int32_t SheetIndex);
  TFormulaArg EvalNodeArg(const TAstNode* Node, int32_t SheetIndex);

  TCellValue ImplicitIntersectRange(const TAstNode* Node, int32_t SheetIndex);
  TCellValue ImplicitIntersectArg(const TFormulaArg& Arg) const;
  TCellValue EvalNamedFormula(std::string_view Name, int32_t SheetIndex);
  TCellValue EvalIndirectRef(std::string_view Text, int32_t SheetIndex);
  TFormulaArg EvalOffsetRef(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalComparisonArg(const TAstNode* Node, int32_t SheetIndex);
  static TFormulaArg NegateArg(const TFormulaArg& Arg);

  // ---- dependencies and recalculation ----
  // Who reads what. Filled by registration; empty after Reset until a rebuild.
  TFormulaDependencyGraph FGraph;

  // The cells and ranges a tree reads, found without evaluating anything.
  // Whole rows and columns are cut to the sheet's used bounds of this moment.
  void CollectDeps(const TAstNode* Node, int32_t SheetIndex, TFormulaDependencies& List) const;
  // Records what the cell's formula reads, or forgets the cell when it holds none.
  void RegisterCellFormula(int32_t SheetIndex, int32_t Col, int32_t Row);
  // After a write to the cell: registers it, then re-evaluates it and its
  // transitive dependents in order; what cannot be ordered gets #CIRC!.
  void NotifyCellChanged(int32_t SheetIndex, int32_t Col, int32_t Row);
  void RebuildAllDependencies();
  // Rebuilds the graph and re-evaluates every formula of the workbook.
  void RecalculateAll();
  // Recalculates the whole workbook (dependencies cross sheets) when Sheet
  // belongs to it; otherwise nothing.
  void RecalculateSheet(const TWorksheet* Sheet);
  // Forgets evaluation state and the graph.
  void Reset();

  // ---- dynamic arrays ----
  // The last step of every evaluation: the result goes into the cell's cache
  // and, when it is an array of more than one value, into the sheet's spill
  // map, unless something stands in the way (#SPILL!). Readers of cells the
  // spill covers, or covered before, are evaluated again.
  void ApplySpill(int32_t SheetIndex, int32_t Col, int32_t Row, const TFormulaArg& Arg);
  // Whether a block anchored at (Col, Row) would cover a value, rich text, an
  // anchor or a child of another spill, or leave the sheet.
  static bool SpillDestinationBlocked(const TWorksheet* Sheet, int32_t Col, int32_t Row, int32_t ColCount,
                                      int32_t RowCount);
  // Re-evaluates what reads the block's cells, in dependency order; what that
  // order leaves out gets #CIRC!. Cells being evaluated are left alone.
  void DirtySpillDependents(int32_t SheetIndex, int32_t Col1, int32_t Row1, int32_t Col2, int32_t Row2);
  bool HoldsFormula(int32_t SheetIndex, int32_t Col, int32_t Row) const;

  // ---- LET and LAMBDA ----
  // One flat table of bindings by upper-cased name, with no scope stack: a
  // binding replaces an outer one of the same name, and ending it removes the
  // name altogether. Each formula cell starts with an empty table.
  absl::flat_hash_map<std::string, TFormulaArg> FLocalNames;
  // Names bound to a LAMBDA parameter the call left out.
  absl::flat_hash_set<std::string> FMissingParams;

  void BindLocalName(std::string_view Name, const TFormulaArg& Arg, bool Missing);
  void UnbindLocalNames(std::span<const std::string> Names);
  bool TryLocalArg(std::string_view Name, TFormulaArg& Arg) const;
  // The First of the binding.
  bool TryLocalName(std::string_view Name, TCellValue& Value) const;
  // An inline LAMBDA as a value; its body is copied once, here.
  TFormulaArg MakeLambdaArg(const TAstNode* Node) const;
  // The lambda an iterator is given: inline, or through a name bound to one.
  TFormulaArg EvalLambdaRef(const TAstNode* Node, int32_t SheetIndex);
  TFormulaArg EvalLet(const TAstNode* Node, int32_t SheetIndex);
  // Binds the parameters (missing ones as omitted), evaluates the body in
  // array context and unbinds them. Extra arguments are ignored.
  TFormulaArg InvokeLambda(const ILambdaClosure* Closure, std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalMap(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalByRow(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalByCol(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalReduce(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalScan(std::span<const TFormulaArg> Args, int32_t SheetIndex);
  TFormulaArg EvalMakeArray(std::span<const TFormulaArg> Args, int32_t SheetIndex);

 private:
  // LET, LAMBDA (array context only), ISOMITTED and the lambda iterators;
  // false for any other name.
  bool TryEvalLambdaForm(const std::string& Name, const TAstNode* Node, int32_t SheetIndex, bool ArrayContext,
                         TFormulaArg& Result);
  TFormulaArg EvalFold(std::span<const TFormulaArg> Args, int32_t SheetIndex, bool KeepSteps);
  // Nesting of lambda calls now running, and whether the limit on it was hit
  // during the outermost call: then every further call fails at once.
  int32_t FLambdaDepth = 0;
  bool FLambdaOverflow = false;

  // Evaluates the cell when it holds a formula; false, with nothing done, otherwise.
  bool EvaluateIfFormula(int32_t SheetIndex, int32_t Col, int32_t Row);
  TFormulaContext MakeContext(int32_t SheetIndex) const;
  TCellValue EvalFunction(const TAstNode* Node, int32_t SheetIndex);
  // A special form's result, or false when Name is none or has too few arguments.
  bool TryEvalSpecialForm(const std::string& Name, const TAstNode* Node, int32_t SheetIndex, TCellValue& Result);
  TCellValue EvalBinary(const TAstNode* Node, int32_t SheetIndex);
  TCellValue EvalUnary(const TAstNode* Node, int32_t SheetIndex);
  std::vector<TFormulaArg> EvalArgs(const TAstNode* Node, int32_t SheetIndex);
  // Cells of a range on a sheet, whole rows and columns cut to the used bounds.
  TFormulaArg ReadRange(int32_t SheetIndex, TCellRange Range, bool ClipToUsed);
  TCellValue ReadRangeCellAtAnchor(int32_t SheetIndex, const TCellRange& Range);

  TFormulaTreeCache FTrees;
  // The tree of a formula cell, kept with the cell after the first lookup.
  TSharedTree TreeOfCell(const TStoredCell& Cell, int32_t Col, int32_t Row);

  // Range reads may be shared within one call into the evaluator; the
  // outermost call starts and ends with an empty cache, so that edits made
  // between calls are always seen.
  class TPassScope {
   public:
    explicit TPassScope(TFormulaEvaluator& Evaluator) : FSelf(Evaluator) {
      if (FSelf.FPassDepth++ == 0) FSelf.ClearPassCaches();
    }
    ~TPassScope() {
      if (--FSelf.FPassDepth == 0) FSelf.ClearPassCaches();
    }
    TPassScope(const TPassScope&) = delete;
    TPassScope& operator=(const TPassScope&) = delete;

   private:
    TFormulaEvaluator& FSelf;
  };
  int32_t FPassDepth = 0;
  TRangeReadCache FRangeCache;
  // Lookup and criteria indexes over immutable cell storage; kept with the range reads.
  mutable TExactIndexCache FExactIndexes;
  mutable TCriteriaIndexCache FCriteriaIndexes;
  void ClearPassCaches() {
    FRangeCache.Clear();
    FExactIndexes.Clear();
    FCriteriaIndexes.Clear();
  }

  // Sets the shift of a shared tree for one evaluation and puts the outer
  // one back, so that nested evaluations of other cells do not disturb it.
  class TShiftScope {
   public:
    TShiftScope(TFormulaEvaluator& Evaluator, const TSharedTree& Shared)
        : FSelf(Evaluator), FOuterCol(Evaluator.FShiftCol), FOuterRow(Evaluator.FShiftRow) {
      FSelf.FShiftCol = Shared.ShiftCol;
      FSelf.FShiftRow = Shared.ShiftRow;
    }
    ~TShiftScope() {
      FSelf.FShiftCol = FOuterCol;
      FSelf.FShiftRow = FOuterRow;
    }
    TShiftScope(const TShiftScope&) = delete;
    TShiftScope& operator=(const TShiftScope&) = delete;

   private:
    TFormulaEvaluator& FSelf;
    int32_t FOuterCol, FOuterRow;
  };
};

}  // namespace Tabrino
