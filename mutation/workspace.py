# SPDX-License-Identifier: MIT
"""Building and running the unit tests with one source file changed.

The tests are built once, unchanged, in a build folder of their own. A changed file is compiled apart, with the command that
the build has for it, and takes the place of the original when the test programs are linked anew. Of a changed header all
sources of the driver that include it are compiled, and the header's own tests: other tests keep what they know of the
original, so that a changed constant does not change what they expect.
"""

import json
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
from pathlib import Path

COUNTERS = ("-fprofile-instr-generate", "-fcoverage-mapping", "-fcoverage-mcdc", "-g")
# Tests of a header that are not called after it.
TESTS_OF = {"aglink/aglenums.h": "enums", "aglink/agltypes.h": "records"}
LEFT_OUT = {"table_roundtrip_test", "fake_library_test"}  # minutes of random values, and no test of the driver
FOLDERS = ("driver", "symbolic", "aglink")
COMPILE_SECONDS = 300
# Of processor time, so that a busy machine makes no difference; the other only for a test that waits for ever.
TEST_CPU_SECONDS = 60
TEST_SECONDS = 300
TEST_BYTES = 16 << 30


class Build:
    """What there is to know of a finished build of the tests."""

    def __init__(self, sources, folder):
        self.sources, self.folder = Path(sources), Path(folder)
        self.compiles = {}  # object, relative to the build folder -> (source, command)
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            if entry["file"].endswith(".S"):
                continue
            arguments = shlex.split(entry["command"])
            if arguments[0].endswith("ccache"):
                arguments = arguments[1:]
            target = arguments[arguments.index("-o") + 1]
            source = str(Path(entry["file"]).relative_to(self.sources)) if entry["file"].startswith(str(self.sources)) else ""
            self.compiles[target] = (source, arguments)
        self.includes = self._dependencies()
        self.programs = self._programs()

    def _dependencies(self):
        """object -> the files of the project that it is made of"""
        text = subprocess.run(["ninja", "-t", "deps"], cwd=self.folder, capture_output=True, text=True, check=True).stdout
        found, target = {}, None
        for line in text.splitlines():
            if line and not line[0].isspace():
                target = line.split(":")[0]
                found[target] = set()
            elif line.strip():
                path = os.path.normpath(self.folder / line.strip())
                if path.startswith(str(self.sources) + "/"):
                    found[target].add(path[len(str(self.sources)) + 1 :])
        return found

    def _programs(self):
        """The test programs as CTest runs them: (name, wrapper, environment)."""
        text = subprocess.run(["ctest", "--show-only=json-v1"], cwd=self.folder, capture_output=True, text=True, check=True).stdout
        found = {}
        for test in json.loads(text)["tests"]:
            command = test.get("command", [])
            ours = [i for i, word in enumerate(command) if word.startswith(str(self.folder) + "/") and word.endswith("_test")]
            if not ours:
                continue
            environment = {}
            for entry in test["properties"]:
                if entry["name"] == "ENVIRONMENT":
                    environment = dict(value.split("=", 1) for value in entry["value"])
            name = os.path.basename(command[ours[0]])
            if name in LEFT_OUT:
                continue
            arguments = [word for word in command[ours[0] + 1 :] if not word.startswith("--gtest")]
            found.setdefault((name, tuple(sorted(environment.items()))), (name, command[: ours[0]], environment, arguments))
        programs = []
        for name, wrapper, environment, arguments in found.values():
            linked = subprocess.run(["ninja", "-t", "commands", "-s", name], cwd=self.folder, capture_output=True, text=True,
                                    check=True).stdout
            link = next(part for part in linked.split("&&") if f" -o {name}" in part)
            programs.append((name, wrapper, environment, arguments, shlex.split(link)))
        return programs

    def objects_for(self, file):
        """The objects to compile when the file has changed."""
        stem = Path(file).stem
        if not file.endswith(".h"):
            return [target for target, (source, _) in self.compiles.items() if source == file]
        tests = f"{stem}|{TESTS_OF.get(file, stem)}"
        found = []
        for target, (source, _) in self.compiles.items():
            own = source.split("/")[0] in FOLDERS
            its_test = source.startswith("tests/") and re.match(rf"({tests})(_\w+)?_test$", Path(source).stem)
            if (own or its_test) and file in self.includes.get(target, ()):
                found.append(target)
        return found

    def programs_for(self, file):
        """Those of the file's own folder first: they are the likeliest to notice. The longest come last."""
        own = file.split("/")[0]

        def rank(program):
            folder = program[0].split("_")[0]
            return (folder != own) + (folder not in FOLDERS), program[0] == "driver_test"

        return sorted(self.programs, key=rank)


