# SPDX-License-Identifier: MIT
"""The bench's sums: what is read from callgrind's dumps, and what budgets make of the figures.
Usage: sums_test.py FOLDER-OF-THE-BENCH"""
import json
import os
import subprocess
import sys
import tempfile
import unittest

FOLDER = sys.argv.pop(1)
sys.path.insert(0, FOLDER)
import budgets  # noqa: E402
import callgrind  # noqa: E402
import measure  # noqa: E402
import phases  # noqa: E402

DUMP = """# callgrind format
positions: line
events: Ir
summary: 1000

ob=/lib/driver.so
fl=filter.cpp
fn=poll
10 7
fi=vector.h
99 5
fe=filter.cpp
11 1
cob=/lib/libc.so
cfi=malloc.c
cfn=malloc
calls=3 0
11 600

ob=/lib/libc.so
fl=malloc.c
fn=malloc
0 40
fn=free
0 2
+3 2
"""


def row(identity, instructions=100, allocations=0, floor=10, units=1):
    return {"id": identity, "instructions": instructions, "allocations": allocations, "floor": floor, "units": units}


class Folder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def file(self, name, text):
        path = os.path.join(self.folder.name, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path


class Dumps(Folder):
    def test_self_costs_by_object_function_and_source_without_what_a_call_cost(self):
        self.assertEqual(callgrind.read(self.file("dump", DUMP)), {
            ("/lib/driver.so", "poll", "filter.cpp"): 8,
            ("/lib/driver.so", "poll", "vector.h"): 5,
            ("/lib/libc.so", "malloc", "malloc.c"): 40,
            ("/lib/libc.so", "free", "malloc.c"): 4})

    def test_the_difference_of_two_runs(self):
        self.assertEqual(callgrind.difference({"a": 30, "b": 5, "c": 1}, {"a": 10, "b": 5, "d": 2}),
                         {"a": 20, "c": 1, "d": -2})

    def test_a_run_of_a_fraction_is_rounded_up(self):
        self.assertEqual(measure.per(40, 10), 4)
        self.assertEqual(measure.per(4001, 1000), 4.01)


class Budgets(Folder):
    def budgets(self, limits=(), **rows):
        return self.file("budgets.json", json.dumps({"limits": list(limits), "rows": rows}))

    def test_a_row_within_its_budget_is_silent(self):
        path = self.budgets(poll={"instructions": 100, "allocations": 0})
        self.assertEqual(budgets.check([row("poll")], path, whole=True), [])

    def test_instructions_beyond_the_budget_are_told(self):
        path = self.budgets(poll={"instructions": 99, "allocations": 0})
        self.assertEqual(budgets.check([row("poll")], path, whole=True), ["poll: 100 instructions, at most 99"])

    def test_so_are_allocations(self):
        path = self.budgets(poll={"instructions": 100, "allocations": 0})
        self.assertEqual(budgets.check([row("poll", allocations=1)], path, whole=True),
                         ["poll: 1 allocations, at most 0"])

    def test_a_row_without_a_budget_and_a_budget_without_a_row_are_told(self):
        path = self.budgets(other={"instructions": 1, "allocations": 1})
        self.assertEqual(budgets.check([row("poll")], path, whole=True),
                         ["poll: no budget for its instructions; run: ./bench --tighten",
                          "poll: no budget for its allocations; run: ./bench --tighten",
                          "other: has a budget and was not measured"])

    def test_limits(self):
        rows = {r["id"]: r for r in (row("big", 2100, 4, 100, 10), row("small", 200))}
        for limit, expected in (({"growth": ["big", "small"]}, 10.5), ({"more": ["big", "small"]}, 1900),
                                ({"own": "big"}, 200), ({"own": ["big", "small"]}, 1810 / 9), ({"instructions": "big", "a": "unit"}, 210),
                                ({"allocations": "big"}, 4), ({"instructions": "missing"}, None)):
            self.assertEqual(budgets.figure(limit, rows), expected, limit)

    def test_a_limit_is_told_when_it_is_exceeded_and_only_then(self):
        both = {identity: {"instructions": 10000, "allocations": 9} for identity in ("big", "small")}
        measured = [row("big", 2100), row("small", 200)]
        path = self.budgets([{"what": "growth", "most": 10.5, "growth": ["big", "small"]}], **both)
        self.assertEqual(budgets.check(measured, path, whole=True), [])
        path = self.budgets([{"what": "growth", "most": 10.4, "growth": ["big", "small"]}], **both)
        self.assertEqual(budgets.check(measured, path, whole=True), ["growth: 10.5, at most 10.4"])

    def test_a_missed_goal_is_told_and_is_no_failure(self):
        path = self.budgets([{"what": "x", "most": 100, "goal": 99, "instructions": "poll"}],
                            poll={"instructions": 100, "allocations": 0})
        self.assertEqual(budgets.check([row("poll")], path, whole=True), [])
        self.assertEqual(list(budgets.missed_goals([row("poll")], path)), ["x: 100, the goal is 99"])
        self.assertEqual(list(budgets.missed_goals([row("poll", 99)], path)), [])

    def test_tighten_sets_three_per_cent_more_and_says_what_rose(self):
        path = self.budgets([{"what": "x", "most": 1, "own": "poll"}], poll={"instructions": 90, "allocations": 5})
        said = list(budgets.tighten([row("poll", 200, 2), row("new", 33.4, 0.2)], path))
        self.assertEqual(said, ["poll: instructions may rise from 90 to 206"])
        limits, rows = budgets.load(path)
        self.assertEqual(limits, [{"what": "x", "most": 1, "own": "poll"}])
        self.assertEqual(rows, {"poll": {"instructions": 206, "allocations": 2},
                                "new": {"instructions": 34, "allocations": 1}})

    def test_the_projects_budgets_can_be_read(self):
        limits, _ = budgets.load(os.path.join(FOLDER, "budgets.json"))
        self.assertGreater(len(limits), 10)


class Phases(unittest.TestCase):
    def test_the_source_tells_the_phase_also_of_what_was_inlined(self):
        split = phases.split([
            ["driver.so", "KORVALE_DRV_InputFilterEx", "/a/driver/inputfilter.cpp", 30],
            ["driver.so", "KORVALE_DRV_InputFilterEx", "/a/driver/valueconversion.cpp", 20],
            ["driver.so", "KORVALE_DRV_InputFilterEx", "/usr/include/c++/12/bits/stl_vector.h", 4],
            ["driver.so", "AGL_Symbolic_FreeHandle", "???", 6],
            ["libc.so.6", "_int_malloc", "malloc.c", 3],
            ["libc.so.6", "__memcpy_sse2", "memmove.S", 2],
            ["libc.so.6", "puts", "ioputs.c", 1]])
        self.assertEqual({name: cost for name, cost in split.items() if cost}, {
            "Input filter: steps, paths and records": 34, "Conversion and delivery": 20,
            "Forwarding of library calls": 6, "Allocation": 3, "Memory copies and comparisons": 2, "Others": 1})


class Pictures(Folder):
    def test_results_without_a_row_are_one_line_and_leave_the_page_alone(self):
        page = self.file("performance.md", "page")
        done = subprocess.run(
            [sys.executable, "-B", os.path.join(FOLDER, "pictures.py"),
             self.file("results.json", json.dumps({"rows": [row("poll")]})), self.folder.name],
            text=True, capture_output=True, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertIn("run: ./bench", done.stderr)
        with open(page, encoding="utf-8") as file:
            self.assertEqual(file.read(), "page")


class Command(Folder):
    def check(self, instructions):
        results = self.file("results.json", json.dumps({"rows": [row("poll", instructions)]}))
        path = self.file("budgets.json", json.dumps(
            {"limits": [], "rows": {"poll": {"instructions": 100, "allocations": 0}}}))
        return self.run_bench("--check", "--results", results, "--budgets", path)

    def run_bench(self, *arguments):
        return subprocess.run(
            [sys.executable, "-B", os.path.join(FOLDER, "bench.py"), "--from-results", "--build", self.folder.name,
             *arguments], text=True, capture_output=True, check=False)

    def test_the_check_passes_within_the_budget(self):
        done = self.check(100)
        self.assertEqual((done.returncode, done.stdout), (0, "bench: 1 rows, 0 budgets exceeded\n"))

    def test_it_fails_beyond_it_and_says_where(self):
        done = self.check(101)
        self.assertEqual((done.returncode, done.stdout),
                         (1, "poll: 101 instructions, at most 100\nbench: 1 rows, 1 budgets exceeded\n"))

    def test_budgets_that_cannot_be_read_are_one_line(self):
        results = self.file("results.json", json.dumps({"rows": [row("poll")]}))
        done = self.run_bench("--check", "--results", results, "--budgets", self.file("broken.json", "{"))
        self.assertEqual(done.returncode, 2)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertIn("cannot be read as budgets", done.stderr)


if __name__ == "__main__":
    unittest.main()
