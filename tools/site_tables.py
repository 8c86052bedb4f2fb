"""The tables of the documentation site that are made from the headers and docs/names.csv, as Markdown."""
import csv
import os
import re

import site_reference

NUMBERED = re.compile(r"class\s+(?:[A-Z_]+_API\s+)?(\w+)(?:\s+final)?\s*:\s*public\s+gx_ConcreteException<\s*\1,\s*([\w:]+),\s*(0x[0-9A-Fa-f]+)>")
THREADS = re.compile(r"(?:^|\n\n)(?:\*\*Threads:\*\*|Threads\.) (.*?)(?=\n\n|$)", re.DOTALL)
LIMITS = ("gxReadLimits", "gxOverlayLimits", "gxBudget")


def rows(head, lines):
    """A Markdown table; what would end a cell is escaped."""
    clean = [[re.sub(r"(?<!\\)\|", r"\\|", re.sub(r"\s+", " ", str(cell)).strip()) for cell in line] for line in lines]
    return "\n".join(["| " + " | ".join(head) + " |", "|" + "---|" * len(head), *("| " + " | ".join(line) + " |" for line in clean)])


def every(entries):
    """All entries, those within classes too."""
    for one in entries:
        yield one
        yield from every(one.members)


def exceptions(text):
    """[(class, number)] of the exceptions with a number that a header declares."""
    return [(found.group(1), int(found.group(3), 16)) for found in NUMBERED.finditer(text)]


def error_table(root, headers):
    """All numbered exceptions, by number."""
    found = []
    for path, entries in headers.items():
        with open(os.path.join(root, path), encoding="utf-8") as file:
            numbers = exceptions(file.read())
        classes = [one for one in every(entries) if one.kind == "class"]
        for name, number in numbers:
            known = [one for one in classes if one.name == name]
            if not known:
                raise ValueError(f"{path}: {name} has a number and no page")
            found.append((number, known[0]))
    if len({number for number, _ in found}) != len(found):
        raise ValueError("two exceptions have the same number")
    return rows(["Number", "Decimal", "Class", "Thrown when"],
                [(f"`0x{number:08X}`", number, f"`{one.full}`", one.brief) for number, one in sorted(found, key=lambda f: f[0])])


def enumeration_table(headers, name, head):
    """The values of an enumeration: number, name, what it means."""
    one = next(one for entries in headers.values() for one in every(entries) if one.full == name)
    lines = []
    for value, text in one.values:
        word, _, number = value.partition(" = ")
        lines.append((number, f"`{word}`", text or "–"))
    return rows(head, lines)


def limit_table(headers):
    """What may be set to stop a call, and the constants that nothing changes."""
    lines = []
    for path, entries in headers.items():
        for one in every(entries):
            inside = one.scope in LIMITS and one.kind == "variable"
            constant = one.kind == "variable" and re.match(r"k[A-Z]", one.name) and one.name != "kNaN" and "constexpr" in one.signature
            if inside or constant:
                value = one.signature.rstrip(";").split(" = ")[-1] if " = " in one.signature else "–"
                lines.append((f"`{one.full}`", f"`{value}`" if value != "–" else value, one.text, path))
    return rows(["Name", "Value", "What it bounds"], [line[:3] for line in lines])


def thread_table(headers):
    """What the comment of each class says of threads."""
    lines = [(f"`{one.full}`", found.group(1)) for entries in headers.values() for one in every(entries)
             if one.kind in ("class", "struct") and (found := THREADS.search(one.text))]
    return rows(["Class", "Threads"], lines)


def measure_tables(root):
    """The measures and the commands of docs/names.csv."""
    with open(os.path.join(root, "docs", "names.csv"), encoding="utf-8", newline="") as file:
        entries = list(csv.DictReader(file))
    measures = rows(["Name", "Unit", "Kind", "Commands", "What it is"],
                    [(f"`{e['name']}`", e["unit"], e["type"], e["commands"], site_reference.escaped(e["sentence"]))
                     for e in entries if e["entry"] == "measure"])
    commands = rows(["Command", "Answers"], [(f"`gxshape {e['name']}`", site_reference.escaped(e["sentence"]))
                                             for e in entries if e["entry"] == "command"])
    return measures, commands


def tables(root, headers):
    """{name: Markdown} of all tables that a page may ask for with <!-- table: name -->."""
    measures, commands = measure_tables(root)
    return {"errors": error_table(root, headers),
            "reader_errors": enumeration_table(headers, "gxReadError::Code", ["Number", "Enumerator", "Word and meaning"]),
            "status": enumeration_table(headers, "gxStatus", ["Number", "Enumerator", "Meaning"]),
            "limits": limit_table(headers), "threads": thread_table(headers), "measures": measures, "commands": commands}
