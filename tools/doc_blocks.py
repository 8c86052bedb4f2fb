#!/usr/bin/env python3
"""Compiles and runs the C++ programs of a page and compares what they print with the block behind each:

    tools/doc_blocks.py PAGE --build FOLDER [--with-neighbours | --without-neighbours] [--compiler CXX]

A program is a block of ```cpp that has a main; the next block without a language, before any other program, is what it
prints, and where there is none it prints nothing that is compared. Programs that include a header of another library
(OpenCV, Boost, Eigen, GEOS, CGAL, {fmt}) count as those with neighbours. FOLDER is a build of the libraries.
"""
import argparse
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
NEIGHBOUR = re.compile(r"interop/(opencv|opencv_mask|boost_geometry|eigen|geos|geos_wkb|cgal|fmt)\.h")
LIBRARIES = {"opencv": ["-lopencv_imgcodecs", "-lopencv_imgproc", "-lopencv_core"], "opencv_mask": ["-lopencv_imgproc", "-lopencv_core"], "geos": ["-lgeos_c"],
             "geos_wkb": ["-lgeos_c", "-lgxshape_io"], "cgal": ["-lgmp", "-lmpfr"], "fmt": ["-DFMT_HEADER_ONLY"]}


def programs(text):
    """(line, program, what it prints or None) of every program of a page."""
    found = []
    for block in re.finditer(r"^```(\w*)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        line = text.count("\n", 0, block.start()) + 1
        if block.group(1) == "cpp" and re.search(r"\bmain\(", block.group(2)):
            found.append([line, block.group(2), None])
        elif block.group(1) == "" and found and found[-1][2] is None:
            found[-1][2] = block.group(2)
    return [tuple(one) for one in found]


def run(program, build, compiler, folder):
    """What a program prints.  Raises CalledProcessError with what the compiler said."""
    source, binary = os.path.join(folder, "block.cpp"), os.path.join(folder, "block")
    with open(source, "w", encoding="utf-8") as file:
        file.write(program)
    library = os.path.join(build, "lib")
    used = [option for name in NEIGHBOUR.findall(program) for option in LIBRARIES.get(name, [])]
    subprocess.run([compiler, "-std=c++20", "-ffp-contract=off", "-Wall", "-Wextra", f"-I{ROOT}/base", f"-I{ROOT}",
                    f"-I{ROOT}/include", "-isystem/usr/include/opencv4", "-isystem/usr/include/eigen3", source, "-o", binary,
                    f"-L{library}", f"-Wl,-rpath,{library}", "-lgxshape", "-lvelip", "-lveldispc", "-lvelstd", *used],
                   check=True, capture_output=True, text=True)
    return subprocess.run([binary], check=True, capture_output=True, text=True, cwd=folder).stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("page")
    parser.add_argument("--build", required=True)
    parser.add_argument("--compiler", default=os.environ.get("CXX", "c++"))
    which = parser.add_mutually_exclusive_group()
    which.add_argument("--with-neighbours", action="store_true")
    which.add_argument("--without-neighbours", action="store_true")
    options = parser.parse_args()
    with open(options.page, encoding="utf-8") as file:
        found = programs(file.read())
    if options.with_neighbours or options.without_neighbours:
        found = [one for one in found if bool(NEIGHBOUR.search(one[1])) == options.with_neighbours]
    wrong = 0
    for line, program, expected in found:
        with tempfile.TemporaryDirectory() as folder:
            try:
                printed = run(program, os.path.abspath(options.build), options.compiler, folder)
            except subprocess.CalledProcessError as error:
                print(f"{options.page}:{line}: {error}\n{error.stderr}")
                wrong += 1
                continue
        if expected is not None and printed != expected:
            print(f"{options.page}:{line}: prints\n{printed}instead of\n{expected}")
            wrong += 1
    print(f"{options.page}: {len(found)} programs, {wrong} wrong")
    return 1 if wrong or not found else 0


if __name__ == "__main__":
    sys.exit(main())
