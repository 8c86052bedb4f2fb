#!/usr/bin/env python3
"""Seeds one-line faults, one at a time, and says which of them the tests given do not notice.

    tools/mutate.py --files cntr/region_splice.cpp --target gxshape_cntr_tests --filter 'Splice*'
    tools/mutate.py --files cntr/contour.h:120-180 --target gxshape_cntr_tests --count 0 --list
    tools/mutate.py --since main --target gxshape_cntr_tests --filter '*Hole*' --count 40 --seed 7

A fault is a small change of one line: < for <=, + for -, && for ||, a constant nudged, a flag the
other way, a statement deleted, a coordinate exchanged (tools/mutations.py has them all). Each is
built into the targets and their tests are run. The same files, count and seed give the same faults.

Everything happens in a copy of the checkout, with what is not committed yet, under build/mutate; the
checkout itself is never written to. The first run builds that copy whole. Warnings are no errors
there, so that a variable that a fault leaves unused does not hide the fault.

What comes of a fault:
  caught       a test failed, or the program crashed
  SURVIVED     every test passed: the tests do not hold this line, or the change changes nothing
  no compile   the compiler refused it
  time out     the build or the tests went on for far longer than without a fault

Survivors are printed as a diff with the line's number. A fault that makes no difference (an
equivalent form, a reserve() less) survives rightly: judge each one by reading.

Exit status: 0 where no fault survived, 1 where one did, 2 where nothing could be judged (no such
file, the tests fail or run nothing without a fault).
"""
import argparse
import fcntl
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from mutations import chosen, faults  # noqa: E402

CAUGHT, SURVIVED, NO_COMPILE, TIME_OUT = "caught", "SURVIVED", "no compile", "time out"
MARK = ".made-by-mutate"
# A fault may ask for memory without end; a sanitizer's address space is beyond any such bound.
MOST_MEMORY = 8 << 30
SANITIZED = ("asan", "tsan", "fuzz")


class CannotJudge(Exception):
    """Nothing can be said: wrong arguments, or tests that do not pass as things are."""


# ---- The copy ------------------------------------------------------------------------------------

def checkout_files(root):
    """Tracked files and new ones that are not ignored, as they are in the checkout now."""
    listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=root,
                            capture_output=True, check=False)
    if listed.returncode != 0:
        raise CannotJudge("this is no git checkout: " + listed.stderr.decode().strip())
    names = listed.stdout.decode().split("\0")
    return {name for name in names if name and os.path.isfile(os.path.join(root, name))}


def read(path):
    with open(path, "rb") as file:
        return file.read()


def make_copy(root, folder):
    """Makes `folder` the same as the checkout, and touches no file that is the same already."""
    if os.path.isdir(folder) and os.listdir(folder) and not os.path.exists(os.path.join(folder, MARK)):
        raise CannotJudge(f"{folder} holds something else; name an empty folder, or one that is not there")
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, MARK), "w", encoding="utf-8"):
        pass
    wanted = checkout_files(root)
    for name in wanted:
        source, target = os.path.join(root, name), os.path.join(folder, name)
        if os.path.isfile(target) and read(source) == read(target):
            continue
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copyfile(source, target)
        shutil.copymode(source, target)
    for where, folders, files in os.walk(folder):
        if where == folder and "build" in folders:
            folders.remove("build")
        for name in files:
            path = os.path.join(where, name)
            if os.path.relpath(path, folder) not in wanted | {MARK}:
                os.remove(path)


# ---- Building and running --------------------------------------------------------------------------

# Stands in front of the compiler in the copy's build; without -w as long as no fault is in.
LAUNCHER = """#!/bin/sh
[ -z "$GXSHAPE_MUTATING" ] || set -- "$@" -w
exec {launcher} "$@"
"""


def run(command, folder, seconds, environment=None, memory=None):
    """(exit status, output); the status is None where the command went on for longer than `seconds`."""
    def limited():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if memory:
            resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
    with subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=limited,
                          env={**os.environ, **(environment or {})}) as process:
        try:
            output, _ = process.communicate(timeout=seconds)
            return process.returncode, output.decode(errors="replace")
        except BaseException as stopped:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            if isinstance(stopped, subprocess.TimeoutExpired):
                return None, ""
            raise


