# SPDX-License-Identifier: MIT
"""Draws the pictures of docs/performance.md and writes its table. Usage: pictures.py RESULTS.json FOLDER"""
import json
import math
import os
import sys

import phases
import svg

# Okabe and Ito's colours, which people with any colour vision can tell apart; beside each other they differ in
# lightness too.
PALETTE = ("#0072B2", "#56B4E9", "#009E73", "#F0E442", "#D55E00", "#E69F00", "#CC79A7", "#999999", "#444444")

BARS = (
    ("Instructions a tag, names of 40 characters", (("1 tag", "poll-1-names-40"), ("8 tags", "poll-8-names-40"),
                                                    ("31 tags", "poll-31-names-40"))),
    ("Instructions an element, 2,000 16-bit integers", (("read", "read-int-2000-from-0"),
                                                        ("written", "write-int-2000"))),
)

# A label stands right of its line's last point, and as far to the right and below as the others need.
LINES = (
    ("tag table loaded, by rows", [f"table-{count}" for count in (100, 10000, 100000, 1000000)], (0, 0)),
    ("array read offline, by elements",
     [f"offline-read-int-{count}-from-0" for count in (10, 100, 200, 1000, 2000)], (0, 0)),
    ("array read, by elements", [f"read-int-{count}-from-0" for count in (10, 100, 200, 1000, 2000)], (0, 34)),
    ("array written, by elements", [f"write-int-{count}" for count in (10, 100, 200, 1000, 2000)], (0, 56)),
    ("poll, by tags", [f"poll-{count}-names-40" for count in (1, 3, 8, 30, 31)], (-140, -12)),
    ("31 string elements offline, by table rows", [f"offline-elements-{count}" for count in (10000, 100000)], (0, 0)),
)
COLOURS = tuple(PALETTE[i] for i in (0, 2, 4, 5, 6, 8))

TABLE = (
    ("a scalar tag in a poll of 31", "poll-31-names-40"),
    ("a scalar tag polled alone", "poll-1-names-40"),
    ("an element read, of 2,000", "read-int-2000-from-0"),
    ("an element written, of 2,000", "write-int-2000"),
    ("a scalar written", "write-int"),
    ("a scalar tag offline, in a poll of 31", "offline-poll-31-names-40"),
    ("a string element offline, of 31 in 100,000 rows", "offline-elements-100000"),
    ("a row of a tag table of a million", "table-1000000"),
    ("a forwarded call", "forwarded-call"),
)
BEGIN = "<!-- table: scripts/performance-pictures -->\n"
END = "<!-- end of table -->\n"


def bars(rows):
    picture = svg.Picture(900)
    y = 24
    used = [name for name in phases.NAMES
            if any(phases.split(rows[i]["costs"])[name] for _, panel in BARS for _, i in panel)]
    for title, panel in BARS:
        widest = max(max(rows[i]["instructions"], rows[i]["floor"]) / rows[i]["units"] for _, i in panel)
        scale = 640 / widest
        picture.text(20, y, title, size=16, bold=True)
        y += 14
        for label, identity in panel:
            row = rows[identity]
            x = 100.0
            picture.text(90, y + 21, label, anchor="end")
            split = phases.split(row["costs"])
            for name in used:
                width = split[name] / row["units"] * scale
                value = split[name] / row["units"]
                if width > 0:
                    picture.box(x, y, width, 30, PALETTE[phases.NAMES.index(name)], f"{name}: {value:.1f}")
                x += width
            picture.text(x + 8, y + 21, f"{row['instructions'] / row['units']:,.0f}")
            floor = 100 + row["floor"] / row["units"] * scale
            picture.line(floor, y - 3, floor, y + 33, width=2.5)
            y += 42
        y += 26
    for i, name in enumerate(used):
        column, line = i % 2, i // 2
        picture.box(100 + 380 * column, y - 12 + 24 * line, 16, 16, PALETTE[phases.NAMES.index(name)], name)
        picture.text(124 + 380 * column, y + 1 + 24 * line, name)
    y += 24 * math.ceil(len(used) / 2)
    picture.line(108, y - 12, 108, y + 4, width=2.5)
    picture.text(124, y + 1, "floor: the bare loop of the same calls")
    return picture.done(y + 20)


def growth(rows):
    left, top, wide, high = 110, 30, 560, 430
    decades_x, first_y, last_y = 6, 3, 8
    picture = svg.Picture(1000)

    def at(count, instructions):
        return (left + math.log10(count) / decades_x * wide,
                top + high - (math.log10(instructions) - first_y) / (last_y - first_y) * high)

    for decade in range(decades_x + 1):
        x = left + decade / decades_x * wide
        picture.line(x, top, x, top + high, "#DDDDDD", 1)
        picture.text(x, top + high + 20, f"{10 ** decade:,}", anchor="middle")
    for decade in range(first_y, last_y + 1):
        y = top + high - (decade - first_y) / (last_y - first_y) * high
        picture.line(left, y, left + wide, y, "#DDDDDD", 1)
        picture.text(left - 8, y + 5, f"{10 ** decade:,}", anchor="end")
    picture.text(left, 18, "Instructions of the driver", bold=True)
    picture.text(left + wide / 2, top + high + 44, "tags, elements or rows", anchor="middle")
    for (label, identities, (right, down)), colour in zip(LINES, COLOURS):
        points = [at(identity_count(identity), rows[identity]["instructions"]) for identity in identities]
        picture.path(points, colour)
        x, y = points[-1]
        picture.dot(x + right + 16, y + down, colour)
        picture.text(x + right + 26, y + down + 5, label)
    return picture.done(top + high + 60)


def identity_count(identity):
    """The first number in a row's id."""
    return int(next(part for part in identity.split("-") if part.isdigit()))


def table(rows):
    yield "| | instructions | floor | allocations |\n|---|--:|--:|--:|\n"
    for label, identity in TABLE:
        row = rows[identity]
        units = row["units"]
        allocations = row["allocations"] / units
        yield (f"| {label} | {row['instructions'] / units:,.1f} | {row['floor'] / units:,.1f} | "
               f"{'0' if allocations == 0 else f'{allocations:.2g}'} |\n")


def write(path, text):
    with open(path + ".new", "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(path + ".new", path)


def main(results, folder):
    try:
        with open(results, encoding="utf-8") as file:
            rows = {row["id"]: row for row in json.load(file)["rows"]}
        pictures = {"performance-phases.svg": bars(rows), "performance-growth.svg": growth(rows)}
        lines = "".join(table(rows))
    except (OSError, ValueError, KeyError) as problem:
        return f"performance-pictures: {results} does not hold all figures ({problem}); run: ./bench"
    page = os.path.join(folder, "performance.md")
    with open(page, encoding="utf-8") as file:
        before, begin, rest = file.read().partition(BEGIN)
    _, end, after = rest.partition(END)
    if not begin or not end:
        return f"performance-pictures: {page} has lost the marks around its table: {BEGIN.strip()}"
    write(page, before + begin + "\n" + lines + "\n" + end + after)
    for name, text in pictures.items():
        write(os.path.join(folder, name), text)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]) if len(sys.argv) == 3 else __doc__)
