// Which formulas to wake, and in which order, when the values of a spilled
// block appear, change or go.
//
// The rule is stated over every cell of the block: each cell key, unless
// already listed, followed by its transitive dependents (repeats included),
// all ordered by TFormulaDependencyGraph::TopologicalOrder. A formula met
// through two or more cells of the block is listed that many times, its
// in-degree counts every repeat, and it ends among the circular entries
// though it may sit in no cycle. That property is settled and kept.
//
// Listing a million cells to learn this would cost seconds for one spill,
// so the outcome is computed from the formulas that read the block instead:
// in that ordering every entry leaves the queue at most once, so an entry
// listed twice can never reach in-degree 0, and one listed once is released
// exactly when the distinct keys it reads among the listed ones have left.
// The test suite holds this against a literal run of the rule.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Tabrino.Formula.DependencyGraph.h"

namespace Tabrino {

// Block: the spilled cells on Sheet. BlockFormulas: the formula cells inside
// the block, in row order. Order receives, in evaluation order, every formula
// the rule orders: the block's own formulas that read nothing woken, then the
// released readers. Circular receives each formula the rule leaves unordered,
// once, in order of discovery.
void OrderSpillDependents(const TFormulaDependencyGraph& Graph, int32_t Sheet, const TCellRange& Block,
                          std::span<const TSheetCellKey> BlockFormulas, std::vector<TSheetCellKey>& Circular,
                          std::vector<TSheetCellKey>& Order);

}  // namespace Tabrino
