# SPDX-License-Identifier: MIT
"""Completion in zsh, by keys typed into a zsh on a terminal. Skipped where there is no zsh.

Usage: completion_zsh_test.py BUILD-FOLDER
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from terminal import Terminal

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
LIST = """name,type,count,first,elements,device,id
Line.Speed,INT,1,,1,1,1
"Line.""Tank 1 (north)"".Level",REAL,1,,1,1,2
"""
SHOW_THE_WORDS = "\x01printf '<%s>' \n"  # goes to the line's beginning and makes it print what it was


class Completion(unittest.TestCase):
    def test_keys_on_a_terminal(self):
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch)
            (folder / "line.csv").write_text(LIST)
            subprocess.run([BUILD / "ostravel-tags", "pack", "line.csv", "line.project"], cwd=folder, check=True,
                           stdout=subprocess.DEVNULL)
            setting = dict(os.environ, PATH=f"{BUILD}:{os.environ['PATH']}", LC_ALL="C.UTF-8", TERM="dumb",
                           ZDOTDIR=scratch, HOME=scratch)
            with Terminal(["zsh", "-f", "-i"], cwd=folder, env=setting) as zsh:
                self.type_into(zsh)

    def type_into(self, zsh):
        zsh.type(f"bindkey -e; fpath=({ROOT}/completion/zsh $fpath); autoload -Uz compinit; compinit -u -D; "
                 "print re''ady\n")
        zsh.wait_for("ready")
        zsh.type("ostravel-host sta\t" + SHOW_THE_WORDS)
        zsh.wait_for("<ostravel-host><status>")
        zsh.type("ostravel-host --project line.pr\tread --time\t5 Line.Sp\t" + SHOW_THE_WORDS)
        zsh.wait_for("<line.project><read><--timeout><5><Line.Speed>")
        zsh.type("ostravel-host --project line.project write Line.\\\"T\t5" + SHOW_THE_WORDS)
        zsh.wait_for('<write><Line."Tank 1 (north)".Level=5>')
        zsh.type("ostravel-host --project line.project plot line.c\tLine.Sp\t" + SHOW_THE_WORDS)
        zsh.wait_for("<plot><line.csv><Line.Speed>")
        zsh.type("ostravel-tags pack line.c\t" + SHOW_THE_WORDS)
        zsh.wait_for("<ostravel-tags><pack><line.csv>")
        zsh.type("ostravel-plc --export\tline.c\t" + SHOW_THE_WORDS)
        zsh.wait_for("<ostravel-plc><--export-tags><line.csv>")


if __name__ == "__main__":
    if shutil.which("zsh") is None:
        print("no zsh here")
        sys.exit(77)
    unittest.main()
