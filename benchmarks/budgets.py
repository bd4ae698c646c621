# SPDX-License-Identifier: MIT
"""Budgets: of each row the instructions and allocations that it may take, and limits on figures that are made of
several. A file of them:

    {"limits": [{"what": "...", "most": 217, "instructions": "poll-31-names-40", "a": "unit"}, ...],
     "rows": {"poll-31-names-40": {"instructions": 6900, "allocations": 0}, ...}}

A limit's figure is one of
    {"instructions": ID} or {"allocations": ID}    of one run, or with "a": "unit" of one tag, element or row
    {"own": ID}                                    instructions beyond the floor, of one unit
    {"own": [ID, ID]}                              the same of one unit more: without what a whole poll costs
    {"growth": [ID, ID]}                           the first row's instructions over the second's
    {"more": [ID, ID]}                             the first row's instructions minus the second's
A limit's "goal", lower than its "most", is what is wished for: to miss it is told and is no failure.
"""
import json
import os

MARGIN = 1.03
FIGURES = ("instructions", "allocations")


class Broken(Exception):
    """One line for the user."""


def load(path):
    try:
        with open(path, encoding="utf-8") as file:
            held = json.load(file)
        return held["limits"], held["rows"]
    except (OSError, ValueError, KeyError) as problem:
        raise Broken(f"{path} cannot be read as budgets: {problem}") from problem


def own(row):
    return row["instructions"] - row["floor"]


def figure(limit, rows):
    """The limit's figure; None when a row that it needs was not measured."""
    def of(identity):
        return rows[identity]

    try:
        if "growth" in limit:
            above, below = (of(identity)["instructions"] for identity in limit["growth"])
            return above / below
        if "more" in limit:
            above, below = (of(identity)["instructions"] for identity in limit["more"])
            return above - below
        if isinstance(limit.get("own"), list):
            above, below = (of(identity) for identity in limit["own"])
            return (own(above) - own(below)) / (above["units"] - below["units"])
        if "own" in limit:
            row = of(limit["own"])
            return own(row) / row["units"]
        kind = next(kind for kind in FIGURES if kind in limit)
        row = of(limit[kind])
        return row[kind] / row["units"] if limit.get("a") == "unit" else row[kind]
    except KeyError:
        return None


def check(measured, path, whole):
    """One line for each budget that is exceeded. With `whole` a row that is missing counts as one, too."""
    limits, allowed = load(path)
    rows = {row["id"]: row for row in measured}
    lines = []
    for limit in limits:
        reached = figure(limit, rows)
        if reached is None:
            if whole:
                lines.append(f"{limit['what']}: not measured")
        elif reached > limit["most"]:
            lines.append(f"{limit['what']}: {reached:.4g}, at most {limit['most']}")
    for identity, row in rows.items():
        for kind in FIGURES:
            most = allowed.get(identity, {}).get(kind)
            if most is None:
                lines.append(f"{identity}: no budget for its {kind}; run: ./bench --tighten")
            elif row[kind] > most:
                lines.append(f"{identity}: {row[kind]} {kind}, at most {most}")
    if whole:
        lines += [f"{identity}: has a budget and was not measured" for identity in allowed if identity not in rows]
    return lines


def missed_goals(measured, path):
    """One line for each goal that is not reached."""
    limits, _ = load(path)
    rows = {row["id"]: row for row in measured}
    for limit in limits:
        reached = figure(limit, rows)
        if "goal" in limit and reached is not None and reached > limit["goal"]:
            yield f"{limit['what']}: {reached:.4g}, the goal is {limit['goal']}"


def tighten(measured, path):
    """Sets the rows' budgets to what they take and 3 % more; the limits stay. Says which budgets rose."""
    limits, allowed = load(path)
    for row in measured:
        budget = {kind: int(row[kind] * MARGIN) for kind in FIGURES}
        for kind in FIGURES:
            # A fraction of an allocation a run is no reason to forbid the whole one.
            budget[kind] = max(budget[kind], -(-row[kind] // 1))
            before = allowed.get(row["id"], {}).get(kind)
            if before is not None and budget[kind] > before:
                yield f"{row['id']}: {kind} may rise from {before} to {budget[kind]}"
        allowed[row["id"]] = {kind: int(budget[kind]) for kind in FIGURES}
    with open(path + ".new", "w", encoding="utf-8") as file:
        file.write(text_of(limits, allowed))
    os.replace(path + ".new", path)


def text_of(limits, allowed):
    """One line a limit and a row, so that a change shows as one."""
    def block(lines):
        return ",\n".join("  " + line for line in lines)

    rows = [f"{json.dumps(identity)}: {json.dumps(budget)}" for identity, budget in allowed.items()]
    return ('{"limits": [\n' + block(json.dumps(limit) for limit in limits) + '\n],\n"rows": {\n' + block(rows)
            + "\n}}\n")
