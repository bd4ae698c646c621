# SPDX-License-Identifier: MIT
"""Makes a table of what llvm-cov exports, and fails below the thresholds.

A place counts once however many programs and template instances it is in, and is reached when one of them reaches it. What
cannot be reached stands in scripts/coverage-exceptions.toml; it counts as reached, and is printed with its reason.
"""

import argparse
import json
import sys
import tomllib
from collections import defaultdict
from pathlib import Path

FOLDERS = ("driver", "symbolic", "aglink")
KINDS = ("line", "branch", "condition")
REQUIRED = {"line": 100.0, "branch": 98.0, "condition": 95.0}


class Places:
    """Of one kind: (file, line, what) -> reached or not."""

    def __init__(self):
        self.reached = defaultdict(bool)

    def add(self, place, reached):
        self.reached[place] = self.reached[place] or reached

    def of(self, file):
        return {place: reached for place, reached in self.reached.items() if place[0] == file}


def lines_of(segments):
    """line -> its largest count, of the lines that have code: a region's count holds until the next segment."""
    counts, active, active_from = {}, None, None
    for line, _, count, has_count, is_entry, is_gap in segments:
        if active is not None:
            for between in range(active_from + 1, line):
                counts[between] = max(counts.get(between, 0), active)
            if is_entry and not is_gap and has_count:
                counts[line] = max(counts.get(line, 0), count)
            elif line not in counts:
                counts[line] = active
        elif has_count and is_entry and not is_gap:
            counts[line] = max(counts.get(line, 0), count)
        active = count if has_count and not is_gap else None
        active_from = line
    return counts


def gather(root, data):
    """The places of the three folders. Branches and conditions are per function there, lines per file."""
    places = {kind: Places() for kind in KINDS}
    for entry in data["files"]:
        file = relative(root, entry["filename"])
        if file is None:
            continue
        for line, count in lines_of(entry["segments"]).items():
            places["line"].add((file, line, ""), count > 0)
    for function in data["functions"]:
        names = function["filenames"]
        for line, column, _, _, taken, not_taken, file_id, *_ in function["branches"]:
            file = relative(root, names[file_id])
            if file is not None:
                places["branch"].add((file, line, f"true at column {column}"), taken > 0)
                places["branch"].add((file, line, f"false at column {column}"), not_taken > 0)
        for line, column, _, _, file_id, _, conditions in function.get("mcdc_records", ()):
            file = relative(root, names[0])
            if file is not None:
                for number, covered in enumerate(conditions):
                    places["condition"].add((file, line, f"condition {number + 1} of the one at column {column}"), covered)
    return places


def relative(root, name):
    path = Path(name)
    if not path.is_relative_to(root):
        return None
    file = str(path.relative_to(root))
    # A table's rows (.def) are no code of their own: they count where they are used.
    return file if file.split("/")[0] in FOLDERS and path.suffix in (".cpp", ".h") else None


def read_exceptions(path):
    with open(path, "rb") as file:
        entries = tomllib.load(file).get("exception", [])
    for entry in entries:
        if entry.get("kind") not in KINDS or not all(entry.get(key, "").strip() for key in ("file", "code", "why")):
            raise ValueError(f"each exception needs kind ({', '.join(KINDS)}), file, code and why: {entry}")
    return entries


def apply_exceptions(root, places, entries):
    """Counts as reached what the entries name; returns (entry, places) for each."""
    used = []
    for entry in entries:
        file = root / entry["file"]
        source = file.read_text().split("\n") if file.exists() else []
        matching = [
            place
            for place, reached in places[entry["kind"]].reached.items()
            if not reached and place[0] == entry["file"] and source[place[1] - 1].strip() == entry["code"]
            and entry.get("what", "") in place[2]
        ]
        used.append((entry, matching))
    for entry, matching in used:
        for place in matching:
            places[entry["kind"]].reached[place] = True
    return used


def percent(reached):
    return 100.0 if not reached else 100 * sum(reached.values()) / len(reached)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", type=Path)
    parser.add_argument("export", type=Path)
    parser.add_argument("--only", default=None)
    arguments = parser.parse_args()
    root = arguments.root
    places = gather(root, json.loads(arguments.export.read_text())["data"][0])
    try:
        used = apply_exceptions(root, places, read_exceptions(root / "scripts" / "coverage-exceptions.toml"))
    except (OSError, ValueError, KeyError) as error:
        print(f"coverage: scripts/coverage-exceptions.toml: {error}", file=sys.stderr)
        return 2

    files = sorted({place[0] for place in places["line"].reached})
    if arguments.only is not None:
        files = [file for file in files if file == arguments.only]
    print(f"{'':32}{'lines':>18}{'branches':>18}{'conditions':>18}")
    for file in files:
        row = []
        for kind in KINDS:
            reached = places[kind].of(file)
            row.append(f"{sum(reached.values())}/{len(reached)} {percent(reached):6.1f} %" if reached else "")
        print(f"{file:32}{row[0]:>18}{row[1]:>18}{row[2]:>18}")
    for kind in KINDS:
        for file in files:
            source = (root / file).read_text().split("\n")
            for place, reached in sorted(places[kind].of(file).items()):
                if not reached:
                    print(f"not reached: {kind} {file}:{place[1]} {place[2]}: {source[place[1] - 1].strip()}")
    for entry, matching in used:
        if matching:
            print(f"exception: {entry['kind']} {entry['file']}:{matching[0][1]} {entry['code']}: {entry['why']}")
    if arguments.only is not None:
        return 0

    stale = [entry for entry, matching in used if not matching]
    for entry in stale:
        print(f"coverage: scripts/coverage-exceptions.toml: the exception for {entry['kind']} {entry['file']}, "
              f"{entry['code']!r}, matches nothing that is not reached; take it out", file=sys.stderr)
    total = {kind: percent(places[kind].reached) for kind in KINDS}
    print(f"coverage: lines {total['line']:.1f} %, branches {total['branch']:.1f} %, conditions {total['condition']:.1f} % "
          f"({sum(len(matching) for _, matching in used)} exceptions)")
    below = any(total[kind] < REQUIRED[kind] for kind in KINDS)
    return 1 if below or stale else 0


if __name__ == "__main__":
    sys.exit(main())
