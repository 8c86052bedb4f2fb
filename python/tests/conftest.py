"""Hypothesis without a clock, repeatable; and the results as tools/test_totals.py counts them."""
import json
import os

from hypothesis import settings

settings.register_profile("reduced", deadline=None, derandomize=True, max_examples=40, database=None)
settings.register_profile("soak", deadline=None, max_examples=3000, database=None, print_blob=True)
settings.load_profile("soak" if os.environ.get("GXSHAPE_SOAK") == "1" else "reduced")

_results = {}


def pytest_runtest_logreport(report):
    if report.failed:
        _results[report.nodeid] = {"status": "RUN", "result": "COMPLETED", "failures": [{"failure": str(report.when)}]}
    elif report.skipped:
        _results.setdefault(report.nodeid, {"status": "RUN", "result": "SKIPPED"})
    elif report.when == "call":
        _results.setdefault(report.nodeid, {"status": "RUN", "result": "COMPLETED"})


def pytest_sessionfinish():
    path = os.environ.get("GXSHAPE_TEST_RESULTS")
    if path:
        with open(path, "w", encoding="utf-8") as file:
            json.dump({"testsuites": [{"testsuite": list(_results.values())}]}, file)
