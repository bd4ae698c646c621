# SPDX-License-Identifier: MIT
"""Changes the driver's code in small ways, one at a time, and runs the unit tests.

A change that does not compile does not count. One that no test notices is a survivor: it needs a test, or, when it cannot
make a difference, an entry in mutation/survivors.toml that says why. Fails when a survivor is not explained or less than
95 % are caught.
"""

import argparse
import json
import os
import queue
import random
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

from changes import changes_of
from survivors import Survivors
from workspace import FOLDERS, Build, Worker, precompiled

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutate"
RESULTS = WORK / "results.json"
COPIED = ("CMakeLists.txt", "cmake", "common", "scripts", *FOLDERS, "tests")
REQUIRED = 95.0  # percent
# A sample this small may well hold two survivors, so for it only the unexplained count.
SHORT_COUNT = 24
LONG_COUNT = 320


def parse():
    parser = argparse.ArgumentParser(prog="mutate", description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--short", action="store_true",
                        help=f"a sample of {SHORT_COUNT} changes, --in-place")
    parser.add_argument("--in-place", action="store_true",
                        help="with the build that ./coverage leaves instead of a copy of the sources, which stay as they are "
                             "all the same; leave them and that build alone meanwhile")
    parser.add_argument("--seed", type=int, default=1, metavar="N", help="which changes are chosen (default 1)")
    parser.add_argument("--count", type=int, metavar="N", help=f"how many, of those that compile (default {LONG_COUNT})")
    parser.add_argument("--only", metavar="FILE", help="choose among the changes of one file, e.g. driver/cmdqueue.cpp")
    parser.add_argument("--rerun-survivors", action="store_true", help="only what survived the last long run")
    parser.add_argument("--resume", action="store_true", help="take what an earlier long run has found as it is")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, metavar="N", help="changes at a time")
    parser.add_argument("--list", action="store_true", help="print the changes in the order of choice, and run nothing")
    arguments = parser.parse_args()
    for name, least in (("count", 1), ("jobs", 1)):
        value = getattr(arguments, name)
        if value is not None and value < least:
            parser.error(f"--{name} {value}: give a number from {least} on")
    return arguments


def fail(text):
    print(f"mutate: {text}", file=sys.stderr)
    sys.exit(2)


def snapshot():
    """A copy of the sources, so that a long run is about one state of them. Files that are equal keep their times."""
    target = WORK / "sources"
    wanted = set()
    for name in COPIED:
        top = ROOT / name
        for path in [top] if top.is_file() else sorted(top.rglob("*")):
            if not path.is_file() or "__pycache__" in path.parts:
                continue
            copy = target / path.relative_to(ROOT)
            wanted.add(copy)
            if not copy.exists() or copy.read_bytes() != path.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(path, copy)
    for copy in list(target.rglob("*")):
        if copy.is_file() and copy not in wanted:
            copy.unlink()
    return target


def all_changes(sources):
    found = []
    for folder in FOLDERS:
        for path in sorted((sources / folder).iterdir()):
            if path.suffix in (".cpp", ".h"):
                found += changes_of(f"{folder}/{path.name}", path.read_text())
    return found


def chosen(changes, arguments):
    if arguments.only is not None:
        wanted = arguments.only.removeprefix("./")
        changes = [change for change in changes if change.file == wanted]
        if not changes:
            fail(f"--only {arguments.only}: no such file in {', '.join(FOLDERS)}, or nothing in it to change")
    if arguments.rerun_survivors:
        if not RESULTS.exists():
            fail("there is no earlier run to take survivors from; run ./mutate first")
        survived = {tuple(entry["key"]) for entry in json.loads(RESULTS.read_text()) if entry["outcome"] == "survived"}
        return [change for change in changes if change.key() in survived]
    changes = sorted(changes, key=lambda change: (change.file, change.start, change.kind, change.after))
    random.Random(arguments.seed).shuffle(changes)
    return changes


def check_untouched(build, workers):
    """Each program, linked as for a change, passes without one: else all would count as caught."""
    for folder in FOLDERS:
        file = next(path for path in sorted((build.sources / folder).iterdir()) if path.suffix == ".cpp")
        name = f"{folder}/{file.name}"
        outcome, program = workers[0].try_change(name, file.read_text(), only_own=True)
        if outcome != "survived":
            fail(f"the unit tests fail without any change ({program or 'build'}: {outcome}); run ./coverage and see which")


