#!/usr/bin/env python3
"""Tests of performance_page.py: what it makes of a made-up run."""
import json
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import performance_page  # noqa: E402


def entry(name, ns, **more):
    return {"name": name, "run_type": "iteration", "items_per_second": 1e9 / ns, "cpu_time": ns,
            "time_unit": "ns", "iterations": 3, **more}


def made_up():
    rows = []
    for n in (1000, 10000, 100000):
        rows += [entry(f"length/ours/{n}", 1.0), entry(f"length/boost/{n}", 3.0),
                 entry(f"length/geos/{n}", 5.0), entry(f"length/plain/{n}", 2.0),
                 entry(f"containment/ours/{n}", 30.0), entry(f"containment/plain/{n}/iterations:1", 5.0 * n),
                 entry(f"containment/geos/{n}", 20.0)]
    rows.append(entry("adversary_comb_segment/ours/64", 30.0))
    rows.append(entry("adversary_comb_segment/plain/64", 10.0))
    rows.append(entry("small_length/ours/8", 1.0))
    rows.append(entry("small_length/plain/8", 1.0))
    rows.append(entry("memory/ours/1000", 1.0, all=123.4))
    rows.append({"name": "length/cgal/1000", "run_type": "iteration", "error_occurred": True,
                 "error_message": "disagrees"})
    rows.append(entry("firstArea/20000", 7.0))
    return {"context": {"num_cpus": 2, "mhz_per_cpu": 2500, "date": "2026-11-21T07:00:00", "caches": []},
            "benchmarks": rows}


class PerformancePageTest(unittest.TestCase):
    def setUp(self):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "one.json"), "w", encoding="utf-8") as file:
                json.dump(made_up(), file)
            self.results = performance_page.read(folder)

    def test_the_median_of_repeated_runs_stands(self):
        report = made_up()
        report["benchmarks"] = [entry("length/ours/64", ns) for ns in (9.0, 1.0, 2.0)]
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "one.json"), "w", encoding="utf-8") as file:
                json.dump(report, file)
            results = performance_page.read(folder)
        self.assertAlmostEqual(results.time("length", "ours", 64), 2.0)

    def test_a_benchmark_of_another_name_is_passed_over(self):
        self.assertIsNone(performance_page.split_name("firstArea/20000"))
        self.assertEqual(performance_page.split_name("a/b/64/iterations:1"), ("a", "b", 64))

    def test_times_without_a_count_of_items_are_those_of_the_round(self):
        self.assertEqual(performance_page.nanoseconds({"cpu_time": 2.0, "time_unit": "us"}), 2000.0)

    def test_the_best_peer_is_neither_ours_nor_the_plain_scan(self):
        self.assertEqual(self.results.best_peer("length", 1000)[1], "boost")

    def test_growth_is_the_slope_of_the_logarithms(self):
        rows = self.results.parties("containment")
        self.assertAlmostEqual(performance_page.growth(rows["plain"]), 1.0)
        self.assertAlmostEqual(performance_page.growth(rows["ours"]), 0.0)
        self.assertIsNone(performance_page.growth({1000: 1.0}))

    def test_every_size_at_which_a_peer_is_faster_is_told(self):
        found = [(key, n) for key, n, *_ in performance_page.misses(self.results)]
        self.assertEqual(found, [("containment", 1000), ("containment", 10000), ("containment", 100000)])

    def test_a_target_that_is_missed_says_no(self):
        text = "\n".join(performance_page.targets_section(self.results))
        self.assertIn("| 16,667 | 1000 | yes |", text)
        self.results.times["containment"]["ours"][100000] = 1e6
        text = "\n".join(performance_page.targets_section(self.results))
        self.assertIn("**no**", text)

    def test_a_hard_shape_above_twice_the_plain_scan_stands_out(self):
        self.assertIn("| segment | **3** |", performance_page.adversary_section(self.results))

    def test_a_workload_has_a_row_for_each_size_and_a_column_for_each_party(self):
        lines = performance_page.workload_section(self.results, "length")
        self.assertIn("| n, time / point | **gxshape** | Boost.Geometry | GEOS | plain scan |", lines)
        self.assertIn("| 1,000 | 1 ns | 3 ns | 5 ns | 2 ns |", lines)
        self.assertIn("| growth | +0.00 | +0.00 | +0.00 | +0.00 |", lines)

    def test_a_question_without_a_title_shows_its_ratio_to_the_best_peer(self):
        self.results.times["offset"] = {"ours": {8: 2.0, 64: 4.0, 100: 1.0}, "geos": {8: 1.0, 64: 8.0},
                                        "boost": {64: 10.0}}
        self.results.times["alone"] = {"ours": {8: 2.0}}
        self.results.times["union"] = {"ours": {20: 2.0}, "geos": {20: 8.0}}
        lines = performance_page.ratios_section(self.results)
        self.assertEqual(lines[0], "| best peer / ours, n = | 8 | 64 |")
        self.assertEqual(lines[2:5], ["| offset | **0.5** | 2 |", "", "| best peer / ours, n = | 20 |"])
        self.assertEqual(lines[6:], ["| union | 4 |", ""])

    def test_the_page_holds_tables_memory_and_what_was_skipped(self):
        text = performance_page.page(self.results)
        self.assertIn("| [Length](#length) | 1 ns / point | +0.00 | Boost.Geometry | 3 ns | 3 | 2 |", text)
        self.assertIn("123.4", text)
        self.assertIn("`length/cgal/1000`: disagrees", text)

    def test_times_are_told_in_units_that_fit(self):
        self.assertEqual([performance_page.time_text(t) for t in (0.5, 1500.0, 2.5e6, 3e9, None)],
                         ["0.5 ns", "1.5 µs", "2.5 ms", "3 s", ""])


if __name__ == "__main__":
    unittest.main()
