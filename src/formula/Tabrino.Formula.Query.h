// QUERY(data, queryText, [headers]): a small SELECT language run over a range,
// with a table as its result. A self-contained interpreter with its own
// tokenizer and a parser of fixed clause order:
//
//   SELECT * | item, ...        item: column | SUM|AVG|COUNT|MIN|MAX ( column )
//   [WHERE column op literal [AND|OR ...]]   op: = != <> < > <= >=
//   [GROUP BY column, ...]
//   [ORDER BY column [ASC|DESC], ...]
//   [LIMIT n] [OFFSET n]
//   [LABEL column 'text', ...]
//
// A column is "ColN", letters ("B") or a header name; letters win over a
// header of the same text. It reads no cells but its argument and keeps no
// state between calls.
#pragma once

#include <span>

#include "Tabrino.Formula.Builtins.h"

namespace Tabrino {

// Args: the range, the query text and optionally the number of header rows
// (1 when absent). A range on success, headed by the item headings when there
// are header rows. A scalar #VALUE! for a syntax or argument fault; #N/A for
// an empty range, when no row passes the condition, or for an empty window.
TFormulaArg EvalQuery(std::span<const TFormulaArg> Args);

}  // namespace Tabrino
