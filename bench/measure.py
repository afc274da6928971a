#!/usr/bin/env python3
"""measure.py [OPTION...] [FUNCTION...]: measures the functions (all served ones without one) with qorvane-bench,
several processes each, prints nanoseconds an element, the least of all turns, and the bars of bench/bars.csv.
  --write        renews the functions' rows in docs/data/speed.csv, and leaves the others
  --build DIR    the build folder (build)
  --processes N  (3)
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
from docs_data import contestants, functions, read_csv  # noqa: E402

table = root / "docs/data/speed.csv"
bars = read_csv(root / "bench/bars.csv")
head = ["function", "range", "n", "machine", "GHz", *contestants]


def measured(stem, options):
    """(range, n) -> the row: the least of all turns of all processes."""
    lengths = {"1", "8", "100", "1000", "100000", *(bar["n"] for bar in bars if bar["function"] == stem)}
    rows = {}
    for _ in range(options.processes):
        command = [
            options.build / "bench/qorvane-bench",
            f"--benchmark_filter=^{stem}[/[].*/({'|'.join(lengths)})/",
            f"--benchmark_repetitions={options.turns}",
            "--benchmark_format=json",
        ]
        result = json.loads(
            subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        )
        for entry in result["benchmarks"]:
            if entry.get("aggregate_name") != "least":
                continue
            workload, contestant, n = entry["run_name"].removesuffix("/real_time").rsplit("/", 2)
            key = (re.sub(r".*\[(.*)\]|.*", r"\1", workload), int(n))
            row = rows.setdefault(
                key, {"function": stem, "range": key[0], "n": n, "machine": result["context"]["machine"], "GHz": "0"}
            )
            row["GHz"] = f"{max(float(row['GHz']), float(result['context']['GHz'])):.2f}"
            time = float(entry["real_time"]) / int(n)  # unit: ns
            row[contestant] = f"{min(time, float(row.get(contestant, time))):.3g}"
    return [rows[key] for key in sorted(rows)]


def shown(rows):
    columns = [c for c in contestants if any(row.get(c) for row in rows)]
    print(" ".join(["function, range, n".ljust(34), *(c.rjust(15) for c in columns)]))
    for row in rows:
        print(
            " ".join(
                [
                    ", ".join(filter(None, (row["function"], row["range"], row["n"]))).ljust(34),
                    *(row.get(c, "").rjust(15) for c in columns),
                ]
            )
        )


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
parser.add_argument("--write", action="store_true")
parser.add_argument("--build", type=Path, default=root / "build")
parser.add_argument("--processes", type=int, default=3)
parser.add_argument("--turns", type=int, default=50)
options = parser.parse_args()
if options.turns < 2 or options.processes < 1:
    parser.error("it takes at least 2 turns and 1 process")
for stem in options.functions:
    if stem not in functions:
        parser.error(f"no function {stem} is served; there are {', '.join(functions)}")

rows = []
for stem in options.functions or functions:
    rows += measured(stem, options)
    if options.write:
        kept = [row for row in read_csv(table) if row["function"] not in {r["function"] for r in rows}]
        with table.open("w") as out:
            writer = csv.DictWriter(out, head, lineterminator="\n")
            writer.writeheader()
            writer.writerows(
                sorted(
                    kept + rows, key=lambda row: (list(functions).index(row["function"]), row["range"], int(row["n"]))
                )
            )
shown(rows)
judged(rows)
