#!/usr/bin/env python3
"""docs.py [--check]: writes what repeats for every function from the table of functions, the header's comments and
docs/data: docs/reference.md, the tables in README.md, docs/accuracy.md and docs/performance.md, the pictures, and the
manual pages. --check says what isn't as it would write it, and fails."""
import re
import sys
from pathlib import Path

from docs_data import (
    accuracy,
    contestants,
    declarations,
    families,
    first_level,
    functions,
    introduction,
    largest_error,
    machines,
    markdown,
    measured_from,
    root,
    speed,
    statuses,
    time_of,
)
from docs_manual import manual_pages
from docs_pictures import accuracy_picture, speed_picture
from docs_ranges import range_tables

peers = """SLEEF's functions are those within 1 ulp (erfc: 1.5); libmvec is the C library's vector functions,
within 4 ulp as its documentation says."""
by_name = {function["name"]: stem for stem, function in functions.items()}
files = {}  # path from the root -> text


def cell(words):
    return words.replace("|", "\\|")


def between(path, mark, text):
    """Replaces what stands between the marks in a file."""
    whole = files.get(path) or (root / path).read_text()
    begin, end = f"<!-- {mark} -->\n", f"<!-- /{mark} -->"
    if whole.count(begin) != 1 or whole.count(end) != 1:
        sys.exit(f"{path} lacks the marks {begin.strip()} and {end}")
    files[path] = whole[: whole.index(begin) + len(begin)] + text + whole[whole.index(end) :]


def machine_line():
    return f"Times are nanoseconds an element, the least of many turns, on: {'; '.join(machines)}.\n{peers}\n"


def readme_table():
    columns = ["level 1", "level 5", "C library", "SLEEF AVX", "libmvec AVX"]
    rows = []
    for stem, function in functions.items():
        found = [largest_error(stem, level) for level in (1, 5)]
        errors = ["" if e is None else "exact" if e == 0 else f"{e:.3f}" for e in found]
        rows.append(
            [
                f"[`{function['name']}`](docs/reference.md#{function['name'].lower()})",
                *errors,
                *(time_of(stem, c, 1000) for c in columns),
            ]
        )
    return (
        markdown(["function", "error, ulp: level 1", "level 5", "ns: level 1", *columns[1:]], rows)
        + f"\n{machine_line()}"
    )


def share(row, name):
    """Rounded down: no document states more than was found."""
    part = int(int(row[name]) * 10**4 / int(row["results"])) / 100
    return "100" if row[name] == row["results"] else f"{part:.2f}"


def accuracy_table():
    rows = []
    for stem in functions:
        for row in accuracy[stem]:
            at = ", ".join(f"`{number}`" for number in row["at"].split())
            rows.append(
                [
                    f"[{stem}](reference.md#{functions[stem]['name'].lower()})",
                    cell(f"{row['range']}: {row['arguments']}"),
                    row["levels"],
                    row["largest error"],
                    at,
                    share(row, "correctly rounded"),
                ]
            )
    return markdown(["Function", "Range", "Levels", "Largest error, ulp", "At", "Correctly rounded, %"], rows, 3)


def faster_peers():
    """Who takes less time than level 5, and where."""
    lines = []
    for peer in contestants[5:]:
        ratios = []
        for stem in functions:
            ours, theirs = time_of(stem, "level 5", 1000), time_of(stem, peer, 1000)
            if ours and theirs and float(theirs) < float(ours) * 0.98:
                ratios.append(f"{stem} ({float(theirs) / float(ours):.2f})")
        if ratios:
            lines.append(f"- {peer}: {', '.join(ratios)}\n")
    return "".join(lines)