class Bench:
    """The copy, its build, and the tests that judge."""

    def __init__(self, folder, options):
        self.folder, self.options = folder, options
        self.build_folder = os.path.join(folder, "build", options.preset)
        self.memory = None if options.preset in SANITIZED else MOST_MEMORY
        self.build_seconds = self.test_seconds = None

    def first_build(self):
        build = os.path.join(self.folder, "build")
        os.makedirs(build, exist_ok=True)
        launcher = os.path.join(build, "launcher")
        real = os.environ.get("CMAKE_CXX_COMPILER_LAUNCHER") or shutil.which("ccache") or ""
        text = LAUNCHER.format(launcher=real)
        if not os.path.exists(launcher) or read(launcher) != text.encode():
            with open(launcher, "w", encoding="utf-8") as file:
                file.write(text)
            os.chmod(launcher, 0o755)
        status, output = run(["tools/build", self.options.preset, *self.options.target], self.folder, None,
                             {"CMAKE_CXX_COMPILER_LAUNCHER": launcher})
        if status != 0:
            raise CannotJudge("the checkout does not build as it is:\n" + output[-3000:])

    def first_tests(self):
        """Runs the tests without a fault, and sets the time that a fault may take."""
        start = time.monotonic()
        count = 0
        for target in self.options.target:
            code, output = run(self._command(target, fail_fast=False), self.folder, None, memory=self.memory)
            ran = re.search(r"\[  PASSED  \] (\d+) test", output)
            if code != 0:
                raise CannotJudge(f"{target} fails as things are:\n" + output[-3000:])
            count += int(ran.group(1)) if ran else 0
        if count == 0:
            raise CannotJudge(f"no test of {', '.join(self.options.target)} is called {self.options.filter}")
        took = time.monotonic() - start
        self.test_seconds = self.options.timeout or max(20.0, 20 * took)
        self.build_seconds = max(900.0, self.test_seconds)
        return count, took

    def judge(self, fault):
        """What comes of a fault. The copy is whole again afterwards."""
        path = os.path.join(self.folder, fault.path)
        whole = read(path)
        try:
            lines = whole.decode("utf-8").split("\n")
            lines[fault.line - 1] = fault.after
            write(path, "\n".join(lines).encode("utf-8"))
            return self._judge_as_it_is()
        finally:
            write(path, whole)

    def _judge_as_it_is(self):
        jobs = os.environ.get("JOBS") or str(os.cpu_count() or 2)
        status, _ = run(["cmake", "--build", self.build_folder, "--parallel", jobs, "--target", *self.options.target],
                        self.folder, self.build_seconds, {"GXSHAPE_MUTATING": "1"})
        if status != 0:
            return TIME_OUT if status is None else NO_COMPILE
        for target in self.options.target:
            status, _ = run(self._command(target, fail_fast=True), self.folder, self.test_seconds, memory=self.memory)
            if status != 0:
                return TIME_OUT if status is None else CAUGHT
        return SURVIVED

    def _command(self, target, fail_fast):
        command = [os.path.join(self.build_folder, "bin", target), "--gtest_brief=1",
                   "--gtest_filter=" + self.options.filter]
        return command + (["--gtest_fail_fast"] if fail_fast else [])


def write(path, content):
    """Writes a file and makes it newer than whatever was built of it, however coarse the clock."""
    with open(path, "wb") as file:
        file.write(content)
    os.utime(path)


# ---- Which faults ----------------------------------------------------------------------------------

def asked_lines(argument):
    """'cntr/a.cpp:10-20' -> ('cntr/a.cpp', {10, ..., 20}); without lines, None for all of them."""
    found = re.fullmatch(r"(.+?):(\d+)(?:-(\d+))?", argument)
    if not found:
        return argument, None
    first, last = int(found.group(2)), int(found.group(3) or found.group(2))
    return found.group(1), set(range(first, last + 1))


def changed_lines(root, commit):
    """{path: line numbers} of the C++ lines that are new or changed since a commit."""
    diff = subprocess.run(["git", "diff", "-U0", "--no-color", "--no-ext-diff", "--src-prefix=a/", "--dst-prefix=b/",
                           commit, "--", "*.h", "*.cpp"], cwd=root, capture_output=True, check=False)
    if diff.returncode != 0:
        raise CannotJudge(diff.stderr.decode().strip())
    changed, path = {}, None
    for line in diff.stdout.decode(errors="replace").splitlines():
        if line.startswith("+++ "):
            path = line[6:] if line.startswith("+++ b/") else None
        hunk = re.match(r"@@ -\S+ \+(\d+)(?:,(\d+))? @@", line)
        if hunk and path:
            first, count = int(hunk.group(1)), int(hunk.group(2) or 1)
            changed.setdefault(path, set()).update(range(first, first + count))
    new = subprocess.run(["git", "ls-files", "-o", "--exclude-standard", "--", "*.h", "*.cpp"], cwd=root,
                         capture_output=True, check=False).stdout.decode().split()
    changed.update({name: None for name in new})
    return {name: lines for name, lines in changed.items() if not name.startswith(("tests/", "bench/", "fuzz/"))}


