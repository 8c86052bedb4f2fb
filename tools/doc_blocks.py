#!/usr/bin/env python3
"""Compiles or runs the code blocks of pages and compares what they print with what the pages say:

    tools/doc_blocks.py PAGE... --build FOLDER [--only programs] [--with-neighbours | --without-neighbours] [--compiler CXX]

  ```cpp with a main   is compiled and run; the next block without a language is what it prints, if there is one before
                       the next block of code
  ```cpp without one   is compiled, as the inside of a function or, where it begins with #include, class or template, as it is;
                       a comment <!-- before: CODE --> above it, which no reader sees, has what it takes for granted
                       where a block without a language follows, it is run too
  ```js                is run in Node with the package that `make page` has made; without that it is said to be left out
  ```python            is run with the package of FOLDER/python, and compared alike
  lines with "$ "      are commands of a shell, run in turn in a folder with the examples, compared alike
  commands alone       (a block whose lines begin with gxshape or printf … | gxshape) are run, and have to end with 0

What is none of these is text; so is a block below <!-- text: REASON -->, where a block of code is not to be run, and the reason
is counted and printed. Programs that include a header of another library (OpenCV, Boost, Eigen, GEOS, CGAL, {fmt}) count as
those with neighbours. FOLDER is a build of the libraries, the tool and the Python package; --only programs takes C++ programs alone.
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
NEIGHBOUR = re.compile(r"interop/(opencv|opencv_mask|boost_geometry|eigen|geos|geos_wkb|cgal|fmt)\.h")
LIBRARIES = {"opencv": ["-lopencv_imgcodecs", "-lopencv_imgproc", "-lopencv_core"], "opencv_mask": ["-lopencv_imgproc", "-lopencv_core"],
             "geos": ["-lgeos_c"], "geos_wkb": ["-lgeos_c", "-lgxshape_io"], "cgal": ["-lgmp", "-lmpfr"], "fmt": ["-DFMT_HEADER_ONLY"]}
BLOCK = re.compile(r"(?:^ *<!-- (before|text): ?((?:(?!-->).)*) -->\n+)?^( *)```(\w*)\n(.*?)^ *```$", re.MULTILINE | re.DOTALL)
COMMAND = re.compile(r"(?:gxshape|printf|for \w+ in)\b")


@dataclass
class Block:
    """A block of a page, and what is to be done with it."""
    line: int
    kind: str            # program, fragment, python, js, session, commands, text
    text: str
    before: str = ""     # of a fragment
    reason: str = ""     # of text that looks like code
    printed: str = None  # what a program prints


def kind_of(language, text):
    """What a block is by its language and its first line."""
    if language == "cpp":
        return "program" if re.search(r"\bmain\(", text) else "fragment"
    if language in ("python", "js"):
        return language
    if language in ("", "console") and text.startswith("$ "):
        return "session"
    if language == "" and COMMAND.match(text):
        return "commands"
    return "other" if language else "text"


def blocks(text):
    """The blocks of a page.  Raises ValueError where one is of a language that is not run and has no reason."""
    found, last = [], None
    for match in BLOCK.finditer(text):
        mark, said, indent, language, body = match.groups()
        body = re.sub(rf"^{indent}", "", body, flags=re.MULTILINE)
        line = text.count("\n", 0, match.start(4)) + 1
        kind = kind_of(language, body)
        if mark == "text":
            found.append(Block(line, "text", body, reason=said))
            last = None
            continue
        if kind == "other":
            raise ValueError(f"line {line}: a block of {language} is neither run nor marked <!-- text: REASON -->")
        if kind == "text" and last is not None:
            last.printed, last = body, None
            continue
        found.append(Block(line, kind, body, before=said if mark == "before" else ""))
        last = found[-1] if kind in ("program", "fragment", "python", "js") else None
    return found


def programs(text):
    """(line, program, what it prints or None) of every program of a page."""
    return [(one.line, one.text, one.printed) for one in blocks(text) if one.kind == "program"]


def steps(text):
    """[(command, what it prints)] of a session."""
    found = []
    for line in text.splitlines(keepends=True):
        if line.startswith("$ "):
            found.append([line[2:].rstrip("\n"), ""])
        else:
            found[-1][1] += line
    return found


def compiler_call(compiler, program, source, build):
    """The compiler's command, without what to make."""
    library = os.path.join(build, "lib")
    used = [option for name in NEIGHBOUR.findall(program) for option in LIBRARIES.get(name, [])]
    used += ["-lgxshape_io"] if re.search(r"<io/", program) else []
    used += ["-lgxshape_cairo"] if re.search(r"<cairo/", program) else []
    used += ["-lpolyclipping"] if "polyclipping/" in program else []
    return [compiler, "-std=c++20", "-ffp-contract=off", "-Wall", "-Wextra", f"-I{ROOT}/base", f"-I{ROOT}", f"-I{ROOT}/include",
            "-isystem/usr/include/opencv4", "-isystem/usr/include/eigen3", source], [
                f"-L{library}", f"-Wl,-rpath,{library}", *dict.fromkeys(used), "-lgxshape", "-lvelip", "-lveldispc", "-lvelstd"]


