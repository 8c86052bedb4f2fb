#!/usr/bin/env python3
"""Checks that the checkout keeps the plan of the house.

    tools/check_layout.py              every rule below that needs no compiler
    tools/check_layout.py --headers    and that each header of the library compiles alone (CXX, or c++)
    tools/check_layout.py --repair     rewrites the umbrella headers

Findings are printed as file:line: rule: text, and make the exit status 1. Warnings do not.

  include    includes run one way: base/velstd, then base/velip and base/veldispc, then cntr, then
             gauge and ch_core, then overlay, then io, then everything else; the library includes the standard library and itself
             only; headers under internal/ are for their own library and for tests, but SHARED
  inner      the folders under cntr/internal include downward only (INNER below), and none but sets/
             includes the header of a class above them
  map        cntr/README.md names every file of cntr, and no other
  picture    docs/architecture.md shows the folders and arrows of the first two rules
  test       each source file of the library, and each header under internal/, has a test file of
             the same name in the same place under tests/, or a test file elsewhere that names it in a
             line of its own: "// Covers cntr/region_archive.cpp"
  story      each source file of the library opens with a comment
  once       each header says #pragma once
  name       no file or folder has one of the names that say nothing
  word       no tracked text names a document outside this repository, or a path of one machine
  merge      no tracked text has the marks of a merge that was not finished
  length     (a warning) a file of more than 500 lines outside tests, benchmarks and fuzz targets
  umbrella   include/gxshape/gxshape.h includes every public header; a header named as its folder
             (gauge/gauge.h) includes every other one in it
  alone      each header compiles alone; those that hand shapes to other libraries are left to
             tools/check_headers.py, which knows whether these are installed
"""
import argparse
import concurrent.futures
import os
import re
import subprocess
import sys

# The folders of the library in the order in which they may see each other.
LAYERS = {"base/velstd": 0, "base/velip": 1, "base/veldispc": 1, "cntr": 2, "gauge": 3, "ch_core": 3,
          "overlay": 4, "io": 5, "cairo": 5}
INCLUDE_NAMES = {"velstd": "base/velstd", "velip": "base/velip", "veldispc": "base/veldispc",
                 "cntr": "cntr", "gauge": "gauge", "ch_core": "ch_core", "overlay": "overlay", "io": "io", "cairo": "cairo",
                 "gxshape": "include/gxshape"}
LIBRARY_OF = {"base/velstd": "velstd", "base/velip": "velip", "base/veldispc": "veldispc",
              "cntr": "gxshape", "gauge": "gxshape", "ch_core": "gxshape", "overlay": "gxshape", "io": "gxshape_io", "cairo": "gxshape_cairo"}
# Companion libraries: built on request, so the umbrella leaves them out.
COMPANIONS = ("io/", "cairo/")
# Internal headers without a line that is compiled into their own library: the libraries above may use them.
SHARED = ("velstd/internal/four.h",)

# The folders under cntr/internal, and which of their neighbours each may see.
INNER_ROOT = "cntr/internal/"
INNER = {"outline": set(), "sums": {"outline"}, "archive": set(), "memo": set(), "index": {"outline", "memo"},
         "search": {"outline", "index"}, "repair": {"outline", "index", "search"},
         "memory": {"outline", "memo", "index"}, "sets": {"outline", "memo", "index", "memory"}}
CLASS_HEADERS = {"cntr/contour.h", "cntr/region.h", "cntr/regionst.h"}
# The map of these folders is checked against their files.
MAPS = {"cntr/": "cntr/README.md", "gauge/": "gauge/README.md"}
PICTURE = "docs/architecture.md"
PICTURE_BEGINS = "<!-- the folders: written by tools/check_layout.py --repair -->"
PICTURE_ENDS = "<!-- end -->"
UMBRELLA = "include/gxshape/gxshape.h"
MAX_LINES = 500
# The headers that include what another library brings, or a standard library that is not there yet.
INTEROP = "include/gxshape/interop/"
FOR_OTHERS = {"opencv.h", "opencv_mask.h", "boost_geometry.h", "eigen.h", "geos.h", "geos_wkb.h", "cgal.h", "fmt.h", "format.h"}

# Headers that are not of the C++ standard library and may be used all the same: demangling of class
# names; what it takes to write a file so that a failure leaves the old one whole; vector instructions,
# where a plain form stands beside them; the one library that a companion is made of.
SYSTEM_HEADERS = {"cxxabi.h", "fcntl.h", "unistd.h", "sys/stat.h", "sys/types.h", "sys/single_threaded.h", "emmintrin.h", "immintrin.h",
                  "cairo.h", "cairo-pdf.h", "cairo-svg.h"}

