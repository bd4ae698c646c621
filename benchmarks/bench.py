# SPDX-License-Identifier: MIT
"""What stands behind ./bench."""
import argparse
import json
import os
import sys

import budgets
import measure
import table


def arguments():
    parser = argparse.ArgumentParser(prog="bench")
    what = parser.add_mutually_exclusive_group()
    what.add_argument("--check", action="store_true", help="compare with the budgets; fails when one is exceeded")
    what.add_argument("--tighten", action="store_true", help="set the budgets to the figures and 3 % more")
    parser.add_argument("--only", metavar="TEXT", help="only rows whose id holds this text")
    parser.add_argument("--no-times", action="store_true", help="leave the nanoseconds out")
    parser.add_argument("--from-results", action="store_true", help="take the figures of the last run")
    parser.add_argument("--build", required=True, help="build folder")
    parser.add_argument("--driver", help="another build of the driver")
    parser.add_argument("--results", help="file that the figures are written to")
    parser.add_argument("--budgets", required=True, help="file of the budgets")
    return parser.parse_args()


def figures(options, results):
    if options.from_results:
        with open(results, encoding="utf-8") as file:
            return json.load(file)["rows"]
    bench = measure.Bench(options.build, options.driver)
    rows = [row for row in bench.cases() if not options.only or options.only in row["id"]]
    if not rows:
        raise measure.Failed(f"no row's id holds '{options.only}'")
    bench.measure(rows)
    if not (options.no_times or options.check or options.tighten):
        bench.time(rows)
    os.makedirs(os.path.dirname(results), exist_ok=True)
    with open(results + ".new", "w", encoding="utf-8") as file:
        json.dump({"rows": rows}, file, indent=1)
        file.write("\n")
    os.replace(results + ".new", results)
    return rows


def main():
    options = arguments()
    results = options.results or os.path.join(options.build, "results.json")
    rows = figures(options, results)
    if options.tighten:
        for line in budgets.tighten(rows, options.budgets):
            print(line)
        return 0
    if options.check:
        exceeded = budgets.check(rows, options.budgets, whole=not options.only)
        for line in exceeded + list(budgets.missed_goals(rows, options.budgets)):
            print(line)
        print(f"bench: {len(rows)} rows, {len(exceeded)} budgets exceeded")
        return 1 if exceeded else 0
    for line in table.lines(rows):
        print(line)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (measure.Failed, budgets.Broken) as problem:
        print(f"bench: {problem}", file=sys.stderr)
        sys.exit(2)