def run(program, build, compiler, folder):
    """What a program prints.  Raises CalledProcessError with what the compiler said."""
    source, binary = os.path.join(folder, "block.cpp"), os.path.join(folder, "block")
    with open(source, "w", encoding="utf-8") as file:
        file.write(program)
    front, libraries = compiler_call(compiler, program, source, build)
    subprocess.run([*front, "-o", binary, *libraries], check=True, capture_output=True, text=True)
    return subprocess.run([binary], check=True, capture_output=True, text=True, cwd=folder).stdout


def whole(fragment, before):
    """A file that holds a fragment: what is included stands in front, a class at file level, statements in a function."""
    headers = "\n".join(re.findall(r"#include [<\"][^>\"]+[>\"]", before + fragment))
    before, fragment = (re.sub(r"#include [<\"][^>\"]+[>\"]\s*", "", part) for part in (before, fragment))
    front = f"#include <gxshape/gxshape.h>\n#include <cstdio>\n#include <iostream>\n{headers}\n"
    if re.match(r"(class|template|struct|namespace|enum)\b", fragment.lstrip()):
        return f"{front}{before}\n{fragment}"
    return f"{front}int main() {{\n{before}\n{fragment}\n}}\n"


def look(block, build, compiler, folder):
    """Compiles a fragment, without warnings but those of what it does not use."""
    source = os.path.join(folder, "block.cpp")
    with open(source, "w", encoding="utf-8") as file:
        file.write(whole(block.text, block.before))
    front, _ = compiler_call(compiler, block.text, source, build)
    subprocess.run([*front, "-fsyntax-only", "-Wno-unused"], check=True, capture_output=True, text=True)


def environment(build):
    """Where the tool and the Python package are."""
    return {**os.environ, "PATH": os.path.join(build, "bin") + os.pathsep + os.environ["PATH"],
            "PYTHONPATH": os.path.join(build, "python"), "LC_ALL": "C.UTF-8"}


def run_python(text, build, folder):
    """What a script prints."""
    return subprocess.run(["/usr/bin/python3", "-W", "ignore", "-c", text], check=True, capture_output=True, text=True, cwd=folder,
                          env=environment(build)).stdout


def run_node(text, folder):
    """What a module prints."""
    os.makedirs(os.path.join(folder, "node_modules"), exist_ok=True)
    if not os.path.exists(os.path.join(folder, "node_modules", "gxshape")):
        os.symlink(os.path.join(ROOT, "build", "web", "npm"), os.path.join(folder, "node_modules", "gxshape"))
    with open(os.path.join(folder, "block.mjs"), "w", encoding="utf-8") as file:
        file.write(text)
    return subprocess.run(["node", "block.mjs"], check=True, capture_output=True, text=True, cwd=folder).stdout


