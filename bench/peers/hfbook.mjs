// One place that turns workload rows into a HyperFormula workbook, so the
// full-calculation and the edit measurements build it the same way.
import { HyperFormula } from 'hyperformula';

// HyperFormula spells the logical constants as functions, TRUE() and FALSE(),
// and reads a bare FALSE as an undefined name. Workbooks written for other
// spreadsheets use the bare words (W2's VLOOKUP does), so they are defined as
// names here rather than rewriting the formulas.
const LOGICAL_CONSTANTS = [
  { name: 'TRUE', expression: '=TRUE()' },
  { name: 'FALSE', expression: '=FALSE()' },
];

// The default sheet limit (40,000 rows) is below the workloads' 100,000.
const CONFIG = { licenseKey: 'gpl-v3', maxRows: 1048576 };

export function buildWorkbook(rows) {
  return HyperFormula.buildFromArray(rows, CONFIG, LOGICAL_CONSTANTS);
}
