#!/usr/bin/env python3
"""Runs clang-tidy over source files, several of them at a time as one.

    tools/tidy.py build/release <file>...

Most of a run of clang-tidy over one file goes into the headers of the standard library, which every
check walks through. So files that are compiled alike are written one after the other into a batch,
which is checked as one file. Findings are told with the file and line that they stand in.

Files whose unnamed namespaces use a name twice do not compile together. Each batch is compiled first,
without code; files with an error are taken out and go into a later batch, and one that has an error all
by itself is a finding.

clang-tidy 14 has an analyzer that crashes on some sound code: such a batch is checked file by file, and
a file that it still crashes on without the analyzer.

Ends with 1 where there was a finding.
"""

import concurrent.futures
import json
import os
import re
import subprocess
import sys
import tempfile

BATCH = 12
# How far the static analyzer follows a function, in states; by itself it goes up to 225,000, which takes three
# quarters of the whole run (overlay: 158 s of processor time; 57 so; 41 without the analyzer).
STATES = 15000
KEPT_FLAGS = ("-I", "-D", "-std=", "-isystem")
LOCATION = re.compile(r"^(?P<file>[^\s:]+):(?P<line>\d+):(?P<column>\d+): ")


def flags_of(command):
    """The flags of a compile command that matter to what the code means."""
    words = command.split()
    flags = []
    for k, word in enumerate(words):
        if word == "-isystem":
            flags += [word, words[k + 1]]
        elif word.startswith(KEPT_FLAGS) and word != "-isystem":
            flags.append(word)
    return tuple(flags)


def flags_by_file(folder):
    with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as file:
        commands = json.load(file)
    return {os.path.realpath(os.path.join(c["directory"], c["file"])): flags_of(c["command"]) for c in commands}


class Batch:
    """Files one after the other, and where each begins."""

    def __init__(self, names, path):
        self.names = names
        self.path = path
        self.starts = []
        lines = []
        for name in names:
            self.starts.append(len(lines))
            with open(name, encoding="utf-8") as file:
                lines += file.read().splitlines()
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")

    def place(self, line):
        """The file and line of a line of the batch, counted from 1."""
        k = max(k for k, start in enumerate(self.starts) if start < line)
        return self.names[k], line - self.starts[k]

    def translated(self, text):
        """The text of a tool, with places in the batch told as places in its files."""
        out = []
        for line in text.splitlines():
            match = LOCATION.match(line)
            if match and os.path.realpath(match["file"]) == os.path.realpath(self.path):
                name, number = self.place(int(match["line"]))
                line = f"{name}:{number}:{match['column']}: {line[match.end():]}"
            out.append(line)
        return "\n".join(out)

    def files_with_errors(self, text):
        """The files that a compiler's errors are in; those of headers count for none."""
        found = set()
        for line in text.splitlines():
            match = LOCATION.match(line)
            if match and "error:" in line and os.path.realpath(match["file"]) == os.path.realpath(self.path):
                found.add(self.place(int(match["line"]))[0])
        return found


def run(command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def compiles_together(names, flags, folder, compiler="clang++"):
    """Parts the names into lists, each of which compiles as one file, and findings of files that do not."""
    lists, findings = [], []
    waiting = list(names)
    while waiting:
        taken, waiting = waiting[:BATCH], waiting[BATCH:]
        while True:
            with tempfile.NamedTemporaryFile(suffix=".cpp", dir=folder) as file:
                batch = Batch(taken, file.name)
                result = run([compiler, *flags, "-w", "-fmax-errors=0", "-fsyntax-only", file.name])
                if result.returncode == 0:
                    lists.append(taken)
                    break
                bad = batch.files_with_errors(result.stderr) or set(taken[1:])
                if len(taken) == 1:
                    findings.append(batch.translated(result.stderr))
                    break
                # The first file has nothing before it to clash with, so it stays, and each round takes
                # at least one file out.
                kept = [n for n in taken if n not in bad or n == taken[0]]
                if len(kept) == len(taken):
                    kept = taken[:1]
                waiting += [n for n in taken if n not in kept]
                taken = kept
    return lists, findings


def checked(names, flags, folder, analyzer=True):
    """What clang-tidy finds in the files, as one text; empty where it finds nothing."""
    with tempfile.NamedTemporaryFile(suffix=".cpp", dir=folder) as file:
        batch = Batch(names, file.name)
        command = ["clang-tidy", "--quiet", f"--config-file={os.path.abspath('.clang-tidy')}"]
        if not analyzer:
            command.append("--checks=-clang-analyzer-*")
        result = run([*command, file.name, "--", *flags, "-Wno-unknown-warning-option",
                      "-Xclang", "-analyzer-config", "-Xclang", f"max-nodes={STATES}"])
        if result.returncode < 0 or result.returncode > 128:
            if len(names) > 1:
                return "\n".join(filter(None, (checked([n], flags, folder) for n in names)))
            if analyzer:
                print(f"== clang-tidy crashed on {names[0]}; checking it without the static analyzer")
                return checked(names, flags, folder, analyzer=False)
            return f"{names[0]}: clang-tidy crashes on it"
        return batch.translated(result.stdout) if result.returncode != 0 or result.stdout.strip() else ""


def main(arguments):
    build, names = arguments[0], arguments[1:]
    folder = os.path.join(build, "tidy")
    os.makedirs(folder, exist_ok=True)
    known = flags_by_file(build)
    groups = {}
    for name in names:
        flags = known.get(os.path.realpath(name))
        if flags is None:
            print(f"{name}: not compiled in {build}")
            return 1
        groups.setdefault(flags, []).append(name)

    failed = False
    jobs = int(os.environ.get("JOBS") or os.cpu_count() or 2)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        # Pieces of a group are parted side by side; more pieces than that only part more often.
        pieces = [(f, g[k::jobs]) for f, g in groups.items() for k in range(jobs) if g[k::jobs]]
        parted = [(f, pool.submit(compiles_together, g, f, folder)) for f, g in pieces]
        checks = []
        for flags, parting in parted:
            lists, findings = parting.result()
            for text in findings:
                print(text)
                failed = True
            checks += [pool.submit(checked, l, flags, folder) for l in lists]
        for check in checks:
            text = check.result()
            if text:
                print(text, flush=True)
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
