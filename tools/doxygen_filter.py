#!/usr/bin/env python3
"""Prints a header as Doxygen wants it: the filter of tools/make_docs, run at the checkout's root.

    tools/doxygen_filter.py cntr/contour.h

A comment here stands above a run of declarations and is that of each; Doxygen takes it for the first alone.
The others get its first sentence. Of what is declared without a comment, copying, moving and destroying get the
sentence that there is to say, and what docs/site/members.csv names gets the one in it; what is left is a warning.
Specialisations of other libraries' templates are left out, for Doxygen loses its way in them. No line is added
or taken away, so that line numbers hold.
"""
import csv
import os
import re
import sys

MEMBERS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "docs", "site", "members.csv")

COMMENT = re.compile(r"^\s*///(?!<) ?(.*)$")
TYPE = re.compile(r"^\s*(?:template\b.*>\s*)?(?:class|struct|enum|namespace|union|extern)\b(?!.*[;)]\s*$)")
MEMBER = re.compile(r"^\s+(?:[\w:<>,&*() ]+ \w+(?: = [^;]+|\{[^;]*\})?; ?)+$")
PIECE = re.compile(r"[^;]+;")
USING = re.compile(r"^\s+using \w+ =|^  enum class \w+|^struct (?:[A-Z_]+_API )?\w+ \{$")
# What a declaration declares: of a function, of an alias or type, of data.
NAME = re.compile(r"(?:(operator(?:\(\)|[^\w\s(]+)|\w+)\(|(?:using|enum class|class|struct) (?:[A-Z_]+_API )?(\w+)|(\w+)(?: = [^;]+|\{[^;]*\})?;)")
SEVERAL_BEGIN = re.compile(r"^\s+(?:double|int|std::vector<\w+>) \w+(?: = [^,;]+)?,")
SEVERAL = re.compile(r"^(\s+)(double|int|std::vector<\w+>) (\w+(?: = [^,;]+)?(?:, \w+(?: = [^,;]+)?)+);(\s*///< .*)?$")
FOREIGN = re.compile(r"(?:struct|class|inline constexpr bool|constexpr bool) (?:std|fmt|boost)::|namespace (?:std|fmt|boost)\b")
# A macro, but not a constructor whose initialisers follow.
NO_FUNCTION = re.compile(r"\s*(//|#|}|\w+\(.*\)$(?!\n\s+: ))", re.MULTILINE)
# What Doxygen would take for a tag.
TAG = re.compile(r"(?<![`\w\\])<(?=[a-z][\w/.]*>)")
ACCESS = re.compile(r"^\s*(?:public|protected|private):")
COPIES = [
    (re.compile(r"\b(\w+)(?:<[^>]*>)?&? operator=\(const \1\b"), "Assigns by copying."),
    (re.compile(r"\b(\w+)(?:<[^>]*>)?&? operator=\(\1\b[^)]*&&"), "Assigns by moving."),
    (re.compile(r"^\s*(\w+)\(const \1(?:<[^>]*>)?&[^,)]*\)"), "Copies."),
    (re.compile(r"^\s*(\w+)\(\1(?:<[^>]*>)?&&[^,)]*\)"), "Moves."),
    (re.compile(r"^\s*(?:virtual )?~\w+\(\)"), "Destroys."),
]


def first_sentence(comment):
    """The first sentence of the lines of a comment."""
    text = " ".join(comment)
    found = re.match(r".*?[.:;](?= |$)", text)
    return (found.group(0) if found else text).rstrip(".:;") + "."


def ends(text):
    """Whether the lines of a declaration so far are the whole of it."""
    code = re.sub(r'//.*|"(?:\\.|[^"\\])*"', "", text)
    open_brackets = sum(code.count(b) for b in "({") - sum(code.count(b) for b in ")}")
    return open_brackets <= 0 and code.rstrip().endswith((";", "}"))


def said_of(declaration, said):
    """What there is to say of a declaration without a comment; None where that is not known."""
    for pattern, sentence in COPIES:
        if pattern.search(declaration):
            return sentence
    found = NAME.search(declaration)
    return said.get(found.group(1) or found.group(2) or found.group(3)) if found else None


def members(path, table):
    """What the rows of the table say of the names of a header: its own rows, and those of all headers (*)."""
    rows = [row for row in table if row["header"] in ("*", path)]
    return {row["name"]: row["sentence"] for row in sorted(rows, key=lambda row: row["header"] != "*")}