def run(build, changes, count, jobs, report):
    """Tries changes in order until count of them have compiled; report takes each."""
    pending = queue.SimpleQueue()
    for change in changes:
        pending.put(change)
    lock = threading.Lock()
    started, done, errors = [0], [0], []
    sources = {change.file: (build.sources / change.file).read_text() for change in changes}

    def work(worker):
        while not errors:
            with lock:
                # As many under way as may still be needed: which ones count does not depend on who is faster.
                if started[0] >= count or pending.empty():
                    return
                started[0] += 1
                change = pending.get()
            try:
                outcome, program = worker.try_change(change.file, change.apply(sources[change.file]))
            except Exception as error:  # a thread's own would only be printed
                errors.append(error)
                return
            with lock:
                if outcome == "invalid":
                    started[0] -= 1
                done[0] += outcome != "invalid"
                report(done[0], change, outcome, program)

    headers = precompiled(build, WORK / "headers")
    workers = [Worker(build, WORK / f"worker{number}", headers) for number in range(jobs)]
    check_untouched(build, workers)
    threads = [threading.Thread(target=work, args=(worker,)) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if errors:
        raise errors[0]


class Results:
    """What became of each change. Those of a long run are kept in a file, so that one can be taken up again."""

    def __init__(self, file, earlier):
        self.file, self.entries = file, {}
        if earlier and file.exists():
            self.entries = {tuple(entry["key"]): entry for entry in json.loads(file.read_text())}

    def add(self, change, outcome, program):
        self.entries[change.key()] = {"key": change.key(), "kind": change.kind, "line": change.line, "outcome": outcome,
                                      "program": program}
        if self.file is not None:
            new = self.file.with_suffix(".new")
            new.write_text(json.dumps(list(self.entries.values()), indent=1) + "\n")
            new.replace(self.file)

    def forget_others(self, changes):
        """The code has changed since: what is no longer in it says nothing."""
        there = {change.key() for change in changes}
        self.entries = {key: entry for key, entry in self.entries.items() if key in there}

    def tried(self):
        return [entry for entry in self.entries.values() if entry["outcome"] != "invalid"]


def summarise(entries, survivors, short):
    """Prints the survivors and the line of figures; returns the exit code."""
    caught = [entry for entry in entries if entry["outcome"] != "survived"]
    explained = unexplained = 0
    for entry in entries:
        if entry["outcome"] != "survived":
            continue
        file, code, before, after, _ = entry["key"]
        reason = survivors.reason(entry["key"])
        explained += reason is not None
        unexplained += reason is None
        print(f"{file}:{entry['line']}: {entry['kind']}, {before!r} -> {after!r}, in: {code}")
        print(f"  {'equivalent: ' + reason if reason else 'NOT EXPLAINED: write a test, or say in mutation/survivors.toml why none can be'}")
    total = len(entries)
    if total == 0:
        print("mutation: nothing was tried")
        return 1
    percent = 100 * len(caught) / total
    print(f"mutation: {len(caught)} of {total} caught ({percent:.1f} %), {explained} explained as equivalent, "
          f"{unexplained} not explained")
    return 1 if unexplained or (not short and percent < REQUIRED) else 0


def main():
    arguments = parse()
    if arguments.short and (arguments.resume or arguments.rerun_survivors):
        fail("--short keeps no results, so there is nothing to resume or to run again; leave one of the two out")
    try:
        survivors = Survivors(Path(__file__).parent / "survivors.toml")
    except (ValueError, KeyError) as error:
        fail(f"mutation/survivors.toml: {error}")
    if arguments.list:
        for change in chosen(all_changes(ROOT), arguments):
            print(f"{change.file}:{change.line}: {change.text()}")
        return 0
    WORK.mkdir(parents=True, exist_ok=True)
    sources, folder = (ROOT, ROOT / "build" / "coverage") if arguments.short or arguments.in_place else (snapshot(), WORK / "build")
    if subprocess.run([ROOT / "scripts" / "build-measured", sources, folder], check=False).returncode != 0:
        return 1
    everything = all_changes(sources)
    for file, code, before, after, _ in survivors.stale(everything):
        print(f"mutation/survivors.toml: no longer in {file}: {before!r} -> {after!r} in: {code}; take the entry out")
    changes = chosen(everything, arguments)
    count = arguments.count or (SHORT_COUNT if arguments.short else LONG_COUNT)
    results = Results(None if arguments.short else RESULTS, arguments.resume or arguments.rerun_survivors)
    results.forget_others(everything)
    if arguments.rerun_survivors:
        count = len(changes)
    elif arguments.resume:
        changes = [change for change in changes if change.key() not in results.entries]
        count -= len(results.tried())
    begun = time.monotonic()

    def report(number, change, outcome, program):
        results.add(change, outcome, program)
        if outcome == "survived" or (outcome != "invalid" and number % 20 == 0):
            print(f"[{number}/{count}, {time.monotonic() - begun:.0f} s] {change.file}:{change.line}: {change.text()[:100]}: "
                  f"{outcome}{' by ' + program if program else ''}", flush=True)

    if count > 0:
        run(Build(sources, folder), changes, count, min(arguments.jobs, count), report)
    return summarise(results.tried(), survivors, arguments.short)


if __name__ == "__main__":
    sys.exit(main())
