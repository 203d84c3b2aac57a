// CSV in the shape bench/workloads.py writes and the engines print: comma
// separated, fields in double quotes may hold commas, quotes and line breaks.
import { readFileSync, writeFileSync } from 'node:fs';

const NUMBER = /^[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?$/;

// Rows of strings, exactly as written.
export function parseCsv(text) {
  const rows = [];
  let row = [], field = '', quoted = false, i = 0;
  while (i < text.length) {
    const ch = text[i];
    if (quoted) {
      if (ch === '"') {
        if (text[i + 1] === '"') { field += '"'; i += 2; continue; }
        quoted = false;
      } else {
        field += ch;
      }
      i++;
      continue;
    }
    if (ch === '"') quoted = true;
    else if (ch === ',') { row.push(field); field = ''; }
    else if (ch === '\r' || ch === '\n') {
      row.push(field); rows.push(row); row = []; field = '';
      if (ch === '\r' && text[i + 1] === '\n') i++;
    } else field += ch;
    i++;
  }
  if (field !== '' || row.length) { row.push(field); rows.push(row); }
  return rows;
}

// A sheet as a spreadsheet would read it: numerals become numbers, empty
// fields empty cells, and everything else (formulas included) stays text.
export function readSheet(path) {
  return parseCsv(readFileSync(path, 'utf8')).map((row) =>
    row.map((field) => (field === '' ? null : NUMBER.test(field) ? Number(field) : field)));
}

function csvField(value) {
  if (value === null || value === undefined) return '';
  // Error values come back as objects that carry the error text.
  const text = typeof value === 'object' ? String(value.value) : typeof value === 'boolean'
    ? (value ? 'TRUE' : 'FALSE') : String(value);
  return /[",\r\n]/.test(text) ? `"${text.replace(/"/g, '""')}"` : text;
}

export function writeSheet(path, rows) {
  writeFileSync(path, rows.map((row) => row.map(csvField).join(',')).join('\n') + '\n');
}
