#!/usr/bin/python3
"""Compiles the public headers as careful and as careless users do, and looks at the names that they bring.

    tools/check_headers.py [--include FOLDER] [--quick] [COMPILER...]      (g++ clang++)

  alone       each header by itself under -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror, as C++20 and as
              C++23, with every compiler; those of interop whose library is not installed are named and left out
  beside      all of them after X11/Xlib.h with its macros, and with min and max as macros
  macros      every macro begins with GXSHAPE_, VELSTD_, VELIP_ or VELDISPC_
  names       every name that they put beside those of other libraries, outside any namespace, begins with gx, gf
              or gn, or is an operator (asked of clang; python3-clang)

FOLDER is that of an installation (include/gxshape-0.1); else the headers of the checkout are taken. With --quick each
header is compiled once; JOBS says how many at a time. Findings are printed; the exit status is 1 where there is one. The packages are those of the
purpose `neighbours`.
"""
import argparse
import concurrent.futures
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror"]
STANDARDS = {"C++20": "-std=c++20", "C++23": "-std=c++2b"}
FOLDERS = {"velstd": "base/velstd", "velip": "base/velip", "veldispc": "base/veldispc", "cntr": "cntr",
           "gauge": "gauge", "ch_core": "ch_core", "overlay": "overlay", "io": "io", "cairo": "cairo",
           "gxshape": "include/gxshape", "gxshape/interop": "include/gxshape/interop"}
# Where the headers of others lie that are not on the compilers' own path.
OTHERS = ["/usr/include/opencv4", "/usr/include/eigen3"]
OUR_MACRO = re.compile(r"^(GXSHAPE|VELSTD|VELIP|VELDISPC)_")
OUR_NAME = re.compile(r"^(gx|gf|gn)[A-Z0-9_]|^operator|^$")
# These ask for a library; the file tells whether it is there.
NEEDS = {"opencv": "/usr/include/opencv4/opencv2/core.hpp",
         "opencv_mask": "/usr/include/opencv4/opencv2/core.hpp", "eigen": "/usr/include/eigen3/Eigen/Core",
         "boost_geometry": "/usr/include/boost/geometry.hpp", "geos": "/usr/include/geos_c.h",
         "geos_wkb": "/usr/include/geos_c.h", "cgal": "/usr/include/CGAL/Polygon_2.h",
         "fmt": "/usr/include/fmt/format.h"}


def headers(include):
    """Every public header as it is included, and what is left out with the reason."""
    found, left = [], []
    for name, source in FOLDERS.items():
        folder = os.path.join(include, name) if include else os.path.join(ROOT, source)
        for file in sorted(os.listdir(folder)) if os.path.isdir(folder) else []:
            if not file.endswith(".h"):
                continue
            stem = file[:-2]
            need = NEEDS.get(stem) if name == "gxshape/interop" else None
            if need and not os.path.exists(need):
                left.append((f"{name}/{file}", f"{need} is not installed"))
            else:
                found.append(f"{name}/{file}")
    return found, left


def paths(include):
    ours = [include] if include else [os.path.join(ROOT, f) for f in ("base", ".", "include")]
    # Warnings in the headers of others are theirs.
    return [f"-I{p}" for p in ours] + [f"-isystem{p}" for p in OTHERS if os.path.isdir(p)]


def compiled(command, text):
    """What the compiler says about a text, empty where it says nothing."""
    done = subprocess.run([*command, "-x", "c++", "-"], input=text, capture_output=True, text=True, check=False)
    if done.returncode == 0 and not done.stderr:
        return ""
    lines = [l for l in done.stderr.splitlines() if "error" in l or "warning" in l] or done.stderr.splitlines()
    return lines[0] if lines else f"ended with {done.returncode}"


def has_format(compiler, standard):
    text = "#include <version>\n#ifndef __cpp_lib_format\n#error none\n#endif\n"
    return compiled([compiler, standard, "-fsyntax-only"], text) == ""


def alone(include, compilers, quick):
    found, left = headers(include)
    for header, reason in left:
        print(f"left out: {header}: {reason}")
    tasks = []
    for compiler in compilers[:1] if quick else compilers:
        for name, standard in list(STANDARDS.items())[:1] if quick else STANDARDS.items():
            format_is_there = has_format(compiler, standard)
            for header in found:
                if header.endswith("interop/format.h") and not format_is_there:
                    print(f"left out: {header}: {compiler} has no <format> as {name}")
                    continue
                command = [compiler, standard, "-fsyntax-only", *STRICT, *paths(include)]
                tasks.append((f"{compiler} {name} {header}", command, f"#include <{header}>\n"))
    with concurrent.futures.ThreadPoolExecutor(int(os.environ.get("JOBS") or os.cpu_count() or 1)) as pool:
        for (name, _, _), said in zip(tasks, pool.map(lambda t: compiled(t[1], t[2]), tasks)):
            if said:
                yield f"alone: {name}: {said}"
    print(f"alone: {len(tasks)} compiled")