def without_foreign(lines):
    """The lines with those of foreign namespaces and specialisations emptied."""
    lines = list(lines)
    for i, line in enumerate(lines):
        if not FOREIGN.match(line):
            continue
        first, last = i, i
        while first and re.match(r"(template\b|///)", lines[first - 1]):
            first -= 1
        while last + 1 < len(lines) and not ends("\n".join(lines[i:last + 1])):
            last += 1
        lines[first:last + 1] = [""] * (last + 1 - first)
    return lines


def one_by_one(lines):
    """The lines with every name of `double a = 0.0, b = 0.0;` in a declaration of its own, all in one line."""
    lines = list(lines)
    for i, line in enumerate(lines):
        last = i
        while SEVERAL_BEGIN.match(line) and ";" not in line and last + 1 < len(lines) and last < i + 3:
            last += 1
            line = line.rstrip() + " " + lines[last].strip()
        found = SEVERAL.match(line)
        if found:
            space, kind, names, comment = found.groups()
            lines[i:last + 1] = [space + " ".join(f"{kind} {name.strip()};" if not comment else
                                                  f"/** {comment.strip()[4:].strip()} */ {kind} {name.strip()};"
                                                  for name in names.split(","))] + [""] * (last - i)
    return lines


def without_opening(lines):
    """The lines with the comment of the file an ordinary one, which Doxygen would give to the first class."""
    count = next((i for i, line in enumerate(lines) if not line.startswith("///")), len(lines))
    if lines[count:count + 1] != ["#pragma once"]:
        return lines
    return ["//" + line[3:] for line in lines[:count]] + lines[count:]


def header(text, said=None):
    """The header as Doxygen wants it; `said` has sentences for names without a comment."""
    said = said or {}
    lines = one_by_one(without_foreign(without_opening(text.split("\n"))))
    lines = [TAG.sub(r"\\<", line) if COMMENT.match(line) else line for line in lines]
    comment, i = None, 0  # the comment of the run that line i belongs to
    while i < len(lines):
        line = lines[i]
        found = COMMENT.match(line)
        if found:
            comment = [found.group(1)]
            while i + 1 < len(lines) and COMMENT.match(lines[i + 1]):
                i += 1
                comment.append(COMMENT.match(lines[i]).group(1))
            if i + 1 < len(lines) and MEMBER.match(lines[i + 1]):
                first, *others = PIECE.findall(lines[i + 1])
                lines[i + 1] = " ".join([first] + [f"/** {first_sentence(comment)} */ {one.strip()}" for one in others])
            i += _declaration(lines, i + 1)
        elif "///<" not in line and USING.match(line) and not comment and said_of(line, said):
            lines[i] = f"/** {said_of(line, said)} */ {line}"
        elif MEMBER.match(line) and "/**" not in line:
            lines[i] = "".join(f"/** {first_sentence(comment) if comment else said_of(one, said)} */ {one}"
                                if comment or said_of(one, said) else one for one in PIECE.findall(line))
        elif "(" in line and not NO_FUNCTION.match("\n".join(lines[i:i + 2])) and not TYPE.match(line):
            sentence = first_sentence(comment) if comment else said_of(line, said)
            length = _declaration(lines, i)
            if sentence and length:
                lines[i] = f"/** {sentence} */ {line}"
            i += max(length - 1, 0)
        elif not line.strip() or TYPE.match(line) or ACCESS.match(line):
            comment = None
        i += 1
    return "\n".join(lines)


def _declaration(lines, first):
    """How many lines the declaration that begins at `first` has; 0 where none begins there."""
    if first >= len(lines) or re.match(r"\s*(#|$)", lines[first]) or TYPE.match(lines[first]):
        return 0
    if re.match(r"\s*template\b.*>$", lines[first]) and first + 1 < len(lines) and TYPE.match(lines[first + 1]):
        return 0
    for count in range(1, 80):
        if first + count > len(lines):
            return 0
        if ends("\n".join(lines[first:first + count])):
            return count
    return 0


if __name__ == "__main__":
    PATH = os.path.relpath(sys.argv[1])
    with open(MEMBERS, encoding="utf-8", newline="") as file:
        SAID = members(PATH, list(csv.DictReader(file)))
    with open(PATH, encoding="utf-8") as file:
        sys.stdout.write(header(file.read(), SAID))
