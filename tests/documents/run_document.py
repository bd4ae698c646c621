# SPDX-License-Identifier: MIT
"""Runs the commands of a document and compares what they print with what the document says.

Usage: run_document.py DOCUMENT BUILD-FOLDER

In blocks of console text "$ " begins a command and "> " a line that is typed into the simulated PLC; the lines up to the next
of these are what is printed. "..." stands for any text, on a line of its own for any number of lines. A command that ends in
"&" goes on in the background once it has printed as many lines as the document has for it; "wait" waits for its end and prints
the others. A command that starts ostravel-plc --port is the simulated PLC. All commands run in one shell, in an empty folder that
has the repository's simulator/ and the build folder as build/release. The port in the document is replaced by a free one.
"""
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BLOCK = re.compile(r"^( *)```console\n(.*?)^ *```$", re.DOTALL | re.MULTILINE)
DOCUMENT_PORT = "1102"
PATIENCE = 60  # seconds for a command in the background


def steps_of(text):
    """(line number, "$" or ">", what is typed, lines that are expected)"""
    for block in BLOCK.finditer(text):
        number = text.count("\n", 0, block.start(2)) + 1
        step, here = None, None
        for offset, line in enumerate(block.group(2).splitlines()):
            line = line.removeprefix(block.group(1))
            if here is not None:
                step[2] += "\n" + line
                here = None if line == here else here
            elif line.startswith(("$ ", "> ")):
                if step:
                    yield step
                step = [number + offset, line[0], line[2:], []]
                marker = re.search(r"<<(\w+)", line)
                here = marker.group(1) if marker else None
            else:
                step[3].append(line)
        yield step


def matches(expected, printed):
    pattern = "".join("(?:.*\n)*" if line == "..." else re.escape(line).replace(r"\.\.\.", ".*") + "\n"
                      for line in expected)
    return re.fullmatch(pattern, printed + "\n" if printed else "") is not None


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return str(probe.getsockname()[1])


class Runner:
    def __init__(self, folder):
        self.port = free_port()
        self.plc = None
        self.shown = 0  # lines of the command in the background
        self.folder = folder
        self.shell = self.start(["bash", "--norc"], stderr=subprocess.STDOUT)

    def start(self, command, **settings):
        return subprocess.Popen(command, cwd=self.folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                env=dict(os.environ, LC_ALL="C.UTF-8"), **settings)

    def run(self, command):
        """What a command prints, on both outputs, without the last line end."""
        mark = "end-of-the-command"
        command = command.replace(DOCUMENT_PORT, self.port)
        self.shell.stdin.write(f"{command}\n__status=$?; echo; echo {mark}; (exit $__status)\n")
        self.shell.stdin.flush()
        lines = []
        for line in self.shell.stdout:
            if line == mark + "\n":
                break
            lines.append(line)
        else:
            raise SystemExit("the shell ended")
        return "".join(lines).replace(self.port, DOCUMENT_PORT).removesuffix("\n").removesuffix("\n")

    def run_in_background(self, command, lines):
        """The first lines that it prints."""
        printed = self.folder / "background.txt"
        printed.write_text("")
        self.run(f"{command.removesuffix('&')} >background.txt 2>&1 &")
        end = time.monotonic() + PATIENCE
        while printed.read_text().count("\n") < lines:
            if time.monotonic() > end:
                raise SystemExit(f"{command}: printed only {printed.read_text()!r}")
            time.sleep(0.02)
        self.shown = lines
        return "\n".join(printed.read_text().splitlines()[:lines])

    def start_plc(self, command):
        self.plc = self.start(["bash", "-c", f"exec {command.replace(DOCUMENT_PORT, self.port)}"])
        return self.plc.stdout.readline().replace(self.port, DOCUMENT_PORT).removesuffix("\n")

    def tell_plc(self, line):
        """Returns what is wrong with it; nothing when it was obeyed."""
        self.plc.stdin.write(line + "\n")
        self.plc.stdin.flush()
        answer = self.plc.stdout.readline()
        return answer if not answer or '"error"' in answer else ""

    def close(self):
        for process in (self.plc, self.shell):
            if process:
                process.stdin.close()
                process.kill()
                process.wait()


def check(runner, document):
    faults, count = [], 0
    for number, kind, typed, expected in steps_of(document.read_text()):
        count += 1
        if kind == ">":
            printed = runner.tell_plc(typed)
        elif typed.startswith("ostravel-plc --port"):
            printed = runner.start_plc(typed)
        elif typed.endswith("&"):
            printed = runner.run_in_background(typed, len(expected))
        elif typed == "wait":
            printed = runner.run(f"wait; tail -n +{runner.shown + 1} background.txt")
        else:
            printed = runner.run(typed)
        if not matches(expected, printed):
            wanted = "\n".join(expected)
            faults.append(f"{document.name}:{number}: {typed}\n--- the document says\n{wanted}\n--- printed\n{printed}")
    return faults, count


def main():
    document, build = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "simulator").symlink_to(ROOT / "simulator")
        (root / "build").mkdir()
        (root / "build" / "release").symlink_to(build)
        runner = Runner(root)
        try:
            # Names of programs are looked up before the document's own words on the path.
            os.environ["PATH"] = f"{build}:{os.environ['PATH']}"
            faults, count = check(runner, document)
        finally:
            runner.close()
    for fault in faults:
        print(fault)
    print(f"{document.name}: {count} commands, {len(faults)} differ")
    return 1 if faults or count == 0 else 0


sys.exit(main())
