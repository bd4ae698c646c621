# SPDX-License-Identifier: MIT
"""Runs the bench programs and collects their figures, one dictionary a row."""
import concurrent.futures
import glob
import json
import os
import shutil
import subprocess

import callgrind

# The C library's plain 16-byte forms of memcpy and its kin: no "rep" instruction that counts once a byte, the
# same figures on every x86-64 processor, and registers as wide as the panel's.
TUNABLES = ("glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX512BW,-AVX2,-AVX,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM:"
            "glibc.cpu.x86_rep_movsb_threshold=1000000000:glibc.cpu.x86_rep_stosb_threshold=1000000000")

# Rows whose costs are kept by function and source file, for the pictures.
DETAILED = ("poll-1-names-40", "poll-8-names-40", "poll-31-names-40", "read-int-2000-from-0", "write-int-2000")


class Failed(Exception):
    """One line for the user."""


class Bench:
    def __init__(self, build, driver=None):
        self.build = build
        self.driver = driver or os.path.join(build, "libostravel.so")
        self.null_library = os.path.join(build, "bench", "libAGLink40_x64.so")
        self.workload = os.path.join(build, "bench_workload")
        self.scratch = os.path.join(build, "bench", "callgrind")

    def cases(self):
        lines = self._run([self.workload, "--list"]).splitlines()
        keys = ("id", "group", "label", "units", "unit")
        rows = [dict(zip(keys, line.split("\t"))) for line in lines]
        for row in rows:
            row["units"] = int(row["units"])
        return rows

    def measure(self, rows):
        """Adds instructions, floor and allocations to the rows."""
        shutil.rmtree(self.scratch, ignore_errors=True)
        os.makedirs(self.scratch)
        # The longest first, so that none is left over at the end.
        order = sorted(rows, key=lambda row: -row["units"])
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for row, figures in zip(order, pool.map(self._count, order)):
                row.update(figures)

    def _count(self, row):
        out = os.path.join(self.scratch, row["id"])
        environment = dict(os.environ, GLIBC_TUNABLES=TUNABLES, LD_BIND_NOW="1")
        environment.pop("LD_PRELOAD", None)
        said = self._run(
            ["valgrind", "--quiet", "--fair-sched=yes", "--tool=callgrind", "--dump-line=yes",
             "--compress-strings=no", "--compress-pos=no", "--dump-after=bench_measured", "--callgrind-out-file=" + out,
             self.workload, self.driver, self.null_library, row["id"]], environment)
        _, twice, once, _, runs = said.split()
        runs = int(runs)
        dumps = [callgrind.read(f"{out}.{i}") for i in range(1, 7)]
        for dump in glob.glob(glob.escape(out) + "*"):
            os.remove(dump)
        # 1 and 4 end what was before, 2 and 5 a run, 3 and 6 one of twice the length.
        driver = self._own(callgrind.difference(dumps[2], dumps[1]))
        floor = self._own(callgrind.difference(dumps[5], dumps[4]))
        figures = {"instructions": per(sum(driver.values()), runs), "floor": per(sum(floor.values()), runs),
                   "allocations": per(int(twice) - int(once), runs)}
        if row["id"] in DETAILED:
            figures["costs"] = [[os.path.basename(where[0]), where[1], where[2], per(cost, runs)]
                                for where, cost in sorted(driver.items(), key=lambda item: (-item[1], item[0]))]
        return figures

    def _own(self, costs):
        """Without the library and the measuring program."""
        others = {os.path.basename(self.null_library), os.path.basename(self.workload)}
        return {where: cost for where, cost in costs.items() if os.path.basename(where[0]) not in others}

    def time(self, rows):
        """Adds ns and floor_ns to the rows."""
        out = os.path.join(self.build, "bench", "times.json")
        self._run([os.path.join(self.build, "bench_times"), self.driver, self.null_library,
                   "--benchmark_min_time=0.02", "--benchmark_out_format=json", "--benchmark_out=" + out])
        with open(out, encoding="utf-8") as file:
            times = {}
            for run in json.load(file)["benchmarks"]:
                # Rows of a fixed number of iterations have it behind their name.
                times["/".join(run["name"].split("/")[:2])] = run["cpu_time"]
        for row in rows:
            row["ns"] = round(times["driver/" + row["id"]], 1)
            row["floor_ns"] = round(times["floor/" + row["id"]], 1)

    @staticmethod
    def _run(command, environment=None):
        try:
            done = subprocess.run(command, env=environment, text=True, capture_output=True, check=False)
        except OSError as problem:
            raise Failed(f"{command[0]} cannot be run ({problem.strerror}); run: scripts/setup --bench") from problem
        if done.returncode != 0:
            last = (done.stderr.strip().splitlines() or ["no message"])[-1]
            raise Failed(f"{' '.join(command[-4:])} failed: {last}")
        return done.stdout


def per(total, runs):
    """An integer where the runs cost the same, else rounded up to hundredths."""
    return total // runs if total % runs == 0 else -(-total * 100 // runs) / 100
