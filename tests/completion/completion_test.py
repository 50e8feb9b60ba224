#!/usr/bin/env python3
"""usage: completion_test.py bash|zsh

How the Tab key completes zelkor's command lines. Exits with status 77 if the
shell is missing.
"""

import os
import pathlib
import shutil
import sys
import tempfile
import unittest

from interactive_shell import InteractiveShell

SHELL = sys.argv[1]

# Extensions with a special meaning to a shell. Commands in them that run leave a
# file PWNED.
ODD_EXTENSIONS = [
    b"$(touch${IFS}PWNED)",
    b"`touch PWNED`",
    b"$HOME",
    b"a;touch PWNED",
    b"a|touch PWNED",
    b"a&b",
    b">PWNED",
    b"<(touch PWNED)",
    b"a b",
    b" a",
    b"a ",
    b"tab\there",
    b"new\nline",
    b"it's",
    b"'",
    b'say "it"',
    b"back\\slash",
    b"\\",
    b"*",
    b"?",
    b"[a-z]",
    b"{a,b}",
    b"~",
    b"#a",
    b"!!",
    b"a!b",
    b"-e",
    b"-dash",
    b"a:b",
    b"a=b",
    b"a@b",
    b"caf\xc3\xa9",
    b"caf\xe9",
    b"F90",
    b"directory",
]


def is_utf8(text):
    try:
        text.decode()
    except UnicodeDecodeError:
        return False
    return True


class Completion(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="with blank ")
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.home = self.scratch / "home"
        self.home.mkdir()
        self.make_directory("sources")

    def make_directory(self, name):
        self.directory = self.scratch / name
        self.directory.mkdir()

    def shell(self):
        return InteractiveShell(SHELL, self.directory, self.home)

    def make_files(self, *names):
        for name in names:
            path = os.path.join(os.fsencode(self.directory), name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            open(path, "wb").close()

    def assert_nothing_ran(self):
        left = [path for path in self.directory.rglob("*") if path.name == "PWNED"]
        self.assertEqual([], left)

    def test_offers_what_may_follow(self):
        self.make_files(b"main.f90")
        options = [b"-e", b"-h", b"-r", b"-v"]
        table = [
            (b"", options),
            (b"-", options),
            (b"-x", []),
            (b"-r ", [b"-e", b"-h"]),
            (b"-e ", [b"f90"]),
            (b"-e f90 ", [b"-e", b"-h", b"-v"]),
            (b"-e  f90  ", [b"-e", b"-h", b"-v"]),
            (b"'-e' ", [b"f90"]),
            (b"-e f90 -e ", [b"f90"]),
            (b"-e f90 -e F90 ", [b"-e", b"-h", b"-v"]),
            (b"-e 'a b' ", [b"-e", b"-h", b"-v"]),
            (b"-e a\\ b ", [b"-e", b"-h", b"-v"]),
            (b"-e '' ", [b"-e", b"-h", b"-v"]),
            (b"-e -r ", [b"-e", b"-h", b"-v"]),
            (b"-e f90 -r ", []),
            (b"-r -e f90 ", [b"-e", b"-h", b"-v"]),
            (b"-v ", [b"1", b"5"]),
            (b"-v 1 ", [b"-h"]),
            (b"-v 1 -e ", []),
            (b"-r -e f90 -v 5 ", [b"-h"]),
            (b"-h ", []),
            (b"-e f90 -h ", []),
            (b"-display ", []),
            (b"-display :1 ", options),
            (b"-display :1 -scheme plastic -iconic ", options),
            (b"-display :1 -r -e ", [b"f90"]),
            (b"-ti T -bg2 red ", options),
        ]
        with self.shell() as shell:
            for typed, offered in table:
                with self.subTest(typed=typed):
                    self.assertEqual(offered, shell.offered(typed))

    def test_adds_a_blank_after_a_completed_word(self):
        self.make_files(b"main.f90", b"without", b"ends.")
        with self.shell() as shell:
            self.assertEqual([b"-e", b"f90", b"-v", b"5"],
                             shell.arguments(b"-e \t-v\t5\t"))

    def test_offers_every_extension_unchanged(self):
        self.make_files(*(b"notes." + odd for odd in ODD_EXTENSIONS))
        (self.directory / "directory").mkdir()
        with self.shell() as shell:
            offered = shell.offered(b"-e ")
            self.assert_nothing_ran()
            self.assertEqual(sorted(ODD_EXTENSIONS), offered)

    def test_completes_every_extension_in_any_quotation_marks(self):
        for number, odd in enumerate(ODD_EXTENSIONS):
            openings = [b"-e ", b"-e '", b'-e "']
            if SHELL == "zsh" and not is_utf8(odd):
                # zsh writes such a byte as $'\\351' in quotation marks, too.
                openings = [b"-e "]
            with self.subTest(extension=odd):
                self.make_directory(str(number))
                self.make_files(b"notes." + odd)
                (self.directory / "directory").mkdir()
                with self.shell() as shell:
                    for typed in openings:
                        arguments = shell.completed(typed)
                        self.assert_nothing_ran()
                        self.assertEqual([b"-e", odd], arguments)

    def test_continues_what_was_typed(self):
        self.make_files(b"a.one two", b"b.one too", b"c.it's", b"d.a:b", b"e.x$y",
                        b"f.p\\q")
        table = [
            (b"one\\ tw\t", b"one two"),
            (b"o\tw\t", b"one two"),
            (b"'one t\to\t", b"one too"),
            (b'"one t\to\t', b"one too"),
            (b"'one tw'\t", b"one two"),
            (b"it\\'\t", b"it's"),
            (b"\"it'\t", b"it's"),
            (b"a:\t", b"a:b"),
            (b"x\\$\t", b"x$y"),
            (b'"x\\$\t', b"x$y"),
            (b'p\\\\\t', b"p\\q"),
            (b'"p\\q\t', b"p\\q"),
        ]
        with self.shell() as shell:
            for typed, extension in table:
                with self.subTest(typed=typed):
                    self.assertEqual([b"-e", extension],
                                     shell.arguments(b"-e " + typed))

    def test_offers_the_extensions_of_the_files_that_are_searched(self):
        self.make_files(b"main.f90", b"a.b.f95", b".setup.F90", b".f03",
                        b"caf\xe9.tex", b"without", b"ends.", b"elsewhere.d/without",
                        b"below/one.f77", b"below/.hidden/two.for",
                        b"below/b/c/four.f", b"below/b/c/d/five.deep")
        os.symlink("main.f90", self.directory / "link.txt")
        os.symlink("nowhere", self.directory / "dangling.inc")
        os.symlink("below", self.directory / "linked.dir")
        here = [b"F90", b"f03", b"f90", b"f95", b"inc", b"tex", b"txt"]
        with self.shell() as shell:
            self.assertEqual(here, shell.offered(b"-e "))
            self.assertEqual(sorted(here + [b"f", b"f77", b"for"]),
                             shell.offered(b"-r -e "))

    def test_offers_nothing_if_no_file_has_an_extension(self):
        self.make_files(b"Makefile")
        with self.shell() as shell:
            self.assertEqual([], shell.offered(b"-e "))


if __name__ == "__main__":
    if shutil.which(SHELL) is None:
        print(f"Skipped: {SHELL} is not installed.")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
