#!/usr/bin/env python3
"""Writes the recalculation workloads W1-W4 as CSV for `tabrino calc --formulas`.

    bench/workloads.py OUTDIR [--scale F]

W1  100,000 rows of arithmetic, IF, SUM over a row and ROUND.
W2  10,000 exact VLOOKUPs over a permuted key column.
W3  1,000 SUMIF and COUNTIF formulas over 100,000-row columns.
W4  a chain of 100,000 formulas, each one more than the cell above.

Keys and criteria stand in cells rather than in string literals because CSV
import drops double quotes. --scale shrinks every workload (for tests).
Each file gets a sidecar OUT.expect with a few cells and their values, which
the peer harness uses to check every engine's answers.
"""
import argparse
import os
import random
from decimal import ROUND_HALF_UP, Decimal


def write(path, rows):
    with open(path, "w", newline="") as f:
        for row in rows:
            f.write(",".join(f'"{field}"' if "," in field else field for field in row) + "\r\n")


def write_expect(path, cells):
    with open(path, "w") as f:
        for cell, value in cells:
            f.write(f"{cell}\t{value}\n")


def round_half_away(x, digits):
    q = Decimal(1).scaleb(-digits)
    return float(Decimal(repr(x)).quantize(q, rounding=ROUND_HALF_UP))


def w1(n):
    rows, expect = [], []
    for i in range(1, n + 1):
        rows.append([str(i), f"=A{i}*1.1", f"=IF(B{i}>50000,B{i}-A{i},A{i}-B{i})", f"=SUM(A{i}:C{i})",
                     f"=ROUND(D{i}/3,2)"])
    for i in sorted({1, n // 2, n}):
        b = i * 1.1
        c = b - i if b > 50000 else i - b
        expect.append((f"E{i}", round_half_away((i + b + c) / 3, 2)))
    return rows, expect


def permutation(n, seed=7):
    p = list(range(1, n + 1))
    random.Random(seed).shuffle(p)
    return p


def w2(n):
    p = permutation(n)
    rows = [[f"K{i}", str(i * 3), f"K{p[i - 1]}", f"=VLOOKUP(C{i},$A$1:$B${n},2,FALSE)"] for i in range(1, n + 1)]
    expect = [(f"D{i}", p[i - 1] * 3) for i in sorted({1, n // 2, n})]
    return rows, expect


def w3(n, formulas):
    rows = []
    for i in range(1, n + 1):
        row = [f"C{i % 100}", str(i % 997)]
        if i <= formulas:
            row += [f"=SUMIF($A$1:$A${n},E{i},$B$1:$B${n})", f"=COUNTIF($B$1:$B${n},F{i})", f"C{i % 100}", f">{i}"]
        rows.append(row)
    expect = []
    for i in sorted({1, formulas // 2, formulas}):
        key = f"C{i % 100}"
        expect.append((f"C{i}", sum(j % 997 for j in range(1, n + 1) if f"C{j % 100}" == key)))
        expect.append((f"D{i}", sum(1 for j in range(1, n + 1) if j % 997 > i)))
    return rows, expect


def w4(n):
    rows = [["1"]] + [[f"=A{i - 1}+1"] for i in range(2, n + 1)]
    return rows, [("A1", 1), (f"A{n}", n)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("outdir")
    parser.add_argument("--scale", type=float, default=1.0)
    args = parser.parse_args()
    os.makedirs(args.outdir, exist_ok=True)

    def size(n):
        return max(10, int(n * args.scale))

    workloads = {
        "w1": w1(size(100_000)),
        "w2": w2(size(10_000)),
        "w3": w3(size(100_000), size(1_000)),
        "w4": w4(size(100_000)),
    }
    for name, (rows, expect) in workloads.items():
        write(os.path.join(args.outdir, f"{name}.csv"), rows)
        write_expect(os.path.join(args.outdir, f"{name}.expect"), expect)


if __name__ == "__main__":
    main()
