#!/usr/bin/env python3
"""How lines of C++ are mutated."""

import unittest

from operators import code_of, mutants_of, mutations


def mutated(line, previous=";"):
    return list(mutations(line, code_of(line), previous))


class Mutations(unittest.TestCase):
    def check(self, table):
        for line, expected in table:
            with self.subTest(line=line):
                self.assertEqual(expected, mutated(line))

    def test_operators_are_swapped(self):
        self.check([
            ("x = a < b;", ["x = a <= b;", ";"]),
            ("x = a && b;", ["x = a || b;", ";"]),
            ("int x = a + b;", ["int x = a - b;"]),
            ("bool x = true;", ["bool x = false;"]),
            ("break;", ["continue;"]),
            ("x += y;", ["x -= y;", ";"]),
            ("++x;", ["--x;", ";"]),
        ])

    def test_brackets_signs_and_arrows_are_not_operators(self):
        self.check([
            ("std::vector<int> x;", []),
            ("auto x = -y;", []),
            ("auto x = p->y;", []),
            ("int&& x;", []),
        ])

    def test_numbers_move_by_one(self):
        self.check([
            ("int x = 9;", ["int x = 10;", "int x = 8;"]),
            ("double x = 0.5;", ["double x = 1.5;", "double x = -1.5;"]),
            ("int x1 = y.z2;", []),
        ])

    def test_conditions_are_negated(self):
        self.check([
            ("if (f(a, g())) {", ["if (!(f(a, g()))) {"]),
            ("while (x) {", ["while (!(x)) {"]),
            ("if (f(a,", []),
        ])

    def test_returned_values_are_emptied_and_negated(self):
        self.check([
            ("return x;", ["return {};", "return !(x);"]),
            ("return {};", ["return !({});"]),
            ("return false;", ["return true;"]),
        ])

    def test_statements_are_deleted_but_declarations_are_not(self):
        self.check([
            ("  call(x);", ["  ;"]),
            ("  x = y;", ["  ;"]),
            ("  delete x;", ["  ;"]),
            ("  const int* x = y;", []),
            ("  std::map<int, int> x;", []),
            ("  ~Thing();", []),
            ("  Thing(const Thing&) = delete;", []),
        ])

    def test_the_end_of_a_statement_of_two_lines_is_not_deleted(self):
        self.assertEqual([], mutated("      y);", "  call(x,"))
        self.assertEqual([], mutated("      .call(y);", "  x"))
        self.assertEqual(["  ;"], mutated("  call(x);", "  if (y)"))
        self.assertEqual(["  ;"], mutated("  call(x);", "  else"))

    def test_only_code_is_mutated(self):
        self.check([
            ("// a < b", []),
            ('#include "a-1.h"', []),
            ('const char* x = "a < 1";', []),
            ("const char x = '1';", []),
            ("const int x = y; /* 1 */", []),
        ])


class MutantsOfAFile(unittest.TestCase):
    TEXT = "/* a < b\n   c < d */\nint x = a < b;\n\nint y;\nint x = a < b;\n"

    def test_exist_once_for_each_line_that_can_be_mutated(self):
        self.assertEqual(
            [("a.cpp", 3, "int x = a < b;", "int x = a <= b;"),
             ("a.cpp", 6, "int x = a < b;", "int x = a <= b;")],
            [(m.file, m.line, m.before, m.after)
             for _, m in mutants_of("a.cpp", self.TEXT, 1)])

    def test_do_not_treat_a_comment_as_the_line_before(self):
        self.assertEqual(
            [(1, ";"), (3, ";")],
            [(m.line, m.after)
             for _, m in mutants_of("a.cpp", "f();\n// why\ng();\n", 1)])

    def test_keep_their_ranks_when_other_lines_change(self):
        def ranks(text, seed):
            return [rank for rank, _ in mutants_of("a.cpp", text, seed)]
        first, second = ranks(self.TEXT, 1)
        self.assertNotEqual(first, second)
        self.assertEqual([first, second], ranks("int z;\n" + self.TEXT, 1))
        self.assertNotEqual([first, second], ranks(self.TEXT, 2))


if __name__ == "__main__":
    unittest.main()