# These words are put together from pieces, so that this file is not a finding of its own.
EMPTY_NAMES = {"".join(p) for p in [("ut", "il"), ("ut", "ils"), ("com", "mon"), ("sha", "red"), ("mi", "sc")]}
SP = "sp" + "ec"
FORBIDDEN = [
    (re.compile(r"\b" + SP + r"(s|ification|ifications)?\b", re.IGNORECASE), "names a document outside this repository"),
    (re.compile(r"\bas " + SP + r"ified\b", re.IGNORECASE), "names a document outside this repository"),
    (re.compile(r"\bPar" + r"ts? [0-9]+\.[0-9]"), "names a document outside this repository"),
    (re.compile(r"\bthe Par" + r"ts\b"), "names a document outside this repository"),
    (re.compile(r"/(wo" + r"rk|fa" + r"rm|tmp/br" + r"ief)/|\.lib" + r"rary/|bash_" + r"jobs"), "names a path of one machine"),
    (re.compile(r"/(ro" + r"ot|ho" + r"me/[a-z]+)/"), "names a path of one machine"),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')



COVERS = re.compile(r"^// Covers (\S+)$")


class Finding:
    def __init__(self, path, line, rule, text, warning=False):
        self.path, self.line, self.rule, self.text, self.warning = path, line, rule, text, warning

    def __str__(self):
        kind = "warning: " if self.warning else ""
        return f"{self.path}:{self.line}: {kind}{self.rule}: {self.text}"


class Tree:
    """The files of a checkout: paths relative to its root, and their lines."""

    def __init__(self, root):
        self.root = root
        self.files = sorted(self._listed())

    def _listed(self):
        """Tracked files and new ones that are not ignored; without git, all but build/."""
        listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=self.root,
                                capture_output=True, check=False)
        if listed.returncode == 0:
            names = listed.stdout.decode().split("\0")
            return {n for n in names if n and os.path.isfile(os.path.join(self.root, n))}
        names = set()
        for folder, folders, files in os.walk(self.root):
            folders[:] = [f for f in folders if f not in (".git", "build", "__pycache__")]
            names |= {os.path.relpath(os.path.join(folder, f), self.root) for f in files}
        return names

    def lines(self, path):
        """The lines of a text file; none of a binary one."""
        with open(os.path.join(self.root, path), "rb") as file:
            content = file.read()
        if b"\0" in content[:8192]:
            return []
        return content.decode("utf-8", errors="replace").splitlines()

    def sources(self, *suffixes):
        return [f for f in self.files if f.endswith(suffixes) and layer_folder(f)]

    def public_headers(self):
        return [f for f in self.sources(".h") if "/internal/" not in f and not f.startswith(COMPANIONS)]


def layer_folder(path):
    """The library folder that a file lies in, or None."""
    for folder in LAYERS:
        if path.startswith(folder + "/"):
            return folder
    return None


def check_includes(tree):
    for path in tree.files:
        if not path.endswith((".h", ".cpp")):
            continue
        here = layer_folder(path)
        for number, line in enumerate(tree.lines(path), 1):
            match = INCLUDE.match(line)
            if match:
                text = include_fault(path, here, match.group(1), match.group(2))
                if text:
                    yield Finding(path, number, "include", text)


def include_fault(path, here, bracket, name):
    """What is wrong with one include, or None."""
    target = INCLUDE_NAMES.get(name.split("/")[0]) if "/" in name else None
    if "/internal/" in name and target and name not in SHARED:
        library = LIBRARY_OF.get(target)
        if here and LIBRARY_OF[here] != library:
            return f"<{name}> is internal to {library}"
        if not here and not path.startswith(("tests/", "bench/", "fuzz/")):
            return f"<{name}> is internal to {library}"
    if here is None:
        return None
    if bracket == '"':
        return f'"{name}" is not found from a root folder; write <folder/{os.path.basename(name)}>'
    if target is None:
        if name in SYSTEM_HEADERS or ("." not in name and "/" not in name):
            return None
        return f"<{name}> is not of the standard library"
    if target not in LAYERS:
        return f"<{name}> lies above {here}"
    if target != here and LAYERS[target] >= LAYERS[here]:
        return f"<{name}> lies above or beside {here}"
    return None


def inner_folder(path):
    """The folder under cntr/internal that a file lies in, or None."""
    return path.removeprefix(INNER_ROOT).split("/")[0] if path.startswith(INNER_ROOT) else None


