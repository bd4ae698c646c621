# SPDX-License-Identifier: MIT
"""Which changes are found where, and that what is no code is left alone. Run: python3 mutation/changes_test.py"""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True

from changes import changes_of
from survivors import Survivors


def found(source):
    return {(change.before, change.after) for change in changes_of("x.cpp", source)}


class Changes(unittest.TestCase):
    def test_comparisons_and_operators_are_those_with_space_around_them(self):
        self.assertEqual(found("if (a < b && c) f();"), {("<", "<="), ("&&", "||"), ("f()", "")})
        self.assertEqual(found("std::vector<int> v;\nint* p;\nint&& r;"), set())

    def test_numbers_grow_by_one_and_keep_their_suffix(self):
        self.assertEqual(found("int a = 0xFFU;"), {("0xFFU", "0x100U")})
        self.assertEqual(found("int a = 1'000;"), {("1'000", "1001")})
        self.assertEqual(found("double a = 1.5;"), set())

    def test_texts_and_truths_change(self):
        self.assertEqual(found('const char* a = "";'), {('""', '"~"')})
        self.assertEqual(found("bool a = true;"), {("true", "false")})

    def test_a_name_that_is_shown_nowhere_stays(self):
        self.assertEqual(found('const char* a = "AGL_Symbolic_A";'), set())
        self.assertIn(('"AGL_Symbolic_A"', '"AGL_Symbolic_A~"'), found('std::puts("AGL_Symbolic_A");'))
        self.assertIn(('"AGL_A"', '"AGL_A~"'), found('const char* a = "AGL_A";'))

    def test_neighbouring_arguments_change_places(self):
        self.assertEqual(found("int a = f(x, g(y), z);"), {("x, g(y)", "g(y), x"), ("g(y), z", "z, g(y)")})
        self.assertEqual(found("void f(int x, char* y);"), set())
        self.assertEqual(found("int a = std::min(x, y);"), {("min", "max")})
        self.assertEqual(found("int a = f(x, x);"), set())

    def test_only_expressions_are_left_out(self):
        self.assertEqual(found("a.b = c;"), {("a.b = c", "")})
        self.assertEqual(found("for (;;) f();"), {("f()", "")})
        self.assertEqual(found("case X: f();"), {("f()", "")})
        for kept in ("return f();", "int a = b;", "std::string a(b);", "X() = default;", "using A = B;"):
            self.assertEqual(found(kept), set(), kept)

    def test_what_is_no_code_stays(self):
        self.assertEqual(found('// a < 1\n/* "2" */\n#include <a>\nstatic_assert(sizeof(A) == 4, "b");'), set())
        self.assertEqual(found("#define A(x) f(x, 1)"), {("1", "2"), ("x, 1", "1, x")})

    def test_equal_changes_of_a_line_are_told_apart(self):
        first, second = [change for change in changes_of("x.cpp", "  bool a = b == c || d == e;") if change.before == "=="]
        self.assertEqual((first.nth, second.nth), (0, 1))
        self.assertEqual(first.code, "bool a = b == c || d == e;")
        self.assertEqual(second.apply("  bool a = b == c || d == e;"), "  bool a = b == c || d != e;")


class Explanations(unittest.TestCase):
    def read(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "survivors.toml"
            path.write_text(text)
            return Survivors(path)

    ENTRY = '[[equivalent]]\nfile = "x.cpp"\ncode = "int a = 1;"\nbefore = "1"\nafter = "2"\n'

    def test_an_entry_explains_its_change_and_no_other(self):
        survivors = self.read(self.ENTRY + 'why = "never read"\n')
        self.assertEqual(survivors.reason(("x.cpp", "int a = 1;", "1", "2", 0)), "never read")
        self.assertIsNone(survivors.reason(("x.cpp", "int a = 1;", "1", "2", 1)))

    def test_an_entry_without_a_place_is_stale(self):
        survivors = self.read(self.ENTRY + 'why = "never read"\n')
        self.assertEqual(survivors.stale(changes_of("x.cpp", "int a = 1;")), [])
        self.assertEqual(len(survivors.stale(changes_of("x.cpp", "int a = 3;"))), 1)

    def test_an_entry_needs_a_reason(self):
        with self.assertRaises(ValueError):
            self.read(self.ENTRY)


if __name__ == "__main__":
    unittest.main()
