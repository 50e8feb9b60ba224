"""The copy of the tree in which mutants are built and tested."""

import hashlib
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

from operators import ROOT
from report import EQUIVALENT, KILLED, STILLBORN, SURVIVED

WORK = ROOT / "build" / "mutation"
TREE = WORK / "tree"
BUILD = WORK / "build"

# With shared libraries a mutant takes one link. Programs that do not call
# progress() need not define it then. No -g: line numbers would make all object
# code differ. An empty build type would become Release. Tests are listed when
# they run, because a mutant may crash before main().
OPTIONS = [
    "BUILD_TESTING=ON", "BUILD_SHARED_LIBS=ON", "CMAKE_BUILD_TYPE=None",
    "CMAKE_CXX_FLAGS=-O1 -fpch-preprocess",
    "CMAKE_CXX_COMPILER_LAUNCHER=ccache", "CMAKE_LINK_DEPENDS_NO_SHARED=ON",
    "CMAKE_EXE_LINKER_FLAGS=-Wl,--unresolved-symbols=ignore-in-shared-libs",
    "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]

# The folders of tests, the fastest first. Slow ones (e2e, browser, completion)
# are left out, and so are tests that depend on the machine's load.
TEST_FOLDERS = ("analysis", "html", "golden", "driver", "help", "fuzz",
                "properties", "handbook", "faults", "gui")
UNSTEADY = r"^(ProgramRun|HeldRun)\."

# This test makes a file that is larger than the limit below.
TOO_LARGE = "Files.ExistWhenTheirSizeNeedsMoreThan32Bits"

# Limits the bytes of memory and of a file, and the seconds of processor time of
# each process. Hides the user's display and browser from it.
LIMITS = ["env", "-u", "DISPLAY", "-u", "BROWSER", "-u", "QUMBRA_HOME",
          "prlimit", f"--as={4 << 30}", f"--fsize={1 << 30}", "--cpu=30"]
MAX_SECONDS = 180  # for the tests of a folder, which take far less


def run(command, timeout=None, **environment):
    """Runs a command, then ends all processes that it has left behind. Returns
    whether it succeeded in time, and its output."""
    with tempfile.TemporaryFile() as log:
        process = subprocess.Popen(
            command, env={**os.environ, **environment}, start_new_session=True,
            stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT)
        try:
            succeeded = process.wait(timeout) == 0
        except subprocess.TimeoutExpired:
            succeeded = False
        finally:
            end_group(process)
        log.seek(0)
        return succeeded, log.read().decode(errors="replace")


def end_group(process):
    """Terminates before it kills: a terminated X server removes its files."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(process.pid, number)
        except ProcessLookupError:
            break
        time.sleep(0.5)
    process.wait()


class Copy:
    def __init__(self, jobs):
        self.jobs = f"-j{jobs}"

    def prepare(self):
        """Updates the copy, builds the program and runs all tests on it."""
        # Without -t a copied file gets the present time, so it is compiled.
        subprocess.run(
            ["rsync", "-rlp", "--checksum", "--delete", "--mkpath",
             "--exclude=/.git", "--filter=:- .gitignore", f"{ROOT}/", TREE],
            check=True)
        demand(*run(["cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD,
                     *[f"-D{option}" for option in OPTIONS]]))
        demand(*self.make("zelkor"))
        self.sound_code = object_code()
        outcome, test = self.test("")
        demand(outcome == SURVIVED, test or outcome)

    def make(self, target):
        """Builds a target, with a compiler cache."""
        return run(["ninja", "-C", BUILD, self.jobs, target],
                   CCACHE_DIR=str(WORK / "ccache"), CCACHE_BASEDIR=str(WORK),
                   CCACHE_SLOPPINESS="pch_defines,time_macros")

    def failing_test(self, folder, suites):
        """Runs tests of a folder, all or those of some suites, up to the first
        that fails twice. Returns its name or None."""
        chosen = ":".join(f"{suite}.*:*/{suite}.*" for suite in suites) or "*"
        tests = rf"(^|/)({'|'.join(suites) or '.*'})[./]|_tests\.[0-9]+$"
        with tempfile.TemporaryDirectory(
                prefix="mutant-", ignore_cleanup_errors=True) as home:
            os.chmod(home, 0o1777)  # some tests become another user
            ctest = [*LIMITS, "ctest", "--test-dir", BUILD / "tests" / folder]
            # Lists the tests. CTest keeps the list, which must not be filtered.
            run([*ctest, "-N"], MAX_SECONDS)
            passed, output = run(
                [*ctest, self.jobs, "--stop-on-failure", "--no-tests=error",
                 "--repeat", "until-pass:2", "--output-on-failure",
                 "-R", tests, "-E", UNSTEADY],
                MAX_SECONDS, HOME=home, TMPDIR=home, GTEST_FAIL_FAST="1",
                GTEST_FILTER=f"{chosen}-{TOO_LARGE}")
        names = (re.findall(r"\[  FAILED  \] ([^\s,]+\.[^\s,]+)", output)
                 + re.findall(r"\[ RUN      \] (\S+)", output)[-1:] + [folder])
        return None if passed else names[0]

    def test(self, file):
        """Runs tests until one fails: first those named after the file, then
        those of its folder, then all others. Returns a mutant's outcome, and
        the test that kills it."""
        own = file.split("/")[0]
        stages = [(folder, []) for folder in
                  sorted(TEST_FOLDERS, key=lambda folder: folder != own)]
        if suites := suites_of(file):
            stages.insert(0, (own, suites))
        for folder, suites in stages:
            if not self.make(f"tests/{folder}/all")[0]:
                return STILLBORN, ""
            if test := self.failing_test(folder, suites):
                return KILLED, test
        return SURVIVED, ""

    def judge(self, mutant):
        """Builds and tests a mutant. Returns the same as test()."""
        path = TREE / mutant.file
        sound = path.read_text()
        lines = sound.split("\n")
        assert lines[mutant.line - 1] == mutant.before, "edited during the run"
        lines[mutant.line - 1] = mutant.after
        path.write_text("\n".join(lines))
        try:
            if not self.make("zelkor")[0]:
                return STILLBORN, ""
            if object_code() == self.sound_code:
                return EQUIVALENT, ""
            return self.test(mutant.file)
        finally:
            path.write_text(sound)


def demand(succeeded, output):
    if not succeeded:
        sys.exit(f"Without any mutant this fails:\n{output}")


def object_code():
    """A hash of the program's object code."""
    return hashlib.sha256(b"".join(
        path.read_bytes()
        for path in sorted((BUILD / "CMakeFiles").rglob("*.o")))).digest()


def suites_of(file):
    path = ROOT / "tests" / file
    return sorted({
        suite for tests in path.parent.glob(path.stem + "*_test.cpp")
        for suite in re.findall(r"(?m)^TEST(?:_[FP])?\((\w+)",
                                tests.read_text())})