def speed_tables():
    long = [c for c in contestants if c not in ("level 2", "level 3")]
    head = ["function, n = 1000", *long]
    workloads = [(stem, row["range"]) for stem in functions for row in speed[stem] if row["n"] == "1000"]
    named = lambda stem, range: f"[{stem}](reference.md#{functions[stem]['name'].lower()})" + (
        f", {range}" if range else ""
    )
    faster = "\nFaster than level 5 at n = 1000, with their time over that of level 5:\n\n" + faster_peers() + "\n"
    tables = machine_line() + faster
    tables += markdown(head, [[named(s, r), *(time_of(s, c, 1000, r) for c in long)] for s, r in workloads])
    short = [(n, c) for n in (1, 8, 100) for c in ("level 1", "level 5", "C library", "SLEEF AVX")]
    return (
        tables
        + "\n"
        + markdown(
            ["short arrays", *(f"{c}, n = {n}" for n, c in short)],
            [[named(s, r), *(time_of(s, c, n, r) for n, c in short)] for s, r in workloads],
        )
    )


def c_declaration(name):
    return f"nuvStatus {name}({', '.join(declarations[name][1])});"


def reference_entry(name, stem):
    parts = [f"### {name}\n", "```c", c_declaration(name), c_declaration(name + "_Idx"), "```\n"]
    parts += [
        re.sub(r"\b(nuv\w+|dst\w*\[i\]|src\w*\[i\])", r"`\1`", p).replace("*", "\\*") + "\n"
        for p in declarations[name][0]
    ]
    if f"docs/pictures/{stem}.svg" in files:
        parts.append(f"![Errors of {name}, a row for each range and program](pictures/{stem}.svg)\n")
    columns = [c for c in contestants if any(row.get(c) for row in speed[stem])]
    if columns:
        rows = [
            [", ".join(filter(None, (row["range"], row["n"]))), *(row[c] or "" for c in columns)] for row in speed[stem]
        ]
        parts.append(markdown(["n", *columns], rows))
    return "\n".join(parts)


def reference():
    parts = [
        "# Reference\n",
        "<!-- Written by tools/docs.py: the words are those of frame/include/qorvane.h. -->\n",
        "What holds for all functions: arrays, statuses, modes, threads.\n",
    ]
    for p in introduction[1:]:
        parts.append(p if p.startswith("  ") else re.sub(r"^(\w[\w -]*)\. ", r"**\1.** ", p))
    text = "\n".join(parts)
    text = re.sub(r"((?:^  .*\n)+)", r"\n```\n\1```\n\n", text, flags=re.M)
    text = re.sub(r"(?<=[.:])\n(?=[A-Z*])", "\n\n", text)
    text += "\n\n| status | value of an element or a call |\n|---|---|\n" + "".join(
        f"| `{name}` | {meaning} |\n" for name, meaning in statuses.items()
    )
    text += f"\n{machine_line()}"
    for title, name in families:
        if title:
            text += f"\n## {title}\n"
        elif name in by_name:
            text += "\n" + reference_entry(name, by_name[name])
    return text


for stem in functions:
    if drawn := accuracy_picture(stem):
        files[f"docs/pictures/{stem}.svg"] = drawn
files["docs/pictures/speed.svg"] = speed_picture()
files["docs/reference.md"] = reference()
between("README.md", "functions", readme_table())
between("docs/accuracy.md", "measured", accuracy_table())
between("docs/performance.md", "measured", speed_tables())
between("docs/performance.md", "measured by arguments", range_tables())
files.update(manual_pages())

written = {str(p.relative_to(root)) for folder in ("docs/pictures", "man/man3") for p in (root / folder).glob("*")}
stale = sorted(written - set(files))
differing = [path for path, text in files.items() if not (root / path).exists() or (root / path).read_text() != text]
if "--check" in sys.argv:
    print(*(f"{path} isn't what tools/docs.py writes" for path in stale + differing), sep="\n")
    sys.exit(1 if stale or differing else 0)
for stem, function in functions.items():
    if not speed[stem] or measured_from[stem] != {first_level[program] for program in function["programs"]}:
        print(f"{stem}: measure it anew with qorvane-accuracy --write and bench/measure.py --write", file=sys.stderr)
for path in stale:
    (root / path).unlink()
for path in differing:
    (root / path).parent.mkdir(parents=True, exist_ok=True)
    (root / path).write_text(files[path])
