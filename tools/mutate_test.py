#!/usr/bin/env python3
"""Tests of mutate.py and mutations.py: which faults are found, and what a whole run says of them."""
import contextlib
import io
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import mutate  # noqa: E402
from mutations import chosen, code_lines, faults  # noqa: E402

TOOLS = os.path.dirname(os.path.abspath(__file__))


def made_of(line, before=""):
    """{changed line: kind} of all faults of one line of code, which stands below `before`."""
    found = faults("a.cpp", before + "\n" + line, {2})
    return {fault.after: fault.kind for fault in found}


class CodeTest(unittest.TestCase):
    def test_comments_strings_and_directives_are_blanked_at_their_places(self):
        text = '#include <a>\nint a = 1;  // 2 < 3\nauto b = "x < y";\n/* 4\n 5 */ char c = \'<\';'
        lines = code_lines(text)
        self.assertEqual(lines[0].strip(), "")
        self.assertEqual(lines[1].rstrip(), "int a = 1;")
        self.assertEqual(lines[2], 'auto b = "     ";')
        self.assertEqual(lines[3].strip(), "")
        self.assertEqual(lines[4].strip(), "char c = ' ';")
        self.assertEqual([len(line) for line in lines], [len(line) for line in text.split("\n")])

    def test_a_raw_string_over_lines_and_an_escaped_quote(self):
        lines = code_lines('auto a = R"(1 "\n2)";\nauto b = "\\"3";')
        self.assertNotIn("1", lines[0])
        self.assertNotIn("2", lines[1])
        self.assertNotIn("3", lines[2])

    def test_a_digit_separator_opens_no_character(self):
        self.assertEqual(code_lines("f(1'000, 2'000);"), ["f(1'000, 2'000);"])

    def test_a_directive_over_lines(self):
        self.assertEqual([line.strip() for line in code_lines("#define A \\\n  1 + 2\nint b;")], ["", "", "int b;"])


class FaultsTest(unittest.TestCase):
    def test_comparisons(self):
        self.assertEqual(made_of("bool b = i < n;"), {"bool b = i <= n;": "comparison off by one",
                                                       "bool b = i > n;": "comparison flipped"})
        self.assertEqual(made_of("bool b = i == n;"), {"bool b = i != n;": "comparison flipped"})

    def test_brackets_of_templates_references_and_pointers_are_no_operators(self):
        self.assertEqual(made_of("template <class T>"), {})
        self.assertEqual(made_of("void f(std::vector<A>&& a, const B& b, C* c);"), {})

    def test_an_operator_at_the_end_of_a_line(self):
        self.assertIn("  a ||", made_of("  a &&"))

    def test_arithmetic(self):
        self.assertEqual(made_of("auto b = a + c * d;"), {"auto b = a - c * d;": "sign", "auto b = a + c / d;": "factor"})
        self.assertIn("auto b = a;", made_of("auto b = a + 1;"))
        self.assertIn("double b = a;", made_of("double b = -a;"))

    def test_numbers(self):
        self.assertEqual(set(made_of("int a = 7;")), {"int a = 8;", "int a = 6;"})
        self.assertEqual(set(made_of("int a = 0u;")), {"int a = 1u;"})
        self.assertEqual(set(made_of("int a = 64'000;")), {"int a = 64001;", "int a = 63999;"})
        self.assertEqual(set(made_of("double a = 0.5;")), {"double a = 0.75;", f"double a = {0.5 / 1.5!r};"})
        self.assertEqual(set(made_of("double a = 0.0;")), {"double a = 1.0;"})

    def test_numbers_in_names_templates_and_strings_are_left_alone(self):
        self.assertEqual(made_of('gxVector<2> v2 = "7";'), {})
        self.assertEqual(made_of("int a = 0x1f;"), {})

    def test_flags_and_negations(self):
        self.assertEqual(made_of("bool a = true;"), {"bool a = false;": "flag"})
        self.assertEqual(made_of("bool a = !b;"), {"bool a = b;": "condition negated"})

    def test_coordinates_and_arguments(self):
        self.assertEqual(made_of("auto a = p.x();"), {"auto a = p.y();": "coordinate"})
        self.assertEqual(made_of("auto a = f(b, c);"), {"auto a = f(c, b);": "arguments exchanged"})
        self.assertEqual(made_of("auto a = std::min(b, c);"),
                         {"auto a = std::max(b, c);": "extreme", "auto a = std::min(c, b);": "arguments exchanged"})

    def test_statements(self):
        self.assertEqual(made_of("  drop();", "{"), {"  ;": "statement deleted"})
        self.assertEqual(made_of("  a.valid = b;", "c();"), {"  ;": "statement deleted"})
        self.assertEqual(made_of("drop();", "else"), {";": "statement deleted"})
        self.assertEqual(made_of("std::vector<int> a;", "{"), {})
        self.assertEqual(made_of("static_assert(f);", "{"), {})

    def test_the_rest_of_a_statement_is_none(self):
        self.assertEqual(made_of("drop();", "auto a ="), {})

    def test_conditions(self):
        self.assertEqual(set(made_of("if (a.empty()) return;", "{")), {"if (!(a.empty())) return;", ";"})
        self.assertEqual(set(made_of("} else if (f(a)) {", "b();")), {"} else if (!(f(a))) {"})
        self.assertEqual(set(made_of("while (f(a)) g(b);", "b();")), {"while (!(f(a))) g(b);"})

    def test_results(self):
        self.assertEqual(made_of("return a == b;"), {"return a != b;": "comparison flipped",
                                                      "return !(a == b);": "return negated"})
        self.assertEqual(made_of("return a;"), {"return {};": "nothing returned"})
        self.assertEqual(made_of("return *this;"), {})

    def test_strings_come_through_whole(self):
        self.assertIn('if (!(a == "b < c")) f("d");', made_of('if (a == "b < c") f("d");'))

    def test_a_line_that_asks_for_memory_is_passed_over(self):
        self.assertEqual(made_of("a.reserve(b + 1);", "{"), {})

    def test_every_fault_changes_its_line_and_names_it(self):
        text = "int f(int a) {\n  if (a < 3) return 1;\n  return a;\n}"
        found = faults("a.cpp", text)
        self.assertTrue(found)
        for fault in found:
            self.assertEqual(text.split("\n")[fault.line - 1], fault.before)
            self.assertNotEqual(fault.before, fault.after)


