#!/usr/bin/env python3
"""Puts together what Sphinx makes the documentation site of: `tools/make_docs` runs it at the checkout's root.

    tools/site_pages.py build/docs/xml build/docs/source

Pages keep their text; their links are turned, for a site has all pages side by side and no folders:

    docs/tour.md, docs/site/start-cpp.md  ->  tour.md, start-cpp.md     README.md  ->  readme.md
    cntr/README.md                        ->  room-cntr.md              cntr/contour.h  ->  reference/cntr-contour.md
    docs/img/…                            ->  img/…                     other files  ->  files/…, to be downloaded

The tables of errors, limits, measures and status words are made here from the headers and docs/names.csv, and the
reference from Doxygen's XML (site_reference.py).
"""
import csv
import json
import os
import re
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import site_reference  # noqa: E402
import site_tables  # noqa: E402

FENCE = re.compile(r"^\s*(```|~~~)")
TARGET = r"\((?!https?:|mailto:)([^()\s#]*)(#[^()\s]+)?\)"
IMAGE = re.compile(r"(!)\[([^\[\]]*)\]" + TARGET)
LINK = re.compile(r"((?<!!))\[((?:[^\[\]`]|`[^`]*`|!\[[^\]]*\]\([^)]*\))*)\]" + TARGET)
ROOMS = ("base", "cntr", "gauge", "overlay", "ch_core", "web")


def site_name(path):
    """The page on the site of a page of the checkout, without its ending; None where there is none."""
    folder, name = os.path.split(path)
    stem, ending = os.path.splitext(name)
    if ending == ".md":
        if folder in ("docs", "docs/site"):
            return stem
        if folder == "":
            return stem.lower()
        if folder in ROOMS:
            return f"room-{folder}"
    if ending == ".h" and "/internal" not in folder and name != "export.h":
        return "reference/" + site_reference.page_of(path)
    return None


def turned_link(page, bang, words, target, anchor, root, files):
    """A link of a page, for the site; what it needs of the checkout is added to `files`."""
    path = os.path.normpath(os.path.join(os.path.dirname(page), target)) if target else page
    if not target:
        return f"{bang}[{words}]({anchor or ''})"
    if path.startswith("docs/img/"):
        return f"{bang}[{words}]({path[5:]})"
    if os.path.isdir(os.path.join(root, path)):
        path_of_readme = os.path.join(path, "README.md")
        if site_name(path_of_readme) is None or not os.path.exists(os.path.join(root, path_of_readme)):
            return words
        path = path_of_readme
    if not os.path.exists(os.path.join(root, path)):
        return f"{bang}[{words}]({target}{anchor or ''})"  # which Sphinx will find to lead nowhere
    name = site_name(path)
    if name:
        return f"{bang}[{words}]({name}.md{anchor or ''})"
    files.add(path)
    return f"{bang}[{words}](files/{path})"


def turned(page, text, root, files):
    """The text of a page with its links turned; code stays."""
    lines, fenced = [], False
    for line in text.split("\n"):
        if FENCE.match(line):
            fenced = not fenced
        elif not fenced:
            parts = re.split(r"(``.*?``|(?<!\[)`[^`]*`(?!\]))", line) if "](" not in line else [line]
            for kind in (IMAGE, LINK):  # a picture may be the words of a link
                parts = [kind.sub(lambda found: turned_link(page, *found.groups(), root, files), part) for part in parts]
            line = "".join(parts)
        lines.append(line)
    return "\n".join(lines)


def joined_links(text):
    """The text with links whose words go over the end of a line in one line."""
    return re.sub(r"\[([^\[\]\n]*)\n([^\[\]\n]*)\]\(", r"[\1 \2](", text)


def pages(root):
    """The pages of the checkout that the site shows."""
    listed = ["README.md", "CONTRIBUTING.md", "CHANGES.md"] + [f"{room}/README.md" for room in ROOMS]
    for folder in ("docs", "docs/site"):
        listed += sorted(f"{folder}/{name}" for name in os.listdir(os.path.join(root, folder)) if name.endswith(".md"))
    return [page for page in listed if os.path.exists(os.path.join(root, page))]


def figures(root):
    """{header: [(picture, words)]} of docs/site/figures.csv."""
    found = {}
    with open(os.path.join(root, "docs", "site", "figures.csv"), encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file):
            found.setdefault(row["header"], []).append((row["picture"], row["words"]))
    return found


def page_of_the_library(root):
    """Markdown for the page that runs the library: the page itself where it was made, else its picture."""
    made = os.path.join(root, "build", "web", "page", "index.html")
    if os.path.exists(made):
        return ('<iframe class="page" src="_static/draw/index.html" title="Draw an outline and read its measures" '
                'loading="lazy"></iframe>\n\n<p><a href="_static/draw/index.html">The page by itself, in the whole window</a></p>\n'), made
    return ("![The page: an outline with its measures](img/page_golden.png)\n\n"
            "`make page` makes it, five minutes with Debian's emscripten; with `make docs` after that it stands here.\n"), None


def put(path, text):
    """Writes a file and the folders above it."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def main(xml, out):
    root = os.getcwd()
    shutil.rmtree(out, ignore_errors=True)
    os.makedirs(os.path.join(out, "_static"))
    names, headers = site_reference.write_reference(xml, root, os.path.join(out, "reference"), figures(root))
    names.update({site_reference.include_of(path): ("reference/" + site_reference.page_of(path), "") for path in headers})
    put(os.path.join(out, "names.json"), json.dumps(names))

    files = set()
    tables = {**site_tables.tables(root, headers)}
    tables["page"], made = page_of_the_library(root)
    for page in pages(root):
        with open(os.path.join(root, page), encoding="utf-8") as file:
            text = turned(page, joined_links(file.read()), root, files)
        text = re.sub(r"^<!-- table: (\w+) -->$", lambda found: tables[found.group(1)], text, flags=re.MULTILINE)
        put(os.path.join(out, site_name(page) + ".md"), text)
    shutil.copytree(os.path.join(root, "docs", "img"), os.path.join(out, "img"))
    for path in sorted(files):
        os.makedirs(os.path.dirname(os.path.join(out, "files", path)), exist_ok=True)
        shutil.copy(os.path.join(root, path), os.path.join(out, "files", path))
    for name in ("conf.py", "site.css"):
        shutil.copy(os.path.join(root, "docs", "site", name), os.path.join(out, "_static" if name.endswith("css") else "", name))
    if made:
        os.makedirs(os.path.join(out, "_static", "draw"))
        shutil.copy(made, os.path.join(out, "_static", "draw"))
    version = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True, text=True, check=False).stdout.strip()
    put(os.path.join(out, "version.txt"), version)


if __name__ == "__main__":
    main(*sys.argv[1:3])
