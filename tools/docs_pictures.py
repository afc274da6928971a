"""The pictures of the documents, as SVG."""
from math import log2
from xml.sax.saxutils import escape

from docs_data import accuracy, functions, levels, machines, time_of

classes = [
    ("within 0.5", "#2c6fad"),
    ("within 0.51", "#6fb1dc"),
    ("within 0.55", "#b4dcef"),
    ("within 0.6", "#f6e3a1"),
    ("within 0.75", "#f2b25c"),
    ("within 1", "#e07b3f"),
    ("more", "#b3261e"),
]
shown = {
    "level 1": ("#9ecae1", "circle"),
    "level 5": ("#08519c", "circle"),
    "SLEEF AVX": ("#fdae6b", "square"),
    "SLEEF AVX-512": ("#d94801", "square"),
    "libmvec AVX2": ("#a1d99b", "diamond"),
    "libmvec AVX-512": ("#238b45", "diamond"),
}


def text(x, y, words, anchor="start", size=11, colour="#222"):
    place = f'x="{x:.0f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" fill="{colour}"'
    return f"<text {place}>{escape(words)}</text>"


def box(x, y, width, height, colour):
    return f'<rect x="{x:.2f}" y="{y:.1f}" width="{width:.2f}" height="{height}" fill="{colour}"/>'


def rule(x, top, bottom, colour="#ccc"):
    return f'<path d="M{x:.1f} {top}V{bottom}" stroke="{colour}"/>'


def mark(x, y, colour, shape):
    if shape == "circle":
        return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4.5" fill="{colour}"/>'
    turn = f' transform="rotate(45 {x:.1f} {y:.1f})"' if shape == "diamond" else ""
    return f'<rect x="{x - 4:.1f}" y="{y - 4:.1f}" width="8" height="8" fill="{colour}"{turn}/>'


def picture(width, height, parts):
    return (
        "\n".join(
            [
                f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}"',
                f' viewBox="0 0 {width} {height}" font-family="sans-serif">',
                f'<rect width="{width}" height="{height}" fill="white"/>',
                *parts,
                "</svg>",
            ]
        )
        + "\n"
    )


def accuracy_picture(stem):
    """A row for each range and program: the largest error found, on the one scale from 0 that all functions have, and
    the shares of results within a class of errors. None if it has no errors, or none were measured."""
    rows = accuracy[stem]
    if not any(float(row["largest error"]) for row in rows):
        return None
    left, middle, scale, share, top, step = 250, 575, 180, 300, 44, 18
    bottom = top + step * len(rows)
    parts = [
        text(left, 16, "largest error found, ulp", size=12),
        text(middle, 16, "share of the results of a sample, %", size=12),
    ]
    for tick in (0, 0.5, 1, 1.5):
        parts += [
            rule(left + scale * tick, top - 4, bottom, "#c04040" if tick == 0.5 else "#ccc"),
            text(left + scale * tick, top - 8, f"{tick:g}", "middle", 10),
        ]
    for tick in (0, 25, 50, 75, 100):
        parts.append(text(middle + share * tick / 100, top - 8, str(tick), "middle", 10))
    for i, row in enumerate(rows):
        y, error, results = top + step * i, float(row["largest error"]), int(row["results"])
        first = i == 0 or rows[i - 1]["range"] != row["range"]
        if first:
            parts.append(text(4, y + 12, row["range"] if len(row["range"]) < 36 else row["range"][:34] + "…"))
        parts.append(text(left - 6, y + 12, row["levels"], "end", 10, "#666"))
        parts.append(box(left, y + 3, scale * min(error, 1.55), 11, "#2c6fad" if error <= 1 else "#b3261e"))
        parts.append(
            text(
                left + scale * min(error, 1.55) + 3, y + 12.5, f"{error:.3f}" if error < 10 else f"{error:.0f}", size=9
            )
        )
        before = 0
        for name, colour in classes:
            count = int(row.get(name) or results)
            parts.append(box(middle + share * before / results, y + 3, share * (count - before) / results, 11, colour))
            before = count
    for i, (name, colour) in enumerate(classes):
        x = left + 88 * i
        parts += [box(x, bottom + 12, 11, 11, colour), text(x + 15, bottom + 22, name, size=10)]
    parts.append(text(left - 6, bottom + 22, "levels", "end", 10, "#666"))
    return picture(middle + share + 20, bottom + 32, parts)


def speed_picture():
    """How many times as fast as the C library's function everyone is, for 1000 elements."""
    rows = [stem for stem in functions if time_of(stem, "C library", 1000) and time_of(stem, levels[4], 1000)]
    left, scale, top, step = 110, 115, 70, 17
    bottom, lowest, highest = top + step * len(rows), -2, 6
    place = lambda ratio: left + scale * (min(max(log2(ratio), lowest), highest) - lowest)
    parts = [
        text(
            left,
            16,
            "times as fast as a loop over the C library's function; 1000 elements, the least of many turns",
            size=13,
        ),
        text(left, 32, "; ".join(machines) + "; SLEEF within 1 ulp, libmvec within 4", size=11, colour="#666"),
    ]
    for i, (name, (colour, shape)) in enumerate(shown.items()):
        parts += [mark(left + 6 + 150 * i, 46, colour, shape), text(left + 15 + 150 * i, 50, name)]
    for power in range(lowest, highest + 1):
        parts += [
            rule(place(2**power), top - 4, bottom, "#888" if power == 0 else "#ddd"),
            text(place(2**power), top - 7, f"{2**power:g}", "middle", 10),
        ]
    for i, stem in enumerate(rows):
        y = top + step * i + step / 2
        parts += [
            text(left - 8, y + 4, stem, "end"),
            f'<path d="M{left} {y}H{left + scale * (highest - lowest)}" stroke="#eee"/>',
        ]
        for name, (colour, shape) in reversed(shown.items()):
            if time := time_of(stem, name, 1000):
                parts.append(mark(place(float(time_of(stem, "C library", 1000)) / float(time)), y, colour, shape))
    return picture(left + scale * (highest - lowest) + 30, bottom + 16, parts)