class ChosenTest(unittest.TestCase):
    ALL = faults("a.cpp", "\n".join(f"int a{i} = b + {i} < c;" for i in range(50)))

    def test_the_same_seed_draws_the_same_and_another_seed_others(self):
        self.assertEqual(chosen(self.ALL, 10, 1), chosen(list(reversed(self.ALL)), 10, 1))
        self.assertNotEqual(chosen(self.ALL, 10, 1), chosen(self.ALL, 10, 2))

    def test_no_line_twice_while_another_is_left(self):
        lines = [fault.line for fault in chosen(self.ALL, 50, 3)]
        self.assertEqual(len(set(lines)), 50)
        self.assertEqual(len(chosen(self.ALL, 60, 3)), 60)

    def test_none_is_all(self):
        self.assertEqual(chosen(self.ALL, 0, 1), sorted(self.ALL))

    def test_lines_asked_for(self):
        self.assertEqual(mutate.asked_lines("a/b.cpp"), ("a/b.cpp", None))
        self.assertEqual(mutate.asked_lines("a/b.cpp:3"), ("a/b.cpp", {3}))
        self.assertEqual(mutate.asked_lines("a/b.cpp:3-5"), ("a/b.cpp", {3, 4, 5}))


# ---- A whole run, in a project of three files -------------------------------------------------------

CMAKE = """cmake_minimum_required(VERSION 3.22)
project(small LANGUAGES CXX)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
add_compile_options(-Wall -Werror)
add_executable(small_tests half.cpp small_tests.cpp)
"""
PRESETS = """{"version": 3, "configurePresets": [{"name": "release", "binaryDir": "${sourceDir}/build/release"}]}"""
HALF = """int half(int n) {
  if (n < 0) return -1;
  int low = 0;
  while (low + low < n) low += 1;
  return low;
}
int untested(int n) {
  return n + n;
}
bool refused(int n) {
  const bool yes = n > 3;
  return true;
}
"""
# Tells of itself what a test program of the real kind tells.
SMALL_TESTS = """#include <cstdio>
#include <cstring>
int half(int n);
int untested(int n);
int main(int count, char** words) {
  for (int i = 1; i < count; ++i)
    if (std::strcmp(words[i], "--gtest_filter=Nothing") == 0) { std::puts("[  PASSED  ] 0 tests."); return 0; }
  untested(1);
  if (half(-5) != -1 || half(6) != 3 || half(7) != 4) return 1;
  std::puts("[  PASSED  ] 1 test.");
}
"""