def asked_faults(root, options):
    """All faults of the files and lines asked for."""
    asked = [asked_lines(argument) for argument in options.files]
    if options.since:
        asked += sorted(changed_lines(root, options.since).items())
    found = set()
    for path, lines in asked:
        path = os.path.relpath(os.path.join(root, path), root)
        if not os.path.isfile(os.path.join(root, path)):
            raise CannotJudge(f"no such file: {path} (paths are those from the root of the checkout)")
        found.update(faults(path, read(os.path.join(root, path)).decode("utf-8"), lines))
    return found


# ---- The command -----------------------------------------------------------------------------------

def arguments(argv):
    usage, _, rest = __doc__.partition("\n\n")
    parser = argparse.ArgumentParser(description=usage, epilog=rest,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--files", nargs="+", default=[], metavar="FILE[:FIRST-LAST]",
                        help="where faults are seeded: a source or header, or some of its lines")
    parser.add_argument("--since", metavar="COMMIT",
                        help="seed them in the library's lines that are new or changed since COMMIT")
    parser.add_argument("--target", nargs="+", default=[],
                        help="the test programs that are built and run, gxshape_cntr_tests for example")
    parser.add_argument("--filter", default="*", help="which of their tests are run, as --gtest_filter takes it")
    parser.add_argument("--count", type=int, default=20, help="how many faults, 0 for all (20)")
    parser.add_argument("--seed", type=int, default=1, help="which of the faults are drawn (1)")
    parser.add_argument("--list", action="store_true", help="print the faults as diffs and judge none")
    parser.add_argument("--preset", default="release", help="the build that is used (release)")
    parser.add_argument("--timeout", type=float, metavar="SECONDS",
                        help="how long the tests may take with a fault (20 times their own time, at least 20 s)")
    parser.add_argument("--work-tree", metavar="FOLDER", help="where the copy lies (build/mutate)")
    options = parser.parse_args(argv)
    if not options.files and not options.since:
        parser.error("say where: --files or --since")
    if not options.target and not options.list:
        parser.error("say which tests judge: --target")
    if options.count < 0:
        parser.error("--count is 0 for all, or more")
    return options


def summary(results):
    counted = {what: sum(1 for _, result in results if result == what)
               for what in (CAUGHT, SURVIVED, NO_COMPILE, TIME_OUT)}
    return (f"{len(results)} faults: {counted[CAUGHT]} caught, {counted[SURVIVED]} survived, "
            f"{counted[NO_COMPILE]} did not compile, {counted[TIME_OUT]} ran out of time")


def judge_all(bench, drawn):
    results = []
    for number, fault in enumerate(drawn, start=1):
        result = bench.judge(fault)
        results.append((fault, result))
        print(f"{number:4}/{len(drawn)}  {result:10}  {fault.path}:{fault.line}: {fault.kind}", flush=True)
        if result == SURVIVED:
            print(fault.diff(), flush=True)
    return results


def main(argv, root):
    options = arguments(argv)
    found = asked_faults(root, options)
    drawn = chosen(found, options.count, options.seed)
    if not drawn:
        raise CannotJudge("there is no line of code in what was asked for")
    print(f"== {len(drawn)} of {len(found)} possible faults, seed {options.seed}", flush=True)
    if options.list:
        print("\n".join(fault.diff() for fault in drawn))
        return 0
    folder = os.path.abspath(options.work_tree or os.path.join(root, "build", "mutate"))
    os.makedirs(os.path.dirname(folder), exist_ok=True)
    with open(folder + ".lock", "w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            raise CannotJudge(f"another run is using {folder}; name another --work-tree") from None
        print(f"== copying the checkout to {folder}, building it", flush=True)
        make_copy(root, folder)
        bench = Bench(folder, options)
        bench.first_build()
        count, took = bench.first_tests()
        print(f"== without a fault: {count} tests pass in {took:.1f} s", flush=True)
        results = judge_all(bench, drawn)
    survivors = [fault for fault, result in results if result == SURVIVED]
    if survivors:
        print("\n== survivors")
        print("\n\n".join(fault.diff() for fault in survivors))
    print("\n" + summary(results))
    return 1 if survivors else 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:], os.path.dirname(os.path.dirname(os.path.abspath(__file__)))))
    except CannotJudge as reason:
        print(f"mutate: {reason}", file=sys.stderr)
        sys.exit(2)
    except KeyboardInterrupt:
        sys.exit(130)
