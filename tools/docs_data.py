"""What the documents are made from: the table of functions, the header's comments, and what the tools have measured."""
import csv
import re
from pathlib import Path

root = Path(__file__).resolve().parent.parent
levels = [f"level {level}" for level in range(1, 6)]
contestants = [
    *levels,
    "C library",
    *(f"{library} {set}" for library in ("SLEEF", "libmvec") for set in ("SSE4", "AVX", "AVX2", "AVX-512")),
    "bare AVX",
]
range_contestants = ["level 1", "level 2", "level 5", "level 5 without FMA", "C library"]

functions = {}  # stem -> exported name, shape, family, programs; in the order of the table
for row in re.findall(r"^FUNCTION\((.*)\)$", (root / "frame/functions.inc").read_text(), re.M):
    name, stem, shape, family, programs = row.split(", ")
    functions[stem] = {"name": "nuvs" + name, "shape": shape, "family": family, "programs": programs.split("_")}


def read_csv(path):
    """Its rows; a line that begins with # is a comment, and a file that isn't there has none."""
    if not path.exists():
        return []
    return list(csv.DictReader(line for line in path.read_text().splitlines() if not line.startswith("#")))


version = re.search(r"^project\(Qorvane VERSION ([\d.]+)", (root / "CMakeLists.txt").read_text(), re.M)[1]
header = (root / "frame/include/qorvane.h").read_text()


def paragraphs(comment):
    """A comment's paragraphs, each on one line. A line that ends a sentence with room for the next word ends a
    paragraph, as does an empty one; lines of code, indented further, stay by themselves with their indent."""
    lines = [line.rstrip() for line in comment.strip().splitlines()]
    found, joined = [], False
    for line, before in zip(lines, [""] + lines[:-1]):
        text = line.strip()
        code = line.startswith("     ")
        ended = (
            before.endswith((".", ":"))
            and len(before) + 1 + len(text.split(" ")[0]) <= 97
            and text[:1].isupper()
            or text.startswith("Accuracy:")
        )
        if text and (not joined or code or ended or before.startswith("     ")):
            found.append(line[3:] if code else text)
        elif text:
            found[-1] += " " + text
        joined = bool(text)
    return found


declarations = {}  # exported name -> (paragraphs, arguments), of every function that the header declares
for text, name, arguments in re.findall(r"/\*((?:[^*]|\*(?!/))*)\*/\nQORVANE_API nuvStatus (\w+)\(([^)]*)\);", header):
    declarations[name] = (paragraphs(text), [" ".join(a.split()) for a in arguments.split(",")])
for name, arguments in re.findall(r"^QORVANE_API nuvStatus (\w+)\(([^)]*)\);", header, re.M):
    declarations.setdefault(name, ([], [" ".join(a.split()) for a in arguments.split(",")]))
introduction = paragraphs(re.match(r"/\*(.*?)\*/", header, re.S)[1])
statuses = dict(re.findall(r"(nuvStatus\w+) = -?\d+,? +/\* (.*?) \*/", header))
families = re.findall(
    r"/\* -+ ([^-]+?) -+ \*/|QORVANE_API nuvStatus (\w+)\(", header
)  # (title, "") and ("", name) in their order

first_level = {"sse3": 1, "ssse3": 2, "sse41": 4, "avx": 5}  # of a program
measured_from = {stem: set() for stem in functions}  # stem -> the first levels of the programs that were measured
accuracy = {stem: [] for stem in functions}  # stem -> rows; programs whose figures agree make one
figures = ("range", "largest error", "at", "correctly rounded")
for row in read_csv(root / "docs/data/accuracy.csv"):
    rows = accuracy.get(row["function"], [])
    measured_from.get(row["function"], set()).add(int(row["first level"]))
    if (
        rows
        and all(rows[-1][f] == row[f] for f in figures)
        and int(rows[-1]["last level"]) + 1 == int(row["first level"])
    ):
        rows[-1]["last level"] = row["last level"]
    else:
        rows.append(row)
for rows in accuracy.values():
    for row in rows:
        row["levels"] = "-".join(dict.fromkeys((row["first level"], row["last level"])))

speed = {stem: [] for stem in functions}  # stem -> rows
for row in read_csv(root / "docs/data/speed.csv"):
    if row["function"] in speed:
        row.update({c: f"{float(row[c]):#.3g}".rstrip(".") for c in contestants if row[c]})
        speed[row["function"]].append(row)
machines = list(dict.fromkeys(row["machine"] for rows in speed.values() for row in rows))


def largest_error(stem, level):
    """Of the everyday range, the first; None if it wasn't measured."""
    rows = accuracy[stem]
    return next(
        (
            float(r["largest error"])
            for r in rows
            if r["range"] == rows[0]["range"] and int(r["first level"]) <= level <= int(r["last level"])
        ),
        None,
    )


def time_of(stem, contestant, n, range=""):
    return next((row.get(contestant) or "" for row in speed[stem] if (row["range"], row["n"]) == (range, str(n))), "")


def markdown(head, rows, left=1):
    return (
        "\n".join(
            [
                "| " + " | ".join(head) + " |",
                "|" + "---|" * left + "---:|" * (len(head) - left),
                *("| " + " | ".join(row) + " |" for row in rows),
            ]
        )
        + "\n"
    )
