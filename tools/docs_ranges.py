"""The tables of the complex functions by their arguments, from docs/data/speed_ranges.csv."""
from docs_data import first_level, functions, markdown, range_contestants, read_csv, root

everyday = "parts within 20"
table = root / "docs/data/speed_ranges.csv"
short = {stem: function["name"][len("nuvs") :].split("_")[0] for stem, function in functions.items()}
before_last = {stem: first_level.get(function["programs"][-2:][0]) for stem, function in functions.items()}
ratios = {}  # stem -> range -> n -> time over that of the C library, by contestant
for row in read_csv(table):
    if row["function"] in functions:
        times = {c: float(row[c]) / float(row["C library"]) for c in range_contestants if row[c]}
        ratios.setdefault(row["function"], {}).setdefault(row["range"], {})[int(row["n"])] = times


def both(stem, range, n):
    """Level 5's and that of the levels before it."""
    times = ratios[stem][range][n]
    return times["level 5"], times[f"level {before_last[stem]}"]


def cell(stem, range, n=1000):
    return " / ".join(f"{ratio:.2f}" for ratio in both(stem, range, n))


def range_tables():
    groups = {}  # ranges -> the functions that have just these
    for stem in functions:
        if stem in ratios:
            groups.setdefault(tuple(ratios[stem]), []).append(stem)
    text = f"Measured on {'; '.join(dict.fromkeys(row['machine'] for row in read_csv(table)))}:\n\n"
    for ranges, stems in groups.items():
        levels = [f" (levels {before_last[stem]} to 4)" if before_last[stem] > 1 else "" for stem in stems]
        head = ["arguments", *(short[stem] + level for stem, level in zip(stems, levels))]
        text += markdown(head, [[range, *(cell(stem, range) for stem in stems)] for range in ranges]) + "\n"

    text += "Slower than the C library with n = 4, though not with n = 1000:\n\n"
    for ranges, stems in groups.items():
        for range in ranges:
            slow = [s for s in stems if max(both(s, range, 4)) > 1 > max(both(s, range, 1000))]
            if slow:
                text += f"- {range}: {', '.join(f'{short[s]} {cell(s, range, 4)}' for s in slow)}\n"

    rows = []
    for stem in ratios:
        without = ratios[stem][everyday][1000].get("level 5 without FMA")
        rows.append(
            [short[stem], cell(stem, everyday, 1), cell(stem, everyday, 4), f"{without:.2f}" if without else ""]
        )
    head = [everyday, "n = 1", "n = 4", "level 5 without fused multiply-adds, n = 1000"]
    return text + "\n" + markdown(head, rows)