def all_of(include, with_others):
    found, _ = headers(include)
    return "".join(f"#include <{h}>\n" for h in found
                   if not h.endswith("interop/format.h") and
                   (with_others or os.path.basename(h)[:-2] not in NEEDS or "/interop/" not in h))


def beside(include, compilers):
    # The standard library and the others do not promise to stand such macros, so they come first.
    _, standard_ones = standard_headers(include)
    texts = {"X11/Xlib.h": standard_ones + "#include <X11/Xlib.h>\n#include <X11/Xutil.h>\n" + all_of(include, False),
             "min and max": standard_ones + "#define min(a, b) ((a) < (b) ? (a) : (b))\n"
                            "#define max(a, b) ((a) > (b) ? (a) : (b))\n" + all_of(include, False)}
    for what, text in texts.items():
        for compiler in compilers:
            for name, standard in STANDARDS.items():
                said = compiled([compiler, standard, "-fsyntax-only", *STRICT, *paths(include)], text)
                if said:
                    yield f"beside: {what}: {compiler} {name}: {said}"
    print(f"beside: {len(texts) * len(compilers) * len(STANDARDS)} compiled")


def our_files(include):
    return [os.path.realpath(p) + "/" for p in
            ([include] if include else [os.path.join(ROOT, f) for f in set(FOLDERS.values())])]


def macros(include, compiler):
    """The macros that headers define and leave defined."""
    done = subprocess.run([compiler, "-std=c++20", "-E", "-dD", *paths(include), "-x", "c++", "-"],
                          input=all_of(include, True), capture_output=True, text=True, check=True)
    ours, here, count = our_files(include), False, 0
    for line in done.stdout.splitlines():
        marker = re.match(r'# \d+ "([^"]*)"', line)
        if marker:
            here = os.path.realpath(marker.group(1)).startswith(tuple(ours))
            continue
        defined = re.match(r"#define (\w+)", line)
        if here and defined:
            count += 1
            if not OUR_MACRO.match(defined.group(1)):
                yield f"macros: {defined.group(1)}"
    print(f"macros: {count} looked at")


def standard_headers(include):
    """Every header in angle brackets that ours include and that is not ours nor another library's."""
    names = set()
    for folder in our_files(include):
        for place, _, files in os.walk(folder):
            for file in files:
                if file.endswith(".h"):
                    with open(os.path.join(place, file), encoding="utf-8") as text:
                        names |= set(re.findall(r"^#\s*include <([a-z_]+)>", text.read(), re.MULTILINE))
    names -= {"format"}
    return names, "".join(f"#include <{n}>\n" for n in sorted(names))


def names(include):
    """Every name that one of our headers declares outside any namespace, by clang's own reading."""
    from clang import cindex  # Debian: python3-clang

    path = os.path.join(ROOT, "all_headers.cpp")  # in memory alone
    unit = cindex.Index.create().parse(path, args=["-std=c++20", *paths(include)], options=0,
                                       unsaved_files=[(path, all_of(include, False))])
    errors = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        yield f"names: {errors[0].spelling}"
    ours, looked_at = tuple(our_files(include)), 0
    for cursor in unit.cursor.get_children():
        file = cursor.location.file
        if file is None or not os.path.realpath(file.name).startswith(ours):
            continue
        looked_at += 1
        # A member defined outside its class, or a specialization of std::hash and its like, is a name of that.
        if cursor.semantic_parent.kind == cindex.CursorKind.TRANSLATION_UNIT and not OUR_NAME.match(cursor.spelling):
            yield f"names: {cursor.spelling} ({os.path.relpath(file.name, ROOT)}:{cursor.location.line})"
    if looked_at < 100:
        yield f"names: only {looked_at} were seen"
    print(f"names: {looked_at} looked at")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--include")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("compilers", nargs="*")
    options = parser.parse_args()
    compilers = options.compilers or ["g++", "clang++"]
    findings = []
    for check in (lambda: alone(options.include, compilers, options.quick), lambda: beside(options.include, compilers),
                  lambda: macros(options.include, compilers[0]), lambda: names(options.include)):
        for finding in check():
            print(finding)
            findings.append(finding)
    print(f"{len(findings)} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