def run_shell(command, build, folder):
    """What a command prints; its messages come too, as on a terminal."""
    done = subprocess.run(["bash", "-o", "pipefail", "-c", command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          cwd=folder, env=environment(build), check=False)
    return done.stdout, done.returncode


def said_wrong(block, options, folder):
    """What is wrong with a block; None where nothing is."""
    build = os.path.abspath(options.build)
    if block.kind == "fragment" and block.printed is not None:
        block = Block(block.line, "program", whole(block.text, block.before), printed=block.printed)
    if block.kind == "fragment":
        look(block, build, options.compiler, folder)
        return None
    if block.kind in ("program", "python", "js"):
        printed = (run(block.text, build, options.compiler, folder) if block.kind == "program" else
                   run_python(block.text, build, folder) if block.kind == "python" else run_node(block.text, folder))
        return None if block.printed in (None, printed) else f"prints\n{printed}instead of\n{block.printed}"
    if block.kind == "session":
        for command, expected in steps(block.text):
            shown = re.fullmatch(r"cat ([\w.]+)", command)
            if shown and not os.path.exists(os.path.join(folder, shown.group(1))):  # which is how a page says what is in a file
                with open(os.path.join(folder, shown.group(1)), "w", encoding="utf-8") as file:
                    file.write(expected)
            printed, _ = run_shell(command, build, folder)
            if printed != expected:
                return f"$ {command}\nprints\n{printed}instead of\n{expected}"
    if block.kind == "commands":
        for command in block.text.strip().splitlines():
            printed, ended = run_shell(command, build, folder)
            if ended:
                return f"$ {command}\nends with {ended}\n{printed}"
    return None


def furnished(folder):
    """The folder with what commands of the pages name: the checkout, but for places of their own for pictures and files."""
    for name in sorted(set(os.listdir(ROOT)) - {"docs", "build", ".git"}):
        os.symlink(os.path.join(ROOT, name), os.path.join(folder, name))
    for name in ("docs/img/gallery", "docs/img/site", "build"):
        os.makedirs(os.path.join(folder, name))
    return folder


def tried(page, options):
    """(blocks by kind, how many are wrong) of a page; says what is wrong."""
    with open(page, encoding="utf-8") as file:
        found = blocks(file.read())
    if options.only:
        found = [one for one in found if one.kind == "program"]
    if options.with_neighbours or options.without_neighbours:
        found = [one for one in found if one.kind != "program" or bool(NEIGHBOUR.search(one.text)) == options.with_neighbours]
    counts, wrong = {}, 0
    folder = furnished(tempfile.mkdtemp())
    for one in found:
        if one.kind == "js" and not os.path.exists(os.path.join(ROOT, "build", "web", "npm")):
            one.reason = "there is no build/web/npm, which make page makes"
            continue
        counts[one.kind] = counts.get(one.kind, 0) + 1
        try:
            said = said_wrong(one, options, folder)
        except subprocess.CalledProcessError as error:
            said = f"{error}\n{error.stderr}"
        if said:
            print(f"{page}:{one.line}: {said}")
            wrong += 1
    for one in found:
        if one.reason:
            print(f"{page}:{one.line}: not run: {one.reason}")
    shutil.rmtree(folder)
    return counts, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("pages", nargs="+")
    parser.add_argument("--build", required=True)
    parser.add_argument("--compiler", default=os.environ.get("CXX", "c++"))
    parser.add_argument("--only", choices=["programs"])
    which = parser.add_mutually_exclusive_group()
    which.add_argument("--with-neighbours", action="store_true")
    which.add_argument("--without-neighbours", action="store_true")
    options = parser.parse_args()
    wrong, whole_count = 0, 0
    for page in options.pages:
        counts, bad = tried(page, options)
        wrong += bad
        whole_count += sum(counts.values())
        print(f"{page}: {', '.join(f'{count} {kind}' for kind, count in sorted(counts.items())) or 'no blocks'}, {bad} wrong")
    return 1 if wrong or not whole_count else 0


if __name__ == "__main__":
    sys.exit(main())