def precompiled(build, folder):
    """The driver's system headers, compiled once: parsing them is most of what compiling one of its files costs."""
    names = set()
    for part in FOLDERS:
        for path in (build.sources / part).iterdir():
            if path.suffix in (".cpp", ".h"):
                names |= set(re.findall(r"^#include (<[a-z_.]+>)", path.read_text(), re.MULTILINE))
    folder.mkdir(parents=True, exist_ok=True)
    header = folder / "system.h"
    header.write_text("".join(f"#include {name}\n" for name in sorted(names)))
    arguments = next(arguments for source, arguments in build.compiles.values() if source.startswith("driver/"))
    flags = [word for word in arguments[1 : arguments.index("-o")] if word not in COUNTERS]
    subprocess.run([arguments[0], *flags, "-x", "c++-header", str(header), "-o", str(header) + ".pch"], check=True)
    return str(header) + ".pch"


class Worker:
    """One place to compile, link and run in."""

    def __init__(self, build, folder, headers):
        self.build, self.folder, self.headers = build, Path(folder), headers

    def try_change(self, file, text, only_own=False):
        """'caught', 'timeout', 'survived' or 'invalid' (does not compile), and what noticed it. With only_own the programs of
        the file's folder alone are asked."""
        shutil.rmtree(self.folder, ignore_errors=True)
        overlay = self.folder / "overlay"
        changed = overlay / file
        changed.parent.mkdir(parents=True)
        changed.write_text(text)
        objects = {}
        for target in self.build.objects_for(file):
            compiled = self._compile(target, overlay, changed if not file.endswith(".h") else None)
            if compiled is None:
                return "invalid", ""
            objects[target] = compiled
        if not objects:
            return "invalid", "nothing is made of it"
        for program in self.build.programs_for(file):
            if only_own and not program[0].startswith(file.split("/")[0]):
                continue
            linked = self._link(program, objects)
            if linked is None:
                return "invalid", ""
            noticed = self._run(program, linked)
            if noticed is not None:
                return noticed, program[0]
        return "survived", ""

    def _compile(self, target, overlay, source):
        original, arguments = self.build.compiles[target]
        compiled = self.folder / target
        compiled.parent.mkdir(parents=True, exist_ok=True)
        command = []
        for word in arguments:
            if word in COUNTERS:
                continue
            if word == f"-I{self.build.sources}":
                command.append(f"-I{overlay}")
            command.append(word)
        if original.split("/")[0] in FOLDERS:
            command[1:1] = ["-include-pch", self.headers]
        command[command.index("-o") + 1] = str(compiled)
        command[-1] = str(source or self.build.sources / original)
        if "-MF" in command:
            command[command.index("-MF") + 1] = str(compiled) + ".d"
        done = subprocess.run(command, cwd=self.build.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=COMPILE_SECONDS)
        return compiled if done.returncode == 0 else None

    def _link(self, program, objects):
        name, _, _, _, link = program
        linked = self.folder / name
        words = [word for word in link if word not in objects and word != ":"]
        words[words.index("-o") + 1] = str(linked)
        # In front, since of several equal inline functions the first one counts.
        ours = [str(compiled) for target, compiled in objects.items() if self._belongs(target, link)]
        done = subprocess.run([words[0], "-fuse-ld=gold", *ours, *words[1:]], cwd=self.build.folder, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=COMPILE_SECONDS)
        return linked if done.returncode == 0 else None

    def _belongs(self, target, link):
        """Whether the program is made of the object, be it through an archive."""
        return target in link or (target.startswith("aglink/") and any("libaglink_test_support" in word for word in link))

    def _run(self, program, linked):
        name, wrapper, environment, arguments, _ = program
        command = [*wrapper, str(linked), *arguments, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_catch_exceptions=0"]
        process = subprocess.Popen(command, cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   stdin=subprocess.DEVNULL, start_new_session=True, preexec_fn=_limit,
                                   env={**os.environ, "LLVM_PROFILE_FILE": "/dev/null", **environment})
        try:
            status = process.wait(TEST_SECONDS)
        except subprocess.TimeoutExpired:
            status = -signal.SIGXCPU
        try:
            os.killpg(process.pid, signal.SIGKILL)  # what a death test may have left
        except ProcessLookupError:
            pass
        process.wait()
        if status in (-signal.SIGXCPU, 128 + signal.SIGXCPU, -signal.SIGKILL, 128 + signal.SIGKILL):
            return "timeout"
        if status == 77:
            raise RuntimeError(f"{name} was skipped: scripts/private-project may not mount here")
        return "caught" if status != 0 else None


def _limit():
    resource.setrlimit(resource.RLIMIT_CPU, (TEST_CPU_SECONDS, TEST_CPU_SECONDS + 5))
    resource.setrlimit(resource.RLIMIT_AS, (TEST_BYTES, TEST_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
