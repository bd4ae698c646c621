# SPDX-License-Identifier: MIT
"""Completion in bash: the function called as bash calls it, and keys typed into a bash on a terminal.

Usage: completion_bash_test.py BUILD-FOLDER
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from terminal import Terminal

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
ENVIRONMENT = dict(os.environ, PATH=f"{BUILD}:{os.environ['PATH']}", LC_ALL="C.UTF-8")
LIST = """name,type,count,first,elements,device,id
Line.Speed,INT,1,,1,1,1
Line.State,WORD,1,,1,1,2
"Line.""Tank 1 (north)"".Level",REAL,1,,1,1,3
Plant.Name,STRING,20,,1,1,4
"""

SHOW_THE_WORDS = "\x01printf '<%s>' \n"  # goes to the line's beginning and makes it print what it was

CALL = """\
source "$1"; shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
name=${1//-/_}
"_$name"
((${#COMPREPLY[@]})) && printf '%s\\n' "${COMPREPLY[@]}"
exit 0
"""


class Completion(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.scratch.name)
        (cls.folder / "line.csv").write_text(LIST)
        (cls.folder / "sub").mkdir()
        subprocess.run([BUILD / "ostravel-tags", "pack", "line.csv", "line.project"], cwd=cls.folder, check=True,
                       stdout=subprocess.DEVNULL)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def complete(self, *words):
        """What bash offers for the last of the words, which are as bash splits a line."""
        script = ROOT / "completion" / "bash" / words[0]
        result = subprocess.run(["bash", "--norc", "-c", CALL, "bash", script, *words], cwd=self.folder,
                                env=ENVIRONMENT, capture_output=True, text=True, check=True)
        self.assertEqual(result.stderr, "")
        return result.stdout.splitlines()

    def test_commands(self):
        self.assertEqual(self.complete("ostravel-host", "sta"), ["status"])
        self.assertIn("read", self.complete("ostravel-host", "--offline", ""))
        self.assertNotIn("tag-names", self.complete("ostravel-host", ""))
        self.assertEqual(self.complete("ostravel-tags", "pa"), ["pack"])

    def test_options_of_the_command_and_of_all_commands(self):
        offered = self.complete("ostravel-host", "watch", "--")
        self.assertIn("--interval", offered)
        self.assertIn("--project", offered)
        self.assertNotIn("--interval", self.complete("ostravel-host", "read", "--"))
        self.assertEqual(self.complete("ostravel-plc", "--export"), ["--export-tags"])

    def test_option_value_is_not_the_command(self):
        self.assertEqual(self.complete("ostravel-host", "--project", "read", "stat"), ["status"])

    def test_files(self):
        self.assertEqual(self.complete("ostravel-host", "--project", "line.p"), ["line.project"])
        self.assertEqual(self.complete("ostravel-host", "--project", "=", "line.p"), ["line.project"])
        self.assertEqual(self.complete("ostravel-tags", "pack", "line.c"), ["line.csv"])
        self.assertEqual(self.complete("ostravel-plc", "--port", "0", "line.c"), ["line.csv"])

    def test_no_files_where_a_number_is_wanted(self):
        self.assertEqual(self.complete("ostravel-host", "--station", "l"), [])
        self.assertEqual(self.complete("ostravel-host", "--address", "l"), [])

    def test_tags_of_the_project_on_the_line(self):
        self.assertEqual(self.complete("ostravel-host", "--project", "line.project", "read", "Line.S"),
                         ["Line.Speed", "Line.State"])
        self.assertEqual(self.complete("ostravel-host", "read", "--project", "=", "line.project", "Plant"),
                         ["Plant.Name"])
        self.assertEqual(self.complete("ostravel-host", "read", "Line.S"), [])

    def test_tag_names_are_quoted_for_the_shell(self):
        line = ["ostravel-host", "--project", "line.project", "read"]
        name = r"Line.\"Tank\ 1\ \(north\)\".Level"
        self.assertEqual(self.complete(*line, "Line.\\\"T"), [name])
        self.assertEqual(self.complete(*line, "'Line.\"T"), ['Line."Tank 1 (north)".Level'])
        self.assertEqual(self.complete(*line, "\"Line.\\\"T"), [r'Line.\"Tank 1 (north)\".Level'])

    def test_tags_of_several_devices(self):
        (self.folder / "plant.toml").write_text('[defaults]\nproject = "line.project"\n'
                                                '[[device]]\nname = "press"\nstation = 1\n'
                                                '[[device]]\nname = "oven"\nstation = 2\n')
        self.assertEqual(self.complete("ostravel-host", "--config", "plant.toml", "read", "oven/Pl"),
                         ["oven/Plant.Name"])

    def test_recording_or_tag(self):
        offered = self.complete("ostravel-host", "--project", "line.project", "plot", "")
        self.assertIn("line.csv", offered)
        self.assertIn("Plant.Name", offered)

    def test_assignments_end_in_an_equals_sign(self):
        line = ["ostravel-host", "--project", "line.project", "write"]
        self.assertEqual(self.complete(*line, "Line.Sp"), ["Line.Speed="])
        self.assertEqual(self.complete(*line, "Line.Speed", "="), [])
        self.assertEqual(self.complete(*line, "Line.Speed", "=", "5"), [])

    def test_keys_on_a_terminal(self):
        setting = dict(ENVIRONMENT, PS1="> ", TERM="dumb")
        with Terminal(["bash", "--norc", "-i"], cwd=self.folder, env=setting) as bash:
            bash.type(f"source {ROOT}/completion/bash/ostravel-host; echo re''ady\n")
            bash.wait_for("ready")
            bash.type("ostravel-host sta\t" + SHOW_THE_WORDS)
            bash.wait_for("<ostravel-host><status>")
            bash.type("ostravel-host --project=line.pr\tread Line.\\\"T\t" + SHOW_THE_WORDS)
            bash.wait_for('<--project=line.project><read><Line."Tank 1 (north)".Level>')
            bash.type("ostravel-host --project line.pr\twrite 'Line.\"T\t5" + SHOW_THE_WORDS)
            bash.wait_for('<line.project><write><Line."Tank 1 (north)".Level=5>')


if __name__ == "__main__":
    unittest.main()
