# SPDX-License-Identifier: MIT
"""Questions that manual pages and completions ask of an option table (common/optiontable.h says what it holds)."""

# What a value is, by its placeholder in the help or, of a positional argument, by its name.
FILES = {"FILE", "PROJECT", "TAGS", "LIST", "CSV", "A", "B", "OUT", "SVG", "SCRIPT"}
FOLDERS = {"FOLDER", "DIR"}
TAGS = {"TAG"}
EITHER = {"FILE_OR_TAG"}
ASSIGNMENTS = {"ASSIGNMENT"}
NEED_A_PROJECT = ("tags", "either", "assignments")


def is_positional(option):
    return not option["names"]


def is_flag(option):
    return not is_positional(option) and not option["value"]


def named(options):
    return [option for option in options if not is_positional(option)]


def positionals(options):
    return [option for option in options if is_positional(option)]


def placeholder(option):
    """What stands for the value in a synopsis."""
    if is_positional(option):
        return option["positional"]
    if option["choices"]:
        return "|".join(option["choices"])
    return option["value"]


def kind(option):
    """What completes the value: choices, files, folders, tags, either, assignments, or nothing."""
    if option["choices"]:
        return "choices"
    if option["names"] == ["--address"]:
        return "nothing"
    words = {option["positional"], option["value"]} - {""}
    for name, placeholders in (("files", FILES), ("folders", FOLDERS), ("tags", TAGS),
                               ("either", EITHER), ("assignments", ASSIGNMENTS)):
        if words & placeholders:
            return name
    return "nothing"


def visible_options(table, command):
    """A command's own options and those that every command of the program takes."""
    if command is table:
        return named(table["options"])
    shared = [option for option in named(table["options"]) if "--help" not in option["names"]
              and "--version" not in option["names"]]
    return named(command["options"]) + shared
