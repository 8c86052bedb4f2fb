#!/usr/bin/env python3
"""The tool gxshape from outside: what it prints, what it ends with, what a partner in a pipe sees.

    tests/tool/tool_test.py build/release/bin/gxshape
"""
import json
import os
import pty
import random
import re
import shlex
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from session import FILES, HAS_CAIRO, SOURCE, TOOL, Session


class ToolTest(Session):
    # ---- Answers ----------------------------------------------------------------------------------------

    def test_measures_as_a_table_by_default(self):
        self.expect(["measure", "parts.wkt"],
                    "id  points  holes  area  length  centre_x  centre_y  box_x_min  box_y_min  box_x_max  box_y_max\n"
                    " 1       8      1  1100     180   19.0909        15          0          0         40         30\n"
                    " 2       3      0     6      12   51.3333         1         50          0         54          3\n")

    def test_measures_as_json_with_all_digits(self):
        self.expect(["measure", "-o", "jsonl"],
                    '{"id":1,"points":8,"holes":1,"area":1100,"length":180,"centre":[19.09090909090909,15],"box":[0,0,40,30]}\n'
                    '{"id":2,"points":3,"holes":0,"area":6,"length":12,"centre":[51.333333333333336,1],"box":[50,0,54,3]}\n',
                    text=FILES["parts.wkt"])

    def test_descriptors_as_csv(self):
        self.expect(["describe", "-o", "csv", "--only", "circularity,solidity,elongation,euler_number", "parts.wkt"],
                    "id,circularity,solidity,elongation,euler_number,status\n"
                    "1,0.7693696294505615,0.9166666666666666,0.25,0,\n"
                    "2,0.5235987755982988,1,0.25,1,\n")

    def test_where_a_point_lies(self):
        self.expect(["inside", "--at", "30,15", "-o", "jsonl", "parts.wkt"],
                    '{"id":1,"at":[30,15],"state":"outside","signed_distance":5}\n'
                    '{"id":2,"at":[30,15],"state":"outside","signed_distance":23.323807579381203}\n')
        code, out, _ = self.run_tool("inside", "--at", "-5,12", "-o", "jsonl", "--only", "state", "parts.wkt")
        self.assertEqual((code, out.count("outside")), (0, 2))

    def test_the_nearest_place(self):
        self.expect(["closest", "--at", "30,12", "-o", "jsonl", "--limit", "1", "parts.wkt"],
                    '{"id":1,"at":[30,12],"distance":2,"nearest":{"ring":0,"edge":1,"t":0.5,"point":[30,10]}}\n')

    def test_distance_and_crossings(self):
        self.expect(["distance", "--with", "bow.wkt", "-o", "jsonl", "--only", "distance", "parts.wkt"],
                    '{"id":1,"distance":0}\n{"id":2,"distance":44}\n')
        self.expect(["intersect", "--line", "-1,5,60,5", "-o", "jsonl", "--only", "intersects,count", "parts.wkt"],
                    '{"id":1,"intersects":true,"count":2}\n{"id":2,"intersects":false,"count":0}\n')

    def test_problems_with_their_place(self):
        self.expect(["check", "-o", "jsonl", "bow.wkt"],
                    '{"id":1,"valid":false,"problems":[{"kind":"crossing","point":[2,2],"edges":[0,2],"rings":[-1,-1],'
                    '"sentence":"edges 0 and 2 of the outline cross at (2, 2)"}]}\n', status=1)
        self.expect(["check", "-o", "jsonl", "--only", "valid", "parts.wkt"], '{"id":1,"valid":true}\n{"id":2,"valid":true}\n')

    def test_holes_that_no_region_may_have_are_told_not_refused(self):
        code, out, _ = self.run_tool("check", "-o", "jsonl",
                                     text="POLYGON ((0 0, 4 0, 4 4, 0 4), (9 9, 8 9, 8 8))\n"
                                          "POLYGON ((0 0, 4 0, 4 4, 0 4), (2 2, 6 2, 6 3, 2 3))\n")
        kinds = [[p["kind"] for p in json.loads(line)["problems"]] for line in out.splitlines()]
        self.assertEqual((code, kinds[0]), (1, ["hole_outside"]))
        self.assertEqual(set(kinds[1]), {"crossing"})

    def test_a_fitted_circle(self):
        code, out, _ = self.run_tool("fit", "-o", "jsonl", text="5,1\n-3,1\n1,5\n1,-3\n")
        answer = json.loads(out)
        self.assertEqual(code, 0)
        self.assertAlmostEqual(answer["radius"], 4, places=12)
        self.assertAlmostEqual(answer["centre"][0], 1, places=12)
        code, out, _ = self.run_tool("fit", "-o", "jsonl", text="0,0\n1,1\n2,2\n")
        self.assertEqual((code, json.loads(out)["error"]["code"]), (1, "bad_points"))

    def test_a_golden_outline(self):
        square = "POLYGON ((0 0, 10 0, 10 10, 0 10))\n"
        with open(os.path.join(self.folder.name, "golden.wkt"), "w", encoding="utf-8") as file:
            file.write("POLYGON ((0 0, 10 0, 10 12, 0 12))\n")
        arguments = ["compare", "--golden", "golden.wkt", "-o", "jsonl", "--only", "hausdorff_forward,hausdorff_back"]
        wanted = '{"id":1,"hausdorff_forward":2,"hausdorff_back":2,"within":%s}\n'
        self.expect(arguments + ["--max", "2"], wanted % "true", text=square)
        self.expect(arguments + ["--max", "1.9"], wanted % "false", status=1, text=square)

    # ---- Shapes -----------------------------------------------------------------------------------------

    def test_shapes_come_out_in_the_format_that_they_came_in(self):
        self.expect(["repair", "--rule", "even-odd", "bow.wkt"], "MULTIPOLYGON (((0 0, 2 2, 0 3, 0 0)), ((2 2, 6 0, 6 6, 2 2)))\n")
        self.expect(["union", "bars.wkt"],
                    "POLYGON ((0 1, 1 1, 1 0, 2 0, 2 1, 3 1, 3 2, 2 2, 2 3, 1 3, 1 2, 0 2, 0 1))\n")
        self.expect(["offset", "--by", "1", "--join", "mitre"], "POLYGON ((-1 -1, 3 -1, 3 3, -1 3, -1 -1))\n",
                    text="POLYGON ((0 0, 2 0, 2 2, 0 2, 0 0))\n")
        self.expect(["convert", "-o", "jsonl", "--limit", "1", "bow.wkt"],
                    '{"id":1,"type":"region","rings":[[[0,0],[0,3],[6,0],[6,6]]]}\n')
        self.expect(["clip", "--box", "0,0,2,2", "-o", "jsonl"], '{"id":"a","type":"region","rings":[[[0,0],[2,0],[2,2],[0,2]]]}\n',
                    text='{"id":"a","points":[[-1,-1],[3,-1],[3,3],[-1,3]]}\n')
        self.expect(["hull", "bow.wkt"], "POLYGON ((0 0, 6 0, 6 6, 0 3, 0 0))\n")
        self.expect(["simplify", "--tolerance", "0.1"], "LINESTRING (0 0, 4 0)\n", text="LINESTRING (0 0, 1 0.05, 2 0, 4 0)\n")

    def test_the_report_of_a_repair(self):
        code, out, _ = self.run_tool("repair", "--report", "-o", "jsonl", "--only", "area_after,regions", "bow.wkt")
        self.assertEqual((code, out), (0, '{"id":1,"area_after":15,"regions":2}\n'))

    def test_what_a_file_holds(self):
        self.expect(["info", "parts.wkt"],
                    "parts.wkt: wkt, 2 records (2 regions, 0 sets, 0 open), 1 hole, 11 points, box 0 0 54 30\n")

        self.expect(["info"], "(standard input): wkt, 2 records (0 regions, 0 sets, 1 open, 1 of points), 0 holes, 4 points, box 0 0 3 4\n",
                    text="MULTIPOINT (1 2, 3 4)\nLINESTRING (0 0, 1 1)\n")

    def test_every_format_out_and_in_again(self):
        _, wanted, _ = self.run_tool("measure", "-o", "jsonl", "parts.wkt")
        for name in ["wkt", "wkb", "geojson", "jsonl", "csv", "ragged", "npz", "gxa"]:
            path = os.path.join(self.folder.name, "converted")
            self.expect(["convert", "-o", name, "--to", path, "parts.wkt"], "")
            self.expect(["measure", "-o", "jsonl", path], wanted)
            self.assertFalse([f for f in os.listdir(self.folder.name) if ".part" in f])

    # ---- Broken records ---------------------------------------------------------------------------------

    BROKEN = "POINT (1 x)\nPOLYGON ((0 0, 2 0, 0 2))\n"

    def test_a_broken_record_keeps_its_place(self):
        said = self.expect(["measure", "-o", "jsonl", "--only", "area"],
                           '{"id":1,"error":{"code":"bad_number","number":0,"message":"number expected, found \'x\'"}}\n'
                           '{"id":2,"area":2}\n', status=1, text=self.BROKEN)
        self.assertEqual(said, "gxshape: (standard input): record 1, byte 9: number expected, found 'x'\n")
        self.expect(["measure", "-o", "csv", "--only", "area"], "id,area,status\n1,,bad_number\n2,2,\n", status=1, text=self.BROKEN)
        self.expect(["convert"], "POLYGON EMPTY\nPOLYGON ((0 0, 2 0, 0 2, 0 0))\n", status=1, text=self.BROKEN)

    def test_a_broken_record_skipped_or_the_last(self):
        self.expect(["measure", "-o", "jsonl", "--only", "area", "--on-error", "skip"], '{"id":2,"area":2}\n', status=1, text=self.BROKEN)
        self.expect(["measure", "-o", "jsonl", "--only", "area", "--on-error", "fail"], "", status=1, text=self.BROKEN)

    def test_errors_as_lines_of_json(self):
        said = self.expect(["measure", "-o", "jsonl", "--only", "area", "--on-error", "skip", "--log", "jsonl"], '{"id":2,"area":2}\n',
                           status=1, text=self.BROKEN)
        self.assertEqual(said, '{"level":"error","file":"-","record":1,"byte":9,"code":"bad_number",'
                               '"message":"number expected, found \'x\'"}\n')

    def test_many_errors_are_told_ten_times_and_counted(self):
        _, _, said = self.run_tool("measure", "-o", "jsonl", text="POINT (x)\n" * 25)
        self.assertEqual((len(said.splitlines()), said.splitlines()[-1]), (11, "gxshape: 15 more records failed"))

    # ---- Selecting ----------------------------------------------------------------------------------------

    def test_records_by_number_and_by_measure(self):
        only = ["-o", "jsonl", "--only", "area", "parts.wkt"]
        self.expect(["measure", "--select", "area>=10 and holes=1", *only], '{"id":1,"area":1100}\n')
        self.expect(["measure", "--select", "centre_x>50", *only], '{"id":2,"area":6}\n')
        self.expect(["measure", "--skip", "1", *only], '{"id":2,"area":6}\n')
        self.expect(["measure", "--limit", "1", *only], '{"id":1,"area":1100}\n')
        self.expect(["convert", "--select", "area<10", "parts.wkt"], "POLYGON ((50 0, 54 0, 50 3, 50 0))\n")

    def test_ids_are_kept_letter_by_letter(self):
        lines = '{"id":"007","rings":[]}\n{"id":9007199254740992,"rings":[]}\n{"id":"é\\n","rings":[]}\n'
        _, out, _ = self.run_tool("measure", "-o", "jsonl", "--only", "area", text=lines)
        self.assertEqual([json.loads(line)["id"] for line in out.splitlines()], ["007", 9007199254740992, "é\n"])
        feature = '{"type":"Feature","properties":{"name":"x"},"geometry":null}'
        self.expect(["measure", "--id", "name", "-o", "jsonl", "--only", "area"], '{"id":"x","area":0,"status":"empty"}\n', text=feature)

    def test_degrees_change_the_name_too(self):
        self.expect(["describe", "--degrees", "-o", "csv", "--only", "orientation"], "id,orientation_degrees,status\n1,90,\n",
                    text="POLYGON ((0 0, 1 0, 1 4, 0 4))\n")

    def test_no_answer_is_null_an_empty_field_or_a_dash(self):
        line = "LINESTRING (0 0, 3 4)\n"
        self.expect(["measure", "-o", "jsonl", "--only", "area,length"], '{"id":1,"area":null,"length":5,"status":"not_closed"}\n', text=line)
        self.expect(["measure", "-o", "csv", "--only", "area,length"], "id,area,length,status\n1,,5,not_closed\n", text=line)
        self.expect(["measure", "--only", "area,length"], "id  area  length\n 1     -       5\n", text=line)

    # ---- Contracts ------------------------------------------------------------------------------------------

    def lines_of_many(self):
        numbers = random.Random(5)
        lines = []
        for i in range(20000):
            x, y = numbers.uniform(-100, 100), numbers.uniform(-100, 100)
            lines.append(f"POLYGON (({x} {y}, {x + 3} {y}, {x} {y + 2}))" if i % 997 else "POLYGON ((nonsense")
        return "\n".join(lines) + "\n"

    def test_jobs_change_neither_answers_nor_errors(self):
        text = self.lines_of_many()
        one = self.run_tool("measure", "-o", "jsonl", "-j", "1", text=text)
        self.assertEqual(len(one[1].splitlines()), 20000)
        for jobs in ["2", "5"]:
            self.assertEqual(self.run_tool("measure", "-o", "jsonl", "-j", jobs, text=text), one)

    def test_stats_are_those_of_all_records(self):
        text = "".join(f"POLYGON ((0 0, {k} 0, {k} {k}, 0 {k}))\n" for k in (3, 1, 4, 2)) * 15000 + "LINESTRING (0 0, 90 0)\n"
        for jobs in ["1", "3"]:
            code, _, said = self.run_tool("measure", "--stats", "--only", "area,length", "-o", "csv", "-j", jobs, text=text)
            self.assertEqual((code, [line.split() for line in said.splitlines()]),
                             (0, [["count", "least", "mean", "greatest"], ["area", "60000", "1", "7.5", "16"],
                                  ["length", "60001", "4", "10.0013", "90"]]))
            _, _, said = self.run_tool("measure", "--time", "-q", "-o", "csv", "-j", jobs, text=text)
            self.assertRegex(said, r"^gxshape: 60,001 records in [\d.]+ s, [\d,]+/s\n$")

    def test_one_line_out_for_every_line_in(self):
        lines = ['{"id":1,"rings":[[[0,0],[1,0],[0,1]]]}', "", "nonsense", '{"rings":[]}', '{"id":"b","rings":7}']
        code, out, _ = self.run_tool("measure", "--lines", "--only", "area", text="\n".join(lines) + "\n")
        answers = [json.loads(line) for line in out.splitlines()]
        self.assertEqual((code, len(answers)), (0, 5))
        self.assertEqual(answers[0], {"id": 1, "area": 0.5})
        self.assertEqual([("error" in a, a.get("id")) for a in answers[1:]],
                         [(True, None), (True, None), (False, None), (True, "b")])
        self.assertEqual(self.run_tool("measure", "--lines", text=""), (0, "", ""))

    def test_a_partner_gets_its_answer_at_once(self):
        with subprocess.Popen([TOOL, "measure", "--lines", "--only", "area"], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as tool:
            signal.alarm(60)
            for size in range(1, 50):
                tool.stdin.write(f'{{"id":{size},"rings":[[[0,0],[{size},0],[0,2]]]}}\n'.encode())
                tool.stdin.flush()
                self.assertEqual(json.loads(tool.stdout.readline()), {"id": size, "area": size})
            signal.alarm(0)
            tool.stdin.close()
            self.assertEqual(tool.wait(60), 0)

    def test_a_reader_that_leaves_ends_it_silently(self):
        with tempfile.NamedTemporaryFile("w", suffix=".wkt") as file:
            file.write(self.lines_of_many() * 5)
            file.flush()
            done = subprocess.run(["bash", "-c", f'{shlex.quote(TOOL)} measure -q --on-error skip -o jsonl {file.name} 2>err | head -n 1; echo "${{PIPESTATUS[0]}}"; grep -v record err'],
                                  capture_output=True, cwd=self.folder.name, timeout=120, check=False)
        self.assertEqual(done.stdout.decode().splitlines()[1:], ["141"])

    def test_memory_does_not_grow_with_the_file(self):
        polygon = b"POLYGON ((0 0, 40 0, 40 30, 0 30, 0 0), (25 10, 35 10, 35 20, 25 20, 25 10))\n"
        tool = subprocess.Popen([TOOL, "measure", "-j", "2", "-o", "csv"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        for _ in range(100):
            tool.stdin.write(polygon * 10000)
        with open(f"/proc/{tool.pid}/status", encoding="utf-8") as status:
            peak = next(int(line.split()[1]) for line in status if line.startswith("VmHWM"))
        tool.stdin.close()
        self.assertEqual(tool.wait(120), 0)
        if "asan" not in TOOL and "tsan" not in TOOL:
            self.assertLess(peak, 64 * 1024)

    def test_progress_is_told_on_a_terminal_alone(self):
        square = "POLYGON ((0 0, 4 0, 4 4, 0 4))\n"
        path = os.path.join(self.folder.name, "long.wkt")
        with open(path, "w", encoding="utf-8") as file:
            file.write(square * 130000 + "POLYGON ((nonsense\n")
        cases = {"file": [path], "pipe": [], "quiet": ["-q", path], "lines": ["--lines", path, "-f", "wkt"], "dumb": [path],
                 "not a terminal": [path], "short": ["parts.wkt"]}
        runs = {}
        for name, arguments in cases.items():
            terminal, slave = pty.openpty() if name != "not a terminal" else os.pipe()
            tool = subprocess.Popen([TOOL, "measure", "-j", "1", *([] if name == "lines" else ["-o", "csv"]), *arguments],
                                    cwd=self.folder.name, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=slave,
                                    env={**os.environ, "TERM": "dumb" if name == "dumb" else "xterm"})
            os.close(slave)
            runs[name] = tool, terminal
        # Nobody takes the answers for more than a second, nor is the pipe full, so that the work is long for any machine.
        runs["pipe"][0].stdin.write(square.encode() * 20000)
        time.sleep(1.3)
        said = {}
        for name, (tool, terminal) in runs.items():
            with tool:
                out, _ = tool.communicate(square.encode() * 80000 if name == "pipe" else b"", timeout=120)
                said[name] = self.all_that_was_said(terminal)
                self.assertEqual(out.count(b"\n"), {"pipe": 100001, "short": 3, "lines": 130001}.get(name, 130002), name)
        wiped = "\r" + 60 * " " + "\r"
        told = wiped + f"gxshape: {path}: record 130001, byte {130000 * len(square) + 10}: number expected, found 'n'\n"
        self.assertRegex(said["file"], r"^(\r[1-9][\d,]* records  \d+ %  [1-9][\d,]*/s  \d+:\d\d left *)+\r {60}\rgxshape: ")
        self.assertIn(told, said["file"])
        self.assertRegex(said["pipe"], r"^(\r[1-9][\d,]* records  [1-9][\d,]*/s *)+\r {60}\r$")
        for name in ["quiet", "dumb", "not a terminal"]:
            self.assertEqual(said[name], told[len(wiped):], name)
        for name in ["lines", "short"]:
            self.assertEqual(said[name], "", name)

    @staticmethod
    def all_that_was_said(descriptor):
        """What is there to read; a terminal whose other side is closed ends with an error."""
        said = b""
        while True:
            try:
                more = os.read(descriptor, 65536)
            except OSError:
                more = b""
            if not more:
                os.close(descriptor)
                return said.decode().replace("\r\n", "\n")
            said += more

    # ---- Usage --------------------------------------------------------------------------------------------

    def test_a_wrong_command_line_is_told_with_what_was_meant(self):
        for arguments, wanted in [(["mesure"], "did you mean 'measure'"), (["measure", "--onyl", "area"], "did you mean '--only'"),
                                  (["measure", "--only", "aera"], "did you mean 'area'"), (["measure", "-j", "0"], "--jobs"),
                                  (["inside"], "--at"), (["repair", "--rule", "odd"], "--rule"), (["measure", "--select", "area ~ 3"], "--select"),
                                  (["measure", "-o", "wkt"], "--output"), (["convert", "-o", "table"], "--output"), (["offset"], "--by"),
                                  (["inside", "--at", "1"], "2 numbers"), (["clip"], "--box"), (["measure", "--format", "dxf"], "--format")]:
            code, out, said = self.run_tool(*arguments)
            self.assertEqual((code, out), (2, ""), arguments)
            self.assertIn(wanted, said)
            self.assertEqual(len(said.splitlines()), 1)
        code, out, said = self.run_tool()
        self.assertEqual((code, out), (2, ""))
        self.assertIn("usage: gxshape", said)

    def test_numbers_below_zero_in_every_spelling(self):
        needed = {"inside": ["--at", "0,0"], "closest": ["--at", "0,0"], "distance": ["--with", "bow.wkt"], "compare": ["--golden", "bow.wkt"],
                  "intersect": ["--line", "0,0,1,1"], "clip": ["--box", "0,0,1,1"], "offset": ["--by", "1"], "simplify": ["--tolerance", "1"]}
        good = {"--at", "--line", "--box", "--by", "--view"}
        wrong = {"--limit", "--skip", "--jobs", "--max-record", "--max-nesting", "--size"}
        numbers = {"X,Y": "-5,12", "X,Y,X,Y": "-1,-2,20,21", "D": "-0.5", "N": "-3"}
        seen = set()
        _, listed, _ = self.run_tool("--list")
        for command in [line.split(",")[1] for line in listed.splitlines() if line.startswith("command,")]:
            if command == "draw" and not HAS_CAIRO:
                continue
            _, text, _ = self.run_tool(command, "--help")
            for option, kind in re.findall(r"^  (?:-\w, )?(--[\w-]+) (\S+)", text, re.MULTILINE):
                if kind not in numbers:
                    continue
                seen.add(option)
                value = numbers[kind]
                others = [] if needed.get(command, [""])[0] == option else needed.get(command, [])
                wanted = self.run_tool(command, *others, f"{option}={value}", "parts.wkt")
                if option in good:
                    self.assertEqual(wanted[0], 0, (command, option, wanted))
                elif option in wrong:
                    self.assertEqual(wanted[0:2], (2, ""), (command, option, wanted))
                for spelling in [[option, value], [option, "--", value], [option, "--", *value.split(",")]]:
                    self.assertEqual(self.run_tool(command, *others, *spelling, "parts.wkt"), wanted, (command, spelling))
        self.assertEqual((good | wrong | {"--within", "--tolerance", "--max", "--step"}) - ({"--view", "--size"} if not HAS_CAIRO else set()), seen)

    def test_two_dashes_elsewhere_end_the_options(self):
        with open(os.path.join(self.folder.name, "-1.wkt"), "w", encoding="utf-8") as file:
            file.write("POLYGON ((0 0, 1 0, 0 1))\n")
        self.expect(["measure", "--only", "points", "-o", "csv", "--", "-1.wkt"], "id,points,status\n1,3,\n")
        self.expect(["inside", "-o", "jsonl", "--only", "state", "--at", "--", "-1", "2", "-q", "--", "-1.wkt"], '{"id":1,"state":"outside"}\n')
        self.expect(["inside", "--at", "-1,2", "--only", "state", "-o", "jsonl", "--", "-1.wkt"], '{"id":1,"state":"outside"}\n')
        for wrong in [["inside", "--at", "--"], ["inside", "--at", "--", "-1", "parts.wkt"], ["measure", "-q", "--", "--only"],
                      ["measure", "--stats", "--", "-2.wkt"]]:
            self.assertIn(self.run_tool(*wrong)[0], (2, 3), wrong)

    def test_files_that_cannot_be_read_or_written(self):
        for arguments in [["measure", "absent.wkt"], ["measure", "."], ["measure", "--to", "absent/x", "parts.wkt"],
                          ["compare", "--golden", "absent", "parts.wkt"]]:
            code, _, said = self.run_tool(*arguments)
            self.assertEqual(code, 3, arguments)
            self.assertIn("gxshape: ", said)
        for content in [b"\x1f\x8b\x08\x00", b"[1]", b"\x00\x01\x02", b"{\"type\":\"FeatureCollection\",\"features\":["]:
            self.assertEqual(self.run_tool("measure", text=content)[0], 3, content)
        self.assertEqual(self.run_tool("measure", "-o", "jsonl", text="")[0:2], (0, ""))

    def test_the_example_of_every_help_runs(self):
        _, listed, _ = self.run_tool("--list")
        commands = [line.split(",")[1] for line in listed.splitlines() if line.startswith("command,")]
        self.assertEqual(len(commands), 19)
        for command in commands:
            code, text, _ = self.run_tool(command, "--help")
            self.assertEqual(code, 0)
            example = next(line.split("e.g. ")[1] for line in text.splitlines() if "e.g. " in line)
            words = shlex.split(example)
            self.assertEqual(words[:2], ["gxshape", command])
            code, out, said = self.run_tool(*words[1:])
            self.assertEqual((code, bool(out)), (1 if command == "check" else 0, True), (example, said))

    def test_the_list_names_every_column(self):
        _, listed, _ = self.run_tool("--list")
        with open(os.path.join(SOURCE, "docs", "names.csv"), encoding="utf-8") as file:
            self.assertEqual(listed, file.read())
        rows = [line.split(",") for line in listed.splitlines()[1:]]
        self.assertGreaterEqual(len(rows), 60)
        measures = {row[1]: row[4].split() for row in rows if row[0] == "measure"}
        extra = {"inside": ["--at", "0,0"], "closest": ["--at", "0,0"], "distance": ["--with", "bow.wkt"],
                 "intersect": ["--line", "0,0,1,1"], "compare": ["--golden", "bow.wkt", "--max", "9", "--align", "rigid", "--all"], "repair": ["--report"],
                 "describe": ["--all"]}
        for command in ["measure", "describe", "inside", "closest", "distance", "intersect", "check", "compare", "repair", "fit", "form roundness", "form straightness",
                        "form profile", "form parallelism", "fit line"]:
            command, _, kind = command.partition(" ")
            given = ["--kind", kind, *{"profile": ["--golden", "bow.wkt", "--max", "9"], "parallelism": ["--datum", "bow.wkt"]}.get(kind, [])] if kind else []
            _, out, _ = self.run_tool(command, *given, *extra.get(command, []), "-o", "jsonl", "parts.wkt")
            for name in json.loads(out.splitlines()[0]):
                self.assertIn(name, measures)
                self.assertTrue({command, "all"} & set(measures[name]), (command, name))

    def test_the_sessions_in_the_docs_are_what_is_printed(self):
        wanted = self.sessions("README.md") + self.sessions("docs/tool.md")
        self.assertGreaterEqual(len(wanted), 10)
        path = os.path.dirname(TOOL) + os.pathsep + os.environ["PATH"]
        for command, output in wanted:
            done = subprocess.run(["bash", "-c", command], cwd=self.folder.name, env={**os.environ, "PATH": path},
                                  capture_output=True, timeout=60, check=False)
            self.assertEqual(done.stdout.decode(), output, command)

    @staticmethod
    def sessions(name):
        """The commands behind "$ " in a file's code blocks that use the tool, and what they are said to print."""
        with open(os.path.join(SOURCE, name), encoding="utf-8") as file:
            blocks = file.read().split("```")[1::2]
        found = []
        for block in blocks:
            if "$ gxshape" not in block and "| gxshape" not in block:
                continue
            for part in block.strip("\n").split("$ ")[1:]:
                command, _, output = part.partition("\n")
                found.append((command, output if output.endswith("\n") or not output else output + "\n"))
        return found

    def test_man_page_and_completion_know_every_option(self):
        _, man, _ = self.run_tool("--man")
        _, completion, _ = self.run_tool("--completion")
        for word in ["measure", "simplify", "golden", "lines"]:
            self.assertIn(word, man)
            self.assertIn(word, completion)
        self.assertEqual(subprocess.run(["bash", "-n"], input=completion.encode(), check=False).returncode, 0)


if __name__ == "__main__":
    unittest.main()
