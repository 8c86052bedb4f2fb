#!/usr/bin/env python3
"""Counts what a test run did: tools/test_totals.py <folder of results>

The folder holds ctest.xml, written by CTest, and <entry>.json, written by each GoogleTest program.
A GoogleTest program counts with its tests; any other entry of CTest counts as one. A program that
failed without a failed test in its results (it crashed, or ran out of time) counts as one failure
more, so that no failure is lost.

The last line printed is "N passed, N failed". The exit status is 0 where at least one test passed
and none failed.
"""
import json
import os
import sys
import xml.etree.ElementTree as ElementTree


def google_test_counts(path):
    """Returns (passed, failed, skipped) of a GoogleTest result file, or None where it is unreadable."""
    try:
        with open(path, encoding="utf-8") as file:
            result = json.load(file)
    except (OSError, ValueError):
        return None
    passed = failed = skipped = 0
    for suite in result.get("testsuites", []):
        for test in suite.get("testsuite", []):
            if test.get("status") == "NOTRUN":
                continue
            if test.get("failures"):
                failed += 1
            elif test.get("result") == "SKIPPED":
                skipped += 1
            else:
                passed += 1
    return passed, failed, skipped


def entry_passed(entry):
    return entry.get("status") == "run" and entry.find("failure") is None


def count(folder):
    """Returns two triples (passed, failed, skipped): of GoogleTest tests and of other entries."""
    google = [0, 0, 0]
    other = [0, 0, 0]
    entries = ElementTree.parse(os.path.join(folder, "ctest.xml")).getroot().iter("testcase")
    for entry in entries:
        counts = google_test_counts(os.path.join(folder, entry.get("name") + ".json"))
        if counts is not None:
            for i in range(3):
                google[i] += counts[i]
            if not entry_passed(entry) and counts[1] == 0:
                google[1] += 1
        elif entry.find("skipped") is not None or entry.get("status") in ("notrun", "disabled"):
            # CTest reports a program that is not there as "not run": that is a failure.
            if entry.get("status") == "disabled":
                other[2] += 1
            else:
                other[1] += 1
        else:
            other[0 if entry_passed(entry) else 1] += 1
    return google, other


def main(folder):
    try:
        google, other = count(folder)
    except (OSError, ElementTree.ParseError) as error:
        print(f"no test results: {error}")
        print("0 passed, 1 failed")
        return 1
    print(f"GoogleTest: {google[0]} passed, {google[1]} failed, {google[2]} skipped; "
          f"examples and other checks: {other[0]} passed, {other[1]} failed, {other[2]} skipped")
    passed = google[0] + other[0]
    failed = google[1] + other[1]
    print(f"{passed} passed, {failed} failed")
    return 0 if passed > 0 and failed == 0 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