class RunTest(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)
        self.write("CMakeLists.txt", CMAKE)
        self.write("CMakePresets.json", PRESETS)
        self.write("half.cpp", HALF.replace("  const bool yes = n > 3;\n", ""))
        self.write("small_tests.cpp", SMALL_TESTS)
        self.write(".gitignore", "/build/\n")
        os.mkdir(os.path.join(self.root, "tools"))
        shutil.copy(os.path.join(TOOLS, "build"), os.path.join(self.root, "tools", "build"))
        self.git("init", "-q")

    def write(self, name, text):
        with open(os.path.join(self.root, name), "w", encoding="utf-8") as file:
            file.write(text)

    def text(self, name):
        with open(os.path.join(self.root, name), encoding="utf-8") as file:
            return file.read()

    def git(self, *words):
        subprocess.run(["git", "-c", "user.name=a", "-c", "user.email=b@c", *words], cwd=self.root, check=True,
                       capture_output=True)

    def mutate(self, *words):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = mutate.main([*words], self.root)
        return status, output.getvalue()

    def test_what_comes_of_each_fault(self):
        before = {name: self.text(name) for name in ("half.cpp", "small_tests.cpp")}
        status, output = self.mutate("--files", "half.cpp:1-6", "--target", "small_tests", "--count", "0",
                                     "--timeout", "1")
        self.assertEqual(status, 1, output)
        for told in ("caught      half.cpp:2: comparison flipped", "caught      half.cpp:4: comparison off by one",
                     "time out    half.cpp:4: sign", "SURVIVED    half.cpp:2: comparison off by one",
                     "caught      half.cpp:5: nothing returned"):
            self.assertIn(told, output)
        self.assertIn("-  if (n < 0) return -1;\n+  if (n <= 0) return -1;", output.split("== survivors")[0])
        self.assertEqual({name: self.text(name) for name in before}, before)
        self.assertEqual(sorted(os.listdir(self.root)), sorted([".git", ".gitignore", "CMakeLists.txt",
                         "CMakePresets.json", "build", "half.cpp", "small_tests.cpp", "tools"]))
        # The copy is whole again: the same tests pass in it.
        self.assertEqual(mutate.read(os.path.join(self.root, "build/mutate/half.cpp")).decode(), before["half.cpp"])

    def test_a_survivor_is_printed_with_its_line_and_makes_the_status_1(self):
        status, output = self.mutate("--files", "half.cpp:8", "--target", "small_tests", "--count", "0")
        self.assertEqual(status, 1)
        survivors = output.split("== survivors")[1]
        self.assertIn("@@ line 8: sign @@\n-  return n + n;\n+  return n - n;", survivors)
        self.assertRegex(output, r"\n2 faults: 0 caught, 2 survived, 0 did not compile, 0 ran out of time\n$")

    def test_where_all_are_caught_the_status_is_0(self):
        status, output = self.mutate("--files", "half.cpp:5", "--target", "small_tests")
        self.assertEqual(status, 0, output)

    def test_what_the_compiler_refuses_is_said_apart(self):
        self.write("half.cpp", HALF.replace("  const bool yes = n > 3;\n", "").replace("int low = 0;", "int low = {0};")
                   .replace("int untested(int n) {", "struct N { N() = delete; N(int) {} };\nN none(N n) {\n  return n;\n}\n"
                            "int untested(int n) {"))
        status, output = self.mutate("--files", "half.cpp:9", "--target", "small_tests")
        self.assertIn("no compile  half.cpp:9: nothing returned", output)
        self.assertEqual(status, 0)

    def test_a_warning_does_not_hide_a_fault(self):
        self.write("half.cpp", HALF.replace("return true;", "return yes;"))
        status, output = self.mutate("--files", "half.cpp:12", "--target", "small_tests")
        self.assertIn("SURVIVED    half.cpp:12: nothing returned", output)

    def test_work_that_is_not_committed_is_judged(self):
        self.git("add", ".")
        self.git("commit", "-qm", "a")
        self.write("half.cpp", HALF.replace("  const bool yes = n > 3;\n", "").replace("n + n", "n + 2 * n"))
        status, output = self.mutate("--since", "HEAD", "--target", "small_tests", "--count", "0")
        self.assertIn("+  return n + 3 * n;", output)
        self.assertNotIn("half.cpp:2:", output)

    def test_the_list_builds_nothing(self):
        status, output = self.mutate("--files", "half.cpp", "--list", "--count", "3")
        self.assertEqual(status, 0)
        self.assertEqual(output.count("@@ line "), 3)
        self.assertFalse(os.path.exists(os.path.join(self.root, "build")))

    def test_tests_that_run_nothing_or_fail_cannot_judge(self):
        with self.assertRaisesRegex(mutate.CannotJudge, "no test of small_tests is called Nothing"):
            self.mutate("--files", "half.cpp", "--target", "small_tests", "--filter", "Nothing")
        self.write("half.cpp", HALF.replace("return low;", "return 17;").replace("  const bool yes = n > 3;\n", ""))
        with self.assertRaisesRegex(mutate.CannotJudge, "small_tests fails as things are"):
            self.mutate("--files", "half.cpp", "--target", "small_tests")

    def test_a_file_that_is_not_there(self):
        with self.assertRaisesRegex(mutate.CannotJudge, "no such file: nothing.cpp"):
            self.mutate("--files", "nothing.cpp", "--list")

    def test_a_folder_that_holds_something_else_is_left_alone(self):
        os.makedirs(os.path.join(self.root, "build", "mine"))
        self.write("build/mine/a", "b")
        with self.assertRaisesRegex(mutate.CannotJudge, "holds something else"):
            self.mutate("--files", "half.cpp", "--target", "small_tests", "--work-tree",
                        os.path.join(self.root, "build", "mine"))
        self.assertEqual(self.text("build/mine/a"), "b")


if __name__ == "__main__":
    unittest.main()
