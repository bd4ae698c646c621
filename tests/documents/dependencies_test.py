# SPDX-License-Identifier: MIT
"""docs/dependencies.md names each library that the sources include, each package that scripts/setup installs for all to build,
and its version in Debian 12."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PACKAGES = {
    "CLI": "libcli11-dev", "asio": "libasio-dev", "benchmark": "libbenchmark-dev", "fmt": "libfmt-dev",
    "gmock": "libgmock-dev", "gtest": "libgtest-dev", "msgpack": "libmsgpack-cxx-dev", "ncurses": "libncurses-dev",
    "nlohmann": "nlohmann-json3-dev", "toml++": "libtomlplusplus-dev",
}
PART_OF_THE_SYSTEM = {"mount", "util-linux"}  # for scripts/private-project; on every Debian
OF_LINUX = re.compile(r"(sys|arpa|netinet|linux|net|sanitizer)/")  # and what comes with the compiler
INCLUDE = re.compile(r'^#include <([\w+]+)(?:\.h|\.hpp)?(/[^>]*)?>', re.MULTILINE)


def libraries_in_use():
    """Libraries by the packages that have them, from the includes that are neither C++'s nor POSIX's."""
    used = set()
    folders = [folder for folder in ROOT.iterdir() if folder.is_dir() and folder.name not in ("build", ".git")]
    for folder in folders:
        for source in [*folder.rglob("*.h"), *folder.rglob("*.cpp")]:
            for name, rest in INCLUDE.findall(source.read_text(errors="replace")):
                if name in PACKAGES:
                    used.add(PACKAGES[name])
                elif rest and not OF_LINUX.match(name + "/"):
                    raise SystemExit(f"{source}: <{name}{rest}> is of a library that dependencies_test.py does not know")
    return used


def packages_of_setup():
    text = (ROOT / "scripts" / "setup").read_text()
    listed = re.search(r"^packages=\((.*?)^\)", text, re.DOTALL | re.MULTILINE).group(1).split()
    return {re.sub(r":.*", "", package) for package in listed} - PART_OF_THE_SYSTEM


def installed_version(package):
    """Upstream's number; nothing on another system than the one that the document is about."""
    if 'VERSION_CODENAME=bookworm' not in pathlib.Path("/etc/os-release").read_text():
        return ""
    answer = subprocess.run(["dpkg-query", "--show", "--showformat", "${Version}", package], capture_output=True,
                            text=True, check=False)
    return re.sub(r"^\d+:|[-+].*", "", answer.stdout) if answer.returncode == 0 else ""


def main():
    text = (ROOT / "docs" / "dependencies.md").read_text()
    faults = []
    for package in sorted(libraries_in_use() | packages_of_setup()):
        row = next((line for line in text.splitlines() if line.startswith("|") and f"`{package}" in line), None)
        if row is None:
            faults.append(f"{package} has no row")
        elif (version := installed_version(package)) and version not in row:
            faults.append(f"{package} is {version} here, which its row does not say")
    for package in re.findall(r"`(lib[\w-]+-dev|nlohmann-json3-dev)`", text):
        if package not in packages_of_setup():
            faults.append(f"{package} is not installed by scripts/setup")
    for fault in faults:
        print(f"docs/dependencies.md: {fault}")
    return 1 if faults else 0


sys.exit(main())
