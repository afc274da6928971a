#!/usr/bin/env python3
"""check_polynomials.py [FILE...]: the errors that comments in the kernels' sources state for their polynomials, as in

    // exp(r) = 1 + r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3), |r| <= ln 2 / 128: error 2^-63.1

are right: the largest of |right / left - 1| over the interval, with the constants of the source as they are, rounded up
to a tenth of a bit. A sum may say "+ ... +", a factor may be left to the reader, and "with z = r^2" may follow."""
import re
import sys
from pathlib import Path

import mpmath

mpmath.mp.prec = 160
root = Path(__file__).resolve().parent.parent
functions = {name: getattr(mpmath, name) for name in (
    "exp", "log10", "sin", "cos", "tan", "asin", "acos", "atan", "sinh", "cosh", "tanh", "asinh", "acosh", "atanh", "erf", "erfc",
    "erfinv", "sqrt", "cbrt")}
functions.update(ln=mpmath.log, log2=lambda x: mpmath.log(x, 2))
statement = re.compile(r"([^,;:]+?) = ([^,;:=]+?)(?: with z = (\w)\^2)?, \|(\w)\| <= ([^:;]+?): error 2\^(-[\d.]+)")
pattern = r"fromBits\(0x([0-9a-f]{16})\)"


def number(bits):
    return mpmath.mpf(__import__("struct").unpack(">d", bytes.fromhex(bits))[0])


def constants(text):
    """The constants of a source by name, at their places: constexpr Float64 NAME = ..., or a comment behind that names one."""
    found = []
    for m in re.finditer(r"constexpr \w+ (\w+) =\s*(?:" + pattern + r"|(\d[\d.]*)|(\w+));", text):
        found.append((m.start(), m[1], number(m[2]) if m[2] else mpmath.mpf(m[3]) if m[3] else m[4]))
    for m in re.finditer(pattern + r"[,;] *// (?:\S+ = )?([A-Za-z]\d?)(?= =|\b:|\n|$)|" + pattern + r"[,;] *// \S+ = ([A-Z]\d?)\b", text):
        found.append((m.start(), m[2] or m[4], number(m[1] or m[3])))
    return sorted(found, key=lambda one: one[0])


def lookup(name, sources):
    """The first constant of that name behind the statement, else in the source, else in the headers it includes."""
    for text, place in sources:
        all_here = [c for c in constants(text) if c[1] == name]
        for at, _, value in [c for c in all_here if c[0] > place] + all_here:
            return lookup(value, sources) if isinstance(value, str) else value
    raise KeyError(name)


def spelled_out(text):
    """b2 + ... + b8 r^6 with its middle terms."""
    def fill(m):
        letter, first, last, variable, power = m[1], int(m[2]), int(m[4]), m[5], int(m[6])
        shift = power - last
        return " + ".join(f"{letter}{i} {variable}^{i + shift}" for i in range(first, last + 1))
    return re.sub(r"([a-z])(\d+)( \w)? \+ \.\.\. \+ [a-z](\d+) (\w)\^(\d+)", fill, text)


def evaluator(text, sources, variables):
    """A function of the variables: juxtaposed factors are multiplied, and sin r is sin(r)."""
    tokens = re.findall(r"[A-Za-z]\w*|\d+\.?\d*|[-+*/^()]", spelled_out(text))
    names, code = {}, ""
    for i, token in enumerate(tokens):
        if i > 0 and re.match(r"[\w(]", token) and re.match(r"[\w)]", tokens[i - 1]) and tokens[i - 1] not in functions:
            code += "*"
        if token in functions:
            code += f"F['{token}']" + ("" if tokens[i + 1] == "(" else "(")
        elif token == "pi":
            code += "mpmath.pi"
        elif re.match(r"[A-Za-z]", token):
            if token not in variables:
                names[token] = lookup(token, sources)
            code += f"V['{token}']"
        else:
            code += "**" if token == "^" else f"mpmath.mpf({token})" if token[0].isdigit() else token
        if i > 0 and tokens[i - 1] in functions and token != "(":
            code += ")"
    compiled = compile(code, text, "eval")
    return lambda values: eval(compiled, {"mpmath": mpmath, "F": functions, "V": {**names, **values}})


def largest_error(left, right, square, variable, bound, sources):
    top = evaluator(bound, sources, ())({})
    names = {variable, square and "z"}
    f, g = evaluator(left, sources, names), evaluator(right, sources, names)
    worst = mpmath.mpf(0)
    for i in range(-600, 601):
        if i == 0:
            continue
        x = top * mpmath.sin(mpmath.pi * i / 1200)  # closer at the ends, where the error is largest
        values = {variable: x, "z": x * x}
        worst = max(worst, abs(g(values) / f(values) - 1))
    return worst


def main(files):
    checked = wrong = 0
    for path in files:
        text = path.read_text()
        included = [root / name for name in re.findall(r'#include "(\w+/\w+\.h)"', text)]
        for block in re.finditer(r"(?:^ *//.*\n)+", text, re.M):
            comment = " ".join(line.strip()[2:].strip() for line in block[0].splitlines())
            for m in statement.finditer(comment):
                sources = [(text, block.start())] + [(h.read_text(), 0) for h in included if h.exists()]
                left = m[1].split(". ")[-1]
                error = mpmath.log(largest_error(left, m[2], m[3], m[4], m[5], sources), 2)
                stated, checked = float(m[6]), checked + 1
                if not stated - 0.1001 <= error <= stated:
                    wrong += 1
                    print(f"{path.relative_to(root)}: {left} = {m[2]}: the error is 2^{mpmath.nstr(error, 5)}, not 2^{m[6]}")
    print(f"{checked} polynomials checked")
    return 1 if wrong or checked == 0 else 0


if __name__ == "__main__":
    given = [Path(name).resolve() for name in sys.argv[1:]]
    sys.exit(main(given or sorted(p for p in root.glob("*/*") if p.suffix in (".h", ".cpp") and p.parent.name != "tests")))
