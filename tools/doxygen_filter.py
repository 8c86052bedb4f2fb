#!/usr/bin/env python3
"""Prints a page or a header as Doxygen wants it: the filter of tools/make_docs, run at the checkout's root.

    tools/doxygen_filter.py docs/tour.md
    tools/doxygen_filter.py cntr/contour.h

Pages.  Sites that show Markdown give every heading an anchor made of its words, unique within its page.
Doxygen wants anchors written out, unique within all pages, pages named from the root, and pictures by name.

Headers.  A comment here stands above a run of declarations and is that of each; Doxygen takes it for the
first alone. The others get its first sentence. Copying, moving, destroying and the status of an answer,
where they are declared without a comment, get the sentence that there is to say. No line is added, so that
line numbers hold.
"""
import os
import re
import sys

# ---- Pages ---------------------------------------------------------------------------------------

FENCE = re.compile(r"^\s*(```|~~~)")
HEADING = re.compile(r"^(#{1,6}) +(.*?) *#*$")
LINK = re.compile(r"\]\((?!https?:)([^()\s#]*)(?:#([^()\s]+))?\)")


def slug(heading):
    """The anchor that sites make of a heading's words."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-")


def stem(page):
    """What the anchors of a page begin with: its path without the ending, as one word."""
    return re.sub(r"\W", "-", os.path.splitext(os.path.normpath(page))[0])


def turned_link(page, target, anchor):
    """A link of a page for Doxygen; `target` is relative to the page, and empty for the page itself."""
    path = os.path.normpath(os.path.join(os.path.dirname(page), target)) if target else page
    if anchor:
        return f"](#{stem(path)}-{anchor})"
    return f"]({os.path.basename(path) if path.endswith(('.svg', '.png')) else path})"


def turned(page, text):
    """The page with anchors at its headings, the title's apart, and its links turned."""
    lines, fenced, seen, titled = [], False, {}, False
    for line in text.split("\n"):
        if FENCE.match(line):
            fenced = not fenced
        elif not fenced and not line.startswith("    "):
            heading = HEADING.match(line)
            if heading and titled:
                anchor = slug(heading.group(2))
                again = seen[anchor] = seen.get(anchor, -1) + 1
                line = f"{heading.group(0)} {{#{stem(page)}-{anchor}{f'-{again}' if again else ''}}}"
            titled = titled or bool(heading)
            line = LINK.sub(lambda found: turned_link(page, found.group(1), found.group(2)), line)
        lines.append(line)
    return "\n".join(lines)


# ---- Headers -------------------------------------------------------------------------------------

COMMENT = re.compile(r"^\s*///(?!<) ?(.*)$")
TYPE = re.compile(r"^\s*(?:template\b.*>\s*)?(?:class|struct|enum|namespace|union|extern)\b(?!.*[;)]\s*$)")
MEMBER = re.compile(r"^\s+[\w:<>,&* ]+ \w+(?: = [^;]+|\{[^;]*\})?;$")
ACCESS = re.compile(r"^\s*(?:public|protected|private):")
COPIES = [
    (re.compile(r"\b(\w+)(?:<[^>]*>)?&? operator=\(const \1\b"), "Assigns by copying."),
    (re.compile(r"\b(\w+)(?:<[^>]*>)?&? operator=\(\1\b[^)]*&&"), "Assigns by moving."),
    (re.compile(r"^\s*(\w+)\(const \1(?:<[^>]*>)?&[^,)]*\)"), "Copies."),
    (re.compile(r"^\s*(\w+)\(\1(?:<[^>]*>)?&&[^,)]*\)"), "Moves."),
    (re.compile(r"^\s*(?:virtual )?~\w+\(\)"), "Destroys."),
    (re.compile(r"^\s*gxStatus status\b"), "Whether there is an answer, and why not."),
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


def said_of(declaration):
    """What there is to say of a declaration without a comment; None where that is not known."""
    for pattern, sentence in COPIES:
        if pattern.search(declaration):
            return sentence
    return None


def header(text):
    lines = text.split("\n")
    comment, i = None, 0  # the comment of the run that line i belongs to
    while i < len(lines):
        line = lines[i]
        found = COMMENT.match(line)
        if found:
            comment = [found.group(1)]
            while i + 1 < len(lines) and COMMENT.match(lines[i + 1]):
                i += 1
                comment.append(COMMENT.match(lines[i]).group(1))
            i += _declaration(lines, i + 1)
        elif MEMBER.match(line) and (comment or said_of(line)):
            lines[i] = f"/** {first_sentence(comment) if comment else said_of(line)} */ {line}"
        elif "(" in line and not re.match(r"\s*(//|#|}|\w+\(.*\)$)", line) and not TYPE.match(line):
            sentence = first_sentence(comment) if comment else said_of(line)
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
    with open(PATH, encoding="utf-8") as file:
        sys.stdout.write(turned(PATH, file.read()) if PATH.endswith(".md") else header(file.read()))
