#!/usr/bin/env python3
"""Tests of doc_blocks.py: what is taken for which kind of block."""
import os
import subprocess
import sys
import tempfile
import unittest
from types import SimpleNamespace

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import doc_blocks  # noqa: E402


def kinds(text):
    return [(one.kind, one.printed) for one in doc_blocks.blocks(text)]


class BlocksTest(unittest.TestCase):
    def test_a_program_prints_the_next_block_without_a_language(self):
        self.assertEqual(kinds("```cpp\nint main() {}\n```\nIt prints\n```\n1\n```\n```\n2\n```\n"),
                         [("program", "1\n"), ("text", None)])

    def test_another_block_of_code_ends_that(self):
        self.assertEqual(kinds("```python\na\n```\n```\n$ ls\n```\n```\n2\n```\n"),
                         [("python", None), ("session", None), ("text", None)])

    def test_commands_are_lines_that_begin_with_the_tool(self):
        self.assertEqual(kinds("```\ngxshape draw\n```\n```\nprintf 1 | gxshape draw\n```\n```\nmake docs\n```\n"),
                         [("commands", None), ("commands", None), ("text", None)])

    def test_a_comment_gives_a_fragment_what_it_takes_for_granted(self):
        found, = doc_blocks.blocks("  <!-- before: int a = 0; -->\n  ```cpp\n  ++a;\n  ```\n")
        self.assertEqual((found.kind, found.before, found.text, found.line), ("fragment", "int a = 0;", "++a;\n", 2))

    def test_a_block_with_a_reason_is_not_run_and_keeps_the_reason(self):
        found, = doc_blocks.blocks("<!-- text: elsewhere -->\n```cmake\nx\n```\n")
        self.assertEqual((found.kind, found.reason), ("text", "elsewhere"))

    def test_a_language_that_is_not_run_needs_a_reason(self):
        with self.assertRaisesRegex(ValueError, "line 2: a block of cmake"):
            doc_blocks.blocks("# A\n```cmake\nx\n```\n")

    def test_what_is_included_comes_out_of_the_function(self):
        text = doc_blocks.whole("#include <io/reader.h>\nint b = a;\n", "int a = 1;")
        self.assertLess(text.index("<io/reader.h>"), text.index("int main() {"))
        self.assertLess(text.index("int main() {"), text.index("int a = 1;"))
        self.assertLess(text.index("int a = 1;"), text.index("int b = a;"))
        self.assertNotIn("main", doc_blocks.whole("class A {};\n", ""))

    def test_steps_of_a_session_have_their_lines(self):
        self.assertEqual(doc_blocks.steps("$ a\n1\n2\n$ b\n"), [["a", "1\n2\n"], ["b", ""]])


class LookTest(unittest.TestCase):
    def said(self, text, build="/nowhere"):
        with tempfile.TemporaryDirectory() as folder:
            return [doc_blocks.said_wrong(one, SimpleNamespace(build=build, compiler="c++"), folder) for one in doc_blocks.blocks(text)]

    def test_a_session_that_prints_otherwise_is_wrong(self):
        self.assertEqual(self.said("```\n$ echo a\na\n$ echo b\nb\n```\n"), [None])
        self.assertIn("instead of\nc", self.said("```\n$ echo a\nc\n```\n")[0])

    def test_a_file_is_made_of_what_a_page_shows_of_it(self):
        self.assertEqual(self.said("```\n$ cat a.txt\nx\n$ wc -l < a.txt\n1\n```\n"), [None])

    def test_a_command_that_fails_is_wrong(self):
        self.assertIn("ends with 3", self.said("```\nfor a in 1; do exit 3; done\n```\n")[0])
        self.assertEqual(self.said("```\nprintf a\n```\n"), [None])

    def test_python_is_compared(self):
        self.assertEqual(self.said("```python\nprint(1)\n```\n```\n1\n```\n"), [None])
        self.assertIn("prints\n1", self.said("```python\nprint(1)\n```\n```\n2\n```\n")[0])
        with self.assertRaises(subprocess.CalledProcessError):
            self.said("```python\nraise ValueError\n```\n")


if __name__ == "__main__":
    unittest.main()
