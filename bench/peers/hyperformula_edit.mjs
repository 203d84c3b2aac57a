// node hyperformula_edit.mjs IN.csv CELL VALUE CHECK_CELL EXPECTED RUNS
// Builds the workbook once, then times RUNS single-cell edits (CELL := VALUE)
// until setCellContents returns with every dependent recalculated. The cell
// goes back to its old value between runs, untimed, so every timed edit is a
// real change. Prints {"median_ms": ..., "runs_ms": [...]} on stdout; exits
// 1 when CHECK_CELL does not hold EXPECTED after the edit.
import { performance } from 'node:perf_hooks';
import { readSheet } from './csv.mjs';
import { buildWorkbook } from './hfbook.mjs';

const [input, cell, value, checkCell, expected, runsText] = process.argv.slice(2);
const runs = Number(runsText);
if (!input || !checkCell || !(runs > 0)) {
  console.error('usage: node hyperformula_edit.mjs IN.csv CELL VALUE CHECK_CELL EXPECTED RUNS');
  process.exit(2);
}

const hf = buildWorkbook(readSheet(input));
const target = hf.simpleCellAddressFromString(cell, 0);
const check = hf.simpleCellAddressFromString(checkCell, 0);
const original = hf.getCellSerialized(target);
const times = [];
for (let i = 0; i < runs; i++) {
  const start = performance.now();
  hf.setCellContents(target, [[Number(value)]]);
  times.push(performance.now() - start);
  const got = hf.getCellValue(check);
  if (Math.abs(got - Number(expected)) > 1e-6 * Math.max(1, Math.abs(Number(expected)))) {
    console.error(`${checkCell} is ${got} after ${cell} := ${value}, expected ${expected}`);
    process.exit(1);
  }
  hf.setCellContents(target, [[original]]);
}
const sorted = [...times].sort((a, b) => a - b);
const middle = sorted.length >> 1;
const median = sorted.length % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
console.log(JSON.stringify({ median_ms: median, runs_ms: times }));
