#!/usr/bin/env python3
"""Tests of test_totals.py: what counts as passed, and that no failure is lost."""
import contextlib
import io
import json
import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import test_totals  # noqa: E402

PASSED = '<testcase name="{}" status="run"/>'
FAILED = '<testcase name="{}" status="fail"><failure message=""/></testcase>'
NOT_FOUND = '<testcase name="{}" status="notrun"><skipped message="Unable to find executable"/></testcase>'
DISABLED = '<testcase name="{}" status="disabled"/>'


def google(passed=0, failed=0, skipped=0):
    tests = [{"status": "RUN", "result": "COMPLETED"}] * passed
    tests += [{"status": "RUN", "result": "COMPLETED", "failures": [{"failure": "x"}]}] * failed
    tests += [{"status": "RUN", "result": "SKIPPED"}] * skipped
    tests += [{"status": "NOTRUN", "result": "SUPPRESSED"}]
    return json.dumps({"testsuites": [{"testsuite": tests}]})


class TotalsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def run_totals(self, entries, results=None):
        self.write("ctest.xml", "<testsuite>" + "".join(entries) + "</testsuite>")
        for name, text in (results or {}).items():
            self.write(name + ".json", text)
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = test_totals.main(self.folder)
        return output.getvalue().splitlines()[-1], status

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def test_google_tests_count_one_by_one_and_other_entries_as_one(self):
        entries = [PASSED.format("base"), PASSED.format("cntr"), PASSED.format("example")]
        results = {"base": google(passed=3), "cntr": google(passed=4, skipped=1)}
        self.assertEqual(self.run_totals(entries, results), ("8 passed, 0 failed", 0))

    def test_a_failed_test(self):
        results = {"base": google(passed=3, failed=2)}
        self.assertEqual(self.run_totals([FAILED.format("base")], results), ("3 passed, 2 failed", 1))

    def test_a_program_that_crashed_before_it_wrote_results(self):
        self.assertEqual(self.run_totals([FAILED.format("base")]), ("0 passed, 1 failed", 1))

    def test_a_program_that_crashed_after_its_tests(self):
        results = {"base": google(passed=3)}
        self.assertEqual(self.run_totals([FAILED.format("base")], results), ("3 passed, 1 failed", 1))

    def test_a_program_that_left_half_a_result(self):
        results = {"base": google(passed=3)[:40]}
        self.assertEqual(self.run_totals([FAILED.format("base")], results), ("0 passed, 1 failed", 1))

    def test_a_program_that_is_not_there(self):
        entries = [PASSED.format("a"), NOT_FOUND.format("base")]
        self.assertEqual(self.run_totals(entries), ("1 passed, 1 failed", 1))

    def test_a_disabled_entry_is_neither(self):
        self.assertEqual(self.run_totals([PASSED.format("a"), DISABLED.format("b")]), ("1 passed, 0 failed", 0))

    def test_nothing_ran(self):
        self.assertEqual(self.run_totals([]), ("0 passed, 0 failed", 1))

    def test_no_results_at_all(self):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = test_totals.main(os.path.join(self.folder, "nowhere"))
        self.assertEqual((output.getvalue().splitlines()[-1], status), ("0 passed, 1 failed", 1))


if __name__ == "__main__":
    unittest.main()