def check_inner(tree):
    for path in tree.sources(".h", ".cpp"):
        here = inner_folder(path)
        if here is None:
            continue
        if here not in INNER:
            yield Finding(path, 1, "inner", "lies in none of the folders under cntr/internal")
            continue
        for number, line in enumerate(tree.lines(path), 1):
            match = INCLUDE.match(line)
            name = match.group(2) if match else ""
            target = inner_folder(name)
            if target and target != here and target not in INNER[here]:
                yield Finding(path, number, "inner", f"<{name}> lies above or beside {here}/")
            if name in CLASS_HEADERS and here != "sets":
                yield Finding(path, number, "inner", f"<{name}> is a class above {here}/")


def check_maps(tree):
    for folder, readme in MAPS.items():
        if readme not in tree.files:
            continue
        rows = "\n".join(line for line in tree.lines(readme) if line.startswith(("|", "## ")))
        named = set(re.findall(r"`([a-z_0-9]+)(?:\.(?:h|cpp))?`", rows))
        stems = {os.path.splitext(os.path.basename(f))[0] for f in tree.sources(".h", ".cpp")
                 if f.startswith(folder)} - {"export"}
        for stem in sorted(stems - named):
            yield Finding(readme, 1, "map", f"`{stem}` is in no row")
        for stem in sorted(named - stems):
            yield Finding(readme, 1, "map", f"`{stem}` is no file of {folder}")


def picture():
    """The folders of the library, lowest first, each with those that it sees directly."""
    lines = ["```"]
    row = "  {:<26}{:<15}{}".format
    lines.append(row("folder", "library", "sees").rstrip())
    for folder, layer in LAYERS.items():
        below = [f for f, l in LAYERS.items() if l == max((x for x in LAYERS.values() if x < layer), default=-1)]
        lines.append(row(folder + "/", LIBRARY_OF[folder], ", ".join(below)).rstrip())
        if INNER_ROOT.startswith(folder + "/"):
            for inner, sees in INNER.items():
                lines.append(row("  internal/" + inner + "/", "", ", ".join(n for n in INNER if n in sees)).rstrip())
    return lines + ["```"]


def picture_of(lines):
    """Where the picture stands among the lines of its page: begin and end, or None."""
    if PICTURE_BEGINS in lines and PICTURE_ENDS in lines:
        return lines.index(PICTURE_BEGINS) + 1, lines.index(PICTURE_ENDS)
    return None


def check_picture(tree):
    if PICTURE not in tree.files:
        return
    lines = tree.lines(PICTURE)
    place = picture_of(lines)
    if place is None:
        yield Finding(PICTURE, 1, "picture", "has no place for the picture of the folders")
    elif lines[place[0]:place[1]] != picture():
        yield Finding(PICTURE, place[0] + 1, "picture", "is not what the folders are; `make format` draws it")


def check_tests(tree):
    files = set(tree.files)
    covered = set()
    for path in files:
        if path.startswith("tests/") and path.endswith("_test.cpp"):
            covered |= {m.group(1) for m in map(COVERS.match, tree.lines(path)) if m}
    for path in sorted(covered - files):
        yield Finding(path, 1, "test", "is covered by a test, and is not there")
    for path in tree.sources(".cpp", ".h"):
        stem = os.path.splitext(path)[0]
        if path.endswith(".h") and ("/internal/" not in path or stem + ".cpp" in files):
            continue
        wanted = [f"tests/{stem}_test.cpp", f"tests/{stem.replace('/internal/', '/')}_test.cpp"]
        if path not in covered and not any(w in files for w in wanted):
            yield Finding(path, 1, "test", f"there is no {wanted[0]}")


def check_stories(tree):
    for path in tree.sources(".cpp"):
        lines = tree.lines(path)
        if not lines or not lines[0].startswith("//"):
            yield Finding(path, 1, "story", "does not open with a comment that tells what the file does")


def check_pragma_once(tree):
    for path in tree.files:
        if path.endswith(".h") and "#pragma once" not in tree.lines(path):
            yield Finding(path, 1, "once", "has no #pragma once")


def check_names(tree):
    for path in tree.files:
        for name in path.split("/"):
            stem = name.split(".")[0].lower()
            if stem in EMPTY_NAMES:
                yield Finding(path, 1, "name", f"'{name}' says nothing about what is inside")


def check_words(tree):
    for path in tree.files:
        for pattern, text in FORBIDDEN:
            if pattern.search("/" + path):
                yield Finding(path, 1, "word", f"the file's name {text}")
        for number, line in enumerate(tree.lines(path), 1):
            for pattern, text in FORBIDDEN:
                match = pattern.search(line)
                if match:
                    yield Finding(path, number, "word", f"'{match.group(0)}' {text}")


