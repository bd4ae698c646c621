# SPDX-License-Identifier: MIT
"""Tables in Markdown documents: what stands between <!-- TABLE --> and <!-- end --> is made here."""
import re

FRAME = re.compile(r"<!-- (status [\w, -]+|exit codes) -->\n.*?<!-- end -->", re.DOTALL)


def row(cells):
    return "| " + " | ".join(cell.replace("|", "\\|") for cell in cells) + " |"


def table(headings, rows):
    return "\n".join([row(headings), "|" + "---|" * len(headings), *map(row, rows)])


def status_table(statuses, sources):
    """Code and name stand in the first row of a code only."""
    rows, before = [], None
    for status in statuses:
        if status["source"] not in sources:
            continue
        first = status["code"] != before
        rows.append([status["code"] if first else "", status["name"] if first else "", status["cause"],
                     status["remedy"]])
        before = status["code"]
    if not rows:
        raise SystemExit(f"generate-reference: no status is of {', '.join(sources)}")
    return table(["Code", "Name", "Cause", "What helps"], rows)


def with_tables(path, statuses, exit_codes):
    def made(match):
        name = match.group(1)
        if name == "exit codes":
            body = table(["Code", "Meaning"], [[str(code["code"]), code["meaning"]] for code in exit_codes])
        else:
            body = status_table(statuses, [source.strip() for source in name.removeprefix("status ").split(",")])
        return f"<!-- {name} -->\n{body}\n<!-- end -->"

    text, count = FRAME.subn(made, path.read_text())
    if count == 0:
        raise SystemExit(f"generate-reference: {path}: has no place for a table")
    return text
