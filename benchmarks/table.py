# SPDX-License-Identifier: MIT
"""The table that ./bench prints."""

HEADINGS = ("", "instructions", "a unit", "floor", "ratio", "own a unit", "allocations", "ns", "floor ns")


def number(value):
    if value is None:
        return "-"
    if isinstance(value, float) and value < 1000 and value != int(value):
        return f"{value:.1f}"
    return f"{round(value):,}"


def cells(row):
    units = row["units"]
    floor = row["floor"]
    ratio = row["instructions"] / floor if floor else None
    return (row["label"], number(row["instructions"]), number(row["instructions"] / units), number(floor),
            "-" if ratio is None or ratio > 9999 else f"{ratio:.1f}",
            number((row["instructions"] - floor) / units), number(row["allocations"]), number(row.get("ns")),
            number(row.get("floor_ns")))


def lines(rows):
    """One unit is a tag, an element, a character, a row or a call; own is what is beyond the floor."""
    table = [(row, cells(row)) for row in rows]
    widths = [max(len(HEADINGS[i]), *(len(cell[i]) for _, cell in table)) for i in range(len(HEADINGS))]

    def line(texts):
        first = texts[0].ljust(widths[0])
        return "  ".join([first] + [text.rjust(width) for text, width in zip(texts[1:], widths[1:])]).rstrip()

    group = None
    for row, texts in table:
        if row["group"] != group:
            if group is not None:
                yield ""
            group = row["group"]
            yield line((group,) + HEADINGS[1:])
        yield line(texts)