def check_merges(tree):
    for path in tree.files:
        for number, line in enumerate(tree.lines(path), 1):
            if line.startswith(("<" * 7 + " ", ">" * 7 + " ")):
                yield Finding(path, number, "merge", "is a mark of a merge that was not finished")


def check_lengths(tree):
    for path in tree.files:
        if path.endswith((".h", ".cpp", ".py")) and not path.startswith(("tests/", "bench/", "fuzz/")):
            length = len(tree.lines(path))
            if length > MAX_LINES:
                yield Finding(path, length, "length", f"{length} lines; is it still one room?", warning=True)


def umbrella_names(tree, folder=None):
    """What the umbrella header, or that of a folder, has to include, lowest layer first."""
    headers = [h for h in tree.public_headers() if os.path.basename(h) != "export.h"]
    if folder:
        headers = [h for h in headers if layer_folder(h) == folder and h != folder_umbrella(folder)]
    headers.sort(key=lambda h: (list(LAYERS).index(layer_folder(h)), h))
    return [h.removeprefix("base/") for h in headers]


def folder_umbrella(folder):
    return f"{folder}/{os.path.basename(folder)}.h"


def umbrellas(tree):
    """The umbrella headers and the folders that they stand for (None: all)."""
    return {UMBRELLA: None} | {folder_umbrella(f): f for f in LAYERS if folder_umbrella(f) in tree.files}


def umbrella_text(tree, folder=None):
    what = f"All of this folder: every public header of {folder}." if folder else \
        "All of gxshape: every public header, lowest layer first."
    text = [f"/// {what}  `make format` keeps the list.", "#pragma once"]
    last = None
    for name in umbrella_names(tree, folder):
        if os.path.dirname(name) != last:
            last = os.path.dirname(name)
            text.append("")
        text.append(f"#include <{name}>")
    return "\n".join(text) + "\n"


def check_umbrella(tree):
    for path, folder in umbrellas(tree).items():
        lines = tree.lines(path) if path in tree.files else []
        included = {m.group(2) for m in map(INCLUDE.match, lines) if m}
        wanted = umbrella_names(tree, folder)
        for name in wanted:
            if name not in included:
                yield Finding(path, 1, "umbrella", f"<{name}> is missing; `make format` adds it")
        for name in sorted(included - set(wanted)):
            yield Finding(path, 1, "umbrella", f"<{name}> is no public header")


def check_alone(tree, compiler):
    headers = tree.sources(".h") + [f for f in tree.files if f.startswith("include/") and f.endswith(".h") and
                                    not (f.startswith(INTEROP) and os.path.basename(f) in FOR_OTHERS)]

    def compile_one(path):
        done = subprocess.run(
            [compiler, "-std=c++20", "-ffp-contract=off", "-Wall", "-Wextra", "-Werror", "-fsyntax-only",
             "-Ibase", "-I.", "-Iinclude", "-x", "c++", "-"],
            input=f"#include <{re.sub('^(base|include)/', '', path)}>\n", cwd=tree.root,
            capture_output=True, text=True, check=False)
        return path, done

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, done in pool.map(compile_one, headers):
            if done.returncode != 0:
                first = next((l for l in done.stderr.splitlines() if "error" in l), done.stderr[:200])
                yield Finding(path, 1, "alone", f"does not compile alone: {first}")


RULES = [check_includes, check_inner, check_maps, check_picture, check_tests, check_stories, check_pragma_once, check_names, check_words,
         check_merges, check_lengths, check_umbrella]


def check(tree):
    return [finding for rule in RULES for finding in rule(tree)]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--headers", action="store_true")
    parser.add_argument("--repair", action="store_true")
    options = parser.parse_args()
    tree = Tree(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    if options.repair:
        for path, folder in umbrellas(tree).items():
            with open(os.path.join(tree.root, path), "w", encoding="utf-8") as file:
                file.write(umbrella_text(tree, folder))
        lines = tree.lines(PICTURE)
        place = picture_of(lines)
        if place is not None:
            with open(os.path.join(tree.root, PICTURE), "w", encoding="utf-8") as file:
                file.write("\n".join(lines[:place[0]] + picture() + lines[place[1]:]) + "\n")
        return 0
    findings = check(tree)
    if options.headers:
        findings += check_alone(tree, os.environ.get("CXX", "c++"))
    for finding in findings:
        print(finding)
    faults = [f for f in findings if not f.warning]
    print(f"layout: {len(tree.files)} files, {len(faults)} findings, {len(findings) - len(faults)} warnings")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
