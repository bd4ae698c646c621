# SPDX-License-Identifier: MIT
"""Every command line of this project's programs in the documents has a command and options that the program knows, and names
files of the repository that are there.

Usage: commands_test.py BUILD-FOLDER DOCUMENT...
"""
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAMS = ["ostravel-host", "ostravel-tags", "ostravel-plc"]
INVOCATION = re.compile(r"(?:^|[\s`/])(" + "|".join(PROGRAMS) + r")((?: [^\n`|;&]+)?)")
QUOTED = re.compile(r"'[^']*'|\"[^\"]*\"")
LINK = re.compile(r"\]\(([^)#:]+)\)")
OWN_FILE = re.compile(r"(?:^|[\s`(])((?:docs|scripts|simulator|tests|host|driver|symbolic|aglink|tools|bench|common|man)/[\w./-]*\w)")


def faults_of(line, table):
    """What the program does not know of a command line."""
    words = QUOTED.sub("", line).split()
    options = {name for option in table["options"] for name in option["names"]}
    commands = {command["name"]: command for command in table["commands"]}
    for word in words:
        if word in commands:
            options |= {name for option in commands[word]["options"] for name in option["names"]}
            break
    for word in words:
        if word.startswith("--") and word.rstrip(".,:)").partition("=")[0] not in options | {"--"}:
            yield f"{table['name']} has no option {word}"


def commands_of(text):
    """Inside of code: indented lines, fenced blocks and `spans`."""
    fenced = False
    for number, line in enumerate(text.splitlines(), start=1):
        if line.lstrip().startswith("```"):
            fenced = not fenced
        elif fenced or line.startswith("    "):
            yield number, line
        else:
            for span in re.findall(r"`([^`]+)`", line):
                yield number, span


def main():
    build, documents = pathlib.Path(sys.argv[1]), map(pathlib.Path, sys.argv[2:])
    tables = {}
    for program in PROGRAMS:
        tables[program] = json.loads(subprocess.run([build / program, "--option-table"], capture_output=True,
                                                    check=True).stdout)
    faults, count = [], 0
    for document in documents:
        text = document.read_text()
        for number, code in commands_of(text):
            for match in INVOCATION.finditer(code):
                count += 1
                found = list(faults_of(match.group(2), tables[match.group(1)]))
                first = next(iter(match.group(2).split()), "")
                names = [command["name"] for command in tables[match.group(1)]["commands"]]
                if re.fullmatch(r"[a-z][a-z-]*", first) and names and first not in names:
                    found.append(f"{match.group(1)} has no command {first}")
                faults += [f"{document}:{number}: {fault}" for fault in found]
        for name in LINK.findall(text) + OWN_FILE.findall(text):
            base = document.parent if (document.parent / name).exists() else ROOT
            # NAME in a file's name stands for any; a name may also be the beginning of several.
            if not (base / name).exists() and not any(ROOT.glob(name.replace("NAME", "*") + "*")):
                faults.append(f"{document}: {name} is not there")
    for fault in faults:
        print(fault)
    print(f"{count} command lines, {len(faults)} faults")
    return 1 if faults or count == 0 else 0


sys.exit(main())
