#!/usr/bin/env python3
"""Writes the table of functions in README.md from docs/accuracy.md and docs/performance.md, as the tools have measured them."""
import re
from pathlib import Path

root = Path(__file__).resolve().parent.parent


def rows(name):
    for line in (root / "docs" / name).read_text().splitlines():
        cells = [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if len(cells) > 2:
            yield cells


def levels(text):
    first, _, last = text.partition("-")
    return range(int(first), int(last or first) + 1)


exports = dict(re.findall(r"^FUNCTION\((\w+), (\w+),", (root / "frame/functions.inc").read_text(), re.M))
names = {stem: "nuvs" + name for name, stem in exports.items()}

error = {}  # (stem, level) -> the largest error of the everyday range
for cells in rows("accuracy.md"):
    stem = cells[0].split()[0]
    if stem in names and cells[1].startswith("everyday"):
        for level in levels(cells[2]):
            error[stem, level] = max(error.get((stem, level), 0.0), float(cells[3]))

time = {}  # (stem, column) -> nanoseconds at n = 1000
columns = []
for cells in rows("performance.md"):
    if cells[0] == "function":
        columns = cells
    elif cells[0] in names and cells[1] == "1000":
        time.update({(cells[0], column): cell for column, cell in zip(columns, cells)})

table = ["| function | error, ulp: level 1 | level 5 | ns: level 1 | level 5 | C library | SLEEF AVX |", "|---|---:|---:|---:|---:|---:|---:|"]
for stem, name in names.items():
    found = [error.get((stem, level)) for level in (1, 5)]
    errors = ["" if e is None else "exact" if e == 0 else f"{e:.3f}" for e in found]  # empty: not measured yet
    times = [time.get((stem, column), "") for column in ("level 1", "level 5", "C library", "SLEEF AVX")]
    table.append("| " + " | ".join([f"`{name}`", *errors, *times]) + " |")

readme = root / "README.md"
text = readme.read_text()
readme.write_text(re.sub(r"(<!-- functions -->\n).*?(<!-- /functions -->)", lambda m: m[1] + "\n".join(table) + "\n" + m[2], text, flags=re.S))
