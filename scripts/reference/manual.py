# SPDX-License-Identifier: MIT
"""Manual pages in scdoc's form: a frame written by hand, with lines @options@, @commands@ and @exit codes@."""
import re

from reference.options import is_flag, named, placeholder, positionals

HEAD = "; Made by scripts/generate-reference; what is written by hand is in {name}.1.in.\n"


def escaped(text):
    """Also at the beginning, where other letters begin a list, a heading or a table."""
    return re.sub(r"([\\*_]|^[-#|\[\].;])", r"\\\1", text)


def option_line(option):
    names = ", ".join(f"*{escaped(name)}*" for name in option["names"])
    return names if is_flag(option) else f"{names} _{escaped(placeholder(option))}_"


def entry(line, text):
    return f"{line}\n\t{text}\n"


def option_entry(option):
    text = escaped(option["help"])
    if option["default"] and not is_flag(option):
        text += f" (default: {escaped(option['default'])})"
    if option["required"]:
        text += " (required)"
    return entry(option_line(option) if option["names"] else f"_{escaped(option['positional'])}_", text)


def argument(option):
    text = option["positional"] + ("..." if option["repeatable"] else "")
    return f"_{escaped(text)}_" if option["required"] else f"[_{escaped(text)}_]"


def footer_text(footer):
    """The footer of a help text: its indented lines as they stand, the others as paragraphs."""
    blocks = []
    for line in footer.strip("\n").split("\n"):
        literal = line.startswith("  ")
        if not blocks or blocks[-1][0] != literal or not line:
            blocks.append((literal, []))
        if line:
            blocks[-1][1].append(line if literal else escaped(line))
    parts = []
    for literal, lines in blocks:
        if lines:
            parts.append("\n".join(["```", *lines, "```"] if literal else lines) + "\n")
    return "\n".join(parts)


def command_section(command):
    options = [option for option in named(command["options"]) if "--help" not in option["names"]]
    arguments = positionals(command["options"])
    line = [f"*{command['name']}*"] + (["[options]"] if options else []) + [argument(option) for option in arguments]
    parts = [f"## {command['name']}\n", " ".join(line) + "\n" if len(line) > 1 else "", escaped(command["help"]) + "\n"]
    parts += [option_entry(option) for option in arguments + options]
    parts.append(footer_text(command["footer"]))
    return "\n".join(part for part in parts if part)


def page(frame, table):
    options = positionals(table["options"]) + named(table["options"])
    made = {
        "options": "\n".join(map(option_entry, options)),
        "examples": footer_text(table["footer"]),
        "commands": "\n".join(map(command_section, table["commands"])),
        "exit codes": "\n".join(entry(f"*{code['code']}*", escaped(code["meaning"])) for code in table["exit_codes"]),
    }
    for name, text in made.items():
        if text and f"@{name}@\n" not in frame:
            raise SystemExit(f"generate-reference: man/{table['name']}.1.in: has no line @{name}@")
        frame = frame.replace(f"@{name}@\n", text)
    title, rest = frame.split("\n", 1)
    return title + "\n\n" + HEAD.format(name=table["name"]) + rest.rstrip("\n") + "\n"
