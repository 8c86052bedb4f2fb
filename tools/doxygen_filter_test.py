#!/usr/bin/env python3
"""Tests of doxygen_filter.py: comments of headers, and the table of what they leave out."""
import csv
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from doxygen_filter import MEMBERS, header, members  # noqa: E402


class HeaderTest(unittest.TestCase):
    def test_a_comment_above_a_run_is_that_of_each(self):
        self.assertEqual(header("  /// Return both.  More.\n  int a() const;\n  int b() const { return b_; }"),
                         "  /// Return both.  More.\n  int a() const;\n/** Return both. */   int b() const { return b_; }")

    def test_so_it_is_for_data_members(self):
        self.assertEqual(header("  /// Where it ends.\n  double a = 0.0;\n  long b;\n  long c;  ///< Other."),
                         "  /// Where it ends.\n  double a = 0.0;\n/** Where it ends. */   long b;\n  long c;  ///< Other.")

    def test_a_blank_line_ends_the_run(self):
        text = "  /// Returns a.\n  int a() const;\n\n  int b() const;"
        self.assertEqual(header(text), text)

    def test_a_declaration_over_lines_counts_as_one(self):
        text = "/// Does it.\nvoid f(int a,\n       int b);\nvoid f(int a);"
        self.assertEqual(header(text), text.replace("\nvoid f(int a);", "\n/** Does it. */ void f(int a);"))

    def test_a_comment_of_its_own_stands(self):
        text = "/// One.\nvoid f();\n/// Two.\nvoid g();"
        self.assertEqual(header(text), text)

    def test_the_comment_of_a_class_is_not_that_of_its_members(self):
        for text in ("/// A.\nclass A {\n public:\n  void f();\n};",
                     "/// A.\ntemplate <class T>\nclass A {\n public:\n  void f();\n};"):
            self.assertEqual(header(text), text)

    def test_the_comment_of_the_file_swallows_nothing(self):
        self.assertEqual(header("/// File.\n#pragma once\n\n/// F.\nvoid f();\nvoid g();"),
                         "// File.\n#pragma once\n\n/// F.\nvoid f();\n/** F. */ void g();")

    def test_copying_moving_and_destroying_say_so(self):
        self.assertEqual(header(" public:\n  A(const A& other);\n  A(A&& other) noexcept;\n  ~A() override;\n"
                                "  A& operator=(const A&) = default;\n  A& operator=(A&& other) noexcept;"),
                         " public:\n/** Copies. */   A(const A& other);\n/** Moves. */   A(A&& other) noexcept;\n"
                         "/** Destroys. */   ~A() override;\n/** Assigns by copying. */   A& operator=(const A&) = default;\n"
                         "/** Assigns by moving. */   A& operator=(A&& other) noexcept;")

    def test_names_in_one_line_are_declared_one_by_one(self):
        self.assertEqual(header("  double a = 0.0, b = 1.0;  ///< Both."),
                         "  /** Both. */ double a = 0.0; /** Both. */ double b = 1.0;")
        self.assertEqual(header("  /// Both.\n  double a = 0.0, b;"), "  /// Both.\n  double a = 0.0; /** Both. */ double b;")
        self.assertEqual(header("  std::vector<double> a,\n      b;\n"), "  std::vector<double> a; std::vector<double> b;\n\n")

    def test_a_name_without_a_comment_gets_the_sentence_of_the_table(self):
        said = {"a": "The a.", "f": "Does f.", "operator()": "Calls.", "A": "An a.", "T": "A type."}
        self.assertEqual(header("\n  double a = 0.0;\n\n  void f(int b) const;\n\n  int operator()(int) const;\n"
                                "\n  using T =\n      int;\n\nstruct A {\n", said),
                         "\n/** The a. */   double a = 0.0;\n\n/** Does f. */   void f(int b) const;\n"
                         "\n/** Calls. */   int operator()(int) const;\n\n/** A type. */   using T =\n      int;\n"
                         "\n/** An a. */ struct A {\n")
        self.assertEqual(header("  double a;  ///< My own.", said), "  double a;  ///< My own.")
        self.assertEqual(header("  double b;", said), "  double b;")

    def test_a_constructor_with_initialisers_below_is_no_macro(self):
        self.assertEqual(header("\n  A(int a)\n      : a_(a) {}", {"A": "Makes it."}),
                         "\n/** Makes it. */   A(int a)\n      : a_(a) {}")
        self.assertEqual(header("\nMACRO(a)\n", {"MACRO": "No."}), "\nMACRO(a)\n")

    def test_specialisations_of_other_libraries_are_left_out(self):
        self.assertEqual(header("/// H.\ntemplate <>\nstruct std::hash<A> {\n  int b;\n};\nnamespace boost::x {\n}\nint c;"),
                         "\n\n\n\n\n\n\nint c;")

    def test_what_looks_like_a_tag_is_none(self):
        self.assertEqual(header("/// Where <format> is, and `<version>`."), "/// Where \\<format> is, and `<version>`.")

    def test_the_row_of_the_header_goes_before_that_of_all(self):
        table = [{"header": "a.h", "name": "x", "sentence": "Mine."}, {"header": "*", "name": "x", "sentence": "All."},
                 {"header": "b.h", "name": "x", "sentence": "Other."}]
        self.assertEqual(members("a.h", table), {"x": "Mine."})
        self.assertEqual(members("c.h", table), {"x": "All."})

    def test_the_table_names_headers_that_there_are_and_names_in_them(self):
        root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
        with open(MEMBERS, encoding="utf-8", newline="") as file:
            for row in csv.DictReader(file):
                self.assertTrue(row["sentence"].endswith("."), row)
                if row["header"] != "*":
                    with open(os.path.join(root, row["header"]), encoding="utf-8") as header_file:
                        self.assertIn(row["name"].split("(")[0], header_file.read(), row)

    def test_no_line_is_added(self):
        text = "/// F.\nvoid f();\nvoid g();\nvoid h(int a,\n       int b) {\n  a();\n}\n"
        self.assertEqual(header(text).count("\n"), text.count("\n"))


if __name__ == "__main__":
    unittest.main()
