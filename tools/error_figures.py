#!/usr/bin/env python3
"""error_figures.py [--write]: the errors that the header and the kernels' sources state are those of the families'
accuracy.inc, which alone has them as numbers. --write renews the header's sentences; the kernels' are for whoever
measured. Without it, says what differs and fails.

The header's sentence has the largest bound of the ranges within 0.01 of the everyday one, then each other range."""
import re
import sys
from decimal import ROUND_UP, Decimal
from pathlib import Path

root = Path(__file__).resolve().parent.parent
first_level = {"sse3": 1, "ssse3": 2, "sse41": 4, "avx": 5}


def arguments(row):
    """What stands between the commas of a macro's row that are in no parentheses and in no string."""
    return [part.strip() for part in re.findall(r'(?:"[^"]*"|\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\)|[^,"()])+', row)]


def rounded_up(bound, places):
    return bound.quantize(Decimal(1).scaleb(-places), ROUND_UP)


functions = {}  # stem -> its row
for row in re.findall(r"^FUNCTION\((.*)\)$", (root / "frame/functions.inc").read_text(), re.M):
    name, stem, shape, family, programs = arguments(row)
    functions[stem] = {"name": name, "family": family, "programs": programs.split("_"), "ranges": []}
for path in root.glob("*/*accuracy.inc"):
    for row in re.findall(r"^RANGE\((.*)\)$", path.read_text(), re.M):
        stem, name, _, *bounds = arguments(row)
        if stem in functions:
            functions[stem]["ranges"].append((name.strip('"'), [Decimal(b) for b in bounds]))


def figures(programs, bounds):
    """'0.530 (levels 1 to 4), 0.528 (level 5)', or one figure where they agree."""
    groups = [[str(text), first_level[program]] for program, text in zip(programs, (rounded_up(b, 3) for b in bounds))]
    groups = [g for i, g in enumerate(groups) if i == 0 or g[0] != groups[i - 1][0]]
    if len(groups) == 1:
        return groups[0][0]
    lasts = [first - 1 for _, first in groups[1:]] + [5]
    return ", ".join(f"{text} (level {last})" if first == last else f"{text} (levels {first} to {last})"
                     for (text, first), last in zip(groups, lasts))


def sentence(function):
    programs, ranges = function["programs"], function["ranges"]
    if all(b == 0 for _, bounds in ranges for b in bounds):
        return "Accuracy: exact."
    everyday = ranges[0][1]
    near = [r for r in ranges if all(b - e <= Decimal("0.01") for b, e in zip(r[1], everyday))]
    text = "Accuracy: largest error found " + figures(programs, [max(c) for c in zip(*(b for _, b in near))]) + " ulp"
    for name, bounds in ranges:
        if (name, bounds) not in near:
            text += f"; {name}: {figures(programs, bounds)}"
    return text + "."


def wrapped(text, width=100, indent="   "):
    lines, line = [], indent.rstrip("\n")
    for word in text.split():
        if len(line) + 1 + len(word) > width and line.strip():
            lines.append(line)
            line = indent
        line += word if not line.strip() else " " + word
    return "\n".join(lines + [line])


wrong = []
header = root / "frame/include/qorvane.h"
text = header.read_text()
for stem, function in functions.items():
    declaration = text.index(f"QORVANE_API nuvStatus nuvs{function['name']}(")
    start = text.rindex("/*", 0, declaration)
    comment = text[start:declaration]
    stated = re.search(r"   Accuracy: .*?\.(?= \*/|\n   [A-Z])", comment, re.S)
    expected = wrapped(sentence(function))
    if stated is None or stated[0].split() != expected.split():
        wrong.append(f"nuvs{function['name']}: {' '.join(stated[0].split()) if stated else 'nothing'}\n  instead of {sentence(function)}")
        renewed = comment.replace(stated[0], expected) if stated else comment.replace(" */", "\n" + expected + " */")
        text = text[:start] + renewed + text[declaration:]
if "--write" in sys.argv:
    header.write_text(text)

# A figure in the paragraph that begins with "Error:" is some bound of the family, rounded up, of the source's program.
for source in sorted({p for f in functions.values() for p in (root / f["family"]).glob("*.[ch]*")}):
    paragraph = re.search(r"^// Error:.*?(?=^//\n|^[^/]|\Z)", source.read_text(), re.M | re.S)
    program = source.stem.rsplit("_", 1)[-1]
    bounds = [b for f in functions.values() if f["family"] == source.parent.name for _, row in f["ranges"]
              for p, b in zip(f["programs"], row) if program not in first_level or p == program]
    for figure in re.findall(r"\b[01]\.\d{2,4}(?= ulp| found)|(?<=\()[01]\.\d{2,4}\b(?!\d*e)", paragraph[0] if paragraph else ""):
        places = len(figure) - 2
        if Decimal(figure) not in {rounded_up(b, places) for b in bounds}:
            wrong.append(f"{source.relative_to(root)}: {figure} ulp is no bound of its functions")

print("\n".join(wrong))
sys.exit(1 if wrong and "--write" not in sys.argv else 0)
