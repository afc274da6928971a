#!/usr/bin/env python3
"""measure.py [OPTION...] [FUNCTION...]: measures the functions (all served ones without one) with qorvane-bench,
several processes each, prints nanoseconds an element, the least of all turns, and the bars of bench/bars.csv.
  --ranges       measures the complex functions over ranges of their arguments instead, against the C library
  --write        renews the functions' rows in docs/data/speed.csv (speed_ranges.csv), and leaves the others
  --build DIR    the build folder (build)
  --processes N  (3; 12 with --ranges, which take 3 minutes)
  --turns N      of each contestant in a process, at least 2 (50)"""
import argparse
import csv
import json
import re
import subprocess
import sys
from pathlib import Path

root = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(root / "tools"))
from docs_data import contestants, functions, range_contestants, read_csv  # noqa: E402

bars = read_csv(root / "bench/bars.csv")


def measured(names, options):
    """The rows of the benchmarks that the names match: the least of all turns of all processes, in the program's
    order."""
    rows = {}
    for _ in range(options.processes):
        command = [
            options.build / "bench/qorvane-bench",
            f"--benchmark_filter={names}",
            f"--benchmark_repetitions={options.turns}",
            "--benchmark_format=json",
        ]
        result = json.loads(
            subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        )
        for entry in sorted(result["benchmarks"], key=lambda entry: entry["family_index"]):
            if entry.get("aggregate_name") != "least":
                continue
            workload, contestant, n = entry["run_name"].removesuffix("/real_time").rsplit("/", 2)
            function, label = re.fullmatch(r"(?:ranges/)?(\w+)(?:\[(.*)\])?", workload).groups(default="")
            row = rows.setdefault(
                (function, label, n),
                {"function": function, "range": label, "n": n, "machine": result["context"]["machine"], "GHz": "0"},
            )
            row["GHz"] = f"{max(float(row['GHz']), float(result['context']['GHz'])):.2f}"
            time = float(entry["real_time"]) / int(n)  # unit: ns
            row[contestant] = f"{min(time, float(row.get(contestant, time))):.3g}"
    return list(rows.values())


def measured_usually(stem, options):
    lengths = {"1", "8", "100", "1000", "100000", *(bar["n"] for bar in bars if bar["function"] == stem)}
    rows = measured(f"^{stem}[/[].*/({'|'.join(lengths)})/", options)
    return sorted(rows, key=lambda row: (row["range"], int(row["n"])))


def write(table, columns, rows):
    """Renews the rows of their functions."""
    kept = [row for row in read_csv(table) if row["function"] not in {r["function"] for r in rows}]
    with table.open("w") as out:
        writer = csv.DictWriter(out, ["function", "range", "n", "machine", "GHz", *columns], lineterminator="\n")
        writer.writeheader()
        writer.writerows(sorted(kept + rows, key=lambda row: list(functions).index(row["function"])))


def shown(rows, columns):
    columns = [c for c in columns if any(row.get(c) for row in rows)]
    lines = [["function, range, n", *columns]]
    for row in rows:
        name = ", ".join(filter(None, (row["function"], row["range"], row["n"])))
        lines.append([name, *(row.get(c, "") for c in columns)])
    name_width = max(len(name) for name, *_ in lines)
    for name, *cells in lines:
        print(" ".join([name.ljust(name_width), *(cell.rjust(max(11, len(c))) for cell, c in zip(cells, columns))]))


def judged(rows):
    time = {
        (row["function"], row["range"], row["n"], c): float(row[c]) for row in rows for c in contestants if row.get(c)
    }
    for bar in bars:
        other_n = bar["other n"] or bar["n"]
        ours = time.get((bar["function"], bar["range"], bar["n"], bar["contestant"]))
        peer = time.get(
            (bar["other function"], "", other_n, bar["peer"])
            if bar["other function"]
            else (bar["function"], bar["range"], other_n, bar["peer"])
        )
        if ours and peer:
            verdict = "met" if ours / peer <= float(bar["at most"]) else "MISSED"
            ours_is = " ".join(filter(None, (bar["function"], bar["range"], bar["contestant"])))
            peer_is = " ".join(filter(None, (bar["other function"], bar["peer"], bar["other n"] and f"n = {other_n}")))
            print(f"{ours_is} / {peer_is}, n = {bar['n']}: {ours / peer:.3f}, at most {bar['at most']}: {verdict}")


parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
parser.add_argument("functions", nargs="*")
parser.add_argument("--ranges", action="store_true")
parser.add_argument("--write", action="store_true")
parser.add_argument("--build", type=Path, default=root / "build")
parser.add_argument("--processes", type=int)
parser.add_argument("--turns", type=int, default=50)
options = parser.parse_args()
if options.processes is None:
    options.processes = 12 if options.ranges else 3
if options.turns < 2 or options.processes < 1:
    parser.error("it takes at least 2 turns and 1 process")
for stem in options.functions:
    if stem not in functions:
        parser.error(f"no function {stem} is served; there are {', '.join(functions)}")
    if options.ranges and not stem.startswith("complex"):
        parser.error(f"no ranges of {stem}: the functions of complex numbers have some")

if options.ranges:
    rows = measured(rf"^ranges/({'|'.join(options.functions or functions)})\[", options)
    if options.write:
        write(root / "docs/data/speed_ranges.csv", range_contestants, rows)
    shown(rows, range_contestants)
else:
    rows = []
    for stem in options.functions or functions:
        rows += measured_usually(stem, options)
        if options.write:
            write(root / "docs/data/speed.csv", contestants, rows)
    shown(rows, contestants)
    judged(rows)
