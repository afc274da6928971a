"""The manual pages, in mdoc: one for each function, with its twin's name, one for the thread count, and qorvane(3)."""
import re
import sys
import textwrap

from docs_data import declarations, functions, introduction, machines, statuses, time_of, version

date = "November 23, 2026"  # of the version
by_name = {function["name"]: stem for stem, function in functions.items()}
threads = ["nuvGetNumThreads", "nuvSetNumThreads"]
files = {}  # path from the root -> text
escapes = str.maketrans({"\\": "\\e", "±": "\\(+-", "∓": "\\(-+", "π": "\\(*p", "-": "\\-"})


def capital(words):
    return words[0].upper() + words[1:]


def roff(words):
    words = words.translate(escapes)
    if not words.isascii():
        sys.exit(f"a manual page can't have what is in: {words}")
    return words


def sentences(words):
    """Each begins a line, as is the custom in manual pages; lines have at most 79 columns."""
    lines = []
    for sentence in re.split(r"(?<=\w\w\.|\w\)\.) (?=[A-Z]|-\d)", words):
        lines += textwrap.wrap(roff(sentence), 79, break_long_words=False, break_on_hyphens=False)
    # A point or an apostrophe at a line's start would be a request.
    return ["\\&" + line if line[:1] in ".'" else line for line in lines]


def man_text(found):
    """Paragraphs; those of code between displays."""
    lines, code = [], False
    for p in found:
        is_code = p.startswith("  ")
        if is_code != code:
            lines.append(".Bd -literal -offset indent" if is_code else ".Ed")
        if not is_code and lines and not lines[-1].startswith(".Sh"):
            lines.append(".Pp")
        lines += [roff(p[2:])] if is_code else sentences(p)
        code = is_code
    return lines + ([".Ed"] if code else [])


def page(names, brief, body):
    """The page of the first name; those of the others lead to it."""
    lines = ['.\\" Written by tools/docs.py.', f".Dd {date}", f".Dt {names[0].upper()} 3", f".Os Qorvane {version}"]
    lines += [".Sh NAME", *(f".Nm {name} ," for name in names[:-1]), f".Nm {names[-1]}", f".Nd {roff(brief)}", *body]
    files[f"man/man3/{names[0]}.3"] = "\n".join(lines) + "\n"
    for name in names[1:]:
        files[f"man/man3/{name}.3"] = f".so man3/{names[0]}.3\n"


def synopsis(names):
    lines = [".Sh SYNOPSIS", ".In qorvane.h"]
    for name in names:
        lines += [".Ft nuvStatus", f".Fo {name}", *(f'.Fa "{argument}"' for argument in declarations[name][1]), ".Fc"]
    return lines


def tagged(entries):
    return [".Bl -tag -width Ds", *(line for tag, lines in entries for line in (f".It {tag}", *lines)), ".El"]


def status_list(names):
    return tagged((f"Dv {name}", sentences(capital(statuses[name]) + ".")) for name in names)


def summary(name):
    return re.split(r"[.;] |\.$", declarations[name][0][0])[0]


def speed_section(stem):
    times = [(time_of(stem, c, 1000), who) for c, who in (("level 1", "level 1"), ("level 5", "level 5"))]
    if not all(time for time, _ in times):
        return []
    words = "Nanoseconds an element, for 1000 elements: " + ", ".join(f"{time} at {who}" for time, who in times)
    if c_library := time_of(stem, "C library", 1000):
        words += f"; {c_library} in a loop over the C library's function"
    return [".Sh SPEED", *sentences(f"{words} ({'; '.join(machines)}).")]


def function_page(name):
    found = declarations[name][0]
    of_calls = ["nuvStatusBadLength", "nuvStatusNullPointer"]
    of_elements = [s for s in statuses if s not in of_calls and any(s in p for p in found)]
    body = synopsis([name, name + "_Idx"])
    body += [".Sh DESCRIPTION", *man_text([p for p in found if not p.startswith("Accuracy:")]), ".Pp", "The twin"]
    body += [f".Fn {name}_Idx", "takes an offset beside each array, in elements."]
    body += [".Sh RETURN VALUES", ".Dv nuvStatusOk ,", "or one of these:", *status_list(of_calls + of_elements)]
    accuracy = next(p for p in found if p.startswith("Accuracy:")).removeprefix("Accuracy: ")
    body += [
        ".Sh ACCURACY",
        *sentences(capital(accuracy)),
        *speed_section(by_name[name]),
        ".Sh SEE ALSO",
        ".Xr qorvane 3",
    ]
    page([name, name + "_Idx"], summary(name), body)


def manual_pages():
    """Path -> text."""
    for name in by_name:
        function_page(name)
    body = [*synopsis(threads), ".Sh DESCRIPTION", *man_text(declarations[threads[0]][0])]
    page(threads, "the thread count kept for callers", [*body, ".Sh SEE ALSO", ".Xr qorvane 3"])
    body = [".Sh SYNOPSIS", ".In qorvane.h", ".Pp", "cc ... \\-lTarnwell.Qorvane"]
    body += [".Sh DESCRIPTION", *man_text(introduction[1:])]
    body += [".Sh FUNCTIONS", *tagged((f"Xr {name} 3", [roff(summary(name))]) for name in by_name)]
    body += [".Sh RETURN VALUES", *status_list(statuses), ".Sh SEE ALSO", f".Xr {threads[0]} 3"]
    page(["qorvane"], "vector elementary functions in double precision", body)
    return files
